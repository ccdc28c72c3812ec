// The line reports of the fuel usage family and the log sheet, driven from the report screen: grid rows and
// workbooks against the figures of the usage register (FuelUsageTestStore.h).

#include "FuelUsageReports.h"
#include "FuelUsageTestStore.h"

#include <QApplication>
#include <QCheckBox>
#include <QFileInfo>
#include <QHeaderView>

namespace {

class FuelUsageLinesTest : public FuelUsageStoreTest {
protected:
    // The screen on `title` with every vehicle of both kinds selected, December and January, "Date" order as
    // asked; the preview shown.
    frmVerslae& preview(const QString& title, bool byDate) {
        frmVerslae& screen = open(title);
        screen.chkAllCat->click();
        screen.chkAllCatKm->click();
        range("2024/12/01", "2025/01/31");
        if (byDate)
            screen.chkByDate->click();
        QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
        return screen;
    }
    void print() {
        m_msgs.clear();
        QTest::mouseClick(m_screen->cmdPrint, Qt::LeftButton);
    }
    QStringList column(const WbSheet& s, const QString& letter) const {
        QStringList out;
        for (int r = 3; r <= s.lastRow(); ++r)
            out << s.shown(letter + QString::number(r));
        return out;
    }
};

TEST_F(FuelUsageLinesTest, GridRowsFollowEntryOrDateOrderUnderTheReportsHeadings) {
    SeedUsage();
    struct Case {
        const char* title;
        bool byDate;
        const char* heading;
        int row;
        QStringList cells;
    };
    const Case cases[] = {
        // Entry order: the tractor's January issue is the fourth entered.
        {"Litres Per Activity/Vehicle",
         false,
         "Date|Driver|Vehicle|Activity|Litres|Odometer",
         4,
         {"2025/01/15", "Jan Smit", "John Deere(jd 1)", "Ploughing", "30.00", "530.00"}},
        {"Litres Per Activity/Vehicle",
         true,
         "Date|Driver|Vehicle|Activity|Litres|Odometer",
         4,
         {"2024/12/20", "Piet Nel", "Toyota(ca 1)", "Delivery", "20.00", "1 300.00"}},
        {"Litres Used",
         true,
         "Date|Vehicle|Prev Km|Curr Km|Km|Litres Used",
         7,
         {"2025/01/15", "JOHN DEERE(JD 1)", "510.00", "530.00", "20.00", "30.00"}},
        {"Litres Per Driver/Vehicle",
         true,
         "Date|Vehicle|description|Litres",
         1,
         {"2024/12/05", "TOYOTA(CA 1)", "JAN SMIT", "10.00"}},
        {"Pump Readings",
         true,
         "Date|Tank|Category|Vehicle|Driver|Activity|Litres|Pump Reading Before|Pump Reading After",
         3,
         {"2024/12/10", "Petrol", "Bakkies", "NISSAN(CA 2)", "JAN SMIT", "PLOUGHING", "25.00", "0.00", "25.00"}},
        // 20 litres for 200 km at R20.
        {"Detailed Veh. Fuel Usage",
         true,
         "Date|Tank|Category|Vehicle|Driver|Activity|Litres|Km/Hours Read|Prev Km|Km|Km/l|L/100 Km|Cost/Litre|Cost/Km",
         4,
         {"2024/12/20", "Main Diesel", "Bakkies", "TOYOTA(CA 1)", "PIET NEL", "DELIVERY", "20.00", "1 300.00",
          "1 100.00", "200.00", "10.00", "10.00", "20.00", "2.00"}},
    };
    for (const Case& c : cases) {
        preview(c.title, c.byDate);
        EXPECT_EQ(m_screen->grd3->FormatString(), c.heading) << c.title;
        ASSERT_EQ(m_screen->grd3->Rows(), 8) << c.title;
        EXPECT_EQ(row(c.row), c.cells) << c.title;
        EXPECT_TRUE(m_screen->cmdPrint->isEnabled()) << c.title;
    }
}

TEST_F(FuelUsageLinesTest, BothKindsPrintTwoSheetsAndTheSavedNameLosesItsSlash) {
    SeedUsage();
    preview("Litres Per Driver/Vehicle", true);
    print();
    EXPECT_EQ(m_msgs.texts(), QStringList({"Print Litres Per Driver/Vehicle?", "Litres Per Driver/Vehicle Completed"}));
    const QString path = m_screen->LastRun().savedPath;
    EXPECT_TRUE(QFileInfo(path).fileName().startsWith("Litres Per DriverVehicle-")) << path.toStdString();
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Hours"}));
    const WbSheet& km = *saved.sheet(0);
    EXPECT_EQ(km.text("A1"), "Litres Per Driver/Vehicle From 2024/12/01 To 2025/01/31");
    EXPECT_TRUE(km.merged("A1:D1"));
    EXPECT_EQ(km.text("C2"), "description");
    EXPECT_EQ(column(km, "A"), QStringList({"2024/12/05", "2024/12/10", "2024/12/20", "2025/01/05", "2025/01/10"}));
    EXPECT_EQ(column(km, "C"), QStringList({"JAN SMIT", "JAN SMIT", "PIET NEL", "PIET NEL", "PIET NEL"}));
    EXPECT_DOUBLE_EQ(km.number("D5"), 20);
    EXPECT_EQ(km.cell("D5")->style.numberFormat, "### ### ##0.00");
    EXPECT_DOUBLE_EQ(km.cell("A7")->style.font.size, 8);
    EXPECT_EQ(km.cell("C7")->style.font.name, km.cell("A1")->style.font.name);
    EXPECT_EQ(km.orientation, "portrait");
    const WbSheet& hours = *saved.sheet(1);
    EXPECT_EQ(column(hours, "B"), QStringList({"JOHN DEERE(JD 1)", "JOHN DEERE(JD 1)"}));
    EXPECT_DOUBLE_EQ(hours.number("D4"), 30);
}

TEST_F(FuelUsageLinesTest, PumpReadingsPrintOneLandscapeSheetOfBothKinds) {
    SeedUsage();
    preview("Pump Readings", true);
    print();
    const WorkbookReader saved = book();
    // The kind "Km/Hrs" is no name a sheet may carry: the sheet keeps the book's own name.
    ASSERT_EQ(saved.sheetNames(), QStringList({"Sheet 1"}));
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.orientation, "landscape");
    EXPECT_EQ(s.text("H2"), "Previous");
    EXPECT_EQ(s.text("I2"), "Current");
    EXPECT_EQ(s.lastRow(), 9);
    EXPECT_DOUBLE_EQ(s.number("I9"), 225);
    EXPECT_EQ(s.cell("H9")->style.numberFormat, "### ### ##0.00");
    // Each column as wide as its texts: the vehicle column takes "JOHN DEERE(JD 1)".
    EXPECT_GE(s.columnWidths.at(4), 16);
}

