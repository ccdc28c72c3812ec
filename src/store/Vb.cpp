// VB's number conversions, Val, and the text helpers.
#include "Vb.h"
#include "VbInternal.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

namespace vb::detail {

void ThrowTypeMismatch() {
    throw VbError(13, QStringLiteral("Type mismatch"));
}
void ThrowOverflow() {
    throw VbError(6, QStringLiteral("Overflow"));
}
void ThrowInvalidUseOfNull() {
    throw VbError(94, QStringLiteral("Invalid use of Null"));
}
void ThrowDivisionByZero() {
    throw VbError(11, QStringLiteral("Division by zero"));
}

namespace {

bool IsBlank(QChar c) {
    return c == u' ' || c == QChar(0x00A0);
}

// "&H1F", "&O17": the digits after the prefix, as VB types them (up to 4 hex digits an Integer, up to 8 a Long).
bool ParseRadix(const QString& text, int& pos, double& out) {
    if (pos + 1 >= text.size() || text[pos] != u'&')
        return false;
    const QChar kind = text[pos + 1].toUpper();
    int base = 0;
    if (kind == u'H')
        base = 16;
    else if (kind == u'O')
        base = 8;
    else
        return false;
    int i = pos + 2;
    std::uint64_t value = 0;
    int digits = 0;
    while (i < text.size()) {
        const int d = text[i].isDigit() ? text[i].digitValue()
                      : (base == 16 && text[i].toUpper() >= u'A' && text[i].toUpper() <= u'F')
                          ? text[i].toUpper().unicode() - u'A' + 10
                          : -1;
        if (d < 0 || d >= base)
            break;
        value = value * static_cast<std::uint64_t>(base) + static_cast<std::uint64_t>(d);
        ++digits;
        ++i;
        if (value > 0xFFFFFFFFull)
            ThrowOverflow();
    }
    pos = i;
    if (digits == 0) {
        out = 0;
        return true;
    }
    if (value <= 0xFFFF && ((base == 16 && digits <= 4) || (base == 8 && value <= 0xFFFF && digits <= 6)))
        out = static_cast<double>(static_cast<std::int16_t>(static_cast<std::uint16_t>(value)));
    else
        out = static_cast<double>(static_cast<std::int32_t>(static_cast<std::uint32_t>(value)));
    return true;
}

} // namespace

bool ParseNumberText(const QString& text, double& out) {
    int i = 0;
    const int n = text.size();
    while (i < n && (IsBlank(text[i]) || text[i] == u'\t'))
        ++i;
    int end = n;
    while (end > i && (IsBlank(text[end - 1]) || text[end - 1] == u'\t'))
        --end;
    if (i >= end)
        return false;
    if (text[i] == u'&') {
        double v = 0;
        int pos = i;
        if (!ParseRadix(text, pos, v) || pos != end || pos == i + 2)
            return false;
        out = v;
        return true;
    }
    std::string clean;
    if (text[i] == u'-' || text[i] == u'+') {
        clean += static_cast<char>(text[i].unicode());
        ++i;
        while (i < end && IsBlank(text[i]))
            ++i;
    }
    int mantissaDigits = 0;
    bool lastWasDigit = false;
    // The integer part may hold blanks between its digits: the thousands mark of this program.
    while (i < end && (text[i].isDigit() || (IsBlank(text[i]) && lastWasDigit))) {
        if (text[i].isDigit()) {
            clean += static_cast<char>(text[i].unicode());
            ++mantissaDigits;
            lastWasDigit = true;
        }
        ++i;
    }
    if (i < end && text[i] == u'.') {
        clean += '.';
        ++i;
        while (i < end && text[i].isDigit()) {
            clean += static_cast<char>(text[i].unicode());
            ++mantissaDigits;
            ++i;
        }
    }
    if (mantissaDigits == 0)
        return false;
    if (i < end && (text[i].toUpper() == u'E' || text[i].toUpper() == u'D')) {
        clean += 'e';
        ++i;
        if (i < end && (text[i] == u'-' || text[i] == u'+')) {
            clean += static_cast<char>(text[i].unicode());
            ++i;
        }
        int expDigits = 0;
        while (i < end && text[i].isDigit()) {
            clean += static_cast<char>(text[i].unicode());
            ++expDigits;
            ++i;
        }
        if (expDigits == 0)
            return false;
    }
    if (i != end)
        return false;
    const double value = std::strtod(clean.c_str(), nullptr);
    if (!std::isfinite(value))
        ThrowOverflow();
    out = value;
    return true;
}

DecimalDigits ToDecimalDigits(double value) {
    DecimalDigits d;
    d.negative = std::signbit(value) && value != 0;
    if (value == 0 || !std::isfinite(value))
        return d;
    char buf[48];
    std::snprintf(buf, sizeof buf, "%.14e", std::fabs(value));
    // buf: "d.dddddddddddddde+XX"
    QString digits;
    const char* p = buf;
    for (; *p && *p != 'e'; ++p) {
        if (*p >= '0' && *p <= '9')
            digits += QLatin1Char(*p);
    }
    const int exponent = (*p == 'e') ? std::atoi(p + 1) : 0;
    while (digits.endsWith(u'0'))
        digits.chop(1);
    d.digits = digits;
    d.point = exponent + 1;
    return d;
}

DecimalDigits RoundAwayFromZero(DecimalDigits d, int decimals) {
    const int keep = d.point + decimals;
    if (keep >= d.digits.size())
        return d;
    if (keep < 0) {
        d.digits.clear();
        d.point = 0;
        return d;
    }
    const bool up = d.digits[keep] >= u'5';
    d.digits.truncate(keep);
    if (up) {
        int i = keep - 1;
        while (i >= 0 && d.digits[i] == u'9') {
            d.digits[i] = u'0';
            --i;
        }
        if (i < 0) {
            d.digits.prepend(u'1');
            ++d.point;
        } else {
            d.digits[i] = QChar(d.digits[i].unicode() + 1);
        }
    }
    while (d.digits.endsWith(u'0'))
        d.digits.chop(1);
    if (d.digits.isEmpty())
        d.point = 0;
    return d;
}

QString DoubleToText(double value) {
    if (std::isnan(value))
        return QStringLiteral("NaN");
    if (std::isinf(value))
        return value < 0 ? QStringLiteral("-Inf") : QStringLiteral("Inf");
    const DecimalDigits d = ToDecimalDigits(value);
    if (d.digits.isEmpty())
        return QStringLiteral("0");
    QString out = d.negative ? QStringLiteral("-") : QString();
    const int exponent = d.point - 1;
    if (exponent >= 15 || exponent < -4) {
        out += d.digits[0];
        if (d.digits.size() > 1)
            out += u'.' + d.digits.mid(1);
        out += exponent < 0 ? QStringLiteral("E-") : QStringLiteral("E+");
        out += QString::number(std::abs(exponent)).rightJustified(2, u'0');
        return out;
    }
    if (d.point <= 0)
        return out + QStringLiteral("0.") + QString(-d.point, u'0') + d.digits;
    if (d.point >= d.digits.size())
        return out + d.digits + QString(d.point - d.digits.size(), u'0');
    return out + d.digits.left(d.point) + u'.' + d.digits.mid(d.point);
}

} // namespace vb::detail

