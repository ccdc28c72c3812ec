// The service history workbook and grid, read back: rows under their headings, the breakdown columns, and the
// one-vehicle workbook of " &Print View"; and the demonstration services.
#include "ServiceReports.h"
#include "Registration.h"
#include "ServiceDemo.h"
#include "ServiceTestStore.h"
#include "Vb.h"
#include "frmVoerDiens.h"

namespace {

class ServiceReportsTest : public ServiceStoreTest {
protected:
    void SetUp() override {
        ServiceStoreTest::SetUp();
        SeedSuppliersAndCategories();
        exec("insert into departments (description, issys) values ('Workshop', 1)");
        exec("update voertuig set deptid = " + scalar("select max(id) from departments"));
        m_a = addHistory(m_toyota, "2024/08/01", "250.00", "9000", "Service");
        m_b = addHistory(m_toyota, "2024/09/15", "75.00", "9500", "Tyres");
        m_c = addHistory(m_ford, "2024/08/20", "10.00", "100", "Wipers");
        exec("update vdiens_allocated set reference = Null where transid = " + QString::number(m_b));
        addCostLine("historyid", m_a, "Labour", "", 2, 200);
        addCostLine("historyid", m_a, "Parts", "filter", 30, 0);
        addCostLine("historyid", m_a, "Consumables", "oil", 20, 0);
        addCostLine("historyid", m_c, "Out Work", "acme", 10, 0, "wipers");
    }
    int m_a = 0, m_b = 0, m_c = 0;
};

} // namespace

TEST_F(ServiceReportsTest, WorkbookRowsLineUpWithTheirHeadingsAndTheBreakdown) {
    const QString path = ServiceHistory_Print({ServicePass{{m_toyota, m_ford}, "Km"}}, "2024/08/01", "2024/09/30");
    WorkbookReader book;
    ASSERT_TRUE(book.open(path)) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet("Km");
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Service Listing From 2024/08/01 To 2024/09/30");
    const QStringList headings = {"Date",   "Category", "Supplier", "Department", "Make",       "Veh Model",
                                  "Reg Nr", "R Cost",   "Km",       "",           "Reference:", "note",
                                  "Labour", "Parts",    "Out Work", "Consumables"};
    for (int c = 0; c < headings.size(); ++c)
        EXPECT_EQ(sheet->text(QString(QChar('A' + c)) + "2"), headings[c]) << c;
    // By date: the Toyota's first service, the Ford's, the Toyota's second.
    EXPECT_EQ(sheet->shown("A3"), "2024/08/01");
    EXPECT_EQ(sheet->text("E4"), "Ford");
    EXPECT_EQ(sheet->number("H3"), 250);
    EXPECT_EQ(sheet->text("K3"), "00001");
    EXPECT_EQ(sheet->text("L3"), "Service");
    EXPECT_EQ(sheet->text("J3"), "");
    EXPECT_EQ(sheet->text("K5"), "None");
    EXPECT_EQ(sheet->number("H6"), 335);
    EXPECT_EQ(sheet->number("M3"), 200);
    EXPECT_EQ(sheet->number("N3"), 30);
    EXPECT_EQ(sheet->number("O3"), 0);
    EXPECT_EQ(sheet->number("P3"), 20);
    EXPECT_EQ(sheet->number("O4"), 10);
    for (const char* cell : {"M5", "N5", "O5", "P5"}) {
        ASSERT_NE(sheet->cell(cell), nullptr) << cell;
        EXPECT_TRUE(sheet->cell(cell)->isNumber()) << cell;
        EXPECT_EQ(sheet->number(cell), 0) << cell;
    }
}

TEST_F(ServiceReportsTest, PrintViewOfTheHistoryScreenListsThatVehicleAlone) {
    RegisterAllScreens();
    auto s = open<frmVoerDiens>();
    pick(s->Combo2, "Light Vehicles");
    pick(s->Combo3, "Toyota (CA 123-456)");
    click(s->lblcmd[2]);
    click(s->lblcmd[0]);
    WorkbookReader book;
    ASSERT_TRUE(book.open(newestWorkbook("Reports"))) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet("Km");
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Service Listing From 2024/08/01 To 2024/09/15");
    EXPECT_EQ(sheet->lastRow(), 5);
    EXPECT_EQ(sheet->text("E3"), "Toyota");
    EXPECT_EQ(sheet->text("E4"), "Toyota");
}

TEST_F(ServiceReportsTest, DemoWritesOpenAndAllocatedServicesWithEveryCostType) {
    exec("delete from vdiens_extra");
    exec("delete from vdiens_allocated");
    WriteDemoServices(QDate(2025, 3, 1), 7);
    const int vehicles = scalar("select count(*) from voertuig").toInt();
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated").toInt(), vehicles);
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated").toInt(), 2 * vehicles);
    EXPECT_EQ(scalar("select count(*) from (select distinct costtype from vdiens_extra where historyid > 0)"), "4");
    EXPECT_EQ(scalar("select count(*) from vdiens_extra where vdiensid > 0 and historyid > 0"), "0");
    // Each service's cost is its breakdown's total, and every reference used is assigned.
    const QString open = scalar("select min(transid) from vdiens_unallocated");
    EXPECT_EQ(
        vb::Val(scalar("select cost from vdiens_unallocated where transid = " + open)),
        vb::Val(GetScalar(*m_session.db,
                          "select sum(value1) from vdiens_extra where costtype <> 'Labour' and vdiensid = " + open,
                          "0")) +
            vb::Val(GetScalar(*m_session.db, "select sum(value2) from vdiens_extra where vdiensid = " + open, "0")));
    EXPECT_EQ(scalar("select count(*) from servicereference where isassigned").toInt(), 3 * vehicles);
}
