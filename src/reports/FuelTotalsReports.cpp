#include "FuelTotalsReports.h"

#include "FillReportGrid.h"
#include "FlexGrid.h"
#include "FuelUsageStatement.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Rebate.h"
#include "ReportRegistry.h"
#include "ReportSheets.h"
#include "Session.h"
#include "TankSummary.h"
#include "Vb.h"

namespace {

const QString kPattern = QStringLiteral("### ### ##0.00");

// Where a chart stands on its sheet, in points: a landscape page's width, two thirds of its height.
constexpr double kChartLeft = 10, kChartTop = 10, kChartWidth = 700, kChartHeight = 420;

// The sheet after the last one, in hand and named; the sheet index follows it.
void NextSheet(const QString& name) {
    REPORT_AddSheet(xlBook);
    REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
    xlSheet = xlBook->Worksheets(xlBook->SheetsCount());
    xlSheet->Activate();
    QString wanted = name;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, wanted));
}

// The sheet in hand for the pass: the first sheet, or a new one after the others.
void PassSheet(int pass, const QString& name) {
    if (pass == 0) {
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString wanted = name;
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, wanted));
    } else {
        NextSheet(name);
    }
}

// The run narrowed to the vehicles of one meter kind, as the statement builders read it.
ReportRun PassRun(const ReportRun& run, int pass) {
    ReportRun narrowed;
    narrowed.title = run.title;
    narrowed.from = run.from;
    narrowed.to = run.to;
    narrowed.byDate = run.byDate;
    narrowed.mergedIds = MeterIds(run, pass);
    return narrowed;
}

QString Row(int row) {
    return QString::number(row);
}

// The closing block of "Rebate Applicable" below the data rows 3 to `last`: the sums of litres, rebate and
// non rebate, 80% of the rebated litres and their worth at the rebate rate.
void WriteRebateBlock(int last, int percent, double rand) {
    const QString total = Row(last + 1), share = Row(last + 2), worth = Row(last + 3);
    xlSheet->Range("d" + total).SetValue(Value(QStringLiteral("Total Litres")));
    for (const QString& column : {QStringLiteral("e"), QStringLiteral("f"), QStringLiteral("g")}) {
        XlRange cell = xlSheet->Range(column + total);
        cell.SetValue(Value(SheetSum(xlSheet, column + "3", column + Row(last))));
        cell.SetNumberFormat(kPattern);
    }
    xlSheet->Range("d" + share).SetValue(Value(QStringLiteral("80% of Rebated Litres")));
    const double rebated = xlSheet->Range("f" + total).GetValue().toDouble();
    XlRange shareCell = xlSheet->Range("e" + share);
    shareCell.SetValue(Value(vb::RoundHalfEven(rebated * 0.8, 2)));
    shareCell.SetNumberFormat(kPattern);
    xlSheet->Range("d" + worth).SetValue(Value(QString::number(percent) + "% @ R" + QString::number(rand)));
    XlRange worthCell = xlSheet->Range("e" + worth);
    worthCell.SetValue(Value(vb::RoundHalfEven(shareCell.GetValue().toDouble() * rand, 2)));
    worthCell.SetNumberFormat(kPattern);
}

// The title row and the field headings of a data sheet; returns the fields' count.
int WriteSheetHeader(const ReportRun& run, Recordset& rs) {
    const int fields = rs.FieldCount();
    xlRow = 1;
    WriteTitleRow(xlSheet, COLUMN_Letter(std::max(fields, 2) - 1, true),
                  run.title + " From " + run.from + " To " + run.to);
    xlRow = 2;
    WriteFieldHeadings(xlSheet, rs);
    return fields;
}

