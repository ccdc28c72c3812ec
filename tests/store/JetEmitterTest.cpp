// Emitted SQL run on a real in-memory SQLite with the Jet functions registered: the results must be Jet's.

#include "Database.h"
#include "sql/JetFunctions.h"
#include "sql/JetTranslator.h"

#include <QStringList>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

// The schema as SQLite holds it, read through table_info.
class MemoryCatalog : public SchemaCatalog {
public:
    explicit MemoryCatalog(sqlite3* db) : m_db(db) {}
    bool hasTable(const QString& table) const override { return !columns(table).empty(); }
    std::vector<Column> columns(const QString& table) const override {
        std::vector<Column> out;
        sqlite3_stmt* st = nullptr;
        const QByteArray sql = QStringLiteral("PRAGMA table_info([%1])").arg(table).toUtf8();
        if (sqlite3_prepare_v2(m_db, sql.constData(), -1, &st, nullptr) != SQLITE_OK)
            return out;
        while (sqlite3_step(st) == SQLITE_ROW)
            out.push_back({QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 1))),
                           QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, 2)))});
        sqlite3_finalize(st);
        return out;
    }

private:
    sqlite3* m_db;
};

using Rows = std::vector<QStringList>;

class JetEmitter : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(sqlite3_open(":memory:", &m_db), SQLITE_OK);
        ASSERT_EQ(RegisterJetFunctions(m_db), SQLITE_OK);
        m_catalog = std::make_unique<MemoryCatalog>(m_db);
        raw("CREATE TABLE voertuig (TransID INTEGER PRIMARY KEY, CatID INTEGER, Maak TEXT COLLATE NOCASE, "
            "RegNr TEXT COLLATE NOCASE, Km DOUBLE, rebated BIT, Boek TEXT COLLATE NOCASE, ADatum TEXT COLLATE NOCASE)");
        raw("INSERT INTO voertuig VALUES (1, 1, 'TOYOTA', 'ABC123', 1000, -1, '1 234.50', '2024/01/15')");
        raw("INSERT INTO voertuig VALUES (2, 1, 'toyota', 'XYZ999', 2000, 0, '12abc', '2024/02/01')");
        raw("INSERT INTO voertuig VALUES (3, 2, 'Nissan', NULL, NULL, 1, 'abc', '2023/12/31')");
        raw("CREATE TABLE voerkat (TransID INTEGER PRIMARY KEY, [Desc] TEXT COLLATE NOCASE)");
        raw("INSERT INTO voerkat VALUES (1, 'BAKKIES'), (2, 'Trucks')");
    }
    void TearDown() override { sqlite3_close(m_db); }

    void raw(const char* sql) {
        char* err = nullptr;
        ASSERT_EQ(sqlite3_exec(m_db, sql, nullptr, nullptr, &err), SQLITE_OK) << (err ? err : "");
    }

    // Runs SQLite text; throws DbError with the function's Jet number when one failed.
    Rows runSql(const QString& sql) {
        sqlite3_stmt* st = nullptr;
        const QByteArray utf8 = sql.toUtf8();
        if (sqlite3_prepare_v2(m_db, utf8.constData(), -1, &st, nullptr) != SQLITE_OK)
            throw DbError(3000, QString::fromUtf8(sqlite3_errmsg(m_db)) + QStringLiteral(" in: ") + sql);
        Rows rows;
        m_names.clear();
        for (int i = 0; i < sqlite3_column_count(st); ++i)
            m_names << QString::fromUtf8(sqlite3_column_name(st, i));
        int rc;
        while ((rc = sqlite3_step(st)) == SQLITE_ROW) {
            QStringList row;
            for (int i = 0; i < sqlite3_column_count(st); ++i) {
                if (sqlite3_column_type(st, i) == SQLITE_NULL)
                    row << QStringLiteral("<null>");
                else
                    row << QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(st, i)));
            }
            rows.push_back(row);
        }
        sqlite3_finalize(st);
        if (rc != SQLITE_DONE) {
            int number = 0;
            QString description;
            const QString message = QString::fromUtf8(sqlite3_errmsg(m_db));
            if (JetErrorFromFunctionMessage(message, &number, &description))
                throw DbError(number, description);
            throw DbError(3000, message);
        }
        return rows;
    }

    Rows query(const QString& jet) {
        const SqlitePlan plan = TranslateJet(jet, *m_catalog);
        if (plan.kind == SqlitePlan::Kind::Crosstab) {
            QStringList values;
            for (const QStringList& r : runSql(plan.pivotValuesSql))
                values << r.front();
            return runSql(plan.crosstabSql(values));
        }
        return runSql(plan.sql);
    }
    QString scalar(const QString& jet) {
        const Rows r = query(jet);
        return r.empty() ? QStringLiteral("<none>") : r.front().front();
    }
    QStringList column(const QString& jet, int index = 0) {
        QStringList out;
        for (const QStringList& r : query(jet))
            out << r.value(index);
        return out;
    }
    int jetError(const QString& jet) {
        try {
            query(jet);
        } catch (const DbError& e) {
            return e.number();
        }
        return 0;
    }

    sqlite3* m_db = nullptr;
    std::unique_ptr<MemoryCatalog> m_catalog;
    QStringList m_names;
};

