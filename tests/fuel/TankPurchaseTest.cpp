// Purchases: the balance and rate they leave on the tank, the save's checks and its error path, the suppliers'
// list, and the tank screen's delete of a purchase against the recalculation.

#include "FlexGrid.h"
#include "FuelScreens.h"
#include "FuelTestStore.h"
#include "Recalc.h"
#include "ScreenRegistry.h"
#include "frmAdd.h"
#include "frmFuel.h"
#include "frmTank.h"
#include "frmTankPurchase.h"
#include "frmTankStock.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>

namespace {

class PurchaseTest : public FuelStoreTest {
protected:
    PurchaseTest() : FuelStoreTest(QDate(2024, 1, 31)) {}
    std::unique_ptr<frmTankPurchase> openPurchase(int tank, int purchase) {
        m_session.CurrentTankID = tank;
        m_session.CurrentPurchaseID = purchase;
        auto screen = std::make_unique<frmTankPurchase>();
        if (purchase > 0)
            screen->LoadDetail();
        else
            screen->txtDyy->setText("2024/03/01");
        showActive(*screen);
        return screen;
    }
    void capture(frmTankPurchase& s, const QString& date, const QString& litres, const QString& cost,
                 const QString& perLitre) {
        typeInto(s.txtDyy, date);
        typeInto(s.txtLiter, litres);
        typeInto(s.txtCost, cost);
        leave(s.txtCost);
        if (perLitre != "<computed>")
            typeInto(s.txtCostLitre, perLitre);
        QTest::mouseClick(s.lblcmd[0], Qt::LeftButton);
    }
    QString purchaseField(int id, const QString& column) {
        return scalar("select " + column + " from FuelPurchase where TransID = " + QString::number(id));
    }
};

TEST_F(PurchaseTest, BalanceMovesByTheDifferenceAndTheRateFollowsTheLatestDate) {
    const int tank = addTank("NORTH");
    struct Step {
        const char* what;
        int editOf; // 0 for a new purchase, else the purchase made by step n (1-based)
        QString date, litres, cost, perLitre;
        double balance;
        QString rate;
    };
    const Step steps[] = {
        {"first purchase", 0, "2024/03/01", "100", "2000", "<computed>", 100, "20"},
        {"later purchase sets the rate", 0, "2024/04/01", "50", "1100", "22", 150, "22"},
        {"back-dated purchase keeps the rate", 0, "2024/02/15", "10", "190", "19", 160, "22"},
        {"edit 100 to 80 lowers by 20", 1, "2024/03/01", "80", "1600", "20", 140, "22"},
        {"edit with the same litres leaves the balance", 2, "2024/04/01", "50", "1150", "23", 140, "23"},
    };
    std::vector<int> made;
    for (const Step& step : steps) {
        SCOPED_TRACE(step.what);
        auto s = openPurchase(tank, step.editOf ? made[static_cast<size_t>(step.editOf - 1)] : 0);
        capture(*s, step.date, step.litres, step.cost, step.perLitre);
        EXPECT_FALSE(s->isVisible()); // the save unloads the screen
        if (!step.editOf)
            made.push_back(scalar("select max(TransID) from FuelPurchase").toInt());
        EXPECT_DOUBLE_EQ(volume(tank), step.balance);
        EXPECT_EQ(rate(tank), step.rate);
    }
    EXPECT_TRUE(m_messages.shown.isEmpty()) << qPrintable(m_messages.last());
    // Numbers are kept as text in the store's own form; the cost per litre left empty is computed.
    EXPECT_EQ(purchaseField(made[0], "Liter & '|' & Cost & '|' & CostPerLiter & '|' & Datum & '|' & TankID"),
              "80.00|1600.00|20.00|2024/03/01|" + QString::number(tank));
}

TEST_F(PurchaseTest, CostPerLitreFollowsTheCostUnlessTypedOverAndZeroStaysZero) {
    const int tank = addTank("NORTH");
    auto s = openPurchase(tank, 0);
    typeInto(s->txtLiter, "0");
    typeInto(s->txtCost, "500");
    leave(s->txtCost);
    EXPECT_EQ(s->txtCostLitre->text(), "0"); // no litres: the division fails and the field keeps its value
    typeInto(s->txtLiter, "40");
    typeInto(s->txtCost, "500");
    leave(s->txtCost);
    EXPECT_EQ(s->txtCostLitre->text(), "12.50");
    typeInto(s->txtCostLitre, "0");
    QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(purchaseField(scalar("select max(TransID) from FuelPurchase").toInt(), "CostPerLiter"), "0.00");
    EXPECT_EQ(rate(tank), "0");
}

TEST_F(PurchaseTest, RefusalsWriteNothingAndTheClosingDateItselfIsClosed) {
    const int tank = addTank("NORTH");
    struct Case {
        QString date, litres, cost;
        QString message, title;
        MsgIcon icon;
    };
    const Case cases[] = {
        {"", "10", "100", "You need to fill all the Fields!", "Fuel Purchases", MsgIcon::None},
        {"2024/03/01", "", "100", "You need to fill all the Fields!", "Fuel Purchases", MsgIcon::None},
        {"2024/03/01", "10", "", "You need to fill all the Fields!", "Fuel Purchases", MsgIcon::None},
        {"2024/01/31", "10", "100", "The date entered is already closed. Please change the date.", "Closed date",
         MsgIcon::Critical},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(qPrintable(c.date + " " + c.litres + " " + c.cost));
        m_messages.clear();
        auto s = openPurchase(tank, 0);
        typeInto(s->txtDyy, c.date);
        typeInto(s->txtLiter, c.litres);
        typeInto(s->txtCost, c.cost);
        QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
        ASSERT_EQ(m_messages.shown.size(), 1);
        EXPECT_EQ(m_messages.shown[0].text, c.message);
        EXPECT_EQ(m_messages.shown[0].title, c.title);
        EXPECT_EQ(m_messages.shown[0].icon, c.icon);
        EXPECT_TRUE(s->isVisible());
        EXPECT_TRUE(s->txtDyy->hasFocus());
        EXPECT_EQ(scalar("select count(*) from FuelPurchase"), "0");
    }
    // The day after the closing date passes.
    m_messages.clear();
    auto s = openPurchase(tank, 0);
    capture(*s, "2024/02/01", "10", "100", "10");
    EXPECT_TRUE(m_messages.shown.isEmpty());
    EXPECT_EQ(scalar("select count(*) from FuelPurchase"), "1");
}

TEST_F(PurchaseTest, AFailingStepAsksAndYesGoesOnWhileNoLeavesTheEarlierWritesOnly) {
    const int tank = addTank("NORTH", 30);
    struct Case {
        MsgResult answer;
        QString rowsAfter;
        double balanceAfter;
    };
    // No supplier in the list: the step that writes it fails.
    for (const Case& c : {Case{MsgResult::Yes, "1", 40}, Case{MsgResult::No, "0", 30}}) {
        exec("delete from FuelPurchase");
        exec("update Tanks set HuidigeVolume = 30");
        m_messages.clear();
        auto s = openPurchase(tank, 0);
        s->cmbsupplier->clear();
        m_messages.answer(c.answer);
        capture(*s, "2024/03/01", "10", "100", "10");
        ASSERT_EQ(m_messages.shown.size(), 1);
        const ShownMessage box = m_messages.shown[0];
        EXPECT_TRUE(box.text.startsWith("ERROR in UpdatePompe\r\nInvalid property array index\r\n"));
        EXPECT_TRUE(box.text.endsWith("Yes - Resume Next, No - Exit"));
        EXPECT_EQ(box.buttons, MsgButtons::YesNoDefaultNo);
        EXPECT_EQ(box.icon, MsgIcon::Question);
        EXPECT_FALSE(s->isVisible()); // either way the screen unloads
        EXPECT_EQ(scalar("select count(*) from FuelPurchase"), c.rowsAfter);
        EXPECT_DOUBLE_EQ(volume(tank), c.balanceAfter);
    }
}

TEST_F(PurchaseTest, AddEmptiesTheFieldsAndStillSavesOverThePurchaseInHand) {
    const int tank = addTank("NORTH", 100);
    const int first = addPurchase(tank, "2024/03/01", "100.00", "20.00");
    auto s = openPurchase(tank, first);
    EXPECT_EQ(s->txtLiter->text(), "100.00");
    EXPECT_EQ(s->txtinvoiceref->text(), "INV");
    QTest::mouseClick(s->lblcmd[2], Qt::LeftButton);
    EXPECT_EQ(s->txtDyy->text(), "");
    EXPECT_EQ(s->txtLiter->text(), "0");
    capture(*s, "2024/05/05", "60", "1200", "20");
    EXPECT_EQ(scalar("select count(*) from FuelPurchase"), "1");
    EXPECT_EQ(purchaseField(first, "Datum"), "2024/05/05");
    EXPECT_DOUBLE_EQ(volume(tank), 60);
}

TEST_F(PurchaseTest, SuppliersStartFromTheSeedAndTheAdderPassesOverAKnownName) {
    exec("delete from fuelsupplier");
    auto s = openPurchase(addTank("NORTH"), 0);
    ASSERT_EQ(s->cmbsupplier->count(), 1);
    EXPECT_EQ(s->cmbsupplier->itemText(0), "_fuel Supplier");
    // The look-up compares case-blind, so the second name is passed over.
    for (const QString& name : {QString("o'brien oil"), QString("O'BRIEN OIL"), QString("Bp")}) {
        frmAdd adder;
        adder.lblAdd->setText("Fuel Supplier");
        adder.show();
        typeInto(adder.txtAdd, name);
        QTest::mouseClick(adder.lblcmd[1], Qt::LeftButton);
        EXPECT_FALSE(adder.isVisible());
    }
    s->LoadFuelSuppliers();
    QStringList names;
    for (int i = 0; i < s->cmbsupplier->count(); ++i)
        names << s->cmbsupplier->itemText(i);
    EXPECT_EQ(names, QStringList({"_fuel Supplier", "Bp", "O'brien Oil"}));
    EXPECT_EQ(scalar("select count(*) from fuelsupplier where issystem = 0"), "2");
}

class TankScreenTest : public FuelStoreTest {
protected:
    TankScreenTest() : FuelStoreTest(QDate(2024, 1, 31)) {}
    std::unique_ptr<frmTank> openTanks() {
        auto s = std::make_unique<frmTank>();
        s->resize(1100, 600);
        showActive(*s);
        return s;
    }
    static void pickTank(frmTank& s, const QString& name) {
        const auto items = s.list1->findItems(name, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1);
        s.list1->setCurrentItem(items.first());
    }
};

TEST_F(TankScreenTest, DeletingAPurchaseLeavesTheTankLowUntilTheNextRecalculation) {
    const int tank = addTank("NORTH", 150, "22");
    addPurchase(tank, "2024/03/01", "100.00", "20.00");
    addPurchase(tank, "2024/04/01", "50.00", "22.00");
    auto s = openTanks();
    pickTank(*s, "NORTH");
    ASSERT_EQ(s->flg->Rows(), 3);
    EXPECT_EQ(s->flg->TextMatrix(2, 4), "50.00");
    s->flg->setCurrentCell(2, 2);
    QTest::mouseClick(s->Label4[5], Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Proceed to delete Fuel purchase?", "Recalculation done"}));
    EXPECT_EQ(m_messages.shown[0].title, "Fuel purchase");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_DOUBLE_EQ(volume(tank), 50); // rebuilt to 100, then the 50 taken off once more
    EXPECT_EQ(rate(tank), "20");
    EXPECT_EQ(s->flg->Rows(), 2);
    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_DOUBLE_EQ(volume(tank), 100);

    // The only purchase gone: the rate stays as it was.
    s->flg->setCurrentCell(1, 2);
    QTest::mouseClick(s->Label4[5], Qt::LeftButton);
    EXPECT_EQ(rate(tank), "20");
    EXPECT_EQ(scalar("select count(*) from FuelPurchase"), "0");
}

TEST_F(TankScreenTest, OnlyPurchasesProtectATank) {
    struct Case {
        const char* what;
        QString extra;
        bool deleted;
    };
    const Case cases[] = {
        {"nothing", "", true},
        {"an issue",
         "insert into VecFuel (VoertuigID, TankID, Datum, KmRead, Litres) values (1, %1, '2024/03/01', "
         "'10', '5')",
         true},
        {"a stock take",
         "insert into TankStock (TankID, Tank, Datum, LitersInTank) values (%1, 'T', '2024/03/01', "
         "'5')",
         true},
        {"a purchase", "insert into FuelPurchase (TankID, Datum, Liter, suppid) values (%1, '2024/03/01', '5', 1)",
         false},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        exec("delete from Tanks");
        const int tank = addTank("NORTH");
        if (!c.extra.isEmpty())
            exec(c.extra.arg(tank));
        m_messages.clear();
        auto s = openTanks();
        pickTank(*s, "NORTH");
        QTest::mouseClick(s->Label4[2], Qt::LeftButton);
        EXPECT_EQ(m_messages.shown[0].text, "Proceed to delete the tank?");
        EXPECT_EQ(m_messages.shown[0].title, "Tanks");
        EXPECT_EQ(scalar("select count(*) from Tanks"), c.deleted ? "0" : "1");
        if (!c.deleted) {
            ASSERT_EQ(m_messages.shown.size(), 2);
            EXPECT_EQ(m_messages.shown[1].text, "This tank is still in use.Permission denied!");
            EXPECT_EQ(m_messages.shown[1].icon, MsgIcon::Critical);
        }
        EXPECT_EQ(s->list1->count(), c.deleted ? 0 : 1);
    }
}

TEST_F(TankScreenTest, SaveTankNamesInUpperCaseKeepsTheBalanceAndRefusesBlankNames) {
    auto s = openTanks();
    QTest::mouseClick(s->Label4[0], Qt::LeftButton);
    typeInto(s->txtTank, "   ");
    typeInto(s->txtCapacity, "5000");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Fill in all the empty fields!");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Information);
    EXPECT_EQ(scalar("select count(*) from Tanks"), "0");

    typeInto(s->txtTank, "north diesel");
    s->txtPumpReading->setText("");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    const QString tankRow = "select TankNaam & '|' & HuidigeVolume & '|' & CurRperL & '|' & PumpReading from Tanks";
    EXPECT_EQ(scalar(tankRow), "NORTH DIESEL|0|0|0");
    EXPECT_FALSE(s->Frame2->isVisible());
    ASSERT_EQ(s->list1->count(), 1);

    exec("update Tanks set HuidigeVolume = 123.5, CurRperL = 21.5");
    pickTank(*s, "NORTH DIESEL");
    QTest::mouseClick(s->Label4[1], Qt::LeftButton);
    EXPECT_EQ(s->txtCapacity->text(), "5000");
    typeInto(s->txtPumpReading, "77x7");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from Tanks"), "1");
    EXPECT_EQ(scalar(tankRow), "NORTH DIESEL|123.5|21.5|777"); // only digits reach the pump field
}

TEST_F(TankScreenTest, TheTreeOpensTanksAsAWindowAndTheStockTakeModally) {
    RegisterFuelScreens();
    QWidget* capture = ShowScreen("frmFuel", false);
    ASSERT_TRUE(qobject_cast<frmFuel*>(capture));
    capture->close();
    QWidget* tanks = ShowScreen("frmTank", false);
    ASSERT_TRUE(qobject_cast<frmTank*>(tanks));
    // The stock take is looked for among the windows: a window left by an earlier test may stand on top.
    QString modalTitle;
    QTimer::singleShot(0, [&] {
        for (QWidget* w : QApplication::topLevelWidgets())
            if (qobject_cast<frmTankStock*>(w) && w->isVisible() && w->isModal()) {
                modalTitle = w->windowTitle();
                w->close();
            }
    });
    EXPECT_EQ(ShowScreen("frmTankStock", true), nullptr); // back once the modal screen has closed
    EXPECT_EQ(modalTitle, "Orvel - Tank Stock");
    tanks->close();
    UnregisterAllScreens();
}

} // namespace
