#pragma once
// The workbook engine: every printed list is a workbook built through these operations.
//
// The book is kept as a model in memory (sheets, cells with value and format, merges, column widths, row
// heights, page set-up, charts) and written as an .xlsx file in one go when it is saved, so that callers may
// format ranges, overwrite values and rename sheets in any order, as they could with a live spreadsheet.
// Calls that the spreadsheet program would refuse throw XlError here, so that they reach the caller's error
// path: a sheet name over 31 characters or holding one of : \ / ? * [ ], a duplicate sheet name, a range
// outside the sheet, a property value out of range, a reference that is not set.
//
// Typical use:
//     REPORT_Workbook_Initialise(true);
//     REPORT_SetSheetIndex(1);
//     xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
//     xlRow = 1;
//     xlCell1 = "a1"; xlCell2 = "f1"; xlValue = title;
//     REPxlFmt(xlSheet, xlCell1, xlCell2, xlValue, 2, 10, true, false, false, true, true, "", 1, -4108, -4108, 2, 0,
//     18); xlSheet->Range("a3").CopyFromRecordset(*rs); xlSheet->Columns("b:e").SetColumnWidth(15);
//     xlSheet->Columns("b:e").SetNumberFormat("### ### ##0.00");
//     REPORT_PageSetup(xlSheet, "$1:$2", "A:A", "Date &D Time &T", "Page #&P Of &N Pages", 1, "");
//     REPORT_SaveReport(xlApp, "Reports", "Fuel Purchases");
//     REPORT_HideExcel(xlApp, false);
//     REPORT_Workbook_Terminate();

#include "Database.h"
#include "NumberedError.h"
#include "Value.h"

#include <QString>
#include <QStringList>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

// A refusal by the workbook, numbered as the spreadsheet program numbers it: 1004 for a refused name, value
// or range, 9 for a sheet index out of range, 91 for a reference that is not set, 13 for a type mismatch.
class XlError : public NumberedError {
public:
    using NumberedError::NumberedError;
};

// An object reference as the callers hold it: using one that is not set throws XlError 91, as the
// original's late-bound calls did, instead of crashing.
template <class T> class XlRef {
public:
    XlRef() = default;
    XlRef(std::nullptr_t) {}
    XlRef(std::shared_ptr<T> p) : m_p(std::move(p)) {}
    T* operator->() const {
        if (!m_p)
            throw XlError(91, QStringLiteral("Object variable or With block variable not set"));
        return m_p.get();
    }
    T& operator*() const { return *operator->(); }
    explicit operator bool() const { return static_cast<bool>(m_p); }
    const std::shared_ptr<T>& ptr() const { return m_p; }
    bool operator==(const XlRef& o) const { return m_p == o.m_p; }

private:
    std::shared_ptr<T> m_p;
};

class XlApplication;
class XlWorkbook;
class XlWorksheet;
class XlChart;

// The spreadsheet program's constants that callers pass.
namespace xl {
constexpr int None = -4142;         // xlNone, xlLineStyleNone
constexpr int Continuous = 1;       // xlContinuous
constexpr int Thin = 2;             // xlThin
constexpr int Center = -4108;       // xlCenter
constexpr int Left = -4131;         // xlLeft
constexpr int Right = -4152;        // xlRight
constexpr int Top = -4160;          // xlTop
constexpr int Bottom = -4107;       // xlBottom, also the legend position at the bottom
constexpr int General = 1;          // xlGeneral
constexpr int Portrait = 1;         // xlPortrait
constexpr int Landscape = 2;        // xlLandscape
constexpr int ColumnClustered = 51; // xlColumnClustered
constexpr int PlotByRows = 1;       // xlRows
constexpr int PlotByColumns = 2;    // xlColumns
constexpr int Workbook = 51;        // xlOpenXMLWorkbook, the zipped workbook format
constexpr int MaxRows = 1048576;
constexpr int MaxColumns = 16384;
} // namespace xl

// A rectangle of cells on one sheet (1-based rows and columns). A range that covers whole columns
// (Columns("b:e")) also sets the columns' own format, so that cells written later take it.
class XlRange {
public:
    XlRange(std::shared_ptr<XlWorksheet> sheet, int firstRow, int firstColumn, int lastRow, int lastColumn);

