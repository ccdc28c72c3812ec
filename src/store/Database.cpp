#include "Database.h"

#include "DatabaseImpl.h"
#include "PlanExecutor.h"
#include "sql/JetFunctions.h"
#include "sql/JetTranslator.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace {

QString quotedWord(const QString& message, const QString& after) {
    const int at = message.indexOf(after);
    return at < 0 ? QString() : message.mid(at + after.size()).trimmed();
}

} // namespace

DbError JetErrorFromSqlite(int extendedCode, const QString& message) {
    const int primary = extendedCode & 0xff;
    const QString lower = message.toLower();
    // Errors raised by the store's own functions carry Jet's or VB's number.
    int number = 0;
    QString description;
    if (JetErrorFromFunctionMessage(message, &number, &description))
        return DbError(number, description);
    if (lower.contains("division by zero"))
        return DbError(11, "Division by zero");
    if (extendedCode == SQLITE_CONSTRAINT_UNIQUE || extendedCode == SQLITE_CONSTRAINT_PRIMARYKEY)
        return DbError(3022, "The changes you requested to the table were not successful because they would create "
                             "duplicate values in the index, primary key, or relationship. Change the data in the "
                             "field or fields that contain duplicate data, remove the index, or redefine the index "
                             "to permit duplicate entries and try again.");
    if (extendedCode == SQLITE_CONSTRAINT_NOTNULL) {
        const QString field = quotedWord(message, "NOT NULL constraint failed:").section('.', -1);
        return DbError(3314, QString("The field '%1' cannot contain a Null value.").arg(field));
    }
    if (lower.startsWith("no such table:")) {
        QString table = quotedWord(message, ":");
        if (table.startsWith("main."))
            table = table.mid(5);
        return DbError(3078, QString("Cannot find the input table or query '%1'.").arg(table));
    }
    if (lower.startsWith("no such column:"))
        return DbError(
            3061,
            QString("Too few parameters. Expected 1. (unknown field or name '%1')").arg(quotedWord(message, ":")));
    if (lower.startsWith("ambiguous column name:"))
        return DbError(3079, QString("The specified field '%1' could refer to more than one table listed in the "
                                     "FROM clause of your SQL statement.")
                                 .arg(quotedWord(message, ":")));
    if (lower.contains("already exists") && lower.startsWith("table"))
        return DbError(3010, QString("Table '%1' already exists.").arg(message.section(' ', 1, 1)));
    if (lower.contains("already exists") && lower.startsWith("index"))
        return DbError(3284, "Index already exists.");
    if (lower.startsWith("duplicate column name:"))
        return DbError(3191, QString("Cannot define field '%1' more than once.").arg(quotedWord(message, ":")));
    if (lower.contains("syntax error") || lower.contains("incomplete input") || lower.contains("unrecognized token"))
        return DbError(3075, "Syntax error in query expression: " + message);
    if (primary == SQLITE_MISMATCH || lower.contains("datatype mismatch"))
        return DbError(3464, "Data type mismatch in criteria expression.");
    if (primary == SQLITE_BUSY || primary == SQLITE_LOCKED)
        return DbError(3260, "Could not update; currently locked.");
    if (primary == SQLITE_READONLY)
        return DbError(3027, "Cannot update. Database or object is read-only.");
    if (primary == SQLITE_CORRUPT || primary == SQLITE_NOTADB)
        return DbError(3343, "Unrecognized database format: " + message);
    if (primary == SQLITE_CANTOPEN)
        return DbError(3024, "Could not find or open the store file: " + message);
    if (primary == SQLITE_FULL || primary == SQLITE_IOERR)
        return DbError(3026, "Not enough space on disk, or the disk cannot be written: " + message);
    return DbError(3000, message);
}

// ---- DatabaseImpl ----

void DatabaseImpl::fail(int rc, const QString& context) const {
    const int extended = sqlite3_extended_errcode(m_db);
    QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
    if (message.isEmpty() || (rc != SQLITE_OK && (extended & 0xff) != (rc & 0xff)))
        message = QString::fromUtf8(sqlite3_errstr(rc));
    DbError e = JetErrorFromSqlite((extended & 0xff) == (rc & 0xff) ? extended : rc, message);
    if (e.number() == 3000 && !context.isEmpty())
        throw DbError(3000, e.description() + " in: " + context);
    throw e;
}

