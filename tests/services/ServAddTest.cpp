// The capture screen: the order of its refusals, the job reference pool, the rows it writes, the "..." list
// editors beside its combos, and its two workbooks.
#include "ScreenRegistry.h"
#include "ServiceScreens.h"
#include "ServiceTestStore.h"
#include "frmServAdd.h"

#include <QGroupBox>

namespace {

class ServAddTest : public ServiceStoreTest {
protected:
    // A new service typed in full: vehicle, supplier and category picked, date and cost typed.
    void fillNew(frmServAdd& s, const QString& date = "2024/11/05", const QString& cost = "450") {
        pick(s.Combo2, "Light Vehicles");
        pick(s.Combo3, "Toyota (CA 123-456)");
        pick(s.Combo4, "Bosch Service");
        pick(s.Combo1, "Repairs");
        type(s.txtDyy, date);
        type(s.txtKos, cost);
        type(s.txtKm, "125400");
    }
    QString assigned() { return scalar("select count(*) from servicereference where isassigned"); }
};

} // namespace

TEST_F(ServAddTest, RefusalsComeInOrderAndEachKeepsTheFrame) {
    auto s = open<frmServAdd>();
    EXPECT_EQ(s->windowTitle(), "Orvel - Add Services");
    click(s->lblcmd[0]);
    ASSERT_TRUE(s->FrAddServices->isVisible());
    EXPECT_FALSE(s->Frame1->isVisible());

    click(s->lblcmd[5]);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Vehicle not selected");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);

    pick(s->Combo2, "Light Vehicles");
    pick(s->Combo3, "Toyota (CA 123-456)");
    click(s->lblcmd[5]);
    EXPECT_EQ(m_messages.last(), "Supplier not selected");

    // No supplier or category yet: each is added through its "..." button.
    m_messages.answer(MsgResult::Yes);
    typeName("bosch service");
    click(s->cmdAddSupplier);
    EXPECT_EQ(m_messages.last(), "Add new Supplier?");
    ASSERT_EQ(s->Combo4->count(), 1);
    EXPECT_EQ(s->Combo4->itemText(0), "Bosch Service");
    pick(s->Combo4, "Bosch Service");
    click(s->lblcmd[5]);
    EXPECT_EQ(m_messages.last(), "Cost Category not selected");

    m_messages.answer(MsgResult::Yes);
    typeName("repairs");
    click(s->cmdAddCostCat);
    ASSERT_EQ(s->Combo1->count(), 1);
    EXPECT_EQ(s->Combo1->currentText(), "Repairs"); // the refill selects the first entry

    click(s->lblcmd[5]);
    EXPECT_EQ(m_messages.last(), "Fill all the fields");
    EXPECT_EQ(m_messages.shown.last().title, "Add Service");
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Information);

    type(s->txtKos, "450");
    type(s->txtDyy, "2024/06/30"); // the closing date itself
    click(s->lblcmd[5]);
    EXPECT_EQ(m_messages.last(), "The date entered is already closed. Please change the date.");
    EXPECT_EQ(m_messages.shown.last().title, "Closed date");
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Critical);
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "0");
    EXPECT_TRUE(s->FrAddServices->isVisible());

    type(s->txtDyy, "2024/07/01");
    click(s->lblcmd[5]);
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "1");
    EXPECT_EQ(s->flx1->Rows(), 2);
}

TEST_F(ServAddTest, ReferencesRunOnFromTheHighestAssignedAndAreNeverFreed) {
    SeedSuppliersAndCategories();
    auto s = open<frmServAdd>();
    click(s->lblcmd[0]);
    EXPECT_EQ(s->txtReference->text(), "00001");
    click(s->lblcmd[4]);

    exec("update servicereference set isassigned = 1 where reference <= 17");
    click(s->lblcmd[0]);
    EXPECT_EQ(s->txtReference->text(), "00018");
    fillNew(*s);
    click(s->lblcmd[5]);
    EXPECT_EQ(scalar("select isassigned from servicereference where reference = 18"), "True");
    EXPECT_EQ(scalar("select reference from vdiens_unallocated"), "00018");
    EXPECT_EQ(scalar("select km from vdiens_unallocated"), "125400");
    EXPECT_EQ(m_session.SelectedID, 0); // up to 1000 the new row's id is not read

    // Deleting the service keeps 18 assigned.
    click(s->lblcmd[4]);
    pickRow(s->flx1, 1);
    click(s->lblcmd[2]);
    EXPECT_EQ(m_messages.last(), "Proceed to delete Service?");
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "0");
    click(s->lblcmd[0]);
    EXPECT_EQ(s->txtReference->text(), "00019");

    // A reference typed by hand is a free text: the pool is left alone, and the new row's id is read.
    const QString before = assigned();
    fillNew(*s);
    type(s->txtReference, "INV-77");
    type(s->txtKm, "1234567890");
    click(s->lblcmd[5]);
    EXPECT_EQ(assigned(), before);
    EXPECT_EQ(scalar("select reference from vdiens_unallocated"), "INV-77");
    EXPECT_EQ(scalar("select km from vdiens_unallocated"), "12345678");
    EXPECT_EQ(m_session.SelectedID, scalar("select max(transid) from vdiens_unallocated").toInt());
}

