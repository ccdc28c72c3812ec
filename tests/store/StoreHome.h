#pragma once
// A temporary home whose store is opened as a run opens it, with the session current and a scripted message
// service; with `start`, the start's version, owner, closing-date and schema steps run on it as well.

#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

struct StoreHome {
    TempHome home;
    ScriptedMessageService messages;
    Session session;
    explicit StoreHome(bool start = true) {
        session.home = home.path();
        SetCurrentSession(&session);
        OpenSessionStore(session);
        if (start)
            Start(db());
    }
    ~StoreHome() {
        session.db.reset();
        SetCurrentSession(nullptr);
    }
    Database& db() { return *session.db; }

    static void Start(Database& db) {
        CreateVersionTable(db);
        CheckVersion(db);
        OwnerProbe(db);
        GetClosedDate(db);
        RunSchemaSteps(db);
    }
};
