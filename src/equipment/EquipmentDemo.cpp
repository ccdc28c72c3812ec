#include "EquipmentDemo.h"

#include "Database.h"
#include "EquipmentLedger.h"
#include "QueryHelpers.h"
#include "Session.h"

#include <QRandomGenerator>
#include <QStringList>
#include <vector>

namespace {

struct DemoCategory {
    const char* name;
    std::vector<const char*> items;
};

const DemoCategory kCategories[] = {
    {"Power Tools", {"Angle Grinder", "Cordless Drill", "Jigsaw", "Impact Driver"}},
    {"Ladders", {"Step Ladder 6 Tread", "Extension Ladder 8m", "Trestle"}},
    {"Safety Gear", {"Hard Hat", "Safety Harness", "Reflective Vest", "Ear Muffs"}},
    {"Radios", {"Two-way Radio", "Radio Charger"}},
};

const char* const kPeople[] = {"Thabo Nkosi",    "Anna van Wyk", "Pieter Botha",
                               "Lerato Dlamini", "Johan Smit",   "Sipho Mthembu"};

} // namespace

void WriteDemoEquipment(const QDate& today, quint32 seed) {
    QRandomGenerator random(seed);
    struct Item {
        int category;
        int id;
        Currency onHand;
    };
    std::vector<Item> items;
    for (const DemoCategory& category : kCategories) {
        db().Execute("insert into toerkat ([desc]) values ('" + QString(category.name) + "')");
        const int categoryId = GetScalar(db(), "select max(tid) from toerkat", "0", 0, "0").toInt();
        for (const char* name : category.items) {
            EquipmentEntry entry;
            entry.mode = kOpeningBalance;
            entry.categoryId = categoryId;
            entry.description = name;
            entry.quantity = Currency::fromDouble(random.bounded(4, 25));
            entry.cost = Currency::fromDouble(entry.quantity.toDouble() * random.bounded(50, 2500));
            entry.date = today.addDays(-400);
            WriteEquipmentMovement(entry);
            items.push_back({categoryId, entry.itemId, entry.quantity});
        }
    }
    // Book-outs over the last year; about half come back, some in part.
    for (int n = 0; n < 24; ++n) {
        Item& item = items[random.bounded(static_cast<int>(items.size()))];
        const int most = static_cast<int>(item.onHand.toDouble());
        if (most < 1)
            continue;
        const int quantity = random.bounded(1, std::min(most, 4) + 1);
        EquipmentEntry out;
        out.mode = kBookOut;
        out.categoryId = item.category;
        out.itemId = item.id;
        out.description = kPeople[random.bounded(6)];
        out.quantity = -Currency::fromDouble(quantity);
        out.date = today.addDays(-random.bounded(5, 360));
        const long long bookOutId = WriteEquipmentMovement(out);
        item.onHand += out.quantity;
        const long long header =
            GetScalar(db(), "select stocktakeid from equipmenttrans where id = " + QString::number(bookOutId), "0", 0,
                      "0")
                .toLongLong();
        const int returns = random.bounded(3); // 0: still out, 1: part back, 2: all back
        int back = returns == 0 ? 0 : (returns == 1 ? std::max(1, quantity / 2) : quantity);
        if (returns == 1 && back == quantity)
            back = 0; // a single piece cannot come back in part
        if (back == 0)
            continue;
        EquipmentEntry in;
        in.mode = kBookIn;
        in.categoryId = item.category;
        in.itemId = item.id;
        in.description = out.description;
        in.quantity = Currency::fromDouble(back);
        in.date = std::min(today, out.date.addDays(random.bounded(0, 30)));
        in.bookOutId = bookOutId;
        in.bookOutStockTakeId = header;
        WriteEquipmentMovement(in);
        item.onHand += in.quantity;
    }
}
