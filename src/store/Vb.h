#pragma once
// VB's conversions, date arithmetic and Format, as the program's statements and screens use them.
// Number formatting always groups thousands with a blank, and parsing accepts blanks inside numbers.

#include "Value.h"

#include <QDateTime>
#include <QString>

namespace vb {

double Val(const QString& text);   // "1 234.50" -> 1234.5, "12abc" -> 12, "abc" -> 0, "&H10" -> 16
double Val(const Value& value);    // Null -> error 94 (invalid use of Null)
Currency CCur(const Value& value); // half to even at four decimals
double CDbl(const Value& value);
std::int64_t CInt(const Value& value); // half to even; error 6 outside 16 bits
std::int64_t CLng(const Value& value); // half to even; error 6 outside 32 bits
QString CStr(const Value& value);      // Null -> error 94, as VB; Value::toString gives "" instead
bool IsNumeric(const Value& value);    // as VB: blanks as the thousands mark are allowed
bool IsDate(const QString& text);

// Dates: day first ("dd/mm/yyyy", "d/m/yy"), and "yyyy/MM/dd" or "yyyy-MM-dd", with an optional time.
QDateTime CDate(const Value& value); // throws VbError 13 when the text is no date
QDateTime DateAddDays(const QDateTime& date, int days);
QDateTime DateAddMonths(const QDateTime& date, int months); // 31 January + 1 month = last day of February
std::int64_t DateDiffDays(const QDateTime& from, const QDateTime& to);

// The OLE date serial that VB's Date holds: whole days since 1899-12-30, the time as the fraction of a day
// (for days before that date the fraction still counts forward into the day). Out of VB's years 100..9999: error 6.
double DateToSerial(const QDateTime& date);
QDateTime DateFromSerial(double serial);

// Format(value, pattern) for the number patterns ("### ##0.00", "### ### ##0.00", "###0.00",
// "### ###.0000", "00000", "0.00", "#,##0.00") and the date patterns ("yyyy/MM/dd", "dd/mm/yyyy",
// "mmmm yyyy", "MMMM d, yyyy", "yyyy-mm-dd hh:nn:ss", "hh:mm", "yyyy_MM_dd HH_nn_ss", ...), literal blanks kept.
QString Format(const Value& value, const QString& pattern);

QString ProperCase(const QString& text); // StrConv(x, vbProperCase)
QString Trim(const QString& text);       // blanks only, as VB's Trim

// Rounding as VB's Round and CInt: half to even.
double RoundHalfEven(double value, int decimals);

} // namespace vb
