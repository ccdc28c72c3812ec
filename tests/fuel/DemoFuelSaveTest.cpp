// The natural next issue of a demo vehicle, typed into the fuel capture screen as the office types it, passes
// every check of the save; the row, the tank and the screen are right afterwards, and a recalculation over the
// whole register (a connection of its own) finds nothing left to change.

#include "ComboHelpers.h"
#include "DemoRegister.h"
#include "FuelTestStore.h"
#include "Recalc.h"
#include "Vb.h"
#include "frmFuel.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

class DemoFuelSave : public FuelStoreTest {};

void PickByText(QComboBox* combo, const QString& text) {
    const int index = combo->findText(text, Qt::MatchFixedString); // as typed, whatever the case
    ASSERT_GE(index, 0) << text.toStdString();
    combo->setFocus();
    combo->setCurrentIndex(index);
}

void TypeInto(QLineEdit* field, const QString& text) {
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
    QTest::keyClick(field, Qt::Key_Tab);
}

TEST_F(DemoFuelSave, TheNextIssueOfADemoVehicleIsSavedThroughEveryCheck) {
    DemoOptions options;
    options.seed = 4;
    options.today = QDate::currentDate().addDays(-3);
    MakeDemoRegister(*m_session.db, options);
    m_session.ClosedDate = QDateTime(options.today.addDays(-60), QTime(0, 0));

    // The kilometre vehicle with the most issues, its category, its last reading, and the tank it drew from last.
    const QString vehicle =
        scalar("select top 1 f.VoertuigID from VecFuel f inner join voertuig v on v.transid = f.voertuigid "
               "where v.hours = false group by f.VoertuigID order by count(*) desc, f.VoertuigID");
    ASSERT_FALSE(vehicle.isEmpty());
    const QString make = scalar("select maak from voertuig where transid = " + vehicle);
    const QString reg = scalar("select regnr from voertuig where transid = " + vehicle);
    const QString category = scalar(
        "select k.[desc] from voerkat k inner join voertuig v on v.catid = k.transid where v.transid = " + vehicle);
    const double lastReading = vb::Val(scalar("select max(val(kmread)) from VecFuel where voertuigid = " + vehicle));
    const QString tank = scalar("select top 1 tankid from VecFuel where voertuigid = " + vehicle +
                                " order by val(kmread) desc, transid desc");
    const QString tankName = scalar("select tanknaam from tanks where transid = " + tank);
    const double balanceBefore = vb::Val(scalar("select HuidigeVolume from tanks where transid = " + tank));
    const double pumpBefore = vb::Val(scalar("select pumpreading from tanks where transid = " + tank));
    const int issuesBefore = scalar("select count(*) from VecFuel").toInt();
    ASSERT_GT(lastReading, 0);
    ASSERT_GT(pumpBefore, 0);

    frmFuel f;
    f.show();
    f.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
    PickByText(f.Combo2, category);
    PickByText(f.Combo3, make + " (" + reg + ")");
    EXPECT_EQ(vb::Val(f.txtPrKm->text()), lastReading);
    PickByText(f.Combo7, tankName);
    EXPECT_EQ(vb::Val(f.txtTankBal->text()), balanceBefore);
    EXPECT_EQ(vb::Val(f.txtPumpPrev->text()), pumpBefore);
    PickByText(f.cmbDriver, f.cmbDriver->itemText(f.cmbDriver->count() - 1));
    PickByText(f.cmbActivity, f.cmbActivity->itemText(1));
    const QString driver = QString::number(ItemDataAt(f.cmbDriver, f.cmbDriver->currentIndex()));
    const QString activity = QString::number(ItemDataAt(f.cmbActivity, f.cmbActivity->currentIndex()));
    const QString reading = QString::number(lastReading + 412, 'f', 0);
    TypeInto(f.txtPumpCurr, QString::number(pumpBefore + 63, 'f', 2)); // the litres follow from the pump
    TypeInto(f.txtKm, reading);
    EXPECT_EQ(vb::Val(f.txtLiter->text()), 63.0);
    EXPECT_FALSE(f.txtKmL1->text().isEmpty()); // the figures of the issue under way
    QTest::mouseClick(f.lblcmd[0], Qt::LeftButton);
    ASSERT_TRUE(m_messages.shown.isEmpty()) << m_messages.last().toStdString();

    // The row.
    ASSERT_EQ(scalar("select count(*) from VecFuel").toInt(), issuesBefore + 1);
    const QString row = scalar("select max(transid) from VecFuel");
    auto field = [&](const QString& column) {
        return scalar("select " + column + " from VecFuel where transid = " + row);
    };
    EXPECT_EQ(field("VoertuigID"), vehicle);
    EXPECT_EQ(field("TankID"), tank);
    EXPECT_EQ(field("Datum"), QDate::currentDate().toString("yyyy/MM/dd"));
    EXPECT_EQ(vb::Val(field("KmRead")), lastReading + 412);
    EXPECT_EQ(vb::Val(field("PreviousKmRead")), lastReading);
    EXPECT_EQ(vb::Val(field("Litres")), 63.0);
    EXPECT_EQ(vb::Val(field("pumpreadprev")), pumpBefore);
    EXPECT_EQ(vb::Val(field("pumpreadcurr")), pumpBefore + 63);
    EXPECT_EQ(field("driverid"), driver);
    EXPECT_EQ(field("activityid"), activity);
    // The tank.
    const double balanceAfter = vb::Val(scalar("select HuidigeVolume from tanks where transid = " + tank));
    EXPECT_NEAR(balanceAfter, balanceBefore - 63, 1e-9);
    EXPECT_EQ(vb::Val(scalar("select pumpreading from tanks where transid = " + tank)), pumpBefore + 63);
    // The screen.
    EXPECT_EQ(f.txtTankBal->text(), vb::Format(Value(balanceAfter), "###0.00"));
    EXPECT_EQ(vb::Val(f.txtPumpPrev->text()), pumpBefore + 63);
    EXPECT_EQ(f.txtPumpCurr->text(), "0");
    EXPECT_EQ(f.Combo3->currentIndex(), -1);
    EXPECT_TRUE(f.txtKm->text().isEmpty());
    EXPECT_TRUE(f.txtLiter->text().isEmpty());
    EXPECT_EQ(QApplication::focusWidget(), f.txtDyy);

    // What the save's narrowed recalculations left is what a run over everything leaves.
    auto fresh = Database::Open(m_session.db->Path(), false);
    RecalcSummary summary;
    ASSERT_TRUE(Recalc(*fresh, nullptr, false, &summary));
    EXPECT_FALSE(summary.narrowed);
    EXPECT_EQ(summary.valuesWritten, 0);
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

} // namespace
