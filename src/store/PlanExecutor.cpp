#include "PlanExecutor.h"

#include <QHash>
#include <QRegularExpression>
#include <QSet>

namespace {

DbError tableExists(const QString& table) {
    return DbError(3010, QString("Table '%1' already exists.").arg(table));
}
DbError itemNotFound() {
    return DbError(3265, "Item not found in this collection.");
}

// A group of writes that stands or falls together, inside whatever transaction is open.
class Savepoint {
public:
    explicit Savepoint(DatabaseImpl& impl) : m_impl(impl) { m_impl.exec("SAVEPOINT orvel_statement"); }
    ~Savepoint() {
        if (!m_done) {
            m_impl.schemaMayHaveChanged();
            try {
                m_impl.exec("ROLLBACK TO orvel_statement");
                m_impl.exec("RELEASE orvel_statement");
            } catch (const DbError&) {
                // The connection is already in the state the failure left; nothing more to undo.
            }
        }
    }
    void commit() {
        m_impl.exec("RELEASE orvel_statement");
        m_done = true;
    }

private:
    DatabaseImpl& m_impl;
    bool m_done = false;
};

QString columnSql(const QString& name, const JetType& type, bool notNull, const QString& defaultSql) {
    QString sql = QuoteName(name) + ' ' + SqliteColumnDefinition(type, notNull);
    if (!defaultSql.isEmpty() && type.kind != JetKind::Counter && type.kind != JetKind::Bit)
        sql += " DEFAULT " + defaultSql;
    return sql;
}

QString columnSql(const ColumnInfo& c) {
    if (c.type.kind == JetKind::Unknown) // a declared type this store did not write: kept as it is
        return QuoteName(c.name) + (c.declared.isEmpty() ? QString() : ' ' + c.declared) +
               (c.notNull ? " NOT NULL" : "") + (c.defaultSql.isEmpty() ? QString() : " DEFAULT " + c.defaultSql);
    return columnSql(c.name, c.type, c.notNull, c.defaultSql);
}

bool hasCounter(const std::vector<ColumnInfo>& columns) {
    for (const auto& c : columns)
        if (c.type.kind == JetKind::Counter)
            return true;
    return false;
}

// Whether the value SQLite holds is of another class than the type keeps (a text in a number column).
bool ForeignStorage(sqlite3_stmt* statement, int column, const JetType& type) {
    const int storage = sqlite3_column_type(statement, column);
    if (storage == SQLITE_NULL)
        return false;
    if (type.isNumeric() || type.kind == JetKind::Bit)
        return storage == SQLITE_TEXT || storage == SQLITE_BLOB;
    return false;
}

// Makes the table anew with the given columns, copying each row with its values converted to the new
// types (a value that does not convert becomes Null, a Yes/No No), and keeps the table's indexes.
// sources[i] is the old column of new column i, or -1 for a new column.
void rebuildTable(DatabaseImpl& impl, const QString& table, const std::vector<ColumnInfo>& newColumns,
                  const std::vector<int>& sources) {
    const std::vector<ColumnInfo> oldColumns = impl.catalog().columnInfo(table);
    const std::vector<IndexInfo> indexes = impl.catalog().indexInfo(table);
    // The counter goes on after the highest number it ever gave, also when those rows are gone.
    std::int64_t sequence = 0;
    if (hasCounter(oldColumns)) {
        sqlite3_stmt* seq = nullptr;
        const QString sql =
            QString("SELECT seq FROM sqlite_sequence WHERE name = '%1'").arg(QString(table).replace('\'', "''"));
        if (sqlite3_prepare_v2(impl.db(), sql.toUtf8().constData(), -1, &seq, nullptr) == SQLITE_OK &&
            sqlite3_step(seq) == SQLITE_ROW)
            sequence = sqlite3_column_int64(seq, 0);
        sqlite3_finalize(seq);
    }

    Savepoint sp(impl);
    const QString work = "orvel_rebuild_" + table;
    QStringList defs;
    for (const auto& c : newColumns)
        defs << columnSql(c);
    impl.exec("CREATE TABLE " + QuoteName(work) + " (" + defs.join(", ") + ")");

    QStringList oldNames;
    for (const auto& c : oldColumns)
        oldNames << QuoteName(c.name);
    QStringList newNames, marks;
    for (size_t i = 0; i < newColumns.size(); ++i) {
        if (sources[i] < 0 && newColumns[i].type.kind != JetKind::Counter)
            continue; // a new column starts with its default
        newNames << QuoteName(newColumns[i].name);
        marks << "?";
    }
    Statement read = impl.prepare("SELECT " + oldNames.join(", ") + " FROM " + QuoteName(table) + " ORDER BY rowid");
    Statement write = impl.prepare("INSERT INTO " + QuoteName(work) + " (" + newNames.join(", ") + ") VALUES (" +
                                   marks.join(", ") + ")");
    int rc;
    while ((rc = sqlite3_step(read)) == SQLITE_ROW) {
        int parameter = 1;
        for (size_t i = 0; i < newColumns.size(); ++i) {
            const int source = sources[i];
            if (source < 0) {
                if (newColumns[i].type.kind == JetKind::Counter)
                    sqlite3_bind_null(write, parameter++); // the counter numbers the rows present
                continue;
            }
            const JetType& from = oldColumns[static_cast<size_t>(source)].type;
            const JetType& to = newColumns[i].type;
            Value v = ReadColumnValue(read, source, from);
            if (from.kind != to.kind || ForeignStorage(read, source, to)) {
                try {
                    v = ConvertForColumn(v, to);
                } catch (const DbError&) {
                    v = to.kind == JetKind::Bit ? Value(false) : Value::null();
                }
            }
            BindValue(write, parameter++, v);
        }
        impl.runToEnd(write);
        sqlite3_reset(write);
        sqlite3_clear_bindings(write);
    }
    if (rc != SQLITE_DONE)
        impl.fail(rc, "rebuild of " + table);
    read = Statement();
    write = Statement();

    impl.exec("DROP TABLE " + QuoteName(table));
    impl.exec("ALTER TABLE " + QuoteName(work) + " RENAME TO " + QuoteName(table));
    if (sequence > 0)
        impl.exec(QString("UPDATE sqlite_sequence SET seq = max(seq, %1) WHERE name = '%2'")
                      .arg(sequence)
                      .arg(QString(table).replace('\'', "''")));
    QSet<QString> kept;
    for (const auto& c : newColumns)
        kept.insert(c.name.toLower());
    for (const auto& index : indexes) {
        QStringList fields;
        bool complete = true;
        for (const auto& f : index.fields) {
            complete = complete && kept.contains(f.toLower());
            fields << QuoteName(f);
        }
        if (!complete)
            continue;
        impl.exec(
            QString("CREATE %1INDEX %2 ON %3 (%4)")
                .arg(index.unique ? "UNIQUE " : "", QuoteName(index.storedName), QuoteName(table), fields.join(", ")));
    }
    sp.commit();
}

bool isKeyName(const QString& name) {
    const QString n = name.toLower();
    return n == "transid" || n == "id" || n == "iid";
}

JetType typeFromStorage(int storage) {
    switch (storage) {
    case SQLITE_INTEGER:
        return {JetKind::Long, 0};
    case SQLITE_FLOAT:
        return {JetKind::Double, 0};
    case SQLITE_BLOB:
        return {JetKind::Memo, 0};
    default:
        return {JetKind::Text, 255};
    }
}

void selectInto(DatabaseImpl& impl, const SqlitePlan& plan) {
    if (impl.catalog().hasTable(plan.intoTable))
        throw tableExists(plan.intoTable);

    std::vector<ColumnInfo> columns;
    {
        Statement s = impl.prepare(plan.sql);
        const int count = sqlite3_column_count(s);
        QSet<QString> used;
        std::vector<int> unknown;
        for (int c = 0; c < count; ++c) {
            ColumnInfo info;
            info.name = QString::fromUtf8(sqlite3_column_name(s, c));
            if (used.contains(info.name.toLower())) {
                // Two columns of one name (a join's select *): Jet names them after their tables.
                const char* t = sqlite3_column_table_name(s, c);
                QString name = t ? QString::fromUtf8(t) + "." + info.name : info.name;
                for (int n = 1; used.contains(name.toLower()); ++n)
                    name = info.name + QString::number(n);
                info.name = name;
            }
            used.insert(info.name.toLower());
            const char* decl = sqlite3_column_decltype(s, c);
            if (decl) {
                info.type = JetTypeFromDeclared(QString::fromUtf8(decl));
                if (info.type.kind == JetKind::Counter)
                    info.type = {JetKind::Long, 0};
            }
            if (info.type.kind == JetKind::Unknown && !plan.columnTypes.value(c).isEmpty())
                info.type = JetTypeFromWord(plan.columnTypes.value(c));
            if (info.type.kind == JetKind::Unknown)
                unknown.push_back(c);
            columns.push_back(info);
        }
        // Expressions take the type of their first value that is not Null.
        int rc = SQLITE_ROW;
        while (!unknown.empty() && (rc = sqlite3_step(s)) == SQLITE_ROW) {
            for (auto it = unknown.begin(); it != unknown.end();) {
                const int storage = sqlite3_column_type(s, *it);
                if (storage != SQLITE_NULL) {
                    columns[static_cast<size_t>(*it)].type = typeFromStorage(storage);
                    it = unknown.erase(it);
                } else {
                    ++it;
                }
            }
        }
        if (rc != SQLITE_ROW && rc != SQLITE_DONE)
            impl.fail(rc, plan.sql);
        // Still unknown: no row gave a value. A key keeps numbering; anything else holds text.
        for (int c : unknown)
            columns[static_cast<size_t>(c)].type = isKeyName(columns[static_cast<size_t>(c)].name)
                                                       ? JetType{JetKind::Long, 0}
                                                       : JetType{JetKind::Text, 255};
    }

    // The first key-named column of integers numbers new rows, keeping the numbers it copies.
    int key = -1;
    for (size_t i = 0; i < columns.size(); ++i)
        if (isKeyName(columns[i].name)) {
            if (columns[i].type.isInteger())
                key = static_cast<int>(i);
            break;
        }

    auto attempt = [&](bool withKey) {
        Savepoint sp(impl);
        QStringList defs;
        for (size_t i = 0; i < columns.size(); ++i) {
            ColumnInfo c = columns[i];
            if (withKey && static_cast<int>(i) == key)
                c.type = {JetKind::Counter, 0};
            defs << columnSql(c);
        }
        impl.exec("CREATE TABLE " + QuoteName(plan.intoTable) + " (" + defs.join(", ") + ")");
        Statement insert = impl.prepare("INSERT INTO " + QuoteName(plan.intoTable) + " " + plan.sql);
        impl.runToEnd(insert);
        impl.recordsAffected = sqlite3_changes(impl.db());
        sp.commit();
    };
    if (key >= 0) {
        try {
            attempt(true);
            return;
        } catch (const DbError& e) {
            // Copied keys that repeat, are Null-free but not whole numbers: the column stays a plain number.
            if (e.number() != 3022 && e.number() != 3464 && e.number() != 3314)
                throw;
        }
    }
    attempt(false);
}

// The pivot values in the order the dialect layer asks them; Null as a null text.
QStringList pivotValues(DatabaseImpl& impl, const QString& sql) {
    Statement s = impl.prepare(sql);
    QStringList values;
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
        const auto* t = reinterpret_cast<const char*>(sqlite3_column_text(s, 0));
        values << (t ? QString::fromUtf8(t, sqlite3_column_bytes(s, 0)) : QString());
    }
    if (rc != SQLITE_DONE)
        impl.fail(rc, sql);
    return values;
}

