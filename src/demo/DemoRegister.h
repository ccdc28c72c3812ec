#pragma once
// A demo register that looks real: the owner, the lookup lists, categories of both meter kinds, vehicles with
// South African registrations and due dates around the day given, tanks, purchases, issues whose readings rise
// per vehicle and whose pump readings chain per tank, stock takes with reasons, then whatever each subsystem adds
// of its own, and Recalc last. One seed and one day give one register.

#include <QDate>
#include <QString>
#include <functional>
#include <vector>

class Database;

struct DemoOptions {
    bool large = false; // small: about 25 vehicles, 3 tanks, two years; large: 100 000 fuel rows
    quint32 seed = 1;
    QDate today;
};

// A subsystem's part of the demo: fills its own tables on the session's store, after the fuel part and before
// Recalc, with dates relative to today.
using DemoFiller = std::function<void(const QDate& today, quint32 seed)>;

// Every subsystem's filler, in the order they run. A subsystem adds its own with one line here.
std::vector<DemoFiller> DemoFillers();

struct DemoSummary {
    int vehicles = 0;
    int tanks = 0;
    int purchases = 0;
    int fuelRows = 0;
    int stockTakes = 0;
    int fillers = 0;
};

// Fills a new store (the session's, made and brought up to date as at any start). Throws DbError.
DemoSummary MakeDemoRegister(Database& store, const DemoOptions& options);
