// Tank stock takes: the figures on leaving the measured litres, the save's checks in order, the balance the
// save leaves and what the recalculation makes of it, edit and delete, and the workbooks read back.

#include "BadText.h"
#include "FlexGrid.h"
#include "FuelTestStore.h"
#include "Recalc.h"
#include "ReportEngine.h"
#include "WorkbookReader.h"
#include "frmTank.h"
#include "frmTankPurchase.h"
#include "frmTankStock.h"

#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>

namespace {

class StockTest : public FuelStoreTest {
protected:
    StockTest() : FuelStoreTest(QDate(2024, 1, 31)) {}
    void SetUp() override {
        FuelStoreTest::SetUp();
        m_north = addTank("NORTH", 1000, "20");
        addPurchase(m_north, "2024/02/10", "1000.00", "20.00");
        m_south = addTank("SOUTH", 300, "18.5");
    }
    std::unique_ptr<frmTankStock> openStock() {
        auto s = std::make_unique<frmTankStock>();
        showActive(*s);
        return s;
    }
    // A capture as the user makes it: add, tank, date, litres measured, reason.
    void capture(frmTankStock& s, const QString& tank, const QDate& date, const QString& litres,
                 const QString& reason) {
        QTest::mouseClick(s.Label4, Qt::LeftButton);
        pickTank(s, tank);
        s.dtpDate->setDate(date);
        typeInto(s.txtLitIn, litres);
        leave(s.txtLitIn);
        typeInto(s.txtReason, reason);
    }
    // A pick from the list as the combo reports it: the index moves, and the pick is announced even when the
    // tank picked is the one already shown.
    static void pickTank(frmTankStock& s, const QString& tank) {
        const int wanted = s.cmbTank->findText(tank);
        s.cmbTank->setCurrentIndex(wanted);
        emit s.cmbTank->activated(wanted);
    }
    QString stock(const QString& column) { return scalar("select " + column + " from TankStock"); }
    int m_north = 0;
    int m_south = 0;
};

TEST_F(StockTest, MeasuredBelowTheBooksIsALossThatSurvivesTheRecalculation) {
    auto s = openStock();
    capture(*s, "NORTH", QDate(2024, 3, 1), "950", "Leak at the valve");
    EXPECT_EQ(s->txtLitLesing->text(), "1000");
    EXPECT_EQ(s->txtLitIn->text(), "950.00");
    EXPECT_EQ(s->txtLost->text(), "-50.00");
    EXPECT_EQ(s->txtLostRP->text(), "20.00");
    EXPECT_EQ(s->txtLostR->text(), "-1000.00");
    QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    EXPECT_TRUE(m_messages.shown.isEmpty()) << qPrintable(m_messages.last());
    EXPECT_EQ(stock("Verlore & '|' & LitersInTank & '|' & Rvalue & '|' & Datum & '|' & Tank"),
              "-50.00|950.00|-1000.00|2024/03/01|NORTH");
    EXPECT_DOUBLE_EQ(volume(m_north), 950);
    EXPECT_FALSE(s->fraEdit->isVisible());
    EXPECT_EQ(s->cboTank->currentText(), "NORTH");
    ASSERT_EQ(s->listRows(), 1);
    EXPECT_EQ(s->flg->TextMatrix(1, 5), "- 50.00"); // the pattern's blank stays after the sign
    EXPECT_EQ(s->flg->TextMatrix(0, 3), "Liters Available");

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_DOUBLE_EQ(volume(m_north), 950);
    EXPECT_DOUBLE_EQ(stock("Verlore").toDouble(), -50);
}

TEST_F(StockTest, AGainAlsoNeedsAReasonAndTheChecksComeInTheirOrder) {
    struct Case {
        QString litres;
        QDate date;
        QString reason;
        QString message, title;
        MsgIcon icon;
        const char* focus;
    };
    const QDate open(2024, 3, 1), closed(2024, 1, 31);
    const Case cases[] = {
        {"", closed, "", "Liters required", "Tank Stock", MsgIcon::None, "txtLitIn"},
        {"1200", closed, "", "The date entered is already closed. Please change the date.", "Closed date",
         MsgIcon::Critical, "dtpDate"},
        {"1200", open, "   ", "Please supply a reason for the lost fuel.", "Tank Stock", MsgIcon::None, "txtReason"},
    };
    auto s = openStock();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.focus);
        m_messages.clear();
        capture(*s, "NORTH", c.date, c.litres, c.reason);
        s->txtLitIn->setText(c.litres); // an empty entry as it stands, not formatted on leaving
        QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
        ASSERT_EQ(m_messages.shown.size(), 1);
        EXPECT_EQ(m_messages.shown[0].text, c.message);
        EXPECT_EQ(m_messages.shown[0].title, c.title);
        EXPECT_EQ(m_messages.shown[0].icon, c.icon);
        ASSERT_TRUE(QApplication::focusWidget());
        EXPECT_EQ(QApplication::focusWidget()->objectName(), c.focus);
        EXPECT_EQ(scalar("select count(*) from TankStock"), "0");
        EXPECT_DOUBLE_EQ(volume(m_north), 1000);
    }
    EXPECT_EQ(s->txtReason->text(), ""); // trimmed first
    m_messages.clear();
    capture(*s, "NORTH", QDate(2024, 2, 1), "1200", "Meter error");
    QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    EXPECT_TRUE(m_messages.shown.isEmpty());
    EXPECT_EQ(stock("Verlore"), "200.00");
    EXPECT_DOUBLE_EQ(volume(m_north), 1200);
}

