// The workbooks of the capture screen: the job card of a service (or an empty one) and the list of open
// services.
#include "Database.h"
#include "Hourglass.h"
#include "MessageService.h"
#include "ReportEngine.h"
#include "ScreenRegistry.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"
#include "frmServAdd.h"

#include <QApplication>
#include <QMdiArea>

namespace {

// One label in a to b and its value in c to g, bordered.
void CardLine(int row, const QString& label, const Value& value, const QString& numberFormat) {
    const QString r = QString::number(row);
    REPxlFmt(xlSheet, "a" + r, "b" + r, Value(label), 2, 10, true, false, false, true, false, "", xl::Continuous,
             xl::Left, xl::Center, xl::Thin, 0, Value(18));
    REPxlFmt(xlSheet, "c" + r, "g" + r, value, 2, 10, false, false, false, true, false, numberFormat, xl::Continuous,
             xl::Left, xl::Center, xl::Thin, 0, Value(18));
}

} // namespace

void frmServAdd::PrintJobCard(int id, bool empty) {
    if (MsgBox("Print " + QString(empty ? " Empty " : "") + " Job Card?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        std::unique_ptr<Recordset> rs;
        if (!empty)
            rs = db().OpenRecordset(BuildServiceSql(id, false, 0, true, "", ""));
        auto field = [&](const QString& name) { return empty ? Value(QString()) : rs->Field(name); };
        REPORT_Workbook_Initialise(true);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Job Card";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));

        REPxlFmt(xlSheet, "a1", "b1", Value("JOB CARD"), 2, 14, true, false, false, true, false, "", xl::Continuous,
                 xl::Center, xl::Center, xl::Thin, 0, Value(24));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "b1", 0);
        REPxlFmt(xlSheet, "c1", "g1", field("reference"), 2, 14, true, false, false, true, false, "000000",
                 xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(24));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "c1", "g1", 1);

        const Value km = empty ? Value(QString()) : Value(vb::Trim(rs->Field("Km").toString()));
        CardLine(2, "Vehicle Category :", empty ? field("") : Value(vb::ProperCase(field("Veh Category").toString())),
                 "");
        CardLine(3, "Vehicle :", empty ? field("") : Value(vb::ProperCase(field("Vehicle").toString())), "");
        CardLine(4, "Date :", field("Date"), "");
        CardLine(5, "Supplier :", empty ? field("") : Value(vb::ProperCase(field("supplier").toString())), "");
        CardLine(6, "Cost :", field("Cost"), "### ### ##0.00");
        CardLine(7, "Cost Category :", empty ? field("") : Value(vb::ProperCase(field("cost category").toString())),
                 "### ##0.00");
        CardLine(8, "Km/Hour Reading :", km, "### ### ##0.00");

        REPxlFmt(xlSheet, "a9", "g9", Value("Notes :"), 2, 10, true, false, false, true, false, "", xl::Continuous,
                 xl::Left, xl::Center, xl::Thin, 0, Value(18));
        for (int row = 10; row <= 34; ++row) {
            const QString r = QString::number(row);
            REPxlFmt(xlSheet, "a" + r, "g" + r, Value(QString()), 2, 10, false, false, false, true, false, "",
                     xl::Continuous, xl::Left, xl::Center, xl::Thin, 0, Value(18));
        }
        xlSheet->Columns("a:a").SetColumnWidth(20);
        xlSheet->Columns("e:e").SetColumnWidth(15);
        if (empty) {
            for (int row = 1; row <= 8; ++row)
                xlSheet->Range("c" + QString::number(row)).SetValue(Value(QString()));
            for (int row = 10; row <= 34; ++row)
                xlSheet->Range("a" + QString::number(row)).SetValue(Value(QString()));
        }
        REPORT_SaveReport(xlApp, "Services Allocate", "Job Card");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in PrintJobCard " + e.description());
    }
    REPORT_Workbook_Terminate();
}

void frmServAdd::PrintServiceList() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        auto rs = db().OpenRecordset(BuildServiceSql(0, true, 0, true, "", ""));
        if (rs->Eof())
            return;
        REPORT_Workbook_Initialise(true);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Services List";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
        const int columns = rs->FieldCount();
        const QString lastLetter = COLUMN_Letter(columns - 1, true);
        REPxlFmt(xlSheet, "a1", lastLetter + "1", Value("Services List"), 2, 12, true, false, false, true, false, "",
                 xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(20));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", lastLetter + "1", 0);
        for (int c = 0; c < columns; ++c) {
            const QString cell = COLUMN_Letter(c, true) + "2";
            REPxlFmt(xlSheet, cell, cell, Value(rs->FieldName(c)), 2, 8, true, false, false, false, true, "",
                     xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(18));
        }
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", lastLetter + "2", 1);
        const int rows = xlSheet->Range("a3").CopyFromRecordset(*rs);
        xlSheet->Columns("a:a").SetColumnWidth(11);
        xlSheet->Columns("b:b").SetColumnWidth(22);
        xlSheet->Columns("c:e").SetColumnWidth(18);
        xlSheet->Columns("f:i").SetColumnWidth(12);
        int font = 2;
        xlSheet->Columns("a:i").SetFontName(REPORT_FontName(font));
        xlSheet->Columns("a:i").SetFontSize(8);
        xlSheet->Columns("g:h").SetNumberFormat("### ### ##0.00");
        for (int row = 3; row < 3 + rows; ++row) {
            for (int col : {7, 8}) {
                XlRange cell = xlSheet->Cells(row, col);
                cell.SetValue(cell.GetValue());
            }
        }
        REPORT_SaveReport(xlApp, "Services", "Services List");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in PrintServiceList " + e.description());
    }
    REPORT_Workbook_Terminate();
}

