#pragma once
// A fresh store in a temporary home for the fuel tests: the present schema, a closing date (2024/02/29 unless
// the test gives another), a scripted message service, helpers to put vehicles, tanks and purchases in place, to read
// the store back and to type into fields as a person does.

#include "Database.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <QLineEdit>
#include <QTest>
#include <QWidget>
#include <gtest/gtest.h>
#include <sqlite3.h>

class FuelStoreTest : public ::testing::Test {
protected:
    explicit FuelStoreTest(QDate closed = QDate(2024, 2, 29)) : m_closed(closed) {}
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
        m_session.ClosedDate = QDateTime(m_closed, QTime(0, 0));
    }
    void TearDown() override {
        m_session.db.reset();
        SetCurrentSession(nullptr);
    }

    // LIGHT (km): Toyota CA 1 at 1000 km, Bare CA 2 without Km. TRACTORS (hours): Massey MF 1 at 500 hours,
    // JOHN DEERE JD 1 with its make in capitals. Tank "Main": 1000 litres bought at 20.50, pump at 500.
    void SeedRegister() {
        exec("insert into voerkat ([desc], hours) values ('LIGHT', 0)");
        exec("insert into voerkat ([desc], hours) values ('TRACTORS', -1)");
        m_light = scalar("select transid from voerkat where [desc] = 'LIGHT'").toInt();
        m_tractors = scalar("select transid from voerkat where [desc] = 'TRACTORS'").toInt();
        m_toyota = addVehicle(m_light, "Toyota", "CA 1", "1000", false, true);
        m_bare = addVehicle(m_light, "Bare", "CA 2", "", false, false);
        m_massey = addVehicle(m_tractors, "Massey", "MF 1", "500", true, false);
        m_deere = addVehicle(m_tractors, "JOHN DEERE", "JD 1", "700", true, true);
        exec("insert into tanks (TankNaam, HuidigeVolume, CurRperL, Datum, PumpReading) "
             "values ('Main', 1000, 20.5, '2024/01/01', 500)");
        m_tank = scalar("select max(transid) from tanks").toInt();
        exec(QString("insert into FuelPurchase (TankID, Datum, Liter, Cost, CostPerLiter) "
                     "values (%1, '2024/01/01', '1000', '20500', '20.50')")
                 .arg(m_tank));
    }

    int addVehicle(int cat, const QString& make, const QString& reg, const QString& km, bool hours, bool rebated) {
        exec(QString("insert into voertuig (catid, maak, model, regnr, km, hours, rebated) "
                     "values (%1, '%2', 'M', '%3', %4, %5, %6)")
                 .arg(cat)
                 .arg(make, reg, km.isEmpty() ? QString("null") : km)
                 .arg(hours ? -1 : 0)
                 .arg(rebated ? -1 : 0));
        return scalar("select max(transid) from voertuig").toInt();
    }
    int addTank(const QString& name, double volume = 0, const QString& rate = "0") {
        exec(QString("insert into Tanks (TankNaam, HuidigeVolume, CurRperL, Datum, Koste, Capacity, PumpReading) "
                     "values ('%1', %2, %3, '2024/01/01', '0', 5000, 0)")
                 .arg(name)
                 .arg(volume)
                 .arg(rate));
        return scalar("select max(TransID) from Tanks").toInt();
    }
    int addPurchase(int tank, const QString& date, const QString& litres, const QString& rate,
                    const QString& supplier = "1") {
        exec(QString("insert into FuelPurchase (TankID, Datum, Liter, Cost, CostPerLiter, suppid, invoiceref) values "
                     "(%1, '%2', '%3', '0', '%4', %5, 'INV')")
                 .arg(tank)
                 .arg(date, litres, rate, supplier));
        return scalar("select max(TransID) from FuelPurchase").toInt();
    }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "", 0, "<error>"); }
    // A statement straight on SQLite, beneath the store layer (triggers and the like).
    void raw(const char* sql) {
        char* error = nullptr;
        ASSERT_EQ(sqlite3_exec(m_session.db->handle(), sql, nullptr, nullptr, &error), SQLITE_OK) << error;
    }
    // A statement by another program on the same file.
    void elsewhere(const char* sql) {
        sqlite3* other = nullptr;
        ASSERT_EQ(sqlite3_open(m_home.storeFile().toUtf8().constData(), &other), SQLITE_OK);
        EXPECT_EQ(sqlite3_exec(other, sql, nullptr, nullptr, nullptr), SQLITE_OK);
        sqlite3_close(other);
    }
    double volume(int tank) {
        return scalar("select HuidigeVolume from Tanks where TransID = " + QString::number(tank)).toDouble();
    }
    QString rate(int tank) { return scalar("select CurRperL from Tanks where TransID = " + QString::number(tank)); }

    // Types into a field as a person does: focus, select all, type; leave() then Tabs away.
    static void typeInto(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }
    static void leave(QWidget* field) { QTest::keyClick(field, Qt::Key_Tab); }
    template <class Screen> static void showActive(Screen& s) {
        s.show();
        s.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&s));
    }

    QDate m_closed;
    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
    int m_light = 0, m_tractors = 0, m_toyota = 0, m_bare = 0, m_massey = 0, m_deere = 0, m_tank = 0;
};