// The query with the rowid of its single base table in front, when rows can be written back through it.
QString rowidQuery(DatabaseImpl& impl, const QString& sql, QString* table) {
    static const QRegularExpression readOnlyShape(R"(\b(DISTINCT|GROUP\s+BY|UNION|INTERSECT|EXCEPT|HAVING)\b)",
                                                  QRegularExpression::CaseInsensitiveOption);
    static const QRegularExpression leadingSelect(R"(^\s*SELECT\s)", QRegularExpression::CaseInsensitiveOption);
    const auto m = leadingSelect.match(sql);
    if (!m.hasMatch() || readOnlyShape.match(sql).hasMatch())
        return QString();
    QString origin;
    {
        Statement s = impl.prepare(sql);
        const int count = sqlite3_column_count(s);
        for (int c = 0; c < count; ++c) {
            const char* t = sqlite3_column_table_name(s, c);
            if (!t)
                return QString();
            const QString name = QString::fromUtf8(t);
            if (origin.isEmpty())
                origin = name;
            else if (origin.compare(name, Qt::CaseInsensitive) != 0)
                return QString();
        }
    }
    if (origin.isEmpty())
        return QString();
    // Plain rowid serves a single table; a join or an alias needs it qualified.
    QStringList qualifiers = {QString(), QuoteName(origin) + "."};
    // One pattern per table, made once: GetScalar and every dynaset of the register come through here.
    static QHash<QString, QRegularExpression> aliasPatterns;
    auto pattern = aliasPatterns.constFind(origin);
    if (pattern == aliasPatterns.cend())
        pattern = aliasPatterns.insert(
            origin, QRegularExpression(
                        QString(R"((?:FROM|JOIN)\s+(?:"%1"|\[%1\]|%1)\s+(?:AS\s+)?(\[[^\]]+\]|"[^"]+"|[A-Za-z_]\w*))")
                            .arg(QRegularExpression::escape(origin)),
                        QRegularExpression::CaseInsensitiveOption));
    const QRegularExpression& aliasOf = *pattern;
    static const QStringList keywords = {"where", "inner", "left",  "right", "join",    "on",    "order",
                                         "group", "union", "limit", "cross", "natural", "outer", "having"};
    if (const auto a = aliasOf.match(sql); a.hasMatch() && !keywords.contains(a.captured(1).toLower()))
        qualifiers << a.captured(1) + ".";
    for (const QString& qualifier : qualifiers) {
        const QString withRowid =
            sql.left(m.capturedEnd()) + qualifier + "rowid AS orvel_rowid_, " + sql.mid(m.capturedEnd());
        sqlite3_stmt* probe = nullptr;
        const int rc = sqlite3_prepare_v2(impl.db(), withRowid.toUtf8().constData(), -1, &probe, nullptr);
        Statement owned(probe);
        if (rc != SQLITE_OK || sqlite3_column_count(probe) < 1 ||
            QString::fromUtf8(sqlite3_column_name(probe, 0)) != "orvel_rowid_")
            continue;
        const char* first = sqlite3_column_table_name(probe, 0);
        if (!first || origin.compare(QString::fromUtf8(first), Qt::CaseInsensitive) != 0)
            continue;
        *table = origin;
        return withRowid;
    }
    return QString();
}

} // namespace

