// Statements run through Execute: definitions as the upgrade writes them, select into, alter column,
// counters, and Jet's error numbers.
#include "StoreFixture.h"

#include <QFile>

namespace {

class DatabaseTest : public StoreFixture {
protected:
    QString fieldType(const QString& table, const QString& field) {
        for (const auto& f : db->Fields(table))
            if (f.name.compare(field, Qt::CaseInsensitive) == 0)
                return f.type;
        return "<missing>";
    }

    void makeRooms() {
        db->CreateTableDef("kamer", {{"KID", "counter", 0}, {"Desc", "text", 50}});
        db->Execute("insert into kamer ([desc]) values ('Office')");
        db->Execute("insert into kamer ([desc]) values ('Store')");
    }
};

} // namespace

TEST_F(DatabaseTest, CreateTableWithTheUpgradesTypes) {
    db->Execute("create table EquipmentStockTake (id AUTOINCREMENT PRIMARY KEY NOT NULL, trdate datetime, "
                "equipid short, trReason text(250), trPerson text(50), trQty currency)");
    EXPECT_EQ(fieldType("equipmentstocktake", "id"), "counter");
    EXPECT_EQ(fieldType("equipmentstocktake", "trQty"), "currency");
    EXPECT_EQ(errorOf([&] { db->Execute("create table equipmentstocktake (x long)"); }), 3010);
}

TEST_F(DatabaseTest, DuplicateKeyMissingTableAndDivisionByZero) {
    db->Execute("create table serviceReference (id AUTOINCREMENT PRIMARY KEY NOT NULL, reference long, "
                "isopened bit, isassigned bit, assignDate datetime)");
    db->Execute("insert into serviceReference (reference) values (1)");
    EXPECT_EQ(errorOf([&] { db->Execute("insert into serviceReference (id, reference) values (1, 2)"); }), 3022);
    EXPECT_EQ(raw("SELECT count(*) FROM serviceReference"), "1");
    EXPECT_EQ(raw("SELECT isassigned FROM serviceReference"), "0"); // a Yes/No is No unless set
    EXPECT_EQ(errorOf([&] { db->Execute("update nosuch set x = 1"); }), 3078);
    EXPECT_EQ(errorOf([&] { db->Execute("update serviceReference set reference = reference / 0"); }), 11);
    EXPECT_EQ(raw("SELECT reference FROM serviceReference"), "1");
    EXPECT_EQ(errorOf([&] { db->Execute("select * from serviceReference"); }), 3065);
    EXPECT_EQ(errorOf([&] { db->Execute("drop table nosuch"); }), 3376);
    try {
        db->OpenRecordset("select * from missingtable");
        ADD_FAILURE() << "a missing table opened";
    } catch (const DbError& e) {
        EXPECT_EQ(e.description(), "Cannot find the input table or query 'missingtable'.");
    }
}

TEST_F(DatabaseTest, RecordsAffectedCountsChangedRows) {
    makeRooms();
    db->Execute("update kamer set [desc] = [desc] & ' 1'");
    EXPECT_EQ(db->RecordsAffected(), 2);
    db->Execute("delete * from kamer where kid = 7");
    EXPECT_EQ(db->RecordsAffected(), 0);
    db->Execute("delete * from kamer where [desc] = 'OFFICE 1'"); // texts compare case-blind
    EXPECT_EQ(db->RecordsAffected(), 1);
    EXPECT_EQ(errorOf([&] { db->Execute("update kamer set nosuch = 1"); }), 3061);
}

TEST_F(DatabaseTest, SelectIntoMakesTheKeyACounterKeepingItsNumbers) {
    makeRooms();
    db->Execute("delete * from kamer where kid = 1");
    // The upgrade's way to make an empty list table with the types of the room table.
    db->Execute("select id,description into drivers from  (select  [KID] as id ,[Desc] as description  from kamer "
                "where kid = 0)");
    EXPECT_EQ(fieldType("drivers", "id"), "counter");
    EXPECT_EQ(fieldType("drivers", "description"), "text");
    db->Execute("alter table drivers add transid long");
    db->Execute("alter table drivers add issys bit");
    db->Execute("insert into drivers (description) values ('Jan')");
    EXPECT_EQ(raw("SELECT id || ':' || description || ':' || issys FROM drivers"), "1:Jan:0");

    // Copied rows keep their numbers, and new rows go on from the highest.
    db->Execute("select * into rooms2 from kamer");
    EXPECT_EQ(db->RecordsAffected(), 1);
    EXPECT_EQ(fieldType("rooms2", "KID"), "long"); // not named like a key: a plain number
    db->Execute("select kid as TransID, [desc] into rooms3 from kamer");
    db->Execute("insert into rooms3 ([desc]) values ('Garage')");
    EXPECT_EQ(raw("SELECT group_concat(TransID) FROM rooms3"), "2,3");
    EXPECT_EQ(errorOf([&] { db->Execute("select * into rooms3 from kamer"); }), 3010);
    // Repeated numbers under a key's name stay a plain number column.
    db->Execute("select 1 as id, [desc] into tmpsummary from rooms3");
    EXPECT_EQ(fieldType("tmpsummary", "id"), "long");
    EXPECT_EQ(raw("SELECT count(*) FROM tmpsummary WHERE id = 1"), "2");
}

