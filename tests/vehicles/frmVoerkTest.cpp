// The vehicle list: categories, the grid and its formats, the filters, and the category and vehicle actions
// with their messages, driven as a user drives them.
#include "frmVoerk.h"
#include "BadText.h"
#include "FlexGrid.h"
#include "VehicleTestStore.h"
#include "frmVoerDet.h"

#include <QAbstractButton>
#include <QCheckBox>
#include <QDateEdit>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

namespace {

class VoerkTest : public VehicleStoreTest {
protected:
    void SetUp() override {
        VehicleStoreTest::SetUp();
        SeedRegister();
    }

    std::unique_ptr<frmVoerk> openScreen() {
        auto screen = std::make_unique<frmVoerk>();
        screen->resize(1280, 800);
        screen->show();
        screen->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(screen.get()));
        return screen;
    }

    static void pickCategory(frmVoerk& s, const QString& text) {
        const auto items = s.list1->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(items.size(), 1) << qPrintable(text);
        const QRect r = s.list1->visualItemRect(items.first());
        QTest::mouseClick(s.list1->viewport(), Qt::LeftButton, {}, r.center());
    }

    static QStringList column(const frmVoerk& s, int col) {
        QStringList out;
        for (int r = 1; r < s.flg->Rows(); ++r)
            out << s.flg->TextMatrix(r, col);
        return out;
    }

    // Radio buttons and check boxes answer a click on their mark.
    static void clickOption(QAbstractButton* option) {
        QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(6, option->height() / 2));
    }

    static void pickRow(frmVoerk& s, int row) {
        s.flg->setFocus();
        s.flg->setCurrentCell(row, 2);
    }
};

} // namespace

TEST_F(VoerkTest, OpensOnAllCategoriesWithEveryVehicleFormatted) {
    auto s = openScreen();
    QStringList categories;
    for (int i = 0; i < s->list1->count(); ++i)
        categories << s->list1->item(i)->text();
    EXPECT_EQ(categories, QStringList({"_All Categories", "Light Vehicles", "Tractors", "Trailers"}));
    EXPECT_EQ(s->list1->currentRow(), 0);
    EXPECT_EQ(s->Label3->text(), "_All Categories");
    EXPECT_EQ(s->lblRows->text(), "5 Rows");

    EXPECT_EQ(s->flg->TextMatrix(0, 4), "Registration Nr");
    EXPECT_EQ(s->flg->TextMatrix(0, 5), "Puchase Value");
    // Ordered by make, model, registration; names in proper case, registration behind one blank.
    EXPECT_EQ(column(*s, 2), QStringList({"Ford", "Isuzu", "John Deere", "Massey", "Toyota"}));
    EXPECT_EQ(column(*s, 3), QStringList({"Ranger", "Kb 250", "6120m", "290", "Hilux"}));
    EXPECT_EQ(column(*s, 1),
              QStringList({"Light Vehicles", "Light Vehicles", "Tractors", "Tractors", "Light Vehicles"}));
    // The pattern's leading blank stays.
    EXPECT_EQ(column(*s, 5), QStringList({" 450 000.00", "1 234 567.89", " 900 000.00", " 120 000.00", " 385 000.00"}));
    EXPECT_EQ(column(*s, 6), QStringList({" 8 000.00", "  0.00", " 5 230.00", " 14 000.00", " 125 400.50"}));
    EXPECT_EQ(s->flg->TextMatrix(5, 4), " CA 123-456");
    EXPECT_EQ(s->flg->TextMatrix(5, 7) + " " + s->flg->TextMatrix(5, 8), "2025/03/31 2024/11/15");
}

TEST_F(VoerkTest, CategoryClickListsItsVehiclesAndAnEmptyCategoryKeepsOneEmptyRow) {
    auto s = openScreen();
    pickCategory(*s, "Tractors");
    EXPECT_EQ(s->Label3->text(), "Tractors");
    EXPECT_EQ(s->lblRows->text(), "2 Rows");
    EXPECT_EQ(column(*s, 2), QStringList({"John Deere", "Massey"}));
    EXPECT_EQ(m_session.SelectedID, m_tractors);
    EXPECT_EQ(s->txtKAT->text(), "Tractors");

    pickCategory(*s, "Trailers");
    EXPECT_EQ(s->lblRows->text(), "0 Rows");
    ASSERT_EQ(s->flg->Rows(), 2);
    EXPECT_EQ(s->flg->TextMatrix(1, 0), "");
}

