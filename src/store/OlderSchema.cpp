#include "OlderSchema.h"

// The shape below is the older installation's, column for column. It leaves out everything the start-up
// upgrade creates or adds: the due dates, tank and part sizes, rebated, rebatepct and deptid of voertuig; the
// driver, activity, department and pump-reading columns of VecFuel; the service tables under their new
// names; Version and tblTeDate; and every table the upgrade makes. Columns the type repairs later turn
// into doubles (Km, KmRead, PreviousKmRead, Litres, RperL) are text here, as they were, and so are the
// numbers that older rows keep as text. Keys are counters, so that new rows get numbers.
//
// TankRekords carries FID: its only other source is a version-gated step, which a new store never runs
// because it counts as current the moment its Version table is made.

namespace {

FieldDef counter(const char* name) {
    return {name, "counter", 0};
}
FieldDef lng(const char* name) {
    return {name, "long", 0};
}
FieldDef dbl(const char* name) {
    return {name, "double", 0};
}
FieldDef cur(const char* name) {
    return {name, "currency", 0};
}
FieldDef bit(const char* name) {
    return {name, "bit", 0};
}
FieldDef text(const char* name, int size) {
    return {name, "text", size};
}

IndexDef primaryKey(const char* field) {
    return {"PrimaryKey", {field}, true, true};
}
IndexDef index(const char* name, QStringList fields, bool unique = false) {
    return {name, std::move(fields), false, unique};
}

std::vector<OlderTable> buildOlderTables() {
    return {
        {"owner",
         {counter("OID"), text("Name", 50), text("Tel", 20), text("Fax", 20), text("Email", 50), text("Add1", 50),
          text("Add2", 50), text("Add3", 50), text("Add4", 50), text("vat", 20), text("Reg", 20), text("Person", 50)},
         {}},
        {"voerkat", {counter("TransID"), text("Desc", 50), bit("Hours")}, {primaryKey("TransID")}},
        {"voertuig",
         {counter("TransID"), lng("CatID"), text("Maak", 50), text("Model", 50), text("RegNr", 20), text("ADatum", 10),
          dbl("AWaarde"), dbl("depwaarde"), dbl("VWaarde"), text("Boek", 20), text("Km", 20), bit("Hours"),
          text("Foto", 100), text("Enjin", 50), dbl("rebaterate")},
         {primaryKey("TransID"), index("VID", {"CatID"}), index("VOERTUIGEDIT", {"TransID", "Maak"}),
          index("VOERTUIGDEX1", {"CatID", "Maak"})}},
        {"VecFuel",
         {counter("TransID"), lng("VoertuigID"), lng("TankID"), lng("FID"), text("Datum", 10), text("KmRead", 20),
          text("PreviousKmRead", 20), text("Litres", 20), text("RperL", 20)},
         {index("FUELDEX2", {"VoertuigID", "Datum"})}},
        {"Tanks",
         {counter("TransID"), text("TankNaam", 50), dbl("HuidigeVolume"), cur("CurRperL"), text("Datum", 10),
          text("Koste", 20), text("Liters", 20), dbl("Capacity")},
         {primaryKey("TransID"), index("TANKDATUM", {"Datum"})}},
        {"FuelPurchase",
         {counter("TransID"), lng("TankID"), text("Datum", 10), text("Liter", 20), text("Cost", 20),
          text("CostPerLiter", 20)},
         {index("TransID", {"TransID"}, true), index("TankID", {"TankID"})}},
        {"TankStock",
         {counter("transid"), lng("TankID"), text("Tank", 50), text("Datum", 10), text("LitersInTank", 20),
          text("LiterLesing", 20), text("Verlore", 20), text("Rvalue", 20), text("Rede", 100)},
         {}},
        {"TankRekords",
         {lng("TankID"), text("TankNaam", 50), text("Datum", 10), text("LitersGeneem", 20), text("LiterNaGeneem", 20),
          text("LiterSaldo", 20), text("RandPerLiter", 20), lng("FID")},
         {}},
        {"VecChoice", {text("VoerKeuse", 50)}, {}},
        {"VecSupplier", {counter("SUP_No"), text("SUP_Desc", 50)}, {index("SUPPLIERDEX", {"SUP_No"}, true)}},
        {"CostCat", {counter("CC_IID"), text("CC_CostCatagory", 50)}, {index("COTSCATDEX2", {"CC_IID"}, true)}},
        {"vdiens",
         {counter("TransID"), lng("vechileid"), lng("supplierid"), lng("CostCategoryID"), text("Date", 10),
          text("Cost", 20), text("Kilometers", 20), text("note", 100)},
         {}},
        {"addservices",
         {counter("TransID"), text("Date", 10), lng("supplierid"), lng("costcatid"), text("Cost", 20), text("Km", 8),
          bit("Kyk")},
         {}},
        {"kamer", {counter("KID"), text("Desc", 50)}, {}},
        {"toerkat", {counter("TID"), text("Desc", 50)}, {primaryKey("TID")}},
        {"toerinv",
         {counter("IID"), lng("TID"), text("Desc", 50), lng("Hoeveel"), cur("kitem"), text("ADatum", 10),
          text("Make", 50), text("Model", 50), dbl("AWaarde"), dbl("depwaarde"), dbl("VWaarde"), text("verwys", 50),
          text("Verskaffer", 50)},
         {primaryKey("IID")}},
        {"voorkat", {counter("VID"), text("Desc", 50)}, {primaryKey("VID")}},
        {"voorinv",
         {counter("IID"), lng("VID"), lng("KID"), text("Desc", 50), lng("Hoeveel"), text("Datum", 10), dbl("kwaarde"),
          dbl("VWaarde"), text("verwys", 50)},
         {primaryKey("IID")}},
    };
}

} // namespace

const std::vector<OlderTable>& OlderTables() {
    static const std::vector<OlderTable> tables = buildOlderTables();
    return tables;
}

void CreateOlderSchema(Database& db) {
    for (const OlderTable& table : OlderTables()) {
        db.CreateTableDef(table.name, table.fields);
        for (const IndexDef& idx : table.indexes)
            db.CreateIndex(table.name, idx);
    }
    // The fuel screen edits the one row of VecChoice and never adds it.
    db.Execute("insert into VecChoice (VoerKeuse) values ('0')");
    db.RefreshTableDefs();
}