TEST_F(JetEmitter, TextComparesCaseBlind) {
    EXPECT_EQ(column("select transid from voertuig where maak = 'Toyota' order by transid"), QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid from voertuig where maak & '' in ('NISSAN','x')"), QStringList({"3"}));
    EXPECT_EQ(column("select transid from voertuig where maak & '' < 'o' order by transid"), QStringList({"3"}));
    EXPECT_EQ(column("select count(*) from voertuig group by maak & ''"), QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid from voerkat order by [desc] & '' desc"), QStringList({"2", "1"}));
}

TEST_F(JetEmitter, DistinctAndUnionAreCaseBlind) {
    EXPECT_EQ(query("select distinct maak & '' from voertuig").size(), 2u);
    const QString one = "select maak & '' from voertuig where transid = 1", two = one.left(one.size() - 1) + "2";
    EXPECT_EQ(query(one + " union " + two).size(), 1u);
    EXPECT_EQ(query(one + " union all " + two).size(), 2u);
    EXPECT_EQ(column("select regnr from voertuig where transid = 1 union select 'abc123' from voerkat").size(), 1);
}

TEST_F(JetEmitter, NumbersCompareWithoutCollationSoIndexesServe) {
    raw("CREATE INDEX voertuig_cat ON voertuig (CatID)");
    const SqlitePlan plan = TranslateJet("select maak from voertuig where catid = 2 order by km", *m_catalog);
    EXPECT_FALSE(plan.sql.contains("COLLATE")) << plan.sql.toStdString();
    const Rows steps = runSql("EXPLAIN QUERY PLAN " + plan.sql);
    ASSERT_FALSE(steps.empty());
    EXPECT_TRUE(steps.front().back().contains("voertuig_cat")) << steps.front().back().toStdString();
    // Text keeps its case-blind comparison.
    EXPECT_TRUE(TranslateJet("select maak from voertuig where maak = 'x'", *m_catalog).sql.contains("COLLATE NOCASE"));
    EXPECT_TRUE(TranslateJet("select 1 from voertuig where maak & '' = regnr", *m_catalog).sql.contains("NOCASE"));
}

TEST_F(JetEmitter, ConcatenationAndPlus) {
    EXPECT_EQ(scalar("select maak & '(' & regnr & ')' from voertuig where transid = 3"), "Nissan()");
    EXPECT_EQ(scalar("select maak + regnr from voertuig where transid = 3"), "<null>");
    EXPECT_EQ(scalar("select maak + regnr from voertuig where transid = 1"), "TOYOTAABC123");
    EXPECT_EQ(scalar("select km & '|' & 1.5 & '|' & 2 from voertuig where transid = 1"), "1000|1.5|2");
    EXPECT_EQ(scalar("select '5' + 2 from voerkat where transid = 1"), "7.0");
}

TEST_F(JetEmitter, ArithmeticAsJet) {
    EXPECT_EQ(scalar("select 7 \\ 2 from voerkat where transid = 1"), "3");
    EXPECT_EQ(scalar("select 7 mod 3 from voerkat where transid = 1"), "1");
    EXPECT_EQ(scalar("select -2 ^ 2 from voerkat where transid = 1"), "-4.0");
    EXPECT_EQ(scalar("select 2 + 3 mod 2 from voerkat where transid = 1"), "3");
    EXPECT_EQ(jetError("select km / 0 from voertuig"), 11);
    EXPECT_EQ(jetError("select 1 \\ 0 from voertuig"), 11);
    EXPECT_EQ(scalar("select km / 0 from voertuig where transid = 3"), "<null>"); // Null divided stays Null
}

TEST_F(JetEmitter, BooleansAreMinusOne) {
    EXPECT_EQ(scalar("select true from voerkat where transid = 1"), "-1");
    EXPECT_EQ(scalar("select not (1 = 2) from voerkat where transid = 1"), "-1");
    EXPECT_EQ(scalar("select isnull(regnr) from voertuig where transid = 3"), "-1");
    EXPECT_EQ(column("select transid from voertuig where rebated order by transid"), QStringList({"1", "3"}));
    EXPECT_EQ(column("select transid from voertuig where not rebated"), QStringList({"2"}));
    EXPECT_EQ(column("select transid from voertuig where rebated = False"), QStringList({"2"}));
    // A Yes/No column turned into text reads True or False, whichever number stands for True.
    EXPECT_EQ(column("select maak & ':' & rebated from voertuig order by transid"),
              QStringList({"TOYOTA:True", "toyota:False", "Nissan:True"}));
}

TEST_F(JetEmitter, NullTests) {
    EXPECT_EQ(column("select transid from voertuig where regnr is null"), QStringList({"3"}));
    EXPECT_EQ(column("select transid from voertuig where isnull(km)"), QStringList({"3"}));
    EXPECT_EQ(scalar("select iif(isnull(km), 'none', 'some') from voertuig where transid = 3"), "none");
    EXPECT_EQ(scalar("select nz(km, 0) from voertuig where transid = 3"), "0");
}

TEST_F(JetEmitter, VbConversions) {
    EXPECT_EQ(scalar("select val(boek) from voertuig where transid = 1"), "1234.5");
    EXPECT_EQ(scalar("select val(boek) from voertuig where transid = 2"), "12.0");
    EXPECT_EQ(scalar("select cint(2.5) from voerkat where transid = 1"), "2");
    EXPECT_EQ(scalar("select strconv(maak,3) from voertuig where transid = 1"), "Toyota");
    EXPECT_EQ(scalar("select format(adatum,'mmmm yyyy') from voertuig where transid = 1"), "January 2024");
    EXPECT_EQ(scalar("select format(1234.5,'###0.00') from voerkat where transid = 1"), "1234.50");
    EXPECT_EQ(jetError("select cdbl(km) from voertuig"), 94);
}

TEST_F(JetEmitter, TextFunctions) {
    EXPECT_EQ(scalar("select left(regnr, 3) & right(regnr, 3) & mid(regnr, 2, 2) & len(regnr) from voertuig "
                     "where transid = 1"),
              "ABC123BC6");
    EXPECT_EQ(scalar("select right(regnr, 0) & '|' & trim('  a  ') & '|' from voertuig where transid = 1"), "|a|");
    EXPECT_EQ(scalar("select ucase(maak) & lcase(maak) from voertuig where transid = 3"), "NISSANnissan");
    EXPECT_EQ(scalar("select year(adatum) & '-' & month(adatum) & '-' & day(adatum) from voertuig where transid = 1"),
              "2024-1-15");
    EXPECT_EQ(scalar("select abs(-3) + int(-2.5) from voerkat where transid = 1"), "0.0");
}

TEST_F(JetEmitter, LikePatterns) {
    EXPECT_EQ(column("select transid from voertuig where maak like 'toy*' order by transid"), QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid from voertuig where regnr like '???###'"), QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid from voertuig where regnr like '[!a]*'"), QStringList({"2"}));
    EXPECT_EQ(column("select transid from voertuig where maak not like '*o*'"), QStringList({"3"}));
    EXPECT_TRUE(JetLikeMatch("a*b", "a[*]b"));
    EXPECT_FALSE(JetLikeMatch("axb", "a[*]b"));
    EXPECT_FALSE(JetLikeMatch("ab", "a"));
}

TEST_F(JetEmitter, BetweenIncludesBothEnds) {
    EXPECT_EQ(column("select transid from voertuig where adatum between '2024/01/15' and '2024/02/01' order by 1"),
              QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid from voertuig where km not between 1000 and 1999"), QStringList({"2"}));
}

TEST_F(JetEmitter, AggregatesOverNoRows) {
    const Rows r = query("select sum(km), min(km), max(km), avg(km), count(*) from voertuig where transid = 99");
    ASSERT_EQ(r.size(), 1u);
    EXPECT_EQ(r.front(), QStringList({"<null>", "<null>", "<null>", "<null>", "0"}));
    EXPECT_EQ(m_names, QStringList({"Expr1000", "Expr1001", "Expr1002", "Expr1003", "Expr1004"}));
    EXPECT_EQ(scalar("select first(maak) & last(maak) from voertuig"), "TOYOTANissan");
}

TEST_F(JetEmitter, GroupedSelectsKeepJetsRules) {
    EXPECT_EQ(jetError("select maak, sum(km) from voertuig"), 3122);
    EXPECT_EQ(jetError("select catid, regnr from voertuig group by catid"), 3122);
    EXPECT_EQ(jetError("select catid from voertuig group by catid order by maak"), 3122);
    EXPECT_EQ(jetError("select * from voertuig group by catid"), 3120);
    EXPECT_EQ(jetError("transform sum(km) select maak from voertuig group by catid pivot regnr"), 3122);
    // Grouped expressions, what is built of them, aggregates and constants are fine.
    EXPECT_EQ(column("select strconv(maak & '(' & catid & ')',3) as v, sum(km) + 1 as total, 'x' from voertuig "
                     "group by maak & '(' & catid & ')' order by sum(km)",
                     1),
              QStringList({"<null>", "3001.0"}));
    EXPECT_EQ(column("select voertuig.catid from voertuig group by catid having count(*) > 1"), QStringList({"1"}));
}

TEST_F(JetEmitter, ConstantsInGroupBy) {
    EXPECT_EQ(query("select 'all' as k, sum(km) as total from voertuig group by 1").size(), 1u);
    EXPECT_EQ(scalar("select sum(km) from voertuig group by 1, 'x'"), "3000.0");
    EXPECT_TRUE(query("select sum(km) from voertuig where transid = 99 group by ''").empty());
}

TEST_F(JetEmitter, SummaryGroupsOverConstants) {
    const Rows rows = query(" select catid, maak  &  ' (' & regnr & ')' as [vehicle], sum(km) as [Total], 100 as "
                            "[Open Km], 10.00 as [Km/Litre], iif(rebated=true,'hours','km') as [Type] from voertuig "
                            "where km > 0 group by catid, maak  &  ' (' & regnr & ')' ,100,200,10.00,rebated");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], QStringList({"1", "TOYOTA (ABC123)", "1000.0", "100", "10.0", "hours"}));
    EXPECT_EQ(rows[1], QStringList({"1", "toyota (XYZ999)", "2000.0", "100", "10.0", "km"}));
}

