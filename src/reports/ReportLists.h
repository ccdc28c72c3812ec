#pragma once
// The list reports: vehicles, fuel consumption, fuel purchases, tank stock takes, equipment and room stock.

#include "ReportRun.h"

#include <QString>

// The vehicle list's column blocks: 1 identity and use, 2 purchase and value, 3 sizes and build (4 to 6 the
// same); withHead starts with make, model and registration, withTail adds the source for `ids`.
QString VehicleStatement(int part, bool withHead, bool withTail, const QString& ids);
void VehicleList_Show(ReportRun& run);
void PrintVehicleList(ReportRun& run);

// The consumption rows of `ids`, or their totals, or (first / last) the earliest or latest fuel date.
QString ConsumptionStatement(const QString& ids, const QString& meterName, const QString& from, const QString& to,
                             bool totals, bool first, bool last);
void Consumption_Show(ReportRun& run);
void Consumption_Print(ReportRun& run);

QString FuelPurchaseStatement(const ReportRun& run);
void FuelPurchases_Show(ReportRun& run);
void FuelPurchases_Print(ReportRun& run);

void TankStockList_Show(ReportRun& run);
void TankStockList_Print(ReportRun& run);

void EquipmentList_Show(ReportRun& run);
void StockList_Show(ReportRun& run);
QString EquipmentDateFirst();
QString EquipmentDateLast();

// Registers the titles above with the report screen.
void RegisterReportLists();
