#include "SqliteCatalog.h"

#include <algorithm>
#include <sqlite3.h>

namespace {

QString text(sqlite3_stmt* s, int column) {
    const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, column));
    return t ? QString::fromUtf8(t, sqlite3_column_bytes(s, column)) : QString();
}

// A read of the schema that cannot fail on a healthy connection; a failure reads as an empty answer.
template <typename RowFn> void eachRow(sqlite3* db, const QString& sql, RowFn fn) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(db, sql.toUtf8().constData(), -1, &s, nullptr) != SQLITE_OK) {
        sqlite3_finalize(s);
        return;
    }
    while (sqlite3_step(s) == SQLITE_ROW)
        fn(s);
    sqlite3_finalize(s);
}

QString quoted(const QString& name) {
    QString q = name;
    q.replace('"', "\"\"");
    return '"' + q + '"';
}

} // namespace

bool EnsureWorkingIndexes(sqlite3* db) {
    struct Wanted {
        const char* table;
        const char* name;    // after the prefix and the table
        QStringList columns; // the first is what is looked up
    };
    // The returns of each open book-out. The issues of one tank, which the recalculation sums for each tank a save
    // touches: the index holds the date and litres too, and the row number after the tank, so that a tank's issues
    // come from it alone and in stored order.
    static const Wanted kWanted[] = {{"EquipmentTrans", "bookoutid", {"bookoutid"}},
                                     {"VecFuel", "tank", {"TankID", "TransID", "Datum", "Litres"}}};
    bool made = false;
    for (const Wanted& w : kWanted) {
        QStringList standing;
        eachRow(db, "PRAGMA table_info(" + quoted(w.table) + ")",
                [&](sqlite3_stmt* s) { standing << text(s, 1).toLower(); });
        bool columnsStand = true;
        QStringList quotedColumns;
        for (const QString& column : w.columns) {
            columnsStand = columnsStand && standing.contains(column.toLower());
            quotedColumns << quoted(column);
        }
        if (!columnsStand)
            continue;
        const QString name = QString(kWorkingIndexPrefix) + QString(w.table).toLower() + "_" + w.name;
        bool exists = false;
        eachRow(db, "SELECT 1 FROM sqlite_master WHERE type = 'index' AND name = '" + name + "'",
                [&](sqlite3_stmt*) { exists = true; });
        if (exists)
            continue;
        // A failure (a full disk, a read-only file) leaves the look-ups slower, never wrong.
        const QString sql =
            "CREATE INDEX " + quoted(name) + " ON " + quoted(w.table) + " (" + quotedColumns.join(", ") + ")";
        made = sqlite3_exec(db, sql.toUtf8().constData(), nullptr, nullptr, nullptr) == SQLITE_OK || made;
    }
    return made;
}

SqliteCatalog::~SqliteCatalog() {
    release();
}

void SqliteCatalog::release() {
    sqlite3_finalize(m_versionStatement);
    m_versionStatement = nullptr;
}

int SqliteCatalog::schemaVersion() const {
    // Asked before every look-up, so the statement is prepared once and run again.
    if (!m_versionStatement &&
        sqlite3_prepare_v2(m_db, "PRAGMA schema_version", -1, &m_versionStatement, nullptr) != SQLITE_OK) {
        sqlite3_finalize(m_versionStatement);
        m_versionStatement = nullptr;
        return -1;
    }
    const int version = sqlite3_step(m_versionStatement) == SQLITE_ROW ? sqlite3_column_int(m_versionStatement, 0) : -1;
    sqlite3_reset(m_versionStatement);
    return version;
}

void SqliteCatalog::invalidate() {
    m_schemaVersion = -1;
}

SqliteCatalog::Hold::Hold(const SqliteCatalog& catalog, int version) : m_catalog(catalog), m_wasHeld(catalog.m_held) {
    m_catalog.refreshTo(version);
    m_catalog.m_held = version != -1;
}

SqliteCatalog::Hold::~Hold() {
    m_catalog.m_held = m_wasHeld;
}

void SqliteCatalog::refreshIfChanged() const {
    if (!m_held)
        refreshTo(schemaVersion());
}

void SqliteCatalog::refreshTo(int version) const {
    if (version == m_schemaVersion && version != -1)
        return;
    m_schemaVersion = version;
    m_tables.clear();
    m_tableOrder.clear();
    m_columns.clear();
    m_translatorColumns.clear();
    eachRow(
        m_db,
        "SELECT name FROM sqlite_schema WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid",
        [&](sqlite3_stmt* s) {
            const QString name = text(s, 0);
            m_tables.insert(name.toLower(), name);
            m_tableOrder << name;
        });
}

