#include "ServiceScreens.h"

#include "ScreenRegistry.h"
#include "Session.h"
#include "frmServAdd.h"
#include "frmVoerDiens.h"
#include "frmVoerDiens_Extra.h"

void RegisterServiceScreens() {
    RegisterScreen("frmServAdd", [](QWidget* parent) -> QWidget* { return new frmServAdd(parent); });
    RegisterScreen("frmVoerDiens", [](QWidget* parent) -> QWidget* {
        auto* form = new frmVoerDiens(parent);
        // Opened from the vehicle list for one vehicle; the hook is called as the list always has.
        if (CurrentSession().ServiceHistoryVehicleID > 0)
            form->LoadServices(CurrentSession().ServiceHistoryVehicleID);
        return form;
    });
    RegisterScreen("frmVoerDiens_Extra", [](QWidget* parent) -> QWidget* { return new frmVoerDiens_Extra(parent); });
    // frmAdd refills the capture screen's combos through these, loading the screen hidden when it is not loaded.
    RegisterFormRoutine("frmServAdd", "LaaiSupliers",
                        [](QWidget* form) { static_cast<frmServAdd*>(form)->LaaiSupliers(); });
    RegisterFormRoutine("frmServAdd", "LaaiCostCat",
                        [](QWidget* form) { static_cast<frmServAdd*>(form)->LaaiCostCat(); });
}
