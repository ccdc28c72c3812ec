#pragma once
// The line reports of the fuel usage family and the blank log sheet: their workbooks, and their registration
// with the report screen (their view is the generic grid fill over FuelUsageStatement).

#include "ReportRun.h"

#include <QString>

// "Litres Per Activity/Vehicle", "Litres Used", "Litres Per Driver/Vehicle", "Detailed Veh. Fuel Usage" and
// "Pump Readings": one sheet per meter kind (one sheet of both kinds for the pump readings), the rows of the
// print statement under the title and heading rows. The saved name is the title without "/".
void UsageLines_Print(ReportRun& run);
// "Vehicle Fuel Log Sheet": a blank form of ten ruled columns to be filled in by hand.
void LogSheet_Print(ReportRun& run);

// The print name of a report: its title with every "/" taken out.
QString UsageFileName(const QString& title);

// Registers the titles above with the report screen.
void RegisterFuelUsageLineReports();
