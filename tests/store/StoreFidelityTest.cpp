// What statements store in typed columns, exact currency in statements, the type repair that finds nothing to
// repair, and the start-up that skips only what it knows would change nothing.
#include "Database.h"
#include "OlderSchema.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreFacts.h"
#include "StoreFixture.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QFile>
#include <gtest/gtest.h>

namespace {

class TypedWrites : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        db->Execute("create table t (id counter, n double, w long, c currency, d datetime, s text(20))");
        db->Execute("insert into t (s) values ('row')");
    }
    Value field(const QString& column) {
        auto rs = db->OpenRecordset("select " + column + " from t", RecordsetType::Snapshot);
        return rs->Field(0);
    }
};

// A text written by a statement into a number or date column stores what it reads as, or Null; never the text.
TEST_F(TypedWrites, TextsIntoTypedColumnsStoreTheirValueOrNull) {
    struct Case {
        const char* assignment;
        const char* column;
        const char* storedClass; // SQLite's class of what stands in the column
        const char* shown;       // the value as text
    };
    const Case cases[] = {
        {"n = '123.50'", "n", "real", "123.5"},
        {"n = '1 234.50'", "n", "real", "1234.5"},
        {"n = 'abc'", "n", "null", ""},
        {"n = s", "n", "null", ""}, // the text 'row' of another column
        {"w = '12'", "w", "integer", "12"},
        {"w = '2.5'", "w", "integer", "2"},
        {"w = 'x12'", "w", "null", ""},
        {"c = '0.12345'", "c", "real", "0.1234"},
        {"d = '2024/01/05'", "d", "text", "2024/01/05"},
        {"d = 'not a date'", "d", "null", ""},
        {"s = 12", "s", "text", "12"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.assignment);
        db->Execute(QString("update t set ") + c.assignment);
        EXPECT_EQ(raw(QString("select typeof(%1) from t").arg(c.column)), c.storedClass);
        const Value v = field(c.column);
        if (QString(c.column) == "d" && !v.isNull())
            EXPECT_EQ(v.toDate().toString("yyyy/MM/dd"), c.shown);
        else
            EXPECT_EQ(v.toString(), c.shown);
    }
}

TEST_F(TypedWrites, RowsInsertedFromASelectConvertAsAssignmentsDo) {
    db->Execute("create table src (txt text(20), amount text(20))");
    db->Execute("insert into src values ('12.5', '2024/01/05')");
    db->Execute("insert into src values ('junk', 'no date')");
    db->Execute("delete * from t");
    db->Execute("insert into t (n, w, d, s) select txt, txt, amount, txt from src order by txt");
    EXPECT_EQ(raw("select group_concat(coalesce(typeof(n), '') || ':' || coalesce(n, ''), ' ') from t"),
              "real:12.5 null:");
    EXPECT_EQ(raw("select group_concat(coalesce(w, 'null'), ' ') from t"), "12 null");
    EXPECT_EQ(raw("select count(*) from t where d is null"), "1");
    EXPECT_EQ(raw("select group_concat(s, ' ') from t"), "12.5 junk");
}

TEST_F(TypedWrites, CurrencySumsAreExactAndReadBackAsCurrency) {
    db->Execute("delete * from t");
    for (const char* amount : {"0.1", "0.2", "-0.3"})
        db->Execute(QString("insert into t (c, w) values (%1, 1)").arg(amount));
    auto sum = db->OpenRecordset("select sum(c) as total, sum(ccur(c * 10)) as tenfold, min(c) as low from t",
                                 RecordsetType::Snapshot);
    EXPECT_EQ(sum->Field("total").type(), VType::Currency);
    EXPECT_EQ(sum->Field("total").toCurrency().raw(), 0);
    EXPECT_EQ(sum->Field("tenfold").toCurrency().raw(), 0);
    EXPECT_TRUE(db->OpenRecordset("select sum(c) from t where w = 9", RecordsetType::Snapshot)->Field(0).isNull());
    EXPECT_EQ(sum->Field("low").toCurrency().raw(), -3000);
    // A group whose currency nets to nothing is left out, as the equipment ledger's balance asks.
    auto having = db->OpenRecordset("select w, sum(c) from t group by w having sum(c) <> 0", RecordsetType::Snapshot);
    EXPECT_TRUE(having->Eof());
    db->Execute("insert into t (c, w) values (0.0001, 2)");
    auto two = db->OpenRecordset("select w, sum(c) from t group by w having sum(c) <> 0", RecordsetType::Snapshot);
    ASSERT_FALSE(two->Eof());
    EXPECT_EQ(two->Field(0).toLong(), 2);
    EXPECT_EQ(two->Field(1).toCurrency().raw(), 1);
}

