// The table-definition interface and schema reading: types kept as declared, Jet's failures, named indexes.
#include "StoreFixture.h"

namespace {

class SchemaDef : public StoreFixture {
protected:
    void makeVehicles() {
        db->CreateTableDef("voertuig", {{"TransID", "counter", 0},
                                        {"CatID", "long", 0},
                                        {"Maak", "text", 50},
                                        {"Km", "double", 0},
                                        {"Hours", "bit", 0}});
    }
};

QStringList names(const std::vector<FieldDef>& fields) {
    QStringList out;
    for (const auto& f : fields)
        out << f.name;
    return out;
}

} // namespace

TEST_F(SchemaDef, EveryTypeReadsBackInItsJetWordAndOrder) {
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

TEST_F(SchemaDef, TableNamesAreCaseBlindAndLeaveOutSqlitesOwn) {
    makeVehicles();
    db->CreateTableDef("Tanks", {{"TransID", "counter", 0}});
    EXPECT_EQ(db->TableNames(), (QStringList{"voertuig", "Tanks"})); // sqlite_sequence exists, unseen
    EXPECT_EQ(names(db->Fields("VOERTUIG")).join(","), "TransID,CatID,Maak,Km,Hours");
    EXPECT_EQ(SchemaDef::errorOf([&] { db->Fields("nosuch"); }), 3265);
}

TEST_F(SchemaDef, DefinitionsFailAsJetFails) {
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

TEST_F(SchemaDef, IndexNamesBelongToTheirTable) {
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

TEST_F(SchemaDef, YesNoFieldAddedLaterIsNoOnOldRows) {
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

TEST_F(SchemaDef, RefreshSeesChangesMadeOnTheConnection) {
    makeVehicles();
    EXPECT_EQ(sqlite3_exec(db->handle(), "CREATE TABLE later (x TEXT(5))", nullptr, nullptr, nullptr), SQLITE_OK);
    db->RefreshTableDefs();
    EXPECT_TRUE(db->TableNames().contains("later"));
    EXPECT_EQ(db->Fields("later")[0].type, "text");
    EXPECT_EQ(db->Fields("later")[0].size, 5);
}

TEST_F(SchemaDef, RepairCannotRunInsideATransaction) {
    makeVehicles();
    QString reason = "untouched";
    EXPECT_TRUE(db->Repair(&reason));
    EXPECT_EQ(reason, "untouched");
    db->BeginTrans();
    EXPECT_FALSE(db->Repair(&reason)); // VACUUM cannot run inside a transaction
    db->Rollback();
    EXPECT_EQ(errorOf([&] { db->CommitTrans(); }), 3034);
}
