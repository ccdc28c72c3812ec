#include "JetFunctions.h"

#include "Value.h"
#include "Vb.h"

#include <QDateTime>
#include <QRegularExpression>
#include <cmath>
#include <limits>
#include <optional>
#include <sqlite3.h>
#include <vector>

namespace {

// ---- values between SQLite and VB ----

Value fromSqlite(sqlite3_value* v) {
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        return Value(static_cast<std::int64_t>(sqlite3_value_int64(v)));
    case SQLITE_FLOAT:
        return Value(sqlite3_value_double(v));
    case SQLITE_NULL:
        return Value::null();
    default:
        return Value(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v)));
    }
}

QString textOf(sqlite3_value* v) {
    return QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_value_text(v)), sqlite3_value_bytes(v));
}

bool isNull(sqlite3_value* v) {
    return sqlite3_value_type(v) == SQLITE_NULL;
}

void resultText(sqlite3_context* ctx, const QString& text) {
    const QByteArray utf8 = text.toUtf8();
    sqlite3_result_text(ctx, utf8.constData(), static_cast<int>(utf8.size()), SQLITE_TRANSIENT);
}

QString isoText(const QDateTime& d) {
    return d.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

void raise(sqlite3_context* ctx, int number, const QString& description) {
    const QByteArray msg = QStringLiteral("Jet error %1: %2").arg(number).arg(description).toUtf8();
    sqlite3_result_error(ctx, msg.constData(), static_cast<int>(msg.size()));
}

void raiseInvalidNull(sqlite3_context* ctx) {
    raise(ctx, 94, QStringLiteral("Invalid use of Null"));
}

// Runs a function body, turning VB's run-time errors into a failed statement.
template <typename Body> void guarded(sqlite3_context* ctx, Body&& body) {
    try {
        body();
    } catch (const VbError& e) {
        raise(ctx, e.number(), e.description());
    } catch (const std::exception& e) {
        raise(ctx, 3075, QString::fromUtf8(e.what()));
    }
}

// Dates as stored: ISO text ("yyyy-MM-dd hh:mm:ss"), text dates "yyyy/MM/dd"; anything else as VB reads it.
QDateTime dateOf(sqlite3_value* v) {
    if (sqlite3_value_type(v) == SQLITE_TEXT) {
        const QString text = textOf(v).trimmed();
        static const QRegularExpression iso(
            QStringLiteral("^(\\d{4})[-/](\\d{1,2})[-/](\\d{1,2})(?:[ T](\\d{1,2}):(\\d{2})(?::(\\d{2}))?)?$"));
        const QRegularExpressionMatch m = iso.match(text);
        if (m.hasMatch()) {
            const QDate d(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
            const QTime t(m.captured(4).toInt(), m.captured(5).toInt(), m.captured(6).toInt());
            if (d.isValid() && t.isValid())
                return QDateTime(d, t);
        }
    }
    return vb::CDate(fromSqlite(v));
}

bool looksLikeDateText(sqlite3_value* v) {
    if (sqlite3_value_type(v) != SQLITE_TEXT)
        return false;
    static const QRegularExpression iso(
        QStringLiteral("^\\d{4}[-/]\\d{1,2}[-/]\\d{1,2}([ T]\\d{1,2}:\\d{2}(:\\d{2})?)?$"));
    return iso.match(textOf(v).trimmed()).hasMatch();
}

double numberOf(sqlite3_value* v) {
    switch (sqlite3_value_type(v)) {
    case SQLITE_INTEGER:
        return static_cast<double>(sqlite3_value_int64(v));
    case SQLITE_FLOAT:
        return sqlite3_value_double(v);
    default:
        return vb::CDbl(fromSqlite(v));
    }
}

// VB rounds the operands of \ and Mod to whole numbers, half to even.
std::int64_t wholeOf(sqlite3_value* v) {
    if (sqlite3_value_type(v) == SQLITE_INTEGER)
        return sqlite3_value_int64(v);
    return vb::CLng(fromSqlite(v));
}

// ---- LIKE ----

struct LikeToken {
    enum Kind { Literal, AnyOne, Digit, AnyRun, Set } kind = Literal;
    QChar ch;
    bool negate = false;
    std::vector<std::pair<QChar, QChar>> ranges; // case-folded
};

using LikePattern = std::vector<LikeToken>;

std::optional<LikePattern> compileLike(const QString& pattern) {
    LikePattern out;
    const int n = static_cast<int>(pattern.size());
    for (int i = 0; i < n; ++i) {
        const QChar c = pattern[i];
        LikeToken t;
        if (c == u'*') {
            t.kind = LikeToken::AnyRun;
        } else if (c == u'?') {
            t.kind = LikeToken::AnyOne;
        } else if (c == u'#') {
            t.kind = LikeToken::Digit;
        } else if (c == u'[') {
            const int close = pattern.indexOf(u']', i + 1);
            if (close < 0)
                return std::nullopt;
            int j = i + 1;
            t.kind = LikeToken::Set;
            if (j < close && pattern[j] == u'!') {
                t.negate = true;
                ++j;
            }
            for (; j < close; ++j) {
                const QChar from = pattern[j].toCaseFolded();
                if (j + 2 < close && pattern[j + 1] == u'-') {
                    t.ranges.emplace_back(from, pattern[j + 2].toCaseFolded());
                    j += 2;
                } else {
                    t.ranges.emplace_back(from, from);
                }
            }
            i = close;
        } else {
            t.kind = LikeToken::Literal;
            t.ch = c.toCaseFolded();
        }
        out.push_back(std::move(t));
    }
    return out;
}

bool tokenMatches(const LikeToken& t, QChar c) {
    switch (t.kind) {
    case LikeToken::AnyOne:
        return true;
    case LikeToken::Digit:
        return c.isDigit();
    case LikeToken::Literal:
        return c.toCaseFolded() == t.ch;
    case LikeToken::Set: {
        const QChar f = c.toCaseFolded();
        bool in = false;
        for (const auto& r : t.ranges)
            if (f >= r.first && f <= r.second)
                in = true;
        return in != t.negate;
    }
    case LikeToken::AnyRun:
        return true;
    }
    return false;
}

// Wildcard matching with one backtrack point per star: linear in practice.
bool likeMatch(const QString& text, const LikePattern& p) {
    size_t pi = 0;
    int ti = 0;
    const int tn = static_cast<int>(text.size());
    size_t starP = std::numeric_limits<size_t>::max();
    int starT = 0;
    while (ti < tn) {
        if (pi < p.size() && p[pi].kind == LikeToken::AnyRun) {
            starP = pi++;
            starT = ti;
        } else if (pi < p.size() && tokenMatches(p[pi], text[ti])) {
            ++pi;
            ++ti;
        } else if (starP != std::numeric_limits<size_t>::max()) {
            pi = starP + 1;
            ti = ++starT;
        } else {
            return false;
        }
    }
    while (pi < p.size() && p[pi].kind == LikeToken::AnyRun)
        ++pi;
    return pi == p.size();
}

QString likeText(sqlite3_value* v) {
    if (sqlite3_value_type(v) == SQLITE_FLOAT)
        return vb::CStr(Value(sqlite3_value_double(v)));
    return textOf(v);
}

void fnLike(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    auto* compiled = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, 1));
    if (!compiled) {
        std::optional<LikePattern> p = compileLike(likeText(argv[1]));
        if (!p) {
            raise(ctx, 93, QStringLiteral("Invalid pattern string"));
            return;
        }
        compiled = new LikePattern(std::move(*p));
        sqlite3_set_auxdata(ctx, 1, compiled, [](void* data) { delete static_cast<LikePattern*>(data); });
        compiled = static_cast<LikePattern*>(sqlite3_get_auxdata(ctx, 1));
        if (!compiled) { // SQLite dropped it at once (not a constant pattern): match with a fresh copy
            const std::optional<LikePattern> again = compileLike(likeText(argv[1]));
            sqlite3_result_int(ctx, likeMatch(likeText(argv[0]), *again) ? 1 : 0);
            return;
        }
    }
    sqlite3_result_int(ctx, likeMatch(likeText(argv[0]), *compiled) ? 1 : 0);
}

