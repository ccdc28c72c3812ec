#pragma once
// A log that this connection keeps for itself of the keys its writes touch in chosen tables, so that a routine
// which rebuilds figures per key can redo only the keys touched since its last run.
//
// The log and its triggers live in the connection's temporary schema: they are never part of the store file
// and never listed among the register's tables. The log holds every write of this connection from the moment
// its triggers stand; it cannot see writes by another connection or a change of the schema, and says so.

#include <QString>
#include <QStringList>
#include <cstdint>
#include <optional>
#include <vector>

class Database;

struct TouchWatch {
    QString table;       // the watched table
    QString tag;         // what the logged key stands for
    QString keyColumn;   // its old and new value are logged
    QStringList columns; // an update is logged only when it names one of these; empty: every update
};

struct TouchedKey {
    QString tag;
    std::optional<std::int64_t> key; // none for a key that is no whole number (Null, a text, a fraction)
};

struct TouchedSince {
    // False when the log may have missed a change since the last ClearTouched: it was just made (or one of its
    // triggers was missing), another connection has written, the store's schema has changed, or the last caller
    // did not vouch for its run.
    bool trusted = false;
    std::vector<TouchedKey> keys;
    std::int64_t upTo = 0; // the last entry read; ClearTouched removes up to it
    std::int64_t dataVersion = 0;
    std::int64_t schemaVersion = 0;
};

// Makes the log and its triggers where missing, then reads what the log holds.
TouchedSince ReadTouched(Database& store, const QString& log, const std::vector<TouchWatch>& watches);

// Removes the entries read (later ones stay) and records the state the next read is compared with. vouched:
// the caller's run left nothing that the next run must redo in full.
void ClearTouched(Database& store, const QString& log, const TouchedSince& read, bool vouched);
