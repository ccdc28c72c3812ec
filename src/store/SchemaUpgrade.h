#pragma once
// The start-up upgrade: the version-gated steps and the seventeen steps that run at every start.
// CreateVersionTable, CheckVersion and RunSchemaSteps are declared in StoreStartup.h.

#include "Database.h"

#include <QString>

// Probes: open the argument as a recordset and close it; false on any failure.
bool TableOpens(Database& db, const QString& name);
bool QueryOpens(Database& db, const QString& sql);

// The version-gated steps. WriteVersion puts the program's version in the one Version row.
void WriteVersion(Database& db);
void UpdateChoiceAndLedgerTables(Database& db); // not protected: its errors reach the caller
void AddFuelIndex(Database& db);                // fails silently where VecFuel lacks the columns

// The version number rule: major as "00", minor and revision as "0000", joined and read as a long.
// Throws VbError 6 when the joined text does not fit a long.
int VersionNumberOf(const Value& major, const Value& minor, const Value& revision);

// The seventeen steps, in the order RunSchemaSteps runs them.
void AddFuelSupplierTable(Database& db);      // 1
void RepairColumnTypes(Database& db);         // 2, every error ignored
void AddServiceReferences(Database& db);      // 3
void AddDueDates(Database& db);               // 4
void AddPermitTable(Database& db);            // 5
void AddRebateTable(Database& db);            // 6
void AddTankAndPurchaseColumns(Database& db); // 7
void AddVehicleColumns(Database& db);         // 8
void Formload_AddTables(Database& db);        // 9, the only step that shows its error
void ConvertEquipmentQuantity(Database& db);  // 10
void AddPumpReadings(Database& db);           // 11
void AddEquipmentLedger(Database& db);        // 12
void AddEquipmentStockTake(Database& db);     // 13
void AddServiceCostLines(Database& db);       // 14
void MoveServiceTables(Database& db);         // 15, every error ignored
void EmptyUpgradeStep(Database& db);          // 16, called in its place and does nothing
void AddCostTypes(Database& db);              // 17
