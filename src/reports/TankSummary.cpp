#include "TankSummary.h"

#include "FlexGrid.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

#include <cmath>

namespace {

const QString kTable = QStringLiteral("tmpsummary");

QString GroupStatement() {
    return "select [desc] as [group], sum([total litres]) as [biggie] "
           " from tmpsummary "
           " inner join voerkat on voerkat.transid = tmpsummary.catid "
           " group by [desc]";
}

QString GrandTotal() {
    return GetScalar(db(),
                     "select  sum([total litres]) as [biggie] from tmpsummary"
                     " inner join voerkat on voerkat.transid = tmpsummary.catid",
                     "0");
}

} // namespace

QString SqlNumber(double value) {
    if (value == 0)
        return "0";
    return QString::number(value, 'g', 15);
}

QString SummarySelect(const ReportRun& run, bool useDates) {
    const QString dates = " and f.datum between '" + run.from + "'" + " and '" + run.to + "'";
    QString sql = " select tankid,catid,voertuigid";
    sql += " , [tanknaam] as [Fuel Tank]";
    sql += " ,maak  &  ' (' & regnr & ')' as [vehicle]";
    sql += " ,sum(litres) as [Total Litres]";
    sql += " , 100 as [Open Km]";
    sql += " , 250 as [Close Km]";
    sql += " , 150 as [Covered]";
    sql += " , 10.00 as [Km/Litre]";
    sql += " , iif(hours=true,'hours','km') as [Type] ";
    sql += " from (vecfuel f ";
    sql += " inner join voertuig t on t.transid = f.voertuigid) ";
    sql += " inner join tanks k on k.transid=f.tankid ";
    sql += " where tankid in (" + run.CatKmList + ") ";
    if (useDates)
        sql += dates;
    sql += " and voertuigid in";
    sql += " (";
    sql += " select distinct voertuigid from vecfuel ";
    sql += " where tankid in (" + run.CatKmList + ") ";
    if (useDates)
        sql += dates;
    sql += " )";
    sql += " group by tankid, catid,voertuigid, [tanknaam],maak  &  ' (' & regnr & ')' ,100,200,10.00,hours";
    return sql;
}

bool ShowSummary_Preflight(const ReportRun& run, bool useDates) {
    try {
        if (!TableExists(db(), kTable).isEmpty()) {
            db().Execute("delete from " + kTable);
            db().Execute(" insert into " + kTable + SummarySelect(run, useDates));
        } else {
            db().Execute(" select * into " + kTable + " from (" + SummarySelect(run, useDates) + ")");
        }
        db().RefreshTableDefs();
        return true;
    } catch (const NumberedError& e) {
        MsgBox("ERROR in ShowSummary_Preflight " + e.description(), MsgButtons::Ok, MsgIcon::Exclamation);
        return false;
    }
}

void ShowSummary_UpdateStats(const ReportRun& run) {
    try {
        auto rs = db().OpenRecordset("select * from tmpsummary", RecordsetType::Snapshot);
        const int count = CountRecords(*rs);
        run.Progress(5);
        int row = 0;
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
            const QString tank = rs->Field("tankid").toString();
            const QString vehicle = rs->Field("voertuigid").toString();
            auto reading = [&](const char* which) {
                return GetScalar(db(),
                                 QString("select ") + " kmread as reading from vecfuel where transid =(select " +
                                     which + "(transid) " + " from vecfuel " + " where tankid = " + tank +
                                     " and datum between '" + run.from + "'" + " and '" + run.to + "'" +
                                     " and voertuigid = " + vehicle + ")",
                                 "0");
            };
            const double first = vb::Val(reading("min"));
            const double last = vb::Val(reading("max"));
            const QString unit = rs->Field("type").toString() == "km" ? "Km/L" : "L/hr";
            const double litres = rs->Field("Total Litres").toDouble();
            if (litres == 0)
                throw VbError(11, "Division by zero");
            const double figure = vb::RoundHalfEven((last - first) / litres, 2);
            db().Execute("update tmpsummary set " + QString(" [Open Km] = ") + SqlNumber(first) +
                         " ,[Close Km] = " + SqlNumber(last) + " ,covered = " + SqlNumber(last - first) +
                         " ,[Km/Litre] = " + SqlNumber(figure) + " ,type = '" + unit + "'" + " where" +
                         " tankid = " + tank + " and voertuigid = " + vehicle);
            run.Progress(100.0 * ++row / std::max(count, 1));
        }
    } catch (const NumberedError&) {
        // A row that cannot be worked out ends the updates there; later rows keep their placeholders.
    }
}

