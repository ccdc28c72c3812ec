#pragma once
// The vehicle register's test store for the reminder and permit screens: vehicles and permits falling due
// some days from today.

#include "../vehicles/VehicleTestStore.h"
#include "ScreenRegistry.h"

#include <QDate>

class ReminderStoreTest : public VehicleStoreTest {
protected:
    void TearDown() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        VehicleStoreTest::TearDown();
    }

    static QString day(int offset) { return QDate::currentDate().addDays(offset).toString("yyyy/MM/dd"); }

    void addVehicle(const QString& make, const QString& model, const QString& reg, const QString& licence,
                    const QString& service) {
        exec(QString("insert into voertuig (catid, maak, model, regnr, licenceduedate, serviceduedate) values "
                     "(1, '%1', '%2', '%3', '%4', '%5')")
                 .arg(make, model, reg, licence, service));
    }
    void addPermit(const QString& id, const QString& surname, const QString& first, const QString& date) {
        exec(QString("insert into pdp (id, surname, firstname, pdpdate) values ('%1', '%2', '%3', '%4')")
                 .arg(id, surname, first, date));
    }
};
