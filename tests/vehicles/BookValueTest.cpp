// Book value: straight-line depreciation over a 365-day year, four-decimal money, a floor of 1.00.
#include "BookValue.h"

#include <gtest/gtest.h>

namespace {

const QDate kToday(2024, 6, 30);

QString DaysBefore(int days) {
    return kToday.addDays(-days).toString("yyyy/MM/dd");
}

} // namespace

TEST(BookValue, WorkedCaseHundredDaysAtTwentyPercent) {
    // daily 54.7945, written 5479.45, book 94520.55
    EXPECT_EQ(CalcBookValue(DaysBefore(100), "100000.00", "20", kToday, "x"), "94520.55");
}

TEST(BookValue, RoundsTheDailyFigureBeforeMultiplying) {
    // 10000 * 0.15 / 365 = 4.10958904 -> 4.1096; 1000 days -> 4109.60 written, not 4109.59
    EXPECT_EQ(CalcBookValue(DaysBefore(1000), "10000", "15", kToday, "x"), "5890.40");
}

TEST(BookValue, FloorAndFirstDay) {
    EXPECT_EQ(CalcBookValue(DaysBefore(0), "1", "1", kToday, "x"), "1.00");
    EXPECT_EQ(CalcBookValue(DaysBefore(0), "0.40", "1", kToday, "x"), "1.00");
    EXPECT_EQ(CalcBookValue(DaysBefore(0), "2500", "20", kToday, "x"), "2500.00");
    // Fully written off after five years at 20 %: the floor, never below it.
    EXPECT_EQ(CalcBookValue(DaysBefore(2000), "50000", "20", kToday, "x"), "1.00");
}

TEST(BookValue, NegativePercentageRaisesTheValueDayByDay) {
    const QString after100 = CalcBookValue(DaysBefore(100), "100000", "-20", kToday, "x");
    const QString after200 = CalcBookValue(DaysBefore(200), "100000", "-20", kToday, "x");
    EXPECT_EQ(after100, "105479.45");
    EXPECT_EQ(after200, "110958.90");
}

TEST(BookValue, FutureDateCountsNegativeDays) {
    EXPECT_EQ(CalcBookValue(kToday.addDays(100).toString("yyyy/MM/dd"), "100000", "20", kToday, "x"), "105479.45");
}

TEST(BookValue, InvalidDateShowsZeroAndBadNumbersKeepTheLastValue) {
    EXPECT_EQ(CalcBookValue("2024/13/45", "100000", "20", kToday, "77.00"), "0.00");
    EXPECT_EQ(CalcBookValue("", "100000", "20", kToday, "77.00"), "0.00");
    EXPECT_EQ(CalcBookValue(DaysBefore(10), "abc", "20", kToday, "77.00"), "77.00");
    EXPECT_EQ(CalcBookValue(DaysBefore(10), "1000", "", kToday, "77.00"), "77.00");
}

TEST(BookValue, NoGroupingInTheShownValue) {
    EXPECT_EQ(CalcBookValue(DaysBefore(0), "1234567.891", "10", kToday, "x"), "1234567.89");
}
