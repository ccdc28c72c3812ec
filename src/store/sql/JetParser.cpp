#include "JetParser.h"

#include "Database.h"
#include "JetLexer.h"

#include <QSet>
#include <optional>

namespace jet {

namespace {

// Words that end an expression or a name list, so they can never be bare names there.
const QSet<QString>& reservedWords() {
    static const QSet<QString> words = {
        QStringLiteral("select"),    QStringLiteral("from"),        QStringLiteral("where"),
        QStringLiteral("group"),     QStringLiteral("order"),       QStringLiteral("by"),
        QStringLiteral("having"),    QStringLiteral("and"),         QStringLiteral("or"),
        QStringLiteral("not"),       QStringLiteral("xor"),         QStringLiteral("eqv"),
        QStringLiteral("imp"),       QStringLiteral("like"),        QStringLiteral("between"),
        QStringLiteral("in"),        QStringLiteral("is"),          QStringLiteral("null"),
        QStringLiteral("as"),        QStringLiteral("on"),          QStringLiteral("join"),
        QStringLiteral("inner"),     QStringLiteral("left"),        QStringLiteral("right"),
        QStringLiteral("outer"),     QStringLiteral("union"),       QStringLiteral("into"),
        QStringLiteral("values"),    QStringLiteral("set"),         QStringLiteral("mod"),
        QStringLiteral("distinct"),  QStringLiteral("top"),         QStringLiteral("pivot"),
        QStringLiteral("transform"), QStringLiteral("insert"),      QStringLiteral("update"),
        QStringLiteral("delete"),    QStringLiteral("true"),        QStringLiteral("false"),
        QStringLiteral("exists"),    QStringLiteral("distinctrow"), QStringLiteral("yes"),
        QStringLiteral("no"),
    };
    return words;
}

// Which statement part is being read decides Jet's error number.
enum class Part { Expression, Select, From, OrderBy, Insert, Update, Delete, CreateTable, Alter, Drop, Index };

class Parser {
public:
    explicit Parser(const QString& text) : m_text(text), m_tokens(Tokenize(text)) {}

    Statement statement();
    ExprPtr bareExpression();

private:
    const QString& m_text;
    std::vector<Token> m_tokens;
    size_t m_pos = 0;
    Part m_part = Part::Select;
    int m_exprStart = 0;
    int m_depth = 0;

    // Nesting deeper than any statement the program writes is refused rather than risking the stack.
    struct DepthGuard {
        Parser& parser;
        explicit DepthGuard(Parser& p) : parser(p) {
            if (++parser.m_depth > 200)
                throw DbError(3075, QStringLiteral("Query is too complex."));
        }
        ~DepthGuard() { --parser.m_depth; }
        DepthGuard(const DepthGuard&) = delete;
        DepthGuard& operator=(const DepthGuard&) = delete;
    };

    const Token& peek(size_t ahead = 0) const {
        const size_t i = std::min(m_pos + ahead, m_tokens.size() - 1);
        return m_tokens[i];
    }
    const Token& next() {
        const Token& t = m_tokens[m_pos];
        if (m_pos + 1 < m_tokens.size())
            ++m_pos;
        return t;
    }
    bool atEnd() const { return peek().type == TokenType::End; }
    bool isWord(const char* w, size_t ahead = 0) const {
        const Token& t = peek(ahead);
        return t.type == TokenType::Word && t.lower == QLatin1String(w);
    }
    bool isSymbol(const char* s, size_t ahead = 0) const {
        const Token& t = peek(ahead);
        return t.type == TokenType::Symbol && t.text == QLatin1String(s);
    }
    bool acceptWord(const char* w) {
        if (!isWord(w))
            return false;
        next();
        return true;
    }
    bool acceptSymbol(const char* s) {
        if (!isSymbol(s))
            return false;
        next();
        return true;
    }
    void expectWord(const char* w) {
        if (!acceptWord(w))
            fail();
    }
    void expectSymbol(const char* s) {
        if (!acceptSymbol(s))
            fail();
    }
    bool isNameToken(size_t ahead = 0) const {
        const Token& t = peek(ahead);
        return t.type == TokenType::QuotedName || (t.type == TokenType::Word && !reservedWords().contains(t.lower));
    }
    QString name() {
        if (!isNameToken())
            fail();
        return next().text;
    }

    [[noreturn]] void fail() const;
    [[noreturn]] void failExpression() const;

    // Statements.
    std::unique_ptr<Select> select();
    SelectCore selectCore();
    void selectItems(SelectCore& core);
    std::vector<TableRefPtr> fromList();
    TableRefPtr joinedTable();
    TableRefPtr primaryTable();
    QString optionalAlias();
    std::vector<OrderItem> orderBy();
    void insert(Statement& st);
    void update(Statement& st);
    void deleteRows(Statement& st);
    void transform(Statement& st);
    void create(Statement& st);
    void alter(Statement& st);
    void drop(Statement& st);
    JetColumnSpec columnDefinition(bool allowConstraints);
    void expectEnd();

