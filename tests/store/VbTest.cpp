// VB's conversions, Val, dates and the text helpers, with the vehicle book value as the worked case.
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

QDateTime At(int y, int m, int d, int hh = 0, int mm = 0, int ss = 0) {
    return QDateTime(QDate(y, m, d), QTime(hh, mm, ss));
}

} // namespace

TEST(Val, ReadsTheLeadingNumberAndSkipsBlanks) {
    EXPECT_DOUBLE_EQ(vb::Val(QString("1 234.50")), 1234.5);
    EXPECT_DOUBLE_EQ(vb::Val(QString("   42")), 42);
    EXPECT_DOUBLE_EQ(vb::Val(QString("1\t2")), 12);
    EXPECT_DOUBLE_EQ(vb::Val(QString("12abc")), 12);
    EXPECT_DOUBLE_EQ(vb::Val(QString("abc")), 0);
    EXPECT_DOUBLE_EQ(vb::Val(QString("")), 0);
    EXPECT_DOUBLE_EQ(vb::Val(QString("1.2.3")), 1.2);
    EXPECT_DOUBLE_EQ(vb::Val(QString("-5")), -5);
    EXPECT_DOUBLE_EQ(vb::Val(QString("- 5")), -5);
    EXPECT_DOUBLE_EQ(vb::Val(QString("1e3")), 1000);
    EXPECT_DOUBLE_EQ(vb::Val(QString("2E-2x")), 0.02);
    EXPECT_DOUBLE_EQ(vb::Val(QString("7e")), 7);
    EXPECT_DOUBLE_EQ(vb::Val(QString("&H1F")), 31);
    EXPECT_DOUBLE_EQ(vb::Val(QString("&HFFFF")), -1); // four hex digits are a 16-bit Integer
    EXPECT_DOUBLE_EQ(vb::Val(QString("&O17")), 15);
    EXPECT_DOUBLE_EQ(vb::Val(QString(".5")), 0.5);
    EXPECT_DOUBLE_EQ(vb::Val(QString("1,234")), 1);
    EXPECT_DOUBLE_EQ(vb::Val(QString("5 - 3")), 5);
}

TEST(Val, OfValues) {
    EXPECT_DOUBLE_EQ(vb::Val(Value(12.75)), 12.75);
    EXPECT_DOUBLE_EQ(vb::Val(Value("0.00")), 0);
    EXPECT_DOUBLE_EQ(vb::Val(Value(QDate(2024, 3, 1))), 2024); // the text "2024/03/01"
    EXPECT_EQ(ErrorNumberOf([] { vb::Val(Value::null()); }), 94);
}

TEST(Conversions, CIntAndCLngRoundHalfToEvenAndCheckTheirRange) {
    EXPECT_EQ(vb::CInt(Value(2.5)), 2);
    EXPECT_EQ(vb::CInt(Value(3.5)), 4);
    EXPECT_EQ(vb::CInt(Value(-2.5)), -2);
    EXPECT_EQ(vb::CInt(Value(-3.5)), -4);
    EXPECT_EQ(vb::CInt(Value("2.5")), 2);
    EXPECT_EQ(vb::CInt(Value(Currency::fromDouble(2.5))), 2);
    EXPECT_EQ(vb::CInt(Value(Currency::fromDouble(3.5))), 4);
    EXPECT_EQ(vb::CInt(Value(true)), -1);
    EXPECT_EQ(vb::CInt(Value(32767)), 32767);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value(32767.5)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value(32768)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value(-32769)); }), 6);
    EXPECT_EQ(vb::CLng(Value(40000.5)), 40000);
    EXPECT_EQ(ErrorNumberOf([] { vb::CLng(Value(std::int64_t{2147483648LL})); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value("abc")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value::null()); }), 94);
}

