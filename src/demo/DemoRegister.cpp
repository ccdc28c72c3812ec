#include "DemoRegister.h"

#include "Database.h"
#include "EquipmentDemo.h"
#include "Recalc.h"
#include "ReminderDemo.h"
#include "ServiceDemo.h"
#include "SyntheticRegister.h"

#include <QStringList>

std::vector<DemoFiller> DemoFillers() {
    std::vector<DemoFiller> fillers;
    // One line per subsystem that keeps tables of its own.
    fillers.push_back(WriteDemoServices);
    fillers.push_back(WriteDemoEquipment);
    fillers.push_back(WriteDemoPermits);
    return fillers;
}

namespace {

void WriteOwner(Database& store) {
    store.Execute("insert into owner (Name, Tel, Fax, Email, Add1, Add2, Add3, Add4, vat, Reg, Person) values "
                  "('Karoo Vervoer (Pty) Ltd', '023 342 1180', '023 342 1181', 'kantoor@karoovervoer.co.za', "
                  "'12 Voortrekker Street', 'Industria', 'Worcester', '6850', '4120187365', '2009/021187/07', "
                  "'Annelie Botha')");
}

// The system row of each list first (id 1, as the lists make it), then the names an office uses.
void WriteList(Database& store, const QString& table, const QString& systemName, const QStringList& names,
               const QStringList& rebated = {}) {
    store.Execute("insert into " + table + " (description,issys) values ('" + systemName + "',1)");
    for (const QString& name : names) {
        if (table == "activities")
            store.Execute("insert into activities (description,rebated) values ('" + name + "'," +
                          (rebated.contains(name) ? "True" : "False") + ")");
        else
            store.Execute("insert into " + table + " (description) values ('" + name + "')");
    }
}

const QStringList kDepartments = {"Transport", "Farming", "Workshop", "Deliveries"};
const QStringList kDrivers = {"Sipho Dlamini", "Johan van Wyk", "Thabo Mokoena", "Pieter Steyn",
                              "Lerato Nkosi",  "Willem Botha",  "Ayanda Zulu"};
const QStringList kActivities = {"Ploughing", "Harvesting", "Local deliveries", "Long distance", "Yard work"};
const QStringList kRebatedActivities = {"Ploughing", "Harvesting"};
const QStringList kSuppliers = {"Engen Worcester", "Sasol Breede Valley", "Total Depot Paarl"};

} // namespace

DemoSummary MakeDemoRegister(Database& store, const DemoOptions& options) {
    const QDate today = options.today.isValid() ? options.today : QDate::currentDate();
    store.BeginTrans();
    try {
        WriteOwner(store);
        WriteList(store, "departments", "Department 1", kDepartments);
        WriteList(store, "drivers", "Driver 1", kDrivers);
        WriteList(store, "activities", "Activity 1", kActivities, kRebatedActivities);
        for (const QString& name : kSuppliers)
            store.Execute("insert into FuelSupplier (name, det1, voice, issystem) values ('" + name +
                          "', 'Bulk diesel', '021 555 0100', 0)");
        store.CommitTrans();
    } catch (...) {
        store.Rollback();
        throw;
    }

    RegisterShape shape;
    shape.lifelike = true;
    shape.seed = options.seed;
    shape.vehicles = options.large ? 300 : 25;
    shape.hoursVehiclePercent = 25;
    shape.tanks = 3;
    shape.days = options.large ? 3 * 365 : 2 * 365;
    shape.start = today.addDays(1 - shape.days);
    shape.fuelRows = options.large ? 100000 : 25 * 2 * 52; // about one fill a week per vehicle
    shape.purchasesPerTank = shape.days / 14;
    shape.stockTakesPerTank = shape.days / 30;
    shape.departments = 1 + static_cast<int>(kDepartments.size());
    shape.drivers = 1 + static_cast<int>(kDrivers.size());
    shape.activities = 1 + static_cast<int>(kActivities.size());
    shape.suppliers = 1 + static_cast<int>(kSuppliers.size()); // the system supplier is 1
    const RegisterCounts counts = GenerateRegister(store, shape);

    DemoSummary summary;
    summary.vehicles = counts.vehicles;
    summary.tanks = counts.tanks;
    summary.purchases = counts.purchases;
    summary.fuelRows = counts.fuelRows;
    summary.stockTakes = counts.stockTakes;
    // Each subsystem's rows in one transaction: a new register that nobody sees until the command ends, where a
    // disk flush after every statement of the save routines would make the large register take minutes.
    for (const DemoFiller& fill : DemoFillers()) {
        store.BeginTrans();
        try {
            fill(today, options.seed);
            store.CommitTrans();
        } catch (...) {
            store.Rollback();
            throw;
        }
        ++summary.fillers;
    }
    if (!Recalc(store, nullptr, false))
        throw DbError(3000, "The recalculation of the demo register reported an error.");
    return summary;
}
