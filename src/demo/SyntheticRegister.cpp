#include "SyntheticRegister.h"

#include "Database.h"
#include "QueryHelpers.h"

#include <QDate>
#include <QString>
#include <algorithm>
#include <map>
#include <random>
#include <vector>

namespace {

QString Amount(double value) {
    return QString::number(value, 'f', 2);
}
QString Quoted(const QString& text) {
    return "'" + QString(text).replace("'", "''") + "'";
}
QString DateText(const QDate& d) {
    return d.toString("yyyy/MM/dd");
}

int NextKey(Database& store, const QString& table, const QString& key) {
    return GetScalar(store, "select max(" + key + ") from " + table, "0", 0, "0").toInt() + 1;
}

struct Issue {
    int vehicle = 0; // index
    int tank = 0;    // index
    QDate date;
    double reading = 0;
    double previous = 0;
    double litres = 0;
    double pumpBefore = 0;
    double pumpAfter = 0;
};

struct Purchase {
    int tank = 0;
    QDate date;
    double litres = 0;
    double cost = 0;
};

struct StockTake {
    int tank = 0;
    QDate date;
    double measured = 0;
    double book = 0;
};

struct LifelikeCategory {
    const char* name;
    bool hours;
    const char* makes[3];
    const char* models[3];
    bool rebated;
};

const LifelikeCategory kCategories[] = {
    {"Light Delivery Vehicles", false, {"Toyota", "Isuzu", "Nissan"}, {"Hilux 2.4 GD-6", "D-Max 250", "NP200"}, false},
    {"Trucks", false, {"Mercedes-Benz", "Hino", "UD"}, {"Actros 2645", "500 1627", "Quon GW 26.450"}, true},
    {"Tractors", true, {"John Deere", "New Holland", "Massey Ferguson"}, {"5075E", "TT75", "375"}, true},
    {"Forklifts", true, {"Toyota", "Hyster", "Linde"}, {"8FD25", "H2.5FT", "H30D"}, false},
};

const char* const kStockReasons[] = {"Monthly dip", "Evaporation", "Meter drift at the pump", "Spillage while filling",
                                     "Dip stick misread last month"};

class Generator {
public:
    Generator(Database& store, const RegisterShape& shape)
        : m_db(store), m_shape(shape), m_rng(shape.seed), m_start(shape.start) {}
    RegisterCounts run();

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_rng); }
    double pickAmount(double low, double high) {
        return std::round(std::uniform_real_distribution<double>(low, high)(m_rng) * 100.0) / 100.0;
    }
    bool chance(int percent) { return pick(0, 99) < percent; }

    // A number from 1 to n, as a row's department, driver, activity or supplier.
    int spread(int n) { return n <= 1 ? 1 : pick(1, n); }
    QString tankName(int t) const {
        static const char* const names[] = {"Diesel Main", "Diesel Workshop", "Petrol", "Diesel Farm"};
        return m_shape.lifelike && t < 4 ? QString(names[t]) : "TANK " + QString::number(t + 1);
    }
    void writeLifelikeVehicles(int catKey, int vehicleKey);
    void planIssues();
    void planPurchases();
    void planStockTakes();
    void write();

    Database& m_db;
    RegisterShape m_shape;
    std::mt19937 m_rng;

    QString registration(int vehicle);
    QString digits7() {
        QString d;
        for (int i = 0; i < 7; ++i)
            d += QChar('0' + pick(0, 9));
        return d;
    }
    QDate m_start;
    int m_days = 365;
    std::vector<int> m_category;   // per vehicle, lifelike: index into kCategories
    std::vector<bool> m_hours;     // per vehicle
    std::vector<QString> m_kmText; // per vehicle, as stored
    std::vector<double> m_firstKm; // per vehicle, the cleaned Km as a number
    std::vector<Issue> m_issues;
    std::vector<Purchase> m_purchases;
    std::vector<StockTake> m_stock;
    std::vector<double> m_balance; // per tank
    std::vector<double> m_pump;    // per tank
};

