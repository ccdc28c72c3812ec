// `orvel --home DIR import FILE.mdb [--replace]`: an older installation's file taken over as the home's store, a
// line per table as it goes, then the start-up steps and the summary line of `orvel check`.

#include "CommandLine.h"

#include "BatchSession.h"

#include "HomeFolder.h"
#include "OlderImport.h"
#include "StoreStartup.h"

#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <exception>

int RunImportCommand(const CommandLine& cl) {
    QString older;
    bool replace = false;
    for (const QString& a : cl.args) {
        if (a == "--replace")
            replace = true;
        else if (a.startsWith("--") || !older.isEmpty())
            return FailCommand("import", "usage: orvel [--home DIR] import FILE.mdb [--replace]");
        else
            older = QFileInfo(a).absoluteFilePath();
    }
    if (older.isEmpty())
        return FailCommand("import", "usage: orvel [--home DIR] import FILE.mdb [--replace]");

    BatchSession batch(cl);
    Session& s = batch.session;
    try {
        // The lock is held from before the file is read until the run ends.
        if (!AcquireInstanceLock(s))
            return FailCommand("import", "The Orvel Module is already open!");
        const QString dataPath = DataPathOf(s.home.isEmpty() ? HomeFolder() : s.home);
        if (!QFileInfo(dataPath).isDir()) {
            if (!QDir().mkpath(dataPath))
                return FailCommand("import", "'" + dataPath + "' is not a valid path.");
            QFile::setPermissions(dataPath, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        }
        const QString target = dataPath + "invent.db";
        if (!replace && QFileInfo::exists(target))
            return FailCommand("import", "a store already stands at '" + target +
                                             "'; --replace takes the older file over in its place");
        ImportObserver observer;
        observer.tableDone = [](const QString& table, long long rows) {
            std::printf("%s\t%lld\n", qPrintable(table), rows);
            std::fflush(stdout);
        };
        ImportOlderStore(older, target, replace, observer);
    } catch (const NumberedError& e) {
        return FailCommand("import", QString("error %1: %2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        return FailCommand("import", QString::fromUtf8(e.what()));
    }
    if (const QString reason = batch.open(true); !reason.isEmpty())
        return FailCommand("import", reason);
    return CheckOpenStore("import", *s.db);
}