JetType JetTypeOfSpec(const JetColumnSpec& spec) {
    if (spec.autoIncrement)
        return {JetKind::Counter, 0};
    const JetType t = JetTypeFromWord(spec.type, spec.size);
    if (t.kind == JetKind::Unknown)
        throw DbError(3259, QString("Invalid field data type '%1'.").arg(spec.type));
    return t;
}

void CreateTable(DatabaseImpl& impl, const QString& table, const std::vector<JetColumnSpec>& columns) {
    if (impl.catalog().hasTable(table))
        throw tableExists(table);
    if (columns.empty())
        throw DbError(3283, "A table needs at least one field.");
    QSet<QString> names;
    QStringList defs, primary;
    bool rowidKey = false;
    for (const auto& spec : columns) {
        if (names.contains(spec.name.toLower()))
            throw DbError(3191, QString("Cannot define field '%1' more than once.").arg(spec.name));
        names.insert(spec.name.toLower());
        JetType type = JetTypeOfSpec(spec);
        if (type.kind == JetKind::Counter) {
            if (rowidKey)
                type = {JetKind::Long, 0}; // SQLite numbers one column per table
            rowidKey = true;
        } else if (spec.primaryKey) {
            primary << QuoteName(spec.name);
        }
        defs << columnSql(spec.name, type, spec.notNull || spec.primaryKey, spec.defaultSql);
    }
    if (!primary.isEmpty() && !rowidKey)
        defs << "PRIMARY KEY (" + primary.join(", ") + ")";
    impl.exec("CREATE TABLE " + QuoteName(table) + " (" + defs.join(", ") + ")");
}

