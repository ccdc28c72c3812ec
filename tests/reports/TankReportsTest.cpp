// The tank summary and the tank detail: figures worked out by hand from the test register.

#include "ReportTestStore.h"

namespace {

class TankReportsTest : public ReportStoreTest {
protected:
    void preview(const QString& title, const QString& tank, const QString& from, const QString& to) {
        open(title);
        click(m_screen->lstCatKm, tank);
        range(from, to);
        QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    }
};

TEST_F(TankReportsTest, SummaryReadsFirstAndLastByCaptureAndTotalsPerCategory) {
    SeedRegister();
    preview("Summary per Fuel Tank", "MAIN DIESEL", "2024/12/01", "2025/01/31");
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    ASSERT_EQ(m_screen->grd3->Rows(), 7);
    EXPECT_EQ(m_screen->grd3->FormatString(), "Fuel Tank |Vehicle|Total Litres|Open Km|Close Km|Covered|Km/L|Type");
    EXPECT_EQ(row(1),
              QStringList({"Main Diesel", "Toyota (ca 1)", "40.00", "1 100.00", "1 400.00", "300.00", "7.50", "Km/L"}));
    // One fill from this tank: nothing covered.
    EXPECT_EQ(row(2),
              QStringList({"Main Diesel", "Nissan (ca 2)", "5.00", "2 150.00", "2 150.00", "0.00", "0.00", "Km/L"}));
    EXPECT_EQ(row(3),
              QStringList({"Main Diesel", "John Deere (jd 1)", "85.00", "510.00", "530.00", "20.00", "0.24", "L/hr"}));
    EXPECT_EQ(row(4).mid(0, 4), QStringList({"Total", "", "130.00", ""}));
    EXPECT_EQ(row(5).mid(0, 4), QStringList({"Total Bakkies", "", "45.00", "34.62"}));
    EXPECT_EQ(row(6).mid(0, 4), QStringList({"Total Tractors", "", "85.00", "65.38"}));
    EXPECT_TRUE(m_screen->cmdPrint->isEnabled());

    // The vehicle that drew from both tanks has its own readings on the other.
    preview("Summary per Fuel Tank", "PETROL", "2024/12/01", "2025/01/31");
    EXPECT_EQ(row(1).mid(1, 6), QStringList({"Nissan (ca 2)", "25.00", "2 100.00", "2 100.00", "0.00", "0.00"}));

    preview("Summary per Fuel Tank", "PETROL", "2030/01/01", "2030/01/31");
    ASSERT_EQ(m_screen->grd3->Rows(), 2);
    EXPECT_EQ(row(1).mid(0, 3), QStringList({"Total", "", "0.00"}));
}

TEST_F(TankReportsTest, ARowOfNoLitresStopsTheUpdatesSilently) {
    exec("insert into departments (id, description) values (1, 'WORKSHOP')");
    const int cat = addCategory("BAKKIES", false);
    const int first = addVehicle(cat, "AUDI", "A 1", false);
    const int second = addVehicle(cat, "BMW", "B 2", false);
    const int tank = addTank("MAIN DIESEL");
    issue(first, tank, "2025/01/02", 10, 20, 0);
    issue(second, tank, "2025/01/03", 10, 90, 8);
    preview("Summary per Fuel Tank", "MAIN DIESEL", "2025/01/01", "2025/01/31");
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    EXPECT_EQ(row(1).mid(2), QStringList({"0.00", "100.00", "250.00", "150.00", "10.00", "km"}));
    EXPECT_EQ(row(2).mid(2), QStringList({"8.00", "100.00", "250.00", "150.00", "10.00", "km"}));
}

TEST_F(TankReportsTest, SummaryWorkbookHoldsTheTableAndTheShares) {
    SeedRegister();
    preview("Summary per Fuel Tank", "MAIN DIESEL", "2024/12/01", "2025/01/31");
    QTest::mouseClick(m_screen->cmdPrint, Qt::LeftButton);
    EXPECT_EQ(m_msgs.texts(), QStringList({"Print Summary per Fuel Tank?", "Summary per Fuel Tank Completed"}));
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames().size(), 1);
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.name, "MAIN DIESEL");
    EXPECT_EQ(s.cells.at("A1").text, "Summary per Fuel Tank From 2024/12/01 To 2025/01/31");
    EXPECT_TRUE(s.merges.contains("A1:H1"));
    EXPECT_EQ(s.cells.at("C2").text, "Total Litres");
    // Ordered by vehicle: John Deere, Nissan, Toyota.
    EXPECT_EQ(s.cells.at("B3").text, "John Deere (jd 1)");
    EXPECT_DOUBLE_EQ(s.cells.at("C5").number, 40);
    EXPECT_EQ(s.cells.at("C5").style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(s.cells.at("B6").text, "Total");
    EXPECT_DOUBLE_EQ(s.cells.at("C6").number, 130);
    EXPECT_EQ(s.cells.at("B7").text, "Bakkies");
    EXPECT_EQ(s.cells.at("D7").text, "34.62%");
    EXPECT_EQ(s.cells.at("D8").style.horizontal, "right");
}

