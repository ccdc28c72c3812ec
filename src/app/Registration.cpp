#include "Registration.h"

#include "FuelScreens.h"
#include "frmowner.h"

void RegisterAllScreens() {
    RegisterShellScreens();
    RegisterFuelScreens();
}
