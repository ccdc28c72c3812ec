#include "EquipmentScreens.h"

#include "ScreenRegistry.h"
#include "frmEquipment.h"
#include "frmEquipmentAdj.h"
#include "frmEquipmentBookedout.h"
#include "frmEquipmentStockTake.h"
#include "frmVKat.h"

void RegisterEquipmentScreens() {
    RegisterScreen("frmEquipment", [](QWidget* parent) -> QWidget* { return new frmEquipment(parent); });
    RegisterScreen("frmEquipmentAdj", [](QWidget* parent) -> QWidget* { return new frmEquipmentAdj(parent); });
    RegisterScreen("frmEquipmentBookedout",
                   [](QWidget* parent) -> QWidget* { return new frmEquipmentBookedout(parent); });
    RegisterScreen("frmEquipmentStockTake",
                   [](QWidget* parent) -> QWidget* { return new frmEquipmentStockTake(parent); });
    RegisterScreen("frmVKat", [](QWidget* parent) -> QWidget* { return new frmVKat(parent); });
}
