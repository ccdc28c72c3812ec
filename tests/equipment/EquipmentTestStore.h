#pragma once
// A fresh store in a temporary home, a scripted message service, and the small look-ups the equipment tests
// share.

#include "Database.h"
#include "EquipmentLedger.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "WorkbookReader.h"

#include <QApplication>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>

inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << '[' << list.join("|").toStdString() << ']';
}

class EquipmentStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
    }
    void TearDown() override {
        // A run-time error ends the run from a queued call, which marks the thread's loops to quit; an event loop
        // of the application's own takes that call and clears the mark, so that later dialogs still run.
        bool ended = false;
        for (const ShownMessage& m : m_messages.shown)
            ended |= m.icon == MsgIcon::Critical;
        if (ended) {
            QTimer::singleShot(0, qApp, [] { QCoreApplication::exit(0); });
            QCoreApplication::exec();
        }
        m_session.db.reset();
        SetCurrentSession(nullptr);
    }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "<null>", 0, "<error>"); }
    double number(const QString& sql) { return scalar(sql).toDouble(); }

    int addCategory(const QString& name) {
        exec("insert into toerkat ([desc]) values ('" + name + "')");
        return scalar("select max(tid) from toerkat").toInt();
    }
    // An item with its opening balance, written as the entry screen writes it.
    int addItem(int category, const QString& name, double quantity, double cost) {
        EquipmentEntry e;
        e.mode = kOpeningBalance;
        e.categoryId = category;
        e.description = name;
        e.quantity = Currency::fromDouble(quantity);
        e.cost = Currency::fromDouble(cost);
        e.date = QDate::currentDate();
        WriteEquipmentMovement(e);
        return e.itemId;
    }
    long long bookOut(int category, int item, double quantity, const QString& person, const QDate& date) {
        EquipmentEntry e;
        e.mode = kBookOut;
        e.categoryId = category;
        e.itemId = item;
        e.description = person;
        e.quantity = Currency::fromDouble(-quantity);
        e.date = date;
        return WriteEquipmentMovement(e);
    }
    // Whether every item's Hoeveel is the sum of its ledger rows.
    QStringList ledgerDisagreements() {
        QStringList out;
        auto rs = m_session.db->OpenRecordset("select iid, hoeveel from toerinv");
        for (; !rs->Eof(); rs->MoveNext()) {
            const QString id = rs->Field("iid").toString();
            const double ledger = number("select sum(trqty) from equipmenttrans where equipid = " + id);
            if (qAbs(ledger - rs->Field("hoeveel").toDouble()) > 1e-9)
                out << id + ": " + QString::number(ledger) + " vs " + rs->Field("hoeveel").toString();
        }
        return out;
    }

    // Runs `act` on the next modal dialog once it is up (the caller then opens it).
    template <typename Dialog> void onModal(std::function<void(Dialog&)> act) {
        auto* poll = new QTimer(qApp);
        poll->setInterval(5);
        QObject::connect(poll, &QTimer::timeout, qApp, [poll, act] {
            auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
            if (!dialog)
                return;
            poll->stop();
            poll->deleteLater();
            act(*dialog);
            if (dialog->isVisible())
                dialog->reject();
        });
        poll->start();
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
};
