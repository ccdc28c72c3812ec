#pragma once
// A subcommand run in this process, with what it writes to standard output and error.
#include "CommandLine.h"

#include <QString>
#include <QStringList>
#include <gtest/gtest.h>

struct CommandRun {
    int exitCode = -1;
    QString out;
    QString err;
};

inline CommandRun RunCommand(const QString& home, const QString& subcommand, const QStringList& args = {}) {
    CommandLine cl;
    cl.home = home;
    cl.subcommand = subcommand;
    cl.args = args;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    int code = 2;
    if (subcommand == "import")
        code = RunImportCommand(cl);
    else if (subcommand == "query")
        code = RunQueryCommand(cl);
    else if (subcommand == "check")
        code = RunCheckCommand(cl);
    const QString out = QString::fromStdString(testing::internal::GetCapturedStdout());
    return {code, out, QString::fromStdString(testing::internal::GetCapturedStderr())};
}
