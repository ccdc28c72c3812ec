// Allocation and history: the move of an open service into history with its breakdown, the refusals of the
// save, a failure half-way, edits against the closing date, deletes, search and the printed transaction.
#include "ServiceTestStore.h"
#include "frmVoerDiens.h"

#include <QGroupBox>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <sqlite3.h>

namespace {

class VoerDiensTest : public ServiceStoreTest {
protected:
    void SetUp() override {
        ServiceStoreTest::SetUp();
        SeedSuppliersAndCategories();
    }
    void pickToyota(frmVoerDiens& s) {
        pick(s.Combo2, "Light Vehicles");
        pick(s.Combo3, "Toyota (CA 123-456)");
    }
    void rawExec(const char* sql) {
        ASSERT_EQ(sqlite3_exec(m_session.db->handle(), sql, nullptr, nullptr, nullptr), SQLITE_OK);
    }
};

} // namespace

TEST_F(VoerDiensTest, AllocatingTheOnlyOpenServiceMovesItAndItsBreakdown) {
    const int open = addOpenService(m_toyota, "2024/11/05", "250", "125400", "00018");
    addCostLine("vdiensid", open, "Parts", "oil filter", 50, 0);
    addCostLine("vdiensid", open, "Labour", "", 2, 200);
    auto s = this->open<frmVoerDiens>();
    pickToyota(*s);
    EXPECT_EQ(s->fraFlex->title(), "Service Allocate");
    ASSERT_EQ(s->flx2->Rows(), 2);
    EXPECT_EQ(s->flx2->TextMatrix(1, 0), QString::number(open));

    pickRow(s->flx2, 1);
    click(s->lblcmd[8]);
    ASSERT_TRUE(s->fraForm->isVisible());
    EXPECT_EQ(m_session.ServiceLinkID, open);
    // The supplier id of column 9 is emptied from the note.
    EXPECT_EQ(QStringList({s->txtDyy->text(), s->txtSupplier->text(), s->txtNota->toPlainText()}),
              QStringList({"2024/11/05", "Bosch Service", ""}));
    EXPECT_EQ(column(s->flexCosts, 0), QStringList({"Labour", "Parts"}));

    click(s->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "You need to fill in all the fields!");
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Exclamation);
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated"), "0"); // the begun row is dropped

    QTest::keyClicks(s->txtNota, "Full service");
    QTest::keyClick(s->txtNota, Qt::Key_Return);
    click(s->lblcmd[3]);
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "0");
    const QString history = scalar("select transid from vdiens_allocated");
    EXPECT_EQ(scalar("select note & '|' & cost & '|' & reference & '|' & vechileid from vdiens_allocated"),
              "Full service|250.00|00018|" + QString::number(m_toyota));
    EXPECT_EQ(scalar("select count(*) from vdiens_extra where historyid = " + history + " and vdiensid = 0"), "2");
    EXPECT_EQ(s->flx2->Rows(), 1); // the open list is empty
    EXPECT_TRUE(s->txtNota->isReadOnly());

    click(s->lblcmd[2]);
    EXPECT_EQ(s->fraFlex->title(), "Service History");
    ASSERT_EQ(s->Grid1->Rows(), 2);
    EXPECT_EQ(s->Grid1->TextMatrix(1, 9), "Full service");
}

TEST_F(VoerDiensTest, RefusalsOfTheSaveInOrder) {
    addOpenService(m_toyota, "2024/06/30", "100", "", "00001");
    addHistory(m_ford, "2024/08/01", "75.00", "9000", "Tyres");
    auto s = open<frmVoerDiens>();
    pickToyota(*s);
    pickRow(s->flx2, 1);
    click(s->lblcmd[8]);
    click(s->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "Fill in the kilometers");
    EXPECT_EQ(m_messages.shown.last().title, "Service Record");
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Information);
    type(s->txtKm, "125500");
    QTest::keyClicks(s->txtNota, "x");
    click(s->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "The date entered is already closed. Please change the date.");
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated"), "1");
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "1");

    // With no vehicle chosen, history lists every vehicle's, and a save is refused for want of one.
    auto all = open<frmVoerDiens>();
    click(all->lblcmd[2]);
    ASSERT_EQ(all->Grid1->Rows(), 2);
    pickRow(all->Grid1, 1);
    click(all->lblcmd[5]);
    click(all->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "Select a catagory and description!");
    EXPECT_EQ(m_messages.shown.last().title, "Service Record");
}

TEST_F(VoerDiensTest, AFailureAfterTheHistoryRowLeavesBothRowsAndTheCostsWithTheOpenOne) {
    const int open = addOpenService(m_toyota, "2024/11/05", "250", "125400", "00018");
    addCostLine("vdiensid", open, "Parts", "oil filter", 50, 0);
    rawExec("create trigger keep_open before delete on vdiens_unallocated begin select raise(abort, 'locked'); end");
    auto s = this->open<frmVoerDiens>();
    pickToyota(*s);
    pickRow(s->flx2, 1);
    click(s->lblcmd[8]);
    QTest::keyClicks(s->txtNota, "Brakes");
    click(s->lblcmd[3]);
    ASSERT_FALSE(m_messages.shown.isEmpty());
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Critical);
    EXPECT_EQ(m_messages.shown.last().title, "Orvel");
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated"), "1");
    EXPECT_EQ(scalar("select count(*) from vdiens_unallocated"), "1");
    EXPECT_EQ(scalar("select vdiensid from vdiens_extra"), QString::number(open));
    EXPECT_EQ(scalar("select historyid from vdiens_extra"), "");
}