// The start-up's type repairs find the fuel columns already double: the table stays as it is.
class TypeRepair : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        CreateOlderSchema(*db);
        RunSchemaSteps(*db);
        for (int i = 0; i < 5; ++i)
            db->Execute(QString("insert into vecfuel (voertuigid, kmread, litres, datum) values (%1, %2, 40, "
                                "'2024/01/0%1')")
                            .arg(i + 1)
                            .arg(1000 + i));
        db->Execute("delete * from vecfuel where voertuigid = 5"); // the counter has passed 4
    }
    QString schema() { return raw("select group_concat(sql, ';') from sqlite_schema where tbl_name = 'VecFuel'"); }
};

TEST_F(TypeRepair, AnAlterToTheTypeAColumnHasKeepsRowsIndexesAndCounter) {
    const QString before = schema();
    const QString rowids = raw("select group_concat(rowid) from vecfuel");
    db->Execute("alter table vecfuel alter column  [kmread]  double");
    EXPECT_EQ(schema(), before);
    EXPECT_EQ(raw("select group_concat(rowid) from vecfuel"), rowids);
    EXPECT_EQ(raw("select seq from sqlite_sequence where name = 'VecFuel'"), "5");
    db->Execute("insert into vecfuel (voertuigid) values (9)");
    EXPECT_EQ(raw("select max(transid) from vecfuel"), "6");
}

TEST_F(TypeRepair, ATextLeftInANumberColumnIsConvertedByTheRepair) {
    // Written underneath the store layer, as an older program could have left it.
    sqlite3_exec(db->handle(), "UPDATE VecFuel SET KmRead = 'abc' WHERE VoertuigID = 1", nullptr, nullptr, nullptr);
    sqlite3_exec(db->handle(), "UPDATE VecFuel SET Litres = '  12' WHERE VoertuigID = 2", nullptr, nullptr, nullptr);
    ASSERT_EQ(raw("select typeof(kmread) from vecfuel where voertuigid = 1"), "text");
    db->Execute("alter table vecfuel alter column  [kmread]  double");
    EXPECT_EQ(raw("select typeof(kmread) from vecfuel where voertuigid = 1"), "null");
    EXPECT_EQ(raw("select kmread from vecfuel where voertuigid = 3"), "1002.0");
    db->Execute("alter table vecfuel alter column  [litres]  double");
    EXPECT_EQ(raw("select litres from vecfuel where voertuigid = 2"), "12.0");
    EXPECT_EQ(raw("select count(*) from sqlite_schema where name = 'VecFuel__FUELDEX2'"), "1");
}

// The steps are skipped only on the very file on which they last changed nothing.
TEST(StartupFacts, StepsSkipOnlyAnUnchangedFile) {
    ScriptedMessageService messages;
    TempHome home;
    Session s;
    s.home = home.path();
    OpenSessionStore(s);
    RunStartupSteps(*s.db); // a new store settles on its second pass
    RunStartupSteps(*s.db);
    EXPECT_TRUE(ReadStoreFacts(home.storeFile()).stepsChangeNothing);

    // A reading of 0 is rewritten to 1 at every start: a changed file runs the steps again.
    s.db->Execute("insert into vecfuel (voertuigid, kmread) values (1, 0)");
    EXPECT_FALSE(ReadStoreFacts(home.storeFile()).stepsChangeNothing);
    RunStartupSteps(*s.db);
    auto rs = s.db->OpenRecordset("select kmread from vecfuel", RecordsetType::Snapshot);
    EXPECT_EQ(rs->Field(0).toDouble(), 1.0);

    // Facts of another file (or a damaged facts file) count for nothing.
    QFile facts(StoreFactsFile(home.storeFile()));
    ASSERT_TRUE(facts.open(QIODevice::WriteOnly | QIODevice::Truncate));
    facts.write("fingerprint 1 2 3 4\nsteps change nothing\nintact\n");
    facts.close();
    EXPECT_FALSE(ReadStoreFacts(home.storeFile()).intact);
    EXPECT_FALSE(ReadStoreFacts(home.storeFile()).stepsChangeNothing);
}

} // namespace
