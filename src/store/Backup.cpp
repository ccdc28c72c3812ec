#include "Backup.h"

#include "Database.h"

#include <QDir>
#include <QFileInfo>
#include <sqlite3.h>

namespace {

QString StoreFile(const Session& s) {
    return s.DataPath + kStoreEntryName;
}

// A fresh connection holding the store's write lock (SQLite's reserved lock) for its life: no other connection
// can change the file meanwhile, while readers go on.
class WriteLock {
public:
    explicit WriteLock(const QString& file) {
        if (sqlite3_open_v2(QFile::encodeName(file).constData(), &m_db, SQLITE_OPEN_READWRITE, nullptr) != SQLITE_OK)
            return;
        m_held = sqlite3_exec(m_db, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr) == SQLITE_OK;
    }
    ~WriteLock() {
        if (m_held)
            sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        sqlite3_close_v2(m_db);
    }
    WriteLock(const WriteLock&) = delete;
    WriteLock& operator=(const WriteLock&) = delete;
    bool held() const { return m_held; }

private:
    sqlite3* m_db = nullptr;
    bool m_held = false;
};

bool JournalBeside(const QString& file) {
    return QFileInfo::exists(file + "-journal") || QFileInfo::exists(file + "-wal");
}

} // namespace

void RepairStore(Session& s) {
    try {
        if (s.db) {
            sqlite3* handle = s.db->handle();
            for (sqlite3_stmt* st = sqlite3_next_stmt(handle, nullptr); st; st = sqlite3_next_stmt(handle, st))
                if (sqlite3_stmt_busy(st))
                    sqlite3_reset(st);
        }
        if (s.DataPath.isEmpty() || !QFileInfo::exists(StoreFile(s)))
            return;
        std::unique_ptr<Database> second = Database::Open(StoreFile(s), false);
        second->Repair();
    } catch (...) {
        // A repair failure is silent.
    }
}

bool StoreIsHeld(const QString& storeFile) {
    if (JournalBeside(storeFile))
        return true;
    const WriteLock lock(storeFile);
    return !lock.held();
}

BackupResult BackupStore(Session& s, const QString& folder, const ArchiveProgress& progress) {
    s.db.reset();
    BackupResult result;
    const QString file = StoreFile(s);
    if (JournalBeside(file)) {
        result.outcome = BackupOutcome::StoreHeld;
        return result;
    }
    const WriteLock lock(file);
    if (!lock.held() || JournalBeside(file)) {
        result.outcome = BackupOutcome::StoreHeld;
        return result;
    }
    const QString target = folder.endsWith('/') ? folder + kArchiveName : folder + "/" + kArchiveName;
    result.archive = WriteRar5Archive(target, file, kStoreEntryName, progress);
    return result;
}

void ReopenStore(Session& s) {
    s.db = Database::Open(StoreFile(s), false);
}

QString DefaultBackupFolder(const Session& s) {
    const QString folder = s.DataPath + "Backup";
    if (!QDir().mkpath(folder))
        return QString();
    return folder;
}
