// The room stock register behind the hidden "S&tock" label: categories, items, the date buttons and an invalid
// date that leaves the stored one alone.
#include "frmVKat.h"
#include "DateEntry.h"
#include "EquipmentScreens.h"
#include "EquipmentTestStore.h"
#include "FlexGrid.h"
#include "ScreenRegistry.h"
#include "frmMain.h"

#include <QComboBox>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace {

class RoomStockTest : public EquipmentStoreTest {
protected:
    void SetUp() override {
        EquipmentStoreTest::SetUp();
        exec("insert into kamer ([desc]) values ('Kitchen')");
        exec("insert into kamer ([desc]) values ('Office')");
        exec("insert into voorkat ([desc]) values ('Furniture')");
    }
};

} // namespace

TEST_F(RoomStockTest, TheStockLabelOpensTheRegister) {
    RegisterEquipmentScreens();
    m_session.db.reset();
    frmMain window;
    ASSERT_TRUE(window.Startup());
    window.Label1_Click(4);
    EXPECT_NE(qobject_cast<frmVKat*>(FindForm("frmVKat")), nullptr);
    EXPECT_EQ(m_session.CurrentSection, 5);
    window.UnloadChildForms();
    UnregisterAllScreens();
}

TEST_F(RoomStockTest, CategoriesAndItemsAreKeptWithTheirChecks) {
    frmVKat s;
    s.show();
    QTest::mouseClick(s.cmdAddItem, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "You have to select a category first!");
    EXPECT_EQ(m_messages.shown.last().title, "Category");
    s.txtKAT->clear();
    QTest::mouseClick(s.cmdSaveCategory, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Fill in stock category");
    EXPECT_EQ(m_messages.shown.last().title, "Stock");
    QTest::keyClicks(s.txtKAT, "Linen");
    QTest::mouseClick(s.cmdSaveCategory, Qt::LeftButton);
    EXPECT_EQ(s.list1->count(), 2);
    s.list1->setCurrentRow(0);
    const int furniture = s.categoryId();

    m_messages.clear();
    frmVoor item(furniture, 0);
    item.lblcmd_Click();
    EXPECT_EQ(m_messages.last(), "Please complete description");
    EXPECT_EQ(m_messages.shown.last().title, "Stock Inventory");
    QTest::keyClicks(item.txtDesc, "Desk");
    item.lblcmd_Click();
    EXPECT_EQ(m_messages.last(), "Please specify the room");
    item.cmbLOK->setCurrentIndex(1);
    item.txtHoev->setText("2");
    item.txtYY->setText("2024");
    item.txtMM->setText("02");
    item.txtDD->setText("28");
    QTest::mouseClick(item.Command1, Qt::LeftButton);
    QTest::mouseClick(item.Command1, Qt::LeftButton);
    EXPECT_EQ(item.txtYY->text() + "/" + item.txtMM->text() + "/" + item.txtDD->text(), "2024/03/01");
    QTest::mouseClick(item.Command2, Qt::LeftButton);
    item.txtKoop->setText("1500.5");
    item.lblcmd_Click();
    EXPECT_EQ(scalar("select datum from voorinv where [desc] = 'Desk'"), "2024/02/29");
    EXPECT_EQ(number("select kwaarde from voorinv where [desc] = 'Desk'"), 1500.5);
    EXPECT_EQ(scalar("select kamer.[desc] from voorinv, kamer where voorinv.kid = kamer.kid"), "Office");
    const QString id = scalar("select iid from voorinv where [desc] = 'Desk'");

    // An edit keeps the key and the stored date when the new one is invalid.
    frmVoor edit(furniture, id.toInt());
    edit.LoadDetail();
    EXPECT_EQ(edit.txtDesc->text(), "Desk");
    EXPECT_EQ(edit.txtDD->text(), "29");
    EXPECT_EQ(edit.txtKoop->text(), "1500.50");
    edit.txtDD->setText("31");
    edit.txtHoev->setText("3");
    edit.lblcmd_Click();
    EXPECT_EQ(scalar("select datum from voorinv where iid = " + id), "2024/02/29");
    EXPECT_EQ(scalar("select hoeveel from voorinv where iid = " + id), "3");

    s.list1_Click();
    ASSERT_EQ(s.flg->Rows(), 2);
    s.flg->setCurrentCell(1, 1);
    m_messages.clear();
    QTest::mouseClick(s.cmdDeleteItem, Qt::LeftButton);
    EXPECT_EQ(m_messages.texts(), QStringList({"Proceed to delete stock item?"}));
    EXPECT_EQ(scalar("select count(*) from voorinv"), "0");
    QTest::mouseClick(s.cmdDeleteCategory, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Proceed to delete category?");
    EXPECT_EQ(m_messages.shown.last().title, "Vehicles");
    EXPECT_EQ(scalar("select count(*) from voorkat"), "1");
}
