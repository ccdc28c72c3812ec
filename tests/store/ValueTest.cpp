// The variant and the currency type: conversions, text forms and the errors VB raises.
#include "Value.h"
#include "Vb.h"

#include <gtest/gtest.h>

namespace {

int ErrorNumberOf(const std::function<void()>& action) {
    try {
        action();
    } catch (const VbError& e) {
        return e.number();
    }
    return 0;
}

} // namespace

TEST(Currency, RoundsHalfToEvenAtTheFourthDecimal) {
    EXPECT_EQ(Currency::fromDouble(54.794520547).raw(), 547945);
    EXPECT_EQ(Currency::fromDouble(0.00005).raw(), 0); // 0.5 ten-thousandths: to the even 0
    EXPECT_EQ(Currency::fromDouble(0.00015).raw(), 2); // 1.5: to the even 2
    EXPECT_EQ(Currency::fromDouble(-0.00015).raw(), -2);
    EXPECT_EQ(Currency::fromDouble(1234.5).raw(), 12345000);
}

TEST(Currency, ProductAndQuotientRoundHalfToEven) {
    const Currency a = Currency::fromRaw(5);            // 0.0005
    const Currency half = Currency::fromRaw(5000);      // 0.5
    EXPECT_EQ((a * half).raw(), 2);                     // 0.00025 -> 0.0002
    EXPECT_EQ((Currency::fromRaw(15) * half).raw(), 8); // 0.00075 -> 0.0008
    EXPECT_EQ((Currency::fromDouble(10) / Currency::fromDouble(3)).raw(), 33333);
    EXPECT_EQ((Currency::fromDouble(2) / Currency::fromDouble(3)).raw(), 6667);
    EXPECT_EQ((Currency::fromDouble(-2) / Currency::fromDouble(3)).raw(), -6667);
}

TEST(Currency, OverflowAndDivisionByZeroRaiseVbErrors) {
    EXPECT_EQ(ErrorNumberOf([] { Currency::fromDouble(1e16); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { Currency::fromDouble(-1e16); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { (void)(Currency::fromDouble(1e10) * Currency::fromDouble(1e10)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { (void)(Currency::fromDouble(1) / Currency()); }), 11);
    EXPECT_EQ(ErrorNumberOf([] { Currency::fromDouble(922337203685477.0); }), 0);
}

TEST(Currency, TextDropsTrailingZeros) {
    EXPECT_EQ(Currency::fromDouble(54.7945).toString(), "54.7945");
    EXPECT_EQ(Currency::fromDouble(12).toString(), "12");
    EXPECT_EQ(Currency::fromDouble(-0.5).toString(), "-0.5");
    EXPECT_EQ(Currency::fromDouble(5479.45).toString(), "5479.45");
    EXPECT_EQ(Currency().toString(), "0");
    EXPECT_EQ(Currency::fromRaw(std::numeric_limits<std::int64_t>::min()).toString(), "-922337203685477.5808");
}

TEST(ValueText, AsCStrShowsEachType) {
    EXPECT_EQ(Value(true).toString(), "True");
    EXPECT_EQ(Value(false).toString(), "False");
    EXPECT_EQ(Value(12.5).toString(), "12.5");
    EXPECT_EQ(Value(0.1).toString(), "0.1");
    EXPECT_EQ(Value(0.1 + 0.2).toString(), "0.3"); // fifteen significant digits, as VB prints
    EXPECT_EQ(Value(1e15).toString(), "1E+15");
    EXPECT_EQ(Value(1e14).toString(), "100000000000000");
    EXPECT_EQ(Value(1.5e20).toString(), "1.5E+20");
    EXPECT_EQ(Value(0.0001).toString(), "0.0001");
    EXPECT_EQ(Value(0.00001).toString(), "1E-05");
    EXPECT_EQ(Value(-2.25).toString(), "-2.25");
    EXPECT_EQ(Value(0.0).toString(), "0");
    EXPECT_EQ(Value(42).toString(), "42");
    EXPECT_EQ(Value(Currency::fromDouble(100000)).toString(), "100000");
    EXPECT_EQ(Value::null().toString(), "");
    EXPECT_EQ(Value().toString(), "");
    EXPECT_EQ(Value("abc").toString(), "abc");
}

TEST(ValueText, DatesUseTheOfficeShortDate) {
    EXPECT_EQ(Value(QDate(2026, 11, 5)).toString(), "2026/11/05");
    EXPECT_EQ(Value(QDateTime(QDate(2026, 11, 5), QTime(14, 3, 9))).toString(), "2026/11/05 14:03:09");
    EXPECT_EQ(Value(QDateTime(QDate(1899, 12, 30), QTime(8, 30))).toString(), "08:30:00");
}

TEST(ValueConversion, BooleansFromTextAndNumbers) {
    EXPECT_TRUE(Value("True").toBool());
    EXPECT_TRUE(Value("true").toBool());
    EXPECT_FALSE(Value("False").toBool());
    EXPECT_TRUE(Value("-1").toBool());
    EXPECT_FALSE(Value("0").toBool());
    EXPECT_TRUE(Value(2).toBool());
    EXPECT_FALSE(Value().toBool());
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("yes").toBool(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value::null().toBool(); }), 94);
}

TEST(ValueConversion, NumbersFromTextAcceptBlanksAsThousandsMark) {
    EXPECT_DOUBLE_EQ(Value("1 234.50").toDouble(), 1234.5);
    EXPECT_DOUBLE_EQ(Value("  -12.5 ").toDouble(), -12.5);
    EXPECT_DOUBLE_EQ(Value("1e3").toDouble(), 1000);
    EXPECT_DOUBLE_EQ(Value("&H1F").toDouble(), 31);
    EXPECT_DOUBLE_EQ(Value(true).toDouble(), -1);
    EXPECT_DOUBLE_EQ(Value().toDouble(), 0);
    EXPECT_DOUBLE_EQ(Value(QDate(1900, 1, 1)).toDouble(), 2);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("12abc").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("1,234").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value::null().toDouble(); }), 94);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value::null().toCurrency(); }), 94);
}

TEST(ValueConversion, LongAndCurrencyRoundHalfToEven) {
    EXPECT_EQ(Value(2.5).toLong(), 2);
    EXPECT_EQ(Value(3.5).toLong(), 4);
    EXPECT_EQ(Value(-2.5).toLong(), -2);
    EXPECT_EQ(Value("7.5").toLong(), 8);
    EXPECT_EQ(Value("100000.00").toCurrency().raw(), 1000000000);
    EXPECT_EQ(Value(12.34565).toCurrency().raw(), 123456); // 123456.5 -> even
    EXPECT_EQ(Value(std::int64_t{5}).toCurrency().raw(), 50000);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value(1e30).toLong(); }), 6);
}
