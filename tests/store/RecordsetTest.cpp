// Recordsets as the screens use them: table type with Seek, dynasets with FindFirst, AddNew/Edit/Update/
// Delete, counters numbered at AddNew, DAO's RecordCount and the errors of a recordset used wrongly.
#include "StoreFixture.h"

namespace {

class RecordsetTest : public StoreFixture {
protected:
    void SetUp() override {
        StoreFixture::SetUp();
        db->CreateTableDef("Tanks", {{"TransID", "counter", 0},
                                     {"TankNaam", "text", 50},
                                     {"HuidigeVolume", "double", 0},
                                     {"CurRperL", "currency", 0},
                                     {"Datum", "text", 10}});
        db->CreateIndex("Tanks", {"PrimaryKey", {"TransID"}, true, true});
        db->CreateIndex("Tanks", {"TANKDATUM", {"Datum"}, false, false});
        db->CreateIndex("Tanks", {"NAMEDATE", {"TankNaam", "Datum"}, false, false});
        auto rs = db->OpenRecordset("Tanks", RecordsetType::Table);
        addTank(*rs, "Diesel", 1000, "2024/03/01");
        addTank(*rs, "petrol", 250.5, "2024/01/15");
        addTank(*rs, "Paraffin", 0, "2024/02/10");
    }

    static void addTank(Recordset& rs, const QString& name, double litres, const QString& date) {
        rs.AddNew();
        rs.SetField("TankNaam", name);
        rs.SetField("HuidigeVolume", litres);
        rs.SetField("CurRperL", Currency::fromRaw(215000));
        rs.SetField("Datum", date);
        rs.Update();
    }
};

} // namespace

TEST_F(RecordsetTest, CounterIsReadableAtAddNewAndIsTheStoredKey) {
    auto rs = db->OpenRecordset("tanks"); // a table name opens as table type
    rs->AddNew();
    const Value key = rs->Field("TransID");
    EXPECT_EQ(key, Value(std::int64_t{4}));
    rs->SetField("TankNaam", "Spare");
    rs->Update();
    EXPECT_EQ(rs->Field("TransID"), key); // the new row is current after Update
    EXPECT_EQ(rs->Field("TankNaam"), Value("Spare"));
    EXPECT_EQ(raw("SELECT TankNaam FROM Tanks WHERE TransID = 4"), "Spare");
    EXPECT_EQ(rs->RecordCount(), 4);

    // A deleted last row's number is not given again.
    rs->Delete();
    rs->AddNew();
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{5}));
    rs->CancelUpdate();
    EXPECT_EQ(raw("SELECT count(*) FROM Tanks"), "3");
}

TEST_F(RecordsetTest, FailedUpdateStoresNothing) {
    db->CreateIndex("Tanks", {"UNIQUENAME", {"TankNaam"}, false, true});
    auto rs = db->OpenRecordset("Tanks", RecordsetType::Table);
    rs->AddNew();
    rs->SetField("TankNaam", "DIESEL"); // texts compare case-blind, so this repeats "Diesel"
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3022);
    EXPECT_EQ(raw("SELECT count(*) FROM Tanks"), "3");
    rs->CancelUpdate();
    EXPECT_EQ(errorOf([&] { rs->Update(); }), 3020);
}

TEST_F(RecordsetTest, SeekOnANamedIndex) {
    auto rs = db->OpenRecordset("Tanks", RecordsetType::Table);
    EXPECT_EQ(errorOf([&] { rs->Seek("=", {Value(2)}); }), 3019);
    rs->SetIndex("PrimaryKey");
    rs->Seek("=", {Value(2)});
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Field("TankNaam"), Value("petrol"));
    rs->Seek("=", {Value("3")}); // a key converts to the field's type
    EXPECT_EQ(rs->Field("TankNaam"), Value("Paraffin"));
    rs->Seek("=", {Value(9)});
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(errorOf([&] { rs->Field("TankNaam"); }), 3021);

    rs->SetIndex("TANKDATUM");
    rs->Seek(">=", {Value("2024/02/01")});
    EXPECT_EQ(rs->Field("TankNaam"), Value("Paraffin"));
    rs->Seek(">", {Value("2024/02/10")});
    EXPECT_EQ(rs->Field("TankNaam"), Value("Diesel"));
    rs->MoveFirst(); // the index orders the rows
    EXPECT_EQ(rs->Field("Datum"), Value("2024/01/15"));

    rs->SetIndex("namedate");
    rs->Seek("=", {Value("PETROL"), Value("")}); // an empty second key leaves the first to decide
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{2}));
    rs->Seek("=", {Value("petrol"), Value("2024/02/10")});
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(errorOf([&] { rs->SetIndex("nosuch"); }), 3800);
}

