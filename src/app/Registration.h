#pragma once
// Every subsystem's screens are registered here at start, so that screens open each other by form name.

void RegisterAllScreens();
