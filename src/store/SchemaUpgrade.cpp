#include "SchemaUpgrade.h"

#include "MessageService.h"
#include "QueryHelpers.h"
#include "StoreStartup.h"
#include "Vb.h"

#include <QDate>
#include <exception>
#include <limits>

namespace {

// Runs one step under its own handler: an error ends the step, its description is taken and the next
// step runs. Only Formload_AddTables shows what went wrong.
template <typename Body> void RunStepBody(Body body, QString* failure = nullptr) {
    try {
        body();
    } catch (const NumberedError& e) {
        if (failure)
            *failure = e.description();
    } catch (const std::exception& e) {
        if (failure)
            *failure = QString::fromUtf8(e.what());
    }
}

bool g_stepShowedFailure = false; // set by the one step that shows its failure

// Steps 2 and 15 try every statement whatever the last one did.
void ExecuteIgnoringErrors(Database& db, const QString& statement) {
    RunStepBody([&] { db.Execute(statement); });
}

bool Missing(const QString& existsAnswer) {
    return existsAnswer.isEmpty();
}

void ExecuteAndRefresh(Database& db, const QString& statement) {
    db.Execute(statement);
    db.RefreshTableDefs();
}

QString PaddedNumber(const Value& v, int width) {
    // Format(x, "00") of a Null gives the empty text.
    if (v.isNull() || v.isEmpty())
        return QString();
    return QString::number(v.toLong()).rightJustified(width, '0');
}

} // namespace

// ---- probes ----

bool TableOpens(Database& db, const QString& name) {
    return QueryOpens(db, name);
}

bool QueryOpens(Database& db, const QString& sql) {
    try {
        auto rs = db.OpenRecordset(sql);
        rs->Close();
        return true;
    } catch (...) {
        return false;
    }
}

// ---- version steps ----

QString ProgramVersionText() {
    return QString("%1.%2.%3").arg(kProgramMajor).arg(kProgramMinor).arg(kProgramRevision);
}

int VersionNumber(int major, int minor, int revision) {
    return VersionNumberOf(Value(major), Value(minor), Value(revision));
}

int VersionNumberOf(const Value& major, const Value& minor, const Value& revision) {
    const QString joined = PaddedNumber(major, 2) + PaddedNumber(minor, 4) + PaddedNumber(revision, 4);
    bool ok = false;
    const qlonglong number = joined.toLongLong(&ok);
    if (!ok || number > std::numeric_limits<int>::max() || number < std::numeric_limits<int>::min())
        throw VbError(ok ? 6 : 13, ok ? "Overflow" : "Type mismatch");
    return static_cast<int>(number);
}

void CreateVersionTable(Database& db) {
    if (TableOpens(db, "Version"))
        return;
    db.CreateTableDef("Version", {{"VMajor", "long", 0}, {"VMinor", "long", 0}, {"VRevision", "long", 0}});
    db.RefreshTableDefs();
    WriteVersion(db);
}

void WriteVersion(Database& db) {
    auto rs = db.OpenRecordset("SELECT * FROM Version");
    if (rs->Eof())
        rs->AddNew();
    else
        rs->Edit();
    rs->SetField("VMajor", Value(kProgramMajor));
    rs->SetField("VMinor", Value(kProgramMinor));
    rs->SetField("VRevision", Value(kProgramRevision));
    rs->Update();
    rs->Close();
}

void CheckVersion(Database& db) {
    auto rs = db.OpenRecordset("SELECT * FROM Version");
    if (!rs->Eof()) {
        const int stored = VersionNumberOf(rs->Field("VMajor"), rs->Field("VMinor"), rs->Field("VRevision"));
        rs->Close();
        if (stored < kProgramVersionNumber) {
            UpdateChoiceAndLedgerTables(db);
            AddFuelIndex(db);
            WriteVersion(db);
        }
    } else {
        rs->Close();
    }
    if (!TableOpens(db, "tblTeDate")) {
        db.CreateTableDef("tblTeDate", {{"TeDateID", "short", 0}, {"TeDate", "datetime", 0}});
        db.RefreshTableDefs();
    }
}