TEST_F(DatabaseTest, AlterColumnConvertsAndKeepsRowsAndIndexes) {
    db->CreateTableDef("toerinv",
                       {{"IID", "counter", 0}, {"Desc", "text", 50}, {"Hoeveel", "long", 0}, {"Km", "text", 20}});
    db->CreateIndex("toerinv", {"PrimaryKey", {"IID"}, true, true});
    db->CreateIndex("toerinv", {"BYDESC", {"Desc"}, false, false});
    db->Execute("insert into toerinv ([desc], hoeveel, km) values ('Spade', 3, '1250.5')");
    db->Execute("insert into toerinv ([desc], hoeveel, km) values ('Rake', 4, '')");
    db->Execute("delete * from toerinv where iid = 2");
    db->Execute("insert into toerinv ([desc], hoeveel, km) values ('Hoe', 1, 'n/a')");

    db->Execute("alter table toerinv alter hoeveel double");
    db->Execute("alter table toerinv alter column  [km]  double");
    EXPECT_EQ(fieldType("toerinv", "hoeveel"), "double");
    EXPECT_EQ(fieldType("toerinv", "km"), "double");
    EXPECT_EQ(fieldType("toerinv", "IID"), "counter");
    EXPECT_EQ(raw("SELECT group_concat(IID || '=' || ifnull(Km, 'null')) FROM toerinv"), "1=1250.5,3=null");
    EXPECT_EQ(db->Indexes("toerinv").size(), 2u);
    db->Execute("update toerinv set hoeveel = hoeveel + 0.5 where iid = 1");
    EXPECT_EQ(raw("SELECT Hoeveel FROM toerinv WHERE IID = 1"), "3.5");
    db->Execute("insert into toerinv ([desc]) values ('Fork')");
    EXPECT_EQ(raw("SELECT max(IID) FROM toerinv"), "4"); // the counter goes on past the deleted 2 and 3
    EXPECT_EQ(errorOf([&] { db->Execute("alter table toerinv alter column nosuch double"); }), 3265);
}

TEST_F(DatabaseTest, AddingACounterNumbersTheRowsPresent) {
    db->Execute("create table pdp (pdpdate text(10), surname text(25), firstname text(25), id text(25))");
    db->Execute("insert into pdp (surname) values ('Botha')");
    db->Execute("insert into pdp (surname) values ('Mokoena')");
    db->Execute("alter table pdp add column pdpid autoincrement");
    EXPECT_EQ(fieldType("pdp", "pdpid"), "counter");
    EXPECT_EQ(raw("SELECT group_concat(surname || pdpid) FROM pdp"), "Botha1,Mokoena2");
    db->Execute("insert into pdp (surname) values ('Naidoo')");
    EXPECT_EQ(raw("SELECT pdpid FROM pdp WHERE surname = 'Naidoo'"), "3");
    db->Execute("alter table pdp add column isassigned bit"); // a Yes/No added later is No on every row
    EXPECT_EQ(raw("SELECT group_concat(isassigned) FROM pdp"), "0,0,0");
    EXPECT_EQ(errorOf([&] { db->Execute("alter table pdp add surname text(10)"); }), 3380);
}

TEST_F(DatabaseTest, DropColumnRefusesIndexedFields) {
    db->CreateTableDef("voertuig", {{"TransID", "counter", 0}, {"rebaterate", "double", 0}, {"Maak", "text", 50}});
    db->CreateIndex("voertuig", {"BYMAKE", {"Maak"}, false, false});
    db->Execute("insert into voertuig (maak, rebaterate) values ('Isuzu', 3)");
    db->Execute("alter table voertuig drop column rebaterate");
    EXPECT_EQ(fieldType("voertuig", "rebaterate"), "<missing>");
    EXPECT_EQ(raw("SELECT Maak FROM voertuig WHERE TransID = 1"), "Isuzu");
    EXPECT_EQ(errorOf([&] { db->Execute("alter table voertuig drop maak"); }), 3280);
    EXPECT_EQ(errorOf([&] { db->Execute("alter table voertuig drop column nosuch"); }), 3265);
}

TEST_F(DatabaseTest, TransactionsRollBackAndNest) {
    makeRooms();
    db->BeginTrans();
    db->Execute("insert into kamer ([desc]) values ('Kitchen')");
    db->BeginTrans();
    db->Execute("delete * from kamer");
    db->Rollback();
    EXPECT_EQ(raw("SELECT count(*) FROM kamer"), "3");
    db->CommitTrans();
    EXPECT_EQ(raw("SELECT count(*) FROM kamer"), "3");
    db->BeginTrans();
    db->Execute("delete * from kamer");
    db->Rollback();
    EXPECT_EQ(raw("SELECT count(*) FROM kamer"), "3");
}

TEST_F(DatabaseTest, ReopeningKeepsEverything) {
    makeRooms();
    db.reset();
    db = Database::Open(path(), false);
    EXPECT_EQ(db->TableNames(), QStringList{"kamer"});
    EXPECT_EQ(raw("SELECT count(*) FROM kamer"), "2");
    EXPECT_EQ(errorOf([&] { Database::Open(path() + ".missing", false); }), 3024);
    QFile junk(path() + ".junk");
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    EXPECT_EQ(errorOf([&] { Database::Open(path() + ".junk", false); }), 3343);
}
