// The older-shaped new store and the start-up upgrade that brings any store to the present schema.
#include "Database.h"
#include "OlderSchema.h"
#include "QueryHelpers.h"
#include "SchemaUpgrade.h"
#include "StoreHome.h"
#include "Vb.h"

#include <QDate>
#include <QFile>
#include <QFileInfo>
#include <QMap>
#include <gtest/gtest.h>
#include <utility>

namespace {

// The present schema: every table with its columns in order, and the named indexes.
const std::pair<const char*, const char*> kPresentColumns[] = {
    {"owner", "OID,Name,Tel,Fax,Email,Add1,Add2,Add3,Add4,vat,Reg,Person"},
    {"voerkat", "TransID,Desc,Hours"},
    {"voertuig",
     "TransID,CatID,Maak,Model,RegNr,ADatum,AWaarde,depwaarde,VWaarde,Boek,Km,Hours,Foto,Enjin,rebated,rebatepct,"
     "rebaterate,licenceduedate,serviceduedate,FuelTankSize,BatterySize,TyreSize,OilFilterRef,FanbeltRef,deptid"},
    {"VecFuel", "TransID,VoertuigID,TankID,FID,Datum,KmRead,PreviousKmRead,Litres,RperL,pumpreadprev,pumpreadcurr,"
                "driverid,activityid,deptid"},
    {"Tanks", "TransID,TankNaam,HuidigeVolume,CurRperL,Datum,Koste,Liters,Capacity,PumpReading"},
    {"FuelPurchase", "TransID,TankID,Datum,Liter,Cost,CostPerLiter,suppid,invoiceRef"},
    {"TankStock", "transid,TankID,Tank,Datum,LitersInTank,LiterLesing,Verlore,Rvalue,Rede"},
    {"TankRekords", "FID,TankID,TankNaam,Datum,LitersGeneem,LiterNaGeneem,LiterSaldo,RandPerLiter"},
    {"VecChoice", "VoerKeuse"},
    {"vdiens_unallocated", "TransID,Date,supplierid,costcatid,Cost,Km,voertuigId,reference,Kyk"},
    {"vdiens_allocated", "TransID,vechileid,supplierid,CostCategoryID,Date,Cost,Kilometers,note,reference"},
    {"vdiens_extra", "transid,vdiensid,historyid,costType,reference1,reference2,value1,value2"},
    {"vdiens_costtype", "costTypeId,description,sortorder"},
    {"serviceReference", "id,reference,isopened,isassigned,assignDate"},
    {"VecSupplier", "SUP_No,SUP_Desc"},
    {"CostCat", "CC_IID,CC_CostCatagory"},
    {"FuelSupplier", "suppid,Name,det1,det2,pcode,voice,issystem"},
    {"drivers", "id,description,transid,issys"},
    {"activities", "id,description,transid,issys,rebated"},
    {"departments", "id,description,transid,issys"},
    {"rebate", "rebaterate,rebateSars"},
    {"pdp", "pdpdate,surname,firstname,id,pdpid"},
    {"toerkat", "TID,Desc"},
    {"toerinv", "IID,TID,Desc,Hoeveel,kitem,ADatum,Make,Model,AWaarde,depwaarde,VWaarde,verwys,Verskaffer"},
    {"EquipmentAction", "id,trDesc"},
    {"EquipmentTrans",
     "id,sortdate,trdate,equipid,actionId,trDesc,trStockQty,trQty,trAmount,trUnitCost,trClosed,bookoutid,stocktakeid"},
    {"EquipmentStockTake", "id,trdate,equipid,trReason,trPerson,trQty"},
    {"voorkat", "VID,Desc"},
    {"voorinv", "IID,VID,KID,Desc,Hoeveel,Datum,kwaarde,VWaarde,verwys"},
    {"kamer", "KID,Desc"},
    {"Version", "VMajor,VMinor,VRevision"},
    {"tblTeDate", "TeDateID,TeDate"},
};
const std::pair<const char*, const char*> kNamedIndexes[] = {
    {"voerkat", "PrimaryKey"},
    {"voertuig", "PrimaryKey,VID,VOERTUIGEDIT,VOERTUIGDEX1"},
    {"VecFuel", "FUELDEX2"},
    {"Tanks", "PrimaryKey,TANKDATUM"},
    {"FuelPurchase", "TransID,TankID"},
    {"VecSupplier", "SUPPLIERDEX"},
    {"CostCat", "COTSCATDEX2"},
    {"toerkat", "PrimaryKey"},
    {"toerinv", "PrimaryKey"},
    {"voorkat", "PrimaryKey"},
    {"voorinv", "PrimaryKey"},
};

QStringList LowerFieldNames(Database& db, const QString& table) {
    QStringList names;
    for (const FieldDef& f : db.Fields(table))
        names << f.name.toLower();
    return names;
}

QString TypeOf(Database& db, const QString& table, const QString& field) {
    for (const FieldDef& f : db.Fields(table))
        if (f.name.compare(field, Qt::CaseInsensitive) == 0)
            return f.type.toLower();
    return "missing";
}

QString Scalar(Database& db, const QString& sql) {
    return GetScalar(db, sql, "<null>", 0, "<error>");
}

// Every row of every table as text, for comparing a store before and after a start.
QMap<QString, QStringList> Contents(Database& db, const QString& skipTable = QString(),
                                    const QString& skipField = QString()) {
    QMap<QString, QStringList> out;
    for (const QString& table : db.TableNames()) {
        auto rs = db.OpenRecordset("select * from [" + table + "]", RecordsetType::Snapshot);
        QStringList rows;
        while (!rs->Eof()) {
            QStringList cells;
            for (int i = 0; i < rs->FieldCount(); ++i) {
                if (table.compare(skipTable, Qt::CaseInsensitive) == 0 &&
                    rs->FieldName(i).compare(skipField, Qt::CaseInsensitive) == 0)
                    continue;
                const Value v = rs->Field(i);
                cells << rs->FieldName(i) + "=" + (v.isNull() ? QString("<null>") : v.toString());
            }
            rows << cells.join('|');
            rs->MoveNext();
        }
        rows.sort();
        out[table.toLower()] = rows;
    }
    return out;
}

QMap<QString, QString> SchemaText(Database& db) {
    QMap<QString, QString> out;
    for (const QString& table : db.TableNames()) {
        QStringList parts;
        for (const FieldDef& f : db.Fields(table))
            parts << f.name + ":" + f.type + ":" + QString::number(f.size);
        for (const IndexDef& idx : db.Indexes(table))
            parts << "index " + idx.name + "(" + idx.fields.join(',') + ")";
        out[table.toLower()] = parts.join(' ');
    }
    return out;
}

// An older store exactly as a previous installation left it: the older tables and nothing else.
struct OlderStore {
    TempHome home;
    ScriptedMessageService messages;
    std::unique_ptr<Database> db;
    OlderStore() {
        db = Database::Open(home.storeFile(), true);
        db->BeginTrans();
        CreateOlderSchema(*db);
        db->CommitTrans();
    }
    void SetVersion(int major, int minor, int revision) {
        db->CreateTableDef("Version", {{"VMajor", "long", 0}, {"VMinor", "long", 0}, {"VRevision", "long", 0}});
        db->Execute(QString("insert into Version (VMajor,VMinor,VRevision) values (%1,%2,%3)")
                        .arg(major)
                        .arg(minor)
                        .arg(revision));
    }
};

} // namespace