namespace vb {

using namespace detail;

double Val(const QString& text) {
    int i = 0;
    const int n = text.size();
    auto skippable = [&](int k) { return k < n && (text[k] == u' ' || text[k] == u'\t' || text[k] == u'\n'); };
    while (skippable(i))
        ++i;
    if (i < n && text[i] == u'&') {
        double v = 0;
        int pos = i;
        if (ParseRadix(text, pos, v))
            return v;
        return 0;
    }
    std::string clean;
    if (i < n && (text[i] == u'-' || text[i] == u'+')) {
        clean += static_cast<char>(text[i].unicode());
        ++i;
    }
    int mantissaDigits = 0;
    bool seenPoint = false;
    for (; i < n; ++i) {
        if (skippable(i))
            continue;
        if (text[i].isDigit()) {
            clean += static_cast<char>(text[i].unicode());
            ++mantissaDigits;
        } else if (text[i] == u'.' && !seenPoint) {
            seenPoint = true;
            clean += '.';
        } else {
            break;
        }
    }
    if (mantissaDigits == 0)
        return 0;
    // An exponent counts only when digits follow it; otherwise the number ends before the letter.
    if (i < n && (text[i].toUpper() == u'E' || text[i].toUpper() == u'D')) {
        std::string exponent = "e";
        int j = i + 1;
        while (skippable(j))
            ++j;
        if (j < n && (text[j] == u'-' || text[j] == u'+')) {
            exponent += static_cast<char>(text[j].unicode());
            ++j;
        }
        int expDigits = 0;
        for (; j < n; ++j) {
            if (skippable(j))
                continue;
            if (!text[j].isDigit())
                break;
            exponent += static_cast<char>(text[j].unicode());
            ++expDigits;
        }
        if (expDigits > 0)
            clean += exponent;
    }
    const double value = std::strtod(clean.c_str(), nullptr);
    if (!std::isfinite(value))
        ThrowOverflow();
    return value;
}

double Val(const Value& value) {
    if (value.isNull())
        ThrowInvalidUseOfNull();
    if (value.type() == VType::Long || value.type() == VType::Double || value.type() == VType::Currency)
        return value.toDouble();
    return Val(value.toString());
}

Currency CCur(const Value& value) {
    return value.toCurrency();
}

double CDbl(const Value& value) {
    return value.toDouble();
}

namespace {

std::int64_t RoundToInteger(const Value& value, std::int64_t low, std::int64_t high) {
    std::int64_t result = 0;
    switch (value.type()) {
    case VType::Long:
        result = value.toLong();
        break;
    case VType::Currency: {
        // Whole units half to even from the ten-thousandths.
        const std::int64_t raw = value.toCurrency().raw();
        std::int64_t q = raw / 10000;
        const std::int64_t r = raw % 10000;
        if (std::abs(r) > 5000 || (std::abs(r) == 5000 && (q % 2) != 0))
            q += raw < 0 ? -1 : 1;
        result = q;
        break;
    }
    default: {
        const double d = std::nearbyint(value.toDouble());
        if (!(d >= static_cast<double>(low) && d <= static_cast<double>(high)))
            ThrowOverflow();
        result = static_cast<std::int64_t>(d);
    }
    }
    if (result < low || result > high)
        ThrowOverflow();
    return result;
}

} // namespace

std::int64_t CInt(const Value& value) {
    return RoundToInteger(value, -32768, 32767);
}

std::int64_t CLng(const Value& value) {
    return RoundToInteger(value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max());
}

QString CStr(const Value& value) {
    if (value.isNull())
        ThrowInvalidUseOfNull();
    return value.toString();
}

bool IsNumeric(const Value& value) {
    switch (value.type()) {
    case VType::Empty:
    case VType::Boolean:
    case VType::Long:
    case VType::Double:
    case VType::Currency:
        return true;
    case VType::Null:
    case VType::Date:
        return false;
    case VType::String: {
        double ignored = 0;
        try {
            return ParseNumberText(value.toString(), ignored);
        } catch (const VbError&) {
            return true; // a number too large for a double is still a number
        }
    }
    }
    return false;
}

QString ProperCase(const QString& text) {
    QString out;
    out.reserve(text.size());
    bool startOfWord = true;
    for (const QChar c : text) {
        // Only white space and NUL end a word: "land-rover" stays one word, "o'neil" too.
        const bool separator =
            c == u' ' || c == u'\t' || c == u'\n' || c == u'\v' || c == u'\f' || c == u'\r' || c == QChar(0);
        if (separator) {
            out += c;
            startOfWord = true;
            continue;
        }
        out += startOfWord ? c.toUpper() : c.toLower();
        startOfWord = false;
    }
    return out;
}

QString Trim(const QString& text) {
    int start = 0;
    int end = text.size();
    while (start < end && text[start] == u' ')
        ++start;
    while (end > start && text[end - 1] == u' ')
        --end;
    return text.mid(start, end - start);
}

double RoundHalfEven(double value, int decimals) {
    if (!std::isfinite(value))
        return value;
    if (decimals <= 0)
        return std::nearbyint(value);
    // On the 15 significant digits VB works with, so that 0.125 and 2.675 round as they read.
    const DecimalDigits d = ToDecimalDigits(value);
    const int keep = d.point + decimals;
    if (keep >= d.digits.size())
        return value;
    DecimalDigits r = d;
    if (keep < 0)
        return 0.0 * (d.negative ? -1 : 1);
    bool up = false;
    const QChar next = d.digits[keep];
    if (next > u'5') {
        up = true;
    } else if (next == u'5') {
        const bool exactHalf = keep + 1 >= d.digits.size();
        const bool lastOdd = keep > 0 && (d.digits[keep - 1].digitValue() % 2) != 0;
        up = !exactHalf || lastOdd;
    }
    r.digits.truncate(keep);
    if (up) {
        // Reuse the away-from-zero carry by rounding one digit that is at least five.
        r.digits += u'5';
        r = RoundAwayFromZero(r, decimals);
    }
    if (r.digits.isEmpty())
        return 0.0;
    QString text = QStringLiteral("0.") + r.digits + QStringLiteral("e") + QString::number(r.point);
    const double magnitude = std::strtod(text.toLatin1().constData(), nullptr);
    return d.negative ? -magnitude : magnitude;
}

} // namespace vb
