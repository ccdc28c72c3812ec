#include "StoreStartup.h"

#include "Backup.h"

#include "HomeFolder.h"
#include "OlderImport.h"
#include "OlderSchema.h"
#include "SqliteCatalog.h"
#include "StoreFacts.h"
#include "Vb.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLockFile>
#include <algorithm>
#include <sqlite3.h>

namespace {

QString StoreFileOf(const Session& s) {
    return s.DataPath + "invent.db";
}

DbError NotMade(const QString& file) {
    return DbError(3026, QString("Not enough space on disk, or the disk cannot be written: the new store '%1' could "
                                 "not be made.")
                             .arg(file));
}

// A new store: the older tables first, then one pass of the seventeen steps, as an old file gets at its
// first start. It is made under another name and renamed into place once whole, so that a start cut short
// (a failure, a kill, a power cut) leaves no store behind and the next start makes it again. Nobody sees the
// store before it is made, so the whole making is one transaction.
std::unique_ptr<Database> CreateNewStore(const QString& file) {
    const QString making = file + ".new";
    QFile::remove(making);
    QFile::remove(making + "-journal");
    {
        std::unique_ptr<Database> store = Database::Open(making, true);
        QFile::setPermissions(making, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        try {
            store->BeginTrans();
            CreateOlderSchema(*store);
            RunSchemaSteps(*store);
            if (sqlite3_get_autocommit(store->handle()) != 0)
                throw NotMade(file);
            store->CommitTrans();
        } catch (...) {
            // A write the disk refused makes SQLite undo the whole transaction (the steps go on regardless, and
            // what fails later is only a consequence): that is the cause to name.
            const bool undone = sqlite3_get_autocommit(store->handle()) != 0;
            store.reset();
            QFile::remove(making);
            if (undone)
                throw NotMade(file);
            throw;
        }
    }
    if (!QFile::rename(making, file)) {
        QFile::remove(making);
        throw DbError(3026, QString("The new store could not be put in place as '%1'.").arg(file));
    }
    return Database::Open(file, false);
}

// A folder the program makes for itself holds people's names and permits: its owner alone reads it.
bool MakePrivateFolder(const QString& path) {
    if (QFileInfo(path).isDir())
        return true;
    if (!QDir().mkpath(path))
        return false;
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    return true;
}

quint32 HeaderNumber(const QByteArray& header, int at, int bytes) {
    quint32 v = 0;
    for (int i = 0; i < bytes; ++i)
        v = (v << 8) | static_cast<quint8>(header[at + i]);
    return v;
}

DbError NotARegister(const QString& file, const QString& cause) {
    return DbError(3343, QString("'%1' is not a register this program can open: %2.").arg(file, cause));
}

// Before the file is opened: it must be an SQLite file.
void CheckStoreFile(const QString& file) {
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        throw DbError(3051, QString("'%1' cannot be opened: %2.").arg(file, f.errorString()));
    const QByteArray header = f.read(100);
    if (header.size() < 100 || !header.startsWith(QByteArray("SQLite format 3\0", 16)))
        throw NotARegister(file, header.isEmpty() ? "the file is empty" : "the file is not a database");
}

// Once SQLite has opened the file (and rolled back what a program killed half-way through a write left in its
// journal), before anything is written: the file must be whole.
void CheckStoreLength(const QString& file) {
    QFile f(file);
    if (!f.open(QIODevice::ReadOnly))
        throw DbError(3051, QString("'%1' cannot be opened: %2.").arg(file, f.errorString()));
    const QByteArray header = f.read(100);
    if (header.size() < 100)
        throw NotARegister(file, "the file is cut short");
    const quint32 pageSize = HeaderNumber(header, 16, 2) == 1 ? 65536 : HeaderNumber(header, 16, 2);
    const quint32 pages = HeaderNumber(header, 28, 4);
    // The page count is kept in the header by every SQLite of this century; a shorter file was cut off.
    if (pageSize >= 512 && pages > 0 && static_cast<qint64>(pageSize) * pages > f.size())
        throw NotARegister(
            file,
            QString("the file is cut short (%1 bytes of %2)").arg(f.size()).arg(static_cast<qint64>(pageSize) * pages));
}

// Still before anything is written: the file must hold an installation's tables, and be writable.
void CheckStoreTables(Database& db, const QString& file) {
    if (sqlite3_db_readonly(db.handle(), "main") == 1)
        throw DbError(3051, QString("'%1' cannot be written to: the file is read-only.").arg(file));
    const QStringList present = db.TableNames();
    for (const OlderTable& table : OlderTables()) {
        // These the upgrade itself drops or moves away.
        if (table.name == "vdiens" || table.name == "addservices" || table.name == "VecChoice")
            continue;
        if (!present.contains(table.name, Qt::CaseInsensitive))
            throw NotARegister(file, QString("it has no table '%1'").arg(table.name));
        const std::vector<FieldDef> fields = db.Fields(table.name);
        for (const FieldDef& wanted : table.fields) {
            if (wanted.name == "FID" && table.name == "TankRekords")
                continue; // an older file gets it from the version-gated step
            const bool found = std::any_of(fields.begin(), fields.end(), [&](const FieldDef& f) {
                return f.name.compare(wanted.name, Qt::CaseInsensitive) == 0;
            });
            if (!found)
                throw NotARegister(file, QString("its table '%1' has no column '%2'").arg(table.name, wanted.name));
        }
    }
}

} // namespace

bool AcquireInstanceLock(Session& s) {
    const QString home = s.home.isEmpty() ? HomeFolder() : s.home;
    if (!MakePrivateFolder(home))
        throw DbError(3044, QString("The home folder '%1' cannot be made: %2.")
                                .arg(home, QFileInfo(home).exists() ? "a file of that name stands there"
                                                                    : "the folder above it cannot be written"));
    auto lock = std::make_unique<QLockFile>(QDir(home).filePath("orvel.lock"));
    // Only a lock whose process has died counts as stale: a running instance may hold it for days.
    lock->setStaleLockTime(0);
    if (!lock->tryLock(0)) {
        if (lock->error() == QLockFile::LockFailedError)
            return false; // another instance holds it
        throw DbError(3044, QString("The home folder '%1' cannot be written to: the lock file '%2' cannot be made.")
                                .arg(home, QDir(home).filePath("orvel.lock")));
    }
    s.instanceLock = std::move(lock);
    return true;
}

void OpenSessionStore(Session& s) {
    if (s.home.isEmpty())
        s.home = HomeFolder();
    s.DataPath = DataPathOf(s.home);
    if (!MakePrivateFolder(s.DataPath))
        throw DbError(3044, "'" + s.DataPath + "' is not a valid path.");
    const QString file = StoreFileOf(s);
    // SQLite writes its journal beside the store: a folder that takes no new file takes no save either.
    if (!QFileInfo(s.DataPath).isWritable())
        throw DbError(3051, QString("'%1' cannot be written to: the folder is read-only.").arg(s.DataPath));
    // An older installation's file that stands where no store does is taken over first, so that no new, empty
    // store ever hides it.
    if (!QFileInfo::exists(file) && QFileInfo::exists(OlderFileBeside(file)))
        ImportOlderStore(OlderFileBeside(file), file, false, StartImportObserver());
    if (QFileInfo::exists(file)) {
        // A file that is no register, or one cut short, is refused as it is: nothing is written to it.
        CheckStoreFile(file);
        std::unique_ptr<Database> store;
        try {
            store = Database::Open(file, false);
        } catch (const DbError& e) {
            CheckStoreLength(file); // a file cut short says so
            throw NotARegister(file, e.description());
        }
        CheckStoreLength(file);
        CheckStoreTables(*store, file);
        s.db = std::move(store);
    } else {
        s.db = CreateNewStore(file);
    }
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
    EnsureWorkingIndexes(db.handle());
    if (quiet && before.valid() && FingerprintOf(file) == before)
        RecordStoreFacts(file, before, {true, known.intact, known.recalcSettled});
}

void RepairAtExit(Session& s) {
    s.db.reset();
    RepairStore(s);
}
