// VB's dates: the OLE serial, CDate of the office's texts, DateAdd and DateDiff.
#include "Vb.h"
#include "VbInternal.h"

#include <cmath>
#include <optional>
#include <vector>

namespace {

const QDate kSerialBase(1899, 12, 30);
constexpr double kMinSerial = -657434.0;     // 0100-01-01
constexpr double kMaxSerial = 2958465.99999; // 9999-12-31 23:59:59

const char* const kMonthNames[] = {"january", "february", "march",     "april",   "may",      "june",
                                   "july",    "august",   "september", "october", "november", "december"};

// 1..12 for a month name or its first three letters or more ("Nov", "Sept"), else 0.
int MonthFromName(const QString& word) {
    const QString lower = word.toLower();
    if (lower.size() < 3)
        return 0;
    for (int m = 0; m < 12; ++m) {
        if (QString::fromLatin1(kMonthNames[m]).startsWith(lower))
            return m + 1;
    }
    return 0;
}

struct Token {
    enum Kind { Number, Month, AmPm, Colon, Point, Separator } kind;
    int value = 0;  // the number, the month, or 0 for AM / 12 for PM
    int digits = 0; // how many digits a number had
};

bool Tokenize(const QString& text, std::vector<Token>& tokens) {
    int i = 0;
    const int n = text.size();
    while (i < n) {
        const QChar c = text[i];
        if (c.isDigit()) {
            int value = 0;
            int digits = 0;
            while (i < n && text[i].isDigit()) {
                if (digits < 9)
                    value = value * 10 + text[i].digitValue();
                ++digits;
                ++i;
            }
            tokens.push_back({Token::Number, value, digits});
        } else if (c.isLetter()) {
            const int start = i;
            while (i < n && text[i].isLetter())
                ++i;
            const QString word = text.mid(start, i - start);
            const QString upper = word.toUpper();
            if (upper == u"AM" || upper == u"A")
                tokens.push_back({Token::AmPm, 0, 0});
            else if (upper == u"PM" || upper == u"P")
                tokens.push_back({Token::AmPm, 12, 0});
            else if (upper == u"T" && !tokens.empty() && tokens.back().kind == Token::Number)
                tokens.push_back({Token::Separator, 0, 0}); // ISO "2024-01-05T10:00:00"
            else if (const int month = MonthFromName(word))
                tokens.push_back({Token::Month, month, 0});
            else
                return false;
        } else if (c == u':') {
            tokens.push_back({Token::Colon, 0, 0});
            ++i;
        } else if (c == u'.') {
            tokens.push_back({Token::Point, 0, 0});
            ++i;
        } else if (c == u'/' || c == u'-' || c == u',' || c == u' ' || c == u'\t') {
            if (tokens.empty() || tokens.back().kind != Token::Separator)
                tokens.push_back({Token::Separator, 0, 0});
            ++i;
        } else {
            return false;
        }
    }
    return true;
}

// Pulls "h:mm[:ss[.fff]] [AM|PM]" out of the tokens; false when a time is present but malformed.
bool TakeTime(std::vector<Token>& tokens, std::optional<QTime>& time) {
    for (size_t i = 0; i + 2 < tokens.size(); ++i) {
        if (tokens[i].kind != Token::Number || tokens[i + 1].kind != Token::Colon ||
            tokens[i + 2].kind != Token::Number)
            continue;
        int hour = tokens[i].value;
        const int minute = tokens[i + 2].value;
        int second = 0;
        int msec = 0;
        size_t end = i + 3;
        if (end + 1 < tokens.size() && tokens[end].kind == Token::Colon && tokens[end + 1].kind == Token::Number) {
            second = tokens[end + 1].value;
            end += 2;
            if (end + 1 < tokens.size() && tokens[end].kind == Token::Point && tokens[end + 1].kind == Token::Number) {
                const Token& f = tokens[end + 1];
                double fraction = f.value / std::pow(10.0, std::min(f.digits, 9));
                msec = static_cast<int>(std::lround(fraction * 1000.0));
                end += 2;
            }
        }
        size_t ampmAt = end;
        if (ampmAt < tokens.size() && tokens[ampmAt].kind == Token::Separator)
            ++ampmAt;
        if (ampmAt < tokens.size() && tokens[ampmAt].kind == Token::AmPm) {
            if (hour < 1 || hour > 12)
                return false;
            hour = hour % 12 + tokens[ampmAt].value;
            end = ampmAt + 1;
        }
        if (msec >= 1000)
            msec = 999;
        if (hour > 23 || minute > 59 || second > 59)
            return false;
        time = QTime(hour, minute, second, msec);
        tokens.erase(tokens.begin() + static_cast<std::ptrdiff_t>(i),
                     tokens.begin() + static_cast<std::ptrdiff_t>(end));
        return true;
    }
    return true;
}

int ExpandYear(const Token& t) {
    if (t.digits <= 2)
        return t.value < 30 ? 2000 + t.value : 1900 + t.value;
    return t.value;
}

bool IsYearLike(const Token& t) {
    return t.digits >= 3 || t.value > 31;
}

// Day first, as the office writes dates; a year of three or four digits in front reads year-month-day.
// When the day-first reading is impossible and the month-first one is not, VB takes the latter.
std::optional<QDate> ResolveDate(const std::vector<Token>& numbers, int monthName) {
    const int thisYear = QDate::currentDate().year();
    auto makeDayFirst = [](int day, int month, int year) -> std::optional<QDate> {
        QDate d(year, month, day);
        if (d.isValid())
            return d;
        QDate swapped(year, day, month);
        if (swapped.isValid())
            return swapped;
        return std::nullopt;
    };
    if (monthName) {
        if (numbers.size() == 2) {
            const bool yearFirst = IsYearLike(numbers[0]) && !IsYearLike(numbers[1]);
            const Token& day = yearFirst ? numbers[1] : numbers[0];
            const Token& year = yearFirst ? numbers[0] : numbers[1];
            QDate d(ExpandYear(year), monthName, day.value);
            return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
        }
        if (numbers.size() == 1) {
            QDate d = IsYearLike(numbers[0]) ? QDate(ExpandYear(numbers[0]), monthName, 1)
                                             : QDate(thisYear, monthName, numbers[0].value);
            return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
        }
        return std::nullopt;
    }
    if (numbers.size() == 3) {
        if (numbers[0].digits >= 3) {
            QDate d(numbers[0].value, numbers[1].value, numbers[2].value);
            return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
        }
        return makeDayFirst(numbers[0].value, numbers[1].value, ExpandYear(numbers[2]));
    }
    if (numbers.size() == 2) {
        if (IsYearLike(numbers[1])) {
            QDate d(ExpandYear(numbers[1]), numbers[0].value, 1);
            return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
        }
        if (numbers[0].digits >= 3) {
            QDate d(numbers[0].value, numbers[1].value, 1);
            return d.isValid() ? std::optional<QDate>(d) : std::nullopt;
        }
        return makeDayFirst(numbers[0].value, numbers[1].value, thisYear);
    }
    return std::nullopt;
}

} // namespace

