// The in-memory workbook: sheets, ranges, cells and their formats, charts. It checks every call as the
// spreadsheet program checks it, so that a report that would have failed there fails here too.

#include "ReportEngine.h"
#include "XlsxWriter.h"

#include "Vb.h"

#include <QDesktopServices>
#include <QDir>
#include <QRegularExpression>
#include <QUrl>
#include <algorithm>
#include <cmath>

namespace {

[[noreturn]] void Refuse(const QString& what) {
    throw XlError(1004, what);
}

int ColumnOfLetters(const QString& letters) {
    int n = 0;
    for (const QChar ch : letters)
        n = n * 26 + (ch.toUpper().unicode() - 'A' + 1);
    return n;
}

QString LettersOfColumn(int column) {
    QString out;
    while (column > 0) {
        const int rest = (column - 1) % 26;
        out.prepend(QChar('A' + rest));
        column = (column - 1) / 26;
    }
    return out;
}

// One part of a range reference: a cell ("B3"), a column ("B") or a row ("3").
struct RefPart {
    enum Kind { Cell, Column, Row } kind;
    int row = 0, column = 0;
};

bool ParsePart(const QString& text, RefPart& part) {
    static const QRegularExpression re(QStringLiteral("^\\$?([A-Za-z]{0,3})\\$?([0-9]{0,7})$"));
    const auto m = re.match(text.trimmed());
    if (!m.hasMatch())
        return false;
    const QString letters = m.captured(1);
    const QString digits = m.captured(2);
    if (letters.isEmpty() && digits.isEmpty())
        return false;
    if (!letters.isEmpty()) {
        part.column = ColumnOfLetters(letters);
        if (part.column < 1 || part.column > xl::MaxColumns)
            return false;
    }
    if (!digits.isEmpty()) {
        part.row = digits.toInt();
        if (part.row < 1 || part.row > xl::MaxRows)
            return false;
    }
    part.kind = letters.isEmpty() ? RefPart::Row : digits.isEmpty() ? RefPart::Column : RefPart::Cell;
    return true;
}

bool Intersects(const XlMerge& m, int r1, int c1, int r2, int c2) {
    return m.r1 <= r2 && r1 <= m.r2 && m.c1 <= c2 && c1 <= m.c2;
}

// A text that the spreadsheet program reads as a number when it is written into a cell: digits with blanks
// between thousands (the run's thousands mark), a decimal point, an optional sign, exponent or percent sign.
// A text that the spreadsheet's own entry reads as a date: "2024/01/05", "2024-1-5" (year first, a real day).
const QString kTextDateFormat = QStringLiteral("yyyy/mm/dd");
bool DateOfText(const QString& text, QDateTime& date) {
    // Most pasted texts are names: only a text that starts with four digits is worth the pattern.
    const QStringView trimmed = QStringView(text).trimmed();
    if (trimmed.size() < 8 || trimmed.size() > 10 || !trimmed[0].isDigit() || !trimmed[3].isDigit())
        return false;
    static const QRegularExpression pattern(QStringLiteral("^(\\d{4})([/-])(\\d{1,2})\\2(\\d{1,2})$"));
    const QRegularExpressionMatch m = pattern.match(text.trimmed());
    if (!m.hasMatch())
        return false;
    const QDate day(m.captured(1).toInt(), m.captured(3).toInt(), m.captured(4).toInt());
    if (!day.isValid() || day.year() < 1900)
        return false;
    date = LocalMidnight(day);
    return true;
}

bool NumberOfText(const QString& text, double& number, bool& percent) {
    static const QRegularExpression re(QStringLiteral(
        "^\\s*([-+]?)((?:[0-9]{1,3}(?: [0-9]{3})+|[0-9]+)(?:\\.[0-9]*)?|\\.[0-9]+)([eE][-+]?[0-9]+)?\\s*(%?)\\s*$"));
    const auto m = re.match(text);
    if (!m.hasMatch())
        return false;
    QString digits = m.captured(2);
    digits.remove(' ');
    bool ok = false;
    number = (m.captured(1) + digits + m.captured(3)).toDouble(&ok);
    if (!ok || !std::isfinite(number))
        return false;
    percent = !m.captured(4).isEmpty();
    if (percent)
        number /= 100.0;
    return true;
}

int DecimalsOfText(const QString& text) {
    const int dot = static_cast<int>(text.indexOf('.'));
    if (dot < 0)
        return 0;
    int n = 0;
    for (int i = dot + 1; i < text.size() && text[i].isDigit(); ++i)
        ++n;
    return n;
}

const QString kDateFormat = QStringLiteral("yyyy-mm-dd hh:mm:ss");

double ToNumber(const Value& v, const char* what) {
    try {
        if (v.isEmpty())
            return 0;
        return v.toDouble();
    } catch (const VbError&) {
        throw XlError(13, QStringLiteral("Type mismatch (%1)").arg(QString::fromLatin1(what)));
    }
}

bool ValidHorizontal(int a) {
    return a == xl::General || a == xl::Left || a == xl::Center || a == xl::Right || a == 5 || a == -4130 || a == 7 ||
           a == -4117;
}
bool ValidVertical(int a) {
    return a == xl::Top || a == xl::Center || a == xl::Bottom || a == -4130 || a == -4117;
}
bool ValidLineStyle(int s) {
    return s == xl::None || s == xl::Continuous || s == -4115 || s == -4118 || s == -4119 || s == 4 || s == 5 ||
           s == 13;
}
bool ValidWeight(int w) {
    return w == 1 || w == xl::Thin || w == -4138 || w == 4;
}
bool ValidPattern(int p) {
    return p == 1 || p == xl::None || p == -4105 || p == -4124 || p == -4125 || p == -4126 || p == 17 || p == 18;
}

} // namespace

