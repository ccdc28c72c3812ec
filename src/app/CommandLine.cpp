#include "CommandLine.h"

#include "HomeFolder.h"

CommandLine ParseCommandLine(const QStringList& arguments, const QString& programFolder) {
    CommandLine cl;
    QString homeOption;
    for (int i = 1; i < arguments.size(); ++i) {
        const QString& a = arguments[i];
        if (cl.subcommand.isEmpty() && a == "--home") {
            if (i + 1 >= arguments.size()) {
                cl.error = "--home needs a folder";
                return cl;
            }
            homeOption = arguments[++i];
        } else if (cl.subcommand.isEmpty() && a.startsWith("--home=")) {
            homeOption = a.mid(7);
        } else if (cl.subcommand.isEmpty() && !a.startsWith("-")) {
            cl.subcommand = a;
        } else if (!cl.subcommand.isEmpty()) {
            cl.args << a;
        } else if (a.startsWith("-platform") || a.startsWith("-style")) {
            // Qt's own options are left for QApplication.
            if (i + 1 < arguments.size() && !arguments[i + 1].startsWith("-"))
                ++i;
        } else {
            cl.error = "unknown option " + a;
            return cl;
        }
    }
    cl.home = ResolveHomeFolder(homeOption, programFolder);
    return cl;
}
