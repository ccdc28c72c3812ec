#pragma once
// A fresh store in a temporary home for the reminder and permit screens, with a scripted message service.

#include "Database.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ScreenRegistry.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <QDate>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>

inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << '[' << list.join("|").toStdString() << ']';
}

class ReminderStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
    }
    void TearDown() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        m_session.db.reset();
        SetCurrentSession(nullptr);
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
};
