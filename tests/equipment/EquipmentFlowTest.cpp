// The stock take, the workbooks read back, and the demo
// register's ledger.
#include "EquipmentDemo.h"
#include "EquipmentTestStore.h"
#include "EquipmentWorkbooks.h"
#include "FlexGrid.h"
#include "frmEquipmentStockTake.h"

#include <QDateEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>

namespace {

class FlowTest : public EquipmentStoreTest {
protected:
    void seed() {
        m_tools = addCategory("Tools");
        m_drill = addItem(m_tools, "Drill", 5, 50);
        m_grinder = addItem(m_tools, "Grinder", 2, 10);
    }
    static void pick(QListWidget* list, const QString& text) {
        list->setCurrentRow(list->row(list->findItems(text, Qt::MatchExactly).first()));
    }
    int m_tools = 0, m_drill = 0, m_grinder = 0;
};

} // namespace

TEST_F(FlowTest, StockTakePostsTheDifferencesAndBringsQuantitiesToTheCount) {
    seed();
    frmEquipmentStockTake s;
    s.resize(1040, 620);
    s.show();
    EXPECT_EQ(m_session.EquipmentMode, 4);
    EXPECT_EQ(s.dtp->date(), QDate::currentDate());
    pick(s.list1, "Tools");
    ASSERT_EQ(s.flg->Rows(), 3);
    EXPECT_EQ(s.flg->TextMatrix(1, frmEquipmentStockTake::colItem), "Drill");

    // The count goes in through the editor laid over the cell.
    s.flg_Click(1, frmEquipmentStockTake::colActual);
    ASSERT_TRUE(s.txtG3->isVisible());
    EXPECT_EQ(s.txtG3->width(), s.flg->CellRect(1, frmEquipmentStockTake::colActual).width());
    QTest::keyClicks(s.txtG3, "3a.5.");
    EXPECT_EQ(s.txtG3->text(), "3.5");
    // Enter leaves the cell with its difference and goes on to the next row; past the last row, the post.
    m_messages.answer(MsgResult::No);
    QTest::keyClick(s.txtG3, Qt::Key_Return);
    EXPECT_EQ(s.flg->TextMatrix(1, frmEquipmentStockTake::colDifference), "-1.5");
    QTest::keyClick(s.txtG3, Qt::Key_Return);
    EXPECT_EQ(m_messages.texts(), QStringList({"Completed. Post stock take?"}));

    m_messages.clear();
    s.txtReason->setPlainText("Cy\r\nle");
    QTest::mouseClick(s.cmdPost, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Reason must be at least 5 characters"}));
    s.txtReason->setPlainText("Cycle count");
    QTest::mouseClick(s.cmdPost, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Person is required");
    EXPECT_EQ(scalar("select count(*) from equipmentstocktake"), "2");

    m_messages.clear();
    QTest::keyClicks(s.txtPerson, "Ann");
    QTest::mouseClick(s.cmdPost, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Post?", "Posted"}));
    EXPECT_EQ(m_messages.shown[0].title, "Post Stock Take");
    EXPECT_EQ(scalar("select trreason & '|' & trperson from equipmentstocktake where id = " +
                     QString::number(s.lastStockTakeId())),
              "Cycle count|Ann");
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where actionid = 4"), "1");
    EXPECT_EQ(scalar("select trdesc & '|' & trqty & '|' & trunitcost & '|' & tramount from equipmenttrans where "
                     "actionid = 4"),
              "Difference|-1.5|10|-15");
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_drill)), 3.5);
    EXPECT_EQ(number("select hoeveel from toerinv where iid = " + QString::number(m_grinder)), 2);
    EXPECT_TRUE(ledgerDisagreements().isEmpty());
    EXPECT_EQ(s.flg->TextMatrix(1, frmEquipmentStockTake::colComputer), "3.5");

    // Nothing counted: a header and no ledger row.
    m_messages.clear();
    QTest::mouseClick(s.cmdPost, Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from equipmentstocktake"), "4");
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where actionid = 4"), "1");

    // The list of a stock take: the on-hand, counted and value columns stay empty.
    s.cmdPrint_Click();
    WorkbookReader book;
    ASSERT_TRUE(book.open(WorkbookReader::newestIn(m_home.path() + "/Reports/Equipment")));
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Equipment Stock Take For Stocktake 'Cycle count");
    EXPECT_EQ(sheet->lastRow(), 2); // the last post counted nothing
}

TEST_F(FlowTest, ItemStatementSumsByKindUnderItsRows) {
    seed();
    const long long out = bookOut(m_tools, m_drill, 3, "Sam", QDate(2024, 5, 2));
    EquipmentEntry in;
    in.mode = kBookIn;
    in.categoryId = m_tools;
    in.itemId = m_drill;
    in.description = "sam";
    in.quantity = Currency::fromDouble(1);
    in.date = QDate(2024, 6, 1);
    in.bookOutId = out;
    WriteEquipmentMovement(in);
    bookOut(m_tools, m_drill, 1, "Ann", QDate(2024, 7, 1));
    exec("update equipmenttrans set trdate = #01-15-2024# where actionid = 0");

    // From May: the opening balance is carried forward, the three movements follow.
    const QString path = WriteItemStatementWorkbook(m_drill, "Drill", QDate(2024, 5, 1), QDate(2024, 12, 31));
    WorkbookReader book;
    ASSERT_TRUE(book.open(path)) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("B2"), "Transaction");
    QStringList kinds;
    for (int r = 3; r <= 6; ++r)
        kinds << sheet->text("B" + QString::number(r)) + "=" + QString::number(sheet->number("D" + QString::number(r)));
    EXPECT_EQ(kinds, QStringList({"Book Out=-3", "Book In=1", "Book Out=-1", "Opening Balance=5"}));
    EXPECT_EQ(sheet->text("A3"), "2024-05-02 00:00:00");
    EXPECT_EQ(sheet->text("C6"), "Carried Forward");
    EXPECT_EQ(sheet->text("A8"), "Transaction Summary");
    QStringList summary;
    for (int r = 9; r <= 13; ++r)
        summary << sheet->text("C" + QString::number(r)) + "=" +
                       QString::number(sheet->number("D" + QString::number(r)));
    EXPECT_EQ(summary,
              QStringList({"Opening Balance=5", "Book Out=-4", "Book In=1", "Stock Take=0", "Closing Balance=2"}));

    // The item list of a category, and the empty one of all categories.
    WorkbookReader list;
    ASSERT_TRUE(list.open(WriteEquipmentListWorkbook(m_tools, "Tools")));
    EXPECT_EQ(list.sheet(0)->text("A3"), "Drill");
    EXPECT_EQ(list.sheet(0)->number("B3"), 2);
    EXPECT_EQ(list.sheet(0)->number("D4"), 10);
    WorkbookReader none;
    ASSERT_TRUE(none.open(WriteEquipmentListWorkbook(0, kAllEquipmentCategories)));
    EXPECT_EQ(none.sheet(0)->lastRow(), 2);
}