void AddColumn(DatabaseImpl& impl, const QString& table, const JetColumnSpec& column) {
    const QString stored = impl.requireTable(table, 3376);
    if (impl.catalog().columnIndex(stored, column.name) >= 0)
        throw DbError(3380, QString("Field '%1' already exists in table '%2'.").arg(column.name, table));
    const JetType type = JetTypeOfSpec(column);
    if (type.kind == JetKind::Counter) {
        std::vector<ColumnInfo> columns = impl.catalog().columnInfo(stored);
        if (hasCounter(columns)) {
            // The table numbers its rows already: the new column takes the row numbers once.
            impl.exec("ALTER TABLE " + QuoteName(stored) + " ADD COLUMN " +
                      columnSql(column.name, {JetKind::Long, 0}, false, {}));
            impl.exec("UPDATE " + QuoteName(stored) + " SET " + QuoteName(column.name) + " = rowid");
            return;
        }
        std::vector<int> sources;
        for (size_t i = 0; i < columns.size(); ++i)
            sources.push_back(static_cast<int>(i));
        ColumnInfo added;
        added.name = column.name;
        added.type = type;
        added.primaryKey = true;
        columns.push_back(added);
        sources.push_back(-1);
        rebuildTable(impl, stored, columns, sources);
        return;
    }
    // SQLite adds a NOT NULL column only with a default; a Yes/No column has one.
    impl.exec("ALTER TABLE " + QuoteName(stored) + " ADD COLUMN " + columnSql(column.name, type, false, QString()));
}

