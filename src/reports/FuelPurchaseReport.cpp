#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

namespace {
const QString kPattern = QStringLiteral("### ### ##0.00");
}

QString FuelPurchaseStatement(const ReportRun& run) {
    return QString(" SELECT strconv(tanknaam,3) as [Tank]") + " , p.datum as [Date]" + " , s.name as [Supplier]" +
           " , p.invoiceref as [Invoice]" + " , val(liter) as [Litres Added],val(Cost) as [R Cost]" +
           " , val(costperLiter) as [Cost Per Litre] " + " FROM (FuelPurchase as p " +
           " inner join tanks as t  on t.transid = p.tankid) " +
           " inner join fuelsupplier as s  on s.suppid = p.suppid " + " WHERE p.tankid in (" + run.CatKmList + ")" +
           " AND p.Datum between " + "'" + run.from + "'" + "  AND '" + run.to + "'" + "  ORDER BY p.Datum ";
}

void FuelPurchases_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    grid.SetCols(7);
    grid.SetFormatString("Tank #|Date|Supplier|Invoice|Litres Added|Cost|R/Litre");
    auto rs = db().OpenRecordset(FuelPurchaseStatement(run), RecordsetType::Snapshot);
    double litres = 0, rands = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        grid.AddItem(FLEX_JoinRow({rs->Field("tank").toString(), rs->Field("Date").toString(),
                                   NullToDefault(rs->Field("supplier"), Value(QString())).toString(),
                                   NullToDefault(rs->Field("invoice"), Value(QString())).toString(),
                                   FLEX_NumberText(rs->Field("Litres Added")), FLEX_NumberText(rs->Field("R Cost")),
                                   FLEX_NumberText(rs->Field("Cost Per Litre"))}));
        litres += rs->Field("Litres Added").toDouble();
        rands += rs->Field("R Cost").toDouble();
    }
    if (grid.Rows() > 1)
        grid.AddItem(
            FLEX_JoinRow({"", "", "", "", vb::Format(Value(litres), kPattern), vb::Format(Value(rands), kPattern)}));
}

void FuelPurchases_Print(ReportRun& run) {
    run.Message("Starting Up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString name = run.title;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
    xlRow = 1;
    WriteTitleRow(xlSheet, "g", "Fuel Purchases " + run.from + " To " + run.to);
    run.Message("Printing Lines");
    xlRow = 2;
    auto rs = db().OpenRecordset(FuelPurchaseStatement(run), RecordsetType::Snapshot);
    WriteFieldHeadings(xlSheet, *rs);
    const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
    const int last = 2 + rows;
    run.Message("Printing Formulae");
    if (rows > 0) {
        for (const char* column : {"e", "f"})
            xlSheet->Range(column + QString::number(last + 1))
                .SetValue(Value(SheetSum(xlSheet, column + QString("3"), column + QString::number(last))));
    }
    run.Message("Formatting Worksheet");
    run.Progress(90);
    xlSheet->Columns("a:a").SetColumnWidth(15);
    xlSheet->Columns("b:b").SetColumnWidth(10);
    xlSheet->Columns("c:d").SetColumnWidth(18);
    xlSheet->Columns("e:g").SetColumnWidth(12);
    int font = 2;
    XlRange used = xlSheet->Range("a1", "g" + QString::number(last + 1));
    used.SetFontName(REPORT_FontName(font));
    used.SetFontSize(8);
    xlSheet->Columns("e:g").SetNumberFormat(kPattern);
    ReportPageSetup(xlSheet);
    FinishReport(run, "Fuel Purchases");
}
