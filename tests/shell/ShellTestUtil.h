#pragma once
// Helpers for driving the shell's widgets in tests: acting on the next modal dialog, store sessions.

#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <QTimer>
#include <functional>
#include <memory>

// Runs action on the next modal widget once it is up (polls the event loop of its exec()).
inline void OnNextModal(std::function<void(QWidget*)> action, int triesLeft = 200) {
    QTimer::singleShot(5, [action = std::move(action), triesLeft]() mutable {
        if (QWidget* modal = QApplication::activeModalWidget()) {
            action(modal);
        } else if (triesLeft > 0) {
            OnNextModal(std::move(action), triesLeft - 1);
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