namespace {

// A condition that holds for a stored value the column's type would have to convert: a text (or a fraction in a
// whole-number column) where a number belongs, or a datetime text not in the store's own form. Plain comparisons,
// no function calls, so that a scan stays close to SQLite's own speed: numbers sort below every text.
QString ForeignValueCondition(const QString& column, const JetType& type) {
    const QString c = QuoteName(column);
    switch (type.kind) {
    case JetKind::Short:
    case JetKind::Long:
    case JetKind::Counter:
    case JetKind::Bit:
        return c + " <> CAST(" + c + " AS INTEGER)";
    case JetKind::Single:
    case JetKind::Double:
    case JetKind::Currency:
        return c + " >= ''";
    case JetKind::DateTime:
        return c + " IS NOT NULL AND NOT (typeof(" + c + ") = 'text' AND " + c +
               " GLOB '[0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9] [0-9][0-9]:[0-9][0-9]:[0-9][0-9]')";
    case JetKind::Text:
    case JetKind::Memo:
    case JetKind::Unknown:
        break;
    }
    return QString(); // a text column takes any value as text
}

bool AnyRowWhere(DatabaseImpl& impl, const QString& table, const QString& condition) {
    Statement probe = impl.prepare("SELECT 1 FROM " + QuoteName(table) + " WHERE " + condition + " LIMIT 1");
    const int rc = sqlite3_step(probe);
    if (rc != SQLITE_ROW && rc != SQLITE_DONE)
        impl.fail(rc, "scan of " + table);
    return rc == SQLITE_ROW;
}

// Whether any stored value of the column is one its type would have to convert. One scan answers for every column
// of the table, and the answer stands until the store changes: the start checks six columns of the fuel table.
bool HoldsForeignValue(DatabaseImpl& impl, const QString& table, int column) {
    const std::vector<ColumnInfo>& columns = impl.catalog().columnInfo(table);
    const QString own =
        ForeignValueCondition(columns[static_cast<size_t>(column)].name, columns[static_cast<size_t>(column)].type);
    if (own.isEmpty())
        return false;
    DatabaseImpl::ForeignValueScan& scan = impl.foreignScans[table.toLower()];
    const auto stamp = impl.StoreStamp();
    if (scan.stamp != stamp || scan.columns != columns.size()) {
        QStringList conditions;
        for (const ColumnInfo& c : columns)
            if (const QString condition = ForeignValueCondition(c.name, c.type); !condition.isEmpty())
                conditions << "(" + condition + ")";
        scan.anyForeign = AnyRowWhere(impl, table, conditions.join(" OR "));
        scan.stamp = stamp;
        scan.columns = columns.size();
    }
    // A table found clean answers for each column; otherwise the column is asked on its own (a rebuild follows).
    return scan.anyForeign && AnyRowWhere(impl, table, own);
}

// Whether changing the column to the given definition would leave the table as it is: the same type, width and
// Null rule, no default to drop, and no stored value to convert.
bool AlterChangesNothing(DatabaseImpl& impl, const QString& table, int at, const JetType& type, bool notNull) {
    const ColumnInfo& now = impl.catalog().columnInfo(table)[static_cast<size_t>(at)];
    const bool sameType = now.type.kind == type.kind && (type.kind != JetKind::Text || now.type.size == type.size);
    const bool noDefault = now.defaultSql.isEmpty() || type.kind == JetKind::Bit;
    if (!sameType || now.notNull != notNull || !noDefault || now.primaryKey)
        return false;
    return !HoldsForeignValue(impl, table, at);
}

} // namespace

