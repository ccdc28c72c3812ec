#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

namespace {
const QString kPattern = QStringLiteral("### ### ##0.00");
}

QString ConsumptionStatement(const QString& ids, const QString& meterName, const QString& from, const QString& to,
                             bool totals, bool first, bool last) {
    QString sql;
    if (first)
        sql = "select min(datum)";
    else if (last)
        sql = "select max(datum)";
    else if (totals)
        sql = QString(" select sum(kmread)-sum(previouskmread) as [Big km]") + " ,sum (litres) as [Big Litres]" +
              " ,round(sum(rperl*litres),2) as [Big rands]";
    else
        sql = QString(" select") + " Datum as [Date]" + " ,strconv(maak,3)  as [Make]" + " ,regnr as [Reg Nr]" +
              " ,kmread-previouskmread as [Km]" + " ,Litres  " + " ,cdbl(rperl) as [Cost/L]" +
              " ,round((kmread-previouskmread)/litres,2) as [Km/L]" +
              " ,round((litres/(kmread-previouskmread))*100,2) as [Litre/100km]" +
              " ,round((rperl*litres)/(kmread-previouskmread),2) as [Cost/" + meterName + "]" +
              " ,round(rperl*litres,2) as [Total Rands]";
    sql += QString(" FROM VecFuel as f") + " inner join voertuig as v" + " on v.transid = f.voertuigid";
    if (!first && !last)
        sql += " WHERE voertuigid in (" + ids + ")" + " and datum between '" + from + "'" + " and '" + to + "'";
    return sql;
}

void Consumption_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    const QString kind = MeterName(run, 0);
    QString heading = "Date|Make|Hours |Litres|Cost/Litre|Hours/Litre|Litre /100 Hours|Cost Per Km/Hr|Total Rand";
    if (kind == "Km")
        heading.replace("Hours", "Km");
    grid.SetCols(9);
    grid.SetFormatString(heading);
    auto rs = db().OpenRecordset(ConsumptionStatement(run.mergedIds, kind, run.from, run.to, false, false, false),
                                 RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        if (vb::Val(rs->Field("Km").toString()) == 0)
            continue;
        QStringList cells{rs->Field("Date").toString(),
                          rs->Field("Make").toString() + " (" + rs->Field("Reg Nr").toString() + ")"};
        for (const QString& field : {QString("Km"), QString("Litres"), QString("cost/l"), QString("km/l"),
                                     QString("Litre/100km"), "Cost/" + kind, QString("total rands")})
            cells << FLEX_NumberText(rs->Field(field));
        grid.AddItem(FLEX_JoinRow(cells));
    }
    auto totals = db().OpenRecordset(ConsumptionStatement(run.mergedIds, kind, run.from, run.to, true, false, false),
                                     RecordsetType::Snapshot);
    if (!totals->Eof())
        grid.AddItem(FLEX_JoinRow({"Totals", "", FLEX_NumberText(totals->Field("big km")),
                                   FLEX_NumberText(totals->Field("big litres")), "", "", "", "",
                                   FLEX_NumberText(totals->Field("big rands"))}));
}

void Consumption_Print(ReportRun& run) {
    run.Message("Starting Up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    for (int pass = 0; pass <= MeterSheets(run); ++pass) {
        const QString kind = MeterName(run, pass);
        const QString ids = MeterIds(run, pass);
        if (pass > 0) {
            REPORT_AddSheet(xlBook);
            REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
            xlSheet = xlBook->Worksheets(REPORT_GetSheetIndex());
        }
        QString name = kind;
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
        xlRow = 1;
        WriteTitleRow(xlSheet, "j", "Vehicle Fuel Consumption From " + run.from + " To " + run.to);
        run.Message("Printing Lines ...");
        xlRow = 2;
        auto rs = db().OpenRecordset(ConsumptionStatement(ids, kind, run.from, run.to, false, false, false),
                                     RecordsetType::Snapshot);
        WriteFieldHeadings(xlSheet, *rs);
        const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
        const int last = 2 + rows;
        run.Message("Printing Totals ...");
        auto totals = db().OpenRecordset(ConsumptionStatement(ids, kind, run.from, run.to, true, false, false),
                                         RecordsetType::Snapshot);
        const QString totalRow = QString::number(last + 1);
        if (!totals->Eof()) {
            xlSheet->Range("d" + totalRow).SetValue(totals->Field("Big km"));
            xlSheet->Range("e" + totalRow).SetValue(totals->Field("Big Litres"));
            xlSheet->Range("j" + totalRow).SetValue(totals->Field("Big rands"));
        }
        run.Message("Formatting");
        xlSheet->Columns("a:a").SetColumnWidth(10);
        xlSheet->Columns("b:b").SetColumnWidth(15);
        xlSheet->Columns("c").SetColumnWidth(10);
        xlSheet->Columns("d:i").SetColumnWidth(10);
        xlSheet->Columns("j:j").SetColumnWidth(12);
        int font = 2;
        XlRange used = xlSheet->Range("a1", "j" + totalRow);
        used.SetFontName(REPORT_FontName(font));
        used.SetFontSize(8);
        xlSheet->Columns("d:j").SetNumberFormat(kPattern);
        xlSheet->Range("h3", "h" + totalRow).SetHorizontalAlignment(xl::Right);
        xlSheet->Range("j3", "j" + totalRow).SetHorizontalAlignment(xl::Right);
        run.Message("Saving Worksheet");
        ReportPageSetup(xlSheet);
        run.Progress(50.0 * (pass + 1));
    }
    xlBook->Sheets(1)->Select();
    FinishReport(run, "Fuel Consumption");
}
