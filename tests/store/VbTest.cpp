// The variant, the currency type and VB's conversions, Val, dates, Format and the text helpers.
#include "Vb.h"
#include "Value.h"

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

QString F(const Value& v, const char* pattern) {
    return vb::Format(v, QString::fromLatin1(pattern));
}

} // namespace

TEST(Currency, RoundsHalfToEvenAndRaisesVbErrors) {
    EXPECT_EQ(Currency::fromDouble(54.794520547).raw(), 547945);
    EXPECT_EQ(Currency::fromDouble(0.00005).raw(), 0); // 0.5 ten-thousandths: to the even 0
    EXPECT_EQ(Currency::fromDouble(-0.00015).raw(), -2);
    EXPECT_EQ((Currency::fromRaw(5) * Currency::fromRaw(5000)).raw(), 2); // 0.00025 -> 0.0002
    EXPECT_EQ((Currency::fromRaw(15) * Currency::fromRaw(5000)).raw(), 8);
    EXPECT_EQ((Currency::fromDouble(-2) / Currency::fromDouble(3)).raw(), -6667);
    EXPECT_EQ(ErrorNumberOf([] { Currency::fromDouble(1e16); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { (void)(Currency::fromDouble(1e10) * Currency::fromDouble(1e10)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { (void)(Currency::fromDouble(1) / Currency()); }), 11);
    EXPECT_EQ(ErrorNumberOf([] { Currency::fromDouble(922337203685477.0); }), 0);
    EXPECT_EQ(Currency::fromDouble(5479.45).toString(), "5479.45");
    EXPECT_EQ(Currency::fromDouble(-0.5).toString(), "-0.5");
    EXPECT_EQ(Currency::fromRaw(std::numeric_limits<std::int64_t>::min()).toString(), "-922337203685477.5808");
}

TEST(ValueText, AsCStrShowsEachType) {
    const std::pair<Value, const char*> cases[] = {
        {Value(true), "True"},
        {Value(0.1 + 0.2), "0.3"}, // fifteen significant digits, as VB prints
        {Value(1e15), "1E+15"},
        {Value(1e14), "100000000000000"},
        {Value(0.0001), "0.0001"},
        {Value(0.00001), "1E-05"},
        {Value(0.0), "0"},
        {Value(Currency::fromDouble(100000)), "100000"},
        {Value::null(), ""},
        {Value(QDate(2026, 11, 5)), "2026/11/05"},
        {Value(At(2026, 11, 5, 14, 3, 9)), "2026/11/05 14:03:09"},
        {Value(At(1899, 12, 30, 8, 30)), "08:30:00"},
    };
    for (const auto& [value, text] : cases)
        EXPECT_EQ(value.toString(), text);
}

TEST(ValueConversion, TextNumbersBooleansAndRounding) {
    EXPECT_TRUE(Value("true").toBool());
    EXPECT_TRUE(Value("-1").toBool());
    EXPECT_FALSE(Value("0").toBool());
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("yes").toBool(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value::null().toBool(); }), 94);
    EXPECT_DOUBLE_EQ(Value("1 234.50").toDouble(), 1234.5); // a blank is the thousands mark
    EXPECT_DOUBLE_EQ(Value("  -12.5 ").toDouble(), -12.5);
    EXPECT_DOUBLE_EQ(Value("&H1F").toDouble(), 31);
    EXPECT_DOUBLE_EQ(Value(QDate(1900, 1, 1)).toDouble(), 2);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("12abc").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value("1,234").toDouble(); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { (void)Value::null().toCurrency(); }), 94);
    EXPECT_EQ(Value(2.5).toLong(), 2);
    EXPECT_EQ(Value("7.5").toLong(), 8);
    EXPECT_EQ(Value(12.34565).toCurrency().raw(), 123456); // 123456.5 -> even
    EXPECT_EQ(ErrorNumberOf([] { (void)Value(1e30).toLong(); }), 6);
}

TEST(Val, ReadsTheLeadingNumberAndSkipsBlanks) {
    const std::pair<const char*, double> cases[] = {
        {"1 234.50", 1234.5}, {"1\t2", 12}, {"12abc", 12}, {"abc", 0},     {"1.2.3", 1.2}, {"- 5", -5},
        {"2E-2x", 0.02},      {"7e", 7},    {"&H1F", 31},  {"&HFFFF", -1}, // four hex digits: a 16-bit Integer
        {"&O17", 15},         {".5", 0.5},  {"1,234", 1},  {"5 - 3", 5},
    };
    for (const auto& [text, number] : cases)
        EXPECT_DOUBLE_EQ(vb::Val(QString(text)), number) << text;
    EXPECT_DOUBLE_EQ(vb::Val(Value(QDate(2024, 3, 1))), 2024); // the text "2024/03/01"
    EXPECT_EQ(ErrorNumberOf([] { vb::Val(Value::null()); }), 94);
}

