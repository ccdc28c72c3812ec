// VB's Format for the number and date patterns the program uses.
#include "Vb.h"
#include "VbInternal.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

using vb::detail::DecimalDigits;

const char* const kMonths[] = {"January", "February", "March",     "April",   "May",      "June",
                               "July",    "August",   "September", "October", "November", "December"};
const char* const kDays[] = {"Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday", "Sunday"};

// Splits a pattern into its sections at ';' outside quotes and escapes.
QStringList Sections(const QString& pattern) {
    QStringList out;
    QString current;
    bool quoted = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'"')
            quoted = !quoted;
        if (c == u'\\' && !quoted && i + 1 < pattern.size()) {
            current += c;
            current += pattern[++i];
            continue;
        }
        if (c == u';' && !quoted) {
            out << current;
            current.clear();
            continue;
        }
        current += c;
    }
    out << current;
    return out;
}

struct PatternKind {
    bool dateLetters = false;
    bool digitPlaceholders = false;
};

PatternKind KindOf(const QString& pattern) {
    PatternKind kind;
    bool quoted = false;
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        if (c == u'"') {
            quoted = !quoted;
            continue;
        }
        if (quoted)
            continue;
        if (c == u'\\') {
            ++i;
            continue;
        }
        if (c == u'0' || c == u'#')
            kind.digitPlaceholders = true;
        if (QStringLiteral("dmyhnswqtcDMYHNSWQTC").contains(c))
            kind.dateLetters = true;
    }
    return kind;
}

// ---- numbers ----------------------------------------------------------------------------------------

struct NumToken {
    enum Kind { Zero, Hash, Point, Comma, Percent, Literal } kind;
    QString text;
    bool isPlaceholder() const { return kind == Zero || kind == Hash; }
};

std::vector<NumToken> NumberTokens(const QString& section) {
    std::vector<NumToken> tokens;
    for (int i = 0; i < section.size(); ++i) {
        const QChar c = section[i];
        if (c == u'0')
            tokens.push_back({NumToken::Zero, {}});
        else if (c == u'#')
            tokens.push_back({NumToken::Hash, {}});
        else if (c == u'.')
            tokens.push_back({NumToken::Point, {}});
        else if (c == u',')
            tokens.push_back({NumToken::Comma, {}});
        else if (c == u'%')
            tokens.push_back({NumToken::Percent, QStringLiteral("%")});
        else if (c == u'\\' && i + 1 < section.size())
            tokens.push_back({NumToken::Literal, QString(section[++i])});
        else if (c == u'"') {
            const int end = section.indexOf(u'"', i + 1);
            const int stop = end < 0 ? section.size() : end;
            tokens.push_back({NumToken::Literal, section.mid(i + 1, stop - i - 1)});
            i = stop;
        } else
            tokens.push_back({NumToken::Literal, QString(c)});
    }
    return tokens;
}

// The integer part of a number pattern, VB's way. The digits are laid right-aligned into the digit
// placeholders; a '#' without a digit prints nothing and a '0' prints 0; digits beyond the placeholders all
// go in front of the first one. Literal characters are printed where they stand whether or not a digit
// stands to their left: that is why "### ##0.00" shows 12.5 as " 12.50", and the program's lists rely on it
// for their alignment. A comma between placeholders groups the digits by three with a blank, the program's
// thousands mark.
QString LayIntegerPart(const std::vector<NumToken>& tokens, const QString& digits, bool grouping) {
    int firstPlaceholder = -1;
    for (int t = 0; t < static_cast<int>(tokens.size()); ++t) {
        if (tokens[t].isPlaceholder()) {
            firstPlaceholder = t;
            break;
        }
    }
    QString reversed;
    int next = digits.size() - 1; // the next digit to place, from the right
    int placed = 0;
    auto put = [&](QChar digit) {
        if (grouping && placed > 0 && placed % 3 == 0)
            reversed += u' ';
        reversed += digit;
        ++placed;
    };
    auto putRest = [&] {
        while (next >= 0)
            put(digits[next--]);
    };
    if (firstPlaceholder < 0)
        putRest(); // no placeholder: the digits stand just before the decimal point
    for (int t = static_cast<int>(tokens.size()) - 1; t >= 0; --t) {
        const NumToken& tok = tokens[t];
        if (tok.isPlaceholder()) {
            if (next >= 0)
                put(digits[next--]);
            else if (tok.kind == NumToken::Zero)
                put(u'0');
            if (t == firstPlaceholder)
                putRest();
        } else if (tok.kind != NumToken::Comma) {
            for (int k = tok.text.size() - 1; k >= 0; --k)
                reversed += tok.text[k];
        }
    }
    std::reverse(reversed.begin(), reversed.end());
    return reversed;
}