Statement DatabaseImpl::prepare(const QString& sql) const {
    sqlite3_stmt* s = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(m_db, utf8.constData(), static_cast<int>(utf8.size()), &s, nullptr);
    if (rc != SQLITE_OK) {
        sqlite3_finalize(s);
        fail(rc, sql);
    }
    return Statement(s);
}

void DatabaseImpl::runToEnd(sqlite3_stmt* statement) const {
    int rc;
    while ((rc = sqlite3_step(statement)) == SQLITE_ROW) {
    }
    if (rc != SQLITE_DONE)
        fail(rc, QString::fromUtf8(sqlite3_sql(statement)));
}

void DatabaseImpl::exec(const QString& sql) const {
    const QByteArray utf8 = sql.toUtf8();
    const char* tail = utf8.constData();
    while (tail && *tail) {
        sqlite3_stmt* s = nullptr;
        const int rc = sqlite3_prepare_v2(m_db, tail, -1, &s, &tail);
        if (rc != SQLITE_OK) {
            sqlite3_finalize(s);
            fail(rc, sql);
        }
        if (!s)
            break; // only blanks or a comment were left
        Statement owned(s);
        runToEnd(owned);
    }
}

std::shared_ptr<const SqlitePlan> DatabaseImpl::translate(const QString& statement) {
    // A text with a different literal is a different key: plans are kept only for texts met exactly.
    constexpr qsizetype kMostPlans = 512;
    const int version = m_catalog.schemaVersion();
    if (version != m_plansSchemaVersion || version == -1) {
        m_plans.clear();
        m_plansSchemaVersion = version;
    }
    if (const auto found = m_plans.constFind(statement); found != m_plans.cend())
        return *found;
    std::shared_ptr<const SqlitePlan> plan;
    {
        const SqliteCatalog::Hold hold(m_catalog, version);
        plan = std::make_shared<const SqlitePlan>(TranslateJet(statement, m_catalog));
    }
    ++translationsMade;
    // Texts with their values spliced in rarely come again: past the limit the kept plans start over.
    if (m_plans.size() >= kMostPlans)
        m_plans.clear();
    if (version != -1)
        m_plans.insert(statement, plan);
    return plan;
}

void DatabaseImpl::schemaMayHaveChanged() {
    m_catalog.invalidate();
    m_plans.clear();
    m_plansSchemaVersion = -1;
}

std::array<std::int64_t, 3> DatabaseImpl::StoreStamp() const {
    auto pragma = [&](const char* sql) {
        std::int64_t v = 0;
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(m_db, sql, -1, &s, nullptr) == SQLITE_OK && sqlite3_step(s) == SQLITE_ROW)
            v = sqlite3_column_int64(s, 0);
        sqlite3_finalize(s);
        return v;
    };
    return {sqlite3_total_changes64(m_db), pragma("PRAGMA data_version"), pragma("PRAGMA schema_version")};
}

ResultSet DatabaseImpl::readAll(const QString& sql, bool withRowid, const QStringList& typeHints) const {
    Statement s = prepare(sql);
    ResultSet r;
    const int count = sqlite3_column_count(s);
    const int first = withRowid ? 1 : 0;
    for (int c = first; c < count; ++c) {
        r.names << QString::fromUtf8(sqlite3_column_name(s, c));
        const char* decl = sqlite3_column_decltype(s, c);
        const char* table = sqlite3_column_table_name(s, c);
        const char* origin = sqlite3_column_origin_name(s, c);
        r.originTables.push_back(table ? QString::fromUtf8(table) : QString());
        r.originColumns.push_back(origin ? QString::fromUtf8(origin) : QString());
        bool key = false;
        if (table && origin) {
            // A column straight from a table: its counter shows in the schema, not in the declared type alone.
            int pk = 0;
            sqlite3_table_column_metadata(m_db, nullptr, table, origin, nullptr, nullptr, nullptr, &pk, nullptr);
            key = pk != 0;
        }
        const QString hint = typeHints.value(c - first);
        r.types.push_back(decl             ? JetTypeFromDeclared(QString::fromUtf8(decl), key)
                          : hint.isEmpty() ? JetType{}
                                           : JetTypeFromWord(hint));
    }
    const int fields = count - first;
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW) {
        if (withRowid)
            r.rowids.push_back(sqlite3_column_int64(s, 0));
        std::vector<Value> row;
        row.reserve(static_cast<size_t>(fields));
        for (int c = 0; c < fields; ++c)
            row.push_back(ReadColumnValue(s, c + first, r.types[static_cast<size_t>(c)]));
        r.rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE)
        fail(rc, sql);
    return r;
}