// ---- operators ----

// `&`: Null reads as "", numbers as CStr shows them.
void fnCat(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    QByteArray out;
    for (int i = 0; i < argc; ++i) {
        switch (sqlite3_value_type(argv[i])) {
        case SQLITE_NULL:
            break;
        case SQLITE_FLOAT:
            out += vb::CStr(Value(sqlite3_value_double(argv[i]))).toUtf8();
            break;
        case SQLITE_INTEGER:
            out += QByteArray::number(static_cast<qlonglong>(sqlite3_value_int64(argv[i])));
            break;
        default:
            out.append(reinterpret_cast<const char*>(sqlite3_value_text(argv[i])), sqlite3_value_bytes(argv[i]));
            break;
        }
    }
    sqlite3_result_text(ctx, out.constData(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
}

bool isTextValue(sqlite3_value* v) {
    return sqlite3_value_type(v) == SQLITE_TEXT;
}

// `+`: texts join, numbers add; Null on either side gives Null.
void fnAdd(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    if (isTextValue(argv[0]) && isTextValue(argv[1])) {
        QByteArray out(reinterpret_cast<const char*>(sqlite3_value_text(argv[0])), sqlite3_value_bytes(argv[0]));
        out.append(reinterpret_cast<const char*>(sqlite3_value_text(argv[1])), sqlite3_value_bytes(argv[1]));
        sqlite3_result_text(ctx, out.constData(), static_cast<int>(out.size()), SQLITE_TRANSIENT);
        return;
    }
    guarded(ctx, [&] {
        if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER && sqlite3_value_type(argv[1]) == SQLITE_INTEGER) {
            const std::int64_t a = sqlite3_value_int64(argv[0]);
            const std::int64_t b = sqlite3_value_int64(argv[1]);
            std::int64_t sum = 0;
            if (!__builtin_add_overflow(a, b, &sum)) {
                sqlite3_result_int64(ctx, sum);
                return;
            }
        }
        sqlite3_result_double(ctx, numberOf(argv[0]) + numberOf(argv[1]));
    });
}

void fnDiv(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const double b = numberOf(argv[1]);
        if (b == 0.0) {
            raise(ctx, 11, QStringLiteral("Division by zero"));
            return;
        }
        sqlite3_result_double(ctx, numberOf(argv[0]) / b);
    });
}