QString LayFractionPart(const std::vector<NumToken>& tokens, const QString& digits) {
    // Trailing '#' places whose digit is 0 print nothing.
    int lastShown = -1;
    int placeholderIndex = 0;
    int placeholders = 0;
    for (const NumToken& tok : tokens)
        placeholders += tok.isPlaceholder() ? 1 : 0;
    placeholderIndex = placeholders;
    for (int t = static_cast<int>(tokens.size()) - 1; t >= 0; --t) {
        if (!tokens[t].isPlaceholder())
            continue;
        --placeholderIndex;
        if (tokens[t].kind == NumToken::Zero || digits[placeholderIndex] != u'0') {
            lastShown = placeholderIndex;
            break;
        }
    }
    QString out;
    int index = 0;
    for (const NumToken& tok : tokens) {
        if (tok.isPlaceholder()) {
            if (index <= lastShown)
                out += digits[index];
            ++index;
        } else if (tok.kind != NumToken::Comma) {
            out += tok.text;
        }
    }
    return out;
}

QString FormatNumber(double value, const QString& pattern) {
    const QStringList sections = Sections(pattern);
    QString section = sections[0];
    bool showMinus = true;
    if (value < 0 && sections.size() >= 2 && !sections[1].isEmpty()) {
        section = sections[1];
        value = -value;
        showMinus = false;
    } else if (value == 0 && sections.size() >= 3 && !sections[2].isEmpty()) {
        section = sections[2];
    }
    const std::vector<NumToken> tokens = NumberTokens(section);

    int pointAt = static_cast<int>(tokens.size());
    for (int t = 0; t < static_cast<int>(tokens.size()); ++t) {
        if (tokens[t].kind == NumToken::Point) {
            pointAt = t;
            break;
        }
    }
    std::vector<NumToken> integerTokens(tokens.begin(), tokens.begin() + pointAt);
    std::vector<NumToken> fractionTokens;
    if (pointAt < static_cast<int>(tokens.size()))
        fractionTokens.assign(tokens.begin() + pointAt + 1, tokens.end());

    // A comma with placeholders on both sides groups; commas right before the point (or the end) scale by 1000.
    bool grouping = false;
    int scaleCommas = 0;
    {
        bool placeholderBefore = false;
        for (int t = 0; t < static_cast<int>(integerTokens.size()); ++t) {
            if (integerTokens[t].isPlaceholder())
                placeholderBefore = true;
            if (integerTokens[t].kind != NumToken::Comma)
                continue;
            bool placeholderAfter = false;
            for (int u = t + 1; u < static_cast<int>(integerTokens.size()); ++u)
                placeholderAfter = placeholderAfter || integerTokens[u].isPlaceholder();
            if (placeholderBefore && placeholderAfter)
                grouping = true;
            else if (placeholderBefore)
                ++scaleCommas;
        }
    }
    for (const NumToken& tok : tokens) {
        if (tok.kind == NumToken::Percent)
            value *= 100.0;
    }
    for (int k = 0; k < scaleCommas; ++k)
        value /= 1000.0;

    int decimals = 0;
    for (const NumToken& tok : fractionTokens)
        decimals += tok.isPlaceholder() ? 1 : 0;

    // VB rounds the double to 15 significant digits, then half away from zero to the pattern's decimals.
    const DecimalDigits d = vb::detail::RoundAwayFromZero(vb::detail::ToDecimalDigits(value), decimals);
    QString integerDigits;
    if (d.point > 0)
        integerDigits = d.digits.left(d.point).leftJustified(d.point, u'0');
    QString fractionDigits;
    for (int k = 0; k < decimals; ++k) {
        const int index = d.point + k;
        fractionDigits += (index >= 0 && index < d.digits.size()) ? d.digits[index] : QChar(u'0');
    }

    QString out = LayIntegerPart(integerTokens, integerDigits, grouping);
    if (pointAt < static_cast<int>(tokens.size()))
        out += u'.' + LayFractionPart(fractionTokens, fractionDigits);
    if (showMinus && value < 0)
        out.prepend(u'-');
    return out;
}

