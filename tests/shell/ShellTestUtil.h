#pragma once
// Helpers for driving the shell's widgets in tests: acting on the next modal dialog, store sessions.

#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <QPointer>
#include <QStringList>
#include <QTest>
#include <QTimer>
#include <QWidget>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <ostream>

// Readable failure messages for Qt's strings.
inline void PrintTo(const QString& s, std::ostream* os) {
    *os << '"' << s.toStdString() << '"';
}
inline void PrintTo(const QStringList& l, std::ostream* os) {
    *os << '[' << l.join("; ").toStdString() << ']';
}

// Runs action on the next modal widget once it is up (polls the event loop of its exec()). A dialog that
// the action leaves open is a failure and is closed, so that a broken dialog fails the test, never hangs it.
inline void OnNextModal(std::function<void(QWidget*)> action, int triesLeft = 400) {
    QTimer::singleShot(5, [action = std::move(action), triesLeft]() mutable {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            QPointer<QWidget> guard(modal);
            // Focus only follows keys in an active window; the offscreen platform activates a new window late.
            modal->activateWindow();
            if (!QTest::qWaitForWindowActive(modal))
                ADD_FAILURE() << "the dialog did not become active";
            if (!guard)
                return;
            action(modal);
            QTimer::singleShot(3000, [guard] {
                if (guard && guard->isVisible()) {
                    ADD_FAILURE() << "a dialog was left open";
                    guard->close();
                }
            });
        } else if (triesLeft > 0) {
            OnNextModal(std::move(action), triesLeft - 1);
        } else {
            ADD_FAILURE() << "no dialog came up";
        }
    });
}

// A fresh store in a temporary home, set as the current session.
class StoreSession {
public:
    StoreSession() {
        session.home = home.path();
        SetCurrentSession(&session);
        OpenSessionStore(session);
    }
    ~StoreSession() {
        session.db.reset();
        SetCurrentSession(nullptr);
    }
    TempHome home;
    Session session;
};