void fnIntDiv(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t b = wholeOf(argv[1]);
        if (b == 0) {
            raise(ctx, 11, QStringLiteral("Division by zero"));
            return;
        }
        sqlite3_result_int64(ctx, wholeOf(argv[0]) / b);
    });
}

void fnMod(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t b = wholeOf(argv[1]);
        if (b == 0) {
            raise(ctx, 11, QStringLiteral("Division by zero"));
            return;
        }
        sqlite3_result_int64(ctx, wholeOf(argv[0]) % b);
    });
}

void fnPow(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]) || isNull(argv[1])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] { sqlite3_result_double(ctx, std::pow(numberOf(argv[0]), numberOf(argv[1]))); });
}

// ---- conversions ----

void fnVal(sqlite3_context* ctx, int, sqlite3_value** argv) {
    switch (sqlite3_value_type(argv[0])) {
    case SQLITE_NULL:
        sqlite3_result_null(ctx);
        return;
    case SQLITE_INTEGER:
        sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
        return;
    case SQLITE_FLOAT:
        sqlite3_result_double(ctx, sqlite3_value_double(argv[0]));
        return;
    default:
        guarded(ctx, [&] { sqlite3_result_double(ctx, vb::Val(textOf(argv[0]))); });
    }
}

void fnCDbl(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { sqlite3_result_double(ctx, numberOf(argv[0])); });
}