TEST_F(JetEmitter, TopKeepsTies) {
    raw("INSERT INTO voertuig VALUES (4, 2, 'Isuzu', 'T1', 2000, 0, '', '2024/03/01')");
    EXPECT_EQ(column("select top 1 transid from voertuig order by km desc, catid", 0), QStringList({"2"}));
    EXPECT_EQ(column("select top 1 transid from voertuig order by km desc"), QStringList({"2", "4"}));
    EXPECT_EQ(column("select top 3 transid from voertuig order by catid").size(), 4);
    // Text in the statement that looks like a placeholder stays text.
    EXPECT_EQ(column("select top 1 transid from voertuig where regnr <> '%1%2' order by km desc"),
              QStringList({"2", "4"}));
}

TEST_F(JetEmitter, JoinsNestedAndDerived) {
    raw("CREATE TABLE fuel (id INTEGER PRIMARY KEY, voertuigid INTEGER, litres DOUBLE)");
    raw("INSERT INTO fuel VALUES (1, 1, 10), (2, 1, 5), (3, 3, 7)");
    EXPECT_EQ(
        column("select k.[desc], sum(f.litres) as total from ((fuel f inner join voertuig v on v.transid = "
               "f.voertuigid) inner join voerkat as k on k.transid = v.catid) group by k.[desc] order by k.[desc]",
               1),
        QStringList({"15.0", "7.0"}));
    EXPECT_EQ(scalar("select sum(amt) from (select sum(litres) as [amt] from fuel union all select -sum(km) as [amt] "
                     "from voertuig)"),
              "-2978.0");
    EXPECT_EQ(column("select v.transid from voertuig v left join fuel on fuel.voertuigid = v.transid where fuel.id is "
                     "null"),
              QStringList({"2"}));
}

