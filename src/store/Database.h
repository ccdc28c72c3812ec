#pragma once
// The one open store. Statements are written in the Jet dialect and run on SQLite (see sql/).

#include "NumberedError.h"
#include "Value.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

struct sqlite3;

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

    // Schema reading: user tables only (never SQLite's own), fields in their order, named indexes.
    QStringList TableNames() const;
    std::vector<FieldDef> Fields(const QString& table) const; // throws DbError 3265 for a missing table
    std::vector<IndexDef> Indexes(const QString& table) const;

    // The table-definition interface: what DAO's CreateTableDef, CreateField, CreateIndex and Append do.
    void CreateTableDef(const QString& name, const std::vector<FieldDef>& fields);
    void CreateField(const QString& table, const FieldDef& field);
    void CreateIndex(const QString& table, const IndexDef& index); // fails on a duplicate name or a missing column
    void RefreshTableDefs();

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