// ---- dates ------------------------------------------------------------------------------------------

struct DateToken {
    QChar letter; // lower case d m y h n s w q t c, 'a' for an AM/PM marker, 0 for a literal
    int count = 0;
    QString text; // the literal, or the AM/PM marker as written
};

std::vector<DateToken> DateTokens(const QString& pattern) {
    std::vector<DateToken> tokens;
    const QString letters = QStringLiteral("dmyhnswqtc");
    for (int i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern[i];
        const QChar lower = c.toLower();
        int markerLength = 0;
        for (const char* marker : {"AM/PM", "A/P", "AMPM"}) {
            const QString m = QString::fromLatin1(marker);
            if (pattern.mid(i, m.size()).compare(m, Qt::CaseInsensitive) == 0) {
                markerLength = m.size();
                break;
            }
        }
        if (markerLength > 0) {
            tokens.push_back({u'a', 1, pattern.mid(i, markerLength)});
            i += markerLength - 1;
            continue;
        }
        if (letters.contains(lower)) {
            int count = 1;
            while (i + count < pattern.size() && pattern[i + count].toLower() == lower)
                ++count;
            tokens.push_back({lower, count, {}});
            i += count - 1;
        } else if (c == u'\\' && i + 1 < pattern.size()) {
            tokens.push_back({QChar(), 0, QString(pattern[++i])});
        } else if (c == u'"') {
            const int end = pattern.indexOf(u'"', i + 1);
            const int stop = end < 0 ? pattern.size() : end;
            tokens.push_back({QChar(), 0, pattern.mid(i + 1, stop - i - 1)});
            i = stop;
        } else {
            tokens.push_back({QChar(), 0, QString(c)});
        }
    }
    return tokens;
}

QString TwoDigits(int n) {
    return QString::number(n).rightJustified(2, u'0');
}

QString AmPmText(const QString& marker, bool pm) {
    if (marker.compare(QStringLiteral("A/P"), Qt::CaseInsensitive) == 0) {
        const QChar c = pm ? u'P' : u'A';
        return marker[0].isLower() ? QString(c.toLower()) : QString(c);
    }
    const QString text = pm ? QStringLiteral("PM") : QStringLiteral("AM");
    return marker.startsWith(QStringLiteral("am")) ? text.toLower() : text;
}

QString FormatDate(const QDateTime& value, const QString& pattern) {
    const QDate date = value.date();
    if (!date.isValid())
        return QString(); // nothing to show, and no month or weekday name to look up
    const std::vector<DateToken> tokens = DateTokens(pattern);
    const QTime time = value.time().isValid() ? value.time() : QTime(0, 0);
    QString amPmMarker;
    for (const DateToken& t : tokens) {
        if (t.letter == u'a')
            amPmMarker = t.text;
    }
    // 'm' is the minute right after an hour or right before a second, as in "hh:mm" and "mm:ss".
    auto isMinute = [&](size_t at) {
        for (size_t k = at; k-- > 0;) {
            if (tokens[k].letter.isNull())
                continue;
            if (tokens[k].letter == u'h')
                return true;
            break;
        }
        for (size_t k = at + 1; k < tokens.size(); ++k) {
            if (tokens[k].letter.isNull())
                continue;
            return tokens[k].letter == u's';
        }
        return false;
    };
    QString out;
    for (size_t i = 0; i < tokens.size(); ++i) {
        const DateToken& t = tokens[i];
        const int n = t.count;
        switch (t.letter.unicode()) {
        case 'd':
            if (n == 1)
                out += QString::number(date.day());
            else if (n == 2)
                out += TwoDigits(date.day());
            else if (n == 3)
                out += QString::fromLatin1(kDays[date.dayOfWeek() - 1]).left(3);
            else if (n == 4)
                out += QString::fromLatin1(kDays[date.dayOfWeek() - 1]);
            else if (n == 5)
                out += date.toString(QStringLiteral("yyyy/MM/dd"));
            else
                out += FormatDate(value, QStringLiteral("dddd, mmmm dd, yyyy"));
            break;
        case 'm':
            if (n <= 2 && isMinute(i))
                out += n == 1 ? QString::number(time.minute()) : TwoDigits(time.minute());
            else if (n == 1)
                out += QString::number(date.month());
            else if (n == 2)
                out += TwoDigits(date.month());
            else if (n == 3)
                out += QString::fromLatin1(kMonths[date.month() - 1]).left(3);
            else
                out += QString::fromLatin1(kMonths[date.month() - 1]);
            break;
        case 'y':
            if (n == 1)
                out += QString::number(date.dayOfYear());
            else if (n == 2)
                out += TwoDigits(date.year() % 100);
            else
                out += QString::number(date.year()).rightJustified(4, u'0');
            break;
        case 'h': {
            int hour = time.hour();
            if (!amPmMarker.isEmpty()) {
                hour %= 12;
                if (hour == 0)
                    hour = 12;
            }
            out += n == 1 ? QString::number(hour) : TwoDigits(hour);
            break;
        }
        case 'n':
            out += n == 1 ? QString::number(time.minute()) : TwoDigits(time.minute());
            break;
        case 's':
            out += n == 1 ? QString::number(time.second()) : TwoDigits(time.second());
            break;
        case 'w':
            if (n == 1)
                out += QString::number(date.dayOfWeek() % 7 + 1); // Sunday is 1
            else
                out += QString::number((date.dayOfYear() + QDate(date.year(), 1, 1).dayOfWeek() % 7 - 1) / 7 + 1);
            break;
        case 'q':
            out += QString::number((date.month() - 1) / 3 + 1);
            break;
        case 't':
            if (n == 5)
                out += time.toString(QStringLiteral("HH:mm:ss"));
            else
                out += QString(n, u't');
            break;
        case 'c':
            out += vb::detail::DateToText(value);
            break;
        case 'a':
            out += AmPmText(t.text, time.hour() >= 12);
            break;
        default:
            out += t.text;
        }
    }
    return out;
}