void UpdateChoiceAndLedgerTables(Database& db) {
    db.Execute("DROP TABLE VecChoice;");
    db.RefreshTableDefs();
    if (!TableOpens(db, "VecChoice")) {
        db.CreateTableDef("VecChoice", {{"VoerKeuse", "text", 50}});
        db.RefreshTableDefs();
    }
    if (!QueryOpens(db, "SELECT FID FROM TankRekords ")) {
        db.CreateField("TankRekords", {"FID", "long", 0});
        db.RefreshTableDefs();
    }
}

void AddFuelIndex(Database& db) {
    RunStepBody([&] {
        db.CreateIndex("VecFuel", {"FUELDEX2", {"VID", "Date", "Maak", "KmRead"}, false, false});
        db.RefreshTableDefs();
    });
}

// ---- the seventeen steps ----

void AddFuelSupplierTable(Database& db) {
    RunStepBody([&] {
        const QString table = "FuelSupplier";
        if (Missing(TableExists(db, table))) {
            ExecuteAndRefresh(db, "create table " + table +
                                      " (suppid AUTOINCREMENT PRIMARY KEY NOT NULL, Name text(50), det1 text(25), "
                                      "det2 text(25), pcode text(25), voice text(25), issystem bit)");
            db.Execute(QString("insert into ") + table + " (name,issystem) " + " values (" + "'_Fuel Supplier'" +
                       ",1)");
        }
        if (Missing(FieldExists(db, "fuelpurchase", "suppid"))) {
            ExecuteAndRefresh(db, QString("alter table fuelpurchase") + " add suppid long");
            db.Execute("update fuelpurchase set suppid = 1");
        }
    });
}

void RepairColumnTypes(Database& db) {
    // The drop in the third statement carries a type word and so is no valid drop: it fails at every start
    // and rebaterate stays, which the fifth statement relies on.
    static const char* const statements[] = {
        "alter table voertuig alter column  [km]  double",
        "update voertuig set km = 0 where km is null",
        "alter table voertuig drop  [rebaterate]  double",
        "alter table voertuig add  [rebatepct]  integer",
        "update voertuig set rebaterate = 0 where rebaterate is null",
        "update voertuig set rebatepct = 0 where rebatepct is null",
        "alter table vecfuel alter column  [previouskmread]  double",
        "alter table vecfuel alter column  [kmread]  double",
        "alter table vecfuel alter column  [litres]  double",
        "alter table vecfuel alter column  [rperl]  double",
        "alter table vecfuel alter column  [pumpreadprev]  double",
        "alter table vecfuel alter column  [pumpreadcurr]  double",
        "update vecfuel set kmread = 1 where kmread = 0",
        "alter table activities add rebated bit",
    };
    for (const char* statement : statements)
        ExecuteIgnoringErrors(db, statement);
    RunStepBody([&] { db.RefreshTableDefs(); });
}

void AddServiceReferences(Database& db) {
    RunStepBody([&] {
        const QString table = "serviceReference";
        if (!Missing(TableExists(db, table)))
            return;
        ExecuteAndRefresh(db, "create table " + table +
                                  " (id AUTOINCREMENT PRIMARY KEY NOT NULL, reference long, isopened bit, "
                                  "isassigned bit, assignDate datetime)");
        // One transaction for the thousand rows; whatever was inserted before a failure is kept.
        db.BeginTrans();
        try {
            for (int n = 1; n <= 1000; ++n)
                db.Execute("insert into " + table + " (reference) values (" + QString::number(n) + ")");
        } catch (...) {
            db.CommitTrans();
            throw;
        }
        db.CommitTrans();
    });
}

void AddDueDates(Database& db) {
    RunStepBody([&] {
        const QString table = "voertuig";
        const QString today = QDate::currentDate().toString("yyyy/MM/dd");
        for (const QString& field : {QString("LicenceDueDate"), QString("ServiceDueDate")}) {
            if (!Missing(FieldExists(db, table, field)))
                continue;
            ExecuteAndRefresh(db, "alter table " + table + " add " + field + " text(10)");
            db.Execute("update " + table + " set " + field + " = '" + today + "'");
        }
    });
}

void AddPermitTable(Database& db) {
    RunStepBody([&] {
        const QString table = "pdp";
        if (!Missing(TableExists(db, table)))
            return;
        ExecuteAndRefresh(db, "create table " + table +
                                  " (pdpdate text(10), surname text(25), firstname text(25), id text(25))");
        ExecuteAndRefresh(db, "alter table " + table + " add column pdpid autoincrement");
    });
}