TEST_F(VoerDiensTest, HistoryEditDeleteAndSearch) {
    const int first = addHistory(m_toyota, "2024/08/01", "75.00", "9000", "Tyres", "00003");
    const int second = addHistory(m_toyota, "2024/09/01", "120.00", "9500", "Battery", "INV-9");
    addCostLine("historyid", first, "Parts", "tyre", 75, 0);
    exec("update vdiens_allocated set supplierid = " + QString::number(m_midas) +
         " where transid = " + QString::number(second));
    auto s = open<frmVoerDiens>();
    pickToyota(*s);
    click(s->lblcmd[2]);
    ASSERT_EQ(column(s->Grid1, 0), QStringList({QString::number(first), QString::number(second)}));
    EXPECT_TRUE(s->lblcmd[9]->isVisible());

    // Search by supplier name and by a part of the reference.
    QTest::keyClicks(s->txtSearch, "mid");
    EXPECT_EQ(column(s->Grid1, 0), QStringList({QString::number(second)}));
    s->optSearch[1]->click();
    EXPECT_EQ(s->txtSearch->text(), "");
    QTest::keyClicks(s->txtSearch, "00");
    EXPECT_EQ(column(s->Grid1, 0), QStringList({QString::number(first)}));
    QTest::keyClicks(s->txtSearch, "x");
    EXPECT_EQ(s->Grid1->Rows(), 1);
    s->txtSearch->clear();

    pickRow(s->Grid1, 1);
    click(s->lblcmd[5]);
    EXPECT_EQ(m_session.ServiceLinkID, first);
    EXPECT_FALSE(s->txtDyy->isReadOnly());
    type(s->txtDyy, "2024/06/15");
    click(s->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "The date entered is already closed. Please change the date.");
    type(s->txtDyy, "2024/08/02");
    type(s->txtKm, "9001");
    click(s->lblcmd[3]);
    EXPECT_EQ(
        scalar("select [date] & '|' & kilometers from vdiens_allocated where transid = " + QString::number(first)),
        "2024/08/02|9001");
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated"), "2");

    // " &Close Form" asks with No as the default.
    click(s->lblcmd[5]);
    m_messages.answer(MsgResult::No);
    click(s->lblcmd[1]);
    EXPECT_EQ(m_messages.last(), "Unsaved changes will be lost. Continue?");
    EXPECT_EQ(m_messages.shown.last().buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_TRUE(s->fraForm->isVisible());
    click(s->lblcmd[1]);
    EXPECT_FALSE(s->fraForm->isVisible());

    pickRow(s->Grid1, 1);
    m_messages.answer(MsgResult::Yes);
    click(s->lblcmd[4]);
    EXPECT_EQ(m_messages.last(), "Delete '2024/08/02'?");
    EXPECT_EQ(m_messages.shown.last().title, "Service Record");
    EXPECT_EQ(scalar("select count(*) from vdiens_allocated"), "1");
    EXPECT_EQ(scalar("select count(*) from vdiens_extra"), "0");
    EXPECT_EQ(s->Grid1->Rows(), 2);
}

TEST_F(VoerDiensTest, PrintedTransactionWithAndWithoutBreakdown) {
    const int history = addHistory(m_toyota, "2024/08/01", "250.00", "9000", "Service");
    addCostLine("historyid", history, "Labour", "", 2, 200);
    addCostLine("historyid", history, "Out Work", "acme", 50, 0, "machining");
    auto s = open<frmVoerDiens>();
    pickToyota(*s);
    click(s->lblcmd[2]);
    pickRow(s->Grid1, 1);
    click(s->lblcmd[5]);
    click(s->lblcmd[9]);
    EXPECT_EQ(m_messages.last(), "Print Service Detail?");
    WorkbookReader book;
    ASSERT_TRUE(book.open(newestWorkbook("Services"))) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet(0);
    const std::pair<const char*, const char*> texts[] = {
        {"A1", "Service Detail"}, {"A3", "Vehicle"},         {"B3", "Toyota Hilux Ca 123-456"},
        {"A7", "Reference"},      {"A12", "Cost Breakdown"}, {"A13", "Labour"},
        {"A14", "Hours"},         {"A16", "Out Work"},       {"C17", "Cost"},
        {"A18", "Acme"},          {"B18", "Machining"}};
    for (const auto& [cell, text] : texts)
        EXPECT_EQ(sheet->text(cell), text) << cell;
    EXPECT_EQ(sheet->number("B7"), 1);
    EXPECT_EQ(sheet->cell("B7")->style.numberFormat, "00000");
    EXPECT_EQ(sheet->cell("B10")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(QList<double>({sheet->number("B10"), sheet->number("A15"), sheet->number("B15"), sheet->number("C18")}),
              QList<double>({250, 2, 200, 50}));
    exec("delete from vdiens_extra");
    click(s->lblcmd[9]);
    ASSERT_TRUE(book.open(newestWorkbook("Services")));
    EXPECT_EQ(book.sheet(0)->text("A12"), "No Cost Breakdown");
}
