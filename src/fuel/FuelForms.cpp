#include "FuelForms.h"

#include "FlexGrid.h"
#include "ReportEngine.h"
#include "Vb.h"

#include <QDate>
#include <QLineEdit>
#include <QRegularExpression>

namespace fuelforms {

QString TodayText() {
    return vb::Format(Value(QDate::currentDate()), "yyyy/MM/dd");
}

QString CellText(const FlexGrid& grid, int row, int col) {
    if (row < 0 || row >= grid.Rows() || col < 0 || col >= grid.Cols())
        return QString();
    return grid.TextMatrix(row, col);
}

int CellKey(const FlexGrid& grid, int row, int col) {
    const QString text = CellText(grid, row, col);
    if (!vb::IsNumeric(Value(text)))
        return 0;
    const double key = vb::Val(text);
    if (key < 1 || key > 2147483647.0)
        return 0;
    return static_cast<int>(key);
}

void EmptyWhenNoFigure(QLineEdit* field) {
    QObject::connect(field, &QLineEdit::textChanged, field, [field](const QString& text) {
        static const QRegularExpression figure(R"(^-?[0-9 ]*\.?[0-9]*$)");
        if (!figure.match(text).hasMatch())
            field->clear();
    });
}

void OpenFuelWorkbook(const QString& sheetName) {
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString name = sheetName;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
}

void SaveFuelWorkbook(const QString& reportName) {
    REPORT_SaveReport(xlApp, "Vehicles", reportName);
    REPORT_HideExcel(xlApp, false);
    REPORT_Workbook_Terminate();
}

} // namespace fuelforms
