#include "BatchSession.h"

#include "StoreStartup.h"

#include <cstdio>
#include <exception>

BatchSession::BatchSession(const CommandLine& cl) {
    session.home = cl.home;
    SetCurrentSession(&session);
}

BatchSession::~BatchSession() {
    SetCurrentSession(nullptr);
}

QString BatchSession::open(bool probeOwner) {
    try {
        if (!session.instanceLock && !AcquireInstanceLock(session))
            return "The Orvel Module is already open!";
        OpenSessionStore(session);
        CreateVersionTable(*session.db);
        CheckVersion(*session.db);
        if (probeOwner) {
            OwnerProbe(*session.db);
            session.ClosedDate = GetClosedDate(*session.db);
        }
        RunStartupSteps(*session.db);
    } catch (const NumberedError& e) {
        return QString("error %1: %2").arg(e.number()).arg(e.description());
    } catch (const std::exception& e) {
        return QString::fromUtf8(e.what());
    }
    return QString();
}

int FailCommand(const char* command, const QString& reason) {
    std::fprintf(stderr, "orvel %s: %s\n", command, qPrintable(reason));
    return 1;
}
