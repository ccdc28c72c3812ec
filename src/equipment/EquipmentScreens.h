#pragma once
// Registers the equipment screens by form name.
void RegisterEquipmentScreens();
