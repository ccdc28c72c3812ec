// `orvel report` on a line report of the fuel usage family: the grid's cells on standard output, the workbook
// saved under its name without "/".

#include "FuelUsageTestStore.h"

#include <QFileInfo>

namespace {

class FuelUsageCommandTest : public FuelUsageStoreTest {
protected:
    int run(const QStringList& args, QString& out, QString& err) {
        const CommandRun r = runReportCommand(args);
        out = r.out;
        err = r.err;
        return r.exitCode;
    }
};

TEST_F(FuelUsageCommandTest, LitresPerActivityVehicleWritesTheScreensCells) {
    SeedUsage();
    const QStringList args{"Litres Per Activity/Vehicle",
                           "--item",
                           "NISSAN (CA 2)",
                           "--from",
                           "2024/12/01",
                           "--to",
                           "2025/01/31",
                           "--by-date"};
    QString out, err;
    ASSERT_EQ(run(args + QStringList{"--view"}, out, err), 0) << err.toStdString();
    EXPECT_EQ(out.split('\n', Qt::SkipEmptyParts),
              QStringList({"Date\tDriver\tVehicle\tActivity\tLitres\tOdometer",
                           "2024/12/10\tJan Smit\tNissan(ca 2)\tPloughing\t  25.00\t 2 100.00",
                           "2025/01/05\tPiet Nel\tNissan(ca 2)\tPloughing\t  5.00\t 2 150.00"}));

    ASSERT_EQ(run(args, out, err), 0) << err.toStdString();
    const QString path = out.trimmed();
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith("Litres Per ActivityVehicle-")) << path.toStdString();
    EXPECT_TRUE(err.contains("Litres Per Activity/Vehicle Completed")) << err.toStdString();
    WorkbookReader saved;
    ASSERT_TRUE(saved.open(path));
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km"}));
    EXPECT_DOUBLE_EQ(saved.sheet(0)->number("F4"), 2150);
}

} // namespace

namespace {

TEST_F(FuelUsageCommandTest, TheLogSheetPrintsOnOpeningAndNamesItsWorkbook) {
    QString out, err;
    ASSERT_EQ(run({"Vehicle Fuel Log Sheet"}, out, err), 0) << err.toStdString();
    EXPECT_TRUE(QFileInfo(out.trimmed()).fileName().startsWith("Vehicle Fuel Log Sheet-")) << out.toStdString();
    EXPECT_FALSE(err.contains("Select a Product")) << err.toStdString();
}

} // namespace
