#pragma once
// What the printed reports share: the meter passes, the title row, the heading writer, the page set-up, the
// grid-to-sheet copy and the end of a workbook.

#include "ReportEngine.h"
#include "ReportRun.h"

#include <QString>

// 1 when hour vehicles and kilometre vehicles are both selected, else 0: the number of the last sheet pass.
int MeterSheets(const ReportRun& run);
// "Km", or "Hours" for pass 1 or when no kilometre vehicle is selected.
QString MeterName(const ReportRun& run, int pass);
// The vehicle ids of the pass's kind.
QString MeterIds(const ReportRun& run, int pass);

// Row 1 from column a to `lastColumn`: the text merged in the title format, with the grey fill.
void WriteTitleRow(const XlRef<XlWorksheet>& sheet, const QString& lastColumn, const QString& text);
// The heading writer: each field's name in row xlRow from column a, bold, merged, wrapped, boxed and centred,
// in the grey fill; the row `height` points high.
void WriteFieldHeadings(const XlRef<XlWorksheet>& sheet, Recordset& rs, double height = 50);
// The same for the given headings (the grid's heading cells).
void WriteHeadings(const XlRef<XlWorksheet>& sheet, const QStringList& headings, double height = 50);
// The page set-up that every report passes: title rows 1 and 2, column A, date and page headers.
void ReportPageSetup(const XlRef<XlWorksheet>& sheet, int orientation = xl::Portrait);
// Saves the book in "Reports" as `name`, shows it, releases it and tells "<name> Completed" (or `completed` when
// given). Returns the path.
QString FinishReport(const ReportRun& run, const QString& name, const QString& completed = QString());

// The grid-to-sheet copy: sheet `sheetName`, row 1 the report's name with the dates across a to `lastColumn`,
// row 2 the grid's headings, then the grid's rows cell by cell; the columns in `rightColumns` (1-based)
// right-aligned, the others left.
void CopyGridToSheet(const ReportRun& run, const QString& sheetName, const QString& lastColumn,
                     const QList<int>& rightColumns);

// The last row of a sheet holding a value, 0 for none.
int LastUsedRow(const XlRef<XlWorksheet>& sheet);
// WorksheetFunction.Sum of the range, as the reports write it below their data.
double SheetSum(const XlRef<XlWorksheet>& sheet, const QString& first, const QString& last);