TEST_F(FlowTest, DemoRegisterKeepsLedgerHeadersAndQuantitiesTogether) {
    WriteDemoEquipment(QDate(2026, 11, 25), 7);
    EXPECT_EQ(scalar("select count(*) from toerkat"), "4");
    EXPECT_GE(scalar("select count(*) from toerinv").toInt(), 10);
    EXPECT_GT(scalar("select count(*) from equipmenttrans where actionid = 2").toInt(), 10);
    EXPECT_GT(scalar("select count(*) from equipmenttrans where actionid = 1").toInt(), 3);
    EXPECT_GT(scalar("select count(*) from equipmenttrans where actionid = 2 and trclosed = false").toInt(), 0);
    EXPECT_TRUE(ledgerDisagreements().isEmpty()) << ledgerDisagreements().join("; ").toStdString();
    // One header for each ledger row written by a movement.
    EXPECT_EQ(scalar("select count(*) from equipmentstocktake"), scalar("select count(*) from equipmenttrans"));
    EXPECT_EQ(scalar("select count(*) from equipmenttrans where actionid = 2 and stocktakeid = 0"), "0");
    // No item is left below zero, and every open book-out has something still out.
    EXPECT_EQ(scalar("select count(*) from toerinv where hoeveel < 0"), "0");
    auto rs = db().OpenRecordset(OpenBookOutIdsSql());
    for (; !rs->Eof(); rs->MoveNext())
        EXPECT_LT(GetBookOutBalance(rs->Field("id").toLong()).toDouble(), 0);
}
