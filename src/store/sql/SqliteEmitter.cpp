#include "SqliteEmitter.h"

#include "Database.h"
#include "JetLexer.h"
#include "JetParser.h"

#include <QHash>
#include <QSet>
#include <algorithm>
#include <functional>
#include <optional>

namespace jet {

namespace {

const QString kNoCase = QStringLiteral(" COLLATE NOCASE");
// Stands for the pivot condition in a crosstab's cell expression until the headings are known.
const QString kPivotMark = QStringLiteral("\x01PIVOT\x01");
const QString kCurrency = QStringLiteral("currency");

QString quoteName(const QString& name) {
    return QLatin1Char('[') + name + QLatin1Char(']');
}

QString quoteText(const QString& text) {
    QString out = text;
    out.replace(QLatin1Char('\''), QLatin1String("''"));
    return QLatin1Char('\'') + out + QLatin1Char('\'');
}

QString quoteAlias(const QString& alias) {
    QString out = alias;
    out.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + out + QLatin1Char('"');
}

bool isAggregateName(const QString& name) {
    return name == QLatin1String("sum") || name == QLatin1String("avg") || name == QLatin1String("min") ||
           name == QLatin1String("max") || name == QLatin1String("count") || name == QLatin1String("first") ||
           name == QLatin1String("last");
}

bool isConstant(const Expr& e) {
    switch (e.kind) {
    case ExprKind::Number:
    case ExprKind::String:
    case ExprKind::Date:
    case ExprKind::Boolean:
    case ExprKind::Null:
        return true;
    case ExprKind::Unary:
        return isConstant(*e.args[0]);
    default:
        return false;
    }
}

// The first word of a declared type in capitals: "TEXT(50) COLLATE NOCASE" gives "TEXT". Asked for every column a
// statement names, so no pattern is built for it.
QString typeWordOf(const QString& declared) {
    const QString word = declared.trimmed().toUpper();
    for (qsizetype i = 0; i < word.size(); ++i)
        if (word[i] == QLatin1Char(' ') || word[i] == QLatin1Char('('))
            return word.left(i);
    return word;
}

bool isComparisonOp(const QString& op) {
    return op == QLatin1String("=") || op == QLatin1String("<>") || op == QLatin1String("<") ||
           op == QLatin1String(">") || op == QLatin1String("<=") || op == QLatin1String(">=");
}

// A function that maps one to one onto a registered or built-in one.
struct FunctionMapping {
    const char* sqlName;
    int minArgs;
    int maxArgs;
};

const QHash<QString, FunctionMapping>& functionMappings() {
    static const QHash<QString, FunctionMapping> map = {
        {QStringLiteral("val"), {"jet_val", 1, 1}},
        {QStringLiteral("cdbl"), {"jet_cdbl", 1, 1}},
        {QStringLiteral("csng"), {"jet_cdbl", 1, 1}},
        {QStringLiteral("ccur"), {"jet_ccur", 1, 1}},
        {QStringLiteral("cint"), {"jet_cint", 1, 1}},
        {QStringLiteral("clng"), {"jet_clng", 1, 1}},
        {QStringLiteral("cstr"), {"jet_cstr", 1, 1}},
        {QStringLiteral("cdate"), {"jet_cdate", 1, 1}},
        {QStringLiteral("datevalue"), {"jet_cdate", 1, 1}},
        {QStringLiteral("strconv"), {"jet_strconv", 2, 2}},
        {QStringLiteral("format"), {"jet_format", 1, 2}},
        {QStringLiteral("abs"), {"abs", 1, 1}},
        {QStringLiteral("trim"), {"trim", 1, 1}},
        {QStringLiteral("ltrim"), {"ltrim", 1, 1}},
        {QStringLiteral("rtrim"), {"rtrim", 1, 1}},
        {QStringLiteral("left"), {"jet_left", 2, 2}},
        {QStringLiteral("right"), {"jet_right", 2, 2}},
        {QStringLiteral("mid"), {"jet_mid", 2, 3}},
        {QStringLiteral("len"), {"jet_len", 1, 1}},
        {QStringLiteral("ucase"), {"upper", 1, 1}},
        {QStringLiteral("lcase"), {"lower", 1, 1}},
        {QStringLiteral("now"), {"jet_now", 0, 0}},
        {QStringLiteral("date"), {"jet_date", 0, 0}},
        {QStringLiteral("time"), {"jet_time", 0, 0}},
        {QStringLiteral("year"), {"jet_year", 1, 1}},
        {QStringLiteral("month"), {"jet_month", 1, 1}},
        {QStringLiteral("day"), {"jet_day", 1, 1}},
        {QStringLiteral("int"), {"jet_int", 1, 1}},
        {QStringLiteral("fix"), {"jet_fix", 1, 1}},
        {QStringLiteral("round"), {"jet_round", 1, 2}},
        {QStringLiteral("isnumeric"), {"jet_isnumeric", 1, 1}},
        {QStringLiteral("instr"), {"jet_instr", 2, 3}},
        {QStringLiteral("space"), {"jet_space", 1, 1}},
        {QStringLiteral("sum"), {"sum", 1, 1}},
        {QStringLiteral("avg"), {"avg", 1, 1}},
        {QStringLiteral("min"), {"min", 1, 1}},
        {QStringLiteral("max"), {"max", 1, 1}},
        {QStringLiteral("count"), {"count", 1, 1}},
        {QStringLiteral("first"), {"jet_first", 1, 1}},
        {QStringLiteral("last"), {"jet_last", 1, 1}},
    };
    return map;
}

class Emitter {
public:
    Emitter(const QString& source, const SchemaCatalog& catalog) : m_source(source), m_catalog(catalog) {}

    enum class Ctx { Value, Bool };

    SqlitePlan plan(const Statement& st);
    QString expr(const Expr& e, Ctx ctx);

private:
    const QString& m_source;
    const SchemaCatalog& m_catalog;
    // The columns of each table this statement names, asked of the catalog once (lower-case name -> columns).
    mutable QHash<QString, std::vector<SchemaCatalog::Column>> m_columnsSeen;
    const std::vector<SchemaCatalog::Column>& columnsOf(const QString& table) const {
        const QString key = table.toLower();
        auto found = m_columnsSeen.find(key);
        if (found == m_columnsSeen.end())
            found = m_columnsSeen.insert(key, m_catalog.columns(table));
        return *found;
    }
    bool m_inPivotCell = false; // aggregates take their rows only under the pivot condition

    // The tables in reach of a column name: one list per select level, innermost last.
    struct ScopeEntry {
        QString visible; // alias, or the table's name
        QString table;
    };
    std::vector<std::vector<ScopeEntry>> m_scopes;
    struct ScopeGuard {
        Emitter& emitter;
        ScopeGuard(Emitter& e, std::vector<ScopeEntry> entries) : emitter(e) {
            emitter.m_scopes.push_back(std::move(entries));
        }
        ~ScopeGuard() { emitter.m_scopes.pop_back(); }
        ScopeGuard(const ScopeGuard&) = delete;
        ScopeGuard& operator=(const ScopeGuard&) = delete;
    };
    static void collectTables(const TableRef& t, std::vector<ScopeEntry>& out) {
        if (t.kind == TableRef::Kind::Join) {
            collectTables(*t.left, out);
            collectTables(*t.right, out);
        } else if (t.kind == TableRef::Kind::Table) {
            out.push_back({t.alias.isEmpty() ? t.name : t.alias, t.name});
        }
    }
    bool isDateTimeColumn(const Expr& e) const;
    QString declaredTypeOf(const Expr& column) const;
    bool caseless(const Expr& e) const;
    QString noCaseFor(const Expr& e) const { return caseless(e) ? QString() : kNoCase; }
    QString valueFor(const Expr& value, bool dateTimeTarget);
    char storeKindOf(const QString& table, const QString& column) const;
    QString storedValue(const Expr& value, char storeKind);

