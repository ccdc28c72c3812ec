#include "CommandLine.h"

#include "HomeFolder.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <csignal>
#include <cstdio>
#include <sys/stat.h>

int main(int argc, char** argv) {
    // Everything the program writes (store, journal, workbooks, backups) holds people's names: owner only.
    umask(077);
    // A write past what the disk (or the user's limit) allows fails as a write does, with a message, instead of
    // ending the program unseen.
    signal(SIGXFSZ, SIG_IGN);
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const QString programFolder = QFileInfo(arguments.value(0)).absolutePath();
    CommandLine cl = ParseCommandLine(arguments, programFolder);
    if (!cl.error.isEmpty()) {
        std::fprintf(stderr,
                     "orvel: %s\nusage: orvel [--home DIR] [query STATEMENT | check | recalc | import FILE.mdb "
                     "[--replace] | demo | report NAME | backup [--to FOLDER]]\n",
                     qPrintable(cl.error));
        return 2;
    }
    SetHomeFolder(cl.home);
    if (cl.subcommand.isEmpty())
        return RunDesktop(cl, argc, argv);
    if (cl.subcommand == "report")
        return RunReportCommand(cl, argc, argv);

    QCoreApplication app(argc, argv);
    if (cl.subcommand == "query")
        return RunQueryCommand(cl);
    if (cl.subcommand == "check")
        return RunCheckCommand(cl);
    if (cl.subcommand == "recalc")
        return RunRecalcCommand(cl);
    if (cl.subcommand == "import")
        return RunImportCommand(cl);
    if (cl.subcommand == "demo")
        return RunDemoCommand(cl);
    if (cl.subcommand == "backup")
        return RunBackupCommand(cl);
    std::fprintf(stderr, "orvel: unknown command %s\n", qPrintable(cl.subcommand));
    return 2;
}