TEST_F(JetEmitter, CrosstabColumnsInJetOrder) {
    raw("CREATE TABLE detail (tank TEXT COLLATE NOCASE, sortdate TEXT COLLATE NOCASE, kind TEXT COLLATE NOCASE, "
        "litres DOUBLE)");
    raw("INSERT INTO detail VALUES ('B', '2024/01/02', 'litres out', 5), ('A', '2024/01/01', 'open litres', 100), "
        "('A', '2024/01/03', 'Litres Added', 20), ('A', '2024/01/03', 'litres added', 1), ('A', '2024/01/04', NULL, "
        "3)");
    const Rows rows = query("Transform Sum([litres]) select tank, sortdate From detail group by tank, sortdate "
                            "Pivot kind");
    ASSERT_EQ(m_names.size(), 6);
    EXPECT_EQ(m_names[2], "<>");
    EXPECT_EQ(m_names[3].toLower(), "litres added");
    EXPECT_EQ(m_names[4], "litres out");
    EXPECT_EQ(m_names[5], "open litres");
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0], QStringList({"A", "2024/01/01", "<null>", "<null>", "<null>", "100.0"}));
    EXPECT_EQ(rows[1], QStringList({"A", "2024/01/03", "<null>", "21.0", "<null>", "<null>"}));
    EXPECT_EQ(rows[2][2], "3.0");
    EXPECT_EQ(rows[3][0], "B");
}

