#pragma once
// A fresh store in a temporary home with the fuel tables ready, a closing date, a scripted message service and
// small helpers to put tanks and purchases in place and read the store back.

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

class TankStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
        m_session.ClosedDate = QDateTime(QDate(2024, 1, 31), QTime(0, 0));
    }
    void TearDown() override {
        m_session.db.reset();
        SetCurrentSession(nullptr);
    }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "<null>", 0, "<none>"); }

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
    double volume(int tank) {
        return scalar("select HuidigeVolume from Tanks where TransID = " + QString::number(tank)).toDouble();
    }
    QString rate(int tank) { return scalar("select CurRperL from Tanks where TransID = " + QString::number(tank)); }

    // Types into a field as a person does: focus, select all, type, then Tab away.
    static void typeInto(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
    }
    static void leave(QWidget* field) { QTest::keyClick(field, Qt::Key_Tab); }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
};
