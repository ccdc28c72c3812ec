#include "HomeFolder.h"

#include <QDir>
#include <QStandardPaths>

namespace {
QString g_home;
}

QString ResolveHomeFolder(const QString& homeOption, const QString& programFolder) {
    if (!homeOption.isEmpty())
        return QDir(homeOption).absolutePath();
    const QString env = qEnvironmentVariable("ORVEL_HOME");
    if (!env.isEmpty())
        return QDir(env).absolutePath();
    if (!programFolder.isEmpty() && QDir(programFolder).exists("Databases"))
        return QDir(programFolder).absolutePath();
    return QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation);
}

void SetHomeFolder(const QString& home) {
    g_home = home;
}

QString HomeFolder() {
    return g_home;
}

QString DataPathOf(const QString& home) {
    return QDir(home).absolutePath() + "/Databases/";
}
