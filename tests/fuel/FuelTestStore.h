#pragma once
// A fresh register in a temporary home for the fuel screens: a category of each meter kind, vehicles, one tank
// with a purchase and a pump reading, and a scripted message service.

#include "Database.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <gtest/gtest.h>
#include <sqlite3.h>

class FuelStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
        m_session.ClosedDate = QDateTime(QDate(2024, 2, 29), QTime(0, 0));
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

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "", 0, "<error>"); }
    // A statement straight on SQLite, beneath the store layer (triggers and the like).
    void raw(const char* sql) {
        char* error = nullptr;
        ASSERT_EQ(sqlite3_exec(m_session.db->handle(), sql, nullptr, nullptr, &error), SQLITE_OK) << error;
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
    int m_light = 0, m_tractors = 0, m_toyota = 0, m_bare = 0, m_massey = 0, m_deere = 0, m_tank = 0;
};
