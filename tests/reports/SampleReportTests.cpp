// A sample report built the way the reports build theirs: title, headings, data with number formats,
// totals, a chart sheet, landscape. Set ORVEL_SAMPLE_OUT to a folder to keep a copy for looking at.

#include "ReportEngine.h"

#include "HomeFolder.h"
#include "ScriptedMessageService.h"
#include "TempHome.h"
#include "WorkbookReader.h"

#include <QFile>
#include <QFileInfo>
#include <gtest/gtest.h>
#include <ostream>

// Readable texts in failure messages.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

struct Row {
    const char* tank;
    const char* date;
    const char* vehicle;
    double open, added, out;
};

QString BuildSample() {
    const Row rows[] = {
        {"Main Diesel", "2024/01/01", "Open", 12500, 0, 0},
        {"Main Diesel", "2024/01/03", "Toyota Hilux (CA 123-456)", 0, 0, 85.5},
        {"Main Diesel", "2024/01/04", "Bulk purchase", 0, 20000, 0},
        {"Main Diesel", "2024/01/09", "Bell Loader (B12)", 0, 0, 312.75},
        {"Main Diesel", "2024/01/15", "Isuzu KB (CA 987-654)", 0, 0, 64.2},
        {"Main Diesel", "2024/01/22", "Stock take loss", 0, 0, 18},
        {"Main Diesel", "2024/01/30", "Nissan UD (CA 555-111)", 0, 0, 1420.9},
    };
    const char* headings[] = {"Fuel Tank", "Date", "Vehicle", "Open Litres", "Litres +", "Litres -", "Balance"};

    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    QString title = "Detail per Fuel Tank";
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
    xlRow = 1;
    REPxlFmt(xlSheet, "a1", "g1", "Detail per Fuel Tank 2024/01/01 To 2024/01/31", 2, 10, true, false, false, true,
             true, "", 1, -4108, -4108, 2, 0, 18);
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "g1", 0);
    xlRow = 2;
    for (int c = 0; c < 7; ++c) {
        const QString cell = COLUMN_Letter(c, true) + QString::number(xlRow);
        REPxlFmt(xlSheet, cell, cell, headings[c], 2, 10, true, false, false, true, true, "", 1, -4108, -4108, 2, 0,
                 25);
    }
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "g2", 1);
    xlRow = 3;
    double balance = 0;
    for (const Row& r : rows) {
        balance += r.open + r.added - r.out;
        const Value values[] = {r.tank, r.date, r.vehicle, r.open, r.added, r.out, balance};
        for (int c = 0; c < 7; ++c) {
            const QString cell = COLUMN_Letter(c, true) + QString::number(xlRow);
            const int align = c < 3 ? -4131 : -4152;
            REPxlFmt(xlSheet, cell, cell, values[c], 2, 8, false, false, false, true, true,
                     c < 3 ? "" : "### ### ##0.00", 1, align, -4108, 2, 0, 18);
        }
        ++xlRow;
    }
    const int last = xlRow - 1;
    REPxlFmt(xlSheet, "c" + QString::number(xlRow), "c" + QString::number(xlRow), "Total", 2, 8, true, false, false,
             false, false, "", 1, -4131, -4108, 2, 0, 18);
    for (int c = 3; c < 7; ++c) {
        const QString letter = COLUMN_Letter(c, true);
        const double sum = xlApp->WorksheetFunction().Sum(xlSheet->Range(letter + "3", letter + QString::number(last)));
        const QString cell = letter + QString::number(xlRow);
        REPxlFmt(xlSheet, cell, cell, sum, 2, 8, true, false, false, false, false, "### ### ##0.00", 1, -4152, -4108, 2,
                 0, 18);
    }
    xlSheet->Columns("a:a").SetColumnWidth(12);
    xlSheet->Columns("b:b").SetColumnWidth(10);
    xlSheet->Columns("c:c").SetColumnWidth(24);
    xlSheet->Columns("d:g").SetColumnWidth(11);
    REPORT_PageSetup(xlSheet, "$1:$2", "A:A", "Date &D Time &T", "Page #&P Of &N Pages", 2, "");

    // A chart of the litres out per vehicle, on a sheet of its own.
    REPORT_AddSheet(xlBook);
    REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
    xlSheet = xlBook->Worksheets(REPORT_GetSheetIndex());
    xlSheet->Activate();
    xlSheet->SetName("Chart Detail per Fuel Tank");
    XlRef<XlChart> chart = xlSheet->ChartObjectsAdd(10, 10, 420, 260);
    chart->SetSourceData(xlBook->Sheets(xlBook->SheetsCount() - 1)->Range("C2", "f" + QString::number(last)));
    chart->SetChartType(xl::ColumnClustered);
    chart->SetCategoryTickLabelSpacing(1);
    chart->SetPlotBy(xl::PlotByColumns);
    chart->SetHasTitle(true);
    chart->SetCategoryTickLabelOrientation(45);
    chart->SetChartTitleText("Detail per Fuel Tank Litres");
    chart->SetLegendPosition(-4107);
    REPORT_PageSetup(xlSheet, "$1:$2", "A:A", "Date &D Time &T", "Page #&P Of &N Pages", 2, "");
    xlBook->Sheets(1)->Activate();

    const QString path = REPORT_SaveReport(xlApp, "Reports", "Detail per Fuel Tank");
    REPORT_HideExcel(xlApp, false);
    REPORT_Workbook_Terminate();
    return path;
}

TEST(SampleReport, ReadsAsAPrintedReport) {
    TempHome home;
    SetHomeFolder(home.path());
    ScriptedMessageService messages;
    const QString path = BuildSample();
    ASSERT_FALSE(path.isEmpty());
    EXPECT_TRUE(messages.shown.isEmpty());
    const QString keep = qEnvironmentVariable("ORVEL_SAMPLE_OUT");
    if (!keep.isEmpty()) {
        QFile::remove(keep + "/sample-report.xlsx");
        QFile::copy(path, keep + "/sample-report.xlsx");
    }

    WorkbookReader book;
    ASSERT_TRUE(book.open(path)) << book.error().toStdString();
    EXPECT_EQ(book.sheetNames(), (QStringList{"Detail per Fuel Tank", "Chart Detail per Fuel Tank"}));
    const WbSheet* s = book.sheet(0);
    EXPECT_TRUE(s->merged("A1:G1"));
    EXPECT_EQ(s->cell("A1")->style.fillRgb, "D9D9D9");
    EXPECT_EQ(s->cell("G2")->style.fillRgb, "F2F2F2");
    EXPECT_EQ(s->text("C10"), "Total");
    EXPECT_DOUBLE_EQ(s->number("E10"), 20000);
    EXPECT_DOUBLE_EQ(s->number("F10"), 1901.35);
    EXPECT_DOUBLE_EQ(s->number("G9"), 12500 + 20000 - 1901.35);
    EXPECT_EQ(s->cell("G9")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(s->orientation, "landscape");
    EXPECT_EQ(s->lastRow(), 10);
    EXPECT_EQ(s->lastColumn(), 7);
    EXPECT_EQ(WorkbookReader::newestIn(home.path() + "/Reports/Reports"), QFileInfo(path).absoluteFilePath());
    const WbSheet* chartSheet = book.sheet(1);
    ASSERT_EQ(chartSheet->charts.size(), 1u);
    EXPECT_EQ(chartSheet->charts[0].series.size(), 3u); // Open Litres, Litres +, Litres -
    EXPECT_EQ(chartSheet->charts[0].series[2].values, "'Detail per Fuel Tank'!$F$3:$F$9");
}

} // namespace