TEST(UpgradeNewStore, FirstStartGivesEveryTableColumnAndIndexWithoutAWord) {
    StoreHome h;
    EXPECT_TRUE(QFileInfo::exists(h.home.storeFile()));

    for (const auto& [table, columns] : kPresentColumns) {
        ASSERT_EQ(TableExists(h.db(), table), table);
        QStringList have = LowerFieldNames(h.db(), table), want = QString(columns).toLower().split(',');
        have.sort();
        want.sort();
        EXPECT_EQ(have, want) << table;
    }
    for (const auto& [table, names] : kNamedIndexes) {
        QStringList have;
        for (const IndexDef& idx : h.db().Indexes(table))
            have << idx.name.toLower();
        for (const QString& name : QString(names).toLower().split(','))
            EXPECT_TRUE(have.contains(name)) << table << " index " << qPrintable(name);
    }
    // The service tables live on under their new names only.
    EXPECT_EQ(TableExists(h.db(), "vdiens"), "");
    EXPECT_EQ(TableExists(h.db(), "addservices"), "");
    EXPECT_TRUE(h.messages.shown.isEmpty()) << qPrintable(h.messages.texts().join('\n'));
}

TEST(UpgradeNewStore, SecondPassGivesDoublesAndActivityRebateThatOnePassCannot) {
    StoreHome h(false);
    // One pass over the older shape: the pump readings are still text and activities has no rebated yet.
    EXPECT_EQ(TypeOf(h.db(), "vecfuel", "pumpreadprev"), "text");
    EXPECT_EQ(TypeOf(h.db(), "activities", "rebated"), "missing");
    EXPECT_EQ(TypeOf(h.db(), "vecfuel", "kmread"), "double");

    StoreHome::Start(h.db());
    for (const char* field : {"KmRead", "PreviousKmRead", "Litres", "RperL", "pumpreadprev", "pumpreadcurr"})
        EXPECT_EQ(TypeOf(h.db(), "VecFuel", field), "double") << field;
    EXPECT_EQ(TypeOf(h.db(), "toerinv", "Hoeveel"), "double");
    EXPECT_EQ(TypeOf(h.db(), "activities", "rebated"), "bit");
    // The drop that carries a type word fails at every start, so the old rebate column stays.
    EXPECT_NE(FieldExists(h.db(), "voertuig", "rebaterate"), "");
}