bool SqliteCatalog::hasTable(const QString& table) const {
    return !storedTableName(table).isEmpty();
}

QString SqliteCatalog::storedTableName(const QString& table) const {
    refreshIfChanged();
    return m_tables.value(table.toLower());
}

QStringList SqliteCatalog::tableNames() const {
    refreshIfChanged();
    return m_tableOrder;
}

const std::vector<ColumnInfo>& SqliteCatalog::columnInfo(const QString& table) const {
    static const std::vector<ColumnInfo> none;
    const QString stored = storedTableName(table);
    if (stored.isEmpty())
        return none;
    const QString key = stored.toLower();
    auto it = m_columns.find(key);
    if (it != m_columns.end())
        return it->second;
    std::vector<ColumnInfo> cols;
    int primaryKeyColumns = 0;
    eachRow(m_db, "PRAGMA table_info(" + quoted(stored) + ")", [&](sqlite3_stmt* s) {
        ColumnInfo c;
        c.name = text(s, 1);
        c.declared = text(s, 2);
        c.notNull = sqlite3_column_int(s, 3) != 0;
        c.defaultSql = text(s, 4);
        c.primaryKey = sqlite3_column_int(s, 5) != 0;
        primaryKeyColumns += c.primaryKey ? 1 : 0;
        cols.push_back(c);
    });
    // Only a single INTEGER PRIMARY KEY column is SQLite's rowid, and so a counter.
    for (auto& c : cols)
        c.type = JetTypeFromDeclared(c.declared, c.primaryKey && primaryKeyColumns == 1);
    return m_columns.emplace(key, std::move(cols)).first->second;
}

std::vector<SchemaCatalog::Column> SqliteCatalog::columns(const QString& table) const {
    const std::vector<ColumnInfo>& info = columnInfo(table); // refreshes first, so the copy below is current
    const QString key = table.toLower();
    if (const auto found = m_translatorColumns.constFind(key); found != m_translatorColumns.cend())
        return *found;
    std::vector<Column> out;
    for (const auto& c : info)
        out.push_back({c.name, c.type.kind == JetKind::Unknown ? c.declared : JetDeclaredWord(c.type)});
    if (!info.empty())
        m_translatorColumns.insert(key, out);
    return out;
}

int SqliteCatalog::columnIndex(const QString& table, const QString& column) const {
    const auto& cols = columnInfo(table);
    for (size_t i = 0; i < cols.size(); ++i)
        if (cols[i].name.compare(column, Qt::CaseInsensitive) == 0)
            return static_cast<int>(i);
    return -1;
}

QString SqliteCatalog::storedIndexName(const QString& table, const QString& index) {
    return table + "__" + index;
}

std::vector<IndexInfo> SqliteCatalog::indexInfo(const QString& table) const {
    std::vector<IndexInfo> out;
    const QString stored = storedTableName(table);
    if (stored.isEmpty())
        return out;
    eachRow(m_db, "PRAGMA index_list(" + quoted(stored) + ")", [&](sqlite3_stmt* s) {
        IndexInfo i;
        i.storedName = text(s, 1);
        i.unique = sqlite3_column_int(s, 2) != 0;
        if (text(s, 3) != "c") // indexes SQLite made for constraints carry no name of the program's
            return;
        if (i.storedName.startsWith(kWorkingIndexPrefix, Qt::CaseInsensitive))
            return; // the store's own look-up aids are no index of the register's
        const QString prefix = stored + "__";
        i.name = i.storedName.startsWith(prefix, Qt::CaseInsensitive) ? i.storedName.mid(prefix.size()) : i.storedName;
        i.primary = i.unique && i.name.compare("PrimaryKey", Qt::CaseInsensitive) == 0;
        out.push_back(i);
    });
    for (auto& i : out)
        eachRow(m_db, "PRAGMA index_info(" + quoted(i.storedName) + ")",
                [&](sqlite3_stmt* s) { i.fields << text(s, 2); });
    std::sort(out.begin(), out.end(),
              [](const IndexInfo& a, const IndexInfo& b) { return a.name.compare(b.name, Qt::CaseInsensitive) < 0; });
    return out;
}
