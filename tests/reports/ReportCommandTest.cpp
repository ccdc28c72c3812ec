// `orvel report NAME ...`: the report screen driven offscreen, its grid or its workbook as the output.

#include "ReportTestStore.h"

#include <QFileInfo>

namespace {

class ReportCommandTest : public ReportStoreTest {
protected:
    CommandRun run(const QStringList& args) { return runReportCommand(args); }
};

TEST_F(ReportCommandTest, ViewPrintsTheGridAndPrintSavesTheWorkbook) {
    SeedRegister();
    const QStringList summary = {
        "Summary per Fuel Tank", "--tank", "MAIN DIESEL", "--from", "2024/12/01", "--to", "2025/01/31"};
    const CommandRun view = run(summary + QStringList{"--view"});
    ASSERT_EQ(view.exitCode, 0) << view.err.toStdString();
    const QStringList lines = view.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), 7);
    EXPECT_EQ(lines[0], "Fuel Tank \tVehicle\tTotal Litres\tOpen Km\tClose Km\tCovered\tKm/L\tType");
    EXPECT_TRUE(lines[1].startsWith("Main Diesel\tToyota (ca 1)\t")) << lines[1].toStdString();
    EXPECT_TRUE(lines[1].endsWith("\t 7.50\tKm/L")) << lines[1].toStdString();

    const CommandRun print = run(summary);
    ASSERT_EQ(print.exitCode, 0) << print.err.toStdString();
    const QString path = print.out.trimmed();
    EXPECT_TRUE(path.endsWith(".xlsx") && QFileInfo::exists(path)) << path.toStdString();
    EXPECT_TRUE(print.err.contains("Summary per Fuel Tank Completed")) << print.err.toStdString();

    // Every category through Select All: the vehicle list of both kinds.
    const CommandRun all = run({"Vehicle List", "--all", "--view"});
    ASSERT_EQ(all.exitCode, 0) << all.err.toStdString();
    EXPECT_EQ(all.out.split('\n', Qt::SkipEmptyParts).size(), 1 + 4 + 1);
}

TEST_F(ReportCommandTest, ALastingFailureEndsTheRunInsteadOfLooping) {
    SeedRegister();
    exec("update voertuig set boek = 'none'");
    const CommandRun failed = run({"Vehicle List", "--all", "--view"});
    EXPECT_EQ(failed.exitCode, 1);
    EXPECT_EQ(failed.err.count("ERROR in GetReport "), 1) << failed.err.toStdString();

    const CommandRun nothing = run({"Fuel Purchase", "--view"});
    EXPECT_EQ(nothing.exitCode, 1);
    EXPECT_TRUE(nothing.err.contains("Select a Tank"));
    EXPECT_EQ(run({"Fuel Purchase", "--tank", "NO SUCH TANK"}).exitCode, 1);
}

} // namespace
