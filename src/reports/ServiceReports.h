#pragma once
// The service history reports of "Vehicle Services": the statement of a selection's services, the grid view,
// the workbook with its cost breakdown columns, and the workbook of one vehicle's whole history.

#include "ReportEngine.h"

#include <QList>
#include <QString>

class FlexGrid;

// The services of the vehicles between the two dates ("yyyy/mm/dd", inclusive) by date: their columns for the
// workbook, or their TransIDs alone (transIdsOnly). With first or last: the earliest or latest date of the
// vehicles' services, whatever the dates given.
QString ServiceStatement(const QList<int>& vehicleIds, const QString& from, const QString& to, bool transIdsOnly,
                         bool first, bool last);
// The earliest and latest service dates of the vehicles ("" when they have none): the report's date defaults.
QString ServiceDateFirst(const QList<int>& vehicleIds);
QString ServiceDateLast(const QList<int>& vehicleIds);

// Fills the grid with the services and a closing row of their cost; meterName ("Km" or "Hours") heads the
// reading column. Returns the number of services.
int ServiceHistory_Show(FlexGrid& grid, const QList<int>& vehicleIds, const QString& from, const QString& to,
                        const QString& meterName);

// One sheet of the workbook: the vehicles of one meter kind.
struct ServicePass {
    QList<int> vehicleIds;
    QString meterName; // "Km" or "Hours": the sheet's name
};
// Builds, saves (Reports/Reports, "Service List") and shows the workbook; returns the file written, or "" when
// the workbook could not be made.
QString ServiceHistory_Print(const QList<ServicePass>& passes, const QString& from, const QString& to);
// The cost breakdown of each service listed on the sheet from row 3: Labour in m, Parts in n, Out Work in o,
// Consumables in p, 0 where a service has none.
void ServiceCostColumns(const XlRef<XlWorksheet>& sheet, const QList<int>& vehicleIds, const QString& from,
                        const QString& to);

// The whole history of one vehicle, first to last date, on one sheet of its meter kind.
QString ServiceHistory_PrintVehicle(int vehicleId);
