#pragma once
// Registers the service screens by form name: frmServAdd, frmVoerDiens, frmVoerDiens_Extra, and the refills
// of the capture screen's combos that other screens call through CallFormRoutine ("LaaiSupliers",
// "LaaiCostCat": each loads the screen hidden when it is not loaded, and shows nothing).

void RegisterServiceScreens();
