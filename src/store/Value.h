#pragma once
// A VB-style variant: what a field, a parameter or a cell holds.

#include "NumberedError.h"

#include <QDateTime>
#include <QString>
#include <cstdint>
#include <variant>

// Fixed-point money and litre figures: 64-bit ten-thousandths, rounded half to even when made from a double.
class Currency {
public:
    constexpr Currency() = default;
    static constexpr Currency fromRaw(std::int64_t tenThousandths) {
        Currency c;
        c.m_raw = tenThousandths;
        return c;
    }
    static Currency fromDouble(double value); // half to even at the fourth decimal; throws VbError 6 (overflow)
    std::int64_t raw() const { return m_raw; }
    double toDouble() const { return static_cast<double>(m_raw) / 10000.0; }
    QString toString() const; // as CStr shows it: no grouping, no trailing zeros ("54.7945", "12", "-0.5")

    Currency operator+(Currency o) const { return fromRaw(m_raw + o.m_raw); }
    Currency operator-(Currency o) const { return fromRaw(m_raw - o.m_raw); }
    Currency operator-() const { return fromRaw(-m_raw); }
    Currency& operator+=(Currency o) {
        m_raw += o.m_raw;
        return *this;
    }
    Currency& operator-=(Currency o) {
        m_raw -= o.m_raw;
        return *this;
    }
    Currency operator*(Currency o) const; // rounded half to even; throws VbError 6 (overflow)
    Currency operator/(Currency o) const; // rounded half to even; throws VbError 11 on zero
    auto operator<=>(const Currency&) const = default;

private:
    std::int64_t m_raw = 0;
};

// Midnight of `day` in local time. Making a local date-time costs microseconds (the zone's rules are consulted),
// and the same few thousand days recur in every list: each day is made once per thread.
QDateTime LocalMidnight(const QDate& day);

enum class VType { Empty, Null, Boolean, Long, Double, Currency, Date, String };

class Value {
public:
    Value() = default; // Empty
    static Value null() {
        Value v;
        v.m_data = NullTag{};
        return v;
    }
    Value(bool b) : m_data(b) {}
    Value(int i) : m_data(static_cast<std::int64_t>(i)) {}
    Value(std::int64_t i) : m_data(i) {}
    Value(long long i) : m_data(static_cast<std::int64_t>(i)) {}
    Value(double d) : m_data(d) {}
    Value(Currency c) : m_data(c) {}
    Value(const QDateTime& d) : m_data(d) {}
    Value(const QDate& d) : m_data(LocalMidnight(d)) {}
    Value(const QString& s) : m_data(s) {}
    Value(const char* s) : m_data(QString::fromUtf8(s)) {}

    VType type() const;
    bool isEmpty() const { return std::holds_alternative<std::monostate>(m_data); }
    bool isNull() const { return std::holds_alternative<NullTag>(m_data); }
    bool isNumeric() const; // Boolean, Long, Double, Currency

    // Conversions as VB makes them; a failed conversion throws VbError (type mismatch, 13).
    bool toBool() const;
    std::int64_t toLong() const; // CLng: half to even
    double toDouble() const;     // CDbl
    Currency toCurrency() const; // CCur
    QDateTime toDate() const;    // CDate
    QString toString() const;    // CStr; Null and Empty give ""

    bool operator==(const Value& o) const { return m_data == o.m_data; }

private:
    struct NullTag {
        bool operator==(const NullTag&) const { return true; }
    };
    std::variant<std::monostate, NullTag, bool, std::int64_t, double, Currency, QDateTime, QString> m_data;
};

// VB's run-time errors raised by conversions (13 type mismatch, 6 overflow, 11 division by zero).
class VbError : public NumberedError {
public:
    using NumberedError::NumberedError;
};