TEST_F(RecordsetTest, EditDeleteAndWalking) {
    auto rs = db->OpenRecordset("Tanks", RecordsetType::Table);
    rs->SetIndex("PrimaryKey");
    rs->Seek("=", {Value(1)});
    rs->Edit();
    rs->SetField("HuidigeVolume", Value("975.25"));
    EXPECT_EQ(errorOf([&] { rs->SetField("TransID", 7); }), 3164);
    EXPECT_EQ(errorOf([&] { rs->SetField("TankNaam", QString(51, 'x')); }), 3163);
    rs->Update();
    EXPECT_EQ(raw("SELECT HuidigeVolume FROM Tanks WHERE TransID = 1"), "975.25");
    EXPECT_EQ(rs->Field("HuidigeVolume"), Value(975.25));

    // Deleting while walking: MoveNext goes on with the row after the deleted one.
    rs->MoveFirst();
    rs->Delete();
    EXPECT_EQ(errorOf([&] { rs->Field(0); }), 3167);
    rs->MoveNext();
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{2}));
    int walked = 0;
    for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext())
        ++walked;
    EXPECT_EQ(walked, 2);
    EXPECT_EQ(errorOf([&] { rs->MoveNext(); }), 3021);
    EXPECT_EQ(raw("SELECT count(*) FROM Tanks"), "2");
    EXPECT_EQ(errorOf([&] { rs->SetField("TankNaam", "x"); }), 3020);
}

TEST_F(RecordsetTest, TypesRoundTripThroughFields) {
    db->CreateTableDef("kinds", {{"id", "counter", 0},
                                 {"flag", "bit", 0},
                                 {"when", "datetime", 0},
                                 {"money", "currency", 0},
                                 {"small", "short", 0},
                                 {"whole", "long", 0},
                                 {"note", "memo", 0}});
    auto rs = db->OpenRecordset("kinds", RecordsetType::Table);
    rs->AddNew();
    EXPECT_EQ(rs->Field("flag"), Value(false)); // a Yes/No starts as No, never Null
    EXPECT_TRUE(rs->Field("when").isNull());
    rs->SetField("flag", true);
    rs->SetField("when", QDateTime(QDate(2024, 11, 11), QTime(13, 5, 9)));
    rs->SetField("money", 12.34567);
    rs->SetField("whole", 2.5); // rounds half to even, as CLng
    rs->SetField("note", "0012");
    EXPECT_EQ(errorOf([&] { rs->SetField("small", 40000); }), 6);
    EXPECT_EQ(errorOf([&] { rs->SetField("whole", "many"); }), 3421);
    rs->Update();

    EXPECT_EQ(raw("SELECT flag FROM kinds"), "-1");
    EXPECT_EQ(raw("SELECT \"when\" FROM kinds"), "2024-11-11 13:05:09");
    EXPECT_EQ(raw("SELECT note FROM kinds"), "0012");
    auto back = db->OpenRecordset("kinds", RecordsetType::Table);
    EXPECT_EQ(back->Field("flag"), Value(true));
    EXPECT_EQ(back->Field("when"), Value(QDateTime(QDate(2024, 11, 11), QTime(13, 5, 9))));
    EXPECT_EQ(back->Field("money"), Value(Currency::fromRaw(123457)));
    EXPECT_EQ(back->Field("whole"), Value(std::int64_t{2}));
    EXPECT_EQ(back->Field("note"), Value("0012"));
    EXPECT_TRUE(back->Field("small").isNull());
    EXPECT_EQ(back->Field(1), back->Field("FLAG"));
    EXPECT_EQ(errorOf([&] { back->Field("nosuch"); }), 3265);
    EXPECT_EQ(back->FieldNames().join(","), "id,flag,when,money,small,whole,note");
}

TEST_F(RecordsetTest, RecordCountAsDaoCountsIt) {
    auto dyn = db->OpenRecordset("select * from tanks order by tanknaam", RecordsetType::Dynaset);
    EXPECT_EQ(dyn->RecordCount(), 1); // rows exist; only the first is visited
    dyn->MoveLast();
    EXPECT_EQ(dyn->RecordCount(), 3);
    EXPECT_EQ(dyn->Field("TankNaam"), Value("petrol"));
    auto empty = db->OpenRecordset("select * from tanks where transid = 0", RecordsetType::Snapshot);
    EXPECT_EQ(empty->RecordCount(), 0);
    EXPECT_TRUE(empty->Eof());
    EXPECT_TRUE(empty->Bof());
    EXPECT_EQ(errorOf([&] { empty->MoveFirst(); }), 3021);
    EXPECT_EQ(db->OpenRecordset("Tanks", RecordsetType::Table)->RecordCount(), 3);
}

