#pragma once
// What the store knows of its own tables: names (case-blind, as Jet treats them), columns with their Jet
// types, and the named indexes. Read from SQLite's schema and cached until the schema changes.

#include "JetTypes.h"
#include "sql/JetTranslator.h"

#include <QHash>
#include <QString>
#include <QStringList>
#include <map>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

// Indexes the store keeps for its own look-ups, where a statement the register runs would otherwise scan a
// table once per row (the returns of each open book-out, the issues of one tank). They carry this prefix, are never
// listed as the register's indexes, and the start-up makes them after its steps, so that a table rebuilt by a step gets
// its own again.
inline constexpr char kWorkingIndexPrefix[] = "orvel_index_";
// Makes the working indexes that are missing, on tables and columns that stand; true when one was made.
bool EnsureWorkingIndexes(sqlite3* db);

struct ColumnInfo {
    QString name;
    QString declared; // as SQLite keeps it
    JetType type;
    bool notNull = false;
    QString defaultSql; // the default expression as written, empty for none
    bool primaryKey = false;
};

struct IndexInfo {
    QString storedName; // SQLite's name: "<table>__<name>", since SQLite's index names are not per table
    QString name;       // the name as the program gave it
    QStringList fields;
    bool unique = false;
    bool primary = false;
};

class SqliteCatalog : public SchemaCatalog {
public:
    explicit SqliteCatalog(sqlite3* db) : m_db(db) {}
    ~SqliteCatalog() override;
    SqliteCatalog(const SqliteCatalog&) = delete;
    SqliteCatalog& operator=(const SqliteCatalog&) = delete;

    bool hasTable(const QString& table) const override;
    std::vector<Column> columns(const QString& table) const override;

    // The table's name as stored, found case-blind; empty when there is no such table.
    QString storedTableName(const QString& table) const;
    QStringList tableNames() const;
    const std::vector<ColumnInfo>& columnInfo(const QString& table) const; // empty for a missing table
    std::vector<IndexInfo> indexInfo(const QString& table) const;
    int columnIndex(const QString& table, const QString& column) const; // case-blind; -1 when missing

    static QString storedIndexName(const QString& table, const QString& index);

    // SQLite's schema version as the connection sees it now (-1 when it cannot be read). What the catalog holds,
    // and what was translated against it, stands while this stays the same.
    int schemaVersion() const;
    // Forgets what was read, for a change the version may not show (a rollback brings an earlier number back).
    void invalidate();
    // Finalizes the catalog's own statement; called before the connection closes.
    void release();

    // For the length of one translation, which asks about many tables and columns and changes nothing: the version
    // is read once, and the catalog answers from what it holds for that version.
    class Hold {
    public:
        explicit Hold(const SqliteCatalog& catalog, int version);
        ~Hold();
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;

    private:
        const SqliteCatalog& m_catalog;
        bool m_wasHeld;
    };

private:
    void refreshIfChanged() const;
    void refreshTo(int version) const;

    sqlite3* m_db;
    mutable int m_schemaVersion = -1;
    mutable QHash<QString, QString> m_tables; // lower-case name -> stored name
    mutable QStringList m_tableOrder;
    // lower-case name -> columns; a std::map, so that a reference handed out survives later look-ups
    mutable std::map<QString, std::vector<ColumnInfo>> m_columns;
    mutable QHash<QString, std::vector<Column>> m_translatorColumns; // lower-case name -> columns() as handed out
    mutable sqlite3_stmt* m_versionStatement = nullptr;
    mutable bool m_held = false;
};
