#include "TouchLog.h"

#include "Database.h"

#include <QSet>
#include <sqlite3.h>

namespace {

QString Quoted(const QString& name) {
    QString q = name;
    q.replace('"', "\"\"");
    return '"' + q + '"';
}

QString Literal(const QString& text) {
    QString q = text;
    q.replace('\'', "''");
    return '\'' + q + '\'';
}

bool Exec(sqlite3* db, const QString& sql) {
    return sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK;
}

template <typename Visit> bool EachRow(sqlite3* db, const QString& sql, Visit&& visit) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &s, nullptr) != SQLITE_OK) {
        sqlite3_finalize(s);
        return false;
    }
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW)
        visit(s);
    sqlite3_finalize(s);
    return rc == SQLITE_DONE;
}

std::int64_t Pragma(sqlite3* db, const char* sql) {
    std::int64_t v = -1;
    EachRow(db, sql, [&](sqlite3_stmt* s) { v = sqlite3_column_int64(s, 0); });
    return v;
}

QString LogTable(const QString& log) {
    return "orvel_touch_" + log;
}

QString SeenTable(const QString& log) {
    return "orvel_touch_" + log + "_seen";
}

// Makes the triggers that are missing; false when one was missing (the writes before now were not logged) or
// could not be made.
bool EnsureTriggers(sqlite3* db, const QString& log, const std::vector<TouchWatch>& watches) {
    QSet<QString> standing;
    EachRow(db, "SELECT name FROM sqlite_temp_schema WHERE type = 'trigger'", [&](sqlite3_stmt* s) {
        standing.insert(QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 0))));
    });
    // A trigger's statements name their tables unqualified; the temporary schema is searched first.
    const QString into = "INSERT INTO " + Quoted(LogTable(log)) + " (tag, k) VALUES (";
    bool complete = true;
    for (const TouchWatch& w : watches) {
        const QString tag = Literal(w.tag);
        const QString key = Quoted(w.keyColumn);
        const QString onUpdate = w.columns.isEmpty() ? QString("UPDATE") : "UPDATE OF " + [&] {
            QStringList names;
            for (const QString& c : w.columns)
                names << Quoted(c);
            return names.join(", ");
        }();
        const struct {
            const char* suffix;
            QString event;
            QString body;
        } events[] = {
            {"insert", "INSERT", into + tag + ", NEW." + key + ");"},
            {"delete", "DELETE", into + tag + ", OLD." + key + ");"},
            {"update", onUpdate, into + tag + ", OLD." + key + "); " + into + tag + ", NEW." + key + ");"},
        };
        for (const auto& e : events) {
            const QString name = (LogTable(log) + "_" + w.table + "_" + w.tag + "_" + e.suffix).toLower();
            if (standing.contains(name))
                continue;
            complete = false;
            Exec(db, "CREATE TEMP TRIGGER " + Quoted(name) + " AFTER " + e.event + " ON main." + Quoted(w.table) +
                         " BEGIN " + e.body + " END");
        }
    }
    return complete;
}

} // namespace

TouchedSince ReadTouched(Database& store, const QString& log, const std::vector<TouchWatch>& watches) {
    sqlite3* db = store.handle();
    TouchedSince out;
    out.dataVersion = Pragma(db, "PRAGMA data_version");
    out.schemaVersion = Pragma(db, "PRAGMA main.schema_version");
    if (!Exec(db, "CREATE TEMP TABLE IF NOT EXISTS " + Quoted(LogTable(log)) + " (tag TEXT NOT NULL, k)") ||
        !Exec(db, "CREATE TEMP TABLE IF NOT EXISTS " + Quoted(SeenTable(log)) +
                      " (dataVersion INTEGER, schemaVersion INTEGER, vouched INTEGER)"))
        return out;
    const bool complete = EnsureTriggers(db, log, watches);
    bool seen = false;
    EachRow(db, "SELECT dataVersion, schemaVersion, vouched FROM temp." + Quoted(SeenTable(log)), [&](sqlite3_stmt* s) {
        seen = sqlite3_column_int64(s, 0) == out.dataVersion && sqlite3_column_int64(s, 1) == out.schemaVersion &&
               sqlite3_column_int64(s, 2) != 0;
    });
    const bool read = EachRow(db, "SELECT rowid, tag, k FROM temp." + Quoted(LogTable(log)) + " ORDER BY rowid",
                              [&](sqlite3_stmt* s) {
                                  out.upTo = sqlite3_column_int64(s, 0);
                                  TouchedKey key;
                                  key.tag = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 1)));
                                  if (sqlite3_column_type(s, 2) == SQLITE_INTEGER)
                                      key.key = sqlite3_column_int64(s, 2);
                                  out.keys.push_back(key);
                              });
    out.trusted = complete && seen && read && out.dataVersion >= 0 && out.schemaVersion >= 0;
    return out;
}

void ClearTouched(Database& store, const QString& log, const TouchedSince& read, bool vouched) {
    sqlite3* db = store.handle();
    Exec(db, "DELETE FROM temp." + Quoted(LogTable(log)) + " WHERE rowid <= " + QString::number(read.upTo));
    Exec(db, "DELETE FROM temp." + Quoted(SeenTable(log)));
    Exec(db, "INSERT INTO temp." + Quoted(SeenTable(log)) + " VALUES (" + QString::number(read.dataVersion) + ", " +
                 QString::number(read.schemaVersion) + ", " + (vouched ? "1" : "0") + ")");
}
