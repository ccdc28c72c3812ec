#include "Registration.h"

#include "FuelScreens.h"
#include "ReportScreens.h"
#include "VehicleScreens.h"
#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
    RegisterVehicleScreens();
    RegisterFuelScreens();
    RegisterReportScreens();
}