namespace vb::detail {

bool ParseDateText(const QString& text, QDateTime& out) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return false;
    std::vector<Token> tokens;
    if (!Tokenize(trimmed, tokens))
        return false;
    std::optional<QTime> time;
    if (!TakeTime(tokens, time))
        return false;
    std::vector<Token> numbers;
    int monthName = 0;
    for (const Token& t : tokens) {
        switch (t.kind) {
        case Token::Number:
            if (t.digits > 4)
                return false;
            numbers.push_back(t);
            break;
        case Token::Month:
            if (monthName)
                return false;
            monthName = t.value;
            break;
        case Token::Separator:
            break;
        case Token::Point:
            // "5.11.2026": a point between date numbers separates them like a slash
            break;
        default:
            return false;
        }
    }
    if (numbers.empty() && !monthName) {
        if (!time)
            return false;
        out = QDateTime(kSerialBase, *time);
        return true;
    }
    const std::optional<QDate> date = ResolveDate(numbers, monthName);
    if (!date || date->year() < 100 || date->year() > 9999)
        return false;
    out = time ? QDateTime(*date, *time) : LocalMidnight(*date);
    return true;
}

QString DateToText(const QDateTime& value) {
    const QTime t = value.time();
    const bool hasTime = t.isValid() && t != QTime(0, 0);
    if (value.date() == kSerialBase && hasTime)
        return t.toString(QStringLiteral("HH:mm:ss"));
    QString text = value.date().toString(QStringLiteral("yyyy/MM/dd"));
    if (hasTime)
        text += u' ' + t.toString(QStringLiteral("HH:mm:ss"));
    return text;
}

} // namespace vb::detail

namespace vb {

using namespace detail;

double DateToSerial(const QDateTime& date) {
    const double days = static_cast<double>(kSerialBase.daysTo(date.date()));
    const double fraction = date.time().isValid() ? date.time().msecsSinceStartOfDay() / 86400000.0 : 0.0;
    return days >= 0 ? days + fraction : days - fraction;
}

QDateTime DateFromSerial(double serial) {
    if (!std::isfinite(serial) || serial < kMinSerial || serial > kMaxSerial)
        ThrowOverflow();
    double whole = std::trunc(serial);
    long long msecs = std::llround(std::fabs(serial - whole) * 86400000.0);
    if (msecs >= 86400000LL) {
        msecs -= 86400000LL;
        whole += serial < 0 ? -1 : 1;
    }
    return QDateTime(kSerialBase.addDays(static_cast<qint64>(whole)),
                     QTime::fromMSecsSinceStartOfDay(static_cast<int>(msecs)));
}

QDateTime CDate(const Value& value) {
    switch (value.type()) {
    case VType::Null:
        ThrowInvalidUseOfNull();
    case VType::Date:
        return value.toDate(); // a Date passes through
    case VType::String: {
        QDateTime parsed;
        if (!ParseDateText(value.toString(), parsed))
            ThrowTypeMismatch();
        return parsed;
    }
    default:
        return DateFromSerial(value.toDouble());
    }
}

bool IsDate(const QString& text) {
    QDateTime ignored;
    return ParseDateText(text, ignored);
}

QDateTime DateAddDays(const QDateTime& date, int days) {
    return QDateTime(date.date().addDays(days), date.time());
}

QDateTime DateAddMonths(const QDateTime& date, int months) {
    // QDate::addMonths keeps the day where it can and clamps it to the month's last day otherwise.
    return QDateTime(date.date().addMonths(months), date.time());
}

std::int64_t DateDiffDays(const QDateTime& from, const QDateTime& to) {
    return from.date().daysTo(to.date());
}

} // namespace vb
