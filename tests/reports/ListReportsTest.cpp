// The list reports: vehicles, consumption, purchases, stock takes, equipment and room stock.

#include "ReportEngine.h"
#include "ReportTestStore.h"

#include <QCheckBox>

namespace {

class ListReportsTest : public ReportStoreTest {};

TEST_F(ListReportsTest, VehicleListWorkbookHasThreeTabsPerMeterKind) {
    SeedRegister();
    frmVerslae& screen = open("Vehicle List");
    click(screen.lstProdkm, "TOYOTA (CA 1)");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    QTest::mouseClick(screen.cmdPrint, Qt::LeftButton);
    EXPECT_EQ(m_msgs.texts(), QStringList({"Print Vehicle List?", "Vehicle List Completed"}));
    EXPECT_EQ(book().sheetNames(), QStringList({"Veh Information Km", "Additional Info Km", "Specifications Km"}));

    m_msgs.clear();
    screen.chkAllCat->click();
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    QTest::mouseClick(screen.cmdPrint, Qt::LeftButton);
    const WorkbookReader saved = book();
    EXPECT_EQ(saved.sheetNames(),
              QStringList({"Veh Information Km", "Additional Info Km", "Specifications Km", "Veh Information Hours",
                           "Additional Info Hours", "Specifications Hours"}));
    const WbSheet& info = *saved.sheet(3);
    EXPECT_EQ(info.text("A1"), "Vehicle Listing From 2021/06/01 To 2023/03/03");
    EXPECT_TRUE(info.merged("A1:I1"));
    EXPECT_EQ(info.text("D2"), "Odometer");
    EXPECT_EQ(info.text("A3"), "John Deere");
    EXPECT_EQ(info.text("D3"), "Hour");
    EXPECT_EQ(info.text("G3"), "WORKSHOP");
    const WbSheet& money = *saved.sheet(4);
    EXPECT_EQ(money.text("F2"), "Purchase Price");
    EXPECT_DOUBLE_EQ(money.number("F5"), 2000);
    EXPECT_DOUBLE_EQ(money.number("H5"), 1800);
    EXPECT_DOUBLE_EQ(money.number("I5"), 3000);
    EXPECT_EQ(money.cell("I5")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(saved.sheet(5)->text("D2"), "Fuel Tank Size");
}

TEST_F(ListReportsTest, ConsumptionShowsPerIssueFiguresAndTotals) {
    SeedRegister();
    frmVerslae& screen = open("Fuel Consumption");
    click(screen.lstProdkm, "NISSAN (CA 2)");
    range("2024/12/01", "2025/01/31");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_EQ(screen.grd3->FormatString(),
              "Date|Make|Km |Litres|Cost/Litre|Km/Litre|Litre /100 Km|Cost Per Km/Hr|Total Rand");
    ASSERT_EQ(screen.grd3->Rows(), 4);
    EXPECT_EQ(row(1), QStringList({"2024/12/10", "Nissan (CA 2)", "100.00", "25.00", "20.00", "4.00", "25.00", "5.00",
                                   "500.00"}));
    EXPECT_EQ(row(2), QStringList({"2025/01/05", "Nissan (CA 2)", "50.00", "5.00", "20.00", "10.00", "10.00", "2.00",
                                   "100.00"}));
    EXPECT_EQ(row(3), QStringList({"Totals", "", "150.00", "30.00", "", "", "", "", "600.00"}));

    QTest::mouseClick(screen.cmdPrint, Qt::LeftButton);
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km"}));
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.text("A1"), "Vehicle Fuel Consumption From 2024/12/01 To 2025/01/31");
    EXPECT_EQ(s.text("I2"), "Cost/Km");
    EXPECT_DOUBLE_EQ(s.number("D3"), 100);
    EXPECT_DOUBLE_EQ(s.number("D5"), 150);
    EXPECT_DOUBLE_EQ(s.number("E5"), 30);
    EXPECT_DOUBLE_EQ(s.number("J5"), 600);
}

TEST_F(ListReportsTest, PurchasesListAndWorkbookSumLitresAndRands) {
    SeedRegister();
    frmVerslae& screen = open("Fuel Purchase");
    click(screen.lstCatKm, "MAIN DIESEL");
    range("2024/11/01", "2025/01/31");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_EQ(screen.grd3->FormatString(), "Tank #|Date|Supplier|Invoice|Litres Added|Cost|R/Litre");
    ASSERT_EQ(screen.grd3->Rows(), 4);
    EXPECT_EQ(row(1),
              QStringList({"Main Diesel", "2024/11/01", "_Fuel Supplier", "INV1", "1 000.00", "20 000.00", "20.00"}));
    EXPECT_EQ(row(3).mid(4, 2), QStringList({"1 500.00", "30 000.00"}));
    QTest::mouseClick(screen.cmdPrint, Qt::LeftButton);
    const WorkbookReader saved = book();
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.text("A1"), "Fuel Purchases 2024/11/01 To 2025/01/31");
    EXPECT_EQ(s.text("E2"), "Litres Added");
    EXPECT_DOUBLE_EQ(s.number("E5"), 1500);
    EXPECT_DOUBLE_EQ(s.number("F5"), 30000);
    // Dates are date cells; the report's own layout is portrait, one page wide.
    ASSERT_TRUE(s.cell("B3")->isNumber());
    EXPECT_DOUBLE_EQ(s.number("B3"), 45597); // 2024/11/01
    EXPECT_EQ(s.cell("B3")->style.numberFormat, "yyyy/mm/dd");
    EXPECT_TRUE(s.fitToPage);
    EXPECT_EQ(s.orientation, "portrait");
}