// ---------------------------------------------------------------------------------------------------------
// Addresses

bool ParseCellAddress(const QString& text, int& row, int& column) {
    RefPart p;
    if (!ParsePart(text, p) || p.kind != RefPart::Cell)
        return false;
    row = p.row;
    column = p.column;
    return true;
}

QString CellAddress(int row, int column) {
    return LettersOfColumn(column) + QString::number(row);
}

double ExcelSerialOf(const QDateTime& when) {
    static const QDate epoch(1899, 12, 30);
    const QDate d = when.date();
    const QTime t = when.time();
    return static_cast<double>(epoch.daysTo(d)) + t.msecsSinceStartOfDay() / 86400000.0;
}

// ---------------------------------------------------------------------------------------------------------
// XlRange

XlRange::XlRange(std::shared_ptr<XlWorksheet> sheet, int firstRow, int firstColumn, int lastRow, int lastColumn)
    : m_sheet(std::move(sheet)), m_r1(std::min(firstRow, lastRow)), m_c1(std::min(firstColumn, lastColumn)),
      m_r2(std::max(firstRow, lastRow)), m_c2(std::max(firstColumn, lastColumn)) {
    if (m_r1 < 1 || m_r2 > xl::MaxRows || m_c1 < 1 || m_c2 > xl::MaxColumns)
        Refuse(QStringLiteral("The range lies outside the sheet"));
}

bool XlRange::WholeColumns() const {
    return m_r1 == 1 && m_r2 == xl::MaxRows;
}

QString XlRange::Address() const {
    if (WholeColumns())
        return "$" + LettersOfColumn(m_c1) + ":$" + LettersOfColumn(m_c2);
    if (m_c1 == 1 && m_c2 == xl::MaxColumns)
        return "$" + QString::number(m_r1) + ":$" + QString::number(m_r2);
    const QString first = "$" + LettersOfColumn(m_c1) + "$" + QString::number(m_r1);
    if (m_r1 == m_r2 && m_c1 == m_c2)
        return first;
    return first + ":$" + LettersOfColumn(m_c2) + "$" + QString::number(m_r2);
}

// Applies a change of format to every cell of the range; whole columns change the columns' own format and
// the cells already written in them.
template <class F> static void ForEachFormat(XlWorksheet& ws, const XlRange& r, F change) {
    ws.CheckAlive();
    if (r.WholeColumns()) {
        for (int c = r.Column(); c <= r.LastColumn(); ++c) {
            auto& cf = ws.ColumnFormats()[c];
            change(cf);
        }
        auto& cells = ws.CellMap();
        for (auto& [key, cell] : cells) {
            const int c = XlWorksheet::ColumnOfKey(key);
            if (c >= r.Column() && c <= r.LastColumn())
                change(cell.format);
        }
        return;
    }
    for (int row = r.Row(); row <= r.LastRow(); ++row)
        for (int c = r.Column(); c <= r.LastColumn(); ++c)
            change(ws.CellForWrite(row, c).format);
}

Value XlRange::GetValue() const {
    m_sheet->CheckAlive();
    const XlCell* cell = m_sheet->CellAt(m_r1, m_c1);
    return cell ? cell->value : Value();
}