QString DatabaseImpl::requireTable(const QString& table, int number) const {
    const QString stored = const_cast<SqliteCatalog&>(m_catalog).storedTableName(table);
    if (stored.isEmpty()) {
        if (number == 3078)
            throw DbError(3078, QString("Cannot find the input table or query '%1'.").arg(table));
        throw DbError(number, QString("Table '%1' does not exist.").arg(table));
    }
    return stored;
}

// ---- Database ----

Database::Database(std::unique_ptr<DatabaseImpl> impl) : m_impl(std::move(impl)) {}
Database::~Database() = default;

std::unique_ptr<Database> Database::Open(const QString& path, bool createIfMissing) {
    const QFileInfo info(path);
    if (!createIfMissing && !info.exists())
        throw DbError(3024, QString("Could not find file '%1'.").arg(path));
    if (createIfMissing)
        QDir().mkpath(info.absolutePath());
    sqlite3* handle = nullptr;
    // One connection used by one thread: SQLite need not lock its own structures on every call.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | (createIfMissing ? SQLITE_OPEN_CREATE : 0);
    const int rc = sqlite3_open_v2(QFile::encodeName(path).constData(), &handle, flags, nullptr);
    if (rc != SQLITE_OK) {
        const QString message =
            handle ? QString::fromUtf8(sqlite3_errmsg(handle)) : QString::fromUtf8(sqlite3_errstr(rc));
        sqlite3_close_v2(handle);
        throw DbError(3024, QString("Could not open the store '%1': %2").arg(path, message));
    }
    auto impl = std::make_unique<DatabaseImpl>(handle, info.absoluteFilePath());
    sqlite3_extended_result_codes(handle, 1);
    sqlite3_busy_timeout(handle, 5000);
    impl->exec("PRAGMA foreign_keys = OFF");
    // A file that is no store fails here rather than at the first statement.
    impl->exec("SELECT count(*) FROM sqlite_schema");
    if (RegisterJetFunctions(handle) != SQLITE_OK)
        throw DbError(3000,
                      "The store's functions could not be registered: " + QString::fromUtf8(sqlite3_errmsg(handle)));
    return std::unique_ptr<Database>(new Database(std::move(impl)));
}

QString Database::Path() const {
    return m_impl->path();
}

sqlite3* Database::handle() const {
    return m_impl->db();
}

void Database::Execute(const QString& statement) {
    const std::shared_ptr<const SqlitePlan> plan = m_impl->translate(statement);
    ExecutePlan(*m_impl, *plan);
}

int Database::RecordsAffected() const {
    return m_impl->recordsAffected;
}

bool Database::ReturnsRows(const QString& statement) const {
    const SqlitePlan::Kind kind = m_impl->translate(statement)->kind;
    return kind == SqlitePlan::Kind::Query || kind == SqlitePlan::Kind::Crosstab;
}

QStringList Database::TableNames() const {
    return m_impl->catalog().tableNames();
}

std::vector<FieldDef> Database::Fields(const QString& table) const {
    const QString stored = m_impl->catalog().storedTableName(table);
    if (stored.isEmpty())
        throw DbError(3265, "Item not found in this collection.");
    std::vector<FieldDef> out;
    for (const auto& c : m_impl->catalog().columnInfo(stored))
        out.push_back({c.name, JetTypeWord(c.type), c.type.kind == JetKind::Text ? c.type.size : 0});
    return out;
}

std::vector<IndexDef> Database::Indexes(const QString& table) const {
    std::vector<IndexDef> out;
    for (const auto& i : m_impl->catalog().indexInfo(table))
        out.push_back({i.name, i.fields, i.primary, i.unique});
    return out;
}

