#include "QueryHelpers.h"

#include <QFileInfo>
#include <QRegularExpression>

// Patterns follow the scripting engine's rules: they ignore case and run global. RegexFind and
// RegexReplace also let ^ and $ match at each line.

namespace {

QRegularExpression Compile(const QString& pattern, bool multiLine) {
    QRegularExpression::PatternOptions options = QRegularExpression::CaseInsensitiveOption;
    if (multiLine)
        options |= QRegularExpression::MultilineOption;
    return QRegularExpression(pattern, options);
}

// The replacement text's own references: $1..$99 a group, $& the match, $$ a dollar sign.
QString ExpandReplacement(const QString& replacement, const QRegularExpressionMatch& match) {
    QString out;
    for (int i = 0; i < replacement.size(); ++i) {
        const QChar c = replacement[i];
        if (c != '$' || i + 1 >= replacement.size()) {
            out += c;
            continue;
        }
        const QChar next = replacement[i + 1];
        if (next == '$') {
            out += '$';
            ++i;
        } else if (next == '&') {
            out += match.captured(0);
            ++i;
        } else if (next.isDigit()) {
            int group = next.digitValue();
            int used = 1;
            if (i + 2 < replacement.size() && replacement[i + 2].isDigit()) {
                const int two = group * 10 + replacement[i + 2].digitValue();
                if (two <= match.regularExpression().captureCount()) {
                    group = two;
                    used = 2;
                }
            }
            if (group >= 1 && group <= match.regularExpression().captureCount()) {
                out += match.captured(group);
                i += used;
            } else {
                out += c;
            }
        } else {
            out += c;
        }
    }
    return out;
}

} // namespace

QString RegexCapture(const QString& text, const QString& pattern, int groupIndex) {
    const QRegularExpression re = Compile(pattern, false);
    if (!re.isValid() || groupIndex < 0 || groupIndex >= re.captureCount())
        return QString();
    const QRegularExpressionMatch match = re.match(text);
    if (!match.hasMatch())
        return QString();
    return match.captured(groupIndex + 1);
}

QString RegexFind(const QString& pattern, const QString& text, bool emptyOnFail) {
    const QRegularExpression re = Compile(pattern, true);
    if (!re.isValid())
        return QString();
    QStringList pairs;
    auto it = re.globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        pairs << QString::number(m.capturedStart(0)) + ":" + QString::number(m.capturedLength(0));
    }
    if (pairs.isEmpty())
        return emptyOnFail ? QString("0:0") : QString("Failed");
    return pairs.join(',');
}

QString RegexReplace(const QString& text, const QString& pattern, const QString& replacement) {
    const QRegularExpression re = Compile(pattern, true);
    if (!re.isValid())
        return QString();
    QString out;
    qsizetype last = 0;
    auto it = re.globalMatch(text);
    while (it.hasNext()) {
        const QRegularExpressionMatch m = it.next();
        out += text.mid(last, m.capturedStart(0) - last);
        out += ExpandReplacement(replacement, m);
        last = m.capturedEnd(0);
    }
    out += text.mid(last);
    return out;
}

bool FolderExists(const QString& path) {
    return !path.isEmpty() && QFileInfo(path).isDir();
}