void XlRange::SetValue(const Value& value) {
    XlWorksheet& ws = *m_sheet;
    ws.CheckAlive();
    Value stored = value;
    QString percentFormat;
    QString dateFormat;
    switch (value.type()) {
    case VType::Empty:
    case VType::Null:
        stored = Value();
        break;
    case VType::Long:
    case VType::Double:
    case VType::Currency:
        stored = Value(value.toDouble());
        break;
    case VType::Date:
        dateFormat = kDateFormat;
        break;
    case VType::String: {
        double number = 0;
        bool percent = false;
        if (value.toString().startsWith('\'')) {
            stored = Value(value.toString().mid(1)); // a leading apostrophe keeps the rest as text
        } else if (QDateTime day; DateOfText(value.toString(), day)) {
            stored = Value(day);
            dateFormat = kTextDateFormat;
        } else if (NumberOfText(value.toString(), number, percent)) {
            stored = Value(number);
            if (percent)
                percentFormat = DecimalsOfText(value.toString()) > 0
                                    ? "0." + QString(DecimalsOfText(value.toString()), '0') + "%"
                                    : QStringLiteral("0%");
        }
        break;
    }
    case VType::Boolean:
        break;
    }
    auto writeOne = [&](int row, int c) {
        // Inside a merged area only its first cell holds a value.
        for (const auto& m : ws.Merges())
            if (row >= m.r1 && row <= m.r2 && c >= m.c1 && c <= m.c2 && (row != m.r1 || c != m.c1))
                return;
        if (stored.isEmpty() && !ws.CellAt(row, c))
            return;
        XlCell& cell = ws.CellForWrite(row, c);
        // A cell formatted as text ("@") keeps a text as it is given.
        cell.value = cell.format.numberFormat == QLatin1String("@") && value.type() == VType::String ? value : stored;
        if (cell.format.numberFormat == QLatin1String("General")) {
            if (!percentFormat.isEmpty())
                cell.format.numberFormat = percentFormat;
            else if (!dateFormat.isEmpty())
                cell.format.numberFormat = dateFormat;
        }
    };
    if (WholeColumns()) {
        std::vector<std::pair<int, int>> existing;
        for (const auto& [key, cell] : ws.CellMap()) {
            const int c = XlWorksheet::ColumnOfKey(key);
            if (c >= m_c1 && c <= m_c2)
                existing.emplace_back(XlWorksheet::RowOfKey(key), c);
        }
        for (auto [row, c] : existing)
            writeOne(row, c);
        return;
    }
    for (int row = m_r1; row <= m_r2; ++row)
        for (int c = m_c1; c <= m_c2; ++c)
            writeOne(row, c);
}

bool XlRange::MergeCells() const {
    m_sheet->CheckAlive();
    for (const auto& m : m_sheet->Merges())
        if (m_r1 >= m.r1 && m_r1 <= m.r2 && m_c1 >= m.c1 && m_c1 <= m.c2)
            return true;
    return false;
}

void XlRange::SetMergeCells(bool merge) {
    XlWorksheet& ws = *m_sheet;
    ws.CheckAlive();
    auto& merges = ws.Merges();
    int r1 = m_r1, c1 = m_c1, r2 = m_r2, c2 = m_c2;
    if (!merge) {
        std::erase_if(merges, [&](const XlMerge& m) { return Intersects(m, r1, c1, r2, c2); });
        return;
    }
    if (WholeColumns())
        Refuse(QStringLiteral("Whole columns cannot be merged here"));
    // Merged areas that overlap the range are taken into the new one.
    bool grown = true;
    while (grown) {
        grown = false;
        for (const auto& m : merges) {
            if (Intersects(m, r1, c1, r2, c2) && (m.r1 < r1 || m.c1 < c1 || m.r2 > r2 || m.c2 > c2)) {
                r1 = std::min(r1, m.r1);
                c1 = std::min(c1, m.c1);
                r2 = std::max(r2, m.r2);
                c2 = std::max(c2, m.c2);
                grown = true;
            }
        }
    }
    std::erase_if(merges, [&](const XlMerge& m) { return Intersects(m, r1, c1, r2, c2); });
    if (r1 == r2 && c1 == c2)
        return;
    // As with alerts off: the first cell's value stays, the others' values go.
    for (auto& [key, cell] : ws.CellMap()) {
        const int row = XlWorksheet::RowOfKey(key), c = XlWorksheet::ColumnOfKey(key);
        if (row >= r1 && row <= r2 && c >= c1 && c <= c2 && (row != r1 || c != c1))
            cell.value = Value();
    }
    merges.push_back({r1, c1, r2, c2});
}

void XlRange::SetWrapText(bool wrap) {
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.wrapText = wrap; });
}

void XlRange::SetHorizontalAlignment(int alignment) {
    if (!ValidHorizontal(alignment))
        Refuse(QStringLiteral("Unable to set the HorizontalAlignment property to %1").arg(alignment));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.horizontal = alignment; });
}

