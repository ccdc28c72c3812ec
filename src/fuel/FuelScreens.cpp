#include "FuelScreens.h"

#include "ScreenRegistry.h"
#include "frmAdd.h"
#include "frmFuel.h"
#include "frmRebate.h"
#include "frmTank.h"
#include "frmTankStock.h"

void RegisterFuelScreens() {
    RegisterScreen("frmFuel", [](QWidget* parent) -> QWidget* { return new frmFuel(parent); });
    RegisterScreen("frmRebate", [](QWidget* parent) -> QWidget* { return new frmRebate(parent); });
    RegisterScreen("frmTank", [](QWidget* parent) -> QWidget* { return new frmTank(parent); });
    RegisterScreen("frmTankStock", [](QWidget* parent) -> QWidget* { return new frmTankStock(parent); });
    RegisterScreen("frmAdd", [](QWidget* parent) -> QWidget* { return new frmAdd(parent); });
}
