#include "JetTypes.h"

#include "Database.h"

#include <QRegularExpression>
#include <cmath>
#include <optional>
#include <sqlite3.h>

bool JetType::isNumeric() const {
    switch (kind) {
    case JetKind::Short:
    case JetKind::Long:
    case JetKind::Counter:
    case JetKind::Single:
    case JetKind::Double:
    case JetKind::Currency:
    case JetKind::Bit:
        return true;
    default:
        return false;
    }
}

JetType JetTypeFromWord(const QString& word, int size) {
    const QString w = word.trimmed().toLower();
    JetType t;
    t.size = size;
    if (w == "short" || w == "smallint" || w == "integer2" || w == "byte" || w == "tinyint")
        t.kind = JetKind::Short;
    else if (w == "int" || w == "integer" || w == "long" || w == "integer4")
        t.kind = JetKind::Long;
    else if (w == "single" || w == "real" || w == "float4" || w == "ieeesingle")
        t.kind = JetKind::Single;
    else if (w == "double" || w == "float" || w == "float8" || w == "number" || w == "numeric" || w == "ieeedouble" ||
             w == "decimal")
        t.kind = JetKind::Double;
    else if (w == "currency" || w == "money")
        t.kind = JetKind::Currency;
    else if (w == "bit" || w == "yesno" || w == "logical" || w == "logical1" || w == "boolean")
        t.kind = JetKind::Bit;
    else if (w == "datetime" || w == "date" || w == "time" || w == "timestamp")
        t.kind = JetKind::DateTime;
    else if (w == "text" || w == "varchar" || w == "char" || w == "string" || w == "alphanumeric" || w == "character" ||
             w == "nvarchar" || w == "nchar")
        t.kind = JetKind::Text;
    else if (w == "memo" || w == "longtext" || w == "longchar" || w == "note" || w == "ntext")
        t.kind = JetKind::Memo;
    else if (w == "counter" || w == "autoincrement" || w == "autonumber" || w == "identity")
        t.kind = JetKind::Counter;
    if (t.kind != JetKind::Text)
        t.size = 0;
    return t;
}

JetType JetTypeFromDeclared(const QString& declared, bool primaryKey) {
    static const QRegularExpression shape(R"(^\s*([A-Za-z_][A-Za-z0-9_]*)\s*(?:\(\s*(\d+)\s*(?:,\s*\d+\s*)?\))?)");
    const auto m = shape.match(declared);
    if (!m.hasMatch())
        return {};
    const QString word = m.captured(1).toUpper();
    const int size = m.captured(2).isEmpty() ? 0 : m.captured(2).toInt();
    if (word == "INTEGER" && primaryKey)
        return {JetKind::Counter, 0};
    if (word == "COUNTER" || word == "AUTOINCREMENT")
        return {JetKind::Counter, 0};
    JetType t = JetTypeFromWord(word, size);
    if (t.kind != JetKind::Unknown)
        return t;
    // Declared types written by hand or by other tools: SQLite's own affinity rules.
    if (word.contains("INT"))
        return {JetKind::Long, 0};
    if (word.contains("CHAR") || word.contains("CLOB") || word.contains("TEXT"))
        return {JetKind::Text, size};
    if (word.contains("REAL") || word.contains("FLOA") || word.contains("DOUB"))
        return {JetKind::Double, 0};
    return {};
}

QString JetTypeWord(const JetType& type) {
    switch (type.kind) {
    case JetKind::Short:
        return "short";
    case JetKind::Long:
        return "long";
    case JetKind::Single:
        return "single";
    case JetKind::Double:
        return "double";
    case JetKind::Currency:
        return "currency";
    case JetKind::Bit:
        return "bit";
    case JetKind::DateTime:
        return "datetime";
    case JetKind::Text:
        return "text";
    case JetKind::Memo:
        return "memo";
    case JetKind::Counter:
        return "counter";
    case JetKind::Unknown:
        break;
    }
    return QString();
}

QString JetDeclaredWord(const JetType& type) {
    if (type.kind == JetKind::Text)
        return QString("TEXT(%1)").arg(type.size > 0 ? type.size : 255);
    return JetTypeWord(type).toUpper();
}