TEST(Conversions, RoundHalfToEvenAndCheckTheirRange) {
    EXPECT_EQ(vb::CInt(Value(2.5)), 2);
    EXPECT_EQ(vb::CInt(Value(-3.5)), -4);
    EXPECT_EQ(vb::CInt(Value(Currency::fromDouble(3.5))), 4);
    EXPECT_EQ(vb::CInt(Value(true)), -1);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value(32767.5)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value(-32769)); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CLng(Value(std::int64_t{2147483648LL})); }), 6);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value("abc")); }), 13);
    EXPECT_EQ(ErrorNumberOf([] { vb::CInt(Value::null()); }), 94);
    EXPECT_EQ(vb::CCur(Value(1.23455)).raw(), 12346); // ...5.5 ten-thousandths -> even 6
    EXPECT_EQ(vb::CCur(Value("1 000.10")).raw(), 10001000);
    EXPECT_EQ(vb::CStr(Value(Currency::fromDouble(94520.55))), "94520.55");
    EXPECT_EQ(ErrorNumberOf([] { vb::CStr(Value::null()); }), 94);
    EXPECT_TRUE(vb::IsNumeric(Value("1 234.50")));
    EXPECT_TRUE(vb::IsNumeric(Value("&H10")));
    EXPECT_FALSE(vb::IsNumeric(Value("12abc")));
    EXPECT_FALSE(vb::IsNumeric(Value(".")));
    EXPECT_FALSE(vb::IsNumeric(Value::null()));
    EXPECT_TRUE(vb::IsNumeric(Value()));
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(0.125, 2), 0.12);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(2.675, 2), 2.68); // the decimal 2.675 is a tie; 7 is odd
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(-1.005, 2), -1.0);
    EXPECT_DOUBLE_EQ(vb::RoundHalfEven(9.995, 2), 10.0);
}

TEST(CDate, DayFirstThenMonthFirstSerialsAndBadTexts) {
    const std::pair<Value, QDateTime> cases[] = {
        {Value("05/11/2026"), At(2026, 11, 5)},
        {Value("2026/11/05"), At(2026, 11, 5)}, // the store's own text form
        {Value("5/1/29"), At(2029, 1, 5)},
        {Value("5/1/30"), At(1930, 1, 5)},
        {Value("2026-11-05 14:30"), At(2026, 11, 5, 14, 30)},
        {Value("05/11/2026 08:15:45"), At(2026, 11, 5, 8, 15, 45)},
        {Value("2026-11-05T07:00:00"), At(2026, 11, 5, 7)},
        {Value("12/25/2026"), At(2026, 12, 25)}, // month first only when day first is impossible
        {Value("November 5, 2026"), At(2026, 11, 5)},
        {Value("2:30 PM"), At(1899, 12, 30, 14, 30)},
        {Value(46331.75), At(2026, 11, 5, 18)},
        {Value(-1.25), At(1899, 12, 29, 6)},
    };
    for (const auto& [value, date] : cases)
        EXPECT_EQ(vb::CDate(value), date) << value.toString().toStdString();
    EXPECT_DOUBLE_EQ(vb::DateToSerial(At(1899, 12, 29, 6)), -1.25);
    for (const char* bad : {"31/02/2026", "13/25/2026", "abc", "", "2026", "10:75"})
        EXPECT_EQ(ErrorNumberOf([&] { vb::CDate(Value(bad)); }), 13) << bad;
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value::null()); }), 94);
    EXPECT_EQ(ErrorNumberOf([] { vb::CDate(Value(1e9)); }), 6);
    EXPECT_TRUE(vb::IsDate("2026/11/05"));
    EXPECT_FALSE(vb::IsDate("1 234.50"));
}

TEST(DateArithmetic, MonthsClampToTheMonthEndAndDaysIgnoreTime) {
    EXPECT_EQ(vb::DateAddMonths(At(2026, 1, 31), 1), At(2026, 2, 28));
    EXPECT_EQ(vb::DateAddMonths(At(2024, 3, 31), -1), At(2024, 2, 29));
    EXPECT_EQ(vb::DateAddMonths(At(2026, 5, 15, 9, 30), 12), At(2027, 5, 15, 9, 30));
    EXPECT_EQ(vb::DateAddDays(At(2026, 12, 31, 10), 1), At(2027, 1, 1, 10));
    EXPECT_EQ(vb::DateDiffDays(At(2026, 1, 1, 23, 59), At(2026, 1, 2, 0, 1)), 1);
    EXPECT_EQ(vb::DateDiffDays(At(2026, 1, 2), At(2026, 1, 1, 23)), -1);
}