TEST_F(ListReportsTest, StockTakeWorkbookIsTheGridCopiedAndAnEmptyPreviewCannotPrint) {
    SeedRegister();
    frmVerslae& screen = open("Fuel Stock Take");
    range("2024/12/01", "2025/01/31");
    click(screen.lstCatKm, "PETROL"); // never stock-taken
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_EQ(screen.grd3->Rows(), 1);
    EXPECT_FALSE(screen.cmdPrint->isEnabled());
    click(screen.lstCatKm, "PETROL");
    click(screen.lstCatKm, "MAIN DIESEL");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    ASSERT_EQ(screen.grd3->Rows(), 4);
    EXPECT_EQ(row(1), QStringList({"2024/12/31", "MAIN DIESEL", "-  12.00", "LEAK"}));
    EXPECT_EQ(row(3), QStringList({"TOTAL", "", "-  4.00", ""}));
    EXPECT_TRUE(screen.cmdPrint->isEnabled());
    QTest::mouseClick(screen.cmdPrint, Qt::LeftButton);
    const WorkbookReader saved = book();
    const WbSheet& s = *saved.sheet(0);
    EXPECT_EQ(s.name, "Fuel Tanks");
    EXPECT_EQ(s.text("A1"), "Fuel Stock Take From 2024/12/01 To 2025/01/31");
    EXPECT_EQ(s.text("C2"), "Gain or Loss");
    EXPECT_DOUBLE_EQ(s.number("C3"), -12);
    EXPECT_DOUBLE_EQ(s.number("C5"), -4);
    EXPECT_EQ(s.cell("C3")->style.horizontal, "right");
    EXPECT_EQ(s.text("D4"), "HEAT");
}

TEST_F(ListReportsTest, EquipmentAndStockListsTakeTheirDatesFromTheVehicles) {
    SeedRegister();
    exec("insert into toerkat ([desc]) values ('TOOLS')");
    exec("insert into toerinv (tid, [desc], adatum, make, model, awaarde, depwaarde, vwaarde, verwys, verskaffer, "
         "hoeveel) values (1, 'DRILL', '2022/01/01', 'BOSCH', 'X1', 500, 10, 700, 'R1', 'HARDWARE', 2)");
    exec("insert into toerinv (tid, [desc], adatum, awaarde, vwaarde, hoeveel) values (1, 'SAW', '2023/05/05', 200, "
         "250, 1)");
    frmVerslae& screen = open("Equipment List");
    EXPECT_EQ(screen.lblVerlag1->text(), "Category");
    EXPECT_EQ(screen.lblVerslag2->text(), "Equipment");
    EXPECT_EQ(screen.dtpFrom->date(), QDate(2021, 6, 1));
    EXPECT_EQ(screen.dtpTo->date(), QDate(2023, 3, 3));
    click(screen.lstCat, "TOOLS");
    EXPECT_EQ(SelectedItemsList(screen.lstProd, true), "DRILL,SAW");
    QTest::mouseClick(screen.cmdApply, Qt::LeftButton);
    EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
    ASSERT_EQ(screen.grd3->Rows(), 3); // the saw was bought after the last vehicle
    EXPECT_EQ(row(1),
              QStringList({"2022/01/01", "DRILL", "BOSCH", "X1", "500.00", "10", "700.00", "R1", "HARDWARE", "2"}));
    EXPECT_EQ(row(2).mid(0, 7), QStringList({"TOTAL", "", "", "", "500.00", "", "700.00"}));

    exec("insert into voorkat ([desc]) values ('PAINT')");
    exec("insert into voorinv (vid, [desc], datum, hoeveel, kwaarde, vwaarde) values (1, 'WHITE', '2022/02/02', 3, "
         "50, 60)");
    open("Stock List");
    EXPECT_EQ(m_screen->lblVerslag2->text(), "Stock");
    click(m_screen->lstCat, "PAINT");
    QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    ASSERT_EQ(m_screen->grd3->Rows(), 3);
    EXPECT_EQ(row(1), QStringList({"2022/02/02", "WHITE", "3", "50.00", "60.00"}));
    EXPECT_EQ(row(2), QStringList({"TOTAL", "", "", "50.00", "60.00"}));
}

TEST_F(ListReportsTest, TextDatesBecomeDateCellsAndSheetsWithoutLayoutFitOnePageWide) {
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    xlSheet->Range("a1").SetValue(Value("2024-1-5"));
    xlSheet->Range("a2").SetValue(Value("'2024/01/05"));
    xlSheet->Range("a3").SetNumberFormat("@");
    xlSheet->Range("a3").SetValue(Value("2024/01/05"));
    xlSheet->Range("a4").SetValue(Value("2024/02/30"));
    xlSheet->Columns("a:l").SetColumnWidth(12);
    xlSheet->Range("l1").SetValue(Value("wide"));
    REPORT_SaveReport(xlApp, "Reports", "Plain");
    REPORT_Workbook_Terminate();
    const WorkbookReader plain = book();
    const WbSheet& s = *plain.sheet(0);
    EXPECT_DOUBLE_EQ(s.number("A1"), 45296);
    EXPECT_EQ(s.cell("A1")->style.numberFormat, "yyyy/mm/dd");
    EXPECT_EQ(s.text("A2"), "2024/01/05");
    EXPECT_TRUE(s.cell("A2")->isText());
    EXPECT_TRUE(s.cell("A3")->isText());
    EXPECT_TRUE(s.cell("A4")->isText()); // no such day
    EXPECT_TRUE(s.fitToPage);
    EXPECT_EQ(s.fitToHeight, "0");
    EXPECT_EQ(s.orientation, "landscape");
}

} // namespace