TEST_F(FuelUsageLinesTest, DetailedUsageIsLandscapeWithItsWidths) {
    SeedUsage();
    preview("Detailed Veh. Fuel Usage", false);
    print();
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Hours"}));
    const WbSheet& km = *saved.sheet(0);
    EXPECT_EQ(km.orientation, "landscape");
    EXPECT_TRUE(QFileInfo(m_screen->LastRun().savedPath).fileName().startsWith("Detailed Veh. Fuel Usage-"));
    EXPECT_DOUBLE_EQ(km.columnWidths.at(1), 8);
    EXPECT_DOUBLE_EQ(km.columnWidths.at(7), 12);
    EXPECT_DOUBLE_EQ(km.columnWidths.at(14), 6);
    // Hours: 20 hours on 30 litres at R21.
    const WbSheet& hours = *saved.sheet(1);
    EXPECT_DOUBLE_EQ(hours.number("J4"), 20);
    EXPECT_DOUBLE_EQ(hours.number("L4"), 150);
    EXPECT_DOUBLE_EQ(hours.number("N4"), 31.5);
}

TEST_F(FuelUsageLinesTest, LogSheetIsARuledFormEvenOnAnEmptyStore) {
    m_msgs.answer(MsgResult::Yes);
    open("Vehicle Fuel Log Sheet");
    EXPECT_EQ(m_msgs.texts(), QStringList({"Print Vehicle Fuel Log Sheet?",
                                           "'Vehicle Fuel Log Sheet' Completed. Select 'Vehicle Fuel Log Sheet' to "
                                           "Reprint"}));
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Log Sheet"}));
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.text("A1"), "Vehicle Log Sheet");
    EXPECT_TRUE(s.merged("A1:J1"));
    QStringList headings;
    for (const char* ref : {"A2", "B2", "C2", "D2", "E2", "F2", "G2", "H2", "I2", "J2"})
        headings << s.text(ref);
    EXPECT_EQ(headings, QStringList({"Date", "Tank", "Vehicle", "Driver", "Block/Cost Centre", "Activity", "Litres",
                                     "Km/Hours Read", "Time Start", "Time End"}));
    EXPECT_EQ(s.orientation, "landscape");
    for (int r = 3; r <= 20; ++r)
        EXPECT_DOUBLE_EQ(s.rowHeights.at(r), 18) << r;
    ASSERT_NE(s.cell("J20"), nullptr);
    EXPECT_EQ(s.cell("J20")->style.borderBottom, "thin");
    EXPECT_EQ(s.cell("A21"), nullptr);
    EXPECT_EQ(s.text("A3"), "");

    // No: nothing printed.
    m_msgs.clear();
    m_msgs.answer(MsgResult::No);
    open("Vehicle Fuel Log Sheet");
    EXPECT_EQ(m_msgs.texts(),
              QStringList({"Print Vehicle Fuel Log Sheet?", "Select Vehicle Fuel Log Sheet to Reprint"}));
}

TEST_F(FuelUsageLinesTest, AKindWithoutRowsStillHasItsSheet) {
    SeedUsage();
    // The Massey has no issue: its hour sheet has the label where rows would stand.
    frmVerslae& screen = open("Litres Used");
    click(screen.lstProdkm, "TOYOTA (CA 1)");
    click(screen.lstProd, "MASSEY (MF 2)");
    range("2024/12/01", "2025/01/31");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    print();
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Hours"}));
    EXPECT_EQ(saved.sheet(0)->lastRow(), 5);
    EXPECT_EQ(saved.sheet(1)->text("A3"), "No Vehicle(s) with Rebate Applicable");
}

// The detailed preview at the office's usual size.
TEST_F(FuelUsageLinesTest, DetailedPreviewFitsTheUsualScreen) {
    SeedUsage();
    frmVerslae& screen = preview("Detailed Veh. Fuel Usage", true);
    screen.resize(1260, 700);
    QApplication::processEvents();
    // Fourteen columns need the scroll bar; who, what and how much of each issue are in sight without it.
    const QHeaderView* header = screen.grd3->horizontalHeader();
    EXPECT_LE(header->sectionPosition(6) + header->sectionSize(6), screen.grd3->viewport()->width());
}

} // namespace