void fnCCur(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { sqlite3_result_double(ctx, vb::CCur(fromSqlite(argv[0])).toDouble()); });
}

void fnCInt(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { sqlite3_result_int64(ctx, vb::CInt(fromSqlite(argv[0]))); });
}

void fnCLng(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { sqlite3_result_int64(ctx, vb::CLng(fromSqlite(argv[0]))); });
}

void fnCStr(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { resultText(ctx, vb::CStr(fromSqlite(argv[0]))); });
}

void fnCDate(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0]))
        return raiseInvalidNull(ctx);
    guarded(ctx, [&] { resultText(ctx, isoText(dateOf(argv[0]))); });
}

void fnStrConv(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const QString text = vb::CStr(fromSqlite(argv[0]));
        switch (wholeOf(argv[1])) {
        case 1:
            resultText(ctx, text.toUpper());
            break;
        case 2:
            resultText(ctx, text.toLower());
            break;
        case 3:
            resultText(ctx, vb::ProperCase(text));
            break;
        default:
            raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        }
    });
}

void fnFormat(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const QString pattern = argc > 1 && !isNull(argv[1]) ? textOf(argv[1]) : QString();
        Value value;
        if (looksLikeDateText(argv[0])) {
            value = Value(dateOf(argv[0]));
        } else if (isTextValue(argv[0]) && !pattern.isEmpty() && vb::IsNumeric(fromSqlite(argv[0]))) {
            value = Value(vb::CDbl(fromSqlite(argv[0])));
        } else {
            value = fromSqlite(argv[0]);
        }
        resultText(ctx, vb::Format(value, pattern));
    });
}

// ---- text ----

void fnLeft(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t n = wholeOf(argv[1]);
        if (n < 0)
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        resultText(ctx, vb::CStr(fromSqlite(argv[0])).left(static_cast<qsizetype>(n)));
    });
}

void fnRight(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t n = wholeOf(argv[1]);
        if (n < 0)
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        resultText(ctx, vb::CStr(fromSqlite(argv[0])).right(static_cast<qsizetype>(n)));
    });
}

void fnMid(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t start = wholeOf(argv[1]);
        const std::int64_t length = argc > 2 ? wholeOf(argv[2]) : -1;
        if (start < 1 || (argc > 2 && length < 0))
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        const QString text = vb::CStr(fromSqlite(argv[0]));
        resultText(ctx, text.mid(static_cast<qsizetype>(start - 1), static_cast<qsizetype>(length)));
    });
}

void fnLen(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] { sqlite3_result_int64(ctx, vb::CStr(fromSqlite(argv[0])).size()); });
}

void fnInStr(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    sqlite3_value* hay = argc == 3 ? argv[1] : argv[0];
    sqlite3_value* needle = argc == 3 ? argv[2] : argv[1];
    if (isNull(hay) || isNull(needle) || (argc == 3 && isNull(argv[0]))) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t start = argc == 3 ? wholeOf(argv[0]) : 1;
        if (start < 1)
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        // Jet compares text case-blind here as everywhere.
        const qsizetype at =
            vb::CStr(fromSqlite(hay))
                .indexOf(vb::CStr(fromSqlite(needle)), static_cast<qsizetype>(start - 1), Qt::CaseInsensitive);
        sqlite3_result_int64(ctx, at + 1);
    });
}

void fnSpace(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t n = wholeOf(argv[0]);
        if (n < 0 || n > 65535)
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        resultText(ctx, QString(static_cast<qsizetype>(n), u' '));
    });
}

// ---- dates ----

void fnNow(sqlite3_context* ctx, int, sqlite3_value**) {
    const QDateTime now = QDateTime::currentDateTime();
    resultText(ctx, isoText(QDateTime(now.date(), QTime(now.time().hour(), now.time().minute(), now.time().second()))));
}

void fnDate(sqlite3_context* ctx, int, sqlite3_value**) {
    resultText(ctx, isoText(QDateTime(QDate::currentDate(), QTime(0, 0))));
}