void XlRange::SetVerticalAlignment(int alignment) {
    if (!ValidVertical(alignment))
        Refuse(QStringLiteral("Unable to set the VerticalAlignment property to %1").arg(alignment));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.vertical = alignment; });
}

QString XlRange::NumberFormat() const {
    m_sheet->CheckAlive();
    if (const XlCell* cell = m_sheet->CellAt(m_r1, m_c1))
        return cell->format.numberFormat;
    const auto& cf = m_sheet->ColumnFormats();
    const auto it = cf.find(m_c1);
    return it != cf.end() ? it->second.numberFormat : QStringLiteral("General");
}

void XlRange::SetNumberFormat(const QString& format) {
    const QString f = format.isEmpty() ? QStringLiteral("General") : format;
    if (f.size() > 255)
        Refuse(QStringLiteral("Unable to set the NumberFormat property: the format is too long"));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& cf) { cf.numberFormat = f; });
}

double XlRange::RowHeight() const {
    m_sheet->CheckAlive();
    const auto& rh = m_sheet->RowHeights();
    const auto it = rh.find(m_r1);
    return it != rh.end() ? it->second : m_sheet->DefaultRowHeight();
}

void XlRange::SetRowHeight(const Value& points) {
    m_sheet->CheckAlive();
    const double h = ToNumber(points, "RowHeight");
    if (h < 0 || h > 409.5)
        Refuse(QStringLiteral("Unable to set the RowHeight property to %1").arg(h));
    if (WholeColumns()) {
        m_sheet->SetDefaultRowHeight(h);
        m_sheet->RowHeights().clear();
        return;
    }
    for (int row = m_r1; row <= m_r2; ++row)
        m_sheet->RowHeights()[row] = h;
}

void XlRange::SetOrientation(int degrees) {
    if (degrees < -90 || degrees > 90)
        Refuse(QStringLiteral("Unable to set the Orientation property to %1").arg(degrees));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.rotation = degrees; });
}

void XlRange::SetFontName(const QString& name) {
    if (name.trimmed().isEmpty() || name.size() > 31)
        Refuse(QStringLiteral("Unable to set the Name property of the Font class"));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.fontName = name; });
}

void XlRange::SetFontSize(double points) {
    if (points < 1 || points > 409)
        Refuse(QStringLiteral("Unable to set the Size property of the Font class to %1").arg(points));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.fontSize = points; });
}

void XlRange::SetFontBold(bool bold) {
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.bold = bold; });
}
void XlRange::SetFontItalic(bool italic) {
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.italic = italic; });
}
void XlRange::SetFontUnderline(bool underline) {
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.underline = underline; });
}

void XlRange::SetBorderLineStyle(int lineStyle) {
    if (!ValidLineStyle(lineStyle))
        Refuse(QStringLiteral("Unable to set the LineStyle property of the Border class to %1").arg(lineStyle));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) {
        if (f.borderLineStyle == xl::None)
            f.borderWeight = xl::Thin; // a new line starts thin
        f.borderLineStyle = lineStyle;
    });
}

void XlRange::SetBorderWeight(int weight) {
    if (!ValidWeight(weight))
        Refuse(QStringLiteral("Unable to set the Weight property of the Border class to %1").arg(weight));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) {
        f.borderWeight = weight;
        if (f.borderLineStyle == xl::None)
            f.borderLineStyle = xl::Continuous; // a weight draws a line
    });
}

void XlRange::SetInteriorPattern(int pattern) {
    if (!ValidPattern(pattern))
        Refuse(QStringLiteral("Unable to set the Pattern property of the Interior class to %1").arg(pattern));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) {
        f.pattern = pattern == -4105 ? 1 : pattern;
        if (f.pattern == xl::None) {
            f.themeColor = 0;
            f.tint = 0;
        }
    });
}

void XlRange::SetInteriorPatternColorIndex(int index) {
    if (index != -4105 && index != xl::None && (index < 1 || index > 56))
        Refuse(QStringLiteral("Unable to set the PatternColorIndex property to %1").arg(index));
    m_sheet->CheckAlive(); // the pattern's own colour is not drawn for solid fills
}

void XlRange::SetInteriorThemeColor(int themeColor) {
    if (themeColor < 1 || themeColor > 12)
        Refuse(QStringLiteral("Unable to set the ThemeColor property of the Interior class to %1").arg(themeColor));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) {
        f.themeColor = themeColor;
        if (f.pattern == xl::None)
            f.pattern = 1;
    });
}

