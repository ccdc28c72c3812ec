#include "QueryHelpers.h"

#include "MessageService.h"
#include "Vb.h"

#include <QRegularExpression>

namespace {

bool IsSystemTableName(const QString& name) {
    return name.startsWith('~') || name.startsWith("MSys") || name.startsWith("sqlite_", Qt::CaseInsensitive);
}

// VB's Like, as far as the lists need it: * any run, ? one character, # one digit, [..] and [!..] sets.
QRegularExpression LikePattern(const QString& pattern) {
    QString rx = "^";
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == '*') {
            rx += ".*";
        } else if (c == '?') {
            rx += '.';
        } else if (c == '#') {
            rx += "[0-9]";
        } else if (c == '[') {
            const int close = pattern.indexOf(']', i + 1);
            if (close < 0)
                throw VbError(93, "Invalid pattern string");
            QString set = pattern.mid(i + 1, close - i - 1);
            QString out = "[";
            if (set.startsWith('!')) {
                out += '^';
                set.remove(0, 1);
            }
            for (QChar s : set)
                out += (s == '\\' || s == '^' || s == ']') ? QString("\\") + s : QString(s);
            rx += out + "]";
            i = close;
        } else {
            rx += QRegularExpression::escape(QString(c));
        }
    }
    rx += "$";
    return QRegularExpression(rx, QRegularExpression::DotMatchesEverythingOption);
}

} // namespace

QString GetScalar(Database& db, const QString& sql, const QString& defaultValue, int fieldIndex,
                  const QString& errorDefault) {
    try {
        auto rs = db.OpenRecordset(sql);
        if (rs->Eof())
            return errorDefault;
        const Value value = rs->Field(fieldIndex);
        return vb::CStr(NullToDefault(value, Value(defaultValue)));
    } catch (...) {
        return errorDefault;
    }
}

Value NullToDefault(const Value& value, const Value& defaultValue) {
    try {
        if (value.isEmpty() || value.isNull())
            return defaultValue;
        if (value.type() == VType::String && value.toString().isEmpty())
            return defaultValue;
        return value;
    } catch (...) {
        return defaultValue;
    }
}

QString SqlEscape(QString& text, bool trim, bool dotToUnderscore, bool properCase) {
    try {
        if (!text.isEmpty()) {
            if (trim)
                text = vb::Trim(text);
            text.replace("'", "''");
            if (dotToUnderscore)
                text.replace('.', '_');
        }
        if (properCase)
            text = vb::ProperCase(text);
    } catch (...) {
    }
    return text;
}

QString SqlUnescape(const QString& text, bool properCase, int maxLength) {
    QString out = text;
    if (vb::Trim(out).length() > 0)
        out.replace("''", "'");
    if (properCase)
        out = vb::ProperCase(out);
    return out.left(std::max(0, maxLength));
}

QString TableExists(Database& db, const QString& name) {
    try {
        const QString wanted = name.toLower();
        for (const QString& table : db.TableNames()) {
            if (IsSystemTableName(table))
                continue;
            if (table.toLower() == wanted)
                return name;
        }
    } catch (...) {
    }
    return QString();
}

QString FieldExists(Database& db, const QString& table, const QString& field) {
    try {
        const QString wanted = field.toLower();
        const std::vector<FieldDef> fields = db.Fields(table.toLower());
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (fields[i].name.toLower() == wanted)
                return QString::number(i);
        }
    } catch (...) {
    }
    return QString();
}

QString TrimToLastDelimiter(const QString& text, const QString& delimiter) {
    const QString trimmed = vb::Trim(text);
    // The presence test looks for a comma, whatever the delimiter.
    if (!trimmed.contains(','))
        return trimmed;
    const int at = trimmed.lastIndexOf(delimiter);
    if (at < 0)
        return QString(); // Left with a negative length fails, and the failure answers ""
    return trimmed.left(at);
}

int CountRecords(Recordset& rs) {
    int count = 0;
    try {
        while (!rs.Eof()) {
            rs.MoveNext();
            ++count;
        }
        rs.MoveFirst();
    } catch (...) {
    }
    return count;
}

QString PercentOfTotal(double total, double part, int decimals, double minimum, double fallback, bool asPercent) {
    if (total == 0.0)
        return "0";
    double result = vb::RoundHalfEven(part / total * (asPercent ? 100.0 : 1.0), decimals);
    if (result < minimum)
        result = fallback;
    return vb::CStr(Value(result));
}

int FindInCollection(const QStringList& collection, const QString& value, bool exact, bool leadingWildcard) {
    try {
        const QString lowered = value.toLower();
        const QRegularExpression like =
            exact ? QRegularExpression() : LikePattern((leadingWildcard ? "*" : "") + lowered + "*");
        for (int i = 0; i < collection.size(); ++i) {
            const QString item = collection[i].toLower();
            if (exact ? item == lowered : like.match(item).hasMatch())
                return i + 1;
        }
    } catch (...) {
    }
    return 0;
}

QStringList CollectionFromQuery(Database& db, const QString& sql, int fieldIndex, bool unique) {
    try {
        QStringList out;
        auto rs = db.OpenRecordset(sql);
        while (!rs->Eof()) {
            const QString item = rs->Field(fieldIndex).toString();
            if (!unique || FindInCollection(out, item, true, false) == 0)
                out << item;
            rs->MoveNext();
        }
        return out;
    } catch (...) {
        return {};
    }
}

bool ConfirmError(bool show, const QString& heading, const QString& detail1, const QString& detail2) {
    if (!show)
        return false;
    const QString text = heading + "\r\n" + detail2 + "\r\n" + detail1 + "\r\n" + "Yes - Resume Next, No - Exit";
    return MsgBox(text, MsgButtons::YesNoDefaultNo, MsgIcon::Question) == MsgResult::Yes;
}

bool IsDateUnreadable(const QString& typed) {
    if (vb::IsDate(typed))
        return false;
    MsgBox("The date entered is not a valid date. Please change the date.", MsgButtons::Ok, MsgIcon::Exclamation,
           "Date");
    return true;
}

bool IsDateClosed(const QDateTime& entered, const QDateTime& closedDate) {
    // The entered date goes through its day-first text, which drops the time of day.
    const QDateTime asEntered = vb::CDate(Value(vb::Format(Value(entered), "dd/mm/yyyy")));
    if (asEntered > closedDate)
        return false;
    MsgBox("The date entered is already closed. Please change the date.", MsgButtons::Ok, MsgIcon::Critical,
           "Closed date");
    return true;
}

std::unique_ptr<Recordset> SeekTable(Database& db, const QString& table, const QString& index,
                                     const std::vector<Value>& keys) {
    auto rs = db.OpenRecordset(table, RecordsetType::Table);
    rs->SetIndex(index);
    rs->Seek("=", keys);
    return rs;
}
