#pragma once
// The syntax tree of one Jet-dialect statement, as the parser builds it and the emitters read it.
// Plain owning structs: a statement is parsed, emitted once and thrown away.

#include "JetTranslator.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

namespace jet {

struct Select;

enum class ExprKind {
    Number,  // text: the literal as written
    String,  // text: the value
    Date,    // text: ISO "yyyy-MM-dd hh:mm:ss"
    Boolean, // boolValue
    Null,
    Column,   // text: name; qualifier: table or alias (may be empty)
    Star,     // `*` or `t.*` (qualifier)
    Unary,    // op: "-", "+", "not"; args[0]
    Binary,   // op: lower-case operator; args[0], args[1]
    Call,     // text: function name in lower case; args; star for count(*)
    Like,     // args[0] like args[1]; negated
    Between,  // args[0] between args[1] and args[2]; negated
    InList,   // args[0] in (args[1..]); negated
    InSelect, // args[0] in (subquery); negated
    IsNull,   // args[0] is [not] null; negated
    Exists,   // exists (subquery)
    Subquery, // (subquery) as a value
};

struct Expr;
using ExprPtr = std::unique_ptr<Expr>;

struct Expr {
    ExprKind kind = ExprKind::Null;
    QString text;
    QString qualifier;
    QString op;
    bool boolValue = false;
    bool negated = false;
    bool star = false; // count(*)
    std::vector<ExprPtr> args;
    std::unique_ptr<Select> subquery;
    int start = 0; // position in the statement, for messages
    int end = 0;
    int depth = 1; // height of the tree below, bounded by the parser
};

struct SelectItem {
    ExprPtr expr;
    QString alias; // empty when none was given
};

enum class JoinKind { Comma, Inner, Left, Right };

struct TableRef {
    enum class Kind { Table, Derived, Join };
    Kind kind = Kind::Table;
    QString name;  // table name
    QString alias; // alias of a table or derived table
    std::unique_ptr<Select> derived;
    JoinKind join = JoinKind::Inner;
    std::unique_ptr<TableRef> left;
    std::unique_ptr<TableRef> right;
    ExprPtr on;
};
using TableRefPtr = std::unique_ptr<TableRef>;

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

// One select of a union: everything but the final order by.
struct SelectCore {
    bool distinct = false;
    long long top = -1; // -1: no top
    bool topPercent = false;
    std::vector<SelectItem> items;
    QString into;
    std::vector<TableRefPtr> from; // comma-separated entries (joins inside)
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
};

struct Select {
    std::vector<SelectCore> cores; // joined by union [all]
    std::vector<bool> unionAll;    // one per link between cores
    std::vector<OrderItem> orderBy;
};

struct Assignment {
    ExprPtr target; // a column
    ExprPtr value;
};

struct Statement {
    enum class Kind {
        Select,
        Transform,
        InsertValues,
        InsertSelect,
        Update,
        Delete,
        CreateTable,
        AddColumn,
        AlterColumn,
        DropColumn,
        DropTable,
        CreateIndex,
        DropIndex,
    };
    Kind kind = Kind::Select;
    std::unique_ptr<Select> select; // select, transform, insert-select
    QString table;
    QStringList columns;         // insert's column list, index fields
    std::vector<ExprPtr> values; // insert values
    TableRefPtr source;          // update and delete: the tables (with joins)
    QString deleteQualifier;     // delete t.* from ...
    std::vector<Assignment> assignments;
    ExprPtr where;
    std::vector<JetColumnSpec> columnSpecs;
    QString indexName;
    bool unique = false;
    bool primary = false;
    // Transform: the aggregate expression, the pivot and its optional fixed headings.
    ExprPtr transformValue;
    ExprPtr pivot;
    std::vector<ExprPtr> pivotIn;
};

} // namespace jet