TEST_F(JetEmitter, CrosstabWithConstantGroup) {
    raw("CREATE TABLE extra (historyid INTEGER, costtype TEXT COLLATE NOCASE, value1 DOUBLE)");
    raw("INSERT INTO extra VALUES (1, 'Parts', 10), (1, 'Oil', 2), (1, 'Parts', 5), (2, 'Tyres', 9)");
    const Rows rows = query("Transform Sum(Value1) select  '' as [-] from extra  where costtype <> 'Labour'  and "
                            "historyid = 1 group by  '' Pivot costtype");
    EXPECT_EQ(m_names, QStringList({"-", "Oil", "Parts"}));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0], QStringList({"", "2.0", "15.0"}));
    EXPECT_TRUE(query("Transform Sum(Value1) select '' as [-] from extra where historyid = 7 group by '' Pivot "
                      "costtype")
                    .empty());
}

TEST_F(JetEmitter, CrosstabFixedHeadingsAndCounts) {
    Rows rows = query("transform sum(km) select catid from voertuig group by catid pivot maak in ('Nissan','Toyota',"
                      "'Ford')");
    EXPECT_EQ(m_names, QStringList({"CatID", "Nissan", "Toyota", "Ford"}));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], QStringList({"1", "<null>", "3000.0", "<null>"}));
    EXPECT_EQ(rows[1], QStringList({"2", "<null>", "<null>", "<null>"})); // Nissan's km is Null
    rows = query("transform count(*) select catid, count(*) as [All] from voertuig group by catid pivot maak");
    ASSERT_EQ(m_names.size(), 4);
    EXPECT_EQ(m_names[2], "Nissan");
    EXPECT_EQ(m_names[3].toLower(), "toyota"); // both spellings make one column
    EXPECT_EQ(rows[0], QStringList({"1", "2", "<null>", "2"}));
    EXPECT_EQ(rows[1], QStringList({"2", "1", "1", "<null>"})); // an empty cell is Null, also for a count
    raw("INSERT INTO voertuig VALUES (5, 1, 'Nissan', 'N1', 0, 0, '', '2024/04/01')");
    rows = query("transform last(regnr) select catid from voertuig group by catid pivot maak");
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0], QStringList({"1", "N1", "XYZ999"}));     // each cell's own last row
    EXPECT_EQ(rows[1], QStringList({"2", "<null>", "<null>"})); // Nissan's own row has no registration
}

TEST_F(JetEmitter, OrderTopAndChangesThroughJoins) {
    // Jet sorts by the table's column where an output column carries the same name.
    EXPECT_EQ(column("select -transid as transid from voerkat order by transid"), QStringList({"-1", "-2"}));
    EXPECT_EQ(column("select top 1 maak & regnr as v from voertuig order by v desc"), QStringList({"toyotaXYZ999"}));
    EXPECT_EQ(column("select top 50 percent transid from voertuig order by transid"), QStringList({"1", "2"}));
    EXPECT_EQ(column("select transid as n from voerkat union all select catid from voertuig order by n desc"),
              QStringList({"2", "2", "1", "1", "1"}));
    query("update voertuig as v inner join voerkat as k on k.transid = v.catid set v.km = 5 where k.[desc] = "
          "'bakkies'");
    EXPECT_EQ(column("select km from voertuig where km = 5"), QStringList({"5.0", "5.0"}));
    query("delete voertuig.* from voertuig inner join voerkat on voerkat.transid = voertuig.catid where "
          "voerkat.[desc] = 'TRUCKS'");
    EXPECT_EQ(column("select transid from voertuig order by transid"), QStringList({"1", "2"}));
    query("insert into voertuig (transid, rebated) values (9, True)");
    EXPECT_EQ(scalar("select rebated from voertuig where transid = 9"), "-1");
}

