#pragma once
// The store's repair and its backup into "Inven.rar", without widgets: the backup screen and the batch command
// share them.

#include "Rar5Archive.h"
#include "Session.h"

#include <QString>

inline const QString kArchiveName = QStringLiteral("Inven.rar");
inline const QString kStoreEntryName = QStringLiteral("invent.db");
// Shown when another user or program still has the store.
inline const QString kStoreHeldMessage = QStringLiteral("Die Rugsteun kan nie voltooi word nie,\n"
                                                        "want 'n gebruiker is nog besig daarmee.\n"
                                                        "Maak asseblief alle ander kaarte programme toe.");

// The repair step: every statement still open on s.db is reset (an open one's read lock would make VACUUM fail),
// then a second connection runs the integrity check and VACUUM. Errors are ignored.
void RepairStore(Session& s);

// Whether another writer has the store file: a journal or write-ahead log beside it, or a write lock refused to a
// fresh connection. Only for a store this session has closed.
bool StoreIsHeld(const QString& storeFile);

enum class BackupOutcome { Written, StoreHeld };

struct BackupResult {
    BackupOutcome outcome = BackupOutcome::Written;
    ArchiveResult archive;
};

// Closes s.db, checks that no one else has the store, and writes "Inven.rar" in `folder` holding the store as
// "invent.db". While the archive is written the store is kept from other writers. The caller opens s.db again.
// Throws ArchiveError when the archive cannot be written (the old one is then left whole).
BackupResult BackupStore(Session& s, const QString& folder, const ArchiveProgress& progress = {});

// Opens s.db again after a backup, as the start opens it.
void ReopenStore(Session& s);

// The default folder of backups, made when missing: <DataPath>Backup. Empty when it cannot be made.
QString DefaultBackupFolder(const Session& s);
