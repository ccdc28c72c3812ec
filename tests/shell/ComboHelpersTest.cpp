#include "ComboHelpers.h"
#include "Database.h"
#include "QueryHelpers.h"
#include "ShellTestUtil.h"

#include <QComboBox>
#include <gtest/gtest.h>

namespace {

class ComboHelpersTest : public ::testing::Test {
protected:
    void SetUp() override {
        db().Execute("insert into voerkat ([Desc]) values ('light DELIVERY')");
        db().Execute("insert into voerkat ([Desc]) values ('tractors')");
        db().Execute("insert into voerkat ([Desc]) values ('Bakkies')");
    }
    int categoryId(const QString& desc) {
        return GetScalar(db(), "select TransID from voerkat where [Desc] = '" + desc + "'", "0").toInt();
    }
    StoreSession store;
};

QStringList texts(const QComboBox& c) {
    QStringList out;
    for (int i = 0; i < c.count(); ++i)
        out << c.itemText(i);
    return out;
}

} // namespace

TEST_F(ComboHelpersTest, CategoriesInOrderInProperCaseWithTheirIds) {
    QComboBox combo;
    combo.addItem("stale");
    FillCategoryCombo(&combo, "--- All ---");
    EXPECT_EQ(texts(combo), QStringList({"--- All ---", "Bakkies", "Light Delivery", "Tractors"}));
    EXPECT_EQ(combo.currentIndex(), 0);
    EXPECT_EQ(ItemDataAt(&combo, 2), categoryId("light DELIVERY"));
    EXPECT_EQ(FindItemData(&combo, categoryId("tractors")), 3);
    EXPECT_EQ(FindItemData(&combo, 987654), 0); // absent reads as the first item
}

TEST_F(ComboHelpersTest, VehiclesOfOneCategoryWithTheirRegistration) {
    const int bakkies = categoryId("Bakkies");
    db().Execute("insert into voertuig (CatID, Maak, RegNr) values (" + QString::number(bakkies) +
                 ", 'toyota hilux', 'CA 123-456')");
    db().Execute("insert into voertuig (CatID, Maak, RegNr) values (" + QString::number(categoryId("tractors")) +
                 ", 'john deere', 'T1')");
    QComboBox combo;
    FillVehicleCombo(&combo, bakkies);
    EXPECT_EQ(texts(combo), QStringList({"Toyota Hilux (CA 123-456)"}));
    EXPECT_EQ(ItemDataAt(&combo, 0),
              GetScalar(db(), "select TransID from voertuig where RegNr = 'CA 123-456'", "0").toInt());
}

TEST_F(ComboHelpersTest, TanksWithBothPromptsOrNeitherAndNoPromptWithoutTanks) {
    QComboBox combo;
    FillTankCombo(&combo, true);
    EXPECT_EQ(combo.count(), 0); // no tanks: no prompts either

    db().Execute("insert into tanks (TankNaam) values ('West Diesel')");
    db().Execute("insert into tanks (TankNaam) values ('East Petrol')");
    FillTankCombo(&combo, true, false); // the third argument is not looked at
    EXPECT_EQ(texts(combo),
              QStringList({"---  Select A Tank    ---", "---  Select All Tanks  ---", "East Petrol", "West Diesel"}));
    EXPECT_EQ(ItemDataAt(&combo, 0), 0);
    EXPECT_EQ(ItemDataAt(&combo, 1), -1);
    EXPECT_EQ(ItemDataAt(&combo, 3),
              GetScalar(db(), "select TransID from tanks where TankNaam = 'West Diesel'", "0").toInt());
    FillTankCombo(&combo, false);
    EXPECT_EQ(texts(combo), QStringList({"East Petrol", "West Diesel"}));
}
