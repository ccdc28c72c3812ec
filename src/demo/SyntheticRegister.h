#pragma once
// Synthetic fuel registers of any size, for the benchmarks and the recalculation tests: vehicle categories
// of both meter kinds, vehicles, tanks, purchases, issues with odometer and pump readings, and stock takes,
// whose derived figures agree with each other unless the shape asks for some to be left wrong.

#include <QDate>
#include <QtGlobal>

class Database;

struct RegisterShape {
    int vehicles = 12;
    int hoursVehiclePercent = 25; // vehicles of a category that counts hours
    int tanks = 3;
    int fuelRows = 600;
    int purchasesPerTank = 10;
    int stockTakesPerTank = 4;
    int equalReadingPercent = 0; // issues that repeat the vehicle's previous reading
    bool textKm = false;         // Km kept as texts such as "12345,5" and "12 345"
    bool stockTakesOnPurchaseDates = false;
    bool stockTakesOutOfDateOrder = false; // stored order differs from date order
    bool issuesOutOfDateOrder = false;     // issues stored in no particular order
    int unsettledPercent = 0;              // derived values left wrong, as after edits and deletions
    quint32 seed = 1;
    QDate start{2021, 1, 1}; // the first day of the register
    int days = 0;            // the days it spans; 0 for as many as the rows need
    // As an office keeps it (the demo register): named categories, makes and South African registrations, due
    // dates around the last day, whole litres that the pump readings chain by, stock take reasons, and the
    // departments, drivers, activities and fuel suppliers numbered 1 to n spread over the rows.
    bool lifelike = false;
    int departments = 1;
    int drivers = 1;
    int activities = 1;
    int suppliers = 1;
};

struct RegisterCounts {
    int vehicles = 0;
    int tanks = 0;
    int purchases = 0;
    int fuelRows = 0;
    int stockTakes = 0;
};

// Adds the register to the store's tables (keys after those present), in one transaction. Throws DbError.
RegisterCounts GenerateRegister(Database& store, const RegisterShape& shape);