TEST_F(TankReportsTest, DetailCarriesTheBalanceFromTheOpening) {
    SeedRegister();
    preview("Detail per Fuel Tank", "MAIN DIESEL", "2024/12/01", "2025/01/31");
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    const QStringList expected[] = {
        {"Main Diesel", "2024/12/01", "Opening Balance", "985.00", "0.00", "0.00", "985.00"},
        {"Main Diesel", "2024/12/05", "Toyota Ca 1 (1100)", "985.00", "0.00", "10.00", "975.00"},
        {"Main Diesel", "2024/12/07", "John Deere Jd 1 (510)", "985.00", "0.00", "50.00", "925.00"},
        {"Main Diesel", "2024/12/20", "Fuel Purchase (INV2)", "985.00", "500.00", "0.00", "1 425.00"},
        {"Main Diesel", "2024/12/20", "Toyota Ca 1 (1300)", "985.00", "0.00", "20.00", "1 405.00"},
        {"Main Diesel", "2024/12/31", "Tank Stocktake (Loss)", "985.00", "0.00", "12.00", "1 393.00"},
        {"Main Diesel", "2025/01/05", "Nissan Ca 2 (2150)", "985.00", "0.00", "5.00", "1 388.00"},
        {"Main Diesel", "2025/01/10", "Toyota Ca 1 (1400)", "985.00", "0.00", "10.00", "1 378.00"},
        {"Main Diesel", "2025/01/15", "John Deere Jd 1 (530)", "985.00", "0.00", "35.00", "1 343.00"},
        {"Main Diesel", "2025/01/20", "Tank Stocktake (Gain)", "985.00", "8.00", "0.00", "1 351.00"},
        {"", "", "", "", "1 493.00", "142.00", ""},
    };
    ASSERT_EQ(m_screen->grd3->Rows(), 12);
    for (int r = 1; r <= 11; ++r)
        EXPECT_EQ(row(r), expected[r - 1]) << "row " << r;
    m_screen->grd3->SetRow(11);
    m_screen->grd3->SetCol(6);
    EXPECT_EQ(m_screen->grd3->CellBackColor(), QColor(0xE0, 0xE0, 0xE0));

    QTest::mouseClick(m_screen->cmdPrint, Qt::LeftButton);
    const WorkbookReader saved = book();
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.name, "MAIN DIESEL");
    EXPECT_EQ(s.cells.at("C3").text, "Opening Balance");
    EXPECT_DOUBLE_EQ(s.cells.at("E3").number, 985); // the opening stands in the added column
    EXPECT_DOUBLE_EQ(s.cells.at("E13").number, 1493);
    EXPECT_DOUBLE_EQ(s.cells.at("F13").number, 142);
    EXPECT_DOUBLE_EQ(s.cells.at("G12").number, 1351);
    EXPECT_EQ(s.cells.at("F13").style.numberFormat, "### ### ##0.00");
}

TEST_F(TankReportsTest, ATankWithoutMovementShowsItsOpeningOnly) {
    SeedRegister();
    preview("Detail per Fuel Tank", "PETROL", "2025/01/01", "2025/01/31");
    ASSERT_EQ(m_screen->grd3->Rows(), 3);
    EXPECT_EQ(row(1), QStringList({"Petrol", "2025/01/01", "Opening Balance", "275.00", "0.00", "0.00", "275.00"}));
    EXPECT_EQ(row(2), QStringList({"", "", "", "", "275.00", "0.00", ""}));
}

TEST_F(TankReportsTest, AnApostropheStopsTheLedgerWithItsMessage) {
    SeedRegister();
    const int vehicle = addVehicle(m_kmCat, "O'BRIEN", "OB 1", false);
    issue(vehicle, m_t2, "2025/01/04", 10, 20, 4);
    preview("Detail per Fuel Tank", "PETROL", "2025/01/01", "2025/01/31");
    ASSERT_EQ(m_msgs.shown.size(), 1);
    EXPECT_TRUE(m_msgs.last().startsWith("ERROR in ShowDetail_UpdateTable ")) << m_msgs.last().toStdString();
    EXPECT_EQ(m_screen->grd3->Rows(), 1);
    EXPECT_EQ(m_screen->grd3->TextMatrix(0, 2), "Vehicle");
    EXPECT_FALSE(m_screen->cmdPrint->isEnabled());
}

} // namespace