TEST(UpgradeNewStore, SeedRows) {
    StoreHome h;
    const std::pair<const char*, const char*> seeds[] = {
        {"select count(*) & '|' & min(suppid) & '|' & max(name) from FuelSupplier where issystem",
         "1|1|_Fuel Supplier"},
        {"select count(*) from FuelSupplier", "1"},
        {"select count(*) & '|' & min(reference) & '|' & max(reference) from serviceReference", "1000|1|1000"},
        {"select count(*) from serviceReference where isassigned or isopened", "0"},
        {"select count(*) & '|' & max(rebaterate) & '|' & max(rebateSars) from rebate", "1|349|80"},
        {"select sum(id) from EquipmentAction", "10"},
        {"select count(*) from VecChoice", "1"},
        {"select VMajor & '.' & VMinor & '.' & VRevision from Version", "1.3.157"},
    };
    for (const auto& [sql, expected] : seeds)
        EXPECT_EQ(Scalar(h.db(), sql), expected) << sql;
    EXPECT_EQ(CollectionFromQuery(h.db(), "select trDesc from EquipmentAction order by id", 0, false),
              QStringList({"Opening Balance", "Book In", "Book Out", "Purchase", "Stock Take"}));
    EXPECT_EQ(CollectionFromQuery(h.db(), "select description from vdiens_costtype order by sortorder", 0, false),
              QStringList({"Labour", "Parts", "Out Work", "Consumables"}));
    for (const char* table : {"drivers", "activities", "departments", "pdp", "vdiens_allocated", "vdiens_unallocated",
                              "EquipmentTrans", "tblTeDate"})
        EXPECT_EQ(Scalar(h.db(), QString("select count(*) from ") + table), "0") << table;
}