namespace {

// A column's default in Jet's words as SQLite writes it; empty for an expression that is no constant (Now(), ...).
QString DefaultSql(QString jet) {
    jet = jet.trimmed();
    if (jet.startsWith('='))
        jet = jet.mid(1).trimmed();
    static const QRegularExpression number("^-?[0-9]+(\\.[0-9]+)?$");
    if (number.match(jet).hasMatch())
        return jet;
    if (jet.size() >= 2 && (jet.front() == '"' || jet.front() == '\'') && jet.back() == jet.front()) {
        QString inner = jet.mid(1, jet.size() - 2);
        inner.replace(QString(2, jet.front()), QString(jet.front()));
        return "'" + inner.replace("'", "''") + "'";
    }
    const QString word = jet.toLower();
    if (word == "true" || word == "yes" || word == "on")
        return "-1";
    if (word == "false" || word == "no" || word == "off")
        return "0";
    return QString();
}

} // namespace

void Database::CreateTableDef(const QString& name, const std::vector<FieldDef>& fields) {
    std::vector<JetColumnSpec> specs;
    for (const auto& f : fields) {
        JetColumnSpec spec;
        spec.name = f.name;
        spec.type = f.type;
        spec.size = f.size;
        spec.defaultSql = DefaultSql(f.defaultValue);
        specs.push_back(spec);
    }
    CreateTable(*m_impl, name, specs);
}

void Database::CreateField(const QString& table, const FieldDef& field) {
    JetColumnSpec spec;
    spec.name = field.name;
    spec.type = field.type;
    spec.size = field.size;
    AddColumn(*m_impl, table, spec);
}

void Database::CreateIndex(const QString& table, const IndexDef& index) {
    ::CreateIndex(*m_impl, table, index.name, index.fields, index.unique || index.primary, index.primary);
}

void Database::RefreshTableDefs() {
    // The catalog follows SQLite's schema version; a refresh makes it read the schema afresh.
    m_impl->schemaMayHaveChanged();
    m_impl->catalog().tableNames();
}

bool Database::UnchangedSince(const QString& key) const {
    const auto found = m_impl->unchangedMarks.find(key);
    return found != m_impl->unchangedMarks.end() && found->second == m_impl->StoreStamp() &&
           m_impl->transactionDepth == 0;
}

void Database::MarkUnchanged(const QString& key) {
    m_impl->unchangedMarks[key] = m_impl->StoreStamp();
}

void Database::BeginTrans() {
    // Nested transactions are savepoints inside the outer one, as DAO nests them.
    if (m_impl->transactionDepth == 0)
        m_impl->exec("BEGIN");
    else
        m_impl->exec(QString("SAVEPOINT orvel_trans_%1").arg(m_impl->transactionDepth));
    ++m_impl->transactionDepth;
}

void Database::CommitTrans() {
    if (m_impl->transactionDepth == 0)
        throw DbError(3034, "You tried to commit or rollback a transaction without first beginning a transaction.");
    // The depth drops only once the commit has gone through, so that a failed commit can still be rolled back.
    const int depth = m_impl->transactionDepth - 1;
    if (depth == 0)
        m_impl->exec("COMMIT");
    else
        m_impl->exec(QString("RELEASE orvel_trans_%1").arg(depth));
    m_impl->transactionDepth = depth;
}

void Database::Rollback() {
    if (m_impl->transactionDepth == 0)
        throw DbError(3034, "You tried to commit or rollback a transaction without first beginning a transaction.");
    --m_impl->transactionDepth;
    m_impl->schemaMayHaveChanged(); // a definition rolled back brings an earlier schema version back
    if (m_impl->transactionDepth == 0) {
        m_impl->exec("ROLLBACK");
    } else {
        const QString name = QString("orvel_trans_%1").arg(m_impl->transactionDepth);
        m_impl->exec("ROLLBACK TO " + name);
        m_impl->exec("RELEASE " + name);
    }
}

bool Database::IntegrityCheck(QString* reason) {
    try {
        const ResultSet r = m_impl->readAll("PRAGMA integrity_check");
        QStringList faults;
        for (const auto& row : r.rows)
            if (!row.empty() && row[0].toString() != "ok")
                faults << row[0].toString();
        if (faults.isEmpty())
            return true;
        if (reason)
            *reason = faults.join('\n');
        return false;
    } catch (const DbError& e) {
        if (reason)
            *reason = e.description();
        return false;
    }
}

