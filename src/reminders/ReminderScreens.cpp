#include "ReminderScreens.h"

#include "ReminderSql.h"
#include "ScreenRegistry.h"
#include "frmPDP.h"
#include "frmReminders.h"

void RegisterReminderScreens() {
    RegisterScreen("frmReminders", [](QWidget* parent) -> QWidget* { return new frmReminders(parent); });
    RegisterScreen("frmPDP", [](QWidget* parent) -> QWidget* { return new frmPDP(parent); });
    SetReminderSqlBuilder(&BuildReminderSql);
}