// One sheet of the monthly crosstab: the months down column a, a vehicle a column, its chart after it.
void WriteMonthlySheet(const ReportRun& run, const ReportRun& pass, bool litres) {
    auto rs = db().OpenRecordset(MonthlyUsageStatement(pass, run.from, run.to, litres), RecordsetType::Snapshot);
    const int fields = WriteSheetHeader(run, *rs);
    const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
    xlRow = 2 + rows;
    run.Message(litres ? QStringLiteral("Formatting") : QStringLiteral("Formatting Cost"));
    const QString lastColumn = COLUMN_Letter(fields - 1, true);
    const QString last = Row(xlRow);
    xlSheet->Columns("a:a").SetColumnWidth(10);
    if (fields > 1) {
        xlSheet->Columns("b:" + lastColumn).SetColumnWidth(15);
        xlSheet->Columns("b:" + lastColumn).SetNumberFormat(kPattern);
        if (rows > 0)
            xlSheet->Range("b3", lastColumn + last).SetHorizontalAlignment(xl::Right);
    }
    XlRange table = xlSheet->Range("a2", lastColumn + last);
    table.SetBorderLineStyle(xl::Continuous);
    table.SetBorderWeight(xl::Thin);
    int font = 2;
    XlRange used = xlSheet->Range("a1", lastColumn + last);
    used.SetFontName(REPORT_FontName(font));
    used.SetFontSize(8);
    ReportPageSetup(xlSheet, xl::Landscape);
    PrintChart(run, ChartForm::Table, xlRow, fields);
}

} // namespace

void PrintChart(const ReportRun& run, ChartForm form, int lastRow, int lastColumn) {
    try {
        REPORT_AddSheet(xlBook);
        REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
        xlSheet = xlBook->Worksheets(xlBook->SheetsCount());
        xlSheet->Activate();
        const XlRef<XlWorksheet> source = xlBook->Sheets(xlBook->SheetsCount() - 1);
        const QString sourceName = source->Name();
        xlSheet->SetName("Chart " + sourceName);
        XlRef<XlChart> chart = xlSheet->ChartObjectsAdd(kChartLeft, kChartTop, kChartWidth, kChartHeight);
        const QString range = form == ChartForm::Columns
                                  ? "A2:b" + Row(lastRow)
                                  : "A2:" + COLUMN_Offset("a", false, lastColumn - 1) + Row(lastRow);
        chart->SetSourceData(source->Range(range));
        chart->SetChartType(xl::ColumnClustered);
        chart->SetCategoryTickLabelSpacing(1);
        chart->SetPlotBy(xl::PlotByColumns);
        chart->SetHasTitle(true);
        if (form == ChartForm::Columns)
            chart->SetCategoryTickLabelOrientation(45);
        chart->SetChartTitleText(run.title + " " + sourceName);
        chart->SetLegendPosition(xl::Bottom);
        if (form == ChartForm::Table)
            ReportPageSetup(xlSheet, xl::Landscape);
    } catch (const std::exception& e) {
        const auto* numbered = dynamic_cast<const NumberedError*>(&e);
        MsgBox("Error In PrintChart:" + (numbered ? numbered->description() : QString::fromUtf8(e.what())),
               MsgButtons::Ok);
    }
}

void TankTotals_Show(ReportRun& run, int mode) {
    FlexGrid& grid = *run.grid;
    run.Message("Getting things ready");
    FLEX_Reset(grid);
    QString sql;
    if (mode == 1) {
        if (!ShowSummary_Preflight(run, false))
            return;
        sql = QString("select strconv([fuel tank],3) as Tank, sum([total litres]) as [Total] from tmpsummary ") +
              " where tankid in (" + run.CatKmList + ")" + " group by [fuel tank]";
        grid.SetCols(2);
        grid.SetFormatString("Tank Number|Litres Used");
    } else {
        sql = QString("select strconv(tanknaam,3) as tank, sum(huidigevolume) as [Total] from tanks ") +
              " where transid in (" + run.CatKmList + ")" + " group by tanknaam";
        grid.SetCols(2);
        grid.SetFormatString("Tank Number|Litres Available");
    }
    auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
    run.Message("Showing Rows");
    int rows = 0;
    for (; !rs->Eof(); rs->MoveNext(), ++rows)
        grid.AddItem(FLEX_JoinRow({rs->Field("tank").toString(), vb::Format(rs->Field("Total"), kPattern)}));
    run.Message(QString::number(rows) + " Rows");
}

void TankTotals_Print(ReportRun& run) {
    CopyGridToSheet(run, "Fuel Tanks", "b", {2});
    run.Message("Formatting");
    run.Progress(90);
    xlSheet->Columns("a:a").SetColumnWidth(25);
    xlSheet->Columns("b:b").SetColumnWidth(15);
    xlSheet->Columns("b:b").SetNumberFormat(kPattern);
    ReportPageSetup(xlSheet);
    FinishReport(run, run.title);
}

