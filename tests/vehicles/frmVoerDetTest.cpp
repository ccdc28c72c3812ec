// The vehicle detail: loading, the checks and their order, silent defaults, the writes of a save, the book
// value as the user types and the purchase-date steppers.
#include "frmVoerDet.h"
#include "BadText.h"
#include "Vb.h"
#include "VehicleTestStore.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDateEdit>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTabWidget>
#include <QTest>
#include <QToolButton>

namespace {

class VoerDetTest : public VehicleStoreTest {
protected:
    void SetUp() override {
        VehicleStoreTest::SetUp();
        SeedRegister();
    }

    // The detail as the list opens it for a new vehicle of a category.
    std::unique_ptr<frmVoerDet> openNew(int category) {
        m_session.SelectedID = category;
        m_session.SelectedCatID = category;
        auto d = std::make_unique<frmVoerDet>();
        d->SetNewVehicleDefaults();
        d->show();
        d->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(d.get()));
        return d;
    }

    std::unique_ptr<frmVoerDet> openExisting(int id, int category) {
        m_session.SelectedID = id;
        m_session.SelectedCatID = category;
        auto d = std::make_unique<frmVoerDet>();
        d->LoadDetail();
        d->show();
        d->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(d.get()));
        return d;
    }

    static void clickOption(QAbstractButton* option) {
        QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
    }

    static void retype(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }

    QString column(int id, const QString& name) {
        return scalar(QString("select %1 from voertuig where transid = %2").arg(name).arg(id));
    }
};

} // namespace

