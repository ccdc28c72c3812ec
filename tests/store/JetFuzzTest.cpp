// Random, truncated and mangled statements built from real ones: the dialect layer may refuse them, but
// only with a DbError, never a crash; and what it accepts SQLite can parse.

#include "Database.h"
#include "sql/JetFunctions.h"
#include "sql/JetTranslator.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <random>
#include <sqlite3.h>

namespace {

class NoTables : public SchemaCatalog {
public:
    bool hasTable(const QString&) const override { return false; }
    std::vector<Column> columns(const QString&) const override { return {}; }
};

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
    static const NoTables catalog;
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
    static const NoTables catalog;
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
