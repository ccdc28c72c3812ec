#include "ReportScreens.h"

#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportRegistry.h"
#include "ScreenRegistry.h"
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

} // namespace

void RegisterReportLists() {
    RegisterReport("Vehicle List", {VehicleList_Show, PrintVehicleList, {}, EquipmentDates});
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
}
