// The vehicle list's statement: its conditions by category, search and renewal period.
#include "VehicleSql.h"

#include <functional>
#include <gtest/gtest.h>

namespace {

const QString kFrom = " From [Voertuig] inner join voerkat on voerkat.transid = voertuig.catid where "
                      "voertuig.transid > 0 ";
const QString kOrder = " order by maak,model, regnr";

VehicleListFilter CategoryFilter(int index, int id) {
    VehicleListFilter f;
    f.dateFrom = QDate(2023, 1, 5);
    f.dateTo = QDate(2024, 6, 30);
    f.categoryIndex = index;
    f.selectedId = id;
    return f;
}

} // namespace

// The conditions between the fixed part and the order, for each way the grid is filled.
TEST(VehicleSql, ConditionsByCategorySearchAndRenewalPeriod) {
    struct Case {
        const char* name;
        int categoryIndex;
        std::function<void(VehicleListFilter&)> set;
        QString conditions;
    };
    const Case cases[] = {
        {"one category", 2, [](VehicleListFilter&) {}, " and CatID = 7"},
        {"all categories", 0, [](VehicleListFilter&) {}, ""},
        {"make", 3, [](VehicleListFilter& f) { f.searchText = "toy"; }, " and CatID = 7 and maak like '*toy*'"},
        {"model, text as typed", 0, [](VehicleListFilter& f) { f.searchText = " Hi lux", f.searchOption = 1; },
         " and model like '* Hi lux*'"},
        {"registration", 0, [](VehicleListFilter& f) { f.searchText = "CA 1", f.searchOption = 2; },
         " and regnr like '*CA 1*'"},
        {"blanks search nothing", 0, [](VehicleListFilter& f) { f.searchText = "   ", f.searchOption = 2; }, ""},
        {"box checked, list click", 2, [](VehicleListFilter& f) { f.searchAllChecked = true; }, " and CatID = 7"},
        {"box checked, typing", 2, [](VehicleListFilter& f) { f.searchAllChecked = true, f.useAllCategories = true; },
         ""},
        {"box clear, typing", 2, [](VehicleListFilter& f) { f.useAllCategories = true; }, " and CatID = 7"},
        {"licence period", 2, [](VehicleListFilter& f) { f.useDates = true, f.renewalOption = 0; },
         " and CatID = 7 and licenceduedate Between '2023/01/05' and '2024/06/30'"},
        {"service period, all categories", 2,
         [](VehicleListFilter& f) { f.useDates = true, f.renewalOption = 1, f.searchAllChecked = true; },
         " and serviceduedate Between '2023/01/05' and '2024/06/30'"},
        {"period without an option", 2,
         [](VehicleListFilter& f) { f.useDates = true, f.renewalOption = -1, f.searchAllChecked = true; }, ""},
    };
    for (const Case& c : cases) {
        VehicleListFilter f = CategoryFilter(c.categoryIndex, c.categoryIndex > 0 ? 7 : 0);
        c.set(f);
        const QString sql = BuildVehicleSql(f, VehicleSqlKind::Grid);
        ASSERT_TRUE(sql.contains(kFrom) && sql.endsWith(kOrder)) << c.name;
        const qsizetype start = sql.indexOf(kFrom) + kFrom.size();
        EXPECT_EQ(sql.mid(start, sql.size() - kOrder.size() - start), c.conditions) << c.name;
    }
}
