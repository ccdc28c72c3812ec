// Format: the number patterns with their literal blanks, and the date patterns of the screens and reports.
#include "Vb.h"

#include <gtest/gtest.h>

namespace {

QString F(const Value& v, const char* pattern) {
    return vb::Format(v, QString::fromLatin1(pattern));
}

QDateTime At(int y, int m, int d, int hh = 0, int mm = 0, int ss = 0) {
    return QDateTime(QDate(y, m, d), QTime(hh, mm, ss));
}

} // namespace

TEST(FormatNumber, BlankGroupedListPatternKeepsItsLiteralBlank) {
    EXPECT_EQ(F(1234.5, "### ##0.00"), "1 234.50");
    EXPECT_EQ(F(12.5, "### ##0.00"), " 12.50");
    EXPECT_EQ(F(0.0, "### ##0.00"), " 0.00");
    EXPECT_EQ(F(-12.5, "### ##0.00"), "- 12.50");
    EXPECT_EQ(F(-1234.5, "### ##0.00"), "-1 234.50");
    EXPECT_EQ(F(1234567.891, "### ##0.00"), "1234 567.89");
    EXPECT_EQ(F(123456.0, "### ##0.00"), "123 456.00");
}

TEST(FormatNumber, ThreeGroupPattern) {
    EXPECT_EQ(F(1234567.891, "### ### ##0.00"), "1 234 567.89");
    EXPECT_EQ(F(12.5, "### ### ##0.00"), "  12.50");
    EXPECT_EQ(F(0.0, "### ### ##0.00"), "  0.00");
    EXPECT_EQ(F(-5000.0, "### ### ##0.00"), "- 5 000.00");
    EXPECT_EQ(F(9876543210.0, "### ### ##0.00"), "9876 543 210.00");
    EXPECT_EQ(F(1234567.0, "### ### ##0"), "1 234 567");
    EXPECT_EQ(F(1234567.0, "### ### ###"), "1 234 567");
    EXPECT_EQ(F(0.0, "### ### ###"), "  ");
}

TEST(FormatNumber, UnitPricePatternWithoutAZeroBeforeThePoint) {
    EXPECT_EQ(F(5479.45, "### ###.0000"), "5 479.4500");
    EXPECT_EQ(F(0.5, "### ###.0000"), " .5000");
    EXPECT_EQ(F(54.79452, "### ###.0000"), " 54.7945");
    EXPECT_EQ(F(12.34565, "### ###.0000"), " 12.3457"); // away from zero on the decimal value
}

TEST(FormatNumber, PlainPatterns) {
    EXPECT_EQ(F(7, "00000"), "00007");
    EXPECT_EQ(F(123456, "00000"), "123456");
    EXPECT_EQ(F(1234.5, "###0.00"), "1234.50");
    EXPECT_EQ(F(0.0, "###0.00"), "0.00");
    EXPECT_EQ(F(-0.5, "###0.00"), "-0.50");
    EXPECT_EQ(F(1e12, "###0.00"), "1000000000000.00");
    EXPECT_EQ(F(99.999, "#####0.00"), "100.00");
    EXPECT_EQ(F(1.5, "0.##"), "1.5");
    EXPECT_EQ(F(1.0, "0.##"), "1.");
    EXPECT_EQ(F(12.5, ".00"), "12.50");
    EXPECT_EQ(F(0.256, "0.00%"), "25.60%");
}

TEST(FormatNumber, RoundsOnFifteenDigitsThenHalfAwayFromZero) {
    EXPECT_EQ(F(2.345, "0.00"), "2.35");
    EXPECT_EQ(F(2.675, "0.00"), "2.68");
    EXPECT_EQ(F(-2.345, "0.00"), "-2.35");
    EXPECT_EQ(F(0.125, "0.00"), "0.13");
    EXPECT_EQ(F(999.995, "### ##0.00"), "1 000.00");
    EXPECT_EQ(F(0.5, "0"), "1");
    EXPECT_EQ(F(2.5, "0"), "3");
}

