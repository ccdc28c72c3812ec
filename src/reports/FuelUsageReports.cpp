#include "FuelUsageReports.h"

#include "FillReportGrid.h"
#include "FuelUsageStatement.h"
#include "ReportRegistry.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

#include <algorithm>

namespace {

const QString kPattern = QStringLiteral("### ### ##0.00");

// The look of one report's sheet: column widths (an empty list fits every column to its texts), the columns
// that take the number format, and the page's orientation.
struct UsageLayout {
    QList<std::pair<QString, double>> widths;
    QString numberColumns;
    int orientation = xl::Portrait;
};

UsageLayout LayoutOf(const QString& title) {
    if (title == "Litres Per Activity/Vehicle")
        return {{{"a:a", 12}, {"b:d", 15}, {"e:f", 10}}, "e:f"};
    if (title == "Detailed Veh. Fuel Usage")
        return {{{"a:a", 8}, {"b:f", 10}, {"g:j", 12}, {"k:n", 6}}, "g:n", xl::Landscape};
    if (title == "Pump Readings")
        return {{}, "g:i", xl::Landscape};
    if (title == "Litres Used")
        return {{{"a:a", 10}, {"b", 20}, {"c:f", 10}}, "c:f"};
    // "Litres Per Driver/Vehicle"
    return {{{"a:a", 10}, {"b:c", 20}, {"d", 10}}, "d"};
}

// Every column from a to `lastColumn` as wide as its longest text below the heading rows (numbers as the
// number format shows them), and at least as wide as the longest word of its heading.
void FitColumns(const XlRef<XlWorksheet>& sheet, int lastColumn) {
    std::vector<int> widest(static_cast<size_t>(lastColumn) + 1, 0);
    for (const auto& [key, cell] : sheet->CellMap()) {
        const int row = XlWorksheet::RowOfKey(key);
        const int column = XlWorksheet::ColumnOfKey(key);
        if (column > lastColumn || row < 2 || cell.value.isNull() || cell.value.isEmpty())
            continue;
        int length = 0;
        if (row == 2) {
            for (const QString& word : cell.value.toString().split(' ', Qt::SkipEmptyParts))
                length = std::max(length, static_cast<int>(word.size()));
        } else if (cell.value.isNumeric() && cell.format.numberFormat != "General") {
            length = static_cast<int>(vb::Format(cell.value, cell.format.numberFormat).trimmed().size());
        } else {
            length = static_cast<int>(cell.value.toString().size());
        }
        widest[static_cast<size_t>(column)] = std::max(widest[static_cast<size_t>(column)], length);
    }
    for (int c = 1; c <= lastColumn; ++c) {
        const QString letter = COLUMN_Letter(c - 1, true);
        sheet->Columns(letter + ":" + letter).SetColumnWidth(std::clamp(widest[static_cast<size_t>(c)] + 2, 6, 60));
    }
}

// One sheet of the line reports: title, headings, the rows of `ids`, the formats. Returns the rows written.
int UsagePass(const ReportRun& run, const QString& ids) {
    run.Message("Printing Header");
    auto rs = db().OpenRecordset(FuelUsageStatement(run.title, run.from, run.to, ids, run.byDate, true),
                                 RecordsetType::Snapshot);
    const int fields = rs->FieldCount();
    const QString last = COLUMN_Letter(fields - 1, true);
    xlRow = 1;
    WriteTitleRow(xlSheet, last, run.title + " From " + run.from + " To " + run.to);
    xlRow = 2;
    WriteFieldHeadings(xlSheet, *rs);
    // The columns take the sheet's font and number formats before the rows come, so that each pasted cell starts
    // with them instead of a second walk over every cell.
    const UsageLayout layout = LayoutOf(run.title);
    int font = 2;
    XlRange columns = xlSheet->Columns("a:" + last);
    columns.SetFontName(REPORT_FontName(font));
    columns.SetFontSize(8);
    xlSheet->Columns(layout.numberColumns).SetNumberFormat(kPattern);
    run.Message("Printing Lines. May take a while.");
    int rows = 0;
    if (rs->Eof())
        REPxlFmt(xlSheet, "a3", "c3", Value(QStringLiteral("No Vehicle(s) with Rebate Applicable")), 2, 8, false, false,
                 false, true, false, "", xl::None, xl::Left, xl::Center, 2, 0, Value());
    else
        rows = xlSheet->Range("a3").CopyFromRecordset(*rs);
    xlRow = 3 + rows;

    run.Message("Formatting");
    if (layout.widths.isEmpty())
        FitColumns(xlSheet, fields);
    for (const auto& [span, width] : layout.widths)
        xlSheet->Columns(span).SetColumnWidth(width);
    ReportPageSetup(xlSheet, layout.orientation);
    return rows;
}

void UsageLinesShow(ReportRun& run) {
    FillReportGrid(run, run.from, run.to, false);
}

QString UsageStatement(const ReportRun& run, const QString& from, const QString& to, bool forPrint) {
    return FuelUsageStatement(run, from, to, forPrint);
}

} // namespace

