#pragma once
// The fuel usage totals: litres per tank ("Fuel Usage", "Fuel Available"), litres per vehicle, driver and
// activity with their charts, the rebate sums, and the monthly crosstab of litres and rands with its charts.

#include "ReportRun.h"

#include <QString>

// The two kinds of chart a report adds on a sheet of its own after its data sheet: Columns reads the names
// in column a and the figures in column b; Table reads the whole table (first column the categories, one
// series per further column).
enum class ChartForm { Columns, Table };

// Adds "Chart <source>" after the last sheet, charting the sheet before it from row 2 down to `lastRow`
// (and to `lastColumn`, 1-based, in the table form). A failure shows "Error In PrintChart:" with the
// system's text and the report goes on.
void PrintChart(const ReportRun& run, ChartForm form, int lastRow, int lastColumn = 2);

// mode 1 "Fuel Usage" (litres drawn per tank, all dates), mode 2 "Fuel Available" (litres in each tank).
void TankTotals_Show(ReportRun& run, int mode);
void TankTotals_Print(ReportRun& run);

// "Litres Per Vehicle", "Litres Per Driver", "Litres Per Activity", "Rebate Applicable".
void LitresTotals_Print(ReportRun& run);
// "Monthly Veh. Fuel Usage": per meter kind a litres sheet and a cost sheet, each followed by its chart.
void MonthlyUsage_Print(ReportRun& run);

// Registers the titles above with the report screen.
void RegisterFuelTotalsReports();