TEST(UpgradeNewStore, LaterStartsChangeNothingButReadingsOfZero) {
    StoreHome h;
    Database& db = h.db();
    // A vehicle as the vehicle screen saves it; the type repairs would fill a Null rebate rate or percentage.
    db.Execute("insert into voertuig (CatID,Maak,RegNr,Km,rebaterate,rebatepct,deptid) "
               "values (1,'Hilux','ABC 123 GP',15000,0,80,1)");
    db.Execute("insert into VecFuel (VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL) "
               "values (1,1,'2024/01/02',0,0,50,21.5)");
    db.Execute("insert into VecFuel (VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL) "
               "values (1,1,'2024/01/03',500,0,40,21.5)");

    const auto schemaBefore = SchemaText(db);
    const auto rowsBefore = Contents(db, "VecFuel", "KmRead");
    StoreHome::Start(db);
    const auto schemaAfter = SchemaText(db);
    const auto rowsAfter = Contents(db, "VecFuel", "KmRead");
    EXPECT_EQ(schemaAfter.keys(), schemaBefore.keys());
    for (const QString& table : schemaBefore.keys()) {
        EXPECT_EQ(schemaAfter.value(table).toStdString(), schemaBefore.value(table).toStdString());
        EXPECT_EQ(rowsAfter.value(table).join('\n').toStdString(), rowsBefore.value(table).join('\n').toStdString())
            << qPrintable(table);
    }
    EXPECT_EQ(CollectionFromQuery(db, "select KmRead from VecFuel order by Datum", 0, false),
              QStringList({"1", "500"}));
    // The previous reading of 0 is not touched: only KmRead is rewritten.
    EXPECT_EQ(Scalar(db, "select count(*) from VecFuel where PreviousKmRead = 0"), "2");
    EXPECT_TRUE(h.messages.shown.isEmpty());
}

TEST(UpgradeOlderStore, ServiceRowsMoveToTheirNewTablesAndKeepNumbering) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("insert into vdiens (vechileid,supplierid,CostCategoryID,[Date],Cost,Kilometers,note) "
               "values (3,1,2,'2019/05/01','1250.00','80000','Brakes')");
    db.Execute("insert into vdiens (vechileid,supplierid,CostCategoryID,[Date],Cost,Kilometers,note) "
               "values (4,2,1,'2019/06/01','300.50','90000','Oil')");
    db.Execute("insert into addservices ([Date],supplierid,costcatid,Cost,Km,Kyk) "
               "values ('2020/01/10',1,1,'99.00','1000',True)");
    db.Execute("insert into voertuig (CatID,Maak,RegNr,Km) values (1,'Hino','XYZ 1 GP',null)");
    db.Execute("insert into VecFuel (VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL) "
               "values (1,1,'2019/02/03','1234.5','1000','40.25','18.50')");
    db.Execute("insert into FuelPurchase (TankID,Datum,Liter,Cost,CostPerLiter) "
               "values (1,'2019/01/01','1000.00','18000.00','18.00')");

    RunSchemaSteps(db);

    EXPECT_EQ(Scalar(db, "select note from vdiens_allocated where vechileid = 3"), "Brakes");
    EXPECT_EQ(Scalar(db, "select Cost from vdiens_allocated where vechileid = 4"), "300.50");
    EXPECT_EQ(Scalar(db, "select reference from vdiens_allocated where vechileid = 3"), "<null>");
    EXPECT_EQ(Scalar(db, "select Km from vdiens_unallocated"), "1000");
    EXPECT_EQ(Scalar(db, "select Kyk from vdiens_unallocated"), "True");

    // New rows in the moved tables still get numbers, after the old ones.
    db.Execute("insert into vdiens_allocated (vechileid,[Date],Cost,reference) values (5,'2024/01/01','10','77')");
    EXPECT_EQ(Scalar(db, "select TransID from vdiens_allocated where vechileid = 5"), "3");
    db.Execute("insert into vdiens_unallocated ([Date],Cost,voertuigid) values ('2024/01/02','20',5)");
    EXPECT_EQ(Scalar(db, "select TransID from vdiens_unallocated where voertuigid = 5"), "2");

    // Old rows point at the system rows and get today's due dates; text numbers became doubles.
    const QString today = QDate::currentDate().toString("yyyy/MM/dd");
    EXPECT_EQ(Scalar(db, "select LicenceDueDate from voertuig"), today);
    EXPECT_EQ(Scalar(db, "select ServiceDueDate from voertuig"), today);
    EXPECT_EQ(Scalar(db, "select driverid & ',' & activityid & ',' & deptid from VecFuel"), "1,1,1");
    EXPECT_EQ(Scalar(db, "select KmRead + 0.5 from VecFuel"), "1235");
    EXPECT_EQ(Scalar(db, "select pumpreadprev from VecFuel"), "0");
    EXPECT_EQ(Scalar(db, "select suppid & '|' & Liter from FuelPurchase"), "1|1000.00");
    EXPECT_EQ(Scalar(db, "select deptid & '|' & km from voertuig"), "1|0");
    EXPECT_TRUE(old.messages.shown.isEmpty()) << qPrintable(old.messages.texts().join('\n'));
}

