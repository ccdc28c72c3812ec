#pragma once
// The fuel subsystem's screens, registered by form name at start.

void RegisterFuelScreens();
