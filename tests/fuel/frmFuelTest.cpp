// The fuel capture screen driven as the office uses it: picking vehicle and tank, the checks of a save in
// their order, what a save, an edit and a delete leave in the store and on screen, and a save that fails half-way.

#include "frmFuel.h"
#include "FlexGrid.h"
#include "FuelTestStore.h"
#include "Vb.h"
#include "WorkbookReader.h"

#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

class FuelScreenTest : public FuelStoreTest {
protected:
    void SetUp() override {
        FuelStoreTest::SetUp();
        SeedRegister();
        m_today = QDate::currentDate().toString("yyyy/MM/dd");
    }

    std::unique_ptr<frmFuel> open() {
        auto f = std::make_unique<frmFuel>();
        showActive(*f);
        return f;
    }

    static void pick(QComboBox* combo, const QString& text) {
        const int index = combo->findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo->setFocus();
        combo->setCurrentIndex(index);
    }
    static void retype(QLineEdit* field, const QString& text) {
        typeInto(field, text);
        leave(field);
    }
    // Vehicle and tank picked, the pump read at pumpAfter (the litres follow), the odometer at km.
    void capture(frmFuel& f, const QString& vehicle, const QString& pumpAfter, const QString& km,
                 const QString& category = "Light") {
        pick(f.Combo2, category);
        pick(f.Combo3, vehicle);
        pick(f.Combo7, "Main");
        retype(f.txtPumpCurr, pumpAfter);
        retype(f.txtKm, km);
    }
    void save(frmFuel& f) { QTest::mouseClick(f.lblcmd[0], Qt::LeftButton); }
    QString fuel(const QString& column, const QString& where = "1 = 1") {
        return scalar("select " + column + " from VecFuel where " + where + " order by transid desc");
    }
    QString tank(const QString& column) {
        return scalar("select " + column + " from tanks where transid = " + QString::number(m_tank));
    }
    QString m_today;
};

} // namespace

TEST_F(FuelScreenTest, LoadFillsTheListsAndGivesTheChoiceTableItsRow) {
    exec("delete from VecChoice");
    auto f = open();
    EXPECT_EQ(f->windowTitle(), "Orvel - Fuel Input");
    EXPECT_EQ(f->txtDyy->text(), m_today);
    EXPECT_EQ(f->cmbDriver->itemText(0), "Driver 1");
    EXPECT_EQ(f->cmbActivity->itemText(0), "Activity 1");
    EXPECT_EQ(f->Combo7->count(), 1); // no prompts on this screen's tank list
    EXPECT_EQ(f->Combo7->currentIndex(), -1);
    EXPECT_EQ(f->txtPumpCurr->text(), "0");
    EXPECT_EQ(scalar("select count(*) from VecChoice"), "1");
    EXPECT_EQ(scalar("select VoerKeuse from VecChoice"), "0");
    pick(f->Combo2, "Light");
    pick(f->Combo3, "Toyota (CA 1)");
    EXPECT_EQ(scalar("select VoerKeuse from VecChoice"), "Toyota (CA 1)");
}