// The registration formats of the provinces: "CA 123-456", "ND 45678", "BC 12 DE GP", "HJK 123 MP".
QString Generator::registration(int vehicle) {
    auto digits = [&](int count) {
        QString d;
        for (int i = 0; i < count; ++i)
            d += QChar('0' + pick(0, 9));
        return d;
    };
    auto letters = [&](int count) {
        static const char kLetters[] = "BCDFGHJKLMNPRSTVWXYZ"; // no vowels or Q, as the plates have
        QString l;
        for (int i = 0; i < count; ++i)
            l += QChar(kLetters[pick(0, 19)]);
        return l;
    };
    switch (vehicle % 4) {
    case 0:
        return "CA " + digits(3) + "-" + digits(3);
    case 1:
        return "ND " + digits(5);
    case 2:
        return letters(2) + " " + digits(2) + " " + letters(2) + " GP";
    default:
        return letters(3) + " " + digits(3) + " MP";
    }
}

void Generator::writeLifelikeVehicles(int catKey, int vehicleKey) {
    const int categories = static_cast<int>(std::size(kCategories));
    for (int c = 0; c < categories; ++c)
        m_db.Execute("insert into voerkat (TransID, [Desc], Hours) values (" + QString::number(catKey + c) + ", '" +
                     kCategories[c].name + "', " + (kCategories[c].hours ? "True" : "False") + ")");
    QStringList used;
    const QDate last = m_start.addDays(m_days - 1);
    for (size_t v = 0; v < m_hours.size(); ++v) {
        const LifelikeCategory& cat = kCategories[m_category[v]];
        const int model = pick(0, 2);
        QString reg;
        do
            reg = registration(static_cast<int>(v));
        while (used.contains(reg));
        used << reg;
        const double bought = std::round(std::uniform_real_distribution<double>(180000, 1400000)(m_rng) / 1000) * 1000;
        const int depreciation = pick(10, 25);
        const QString id = QString::number(vehicleKey + static_cast<int>(v));
        m_db.Execute(
            "insert into voertuig (TransID, CatID, Maak, Model, RegNr, ADatum, AWaarde, depwaarde, VWaarde, Boek, Km, "
            "Hours, Enjin, rebated, rebatepct, rebaterate, licenceduedate, serviceduedate, FuelTankSize, BatterySize, "
            "TyreSize, deptid) values (" +
            id + ", " + QString::number(catKey + m_category[v]) + ", '" + cat.makes[model] + "', '" +
            cat.models[model] + "', '" + reg + "', '" + DateText(m_start.addDays(-pick(200, 2500))) + "', " +
            QString::number(bought, 'f', 0) + ", " + QString::number(depreciation) + ", " +
            QString::number(bought * (100 - depreciation) / 100, 'f', 0) + ", '" + Amount(bought * 0.6) + "', " +
            QString::number(m_firstKm[v], 'f', 0) + ", " + (m_hours[v] ? "True" : "False") + ", 'E" + digits7() +
            "', " + (cat.rebated ? "True" : "False") + ", " + (cat.rebated ? "80" : "0") + ", 0, '" +
            DateText(last.addDays(pick(-20, 340))) + "', '" + DateText(last.addDays(pick(-20, 160))) + "', " +
            (m_hours[v] ? "150" : "80") + ", '" + (m_hours[v] ? "658" : "652") + "', '" +
            (m_hours[v] ? "16.9-28" : "265/65 R17") + "', " + QString::number(spread(m_shape.departments)) + ")");
    }
}

