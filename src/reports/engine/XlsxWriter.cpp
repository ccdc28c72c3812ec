// The book model written through libxlsxwriter, in one go, when the workbook is saved.

#include "XlsxWriter.h"

#include <QByteArray>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <algorithm>
#include <cmath>
#include <deque>
#include <utility>
#include <vector>
#include <xlsxwriter.h>

namespace {

[[noreturn]] void Fail(const QString& what, lxw_error err) {
    throw XlError(1004,
                  QStringLiteral("Cannot write the workbook (%1): %2").arg(what, QString::fromUtf8(lxw_strerror(err))));
}

void Check(lxw_error err, const QString& what) {
    if (err != LXW_NO_ERROR)
        Fail(what, err);
}

uint8_t BorderStyleOf(int lineStyle, int weight) {
    const bool medium = weight == -4138 || weight == 4;
    switch (lineStyle) {
    case 1: // continuous
        return weight == 1       ? LXW_BORDER_HAIR
               : weight == -4138 ? LXW_BORDER_MEDIUM
               : weight == 4     ? LXW_BORDER_THICK
                                 : LXW_BORDER_THIN;
    case -4115: // dash
        return medium ? LXW_BORDER_MEDIUM_DASHED : LXW_BORDER_DASHED;
    case -4118: // dot
        return LXW_BORDER_DOTTED;
    case -4119: // double
        return LXW_BORDER_DOUBLE;
    case 4: // dash dot
        return medium ? LXW_BORDER_MEDIUM_DASH_DOT : LXW_BORDER_DASH_DOT;
    case 5: // dash dot dot
        return medium ? LXW_BORDER_MEDIUM_DASH_DOT_DOT : LXW_BORDER_DASH_DOT_DOT;
    case 13: // slanted dash dot
        return LXW_BORDER_SLANT_DASH_DOT;
    default:
        return LXW_BORDER_NONE;
    }
}

uint8_t HorizontalOf(int a) {
    switch (a) {
    case -4131:
        return LXW_ALIGN_LEFT;
    case -4108:
        return LXW_ALIGN_CENTER;
    case -4152:
        return LXW_ALIGN_RIGHT;
    case 5:
        return LXW_ALIGN_FILL;
    case -4130:
        return LXW_ALIGN_JUSTIFY;
    case 7:
        return LXW_ALIGN_CENTER_ACROSS;
    case -4117:
        return LXW_ALIGN_DISTRIBUTED;
    default:
        return LXW_ALIGN_NONE;
    }
}

uint8_t VerticalOf(int a) {
    switch (a) {
    case -4160:
        return LXW_ALIGN_VERTICAL_TOP;
    case -4108:
        return LXW_ALIGN_VERTICAL_CENTER;
    case -4130:
        return LXW_ALIGN_VERTICAL_JUSTIFY;
    case -4117:
        return LXW_ALIGN_VERTICAL_DISTRIBUTED;
    default:
        return LXW_ALIGN_NONE; // bottom is the default
    }
}

uint8_t PatternOf(int p) {
    switch (p) {
    case 1:
        return LXW_PATTERN_SOLID;
    case -4124:
        return LXW_PATTERN_LIGHT_GRAY;
    case -4125:
        return LXW_PATTERN_MEDIUM_GRAY;
    case -4126:
        return LXW_PATTERN_DARK_GRAY;
    case 17:
        return LXW_PATTERN_GRAY_125;
    case 18:
        return LXW_PATTERN_GRAY_0625;
    default:
        return LXW_PATTERN_NONE;
    }
}

uint8_t ChartTypeOf(int t) {
    switch (t) {
    case 52:
        return LXW_CHART_COLUMN_STACKED;
    case 57:
        return LXW_CHART_BAR;
    case 4:
        return LXW_CHART_LINE;
    case 5:
        return LXW_CHART_PIE;
    default:
        return LXW_CHART_COLUMN;
    }
}

uint8_t LegendOf(int p) {
    switch (p) {
    case -4107:
        return LXW_CHART_LEGEND_BOTTOM;
    case -4131:
        return LXW_CHART_LEGEND_LEFT;
    case -4160:
        return LXW_CHART_LEGEND_TOP;
    case 2:
        return LXW_CHART_LEGEND_TOP_RIGHT;
    default:
        return LXW_CHART_LEGEND_RIGHT;
    }
}

// Rows "$1:$2" or "3" as a first and last row, 0-based.
bool RowSpan(const QString& text, int& first, int& last) {
    QStringList parts = QString(text).remove('$').split(':');
    bool ok1 = false, ok2 = false;
    first = parts.first().toInt(&ok1) - 1;
    last = parts.last().toInt(&ok2) - 1;
    return ok1 && ok2 && first >= 0 && last >= first;
}

int ColumnNumber(const QString& letters) {
    int n = 0;
    for (const QChar ch : letters)
        n = n * 26 + (ch.toUpper().unicode() - 'A' + 1);
    return n;
}

bool ColumnSpan(const QString& text, int& first, int& last) {
    QStringList parts = QString(text).remove('$').split(':');
    first = ColumnNumber(parts.first()) - 1;
    last = ColumnNumber(parts.last()) - 1;
    return first >= 0 && last >= first;
}

// Whether the used columns are wider than the printable width of a portrait A4 page (6.87 inches between the
// default margins, 659 pixels at the default font's 7 pixels a character plus 5 of padding).
bool WiderThanPortrait(const XlWorksheet& sheet) {
    int lastColumn = 0;
    for (const auto& [key, cell] : sheet.CellMap())
        if (!cell.value.isEmpty())
            lastColumn = std::max(lastColumn, XlWorksheet::ColumnOfKey(key));
    double pixels = 0;
    for (int c = 1; c <= lastColumn; ++c) {
        const auto it = sheet.ColumnWidths().find(c);
        const double width = it == sheet.ColumnWidths().end() ? 8.43 : it->second;
        pixels += width * 7 + 5;
    }
    return pixels > 659;
}

bool IsNumberCell(const XlCell* cell) {
    if (!cell)
        return false;
    const VType t = cell->value.type();
    return t == VType::Double || t == VType::Long || t == VType::Currency || t == VType::Date;
}

class Writer {
public:
    Writer(const XlWorkbook& book, const QString& path) : m_book(book), m_path(path) {}
    ~Writer() {
        if (m_wb)
            lxw_workbook_free(m_wb);
    }