TEST_F(FuelScreenTest, PickingVehiclesSetsThePreviousReadingTheRebateAndTheCaptions) {
    // The screen opens with "km's" in small letters; coming back from hours it reads "Km's".
    const QString km = "Km Reading|Km's Travelled|L / 100 km's|Cost / Km";
    const QString kmAgain = "Km Reading|Km's Travelled|L / 100 Km's|Cost / Km";
    const QString hours = "Hour Reading|Hours Travelled|L / 100 Hours|Cost / Hour";
    struct Case {
        const char *category, *vehicle, *previous;
        bool readOnly;
        const char* rebate;
        QString captions;
    } cases[] = {
        {"Light", "Toyota (CA 1)", "1000", true, "Rebate Applicable", km},
        // Neither issues nor Km: the user types the previous reading.
        {"Light", "Bare (CA 2)", "", false, "Rebate Not Applicable", km},
        {"Tractors", "Massey (MF 1)", "500", true, "Rebate Not Applicable", hours},
        // The stored make in capitals differs from the list's "John Deere (JD 1)": the walk finds no row, so the
        // vehicle's flags are not read and the screen keeps those of the vehicle before.
        {"Tractors", "John Deere (JD 1)", "700", true, "Rebate Not Applicable", hours},
        {"Light", "Toyota (CA 1)", "1000", true, "Rebate Applicable", kmAgain},
    };
    auto f = open();
    for (const Case& c : cases) {
        SCOPED_TRACE(c.vehicle);
        pick(f->Combo2, c.category);
        pick(f->Combo3, c.vehicle);
        EXPECT_EQ(f->txtPrKm->text(), c.previous);
        EXPECT_EQ(f->txtPrKm->isReadOnly(), c.readOnly);
        EXPECT_EQ(f->lblRebate->text(), c.rebate);
        QStringList captions;
        for (int i :
             {frmFuel::kCapKmReading, frmFuel::kCapTravelled, frmFuel::kCapLitresPer100, frmFuel::kCapCostPerKm})
            captions << f->label4[i]->text();
        EXPECT_EQ(captions.join(QChar(0x7c)).toStdString(), c.captions.toStdString());
    }
    EXPECT_EQ(f->VehicleID, QString::number(m_toyota));
    EXPECT_EQ(f->txtPrKm->palette().color(QPalette::Base), QColor(217, 225, 186));
}

TEST_F(FuelScreenTest, PickingTheTankShowsBalanceRateAndPump) {
    exec("update tanks set HuidigeVolume = 5"); // wrong until the recalculation
    auto f = open();
    pick(f->Combo2, "Light");
    pick(f->Combo3, "Toyota (CA 1)");
    pick(f->Combo7, "Main");
    EXPECT_EQ(vb::Val(f->txtTankBal->text()), 1000.0);
    EXPECT_EQ(f->txtRandLiter->text(), "20.50");
    EXPECT_EQ(f->txtPumpPrev->text(), "500");
    // The pump read: the litres follow, and the current figures show when the reading is left.
    retype(f->txtPumpCurr, "540");
    EXPECT_EQ(f->txtLiter->text(), "40");
    retype(f->txtKm, "1400");
    EXPECT_EQ(f->txtKmTravel1->text(), "400.00");
    EXPECT_EQ(f->txtKmL1->text(), "10.00");
    EXPECT_EQ(f->txtCKM1->text(), "2.05");
    // Litres typed by hand lock the pump field.
    retype(f->txtLiter, "30");
    EXPECT_FALSE(f->txtPumpCurr->isEnabled());
}