void XlRange::SetInteriorTintAndShade(const Value& tint) {
    m_sheet->CheckAlive();
    const double t = ToNumber(tint, "TintAndShade");
    if (t < -1 || t > 1)
        Refuse(QStringLiteral("Unable to set the TintAndShade property of the Interior class to %1").arg(t));
    ForEachFormat(*m_sheet, *this, [&](XlCellFormat& f) { f.tint = t; });
}

void XlRange::SetInteriorPatternTintAndShade(double tint) {
    if (tint < -1 || tint > 1)
        Refuse(QStringLiteral("Unable to set the PatternTintAndShade property to %1").arg(tint));
    m_sheet->CheckAlive();
}

double XlRange::ColumnWidth() const {
    m_sheet->CheckAlive();
    const auto& w = m_sheet->ColumnWidths();
    const auto it = w.find(m_c1);
    return it != w.end() ? it->second : 8.43;
}

void XlRange::SetColumnWidth(double width) {
    m_sheet->CheckAlive();
    if (width < 0 || width > 255)
        Refuse(QStringLiteral("Unable to set the ColumnWidth property to %1").arg(width));
    for (int c = m_c1; c <= m_c2; ++c)
        m_sheet->ColumnWidths()[c] = width;
}

int XlRange::CopyFromRecordset(Recordset& rs) {
    XlWorksheet& ws = *m_sheet;
    ws.CheckAlive();
    const int fields = rs.FieldCount();
    if (m_c1 + fields - 1 > xl::MaxColumns)
        Refuse(QStringLiteral("The recordset has more fields than the sheet has columns"));
    int row = m_r1;
    int pasted = 0;
    while (!rs.Eof()) {
        if (row > xl::MaxRows)
            Refuse(QStringLiteral("The recordset has more rows than the sheet"));
        for (int i = 0; i < fields; ++i) {
            Value v = rs.Field(i);
            const int c = m_c1 + i;
            if (v.isNull() || v.isEmpty()) {
                if (auto it = ws.CellMap().find(XlWorksheet::Key(row, c)); it != ws.CellMap().end())
                    it->second.value = Value();
                continue;
            }
            XlCell& cell = ws.CellForWrite(row, c);
            switch (v.type()) {
            case VType::Long:
            case VType::Double:
            case VType::Currency:
                cell.value = Value(v.toDouble());
                break;
            case VType::Date:
                cell.value = v;
                if (cell.format.numberFormat == QLatin1String("General"))
                    cell.format.numberFormat = kDateFormat;
                break;
            default: {
                // Texts stay text, as pasted, except dates in the spreadsheet's own reading of them.
                QDateTime day;
                if (cell.format.numberFormat != QLatin1String("@") && DateOfText(v.toString(), day)) {
                    cell.value = Value(day);
                    if (cell.format.numberFormat == QLatin1String("General"))
                        cell.format.numberFormat = kTextDateFormat;
                } else {
                    cell.value = std::move(v);
                }
                break;
            }
            }
        }
        ++row;
        ++pasted;
        rs.MoveNext();
    }
    return pasted;
}

// ---------------------------------------------------------------------------------------------------------
// XlWorksheet

XlWorksheet::XlWorksheet(XlWorkbook* book, QString name) : m_book(book), m_name(std::move(name)) {}

void XlWorksheet::CheckAlive() const {
    if (!m_book)
        throw XlError(424, QStringLiteral("Object required: the sheet has been deleted"));
}

void XlWorksheet::SetName(const QString& name) {
    CheckAlive();
    static const QRegularExpression forbidden(QStringLiteral("[:\\\\/?*\\[\\]]"));
    if (name.isEmpty() || name.size() > 31 || name.contains(forbidden) || name.startsWith('\'') ||
        name.endsWith('\'') || name.compare(QLatin1String("History"), Qt::CaseInsensitive) == 0)
        Refuse(QStringLiteral("The sheet name \"%1\" is not allowed: at most 31 characters, not blank, none of "
                              ": \\ / ? * [ ]")
                   .arg(name));
    if (m_book->NameTaken(name, this))
        Refuse(QStringLiteral("Cannot rename a sheet to the same name as another sheet: \"%1\"").arg(name));
    m_name = name;
}

void XlWorksheet::Activate() {
    CheckAlive();
    m_book->SetActive(this);
}

int XlWorksheet::Index() const {
    CheckAlive();
    const auto& list = m_book->SheetList();
    for (size_t i = 0; i < list.size(); ++i)
        if (list[i].get() == this)
            return static_cast<int>(i) + 1;
    return 0;
}

