// Statements run through Execute and the table-definition interface: definitions as the upgrade writes them,
// types kept as declared, select into, alter column, counters, named indexes, and Jet's error numbers.
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

    void makeVehicles() {
        db->CreateTableDef("voertuig", {{"TransID", "counter", 0},
                                        {"CatID", "long", 0},
                                        {"Maak", "text", 50},
                                        {"Km", "double", 0},
                                        {"Hours", "bit", 0}});
    }

    void makeRooms() {
        db->CreateTableDef("kamer", {{"KID", "counter", 0}, {"Desc", "text", 50}});
        db->Execute("insert into kamer ([desc]) values ('Office')");
        db->Execute("insert into kamer ([desc]) values ('Store')");
    }
};

QStringList names(const std::vector<FieldDef>& fields) {
    QStringList out;
    for (const auto& f : fields)
        out << f.name;
    return out;
}

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

TEST_F(DatabaseTest, EveryTypeReadsBackInItsJetWordAndOrder) {
    const QStringList declared = {"short", "integer",  "long", "single", "float", "double", "currency",
                                  "bit",   "datetime", "text", "text",   "memo",  "counter"};
    std::vector<FieldDef> defs;
    for (qsizetype i = 0; i < declared.size(); ++i)
        defs.push_back({QString(QChar(static_cast<char16_t>(u'a' + i))), declared[i], i == 9 ? 25 : 0});
    db->CreateTableDef("Everything", defs);
    const auto fields = db->Fields("everything");
    ASSERT_EQ(fields.size(), 13u);
    const QStringList expected = {"short", "long",     "long", "single", "double", "double", "currency",
                                  "bit",   "datetime", "text", "text",   "memo",   "counter"};
    for (size_t i = 0; i < fields.size(); ++i)
        EXPECT_EQ(fields[i].type, expected[static_cast<qsizetype>(i)]) << fields[i].name.toStdString();
    EXPECT_EQ(names(fields).join(","), "a,b,c,d,e,f,g,h,i,j,k,l,m");
    EXPECT_EQ(fields[9].size, 25);
    EXPECT_EQ(fields[10].size, 255);
}

TEST_F(DatabaseTest, TableNamesAreCaseBlindAndLeaveOutSqlitesOwn) {
    makeVehicles();
    db->CreateTableDef("Tanks", {{"TransID", "counter", 0}});
    EXPECT_EQ(db->TableNames(), (QStringList{"voertuig", "Tanks"})); // sqlite_sequence exists, unseen
    EXPECT_EQ(names(db->Fields("VOERTUIG")).join(","), "TransID,CatID,Maak,Km,Hours");
    EXPECT_EQ(errorOf([&] { db->Fields("nosuch"); }), 3265);
}

TEST_F(DatabaseTest, DefinitionsFailAsJetFails) {
    makeVehicles();
    EXPECT_EQ(errorOf([&] { db->CreateTableDef("Voertuig", {{"x", "long", 0}}); }), 3010);
    EXPECT_EQ(errorOf([&] { db->CreateTableDef("dup", {{"x", "long", 0}, {"X", "text", 5}}); }), 3191);
    EXPECT_FALSE(db->TableNames().contains("dup"));
    EXPECT_EQ(errorOf([&] { db->CreateField("voertuig", {"maak", "text", 10}); }), 3380);
    EXPECT_EQ(errorOf([&] { db->CreateTableDef("badtype", {{"x", "gizmo", 0}}); }), 3259);

    db->CreateIndex("voertuig", {"VID", {"CatID"}, false, false});
    EXPECT_EQ(errorOf([&] { db->CreateIndex("voertuig", {"vid", {"Maak"}, false, false}); }), 3284);
    EXPECT_EQ(errorOf([&] { db->CreateIndex("voertuig", {"FUELDEX2", {"VID", "Date"}, false, false}); }), 3265);
    EXPECT_EQ(db->Indexes("voertuig").size(), 1u);
}

TEST_F(DatabaseTest, IndexNamesBelongToTheirTable) {
    makeVehicles();
    db->CreateTableDef("voerkat", {{"TransID", "counter", 0}, {"Desc", "text", 50}});
    db->CreateIndex("voertuig", {"PrimaryKey", {"TransID"}, true, true});
    db->CreateIndex("voerkat", {"PrimaryKey", {"TransID"}, true, true});
    db->CreateIndex("voertuig", {"VOERTUIGEDIT", {"TransID", "Maak"}, false, false});

    const auto indexes = db->Indexes("voertuig");
    ASSERT_EQ(indexes.size(), 2u);
    EXPECT_EQ(indexes[0].name, "PrimaryKey");
    EXPECT_TRUE(indexes[0].primary);
    EXPECT_TRUE(indexes[0].unique);
    EXPECT_EQ(indexes[1].name, "VOERTUIGEDIT");
    EXPECT_EQ(indexes[1].fields, (QStringList{"TransID", "Maak"}));
    EXPECT_FALSE(indexes[1].unique);
    EXPECT_EQ(db->Indexes("voerkat").size(), 1u);
    // A real SQLite index stands behind each name.
    EXPECT_EQ(raw("SELECT count(*) FROM sqlite_schema WHERE type = 'index' AND tbl_name = 'voertuig'"), "2");
}

TEST_F(DatabaseTest, YesNoFieldAddedLaterIsNoOnOldRows) {
    makeVehicles();
    {
        auto rs = db->OpenRecordset("voertuig", RecordsetType::Table);
        for (const char* make : {"Toyota", "Isuzu"}) {
            rs->AddNew();
            rs->SetField("Maak", make);
            rs->Update();
        }
    }
    db->CreateField("voertuig", {"rebated", "bit", 0});
    db->CreateField("voertuig", {"FanbeltRef", "text", 50});
    auto rs = db->OpenRecordset("voertuig", RecordsetType::Table);
    ASSERT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(rs->Field("rebated"), Value(false));
    EXPECT_TRUE(rs->Field("FanbeltRef").isNull());
    EXPECT_EQ(raw("SELECT count(*) FROM voertuig WHERE rebated IS NULL"), "0");
    // A Null written to a Yes/No field stores No, as Jet does.
    rs->Edit();
    rs->SetField("rebated", Value::null());
    rs->Update();
    EXPECT_EQ(raw("SELECT rebated FROM voertuig WHERE TransID = 1"), "0");
}

TEST_F(DatabaseTest, RefreshSeesChangesMadeOnTheConnection) {
    makeVehicles();
    EXPECT_EQ(sqlite3_exec(db->handle(), "CREATE TABLE later (x TEXT(5))", nullptr, nullptr, nullptr), SQLITE_OK);
    db->RefreshTableDefs();
    EXPECT_TRUE(db->TableNames().contains("later"));
    EXPECT_EQ(db->Fields("later")[0].type, "text");
    EXPECT_EQ(db->Fields("later")[0].size, 5);
}

TEST_F(DatabaseTest, RepairCannotRunInsideATransaction) {
    makeVehicles();
    QString reason = "untouched";
    EXPECT_TRUE(db->Repair(&reason));
    EXPECT_EQ(reason, "untouched");
    db->BeginTrans();
    EXPECT_FALSE(db->Repair(&reason)); // VACUUM cannot run inside a transaction
    db->Rollback();
    EXPECT_EQ(errorOf([&] { db->CommitTrans(); }), 3034);
}