    int Row() const { return m_r1; }
    int Column() const { return m_c1; }
    int LastRow() const { return m_r2; }
    int LastColumn() const { return m_c2; }
    int RowsCount() const { return m_r2 - m_r1 + 1; }
    int ColumnsCount() const { return m_c2 - m_c1 + 1; }
    bool WholeColumns() const;
    // "$A$1:$B$2", "$A$1", or for whole columns "$A:$A" / "$B:$E".
    QString Address() const;

    // The value of the first cell. Writing a value writes it to every cell of the range; a text that reads as
    // a number with blanks between thousands ("1 234.50") or a percentage ("12.50%") is stored as a number,
    // unless it starts with an apostrophe or the cell's format is "@". A text the spreadsheet reads as a date
    // ("2024/01/05", "2024-1-5") becomes a date shown "yyyy/mm/dd", under the same two exceptions.
    Value GetValue() const;
    void SetValue(const Value& value);

    bool MergeCells() const; // true when the first cell lies in a merged area
    void SetMergeCells(bool merge);
    void SetWrapText(bool wrap);
    void SetHorizontalAlignment(int alignment); // xlGeneral, xlLeft, xlCenter, xlRight, ...
    void SetVerticalAlignment(int alignment);   // xlTop, xlCenter, xlBottom, ...
    QString NumberFormat() const;
    void SetNumberFormat(const QString& format);
    double RowHeight() const;
    void SetRowHeight(const Value& points); // 0 to 409.5 points
    void SetOrientation(int degrees);       // -90 to 90

    void SetFontName(const QString& name);
    void SetFontSize(double points); // 1 to 409
    void SetFontBold(bool bold);
    void SetFontItalic(bool italic);
    void SetFontUnderline(bool underline);

    // Borders of every cell of the range, inside lines included.
    void SetBorderLineStyle(int lineStyle); // xlContinuous, xlNone, xlDash, ...
    void SetBorderWeight(int weight);       // 1 hairline, 2 thin, -4138 medium, 4 thick

    void SetInteriorPattern(int pattern); // 1 solid, -4142 none
    void SetInteriorPatternColorIndex(int index);
    void SetInteriorThemeColor(int themeColor);      // 1 to 12; 1 is the white background colour
    void SetInteriorTintAndShade(const Value& tint); // -1 to 1; Empty reads as 0
    void SetInteriorPatternTintAndShade(double tint);

    double ColumnWidth() const;
    void SetColumnWidth(double width); // characters, 0 to 255

    // Pastes the rows from the recordset's current row to its end, from the first cell, as typed cells:
    // numbers as numbers, texts as text (those that read as dates as dates, as above), dates as dates, Null as an
    // empty cell. Returns the rows pasted.
    int CopyFromRecordset(Recordset& rs);

    const std::shared_ptr<XlWorksheet>& Worksheet() const { return m_sheet; }

private:
    std::shared_ptr<XlWorksheet> m_sheet;
    int m_r1, m_c1, m_r2, m_c2;
};

struct XlPageSetupData {
    QString printTitleRows;
    QString printTitleColumns;
    QString leftHeader, centerHeader, rightHeader;
    int orientation = xl::Portrait;
    // Whether any page property was set. Every sheet prints one page wide; one left alone is also turned to
    // landscape when its columns are wider than a portrait page.
    bool laidOut = false;
};

struct XlCellFormat {
    QString fontName = QStringLiteral("Calibri");
    double fontSize = 11;
    bool bold = false, italic = false, underline = false;
    bool wrapText = false;
    int horizontal = xl::General;
    int vertical = xl::Bottom;
    QString numberFormat = QStringLiteral("General");
    int rotation = 0;
    int borderLineStyle = xl::None;
    int borderWeight = xl::Thin;
    int pattern = xl::None;
    int themeColor = 0;
    double tint = 0;
    bool operator==(const XlCellFormat&) const = default;
};

struct XlCell {
    Value value;
    XlCellFormat format;
};

struct XlMerge {
    int r1, c1, r2, c2;
};

class XlWorksheet : public std::enable_shared_from_this<XlWorksheet> {
public:
    explicit XlWorksheet(XlWorkbook* book, QString name);