TEST_F(RecordsetTest, FindFirstAndFindNextWithJetCriteria) {
    auto rs = db->OpenRecordset("select * from Tanks order by TransID", RecordsetType::Dynaset);
    rs->FindFirst("TankNaam = 'PETROL'");
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{2}));
    rs->FindFirst("HuidigeVolume >= 250");
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{1}));
    rs->FindNext("HuidigeVolume >= 250");
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{2}));
    rs->FindNext("HuidigeVolume >= 250");
    EXPECT_TRUE(rs->NoMatch());
    EXPECT_EQ(rs->Field("TransID"), Value(std::int64_t{2})); // a failed find leaves the current row
    rs->FindFirst("TankNaam like 'p*' and Datum > '2024/02/01'");
    EXPECT_EQ(rs->Field("TankNaam"), Value("Paraffin"));
}

TEST_F(RecordsetTest, DynasetWritesBackSnapshotAndGroupsDoNot) {
    auto dyn = db->OpenRecordset("Select * from Tanks where TransID = 2", RecordsetType::Dynaset);
    dyn->Edit();
    dyn->SetField("TankNaam", "Petrol 95");
    dyn->Update();
    EXPECT_EQ(raw("SELECT TankNaam FROM Tanks WHERE TransID = 2"), "Petrol 95");
    dyn->AddNew();
    const Value key = dyn->Field("TransID");
    dyn->SetField("TankNaam", "Added");
    dyn->Update();
    EXPECT_EQ(raw("SELECT TankNaam FROM Tanks WHERE TransID = " + key.toString()), "Added");

    auto snap = db->OpenRecordset("Select * from Tanks", RecordsetType::Snapshot);
    EXPECT_EQ(errorOf([&] { snap->Edit(); }), 3027);
    EXPECT_EQ(errorOf([&] { snap->AddNew(); }), 3027);
    auto grouped = db->OpenRecordset("select TankNaam, count(*) as n from Tanks group by TankNaam");
    EXPECT_EQ(errorOf([&] { grouped->Edit(); }), 3027);
    EXPECT_EQ(errorOf([&] { db->OpenRecordset("nosuch"); }), 3078);
    EXPECT_EQ(errorOf([&] { db->OpenRecordset("select * from nosuch"); }), 3078);
    EXPECT_EQ(errorOf([&] { db->OpenRecordset("delete * from Tanks"); }), 3219);
    EXPECT_EQ(raw("SELECT count(*) FROM Tanks"), "4");
}

TEST_F(RecordsetTest, DynasetOverOneTableOfAJoinWritesThatTable) {
    db->CreateTableDef("FuelPurchase", {{"TransID", "counter", 0}, {"TankID", "long", 0}, {"Liter", "text", 20}});
    db->Execute("insert into FuelPurchase (TankID, Liter) values (1, '100.00')");
    db->Execute("insert into FuelPurchase (TankID, Liter) values (2, '50.00')");
    auto rs = db->OpenRecordset("select p.* from FuelPurchase as p inner join Tanks on p.TankID = Tanks.TransID "
                                "where Tanks.TankNaam = 'petrol'",
                                RecordsetType::Dynaset);
    ASSERT_FALSE(rs->Eof());
    rs->Edit();
    rs->SetField("Liter", "55.00");
    rs->Update();
    EXPECT_EQ(raw("SELECT group_concat(Liter) FROM FuelPurchase ORDER BY TransID"), "100.00,55.00");

    auto both = db->OpenRecordset("select FuelPurchase.Liter, Tanks.TankNaam from FuelPurchase inner join Tanks on "
                                  "FuelPurchase.TankID = Tanks.TransID",
                                  RecordsetType::Dynaset);
    EXPECT_EQ(errorOf([&] { both->Edit(); }), 3027);
}

// A table-type recordset reads the table as it stands when it is used, finds a Seek's row through the index and
// walks on from there in the index's order.
TEST_F(RecordsetTest, TableTypeSeeksTheTableAsItStandsAndWalksOnInIndexOrder) {
    auto rs = db->OpenRecordset("Tanks", RecordsetType::Table);
    rs->SetIndex("TANKDATUM");
    db->Execute("insert into Tanks (TankNaam, Datum) values ('Late', '2024/02/20')");
    rs->Seek(">", {Value("2024/02/10")});
    ASSERT_FALSE(rs->NoMatch());
    EXPECT_EQ(rs->Field("TankNaam"), Value("Late"));
    rs->MoveNext();
    EXPECT_EQ(rs->Field("TankNaam"), Value("Diesel"));
    rs->Seek("<", {Value("2024/02/20")});
    EXPECT_EQ(rs->Field("TankNaam"), Value("Paraffin"));
    rs->MovePrevious();
    EXPECT_EQ(rs->Field("TankNaam"), Value("petrol"));
    EXPECT_EQ(rs->RecordCount(), 4);
}
