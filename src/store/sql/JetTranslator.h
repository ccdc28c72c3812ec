#pragma once
// Translation of one Jet-dialect statement into what the SQLite executor runs.
// The parser (JetParser) builds a syntax tree; the emitter (SqliteEmitter) turns it into a plan.
// Kept apart so that a second emitter (PostgreSQL) can follow.

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>
#include <vector>

// What the emitter may ask about the store while it translates (declared types, key columns).
class SchemaCatalog {
public:
    virtual ~SchemaCatalog() = default;
    virtual bool hasTable(const QString& table) const = 0;
    // Columns in order with their declared type words ("TEXT(50)", "BIT", "DOUBLE", "DATETIME", ...).
    struct Column {
        QString name;
        QString declaredType;
    };
    virtual std::vector<Column> columns(const QString& table) const = 0;
};

// A column for a CREATE or ALTER, in Jet's words, as the executor needs them.
struct JetColumnSpec {
    QString name;
    QString type; // short, int, integer, long, single, float, double, currency, bit, datetime, text, memo, counter
    int size = 0; // text(n)
    bool primaryKey = false;
    bool notNull = false;
    bool autoIncrement = false; // AUTOINCREMENT or COUNTER
    QString defaultSql = {};    // the column's default as SQLite writes it, empty for none
};

struct SqlitePlan {
    enum class Kind {
        Query,       // sql yields rows
        Command,     // sql changes data (insert, update, delete); rows affected is meaningful
        SelectInto,  // create intoTable from the column types of sql (a select), then insert its rows
        Crosstab,    // run pivotValuesSql, then sql built by crosstabSql(values) yields the rows
        CreateTable, // table + columns
        AddColumn,   // table + columns[0]
        AlterColumn, // table + columns[0]: change the type (table rebuild on SQLite)
        DropColumn,  // table + column
        DropTable,   // table
        CreateIndex, // table + index (name, fields, unique, primary)
        DropIndex,
    };
    Kind kind = Kind::Query;
    QString sql;
    QString intoTable;
    QString table;
    QString column;
    std::vector<JetColumnSpec> columns;
    QString indexName;
    QStringList indexFields;
    bool unique = false;
    bool primary = false;

    // Crosstab: the distinct pivot values in Jet's order come from pivotValuesSql (one column);
    // crosstabSql(values) returns the final SELECT with one column per value.
    QString pivotValuesSql;

    // Query and SelectInto: the Jet type word ("datetime", ...) of each output column whose type the statement
    // fixes where SQLite may give no declared type (a #date# literal, now(), cdate(...), min/max of a datetime
    // column, a datetime column itself); empty entries where the stored value decides. Empty when the select
    // list has a `*`.
    QStringList columnTypes;
    std::function<QString(const QStringList& pivotValues)> crosstabSql;
};

// Parses and translates; throws DbError (3075 / 3000 family, with a readable description) when the
// statement is not valid Jet.
SqlitePlan TranslateJet(const QString& statement, const SchemaCatalog& catalog);

// Translates a bare Jet expression (FindFirst criteria, for example) into a SQLite expression.
QString TranslateJetExpression(const QString& expression, const SchemaCatalog& catalog);