    QString Name() const { return m_name; }
    // Throws XlError 1004 for a name the spreadsheet program refuses (empty, over 31 characters, one of
    // : \ / ? * [ ], an apostrophe first or last, or the name of another sheet compared case-blind).
    void SetName(const QString& name);
    void Activate();
    void Select() { Activate(); } // one sheet in hand: selecting it brings it forward
    int Index() const;            // 1-based position in the book
    void Delete();

    // Range("a1", "f1"), Range("a3"), Range("a2:b10"); letters in either case, "$" allowed.
    XlRange Range(const QString& first, const QString& last = QString());
    XlRange Cells(int row, int column);
    // Columns("a:a"), Columns("b:e"), Columns("c").
    XlRange Columns(const QString& spec);

    // Page set-up properties; each checks its value as the spreadsheet program does.
    void SetPrintTitleRows(const QString& rows);       // "$1:$2"
    void SetPrintTitleColumns(const QString& columns); // "$A:$A"
    void SetLeftHeader(const QString& text);
    void SetCenterHeader(const QString& text);
    void SetRightHeader(const QString& text);
    void SetOrientation(int orientation); // 1 portrait, 2 landscape
    const XlPageSetupData& PageSetup() const { return m_pageSetup; }

    // ChartObjects.Add(left, top, width, height) in points.
    XlRef<XlChart> ChartObjectsAdd(double left, double top, double width, double height);

    // The model, read by the writer and the ranges. Cells are keyed by row * 2^14 + (column - 1).
    XlWorkbook* Book() const { return m_book; }
    bool IsDeleted() const { return m_book == nullptr; }
    void CheckAlive() const; // XlError 1004 once the sheet is deleted
    static std::uint64_t Key(int row, int column) {
        return (static_cast<std::uint64_t>(row) << 14) | static_cast<std::uint64_t>(column - 1);
    }
    static int RowOfKey(std::uint64_t key) { return static_cast<int>(key >> 14); }
    static int ColumnOfKey(std::uint64_t key) { return static_cast<int>(key & 0x3FFF) + 1; }
    const XlCell* CellAt(int row, int column) const;
    XlCell& CellForWrite(int row, int column); // a new cell takes its column's format
    std::map<std::uint64_t, XlCell>& CellMap() { return m_cells; }
    const std::map<std::uint64_t, XlCell>& CellMap() const { return m_cells; }
    std::vector<XlMerge>& Merges() { return m_merges; }
    const std::vector<XlMerge>& Merges() const { return m_merges; }
    std::map<int, XlCellFormat>& ColumnFormats() { return m_columnFormats; }
    const std::map<int, XlCellFormat>& ColumnFormats() const { return m_columnFormats; }
    std::map<int, double>& ColumnWidths() { return m_columnWidths; }
    const std::map<int, double>& ColumnWidths() const { return m_columnWidths; }
    std::map<int, double>& RowHeights() { return m_rowHeights; }
    const std::map<int, double>& RowHeights() const { return m_rowHeights; }
    double DefaultRowHeight() const { return m_defaultRowHeight; }
    void SetDefaultRowHeight(double height) {
        m_defaultRowHeight = height;
        m_defaultRowHeightSet = true;
    }
    bool HasDefaultRowHeight() const { return m_defaultRowHeightSet; }
    const std::vector<std::shared_ptr<XlChart>>& Charts() const { return m_charts; }
    void Detach() { m_book = nullptr; }

private:
    XlWorkbook* m_book;
    QString m_name;
    std::map<std::uint64_t, XlCell> m_cells;
    std::vector<XlMerge> m_merges;
    std::map<int, XlCellFormat> m_columnFormats;
    std::map<int, double> m_columnWidths;
    std::map<int, double> m_rowHeights;
    XlPageSetupData m_pageSetup;
    std::vector<std::shared_ptr<XlChart>> m_charts;
    double m_defaultRowHeight = 15;
    bool m_defaultRowHeightSet = false;
    friend class XlRange;
};