TEST(TextHelpers, ProperCaseAndTrim) {
    // A word starts only after a blank, tab, line feed, vertical tab, form feed, carriage return or NUL.
    const std::pair<QString, QString> cases[] = {
        {"toyota hilux 2.4", "Toyota Hilux 2.4"},
        {"o'neil", "O'neil"},
        {"land-rover isuzu(xyz789)", "Land-rover Isuzu(xyz789)"},
        {"4x4 BAKKIE", "4x4 Bakkie"},
        {"tank-one\ttwo\nthree\vfour\ffive\rsix", "Tank-one\tTwo\nThree\vFour\fFive\rSix"},
        {QString("a") + QChar(0) + "b", QString("A") + QChar(0) + "B"},
        {"  two  blanks", "  Two  Blanks"},
    };
    for (const auto& [in, out] : cases)
        EXPECT_EQ(vb::ProperCase(in), out) << in.toStdString();
    EXPECT_EQ(vb::Trim("  a b  "), "a b");
    EXPECT_EQ(vb::Trim("\ta "), "\ta");
}

TEST(Format, NumberPatternsKeepTheirLiteralBlanks) {
    const std::tuple<Value, const char*, const char*> cases[] = {
        {1234.5, "### ##0.00", "1 234.50"},
        {12.5, "### ##0.00", " 12.50"},
        {1234567.891, "### ### ##0.00", "1 234 567.89"},
        {5479.45, "### ###.0000", "5 479.4500"},
        {7, "00000", "00007"},
        {-12.5, "### ##0.00", "- 12.50"},
        {1234567.891, "### ##0.00", "1234 567.89"},
        {-5000.0, "### ### ##0.00", "- 5 000.00"},
        {0.0, "### ### ###", "  "},
        {0.5, "### ###.0000", " .5000"},
        {12.34565, "### ###.0000", " 12.3457"}, // away from zero on the decimal value
        {123456, "00000", "123456"},
        {-0.5, "###0.00", "-0.50"},
        {1.0, "0.##", "1."},
        {0.256, "0.00%", "25.60%"},
        {2.675, "0.00", "2.68"},
        {-2.345, "0.00", "-2.35"},
        {999.995, "### ##0.00", "1 000.00"},
        {2.5, "0", "3"},
        {1234567.891, "#,##0.00", "1 234 567.89"},
        {-5, "0.00;(0.00)", "(5.00)"},
        {0.0, "0.00;(0.00);\"nil\"", "nil"},
        {true, "0.00", "-1.00"},
        {QString("12"), "### ##0.00", " 12.00"},
        {QString("abc"), "### ##0.00", "abc"},
        {Value::null(), "### ##0.00", ""},
        {12.5, "", "12.5"},
        {1234.5, "Standard", "1 234.50"},
    };
    for (const auto& [value, pattern, text] : cases)
        EXPECT_EQ(F(value, pattern), text) << value.toString().toStdString() << " as " << pattern;
}

TEST(Format, DatePatternsOfTheScreensAndReports) {
    const Value d(At(2026, 11, 5, 14, 7, 9));
    const std::pair<const char*, const char*> cases[] = {
        {"yyyy/MM/dd", "2026/11/05"},
        {"mmmm yyyy", "November 2026"},
        {"MMMM d, yyyy", "November 5, 2026"},
        {"yyyy-mm-dd hh:nn:ss", "2026-11-05 14:07:09"},
        {"mm-dd-yyyy 00:00:00", "11-05-2026 00:00:00"},
        {"hh:mm", "14:07"},
        {"yyyy_MM_dd HH_nn_ss", "2026_11_05 14_07_09"},
        {"dd mmm yyyy", "05 Nov 2026"},
        {"ddd dddd", "Thu Thursday"},
        {"h:mm AM/PM", "2:07 PM"},
        {"mm:ss", "07:09"},
        {"Short Date", "2026/11/05"},
    };
    for (const auto& [pattern, text] : cases)
        EXPECT_EQ(F(d, pattern), text) << pattern;
    EXPECT_EQ(F(QString("05/11/2026"), "yyyy/mm/dd"), "2026/11/05");
    EXPECT_EQ(F(46331.75, "yyyy-mm-dd hh:nn:ss"), "2026-11-05 18:00:00");
    EXPECT_EQ(F(QString("not a date"), "yyyy/mm/dd"), "not a date");
    EXPECT_EQ(F(At(2026, 1, 1), "###0.00"), "46023.00"); // a date under a number pattern is its serial
    EXPECT_EQ(F(Value::null(), "yyyy/mm/dd"), "");
}
