#pragma once
// Screens are opened by form name. Each subsystem registers its screens at start (see app/Registration),
// so that the main window, and any screen that opens another subsystem's screen, never includes that
// screen's header. A form is a QWidget (shown as an MDI child) or a QDialog (shown modally); its
// objectName is the form name.

#include <QString>
#include <QStringList>
#include <functional>

class QWidget;
class QMdiArea;

using ScreenFactory = std::function<QWidget*(QWidget* mdiParent)>;

void RegisterScreen(const QString& name, ScreenFactory factory); // a second registration replaces the first
bool IsScreenRegistered(const QString& name);
void UnregisterAllScreens(); // for tests

// Where normal shows go: the main window's MDI area. Without one a normal show is a top-level window.
void SetMdiArea(QMdiArea* area);
QMdiArea* CurrentMdiArea();

// Shows the form. Normal: as an MDI child, or the open one of that name brought forward (a form is
// loaded once, as in the original); returns the form. Modal: made anew and exec()ed (a plain widget is
// made a modal window); returns nullptr once it is closed or hidden. An unregistered name opens nothing and gives
// nullptr. A factory that throws DbError or VbError is reported by a critical box.
QWidget* ShowScreen(const QString& name, bool modal);

// Tracks a form shown some other way, so that OpenForms and UnloadForm see it.
void TrackForm(QWidget* form);

QStringList OpenForms();                // names of the forms loaded now, in the order they were loaded
QWidget* FindForm(const QString& name); // the loaded form of that name, or nullptr
bool IsFormVisible(const QString& name);
void UnloadForm(const QString& name); // closes it (its close handler may refuse)

// A public routine of a form that another subsystem's screen calls by name (frmServAdd.LaaiCostCat). The form's
// owner registers it with the form's name and the routine's. CallFormRoutine runs it on the loaded form of that
// name, loading the form hidden first when none is loaded, as calling a routine of an unloaded form does; it does
// nothing and answers false while no routine of that name is registered.
using FormRoutine = std::function<void(QWidget* form)>;
void RegisterFormRoutine(const QString& formName, const QString& routine, FormRoutine fn);
bool CallFormRoutine(const QString& formName, const QString& routine);

// The reminder statement builder lives with the reminder screen; the main window's start-up check calls
// it through this hook. Until it is set, the start-up has no reminder check.
using ReminderSqlBuilder = std::function<QString(const QString& dateText, int monthsBack, int monthsAhead, bool both,
                                                 bool licence, bool headings)>;
void SetReminderSqlBuilder(ReminderSqlBuilder builder);
const ReminderSqlBuilder& CurrentReminderSqlBuilder();
