// The vehicle list's statement: select list by purpose, then category, search, renewal period, order.
#include "VehicleSql.h"

#include <gtest/gtest.h>

namespace {

const QString kFrom = " From [Voertuig] inner join voerkat on voerkat.transid = voertuig.catid where "
                      "voertuig.transid > 0 ";
const QString kGridSelect = "SELECT   voertuig.[TransID] ,desc as Category ,[Maak]  ,[Model] ,[RegNR]  ,[AWaarde]  "
                            ",[KM] ,licenceduedate   ,serviceduedate ";

VehicleListFilter CategoryFilter(int index, int id) {
    VehicleListFilter f;
    f.dateFrom = QDate(2023, 1, 5);
    f.dateTo = QDate(2024, 6, 30);
    f.categoryIndex = index;
    f.selectedId = id;
    return f;
}

} // namespace

TEST(VehicleSql, GridStatementOfOneCategory) {
    EXPECT_EQ(BuildVehicleSql(CategoryFilter(2, 7), VehicleSqlKind::Grid),
              kGridSelect + kFrom + " and CatID = 7 order by maak,model, regnr");
    // "_All Categories" (index 0) adds no category condition.
    EXPECT_EQ(BuildVehicleSql(CategoryFilter(0, 0), VehicleSqlKind::Grid),
              kGridSelect + kFrom + " order by maak,model, regnr");
}

TEST(VehicleSql, MinimaAndWorkbookSelectLists) {
    VehicleListFilter f = CategoryFilter(1, 3);
    f.searchText = "toy";
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::MinLicence), "SELECT   min(licenceduedate) as [LicenceDate]" + kFrom);
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::MinService), "SELECT   min(serviceduedate) as [ServiceDate]" + kFrom);
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Workbook),
              "SELECT   desc as Category ,[Maak] as [Make] ,[Model] ,[RegNR] as [Registration #] ,[AWaarde] as "
              "[Purchase Price] ,[KM] ,licenceduedate as [Licence Renewal]  ,serviceduedate as [Service Due] " +
                  kFrom + " and CatID = 3 and maak like '*toy*' order by maak,model, regnr");
}

TEST(VehicleSql, SearchByEachOptionWithTextAsTyped) {
    VehicleListFilter f = CategoryFilter(0, 0);
    f.searchText = " Hi lux";
    f.searchOption = 1;
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid),
              kGridSelect + kFrom + " and model like '* Hi lux*' order by maak,model, regnr");
    f.searchOption = 2;
    f.searchText = "CA 1";
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid),
              kGridSelect + kFrom + " and regnr like '*CA 1*' order by maak,model, regnr");
    f.searchText = "   ";
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid), kGridSelect + kFrom + " order by maak,model, regnr");
}

TEST(VehicleSql, SearchAllCategoriesCountsOnlyForFillsThatHonourIt) {
    VehicleListFilter f = CategoryFilter(1, 4);
    f.searchAllChecked = true;
    // A list click or refresh keeps the category even with the box checked.
    EXPECT_TRUE(BuildVehicleSql(f, VehicleSqlKind::Grid).contains(" and CatID = 4"));
    f.useAllCategories = true;
    EXPECT_FALSE(BuildVehicleSql(f, VehicleSqlKind::Grid).contains("CatID"));
    f.searchAllChecked = false;
    EXPECT_TRUE(BuildVehicleSql(f, VehicleSqlKind::Grid).contains(" and CatID = 4"));
}

TEST(VehicleSql, RenewalPeriodByOption) {
    VehicleListFilter f = CategoryFilter(1, 4);
    f.useDates = true;
    f.renewalOption = 0;
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid),
              kGridSelect + kFrom +
                  " and CatID = 4 and licenceduedate Between '2023/01/05' and '2024/06/30' order by maak,model, regnr");
    // A date run looks across all categories when the box is checked.
    f.searchAllChecked = true;
    f.renewalOption = 1;
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid),
              kGridSelect + kFrom +
                  " and serviceduedate Between '2023/01/05' and '2024/06/30' order by maak,model, regnr");
    f.renewalOption = -1;
    EXPECT_EQ(BuildVehicleSql(f, VehicleSqlKind::Grid), kGridSelect + kFrom + " order by maak,model, regnr");
}
