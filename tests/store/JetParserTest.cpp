// The parser reads every statement shape the program writes, refuses broken ones with Jet's numbers, and
// survives mangled ones.

#include "sql/JetParser.h"
#include "Database.h"
#include "sql/JetFunctions.h"
#include "sql/JetLexer.h"
#include "sql/JetTranslator.h"

#include <gtest/gtest.h>
#include <random>
#include <sqlite3.h>

namespace {

class EmptyCatalog : public SchemaCatalog {
public:
    bool hasTable(const QString&) const override { return false; }
    std::vector<Column> columns(const QString&) const override { return {}; }
};

SqlitePlan translate(const QString& jet) {
    static const EmptyCatalog catalog;
    return TranslateJet(jet, catalog);
}

int errorOf(const QString& jet) {
    try {
        translate(jet);
    } catch (const DbError& e) {
        return e.number();
    }
    return 0;
}

// Shapes the statement tests do not run: no blank before a bracket, a bare keyword as a name, a closing
// semicolon, outer joins, subqueries in conditions.
TEST(JetParser, AcceptsTheProgramsSelects) {
    const char* statements[] = {
        "SELECT[SUP_No],[SUP_Desc] FROM suppliers where [SUP_Desc] = 'O''Brien'",
        "select transid from voerkat where desc = 'BAKKIE'",
        "select id,description into drivers from  (select   [KID] as id ,[Desc] as description  from kamer where kid = "
        "0)",
        "select * from t where not isassigned and x like '*a?' and y not in (select id from u)",
        "select iif(Reference is null, '', Reference) as Ref, nz(x) from t where exists (select * from u)",
        "SELECT * FROM t WHERE a = 1;",
        "select a from t1, t2 left outer join t3 on t3.id = t2.id right join t4 on t4.id = t3.id",
    };
    for (const char* s : statements) {
        SCOPED_TRACE(s);
        EXPECT_NO_THROW(translate(s));
    }
}

TEST(JetParser, StatementKindsAndTargets) {
    EXPECT_EQ(translate("select * from a").kind, SqlitePlan::Kind::Query);
    const SqlitePlan into = translate(" select * into vdiens_allocated from vdiens");
    EXPECT_EQ(into.kind, SqlitePlan::Kind::SelectInto);
    EXPECT_EQ(into.intoTable, "vdiens_allocated");
    EXPECT_FALSE(into.sql.contains("into", Qt::CaseInsensitive));
    EXPECT_EQ(translate("delete * from tmpdetail").kind, SqlitePlan::Kind::Command);
    const SqlitePlan crosstab = translate("Transform Sum(vecfuel.Litres) select format(datum,'mmmm yyyy') AS [Date] "
                                          "from vecfuel group by format(datum,'mmmm yyyy') Pivot tankid");
    EXPECT_EQ(crosstab.kind, SqlitePlan::Kind::Crosstab);
    EXPECT_FALSE(crosstab.pivotValuesSql.isEmpty());
    ASSERT_TRUE(crosstab.crosstabSql);
    EXPECT_TRUE(crosstab.crosstabSql({"1", "2"}).contains("\"2\""));
    const SqlitePlan drop = translate("DROP TABLE VecChoice;");
    EXPECT_EQ(drop.kind, SqlitePlan::Kind::DropTable);
    EXPECT_EQ(drop.table, "VecChoice");
    const SqlitePlan index = translate("create unique index FUELDEX2 on VecFuel (tankid, datum desc) with primary");
    EXPECT_EQ(index.kind, SqlitePlan::Kind::CreateIndex);
    EXPECT_EQ(index.indexFields, QStringList({"tankid", "datum"}));
    EXPECT_TRUE(index.unique);
    EXPECT_TRUE(index.primary);
}

// What the store makes of these is checked through the store; here, the words the statements leave to it.
TEST(JetParser, DefinitionsInJetTypes) {
    const SqlitePlan create = translate("create table FuelSupplier (suppid AUTOINCREMENT PRIMARY KEY NOT NULL, Name "
                                        "text(50), issystem bit, f float)");
    ASSERT_EQ(create.columns.size(), 4u);
    EXPECT_TRUE(create.columns[0].autoIncrement && create.columns[0].primaryKey && create.columns[0].notNull);
    EXPECT_EQ(create.columns[1].size, 50);
    const SqlitePlan alter = translate("alter table voertuig alter column  [km]  double");
    EXPECT_EQ(alter.kind, SqlitePlan::Kind::AlterColumn);
    EXPECT_EQ(alter.column, "km");
    EXPECT_EQ(translate("alter table toerinv alter hoeveel double").kind, SqlitePlan::Kind::AlterColumn);
    EXPECT_EQ(translate("alter table voertuig drop column rebaterate").kind, SqlitePlan::Kind::DropColumn);
}

TEST(JetParser, RefusesBrokenStatementsWithJetNumbers) {
    EXPECT_EQ(errorOf("alter table voertuig drop  [rebaterate]  double"), 3293);
    EXPECT_EQ(errorOf("create table t (a text(50), a long)"), 3191);
    EXPECT_EQ(errorOf("create table t (a strange)"), 3259);
    EXPECT_EQ(errorOf("create table t (a long"), 3290);
    EXPECT_EQ(errorOf("select a from t where a = = 1"), 3075);
    EXPECT_EQ(errorOf("select a from t inner join u"), 3135);
    EXPECT_EQ(errorOf("select a from (t"), 3131);
    EXPECT_EQ(errorOf("select a b c from t"), 3075);
    EXPECT_EQ(errorOf("select a, from t"), 3141);
    EXPECT_EQ(errorOf("select a from t order by"), 3138);
    EXPECT_EQ(errorOf("select a from t) x"), 3142);
    EXPECT_EQ(errorOf("insert into t (a, b) values (1)"), 3346);
    EXPECT_EQ(errorOf("insert into t values"), 3134);
    EXPECT_EQ(errorOf("update t a = 1"), 3144);
    EXPECT_EQ(errorOf("delete from"), 3128);
    EXPECT_EQ(errorOf("drop t"), 3295);
    EXPECT_EQ(errorOf("selec * from t"), 3129);
    EXPECT_EQ(errorOf("select frobnicate(a) from t"), 3085);
    EXPECT_EQ(errorOf("select iif(a, b) from t"), 3075);
    EXPECT_EQ(errorOf("select a from t where d = #13/45/2024#"), 3075);
    EXPECT_EQ(errorOf("transform sum(a) select b from t group by b"), 3130);
}

TEST(JetParser, PrecedenceAsVb) {
    // & binds looser than +, comparison looser than &, not looser than comparison, and looser than not.
    const jet::ExprPtr e = jet::ParseExpression("not a = 1 & 2 + 3 and b");
    ASSERT_EQ(e->kind, jet::ExprKind::Binary);
    EXPECT_EQ(e->op, "and");
    const jet::Expr& notPart = *e->args[0];
    ASSERT_EQ(notPart.kind, jet::ExprKind::Unary);
    const jet::Expr& eq = *notPart.args[0];
    EXPECT_EQ(eq.op, "=");
    EXPECT_EQ(eq.args[1]->op, "&");
    EXPECT_EQ(eq.args[1]->args[1]->op, "+");
    // mod below \ below * and /; unary minus below ^.
    const jet::ExprPtr m = jet::ParseExpression("a mod b \\ c * d");
    EXPECT_EQ(m->op, "mod");
    EXPECT_EQ(m->args[1]->op, "\\");
    EXPECT_EQ(m->args[1]->args[1]->op, "*");
    const jet::ExprPtr p = jet::ParseExpression("-2 ^ 2");
    EXPECT_EQ(p->kind, jet::ExprKind::Unary);
    EXPECT_EQ(p->args[0]->op, "^");
    // between's and is its own, not a logical and.
    const jet::ExprPtr b = jet::ParseExpression("x between 1 and 2 and y");
    EXPECT_EQ(b->op, "and");
    EXPECT_EQ(b->args[0]->kind, jet::ExprKind::Between);
}

TEST(JetParser, NamesQuotesAndDates) {
    const std::vector<jet::Token> tokens = jet::Tokenize("[total litres] 'it''s' \"say \"\"hi\"\"\" #2024/11/05#");
    ASSERT_EQ(tokens.size(), 5u);
    EXPECT_EQ(tokens[0].type, jet::TokenType::QuotedName);
    EXPECT_EQ(tokens[0].text, "total litres");
    EXPECT_EQ(tokens[1].text, "it's");
    EXPECT_EQ(tokens[2].type, jet::TokenType::String);
    EXPECT_EQ(tokens[2].text, "say \"hi\"");
    EXPECT_EQ(tokens[3].text, "2024-11-05 00:00:00");
    EXPECT_EQ(jet::JetDateLiteralToIso("11-05-2024 23:59:59"), "2024-11-05 23:59:59");
    EXPECT_EQ(jet::JetDateLiteralToIso("3/4/2024"), "2024-03-04 00:00:00");  // month first
    EXPECT_EQ(jet::JetDateLiteralToIso("25/4/2024"), "2024-04-25 00:00:00"); // no 25th month: day first
    EXPECT_EQ(jet::JetDateLiteralToIso("1/2/2024 1:05 PM"), "2024-01-02 13:05:00");
    EXPECT_EQ(jet::JetDateLiteralToIso("2024/02/30"), "");
    EXPECT_EQ(jet::JetDateLiteralToIso("soon"), "");
}

TEST(JetParser, InsertSelectMatchesByName) {
    const SqlitePlan plan = translate(" INSERT INTO tmpdetail SELECT * FROM( select strconv(tanknaam,3) as [tank "
                                      "name] ,'1901/01/01' as [sortdate]  from tanks where transid in (1))");
    EXPECT_TRUE(plan.sql.startsWith("INSERT INTO [tmpdetail] ([tank name],[sortdate]) SELECT"));
}

TEST(JetParser, TypesTheStatementFixes) {
    const SqlitePlan plan = translate("select #12-31-2025 23:59:59# as d, trdate, now(), format(now(),'yyyy'), "
                                      "iif(a, #2024/01/01#, null) from t");
    EXPECT_EQ(plan.columnTypes, QStringList({"datetime", "", "datetime", "", "datetime"}));
    EXPECT_TRUE(translate("select a, b from t").columnTypes.isEmpty());
    EXPECT_TRUE(translate("select *, now() from t").columnTypes.isEmpty());
}

// ---- random, truncated and mangled statements built from real ones: the dialect layer may refuse them, but
// only with a DbError, never a crash; and what it accepts SQLite can parse.

const QStringList& corpus() {
    static const QStringList statements = {
        "Select * from owner order by name asc",
        "Select top 1 * from owner ",
        "select [desc] as [group], sum([total litres]) as [biggie]  from tmpsummary  inner join voerkat on "
        "voerkat.transid = tmpsummary.catid  group by [desc]",
        " select sum(amt) from ( SELECT sum(val(Liter)) as [amt] FROM FuelPurchase where tankid in (1,2) union all "
        "SELECT -sum(val(Litres)) as [amt] FROM VecFuel where tankid in (1,2))",
        " Transform Sum([open litres]) select [tank name], sortdate,date,detail, vehicle From tmpdetail group by [tank "
        "name],sortdate,date,detail,vehicle Pivot detail",
        "Transform Sum(Value1) select  '' as [-] from vdiens_extra   where costtype <> 'Labour'   and historyid = 4 "
        "group by  '' Pivot costtype",
        " select  Strconv(tanknaam,3) as [tank name] ,p.datum as [sortdate] ,p.datum as [date] ,  'litres added' as "
        "[detail] ,  'Tank Stocktake (Gain)' as [vehicle] ,verlore as [open litres]  from tankstock p  inner join "
        "tanks "
        "t on t.transid = p.tankid  where p.datum >= '2024/01/01' and val(verlore) > 0",
        " select strconv(maak & ' ' & regnr & ' (' & kmread & ')',3) as   [vehicle]  from ( (vecfuel p inner join "
        "tanks t on t.transid = p.tankid)  inner join voertuig  v on  v.transid = p.voertuigid)",
        "insert into departments (description,issys) values ('Department 1',1)",
        " INSERT INTO tmpdetail SELECT * FROM( select strconv(tanknaam,3) as [tank name] ,'1901/01/01' as [sortdate] "
        "from tanks where transid in (3))",
        "update tmpdetailpivot set [litres added] = [open litres]   where [sortDate] = '1901/01/01'",
        "delete * from tmpdetail",
        "alter table voertuig alter column  [km]  double",
        "alter table voertuig drop  [rebaterate]  double",
        "create table FuelSupplier (suppid AUTOINCREMENT PRIMARY KEY NOT NULL, Name text(50), issystem bit)",
        "select id,description into drivers from  (select   [KID] as id ,[Desc] as description  from kamer where kid = "
        "0)",
        "SELECT * FROM ToerInv WHERE TID IN (1) AND ADatum >= #01-01-2024 00:00:00# AND ADatum <= #12-31-2024 "
        "23:59:59#",
        "select iif(isnull(a), 'x' & b, c + d \\ 2 mod 3 ^ 2) from t where not e like '[!a-c]*#?' and f between 1 and "
        "2 or g is not null",
        "select top 2 a from t order by b desc, 1",
        "create unique index ix on t (a asc, b desc) with primary",
    };
    return statements;
}

// Translates; returns false when refused. Anything but a DbError fails the test.
bool translates(const QString& statement, SqlitePlan* plan) {
    static const EmptyCatalog catalog;
    try {
        *plan = TranslateJet(statement, catalog);
        return true;
    } catch (const DbError& e) {
        EXPECT_GT(e.number(), 0) << statement.toStdString();
        EXPECT_FALSE(e.description().isEmpty()) << statement.toStdString();
        return false;
    } catch (const std::exception& e) {
        ADD_FAILURE() << "unexpected exception " << e.what() << " for: " << statement.toStdString();
    } catch (...) {
        ADD_FAILURE() << "unexpected exception for: " << statement.toStdString();
    }
    return false;
}

// SQLite may not know the tables, but it must be able to read what was emitted.
void expectSqliteParses(sqlite3* db, const QString& sql, const QString& from) {
    if (sql.isEmpty())
        return;
    sqlite3_stmt* st = nullptr;
    const QByteArray utf8 = sql.toUtf8();
    const int rc = sqlite3_prepare_v2(db, utf8.constData(), static_cast<int>(utf8.size()), &st, nullptr);
    sqlite3_finalize(st);
    if (rc != SQLITE_OK) {
        const QString message = QString::fromUtf8(sqlite3_errmsg(db));
        EXPECT_FALSE(message.contains("syntax error") || message.contains("unrecognized token"))
            << message.toStdString() << "\n  emitted: " << sql.toStdString() << "\n  from: " << from.toStdString();
    }
}

// Cuts the text short, drops a stretch or puts a piece of syntax in, at a random place.
QString Mutate(QString s, std::mt19937& rng) {
    static const char* const pieces[] = {"(",     ")",         "'", "[",      "]", "#",  " and ", " not ", " from ",
                                         " in (", " between ", "=", " like ", "&", "\"", "2024/", ";",     " select "};
    const int at = std::uniform_int_distribution<int>(0, static_cast<int>(s.size()))(rng);
    switch (std::uniform_int_distribution<int>(0, 2)(rng)) {
    case 0:
        return s.left(at);
    case 1:
        return s.remove(at, std::uniform_int_distribution<int>(1, 8)(rng));
    default:
        return s.insert(at, pieces[std::uniform_int_distribution<int>(0, std::size(pieces) - 1)(rng)]);
    }
}

// The corpus as it stands (where only the drop with a type after the name is refused), then mangled: what is
// accepted, SQLite can read.
TEST(JetFuzz, CorpusAndMangledStatementsTranslateOrAreRefused) {
    sqlite3* db = nullptr;
    ASSERT_EQ(sqlite3_open(":memory:", &db), SQLITE_OK);
    ASSERT_EQ(RegisterJetFunctions(db), SQLITE_OK);
    const auto run = [&](const QString& s) {
        SqlitePlan plan;
        if (!translates(s, &plan))
            return false;
        expectSqliteParses(db, plan.sql, s);
        expectSqliteParses(db, plan.pivotValuesSql, s);
        if (plan.crosstabSql)
            expectSqliteParses(db, plan.crosstabSql({"a", "<>", "it's \"x\""}), s);
        return true;
    };
    int accepted = 0;
    for (const QString& s : corpus())
        accepted += run(s) ? 1 : 0;
    EXPECT_EQ(accepted, corpus().size() - 1);

    std::mt19937 rng(20241111);
    accepted = 0;
    for (int i = 0; i < 4000 && !HasFailure(); ++i) {
        QString s = corpus()[std::uniform_int_distribution<int>(0, static_cast<int>(corpus().size()) - 1)(rng)];
        for (int r = std::uniform_int_distribution<int>(1, 3)(rng); r > 0; --r)
            s = Mutate(s, rng);
        accepted += run(s) ? 1 : 0;
    }
    EXPECT_GT(accepted, 100);
    EXPECT_LT(accepted, 3900);
    sqlite3_close(db);
}

// FindFirst's criteria go through their own entry point.
TEST(JetFuzz, FindFirstCriteriaNeverCrash) {
    static const EmptyCatalog catalog;
    std::mt19937 rng(7);
    for (int i = 0; i < 1000; ++i) {
        const QString s = Mutate("OID = 5 and name like 'a*' or not isnull(x) and d >= #2024/01/01#", rng);
        try {
            TranslateJetExpression(s, catalog);
        } catch (const DbError& e) {
            EXPECT_GT(e.number(), 0) << s.toStdString();
        }
    }
}

TEST(JetFuzz, DeepNestingIsRefusedNotOverflowed) {
    const QString deep = "select " + QString(5000, '(') + "1" + QString(5000, ')') + " from t";
    SqlitePlan plan;
    EXPECT_FALSE(translates(deep, &plan));
    QString nots = "select 1 from t where ";
    for (int i = 0; i < 5000; ++i)
        nots += "not -";
    EXPECT_FALSE(translates(nots + "1", &plan));
    QString derived = "select * from ";
    for (int i = 0; i < 3000; ++i)
        derived += "(select * from ";
    EXPECT_FALSE(translates(derived + "t" + QString(3000, ')'), &plan));
    // Long operator chains are read without recursion but bounded, since the tree is walked recursively.
    QString chain = "select 1 from t where ";
    for (int i = 0; i < 5000; ++i)
        chain += QString("a = %1 or ").arg(i);
    EXPECT_FALSE(translates(chain + "a = 0", &plan));
    QString joins = "select 1 from t0";
    for (int i = 1; i < 500; ++i)
        joins += QString(" inner join t%1 on t%1.id = t0.id").arg(i);
    EXPECT_FALSE(translates(joins, &plan));
    QString list = "select 1 from t where a in (0";
    for (int i = 1; i < 5000; ++i)
        list += QString(",%1").arg(i);
    EXPECT_TRUE(translates(list + ")", &plan)); // a long id list is flat, and fine
    // Nesting as deep as real statements go is fine.
    EXPECT_TRUE(translates("select " + QString(20, '(') + "1" + QString(20, ')') + " from t", &plan));
}

} // namespace
