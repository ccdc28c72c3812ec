// Times the desktop start (offscreen, from an empty window to the vehicle list shown) on a new home and on
// registers of 1 000 and 100 000 fuel rows, and the batch commands `check` and `query "select 1"` as whole
// processes on the large register.
//
//   orvel_startup_bench ORVEL_BINARY [figures-file] [--keep DIR]
//
// With --keep the generated homes stay in DIR (new, small, large) for timing by hand.

#include "BenchSupport.h"

#include "Registration.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "StoreFacts.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"
#include "frmMain.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <memory>

namespace {

void MakeRegister(const QString& home, int fuelRows, int vehicles) {
    Session s;
    s.home = home;
    OpenSessionStore(s);
    RunSchemaSteps(*s.db);
    if (fuelRows == 0)
        return;
    RegisterShape shape;
    shape.fuelRows = fuelRows;
    shape.vehicles = vehicles;
    shape.tanks = 6;
    shape.purchasesPerTank = std::max(10, fuelRows / 2000);
    shape.stockTakesPerTank = 12;
    shape.seed = 2024;
    GenerateRegister(*s.db, shape);
}

// One start: the main window made, its start-up run, until the vehicle list is on screen.
double TimeOneStart(const QString& home) {
    Session s;
    s.home = home;
    SetCurrentSession(&s);
    double seconds = 0;
    {
        std::unique_ptr<frmMain> window;
        seconds = bench::Seconds([&] {
            window = std::make_unique<frmMain>();
            if (!window->Startup())
                throw DbError(3000, "the start failed on " + home);
            window->show();
            while (!IsFormVisible("frmVoerk"))
                QApplication::processEvents();
            QApplication::processEvents();
        });
        UnloadForm("frmVoerk");
    }
    SetCurrentSession(nullptr);
    return seconds;
}

// A start in ordinary use follows a run whose exit repair rewrote the file, so the start-up steps run in full:
// the facts kept beside the store are dropped before each such start. An unchanged file is also timed.
double MedianStart(const QString& home, bool freshEachTime, int runs, bool fileChanged = true) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        if (freshEachTime) {
            QTemporaryDir fresh;
            times.push_back(TimeOneStart(fresh.path()));
            continue;
        }
        if (fileChanged)
            QFile::remove(StoreFactsFile(home + "/Databases/invent.db"));
        times.push_back(TimeOneStart(home));
    }
    return bench::Median(times);
}

double MedianProcess(const QString& program, const QStringList& args, int runs) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(bench::Seconds([&] {
            QProcess p;
            p.start(program, args);
            if (!p.waitForFinished(120000) || p.exitCode() != 0)
                throw DbError(3000, "failed: " + program + " " + args.join(' ') + "\n" +
                                        QString::fromLocal8Bit(p.readAllStandardError()));
        }));
    return bench::Median(times);
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ORVEL_NO_SHOW", "1");
    QApplication app(argc, argv);
    QStringList args = app.arguments();
    QString keep;
    if (const qsizetype at = args.indexOf("--keep"); at > 0 && at + 1 < args.size()) {
        keep = args[at + 1];
        args.remove(at, 2);
    }
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: orvel_startup_bench ORVEL_BINARY [figures-file] [--keep DIR]\n");
        return 2;
    }
    const QString orvel = args[1];
    const QString figures = args.size() > 2 ? args[2] : QStringLiteral("/tmp/startup_figures.txt");
    RegisterAllScreens();

    QTemporaryDir temp;
    const QString root = keep.isEmpty() ? temp.path() : keep;
    const QString small = root + "/small", large = root + "/large";
    QDir().mkpath(root);
    QString out;
    QTextStream t(&out);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(3);
    try {
        MakeRegister(small, 1000, 25);
        MakeRegister(large, 100000, 300);
        if (!keep.isEmpty())
            MakeRegister(root + "/new", 0, 0);

        const int runs = 5;
        const double fresh = MedianStart(QString(), true, runs);
        const double smallStart = MedianStart(small, false, runs);
        const double largeStart = MedianStart(large, false, runs);
        const double largeUnchanged = MedianStart(large, false, runs, false);
        t << bench::BuildKind() << "start to the vehicle list shown (median of " << runs << "):\n";
        t << "  new home            " << fresh << " s\n";
        t << "  1 000 fuel rows     " << smallStart << " s  (" << smallStart / fresh << " x new home)\n";
        t << "  100 000 fuel rows   " << largeStart << " s  (" << largeStart / fresh << " x new home)\n";
        t << "  100 000 fuel rows, file unchanged since the last start " << largeUnchanged << " s\n";

        const QStringList home{"--home", large};
        const double select1 = MedianProcess(orvel, home + QStringList{"query", "select 1"}, runs);
        QFile::remove(StoreFactsFile(large + "/Databases/invent.db"));
        const double firstCheck = MedianProcess(orvel, home + QStringList{"check"}, 1);
        const double check = MedianProcess(orvel, home + QStringList{"check"}, runs);
        t << "processes on 100 000 fuel rows (median of " << runs << "):\n";
        t << "  orvel query \"select 1\"  " << select1 << " s\n";
        t << "  orvel check, first      " << firstCheck << " s  (" << firstCheck / select1 << " x query)\n";
        t << "  orvel check, again      " << check << " s  (" << check / select1 << " x query)\n";
    } catch (const NumberedError& e) {
        return bench::Failed(e);
    }
    return bench::Report(figures, out);
}