QString SqliteColumnDefinition(const JetType& type, bool notNull) {
    const QString required = notNull ? " NOT NULL" : "";
    switch (type.kind) {
    case JetKind::Counter:
        return "INTEGER PRIMARY KEY AUTOINCREMENT";
    case JetKind::Bit:
        // Jet's Yes/No is never Null: a Null assigned to it stores No, as do rows present when it is added.
        return "BIT NOT NULL ON CONFLICT REPLACE DEFAULT 0";
    case JetKind::Text:
        return QString("TEXT(%1)").arg(type.size > 0 ? type.size : 255) + required + " COLLATE NOCASE";
    case JetKind::Memo:
        return "LONGTEXT" + required + " COLLATE NOCASE";
    case JetKind::Unknown:
        return "TEXT(255)" + required + " COLLATE NOCASE";
    default:
        return JetTypeWord(type).toUpper() + required;
    }
}

QString QuoteName(const QString& name) {
    QString q = name;
    q.replace('"', "\"\"");
    return '"' + q + '"';
}

QString IsoDateTime(const QDateTime& dateTime) {
    return dateTime.toString("yyyy-MM-dd hh:mm:ss");
}

namespace {

QString columnText(sqlite3_stmt* statement, int column) {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, column));
    const int bytes = sqlite3_column_bytes(statement, column);
    return QString::fromUtf8(text, bytes);
}

// Digits at `from`..`from + count` of `text` as a number, or -1.
int digitsAt(const QString& text, int from, int count) {
    int n = 0;
    for (int i = from; i < from + count; ++i) {
        const char16_t ch = text[i].unicode();
        if (ch < u'0' || ch > u'9')
            return -1;
        n = n * 10 + (ch - u'0');
    }
    return n;
}

// The store's own two shapes, "yyyy-MM-dd" and "yyyy-MM-dd hh:mm:ss", read without the general parser, which
// costs microseconds a field. Anything else (or an impossible day) is left to the general reading.
std::optional<QDateTime> storedDateText(const QString& text) {
    if ((text.size() != 10 && text.size() != 19) || text[4] != u'-' || text[7] != u'-')
        return std::nullopt;
    const int year = digitsAt(text, 0, 4);
    const QDate day(year, digitsAt(text, 5, 2), digitsAt(text, 8, 2));
    if (year < 0 || !day.isValid())
        return std::nullopt;
    if (text.size() == 10)
        return LocalMidnight(day);
    if (text[10] != u' ' || text[13] != u':' || text[16] != u':')
        return std::nullopt;
    const QTime time(digitsAt(text, 11, 2), digitsAt(text, 14, 2), digitsAt(text, 17, 2));
    if (!time.isValid())
        return std::nullopt;
    return time == QTime(0, 0) ? LocalMidnight(day) : QDateTime(day, time);
}

QDateTime dateFromIsoText(const QString& text) {
    if (const std::optional<QDateTime> stored = storedDateText(text))
        return *stored;
    static const char* const formats[] = {"yyyy-MM-dd hh:mm:ss", "yyyy-MM-dd", "yyyy-MM-ddThh:mm:ss",
                                          "yyyy-MM-dd hh:mm:ss.zzz", "yyyy-MM-dd hh:mm"};
    for (const char* f : formats) {
        QDateTime d = QDateTime::fromString(text, QString::fromLatin1(f));
        if (d.isValid())
            return d;
    }
    return QDateTime();
}

// Jet's dates are days since 30 December 1899; numbers in a datetime column are read that way.
QDateTime dateFromSerial(double serial) {
    const double days = std::floor(serial);
    const double seconds = std::round((serial - days) * 86400.0);
    const QDateTime day = LocalMidnight(QDate(1899, 12, 30).addDays(static_cast<qint64>(days)));
    return seconds == 0 ? day : day.addSecs(static_cast<qint64>(seconds));
}

std::int64_t roundHalfEven(double d) {
    const double r = std::nearbyint(d); // the default rounding mode is to nearest, ties to even
    return static_cast<std::int64_t>(r);
}

} // namespace

