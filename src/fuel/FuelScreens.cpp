#include "FuelScreens.h"

#include "ScreenRegistry.h"
#include "frmFuel.h"
#include "frmRebate.h"

void RegisterFuelScreens() {
    RegisterScreen("frmFuel", [](QWidget* parent) -> QWidget* { return new frmFuel(parent); });
    RegisterScreen("frmRebate", [](QWidget* parent) -> QWidget* { return new frmRebate(parent); });
}
