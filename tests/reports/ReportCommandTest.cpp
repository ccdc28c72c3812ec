// `orvel report NAME ...`: the report screen driven offscreen, its grid or its workbook as the output.

#include "FuelUsageTestStore.h"

#include <QFileInfo>

namespace {

class ReportCommandTest : public FuelUsageStoreTest {};

TEST_F(ReportCommandTest, ViewPrintsTheGridAndPrintSavesTheWorkbook) {
    SeedRegister();
    const QStringList summary = {
        "Summary per Fuel Tank", "--tank", "MAIN DIESEL", "--from", "2024/12/01", "--to", "2025/01/31"};
    const CommandRun view = runReportCommand(summary + QStringList{"--view"});
    ASSERT_EQ(view.exitCode, 0) << view.err.toStdString();
    const QStringList lines = view.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[0], "Fuel Tank \tVehicle\tTotal Litres\tOpen Km\tClose Km\tCovered\tKm/L\tType");
    EXPECT_TRUE(lines[1].startsWith("Main Diesel\tToyota (ca 1)\t")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].endsWith("\t 7.50\tKm/L")) << lines[1].toStdString();

    const CommandRun print = runReportCommand(summary);
    ASSERT_EQ(print.exitCode, 0) << print.err.toStdString();
    const QString path = print.out.trimmed();
    EXPECT_TRUE(path.endsWith(".xlsx") && QFileInfo::exists(path)) << path.toStdString();
    EXPECT_TRUE(print.err.contains("Summary per Fuel Tank Completed")) << print.err.toStdString();

    // Every category through Select All: the vehicle list of both kinds.
    const CommandRun all = runReportCommand({"Vehicle List", "--all", "--view"});
    ASSERT_EQ(all.exitCode, 0) << all.err.toStdString();
    EXPECT_EQ(all.out.split('\n', Qt::SkipEmptyParts).size(), 1 + 4 + 1);
}

TEST_F(ReportCommandTest, ALineReportSavesUnderItsNameWithoutTheSlash) {
    SeedUsage();
    const CommandRun r = runReportCommand({"Litres Per Activity/Vehicle", "--item", "NISSAN (CA 2)", "--from",
                                           "2024/12/01", "--to", "2025/01/31", "--by-date"});
    ASSERT_EQ(r.exitCode, 0) << r.err.toStdString();
    const QString path = r.out.trimmed();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith("Litres Per ActivityVehicle-")) << path.toStdString();
    EXPECT_TRUE(r.err.contains("Litres Per Activity/Vehicle Completed")) << r.err.toStdString();
    WorkbookReader saved;
    ASSERT_TRUE(saved.open(path));
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km"}));
    EXPECT_DOUBLE_EQ(saved.sheet(0)->number("F4"), 2150);

    // The log sheet prints on opening: no selection is asked for.
    const CommandRun log = runReportCommand({"Vehicle Fuel Log Sheet"});
    ASSERT_EQ(log.exitCode, 0) << log.err.toStdString();
    EXPECT_TRUE(QFileInfo(log.out.trimmed()).fileName().startsWith("Vehicle Fuel Log Sheet-")) << log.out.toStdString();
    EXPECT_FALSE(log.err.contains("Select a Product")) << log.err.toStdString();
}

TEST_F(ReportCommandTest, ALastingFailureEndsTheRunInsteadOfLooping) {
    SeedRegister();
    exec("update voertuig set boek = 'none'");
    const CommandRun failed = runReportCommand({"Vehicle List", "--all", "--view"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.err.count("ERROR in GetReport "), 1) << failed.err.toStdString();

    const CommandRun nothing = runReportCommand({"Fuel Purchase", "--view"});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_TRUE(nothing.err.contains("Select a Tank"));
    EXPECT_EQ(runReportCommand({"Fuel Purchase", "--tank", "NO SUCH TANK"}).exitCode, 1);
}

} // namespace
