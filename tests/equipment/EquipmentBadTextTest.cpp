// Bad text in every field of the equipment screens: categories, the item entry (new item, edit, book-out and
// book-in), the stock take and the room stock register. Each refusal names what is wrong and leaves the store
// as it was; what is taken is stored as its column holds it.

#include "BadText.h"
#include "EquipmentScreens.h"
#include "EquipmentTestStore.h"
#include "FlexGrid.h"
#include "ScreenRegistry.h"
#include "frmEquipment.h"
#include "frmEquipmentAdj.h"
#include "frmEquipmentStockTake.h"
#include "frmVKat.h"

#include <QComboBox>
#include <QDateEdit>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <map>

namespace {

using Fields = std::vector<std::pair<QString, QLineEdit*>>;
using Expected = BadTextExpected;

class EquipmentBadText : public EquipmentStoreTest {
protected:
    void SetUp() override {
        EquipmentStoreTest::SetUp();
        RegisterEquipmentScreens();
        m_tools = addCategory("Tools");
        m_drill = addItem(m_tools, "Drill", 50, 50);
    }
    void TearDown() override {
        UnregisterAllScreens();
        EquipmentStoreTest::TearDown();
    }
    // The cases of `field` that give `message`.
    static void add(Expected& expected, const QString& field, const QStringList& bad, const QString& message) {
        for (const QString& b : bad)
            expected[{field, b}] = message;
    }
    const QStringList m_emptyOrBlank = {"empty", "blanks only"};
    // What a figure field makes of each text typed or pasted into it: no figure at all.
    const QStringList m_noFigure = {"empty",
                                    "blanks only",
                                    "a quote",
                                    "a bracket",
                                    "300 characters",
                                    "text in a number field",
                                    "a control character",
                                    "outside Latin-1"};
    int m_tools = 0, m_drill = 0;
};

TEST_F(EquipmentBadText, Category) {
    std::unique_ptr<frmEquipment> s;
    BadTextScreen screen;
    screen.open = [&] {
        m_session.EquipmentMode = 0;
        m_session.ReportChoice = "Equipment List";
        s = std::make_unique<frmEquipment>();
        s->show();
        QTest::mouseClick(s->Label4[0], Qt::LeftButton);
        QTest::keyClicks(s->txtKAT, "Cables");
        return Fields{{"Category", s->txtKAT}};
    };
    screen.save = [&] { QTest::mouseClick(s->Label4[3], Qt::LeftButton); };
    screen.close = [&] { s.reset(); };
    // The category name is refused empty and with a character the lists reserve; the rest is stored.
    Expected expected;
    add(expected, "Category", m_emptyOrBlank, "Fill in equipment category");
    expected[{"Category", "a bracket"}] = "Reserved character '[' not allowed.";
    expected[{"Category", "outside Latin-1"}] = QString::fromUtf8("Reserved character '\xe2\x82\xac' not allowed.");
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
}

TEST_F(EquipmentBadText, ItemEntry) {
    struct Mode {
        const char* name;
        int mode;
        std::vector<const char*> fields;
    };
    const Mode modes[] = {{"new item", kOpeningBalance, {"Description", "Quantity", "Cost"}},
                          {"edit", kEditItem, {"Description", "Cost"}},
                          {"book-out", kBookOut, {"Description", "Quantity"}},
                          {"book-in", kBookIn, {"Description", "Quantity"}}};
    for (const Mode& mode : modes) {
        SCOPED_TRACE(mode.name);
        std::unique_ptr<frmEquipmentAdj> d;
        BadTextScreen screen;
        screen.declined = {"Print Form?"};
        screen.open = [&] {
            m_session.EquipmentMode = mode.mode;
            m_session.SelectedCategoryId = m_tools;
            m_session.SelectedItemId = mode.mode == kOpeningBalance ? 0 : m_drill;
            m_session.ReportChoice = BookOutContext("Drill", "50");
            if (mode.mode == kBookIn) {
                const long long out = bookOut(m_tools, m_drill, 2, "Sam", QDate(2024, 3, 10));
                m_session.ReportChoice = BookInContext(out, "Drill", "Sam ( 2.00)");
                BookOutStockTakeId() =
                    scalar("select stocktakeid from equipmenttrans where id = " + QString::number(out)).toLongLong();
            }
            d = std::make_unique<frmEquipmentAdj>();
            d->show();
            d->txtDesc->setText("Sam");
            d->txtQtyBuy->setText("1");
            d->txtCostBuy->setText("10");
            d->dtpTrans->setDate(QDate(2024, 3, 12));
            const std::map<QString, QLineEdit*> all = {
                {"Description", d->txtDesc}, {"Quantity", d->txtQtyBuy}, {"Cost", d->txtCostBuy}};
            Fields fields;
            for (const char* name : mode.fields)
                fields.emplace_back(name, all.at(name));
            return fields;
        };
        screen.save = [&] { QTest::mouseClick(d->cmdSave, Qt::LeftButton); };
        screen.close = [&] { d.reset(); };
        // A description must hold more than blanks; a quantity must be a figure above 0, within what is out or
        // in stock (the digits of a date make a large one); a cost may be anything, read as a figure.
        Expected expected;
        add(expected, "Description", m_emptyOrBlank, "Description required");
        add(expected, "Quantity", m_noFigure, "0 value is invalid.");
        const QStringList large = {"31 February", "year 9999"};
        if (mode.mode == kBookOut)
            add(expected, "Quantity", large, "Negative Stock Result");
        if (mode.mode == kBookIn)
            add(expected, "Quantity", large, "Amount exceeds Bookout of 2");
        HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
    }
    EXPECT_TRUE(ledgerDisagreements().isEmpty());
}

TEST_F(EquipmentBadText, StockTake) {
    std::unique_ptr<frmEquipmentStockTake> s;
    BadTextScreen screen;
    screen.notices = {"Posted"};
    screen.openFields = [&] {
        s = std::make_unique<frmEquipmentStockTake>();
        s->show();
        s->list1->setCurrentRow(s->list1->row(s->list1->findItems("Tools", Qt::MatchExactly).first()));
        s->flg_Click(1, frmEquipmentStockTake::colActual);
        QTest::keyClicks(s->txtG3, "48");
        s->txtReason->setPlainText("Cycle count");
        s->txtPerson->setText("Ann");
        return std::vector<std::pair<QString, QWidget*>>{
            {"Counted", s->txtG3}, {"Reason", s->txtReason}, {"Person", s->txtPerson}};
    };
    screen.save = [&] { QTest::mouseClick(s->cmdPost, Qt::LeftButton); };
    screen.close = [&] { s.reset(); };
    // The reason needs five characters once line breaks and control characters are left out; a person, any.
    Expected expected;
    add(expected, "Reason", {"empty", "blanks only", "a bracket", "a control character"},
        "Reason must be at least 5 characters");
    expected[{"Person", "empty"}] = "Person is required";
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
    EXPECT_TRUE(ledgerDisagreements().isEmpty());
}

TEST_F(EquipmentBadText, RoomStock) {
    exec("insert into kamer ([desc]) values ('Office')");
    exec("insert into voorkat ([desc]) values ('Furniture')");
    const int furniture = scalar("select max(vid) from voorkat").toInt();
    std::unique_ptr<frmVKat> k;
    BadTextScreen category;
    category.open = [&] {
        k = std::make_unique<frmVKat>();
        k->show();
        k->txtKAT->setText("Linen");
        return Fields{{"Category", k->txtKAT}};
    };
    category.save = [&] { QTest::mouseClick(k->cmdSaveCategory, Qt::LeftButton); };
    category.close = [&] { k.reset(); };
    Expected expected;
    add(expected, "Category", m_emptyOrBlank, "Fill in stock category");
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, category), expected);
    EXPECT_EQ(scalar("select max(len([desc])) from voorkat"), "50");

    std::unique_ptr<frmVoor> item;
    BadTextScreen items;
    items.open = [&] {
        item = std::make_unique<frmVoor>(furniture, 0);
        item->show();
        item->txtDesc->setText("Desk");
        item->cmbLOK->setCurrentIndex(0);
        item->txtHoev->setText("2");
        item->txtYY->setText("2024");
        item->txtMM->setText("02");
        item->txtDD->setText("28");
        item->txtKoop->setText("1500.5");
        item->txtVerseker->setText("100");
        item->txtVerwys->setText("REF");
        return Fields{{"Description", item->txtDesc},
                      {"Quantity", item->txtHoev},
                      {"Year", item->txtYY},
                      {"Month", item->txtMM},
                      {"Day", item->txtDD},
                      {"Bought for", item->txtKoop},
                      {"Insured for", item->txtVerseker},
                      {"Reference", item->txtVerwys}};
    };
    items.save = [&] { QTest::mouseClick(item->lblcmd, Qt::LeftButton); };
    items.close = [&] { item.reset(); };
    // Only the description is checked; the figure fields take digits, an invalid date stores none.
    expected.clear();
    add(expected, "Description", m_emptyOrBlank, "Please complete description");
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, items), expected);
    EXPECT_EQ(scalar("select max(len([desc])) from voorinv"), "50");
    EXPECT_EQ(scalar("select max(len(verwys)) from voorinv"), "50");
}

} // namespace