// The named formats, each as the pattern it stands for here (the office's short date is "yyyy/MM/dd").
QString NamedPattern(const QString& name, bool& general) {
    general = false;
    const QString key = name.toLower();
    if (key == u"general number" || key == u"general date") {
        general = true;
        return {};
    }
    if (key == u"fixed")
        return QStringLiteral("0.00");
    if (key == u"standard")
        return QStringLiteral("#,##0.00");
    if (key == u"percent")
        return QStringLiteral("0.00%");
    if (key == u"short date")
        return QStringLiteral("yyyy/mm/dd");
    if (key == u"long date")
        return QStringLiteral("dddd, mmmm dd, yyyy");
    if (key == u"medium date")
        return QStringLiteral("dd-mmm-yy");
    if (key == u"long time")
        return QStringLiteral("hh:nn:ss");
    if (key == u"medium time")
        return QStringLiteral("hh:nn AM/PM");
    if (key == u"short time")
        return QStringLiteral("hh:nn");
    return name;
}

} // namespace

namespace vb {

QString Format(const Value& value, const QString& pattern) {
    if (value.isNull() || value.isEmpty())
        return QString();
    bool general = false;
    const QString effective = NamedPattern(pattern, general);
    if (effective.isEmpty() || general)
        return value.toString();
    const QString lower = effective.toLower();
    if (lower == u"yes/no" || lower == u"true/false" || lower == u"on/off") {
        const bool truth = value.toBool();
        const QStringList words = effective.split(u'/');
        return truth ? words[0] : words[1];
    }

    Value v = value;
    if (v.type() == VType::String) {
        // A text that reads as a number is formatted as that number, one that reads as a date as that date.
        double number = 0;
        QDateTime date;
        if (detail::ParseNumberText(v.toString(), number))
            v = Value(number);
        else if (detail::ParseDateText(v.toString(), date))
            v = Value(date);
        else
            return v.toString();
    }

    // A date takes the pattern as a date pattern ("mm-dd-yyyy 00:00:00": the zeros are literal); a number
    // does so only when the pattern has date letters and no digit placeholders.
    const PatternKind kind = KindOf(effective);
    if (v.type() == VType::Date && kind.dateLetters)
        return FormatDate(v.toDate(), effective);
    if (v.type() != VType::Date && kind.dateLetters && !kind.digitPlaceholders) {
        try {
            return FormatDate(DateFromSerial(v.toDouble()), effective);
        } catch (const VbError&) {
            return v.toString(); // a number past the calendar's range has no date to show
        }
    }
    return FormatNumber(v.toDouble(), effective);
}

} // namespace vb
