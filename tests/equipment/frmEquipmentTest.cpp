// The register screen and the entry screen driven as the office user drives them: categories, items, book-outs,
// the questions in their order and what stays in the store.
#include "frmEquipment.h"
#include "EquipmentScreens.h"
#include "EquipmentTestStore.h"
#include "FlexGrid.h"
#include "ScreenRegistry.h"
#include "frmEquipmentAdj.h"

#include <QDateEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <sqlite3.h>

namespace {

class RegisterTest : public EquipmentStoreTest {
protected:
    void SetUp() override {
        EquipmentStoreTest::SetUp();
        RegisterEquipmentScreens();
        m_tools = addCategory("Tools");
        m_ladders = addCategory("Ladders");
        m_drill = addItem(m_tools, "Drill", 5, 50);
        m_grinder = addItem(m_tools, "Grinder", 2, 10);
        m_ladder = addItem(m_ladders, "Step Ladder", 3, 0);
    }
    void TearDown() override {
        UnregisterAllScreens();
        EquipmentStoreTest::TearDown();
    }

    std::unique_ptr<frmEquipment> openScreen(int mode = 0) {
        m_session.EquipmentMode = mode;
        m_session.ReportChoice = mode == 2 ? "Book Out Equipment" : "Equipment List";
        auto screen = std::make_unique<frmEquipment>();
        screen->show();
        return screen;
    }
    static void pick(frmEquipment& s, const QString& text) {
        const auto items = s.list1->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << qPrintable(text);
        QTest::mouseClick(s.list1->viewport(), Qt::LeftButton, {}, s.list1->visualItemRect(items.first()).center());
    }
    static void pickRow(frmEquipment& s, const QString& item) {
        for (int r = 1; r < s.flg->Rows(); ++r)
            if (s.flg->TextMatrix(r, 2) == item) {
                s.flg->setCurrentCell(r, 2);
                return;
            }
        FAIL() << "no row " << item.toStdString();
    }
    static QStringList column(const frmEquipment& s, int col) {
        QStringList out;
        for (int r = 1; r < s.flg->Rows(); ++r)
            out << s.flg->TextMatrix(r, col);
        return out;
    }

    int m_tools = 0, m_ladders = 0, m_drill = 0, m_grinder = 0, m_ladder = 0;
};

} // namespace

TEST_F(RegisterTest, OpensOnAllCategoriesWithTheGridAndCaption) {
    auto s = openScreen();
    EXPECT_EQ(s->list1->item(0)->text(), "--- _All Categories ---");
    EXPECT_EQ(s->list1->count(), 3);
    EXPECT_EQ(s->Label7->text(), "Equipment List");
    EXPECT_EQ(s->flg->TextMatrix(0, 3), "Quantity Available");
    EXPECT_EQ(column(*s, 2), QStringList({"Step Ladder", "Drill", "Grinder"}));
    EXPECT_EQ(column(*s, 4), QStringList({" .0000", " 10.0000", " 5.0000"}));
    EXPECT_EQ(column(*s, 5), QStringList({" 0.00", " 50.00", " 10.00"}));
    pick(*s, "Tools");
    EXPECT_EQ(m_session.SelectedCategoryId, m_tools);
    EXPECT_EQ(column(*s, 2), QStringList({"Drill", "Grinder"}));
}

