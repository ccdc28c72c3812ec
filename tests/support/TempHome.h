#pragma once
// A temporary home folder with Databases/ and Reports/, removed when the test ends.

#include <QDir>
#include <QTemporaryDir>

class TempHome {
public:
    TempHome() {
        QDir(m_dir.path()).mkpath("Databases");
        QDir(m_dir.path()).mkpath("Reports");
    }
    QString path() const { return m_dir.path(); }
    QString dataPath() const { return m_dir.path() + "/Databases/"; }
    QString storeFile() const { return dataPath() + "invent.db"; }

private:
    QTemporaryDir m_dir;
};
