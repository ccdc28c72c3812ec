#pragma once
// The report titles the report screen knows, each with its procedures. A family of reports registers its own
// titles (see ReportScreens.cpp for the ones built here); the screen dispatches by the exact title.

#include "ReportRun.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <utility>

struct ReportProcedures {
    // The view: fills the grid. Empty when the report has no view.
    std::function<void(ReportRun&)> show;
    // The print: builds the workbook. Empty when the report has no print.
    std::function<void(ReportRun&)> print;
    // For the reports that the generic grid fill serves: the statement of the run (from, to, forPrint).
    std::function<QString(const ReportRun&, const QString&, const QString&, bool)> statement;
    // The earliest and latest dates the screen starts with ("yyyy/mm/dd" texts; "" for none). Empty: the
    // dates of the fuel tables.
    std::function<std::pair<QString, QString>()> dateRange;
};

// A second registration of a title replaces the first.
void RegisterReport(const QString& title, ReportProcedures procedures);
// The procedures of a title, compared exactly; nullptr when none is registered.
const ReportProcedures* FindReport(const QString& title);
QStringList RegisteredReports();