void fnTime(sqlite3_context* ctx, int, sqlite3_value**) {
    const QTime t = QTime::currentTime();
    resultText(ctx, isoText(QDateTime(QDate(1899, 12, 30), QTime(t.hour(), t.minute(), t.second()))));
}

template <int Part> void fnDatePart(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const QDate d = dateOf(argv[0]).date();
        sqlite3_result_int(ctx, Part == 0 ? d.year() : Part == 1 ? d.month() : d.day());
    });
}

// ---- numbers ----

void fnInt(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER) {
        sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
        return;
    }
    guarded(ctx, [&] { sqlite3_result_double(ctx, std::floor(numberOf(argv[0]))); });
}

void fnFix(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER) {
        sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
        return;
    }
    guarded(ctx, [&] { sqlite3_result_double(ctx, std::trunc(numberOf(argv[0]))); });
}

void fnRound(sqlite3_context* ctx, int argc, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_null(ctx);
        return;
    }
    guarded(ctx, [&] {
        const std::int64_t places = argc > 1 ? wholeOf(argv[1]) : 0;
        if (places < 0)
            return raise(ctx, 5, QStringLiteral("Invalid procedure call or argument"));
        if (sqlite3_value_type(argv[0]) == SQLITE_INTEGER) {
            sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
            return;
        }
        sqlite3_result_double(ctx, vb::RoundHalfEven(numberOf(argv[0]), static_cast<int>(places)));
    });
}

void fnIsNumeric(sqlite3_context* ctx, int, sqlite3_value** argv) {
    guarded(ctx, [&] {
        const int type = sqlite3_value_type(argv[0]);
        const bool numeric = type == SQLITE_INTEGER || type == SQLITE_FLOAT ||
                             (type == SQLITE_TEXT && vb::IsNumeric(fromSqlite(argv[0])));
        sqlite3_result_int(ctx, numeric ? -1 : 0);
    });
}

// A stored datetime (ISO text) as VB turns a date into text; anything else unchanged.
void fnDateText(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (sqlite3_value_type(argv[0]) == SQLITE_TEXT) {
        static const QRegularExpression iso(QStringLiteral("^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}$"));
        const QString text = textOf(argv[0]);
        if (iso.match(text).hasMatch()) {
            guarded(ctx, [&] { resultText(ctx, vb::CStr(Value(dateOf(argv[0])))); });
            return;
        }
    }
    sqlite3_result_value(ctx, argv[0]);
}

// A Yes/No value as text: "True" for any non-zero number, "False" for zero.
void fnBitText(sqlite3_context* ctx, int, sqlite3_value** argv) {
    const int type = sqlite3_value_type(argv[0]);
    if (type == SQLITE_INTEGER || type == SQLITE_FLOAT) {
        if (sqlite3_value_double(argv[0]) != 0.0)
            sqlite3_result_text(ctx, "True", 4, SQLITE_STATIC);
        else
            sqlite3_result_text(ctx, "False", 5, SQLITE_STATIC);
        return;
    }
    sqlite3_result_value(ctx, argv[0]);
}

// A crosstab's column heading for a pivot value: its text, "<>" for Null.
void fnHeading(sqlite3_context* ctx, int, sqlite3_value** argv) {
    if (isNull(argv[0])) {
        sqlite3_result_text(ctx, "<>", 2, SQLITE_STATIC);
        return;
    }
    guarded(ctx, [&] { resultText(ctx, vb::CStr(fromSqlite(argv[0]))); });
}

// ---- what a statement writes into a typed column ----

