#pragma once
// The small window a desktop start shows while it takes an older installation's file over: the table in hand and
// the tables done of all.

#include "OlderImport.h"

#include <QDialog>

class QLabel;
class QProgressBar;

class ImportProgressWindow : public QDialog {
    Q_OBJECT
public:
    ImportProgressWindow();
    // The observer that shows the window at the first table and keeps it current.
    ImportObserver Observer();

    QLabel* lblTable;
    QProgressBar* prgTables;
};