void XlWorksheet::Delete() {
    CheckAlive();
    m_book->DeleteSheet(Index());
}

XlRange XlWorksheet::Range(const QString& first, const QString& last) {
    CheckAlive();
    QString a = first, b = last;
    if (b.isEmpty() && a.contains(':')) {
        b = a.section(':', 1);
        a = a.section(':', 0, 0);
    }
    if (b.isEmpty())
        b = a;
    RefPart p1, p2;
    if (!ParsePart(a, p1) || !ParsePart(b, p2) || p1.kind != p2.kind)
        Refuse(QStringLiteral("Method 'Range' of object '_Worksheet' failed: \"%1\", \"%2\"").arg(first, last));
    auto self = shared_from_this();
    switch (p1.kind) {
    case RefPart::Column:
        return XlRange(self, 1, p1.column, xl::MaxRows, p2.column);
    case RefPart::Row:
        return XlRange(self, p1.row, 1, p2.row, xl::MaxColumns);
    case RefPart::Cell:
        break;
    }
    return XlRange(self, p1.row, p1.column, p2.row, p2.column);
}

XlRange XlWorksheet::Cells(int row, int column) {
    CheckAlive();
    return XlRange(shared_from_this(), row, column, row, column);
}

XlRange XlWorksheet::Columns(const QString& spec) {
    CheckAlive();
    const QStringList parts = spec.split(':');
    RefPart p1, p2;
    if (parts.size() > 2 || !ParsePart(parts.first(), p1) || !ParsePart(parts.last(), p2) ||
        p1.kind != RefPart::Column || p2.kind != RefPart::Column)
        Refuse(QStringLiteral("Method 'Columns' of object '_Worksheet' failed: \"%1\"").arg(spec));
    return XlRange(shared_from_this(), 1, p1.column, xl::MaxRows, p2.column);
}

void XlWorksheet::SetPrintTitleRows(const QString& rows) {
    CheckAlive();
    static const QRegularExpression re(QStringLiteral("^\\$?[0-9]{1,7}(:\\$?[0-9]{1,7})?$"));
    if (!rows.isEmpty() && !re.match(rows).hasMatch())
        Refuse(QStringLiteral("Unable to set the PrintTitleRows property to \"%1\"").arg(rows));
    m_pageSetup.printTitleRows = rows;
    m_pageSetup.laidOut = true;
}

void XlWorksheet::SetPrintTitleColumns(const QString& columns) {
    CheckAlive();
    static const QRegularExpression re(QStringLiteral("^\\$?[A-Za-z]{1,3}(:\\$?[A-Za-z]{1,3})?$"));
    if (!columns.isEmpty() && !re.match(columns).hasMatch())
        Refuse(QStringLiteral("Unable to set the PrintTitleColumns property to \"%1\"").arg(columns));
    m_pageSetup.printTitleColumns = columns;
    m_pageSetup.laidOut = true;
}

static void CheckHeader(const QString& text) {
    if (text.size() > 255)
        Refuse(QStringLiteral("A page header may hold at most 255 characters"));
}

void XlWorksheet::SetLeftHeader(const QString& text) {
    CheckAlive();
    CheckHeader(text);
    m_pageSetup.leftHeader = text;
    m_pageSetup.laidOut = true;
}
void XlWorksheet::SetCenterHeader(const QString& text) {
    CheckAlive();
    CheckHeader(text);
    m_pageSetup.centerHeader = text;
    m_pageSetup.laidOut = true;
}
void XlWorksheet::SetRightHeader(const QString& text) {
    CheckAlive();
    CheckHeader(text);
    m_pageSetup.rightHeader = text;
    m_pageSetup.laidOut = true;
}

void XlWorksheet::SetOrientation(int orientation) {
    CheckAlive();
    if (orientation != xl::Portrait && orientation != xl::Landscape)
        Refuse(QStringLiteral("Unable to set the Orientation property of the PageSetup class to %1").arg(orientation));
    m_pageSetup.orientation = orientation;
    m_pageSetup.laidOut = true;
}

XlRef<XlChart> XlWorksheet::ChartObjectsAdd(double left, double top, double width, double height) {
    CheckAlive();
    if (width <= 0 || height <= 0 || left < 0 || top < 0)
        Refuse(QStringLiteral("Method 'Add' of object 'ChartObjects' failed"));
    auto chart = std::make_shared<XlChart>(left, top, width, height);
    m_charts.push_back(chart);
    return chart;
}

const XlCell* XlWorksheet::CellAt(int row, int column) const {
    const auto it = m_cells.find(Key(row, column));
    return it == m_cells.end() ? nullptr : &it->second;
}