TEST(UpgradeOlderStore, ExistingRebateRowAndFuelSupplierAreLeftAlone) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("create table rebate (rebaterate single, rebateSars single)");
    db.Execute("insert into rebate (rebaterate,rebatesars) values (412.5,75)");
    db.Execute("create table FuelSupplier (suppid AUTOINCREMENT PRIMARY KEY NOT NULL, Name text(50), "
               "det1 text(25), det2 text(25), pcode text(25), voice text(25), issystem bit)");
    db.Execute("insert into FuelSupplier (name,issystem) values ('Depot',0)");

    RunSchemaSteps(db);
    RunSchemaSteps(db);
    EXPECT_EQ(Scalar(db, "select count(*) from rebate"), "1");
    EXPECT_EQ(Scalar(db, "select rebaterate & '/' & rebatesars from rebate"), "412.5/75");
    // An existing supplier table gets no system row, but the purchases still get their supplier column.
    EXPECT_EQ(Scalar(db, "select count(*) from FuelSupplier"), "1");
    EXPECT_NE(FieldExists(db, "FuelPurchase", "suppid"), "");
}

TEST(UpgradeOlderStore, FormloadAddTablesShowsItsErrorAndTheOtherStepsGoOn) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("drop table kamer");

    RunSchemaSteps(db);
    ASSERT_EQ(old.messages.shown.size(), 1);
    EXPECT_TRUE(old.messages.shown[0].text.startsWith("ERROR in Formload_AddTables "))
        << qPrintable(old.messages.shown[0].text);
    EXPECT_GT(old.messages.shown[0].text.size(), QString("ERROR in Formload_AddTables ").size());
    EXPECT_EQ(old.messages.shown[0].buttons, MsgButtons::Ok);
    EXPECT_EQ(old.messages.shown[0].title, "Orvel");
    // The failure ended that step only: the vehicles got no department, the later steps all ran.
    EXPECT_EQ(FieldExists(db, "voertuig", "deptid"), "");
    EXPECT_EQ(FieldExists(db, "vecfuel", "driverid"), "");
    EXPECT_NE(FieldExists(db, "vecfuel", "pumpreadcurr"), "");
    EXPECT_EQ(TableExists(db, "vdiens_costtype"), "vdiens_costtype");
    EXPECT_EQ(TableExists(db, "EquipmentStockTake"), "EquipmentStockTake");
}