void AddRebateTable(Database& db) {
    RunStepBody([&] {
        const QString table = "rebate";
        if (!Missing(TableExists(db, table)))
            return;
        ExecuteAndRefresh(db, "create table " + table + " (rebaterate single, rebateSars single)");
        db.Execute("insert into " + table + " (rebaterate,rebatesars) values (349,80)");
    });
}

void AddTankAndPurchaseColumns(Database& db) {
    RunStepBody([&] {
        if (Missing(FieldExists(db, "tanks", "pumpreading")))
            ExecuteAndRefresh(db, "alter table tanks add pumpreading double");
        if (Missing(FieldExists(db, "fuelpurchase", "invoiceRef")))
            ExecuteAndRefresh(db, "alter table fuelpurchase add invoiceRef text(50)");
    });
}

void AddVehicleColumns(Database& db) {
    RunStepBody([&] {
        const QString table = "voertuig";
        static const char* const columns[][2] = {
            {"FuelTankSize", "double"},   {"BatterySize", "text(50)"}, {"TyreSize", "text(50)"},
            {"OilFilterRef", "text(50)"}, {"FanbeltRef", "text(50)"},  {"rebated", "bit"},
        };
        for (const auto& column : columns) {
            if (Missing(FieldExists(db, table, column[0])))
                ExecuteAndRefresh(db, "alter table " + table + " add " + column[0] + " " + column[1]);
        }
    });
}

void Formload_AddTables(Database& db) {
    QString failure;
    bool failed = true;
    RunStepBody(
        [&] {
            for (const QString& table : {QString("drivers"), QString("activities"), QString("departments")}) {
                if (!Missing(TableExists(db, table)))
                    continue;
                // The empty selection gives the new table the types of the room table's key and name.
                ExecuteAndRefresh(db, QString("select id,description into ") + table + " from " + " (select  " +
                                          " [KID] as id" + " ,[Desc] as description " + " from kamer where kid = 0)");
                ExecuteAndRefresh(db, "alter table " + table + " add transid long");
                ExecuteAndRefresh(db, "alter table " + table + " add issys bit");
            }
            for (const QString& field : {QString("driverid"), QString("activityid"), QString("deptid")}) {
                if (!Missing(FieldExists(db, "vecfuel", field)))
                    continue;
                ExecuteAndRefresh(db, "alter table " + QString("vecfuel") + " add " + field + " long");
                db.Execute("update " + QString("vecfuel") + " set " + field + " = 1");
            }
            if (Missing(FieldExists(db, "voertuig", "deptid"))) {
                ExecuteAndRefresh(db, "alter table " + QString("voertuig") + " add " + "deptid" + " long");
                db.Execute("update " + QString("voertuig") + " set " + "deptid" + " = 1");
            }
            failed = false;
        },
        &failure);
    if (failed) {
        g_stepShowedFailure = true;
        MsgBox("ERROR in Formload_AddTables " + failure, MsgButtons::Ok);
    }
}

void ConvertEquipmentQuantity(Database& db) {
    RunStepBody([&] { ExecuteAndRefresh(db, "alter table toerinv alter hoeveel double"); });
}

void AddPumpReadings(Database& db) {
    RunStepBody([&] {
        const QString table = "vecfuel";
        for (const QString& field : {QString("pumpreadprev"), QString("pumpreadcurr")}) {
            if (!Missing(FieldExists(db, table, field)))
                continue;
            ExecuteAndRefresh(db, "alter table " + table + " add " + field + " text(12)");
            db.Execute("update " + table + " set " + field + " =0");
        }
    });
}

void AddEquipmentLedger(Database& db) {
    RunStepBody([&] {
        if (Missing(TableExists(db, "EquipmentTrans")))
            ExecuteAndRefresh(db, "create table EquipmentTrans (id AUTOINCREMENT PRIMARY KEY NOT NULL, "
                                  "sortdate datetime, trdate datetime, equipid short, actionId short, "
                                  "trDesc text(50), trStockQty currency, trQty currency, trAmount currency, "
                                  "trUnitCost currency, trClosed bit, bookoutid short, stocktakeid short)");
        // The book-out and header keys grow with ordinary use: past 32 767 a short column would stop every book-in.
        for (const FieldDef& f : db.Fields("EquipmentTrans"))
            if ((f.name.compare("bookoutid", Qt::CaseInsensitive) == 0 ||
                 f.name.compare("stocktakeid", Qt::CaseInsensitive) == 0) &&
                f.type.compare("short", Qt::CaseInsensitive) == 0)
                ExecuteAndRefresh(db, "alter table EquipmentTrans alter " + f.name + " long");
        const QString table = "EquipmentAction";
        if (!Missing(TableExists(db, table)))
            return;
        ExecuteAndRefresh(db, "create table " + table + " (id short, trDesc text(50))");
        static const char* const actions[] = {"Opening Balance", "Book In", "Book Out", "Purchase", "Stock Take"};
        for (int id = 0; id < 5; ++id)
            db.Execute("insert into " + table + " " + "(id,trdesc) values (" + QString::number(id) + ",'" +
                       actions[id] + "'" + ")");
    });
}

