#pragma once
// The run's shared state: the globals that every screen reads on load, owned by one object.

#include "Database.h"

#include <QDateTime>
#include <QString>
#include <memory>

#include <QLockFile> // complete here: every owner of a Session destroys the lock

struct Session {
    // The one open store for the run.
    std::unique_ptr<Database> db;
    QString home;     // the home folder (see HomeFolder.h)
    QString DataPath; // <home>/Databases/

    QDateTime ClosedDate; // from tblTeDate row 2, or 01/01/2000
    int ClosedDateId = 0;

    int CurrentSection = 0;
    QString ReportChoice;
    QString ReminderKind;
    int EquipmentMode = 0;

    int SelectedID = 0;
    int SelectedCatID = 0;
    int ServiceMode = 0;
    int ServiceLinkID = 0;
    int CostAction = 0;
    int SelectedCategoryId = 0;
    int SelectedItemId = 0;
    int CurrentTankID = 0;
    int CurrentPurchaseID = 0;
    int VehicleID = 0;
    int LastVehicleID = 0;           // TransID of the vehicle the detail screen saved last
    int ServiceHistoryVehicleID = 0; // set by the vehicle list while it shows frmVoerDiens for one vehicle

    std::unique_ptr<QLockFile> instanceLock;
};

// The session of this run. The program makes one at start; tests make their own and set it.
Session& CurrentSession();
void SetCurrentSession(Session* session);
inline Database& db() {
    return *CurrentSession().db;
}