void ShowSummary(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    try {
        grid.SetFormatString("Fuel Tank |Vehicle|Total Litres|Open Km|Close Km|Covered|Km/L|Type");
        run.Message("Getting things ready....");
        ShowSummary_Preflight(run, true);
        run.Message("Updating Stats....");
        ShowSummary_UpdateStats(run);
        run.Message("Fetching rows ....");
        auto rs =
            db().OpenRecordset(QString("select [Fuel Tank]") + " ,[Vehicle]" + " ,[Total Litres]" + " ,[Open Km]" +
                                   " ,[Close Km]" + " ,[Covered]" + " ,[Km/Litre]" + " ,[Type]" + " from tmpsummary",
                               RecordsetType::Snapshot);
        const int count = CountRecords(*rs);
        run.Message("Displaying rows ....");
        int row = 0;
        for (; count > 0 && !rs->Eof(); rs->MoveNext()) {
            QStringList cells{vb::ProperCase(rs->Field("Fuel Tank").toString()),
                              vb::ProperCase(rs->Field("Vehicle").toString())};
            for (const char* field : {"total litres", "open km", "close km", "covered", "km/litre"})
                cells << vb::Format(rs->Field(field), "### ##0.00");
            cells << rs->Field("type").toString();
            grid.AddItem(FLEX_JoinRow(cells));
            run.Progress(vb::Val(PercentOfTotal(count, ++row, 2, 0, 0, true)));
        }
        run.Message("Fetching Group Info ....");
        const QString total = GrandTotal();
        grid.AddItem(FLEX_JoinRow({"Total", "", vb::Format(Value(vb::Val(total)), "###0.00"), ""}));
        QStringList groups, litres, shares;
        auto g = db().OpenRecordset(GroupStatement(), RecordsetType::Snapshot);
        for (; !g->Eof(); g->MoveNext()) {
            groups << vb::ProperCase(g->Field("Group").toString());
            litres << g->Field("biggie").toString();
            shares << PercentOfTotal(vb::Val(total), g->Field("biggie").toDouble(), 2, 0, 0, true);
        }
        for (int i = 0; i < groups.size(); ++i)
            grid.AddItem(FLEX_JoinRow({"Total " + groups[i], "", vb::Format(Value(vb::Val(litres[i])), "###0.00"),
                                       vb::Format(Value(vb::Val(shares[i])), "##0.00")}));
        run.Message("Done ....");
    } catch (const NumberedError& e) {
        MsgBox("ERROR in ShowSummary " + e.description());
    }
}

void ShowSummary_Print(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString name = run.tankNames;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
    xlRow = 1;
    WriteTitleRow(xlSheet, "h", run.title + " From " + run.from + " To " + run.to);
    xlRow = 2;
    for (int c = 0; c < grid.Cols(); ++c) {
        const QString cell = COLUMN_Letter(c, true) + "2";
        REPxlFmt(xlSheet, cell, cell, Value(grid.TextMatrix(0, c)), 2, 10, true, false, false, true, true, "", 1,
                 xl::Center, xl::Center, 2, 0, Value(18));
    }
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", COLUMN_Letter(grid.Cols() - 1, true) + "2", 0);
    auto rs = db().OpenRecordset(QString("SELECT ") + " strconv([Fuel Tank], 3) As Tank" +
                                     " ,strconv([vehicle],3) as [Description]" + " ,[Total Litres]" + " ,[Open Km]" +
                                     " ,[Close Km]" + " ,[Covered]" + " ,[Km/Litre]" + " ,[Type]" +
                                     " FROM [tmpsummary] " + " order by vehicle",
                                 RecordsetType::Snapshot);
    xlRow = 3 + xlSheet->Range("a3").CopyFromRecordset(*rs);
    const QString total = GrandTotal();
    xlSheet->Range("b" + QString::number(xlRow)).SetValue(Value("Total"));
    XlRange totalCell = xlSheet->Range("c" + QString::number(xlRow));
    totalCell.SetValue(Value(vb::Val(total)));
    totalCell.SetNumberFormat("### ### ##0.00");
    ++xlRow;
    const int groupRow = xlRow;
    auto g = db().OpenRecordset(QString("select strconv([desc],3) as [group]") + " , sum([total litres]) as [biggie] " +
                                    " , format((sum([total litres]) /" + total + ")*100,'##0.00') & '%' as pct" +
                                    " from tmpsummary " + " inner join voerkat on voerkat.transid = tmpsummary.catid " +
                                    " group by [desc]",
                                RecordsetType::Snapshot);
    xlRow += xlSheet->Range("b" + QString::number(xlRow)).CopyFromRecordset(*g);
    if (xlRow > groupRow)
        xlSheet->Range("d" + QString::number(groupRow), "d" + QString::number(xlRow - 1))
            .SetHorizontalAlignment(xl::Right);
    run.Message("Formatting");
    run.Progress(90);
    xlSheet->Columns("a:b").SetColumnWidth(15);
    xlSheet->Columns("c:g").SetColumnWidth(12);
    xlSheet->Columns("h:h").SetColumnWidth(6);
    xlSheet->Columns("c:g").SetNumberFormat("### ### ##0.00");
    int font = 2;
    XlRange used = xlSheet->Range("a1", "h" + QString::number(std::max(xlRow, 2)));
    used.SetFontName(REPORT_FontName(font));
    used.SetFontSize(8);
    ReportPageSetup(xlSheet);
    FinishReport(run, run.title);
}
