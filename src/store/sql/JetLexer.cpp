#include "JetLexer.h"

#include "Database.h"

#include <QDate>
#include <QTime>

namespace jet {

namespace {

bool isWordStart(QChar c) {
    return c.isLetter() || c == u'_';
}
bool isWordChar(QChar c) {
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

[[noreturn]] void failUnterminated(const QString& statement, int from, const char* what) {
    throw DbError(3075, QStringLiteral("Syntax error in %1 in query expression '%2'.")
                            .arg(QString::fromLatin1(what), statement.mid(from)));
}

// Splits "11-05-2024 23:59:59" into its numeric date parts and time parts. Returns false on anything else.
bool readNumbers(const QString& text, QList<int>& dateParts, QList<int>& timeParts, bool& yearFirst) {
    const QString trimmed = text.trimmed();
    const int blank = trimmed.indexOf(u' ');
    QString datePart = blank < 0 ? trimmed : trimmed.left(blank);
    QString timePart = blank < 0 ? QString() : trimmed.mid(blank + 1).trimmed();
    if (datePart.contains(u':')) { // a time alone
        timePart = datePart;
        datePart.clear();
    }
    const QString upper = timePart.toUpper();
    const bool pm = upper.endsWith(QLatin1String("PM"));
    const bool am = upper.endsWith(QLatin1String("AM"));
    if (pm || am)
        timePart = timePart.left(timePart.size() - 2).trimmed();
    bool ok = true;
    yearFirst = false;
    if (!datePart.isEmpty()) {
        QString current;
        QStringList parts;
        for (QChar c : datePart) {
            if (c == u'/' || c == u'-' || c == u'.') {
                parts << current;
                current.clear();
            } else {
                current += c;
            }
        }
        parts << current;
        yearFirst = parts.first().size() == 4;
        for (const QString& p : parts) {
            dateParts << p.toInt(&ok);
            if (!ok || p.isEmpty())
                return false;
        }
    }
    if (!timePart.isEmpty()) {
        const QStringList pieces = timePart.split(u':');
        for (const QString& p : pieces) {
            timeParts << p.toInt(&ok);
            if (!ok || p.isEmpty())
                return false;
        }
        if (!timeParts.isEmpty()) {
            if (pm && timeParts[0] < 12)
                timeParts[0] += 12;
            if (am && timeParts[0] == 12)
                timeParts[0] = 0;
        }
    }
    return true;
}

} // namespace

QString JetDateLiteralToIso(const QString& text) {
    QList<int> d;
    QList<int> t;
    bool yearFirst = false;
    if (!readNumbers(text, d, t, yearFirst))
        return {};
    QDate date(1899, 12, 30);
    if (d.size() == 3) {
        int y = 0, m = 0, day = 0;
        if (yearFirst) {
            y = d[0];
            m = d[1];
            day = d[2];
        } else {
            m = d[0];
            day = d[1];
            y = d[2];
            if (y < 100)
                y += y < 30 ? 2000 : 1900;
            if (!QDate::isValid(y, m, day) && QDate::isValid(y, day, m))
                std::swap(m, day); // Jet falls back to day first when month first is no date
        }
        date = QDate(y, m, day);
        if (!date.isValid())
            return {};
    } else if (!d.isEmpty()) {
        return {};
    }
    if (t.size() > 3)
        return {};
    const int h = t.value(0), mi = t.value(1), s = t.value(2);
    if (h < 0 || h > 23 || mi < 0 || mi > 59 || s < 0 || s > 59)
        return {};
    return date.toString(QStringLiteral("yyyy-MM-dd")) + QStringLiteral(" %1:%2:%3")
                                                             .arg(h, 2, 10, QLatin1Char('0'))
                                                             .arg(mi, 2, 10, QLatin1Char('0'))
                                                             .arg(s, 2, 10, QLatin1Char('0'));
}

std::vector<Token> Tokenize(const QString& statement) {
    std::vector<Token> tokens;
    tokens.reserve(static_cast<size_t>(statement.size() / 3 + 4));
    const int n = static_cast<int>(statement.size());
    int i = 0;
    while (i < n) {
        const QChar c = statement[i];
        if (c.isSpace()) {
            ++i;
            continue;
        }
        Token tok;
        tok.start = i;
        if (isWordStart(c)) {
            int j = i + 1;
            while (j < n && isWordChar(statement[j]))
                ++j;
            tok.type = TokenType::Word;
            tok.text = statement.mid(i, j - i);
            tok.lower = tok.text.toLower();
            i = j;
        } else if (c == u'[') {
            const int close = statement.indexOf(u']', i + 1);
            if (close < 0)
                failUnterminated(statement, i, "name");
            tok.type = TokenType::QuotedName;
            tok.text = statement.mid(i + 1, close - i - 1);
            tok.lower = tok.text.toLower();
            i = close + 1;
        } else if (c == u'\'' || c == u'"') {
            QString value;
            int j = i + 1;
            bool closed = false;
            while (j < n) {
                if (statement[j] == c) {
                    if (j + 1 < n && statement[j + 1] == c) {
                        value += c;
                        j += 2;
                        continue;
                    }
                    closed = true;
                    ++j;
                    break;
                }
                value += statement[j];
                ++j;
            }
            if (!closed)
                failUnterminated(statement, i, "string");
            tok.type = TokenType::String;
            tok.text = value;
            i = j;
        } else if (c == u'#') {
            const int close = statement.indexOf(u'#', i + 1);
            if (close < 0)
                failUnterminated(statement, i, "date");
            const QString iso = JetDateLiteralToIso(statement.mid(i + 1, close - i - 1));
            if (iso.isEmpty())
                throw DbError(3075, QStringLiteral("Syntax error in date in query expression '%1'.")
                                        .arg(statement.mid(i, close - i + 1)));
            tok.type = TokenType::Date;
            tok.text = iso;
            i = close + 1;
        } else if (c.isDigit() || (c == u'.' && i + 1 < n && statement[i + 1].isDigit())) {
            int j = i;
            while (j < n && statement[j].isDigit())
                ++j;
            if (j < n && statement[j] == u'.') {
                ++j;
                while (j < n && statement[j].isDigit())
                    ++j;
            }
            if (j < n && (statement[j] == u'e' || statement[j] == u'E')) {
                int k = j + 1;
                if (k < n && (statement[k] == u'+' || statement[k] == u'-'))
                    ++k;
                if (k < n && statement[k].isDigit()) {
                    while (k < n && statement[k].isDigit())
                        ++k;
                    j = k;
                }
            }
            tok.type = TokenType::Number;
            tok.text = statement.mid(i, j - i);
            i = j;
        } else {
            tok.type = TokenType::Symbol;
            if (i + 1 < n) {
                const QString two = statement.mid(i, 2);
                if (two == QLatin1String("<>") || two == QLatin1String("<=") || two == QLatin1String(">=")) {
                    tok.text = two;
                    i += 2;
                }
            }
            if (tok.text.isEmpty()) {
                static const QString symbols = QStringLiteral("(),.;*+-/\\^&=<>!");
                if (!symbols.contains(c))
                    throw DbError(3075, QStringLiteral("Syntax error (missing operator) in query expression '%1'.")
                                            .arg(statement.mid(i)));
                tok.text = QString(c);
                ++i;
            }
        }
        tok.end = i;
        tokens.push_back(std::move(tok));
    }
    Token end;
    end.type = TokenType::End;
    end.start = end.end = n;
    tokens.push_back(end);
    return tokens;
}

} // namespace jet
