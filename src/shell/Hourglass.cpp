#include "Hourglass.h"

#include <QCursor>
#include <QGuiApplication>

Hourglass::Hourglass() {
    // Batch commands run without a screen: no pointer to change there.
    if (qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
        QGuiApplication::setOverrideCursor(QCursor(Qt::WaitCursor));
        m_active = true;
    }
}

Hourglass::~Hourglass() {
    restore();
}

void Hourglass::restore() {
    if (m_active) {
        QGuiApplication::restoreOverrideCursor();
        m_active = false;
    }
}
