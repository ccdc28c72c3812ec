// The report screen: its messages, the selection rules, the merged vehicle list and the generic grid fill.

#include "FillReportGrid.h"
#include "ReportRegistry.h"
#include "ReportTestStore.h"

#include <QCheckBox>
#include <QHeaderView>
#include <QLabel>

namespace {

class ReportScreenTest : public ReportStoreTest {};

TEST(MergeVehicleLists, JoinsBothListsKeepingEveryId) {
    struct Case {
        const char *hours, *km, *merged;
    } cases[] = {{"1,2", "3,4", "1,2,3,4"}, {"", "3,4", "3,4"}, {"1,2", "", "1,2"}, {"5", "5", "5,5"}, {"", "", ""}};
    for (const Case& c : cases)
        EXPECT_EQ(MergeVehicleLists(c.hours, c.km), c.merged) << c.hours << " + " << c.km;
}

TEST_F(ReportScreenTest, SelectionMessagesComeInOrderAndChangeNothing) {
    SeedRegister();
    frmVerslae& screen = open("");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    // No report chosen: the preview is not even offered.
    EXPECT_FALSE(screen.cmdApply->isEnabled());
    screen.cmdApply_Click();
    ASSERT_EQ(m_msgs.shown.size(), 1);
    EXPECT_EQ(m_msgs.shown[0].text, "You need to select a report!");
    EXPECT_EQ(m_msgs.shown[0].title, " Reports");
    EXPECT_EQ(m_msgs.shown[0].icon, MsgIcon::Exclamation);

    open("Fuel Purchase");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    open("Vehicle List");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    EXPECT_EQ(m_msgs.texts(), QStringList({"You need to select a report!", "Select a Tank", "Select a Product"}));
    EXPECT_EQ(m_msgs.shown[2].icon, MsgIcon::Exclamation);
    EXPECT_EQ(m_screen->grd3->Rows(), 1);
    EXPECT_FALSE(m_screen->cmdPrint->isEnabled());
}

TEST_F(ReportScreenTest, OnlyOneTankForTheDetailAndTheSummary) {
    SeedRegister();
    frmVerslae& screen = open("Detail per Fuel Tank");
    EXPECT_FALSE(screen.lstCat->isVisible());
    EXPECT_EQ(screen.lstCatKm->count(), 2);
    click(screen.lstCatKm, "MAIN DIESEL");
    click(screen.lstCatKm, "PETROL");
    EXPECT_EQ(m_msgs.texts(), QStringList({"Only one Fuel Tank allowed"}));
    EXPECT_EQ(SelectedItemsList(screen.lstCatKm, true), "MAIN DIESEL");

    open("Fuel Purchase");
    click(m_screen->lstCatKm, "MAIN DIESEL");
    click(m_screen->lstCatKm, "PETROL");
    EXPECT_EQ(m_msgs.shown.size(), 1);
    EXPECT_EQ(SelectedItemsList(m_screen->lstCatKm, true), "MAIN DIESEL,PETROL");
}

TEST_F(ReportScreenTest, CategoryClicksSelectTheirVehiclesAndBothKindsMergeIntoOneList) {
    SeedRegister();
    frmVerslae& screen = open("Vehicle List");
    EXPECT_EQ(screen.lstCat->count(), 1); // the hour category
    EXPECT_EQ(screen.lstCatKm->count(), 1);
    click(screen.lstCat, "TRACTORS");
    click(screen.lstCatKm, "BAKKIES");
    EXPECT_EQ(SelectedItemsList(screen.lstProd, true), "JOHN DEERE (JD 1),MASSEY (MF 2)");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    EXPECT_EQ(screen.LastRun().mergedIds, QString("%1,%2,%3,%4").arg(m_h1).arg(m_h2).arg(m_k1).arg(m_k2));
    EXPECT_EQ(screen.grd3->Rows(), 1 + 4 + 1); // heading, four vehicles, the sums
    EXPECT_TRUE(screen.cmdPrint->isEnabled());
    // A second click on the category takes its vehicles out again.
    click(screen.lstCat, "TRACTORS");
    EXPECT_EQ(SelectedItemsList(screen.lstProd, false), "");
}

TEST_F(ReportScreenTest, KilometreVehiclesAloneGiveTheirReport) {
    SeedRegister();
    frmVerslae& screen = open("Vehicle List");
    click(screen.lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    ASSERT_EQ(screen.grd3->Rows(), 3);
    EXPECT_EQ(row(1).mid(0, 6), QStringList({"Nissan", "Model", "CA 2", "Kilometer", "No", "100.00"}));
    EXPECT_EQ(screen.grd3->TextMatrix(0, 11), "Purchase Price");
    EXPECT_EQ(screen.grd3->TextMatrix(2, 11), "1 000.00");
    EXPECT_EQ(screen.grd3->TextMatrix(2, 14), "1 500.00");
}

TEST_F(ReportScreenTest, OpeningFuelConsumptionRepairsTheFuelRecords) {
    SeedRegister();
    issue(m_k1, m_t1, "2025/01/25", 1400, 1450, 0);
    open("Fuel Consumption");
    // The two 530-hour issues of one day: no distance, so the earlier reading moves back one unit.
    EXPECT_EQ(scalar("select count(*) from vecfuel where kmread - previouskmread = 0"), "0");
    EXPECT_EQ(scalar("select previouskmread from vecfuel where litres = 5 and voertuigid = " + QString::number(m_h1)),
              "531");
    EXPECT_EQ(scalar("select litres from vecfuel where datum = '2025/01/25'"), "1");
    // The dates come from the fuel issues.
    EXPECT_EQ(m_screen->dtpFrom->date(), QDate(2024, 11, 20));
    EXPECT_EQ(m_screen->dtpTo->date(), QDate(2025, 1, 25));
}

TEST_F(ReportScreenTest, ALastingFailureComesBackUntilItsCauseIsGone) {
    SeedRegister();
    int calls = 0;
    RegisterReport("Litres Used", {[&calls](ReportRun&) {
                                       if (++calls < 3)
                                           throw DbError(3078, "no such table: gone");
                                   },
                                   {},
                                   {},
                                   {}});
    frmVerslae& screen = open("Litres Used");
    click(screen.lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_EQ(calls, 3);
    EXPECT_EQ(m_msgs.texts(),
              QStringList({"ERROR in GetReport no such table: gone", "ERROR in GetReport no such table: gone"}));
}

// A statement of the test's own under a report's name.
void RegisterStatement(const QString& title, const QString& sql) {
    RegisterReport(title, {[](ReportRun& run) { FillReportGrid(run, run.from, run.to, false); },
                           {},
                           [sql](const ReportRun&, const QString&, const QString&, bool) { return sql; },
                           {}});
}

TEST_F(ReportScreenTest, FillReportGridFollowsTheReportsName) {
    SeedRegister();
    const QString sql = "select datum as [Date], datum as [When], litres, iif(litres > 20, null, litres) as [Maybe] "
                        "from vecfuel where tankid = 1 and litres >= 20 order by transid";
    RegisterStatement("Litres Used", sql);
    RegisterStatement("Detailed Veh. Fuel Usage", sql);
    RegisterStatement("Monthly Veh. Fuel Usage", "select datum as [Date], sum(litres) as [Total] from vecfuel "
                                                 "where datum = '2024/12/07' group by datum");
    RegisterStatement("Litres Per Vehicle", "select * from vecfuel where litres > 1000");

    frmVerslae& screen = open("Litres Used");
    click(screen.lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_EQ(screen.grd3->FormatString(), "Date|When|Litres|Maybe");
    EXPECT_EQ(row(1), QStringList({"2024/12/20", "2024/12/20", "20.00", "20.00"}));
    EXPECT_EQ(row(2), QStringList({"2024/12/07", "2024/12/07", "50.00", ""}));
    EXPECT_EQ(screen.lblMsg->text(), "3 Rows");

    open("Detailed Veh. Fuel Usage");
    click(m_screen->lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    EXPECT_EQ(row(2), QStringList({"2024/12/07", "2024/12/07", "50.00", "0.00"}));

    open("Monthly Veh. Fuel Usage");
    click(m_screen->lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    EXPECT_EQ(row(1), QStringList({"December 2024", "50.00"}));
    EXPECT_EQ(m_screen->lblMsg->text(), "'Print View' To view more options and Charts");

    open("Litres Per Vehicle");
    click(m_screen->lstProdkm, "NISSAN (CA 2)");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    EXPECT_EQ(m_msgs.last(), "Nothing to show for Litres Per Vehicle");
    EXPECT_EQ(m_msgs.shown.last().icon, MsgIcon::Information);
    EXPECT_FALSE(m_screen->cmdPrint->isEnabled());
}

// The filled screen at the office's usual size.
TEST_F(ReportScreenTest, FilledPreviewFitsTheUsualScreen) {
    SeedRegister();
    frmVerslae& screen = open("Detail per Fuel Tank");
    screen.resize(1260, 700);
    click(screen.lstCatKm, "MAIN DIESEL");
    range("2024/12/01", "2025/01/31");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_LE(screen.minimumSizeHint().width(), 1260);
    EXPECT_LE(screen.minimumSizeHint().height(), 700);
    // Every column of the ledger is in sight without scrolling sideways.
    EXPECT_LE(screen.grd3->horizontalHeader()->length(), screen.grd3->viewport()->width());
}

} // namespace
