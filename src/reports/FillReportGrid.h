#pragma once
// The generic fill of the report grid, for the fuel usage family: the statement comes from the report's
// registered builder, the rows go in as the report's name asks.

#include "ReportRun.h"

#include <QString>

// Fills run.grid from the statement of run.title. Throws what the store throws (GetReport reports it).
void FillReportGrid(ReportRun& run, const QString& from, const QString& to, bool forPrint);