TEST_F(FuelScreenTest, SaveRefusesOneBrokenConditionAtATimeAndWritesNothing) {
    struct Case {
        const char* name;
        std::function<void(frmFuel&)> breakIt;
        QString text;
        MsgIcon icon;
        QString title;
        std::function<QWidget*(frmFuel&)> focus;
    } cases[] = {
        {"date", [](frmFuel& f) { f.txtDyy->clear(); }, "Date field is empty", MsgIcon::Information, "Orvel",
         [](frmFuel& f) { return f.txtDyy; }},
        {"litres", [](frmFuel& f) { f.txtLiter->clear(); }, "Litres is empty", MsgIcon::Information, "Orvel",
         [](frmFuel& f) { return f.txtLiter; }},
        {"rate", [](frmFuel& f) { f.txtRandLiter->clear(); }, "Rand per litre is empty", MsgIcon::Information, "Orvel",
         [](frmFuel& f) { return f.txtRandLiter; }},
        {"km", [](frmFuel& f) { f.txtKm->clear(); }, "Km is empty", MsgIcon::Information, "Orvel",
         [](frmFuel& f) { return f.txtKm; }},
        {"equal reading", [](frmFuel& f) { f.txtKm->setText("1000"); },
         "Km Reading must be more than the previous reading", MsgIcon::Exclamation, "Orvel",
         [](frmFuel& f) { return f.txtKm; }},
        {"lower reading", [](frmFuel& f) { f.txtKm->setText("999"); },
         "Km Reading must be more than the previous reading", MsgIcon::Exclamation, "Orvel",
         [](frmFuel& f) { return f.txtKm; }},
        {"tank", [](frmFuel& f) { f.Combo7->setCurrentIndex(-1); },
         "Some fields are empty, fill all the fields before you save!", MsgIcon::Exclamation, "Fuel",
         [](frmFuel& f) { return f.Combo7; }},
        {"no litres", [](frmFuel& f) { f.txtLiter->setText("0"); },
         "The litres reading cannot be 0 or less. Please change the reading.", MsgIcon::Critical, "Km reading",
         [](frmFuel& f) { return f.txtKm; }},
        {"pump below", [](frmFuel& f) { f.txtPumpCurr->setText("499"); },
         "The Current pump reading entered is less than the previous reading. Please change the reading.",
         MsgIcon::Critical, "Km reading", [](frmFuel& f) { return f.txtKm; }},
        {"closed date", [](frmFuel& f) { f.txtDyy->setText("2024/02/29"); },
         "The date entered is already closed. Please change the date.", MsgIcon::Critical, "Closed date",
         [](frmFuel& f) { return f.txtDyy; }},
    };
    int step = 0;
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const bool marksFailure = step++ < 6; // the checks up to the reading mark the refusal
        auto f = open();
        capture(*f, "Toyota (CA 1)", "540", "1400");
        c.breakIt(*f);
        f->txtRandLiter->setFocus();
        m_messages.clear();
        save(*f);
        ASSERT_EQ(m_messages.shown.size(), 1);
        EXPECT_EQ(m_messages.shown[0].text, c.text);
        EXPECT_EQ(m_messages.shown[0].icon, c.icon);
        EXPECT_EQ(m_messages.shown[0].title, c.title);
        EXPECT_EQ(QApplication::focusWidget(), c.focus(*f));
        EXPECT_EQ(scalar("select count(*) from VecFuel"), "0");
        EXPECT_EQ(vb::Val(tank("pumpreading")), 500.0);
        EXPECT_EQ(f->txtTransID->text(), "0");
        EXPECT_EQ(f->SaveFailed, marksFailure ? 1 : 0);
    }
}

TEST_F(FuelScreenTest, ASavedIssueStoresItsRowMovesThePumpAndResetsTheScreen) {
    auto f = open();
    capture(*f, "Toyota (CA 1)", "540", "1400");
    f->cmbDriver->setCurrentIndex(0);
    f->txtDyy->setText("2024/03/01"); // the day after the closing date
    save(*f);
    ASSERT_TRUE(m_messages.shown.isEmpty()) << m_messages.last().toStdString();
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "1");
    EXPECT_EQ(fuel("VoertuigID & '/' & TankID & '/' & Datum & '/' & KmRead & '/' & PreviousKmRead & '/' & Litres & "
                   "'/' & RperL & '/' & pumpreadprev & '/' & pumpreadcurr"),
              QString("%1/%2/2024/03/01/1400/1000/40/20.5/500/540").arg(m_toyota).arg(m_tank));
    EXPECT_EQ(fuel("driverid & '/' & activityid"),
              scalar("select id from drivers") + "/" + scalar("select id from activities"));
    EXPECT_EQ(tank("pumpreading & '/' & HuidigeVolume"), "540/960");
    // The screen: the tank stays with its new pump reading, the vehicle is to be picked again.
    EXPECT_EQ(f->txtPumpPrev->text(), "540");
    EXPECT_EQ(f->txtPumpCurr->text(), "0");
    EXPECT_EQ(f->txtTankBal->text(), "960.00");
    EXPECT_EQ(f->Combo3->currentIndex(), -1);
    EXPECT_EQ(f->Combo7->currentText(), "Main");
    EXPECT_EQ(f->txtKm->text() + f->txtLiter->text() + f->txtKmTravel1->text() + f->txtKmTravel2->text(), "");
    EXPECT_TRUE(f->txtPrKm->isReadOnly());
    EXPECT_EQ(f->txtTransID->text(), "0");
    EXPECT_EQ(f->SavedFuelID, 0);
    EXPECT_EQ(QApplication::focusWidget(), f->txtDyy);

    // The next issue of the vehicle starts from the saved reading; the figures show the saved issue.
    pick(f->Combo3, "Toyota (CA 1)");
    EXPECT_EQ(f->txtPrKm->text(), "1400");
    EXPECT_EQ(f->txtKmTravel2->text(), "400.00");
    EXPECT_EQ(f->txtKmL->text(), "10.00");
    EXPECT_EQ(f->txtRL->text(), "20.50");
}