    void Run() {
        const QByteArray file = Keep(m_path);
        lxw_workbook_options options = {};
        options.constant_memory = LXW_FALSE;
        m_wb = workbook_new_opt(file.constData(), &options);
        if (!m_wb)
            throw XlError(1004, QStringLiteral("Cannot start the workbook %1").arg(m_path));
        std::vector<lxw_worksheet*> sheets;
        for (const auto& s : m_book.SheetList()) {
            lxw_worksheet* ws = workbook_add_worksheet(m_wb, Keep(s->Name()).constData());
            if (!ws)
                throw XlError(1004, QStringLiteral("Cannot add the sheet \"%1\"").arg(s->Name()));
            sheets.push_back(ws);
        }
        const auto active = m_book.ActiveSheet().ptr();
        for (size_t i = 0; i < sheets.size(); ++i) {
            const XlWorksheet& model = *m_book.SheetList()[i];
            WriteSheet(model, sheets[i]);
            if (m_book.SheetList()[i] == active)
                worksheet_activate(sheets[i]);
        }
        lxw_workbook* wb = m_wb;
        m_wb = nullptr; // workbook_close frees it, whatever the outcome
        Check(workbook_close(wb), QStringLiteral("saving %1").arg(m_path));
    }

private:
    const QByteArray& Keep(const QString& text) {
        m_texts.push_back(text.toUtf8());
        return m_texts.back();
    }

    lxw_format* FormatOf(const XlCellFormat& f) {
        // A book holds few distinct formats: compared field by field they are found without building a key per cell.
        for (const auto& [known, made] : m_recent)
            if (known == f)
                return made;
        lxw_format* found = FormatByKey(f);
        if (m_recent.size() < 64)
            m_recent.emplace_back(f, found);
        return found;
    }

