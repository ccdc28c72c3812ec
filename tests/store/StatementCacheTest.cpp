// Statements met before are not translated again, and a change of schema is never answered from what was kept:
// the same text after a column is added, after a table is dropped and made anew, after a definition is rolled back;
// texts that differ only in a literal or a date are told apart.
#include "DatabaseImpl.h"
#include "StoreFixture.h"

#include <QStringList>

namespace {

class StatementCacheTest : public StoreFixture {
protected:
    // The recordset's field names, then each row, as "name,name|value,value|...".
    QString describe(const QString& statement) {
        auto rs = db->OpenRecordset(statement, RecordsetType::Snapshot);
        QStringList parts = {rs->FieldNames().join(',')};
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList row;
            for (int f = 0; f < rs->FieldCount(); ++f)
                row << rs->Field(f).toString();
            parts << row.join(',');
        }
        return parts.join('|');
    }
    void run(const QStringList& statements) {
        for (const QString& s : statements)
            db->Execute(s);
    }
    int translations() const { return db->impl().translationsMade; }
};

struct Case {
    const char* name;
    QStringList setup;
    QString statement;
    QString before;
    QStringList change;
    QString after;
};

} // namespace

TEST_F(StatementCacheTest, TheSameTextFollowsTheSchema) {
    const Case cases[] = {
        {"column added",
         {"create table t (k long, v text(10))", "insert into t values (1, 'a')"},
         "select * from t",
         "k,v|1,a",
         {"alter table t add column w text(5)", "update t set w = 'x'"},
         "k,v,w|1,a,x"},
        {"table dropped and made anew with other columns",
         {"create table t (k long, v text(10))", "insert into t values (1, 'a')"},
         "select * from t",
         "k,v|1,a",
         {"drop table t", "create table t (id long, d datetime)", "insert into t values (7, #03/04/2024#)"},
         "id,d|7,2024/03/04"},
        {"a text column made a date column under the same name",
         {"create table t (d text(20))", "insert into t values ('2024-03-04 00:00:00')"},
         "select max(d) as m from t",
         "m|2024-03-04 00:00:00",
         {"drop table t", "create table t (d datetime)", "insert into t values (#03/04/2024#)"},
         "m|2024/03/04"},
        {"column dropped",
         {"create table t (k long, v text(10), w text(10))", "insert into t values (1, 'a', 'b')"},
         "select * from t",
         "k,v,w|1,a,b",
         {"alter table t drop column v"},
         "k,w|1,b"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        for (const QString& table : db->TableNames())
            db->Execute("drop table [" + table + "]");
        run(c.setup);
        EXPECT_EQ(describe(c.statement), c.before);
        const int translated = translations();
        EXPECT_EQ(describe(c.statement), c.before);
        EXPECT_EQ(translations(), translated) << "the same text under the same schema is translated once";
        run(c.change);
        EXPECT_EQ(describe(c.statement), c.after);
    }
}

TEST_F(StatementCacheTest, TextsThatDifferOnlyInALiteralAreToldApart) {
    run({"create table t (k long, v text(10), d datetime)", "insert into t values (1, 'one', #01/05/2024#)",
         "insert into t values (2, 'two', #02/05/2024#)", "insert into t values (12, 'twelve', #03/05/2024#)"});
    const struct {
        QString statement;
        QString rows;
    } cases[] = {
        {"select v from t where k = 1", "v|one"},
        {"select v from t where k = 12", "v|twelve"},
        {"select v from t where v = 'one'", "v|one"},
        {"select v from t where v = 'ONE '", "v"},
        {"select count(*) as n from t where d >= #02/05/2024#", "n|2"},
        {"select count(*) as n from t where d >= #02/06/2024#", "n|1"},
        {"select count(*) as n from t where d >= #2/5/2024#", "n|2"},
    };
    for (int round = 0; round < 2; ++round) // the second round is answered from the kept translations
        for (const auto& c : cases)
            EXPECT_EQ(describe(c.statement), c.rows) << c.statement.toStdString() << " round " << round;
}

TEST_F(StatementCacheTest, ADefinitionRolledBackIsForgotten) {
    run({"create table t (k long)", "insert into t values (5)"});
    // A text date written into a date column is stored as that date; into a text column, as it stands. Which value
    // goes where is decided when the insert is translated.
    const QString insert = "insert into u values ('2024/01/02', '2024/01/03')";
    db->BeginTrans();
    db->Execute("create table u (a text(10), b datetime)");
    db->Execute(insert);
    EXPECT_EQ(raw("select b from u"), "2024-01-03 00:00:00");
    db->Rollback();
    // The rollback brings the schema's version number back; a definition by another connection takes the rolled-back
    // number again, with the columns the other way round.
    auto other = Database::Open(path());
    other->Execute("create table u (b datetime, a text(10))");
    other.reset();
    db->Execute(insert);
    EXPECT_EQ(raw("select b from u"), "2024-01-02 00:00:00");
    EXPECT_EQ(raw("select a from u"), "2024/01/03");
}

TEST_F(StatementCacheTest, ChangesOutsideTheLayerAreSeen) {
    run({"create table t (k long)", "insert into t values (5)"});
    EXPECT_EQ(describe("select * from t"), "k|5");
    // A second connection to the same file changes the table.
    auto other = Database::Open(path());
    other->Execute("alter table t add column w text(5)");
    EXPECT_EQ(describe("select * from t"), "k,w|5,");
}