TEST_F(JetEmitter, DateLiterals) {
    raw("CREATE TABLE book (id INTEGER, datum DATETIME)");
    raw("INSERT INTO book VALUES (1, '2024-11-05 10:00:00'), (2, '2024-11-06 00:00:00')");
    EXPECT_EQ(column("select id from book where datum >= #11-05-2024 00:00:00# and datum <= #11-05-2024 23:59:59#"),
              QStringList({"1"}));
    EXPECT_EQ(scalar("select format(datum,'yyyy/MM/dd') from book where id = 2"), "2024/11/06");
    EXPECT_EQ(TranslateJet("select min(datum), max(b.id) from book as b", *m_catalog).columnTypes,
              QStringList({"datetime", ""}));
    EXPECT_EQ(TranslateJet("select b.datum, id from book as b", *m_catalog).columnTypes, QStringList({"datetime", ""}));
    // Text that reads as a date, stored into or compared with a datetime column, is that date.
    query("insert into book (id, datum) values (3, '2024/11/07 08:30:00')");
    query("insert into book values (4, '11-08-2024')");
    query("update book set datum = '2024/11/09' where id = 2");
    EXPECT_EQ(column("select datum from book where id > 1 order by id"),
              QStringList({"2024-11-09 00:00:00", "2024-11-07 08:30:00", "2024-11-08 00:00:00"}));
    EXPECT_EQ(column("select b.id from book as b where b.datum between '2024/11/07' and '2024/11/08 23:59:59'"),
              QStringList({"3", "4"}));
    EXPECT_EQ(column("select id from book where datum >= '2024/11/09'"), QStringList({"2"}));
    query("UPDATE [book] SET  [book].[datum] = now WHERE id = 4");
    EXPECT_EQ(scalar("select count(*) from book where id = 4 and datum > #2025/01/01# and datum <= now()"), "1");
    // A datetime turned into text reads as VB shows a date.
    EXPECT_EQ(scalar("select 'on ' & datum & ' / ' & cstr(datum) from book where id = 3"),
              "on 2024/11/07 08:30:00 / 2024/11/07 08:30:00");
    // A text date column stays text: "yyyy/MM/dd" compares as text.
    EXPECT_EQ(column("select transid from voertuig where adatum < '2024/01/16' order by transid"),
              QStringList({"1", "3"}));
}

TEST_F(JetEmitter, DataChanges) {
    query("insert into voerkat ([desc]) values ('Cars')");
    EXPECT_EQ(scalar("select count(*) from voerkat where [desc] = 'CARS'"), "1");
    query("update voertuig set km = 0 where km is null");
    EXPECT_EQ(scalar("select km from voertuig where transid = 3"), "0.0");
    query("update voertuig inner join voerkat on voerkat.transid = voertuig.catid set voertuig.boek = voerkat.[desc] "
          "where voerkat.[desc] = 'trucks'");
    EXPECT_EQ(scalar("select boek from voertuig where transid = 3"), "Trucks");
    query("delete * from voerkat where [desc] = 'cars'");
    EXPECT_EQ(scalar("select count(*) from voerkat"), "2");
    raw("CREATE TABLE summary (id INTEGER PRIMARY KEY, [tank name] TEXT, litres DOUBLE)");
    query(" INSERT INTO summary SELECT * FROM( select strconv(maak,3) as [tank name] ,km as [litres] from voertuig "
          "where transid = 1)");
    EXPECT_EQ(query("select id, [tank name], litres from summary").front(), QStringList({"1", "Toyota", "1000.0"}));
    EXPECT_EQ(jetError("insert into summary select * from (select 'x' as [tank name], 1 as [km] from voerkat)"), 3127);
    EXPECT_EQ(jetError("insert into summary ([tank nam]) values ('x')"), 3127);
    EXPECT_EQ(scalar("select count(*) from summary"), "1");
}

TEST_F(JetEmitter, FindFirstCriteria) {
    const QString condition = TranslateJetExpression("maak = 'nissan' and not rebated = false", *m_catalog);
    const Rows rows = runSql("SELECT transid FROM voertuig WHERE " + condition);
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows.front().front(), "3");
}

} // namespace