TEST_F(ServAddTest, EditLoadsTheRowAndKeepsItsReference) {
    SeedSuppliersAndCategories();
    const int id = addOpenService(m_ford, "2024/10/01", "1200.5", "8000", "00005", m_midas, m_repairs);
    auto s = open<frmServAdd>();
    ASSERT_EQ(s->flx1->Rows(), 2);
    EXPECT_EQ(s->flx1->TextMatrix(1, 2), "Midas");
    EXPECT_EQ(s->flx1->TextMatrix(1, 5), "Ford Ranger Ca 777");
    EXPECT_EQ(s->flx1->TextMatrix(1, 7), " 1 200.50");
    EXPECT_EQ(s->flx1->TextMatrix(1, 11), QString::number(m_ford)); // the ids in the cells' order
    pickRow(s->flx1, 1);
    click(s->lblcmd[1]);
    EXPECT_EQ(m_session.SelectedID, id);
    EXPECT_EQ(s->Combo3->currentText(), "Ford (CA 777)");
    EXPECT_EQ(s->Combo2->currentText(), "Light Vehicles");
    EXPECT_EQ(s->Combo4->currentText(), "Midas");
    EXPECT_EQ(s->Combo1->currentText(), "Repairs");
    EXPECT_EQ(s->txtReference->text(), "00005");
    EXPECT_FALSE(s->lblcmd[7]->isVisible());
    type(s->txtDyy, "2024/10/02");
    click(s->lblcmd[5]);
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "1");
    EXPECT_EQ(scalar("select [date] from vdiens_unallocated"), "2024/10/02");
    EXPECT_EQ(scalar("select count(*) from servicereference where isassigned"), "0");
}

TEST_F(ServAddTest, DateFieldStepsAndRefusesWhatIsNoDate) {
    SeedSuppliersAndCategories();
    auto s = open<frmServAdd>();
    click(s->lblcmd[0]);
    type(s->txtDyy, "2024/02/28");
    click(s->Command1);
    click(s->Command1);
    click(s->Command2);
    EXPECT_EQ(s->txtDyy->text(), "2024/02/29");
    type(s->txtDyy, "2024/13/45");
    s->txtKos->setFocus();
    EXPECT_EQ(m_messages.last(), "The  date is not valid!");
    EXPECT_EQ(m_messages.shown.last().title, "Add Service");
    EXPECT_EQ(s->txtDyy->text(), "");
    type(s->txtKos, "12.5");
    s->txtKm->setFocus();
    EXPECT_EQ(s->txtKos->text(), "12.50");
}

TEST_F(ServAddTest, JobCardsAndTheListOfOpenServices) {
    SeedSuppliersAndCategories();
    addOpenService(m_toyota, "2024/11/05", "450", "125400", "00018");
    addOpenService(m_ford, "2024/11/06", "1200.5", "8000", "00019", m_midas, m_repairs);
    auto s = open<frmServAdd>();
    pickRow(s->flx1, 1);
    click(s->lblcmd[8]);
    EXPECT_EQ(m_messages.last(), "Print  Job Card?");
    WorkbookReader card;
    ASSERT_TRUE(card.open(newestWorkbook("Services Allocate"))) << qPrintable(card.error());
    const WbSheet* sheet = card.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "JOB CARD");
    EXPECT_EQ(sheet->number("C1"), 18);
    EXPECT_EQ(sheet->cell("C1")->style.numberFormat, "000000");
    QStringList shown;
    for (int r = 2; r <= 8; ++r)
        shown << sheet->shown("C" + QString::number(r));
    EXPECT_EQ(shown, QStringList({"Light Vehicles", "Toyota Hilux Ca 123-456", "2024/11/05", "Bosch Service", "450",
                                  "Maintenance", "125400"}));
    EXPECT_EQ(sheet->text("A2"), "Vehicle Category :");
    EXPECT_EQ(sheet->text("A9"), "Notes :");

    click(s->lblcmd[11]);
    EXPECT_EQ(m_messages.last(), "Print  Empty  Job Card?");
    ASSERT_TRUE(card.open(newestWorkbook("Services Allocate")));
    EXPECT_EQ(card.sheet(0)->text("A1"), "JOB CARD");
    EXPECT_EQ(card.sheet(0)->text("C1"), "");
    EXPECT_EQ(card.sheet(0)->text("C4"), "");

    click(s->lblcmd[9]);
    EXPECT_EQ(m_messages.last(), "Print View?");
    WorkbookReader list;
    ASSERT_TRUE(list.open(newestWorkbook("Services"))) << qPrintable(list.error());
    const WbSheet* rows = list.sheet(0);
    EXPECT_EQ(rows->text("A1"), "Services List");
    EXPECT_EQ(rows->text("F2"), "reference"); // the labels are the columns' own names
    EXPECT_EQ(rows->text("B4"), "midas");
    EXPECT_EQ(rows->number("G4"), 1200.5);
    EXPECT_EQ(rows->lastRow(), 4);
}
