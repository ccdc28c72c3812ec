#include "Registration.h"

#include "FuelScreens.h"
#include "ReminderScreens.h"
#include "VehicleScreens.h"
#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
    RegisterVehicleScreens();
    RegisterFuelScreens();
    RegisterReminderScreens();
}