TEST_F(RegisterTest, CategoryDeleteAsksTwiceAndTakesLedgerItemsAndCategory) {
    bookOut(m_tools, m_drill, 1, "Sam", QDate(2024, 1, 1));
    auto s = openScreen();
    pick(*s, "Tools");
    m_messages.answer(MsgResult::Yes);
    m_messages.answer(MsgResult::Yes);
    m_messages.answer(MsgResult::No); // "Sure?"
    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    ASSERT_EQ(m_messages.texts(),
              QStringList({"Delete Category 'Tools'?", "Category has items. Delete Anyway?", "Sure?"}));
    EXPECT_EQ(m_messages.shown[0].title, "Vehicles");
    EXPECT_EQ(m_messages.shown[1].buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_EQ(m_messages.shown[2].buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_EQ(scalar("select count(*) from toerinv"), "3");

    m_messages.clear();
    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    EXPECT_EQ(m_messages.shown.size(), 3);
    EXPECT_EQ(scalar("select count(*) from toerkat"), "1");
    EXPECT_EQ(scalar("select count(*) from toerinv"), "1");
    EXPECT_EQ(scalar("select count(*) from equipmenttrans"), "1"); // the ladder's opening balance
    EXPECT_EQ(s->list1->count(), 2);

    // An empty category goes after the first question.
    const int empty = addCategory("Empty");
    FillEquipmentCategories(s->list1, kAllEquipmentCategories);
    pick(*s, "Empty");
    m_messages.clear();
    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Delete Category 'Empty'?"}));
    EXPECT_EQ(scalar("select count(*) from toerkat where tid = " + QString::number(empty)), "0");
}

TEST_F(RegisterTest, CategorySaveChecksTheNameThenAddsAndEdits) {
    auto s = openScreen();
    QTest::mouseClick(s->Label4[0], Qt::LeftButton);
    EXPECT_TRUE(s->Frame2->isVisible());
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Fill in equipment category");
    EXPECT_EQ(m_messages.shown.last().title, "Equipment");
    QTest::keyClicks(s->txtKAT, "-Cables");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Reserved character '-' not allowed.");
    EXPECT_EQ(scalar("select count(*) from toerkat"), "2");
    s->txtKAT->clear();
    QTest::keyClicks(s->txtKAT, "Cables");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from toerkat where [desc] = 'Cables'"), "1");
    EXPECT_FALSE(s->Frame2->isVisible());
    pick(*s, "Ladders");
    QTest::mouseClick(s->Label4[1], Qt::LeftButton);
    EXPECT_EQ(s->txtKAT->text(), "Ladders");
    s->txtKAT->setText("Ladders And Steps");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(scalar("select [desc] from toerkat where tid = " + QString::number(m_ladders)), "Ladders And Steps");
    EXPECT_EQ(scalar("select count(*) from toerkat"), "3");
}

TEST_F(RegisterTest, ItemDeleteAsksOnceForAnOpeningBalanceAndTwiceForMovements) {
    bookOut(m_tools, m_grinder, 1, "Sam", QDate(2024, 1, 1));
    auto s = openScreen();
    pick(*s, "Tools");
    pickRow(*s, "Drill");
    QTest::mouseClick(s->cmdDeleteItem, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Delete 'Drill' item?"}));
    EXPECT_EQ(m_messages.shown[0].title, "Equipment Inventory");
    EXPECT_EQ(scalar("select count(*) from toerinv where iid = " + QString::number(m_drill)), "0");
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where equipid = " + QString::number(m_drill)), "0");

    m_messages.clear();
    pickRow(*s, "Grinder");
    m_messages.answer(MsgResult::Yes);
    m_messages.answer(MsgResult::No);
    QTest::mouseClick(s->cmdDeleteItem, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Delete 'Grinder' item?", "Transactions exist. Delete Anyway?"}));
    EXPECT_EQ(scalar("select count(*) from toerinv where iid = " + QString::number(m_grinder)), "1");
}

TEST_F(RegisterTest, AddProductNeedsACategoryAndTwoAddsMakeTwoItems) {
    auto s = openScreen();
    QTest::mouseClick(s->cmdAddProduct, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "You have to select a category first!");
    EXPECT_EQ(m_messages.shown.last().title, "Category");
    pick(*s, "Ladders");
    for (const QString& name : {QString("Extension Ladder"), QString("Trestle")}) {
        onModal<frmEquipmentAdj>([name](frmEquipmentAdj& d) {
            EXPECT_EQ(d.windowTitle(), "Add Equipment");
            QTest::keyClicks(d.txtDesc, name);
            QTest::keyClicks(d.txtQtyBuy, "4");
            QTest::keyClicks(d.txtCostBuy, "10");
            QTest::mouseClick(d.cmdSave, Qt::LeftButton);
        });
        QTest::mouseClick(s->cmdAddProduct, Qt::LeftButton);
    }
    EXPECT_EQ(m_messages.texts().count("Add Item?"), 2);
    EXPECT_EQ(column(*s, 2), QStringList({"Extension Ladder", "Step Ladder", "Trestle"}));
    EXPECT_EQ(scalar("select count(*) from toerinv where tid = " + QString::number(m_ladders)), "3");
    EXPECT_EQ(number("select kitem from toerinv where [desc] = 'Trestle'"), 2.5);
    EXPECT_TRUE(ledgerDisagreements().isEmpty());
}

TEST_F(RegisterTest, BookOutChecksStockThenWritesHeaderLedgerAndQuantity) {
    exec("update toerinv set hoeveel = 0 where iid = " + QString::number(m_grinder));
    auto s = openScreen(2);
    pickRow(*s, "Grinder");
    QTest::mouseClick(s->cmdBookOut, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Insufficient stock to book out");

    m_messages.clear();
    pickRow(*s, "Drill");
    onModal<frmEquipmentAdj>([this](frmEquipmentAdj& d) {
        EXPECT_EQ(m_session.ReportChoice, "'Drill' (5) items available");
        QTest::keyClicks(d.txtDesc, "Sam Mokoena");
        QTest::keyClicks(d.txtQtyBuy, "7");
        QTest::mouseClick(d.cmdSave, Qt::LeftButton);
        EXPECT_EQ(d.txtQtyBuy->text(), "5"); // the available quantity, and the entry stays open
        EXPECT_TRUE(d.isVisible());
        d.txtQtyBuy->clear();
        QTest::keyClicks(d.txtQtyBuy, "2");
        m_messages.answer(MsgResult::Yes); // "Update?"
        m_messages.answer(MsgResult::No);  // "Print Form?"
        QTest::mouseClick(d.cmdSave, Qt::LeftButton);
    });
    QTest::mouseClick(s->cmdBookOut, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Update?", "Negative Stock Result", "Update?", "Print Form?"}));
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 3);
    EXPECT_EQ(scalar("select trqty from equipmenttrans where actionid = 2"), "-2");
    EXPECT_EQ(scalar("select trdesc from equipmenttrans where actionid = 2"), "Sam Mokoena");
    EXPECT_EQ(scalar("select stocktakeid from equipmenttrans where actionid = 2"),
              scalar("select max(id) from equipmentstocktake"));
    EXPECT_EQ(column(*s, 3).at(0), "3");
    EXPECT_EQ(ledgerDisagreements().size(), 1); // only the grinder, set to 0 by hand above
}

TEST_F(RegisterTest, RefusalsOfTheEntryAndTheQuestionsThatFollow) {
    struct Case {
        int mode;
        QString desc, qty;
        QStringList messages;
    };
    const Case cases[] = {
        {0, "  ", "3", {"Add Item?", "Description required"}},
        {0, "Saw", "", {"Add Item?", "0 value is invalid."}},
        {2, "", "1", {"Update?", "Description required", "Print Form?"}},
        {6, "Drill", "0", {"Update?", "0 value is invalid."}},
    };
    for (const Case& c : cases) {
        m_messages.clear();
        m_session.EquipmentMode = c.mode;
        m_session.SelectedCategoryId = m_tools;
        m_session.SelectedItemId = c.mode == 0 ? 0 : m_drill;
        m_session.ReportChoice = BookOutContext("Drill", "5");
        frmEquipmentAdj d;
        d.txtDesc->setText(c.desc);
        d.txtQtyBuy->setText(c.qty);
        d.cmdSave_Click();
        EXPECT_EQ(m_messages.texts(), c.messages) << c.mode;
        EXPECT_EQ(m_messages.shown[1].title, "Equipment Inventory");
    }
    EXPECT_EQ(scalar("select count(*) from equipmenttrans"), "3");
}

TEST_F(RegisterTest, EditWritesNameAndUnitCostWithoutALedgerRow) {
    auto s = openScreen();
    pick(*s, "Tools");
    pickRow(*s, "Drill");
    onModal<frmEquipmentAdj>([](frmEquipmentAdj& d) {
        EXPECT_EQ(d.txtDesc->text(), "Drill");
        EXPECT_EQ(d.txtQtyBuy->text(), "5");
        EXPECT_EQ(d.txtCostBuy->text(), "50.00");
        d.txtDesc->setText("Hammer Drill");
        d.txtCostBuy->setText("7");
        d.txtQtyBuy->setText("3");
        QTest::mouseClick(d.cmdSave, Qt::LeftButton);
    });
    QTest::mouseClick(s->cmdEditItem, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Update?"}));
    EXPECT_EQ(scalar("select [desc] from toerinv where iid = " + QString::number(m_drill)), "Hammer Drill");
    EXPECT_EQ(number("select kitem from toerinv where iid = " + QString::number(m_drill)), 2.3333);
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 5);
    EXPECT_EQ(scalar("select count(*) from equipmenttrans"), "3");
    EXPECT_EQ(column(*s, 2), QStringList({"Grinder", "Hammer Drill"}));
}

TEST_F(RegisterTest, AFailureBetweenWritesKeepsTheEarlierOnes) {
    ASSERT_EQ(
        sqlite3_exec(db().handle(),
                     "create trigger stop_stock before update on toerinv begin select raise(abort, 'locked'); end",
                     nullptr, nullptr, nullptr),
        SQLITE_OK);
    m_session.EquipmentMode = kBookOut;
    m_session.SelectedCategoryId = m_tools;
    m_session.SelectedItemId = m_drill;
    m_session.ReportChoice = BookOutContext("Drill", "5");
    frmEquipmentAdj d;
    d.txtDesc->setText("Sam");
    d.txtQtyBuy->setText("1");
    d.cmdSave_Click();
    ASSERT_FALSE(m_messages.shown.isEmpty());
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Critical);
    EXPECT_EQ(scalar("select count(*) from equipmentstocktake"), "4");
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where actionid = 2"), "1");
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 5);
    EXPECT_EQ(ledgerDisagreements().size(), 1);
}
