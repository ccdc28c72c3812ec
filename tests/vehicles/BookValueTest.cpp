// Book value: straight-line depreciation over a 365-day year, four-decimal money, a floor of 1.00.
#include "BookValue.h"

#include <gtest/gtest.h>

TEST(BookValue, DepreciationByDaysRoundingFloorAndBadInput) {
    const QDate today(2024, 6, 30);
    struct Case {
        const char* name;
        int daysBefore; // of today; 9999: the date text below instead
        const char* date;
        const char* price;
        const char* pct;
        const char* value;
    };
    const Case cases[] = {
        {"100 days at 20 % (daily 54.7945)", 100, "", "100000.00", "20", "94520.55"},
        {"daily figure rounded to 4.1096 before multiplying", 1000, "", "10000", "15", "5890.40"},
        {"first day", 0, "", "2500", "20", "2500.00"},
        {"under the floor on the first day", 0, "", "0.40", "1", "1.00"},
        {"written off: the floor", 2000, "", "50000", "20", "1.00"},
        {"negative percentage raises the value", 200, "", "100000", "-20", "110958.90"},
        {"a future date counts negative days", -100, "", "100000", "20", "105479.45"},
        {"no grouping", 0, "", "1234567.891", "10", "1234567.89"},
        {"invalid date shows zero", 9999, "2024/13/45", "100000", "20", "0.00"},
        {"empty date shows zero", 9999, "", "100000", "20", "0.00"},
        {"bad price keeps the last value", 10, "", "abc", "20", "77.00"},
        {"empty percentage keeps the last value", 10, "", "1000", "", "77.00"},
    };
    for (const Case& c : cases) {
        const QString date =
            c.daysBefore == 9999 ? QString(c.date) : today.addDays(-c.daysBefore).toString("yyyy/MM/dd");
        EXPECT_EQ(CalcBookValue(date, c.price, c.pct, today, "77.00"), c.value) << c.name;
    }
}
