// The variant's conversions and the currency type's arithmetic, as VB makes them.
#include "Value.h"
#include "Vb.h"
#include "VbInternal.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <unordered_map>

using namespace vb::detail;

QDateTime LocalMidnight(const QDate& day) {
    if (!day.isValid())
        return QDateTime(day, QTime(0, 0));
    thread_local std::unordered_map<qint64, QDateTime> made;
    const qint64 key = day.toJulianDay();
    if (const auto it = made.find(key); it != made.end())
        return it->second;
    if (made.size() >= 100000)
        made.clear();
    return made.emplace(key, QDateTime(day, QTime(0, 0))).first->second;
}

namespace {

// n / d rounded half to even; the currency type's rule for products and quotients.
__int128 DivideHalfEven(__int128 n, __int128 d) {
    __int128 q = n / d;
    const __int128 r = n % d;
    const __int128 twiceRemainder = (r < 0 ? -r : r) * 2;
    const __int128 divisor = d < 0 ? -d : d;
    const int sign = ((n < 0) != (d < 0)) ? -1 : 1;
    if (twiceRemainder > divisor || (twiceRemainder == divisor && (q % 2) != 0))
        q += sign;
    return q;
}

std::int64_t CheckedRaw(__int128 raw) {
    if (raw > std::numeric_limits<std::int64_t>::max() || raw < std::numeric_limits<std::int64_t>::min())
        ThrowOverflow();
    return static_cast<std::int64_t>(raw);
}

constexpr double kRawLimit = 9223372036854775807.0;

} // namespace

Currency Currency::fromDouble(double value) {
    // Half to even on the decimal value the double stands for (0.00015 is a tie), as the user reads it.
    const double scaled = std::nearbyint(vb::RoundHalfEven(value, 4) * 10000.0);
    if (!std::isfinite(scaled) || scaled >= kRawLimit || scaled < -kRawLimit)
        ThrowOverflow();
    return fromRaw(static_cast<std::int64_t>(scaled));
}

QString Currency::toString() const {
    const bool negative = m_raw < 0;
    const unsigned long long magnitude =
        negative ? 0ull - static_cast<unsigned long long>(m_raw) : static_cast<unsigned long long>(m_raw);
    QString text = QString::number(magnitude / 10000ull);
    QString fraction = QString::number(magnitude % 10000ull).rightJustified(4, u'0');
    while (fraction.endsWith(u'0'))
        fraction.chop(1);
    if (!fraction.isEmpty())
        text += u'.' + fraction;
    return negative ? u'-' + text : text;
}

Currency Currency::operator*(Currency o) const {
    const __int128 product = static_cast<__int128>(m_raw) * o.m_raw;
    return fromRaw(CheckedRaw(DivideHalfEven(product, 10000)));
}

Currency Currency::operator/(Currency o) const {
    if (o.m_raw == 0)
        ThrowDivisionByZero();
    const __int128 scaled = static_cast<__int128>(m_raw) * 10000;
    return fromRaw(CheckedRaw(DivideHalfEven(scaled, o.m_raw)));
}

VType Value::type() const {
    switch (m_data.index()) {
    case 0:
        return VType::Empty;
    case 1:
        return VType::Null;
    case 2:
        return VType::Boolean;
    case 3:
        return VType::Long;
    case 4:
        return VType::Double;
    case 5:
        return VType::Currency;
    case 6:
        return VType::Date;
    default:
        return VType::String;
    }
}

bool Value::isNumeric() const {
    const VType t = type();
    return t == VType::Boolean || t == VType::Long || t == VType::Double || t == VType::Currency;
}

bool Value::toBool() const {
    switch (type()) {
    case VType::Empty:
        return false;
    case VType::Null:
        ThrowInvalidUseOfNull();
    case VType::Boolean:
        return std::get<bool>(m_data);
    case VType::Long:
        return std::get<std::int64_t>(m_data) != 0;
    case VType::Double:
        return std::get<double>(m_data) != 0;
    case VType::Currency:
        return std::get<Currency>(m_data).raw() != 0;
    case VType::Date:
        return vb::DateToSerial(std::get<QDateTime>(m_data)) != 0;
    case VType::String: {
        const QString text = std::get<QString>(m_data).trimmed();
        if (text.compare(QStringLiteral("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QStringLiteral("False"), Qt::CaseInsensitive) == 0)
            return false;
        double number = 0;
        if (!ParseNumberText(text, number))
            ThrowTypeMismatch();
        return number != 0;
    }
    }
    ThrowTypeMismatch();
}

std::int64_t Value::toLong() const {
    switch (type()) {
    case VType::Long:
        return std::get<std::int64_t>(m_data);
    case VType::Boolean:
        return std::get<bool>(m_data) ? -1 : 0;
    case VType::Empty:
        return 0;
    case VType::Null:
        ThrowInvalidUseOfNull();
    default: {
        const double d = std::nearbyint(toDouble());
        if (!(d >= -kRawLimit && d < kRawLimit))
            ThrowOverflow();
        return static_cast<std::int64_t>(d);
    }
    }
}

double Value::toDouble() const {
    switch (type()) {
    case VType::Empty:
        return 0;
    case VType::Null:
        ThrowInvalidUseOfNull();
    case VType::Boolean:
        return std::get<bool>(m_data) ? -1.0 : 0.0;
    case VType::Long:
        return static_cast<double>(std::get<std::int64_t>(m_data));
    case VType::Double:
        return std::get<double>(m_data);
    case VType::Currency:
        return std::get<Currency>(m_data).toDouble();
    case VType::Date:
        return vb::DateToSerial(std::get<QDateTime>(m_data));
    case VType::String: {
        double number = 0;
        if (!ParseNumberText(std::get<QString>(m_data), number))
            ThrowTypeMismatch();
        return number;
    }
    }
    ThrowTypeMismatch();
}

Currency Value::toCurrency() const {
    switch (type()) {
    case VType::Empty:
        return Currency();
    case VType::Null:
        ThrowInvalidUseOfNull();
    case VType::Currency:
        return std::get<Currency>(m_data);
    case VType::Long:
        return Currency::fromRaw(CheckedRaw(static_cast<__int128>(std::get<std::int64_t>(m_data)) * 10000));
    default:
        return Currency::fromDouble(toDouble());
    }
}

QDateTime Value::toDate() const {
    if (type() == VType::Date)
        return std::get<QDateTime>(m_data);
    return vb::CDate(*this);
}

QString Value::toString() const {
    switch (type()) {
    case VType::Empty:
    case VType::Null:
        return QString();
    case VType::Boolean:
        return std::get<bool>(m_data) ? QStringLiteral("True") : QStringLiteral("False");
    case VType::Long:
        return QString::number(std::get<std::int64_t>(m_data));
    case VType::Double:
        return DoubleToText(std::get<double>(m_data));
    case VType::Currency:
        return std::get<Currency>(m_data).toString();
    case VType::Date:
        return DateToText(std::get<QDateTime>(m_data));
    case VType::String:
        return std::get<QString>(m_data);
    }
    return QString();
}
