// The list of open book-outs and the book-in that starts from it: part, exact, excess, earlier-dated and same-day
// returns, the remainder in brackets, the header sort and the empty list.
#include "frmEquipmentBookedout.h"
#include "Database.h"
#include "EquipmentScreens.h"
#include "EquipmentTestStore.h"
#include "FlexGrid.h"
#include "ScreenRegistry.h"
#include "frmEquipmentAdj.h"

#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

class BookedOutTest : public EquipmentStoreTest {
protected:
    void SetUp() override {
        EquipmentStoreTest::SetUp();
        RegisterEquipmentScreens();
        m_tools = addCategory("TOOLS");
        m_ladders = addCategory("LADDERS");
        m_drill = addItem(m_tools, "drill", 10, 0);
        m_ladder = addItem(m_ladders, "step ladder", 4, 0);
        m_drillOut = bookOut(m_tools, m_drill, 4, "Sam", QDate(2024, 3, 10));
        m_ladderOut = bookOut(m_ladders, m_ladder, 1, "Ann", QDate(2024, 2, 1));
    }
    void TearDown() override {
        UnregisterAllScreens();
        EquipmentStoreTest::TearDown();
    }
    std::unique_ptr<frmEquipmentBookedout> openList() {
        auto s = std::make_unique<frmEquipmentBookedout>();
        s->show();
        return s;
    }
    static int rowOf(const frmEquipmentBookedout& s, long long id) {
        for (int r = 1; r < s.flg->Rows(); ++r)
            if (s.flg->TextMatrix(r, frmEquipmentBookedout::colId) == QString::number(id))
                return r;
        return -1;
    }
    // Books in from the list row of `id` with the quantity and date given. Answers "Update?", the refusal and
    // "Update?" again when one is expected, then "Print Form?".
    void bookIn(frmEquipmentBookedout& s, long long id, const QString& qty, const QDate& date, bool print = false,
                bool refused = false) {
        const int row = rowOf(s, id);
        ASSERT_GT(row, 0);
        s.flg->setCurrentCell(row, frmEquipmentBookedout::colEquipment);
        m_messages.answer(MsgResult::Yes);
        if (refused) {
            m_messages.answer(MsgResult::Ok);
            m_messages.answer(MsgResult::Yes);
        }
        m_messages.answer(print ? MsgResult::Yes : MsgResult::No);
        onModal<frmEquipmentAdj>([qty, date](frmEquipmentAdj& d) {
            QTest::keyClicks(d.txtDesc, "Returned");
            d.txtQtyBuy->setText(qty);
            d.dtpTrans->setDate(date);
            QTest::mouseClick(d.cmdSave, Qt::LeftButton);
            if (d.isVisible())
                QTest::mouseClick(d.cmdSave, Qt::LeftButton);
        });
        QTest::mouseClick(s.cmdBookIn, Qt::LeftButton);
    }

    int m_tools = 0, m_ladders = 0, m_drill = 0, m_ladder = 0;
    long long m_drillOut = 0, m_ladderOut = 0;
};

} // namespace

TEST_F(BookedOutTest, ListsOpenBookOutsWithCellsUnderTheirHeadings) {
    m_session.EquipmentMode = 1;
    auto s = openList();
    EXPECT_EQ(m_session.EquipmentMode, 4);
    EXPECT_EQ(s->flg->TextMatrix(0, 4), "Remarks");
    ASSERT_EQ(s->flg->Rows(), 3);
    // Ordered by item name, then id.
    EXPECT_EQ(s->flg->TextMatrix(1, frmEquipmentBookedout::colEquipment), "Drill");
    const int r = rowOf(*s, m_drillOut);
    QStringList cells;
    for (int c : {frmEquipmentBookedout::colEquipId, frmEquipmentBookedout::colCategory, frmEquipmentBookedout::colDate,
                  frmEquipmentBookedout::colRemarks, frmEquipmentBookedout::colQty})
        cells << s->flg->TextMatrix(r, c);
    EXPECT_EQ(cells, QStringList({QString::number(m_drill), "Tools", "2024-03-10 00:00:00", "Sam ( 4.00)", "-4"}));
    EXPECT_EQ(s->dtp->date(), QDate(2024, 2, 1));
    EXPECT_EQ(s->dtp2->date(), QDate(2024, 3, 10));
    s->list1->setCurrentRow(s->list1->row(s->list1->findItems("LADDERS", Qt::MatchExactly).first()));
    EXPECT_EQ(s->flg->Rows(), 2);
    EXPECT_EQ(s->flg->TextMatrix(1, frmEquipmentBookedout::colId), QString::number(m_ladderOut));
}

