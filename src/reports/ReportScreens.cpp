#include "ReportScreens.h"

#include "Database.h"
#include "FuelTotalsReports.h"
#include "FuelUsageReports.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportRegistry.h"
#include "ReportSheets.h"
#include "ScreenRegistry.h"
#include "ServiceReports.h"
#include "Session.h"
#include "TankDetail.h"
#include "TankSummary.h"
#include "frmVerslae.h"

namespace {

std::pair<QString, QString> EquipmentDates() {
    return {EquipmentDateFirst(), EquipmentDateLast()};
}

std::pair<QString, QString> ConsumptionDates() {
    return {GetScalar(db(), ConsumptionStatement("", "", "", "", false, true, false), ""),
            GetScalar(db(), ConsumptionStatement("", "", "", "", false, false, true), "")};
}

QList<int> IdsOf(const QString& list) {
    QList<int> ids;
    for (const QString& id : list.split(',', Qt::SkipEmptyParts))
        ids << id.trimmed().toInt();
    return ids;
}

// The date defaults of "Vehicle Services": the first and last service of every vehicle.
std::pair<QString, QString> ServiceDates() {
    QList<int> all;
    auto rs = db().OpenRecordset("select transid from voertuig", RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        all << static_cast<int>(rs->Field("transid").toDouble());
    return {ServiceDateFirst(all), ServiceDateLast(all)};
}

void ServicesShow(ReportRun& run) {
    ServiceHistory_Show(*run.grid, IdsOf(run.mergedIds), run.from, run.to, MeterName(run, 0));
}

// One sheet a meter kind, as the other vehicle reports print.
void ServicesPrint(ReportRun& run) {
    QList<ServicePass> passes;
    for (int pass = 0; pass <= MeterSheets(run); ++pass)
        passes << ServicePass{IdsOf(MeterIds(run, pass)), MeterName(run, pass)};
    run.savedPath = ServiceHistory_Print(passes, run.from, run.to);
}

} // namespace

void RegisterReportLists() {
    RegisterReport("Vehicle List", {VehicleList_Show, PrintVehicleList, {}, EquipmentDates});
    RegisterReport("Vehicle Services", {ServicesShow, ServicesPrint, {}, ServiceDates});
    RegisterReport("Fuel Consumption", {Consumption_Show, Consumption_Print, {}, ConsumptionDates});
    RegisterReport("Fuel Purchase", {FuelPurchases_Show, FuelPurchases_Print, {}, {}});
    RegisterReport("Fuel Stock Take", {TankStockList_Show, TankStockList_Print, {}, {}});
    RegisterReport("Equipment List", {EquipmentList_Show, {}, {}, EquipmentDates});
    RegisterReport("Stock List", {StockList_Show, {}, {}, EquipmentDates});
}

void RegisterReportScreens() {
    RegisterScreen("frmVerslae", [](QWidget* parent) -> QWidget* { return new frmVerslae(parent); });
    RegisterReport("Summary per Fuel Tank", {ShowSummary, ShowSummary_Print, {}, {}});
    RegisterReport("Detail per Fuel Tank", {ShowDetail, ShowDetail_Print, {}, {}});
    RegisterReportLists();
    RegisterFuelTotalsReports();
    RegisterFuelUsageLineReports();
}
