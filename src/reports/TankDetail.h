#pragma once
// "Detail per Fuel Tank": the running ledger of a tank. Every movement goes into tmpdetail with its amount in
// one column; a crosstab turns the kind into columns; one walk over it carries the balance into
// tmpdetailpivot, which the grid and the workbook read.

#include "ReportRun.h"
#include "Value.h"

#include <QString>
#include <QStringList>

// The tank's litres strictly before the run's from-date: purchases and stock-take differences less issues.
Currency TankOpeningBalance(const ReportRun& run, const QString& tankId);
bool ShowDetail_Preflight();
bool ShowDetail_UpdateTable(const ReportRun& run, const QStringList& tankIds);
void ShowDetail(ReportRun& run);
void ShowDetail_Print(ReportRun& run);