// jet_store(x, kind): the value a column of the kind ('i' whole, 'n' number, 'c' currency, 'd' datetime) keeps of
// x. A text is read as a number (or a date); one that is none gives Null, and the statement goes on.
void fnStore(sqlite3_context* ctx, int, sqlite3_value** argv) {
    const int type = sqlite3_value_type(argv[0]);
    const char kind = static_cast<char>(sqlite3_value_text(argv[1]) ? sqlite3_value_text(argv[1])[0] : 'n');
    if (type == SQLITE_NULL)
        return sqlite3_result_null(ctx);
    try {
        if (kind == 'd') {
            if (type == SQLITE_TEXT && !looksLikeDateText(argv[0]) && !vb::IsDate(textOf(argv[0])))
                return sqlite3_result_null(ctx);
            return resultText(ctx, isoText(dateOf(argv[0])));
        }
        if (type == SQLITE_TEXT && !vb::IsNumeric(fromSqlite(argv[0])))
            return sqlite3_result_null(ctx);
        const double number = numberOf(argv[0]);
        if (kind == 'i') {
            if (type == SQLITE_INTEGER)
                return sqlite3_result_int64(ctx, sqlite3_value_int64(argv[0]));
            return sqlite3_result_int64(ctx, vb::CLng(Value(number)));
        }
        if (kind == 'c') {
            const Currency c = Currency::fromDouble(number);
            if (c.raw() % 10000 == 0)
                return sqlite3_result_int64(ctx, c.raw() / 10000);
            return sqlite3_result_double(ctx, c.toDouble());
        }
        sqlite3_result_double(ctx, number);
    } catch (const VbError&) {
        sqlite3_result_null(ctx); // out of the column's range: nothing that fits
    } catch (const std::exception&) {
        sqlite3_result_null(ctx);
    }
}

// ---- the sum of currency: whole ten-thousandths, so that it is exact ----

struct CurrencySum {
    std::int64_t raw = 0;
    bool any = false;
    bool overflow = false;
};

void curSumStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto* state = static_cast<CurrencySum*>(sqlite3_aggregate_context(ctx, sizeof(CurrencySum)));
    if (!state)
        return sqlite3_result_error_nomem(ctx);
    const int type = sqlite3_value_type(argv[0]);
    if (type == SQLITE_NULL)
        return;
    std::int64_t raw = 0;
    if (type == SQLITE_INTEGER) {
        if (__builtin_mul_overflow(sqlite3_value_int64(argv[0]), std::int64_t(10000), &raw))
            state->overflow = true;
    } else {
        try {
            raw = Currency::fromDouble(numberOf(argv[0])).raw();
        } catch (const std::exception&) {
            state->overflow = true;
        }
    }
    if (__builtin_add_overflow(state->raw, raw, &state->raw))
        state->overflow = true;
    state->any = true;
}

void curSumFinal(sqlite3_context* ctx) {
    auto* state = static_cast<CurrencySum*>(sqlite3_aggregate_context(ctx, 0));
    if (!state || !state->any)
        return sqlite3_result_null(ctx);
    if (state->overflow)
        return raise(ctx, 6, QStringLiteral("Overflow"));
    if (state->raw % 10000 == 0)
        return sqlite3_result_int64(ctx, state->raw / 10000);
    sqlite3_result_double(ctx, Currency::fromRaw(state->raw).toDouble());
}

// ---- First and Last: the value of the first and the last row of the group, Null included ----

struct PickState {
    sqlite3_value* value = nullptr;
    bool seen = false;
};

template <bool KeepLast> void pickStep(sqlite3_context* ctx, int, sqlite3_value** argv) {
    auto* state = static_cast<PickState*>(sqlite3_aggregate_context(ctx, sizeof(PickState)));
    if (!state)
        return sqlite3_result_error_nomem(ctx);
    if (state->seen && !KeepLast)
        return;
    sqlite3_value_free(state->value);
    state->value = sqlite3_value_dup(argv[0]);
    state->seen = true;
}

void pickFinal(sqlite3_context* ctx) {
    auto* state = static_cast<PickState*>(sqlite3_aggregate_context(ctx, 0));
    if (!state || !state->value) {
        sqlite3_result_null(ctx);
        return;
    }
    sqlite3_result_value(ctx, state->value);
    sqlite3_value_free(state->value);
    state->value = nullptr;
}

} // namespace

