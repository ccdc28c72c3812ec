#pragma once
// Reads a saved .xlsx back for tests: sheet names, cells (values, formulas, formats), merges, column widths,
// row heights, page set-up, headers and charts. Only what the program writes is understood.

#include <QString>
#include <QStringList>
#include <map>
#include <optional>
#include <vector>

struct WbFont {
    QString name;
    double size = 11;
    bool bold = false, italic = false, underline = false;
};

struct WbStyle {
    QString numberFormat = QStringLiteral("General");
    WbFont font;
    QString fillPattern;                                      // "solid", "" for none
    QString fillRgb;                                          // "D9D9D9", "" for none
    QString borderLeft, borderRight, borderTop, borderBottom; // "thin", "medium", "" for none
    QString horizontal, vertical;                             // "center", "left", "right", "top", ""
    bool wrapText = false;
    int rotation = 0; // degrees; -90 read back from the file's 180
};

struct WbCell {
    QString type; // "n" number, "s" text, "b" boolean, "str" formula text, "" empty
    QString text; // the text, or the number as written
    double number = 0;
    QString formula; // without "="
    WbStyle style;
    bool isNumber() const { return type == QLatin1String("n"); }
    bool isText() const {
        return type == QLatin1String("s") || type == QLatin1String("str") || type == QLatin1String("inlineStr");
    }
};

struct WbSeries {
    QString name;       // the reference of the name cell
    QString categories; // "'Sheet 1'!$A$3:$A$9"
    QString values;
};

struct WbChart {
    QString kind;     // "barChart", "lineChart", "pieChart"
    QString barDir;   // "col" or "bar"
    QString grouping; // "clustered", "stacked"
    QString title;
    QString legendPosition;        // "b", "r", "t", "l"
    int categoryLabelRotation = 0; // degrees, upward positive
    int tickLabelSkip = 0;
    std::vector<WbSeries> series;
};

struct WbSheet {
    QString name;
    std::map<QString, WbCell> cells;    // by upper-case reference, "A1"
    QStringList merges;                 // "A1:F1"
    std::map<int, double> columnWidths; // 1-based column, in characters as set (the file's padding taken off)
    std::map<int, double> rowHeights;   // 1-based row
    QString orientation;                // "portrait", "landscape" or ""
    bool fitToPage = false;             // printed fit to pages (one page wide unless fitToWidth says more)
    QString fitToHeight;                // as stored: "0" for as many pages down as it takes
    QString header;                     // the odd-page header as stored: "&LDate &D Time &T&RPage #&P Of &N Pages"
    QString printTitles;                // the defined print titles, "'Sheet 1'!$A:$A,'Sheet 1'!$1:$2"
    std::vector<WbChart> charts;

    const WbCell* cell(const QString& ref) const;
    QString text(const QString& ref) const;  // "" when absent
    double number(const QString& ref) const; // 0 when absent or not a number
    // A date cell shown "yyyy/mm/dd" as its text reads ("2024/04/01"); any other cell as text() gives it.
    QString shown(const QString& ref) const;
    bool merged(const QString& range) const { return merges.contains(range.toUpper()); }
    int lastRow() const;    // the lowest row holding a cell, 0 when none
    int lastColumn() const; // 1-based, 0 when none
};

class WorkbookReader {
public:
    // The newest .xlsx in a folder (the reports name theirs by the second of saving); "" when none.
    static QString newestIn(const QString& folder);

    bool open(const QString& path); // false with error() set
    QString error() const { return m_error; }

    QStringList sheetNames() const;
    const WbSheet* sheet(const QString& name) const;
    const WbSheet* sheet(int index) const; // 0-based
    int activeSheet() const { return m_activeTab; }

private:
    QString m_error;
    std::vector<WbSheet> m_sheets;
    int m_activeTab = 0;
};