TEST(Conversions, CCurCDblCStrAndIsNumeric) {
    EXPECT_EQ(vb::CCur(Value(1.23456)).raw(), 12346);
    EXPECT_EQ(vb::CCur(Value(1.23455)).raw(), 12346); // ...5.5 ten-thousandths -> even 6
    EXPECT_EQ(vb::CCur(Value("1 000.10")).raw(), 10001000);
    EXPECT_DOUBLE_EQ(vb::CDbl(Value("3.25")), 3.25);
    EXPECT_EQ(vb::CStr(Value(true)), "True");
    EXPECT_EQ(vb::CStr(Value(Currency::fromDouble(94520.55))), "94520.55");
    EXPECT_EQ(ErrorNumberOf([] { vb::CStr(Value::null()); }), 94);
    EXPECT_TRUE(vb::IsNumeric(Value("1 234.50")));
    EXPECT_TRUE(vb::IsNumeric(Value(" -3 ")));
    EXPECT_TRUE(vb::IsNumeric(Value("&H10")));
    EXPECT_FALSE(vb::IsNumeric(Value("12abc")));
    EXPECT_FALSE(vb::IsNumeric(Value("")));
    EXPECT_FALSE(vb::IsNumeric(Value(".")));
    EXPECT_FALSE(vb::IsNumeric(Value::null()));
    EXPECT_TRUE(vb::IsNumeric(Value()));
}

TEST(Rounding, RoundHalfEvenOnTheDecimalValue) {
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(2.5, 0), 2);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(0.125, 2), 0.12);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(0.135, 2), 0.14);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(2.675, 2), 2.68); // the decimal 2.675 is a tie; 7 is odd
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(-1.005, 2), -1.0);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(1.2349, 2), 1.23);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(9.995, 2), 10.0);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(1.5, 3), 1.5);
}

TEST(CDate, ReadsDayFirstAndYearFirstTexts) {
    EXPECT_EQ(vb::CDate(Value("05/11/2026")), At(2026, 11, 5));
    EXPECT_EQ(vb::CDate(Value("5/1/2026")), At(2026, 1, 5));
    EXPECT_EQ(vb::CDate(Value("5/1/26")), At(2026, 1, 5));
    EXPECT_EQ(vb::CDate(Value("5/1/29")), At(2029, 1, 5));
    EXPECT_EQ(vb::CDate(Value("5/1/30")), At(1930, 1, 5));
    EXPECT_EQ(vb::CDate(Value("2026/11/05")), At(2026, 11, 5));
    EXPECT_EQ(vb::CDate(Value("2026-11-05")), At(2026, 11, 5));
    EXPECT_EQ(vb::CDate(Value("2026-11-05 14:30")), At(2026, 11, 5, 14, 30));
    EXPECT_EQ(vb::CDate(Value("05/11/2026 08:15:45")), At(2026, 11, 5, 8, 15, 45));
    EXPECT_EQ(vb::CDate(Value("2026-11-05T07:00:00")), At(2026, 11, 5, 7));
}

TEST(CDate, FallsBackToMonthFirstOnlyWhenDayFirstIsImpossible) {
    EXPECT_EQ(vb::CDate(Value("12/25/2026")), At(2026, 12, 25));
    EXPECT_EQ(vb::CDate(Value("5 Nov 2026")), At(2026, 11, 5));
    EXPECT_EQ(vb::CDate(Value("November 5, 2026")), At(2026, 11, 5));
    EXPECT_EQ(vb::CDate(Value("2:30 PM")), At(1899, 12, 30, 14, 30));
}

TEST(CDate, NumbersAreOleSerialsAndBadTextsFail) {
    EXPECT_EQ(vb::CDate(Value(0.0)), At(1899, 12, 30));
    EXPECT_EQ(vb::CDate(Value(2.0)), At(1900, 1, 1));
    EXPECT_EQ(vb::CDate(Value(46331.75)), At(2026, 11, 5, 18));
    EXPECT_EQ(vb::CDate(Value(-1.25)), At(1899, 12, 29, 6));
    EXPECT_DOUBLE_EQ(vb::DateToSerial(At(1899, 12, 29, 6)), -1.25);
    EXPECT_DOUBLE_EQ(vb::DateToSerial(At(2026, 11, 5, 18)), 46331.75);
    const QDateTime d = At(2024, 2, 29, 23, 59, 59);
    EXPECT_EQ(vb::CDate(Value(d)), d);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("31/02/2026")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("13/25/2026")); }), 13); // no such date either way
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("abc")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("2026")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value("10:75")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value::null()); }), 94);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value(1e9)); }), 6);
    EXPECT_TRUE(vb::IsDate("2026/11/05"));
    EXPECT_FALSE(vb::IsDate("1 234.50"));
}