TEST_F(BookedOutTest, PartThenExactReturnCloseTheBookOut) {
    auto s = openList();
    bookIn(*s, m_drillOut, "1.5", QDate(2024, 3, 10)); // same day as the book-out
    EXPECT_EQ(m_messages.texts(), QStringList({"Update?", "Print Form?"}));
    EXPECT_EQ(m_session.ReportChoice, "ID " + QString::number(m_drillOut) + " - 'Drill' Sam ( 4.00) booked out");
    EXPECT_EQ(s->flg->TextMatrix(rowOf(*s, m_drillOut), frmEquipmentBookedout::colRemarks), "Sam ( 2.50)");
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 7.5);
    EXPECT_EQ(scalar("select stocktakeid from equipmenttrans where actionid = 1"),
              scalar("select stocktakeid from equipmenttrans where id = " + QString::number(m_drillOut)));

    m_messages.clear();
    bookIn(*s, m_drillOut, "2.5", QDate(2024, 4, 1), true);
    EXPECT_EQ(rowOf(*s, m_drillOut), -1);
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where trclosed = true"), "3");
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 10);
    EXPECT_TRUE(ledgerDisagreements().isEmpty());
    // The form a person signs.
    WorkbookReader book;
    ASSERT_TRUE(book.open(WorkbookReader::newestIn(m_home.path() + "/Reports/Equipment")));
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Equipment Book In");
    EXPECT_EQ(sheet->number("B5"), 2.5);
    bool returned = false, received = false;
    for (const auto& [ref, cell] : sheet->cells) {
        returned |= cell.text == "Returned By";
        received |= cell.text == "Received By:";
    }
    EXPECT_TRUE(returned && received);
}

TEST_F(BookedOutTest, ExcessAndEarlierDatedReturnsAreRefused) {
    auto s = openList();
    bookIn(*s, m_drillOut, "5", QDate(2024, 3, 12), false, true);
    // The excess fills the field with the open quantity; the second save then goes through with it.
    EXPECT_EQ(m_messages.texts().mid(0, 2), QStringList({"Update?", "Amount exceeds Bookout of 4"}));
    EXPECT_EQ(rowOf(*s, m_drillOut), -1);

    m_messages.clear();
    const int before = scalar("select count(*) from equipmenttrans").toInt();
    const int row = rowOf(*s, m_ladderOut);
    s->flg->setCurrentCell(row, 2);
    onModal<frmEquipmentAdj>([this](frmEquipmentAdj& d) {
        QTest::keyClicks(d.txtDesc, "Ann");
        d.txtQtyBuy->setText("1");
        d.dtpTrans->setDate(QDate(2024, 1, 31));
        m_messages.answer(MsgResult::Yes);
        QTest::mouseClick(d.cmdSave, Qt::LeftButton);
        EXPECT_TRUE(d.isVisible());
    });
    QTest::mouseClick(s->cmdBookIn, Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 2);
    EXPECT_TRUE(m_messages.shown[1].text.startsWith("ERROR Book In Date "));
    EXPECT_TRUE(m_messages.shown[1].text.endsWith("' After Book Out Date"));
    EXPECT_EQ(scalar("select count(*) from equipmenttrans").toInt(), before);
}

TEST_F(BookedOutTest, HeaderClickSortsAndAnEmptyListSaysSo) {
    auto s = openList();
    s->flg->cellClicked(0, frmEquipmentBookedout::colDate);
    EXPECT_EQ(s->flg->TextMatrix(1, frmEquipmentBookedout::colId), QString::number(m_ladderOut));
    s->flg->cellClicked(0, frmEquipmentBookedout::colEquipment);
    EXPECT_EQ(s->flg->TextMatrix(1, frmEquipmentBookedout::colId), QString::number(m_drillOut));
    EXPECT_TRUE(s->cmdPrint->isEnabled());

    s->flg->setCurrentCell(0, 0);
    m_messages.clear();
    QTest::mouseClick(s->cmdBookIn, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Select a Category"}));

    exec("update equipmenttrans set trclosed = true");
    s->LoadBookedOut();
    EXPECT_EQ(s->lblMessage->text(), "No Items Booked Out");
    EXPECT_FALSE(s->cmdPrint->isEnabled());
}