    // Expressions, lowest precedence first.
    ExprPtr expression();
    ExprPtr impExpr();
    ExprPtr eqvExpr();
    ExprPtr xorExpr();
    ExprPtr orExpr();
    ExprPtr andExpr();
    ExprPtr notExpr();
    ExprPtr comparison();
    ExprPtr concatExpr();
    ExprPtr additive();
    ExprPtr modExpr();
    ExprPtr intDivExpr();
    ExprPtr multiplicative();
    ExprPtr unary();
    ExprPtr power();
    ExprPtr primary();
    ExprPtr make(ExprKind kind, int start) const {
        auto e = std::make_unique<Expr>();
        e->kind = kind;
        e->start = start;
        e->end = peek().start;
        return e;
    }
    // Operator chains are read in loops, not by recursion; their height is bounded here instead, since
    // the emitter walks the tree recursively.
    static void bound(Expr& e) {
        int deepest = 0;
        for (const ExprPtr& a : e.args)
            deepest = std::max(deepest, a->depth);
        e.depth = deepest + 1;
        if (e.depth > 1000)
            throw DbError(3075, QStringLiteral("Query is too complex."));
    }
    ExprPtr binary(const QString& op, ExprPtr left, ExprPtr right) const {
        auto e = std::make_unique<Expr>();
        e->kind = ExprKind::Binary;
        e->op = op;
        e->start = left->start;
        e->end = right->end;
        e->args.push_back(std::move(left));
        e->args.push_back(std::move(right));
        bound(*e);
        return e;
    }
    bool startsSelect() const { return isWord("select"); }
};

void Parser::fail() const {
    if (m_part == Part::Expression)
        failExpression();
    switch (m_part) {
    case Part::From:
        throw DbError(3131, QStringLiteral("Syntax error in FROM clause."));
    case Part::OrderBy:
        throw DbError(3138, QStringLiteral("Syntax error in ORDER BY clause."));
    case Part::Insert:
        throw DbError(3134, QStringLiteral("Syntax error in INSERT INTO statement."));
    case Part::Update:
        throw DbError(3144, QStringLiteral("Syntax error in UPDATE statement."));
    case Part::Delete:
        throw DbError(3128, QStringLiteral("Specify the table containing the records you want to delete."));
    case Part::CreateTable:
        throw DbError(3290, QStringLiteral("Syntax error in CREATE TABLE statement."));
    case Part::Alter:
        throw DbError(3293, QStringLiteral("Syntax error in ALTER TABLE statement."));
    case Part::Drop:
        throw DbError(3295, QStringLiteral("Syntax error in DROP TABLE or DROP INDEX statement."));
    case Part::Index:
        throw DbError(3289, QStringLiteral("Syntax error in CREATE INDEX statement."));
    default:
        break;
    }
    if (!atEnd() && m_part == Part::Select && peek().type == TokenType::Symbol && peek().text != QLatin1String(","))
        throw DbError(3142, QStringLiteral("Characters found after end of SQL statement."));
    throw DbError(3141, QStringLiteral("The SELECT statement includes a reserved word or an argument name that is "
                                       "misspelled or missing, or the punctuation is incorrect."));
}

void Parser::failExpression() const {
    const int end = std::max(peek().end, m_exprStart);
    const QString expr = m_text.mid(m_exprStart, end - m_exprStart).trimmed();
    throw DbError(3075, QStringLiteral("Syntax error (missing operator) in query expression '%1'.").arg(expr));
}

void Parser::expectEnd() {
    acceptSymbol(";");
    if (!atEnd()) {
        if (m_part == Part::Select || m_part == Part::OrderBy)
            throw DbError(3142, QStringLiteral("Characters found after end of SQL statement."));
        fail();
    }
}

Statement Parser::statement() {
    Statement st;
    if (isWord("select")) {
        st.kind = Statement::Kind::Select;
        st.select = select();
        expectEnd();
    } else if (isWord("transform")) {
        transform(st);
    } else if (isWord("insert")) {
        insert(st);
    } else if (isWord("update")) {
        update(st);
    } else if (isWord("delete")) {
        deleteRows(st);
    } else if (isWord("create")) {
        create(st);
    } else if (isWord("alter")) {
        alter(st);
    } else if (isWord("drop")) {
        drop(st);
    } else if (isSymbol("(") && isWord("select", 1)) {
        // a whole select in parentheses
        next();
        st.kind = Statement::Kind::Select;
        st.select = select();
        m_part = Part::Select;
        expectSymbol(")");
        expectEnd();
    } else {
        throw DbError(3129, QStringLiteral("Invalid SQL statement; expected 'DELETE', 'INSERT', 'PROCEDURE', "
                                           "'SELECT', or 'UPDATE'."));
    }
    return st;
}

ExprPtr Parser::bareExpression() {
    m_part = Part::Expression;
    m_exprStart = peek().start;
    if (atEnd())
        throw DbError(3077, QStringLiteral("Syntax error (missing operator) in expression."));
    try {
        ExprPtr e = expression();
        if (!atEnd())
            failExpression();
        return e;
    } catch (const DbError&) {
        throw DbError(3077, QStringLiteral("Syntax error (missing operator) in expression."));
    }
}

// ---- select ----

std::unique_ptr<Select> Parser::select() {
    const DepthGuard guard(*this);
    auto sel = std::make_unique<Select>();
    sel->cores.push_back(selectCore());
    while (isWord("union")) {
        next();
        const bool all = acceptWord("all");
        m_part = Part::Select;
        // Jet allows each select of a union in parentheses.
        if (isSymbol("(") && isWord("select", 1)) {
            next();
            sel->cores.push_back(selectCore());
            m_part = Part::Select;
            expectSymbol(")");
        } else {
            if (!isWord("select"))
                fail();
            sel->cores.push_back(selectCore());
        }
        sel->unionAll.push_back(all);
    }
    if (isWord("order")) {
        sel->orderBy = orderBy();
    }
    return sel;
}

SelectCore Parser::selectCore() {
    m_part = Part::Select;
    expectWord("select");
    SelectCore core;
    if (acceptWord("distinct") || acceptWord("distinctrow"))
        core.distinct = true;
    else
        acceptWord("all");
    if (acceptWord("top")) {
        if (peek().type != TokenType::Number)
            fail();
        bool ok = false;
        core.top = next().text.toLongLong(&ok);
        if (!ok || core.top < 0)
            fail();
        core.topPercent = acceptWord("percent");
    }
    selectItems(core);
    m_part = Part::Select;
    if (acceptWord("into")) {
        core.into = name();
    }
    if (acceptWord("from")) {
        core.from = fromList();
    }
    if (acceptWord("where")) {
        core.where = expression();
        m_part = Part::Select;
    }
    if (acceptWord("group")) {
        expectWord("by");
        do {
            core.groupBy.push_back(expression());
            m_part = Part::Select;
        } while (acceptSymbol(","));
    }
    if (acceptWord("having")) {
        core.having = expression();
        m_part = Part::Select;
    }
    return core;
}

void Parser::selectItems(SelectCore& core) {
    do {
        m_part = Part::Select;
        if (atEnd() || isWord("from") || isWord("into") || isWord("where"))
            fail(); // an item is missing
        SelectItem item;
        if (isSymbol("*")) {
            const int start = next().start;
            item.expr = make(ExprKind::Star, start);
        } else if (isNameToken() && isSymbol(".", 1) && isSymbol("*", 2)) {
            const int start = peek().start;
            const QString table = next().text;
            next();
            next();
            item.expr = make(ExprKind::Star, start);
            item.expr->qualifier = table;
        } else {
            item.expr = expression();
            m_part = Part::Select;
            if (acceptWord("as")) {
                item.alias = name();
            }
            if (isNameToken()) { // "select a b from t": Jet reads one expression with an operator missing
                const int end = peek().end;
                throw DbError(3075, QStringLiteral("Syntax error (missing operator) in query expression '%1'.")
                                        .arg(m_text.mid(item.expr->start, end - item.expr->start).trimmed()));
            }
        }
        core.items.push_back(std::move(item));
    } while (acceptSymbol(","));
}

std::vector<TableRefPtr> Parser::fromList() {
    std::vector<TableRefPtr> list;
    do {
        m_part = Part::From;
        list.push_back(joinedTable());
    } while (acceptSymbol(","));
    m_part = Part::Select;
    return list;
}

TableRefPtr Parser::joinedTable() {
    TableRefPtr left = primaryTable();
    for (int joins = 0;; ++joins) {
        if (joins > 100)
            throw DbError(3075, QStringLiteral("Query is too complex."));
        m_part = Part::From;
        JoinKind kind;
        if (isWord("inner")) {
            kind = JoinKind::Inner;
            next();
        } else if (isWord("left") || isWord("right")) {
            kind = isWord("left") ? JoinKind::Left : JoinKind::Right;
            next();
            acceptWord("outer");
        } else if (isWord("join")) {
            throw DbError(3135, QStringLiteral("Syntax error in JOIN operation."));
        } else {
            break;
        }
        if (!acceptWord("join"))
            throw DbError(3135, QStringLiteral("Syntax error in JOIN operation."));
        TableRefPtr right = primaryTable();
        m_part = Part::From;
        if (!acceptWord("on"))
            throw DbError(3135, QStringLiteral("Syntax error in JOIN operation."));
        auto join = std::make_unique<TableRef>();
        join->kind = TableRef::Kind::Join;
        join->join = kind;
        join->left = std::move(left);
        join->right = std::move(right);
        join->on = expression();
        m_part = Part::From;
        left = std::move(join);
    }
    return left;
}

TableRefPtr Parser::primaryTable() {
    const DepthGuard guard(*this);
    m_part = Part::From;
    if (acceptSymbol("(")) {
        if (isWord("select")) {
            auto ref = std::make_unique<TableRef>();
            ref->kind = TableRef::Kind::Derived;
            ref->derived = select();
            m_part = Part::From;
            expectSymbol(")");
            ref->alias = optionalAlias();
            return ref;
        }
        TableRefPtr inner = joinedTable();
        m_part = Part::From;
        expectSymbol(")");
        return inner;
    }
    auto ref = std::make_unique<TableRef>();
    ref->kind = TableRef::Kind::Table;
    ref->name = name();
    ref->alias = optionalAlias();
    return ref;
}

QString Parser::optionalAlias() {
    if (acceptWord("as"))
        return name();
    if (isNameToken())
        return next().text;
    return {};
}

std::vector<OrderItem> Parser::orderBy() {
    m_part = Part::OrderBy;
    expectWord("order");
    expectWord("by");
    std::vector<OrderItem> items;
    if (atEnd() || isSymbol(";"))
        fail();
    do {
        OrderItem item;
        item.expr = expression();
        m_part = Part::OrderBy;
        if (acceptWord("desc"))
            item.descending = true;
        else
            acceptWord("asc");
        items.push_back(std::move(item));
    } while (acceptSymbol(","));
    m_part = Part::Select;
    return items;
}

// ---- data changes ----

void Parser::insert(Statement& st) {
    m_part = Part::Insert;
    expectWord("insert");
    expectWord("into");
    st.table = name();
    if (isSymbol("(") && !isWord("select", 1)) {
        next();
        do {
            st.columns << name();
        } while (acceptSymbol(","));
        expectSymbol(")");
    }
    if (acceptWord("values")) {
        st.kind = Statement::Kind::InsertValues;
        expectSymbol("(");
        do {
            st.values.push_back(expression());
            m_part = Part::Insert;
        } while (acceptSymbol(","));
        expectSymbol(")");
        expectEnd();
        if (!st.columns.isEmpty() && st.columns.size() != static_cast<qsizetype>(st.values.size()))
            throw DbError(3346, QStringLiteral("Number of query values and destination fields are not the same."));
        return;
    }
    st.kind = Statement::Kind::InsertSelect;
    if (isSymbol("(") && isWord("select", 1)) {
        next();
        st.select = select();
        m_part = Part::Insert;
        expectSymbol(")");
    } else if (isWord("select")) {
        st.select = select();
    } else {
        fail();
    }
    m_part = Part::Select;
    expectEnd();
}

void Parser::update(Statement& st) {
    m_part = Part::Update;
    expectWord("update");
    st.kind = Statement::Kind::Update;
    std::vector<TableRefPtr> list = fromList();
    m_part = Part::Update;
    if (list.size() != 1) {
        // "update a, b set ..." is a join without a condition
        TableRefPtr left = std::move(list[0]);
        for (size_t i = 1; i < list.size(); ++i) {
            auto join = std::make_unique<TableRef>();
            join->kind = TableRef::Kind::Join;
            join->join = JoinKind::Comma;
            join->left = std::move(left);
            join->right = std::move(list[i]);
            left = std::move(join);
        }
        st.source = std::move(left);
    } else {
        st.source = std::move(list[0]);
    }
    expectWord("set");
    do {
        Assignment a;
        const int start = peek().start;
        QString first = name();
        a.target = make(ExprKind::Column, start);
        if (acceptSymbol(".") || acceptSymbol("!")) {
            a.target->qualifier = first;
            a.target->text = name();
        } else {
            a.target->text = first;
        }
        expectSymbol("=");
        a.value = expression();
        m_part = Part::Update;
        st.assignments.push_back(std::move(a));
    } while (acceptSymbol(","));
    if (acceptWord("where")) {
        st.where = expression();
        m_part = Part::Update;
    }
    expectEnd();
}

void Parser::deleteRows(Statement& st) {
    m_part = Part::Delete;
    expectWord("delete");
    st.kind = Statement::Kind::Delete;
    if (isNameToken() && isSymbol(".", 1) && isSymbol("*", 2)) {
        st.deleteQualifier = next().text;
        next();
        next();
    } else {
        acceptSymbol("*");
    }
    expectWord("from");
    if (atEnd() || isSymbol(";"))
        fail();
    std::vector<TableRefPtr> list = fromList();
    m_part = Part::Delete;
    if (list.size() != 1)
        fail();
    st.source = std::move(list[0]);
    if (acceptWord("where")) {
        st.where = expression();
        m_part = Part::Delete;
    }
    expectEnd();
}

void Parser::transform(Statement& st) {
    m_part = Part::Select;
    expectWord("transform");
    st.kind = Statement::Kind::Transform;
    st.transformValue = expression();
    m_part = Part::Select;
    st.select = std::make_unique<Select>();
    st.select->cores.push_back(selectCore());
    if (isWord("order"))
        st.select->orderBy = orderBy();
    m_part = Part::Select;
    if (!acceptWord("pivot"))
        throw DbError(3130, QStringLiteral("Syntax error in TRANSFORM statement."));
    // The pivot is read above the comparisons, so that "pivot x in (...)" keeps its heading list.
    m_part = Part::Expression;
    m_exprStart = peek().start;
    st.pivot = concatExpr();
    m_part = Part::Select;
    if (acceptWord("in")) {
        expectSymbol("(");
        do {
            st.pivotIn.push_back(expression());
            m_part = Part::Select;
        } while (acceptSymbol(","));
        expectSymbol(")");
    }
    const SelectCore& core = st.select->cores.front();
    if (core.groupBy.empty() || !core.into.isEmpty() || core.top >= 0)
        throw DbError(3130, QStringLiteral("Syntax error in TRANSFORM statement."));
    expectEnd();
}

// ---- definitions ----

JetColumnSpec Parser::columnDefinition(bool allowConstraints) {
    JetColumnSpec spec;
    spec.name = name();
    if (peek().type != TokenType::Word)
        fail();
    const QString word = next().lower;
    static const QHash<QString, QString> types = {
        {QStringLiteral("short"), QStringLiteral("short")},
        {QStringLiteral("smallint"), QStringLiteral("short")},
        {QStringLiteral("integer2"), QStringLiteral("short")},
        {QStringLiteral("byte"), QStringLiteral("short")},
        {QStringLiteral("tinyint"), QStringLiteral("short")},
        {QStringLiteral("int"), QStringLiteral("int")},
        {QStringLiteral("integer"), QStringLiteral("integer")},
        {QStringLiteral("long"), QStringLiteral("long")},
        {QStringLiteral("integer4"), QStringLiteral("long")},
        {QStringLiteral("single"), QStringLiteral("single")},
        {QStringLiteral("real"), QStringLiteral("single")},
        {QStringLiteral("float4"), QStringLiteral("single")},
        {QStringLiteral("float"), QStringLiteral("float")},
        {QStringLiteral("double"), QStringLiteral("double")},
        {QStringLiteral("float8"), QStringLiteral("double")},
        {QStringLiteral("number"), QStringLiteral("double")},
        {QStringLiteral("numeric"), QStringLiteral("double")},
        {QStringLiteral("decimal"), QStringLiteral("double")},
        {QStringLiteral("currency"), QStringLiteral("currency")},
        {QStringLiteral("money"), QStringLiteral("currency")},
        {QStringLiteral("bit"), QStringLiteral("bit")},
        {QStringLiteral("yesno"), QStringLiteral("bit")},
        {QStringLiteral("logical"), QStringLiteral("bit")},
        {QStringLiteral("logical1"), QStringLiteral("bit")},
        {QStringLiteral("datetime"), QStringLiteral("datetime")},
        {QStringLiteral("date"), QStringLiteral("datetime")},
        {QStringLiteral("time"), QStringLiteral("datetime")},
        {QStringLiteral("timestamp"), QStringLiteral("datetime")},
        {QStringLiteral("text"), QStringLiteral("text")},
        {QStringLiteral("char"), QStringLiteral("text")},
        {QStringLiteral("varchar"), QStringLiteral("text")},
        {QStringLiteral("string"), QStringLiteral("text")},
        {QStringLiteral("alphanumeric"), QStringLiteral("text")},
        {QStringLiteral("memo"), QStringLiteral("memo")},
        {QStringLiteral("longtext"), QStringLiteral("memo")},
        {QStringLiteral("longchar"), QStringLiteral("memo")},
        {QStringLiteral("note"), QStringLiteral("memo")},
        {QStringLiteral("counter"), QStringLiteral("counter")},
        {QStringLiteral("autoincrement"), QStringLiteral("counter")},
        {QStringLiteral("identity"), QStringLiteral("counter")},
    };
    const auto found = types.constFind(word);
    if (found == types.constEnd())
        throw DbError(3259, QStringLiteral("Invalid field data type."));
    spec.type = found.value();
    spec.autoIncrement = spec.type == QLatin1String("counter");
    if (acceptSymbol("(")) {
        if (peek().type != TokenType::Number)
            fail();
        bool ok = false;
        spec.size = next().text.toInt(&ok);
        if (!ok || spec.size < 0)
            fail();
        if (acceptSymbol(",")) { // counter(seed, increment) and decimal(p, s)
            if (peek().type != TokenType::Number)
                fail();
            next();
        }
        expectSymbol(")");
        if (spec.type != QLatin1String("text"))
            spec.size = 0;
        if (spec.size > 255)
            throw DbError(3259, QStringLiteral("Invalid field data type."));
    }
    if (!allowConstraints)
        return spec;
    for (;;) {
        if (acceptWord("not")) {
            expectWord("null");
            spec.notNull = true;
        } else if (acceptWord("null")) {
        } else if (acceptWord("primary")) {
            expectWord("key");
            spec.primaryKey = true;
        } else if (acceptWord("unique")) {
        } else if (acceptWord("autoincrement") || acceptWord("counter")) {
            spec.autoIncrement = true;
            spec.type = QStringLiteral("counter");
        } else if (acceptWord("constraint")) {
            name();
            if (acceptWord("primary")) {
                expectWord("key");
                spec.primaryKey = true;
            } else if (!acceptWord("unique")) {
                expectWord("not");
                expectWord("null");
                spec.notNull = true;
            }
        } else {
            break;
        }
    }
    return spec;
}

void Parser::create(Statement& st) {
    m_part = Part::CreateTable;
    expectWord("create");
    if (acceptWord("table")) {
        st.kind = Statement::Kind::CreateTable;
        st.table = name();
        expectSymbol("(");
        do {
            if (acceptWord("constraint")) {
                name();
                const bool pk = acceptWord("primary");
                if (pk)
                    expectWord("key");
                else
                    expectWord("unique");
                expectSymbol("(");
                QStringList cols;
                do {
                    cols << name();
                } while (acceptSymbol(","));
                expectSymbol(")");
                for (const QString& c : cols) {
                    auto it = std::find_if(st.columnSpecs.begin(), st.columnSpecs.end(), [&](const JetColumnSpec& s) {
                        return s.name.compare(c, Qt::CaseInsensitive) == 0;
                    });
                    if (it == st.columnSpecs.end())
                        throw DbError(3289, QStringLiteral("Syntax error in CONSTRAINT clause."));
                    if (pk)
                        it->primaryKey = true;
                }
                continue;
            }
            JetColumnSpec spec = columnDefinition(true);
            for (const JetColumnSpec& other : st.columnSpecs)
                if (other.name.compare(spec.name, Qt::CaseInsensitive) == 0)
                    throw DbError(3191, QStringLiteral("Cannot define field '%1' more than once.").arg(spec.name));
            st.columnSpecs.push_back(std::move(spec));
        } while (acceptSymbol(","));
        expectSymbol(")");
        expectEnd();
        return;
    }
    m_part = Part::Index;
    st.unique = acceptWord("unique");
    expectWord("index");
    st.kind = Statement::Kind::CreateIndex;
    st.indexName = name();
    expectWord("on");
    st.table = name();
    expectSymbol("(");
    do {
        st.columns << name();
        if (!acceptWord("asc"))
            acceptWord("desc");
    } while (acceptSymbol(","));
    expectSymbol(")");
    if (acceptWord("with")) {
        do {
            if (acceptWord("primary")) {
                st.primary = true;
                st.unique = true;
            } else if (acceptWord("disallow") || acceptWord("ignore")) {
                expectWord("null");
            } else {
                fail();
            }
        } while (!atEnd() && !isSymbol(";"));
    }
    expectEnd();
}

void Parser::alter(Statement& st) {
    m_part = Part::Alter;
    expectWord("alter");
    expectWord("table");
    st.table = name();
    if (acceptWord("add")) {
        if (isWord("constraint") || isWord("primary"))
            fail();
        acceptWord("column");
        st.kind = Statement::Kind::AddColumn;
        st.columnSpecs.push_back(columnDefinition(true));
    } else if (acceptWord("alter")) {
        acceptWord("column");
        st.kind = Statement::Kind::AlterColumn;
        st.columnSpecs.push_back(columnDefinition(true));
    } else if (acceptWord("drop")) {
        if (isWord("constraint"))
            fail();
        acceptWord("column");
        st.kind = Statement::Kind::DropColumn;
        st.columns << name();
    } else {
        fail();
    }
    expectEnd();
}

void Parser::drop(Statement& st) {
    m_part = Part::Drop;
    expectWord("drop");
    if (acceptWord("table")) {
        st.kind = Statement::Kind::DropTable;
        st.table = name();
    } else if (acceptWord("index")) {
        st.kind = Statement::Kind::DropIndex;
        st.indexName = name();
        expectWord("on");
        st.table = name();
    } else {
        fail();
    }
    expectEnd();
}

// ---- expressions ----

ExprPtr Parser::expression() {
    const Part saved = m_part;
    const int savedStart = m_exprStart;
    m_part = Part::Expression;
    m_exprStart = peek().start;
    ExprPtr e = impExpr();
    m_part = saved;
    m_exprStart = savedStart;
    return e;
}

ExprPtr Parser::impExpr() {
    ExprPtr left = eqvExpr();
    while (acceptWord("imp"))
        left = binary(QStringLiteral("imp"), std::move(left), eqvExpr());
    return left;
}

ExprPtr Parser::eqvExpr() {
    ExprPtr left = xorExpr();
    while (acceptWord("eqv"))
        left = binary(QStringLiteral("eqv"), std::move(left), xorExpr());
    return left;
}

ExprPtr Parser::xorExpr() {
    ExprPtr left = orExpr();
    while (acceptWord("xor"))
        left = binary(QStringLiteral("xor"), std::move(left), orExpr());
    return left;
}

ExprPtr Parser::orExpr() {
    ExprPtr left = andExpr();
    while (acceptWord("or"))
        left = binary(QStringLiteral("or"), std::move(left), andExpr());
    return left;
}

ExprPtr Parser::andExpr() {
    ExprPtr left = notExpr();
    while (acceptWord("and"))
        left = binary(QStringLiteral("and"), std::move(left), notExpr());
    return left;
}

ExprPtr Parser::notExpr() {
    const DepthGuard guard(*this);
    if (isWord("not")) {
        const int start = next().start;
        ExprPtr operand = notExpr();
        auto e = make(ExprKind::Unary, start);
        e->op = QStringLiteral("not");
        e->end = operand->end;
        e->args.push_back(std::move(operand));
        bound(*e);
        return e;
    }
    return comparison();
}

ExprPtr Parser::comparison() {
    ExprPtr left = concatExpr();
    for (;;) {
        const Token& t = peek();
        if (t.type == TokenType::Symbol &&
            (t.text == QLatin1String("=") || t.text == QLatin1String("<>") || t.text == QLatin1String("<") ||
             t.text == QLatin1String(">") || t.text == QLatin1String("<=") || t.text == QLatin1String(">="))) {
            const QString op = next().text;
            left = binary(op, std::move(left), concatExpr());
            continue;
        }
        const int start = left->start;
        bool negated = false;
        if (isWord("not") && (isWord("like", 1) || isWord("between", 1) || isWord("in", 1))) {
            next();
            negated = true;
        }
        if (acceptWord("like")) {
            auto e = make(ExprKind::Like, start);
            e->negated = negated;
            e->args.push_back(std::move(left));
            e->args.push_back(concatExpr());
            e->end = e->args.back()->end;
            bound(*e);
            left = std::move(e);
        } else if (acceptWord("between")) {
            auto e = make(ExprKind::Between, start);
            e->negated = negated;
            e->args.push_back(std::move(left));
            e->args.push_back(concatExpr());
            expectWord("and");
            e->args.push_back(concatExpr());
            e->end = e->args.back()->end;
            bound(*e);
            left = std::move(e);
        } else if (acceptWord("in")) {
            expectSymbol("(");
            if (isWord("select")) {
                auto e = make(ExprKind::InSelect, start);
                e->negated = negated;
                e->args.push_back(std::move(left));
                const Part saved = m_part;
                e->subquery = select();
                m_part = saved;
                bound(*e);
                left = std::move(e);
            } else {
                auto e = make(ExprKind::InList, start);
                e->negated = negated;
                e->args.push_back(std::move(left));
                do {
                    e->args.push_back(expression());
                } while (acceptSymbol(","));
                bound(*e);
                left = std::move(e);
            }
            expectSymbol(")");
            left->end = peek().start;
            bound(*left);
        } else if (!negated && isWord("is")) {
            next();
            auto e = make(ExprKind::IsNull, start);
            e->negated = acceptWord("not");
            expectWord("null");
            e->args.push_back(std::move(left));
            e->end = peek().start;
            bound(*e);
            left = std::move(e);
        } else {
            if (negated)
                fail();
            break;
        }
    }
    return left;
}

ExprPtr Parser::concatExpr() {
    ExprPtr left = additive();
    while (acceptSymbol("&"))
        left = binary(QStringLiteral("&"), std::move(left), additive());
    return left;
}

ExprPtr Parser::additive() {
    ExprPtr left = modExpr();
    for (;;) {
        if (acceptSymbol("+"))
            left = binary(QStringLiteral("+"), std::move(left), modExpr());
        else if (acceptSymbol("-"))
            left = binary(QStringLiteral("-"), std::move(left), modExpr());
        else
            return left;
    }
}

ExprPtr Parser::modExpr() {
    ExprPtr left = intDivExpr();
    while (acceptWord("mod"))
        left = binary(QStringLiteral("mod"), std::move(left), intDivExpr());
    return left;
}

ExprPtr Parser::intDivExpr() {
    ExprPtr left = multiplicative();
    while (acceptSymbol("\\"))
        left = binary(QStringLiteral("\\"), std::move(left), multiplicative());
    return left;
}

ExprPtr Parser::multiplicative() {
    ExprPtr left = unary();
    for (;;) {
        if (acceptSymbol("*"))
            left = binary(QStringLiteral("*"), std::move(left), unary());
        else if (acceptSymbol("/"))
            left = binary(QStringLiteral("/"), std::move(left), unary());
        else
            return left;
    }
}

ExprPtr Parser::unary() {
    const DepthGuard guard(*this);
    if (isSymbol("-") || isSymbol("+")) {
        const Token& t = next();
        const int start = t.start;
        const QString op = t.text;
        ExprPtr operand = unary();
        auto e = make(ExprKind::Unary, start);
        e->op = op;
        e->end = operand->end;
        e->args.push_back(std::move(operand));
        bound(*e);
        return e;
    }
    return power();
}

ExprPtr Parser::power() {
    ExprPtr left = primary();
    while (acceptSymbol("^")) {
        // -2^2 is -4 in VB: the unary minus binds looser than ^, so its operand is read by unary().
        ExprPtr right;
        if (isSymbol("-") || isSymbol("+"))
            right = unary();
        else
            right = primary();
        left = binary(QStringLiteral("^"), std::move(left), std::move(right));
    }
    return left;
}

ExprPtr Parser::primary() {
    const DepthGuard guard(*this);
    const Token& t = peek();
    const int start = t.start;
    switch (t.type) {
    case TokenType::Number: {
        auto e = make(ExprKind::Number, start);
        e->text = next().text;
        e->end = peek().start;
        return e;
    }
    case TokenType::String: {
        auto e = make(ExprKind::String, start);
        e->text = next().text;
        e->end = peek().start;
        return e;
    }
    case TokenType::Date: {
        auto e = make(ExprKind::Date, start);
        e->text = next().text;
        e->end = peek().start;
        return e;
    }
    case TokenType::Symbol:
        if (isSymbol("(")) {
            next();
            if (isWord("select")) {
                auto e = make(ExprKind::Subquery, start);
                const Part saved = m_part;
                e->subquery = select();
                m_part = saved;
                expectSymbol(")");
                e->end = peek().start;
                return e;
            }
            ExprPtr inner = impExpr();
            expectSymbol(")");
            return inner;
        }
        fail();
    case TokenType::End:
        fail();
    case TokenType::Word:
        if (t.lower == QLatin1String("true") || t.lower == QLatin1String("yes") || t.lower == QLatin1String("false") ||
            t.lower == QLatin1String("no")) {
            auto e = make(ExprKind::Boolean, start);
            e->boolValue = t.lower == QLatin1String("true") || t.lower == QLatin1String("yes");
            next();
            e->end = peek().start;
            return e;
        }
        if (t.lower == QLatin1String("null")) {
            next();
            auto e = make(ExprKind::Null, start);
            return e;
        }
        if (t.lower == QLatin1String("now") && !isSymbol("(", 1) && !isSymbol(".", 1) && !isSymbol("!", 1)) {
            // VB lets Now stand without its parentheses ("set assignDate = now").
            next();
            auto e = make(ExprKind::Call, start);
            e->text = QStringLiteral("now");
            return e;
        }
        if (t.lower == QLatin1String("exists")) {
            next();
            expectSymbol("(");
            if (!isWord("select"))
                fail();
            auto e = make(ExprKind::Exists, start);
            const Part saved = m_part;
            e->subquery = select();
            m_part = saved;
            expectSymbol(")");
            e->end = peek().start;
            return e;
        }
        if (isSymbol("(", 1) && (!reservedWords().contains(t.lower) || t.lower == QLatin1String("left") ||
                                 t.lower == QLatin1String("right"))) {
            auto e = make(ExprKind::Call, start);
            e->text = next().lower;
            if (e->text.endsWith(u'$')) // Left$, Format$, ...: the text-only forms of the same functions
                e->text.chop(1);
            next();
            if (acceptSymbol(")")) {
                e->end = peek().start;
                return e;
            }
            if (isSymbol("*") && isSymbol(")", 1)) {
                next();
                e->star = true;
            } else {
                do {
                    e->args.push_back(impExpr());
                } while (acceptSymbol(","));
            }
            expectSymbol(")");
            e->end = peek().start;
            bound(*e);
            return e;
        }
        [[fallthrough]];
    case TokenType::QuotedName: {
        if (!isNameToken())
            fail();
        auto e = make(ExprKind::Column, start);
        QString first = next().text;
        if ((isSymbol(".") || isSymbol("!")) && isNameToken(1)) {
            next();
            e->qualifier = first;
            e->text = next().text;
        } else {
            e->text = first;
        }
        e->end = peek().start;
        return e;
    }
    }
    fail();
}

} // namespace

Statement ParseStatement(const QString& statement) {
    Parser parser(statement);
    return parser.statement();
}

ExprPtr ParseExpression(const QString& expression) {
    std::optional<Parser> parser;
    try {
        parser.emplace(expression);
    } catch (const DbError&) {
        throw DbError(3077, QStringLiteral("Syntax error (missing operator) in expression."));
    }
    return parser->bareExpression();
}

} // namespace jet
