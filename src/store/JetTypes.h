#pragma once
// Column types in Jet's words, the declared types that keep them in SQLite, and the conversion of values
// between a column's type and the program's Value.
//
// A column keeps its Jet type as its SQLite declared type, so that reading the schema gives it back:
//   short SHORT, long LONG, single SINGLE, double DOUBLE, currency CURRENCY, bit BIT (never Null),
//   datetime DATETIME (ISO text), text(n) TEXT(n) COLLATE NOCASE, memo LONGTEXT COLLATE NOCASE (a declared
//   type with TEXT in it, so SQLite never turns a memo of digits into a number), counter
//   INTEGER PRIMARY KEY AUTOINCREMENT.

#include "Value.h"

#include <QString>

struct sqlite3_stmt;

enum class JetKind { Unknown, Short, Long, Single, Double, Currency, Bit, DateTime, Text, Memo, Counter };

struct JetType {
    JetKind kind = JetKind::Unknown;
    int size = 0; // text width; 0 = 255

    bool isInteger() const { return kind == JetKind::Short || kind == JetKind::Long || kind == JetKind::Counter; }
    bool isNumeric() const;
    bool isText() const { return kind == JetKind::Text || kind == JetKind::Memo; }
};

// A type word of a definition ("short", "integer", "text", "autoincrement", ...). Unknown for a word that
// names no type.
JetType JetTypeFromWord(const QString& word, int size = 0);

// A declared type as SQLite keeps it ("TEXT(50)", "BIT", "INTEGER", "VARCHAR(20)", ...); primaryKey tells
// whether the column is the table's integer key, which makes "INTEGER" a counter. Unknown for an empty
// declared type (an expression column).
JetType JetTypeFromDeclared(const QString& declared, bool primaryKey = false);

// The type word as the schema reading reports it: "short", "long", "single", "double", "currency", "bit",
// "datetime", "text", "memo", "counter".
QString JetTypeWord(const JetType& type);

// The declared type word the dialect layer is told about: "SHORT", "LONG", "TEXT(50)", "COUNTER", ...
QString JetDeclaredWord(const JetType& type);

// The column definition after the name in a CREATE TABLE. A counter becomes the table's integer key.
QString SqliteColumnDefinition(const JetType& type, bool notNull = false);

// A text, as SQLite quotes names.
QString QuoteName(const QString& name);

// The value SQLite holds in a column of the given type, as the program sees it.
Value ReadColumnValue(sqlite3_stmt* statement, int column, const JetType& type);

// A value converted to what a column of the type stores, as Jet converts on assignment. Throws DbError
// 3421 (data type conversion) when the value cannot be converted.
Value ConvertForColumn(const Value& value, const JetType& type);

// Binds a value (already converted) to a parameter. Dates go as ISO text, Booleans as -1 and 0.
void BindValue(sqlite3_stmt* statement, int parameter, const Value& value);

// The ISO text of a datetime column: "yyyy-MM-dd hh:mm:ss".
QString IsoDateTime(const QDateTime& dateTime);