TEST(DateArithmetic, MonthsClampToTheMonthEndAndDaysIgnoreTime) {
    EXPECT_EQ(vb::DateAddMonths(At(2026, 1, 31), 1), At(2026, 2, 28));
    EXPECT_EQ(vb::DateAddMonths(At(2024, 1, 31), 1), At(2024, 2, 29));
    EXPECT_EQ(vb::DateAddMonths(At(2024, 3, 31), -1), At(2024, 2, 29));
    EXPECT_EQ(vb::DateAddMonths(At(2026, 5, 15, 9, 30), 12), At(2027, 5, 15, 9, 30));
    EXPECT_EQ(vb::DateAddDays(At(2026, 12, 31, 10), 1), At(2027, 1, 1, 10));
    EXPECT_EQ(vb::DateAddDays(At(2024, 3, 1), -1), At(2024, 2, 29));
    EXPECT_EQ(vb::DateDiffDays(At(2026, 1, 1, 23, 59), At(2026, 1, 2, 0, 1)), 1);
    EXPECT_EQ(vb::DateDiffDays(At(2026, 1, 2), At(2026, 1, 1, 23)), -1);
    EXPECT_EQ(vb::DateDiffDays(At(2024, 1, 1), At(2025, 1, 1)), 366);
}

TEST(TextHelpers, ProperCaseAndTrim) {
    // A word starts only after a blank, tab, line feed, vertical tab, form feed, carriage return or NUL.
    const std::pair<QString, QString> cases[] = {
        {"BAKKIES", "Bakkies"},
        {"toyota hilux 2.4", "Toyota Hilux 2.4"},
        {"o'neil", "O'neil"},
        {"land-rover", "Land-rover"},
        {"isuzu(xyz789)", "Isuzu(xyz789)"},
        {"(pty)ltd", "(pty)ltd"},
        {"maak(abc 123)", "Maak(abc 123)"},
        {"4x4 BAKKIE", "4x4 Bakkie"},
        {"tank-one\ttwo\nthree\vfour\ffive\rsix", "Tank-one\tTwo\nThree\vFour\fFive\rSix"},
        {QString("a") + QChar(0) + "b", QString("A") + QChar(0) + "B"},
        {"  two  blanks", "  Two  Blanks"},
        {"", ""},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(vb::ProperCase(in), out) << in.toStdString();
    EXPECT_EQ(vb::Trim("  a b  "), "a b");
    EXPECT_EQ(vb::Trim("\ta "), "\ta");
}

// The vehicle book value: straight-line depreciation in the currency type.
namespace {
QString BookValue(const QString& priceText, const QString& pctText, const QDateTime& bought, const QDateTime& today) {
    const Currency price = vb::CCur(Value(priceText));
    const Currency pct = vb::CCur(Value(pctText));
    const QString days = QString::number(vb::DateDiffDays(vb::CDate(Value(vb::Format(Value(bought), "yyyy/mm/dd"))),
                                                          vb::CDate(Value(vb::Format(Value(today), "yyyy/mm/dd")))));
    const double rate = pct.toDouble() / 100.0;
    const Currency daily = Currency::fromDouble(price.toDouble() * rate / 365.0);
    const Currency written = Currency::fromDouble(vb::CDbl(Value(days)) * daily.toDouble());
    const Currency book = price - written;
    if (book < Currency::fromDouble(1.0))
        return "1.00";
    return vb::Format(Value(book), "###0.00");
}
} // namespace

TEST(BookValue, WorkedCaseAndFloor) {
    const QDateTime bought = At(2026, 1, 1);
    const QDateTime today = vb::DateAddDays(bought, 100);
    const Currency daily = Currency::fromDouble(100000.00 * 0.2 / 365.0);
    EXPECT_EQ(daily.toString(), "54.7945");
    EXPECT_EQ(Currency::fromDouble(100 * daily.toDouble()).toString(), "5479.45");
    EXPECT_EQ(BookValue("100000.00", "20", bought, today), "94520.55");
    EXPECT_EQ(BookValue("100000.00", "20", bought, bought), "100000.00");
    EXPECT_EQ(BookValue("1", "1", bought, vb::DateAddDays(bought, 1)), "1.00");
    EXPECT_EQ(BookValue("100000.00", "-20", bought, today), "105479.45");
}
