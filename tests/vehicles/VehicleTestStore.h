#pragma once
// A fresh store in a temporary home with a few categories and vehicles, and a scripted message service.

#include "Database.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "WorkbookReader.h"

#include <QApplication>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>

// Readable values in failure messages.
inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << '[' << list.join("|").toStdString() << ']';
}
inline void PrintTo(const QDate& date, std::ostream* os) {
    *os << date.toString("yyyy/MM/dd").toStdString();
}

class VehicleStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
    }
    void TearDown() override {
        m_session.db.reset();
        SetCurrentSession(nullptr);
    }

    // Two categories of kilometres, one of hours; five vehicles, one category left empty.
    void SeedRegister() {
        exec("insert into voerkat ([desc], hours) values ('LIGHT VEHICLES', 0)");
        exec("insert into voerkat ([desc], hours) values ('TRACTORS', -1)");
        exec("insert into voerkat ([desc], hours) values ('TRAILERS', 0)");
        m_light = scalar("select transid from voerkat where [desc] = 'LIGHT VEHICLES'").toInt();
        m_tractors = scalar("select transid from voerkat where [desc] = 'TRACTORS'").toInt();
        m_trailers = scalar("select transid from voerkat where [desc] = 'TRAILERS'").toInt();
        addVehicle(m_light, "TOYOTA", "HILUX", "CA 123-456", 385000, 125400.5, "2025/03/31", "2024/11/15");
        addVehicle(m_light, "ford", "ranger", "CA 777", 450000, 8000, "2024/12/01", "2025/01/20");
        addVehicle(m_light, "Isuzu", "kb 250", "CAW 5", 1234567.891, 0, "2024/10/05", "2024/10/06");
        addVehicle(m_tractors, "JOHN DEERE", "6120M", "NONE", 900000, 5230, "2025/06/30", "2024/09/01");
        addVehicle(m_tractors, "MASSEY", "290", "MF 290", 120000, 14000, "2026/01/01", "2025/02/02");
    }

    int addVehicle(int cat, const QString& make, const QString& model, const QString& reg, double price, double km,
                   const QString& licence, const QString& service) {
        exec(QString("insert into voertuig (catid, maak, model, regnr, awaarde, km, licenceduedate, serviceduedate, "
                     "adatum, depwaarde, vwaarde, boek, deptid) values (%1, '%2', '%3', '%4', %5, %6, '%7', '%8', "
                     "'2022/01/01', 20, 1000, '1.00', 1)")
                 .arg(cat)
                 .arg(make, model, reg)
                 .arg(price, 0, 'f', 4)
                 .arg(km, 0, 'f', 4)
                 .arg(licence, service));
        return scalar("select max(transid) from voertuig").toInt();
    }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "", 0, "<error>"); }

    // Runs `act` on the modal dialog that the next step opens, once it is up.
    static void WhenModalOpens(std::function<void(QWidget*)> act) {
        auto* poll = new QTimer;
        poll->setInterval(10);
        QObject::connect(poll, &QTimer::timeout, [poll, act] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                poll->stop();
                poll->deleteLater();
                act(modal);
            }
        });
        poll->start();
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
    int m_light = 0;
    int m_tractors = 0;
    int m_trailers = 0;
};