void AddEquipmentStockTake(Database& db) {
    RunStepBody([&] {
        if (Missing(TableExists(db, "EquipmentStockTake")))
            ExecuteAndRefresh(db, "create table EquipmentStockTake (id AUTOINCREMENT PRIMARY KEY NOT NULL, "
                                  "trdate datetime, equipid short, trReason text(250), trPerson text(50), "
                                  "trQty currency)");
    });
}

void AddServiceCostLines(Database& db) {
    RunStepBody([&] {
        if (Missing(TableExists(db, "vdiens_extra")))
            ExecuteAndRefresh(db, "create table vdiens_extra (transid AUTOINCREMENT PRIMARY KEY NOT NULL, "
                                  "vdiensid long, historyid long, costType text(50), reference1 text(50), "
                                  "reference2 text(50), value1 float, value2 float)");
    });
}

void MoveServiceTables(Database& db) {
    // Old data moves by being copied whole under the new name and the source dropped; after the first run
    // the sources are gone and every statement fails harmlessly.
    const QString allocated = "vdiens_allocated";
    const QString unallocated = "vdiens_unallocated";
    ExecuteIgnoringErrors(db, " select * into " + allocated + " from vdiens");
    ExecuteIgnoringErrors(db, "alter table " + allocated + "  add reference text(50)");
    ExecuteIgnoringErrors(db, "drop table vdiens");
    ExecuteIgnoringErrors(db, " select * into " + unallocated + " from addservices");
    ExecuteIgnoringErrors(db, "drop table addservices");
    ExecuteIgnoringErrors(db, "alter table " + unallocated + " add voertuigid long ");
    ExecuteIgnoringErrors(db, "alter table " + unallocated + "  add reference text(50)");
    RunStepBody([&] { db.RefreshTableDefs(); });
}

void EmptyUpgradeStep(Database&) {}

void AddCostTypes(Database& db) {
    RunStepBody([&] {
        const QString table = "vdiens_costtype";
        if (!Missing(TableExists(db, table)))
            return;
        ExecuteAndRefresh(db, "create table " + table +
                                  " (costTypeId AUTOINCREMENT PRIMARY KEY NOT NULL, description text(50), "
                                  "sortorder int)");
        for (const char* values :
             {"(description,sortorder) values ('Labour',1)", "(description,sortorder) values ('Parts',2)",
              "(description,sortorder) values ('Out Work',3)", "(description,sortorder) values ('Consumables',4)"})
            db.Execute("insert into " + table + " " + values);
    });
}

bool RunSchemaSteps(Database& db) {
    // Each statement stands or falls alone, as before; the transaction only saves a disk flush per
    // statement, and a start cut short by a crash leaves the store as it was.
    g_stepShowedFailure = false;
    db.BeginTrans();
    try {
        AddFuelSupplierTable(db);
        RepairColumnTypes(db);
        AddServiceReferences(db);
        AddDueDates(db);
        AddPermitTable(db);
        AddRebateTable(db);
        AddTankAndPurchaseColumns(db);
        AddVehicleColumns(db);
        Formload_AddTables(db);
        ConvertEquipmentQuantity(db);
        AddPumpReadings(db);
        AddEquipmentLedger(db);
        AddEquipmentStockTake(db);
        AddServiceCostLines(db);
        MoveServiceTables(db);
        EmptyUpgradeStep(db);
        AddCostTypes(db);
    } catch (...) {
        db.CommitTrans(); // what the steps did stays, as it would without the transaction
        throw;
    }
    db.CommitTrans();
    return !g_stepShowedFailure;
}