TEST_F(FuelScreenTest, AnEditRewritesTheRowAndTheBalanceFollowsTheNewLitres) {
    auto f = open();
    capture(*f, "Toyota (CA 1)", "540", "1400");
    save(*f);
    capture(*f, "Toyota (CA 1)", "570", "1700");
    save(*f);
    ASSERT_EQ(scalar("select count(*) from VecFuel"), "2");
    const QString first = scalar("select min(transid) from VecFuel");

    pick(f->Combo3, "Toyota (CA 1)");
    QTest::mouseClick(f->lblcmd[4], Qt::LeftButton);
    ASSERT_TRUE(f->Frame8->isVisible());
    ASSERT_EQ(f->Flx4->Rows(), 3);
    EXPECT_EQ(f->Flx4->TextMatrix(1, 0), first);
    f->Flx4->SetRow(1);
    QTest::keyClick(f->Flx4, Qt::Key_Return);
    EXPECT_FALSE(f->Frame8->isVisible());
    EXPECT_FALSE(f->Combo3->isEnabled());
    EXPECT_EQ(f->txtTransID->text(), first);
    EXPECT_EQ(f->txtPrKm->text(), "1000");
    EXPECT_EQ(f->txtEditLiter->text(), "40");
    EXPECT_EQ(f->txtPumpCurr->text(), "0"); // the pump fields are not loaded

    // The issue was 45 litres at 1500 km: the pump must be read past its present reading to pass.
    retype(f->txtPumpCurr, "575");
    typeInto(f->txtLiter, "45");
    typeInto(f->txtKm, "1500");
    save(*f);
    ASSERT_TRUE(m_messages.shown.isEmpty()) << m_messages.last().toStdString();
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "2");
    EXPECT_EQ(vb::Val(fuel("Litres", "transid = " + first)), 45.0);
    EXPECT_EQ(vb::Val(fuel("KmRead", "transid = " + first)), 1500.0);
    EXPECT_EQ(vb::Val(fuel("PreviousKmRead", "transid <> " + first)), 1500.0); // relinked, then recalculated
    EXPECT_EQ(vb::Val(tank("HuidigeVolume")), 1000.0 - 45 - 30);
    EXPECT_EQ(f->txtTankBal->text(), "925.00");
    EXPECT_EQ(vb::Val(tank("pumpreading")), 575.0);
    EXPECT_TRUE(f->Combo3->isEnabled());
    EXPECT_EQ(f->EditingFromGrid, 0);
}

