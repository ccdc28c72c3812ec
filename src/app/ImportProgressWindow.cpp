#include "ImportProgressWindow.h"

#include <QCoreApplication>
#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

ImportProgressWindow::ImportProgressWindow() {
    setWindowTitle("Orvel");
    setModal(true);
    auto* layout = new QVBoxLayout(this);
    auto* heading = new QLabel("Taking over the register of the older installation (invent.mdb)", this);
    lblTable = new QLabel(this);
    prgTables = new QProgressBar(this);
    prgTables->setMinimumWidth(360);
    layout->addWidget(heading);
    layout->addWidget(lblTable);
    layout->addWidget(prgTables);
}

ImportObserver ImportProgressWindow::Observer() {
    ImportObserver observer;
    observer.tableStarting = [this](const QString& table, int done, int total) {
        prgTables->setRange(0, total);
        prgTables->setValue(done);
        lblTable->setText(QString("Table %1 (%2 of %3 done)").arg(table).arg(done).arg(total));
        if (!isVisible())
            show();
        QCoreApplication::processEvents();
    };
    observer.tableDone = [this](const QString& table, long long) {
        prgTables->setValue(prgTables->value() + 1);
        lblTable->setText(
            QString("Table %1 (%2 of %3 done)").arg(table).arg(prgTables->value()).arg(prgTables->maximum()));
        QCoreApplication::processEvents();
    };
    observer.rowsWritten = [](long long) { QCoreApplication::processEvents(); };
    return observer;
}
