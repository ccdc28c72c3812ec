#pragma once
// Where the program keeps Databases/ and Reports/: --home DIR, else ORVEL_HOME, else the program's own
// folder when it holds a Databases folder (a portable install), else the per-user data folder.

#include <QString>

QString ResolveHomeFolder(const QString& homeOption, const QString& programFolder);

// The home folder of this run, set once at start.
void SetHomeFolder(const QString& home);
QString HomeFolder();
QString DataPathOf(const QString& home); // <home>/Databases/
