#pragma once
// Registers the report screen and the reports built in this library.
void RegisterReportScreens();
