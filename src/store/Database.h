#pragma once
// The one open store. Statements are written in the Jet dialect and run on SQLite (see sql/).

#include "NumberedError.h"
#include "Value.h"

#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;
struct JetType;

// An engine error with Jet's number where there is one: 3022 duplicate key, 3078 no such table,
// 3265 item not found in this collection, 3010 table exists, 3191 field defined twice, 3284 index exists,
// 3075/3000 syntax, 3061 unknown name, 3021 no current record, 3020 update without AddNew or Edit,
// 11 division by zero.
class DbError : public NumberedError {
public:
    using NumberedError::NumberedError;
};

// DAO's numbers: dbOpenTable 1, dbOpenDynaset 2, dbOpenSnapshot 4. Default picks table type for a
// plain table name and dynaset for a statement, as OpenRecordset without a type does.
enum class RecordsetType { Default = 0, Table = 1, Dynaset = 2, Snapshot = 4 };

// A column definition in Jet's words: type is one of short, int, integer, long, single, float, double,
// currency, bit, datetime, text, memo, counter; size is the text width (0 = 255).
struct FieldDef {
    QString name;
    QString type;
    int size = 0;
    QString defaultValue = {}; // a constant in Jet's words ("1", "\"text\"", "'text'", "True", "=0"); empty for none
};

struct IndexDef {
    QString name;
    QStringList fields;
    bool primary = false;
    bool unique = false;
};

class RecordsetImpl;

class Recordset {
public:
    explicit Recordset(std::unique_ptr<RecordsetImpl> impl);
    ~Recordset();
    Recordset(const Recordset&) = delete;
    Recordset& operator=(const Recordset&) = delete;

    bool Eof() const;
    bool Bof() const;
    int RecordCount() const; // rows visited so far for dynasets and snapshots, as DAO counts; all rows after MoveLast
    void MoveFirst();        // throws DbError 3021 on an empty recordset
    void MoveNext();
    void MovePrevious();
    void MoveLast();
    int AbsolutePosition() const;

    int FieldCount() const;
    QString FieldName(int index) const;
    QStringList FieldNames() const;
    Value Field(const QString& name) const; // case-blind; throws DbError 3265 when there is no such field
    Value Field(int index) const;
    void SetField(const QString& name, const Value& value);
    void SetField(int index, const Value& value);

    void AddNew();
    void Edit();
    void Update(); // after AddNew, a counter column of the new row is readable and the row becomes current
    void CancelUpdate();
    void Delete();

    void FindFirst(const QString& criteria); // a Jet expression over the recordset's fields
    void FindNext(const QString& criteria);
    bool NoMatch() const;

    void SetIndex(const QString& indexName); // table type only
    void Seek(const QString& comparison, const std::vector<Value>& keys);

    void Close();

private:
    std::unique_ptr<RecordsetImpl> m_impl;
};

// A row of a statement read in place, as SQLite holds it: for loops over many rows that need no Value of each
// field. Valid only inside the visit that received it.
class RowView {
public:
    RowView(sqlite3_stmt* statement, const std::vector<JetType>* types) : m_s(statement), m_types(types) {}
    int columnCount() const;
    bool isNull(int column) const;
    bool isText(int column) const;   // held as text (a text, or a number a text column keeps)
    bool isNumber(int column) const; // held as an integer or a floating-point number
    double number(int column) const; // a number as it is held (0 for Null; a text as SQLite reads it)
    std::int64_t integer(int column) const;
    QByteArray utf8(int column) const; // the text without a copy; valid for this visit only
    Value value(int column) const;     // what a recordset field would give
    const JetType& type(int column) const;

private:
    sqlite3_stmt* m_s;
    const std::vector<JetType>* m_types;
};

class DatabaseImpl;

class Database {
public:
    // Opens (and creates, when asked) the SQLite file. Throws DbError.
    static std::unique_ptr<Database> Open(const QString& path, bool createIfMissing = true);
    ~Database();
    Database(const Database&) = delete;
    Database& operator=(const Database&) = delete;

    QString Path() const;

    // Runs one statement in the Jet dialect. Throws DbError.
    void Execute(const QString& statement);
    int RecordsAffected() const;
    // Whether the statement yields rows (a select or a crosstab) rather than changing the store.
    bool ReturnsRows(const QString& statement) const;

    std::unique_ptr<Recordset> OpenRecordset(const QString& source, RecordsetType type = RecordsetType::Default);
    // Runs a select in the dialect and hands each row to visit as SQLite reads it, without keeping any. For the
    // routines that walk whole tables; screens use recordsets. Throws DbError.
    void ForEachRow(const QString& statement, const std::function<void(const RowView&)>& visit);

    // Schema reading: user tables only (never SQLite's own), fields in their order, named indexes.
    QStringList TableNames() const;
    std::vector<FieldDef> Fields(const QString& table) const; // throws DbError 3265 for a missing table
    std::vector<IndexDef> Indexes(const QString& table) const;

    // The table-definition interface: what DAO's CreateTableDef, CreateField, CreateIndex and Append do.
    void CreateTableDef(const QString& name, const std::vector<FieldDef>& fields);
    void CreateField(const QString& table, const FieldDef& field);
    void CreateIndex(const QString& table, const IndexDef& index); // fails on a duplicate name or a missing column
    void RefreshTableDefs();

    // Whether nothing has changed the store (this connection, another one, or its schema) since MarkUnchanged was
    // called with the key: a routine whose result depends on the store alone need not run again.
    bool UnchangedSince(const QString& key) const;
    void MarkUnchanged(const QString& key);

    // Calls observer each time a write has become durable: a changing statement completed outside any transaction,
    // or the commit of a transaction that changed something. For tests of what survives a killed program.
    void OnDurableWrite(std::function<void()> observer);

    void BeginTrans();
    void CommitTrans();
    void Rollback();

    // The repair step: integrity check then VACUUM. Returns false with the reason on a fault.
    bool Repair(QString* reason = nullptr);
    bool IntegrityCheck(QString* reason = nullptr);

    sqlite3* handle() const;
    DatabaseImpl& impl() const { return *m_impl; }

private:
    explicit Database(std::unique_ptr<DatabaseImpl> impl);
    std::unique_ptr<DatabaseImpl> m_impl;
};