    QString exprText(const Expr& e) const { return m_source.mid(e.start, e.end - e.start).trimmed(); }
    QString call(const Expr& e, Ctx ctx);
    QString comparison(const Expr& e);
    void flattenConcat(const Expr& e, QStringList& parts);
    QString asText(const Expr& e);
    QString select(const Select& s);
    QString core(const SelectCore& c, const std::vector<OrderItem>* order, bool inCompound);
    QString coreBody(const SelectCore& c); // from ... having
    QString items(const SelectCore& c, bool caseBlind = false);
    void checkGrouping(const SelectCore& c, const std::vector<OrderItem>* order);
    bool groupedOrAggregate(const Expr& e, const SelectCore& c);
    bool m_unionDistinct = false; // the cores being emitted are joined by a plain union
    QString tableRef(const TableRef& t);
    QString groupTerm(const Expr& e);
    QString orderTerm(const OrderItem& o, const SelectCore& c);
    std::optional<QStringList> outputNames(const Select& s) const;
    std::optional<QStringList> refColumns(const TableRef& t, const QString& qualifier) const;
    SqlitePlan crosstab(const Statement& st);
    QStringList columnTypes(const SelectCore& c);
    QString staticType(const Expr& e) const;
    QString update(const Statement& st);
    QString deleteRows(const Statement& st);
};

// ---- expressions ----

QString Emitter::expr(const Expr& e, Ctx ctx) {
    switch (e.kind) {
    case ExprKind::Number:
        return e.text;
    case ExprKind::String:
    case ExprKind::Date:
        return quoteText(e.text);
    case ExprKind::Boolean:
        return e.boolValue ? QStringLiteral("-1") : QStringLiteral("0");
    case ExprKind::Null:
        return QStringLiteral("NULL");
    case ExprKind::Column:
        return e.qualifier.isEmpty() ? quoteName(e.text)
                                     : quoteName(e.qualifier) + QLatin1Char('.') + quoteName(e.text);
    case ExprKind::Star:
        return e.qualifier.isEmpty() ? QStringLiteral("*") : quoteName(e.qualifier) + QStringLiteral(".*");
    case ExprKind::Unary: {
        if (e.op == QLatin1String("not")) {
            if (ctx == Ctx::Bool)
                return QStringLiteral("(NOT ") + expr(*e.args[0], Ctx::Bool) + QLatin1Char(')');
            return QStringLiteral("(~") + expr(*e.args[0], Ctx::Value) + QLatin1Char(')');
        }
        if (e.op == QLatin1String("-"))
            return QStringLiteral("(-") + expr(*e.args[0], Ctx::Value) + QLatin1Char(')');
        return expr(*e.args[0], ctx);
    }
    case ExprKind::Binary: {
        const QString& op = e.op;
        if (isComparisonOp(op)) {
            const QString c = comparison(e);
            return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
        }
        if (op == QLatin1String("and") || op == QLatin1String("or")) {
            if (ctx == Ctx::Bool)
                return QLatin1Char('(') + expr(*e.args[0], Ctx::Bool) +
                       (op == QLatin1String("and") ? " AND " : " OR ") + expr(*e.args[1], Ctx::Bool) + QLatin1Char(')');
            // VB's And and Or work on the bits of True (-1) and False (0).
            return QLatin1Char('(') + expr(*e.args[0], Ctx::Value) + (op == QLatin1String("and") ? " & " : " | ") +
                   expr(*e.args[1], Ctx::Value) + QLatin1Char(')');
        }
        if (op == QLatin1String("xor") || op == QLatin1String("eqv") || op == QLatin1String("imp")) {
            const QString a = QStringLiteral("((") + expr(*e.args[0], Ctx::Value) + QStringLiteral(") <> 0)");
            const QString b = QStringLiteral("((") + expr(*e.args[1], Ctx::Value) + QStringLiteral(") <> 0)");
            QString c;
            if (op == QLatin1String("xor"))
                c = QLatin1Char('(') + a + QStringLiteral(" <> ") + b + QLatin1Char(')');
            else if (op == QLatin1String("eqv"))
                c = QLatin1Char('(') + a + QStringLiteral(" = ") + b + QLatin1Char(')');
            else
                c = QStringLiteral("((NOT ") + a + QStringLiteral(") OR ") + b + QLatin1Char(')');
            return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
        }
        if (op == QLatin1String("&")) {
            QStringList parts;
            flattenConcat(e, parts);
            return QStringLiteral("jet_cat(") + parts.join(QLatin1Char(',')) + QLatin1Char(')');
        }
        const QString a = expr(*e.args[0], Ctx::Value);
        const QString b = expr(*e.args[1], Ctx::Value);
        if (op == QLatin1String("+"))
            return QStringLiteral("jet_add(") + a + QLatin1Char(',') + b + QLatin1Char(')');
        if (op == QLatin1String("-") || op == QLatin1String("*"))
            return QLatin1Char('(') + a + QLatin1Char(' ') + op + QLatin1Char(' ') + b + QLatin1Char(')');
        if (op == QLatin1String("/"))
            return QStringLiteral("jet_div(") + a + QLatin1Char(',') + b + QLatin1Char(')');
        if (op == QLatin1String("\\"))
            return QStringLiteral("jet_idiv(") + a + QLatin1Char(',') + b + QLatin1Char(')');
        if (op == QLatin1String("mod"))
            return QStringLiteral("jet_mod(") + a + QLatin1Char(',') + b + QLatin1Char(')');
        if (op == QLatin1String("^"))
            return QStringLiteral("jet_pow(") + a + QLatin1Char(',') + b + QLatin1Char(')');
        throw DbError(3075,
                      QStringLiteral("Syntax error (missing operator) in query expression '%1'.").arg(exprText(e)));
    }
    case ExprKind::Like: {
        QString c = QStringLiteral("jet_like(") + expr(*e.args[0], Ctx::Value) + QLatin1Char(',') +
                    expr(*e.args[1], Ctx::Value) + QLatin1Char(')');
        if (e.negated)
            c = QStringLiteral("(NOT ") + c + QLatin1Char(')');
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::Between: {
        const bool dates = isDateTimeColumn(*e.args[0]);
        const QString c = QLatin1Char('(') + expr(*e.args[0], Ctx::Value) + noCaseFor(*e.args[0]) +
                          (e.negated ? QStringLiteral(" NOT BETWEEN ") : QStringLiteral(" BETWEEN ")) +
                          valueFor(*e.args[1], dates) + QStringLiteral(" AND ") + valueFor(*e.args[2], dates) +
                          QLatin1Char(')');
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::InList: {
        QStringList list;
        const bool dates = isDateTimeColumn(*e.args[0]);
        for (size_t i = 1; i < e.args.size(); ++i)
            list << valueFor(*e.args[i], dates);
        const QString c = QLatin1Char('(') + expr(*e.args[0], Ctx::Value) + noCaseFor(*e.args[0]) +
                          (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN (")) +
                          list.join(QLatin1Char(',')) + QStringLiteral("))");
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::InSelect: {
        const QString c = QLatin1Char('(') + expr(*e.args[0], Ctx::Value) + noCaseFor(*e.args[0]) +
                          (e.negated ? QStringLiteral(" NOT IN (") : QStringLiteral(" IN (")) + select(*e.subquery) +
                          QStringLiteral("))");
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::IsNull: {
        const QString c = QLatin1Char('(') + expr(*e.args[0], Ctx::Value) +
                          (e.negated ? QStringLiteral(" IS NOT NULL)") : QStringLiteral(" IS NULL)"));
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::Exists: {
        const QString c = QStringLiteral("(EXISTS (") + select(*e.subquery) + QStringLiteral("))");
        return ctx == Ctx::Bool ? c : QStringLiteral("(-") + c + QLatin1Char(')');
    }
    case ExprKind::Subquery:
        return QLatin1Char('(') + select(*e.subquery) + QLatin1Char(')');
    case ExprKind::Call:
        return call(e, ctx);
    }
    return QStringLiteral("NULL");
}

void Emitter::flattenConcat(const Expr& e, QStringList& parts) {
    if (e.kind == ExprKind::Binary && e.op == QLatin1String("&")) {
        flattenConcat(*e.args[0], parts);
        flattenConcat(*e.args[1], parts);
    } else {
        parts << asText(e);
    }
}

// A datetime turned into text reads as VB shows a date ("yyyy/MM/dd hh:nn:ss"), not as it is stored.
QString Emitter::asText(const Expr& e) {
    const QString sql = expr(e, Ctx::Value);
    const QString type = staticType(e);
    if (type == QLatin1String("datetime"))
        return QStringLiteral("jet_datetext(") + sql + QLatin1Char(')');
    if (type == QLatin1String("bit")) // a Yes/No value reads "True" or "False"
        return QStringLiteral("jet_bittext(") + sql + QLatin1Char(')');
    return sql;
}

QString Emitter::comparison(const Expr& e) {
    const Expr& left = *e.args[0];
    const Expr& right = *e.args[1];
    // A Yes/No column compared with True or False: any non-zero value counts as True, as Jet stores it.
    if ((e.op == QLatin1String("=") || e.op == QLatin1String("<>")) &&
        (left.kind == ExprKind::Boolean || right.kind == ExprKind::Boolean) &&
        !(left.kind == ExprKind::Boolean && right.kind == ExprKind::Boolean)) {
        const Expr& literal = left.kind == ExprKind::Boolean ? left : right;
        const Expr& other = left.kind == ExprKind::Boolean ? right : left;
        const bool wantTrue = literal.boolValue == (e.op == QLatin1String("="));
        return QLatin1Char('(') + expr(other, Ctx::Value) +
               (wantTrue ? QStringLiteral(" <> 0)") : QStringLiteral(" = 0)"));
    }
    // A datetime column compared with a text that is a date: Jet compares dates, so the text becomes one.
    const bool leftDate = isDateTimeColumn(left);
    const bool rightDate = isDateTimeColumn(right);
    const bool noCollation = caseless(left) || caseless(right);
    return QLatin1Char('(') + valueFor(left, rightDate) + QLatin1Char(' ') + e.op + QLatin1Char(' ') +
           valueFor(right, leftDate) + (noCollation ? QString() : kNoCase) + QLatin1Char(')');
}

bool Emitter::isDateTimeColumn(const Expr& e) const {
    const QString declared = declaredTypeOf(e);
    return declared.startsWith(QLatin1String("DATETIME"), Qt::CaseInsensitive) ||
           declared.compare(QLatin1String("DATE"), Qt::CaseInsensitive) == 0;
}

// The declared type of the table column a name stands for, looked up through the tables in reach.
QString Emitter::declaredTypeOf(const Expr& e) const {
    if (e.kind != ExprKind::Column)
        return {};
    for (auto scope = m_scopes.rbegin(); scope != m_scopes.rend(); ++scope) {
        for (const ScopeEntry& entry : *scope) {
            if (!e.qualifier.isEmpty() && entry.visible.compare(e.qualifier, Qt::CaseInsensitive) != 0)
                continue;
            if (!m_catalog.hasTable(entry.table)) {
                if (!e.qualifier.isEmpty())
                    return {};
                continue;
            }
            for (const SchemaCatalog::Column& col : columnsOf(entry.table))
                if (col.name.compare(e.text, Qt::CaseInsensitive) == 0)
                    return col.declaredType;
            if (!e.qualifier.isEmpty())
                return {};
        }
    }
    return {};
}

// Whether a value can never be text whose case matters: numbers, dates, truth values. Comparing such a value
// needs no case-blind collation, and leaving it out lets SQLite use the column's index.
bool Emitter::caseless(const Expr& e) const {
    switch (e.kind) {
    case ExprKind::Number:
    case ExprKind::Boolean:
    case ExprKind::Date:
    case ExprKind::Null:
    case ExprKind::Like:
    case ExprKind::Between:
    case ExprKind::InList:
    case ExprKind::InSelect:
    case ExprKind::IsNull:
    case ExprKind::Exists:
        return true;
    case ExprKind::String:
    case ExprKind::Star:
    case ExprKind::Subquery:
        return false;
    case ExprKind::Column: {
        static const QSet<QString> words = {
            QStringLiteral("INTEGER"),  QStringLiteral("INT"),     QStringLiteral("LONG"),    QStringLiteral("SHORT"),
            QStringLiteral("SMALLINT"), QStringLiteral("TINYINT"), QStringLiteral("BIGINT"),  QStringLiteral("BYTE"),
            QStringLiteral("DOUBLE"),   QStringLiteral("SINGLE"),  QStringLiteral("FLOAT"),   QStringLiteral("REAL"),
            QStringLiteral("CURRENCY"), QStringLiteral("MONEY"),   QStringLiteral("NUMERIC"), QStringLiteral("DECIMAL"),
            QStringLiteral("BIT"),      QStringLiteral("YESNO"),   QStringLiteral("BOOLEAN"), QStringLiteral("COUNTER"),
            QStringLiteral("DATETIME"), QStringLiteral("DATE"),
        };
        return words.contains(typeWordOf(declaredTypeOf(e)));
    }
    case ExprKind::Unary:
        return e.op != QLatin1String("+") || caseless(*e.args[0]);
    case ExprKind::Binary:
        if (e.op == QLatin1String("&"))
            return false;
        if (e.op == QLatin1String("+"))
            return caseless(*e.args[0]) || caseless(*e.args[1]); // text + text is the only text
        return true;
    case ExprKind::Call: {
        static const QSet<QString> numeric = {
            QStringLiteral("val"),       QStringLiteral("cdbl"),   QStringLiteral("csng"),      QStringLiteral("ccur"),
            QStringLiteral("cint"),      QStringLiteral("clng"),   QStringLiteral("int"),       QStringLiteral("fix"),
            QStringLiteral("round"),     QStringLiteral("abs"),    QStringLiteral("len"),       QStringLiteral("year"),
            QStringLiteral("month"),     QStringLiteral("day"),    QStringLiteral("count"),     QStringLiteral("sum"),
            QStringLiteral("avg"),       QStringLiteral("isnull"), QStringLiteral("isnumeric"), QStringLiteral("instr"),
            QStringLiteral("now"),       QStringLiteral("date"),   QStringLiteral("time"),      QStringLiteral("cdate"),
            QStringLiteral("datevalue"),
        };
        if (numeric.contains(e.text))
            return true;
        if (e.text == QLatin1String("iif") && e.args.size() == 3)
            return caseless(*e.args[1]) && caseless(*e.args[2]);
        if ((e.text == QLatin1String("min") || e.text == QLatin1String("max") || e.text == QLatin1String("first") ||
             e.text == QLatin1String("last") || e.text == QLatin1String("nz")) &&
            !e.args.empty())
            return std::all_of(e.args.begin(), e.args.end(), [this](const ExprPtr& a) { return caseless(*a); });
        return false;
    }
    }
    return false;
}

// A text literal compared with a datetime column is compared as the date it reads as.
QString Emitter::valueFor(const Expr& value, bool dateTimeTarget) {
    if (dateTimeTarget && value.kind == ExprKind::String) {
        const QString iso = JetDateLiteralToIso(value.text);
        if (!iso.isEmpty())
            return quoteText(iso);
    }
    return expr(value, Ctx::Value);
}

// How a column stores what a statement writes into it: 'i' whole numbers, 'n' other numbers, 'c' currency,
// 'd' datetimes; 0 for texts, Yes/No and what this store did not declare.
char Emitter::storeKindOf(const QString& table, const QString& column) const {
    if (!m_catalog.hasTable(table))
        return 0;
    for (const SchemaCatalog::Column& col : columnsOf(table)) {
        if (col.name.compare(column, Qt::CaseInsensitive) != 0)
            continue;
        const QString word = typeWordOf(col.declaredType);
        static const QSet<QString> whole = {QStringLiteral("SHORT"),   QStringLiteral("LONG"),
                                            QStringLiteral("INTEGER"), QStringLiteral("INT"),
                                            QStringLiteral("COUNTER"), QStringLiteral("BYTE")};
        static const QSet<QString> other = {QStringLiteral("DOUBLE"), QStringLiteral("SINGLE"), QStringLiteral("FLOAT"),
                                            QStringLiteral("REAL")};
        if (whole.contains(word))
            return 'i';
        if (other.contains(word))
            return 'n';
        if (word == QLatin1String("CURRENCY") || word == QLatin1String("MONEY"))
            return 'c';
        if (word == QLatin1String("DATETIME") || word == QLatin1String("DATE"))
            return 'd';
        return 0;
    }
    return 0;
}

// The value a statement writes into a column, converted as Jet converts on assignment: a text literal headed for
// a datetime column is the date it reads as; a text headed for a number column is the number it reads as, or Null
// when it is no number (the statement goes on); whole-number and currency columns round. No text ever stands in
// a number or datetime column.
QString Emitter::storedValue(const Expr& value, char storeKind) {
    if (storeKind == 'd' && value.kind == ExprKind::String) {
        const QString iso = JetDateLiteralToIso(value.text);
        if (!iso.isEmpty())
            return quoteText(iso);
    }
    const QString plain = expr(value, Ctx::Value);
    if (storeKind == 0 || value.kind == ExprKind::Null || value.kind == ExprKind::Date ||
        (value.kind == ExprKind::Number && storeKind == 'n'))
        return plain;
    if (storeKind == 'd' && staticType(value) == QLatin1String("datetime"))
        return plain;
    return QStringLiteral("jet_store(") + plain + QStringLiteral(",'") + QLatin1Char(storeKind) + QStringLiteral("')");
}

QString Emitter::call(const Expr& e, Ctx ctx) {
    const QString& name = e.text;
    const int argc = static_cast<int>(e.args.size());
    auto wrongArgs = [&]() -> DbError {
        return DbError(
            3075,
            QStringLiteral("Wrong number of arguments used with function in query expression '%1'.").arg(exprText(e)));
    };
    if (name == QLatin1String("iif")) {
        if (argc != 3)
            throw wrongArgs();
        return QStringLiteral("(CASE WHEN ") + expr(*e.args[0], Ctx::Bool) + QStringLiteral(" THEN ") +
               expr(*e.args[1], Ctx::Value) + QStringLiteral(" ELSE ") + expr(*e.args[2], Ctx::Value) +
               QStringLiteral(" END)");
    }
    if (name == QLatin1String("isnull")) {
        if (argc != 1)
            throw wrongArgs();
        const QString test = QLatin1Char('(') + expr(*e.args[0], Ctx::Value) + QStringLiteral(" IS NULL)");
        return ctx == Ctx::Bool ? test : QStringLiteral("(-") + test + QLatin1Char(')');
    }
    if (name == QLatin1String("nz")) {
        if (argc < 1 || argc > 2)
            throw wrongArgs();
        return QStringLiteral("coalesce(") + expr(*e.args[0], Ctx::Value) + QLatin1Char(',') +
               (argc == 2 ? expr(*e.args[1], Ctx::Value) : QStringLiteral("''")) + QLatin1Char(')');
    }
    if (name == QLatin1String("cstr") && argc == 1 && !staticType(*e.args[0]).isEmpty())
        return QStringLiteral("jet_cstr(") + asText(*e.args[0]) + QLatin1Char(')');
    if (e.star) {
        if (name != QLatin1String("count"))
            throw DbError(3075,
                          QStringLiteral("Syntax error (missing operator) in query expression '%1'.").arg(exprText(e)));
        // In a crosstab cell, a count over no rows is an empty (Null) cell.
        return m_inPivotCell
                   ? QStringLiteral("nullif(count(CASE WHEN ") + kPivotMark + QStringLiteral(" THEN 1 END), 0)")
                   : QStringLiteral("count(*)");
    }
    const auto found = functionMappings().constFind(name);
    if (found == functionMappings().constEnd())
        throw DbError(3085, QStringLiteral("Undefined function '%1' in expression.").arg(name));
    if (argc < found->minArgs || argc > found->maxArgs)
        throw wrongArgs();
    QStringList args;
    const bool aggregate = isAggregateName(name);
    // First and Last of a cell are the first and last of its own rows, Null included: filter the rows.
    const bool filtered =
        aggregate && m_inPivotCell && (name == QLatin1String("first") || name == QLatin1String("last"));
    for (const ExprPtr& a : e.args) {
        QString arg = expr(*a, Ctx::Value);
        if (aggregate && m_inPivotCell && !filtered)
            arg = QStringLiteral("CASE WHEN ") + kPivotMark + QStringLiteral(" THEN ") + arg + QStringLiteral(" END");
        args << arg;
    }
    // Currency sums in whole ten-thousandths, as Jet sums its currency: 0.1 + 0.2 - 0.3 is exactly 0.
    const bool currencySum = name == QLatin1String("sum") && argc == 1 && staticType(*e.args[0]) == kCurrency;
    QString out = QString::fromLatin1(currencySum ? "jet_cursum" : found->sqlName) + QLatin1Char('(') +
                  args.join(QLatin1Char(',')) + QLatin1Char(')');
    if (filtered)
        out += QStringLiteral(" FILTER (WHERE ") + kPivotMark + QLatin1Char(')');
    if (aggregate && name == QLatin1String("count") && m_inPivotCell) // an empty cell is Null, also for count
        out = QStringLiteral("(CASE WHEN count(CASE WHEN ") + kPivotMark +
              QStringLiteral(" THEN 1 END) = 0 THEN NULL ELSE ") + out + QStringLiteral(" END)");
    return out;
}

// ---- grouping ----

bool containsAggregate(const Expr& e) {
    if (e.kind == ExprKind::Call && isAggregateName(e.text))
        return true;
    for (const ExprPtr& a : e.args)
        if (containsAggregate(*a))
            return true;
    return false;
}

bool sameColumn(const Expr& a, const Expr& b) {
    return a.kind == ExprKind::Column && b.kind == ExprKind::Column &&
           a.text.compare(b.text, Qt::CaseInsensitive) == 0 &&
           (a.qualifier.isEmpty() || b.qualifier.isEmpty() ||
            a.qualifier.compare(b.qualifier, Qt::CaseInsensitive) == 0);
}

// Jet allows in a grouped select only aggregates, constants, the grouped expressions and what is made of them.
bool Emitter::groupedOrAggregate(const Expr& e, const SelectCore& c) {
    if (isConstant(e) || e.kind == ExprKind::Subquery || e.kind == ExprKind::Exists || e.kind == ExprKind::InSelect)
        return true;
    if (e.kind == ExprKind::Call && isAggregateName(e.text))
        return true;
    for (const ExprPtr& g : c.groupBy) {
        if (sameColumn(e, *g))
            return true;
        if (e.kind != ExprKind::Column && e.kind == g->kind && expr(e, Ctx::Value) == expr(*g, Ctx::Value))
            return true;
    }
    if (e.kind == ExprKind::Column || e.kind == ExprKind::Star)
        return false;
    for (const ExprPtr& a : e.args)
        if (!groupedOrAggregate(*a, c))
            return false;
    return true;
}

void Emitter::checkGrouping(const SelectCore& c, const std::vector<OrderItem>* order) {
    bool aggregate = !c.groupBy.empty() || (c.having && containsAggregate(*c.having));
    for (const SelectItem& item : c.items)
        aggregate = aggregate || containsAggregate(*item.expr);
    if (!aggregate)
        return;
    auto refuse = [&](const Expr& e) {
        throw DbError(3122, QStringLiteral("You tried to execute a query that does not include the specified "
                                           "expression '%1' as part of an aggregate function.")
                                .arg(exprText(e)));
    };
    for (const SelectItem& item : c.items) {
        if (item.expr->kind == ExprKind::Star)
            throw DbError(3120, QStringLiteral("Cannot group on fields selected with '*'."));
        if (!groupedOrAggregate(*item.expr, c))
            refuse(*item.expr);
    }
    if (c.having && !groupedOrAggregate(*c.having, c))
        refuse(*c.having);
    if (order)
        for (const OrderItem& o : *order) {
            // an order by naming an output column of the select is that column
            const bool isAlias = o.expr->kind == ExprKind::Column && o.expr->qualifier.isEmpty() &&
                                 std::any_of(c.items.begin(), c.items.end(), [&](const SelectItem& item) {
                                     return item.alias.compare(o.expr->text, Qt::CaseInsensitive) == 0;
                                 });
            if (!isAlias && !groupedOrAggregate(*o.expr, c))
                refuse(*o.expr);
        }
}

// ---- selects ----

QString Emitter::tableRef(const TableRef& t) {
    switch (t.kind) {
    case TableRef::Kind::Table:
        return quoteName(t.name) + (t.alias.isEmpty() ? QString() : QStringLiteral(" AS ") + quoteName(t.alias));
    case TableRef::Kind::Derived:
        return QLatin1Char('(') + select(*t.derived) + QLatin1Char(')') +
               (t.alias.isEmpty() ? QString() : QStringLiteral(" AS ") + quoteName(t.alias));
    case TableRef::Kind::Join: {
        QString right = tableRef(*t.right);
        if (t.right->kind == TableRef::Kind::Join)
            right = QLatin1Char('(') + right + QLatin1Char(')');
        QString word;
        switch (t.join) {
        case JoinKind::Comma:
            return tableRef(*t.left) + QStringLiteral(", ") + right;
        case JoinKind::Inner:
            word = QStringLiteral(" INNER JOIN ");
            break;
        case JoinKind::Left:
            word = QStringLiteral(" LEFT JOIN ");
            break;
        case JoinKind::Right:
            word = QStringLiteral(" RIGHT JOIN ");
            break;
        }
        return tableRef(*t.left) + word + right + QStringLiteral(" ON ") + expr(*t.on, Ctx::Bool);
    }
    }
    return {};
}

// With caseBlind (distinct, union), expressions compare case-blind as text columns do.
QString Emitter::items(const SelectCore& c, bool caseBlind) {
    QStringList list;
    int exprNumber = 1000;
    for (const SelectItem& item : c.items) {
        QString text = expr(*item.expr, Ctx::Value);
        if (caseBlind && item.expr->kind != ExprKind::Column && item.expr->kind != ExprKind::Star &&
            !caseless(*item.expr))
            text += kNoCase;
        if (!item.alias.isEmpty()) {
            text += QStringLiteral(" AS ") + quoteName(item.alias);
        } else if (item.expr->kind != ExprKind::Column && item.expr->kind != ExprKind::Star) {
            // Jet names an unnamed expression Expr1000, Expr1001, ...
            text += QStringLiteral(" AS [Expr%1]").arg(exprNumber++);
        }
        list << text;
    }
    return list.join(QStringLiteral(", "));
}

// SQLite reads an integer constant in group by or order by as a column number; Jet reads a constant.
QString Emitter::groupTerm(const Expr& e) {
    if (isConstant(e))
        return QStringLiteral("(SELECT ") + expr(e, Ctx::Value) + QLatin1Char(')');
    return expr(e, Ctx::Value) + noCaseFor(e);
}

QString Emitter::orderTerm(const OrderItem& o, const SelectCore& c) {
    const Expr& e = *o.expr;
    QString term;
    if (isConstant(e)) {
        term = QStringLiteral("(SELECT ") + expr(e, Ctx::Value) + QLatin1Char(')');
    } else if (e.kind == ExprKind::Column && e.qualifier.isEmpty() && c.from.size() == 1 &&
               c.from.front()->kind == TableRef::Kind::Table) {
        // Jet sorts by the table's column even where an output column has that name; SQLite would take the
        // output column, so name the table.
        bool aliased = false;
        for (const SelectItem& item : c.items)
            if (item.alias.compare(e.text, Qt::CaseInsensitive) == 0 &&
                !(item.expr->kind == ExprKind::Column && item.expr->text.compare(e.text, Qt::CaseInsensitive) == 0))
                aliased = true;
        const TableRef& t = *c.from.front();
        if (aliased && m_catalog.hasTable(t.name)) {
            bool hasColumn = false;
            for (const SchemaCatalog::Column& col : m_catalog.columns(t.name))
                if (col.name.compare(e.text, Qt::CaseInsensitive) == 0)
                    hasColumn = true;
            if (hasColumn)
                term = quoteName(t.alias.isEmpty() ? t.name : t.alias) + QLatin1Char('.') + quoteName(e.text) +
                       noCaseFor(e);
        }
    }
    if (term.isEmpty())
        term = expr(e, Ctx::Value) + noCaseFor(e);
    return term + (o.descending ? QStringLiteral(" DESC") : QString());
}

QString Emitter::coreBody(const SelectCore& c) {
    std::vector<ScopeEntry> tables;
    for (const TableRefPtr& t : c.from)
        collectTables(*t, tables);
    const ScopeGuard scope(*this, std::move(tables));
    QString sql;
    if (!c.from.empty()) {
        QStringList refs;
        for (const TableRefPtr& t : c.from)
            refs << tableRef(*t);
        sql += QStringLiteral(" FROM ") + refs.join(QStringLiteral(", "));
    }
    if (c.where)
        sql += QStringLiteral(" WHERE ") + expr(*c.where, Ctx::Bool);
    if (!c.groupBy.empty()) {
        QStringList terms;
        for (const ExprPtr& g : c.groupBy)
            terms << groupTerm(*g);
        sql += QStringLiteral(" GROUP BY ") + terms.join(QStringLiteral(", "));
    }
    if (c.having)
        sql += QStringLiteral(" HAVING ") + expr(*c.having, Ctx::Bool);
    return sql;
}

QString Emitter::core(const SelectCore& c, const std::vector<OrderItem>* order, bool inCompound) {
    std::vector<ScopeEntry> tables;
    for (const TableRefPtr& t : c.from)
        collectTables(*t, tables);
    const ScopeGuard scope(*this, std::move(tables));
    checkGrouping(c, order);
    QString sql = QStringLiteral("SELECT ");
    if (c.distinct)
        sql += QStringLiteral("DISTINCT ");
    sql += items(c, c.distinct || (inCompound && m_unionDistinct));
    const QString body = coreBody(c);
    sql += body;
    QStringList orderTerms;
    if (order)
        for (const OrderItem& o : *order)
            orderTerms << orderTerm(o, c);
    if (!orderTerms.isEmpty())
        sql += QStringLiteral(" ORDER BY ") + orderTerms.join(QStringLiteral(", "));
    if (c.top >= 0) {
        QString limit;
        if (c.topPercent) {
            // The share of the rows, rounded up, as Jet counts it.
            limit = QStringLiteral("(SELECT CAST((count(*) * %1 + 99) / 100 AS INTEGER) FROM (SELECT 1 AS [x]%2))")
                        .arg(c.top)
                        .arg(body);
        } else if (!orderTerms.isEmpty() && !c.distinct) {
            // Jet does not break ties: every row equal to the n-th in the sort keys comes too. Count the rows
            // whose rank is within n and take that many in order.
            QStringList windowTerms;
            for (const OrderItem& o : *order) {
                const Expr* key = o.expr.get();
                if (key->kind == ExprKind::Column && key->qualifier.isEmpty())
                    for (const SelectItem& item : c.items)
                        if (item.alias.compare(key->text, Qt::CaseInsensitive) == 0 &&
                            item.expr->kind != ExprKind::Star)
                            key = item.expr.get();
                windowTerms << (isConstant(*key) ? QStringLiteral("(SELECT NULL)")
                                                 : expr(*key, Ctx::Value) + noCaseFor(*key)) +
                                   (o.descending ? QStringLiteral(" DESC") : QString());
            }
            limit = QStringLiteral("(SELECT count(*) FROM (SELECT RANK() OVER (ORDER BY %1) AS [jet_rank]%2) "
                                   "WHERE [jet_rank] <= %3)")
                        .arg(windowTerms.join(QStringLiteral(", ")), body, QString::number(c.top));
        } else {
            limit = QString::number(c.top);
        }
        sql += QStringLiteral(" LIMIT ") + limit;
        if (inCompound)
            sql = QStringLiteral("SELECT * FROM (") + sql + QLatin1Char(')');
    }
    return sql;
}

QString Emitter::select(const Select& s) {
    if (s.cores.size() == 1)
        return core(s.cores.front(), &s.orderBy, false);
    QString sql;
    const bool savedUnionDistinct = m_unionDistinct;
    m_unionDistinct = std::any_of(s.unionAll.begin(), s.unionAll.end(), [](bool all) { return !all; });
    for (size_t i = 0; i < s.cores.size(); ++i) {
        if (i > 0)
            sql += s.unionAll[i - 1] ? QStringLiteral(" UNION ALL ") : QStringLiteral(" UNION ");
        sql += core(s.cores[i], nullptr, true);
    }
    m_unionDistinct = savedUnionDistinct;
    if (!s.orderBy.empty()) {
        QStringList terms;
        for (const OrderItem& o : s.orderBy) {
            if (isConstant(*o.expr))
                continue; // a constant sorts nothing; SQLite refuses it after a union
            terms << expr(*o.expr, Ctx::Value) + noCaseFor(*o.expr) +
                         (o.descending ? QStringLiteral(" DESC") : QString());
        }
        if (!terms.isEmpty())
            sql += QStringLiteral(" ORDER BY ") + terms.join(QStringLiteral(", "));
    }
    return sql;
}

// The names of a select's output columns, as insert ... select matches them; nullopt when one is unknown.
std::optional<QStringList> Emitter::outputNames(const Select& s) const {
    const SelectCore& c = s.cores.front();
    QStringList names;
    for (const SelectItem& item : c.items) {
        if (!item.alias.isEmpty()) {
            names << item.alias;
        } else if (item.expr->kind == ExprKind::Column) {
            names << item.expr->text;
        } else if (item.expr->kind == ExprKind::Star) {
            for (const TableRefPtr& t : c.from) {
                std::optional<QStringList> cols = refColumns(*t, item.expr->qualifier);
                if (!cols)
                    return std::nullopt;
                names << *cols;
            }
        } else {
            return std::nullopt;
        }
    }
    return names;
}

std::optional<QStringList> Emitter::refColumns(const TableRef& t, const QString& qualifier) const {
    switch (t.kind) {
    case TableRef::Kind::Table: {
        const QString visible = t.alias.isEmpty() ? t.name : t.alias;
        if (!qualifier.isEmpty() && visible.compare(qualifier, Qt::CaseInsensitive) != 0)
            return QStringList();
        if (!m_catalog.hasTable(t.name))
            return std::nullopt;
        QStringList names;
        for (const SchemaCatalog::Column& col : m_catalog.columns(t.name))
            names << col.name;
        return names;
    }
    case TableRef::Kind::Derived:
        if (!qualifier.isEmpty() && t.alias.compare(qualifier, Qt::CaseInsensitive) != 0)
            return QStringList();
        return outputNames(*t.derived);
    case TableRef::Kind::Join: {
        std::optional<QStringList> left = refColumns(*t.left, qualifier);
        std::optional<QStringList> right = refColumns(*t.right, qualifier);
        if (!left || !right)
            return std::nullopt;
        return *left + *right;
    }
    }
    return std::nullopt;
}

// ---- types the statement fixes ----

QString Emitter::staticType(const Expr& e) const {
    static const QString datetime = QStringLiteral("datetime");
    switch (e.kind) {
    case ExprKind::Date:
        return datetime;
    case ExprKind::Column: {
        if (isDateTimeColumn(e))
            return datetime;
        const QString declared = declaredTypeOf(e).trimmed();
        if (declared.compare(QLatin1String("CURRENCY"), Qt::CaseInsensitive) == 0 ||
            declared.compare(QLatin1String("MONEY"), Qt::CaseInsensitive) == 0)
            return kCurrency;
        if (declared.startsWith(QLatin1String("BIT"), Qt::CaseInsensitive) ||
            declared.compare(QLatin1String("YESNO"), Qt::CaseInsensitive) == 0 ||
            declared.compare(QLatin1String("BOOLEAN"), Qt::CaseInsensitive) == 0)
            return QStringLiteral("bit");
        return {};
    }
    case ExprKind::Call:
        if (e.text == QLatin1String("now") || e.text == QLatin1String("date") || e.text == QLatin1String("time") ||
            e.text == QLatin1String("cdate") || e.text == QLatin1String("datevalue"))
            return datetime;
        if (e.text == QLatin1String("ccur"))
            return kCurrency;
        if (e.text == QLatin1String("sum") && e.args.size() == 1 && staticType(*e.args[0]) == kCurrency)
            return kCurrency;
        if (e.text == QLatin1String("iif") && e.args.size() == 3) {
            const QString a = staticType(*e.args[1]);
            const QString b = staticType(*e.args[2]);
            if (a == b || e.args[2]->kind == ExprKind::Null)
                return a;
            if (e.args[1]->kind == ExprKind::Null)
                return b;
        }
        if ((e.text == QLatin1String("min") || e.text == QLatin1String("max") || e.text == QLatin1String("first") ||
             e.text == QLatin1String("last") || e.text == QLatin1String("nz")) &&
            !e.args.empty())
            return staticType(*e.args[0]);
        return {};
    default:
        return {};
    }
}

QStringList Emitter::columnTypes(const SelectCore& c) {
    std::vector<ScopeEntry> tables;
    for (const TableRefPtr& t : c.from)
        collectTables(*t, tables);
    const ScopeGuard scope(*this, std::move(tables));
    QStringList types;
    bool any = false;
    for (const SelectItem& item : c.items) {
        if (item.expr->kind == ExprKind::Star)
            return {};
        types << staticType(*item.expr);
        any = any || !types.back().isEmpty();
    }
    return any ? types : QStringList();
}

// ---- statements ----

SqlitePlan Emitter::crosstab(const Statement& st) {
    const SelectCore& c = st.select->cores.front();
    SqlitePlan plan;
    plan.kind = SqlitePlan::Kind::Crosstab;
    std::vector<ScopeEntry> inScope;
    for (const TableRefPtr& t : c.from)
        collectTables(*t, inScope);
    const ScopeGuard scope(*this, std::move(inScope));
    checkGrouping(c, st.select->orderBy.empty() ? nullptr : &st.select->orderBy);
    const QString pivot = expr(*st.pivot, Ctx::Value);
    const QString heading = QStringLiteral("jet_heading(") + asText(*st.pivot) + QLatin1Char(')');
    const QString body = coreBody(c);
    if (!st.pivotIn.empty()) {
        QStringList parts;
        for (const ExprPtr& v : st.pivotIn)
            parts << QStringLiteral("SELECT jet_heading(") + expr(*v, Ctx::Value) + QLatin1Char(')');
        plan.pivotValuesSql = parts.join(QStringLiteral(" UNION ALL "));
    } else {
        // Headings ascending, compared case-blind; Null first, shown as "<>".
        QString from;
        if (!c.from.empty()) {
            QStringList refs;
            for (const TableRefPtr& t : c.from)
                refs << tableRef(*t);
            from = QStringLiteral(" FROM ") + refs.join(QStringLiteral(", "));
        }
        if (c.where)
            from += QStringLiteral(" WHERE ") + expr(*c.where, Ctx::Bool);
        const QString pivotTerm = groupTerm(*st.pivot);
        plan.pivotValuesSql = QStringLiteral("SELECT ") + heading + QStringLiteral(" AS [heading]") + from +
                              QStringLiteral(" GROUP BY ") + pivotTerm + QStringLiteral(" ORDER BY ") + pivotTerm;
    }
    m_inPivotCell = true;
    const QString cell = expr(*st.transformValue, Ctx::Value);
    m_inPivotCell = false;
    const QString rowItems = items(c);
    QStringList orderTerms;
    if (!st.select->orderBy.empty()) {
        for (const OrderItem& o : st.select->orderBy)
            orderTerms << orderTerm(o, c);
    } else {
        for (const ExprPtr& g : c.groupBy)
            if (!isConstant(*g))
                orderTerms << expr(*g, Ctx::Value) + noCaseFor(*g);
    }
    const QString order =
        orderTerms.isEmpty() ? QString() : QStringLiteral(" ORDER BY ") + orderTerms.join(QStringLiteral(", "));
    plan.crosstabSql = [rowItems, cell, heading, body, order](const QStringList& values) {
        QString sql = QStringLiteral("SELECT ") + rowItems;
        for (const QString& v : values) {
            QString condition =
                QLatin1Char('(') + heading + QStringLiteral(" = ") + quoteText(v) + kNoCase + QLatin1Char(')');
            QString column = cell;
            column.replace(kPivotMark, condition);
            sql += QStringLiteral(", ") + column + QStringLiteral(" AS ") + quoteAlias(v);
        }
        return sql + body + order;
    };
    plan.sql = plan.crosstabSql(QStringList());
    return plan;
}

QString Emitter::update(const Statement& st) {
    // Jet: update a inner join b on c set ... where w. SQLite: update a set ... from b where c and w.
    std::vector<const TableRef*> tables;
    QStringList conditions;
    std::function<void(const TableRef&)> walk = [&](const TableRef& t) {
        if (t.kind == TableRef::Kind::Join) {
            walk(*t.left);
            walk(*t.right);
            if (t.on)
                conditions << expr(*t.on, Ctx::Bool);
        } else {
            tables.push_back(&t);
        }
    };
    walk(*st.source);
    const TableRef& target = *tables.front();
    if (target.kind != TableRef::Kind::Table)
        throw DbError(3073, QStringLiteral("Operation must use an updateable query."));
    std::vector<ScopeEntry> inScope;
    collectTables(*st.source, inScope);
    const ScopeGuard scope(*this, std::move(inScope));
    QString sql = QStringLiteral("UPDATE ") + tableRef(target) + QStringLiteral(" SET ");
    QStringList sets;
    for (const Assignment& a : st.assignments) {
        QString table = target.name;
        if (!a.target->qualifier.isEmpty())
            for (const TableRef* t : tables)
                if ((t->alias.isEmpty() ? t->name : t->alias).compare(a.target->qualifier, Qt::CaseInsensitive) == 0)
                    table = t->name;
        sets << quoteName(a.target->text) + QStringLiteral(" = ") +
                    storedValue(*a.value, storeKindOf(table, a.target->text));
    }
    sql += sets.join(QStringLiteral(", "));
    if (tables.size() > 1) {
        QStringList others;
        for (size_t i = 1; i < tables.size(); ++i)
            others << tableRef(*tables[i]);
        sql += QStringLiteral(" FROM ") + others.join(QStringLiteral(", "));
    }
    if (st.where)
        conditions << expr(*st.where, Ctx::Bool);
    if (!conditions.isEmpty())
        sql += QStringLiteral(" WHERE ") + conditions.join(QStringLiteral(" AND "));
    return sql;
}

QString Emitter::deleteRows(const Statement& st) {
    const TableRef& source = *st.source;
    std::vector<ScopeEntry> inScope;
    collectTables(source, inScope);
    const ScopeGuard scope(*this, std::move(inScope));
    if (source.kind == TableRef::Kind::Table) {
        QString sql = QStringLiteral("DELETE FROM ") + tableRef(source);
        if (st.where)
            sql += QStringLiteral(" WHERE ") + expr(*st.where, Ctx::Bool);
        return sql;
    }
    // delete t.* from t inner join u on ... : the rows of t that the join finds.
    const TableRef* first = &source;
    while (first->kind == TableRef::Kind::Join)
        first = first->left.get();
    const TableRef* target = first;
    if (!st.deleteQualifier.isEmpty()) {
        std::function<const TableRef*(const TableRef&)> find = [&](const TableRef& t) -> const TableRef* {
            if (t.kind == TableRef::Kind::Join) {
                if (const TableRef* l = find(*t.left))
                    return l;
                return find(*t.right);
            }
            const QString visible = t.alias.isEmpty() ? t.name : t.alias;
            return visible.compare(st.deleteQualifier, Qt::CaseInsensitive) == 0 ? &t : nullptr;
        };
        target = find(source);
    }
    if (!target || target->kind != TableRef::Kind::Table)
        throw DbError(3086, QStringLiteral("Could not delete from specified tables."));
    const QString visible = target->alias.isEmpty() ? target->name : target->alias;
    QString sql = QStringLiteral("DELETE FROM ") + quoteName(target->name) +
                  QStringLiteral(" WHERE rowid IN (SELECT ") + quoteName(visible) + QStringLiteral(".rowid FROM ") +
                  tableRef(source);
    if (st.where)
        sql += QStringLiteral(" WHERE ") + expr(*st.where, Ctx::Bool);
    return sql + QLatin1Char(')');
}

// Jet names the first destination field the table lacks.
void checkInsertTargets(const SchemaCatalog& catalog, const QString& table, const QStringList& targets) {
    if (targets.isEmpty() || !catalog.hasTable(table))
        return;
    const std::vector<SchemaCatalog::Column> columns = catalog.columns(table);
    for (const QString& target : targets) {
        const bool known = std::any_of(columns.begin(), columns.end(), [&](const SchemaCatalog::Column& c) {
            return c.name.compare(target, Qt::CaseInsensitive) == 0;
        });
        if (!known)
            throw DbError(3127,
                          QStringLiteral("The INSERT INTO statement contains the following unknown field name: '%1'. "
                                         "Make sure you have typed the name correctly, and try the operation again.")
                              .arg(target));
    }
}

SqlitePlan Emitter::plan(const Statement& st) {
    SqlitePlan plan;
    switch (st.kind) {
    case Statement::Kind::Select: {
        const SelectCore& first = st.select->cores.front();
        if (!first.into.isEmpty()) {
            plan.kind = SqlitePlan::Kind::SelectInto;
            plan.intoTable = first.into;
        } else {
            plan.kind = SqlitePlan::Kind::Query;
        }
        plan.sql = select(*st.select);
        plan.columnTypes = columnTypes(first);
        break;
    }
    case Statement::Kind::Transform:
        return crosstab(st);
    case Statement::Kind::InsertValues: {
        plan.kind = SqlitePlan::Kind::Command;
        plan.table = st.table;
        QStringList cols;
        for (const QString& c : st.columns)
            cols << quoteName(c);
        checkInsertTargets(m_catalog, st.table, st.columns);
        QStringList targets = st.columns;
        if (targets.isEmpty() && m_catalog.hasTable(st.table))
            for (const SchemaCatalog::Column& col : m_catalog.columns(st.table))
                targets << col.name;
        QStringList values;
        for (size_t i = 0; i < st.values.size(); ++i) {
            const QString target = targets.value(static_cast<qsizetype>(i));
            values << storedValue(*st.values[i], target.isEmpty() ? char(0) : storeKindOf(st.table, target));
        }
        plan.sql =
            QStringLiteral("INSERT INTO ") + quoteName(st.table) +
            (cols.isEmpty() ? QString() : QStringLiteral(" (") + cols.join(QLatin1Char(',')) + QLatin1Char(')')) +
            QStringLiteral(" VALUES (") + values.join(QLatin1Char(',')) + QLatin1Char(')');
        break;
    }
    case Statement::Kind::InsertSelect: {
        plan.kind = SqlitePlan::Kind::Command;
        plan.table = st.table;
        QStringList cols = st.columns;
        if (cols.isEmpty()) {
            // Jet matches a select's columns to the table's by name.
            if (std::optional<QStringList> names = outputNames(*st.select))
                cols = *names;
        }
        checkInsertTargets(m_catalog, st.table, cols);
        QStringList quoted;
        for (const QString& c : cols)
            quoted << quoteName(c);
        // The rows go in as an assignment would put them: a number or date column converts what it is given.
        QStringList converted;
        bool anyConverted = false;
        for (int i = 0; i < cols.size(); ++i) {
            const char kind = storeKindOf(st.table, cols[i]);
            const QString source = QStringLiteral("orvel_c%1").arg(i);
            converted << (kind ? QStringLiteral("jet_store(") + source + QStringLiteral(",'") + QLatin1Char(kind) +
                                     QStringLiteral("')")
                               : source);
            anyConverted = anyConverted || kind;
        }
        QString rows = select(*st.select);
        if (anyConverted) {
            QStringList sources;
            for (int i = 0; i < cols.size(); ++i)
                sources << QStringLiteral("orvel_c%1").arg(i);
            rows = QStringLiteral("WITH orvel_rows(") + sources.join(QLatin1Char(',')) + QStringLiteral(") AS (") +
                   rows + QStringLiteral(") SELECT ") + converted.join(QLatin1Char(',')) +
                   QStringLiteral(" FROM orvel_rows");
        }
        plan.sql =
            QStringLiteral("INSERT INTO ") + quoteName(st.table) +
            (quoted.isEmpty() ? QString() : QStringLiteral(" (") + quoted.join(QLatin1Char(',')) + QLatin1Char(')')) +
            QLatin1Char(' ') + rows;
        break;
    }
    case Statement::Kind::Update:
        plan.kind = SqlitePlan::Kind::Command;
        plan.sql = update(st);
        break;
    case Statement::Kind::Delete:
        plan.kind = SqlitePlan::Kind::Command;
        plan.sql = deleteRows(st);
        break;
    case Statement::Kind::CreateTable:
        plan.kind = SqlitePlan::Kind::CreateTable;
        plan.table = st.table;
        plan.columns = st.columnSpecs;
        break;
    case Statement::Kind::AddColumn:
        plan.kind = SqlitePlan::Kind::AddColumn;
        plan.table = st.table;
        plan.columns = st.columnSpecs;
        plan.column = st.columnSpecs.front().name;
        break;
    case Statement::Kind::AlterColumn:
        plan.kind = SqlitePlan::Kind::AlterColumn;
        plan.table = st.table;
        plan.columns = st.columnSpecs;
        plan.column = st.columnSpecs.front().name;
        break;
    case Statement::Kind::DropColumn:
        plan.kind = SqlitePlan::Kind::DropColumn;
        plan.table = st.table;
        plan.column = st.columns.front();
        break;
    case Statement::Kind::DropTable:
        plan.kind = SqlitePlan::Kind::DropTable;
        plan.table = st.table;
        break;
    case Statement::Kind::CreateIndex:
        plan.kind = SqlitePlan::Kind::CreateIndex;
        plan.table = st.table;
        plan.indexName = st.indexName;
        plan.indexFields = st.columns;
        plan.unique = st.unique;
        plan.primary = st.primary;
        break;
    case Statement::Kind::DropIndex:
        plan.kind = SqlitePlan::Kind::DropIndex;
        plan.table = st.table;
        plan.indexName = st.indexName;
        break;
    }
    return plan;
}

} // namespace

SqlitePlan EmitSqlite(const Statement& statement, const QString& source, const SchemaCatalog& catalog) {
    Emitter emitter(source, catalog);
    return emitter.plan(statement);
}

QString EmitSqliteCondition(const Expr& expression, const QString& source, const SchemaCatalog& catalog) {
    Emitter emitter(source, catalog);
    return emitter.expr(expression, Emitter::Ctx::Bool);
}

} // namespace jet

SqlitePlan TranslateJet(const QString& statement, const SchemaCatalog& catalog) {
    const jet::Statement parsed = jet::ParseStatement(statement);
    return jet::EmitSqlite(parsed, statement, catalog);
}

QString TranslateJetExpression(const QString& expression, const SchemaCatalog& catalog) {
    const jet::ExprPtr parsed = jet::ParseExpression(expression);
    return jet::EmitSqliteCondition(*parsed, expression, catalog);
}