XlCell& XlWorksheet::CellForWrite(int row, int column) {
    const auto key = Key(row, column);
    // Cells mostly come in order, row by row: the hint makes each new one a step instead of a second search.
    const auto it = m_cells.lower_bound(key);
    if (it != m_cells.end() && it->first == key)
        return it->second;
    const auto cf = m_columnFormats.find(column);
    if (cf == m_columnFormats.end())
        return m_cells.emplace_hint(it, key, XlCell())->second;
    return m_cells.emplace_hint(it, key, XlCell{Value(), cf->second})->second;
}

// ---------------------------------------------------------------------------------------------------------
// XlChart

void XlChart::SetSourceData(const XlRange& source) {
    source.Worksheet()->CheckAlive();
    sourceSheet = source.Worksheet();
    r1 = source.Row();
    c1 = source.Column();
    r2 = source.LastRow();
    c2 = source.LastColumn();
    if (source.WholeColumns()) {
        // The used part of the columns.
        int last = 1;
        for (const auto& [key, cell] : sourceSheet->CellMap()) {
            const int c = XlWorksheet::ColumnOfKey(key);
            if (c >= c1 && c <= c2 && !cell.value.isEmpty())
                last = std::max(last, XlWorksheet::RowOfKey(key));
        }
        r2 = last;
    }
}

void XlChart::SetChartType(int type) {
    if (type != 51 && type != 52 && type != 57 && type != 4 && type != 5)
        Refuse(QStringLiteral("Unable to set the ChartType property to %1").arg(type));
    chartType = type;
}

void XlChart::SetPlotBy(int plot) {
    if (plot != xl::PlotByRows && plot != xl::PlotByColumns)
        Refuse(QStringLiteral("Unable to set the PlotBy property to %1").arg(plot));
    plotBy = plot;
}

void XlChart::SetHasTitle(bool on) {
    hasTitle = on;
}

void XlChart::SetChartTitleText(const QString& text) {
    if (!hasTitle)
        throw XlError(91, QStringLiteral("The chart has no title"));
    title = text;
}

void XlChart::SetLegendPosition(int position) {
    if (position != -4107 && position != -4152 && position != -4131 && position != -4160 && position != 2)
        Refuse(QStringLiteral("Unable to set the Position property of the Legend class to %1").arg(position));
    legendPosition = position;
}

void XlChart::SetCategoryTickLabelSpacing(int spacing) {
    if (spacing < 1 || spacing > 31999)
        Refuse(QStringLiteral("Unable to set the TickLabelSpacing property to %1").arg(spacing));
    tickLabelSpacing = spacing;
}

void XlChart::SetCategoryTickLabelOrientation(int degrees) {
    if (degrees < -90 || degrees > 90)
        Refuse(QStringLiteral("Unable to set the Orientation property of the TickLabels class to %1").arg(degrees));
    tickLabelOrientation = degrees;
}

// ---------------------------------------------------------------------------------------------------------
// XlWorkbook

XlWorkbook::XlWorkbook(int sheetsInNewWorkbook) {
    for (int i = 0; i < std::max(1, sheetsInNewWorkbook); ++i)
        m_sheets.push_back(std::make_shared<XlWorksheet>(this, "Sheet" + QString::number(++m_sheetCounter)));
    m_active = m_sheets.front().get();
}

XlWorkbook::~XlWorkbook() {
    for (auto& s : m_sheets)
        s->Detach();
}

XlRef<XlWorksheet> XlWorkbook::Sheets(int index) const {
    if (index < 1 || index > SheetsCount())
        throw XlError(9, QStringLiteral("Subscript out of range: sheet %1 of %2").arg(index).arg(SheetsCount()));
    return m_sheets[static_cast<size_t>(index - 1)];
}

XlRef<XlWorksheet> XlWorkbook::Sheets(const QString& name) const {
    for (const auto& s : m_sheets)
        if (s->Name().compare(name, Qt::CaseInsensitive) == 0)
            return s;
    throw XlError(9, QStringLiteral("Subscript out of range: no sheet \"%1\"").arg(name));
}

XlRef<XlWorksheet> XlWorkbook::WorksheetsAdd(const XlRef<XlWorksheet>& after) {
    const int at = after->Index();
    if (after->Book() != this || at == 0)
        Refuse(QStringLiteral("Method 'Add' of object 'Sheets' failed"));
    QString name;
    do
        name = "Sheet" + QString::number(++m_sheetCounter);
    while (NameTaken(name, nullptr));
    auto sheet = std::make_shared<XlWorksheet>(this, name);
    m_sheets.insert(m_sheets.begin() + at, sheet);
    m_active = sheet.get();
    return sheet;
}