TEST(UpgradeVersion, OlderVersionRunsTheGatedSteps) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("alter table TankRekords drop column FID");
    db.Execute("update VecChoice set VoerKeuse = 'Hilux (ABC 123 GP)'");
    old.SetVersion(1, 2, 98);

    CreateVersionTable(db);
    EXPECT_EQ(Scalar(db, "select VRevision from Version"), "98");
    CheckVersion(db);

    EXPECT_EQ(Scalar(db, "select count(*) from VecChoice"), "0");
    EXPECT_NE(FieldExists(db, "VecChoice", "VoerKeuse"), "");
    EXPECT_NE(FieldExists(db, "TankRekords", "FID"), "");
    EXPECT_EQ(Scalar(db, "select VMajor & '.' & VMinor & '.' & VRevision from Version"), "1.3.157");
    EXPECT_EQ(Scalar(db, "select count(*) from Version"), "1");
    EXPECT_EQ(TableExists(db, "tblTeDate"), "tblTeDate");
    // The fuel index cannot be made on columns VecFuel does not have: the old one stays as it was.
    QStringList fuelIndexes;
    for (const IndexDef& idx : db.Indexes("VecFuel"))
        fuelIndexes << idx.name + "(" + idx.fields.join(',') + ")";
    EXPECT_EQ(fuelIndexes, QStringList({"FUELDEX2(VoertuigID,Datum)"}));
    EXPECT_TRUE(old.messages.shown.isEmpty());
}

TEST(UpgradeVersion, EqualOrNewerVersionRunsNoGatedStep) {
    for (const auto& [major, minor, revision] : {std::tuple{1, 3, 157}, std::tuple{1, 4, 0}, std::tuple{2, 0, 1}}) {
        OlderStore old;
        Database& db = *old.db;
        db.Execute("alter table TankRekords drop column FID");
        old.SetVersion(major, minor, revision);

        CreateVersionTable(db);
        CheckVersion(db);
        EXPECT_EQ(Scalar(db, "select count(*) from VecChoice"), "1") << major << "." << minor;
        EXPECT_EQ(FieldExists(db, "TankRekords", "FID"), "");
        EXPECT_EQ(Scalar(db, "select VMajor & '.' & VMinor & '.' & VRevision from Version"),
                  QString("%1.%2.%3").arg(major).arg(minor).arg(revision));
    }
}

TEST(UpgradeVersion, NewVersionTableCountsAsCurrent) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("update VecChoice set VoerKeuse = 'kept'");
    CreateVersionTable(db);
    EXPECT_EQ(Scalar(db, "select VMajor & '.' & VMinor & '.' & VRevision from Version"), "1.3.157");
    CheckVersion(db);
    EXPECT_EQ(Scalar(db, "select VoerKeuse from VecChoice"), "kept");
}

TEST(UpgradeVersion, OlderFileWithoutVecChoiceStopsTheStart) {
    OlderStore old;
    Database& db = *old.db;
    db.Execute("drop table VecChoice");
    old.SetVersion(1, 0, 0);
    CreateVersionTable(db);
    EXPECT_THROW(CheckVersion(db), DbError);
    // The version was not moved on, so the next start tries again.
    EXPECT_EQ(Scalar(db, "select VMinor from Version"), "0");
}

TEST(UpgradeNewStore, TablesMadeFromTheRoomTableNumberTheirRows) {
    StoreHome h;
    for (const QString table : {"drivers", "activities", "departments"}) {
        h.db().Execute("insert into " + table + " (description,issys) values ('System',1)");
        h.db().Execute("insert into " + table + " (description) values ('Second')");
        EXPECT_EQ(CollectionFromQuery(h.db(), "select id from " + table + " order by id", 0, false),
                  QStringList({"1", "2"}))
            << qPrintable(table);
        EXPECT_EQ(Scalar(h.db(), "select issys from " + table + " where id = 2"), "False");
    }
    h.db().Execute("insert into pdp (surname) values ('Dlamini')");
    EXPECT_EQ(Scalar(h.db(), "select pdpid from pdp"), "1");
}