QString UsageFileName(const QString& title) {
    QString name = title;
    return name.replace("/", "");
}

void UsageLines_Print(ReportRun& run) {
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    const bool pumps = run.title == "Pump Readings";
    const int lastPass = pumps ? 0 : MeterSheets(run);
    for (int pass = 0; pass <= lastPass; ++pass) {
        QString kind = pumps ? QStringLiteral("Km/Hrs") : MeterName(run, pass);
        if (pass > 0) {
            REPORT_AddSheet(xlBook);
            REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
            xlSheet = xlBook->Worksheets(REPORT_GetSheetIndex());
        }
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, kind));
        UsagePass(run, pumps ? run.mergedIds : MeterIds(run, pass));
        run.Progress(100.0 * (pass + 1) / (lastPass + 1));
    }
    xlBook->Sheets(1)->Activate();
    FinishReport(run, UsageFileName(run.title), run.title + " Completed");
}

void LogSheet_Print(ReportRun& run) {
    const QString name = run.title.isEmpty() ? QStringLiteral("Vehicle Fuel Log Sheet") : run.title;
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString sheetName = "Log Sheet";
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, sheetName));
    xlRow = 1;
    WriteTitleRow(xlSheet, "j", "Vehicle Log Sheet");
    auto rs = db().OpenRecordset(FuelUsageStatement("Vehicle Fuel Log Sheet", "", "", "", false, true),
                                 RecordsetType::Snapshot);
    xlRow = 2;
    WriteFieldHeadings(xlSheet, *rs);

    run.Message("Formatting");
    xlSheet->Columns("a:a").SetColumnWidth(10);
    xlSheet->Columns("b:e").SetColumnWidth(15);
    xlSheet->Columns("f:j").SetColumnWidth(12);
    int font = 2;
    XlRange form = xlSheet->Range("a3", "j20");
    form.SetFontName(REPORT_FontName(font));
    form.SetFontSize(10);
    form.SetBorderLineStyle(xl::Continuous);
    form.SetBorderWeight(xl::Thin);
    form.SetRowHeight(Value(18));
    ReportPageSetup(xlSheet, xl::Landscape);
    FinishReport(run, name, "'" + name + "' Completed. Select '" + name + "' to Reprint");
}

void RegisterFuelUsageLineReports() {
    for (const char* title : {"Litres Per Activity/Vehicle", "Litres Used", "Litres Per Driver/Vehicle",
                              "Detailed Veh. Fuel Usage", "Pump Readings"})
        RegisterReport(title, {UsageLinesShow, UsageLines_Print, UsageStatement, {}});
    RegisterReport("Vehicle Fuel Log Sheet", {{}, LogSheet_Print, UsageStatement, {}});
}