    lxw_format* FormatByKey(const XlCellFormat& f) {
        const QString key = QStringList{f.fontName,
                                        QString::number(f.fontSize),
                                        QString::number(f.bold),
                                        QString::number(f.italic),
                                        QString::number(f.underline),
                                        QString::number(f.wrapText),
                                        QString::number(f.horizontal),
                                        QString::number(f.vertical),
                                        f.numberFormat,
                                        QString::number(f.rotation),
                                        QString::number(f.borderLineStyle),
                                        QString::number(f.borderWeight),
                                        QString::number(f.pattern),
                                        QString::number(f.themeColor),
                                        QString::number(f.tint, 'g', 17)}
                                .join(QChar(0x1f));
        if (auto it = m_formats.find(key); it != m_formats.end())
            return it.value();
        lxw_format* fmt = workbook_add_format(m_wb);
        if (!fmt)
            throw XlError(1004, QStringLiteral("Cannot make a cell format"));
        format_set_font_name(fmt, Keep(f.fontName).constData());
        format_set_font_size(fmt, f.fontSize);
        if (f.bold)
            format_set_bold(fmt);
        if (f.italic)
            format_set_italic(fmt);
        if (f.underline)
            format_set_underline(fmt, LXW_UNDERLINE_SINGLE);
        if (f.wrapText)
            format_set_text_wrap(fmt);
        if (const uint8_t h = HorizontalOf(f.horizontal); h != LXW_ALIGN_NONE)
            format_set_align(fmt, h);
        if (const uint8_t v = VerticalOf(f.vertical); v != LXW_ALIGN_NONE)
            format_set_align(fmt, v);
        if (f.numberFormat != QLatin1String("General"))
            format_set_num_format(fmt, Keep(f.numberFormat).constData());
        if (f.rotation != 0)
            format_set_rotation(fmt, static_cast<int16_t>(f.rotation));
        if (f.borderLineStyle != xl::None)
            format_set_border(fmt, BorderStyleOf(f.borderLineStyle, f.borderWeight));
        if (f.pattern != xl::None) {
            format_set_pattern(fmt, PatternOf(f.pattern));
            format_set_bg_color(fmt, ThemeFillColour(f.themeColor ? f.themeColor : 1, f.tint));
        }
        m_formats.insert(key, fmt);
        return fmt;
    }

    void WriteCell(lxw_worksheet* ws, int row, int col, const XlCell& cell, bool hiddenByMerge) {
        const auto r = static_cast<lxw_row_t>(row - 1);
        const auto c = static_cast<lxw_col_t>(col - 1);
        static const XlCellFormat plain;
        lxw_format* fmt = cell.format == plain ? nullptr : FormatOf(cell.format);
        // The cell's address is made only for a failure's message.
        const auto put = [row, col](lxw_error err) {
            if (err != LXW_NO_ERROR)
                Check(err, CellAddress(row, col));
        };
        if (hiddenByMerge) {
            if (fmt)
                put(worksheet_write_blank(ws, r, c, fmt));
            return;
        }
        switch (cell.value.type()) {
        case VType::Empty:
        case VType::Null:
            if (fmt)
                put(worksheet_write_blank(ws, r, c, fmt));
            break;
        case VType::Boolean:
            put(worksheet_write_boolean(ws, r, c, cell.value.toBool() ? 1 : 0, fmt));
            break;
        case VType::Long:
        case VType::Double:
        case VType::Currency:
            put(worksheet_write_number(ws, r, c, cell.value.toDouble(), fmt));
            break;
        case VType::Date:
            put(worksheet_write_number(ws, r, c, ExcelSerialOf(cell.value.toDate()), fmt));
            break;
        case VType::String: {
            const QString text = cell.value.toString();
            if (text.isEmpty()) {
                if (fmt)
                    put(worksheet_write_blank(ws, r, c, fmt));
            } else {
                // The writer copies the text into its shared strings at once: nothing to keep.
                put(worksheet_write_string(ws, r, c, text.left(32767).toUtf8().constData(), fmt));
            }
            break;
        }
        }
    }