TEST_F(StockTest, EditLoadsTheBookFigureIntoTheMeasuredFieldAndDeleteLeavesTheBalance) {
    auto s = openStock();
    capture(*s, "SOUTH", QDate(2024, 3, 1), "280", "Evaporation");
    QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    ASSERT_EQ(s->listRows(), 1);
    const int key = scalar("select transid from TankStock").toInt();

    s->flg->setCurrentCell(1, 2);
    m_messages.clear();
    QTest::mouseClick(s->lblEdit, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Edit Entry '2024/03/01 - SOUTH...' ?");
    EXPECT_EQ(m_session.CurrentPurchaseID, key);
    EXPECT_TRUE(s->fraEdit->isVisible());
    EXPECT_EQ(s->txtLitIn->text(), "300.00"); // the row's book figure
    EXPECT_EQ(s->txtReason->text(), "Evaporation");
    typeInto(s->txtLitIn, "290");
    leave(s->txtLitIn);
    QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from TankStock"), "1");
    EXPECT_EQ(stock("LitersInTank"), "290.00");
    EXPECT_DOUBLE_EQ(volume(m_south), 290);

    s->flg->setCurrentCell(1, 2);
    m_messages.clear();
    QTest::mouseClick(s->lblDelete, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Delete Entry '2024/03/01 - SOUTH...' ?");
    EXPECT_EQ(scalar("select count(*) from TankStock"), "0");
    EXPECT_DOUBLE_EQ(volume(m_south), 290);
    EXPECT_FALSE(s->lblEdit->isEnabled());
}

TEST_F(StockTest, TheFilterListsOneTankAndTheListWorkbookCutsThePrompt) {
    exec("insert into TankStock (TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rvalue, Rede) values "
         "(1, 'NORTH', '2024/03/01', '950.00', '1000', '-50.00', '-1000.00', 'Leak')");
    exec("insert into TankStock (TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rvalue, Rede) values "
         "(2, 'SOUTH', '2024/03/02', '310.00', '300', '10.00', '185.00', 'Meter')");
    auto s = openStock();
    EXPECT_EQ(s->cboTank->itemText(0), "---  Select A Tank    ---");
    EXPECT_EQ(s->listRows(), 2);
    s->cboTank->setCurrentIndex(s->cboTank->findText("SOUTH"));
    EXPECT_EQ(s->listRows(), 1);
    s->cboTank->setCurrentIndex(1);
    EXPECT_EQ(s->listRows(), 2);
    QTest::mouseClick(s->lblPrint, Qt::LeftButton);
    WorkbookReader book;
    ASSERT_TRUE(book.open(WorkbookReader::newestIn(m_home.path() + "/Reports/Vehicles"))) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet("Fuel Stock");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->text("A1"), "Fuel Stock For Selected Tank(s) '  Select All Tanks  '");
    EXPECT_EQ(sheet->text("A2"), "Date");
    EXPECT_EQ(sheet->text("G2"), "Note");
    EXPECT_EQ(sheet->text("B3"), "NORTH");
    EXPECT_EQ(sheet->text("E3"), "-50.00");
    EXPECT_EQ(sheet->text("G4"), "Meter");
    EXPECT_EQ(sheet->header, "&LDate &D Time &T&RPage #&P Of &N Pages");
}

TEST_F(StockTest, PurchasesWorkbookHoldsNumbersUnderItsHeadings) {
    addPurchase(m_north, "2024/04/01", "1250.50", "21.75", "1");
    auto s = std::make_unique<frmTank>();
    s->show();
    s->list1->setCurrentRow(s->list1->row(s->list1->findItems("NORTH", Qt::MatchExactly).first()));
    QTest::mouseClick(s->lblPrint, Qt::LeftButton);
    WorkbookReader book;
    ASSERT_TRUE(book.open(WorkbookReader::newestIn(m_home.path() + "/Reports/Vehicles"))) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet("Fuel Purchases");
    ASSERT_TRUE(sheet);
    EXPECT_EQ(sheet->text("A1"), "Fuel Purchases In Selected Category NORTH");
    EXPECT_TRUE(sheet->merged("A1:F1"));
    const QStringList headings{"Date", "Supplier", "Invoice Ref.", "Litres", "Cost", "Cost/Litre"};
    for (int c = 0; c < 6; ++c)
        EXPECT_EQ(sheet->text(QString(QChar('A' + c)) + "2"), headings[c]);
    EXPECT_EQ(sheet->shown("A4"), "2024/04/01");
    EXPECT_EQ(sheet->text("B4"), "_Fuel Supplier");
    ASSERT_TRUE(sheet->cell("D4") && sheet->cell("D4")->isNumber());
    EXPECT_DOUBLE_EQ(sheet->number("D4"), 1250.5);
    EXPECT_DOUBLE_EQ(sheet->number("F4"), 21.75);
    EXPECT_DOUBLE_EQ(sheet->number("D3"), 1000);
    EXPECT_EQ(sheet->cell("D4")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(sheet->lastRow(), 4);
}

} // namespace

namespace {

// Bad text in every field of a stock take and of a purchase: refused with the screen's message and nothing
// written, or saved as the columns hold it; never the run-time error box.
TEST_F(StockTest, BadTextInTheStockTakeIsRefusedOrStored) {
    std::unique_ptr<frmTankStock> s;
    BadTextScreen screen;
    screen.open = [&] {
        s = openStock();
        capture(*s, "NORTH", QDate(2024, 3, 1), "950", "Leak");
        return std::vector<std::pair<QString, QLineEdit*>>{{"Liters Measured", s->txtLitIn}, {"Reason", s->txtReason}};
    };
    screen.save = [&] {
        leave(QApplication::focusWidget());
        QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    };
    screen.close = [&] { s.reset(); };
    for (const BadTextOutcome& o : TypeBadTextIntoEveryField(*m_session.db, m_messages, screen)) {
        if (o.field == "Liters Measured" && o.refused) {
            EXPECT_EQ(o.message, "Liters required");
        }
    }
}

TEST_F(StockTest, BadTextInAPurchaseIsRefusedOrStored) {
    std::unique_ptr<frmTankPurchase> p;
    BadTextScreen screen;
    screen.open = [&] {
        m_session.CurrentTankID = m_north;
        m_session.CurrentPurchaseID = 0;
        p = std::make_unique<frmTankPurchase>();
        p->show();
        p->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(p.get()));
        p->txtDyy->setText("2024/03/01");
        p->txtLiter->setText("100");
        p->txtCost->setText("2000");
        p->txtCostLitre->setText("20");
        return std::vector<std::pair<QString, QLineEdit*>>{{"Date", p->txtDyy},
                                                           {"Invoice", p->txtinvoiceref},
                                                           {"Litres", p->txtLiter},
                                                           {"Cost", p->txtCost},
                                                           {"Cost per litre", p->txtCostLitre}};
    };
    screen.save = [&] { QTest::mouseClick(p->lblcmd[0], Qt::LeftButton); };
    screen.close = [&] { p.reset(); };
    TypeBadTextIntoEveryField(*m_session.db, m_messages, screen);
}

} // namespace
