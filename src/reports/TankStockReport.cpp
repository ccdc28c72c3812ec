#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

void TankStockList_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    grid.SetCols(4);
    grid.SetFormatString("Date|Tank|Gain or Loss|Reason");
    auto rs = db().OpenRecordset(QString("SELECT * FROM TankStock ") + " WHERE tankid in (" + run.CatKmList + ")" +
                                     " AND Datum between " + "'" + run.from + "'" + " AND  " + "'" + run.to + "'" +
                                     " ORDER BY Datum,Tank",
                                 RecordsetType::Snapshot);
    double losses = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        QString verlore = rs->Field("Verlore").toString();
        if (verlore.isEmpty())
            verlore = "0";
        // Read as the capture left them; the list shows the difference only.
        rs->Field("LitersInTank");
        rs->Field("LiterLesing");
        rs->Field("Rvalue");
        grid.AddItem(
            FLEX_JoinRow({rs->Field("Datum").toString(), rs->Field("tank").toString(),
                          vb::Format(Value(vb::Val(verlore)), "### ### ##0.00"), rs->Field("Rede").toString()}));
        losses += vb::Val(verlore);
    }
    if (grid.Rows() > 1)
        grid.AddItem(FLEX_JoinRow({"TOTAL", "", vb::Format(Value(losses), "### ### ##0.00"), ""}));
}

void TankStockList_Print(ReportRun& run) {
    CopyGridToSheet(run, "Fuel Tanks", "d", {3, 4});
    run.Message("Formatting");
    run.Progress(90);
    const QString last = QString::number(std::max(xlRow, 2));
    xlSheet->Columns("a:a").SetColumnWidth(12);
    xlSheet->Columns("b:b").SetColumnWidth(25);
    xlSheet->Columns("c:d").SetNumberFormat("### ### ##0.00");
    xlSheet->Range("a2", "d2").SetRowHeight(Value(25));
    if (xlRow >= 3)
        xlSheet->Range("a3", "d" + last).SetRowHeight(Value(30));
    xlSheet->Range("a1", "d" + last).SetFontSize(8);
    ReportPageSetup(xlSheet);
    FinishReport(run, run.title);
}
