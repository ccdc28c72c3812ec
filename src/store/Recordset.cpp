// Recordsets as DAO gives them: snapshot, dynaset and table type.
//
// A snapshot or dynaset reads its rows into memory when it opens: screens walk them, count them after MoveLast
// and search them with FindFirst, and one read in a tight loop is the fastest way to all of that. A table-type
// recordset reads nothing until it is used: a Seek (or an AddNew) finds its one row through the store's own
// index, and only a move, a count or a search reads the whole table, in the current index's order.
// RecordCount follows DAO all the same: a table-type recordset knows all its rows at once, a dynaset or
// snapshot counts the rows visited so far (1 right after opening when there are rows, all after MoveLast).
// Writes (AddNew, Edit, Delete) go straight to the base table by its rowid, and the rows in memory follow.

#include "Database.h"
#include "DatabaseImpl.h"
#include "PlanExecutor.h"
#include "sql/JetTranslator.h"

#include <QHash>
#include <algorithm>

namespace {

DbError noCurrentRecord() {
    return DbError(3021, "No current record.");
}
DbError readOnly() {
    return DbError(3027, "Cannot update. Database or object is read-only.");
}
DbError itemNotFound() {
    return DbError(3265, "Item not found in this collection.");
}

bool isNumberLike(VType t) {
    return t == VType::Boolean || t == VType::Long || t == VType::Double || t == VType::Currency;
}

// Jet's ordering of two values of a key: Null first, numbers by value, dates by time, texts case-blind.
int compareValues(const Value& a, const Value& b) {
    const bool aNull = a.isNull() || a.isEmpty();
    const bool bNull = b.isNull() || b.isEmpty();
    if (aNull || bNull)
        return aNull == bNull ? 0 : (aNull ? -1 : 1);
    const VType ta = a.type();
    const VType tb = b.type();
    if (ta == VType::Currency && tb == VType::Currency) {
        const auto x = a.toCurrency().raw(), y = b.toCurrency().raw();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (ta == VType::Long && tb == VType::Long) {
        const auto x = a.toLong(), y = b.toLong();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (isNumberLike(ta) && isNumberLike(tb)) {
        const double x = a.toDouble(), y = b.toDouble();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    if (ta == VType::Date && tb == VType::Date) {
        const auto x = a.toDate(), y = b.toDate();
        return x < y ? -1 : (x > y ? 1 : 0);
    }
    const int c = QString::compare(a.toString(), b.toString(), Qt::CaseInsensitive);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

} // namespace

class RecordsetImpl {
public:
    RecordsetImpl(DatabaseImpl& db, RecordsetType type) : m_db(db), m_type(type) {}

    void load(ResultSet result, const QString& baseTable) {
        m_names = result.names;
        m_types = std::move(result.types);
        m_originColumns = std::move(result.originColumns);
        m_originTables = std::move(result.originTables);
        m_rows = std::move(result.rows);
        m_rowids = std::move(result.rowids);
        m_baseTable = baseTable;
        m_nameIndex.clear();
        for (int i = 0; i < m_names.size(); ++i)
            if (!m_nameIndex.contains(m_names[i].toLower()))
                m_nameIndex.insert(m_names[i].toLower(), i);
        m_pos = 0;
        m_visited = m_rows.empty() ? 0 : 1;
        m_deletedCurrent = false;
        m_mode = Mode::None;
        m_loaded = Loaded::All;
    }

    // A table-type recordset that has read no row yet: it stands on the first row of the table.
    void openLazily(ResultSet columnsOnly, const QString& baseTable) {
        load(std::move(columnsOnly), baseTable);
        m_loaded = Loaded::None;
    }

    // Reads the whole table, in the current index's order, and stands on the row that was current.
    void loadAll() {
        if (m_loaded == Loaded::All)
            return;
        const bool onRow = m_loaded == Loaded::Current && !m_rows.empty();
        const bool atEnd = m_loaded == Loaded::Current && m_rows.empty(); // after a Seek that found nothing
        const std::int64_t current = onRow ? m_rowids.front() : 0;
        ResultSet all = m_db.readAll("SELECT rowid, * FROM " + QuoteName(m_baseTable) + " ORDER BY rowid", true);
        m_rows = std::move(all.rows);
        m_rowids = std::move(all.rowids);
        m_loaded = Loaded::All;
        orderByIndex();
        m_deletedCurrent = false;
        m_pos = atEnd ? size() : 0;
        if (onRow)
            m_pos = static_cast<int>(std::find(m_rowids.begin(), m_rowids.end(), current) - m_rowids.begin());
        visit();
    }
    bool lazy() const { return m_loaded != Loaded::All; }

    // ---- position ----
    int size() const { return static_cast<int>(m_rows.size()); }
    bool hasCurrent() const { return !m_deletedCurrent && m_pos >= 0 && m_pos < size(); }
    void visit() { m_visited = std::max(m_visited, std::min(m_pos + 1, size())); }
    void cancelPending() { m_mode = Mode::None; }

    void requireOpen() const {
        if (m_closed)
            throw DbError(3420, "Object invalid or no longer set.");
    }

    int fieldIndex(const QString& name) const {
        // Screens ask by name inside their row loops: a short field list is searched without allocating.
        if (m_names.size() <= 24) {
            for (int i = 0; i < m_names.size(); ++i)
                if (m_names[i].compare(name, Qt::CaseInsensitive) == 0)
                    return i;
        }
        auto it = m_nameIndex.find(name.toLower());
        if (it == m_nameIndex.end()) {
            // A qualified name ("voertuig.TransID") finds the field of that table.
            const int dot = name.lastIndexOf('.');
            if (dot > 0) {
                const QString table = name.left(dot).remove('[').remove(']');
                const QString field = name.mid(dot + 1).remove('[').remove(']');
                for (int i = 0; i < m_names.size(); ++i)
                    if (m_names[i].compare(field, Qt::CaseInsensitive) == 0 &&
                        m_originTables[static_cast<size_t>(i)].compare(table, Qt::CaseInsensitive) == 0)
                        return i;
            }
            throw itemNotFound();
        }
        return it.value();
    }

    void checkIndex(int index) const {
        if (index < 0 || index >= m_names.size())
            throw itemNotFound();
    }

    Value field(int index) {
        requireOpen();
        checkIndex(index);
        if (m_loaded == Loaded::None && m_mode == Mode::None)
            loadAll();
        if (m_mode != Mode::None)
            return m_buffer[static_cast<size_t>(index)];
        if (m_deletedCurrent)
            throw DbError(3167, "Record is deleted.");
        if (!hasCurrent())
            throw noCurrentRecord();
        return m_rows[static_cast<size_t>(m_pos)][static_cast<size_t>(index)];
    }

    bool writable() const { return m_type != RecordsetType::Snapshot && !m_baseTable.isEmpty(); }

    void setField(int index, const Value& value) {
        requireOpen();
        checkIndex(index);
        if (m_mode == Mode::None)
            throw DbError(3020, "Update or CancelUpdate without AddNew or Edit.");
        const size_t i = static_cast<size_t>(index);
        if (m_originColumns[i].isEmpty())
            throw DbError(3164, "Field cannot be updated.");
        const JetType& type = m_types[i];
        if (type.kind == JetKind::Counter && m_mode == Mode::Edit)
            throw DbError(3164, "Field cannot be updated.");
        Value converted = ConvertForColumn(value, type);
        if (type.kind == JetKind::Text && converted.type() == VType::String &&
            converted.toString().size() > (type.size > 0 ? type.size : 255))
            throw DbError(3163, "The field is too small to accept the amount of data you attempted to add. Try "
                                "inserting or pasting less data.");
        m_buffer[i] = converted;
        m_dirty[i] = true;
    }

    // ---- moves ----
    void moveFirst() {
        requireOpen();
        loadAll();
        cancelPending();
        if (m_rows.empty())
            throw noCurrentRecord();
        m_deletedCurrent = false;
        m_pos = 0;
        visit();
    }
    void moveLast() {
        requireOpen();
        loadAll();
        cancelPending();
        if (m_rows.empty())
            throw noCurrentRecord();
        m_deletedCurrent = false;
        m_pos = size() - 1;
        visit();
    }
    void moveNext() {
        requireOpen();
        loadAll();
        cancelPending();
        if (m_deletedCurrent) {
            m_deletedCurrent = false; // the row after the deleted one is already in its place
            visit();
            return;
        }
        if (m_pos >= size())
            throw noCurrentRecord();
        ++m_pos;
        visit();
    }
    void movePrevious() {
        requireOpen();
        loadAll();
        cancelPending();
        m_deletedCurrent = false;
        if (m_pos < 0)
            throw noCurrentRecord();
        --m_pos;
    }

    bool eof() {
        if (m_loaded == Loaded::None)
            loadAll();
        return m_rows.empty() || (!m_deletedCurrent && m_pos >= size());
    }
    bool bof() {
        loadAll();
        return m_rows.empty() || m_pos < 0;
    }
    int recordCount() {
        loadAll();
        if (m_type == RecordsetType::Table)
            return size();
        return std::min(m_visited, size());
    }

    // ---- writes ----
    void addNew() {
        requireOpen();
        if (!writable())
            throw readOnly();
        m_mode = Mode::Add;
        m_buffer = defaults();
        m_dirty.assign(m_names.size(), false);
        // Jet numbers the new row at AddNew: its counter can be read before Update.
        for (size_t i = 0; i < m_types.size(); ++i)
            if (m_types[i].kind == JetKind::Counter && !m_originColumns[i].isEmpty())
                m_buffer[i] = Value(nextCounter());
    }

    void edit() {
        requireOpen();
        if (!writable())
            throw readOnly();
        if (m_loaded == Loaded::None)
            loadAll();
        if (m_deletedCurrent)
            throw DbError(3167, "Record is deleted.");
        if (!hasCurrent())
            throw noCurrentRecord();
        m_mode = Mode::Edit;
        m_buffer = m_rows[static_cast<size_t>(m_pos)];
        m_dirty.assign(m_names.size(), false);
    }

    void update() {
        requireOpen();
        if (m_mode == Mode::None)
            throw DbError(3020, "Update or CancelUpdate without AddNew or Edit.");
        if (m_mode == Mode::Add)
            insertBuffer();
        else
            updateCurrent();
        m_mode = Mode::None;
    }

    void cancelUpdate() {
        requireOpen();
        if (m_mode == Mode::None)
            throw DbError(3020, "Update or CancelUpdate without AddNew or Edit.");
        m_mode = Mode::None;
    }

    void deleteCurrent() {
        requireOpen();
        if (!writable())
            throw readOnly();
        loadAll(); // the row after the deleted one is the next current
        cancelPending();
        if (m_deletedCurrent)
            throw DbError(3167, "Record is deleted.");
        if (!hasCurrent())
            throw noCurrentRecord();
        Statement s = m_db.prepare("DELETE FROM " + QuoteName(m_baseTable) + " WHERE rowid = ?");
        sqlite3_bind_int64(s, 1, m_rowids[static_cast<size_t>(m_pos)]);
        m_db.runToEnd(s);
        m_rows.erase(m_rows.begin() + m_pos);
        m_rowids.erase(m_rowids.begin() + m_pos);
        m_deletedCurrent = true;
    }

    // ---- searches ----
    void find(const QString& criteria, bool fromStart) {
        requireOpen();
        loadAll();
        cancelPending();
        const int start = fromStart ? 0 : (m_deletedCurrent ? m_pos : m_pos + 1);
        const int found = firstMatch(criteria, std::max(start, 0));
        m_noMatch = found < 0;
        if (!m_noMatch) {
            m_deletedCurrent = false;
            m_pos = found;
            visit();
        }
    }

    void setIndex(const QString& name) {
        requireOpen();
        if (m_type != RecordsetType::Table)
            throw DbError(3251, "Operation is not supported for this type of object.");
        for (const auto& index : m_db.catalog().indexInfo(m_baseTable)) {
            if (index.name.compare(name, Qt::CaseInsensitive) != 0)
                continue;
            m_indexColumns.clear();
            for (const auto& f : index.fields)
                m_indexColumns.push_back(fieldIndex(f));
            m_indexName = index.name;
            if (lazy()) {
                // Standing on the first row of the new order, still unread.
                m_rows.clear();
                m_rowids.clear();
                m_loaded = Loaded::None;
                m_pos = 0;
                m_mode = Mode::None;
                return;
            }
            sortByIndex();
            return;
        }
        throw DbError(3800, QString("'%1' is not an index in this table.").arg(name));
    }

    void seek(const QString& comparison, const std::vector<Value>& keys) {
        requireOpen();
        if (m_type != RecordsetType::Table)
            throw DbError(3251, "Operation is not supported for this type of object.");
        if (m_indexColumns.empty())
            throw DbError(3019, "Operation invalid without a current index.");
        const QString op = comparison.trimmed();
        if (op != "=" && op != ">=" && op != ">" && op != "<=" && op != "<")
            throw DbError(3001, "Invalid argument.");
        cancelPending();
        // A key left empty after the first asks for no value (screens pass "" for a second field that
        // they do not mean to match), so the leading keys decide.
        size_t used = std::min(keys.size(), m_indexColumns.size());
        while (used > 1 && (keys[used - 1].isEmpty() ||
                            (keys[used - 1].type() == VType::String && keys[used - 1].toString().isEmpty())))
            --used;
        if (used == 0)
            throw DbError(3001, "Invalid argument.");
        std::vector<Value> wanted;
        for (size_t k = 0; k < used; ++k) {
            const JetType& type = m_types[static_cast<size_t>(m_indexColumns[k])];
            try {
                wanted.push_back(ConvertForColumn(keys[k], type));
            } catch (const DbError&) {
                throw DbError(3464, "Data type mismatch in criteria expression.");
            }
        }
        if (lazy() && std::none_of(wanted.begin(), wanted.end(), [](const Value& v) { return v.isNull(); })) {
            seekInStore(op, wanted);
            return;
        }
        loadAll();
        auto cmp = [&](int row) {
            for (size_t k = 0; k < used; ++k) {
                const int c =
                    compareValues(m_rows[static_cast<size_t>(row)][static_cast<size_t>(m_indexColumns[k])], wanted[k]);
                if (c != 0)
                    return c;
            }
            return 0;
        };
        int found = -1;
        const int n = size();
        if (op == "=" || op == ">=" || op == ">") {
            for (int r = 0; r < n && found < 0; ++r) {
                const int c = cmp(r);
                if ((op == "=" && c == 0) || (op == ">=" && c >= 0) || (op == ">" && c > 0))
                    found = r;
            }
        } else {
            for (int r = n - 1; r >= 0 && found < 0; --r) {
                const int c = cmp(r);
                if ((op == "<=" && c <= 0) || (op == "<" && c < 0))
                    found = r;
            }
        }
        m_deletedCurrent = false;
        m_noMatch = found < 0;
        m_pos = m_noMatch ? n : found; // after a failed seek there is no current record
        visit();
    }

    // Orders the rows by the current index's fields (ties by rowid), with the comparison Seek uses, and stands
    // on the first.
    void sortByIndex() {
        orderByIndex();
        m_pos = 0;
        m_deletedCurrent = false;
        m_mode = Mode::None;
        visit();
    }

    void orderByIndex() {
        if (m_indexColumns.empty())
            return;
        std::vector<size_t> order(m_rows.size());
        for (size_t i = 0; i < order.size(); ++i)
            order[i] = i;
        std::stable_sort(order.begin(), order.end(), [&](size_t a, size_t b) {
            for (int k : m_indexColumns) {
                const int c = compareValues(m_rows[a][static_cast<size_t>(k)], m_rows[b][static_cast<size_t>(k)]);
                if (c != 0)
                    return c < 0;
            }
            return m_rowids[a] < m_rowids[b];
        });
        std::vector<std::vector<Value>> rows;
        std::vector<std::int64_t> rowids;
        rows.reserve(order.size());
        rowids.reserve(order.size());
        for (size_t i : order) {
            rows.push_back(std::move(m_rows[i]));
            rowids.push_back(m_rowids[i]);
        }
        m_rows = std::move(rows);
        m_rowids = std::move(rowids);
    }

    // The Seek of a table not yet read: the store's index finds the one row, in the order the index gives.
    void seekInStore(const QString& op, const std::vector<Value>& wanted) {
        QStringList keys, marks, order;
        const bool downward = op == "<" || op == "<=";
        for (size_t k = 0; k < m_indexColumns.size(); ++k) {
            const QString column = QuoteName(m_originColumns[static_cast<size_t>(m_indexColumns[k])]);
            if (k < wanted.size()) {
                keys << column;
                marks << QString("?%1").arg(k + 1);
            }
            order << column + (downward ? " DESC" : "");
        }
        order << (downward ? "rowid DESC" : "rowid");
        const QString left = keys.size() == 1 ? keys.front() : "(" + keys.join(", ") + ")";
        const QString right = marks.size() == 1 ? marks.front() : "(" + marks.join(", ") + ")";
        Statement s = m_db.prepare("SELECT rowid, * FROM " + QuoteName(m_baseTable) + " WHERE " + left + " " + op +
                                   " " + right + " ORDER BY " + order.join(", ") + " LIMIT 1");
        for (size_t k = 0; k < wanted.size(); ++k)
            BindValue(s, static_cast<int>(k) + 1, wanted[k]);
        m_rows.clear();
        m_rowids.clear();
        const int rc = sqlite3_step(s);
        if (rc == SQLITE_ROW) {
            m_rowids.push_back(sqlite3_column_int64(s, 0));
            std::vector<Value> row;
            for (int c = 0; c < m_names.size(); ++c)
                row.push_back(ReadColumnValue(s, c + 1, m_types[static_cast<size_t>(c)]));
            m_rows.push_back(std::move(row));
        } else if (rc != SQLITE_DONE) {
            m_db.fail(rc);
        }
        m_loaded = Loaded::Current;
        m_pos = 0;
        m_deletedCurrent = false;
        m_noMatch = m_rows.empty();
    }

    bool noMatch() const { return m_noMatch; }
    void close() { m_closed = true; }

    const QStringList& names() const { return m_names; }
    int position() {
        loadAll();
        return hasCurrent() ? m_pos : -1;
    }

private:
    enum class Mode { None, Add, Edit };
    // What a table-type recordset has read: everything, nothing yet (it stands on the first row), or only its
    // current row (none after a Seek that found nothing).
    enum class Loaded { All, None, Current };

    std::vector<Value> defaults() {
        if (!m_defaults.empty())
            return m_defaults;
        m_defaults.assign(static_cast<size_t>(m_names.size()), Value::null());
        const auto& columns = m_db.catalog().columnInfo(m_baseTable);
        for (size_t i = 0; i < m_defaults.size(); ++i) {
            if (m_types[i].kind == JetKind::Bit)
                m_defaults[i] = Value(false);
            for (const auto& c : columns) {
                if (c.defaultSql.isEmpty() || c.name.compare(m_originColumns[i], Qt::CaseInsensitive) != 0)
                    continue;
                try {
                    Statement s = m_db.prepare("SELECT " + c.defaultSql);
                    if (sqlite3_step(s) == SQLITE_ROW)
                        m_defaults[i] = ReadColumnValue(s, 0, m_types[i]);
                } catch (const DbError&) {
                    // A default SQLite cannot evaluate alone (CURRENT_TIMESTAMP is fine): left to the insert.
                }
            }
        }
        return m_defaults;
    }

    std::int64_t nextCounter() const {
        std::int64_t next = 1;
        {
            Statement s = m_db.prepare("SELECT coalesce(max(rowid), 0) + 1 FROM " + QuoteName(m_baseTable));
            if (sqlite3_step(s) == SQLITE_ROW)
                next = sqlite3_column_int64(s, 0);
        }
        sqlite3_stmt* seq = nullptr;
        const QString sql = "SELECT seq + 1 FROM sqlite_sequence WHERE name = ?";
        if (sqlite3_prepare_v2(m_db.db(), sql.toUtf8().constData(), -1, &seq, nullptr) == SQLITE_OK) {
            const QByteArray name = m_baseTable.toUtf8();
            sqlite3_bind_text(seq, 1, name.constData(), static_cast<int>(name.size()), SQLITE_TRANSIENT);
            if (sqlite3_step(seq) == SQLITE_ROW)
                next = std::max<std::int64_t>(next, sqlite3_column_int64(seq, 0));
        }
        sqlite3_finalize(seq);
        return next;
    }

    // The row as stored, read back by rowid, in the recordset's field order.
    std::vector<Value> rereadRow(std::int64_t rowid) const {
        QStringList columns;
        for (const auto& c : m_originColumns)
            columns << QuoteName(c);
        Statement s =
            m_db.prepare("SELECT " + columns.join(", ") + " FROM " + QuoteName(m_baseTable) + " WHERE rowid = ?");
        sqlite3_bind_int64(s, 1, rowid);
        std::vector<Value> row;
        const int rc = sqlite3_step(s);
        if (rc != SQLITE_ROW) {
            if (rc != SQLITE_DONE)
                m_db.fail(rc);
            return m_buffer;
        }
        for (int c = 0; c < m_names.size(); ++c)
            row.push_back(ReadColumnValue(s, c, m_types[static_cast<size_t>(c)]));
        return row;
    }

    void insertBuffer() {
        QStringList columns, marks;
        std::vector<Value> values;
        for (size_t i = 0; i < m_buffer.size(); ++i) {
            const bool counter = m_types[i].kind == JetKind::Counter;
            if (!m_dirty[i] && !counter)
                continue; // left to the column's default
            columns << QuoteName(m_originColumns[i]);
            marks << "?";
            values.push_back(m_buffer[i]);
        }
        const QString sql = columns.isEmpty() ? "INSERT INTO " + QuoteName(m_baseTable) + " DEFAULT VALUES"
                                              : "INSERT INTO " + QuoteName(m_baseTable) + " (" + columns.join(", ") +
                                                    ") VALUES (" + marks.join(", ") + ")";
        Statement s = m_db.prepare(sql);
        for (size_t i = 0; i < values.size(); ++i)
            BindValue(s, static_cast<int>(i) + 1, values[i]);
        m_db.runToEnd(s);
        const std::int64_t rowid = sqlite3_last_insert_rowid(m_db.db());
        std::vector<Value> row = rereadRow(rowid);
        if (lazy()) {
            // The new row becomes current; the rest of the table stays unread.
            m_rows = {std::move(row)};
            m_rowids = {rowid};
            m_loaded = Loaded::Current;
            m_pos = 0;
            m_deletedCurrent = false;
            return;
        }

        // The new row becomes current: at its place in the index order, else at the end.
        int at = size();
        if (m_type == RecordsetType::Table && !m_indexColumns.empty()) {
            for (int r = 0; r < size(); ++r) {
                int c = 0;
                for (int k : m_indexColumns) {
                    c = compareValues(m_rows[static_cast<size_t>(r)][static_cast<size_t>(k)],
                                      row[static_cast<size_t>(k)]);
                    if (c != 0)
                        break;
                }
                if (c > 0) {
                    at = r;
                    break;
                }
            }
        }
        m_rows.insert(m_rows.begin() + at, std::move(row));
        m_rowids.insert(m_rowids.begin() + at, rowid);
        m_deletedCurrent = false;
        m_pos = at;
        visit();
    }

    void updateCurrent() {
        if (!hasCurrent())
            throw noCurrentRecord();
        QStringList sets;
        std::vector<Value> values;
        for (size_t i = 0; i < m_buffer.size(); ++i) {
            if (!m_dirty[i])
                continue;
            sets << QuoteName(m_originColumns[i]) + " = ?";
            values.push_back(m_buffer[i]);
        }
        if (sets.isEmpty())
            return;
        const std::int64_t rowid = m_rowids[static_cast<size_t>(m_pos)];
        Statement s = m_db.prepare("UPDATE " + QuoteName(m_baseTable) + " SET " + sets.join(", ") + " WHERE rowid = ?");
        int p = 1;
        for (const auto& v : values)
            BindValue(s, p++, v);
        sqlite3_bind_int64(s, p, rowid);
        m_db.runToEnd(s);
        m_rows[static_cast<size_t>(m_pos)] = rereadRow(rowid);
    }

    // The first row from start on that the criteria hold for. The criteria run on SQLite over one row at a
    // time, bound as the columns of a one-row table named like the base table, with texts compared case-blind.
    int firstMatch(const QString& criteria, int start) {
        const QString expression = TranslateJetExpression(criteria, m_db.catalog());
        QStringList columns;
        QHash<QString, bool> seen;
        std::vector<int> bound;
        for (int i = 0; i < m_names.size(); ++i) {
            if (seen.contains(m_names[i].toLower()))
                continue;
            seen.insert(m_names[i].toLower(), true);
            const QString mark = QString("?%1").arg(bound.size() + 1);
            const bool text = m_types[static_cast<size_t>(i)].isText() ||
                              (m_types[static_cast<size_t>(i)].kind == JetKind::Unknown && !m_rows.empty() &&
                               m_rows.front()[static_cast<size_t>(i)].type() == VType::String);
            columns << (text ? mark + " COLLATE NOCASE" : mark) + " AS " + QuoteName(m_names[i]);
            bound.push_back(i);
        }
        QString alias = m_baseTable;
        if (alias.isEmpty() && !m_originTables.empty())
            alias = m_originTables.front();
        if (alias.isEmpty())
            alias = "row";
        Statement s;
        try {
            s = m_db.prepare("SELECT (" + expression + ") FROM (SELECT " + columns.join(", ") + ") AS " +
                             QuoteName(alias));
        } catch (const DbError& e) {
            if (e.number() == 3061)
                throw DbError(3070,
                              "The criteria name a field or expression that is not in the recordset: " + criteria);
            throw;
        }
        for (int r = start; r < size(); ++r) {
            const auto& row = m_rows[static_cast<size_t>(r)];
            for (size_t b = 0; b < bound.size(); ++b)
                BindValue(s, static_cast<int>(b) + 1, row[static_cast<size_t>(bound[b])]);
            const int rc = sqlite3_step(s);
            if (rc != SQLITE_ROW)
                m_db.fail(rc, criteria);
            const bool match = sqlite3_column_type(s, 0) != SQLITE_NULL && sqlite3_column_double(s, 0) != 0.0;
            sqlite3_reset(s);
            if (match)
                return r;
        }
        return -1;
    }

    DatabaseImpl& m_db;
    RecordsetType m_type;
    QString m_baseTable; // empty when rows cannot be written back
    QStringList m_names;
    QHash<QString, int> m_nameIndex;
    std::vector<JetType> m_types;
    std::vector<QString> m_originColumns;
    std::vector<QString> m_originTables;
    std::vector<std::vector<Value>> m_rows;
    std::vector<std::int64_t> m_rowids;
    int m_pos = 0;
    int m_visited = 0;
    bool m_deletedCurrent = false;
    bool m_noMatch = false;
    bool m_closed = false;
    Mode m_mode = Mode::None;
    Loaded m_loaded = Loaded::All;
    std::vector<Value> m_buffer;
    std::vector<bool> m_dirty;
    std::vector<Value> m_defaults;
    QString m_indexName;
    std::vector<int> m_indexColumns;
};

namespace {

// A plain table name, also in brackets; empty when the source is a statement.
QString tableNameOf(const QString& source) {
    QString s = source.trimmed();
    if (s.startsWith('[') && s.endsWith(']'))
        return s.mid(1, s.size() - 2);
    // Any blank, tab or line break makes it a statement (no pattern: every recordset opened comes through here).
    for (const QChar c : s)
        if (c == QLatin1Char(' ') || (c.unicode() >= 9 && c.unicode() <= 13))
            return QString();
    return s;
}

} // namespace

std::unique_ptr<Recordset> openRecordset(DatabaseImpl& db, const QString& source, RecordsetType type) {
    const QString name = tableNameOf(source);
    const QString stored = name.isEmpty() ? QString() : db.catalog().storedTableName(name);
    if (type == RecordsetType::Default)
        type = name.isEmpty() ? RecordsetType::Dynaset : RecordsetType::Table;

    auto impl = std::make_unique<RecordsetImpl>(db, type);
    if (type == RecordsetType::Table) {
        if (name.isEmpty())
            throw DbError(3219, "Invalid operation.");
        if (stored.isEmpty())
            throw DbError(3078, QString("Cannot find the input table or query '%1'.").arg(name));
        impl->openLazily(db.readAll("SELECT rowid, * FROM " + QuoteName(stored) + " WHERE 0", true), stored);
    } else {
        const QString statement = stored.isEmpty() ? source : "SELECT * FROM [" + stored + "]";
        if (!name.isEmpty() && stored.isEmpty() && !source.contains(' '))
            throw DbError(3078, QString("Cannot find the input table or query '%1'.").arg(name));
        const std::shared_ptr<const SqlitePlan> plan = db.translate(statement);
        QString base;
        ResultSet rows = QueryPlan(db, *plan, type == RecordsetType::Dynaset, &base);
        impl->load(std::move(rows), base);
    }
    return std::make_unique<Recordset>(std::move(impl));
}

// ---- Recordset ----

Recordset::Recordset(std::unique_ptr<RecordsetImpl> impl) : m_impl(std::move(impl)) {}
Recordset::~Recordset() = default;

bool Recordset::Eof() const {
    m_impl->requireOpen();
    return m_impl->eof();
}
bool Recordset::Bof() const {
    m_impl->requireOpen();
    return m_impl->bof();
}
int Recordset::RecordCount() const {
    m_impl->requireOpen();
    return m_impl->recordCount();
}
void Recordset::MoveFirst() {
    m_impl->moveFirst();
}
void Recordset::MoveNext() {
    m_impl->moveNext();
}
void Recordset::MovePrevious() {
    m_impl->movePrevious();
}
void Recordset::MoveLast() {
    m_impl->moveLast();
}
int Recordset::AbsolutePosition() const {
    m_impl->requireOpen();
    return m_impl->position();
}

int Recordset::FieldCount() const {
    return static_cast<int>(m_impl->names().size());
}
QString Recordset::FieldName(int index) const {
    m_impl->checkIndex(index);
    return m_impl->names()[index];
}
QStringList Recordset::FieldNames() const {
    return m_impl->names();
}
Value Recordset::Field(const QString& name) const {
    return m_impl->field(m_impl->fieldIndex(name));
}
Value Recordset::Field(int index) const {
    return m_impl->field(index);
}
void Recordset::SetField(const QString& name, const Value& value) {
    m_impl->setField(m_impl->fieldIndex(name), value);
}
void Recordset::SetField(int index, const Value& value) {
    m_impl->setField(index, value);
}

void Recordset::AddNew() {
    m_impl->addNew();
}
void Recordset::Edit() {
    m_impl->edit();
}
void Recordset::Update() {
    m_impl->update();
}
void Recordset::CancelUpdate() {
    m_impl->cancelUpdate();
}
void Recordset::Delete() {
    m_impl->deleteCurrent();
}

void Recordset::FindFirst(const QString& criteria) {
    m_impl->find(criteria, true);
}
void Recordset::FindNext(const QString& criteria) {
    m_impl->find(criteria, false);
}
bool Recordset::NoMatch() const {
    return m_impl->noMatch();
}

void Recordset::SetIndex(const QString& indexName) {
    m_impl->setIndex(indexName);
}
void Recordset::Seek(const QString& comparison, const std::vector<Value>& keys) {
    m_impl->seek(comparison, keys);
}

void Recordset::Close() {
    m_impl->close();
}

std::unique_ptr<Recordset> Database::OpenRecordset(const QString& source, RecordsetType type) {
    return openRecordset(*m_impl, source, type);
}
