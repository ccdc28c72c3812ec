#include "ReportSheets.h"

#include "FlexGrid.h"
#include "MessageService.h"

namespace {

// A grid cell as the sheet takes it: the blanks that the number patterns put before a short number, and after
// the minus sign, go, so that the figure reads as a number.
QString SheetText(QString text) {
    text = text.trimmed();
    if (text.startsWith('-'))
        text = "-" + text.mid(1).trimmed();
    return text;
}

} // namespace

int MeterSheets(const ReportRun& run) {
    return (!run.VehicleList.isEmpty() && !run.VehicleKmList.isEmpty()) ? 1 : 0;
}

QString MeterName(const ReportRun& run, int pass) {
    if (pass == 1 || run.VehicleKmList.isEmpty())
        return "Hours";
    return "Km";
}

QString MeterIds(const ReportRun& run, int pass) {
    return MeterName(run, pass) == "Hours" ? run.VehicleList : run.VehicleKmList;
}

void WriteTitleRow(const XlRef<XlWorksheet>& sheet, const QString& lastColumn, const QString& text) {
    const QString last = lastColumn + "1";
    REPxlFmt(sheet, "a1", last, Value(text), 2, 10, true, false, false, true, true, "", 1, xl::Center, xl::Center, 2, 0,
             Value(18));
    REPORT_ToExcel_ApplyCustomformat(sheet, "a1", last, 0);
}

void WriteHeadings(const XlRef<XlWorksheet>& sheet, const QStringList& headings, double height) {
    for (int i = 0; i < headings.size(); ++i) {
        const QString cell = COLUMN_Letter(i, true) + QString::number(xlRow);
        REPxlFmt(sheet, cell, cell, Value(headings[i]), 2, 10, true, false, false, true, true, "", 1, xl::Center,
                 xl::Center, 2, 0, Value(height));
    }
    if (!headings.isEmpty())
        REPORT_ToExcel_ApplyCustomformat(
            sheet, "a" + QString::number(xlRow),
            COLUMN_Letter(static_cast<int>(headings.size()) - 1, true) + QString::number(xlRow), 0);
}

void WriteFieldHeadings(const XlRef<XlWorksheet>& sheet, Recordset& rs, double height) {
    WriteHeadings(sheet, rs.FieldNames(), height);
}

void ReportPageSetup(const XlRef<XlWorksheet>& sheet, int orientation) {
    REPORT_PageSetup(sheet, "$1:$2", "A:A", "Date &D Time &T", "Page #&P Of &N Pages", orientation, "");
}

QString FinishReport(const ReportRun& run, const QString& name, const QString& completed) {
    run.Message("Saving Workbook");
    run.Progress(100);
    const QString path = REPORT_SaveReport(xlApp, "Reports", name);
    run.savedPath = path;
    REPORT_HideExcel(xlApp, false);
    REPORT_Workbook_Terminate();
    run.ProgressVisible(false);
    run.Message("");
    MsgBox(completed.isEmpty() ? name + " Completed" : completed, MsgButtons::Ok, MsgIcon::Information);
    return path;
}

void CopyGridToSheet(const ReportRun& run, const QString& sheetName, const QString& lastColumn,
                     const QList<int>& rightColumns) {
    FlexGrid& grid = *run.grid;
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString name = sheetName;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
    xlRow = 1;
    WriteTitleRow(xlSheet, lastColumn, run.title + " From " + run.from + " To " + run.to);
    xlRow = 2;
    QStringList headings;
    for (int c = 0; c < grid.Cols(); ++c)
        headings << grid.TextMatrix(0, c);
    WriteHeadings(xlSheet, headings, 25);
    for (int r = 1; r < grid.Rows(); ++r) {
        xlRow = r + 2;
        for (int c = 0; c < grid.Cols(); ++c) {
            XlRange cell = xlSheet->Cells(xlRow, c + 1);
            cell.SetValue(Value(SheetText(grid.TextMatrix(r, c))));
            cell.SetHorizontalAlignment(rightColumns.contains(c + 1) ? xl::Right : xl::Left);
        }
        run.Progress(100.0 * r / grid.Rows());
    }
}

int LastUsedRow(const XlRef<XlWorksheet>& sheet) {
    int last = 0;
    for (const auto& [key, cell] : sheet->CellMap())
        if (!cell.value.isEmpty() && !cell.value.isNull())
            last = std::max(last, XlWorksheet::RowOfKey(key));
    return last;
}

double SheetSum(const XlRef<XlWorksheet>& sheet, const QString& first, const QString& last) {
    return xlApp->WorksheetFunction().Sum(sheet->Range(first, last));
}