void LitresTotals_Print(ReportRun& run) {
    const double rand = RebateSetting(0) / 100.0;
    const int percent = RebateSetting(1);
    const bool rebate = run.title == "Rebate Applicable";
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    const int passes = MeterSheets(run);
    for (int pass = 0; pass <= passes; ++pass) {
        const QString kind = MeterName(run, pass);
        // Each kind's sheet is named by the kind, so that a second pass never meets the first one's name.
        PassSheet(pass, kind);
        run.Message("Printing Header");
        const ReportRun narrowed = PassRun(run, pass);
        auto rs = db().OpenRecordset(FuelUsageStatement(narrowed, run.from, run.to, true), RecordsetType::Snapshot);
        WriteSheetHeader(run, *rs);
        run.Message("Printing Lines. May take a while.");
        int rows = 0;
        if (rs->Eof()) {
            XlRange label = xlSheet->Range("a3", "c3");
            xlSheet->Range("a3").SetValue(Value(QStringLiteral("No Vehicle(s) with Rebate Applicable")));
            label.SetMergeCells(true);
            xlRow = 3;
        } else {
            rows = xlSheet->Range("a3").CopyFromRecordset(*rs);
            xlRow = 2 + rows;
            if (rebate)
                WriteRebateBlock(xlRow, percent, rand);
        }
        run.Message("Formatting");
        const int last = rebate && rows > 0 ? xlRow + 3 : xlRow;
        if (rebate) {
            xlSheet->Columns("a:a").SetColumnWidth(10);
            xlSheet->Columns("b:d").SetColumnWidth(20);
            xlSheet->Columns("e:g").SetColumnWidth(12);
            xlSheet->Columns("e:g").SetNumberFormat(kPattern);
        } else {
            xlSheet->Columns("a:a").SetColumnWidth(30);
            xlSheet->Columns("b:b").SetColumnWidth(15);
            xlSheet->Columns("b:b").SetNumberFormat(kPattern);
        }
        int font = 2;
        XlRange used = xlSheet->Range("a1", "g" + Row(last));
        used.SetFontName(REPORT_FontName(font));
        used.SetFontSize(8);
        ReportPageSetup(xlSheet);
        if (!rebate)
            PrintChart(run, ChartForm::Columns, std::max(xlRow, 3));
        run.Progress(100.0 * (pass + 1) / (passes + 1));
    }
    xlSheet = xlBook->Sheets(1);
    xlSheet->Activate();
    FinishReport(run, run.title);
}

void MonthlyUsage_Print(ReportRun& run) {
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    const int passes = MeterSheets(run);
    for (int pass = 0; pass <= passes; ++pass) {
        const QString kind = MeterName(run, pass);
        const ReportRun narrowed = PassRun(run, pass);
        run.Message("Printing Lines. May take a while.");
        PassSheet(pass, "Litres " + kind);
        WriteMonthlySheet(run, narrowed, true);
        NextSheet("Cost " + kind);
        WriteMonthlySheet(run, narrowed, false);
        run.Progress(100.0 * (pass + 1) / (passes + 1));
    }
    xlSheet = xlBook->Sheets(1);
    xlSheet->Select();
    FinishReport(run, run.title);
}

void RegisterFuelTotalsReports() {
    RegisterReport("Fuel Usage", {[](ReportRun& run) { TankTotals_Show(run, 1); }, TankTotals_Print, {}, {}});
    RegisterReport("Fuel Available", {[](ReportRun& run) { TankTotals_Show(run, 2); }, TankTotals_Print, {}, {}});
    const auto view = [](ReportRun& run) { FillReportGrid(run, run.from, run.to, false); };
    const auto statement = [](const ReportRun& run, const QString& from, const QString& to, bool forPrint) {
        return FuelUsageStatement(run, from, to, forPrint);
    };
    for (const QString& title : {QStringLiteral("Litres Per Vehicle"), QStringLiteral("Litres Per Driver"),
                                 QStringLiteral("Litres Per Activity"), QStringLiteral("Rebate Applicable")})
        RegisterReport(title, {view, LitresTotals_Print, statement, {}});
    RegisterReport("Monthly Veh. Fuel Usage", {view,
                                               MonthlyUsage_Print,
                                               [](const ReportRun& run, const QString& from, const QString& to, bool) {
                                                   return MonthlyUsageStatement(run, from, to, true);
                                               },
                                               {}});
}
