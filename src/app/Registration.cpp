#include "Registration.h"

#include "EquipmentScreens.h"
#include "FuelScreens.h"
#include "VehicleScreens.h"
#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
    RegisterVehicleScreens();
    RegisterFuelScreens();
    RegisterEquipmentScreens();
}
