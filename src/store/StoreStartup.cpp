#include "StoreStartup.h"

#include "HomeFolder.h"
#include "OlderSchema.h"
#include "StoreFacts.h"
#include "Vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>

namespace {

QString StoreFileOf(const Session& s) {
    return s.DataPath + "invent.db";
}

// A new store: the older tables first, then one pass of the seventeen steps, as an old file gets at its
// first start. A store that could not be made whole is removed, so that the next start tries again.
// Nobody sees the store before it is made, so the whole making is one transaction.
std::unique_ptr<Database> CreateNewStore(const QString& file) {
    std::unique_ptr<Database> store = Database::Open(file, true);
    try {
        store->BeginTrans();
        CreateOlderSchema(*store);
        RunSchemaSteps(*store);
        store->CommitTrans();
    } catch (...) {
        store.reset();
        QFile::remove(file);
        throw;
    }
    return store;
}

} // namespace

bool AcquireInstanceLock(Session& s) {
    const QString home = s.home.isEmpty() ? HomeFolder() : s.home;
    QDir().mkpath(home);
    auto lock = std::make_unique<QLockFile>(QDir(home).filePath("orvel.lock"));
    // Only a lock whose process has died counts as stale: a running instance may hold it for days.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0))
        return false;
    s.instanceLock = std::move(lock);
    return true;
}

void OpenSessionStore(Session& s) {
    if (s.home.isEmpty())
        s.home = HomeFolder();
    s.DataPath = DataPathOf(s.home);
    if (!QDir().mkpath(s.DataPath))
        throw DbError(3044, "'" + s.DataPath + "' is not a valid path.");
    const QString file = StoreFileOf(s);
    if (QFileInfo::exists(file))
        s.db = Database::Open(file, false);
    else
        s.db = CreateNewStore(file);
}

void OwnerProbe(Database& db) {
    auto rs = db.OpenRecordset("Select * from owner order by name asc", RecordsetType::Snapshot);
    rs->Close();
}

QDateTime GetClosedDate(Database& db) {
    auto rs = db.OpenRecordset("Select * from tblTeDate where TeDateID=2", RecordsetType::Snapshot);
    // The detour through "dd/mm/yyyy" drops any time part.
    if (!rs->Eof())
        return vb::CDate(Value(vb::Format(rs->Field("TeDate"), "dd/mm/yyyy")));
    return vb::CDate(Value("01/01/2000"));
}

void SaveClosedDate(Session& s) {
    auto rs =
        s.db->OpenRecordset("Select * from tblTeDate where TeDateID =" + QString::number(2), RecordsetType::Dynaset);
    if (rs->Eof())
        rs->AddNew();
    else
        rs->Edit();
    rs->SetField("TeDateID", Value(2));
    s.ClosedDateId = static_cast<int>(rs->Field("TeDateID").toLong());
    rs->SetField("TeDate", Value(s.ClosedDate));
    rs->Update();
    rs->Close();
}

void RunStartupSteps(Database& db) {
    const QString file = db.Path();
    const StoreFingerprint before = FingerprintOf(file);
    const StoreFacts known = ReadStoreFacts(file);
    if (known.stepsChangeNothing)
        return;
    const bool quiet = RunSchemaSteps(db);
    if (quiet && before.valid() && FingerprintOf(file) == before)
        RecordStoreFacts(file, before, {true, known.intact});
}

void RepairAtExit(Session& s) {
    const QString file = s.DataPath.isEmpty() ? QString() : StoreFileOf(s);
    s.db.reset();
    if (file.isEmpty() || !QFileInfo::exists(file))
        return;
    try {
        std::unique_ptr<Database> second = Database::Open(file, false);
        second->Repair();
    } catch (...) {
        // A repair failure is silent.
    }
}