    void WriteSheet(const XlWorksheet& model, lxw_worksheet* ws) {
        const QString name = model.Name();
        // Columns: widths and the columns' own formats.
        std::map<int, std::pair<double, const XlCellFormat*>> columns;
        for (const auto& [c, w] : model.ColumnWidths())
            columns[c] = {w, nullptr};
        for (const auto& [c, f] : model.ColumnFormats()) {
            auto& entry = columns.try_emplace(c, LXW_DEF_COL_WIDTH, nullptr).first->second;
            if (!(f == XlCellFormat()))
                entry.second = &f;
        }
        for (const auto& [c, entry] : columns) {
            lxw_format* fmt = entry.second ? FormatOf(*entry.second) : nullptr;
            Check(worksheet_set_column(ws, static_cast<lxw_col_t>(c - 1), static_cast<lxw_col_t>(c - 1), entry.first,
                                       fmt),
                  QStringLiteral("column widths of %1").arg(name));
        }
        if (model.HasDefaultRowHeight())
            worksheet_set_default_row(ws, model.DefaultRowHeight(), LXW_FALSE);
        for (const auto& [row, h] : model.RowHeights())
            Check(worksheet_set_row(ws, static_cast<lxw_row_t>(row - 1), h, nullptr),
                  QStringLiteral("row heights of %1").arg(name));

        // Merged areas first, then every cell over them with its own format.
        for (const auto& m : model.Merges()) {
            const XlCell* first = model.CellAt(m.r1, m.c1);
            lxw_format* fmt = first && !(first->format == XlCellFormat()) ? FormatOf(first->format) : nullptr;
            Check(
                worksheet_merge_range(ws, static_cast<lxw_row_t>(m.r1 - 1), static_cast<lxw_col_t>(m.c1 - 1),
                                      static_cast<lxw_row_t>(m.r2 - 1), static_cast<lxw_col_t>(m.c2 - 1), "", fmt),
                QStringLiteral("merged cells %1:%2 of %3").arg(CellAddress(m.r1, m.c1), CellAddress(m.r2, m.c2), name));
        }
        for (const auto& [key, cell] : model.CellMap()) {
            const int row = XlWorksheet::RowOfKey(key), col = XlWorksheet::ColumnOfKey(key);
            bool hidden = false;
            for (const auto& m : model.Merges())
                if (row >= m.r1 && row <= m.r2 && col >= m.c1 && col <= m.c2 && (row != m.r1 || col != m.c1))
                    hidden = true;
            WriteCell(ws, row, col, cell, hidden);
        }

        // The printed page.
        const XlPageSetupData& page = model.PageSetup();
        int first = 0, last = 0;
        if (!page.printTitleRows.isEmpty() && RowSpan(page.printTitleRows, first, last))
            Check(worksheet_repeat_rows(ws, static_cast<lxw_row_t>(first), static_cast<lxw_row_t>(last)),
                  QStringLiteral("print titles of %1").arg(name));
        if (!page.printTitleColumns.isEmpty() && ColumnSpan(page.printTitleColumns, first, last))
            Check(worksheet_repeat_columns(ws, static_cast<lxw_col_t>(first), static_cast<lxw_col_t>(last)),
                  QStringLiteral("print titles of %1").arg(name));
        QString header;
        if (!page.leftHeader.isEmpty())
            header += "&L" + page.leftHeader;
        if (!page.centerHeader.isEmpty())
            header += "&C" + page.centerHeader;
        if (!page.rightHeader.isEmpty())
            header += "&R" + page.rightHeader;
        if (!header.isEmpty())
            Check(worksheet_set_header(ws, Keep(header).constData()), QStringLiteral("page header of %1").arg(name));
        if (page.orientation == xl::Landscape || (!page.laidOut && WiderThanPortrait(model)))
            worksheet_set_landscape(ws);
        else
            worksheet_set_portrait(ws);
        // One page wide, as many down as it takes; the orientation a report sets stands.
        worksheet_fit_to_pages(ws, 1, 0);

        for (const auto& chart : model.Charts())
            WriteChart(*chart, ws, name);
    }

