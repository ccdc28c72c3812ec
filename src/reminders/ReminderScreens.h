#pragma once
// Registers the reminder and permit screens by form name, and the reminder statement with the start-up check.

void RegisterReminderScreens();