TEST_F(VoerkTest, SearchHonoursTheAllCategoriesBoxOnlyWhileTyping) {
    auto s = openScreen();
    pickCategory(*s, "Tractors");
    clickOption(s->optSearch[2]);
    clickOption(s->chkSearchAllCategories);
    QTest::keyClicks(s->txtSearch, "CA");
    EXPECT_EQ(column(*s, 4), QStringList({" CA 777", " CAW 5", " CA 123-456"}));
    EXPECT_EQ(s->lblRows->text(), "3 Rows");
    for (const QString& cat : column(*s, 1))
        EXPECT_EQ(cat, "Light Vehicles");

    // Without the box the search stays inside the category.
    clickOption(s->chkSearchAllCategories);
    s->txtSearch->clear();
    QTest::keyClicks(s->txtSearch, "MF");
    EXPECT_EQ(column(*s, 4), QStringList({" MF 290"}));

    // A category click empties the search and lists that category only.
    clickOption(s->chkSearchAllCategories);
    pickCategory(*s, "Light Vehicles");
    EXPECT_EQ(s->txtSearch->text(), "");
    EXPECT_EQ(s->lblRows->text(), "3 Rows");

    // Choosing another search field clears the text.
    QTest::keyClicks(s->txtSearch, "x");
    clickOption(s->optSearch[0]);
    EXPECT_EQ(s->txtSearch->text(), "");
}

TEST_F(VoerkTest, RenewalFilterListsVehiclesDueInThePeriod) {
    auto s = openScreen();
    clickOption(s->optType[1]);
    // The From date starts at the earliest service date of all vehicles.
    EXPECT_EQ(s->dtpDateFrom->date(), QDate(2024, 9, 1));
    s->dtpDateFrom->setDate(QDate(2024, 10, 1));
    s->dtpDateTo->setDate(QDate(2024, 12, 31));
    QTest::mouseClick(s->imgRun, Qt::LeftButton);
    EXPECT_EQ(column(*s, 8), QStringList({"2024/10/06", "2024/11/15"}));

    clickOption(s->optType[0]);
    EXPECT_EQ(s->dtpDateFrom->date(), QDate(2024, 10, 5));
    QTest::mouseClick(s->imgRun, Qt::LeftButton);
    EXPECT_EQ(column(*s, 7), QStringList({"2024/12/01", "2024/10/05"}));

    // Clear Search: both kinds cleared and the plain list back.
    QTest::mouseClick(s->cmdClearSearch, Qt::LeftButton);
    EXPECT_FALSE(s->optType[0]->isChecked());
    EXPECT_FALSE(s->optType[1]->isChecked());
    EXPECT_EQ(s->dtpDateTo->date(), QDate::currentDate());
    EXPECT_EQ(s->lblRows->text(), "5 Rows");
}

TEST_F(VoerkTest, SaveCategoryChecksInOrderAndStoresUpperCaseAsTyped) {
    auto s = openScreen();
    QTest::mouseClick(s->Label4[0], Qt::LeftButton);
    EXPECT_TRUE(s->Frame2->isVisible());
    EXPECT_EQ(s->txtKAT->text(), "");
    QTest::keyClicks(s->txtKAT, "   ");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Fill in vehicle category");
    EXPECT_EQ(m_messages.shown[0].title, "Vehicles");

    s->txtKAT->clear();
    QTest::keyClicks(s->txtKAT, "#Bakkies");
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 2);
    EXPECT_EQ(m_messages.shown[1].text, "Reserved character '#' not allowed.");
    EXPECT_EQ(m_messages.shown[1].icon, MsgIcon::Exclamation);
    EXPECT_EQ(scalar("select count(*) from voerkat"), "3");

    // Only the first non-blank character is tested; the text is stored as typed, in upper case.
    s->txtKAT->clear();
    QTest::keyClicks(s->txtKAT, " forklifts #2");
    clickOption(s->Opt1[1]);
    QTest::mouseClick(s->Label4[3], Qt::LeftButton);
    EXPECT_EQ(m_messages.shown.size(), 2);
    EXPECT_EQ(scalar("select [desc] from voerkat where [desc] like '*FORK*'"), " FORKLIFTS #2");
    EXPECT_EQ(scalar("select hours from voerkat where [desc] like '*FORK*'"), "True");
    EXPECT_FALSE(s->Frame2->isVisible());
    EXPECT_EQ(s->list1->count(), 5);
}

TEST_F(VoerkTest, DeleteCategoryRefusedWhileInUseAndDoneWhenEmpty) {
    auto s = openScreen();
    pickCategory(*s, "Tractors");
    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    ASSERT_EQ(m_messages.shown.size(), 2);
    EXPECT_EQ(m_messages.shown[0].text, "Proceed to delete category?");
    EXPECT_EQ(m_messages.shown[0].buttons, MsgButtons::YesNo);
    EXPECT_EQ(m_messages.shown[1].text, "This catagory is still in use. Action cancelled.");
    EXPECT_EQ(m_messages.shown[1].icon, MsgIcon::Critical);
    EXPECT_EQ(scalar("select count(*) from voerkat"), "3");

    pickCategory(*s, "Trailers");
    m_messages.answer(MsgResult::No);
    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from voerkat"), "3");

    QTest::mouseClick(s->Label4[2], Qt::LeftButton);
    EXPECT_EQ(scalar("select count(*) from voerkat"), "2");
    EXPECT_EQ(s->list1->count(), 3);
    EXPECT_EQ(s->list1->currentRow(), 0);
}