void XlWorkbook::DeleteSheet(int index) {
    if (index < 1 || index > SheetsCount())
        throw XlError(9, QStringLiteral("Subscript out of range: sheet %1 of %2").arg(index).arg(SheetsCount()));
    if (SheetsCount() == 1)
        Refuse(QStringLiteral("A workbook must contain at least one visible worksheet"));
    auto victim = m_sheets[static_cast<size_t>(index - 1)];
    m_sheets.erase(m_sheets.begin() + (index - 1));
    // Charts elsewhere that read from the sheet lose their source, as they lose their data in the program.
    for (auto& s : m_sheets)
        for (const auto& ch : s->Charts())
            if (ch->sourceSheet == victim)
                ch->sourceSheet.reset();
    victim->Detach();
    if (m_active == victim.get())
        m_active = m_sheets[static_cast<size_t>(std::min(index, SheetsCount()) - 1)].get();
}

XlRef<XlWorksheet> XlWorkbook::ActiveSheet() const {
    for (const auto& s : m_sheets)
        if (s.get() == m_active)
            return s;
    return m_sheets.front();
}

void XlWorkbook::SetActive(const XlWorksheet* sheet) {
    m_active = sheet;
}

bool XlWorkbook::NameTaken(const QString& name, const XlWorksheet* except) const {
    for (const auto& s : m_sheets)
        if (s.get() != except && s->Name().compare(name, Qt::CaseInsensitive) == 0)
            return true;
    return false;
}

void XlWorkbook::SaveAs(const QString& fileName, int fileFormat) {
    if (fileFormat != xl::Workbook)
        Refuse(QStringLiteral("Only the zipped workbook format (51) is written"));
    if (fileName.trimmed().isEmpty())
        Refuse(QStringLiteral("No file name to save the workbook as"));
    WriteXlsx(*this, fileName);
    m_fullName = QFileInfo(fileName).absoluteFilePath();
}

// ---------------------------------------------------------------------------------------------------------
// XlApplication

static int g_sheetsInNewWorkbook = 3;

void XlApplication::SetSheetsInNewWorkbook(int count) {
    g_sheetsInNewWorkbook = std::clamp(count, 1, 255);
}
int XlApplication::SheetsInNewWorkbook() {
    return g_sheetsInNewWorkbook;
}

XlRef<XlWorkbook> XlApplication::WorkbooksAdd() {
    auto book = std::make_shared<XlWorkbook>(g_sheetsInNewWorkbook);
    m_books.push_back(book);
    return book;
}

XlRef<XlWorkbook> XlApplication::ActiveWorkbook() const {
    if (m_books.empty())
        return nullptr;
    return m_books.back();
}

void XlApplication::SetVisible(bool visible) {
    m_visible = visible;
    if (!visible || m_books.empty() || qEnvironmentVariable("ORVEL_NO_SHOW") == QLatin1String("1"))
        return;
    // Coming forward shows the book in hand: its saved file, once.
    XlWorkbook& book = *m_books.back();
    QString path = book.FullName();
    if (!path.isEmpty() && m_shown.contains(path))
        return;
    if (path.isEmpty()) {
        // Never saved (the save failed): show a copy, so that what was built is not lost. An empty new book
        // has nothing to show.
        bool empty = true;
        for (const auto& s : book.SheetList())
            if (!s->CellMap().empty() || !s->Charts().empty())
                empty = false;
        if (empty)
            return;
        path = QDir::temp().filePath(
            QStringLiteral("Orvel unsaved %1.xlsx").arg(QDateTime::currentDateTime().toString("yyyy_MM_dd HH_mm_ss")));
        try {
            WriteXlsx(book, path);
        } catch (const XlError&) {
            return;
        }
    }
    m_shown << path;
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

double XlApplication::WorksheetFunctions::Sum(const XlRange& range) const {
    const XlWorksheet& ws = *range.Worksheet();
    ws.CheckAlive();
    double sum = 0;
    for (const auto& [key, cell] : ws.CellMap()) {
        const int row = XlWorksheet::RowOfKey(key), c = XlWorksheet::ColumnOfKey(key);
        if (row < range.Row() || row > range.LastRow() || c < range.Column() || c > range.LastColumn())
            continue;
        switch (cell.value.type()) {
        case VType::Double:
        case VType::Long:
        case VType::Currency:
            sum += cell.value.toDouble();
            break;
        case VType::Date:
            sum += ExcelSerialOf(cell.value.toDate());
            break;
        default:
            break; // texts, booleans and empty cells in a range count nothing
        }
    }
    return sum;
}
