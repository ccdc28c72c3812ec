// The parser reads every statement shape the program writes and refuses broken ones with Jet's numbers.

#include "sql/JetParser.h"
#include "Database.h"
#include "sql/JetLexer.h"
#include "sql/JetTranslator.h"

#include <gtest/gtest.h>

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
    EXPECT_EQ(errorOf("alter table voertuig add"), 3293);
    EXPECT_EQ(errorOf("create table t (a text(50), a long)"), 3191);
    EXPECT_EQ(errorOf("create table t (a strange)"), 3259);
    EXPECT_EQ(errorOf("create table t (a long"), 3290);
    EXPECT_EQ(errorOf("select a from t where a = = 1"), 3075);
    EXPECT_EQ(errorOf("select a from t where (a = 1"), 3075);
    EXPECT_EQ(errorOf("select a from t where a = 'open"), 3075);
    EXPECT_EQ(errorOf("select a from t inner join u"), 3135);
    EXPECT_EQ(errorOf("select a from (t"), 3131);
    EXPECT_EQ(errorOf("select a from t,"), 3131);
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
    EXPECT_EQ(errorOf(""), 3129);
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

} // namespace
