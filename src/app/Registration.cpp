#include "Registration.h"

#include "EquipmentScreens.h"
#include "FuelScreens.h"
#include "ReminderScreens.h"
#include "ReportScreens.h"
#include "ServiceReports.h"
#include "ServiceScreens.h"
#include "VehicleScreens.h"
#include "frmVoerDiens.h"
#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
    RegisterVehicleScreens();
    RegisterFuelScreens();
    RegisterReminderScreens();
    RegisterServiceScreens();
    SetServiceHistoryPrinter([](int vehicleId) { ServiceHistory_PrintVehicle(vehicleId); });
    RegisterReportScreens();
    RegisterEquipmentScreens();
}