void AlterColumn(DatabaseImpl& impl, const QString& table, const JetColumnSpec& column) {
    const QString stored = impl.requireTable(table, 3376);
    const int at = impl.catalog().columnIndex(stored, column.name);
    if (at < 0)
        throw itemNotFound();
    std::vector<ColumnInfo> columns = impl.catalog().columnInfo(stored);
    const JetType type = JetTypeOfSpec(column);
    if (AlterChangesNothing(impl, stored, at, type, column.notNull))
        return; // the start runs its type repairs every time: a column already right is only checked
    std::vector<int> sources;
    for (size_t i = 0; i < columns.size(); ++i)
        sources.push_back(static_cast<int>(i));
    ColumnInfo& changed = columns[static_cast<size_t>(at)];
    changed.type = type;
    changed.notNull = column.notNull;
    changed.defaultSql.clear();
    rebuildTable(impl, stored, columns, sources);
}

void DropColumn(DatabaseImpl& impl, const QString& table, const QString& column) {
    const QString stored = impl.requireTable(table, 3376);
    const int at = impl.catalog().columnIndex(stored, column);
    if (at < 0)
        throw itemNotFound();
    for (const auto& index : impl.catalog().indexInfo(stored))
        for (const auto& f : index.fields)
            if (f.compare(column, Qt::CaseInsensitive) == 0)
                throw DbError(3280, "Cannot delete a field that is part of an index or is needed by the system.");
    std::vector<ColumnInfo> columns = impl.catalog().columnInfo(stored);
    if (columns.size() == 1)
        throw DbError(3280, "Cannot delete the only field of a table.");
    std::vector<int> sources;
    std::vector<ColumnInfo> kept;
    for (size_t i = 0; i < columns.size(); ++i) {
        if (static_cast<int>(i) == at)
            continue;
        kept.push_back(columns[i]);
        sources.push_back(static_cast<int>(i));
    }
    rebuildTable(impl, stored, kept, sources);
}

void DropTable(DatabaseImpl& impl, const QString& table) {
    const QString stored = impl.requireTable(table, 3376);
    impl.exec("DROP TABLE " + QuoteName(stored));
}

void CreateIndex(DatabaseImpl& impl, const QString& table, const QString& name, const QStringList& fields, bool unique,
                 bool primary) {
    const QString stored = impl.catalog().storedTableName(table);
    if (stored.isEmpty())
        throw DbError(3078, QString("Cannot find the input table or query '%1'.").arg(table));
    for (const auto& index : impl.catalog().indexInfo(stored)) {
        if (index.name.compare(name, Qt::CaseInsensitive) == 0)
            throw DbError(3284, "Index already exists.");
        if (primary && index.primary)
            throw DbError(3283, "Primary key already exists.");
    }
    if (fields.isEmpty())
        throw DbError(3265, "Item not found in this collection.");
    QStringList quoted;
    for (const auto& f : fields) {
        const int at = impl.catalog().columnIndex(stored, f);
        if (at < 0)
            throw itemNotFound();
        quoted << QuoteName(impl.catalog().columnInfo(stored)[static_cast<size_t>(at)].name);
    }
    impl.exec(QString("CREATE %1INDEX %2 ON %3 (%4)")
                  .arg(unique || primary ? "UNIQUE " : "", QuoteName(SqliteCatalog::storedIndexName(stored, name)),
                       QuoteName(stored), quoted.join(", ")));
}