Value ReadColumnValue(sqlite3_stmt* statement, int column, const JetType& type) {
    const int storage = sqlite3_column_type(statement, column);
    if (storage == SQLITE_NULL)
        return Value::null();
    switch (type.kind) {
    case JetKind::Bit:
        if (storage == SQLITE_TEXT) {
            const QString t = columnText(statement, column).trimmed().toLower();
            return Value(!(t.isEmpty() || t == "0" || t == "false" || t == "no"));
        }
        return Value(sqlite3_column_double(statement, column) != 0.0);
    case JetKind::Short:
    case JetKind::Long:
    case JetKind::Counter:
        if (storage == SQLITE_INTEGER)
            return Value(static_cast<std::int64_t>(sqlite3_column_int64(statement, column)));
        if (storage == SQLITE_FLOAT)
            return Value(roundHalfEven(sqlite3_column_double(statement, column)));
        break;
    case JetKind::Single:
    case JetKind::Double:
        if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT)
            return Value(sqlite3_column_double(statement, column));
        break;
    case JetKind::Currency:
        if (storage == SQLITE_INTEGER)
            return Value(Currency::fromRaw(sqlite3_column_int64(statement, column) * 10000));
        if (storage == SQLITE_FLOAT)
            return Value(Currency::fromDouble(sqlite3_column_double(statement, column)));
        break;
    case JetKind::DateTime:
        if (storage == SQLITE_TEXT) {
            const QString text = columnText(statement, column);
            const QDateTime d = dateFromIsoText(text);
            if (d.isValid())
                return Value(d);
            return Value(text);
        }
        if (storage == SQLITE_INTEGER || storage == SQLITE_FLOAT)
            return Value(dateFromSerial(sqlite3_column_double(statement, column)));
        break;
    case JetKind::Text:
    case JetKind::Memo:
        return Value(columnText(statement, column));
    case JetKind::Unknown:
        break;
    }
    // Expressions, and values of another class than their column's: by what SQLite holds.
    switch (storage) {
    case SQLITE_INTEGER:
        return Value(static_cast<std::int64_t>(sqlite3_column_int64(statement, column)));
    case SQLITE_FLOAT:
        return Value(sqlite3_column_double(statement, column));
    default:
        return Value(columnText(statement, column));
    }
}

Value ConvertForColumn(const Value& value, const JetType& type) {
    if (value.isNull() || value.isEmpty()) {
        if (type.kind == JetKind::Bit)
            return Value(false);
        return Value::null();
    }
    try {
        switch (type.kind) {
        case JetKind::Bit:
            return Value(value.toBool());
        case JetKind::Short: {
            const std::int64_t v = value.toLong();
            if (v < -32768 || v > 32767)
                throw DbError(6, "Overflow");
            return Value(v);
        }
        case JetKind::Long:
        case JetKind::Counter:
            return Value(value.toLong());
        case JetKind::Single:
            return Value(static_cast<double>(static_cast<float>(value.toDouble())));
        case JetKind::Double:
            return Value(value.toDouble());
        case JetKind::Currency:
            return Value(value.toCurrency());
        case JetKind::DateTime:
            return Value(value.toDate());
        case JetKind::Text:
        case JetKind::Memo:
            return Value(value.toString());
        case JetKind::Unknown:
            return value;
        }
    } catch (const VbError&) {
        throw DbError(3421, "Data type conversion error.");
    } catch (const std::overflow_error&) {
        throw DbError(6, "Overflow");
    }
    return value;
}

void BindValue(sqlite3_stmt* statement, int parameter, const Value& value) {
    switch (value.type()) {
    case VType::Empty:
    case VType::Null:
        sqlite3_bind_null(statement, parameter);
        break;
    case VType::Boolean:
        sqlite3_bind_int64(statement, parameter, value.toBool() ? -1 : 0);
        break;
    case VType::Long:
        sqlite3_bind_int64(statement, parameter, value.toLong());
        break;
    case VType::Double:
        sqlite3_bind_double(statement, parameter, value.toDouble());
        break;
    case VType::Currency: {
        const Currency c = value.toCurrency();
        if (c.raw() % 10000 == 0)
            sqlite3_bind_int64(statement, parameter, c.raw() / 10000);
        else
            sqlite3_bind_double(statement, parameter, c.toDouble());
        break;
    }
    case VType::Date: {
        const QByteArray text = IsoDateTime(value.toDate()).toUtf8();
        sqlite3_bind_text(statement, parameter, text.constData(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        break;
    }
    case VType::String: {
        const QByteArray text = value.toString().toUtf8();
        sqlite3_bind_text(statement, parameter, text.constData(), static_cast<int>(text.size()), SQLITE_TRANSIENT);
        break;
    }
    }
}
