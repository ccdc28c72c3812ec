#include "FuelScreens.h"

#include "ScreenRegistry.h"
#include "frmRebate.h"

void RegisterFuelScreens() {
    RegisterScreen("frmRebate", [](QWidget* parent) -> QWidget* { return new frmRebate(parent); });
}