void DropIndex(DatabaseImpl& impl, const QString& table, const QString& name) {
    const QString stored = impl.requireTable(table, 3376);
    for (const auto& index : impl.catalog().indexInfo(stored))
        if (index.name.compare(name, Qt::CaseInsensitive) == 0) {
            impl.exec("DROP INDEX " + QuoteName(index.storedName));
            return;
        }
    throw itemNotFound();
}

namespace {

void RunPlan(DatabaseImpl& impl, const SqlitePlan& plan) {
    switch (plan.kind) {
    case SqlitePlan::Kind::Query:
    case SqlitePlan::Kind::Crosstab:
        throw DbError(3065, "Cannot execute a select query.");
    case SqlitePlan::Kind::Command: {
        const QByteArray utf8 = plan.sql.toUtf8();
        const char* tail = utf8.constData();
        int changes = 0;
        while (tail && *tail) {
            sqlite3_stmt* s = nullptr;
            const int rc = sqlite3_prepare_v2(impl.db(), tail, -1, &s, &tail);
            Statement owned(s);
            if (rc != SQLITE_OK)
                impl.fail(rc, plan.sql);
            if (!s)
                break;
            impl.runToEnd(owned);
            changes += sqlite3_changes(impl.db());
        }
        impl.recordsAffected = changes;
        return;
    }
    case SqlitePlan::Kind::SelectInto:
        selectInto(impl, plan);
        return;
    case SqlitePlan::Kind::CreateTable:
        CreateTable(impl, plan.table, plan.columns);
        return;
    case SqlitePlan::Kind::AddColumn:
        if (plan.columns.empty())
            throw DbError(3293, "Syntax error in ALTER TABLE statement.");
        AddColumn(impl, plan.table, plan.columns.front());
        return;
    case SqlitePlan::Kind::AlterColumn:
        if (plan.columns.empty())
            throw DbError(3293, "Syntax error in ALTER TABLE statement.");
        AlterColumn(impl, plan.table, plan.columns.front());
        return;
    case SqlitePlan::Kind::DropColumn:
        DropColumn(impl, plan.table, plan.column);
        return;
    case SqlitePlan::Kind::DropTable:
        DropTable(impl, plan.table);
        return;
    case SqlitePlan::Kind::CreateIndex:
        CreateIndex(impl, plan.table, plan.indexName, plan.indexFields, plan.unique, plan.primary);
        return;
    case SqlitePlan::Kind::DropIndex:
        DropIndex(impl, plan.table, plan.indexName);
        return;
    }
}

} // namespace

void ExecutePlan(DatabaseImpl& impl, const SqlitePlan& plan) {
    impl.recordsAffected = 0;
    const bool definition = plan.kind != SqlitePlan::Kind::Command && plan.kind != SqlitePlan::Kind::Query &&
                            plan.kind != SqlitePlan::Kind::Crosstab;
    if (!definition) {
        RunPlan(impl, plan);
        return;
    }
    // Whether a definition goes through or fails half-way, what was read of the schema is read again.
    struct Forget {
        DatabaseImpl& impl;
        ~Forget() { impl.schemaMayHaveChanged(); }
    } forget{impl};
    RunPlan(impl, plan);
}

ResultSet QueryPlan(DatabaseImpl& impl, const SqlitePlan& plan, bool withRowid, QString* updatableTable) {
    if (plan.kind == SqlitePlan::Kind::Crosstab) {
        if (!plan.crosstabSql)
            throw DbError(3000, "A crosstab without its final query.");
        return impl.readAll(plan.crosstabSql(pivotValues(impl, plan.pivotValuesSql)));
    }
    if (plan.kind != SqlitePlan::Kind::Query)
        throw DbError(3219, "Invalid operation.");
    if (withRowid) {
        QString table;
        const QString sql = rowidQuery(impl, plan.sql, &table);
        if (!sql.isEmpty()) {
            if (updatableTable)
                *updatableTable = table;
            return impl.readAll(sql, true, plan.columnTypes);
        }
    }
    return impl.readAll(plan.sql, false, plan.columnTypes);
}