TEST_F(FuelScreenTest, OnlyTheLastRowOfTheGridIsDeletedAndTheTankTakesItsLitresBack) {
    auto f = open();
    capture(*f, "Toyota (CA 1)", "540", "1400");
    save(*f);
    capture(*f, "Toyota (CA 1)", "570", "1700");
    save(*f);
    pick(f->Combo3, "Toyota (CA 1)");
    QTest::mouseClick(f->lblcmd[4], Qt::LeftButton);
    ASSERT_EQ(f->Flx4->Rows(), 3);

    f->Flx4->SetRow(1);
    m_messages.clear();
    QTest::mouseClick(f->lblcmd[2], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Delete transaction Not allowed.");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "2");

    f->Flx4->SetRow(2);
    m_messages.clear();
    m_messages.answer(MsgResult::No);
    QTest::mouseClick(f->lblcmd[2], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_TRUE(m_messages.shown[0].text.startsWith("Delete transaction " + m_today + "-"));
    EXPECT_TRUE(m_messages.shown[0].text.endsWith("30.00?"));
    EXPECT_EQ(m_messages.shown[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "2");

    exec("update tanks set HuidigeVolume = 930"); // what the tank shows after both issues
    f->Flx4->SetRow(2);
    QTest::mouseClick(f->lblcmd[2], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "1");
    EXPECT_EQ(vb::Val(tank("HuidigeVolume")), 960.0); // given back without a recalculation
    EXPECT_EQ(vb::Val(tank("pumpreading")), 540.0);
    EXPECT_EQ(f->txtTankBal->text(), "960");
    EXPECT_EQ(f->txtPumpPrev->text(), "540");
    EXPECT_TRUE(f->Frame8->isVisible()); // closed and opened again on the rows left
    EXPECT_EQ(f->Flx4->Rows(), 2);
}

TEST_F(FuelScreenTest, AFailingPumpUpdateLeavesTheEarlierWritesStoredAndEndsTheRun) {
    raw("create trigger pump_fails before update of pumpreading on tanks when new.pumpreading <> old.pumpreading "
        "begin select raise(abort, 'the pump reading cannot be written'); end");
    auto f = open();
    capture(*f, "Toyota (CA 1)", "540", "1400");
    save(*f);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(m_messages.shown[0].title, "Orvel");
    EXPECT_TRUE(m_messages.shown[0].text.contains("the pump reading cannot be written"));
    // The row and the tank's balance stay written; the pump reading and the screen's reset never came.
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "1");
    EXPECT_EQ(vb::Val(tank("HuidigeVolume")), 960.0);
    EXPECT_EQ(vb::Val(tank("pumpreading")), 500.0);
    EXPECT_EQ(f->txtKm->text(), "1400");
}

TEST_F(FuelScreenTest, EditWithoutAVehicleAsksForOne) {
    auto f = open();
    QTest::mouseClick(f->lblcmd[4], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Select a vehicle to edit!");
    EXPECT_EQ(m_messages.shown[0].title, "Edit");
    EXPECT_FALSE(f->Frame8->isVisible());
}

TEST_F(FuelScreenTest, MidCaptureTheFiguresAndTheGridStandBesideTheFieldsAndTheRecordsPrintByDate) {
    // Three earlier issues of the vehicle (stored out of date order), one of another; then a fourth being typed
    // with the record grid open.
    const char* const rows[] = {"'2024/04/08', 1890, 1450, 38.25, 20.5", "'2024/04/01', 1450, 1000, 41.5, 20.5",
                                "'2024/04/15', 2410, 1890, 44, 21.1", "'2024/04/02', 500, 400, 9, 20.5"};
    for (const char* row : rows)
        exec(QString("insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, RperL) "
                     "values (%1, %2, %3)")
                 .arg(row == rows[3] ? m_massey : m_toyota)
                 .arg(m_tank)
                 .arg(row));
    auto f = open();
    f->resize(1100, 640);
    pick(f->Combo2, "Light");
    pick(f->Combo3, "Toyota (CA 1)");
    QTest::mouseClick(f->lblcmd[4], Qt::LeftButton);
    pick(f->Combo7, "Main");
    retype(f->txtPumpCurr, "552.5");
    retype(f->txtKm, "2905");
    EXPECT_EQ(f->txtLiter->text(), "52.5");
    EXPECT_EQ(f->txtKmTravel1->text(), "495.00");
    EXPECT_EQ(f->txtKmTravel2->text(), "520.00");
    EXPECT_EQ(f->txtKmTravel3->text(), "1410.00");
    EXPECT_EQ(f->txtRL10->text(), "20.50");
    EXPECT_TRUE(f->Frame8->isVisible());
    EXPECT_EQ(f->Flx4->Rows(), 4);
    EXPECT_EQ(f->Flx4->TextMatrix(3, 2), "2410");
    // Numbers stand right in their boxes.
    for (QLineEdit* box : {f->txtLiter, f->txtKm, f->txtKmTravel1, f->txtCKm10, f->txtTankBal})
        EXPECT_TRUE(box->alignment() & Qt::AlignRight) << box->objectName().toStdString();

    m_messages.answer(MsgResult::No);
    QTest::mouseClick(f->lblPrint, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Print Fuel Records?");
    EXPECT_TRUE(WorkbookReader::newestIn(m_home.path() + "/Reports/Reports").isEmpty());
    QTest::mouseClick(f->lblPrint, Qt::LeftButton);
    const QString file = WorkbookReader::newestIn(m_home.path() + "/Reports/Reports");
    ASSERT_FALSE(file.isEmpty());
    WorkbookReader book;
    ASSERT_TRUE(book.open(file)) << book.error().toStdString();
    const WbSheet* sheet = book.sheet("Fuel Records");
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Date");
    EXPECT_EQ(sheet->text("B1"), "Km");
    EXPECT_EQ(sheet->text("C1"), "Litres");
    EXPECT_EQ(sheet->shown("A2"), "2024/04/01");
    EXPECT_EQ(sheet->number("B2"), 1450);
    EXPECT_EQ(sheet->number("C3"), 38.25);
    EXPECT_EQ(sheet->cell("B2")->style.numberFormat, "### ### ##0");
    EXPECT_EQ(sheet->cell("C3")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(sheet->number("B4"), 2410);
    EXPECT_EQ(sheet->lastRow(), 4); // the other vehicle's issue is not listed
}

TEST_F(FuelScreenTest, TheLedgerShowsOnF1AndLeavesOnEscape) {
    for (const char* row :
         {"'2019/05/01', '20', '480', '480', '9.10', 0", "'2019/05/02', '30', '450', '450', '9.10', 7"})
        exec(QString("insert into TankRekords (TankID, TankNaam, Datum, LitersGeneem, LiterNaGeneem, LiterSaldo, "
                     "RandPerLiter, FID) values (1, 'Old', %1)")
                 .arg(row));
    auto f = open();
    pick(f->Combo2, "Light");
    pick(f->Combo3, "Toyota (CA 1)");
    QTest::mouseClick(f->lblcmd[4], Qt::LeftButton);
    QTest::keyClick(f->Flx4, Qt::Key_F1);
    EXPECT_FALSE(f->Flx4->isVisible());
    ASSERT_TRUE(f->flxDelete->isVisible());
    EXPECT_EQ(f->flxDelete->Rows(), 3);
    EXPECT_EQ(f->flxDelete->TextMatrix(2, 4), "30");
    // With no issue just saved the ledger row of key 0 is the one removed.
    QTest::keyClick(f->lblcmd[2], Qt::Key_Delete);
    EXPECT_EQ(scalar("select count(*) from TankRekords"), "1");
    EXPECT_EQ(scalar("select FID from TankRekords"), "7");
    EXPECT_TRUE(f->Flx4->isVisible()); // the fuel records are listed again
    QTest::keyClick(f->Flx4, Qt::Key_F1);
    QTest::keyClick(f->flxDelete, Qt::Key_Escape);
    EXPECT_TRUE(f->Flx4->isVisible());
    EXPECT_FALSE(f->flxDelete->isVisible());
}

TEST_F(FuelScreenTest, AnHoursVehicleIsRefusedInHoursAndAnUnreadableDateIsRefused) {
    auto f = open();
    capture(*f, "Massey (MF 1)", "540", "500", "Tractors");
    save(*f);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Hour Reading must be more than the previous reading");
    m_messages.clear();
    f->txtKm->setText("520");
    f->txtDyy->setText("2024/13/45");
    save(*f);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(m_messages.shown[0].title, "Date");
    EXPECT_EQ(m_messages.shown[0].text, "The date entered is not a valid date. Please change the date.");
    EXPECT_EQ(QApplication::focusWidget(), f->txtDyy);
    EXPECT_EQ(scalar("select count(*) from VecFuel"), "0");
}
