#pragma once
// What is known of the store file exactly as it stands, so that work whose outcome is already known for these
// very bytes is not done again: the start-up steps that changed nothing, an integrity check that passed.
//
// The facts sit beside the store ("invent.db.checked") with the fingerprint of the file they were found on: its
// size, its time of change, and SQLite's own change counter and page count from the file's header, which every
// committed write moves. A file that has changed in any way has no facts.
// (Within a run, Database::UnchangedSince answers the same question without reading the file.)

#include <QString>
#include <QtGlobal>

struct StoreFingerprint {
    qint64 size = -1;
    qint64 modifiedMs = 0;
    quint32 changeCounter = 0;
    quint32 pageCount = 0;

    bool valid() const { return size >= 0; }
    bool operator==(const StoreFingerprint&) const = default;
};

// Invalid when the file cannot be read, is no SQLite file, or has a journal beside it (a write under way or
// left by a crash).
StoreFingerprint FingerprintOf(const QString& storeFile);

struct StoreFacts {
    bool stepsChangeNothing = false; // the start-up steps ran on this file, wrote nothing and showed nothing
    bool intact = false;             // the integrity check passed on this file
    bool recalcSettled = false;      // a recalculation on this file found nothing to rewrite
};

StoreFacts ReadStoreFacts(const QString& storeFile); // none where the file has changed
void RecordStoreFacts(const QString& storeFile, const StoreFingerprint& found, const StoreFacts& facts); // best effort
QString StoreFactsFile(const QString& storeFile);
