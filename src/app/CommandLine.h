#pragma once
// The program's command line: no subcommand starts the desktop program; query, check and recalc are
// batch commands over the same home folder.

#include <QString>
#include <QStringList>

struct CommandLine {
    QString home;       // resolved home folder
    QString subcommand; // empty for the desktop program
    QStringList args;   // what follows the subcommand
    QString error;      // set when the words could not be read
};

CommandLine ParseCommandLine(const QStringList& arguments, const QString& programFolder);

// Each returns the process's exit code. Output goes to stdout, errors to stderr.
int RunQueryCommand(const CommandLine& cl);
int RunCheckCommand(const CommandLine& cl);
int RunRecalcCommand(const CommandLine& cl);
int RunImportCommand(const CommandLine& cl); // import FILE.mdb [--replace]
int RunDemoCommand(const CommandLine& cl);   // demo [--size small|large] [--seed N] [--today yyyy/mm/dd]
int RunBackupCommand(const CommandLine& cl);
int RunDesktop(const CommandLine& cl, int argc, char** argv);
int RunReportCommand(const CommandLine& cl, int argc, char** argv);