int RegisterJetFunctions(sqlite3* db) {
    using Fn = void (*)(sqlite3_context*, int, sqlite3_value**);
    struct Entry {
        const char* name;
        int args;
        Fn fn;
        bool deterministic;
    };
    static const Entry entries[] = {
        {"jet_like", 2, fnLike, true},        {"jet_cat", -1, fnCat, true},
        {"jet_add", 2, fnAdd, true},          {"jet_div", 2, fnDiv, true},
        {"jet_idiv", 2, fnIntDiv, true},      {"jet_mod", 2, fnMod, true},
        {"jet_pow", 2, fnPow, true},          {"jet_val", 1, fnVal, true},
        {"jet_cdbl", 1, fnCDbl, true},        {"jet_ccur", 1, fnCCur, true},
        {"jet_cint", 1, fnCInt, true},        {"jet_clng", 1, fnCLng, true},
        {"jet_cstr", 1, fnCStr, true},        {"jet_cdate", 1, fnCDate, true},
        {"jet_strconv", 2, fnStrConv, true},  {"jet_format", 1, fnFormat, true},
        {"jet_format", 2, fnFormat, true},    {"jet_left", 2, fnLeft, true},
        {"jet_right", 2, fnRight, true},      {"jet_mid", 2, fnMid, true},
        {"jet_mid", 3, fnMid, true},          {"jet_len", 1, fnLen, true},
        {"jet_instr", 2, fnInStr, true},      {"jet_instr", 3, fnInStr, true},
        {"jet_space", 1, fnSpace, true},      {"jet_now", 0, fnNow, false},
        {"jet_date", 0, fnDate, false},       {"jet_time", 0, fnTime, false},
        {"jet_year", 1, fnDatePart<0>, true}, {"jet_month", 1, fnDatePart<1>, true},
        {"jet_day", 1, fnDatePart<2>, true},  {"jet_int", 1, fnInt, true},
        {"jet_fix", 1, fnFix, true},          {"jet_round", 1, fnRound, true},
        {"jet_round", 2, fnRound, true},      {"jet_isnumeric", 1, fnIsNumeric, true},
        {"jet_heading", 1, fnHeading, true},  {"jet_datetext", 1, fnDateText, true},
        {"jet_bittext", 1, fnBitText, true},
    };
    for (const Entry& e : entries) {
        const int flags = SQLITE_UTF8 | (e.deterministic ? SQLITE_DETERMINISTIC : 0);
        const int rc = sqlite3_create_function_v2(db, e.name, e.args, flags, nullptr, e.fn, nullptr, nullptr, nullptr);
        if (rc != SQLITE_OK)
            return rc;
    }
    int rc = sqlite3_create_function_v2(db, "jet_store", 2, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, fnStore,
                                        nullptr, nullptr, nullptr);
    if (rc != SQLITE_OK)
        return rc;
    rc = sqlite3_create_function_v2(db, "jet_cursum", 1, SQLITE_UTF8, nullptr, nullptr, curSumStep, curSumFinal,
                                    nullptr);
    if (rc != SQLITE_OK)
        return rc;
    rc = sqlite3_create_function_v2(db, "jet_first", 1, SQLITE_UTF8, nullptr, nullptr, pickStep<false>, pickFinal,
                                    nullptr);
    if (rc != SQLITE_OK)
        return rc;
    rc = sqlite3_create_function_v2(db, "jet_last", 1, SQLITE_UTF8, nullptr, nullptr, pickStep<true>, pickFinal,
                                    nullptr);
    return rc;
}

bool JetErrorFromFunctionMessage(const QString& message, int* number, QString* description) {
    static const QRegularExpression pattern(QStringLiteral("^Jet error (\\d+): (.*)$"),
                                            QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch m = pattern.match(message);
    if (!m.hasMatch())
        return false;
    if (number)
        *number = m.captured(1).toInt();
    if (description)
        *description = m.captured(2);
    return true;
}

bool JetLikeMatch(const QString& text, const QString& pattern) {
    const std::optional<LikePattern> p = compileLike(pattern);
    return p && likeMatch(text, *p);
}
