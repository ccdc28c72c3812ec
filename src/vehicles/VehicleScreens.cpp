#include "VehicleScreens.h"

#include "ScreenRegistry.h"
#include "frmVoerDet.h"
#include "frmVoerk.h"

void RegisterVehicleScreens() {
    RegisterScreen("frmVoerk", [](QWidget* parent) -> QWidget* { return new frmVoerk(parent); });
    RegisterScreen("frmVoerDet", [](QWidget* parent) -> QWidget* {
        auto* detail = new frmVoerDet(parent);
        detail->SetNewVehicleDefaults();
        return detail;
    });
}
