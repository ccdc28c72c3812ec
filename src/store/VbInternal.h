#pragma once
// Helpers shared by the value library's sources; not for use outside src/store.

#include <QDateTime>
#include <QString>

namespace vb::detail {

// A whole text as a number, as CDbl and IsNumeric read it: blanks around and inside (the thousands mark),
// a sign, decimals, an exponent, or "&H"/"&O" radix numbers. False when anything else is in the text.
bool ParseNumberText(const QString& text, double& out);

// A double as CStr shows it: 15 significant digits, E notation outside 1E-04 .. 1E+15.
QString DoubleToText(double value);

// A date as CStr shows it: the office's short date, plus the time when there is one.
QString DateToText(const QDateTime& value);

// A day-first or year-first date text, with an optional time; false when the text is no date.
bool ParseDateText(const QString& text, QDateTime& out);

// VB's run-time errors.
[[noreturn]] void ThrowTypeMismatch();
[[noreturn]] void ThrowOverflow();
[[noreturn]] void ThrowInvalidUseOfNull();
[[noreturn]] void ThrowDivisionByZero();

// A double's 15 significant decimal digits (VB rounds to these before it formats): value = 0.digits * 10^point.
struct DecimalDigits {
    bool negative = false;
    QString digits; // no trailing zeros; empty for zero
    int point = 0;  // digits before the decimal point (may be <= 0 or beyond the digits)
};
DecimalDigits ToDecimalDigits(double value);
// Rounds half away from zero to `decimals` places after the point.
DecimalDigits RoundAwayFromZero(DecimalDigits d, int decimals);

} // namespace vb::detail
