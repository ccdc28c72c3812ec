// Bad text in every field of the tank detail, the name adder and the fuel capture: each refusal names what is
// wrong and leaves the store as it was; what is taken is stored as its column holds it.

#include "BadText.h"
#include "FuelTestStore.h"
#include "frmAdd.h"
#include "frmFuel.h"
#include "frmTank.h"

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <map>

namespace {

using Fields = std::vector<std::pair<QString, QLineEdit*>>;

class FuelBadText : public FuelStoreTest {
protected:
    void SetUp() override {
        FuelStoreTest::SetUp();
        SeedRegister();
    }
    template <class Screen> static void showActive(Screen& s) {
        s.show();
        s.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&s));
    }
    static void retype(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Tab);
    }
    static void pick(QComboBox* combo, const QString& text) {
        combo->setFocus();
        combo->setCurrentIndex(combo->findText(text));
    }
    // The message each refused case must give, by field and bad text; a case not listed must be taken.
    using Expected = BadTextExpected;
};

TEST_F(FuelBadText, TankDetail) {
    std::unique_ptr<frmTank> s;
    BadTextScreen screen;
    screen.open = [&] {
        s = std::make_unique<frmTank>();
        s->resize(1100, 600);
        showActive(*s);
        QTest::mouseClick(s->Label4[0], Qt::LeftButton);
        retype(s->txtTank, "north");
        retype(s->txtCapacity, "5000");
        retype(s->txtPumpReading, "10");
        return Fields{{"Tank", s->txtTank}, {"Capacity", s->txtCapacity}, {"Pump reading", s->txtPumpReading}};
    };
    screen.save = [&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    };
    screen.close = [&] { s.reset(); };
    const QString fill = "Fill in all the empty fields!";
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen),
                       {{{"Tank", "empty"}, fill},
                        {{"Tank", "blanks only"}, fill},
                        {{"Capacity", "empty"}, fill},
                        {{"Capacity", "blanks only"}, fill},
                        {{"Capacity", "a quote"}, fill},
                        {{"Capacity", "a bracket"}, fill},
                        {{"Capacity", "300 characters"}, fill},
                        {{"Capacity", "text in a number field"}, fill},
                        {{"Capacity", "a control character"}, fill},
                        {{"Capacity", "outside Latin-1"}, fill}});
    // What was taken went into the columns as they hold it: names in capitals, figures as figures.
    EXPECT_EQ(scalar("select count(*) from tanks where TankNaam <> ucase(TankNaam)"), "0");
}

// Every caption's name has its quotes doubled in its look-up: a name with a quote is stored like any other.
TEST_F(FuelBadText, NameAdder) {
    for (const QString caption : {"Supplier", "Cost Category", "Fuel Supplier"}) {
        SCOPED_TRACE(caption.toStdString());
        std::unique_ptr<frmAdd> a;
        BadTextScreen screen;
        screen.open = [&] {
            a = std::make_unique<frmAdd>();
            a->lblAdd->setText(caption);
            showActive(*a);
            return Fields{{"Name", a->txtAdd}};
        };
        screen.save = [&] { QTest::mouseClick(a->lblcmd[1], Qt::LeftButton); };
        screen.close = [&] { a.reset(); };
        HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), {});
    }
    EXPECT_EQ(scalar("select count(*) from VecSupplier where SUP_Desc = 'O''Neil''s'"), "1");
    EXPECT_EQ(scalar("select count(*) from CostCat where CC_CostCatagory = 'O''Neil''s'"), "1");
    EXPECT_EQ(scalar("select count(*) from fuelsupplier where name = 'O''Neil''s'"), "1");
    // Names are kept trimmed, each once: the blanks-only name is stored empty.
    EXPECT_EQ(scalar("select count(*) from fuelsupplier where name = '[x'"), "1");
    EXPECT_EQ(scalar("select max(len(name)) from fuelsupplier"), "50");
    EXPECT_EQ(scalar("select max(len(SUP_Desc)) from VecSupplier"), "50");
}