TEST(FormatNumber, CommaGroupsWithTheProgramsBlank) {
    EXPECT_EQ(F(1234567.891, "#,##0.00"), "1 234 567.89");
    EXPECT_EQ(F(5, "#,##0.00"), "5.00");
    EXPECT_EQ(F(-1234, "#,##0.00"), "-1 234.00");
    EXPECT_EQ(F(1000, "#,##0"), "1 000");
    EXPECT_EQ(F(999, "#,##0"), "999");
}

TEST(FormatNumber, SectionsAndOtherTypes) {
    EXPECT_EQ(F(-5, "0.00;(0.00)"), "(5.00)");
    EXPECT_EQ(F(0.0, "0.00;(0.00);\"nil\""), "nil");
    EXPECT_EQ(F(Currency::fromDouble(94520.55), "###0.00"), "94520.55");
    EXPECT_EQ(F(std::int64_t{42}, "00000"), "00042");
    EXPECT_EQ(F(true, "0.00"), "-1.00");
    EXPECT_EQ(F(QString("1 234.50"), "###0.00"), "1234.50");
    EXPECT_EQ(F(QString("12"), "### ##0.00"), " 12.00");
    EXPECT_EQ(F(QString("abc"), "### ##0.00"), "abc");
    EXPECT_EQ(F(Value::null(), "### ##0.00"), "");
    EXPECT_EQ(F(Value::null(), "yyyy/mm/dd"), "");
    EXPECT_EQ(F(12.5, ""), "12.5");
    EXPECT_EQ(F(1234.5, "Standard"), "1 234.50");
    EXPECT_EQ(F(3, "Fixed"), "3.00");
}

TEST(FormatDate, OfficeDatePatterns) {
    const Value d(At(2026, 11, 5, 14, 7, 9));
    EXPECT_EQ(F(d, "yyyy/MM/dd"), "2026/11/05");
    EXPECT_EQ(F(d, "yyyy/mm/dd"), "2026/11/05");
    EXPECT_EQ(F(d, "dd/mm/yyyy"), "05/11/2026");
    EXPECT_EQ(F(d, "mmmm yyyy"), "November 2026");
    EXPECT_EQ(F(d, "mm yyyy"), "11 2026");
    EXPECT_EQ(F(d, "MMMM d, yyyy"), "November 5, 2026");
    EXPECT_EQ(F(d, "yyyy-mm-dd hh:nn:ss"), "2026-11-05 14:07:09");
    EXPECT_EQ(F(d, "mm-dd-yyyy 00:00:00"), "11-05-2026 00:00:00");
    EXPECT_EQ(F(d, "hh:mm"), "14:07");
    EXPECT_EQ(F(d, "yyyy_MM_dd HH_nn_ss"), "2026_11_05 14_07_09");
    EXPECT_EQ(F(d, "dd mmm yyyy"), "05 Nov 2026");
    EXPECT_EQ(F(d, "ddd dddd"), "Thu Thursday");
    EXPECT_EQ(F(d, "d/m/yy"), "5/11/26");
    EXPECT_EQ(F(d, "h:mm AM/PM"), "2:07 PM");
    EXPECT_EQ(F(d, "mm:ss"), "07:09");
    EXPECT_EQ(F(d, "Short Date"), "2026/11/05");
}

TEST(FormatDate, OtherTypesAsDates) {
    EXPECT_EQ(F(QString("05/11/2026"), "yyyy/mm/dd"), "2026/11/05");
    EXPECT_EQ(F(QString("2026/01/31"), "mmmm yyyy"), "January 2026");
    EXPECT_EQ(F(QString("2026/01/31"), "dd/mm/yyyy"), "31/01/2026");
    EXPECT_EQ(F(46331.75, "yyyy-mm-dd hh:nn:ss"), "2026-11-05 18:00:00");
    EXPECT_EQ(F(QString("not a date"), "yyyy/mm/dd"), "not a date");
    EXPECT_EQ(F(At(2024, 2, 29), "yyyy/mm/dd"), "2024/02/29");
    EXPECT_EQ(F(At(2026, 1, 1), "###0.00"), "46023.00"); // a date under a number pattern is its serial
    EXPECT_EQ(F(QDateTime(), "dddd mmmm yyyy"), "");
}