// A chart on a sheet: Chart.SetSourceData, ChartType, PlotBy, HasTitle, ChartTitle.Text, Legend.Position,
// Axes(1).TickLabelSpacing and Axes(1).TickLabels.Orientation.
class XlChart {
public:
    XlChart(double leftPoints, double topPoints, double widthPoints, double heightPoints)
        : left(leftPoints), top(topPoints), width(widthPoints), height(heightPoints) {}
    void SetSourceData(const XlRange& source);
    void SetChartType(int type); // 51 clustered column, 52 stacked column, 57 clustered bar, 4 line, 5 pie
    void SetPlotBy(int plotBy);  // 1 rows, 2 columns
    void SetHasTitle(bool hasTitle);
    void SetChartTitleText(const QString& text);
    void SetLegendPosition(int position); // -4107 bottom, -4152 right, -4131 left, -4160 top, 2 corner
    void SetCategoryTickLabelSpacing(int spacing);
    void SetCategoryTickLabelOrientation(int degrees); // -90 to 90

    // The model, read by the writer.
    std::shared_ptr<XlWorksheet> sourceSheet;
    int r1 = 0, c1 = 0, r2 = 0, c2 = 0;
    int chartType = xl::ColumnClustered;
    int plotBy = xl::PlotByColumns;
    bool hasTitle = false;
    QString title;
    int legendPosition = -4152;
    int tickLabelSpacing = 0;
    int tickLabelOrientation = 0;
    double left, top, width, height; // points
};

class XlWorkbook : public std::enable_shared_from_this<XlWorkbook> {
public:
    explicit XlWorkbook(int sheetsInNewWorkbook);
    ~XlWorkbook();

    int SheetsCount() const { return static_cast<int>(m_sheets.size()); }
    XlRef<XlWorksheet> Sheets(int index) const; // 1-based; XlError 9 out of range
    XlRef<XlWorksheet> Worksheets(int index) const { return Sheets(index); }
    XlRef<XlWorksheet> Sheets(const QString& name) const; // case-blind
    // Worksheets.Add After:=after; the new sheet is named "Sheet" and the book's next number, and is active.
    XlRef<XlWorksheet> WorksheetsAdd(const XlRef<XlWorksheet>& after);
    void DeleteSheet(int index); // XlError 1004 when it is the last sheet
    XlRef<XlWorksheet> ActiveSheet() const;

    // Writes the book as a zipped workbook (FileFormat 51). Throws XlError 1004 with a readable reason.
    void SaveAs(const QString& fileName, int fileFormat = xl::Workbook);
    QString FullName() const { return m_fullName; }

    // The model, read by the sheets and the writer.
    const std::vector<std::shared_ptr<XlWorksheet>>& SheetList() const { return m_sheets; }
    void SetActive(const XlWorksheet* sheet);
    bool NameTaken(const QString& name, const XlWorksheet* except) const;

private:
    std::vector<std::shared_ptr<XlWorksheet>> m_sheets;
    const XlWorksheet* m_active = nullptr;
    int m_sheetCounter = 0;
    QString m_fullName;
};

class XlApplication {
public:
    // The sheets of a new book (the user's default workbook); 3 unless a test says otherwise.
    static void SetSheetsInNewWorkbook(int count);
    static int SheetsInNewWorkbook();

    XlRef<XlWorkbook> WorkbooksAdd();
    XlRef<XlWorkbook> ActiveWorkbook() const;

    bool Visible() const { return m_visible; }
    // Showing the program opens the book in hand with the desktop's default program, unless ORVEL_NO_SHOW=1:
    // its saved file (once), or a copy in the temporary folder when it was never saved.
    void SetVisible(bool visible);
    void SetScreenUpdating(bool on) { m_screenUpdating = on; }
    bool ScreenUpdating() const { return m_screenUpdating; }
    void SetDisplayAlerts(bool on) { m_displayAlerts = on; }
    bool DisplayAlerts() const { return m_displayAlerts; }

    // WorksheetFunction.Sum: the sum of the numbers in the range (texts, booleans and empty cells count nothing).
    struct WorksheetFunctions {
        double Sum(const XlRange& range) const;
    };
    WorksheetFunctions WorksheetFunction() const { return {}; }

    // Files opened by SetVisible(true) in this run, newest last (for tests with ORVEL_NO_SHOW unset).
    const QStringList& ShownFiles() const { return m_shown; }

private:
    std::vector<std::shared_ptr<XlWorkbook>> m_books;
    bool m_visible = false, m_screenUpdating = true, m_displayAlerts = true;
    QStringList m_shown;
};