TEST_F(FuelBadText, FuelCapture) {
    std::unique_ptr<frmFuel> f;
    BadTextScreen screen;
    screen.open = [&] {
        f = std::make_unique<frmFuel>();
        showActive(*f);
        pick(f->Combo2, "Light");
        pick(f->Combo3, "Toyota (CA 1)");
        pick(f->Combo7, "Main");
        retype(f->txtPumpCurr, QString::number(scalar("select PumpReading from tanks").toInt() + 40));
        retype(f->txtKm, QString::number(scalar("select max(val(KmRead)) from VecFuel").toInt() + 1400));
        f->txtDyy->setText("2024/03/01");
        return Fields{{"Date", f->txtDyy},
                      {"Litres", f->txtLiter},
                      {"Reading", f->txtKm},
                      {"Rand per litre", f->txtRandLiter},
                      {"Pump", f->txtPumpCurr}};
    };
    screen.save = [&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::mouseClick(f->lblcmd[0], Qt::LeftButton);
    };
    screen.close = [&] { f.reset(); };
    // A date that cannot be read and a rate that is no figure are refused before anything is written. The number
    // fields take digits by key, so what is typed there empties them or makes a figure; only what is pasted gets
    // through.
    const QStringList noDate = {
        "blanks only",         "a quote",        "a bracket", "300 characters", "text in a number field", "31 February",
        "a control character", "outside Latin-1"};
    const QStringList pasted = {"a control character", "outside Latin-1"};
    Expected expected = {{{"Date", "empty"}, "Date field is empty"}};
    for (const QString& bad : noDate)
        expected[{"Date", bad}] = "The date entered is not a valid date. Please change the date.";
    const QStringList typedAway = {"empty",     "blanks only",    "a quote",
                                   "a bracket", "300 characters", "text in a number field"};
    for (const QString& bad : typedAway) {
        expected[{"Litres", bad}] = "Litres is empty";
        expected[{"Reading", bad}] = "Km is empty";
        expected[{"Rand per litre", bad}] = "Rand per litre is empty";
    }
    for (const QString& bad : pasted) {
        expected[{"Litres", bad}] = "The litres reading cannot be 0 or less. Please change the reading.";
        expected[{"Reading", bad}] = "Km Reading must be more than the previous reading";
        expected[{"Rand per litre", bad}] = "Rand per litre is not a valid figure";
        expected[{"Pump", bad}] =
            "The Current pump reading entered is less than the previous reading. Please change the reading.";
    }
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
    // What was taken was stored whole: a year of 9999 as typed, figures as figures.
    EXPECT_EQ(scalar("select count(*) from VecFuel where Datum = '9999/12/31'"), "1");
    EXPECT_EQ(scalar("select count(*) from VecFuel where Litres is null or KmRead is null"), "0");
}

// The previous reading is open for typing only on a vehicle with neither issues nor a stored reading. What is typed
// there is compared by its figure and never stored: the row counts from 0 whatever the box holds.
TEST_F(FuelBadText, PreviousReading) {
    std::unique_ptr<frmFuel> f;
    BadTextScreen screen;
    screen.open = [&] {
        exec("delete * from VecFuel where VoertuigID = " + QString::number(m_bare));
        f = std::make_unique<frmFuel>();
        showActive(*f);
        pick(f->Combo2, "Light");
        pick(f->Combo3, "Bare (CA 2)");
        pick(f->Combo7, "Main");
        retype(f->txtPumpCurr, QString::number(scalar("select PumpReading from tanks").toInt() + 40));
        retype(f->txtKm, "1400");
        f->txtDyy->setText("2024/03/01");
        return Fields{{"Previous reading", f->txtPrKm}};
    };
    screen.save = [&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QTest::mouseClick(f->lblcmd[0], Qt::LeftButton);
    };
    screen.close = [&] { f.reset(); };
    const QString higher = "Km Reading must be more than the previous reading";
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen),
                       {{{"Previous reading", "31 February"}, higher}, {{"Previous reading", "year 9999"}, higher}});
    EXPECT_EQ(scalar("select previouskmread from VecFuel where VoertuigID = " + QString::number(m_bare)), "0");
}

} // namespace
