#include "CommandLine.h"

#include "BatchSession.h"

#include "QueryHelpers.h"
#include "Session.h"
#include "StoreFacts.h"
#include "StoreStartup.h"

#include <cstdio>
#include <exception>

namespace {

QString StoredVersion(Database& db) {
    auto rs = db.OpenRecordset("SELECT * FROM Version", RecordsetType::Snapshot);
    if (rs->Eof())
        return "none";
    return rs->Field("VMajor").toString() + "." + rs->Field("VMinor").toString() + "." +
           rs->Field("VRevision").toString();
}

long long CountAllRows(Database& db) {
    long long rows = 0;
    for (const QString& table : db.TableNames()) {
        auto rs = db.OpenRecordset("select count(*) from [" + table + "]", RecordsetType::Snapshot);
        rows += rs->Field(0).toLong();
    }
    return rows;
}

} // namespace

int RunCheckCommand(const CommandLine& cl) {
    if (!cl.args.isEmpty())
        return FailCommand("check", "check takes no arguments");
    BatchSession batch(cl);
    if (const QString reason = batch.open(true); !reason.isEmpty())
        return FailCommand("check", reason);
    return CheckOpenStore("check", *batch.session.db);
}

int CheckOpenStore(const char* command, Database& db) {
    try {
        // A file checked before and not changed since is known to be intact.
        const StoreFingerprint checked = FingerprintOf(db.Path());
        StoreFacts facts = ReadStoreFacts(db.Path());
        if (!facts.intact) {
            QString reason;
            if (!db.IntegrityCheck(&reason))
                return FailCommand(command, "integrity check failed: " + reason);
            facts.intact = true;
            RecordStoreFacts(db.Path(), checked, facts);
        }
        const qsizetype tables = db.TableNames().size();
        const long long rows = CountAllRows(db);
        const QString version = StoredVersion(db);
        std::printf("%lld tables, %lld rows, schema version %s, ok\n", static_cast<long long>(tables), rows,
                    qPrintable(version));
        std::fflush(stdout);
        return 0;
    } catch (const NumberedError& e) {
        return FailCommand(command, QString("error %1: %2").arg(e.number()).arg(e.description()));
    }
}