TEST_F(VoerDetTest, CheckVehicleRefusesEmptyFieldsInOrderOnTheFirstPage) {
    auto d = openNew(m_light);
    const QStringList fields = {"Make", "Model", "Registration No", "Depreciation %", "Insured Value", "Kilometers"};
    QList<QLineEdit*> edits = {d->txtMaak, d->txtModel, d->txtReg, d->txtDep, d->txtVerseker, d->txtKilo};
    for (QLineEdit* e : edits)
        e->clear();
    QList<int> pageWhileShown;
    m_messages.onShow = [&](const ShownMessage&) { pageWhileShown << d->SSTab1->currentIndex(); };
    for (int i = 0; i < fields.size(); ++i) {
        d->SSTab1->setCurrentIndex(2);
        QTest::mouseClick(d->lblcmd[0], Qt::LeftButton);
        ASSERT_EQ(m_messages.shown.size(), i + 1);
        EXPECT_EQ(m_messages.shown[i].text, "Complete the " + fields[i] + " field!");
        EXPECT_EQ(m_messages.shown[i].title, "Vehicle Details");
        EXPECT_EQ(m_messages.shown[i].icon, MsgIcon::Information);
        // The first page stands before the message and after it, also for the fields of the second page.
        EXPECT_EQ(pageWhileShown.value(i), 0) << qPrintable(fields[i]);
        EXPECT_EQ(d->SSTab1->currentIndex(), 0) << qPrintable(fields[i]);
        if (d->SSTab1->currentWidget()->isAncestorOf(edits[i])) {
            EXPECT_TRUE(edits[i]->hasFocus()) << qPrintable(fields[i]);
        }
        edits[i]->setText(" "); // a blank passes: only exact emptiness counts
    }
    m_messages.onShow = nullptr;
    QTest::mouseClick(d->lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(m_messages.shown.size(), fields.size());
    EXPECT_EQ(scalar("select count(*) from voertuig where regnr = ' '"), "1");
}

TEST_F(VoerDetTest, SaveOfANewVehicleWritesEveryColumn) {
    auto d = openNew(m_light);
    QTest::keyClicks(d->txtMaak, "Nissan");
    retype(d->txtModel, "Navara");
    QTest::keyClicks(d->txtReg, "CA 42");
    QTest::keyClicks(d->txtKilo, "1500.5");
    retype(d->txtKoop, "250000abc");
    retype(d->txtDep, "15");
    retype(d->txtVerseker, "200000");
    QTest::keyClicks(d->txtEnj, "QG15-1");
    d->dtpPurchaseDate->setDate(QDate(2023, 2, 28));
    d->dtpLicenceDueDate->setDate(QDate(2025, 4, 1));
    d->dtpServiceDueDate->setDate(QDate(2025, 5, 2));
    retype(d->txtFuelTankSize, "");
    QTest::keyClicks(d->txtBatterySize, "652");
    QTest::keyClicks(d->txtTyreSize, "255/70R16");
    QTest::keyClicks(d->txtOilFilterRef, "OF-1");
    QTest::keyClicks(d->txtFanbeltRef, "FB-2");
    clickOption(d->optRebate[0]);
    EXPECT_TRUE(d->fraRebate->isVisible());
    retype(d->txtRebatePct, "");
    const QString shownBook = d->lblBoek->text();
    QTest::mouseClick(d->lblcmd[0], Qt::LeftButton);

    EXPECT_TRUE(m_messages.shown.isEmpty()) << qPrintable(m_messages.last());
    const int id = scalar("select transid from voertuig where maak = 'Nissan'").toInt();
    ASSERT_GT(id, 0);
    EXPECT_EQ(m_session.LastVehicleID, id);
    const std::pair<const char*, QString> stored[] = {{"catid", QString::number(m_light)},
                                                      {"model", "Navara"},
                                                      {"regnr", "CA 42"},
                                                      {"adatum", "2023/02/28"},
                                                      {"rebated", "True"},
                                                      {"rebatepct", "100"}, // emptied, silently given its default
                                                      {"licenceduedate", "2025/04/01"},
                                                      {"serviceduedate", "2025/05/02"},
                                                      {"awaarde", "250000"}, // the leading digits of the field
                                                      {"depwaarde", "15"},
                                                      {"vwaarde", "200000"},
                                                      {"km", "1500.5"},
                                                      {"enjin", "QG15-1"},
                                                      {"boek", shownBook},
                                                      {"hours", "False"},
                                                      {"fueltanksize", "1"},
                                                      {"batterysize", "652"},
                                                      {"tyresize", "255/70R16"},
                                                      {"oilfilterref", "OF-1"},
                                                      {"fanbeltref", "FB-2"},
                                                      {"deptid", "1"}};
    for (const auto& [name, value] : stored)
        EXPECT_EQ(column(id, name), value) << name;
    // The rate box is the global setting: the save leaves the rebate table alone.
    EXPECT_EQ(d->txtRebateRate->text(), "349");
    EXPECT_EQ(scalar("select rebaterate from rebate"), "349");
}

TEST_F(VoerDetTest, LoadDetailShowsTheStoredVehicleAndSaveEditsThatRow) {
    const int id = addVehicle(m_tractors, "CLAAS", "0", "C 9", 500000, 3100, "2025/01/31", "2025/02/28");
    exec(QString("update voertuig set enjin = null, foto = 'none.jpg', hours = -1, rebated = -1, rebatepct = 80, "
                 "tyresize = 'big' where transid = %1")
             .arg(id));
    auto d = openExisting(id, m_tractors);
    // A stored 0 shows empty.
    EXPECT_EQ(
        QStringList({d->txtIid->text(), d->txtMaak->text(), d->txtModel->text(), d->txtYY->text(), d->txtKoop->text(),
                     d->txtKilo->text(), d->txtRebatePct->text(), d->txtTyreSize->text(), d->txtEnj->text()}),
        QStringList({QString::number(id), "CLAAS", "", "2022/01/01", "500000", "3100", "80", "big", ""}));
    EXPECT_EQ(d->dtpLicenceDueDate->date(), QDate(2025, 1, 31));
    EXPECT_TRUE(d->optRebate[0]->isChecked());
    EXPECT_TRUE(d->rebateApplies());
    EXPECT_TRUE(d->Opt1[1]->isChecked());
    EXPECT_EQ(d->Label14[7]->text(), "Hours");
    EXPECT_EQ(d->cmbDepartment->currentText(), "Department 1");

    retype(d->txtModel, "Axion");
    clickOption(d->optRebate[1]);
    EXPECT_FALSE(d->fraRebate->isVisible());
    QTest::mouseClick(d->lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(column(id, "model"), "Axion");
    EXPECT_EQ(column(id, "rebated"), "False");
    EXPECT_EQ(scalar(QString("select count(*) from voertuig where maak = 'CLAAS'")), "1");
}

TEST_F(VoerDetTest, BookValueFollowsTheFieldsAsTheUserTypes) {
    auto d = openNew(m_light);
    d->SSTab1->setCurrentIndex(1);
    retype(d->txtYY, vb::Format(Value(QDate::currentDate().addDays(-100)), "yyyy/MM/dd"));
    retype(d->txtKoop, "100000.00");
    retype(d->txtDep, "20");
    EXPECT_EQ(d->lblBoek->text(), "94520.55");
    d->txtKoop->setFocus();
    d->txtKoop->end(false);
    QTest::keyClicks(d->txtKoop, "x");
    EXPECT_EQ(d->lblBoek->text(), "94520.55"); // text in the price keeps the last value shown
    retype(d->txtYY, "2024/02/30");
    EXPECT_EQ(d->lblBoek->text(), "0.00");
}

TEST_F(VoerDetTest, LeavingFieldsFillsDefaultsAndFormatsPrices) {
    auto d = openNew(m_light);
    clickOption(d->optRebate[0]);
    retype(d->txtRebateRate, "0");
    retype(d->txtRebatePct, "");
    d->txtMaak->setFocus();
    EXPECT_EQ(d->txtRebatePct->text(), "100");
    EXPECT_EQ(d->txtRebateRate->text(), "349");
    d->SSTab1->setCurrentIndex(1);
    retype(d->txtKoop, "1234.5");
    d->txtVerseker->setFocus();
    EXPECT_EQ(d->txtKoop->text(), "1234.50");
    // Only numeric keys in the reading.
    d->SSTab1->setCurrentIndex(0);
    retype(d->txtKilo, "12a.5.");
    EXPECT_EQ(d->txtKilo->text(), "12.5");
    // The check's own default for the rate differs from the one on leaving.
    d->txtRebateRate->clear();
    EXPECT_FALSE(d->CheckVehicle());
    EXPECT_EQ(d->txtRebateRate->text(), "389");
}

// Bad text in every field of the vehicle detail: a refusal names the field and writes nothing, or the vehicle is
// saved with the text as its column holds it; never an error box.
TEST_F(VoerDetTest, BadTextInEveryFieldIsRefusedOrStoredNeverAnError) {
    std::unique_ptr<frmVoerDet> d;
    BadTextScreen screen;
    screen.open = [&] {
        d = openNew(m_light);
        d->txtMaak->setText("Nissan");
        d->txtReg->setText("CA 42");
        d->txtKilo->setText("100");
        return std::vector<std::pair<QString, QLineEdit*>>{{"Make", d->txtMaak},
                                                           {"Model", d->txtModel},
                                                           {"Registration No", d->txtReg},
                                                           {"Depreciation %", d->txtDep},
                                                           {"Insured Value", d->txtVerseker},
                                                           {"Kilometers", d->txtKilo},
                                                           {"Price", d->txtKoop},
                                                           {"Engine", d->txtEnj},
                                                           {"Purchase date", d->txtYY},
                                                           {"Photo", d->txtFoto},
                                                           {"Fuel tank", d->txtFuelTankSize},
                                                           {"Battery", d->txtBatterySize},
                                                           {"Tyre", d->txtTyreSize},
                                                           {"Oil filter", d->txtOilFilterRef},
                                                           {"Fanbelt", d->txtFanbeltRef}};
    };
    screen.save = [&] { QTest::mouseClick(d->lblcmd[0], Qt::LeftButton); };
    screen.close = [&] { d.reset(); };
    const auto outcomes = TypeBadTextIntoEveryField(*m_session.db, m_messages, screen);
    // The checks' own messages for the fields they require.
    for (const BadTextOutcome& o : outcomes) {
        if (o.text == "empty" && (o.field == "Make" || o.field == "Model" || o.field == "Kilometers")) {
            EXPECT_EQ(o.message, "Complete the " + o.field + " field!");
        }
    }
}