void Generator::planIssues() {
    const int vehicles = std::max(1, m_shape.vehicles);
    m_days = m_shape.days > 0 ? m_shape.days : std::max(60, m_shape.fuelRows / vehicles * 4);
    for (int v = 0; v < vehicles; ++v) {
        // A lifelike register has both meter kinds whatever the draw: its first vehicle counts kilometres, its
        // second hours.
        bool hours = chance(m_shape.hoursVehiclePercent);
        if (m_shape.lifelike && v < 2)
            hours = v == 1;
        m_hours.push_back(hours);
        m_category.push_back(!m_shape.lifelike ? 0 : hours ? 2 + pick(0, 1) : pick(0, 1));
        const int whole = hours ? pick(200, 4000) : pick(5000, 180000);
        // Texts as clerks type them: a decimal comma or a blank between thousands, which the chain's
        // first reading turns into points.
        if (m_shape.textKm && v % 2 == 0) {
            m_kmText.push_back(QString::number(whole) + "," + QString::number(pick(1, 9)));
            m_firstKm.push_back(QString(m_kmText.back()).replace(',', '.').toDouble());
        } else if (m_shape.textKm && whole >= 1000) {
            m_kmText.push_back(QString::number(whole / 1000) + " " +
                               QString("%1").arg(whole % 1000, 3, 10, QChar('0')));
            m_firstKm.push_back(QString(m_kmText.back()).replace(' ', '.').toDouble());
        } else {
            m_kmText.push_back(QString::number(whole));
            m_firstKm.push_back(whole);
        }
    }
    // Each vehicle's issues in date order with rising readings; the fleet's issues interleave by date.
    std::vector<double> reading(m_firstKm);
    std::vector<int> day(static_cast<size_t>(vehicles), 0);
    const int tanks = std::max(1, m_shape.tanks);
    for (int n = 0; n < m_shape.fuelRows; ++n) {
        Issue issue;
        issue.vehicle = n % vehicles;
        const size_t v = static_cast<size_t>(issue.vehicle);
        if (m_shape.lifelike) {
            // Spread evenly over the period: each vehicle fills up every few days.
            const int step = std::max(1, m_days * vehicles / std::max(1, m_shape.fuelRows));
            day[v] = std::min(m_days - 1,
                              day[v] + (n < vehicles ? pick(0, step) : pick(std::max(1, step / 2), step * 3 / 2)));
        } else {
            day[v] = std::min(m_days - 1, day[v] + pick(0, 6));
        }
        issue.date = m_start.addDays(day[v]);
        issue.tank = pick(0, tanks - 1);
        issue.previous = reading[v];
        if (!chance(m_shape.equalReadingPercent) || n < vehicles)
            reading[v] += m_hours[v] ? pick(4, 40) : pick(150, 900);
        issue.reading = reading[v];
        issue.litres = m_shape.lifelike ? pick(m_hours[v] ? 20 : 35, m_hours[v] ? 180 : 140) : pickAmount(20, 400);
        m_issues.push_back(issue);
    }
    std::stable_sort(m_issues.begin(), m_issues.end(), [](const Issue& a, const Issue& b) { return a.date < b.date; });
}

void Generator::planPurchases() {
    const int tanks = std::max(1, m_shape.tanks);
    std::vector<double> drawn(static_cast<size_t>(tanks), 0.0);
    for (const Issue& i : m_issues)
        drawn[static_cast<size_t>(i.tank)] += i.litres;
    for (int t = 0; t < tanks; ++t) {
        const int count = std::max(1, m_shape.purchasesPerTank);
        const double each = std::ceil(drawn[static_cast<size_t>(t)] * 1.1 / count) + 500;
        for (int p = 0; p < count; ++p) {
            Purchase purchase;
            purchase.tank = t;
            // The first delivery opens the tank; the rest spread over the period.
            purchase.date = p == 0 ? m_start : m_start.addDays(pick(0, m_days - 1));
            purchase.litres = std::round(each * (p == 0 ? 1.5 : pickAmount(0.8, 1.0)) * 100) / 100;
            purchase.cost = std::round(purchase.litres * pickAmount(14, 23) * 100) / 100;
            m_purchases.push_back(purchase);
        }
    }
    std::stable_sort(m_purchases.begin(), m_purchases.end(),
                     [](const Purchase& a, const Purchase& b) { return a.date < b.date; });
}

void Generator::planStockTakes() {
    const int tanks = std::max(1, m_shape.tanks);
    for (int t = 0; t < tanks; ++t) {
        std::vector<QDate> purchaseDates;
        for (const Purchase& p : m_purchases)
            if (p.tank == t)
                purchaseDates.push_back(p.date);
        for (int s = 0; s < m_shape.stockTakesPerTank; ++s) {
            StockTake take;
            take.tank = t;
            take.date = m_shape.stockTakesOnPurchaseDates && !purchaseDates.empty() && s % 2 == 0
                            ? purchaseDates[static_cast<size_t>(pick(0, static_cast<int>(purchaseDates.size()) - 1))]
                            : m_start.addDays(pick(1, m_days - 1));
            m_stock.push_back(take);
        }
    }
    // Book figures strictly before each date; a stock take's loss counts for those after its date.
    std::stable_sort(m_stock.begin(), m_stock.end(),
                     [](const StockTake& a, const StockTake& b) { return a.date < b.date; });
    for (StockTake& take : m_stock) {
        double book = 0;
        for (const Purchase& p : m_purchases)
            if (p.tank == take.tank && p.date < take.date)
                book += p.litres;
        for (const Issue& i : m_issues)
            if (i.tank == take.tank && i.date < take.date)
                book -= i.litres;
        for (const StockTake& earlier : m_stock)
            if (earlier.tank == take.tank && earlier.date < take.date)
                book += earlier.measured - earlier.book;
        take.book = std::round(book * 100) / 100;
        take.measured = std::round((take.book - pickAmount(0, 40) + (chance(20) ? pickAmount(0, 60) : 0)) * 100) / 100;
    }
}

