#pragma once
// Registers the vehicle register's screens by form name: frmVoerk (the list, an MDI child) and frmVoerDet
// (the detail, modal; opened as the list opens it for a new vehicle of the session's SelectedID category).

void RegisterVehicleScreens();