TEST_F(VoerkTest, DeleteVehicleByKeyAsksAndRemovesOnlyOnYes) {
    auto s = openScreen();
    pickCategory(*s, "Light Vehicles");
    pickRow(*s, 1); // Ford
    m_messages.answer(MsgResult::No);
    QTest::keyClick(s->flg, Qt::Key_Delete);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Proceed to delete vehicle?");
    EXPECT_EQ(m_messages.shown[0].title, "Vehicle Inventory");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(scalar("select count(*) from voertuig where maak = 'ford'"), "1");

    pickRow(*s, 1);
    QTest::keyClick(s->flg, Qt::Key_Delete);
    EXPECT_EQ(scalar("select count(*) from voertuig where maak = 'ford'"), "0");
    EXPECT_EQ(s->lblRows->text(), "2 Rows");
}

TEST_F(VoerkTest, EnterOnARowOpensTheDetailAndPicksTheVehicle) {
    auto s = openScreen();
    pickCategory(*s, "Tractors");
    pickRow(*s, 2); // Massey
    QString shownMake;
    WhenModalOpens([&](QWidget* modal) {
        auto* detail = qobject_cast<frmVoerDet*>(modal);
        ASSERT_NE(detail, nullptr);
        shownMake = detail->txtMaak->text();
        detail->reject();
    });
    QTest::keyClick(s->flg, Qt::Key_Return);
    EXPECT_EQ(shownMake, "MASSEY");
    EXPECT_EQ(m_session.SelectedCatID, m_tractors);
    // Back on the list the grid is refreshed for the category.
    EXPECT_EQ(m_session.SelectedID, m_tractors);
    EXPECT_EQ(s->lblRows->text(), "2 Rows");
}

TEST_F(VoerkTest, AddVehicleOpensTheDetailWithStartValuesOfTheCategory) {
    auto s = openScreen();
    pickCategory(*s, "Tractors");
    WhenModalOpens([&](QWidget* modal) {
        auto* d = qobject_cast<frmVoerDet*>(modal);
        ASSERT_NE(d, nullptr);
        EXPECT_EQ(d->txtIid->text(), "Id");
        EXPECT_EQ(d->txtModel->text(), "Model");
        EXPECT_EQ(d->txtKoop->text(), "1");
        EXPECT_EQ(d->txtFuelTankSize->text(), "0");
        EXPECT_TRUE(d->Opt1[1]->isChecked());
        EXPECT_EQ(d->Label14[7]->text(), "Hours");
        QTest::keyClicks(d->txtMaak, "Landini");
        QTest::keyClicks(d->txtReg, "L 1");
        QTest::keyClicks(d->txtKilo, "250");
        QTest::mouseClick(d->lblcmd[0], Qt::LeftButton);
    });
    QTest::mouseClick(s->Label4[7], Qt::LeftButton);
    EXPECT_EQ(scalar("select catid from voertuig where maak = 'Landini'"), QString::number(m_tractors));
    EXPECT_EQ(scalar("select hours from voertuig where maak = 'Landini'"), "True");
    EXPECT_EQ(s->lblRows->text(), "3 Rows");
}

// A quote in the search text makes the statement fail: an empty grid and its count, and no message.
TEST_F(VoerkTest, AFailedFillCountsNoRows) {
    auto s = openScreen();
    clickOption(s->optSearch[2]);
    QTest::keyClicks(s->txtSearch, "C");
    ASSERT_EQ(s->lblRows->text(), "3 Rows");
    QTest::keyClicks(s->txtSearch, "'");
    EXPECT_EQ(s->lblRows->text(), "0 Rows");
    EXPECT_EQ(s->flg->Rows(), 2);
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

// Bad text as a category name: refused with a message and nothing written, or stored; never an error box.
TEST_F(VoerkTest, BadTextAsACategoryNameIsRefusedOrStoredNeverAnError) {
    std::unique_ptr<frmVoerk> s;
    BadTextScreen screen;
    screen.open = [&] {
        s = openScreen();
        QTest::mouseClick(s->Label4[0], Qt::LeftButton);
        return std::vector<std::pair<QString, QLineEdit*>>{{"Category", s->txtKAT}};
    };
    screen.save = [&] { QTest::mouseClick(s->Label4[3], Qt::LeftButton); };
    screen.close = [&] { s.reset(); };
    const auto outcomes = TypeBadTextIntoEveryField(*m_session.db, m_messages, screen);
    for (const BadTextOutcome& o : outcomes) {
        if (o.text == "empty" || o.text == "blanks only") {
            EXPECT_EQ(o.message, "Fill in vehicle category") << o.text.toStdString();
        }
        if (o.text == "a bracket") {
            EXPECT_EQ(o.message, "Reserved character '[' not allowed.");
        }
    }
}