    void WriteChart(const XlChart& model, lxw_worksheet* ws, const QString& sheetName) {
        if (!model.sourceSheet || model.sourceSheet->IsDeleted())
            return; // no data: the program shows an empty frame, nothing worth writing
        const XlWorksheet& src = *model.sourceSheet;
        const QByteArray& srcName = Keep(src.Name());
        // The first row holds the series' names when it is text; the first column holds the categories when
        // it is not all numbers (or its top cell is empty), as the program guesses from the source.
        const bool byColumns = model.plotBy == xl::PlotByColumns;
        const int outerFirst = byColumns ? model.c1 : model.r1, outerLast = byColumns ? model.c2 : model.r2;
        const int innerFirst = byColumns ? model.r1 : model.c1, innerLast = byColumns ? model.r2 : model.c2;
        auto at = [&](int inner, int outer) { return byColumns ? src.CellAt(inner, outer) : src.CellAt(outer, inner); };
        bool nameLine = innerLast > innerFirst;
        for (int o = outerFirst + 1; o <= outerLast && nameLine; ++o)
            if (IsNumberCell(at(innerFirst, o)))
                nameLine = false;
        bool categoryLine = outerLast > outerFirst;
        if (categoryLine && at(innerFirst, outerFirst) && nameLine) {
            categoryLine = false;
            for (int i = innerFirst + 1; i <= innerLast; ++i)
                if (!IsNumberCell(at(i, outerFirst)))
                    categoryLine = true;
        }
        const int dataFirst = innerFirst + (nameLine ? 1 : 0);
        const int seriesFirst = outerFirst + (categoryLine ? 1 : 0);
        if (dataFirst > innerLast || seriesFirst > outerLast)
            return;

        lxw_chart* chart = workbook_add_chart(m_wb, ChartTypeOf(model.chartType));
        if (!chart)
            throw XlError(1004, QStringLiteral("Cannot add a chart to %1").arg(sheetName));
        for (int o = seriesFirst; o <= outerLast; ++o) {
            lxw_chart_series* series = chart_add_series(chart, nullptr, nullptr);
            if (!series)
                throw XlError(1004, QStringLiteral("Cannot add a chart series to %1").arg(sheetName));
            auto row = [&](int inner, int outer) { return static_cast<lxw_row_t>((byColumns ? inner : outer) - 1); };
            auto col = [&](int inner, int outer) { return static_cast<lxw_col_t>((byColumns ? outer : inner) - 1); };
            if (categoryLine)
                chart_series_set_categories(series, srcName.constData(), row(dataFirst, outerFirst),
                                            col(dataFirst, outerFirst), row(innerLast, outerFirst),
                                            col(innerLast, outerFirst));
            chart_series_set_values(series, srcName.constData(), row(dataFirst, o), col(dataFirst, o),
                                    row(innerLast, o), col(innerLast, o));
            if (nameLine)
                chart_series_set_name_range(series, srcName.constData(), row(innerFirst, o), col(innerFirst, o));
        }
        if (model.hasTitle && !model.title.isEmpty())
            chart_title_set_name(chart, Keep(model.title).constData());
        else if (!model.hasTitle)
            chart_title_off(chart);
        chart_legend_set_position(chart, LegendOf(model.legendPosition));
        if (model.tickLabelSpacing > 0)
            chart_axis_set_interval_unit(chart->x_axis, static_cast<uint16_t>(model.tickLabelSpacing));
        if (model.tickLabelOrientation != 0) {
            lxw_chart_font font = {};
            // The program's angle is counted upward; the file's text rotation runs clockwise.
            font.rotation = static_cast<int16_t>(-model.tickLabelOrientation);
            chart_axis_set_num_font(chart->x_axis, &font);
        }
        // Points to pixels at 96 dots an inch; the default chart is 480 by 288 pixels.
        lxw_chart_options options = {};
        options.x_offset = static_cast<int32_t>(std::lround(model.left * 4.0 / 3.0));
        options.y_offset = static_cast<int32_t>(std::lround(model.top * 4.0 / 3.0));
        options.x_scale = model.width * 4.0 / 3.0 / 480.0;
        options.y_scale = model.height * 4.0 / 3.0 / 288.0;
        Check(worksheet_insert_chart_opt(ws, 0, 0, chart, &options), QStringLiteral("chart on %1").arg(sheetName));
    }

    const XlWorkbook& m_book;
    QString m_path;
    lxw_workbook* m_wb = nullptr;
    std::deque<QByteArray> m_texts;
    QHash<QString, lxw_format*> m_formats;
    std::vector<std::pair<XlCellFormat, lxw_format*>> m_recent;
};

} // namespace

unsigned int ThemeFillColour(int themeColor, double tint) {
    // The default office theme, in the order of the program's theme colour numbers.
    static const unsigned int theme[] = {0xFFFFFF, 0x000000, 0xE7E6E6, 0x44546A, 0x4472C4, 0xED7D31,
                                         0xA5A5A5, 0xFFC000, 0x5B9BD5, 0x70AD47, 0x0563C1, 0x954F72};
    const unsigned int base = theme[std::clamp(themeColor, 1, 12) - 1];
    unsigned int out = 0;
    for (int shift = 16; shift >= 0; shift -= 8) {
        const double c = (base >> shift) & 0xFF;
        const double v = tint < 0 ? c * (1.0 + tint) : c + (255.0 - c) * tint;
        out = (out << 8) | static_cast<unsigned int>(std::clamp(std::lround(v), 0L, 255L));
    }
    return out;
}

void WriteXlsx(const XlWorkbook& book, const QString& path) {
    const QFileInfo info(path);
    if (!info.absoluteDir().exists())
        throw XlError(
            1004, QStringLiteral("Cannot save the workbook: the folder %1 does not exist").arg(info.absolutePath()));
    Writer(book, path).Run();
}