// The engine's globals, as the reports use them.
extern XlRef<XlApplication> xlApp;
extern XlRef<XlWorkbook> xlBook;
extern XlRef<XlWorksheet> xlSheet;
extern QString xlCell1;
extern QString xlCell2;
extern Value xlValue;
extern std::int32_t xlRow;
extern QString xlSheetIndex;

// The engine's operations.
bool REPORT_Workbook_Initialise(bool hide);
bool REPORT_Workbook_Terminate();
void REPORT_HideExcel(const XlRef<XlApplication>& app, bool hide);
int REPORT_GetSheetIndex();
void REPORT_SetSheetIndex(int index);
bool REPORT_AddSheet(const XlRef<XlWorkbook>& book);
bool REPORT_DeleteExtraSheets(const XlRef<XlWorkbook>& book);
// The name to assign: the name as given (uncut) when it passes REPORT_SheetNameOk, else "Sheet " and the count
// of sheets. REPORT_SheetNameOk cuts the caller's variable to 30 characters.
QString REPORT_SafeSheetName(const XlRef<XlWorkbook>& book, QString& name);
bool REPORT_SheetNameOk(const XlRef<XlWorkbook>& book, QString& name);
// An index above the font table's size is rewritten to 1 in the caller's variable.
QString REPORT_FontName(int& index);

// The cell format of a range in one call; failures end the formatting of the range silently.
void REPxlFmt(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell, const Value& value,
              int fontIndex, int fontSize, bool bold, bool italic, bool underline, bool mergeCells, bool wrapText,
              const QString& numberFormat, int lineStyle, int horizontal, int vertical, int weight, int orientationCode,
              const Value& rowHeight);
// The same, property by property in the engine's order; returns false where a property was refused.
bool REPORT_ToExcel_Format(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                           const Value& value, int fontIndex, int fontSize, bool bold, bool italic, bool underline,
                           bool mergeCells, bool wrapText, const QString& numberFormat, int lineStyle, int horizontal,
                           int vertical, int weight, int orientationCode, const Value& rowHeight);
// Sets the one property that `selector` names: 0 line style, 1 font size, 2 horizontal alignment, 3 merge,
// 4 wrap, 5 bold, 6 underline, 7 row height, 8 border weight, 9 vertical alignment, 10 font name, -1 italic,
// 13 number format; any other selector sets nothing. Returns false where the property was refused.
bool REPORT_ToExcel_FormatOne(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                              int selector, const Value& value, int fontIndex, int fontSize, bool bold, bool italic,
                              bool underline, bool mergeCells, bool wrapText, const QString& numberFormat,
                              int lineStyle, int horizontal, int vertical, int weight, int orientationCode,
                              const Value& rowHeight);
// The grey fill: shade 0 is the darker grey, 1 the lighter.
bool REPORT_ToExcel_ApplyCustomformat(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                                      int shade);
Value REPORT_FillTint(int shade);
int REPORT_TextAngle(int code);
void REPORT_PageSetup(const XlRef<XlWorksheet>& ws, const QString& titleRows, const QString& titleColumns,
                      const QString& leftHeader, const QString& rightHeader, int orientation,
                      const QString& centreHeader);
// Saves under <home>/Reports/<folder>/ (directly in <home>/ for an empty folder, with "File saved in ").
// Returns the path written, or "" when the book was not saved.
QString REPORT_SaveReport(const XlRef<XlApplication>& app, const QString& folder, const QString& reportName);

// Column letters.
QStringList COLUMN_LetterTable();
QString COLUMN_Letter(int index, bool lower); // 0-based; VbError 9 outside the table
int COLUMN_Number(const QString& letters);    // "a" is 1; 0 when not found
QString COLUMN_Offset(const QString& letters, bool back, int count);

// A1-style helpers shared by the engine and its callers.
bool ParseCellAddress(const QString& text, int& row, int& column); // "a1", "$B$10"; false when malformed
QString CellAddress(int row, int column);                          // "A1"

// Excel's serial day number of a date and time (1 is 1900-01-01, leap-year quirk included).
double ExcelSerialOf(const QDateTime& when);