void Generator::write() {
    const int tanks = std::max(1, m_shape.tanks);
    const int catKey = NextKey(m_db, "voerkat", "TransID");
    const int vehicleKey = NextKey(m_db, "voertuig", "TransID");
    const int tankKey = NextKey(m_db, "Tanks", "TransID");
    const int purchaseKey = NextKey(m_db, "FuelPurchase", "TransID");
    const int fuelKey = NextKey(m_db, "VecFuel", "TransID");
    const int stockKey = NextKey(m_db, "TankStock", "transid");

    // Km kept as texts is what an older file holds before the start's type repair turns the column to numbers.
    if (m_shape.textKm)
        m_db.Execute("alter table voertuig alter column km text(20)");
    m_db.BeginTrans();
    try {
        if (m_shape.lifelike)
            writeLifelikeVehicles(catKey, vehicleKey);
        else
            m_db.Execute("insert into voerkat (TransID, [Desc], Hours) values (" + QString::number(catKey) +
                         ", 'Synthetic Kilometres', False)");
        if (!m_shape.lifelike)
            m_db.Execute("insert into voerkat (TransID, [Desc], Hours) values (" + QString::number(catKey + 1) +
                         ", 'Synthetic Hours', True)");
        for (size_t v = 0; v < m_hours.size() && !m_shape.lifelike; ++v) {
            const QString id = QString::number(vehicleKey + static_cast<int>(v));
            m_db.Execute("insert into voertuig (TransID, CatID, Maak, Model, RegNr, Km, Hours, deptid) values (" + id +
                         ", " + QString::number(catKey + (m_hours[v] ? 1 : 0)) + ", 'Make " + id + "', 'Model', 'REG" +
                         id + "', " + Quoted(m_kmText[v]) + ", " + (m_hours[v] ? "True" : "False") + ", 1)");
        }

        m_balance.assign(static_cast<size_t>(tanks), 0.0);
        m_pump.assign(static_cast<size_t>(tanks), 0.0);
        for (int t = 0; t < tanks; ++t)
            m_pump[static_cast<size_t>(t)] = pick(1000, 90000);
        for (const Issue& i : m_issues)
            m_balance[static_cast<size_t>(i.tank)] -= i.litres;
        for (const Purchase& p : m_purchases)
            m_balance[static_cast<size_t>(p.tank)] += p.litres;
        for (const StockTake& s : m_stock)
            m_balance[static_cast<size_t>(s.tank)] += s.measured - s.book;

        for (int p = 0; p < static_cast<int>(m_purchases.size()); ++p) {
            const Purchase& purchase = m_purchases[static_cast<size_t>(p)];
            m_db.Execute("insert into FuelPurchase (TransID, TankID, Datum, Liter, Cost, CostPerLiter, suppid, "
                         "invoiceRef) values (" +
                         QString::number(purchaseKey + p) + ", " + QString::number(tankKey + purchase.tank) + ", '" +
                         DateText(purchase.date) + "', '" + Amount(purchase.litres) + "', '" + Amount(purchase.cost) +
                         "', '" + Amount(purchase.cost / purchase.litres) + "', " +
                         QString::number(spread(m_shape.suppliers)) + ", 'INV" + QString::number(p) + "')");
        }

        std::vector<size_t> order(m_issues.size());
        for (size_t n = 0; n < order.size(); ++n)
            order[n] = n;
        if (m_shape.issuesOutOfDateOrder)
            std::shuffle(order.begin(), order.end(), m_rng);
        for (size_t n = 0; n < m_issues.size(); ++n) {
            Issue& issue = m_issues[n];
            double& pump = m_pump[static_cast<size_t>(issue.tank)];
            issue.pumpBefore = pump;
            pump += m_shape.lifelike ? issue.litres : std::round(issue.litres);
            issue.pumpAfter = pump;
        }
        // Each vehicle's first issue follows its Km; the later ones follow the issue before.
        std::vector<bool> seen(m_hours.size(), false);
        std::vector<double> previous(m_issues.size());
        for (size_t n = 0; n < m_issues.size(); ++n) {
            const size_t v = static_cast<size_t>(m_issues[n].vehicle);
            previous[n] = seen[v] ? m_issues[n].previous : m_firstKm[v];
            seen[v] = true;
        }
        for (size_t k = 0; k < order.size(); ++k) {
            const size_t n = order[k];
            const Issue& issue = m_issues[n];
            double prev = previous[n];
            if (chance(m_shape.unsettledPercent))
                prev += pick(1, 500);
            m_db.Execute("insert into VecFuel (TransID, VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, "
                         "RperL, pumpreadprev, pumpreadcurr, driverid, activityid, deptid) values (" +
                         QString::number(fuelKey + static_cast<int>(k)) + ", " +
                         QString::number(vehicleKey + issue.vehicle) + ", " + QString::number(tankKey + issue.tank) +
                         ", '" + DateText(issue.date) + "', " + QString::number(issue.reading, 'f', 1) + ", " +
                         QString::number(prev, 'f', 3) + ", " + Amount(issue.litres) + ", 18.5, " +
                         QString::number(issue.pumpBefore, 'f', 0) + ", " + QString::number(issue.pumpAfter, 'f', 0) +
                         ", " + QString::number(spread(m_shape.drivers)) + ", " +
                         QString::number(spread(m_shape.activities)) + ", " +
                         QString::number(spread(m_shape.departments)) + ")");
        }

        std::vector<size_t> stockOrder(m_stock.size());
        for (size_t n = 0; n < stockOrder.size(); ++n)
            stockOrder[n] = n;
        if (m_shape.stockTakesOutOfDateOrder)
            std::reverse(stockOrder.begin(), stockOrder.end());
        for (size_t k = 0; k < stockOrder.size(); ++k) {
            const StockTake& take = m_stock[stockOrder[k]];
            double book = take.book;
            if (chance(m_shape.unsettledPercent))
                book += pick(1, 80);
            m_db.Execute("insert into TankStock (transid, TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, "
                         "Rvalue, Rede) values (" +
                         QString::number(stockKey + static_cast<int>(k)) + ", " + QString::number(tankKey + take.tank) +
                         ", '" + tankName(take.tank) + "', '" + DateText(take.date) + "', '" + Amount(take.measured) +
                         "', '" + Amount(book) + "', '" + Amount(take.measured - book) + "', '" +
                         (m_shape.lifelike ? Amount((take.measured - book) * 18.5) : QString("0")) + "', '" +
                         (m_shape.lifelike ? kStockReasons[pick(0, 4)] : "Measured") + "')");
        }

        for (int t = 0; t < tanks; ++t) {
            double volume = m_balance[static_cast<size_t>(t)];
            if (chance(m_shape.unsettledPercent))
                volume -= pick(1, 300);
            m_db.Execute("insert into Tanks (TransID, TankNaam, HuidigeVolume, CurRperL, Datum, Koste, Capacity, "
                         "PumpReading) values (" +
                         QString::number(tankKey + t) + ", '" + tankName(t) + "', " +
                         QString::number(std::round(volume * 100) / 100, 'f', 2) + ", 18.5, '" + DateText(m_start) +
                         "', '0', 50000, " + QString::number(m_pump[static_cast<size_t>(t)], 'f', 0) + ")");
        }
        m_db.CommitTrans();
    } catch (...) {
        m_db.Rollback();
        throw;
    }
}

RegisterCounts Generator::run() {
    planIssues();
    planPurchases();
    planStockTakes();
    write();
    RegisterCounts counts;
    counts.vehicles = static_cast<int>(m_hours.size());
    counts.tanks = std::max(1, m_shape.tanks);
    counts.purchases = static_cast<int>(m_purchases.size());
    counts.fuelRows = static_cast<int>(m_issues.size());
    counts.stockTakes = static_cast<int>(m_stock.size());
    return counts;
}

} // namespace

RegisterCounts GenerateRegister(Database& store, const RegisterShape& shape) {
    Generator generator(store, shape);
    return generator.run();
}