bool Database::Repair(QString* reason) {
    if (!IntegrityCheck(reason))
        return false;
    if (m_impl->transactionDepth > 0) {
        if (reason)
            *reason = "A transaction is still open.";
        return false;
    }
    try {
        m_impl->exec("VACUUM");
        return true;
    } catch (const DbError& e) {
        if (reason)
            *reason = e.description();
        return false;
    }
}

// ---- RowView ----

int RowView::columnCount() const {
    return sqlite3_column_count(m_s);
}
bool RowView::isNull(int column) const {
    return sqlite3_column_type(m_s, column) == SQLITE_NULL;
}
bool RowView::isText(int column) const {
    return sqlite3_column_type(m_s, column) == SQLITE_TEXT;
}
bool RowView::isNumber(int column) const {
    const int t = sqlite3_column_type(m_s, column);
    return t == SQLITE_INTEGER || t == SQLITE_FLOAT;
}
double RowView::number(int column) const {
    return sqlite3_column_double(m_s, column);
}
std::int64_t RowView::integer(int column) const {
    return sqlite3_column_int64(m_s, column);
}
QByteArray RowView::utf8(int column) const {
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(m_s, column));
    return QByteArray::fromRawData(text ? text : "", sqlite3_column_bytes(m_s, column));
}
const JetType& RowView::type(int column) const {
    return (*m_types)[static_cast<size_t>(column)];
}
Value RowView::value(int column) const {
    return ReadColumnValue(m_s, column, (*m_types)[static_cast<size_t>(column)]);
}

void Database::ForEachRow(const QString& statement, const std::function<void(const RowView&)>& visit) {
    const std::shared_ptr<const SqlitePlan> translated = m_impl->translate(statement);
    const SqlitePlan& plan = *translated;
    if (plan.kind != SqlitePlan::Kind::Query)
        throw DbError(3219, "Invalid operation.");
    Statement s = m_impl->prepare(plan.sql);
    std::vector<JetType> types;
    const int count = sqlite3_column_count(s);
    for (int c = 0; c < count; ++c) {
        const char* decl = sqlite3_column_decltype(s, c);
        const QString hint = plan.columnTypes.value(c);
        types.push_back(decl             ? JetTypeFromDeclared(QString::fromUtf8(decl))
                        : hint.isEmpty() ? JetType{}
                                         : JetTypeFromWord(hint));
    }
    const RowView row(s, &types);
    int rc;
    while ((rc = sqlite3_step(s)) == SQLITE_ROW)
        visit(row);
    if (rc != SQLITE_DONE)
        m_impl->fail(rc, statement);
}

void Database::OnDurableWrite(std::function<void()> observer) {
    m_impl->durableObserver = std::move(observer);
    if (!m_impl->durableObserver) {
        sqlite3_trace_v2(m_impl->db(), 0, nullptr, nullptr);
        sqlite3_rollback_hook(m_impl->db(), nullptr, nullptr);
        return;
    }
    // A transaction rolled back made nothing durable.
    sqlite3_rollback_hook(
        m_impl->db(), [](void* context) { static_cast<DatabaseImpl*>(context)->changedInTransaction = false; },
        m_impl.get());
    // SQLite reports each statement once it has run to its end, after an automatic commit.
    sqlite3_trace_v2(
        m_impl->db(), SQLITE_TRACE_PROFILE,
        [](unsigned, void* context, void* statement, void*) -> int {
            auto* impl = static_cast<DatabaseImpl*>(context);
            const bool changing = sqlite3_stmt_readonly(static_cast<sqlite3_stmt*>(statement)) == 0;
            if (sqlite3_get_autocommit(impl->db()) == 0) {
                impl->changedInTransaction = impl->changedInTransaction || changing;
                return 0;
            }
            if (changing || impl->changedInTransaction) {
                impl->changedInTransaction = false;
                if (impl->durableObserver)
                    impl->durableObserver();
            }
            return 0;
        },
        m_impl.get());
}
