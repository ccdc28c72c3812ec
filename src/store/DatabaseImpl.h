#pragma once
// The store's private side: the SQLite connection, prepared statements, and the mapping of SQLite's
// failures to Jet's error numbers.

#include "Database.h"
#include "SqliteCatalog.h"

#include <QHash>
#include <QString>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <sqlite3.h>
#include <vector>

// A prepared statement, finalized when it goes out of scope.
class Statement {
public:
    Statement() = default;
    Statement(sqlite3_stmt* s) : m_stmt(s) {}
    ~Statement() { sqlite3_finalize(m_stmt); }
    Statement(Statement&& o) noexcept : m_stmt(o.m_stmt) { o.m_stmt = nullptr; }
    Statement& operator=(Statement&& o) noexcept {
        if (this != &o) {
            sqlite3_finalize(m_stmt);
            m_stmt = o.m_stmt;
            o.m_stmt = nullptr;
        }
        return *this;
    }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    sqlite3_stmt* get() const { return m_stmt; }
    operator sqlite3_stmt*() const { return m_stmt; }

private:
    sqlite3_stmt* m_stmt = nullptr;
};

// Rows read into memory with their columns' names and types; rowids when asked for.
struct ResultSet {
    QStringList names;
    std::vector<JetType> types;
    std::vector<QString> originTables; // the table each column comes from, empty for expressions
    std::vector<QString> originColumns;
    std::vector<std::vector<Value>> rows;
    std::vector<std::int64_t> rowids; // filled when the query carried the base table's rowid
};

class DatabaseImpl {
public:
    explicit DatabaseImpl(sqlite3* db, QString path) : m_db(db), m_path(std::move(path)), m_catalog(db) {}
    ~DatabaseImpl() {
        m_catalog.release();
        sqlite3_close_v2(m_db);
    }

    sqlite3* db() const { return m_db; }
    const QString& path() const { return m_path; }
    SqliteCatalog& catalog() { return m_catalog; }

    // What the dialect layer makes of a statement. A text met before under the same schema is not parsed again:
    // the routines that run one statement per row pay the translation once.
    std::shared_ptr<const SqlitePlan> translate(const QString& statement);
    // After a definition or a rollback: what was read or translated may no longer hold.
    void schemaMayHaveChanged();
    int translationsMade = 0; // statements parsed and emitted since the store opened, for tests of the cache

    // Throws the DbError that SQLite's failure stands for.
    Statement prepare(const QString& sql) const;
    void exec(const QString& sql) const; // runs every statement in the text
    // Steps a statement to its end (SQLITE_DONE); throws on failure.
    void runToEnd(sqlite3_stmt* statement) const;
    [[noreturn]] void fail(int rc, const QString& context = QString()) const;

    // Runs a query and reads every row. When withRowid is set, the first result column is the base
    // table's rowid and goes to rowids instead of the rows. typeHints give the Jet type words of result
    // columns that SQLite declares no type for (an expression whose type the statement fixes).
    ResultSet readAll(const QString& sql, bool withRowid = false, const QStringList& typeHints = {}) const;

    // The table as stored, or DbError: 3078 for a query's source, 3376 for a definition's target.
    QString requireTable(const QString& table, int number = 3078) const;

    int recordsAffected = 0;
    int transactionDepth = 0;

    // Whether a table holds any value of another class than its column's type keeps, as one scan found it; valid
    // while nothing has written to the store since (see StoreStamp).
    struct ForeignValueScan {
        std::array<std::int64_t, 3> stamp{-1, -1, -1};
        size_t columns = 0;
        bool anyForeign = false;
    };
    std::map<QString, ForeignValueScan> foreignScans; // lower-case table name
    std::map<QString, std::array<std::int64_t, 3>> unchangedMarks;
    std::function<void()> durableObserver;
    bool changedInTransaction = false;
    // Changes by this connection, changes by any other, and the schema's version: equal stamps, the same store.
    std::array<std::int64_t, 3> StoreStamp() const;

private:
    sqlite3* m_db;
    QString m_path;
    SqliteCatalog m_catalog;
    int m_plansSchemaVersion = -1;
    QHash<QString, std::shared_ptr<const SqlitePlan>> m_plans;
};

// SQLite's message for a failure in Jet's terms.
DbError JetErrorFromSqlite(int extendedCode, const QString& message);
