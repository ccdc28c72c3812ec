#include "CommandLine.h"

#include "QueryHelpers.h"
#include "Session.h"
#include "StoreStartup.h"

#include <cstdio>
#include <exception>

namespace {

// Resets the current session when the command ends, whichever way it ends.
struct SessionScope {
    explicit SessionScope(Session& s) { SetCurrentSession(&s); }
    ~SessionScope() { SetCurrentSession(nullptr); }
    SessionScope(const SessionScope&) = delete;
    SessionScope& operator=(const SessionScope&) = delete;
};

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

int Fail(const QString& reason) {
    std::fprintf(stderr, "orvel check: %s\n", qPrintable(reason));
    return 1;
}

} // namespace

int RunCheckCommand(const CommandLine& cl) {
    if (!cl.args.isEmpty())
        return Fail("check takes no arguments");
    Session s;
    s.home = cl.home;
    SessionScope scope(s);
    if (!AcquireInstanceLock(s)) {
        std::fprintf(stderr, "The Orvel Module is already open!\n");
        return 1;
    }
    try {
        OpenSessionStore(s);
        CreateVersionTable(*s.db);
        CheckVersion(*s.db);
        OwnerProbe(*s.db);
        s.ClosedDate = GetClosedDate(*s.db);
        RunSchemaSteps(*s.db);

        QString reason;
        if (!s.db->IntegrityCheck(&reason))
            return Fail("integrity check failed: " + reason);
        const qsizetype tables = s.db->TableNames().size();
        const long long rows = CountAllRows(*s.db);
        const QString version = StoredVersion(*s.db);
        std::printf("%lld tables, %lld rows, schema version %s, ok\n", static_cast<long long>(tables), rows,
                    qPrintable(version));
        std::fflush(stdout);
        return 0;
    } catch (const NumberedError& e) {
        return Fail(QString("error %1: %2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        return Fail(QString::fromUtf8(e.what()));
    }
}
