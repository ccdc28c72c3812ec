#include "ReminderDemo.h"

#include "QueryHelpers.h"
#include "Session.h"

#include <QRandomGenerator>
#include <QStringList>

void WriteDemoPermits(const QDate& today, quint32 seed) {
    QRandomGenerator random(seed);
    const QStringList surnames = {"Botha",   "Van der Merwe", "Nkosi", "Dlamini", "O'Neill", "Pretorius",
                                  "Mokoena", "Naidoo",        "Smit",  "Khumalo", "Fourie",  "Jacobs"};
    const QStringList firstNames = {"Johan",  "Thabo",  "Sipho", "Annelie", "Pieter", "Lerato",
                                    "Willem", "Zanele", "Kobus", "Priya",   "Marius", "Nomsa"};
    constexpr int kPermits = 12;
    constexpr int kDueToday = 3;
    for (int i = 0; i < kPermits; ++i) {
        // The first few fall due today; the others up to six months either side of it.
        const QDate due = i < kDueToday ? today : today.addDays(random.bounded(-180, 181));
        QString surname = surnames.at(i % surnames.size());
        QString firstName = firstNames.at(random.bounded(firstNames.size()));
        QString id = QString("%1").arg(random.bounded(100000000u) + 7000000000u, 13, 10, QChar('0'));
        db().Execute(QString("insert into pdp ([pdpdate],[surname],[firstname],[id]) values ('%1', '%2', '%3', '%4')")
                         .arg(due.toString("yyyy/MM/dd"), SqlEscape(surname, false), SqlEscape(firstName, false),
                              SqlEscape(id, false)));
    }
}
