#pragma once
// The statements of the fuel usage reports: one builder gives each report of the family its select over the
// fuel table `vecfuel`, by vehicle and date range; the monthly report has its own crosstab.

#include "ReportRun.h"

#include <QString>

// The select of the report `title` over the vehicles `ids` (joined by ",") with `datum` between `from` and `to`
// ("yyyy/mm/dd" texts, compared as text). `byDate` is the screen's "Date" order; `forPrint` gives the print
// aliases where a report has its own ("Pump Readings"). A title outside the family gives "".
QString FuelUsageStatement(const QString& title, const QString& from, const QString& to, const QString& ids,
                           bool byDate, bool forPrint);
// The same for a run of the report screen: its title, its merged vehicle list and its order.
QString FuelUsageStatement(const ReportRun& run, const QString& from, const QString& to, bool forPrint);

// The monthly crosstab: one row per month ("mmmm yyyy"), one column per vehicle of `ids`; litres summed when
// `litres`, else rands (litres times the price per litre). Months sort as 'mm yyyy': January of every year
// first.
QString MonthlyUsageStatement(const QString& from, const QString& to, const QString& ids, bool litres);
QString MonthlyUsageStatement(const ReportRun& run, const QString& from, const QString& to, bool litres);
