#pragma once
// "Summary per Fuel Tank": per tank and vehicle the litres drawn, the first and last readings in the range,
// what was covered and the consumption figure, with totals per vehicle category. Built in the working table
// tmpsummary, rebuilt on every run.

#include "ReportRun.h"

#include <QString>

// The select of tmpsummary for the run's tanks; with useDates limited to the run's dates.
QString SummarySelect(const ReportRun& run, bool useDates);
// Rebuilds tmpsummary; false (with its message) on a failure.
bool ShowSummary_Preflight(const ReportRun& run, bool useDates);
// Replaces the placeholder figures by the readings of the range; stops silently at a row of 0 litres.
void ShowSummary_UpdateStats(const ReportRun& run);
void ShowSummary(ReportRun& run);
void ShowSummary_Print(ReportRun& run);

// A number as a statement takes it: plain, with "." for decimals.
QString SqlNumber(double value);
