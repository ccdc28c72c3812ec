// Times Recalc against its floor: one SQLite statement that aggregates the fuel rows (count, and sums of the
// readings and litres), run straight on the store in the same run. Also the row-by-row walk of the same rules
// (first and settled runs), and `orvel recalc` as a whole process against `orvel query` of the same aggregate.
//
//   orvel_bench ORVEL_BINARY [figures-file] [fuel-rows ...]

#include "BenchSupport.h"

#include "Database.h"
#include "Recalc.h"
#include "RecalcReference.h"
#include "Session.h"
#include "StoreFacts.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <sqlite3.h>

namespace {

const char* const kAggregate = "select count(*), sum(kmread), sum(litres) from vecfuel";

volatile double g_sink = 0;

// The floor: the aggregate as SQLite runs it, prepared and stepped directly.
void Aggregate(Database& store) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(store.handle(), kAggregate, -1, &s, nullptr) != SQLITE_OK)
        throw DbError(3000, "prepare failed");
    if (sqlite3_step(s) == SQLITE_ROW)
        g_sink = g_sink + sqlite3_column_double(s, 1) + sqlite3_column_double(s, 2);
    sqlite3_finalize(s);
}

double Median(int runs, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(bench::Seconds(work));
    return bench::Median(times);
}

double MedianProcess(const QString& program, const QStringList& args, int runs) {
    return Median(runs, [&] {
        QProcess p;
        p.start(program, args);
        if (!p.waitForFinished(300000) || p.exitCode() != 0)
            throw DbError(3000, "failed: " + program + " " + args.join(' '));
    });
}

QString OneSize(const QString& orvel, int fuelRows) {
    QTemporaryDir fastHome;
    QTemporaryDir walkHome;
    RegisterShape shape;
    shape.fuelRows = fuelRows;
    shape.vehicles = std::max(10, fuelRows / 333);
    shape.tanks = 6;
    shape.purchasesPerTank = std::max(10, fuelRows / 2000);
    shape.stockTakesPerTank = 12;
    shape.equalReadingPercent = 5;
    shape.issuesOutOfDateOrder = true;
    shape.unsettledPercent = 10;
    shape.seed = 2024;

    RegisterCounts counts;
    {
        Session s;
        s.home = fastHome.path();
        OpenSessionStore(s);
        counts = GenerateRegister(*s.db, shape);
    }
    // ORVEL_BENCH_KEEP=DIR keeps a copy of each generated register there, for looking at it by hand.
    if (const QString keep = qEnvironmentVariable("ORVEL_BENCH_KEEP"); !keep.isEmpty()) {
        QDir(keep).mkpath(QString("%1/Databases").arg(fuelRows));
        QFile::copy(fastHome.path() + "/Databases/invent.db",
                    QString("%1/%2/Databases/invent.db").arg(keep).arg(fuelRows));
    }
    QDir(walkHome.path()).mkpath("Databases");
    if (!QFile::copy(fastHome.path() + "/Databases/invent.db", walkHome.path() + "/Databases/invent.db"))
        throw DbError(3024, "could not copy the generated store");
    auto fast = Database::Open(fastHome.path() + "/Databases/invent.db", false);
    auto walk = Database::Open(walkHome.path() + "/Databases/invent.db", false);

    RecalcSummary first;
    const double fastFirst = bench::Seconds([&] { Recalc(*fast, nullptr, false, &first); });
    const double walkFirst = bench::Seconds([&] { RecalcRowByRow(*walk, nullptr, false); });
    // Settle (stock takes stored out of date order take more than one run), then time settled runs.
    RecalcSummary settled;
    for (int i = 0; i < 20; ++i) {
        Recalc(*fast, nullptr, false, &settled);
        if (settled.valuesWritten == 0)
            break;
    }
    const int runs = 7;
    const double floor = Median(runs, [&] { Aggregate(*fast); });
    // A full pass over a settled register: a connection of its own, with no log of what was touched, after a
    // change elsewhere in the store (one that alters no figure), reads everything again. Then the store left
    // unchanged since the last run.
    std::vector<double> full;
    for (int i = 0; i < runs; ++i) {
        auto again = Database::Open(fastHome.path() + "/Databases/invent.db", false);
        again->Execute("insert into owner (Name) values ('bench')");
        full.push_back(bench::Seconds([&] { Recalc(*again, nullptr, false, &settled); }));
    }
    const double fastSettled = bench::Median(full);
    const double fastUnchanged = Median(runs, [&] { Recalc(*fast, nullptr, false, &settled); });
    const double walkSettled = bench::Seconds([&] { RecalcRowByRow(*walk, nullptr, false); });
    fast.reset();
    walk.reset();
    const QStringList home{"--home", fastHome.path()};
    const double queryProcess = MedianProcess(orvel, home + QStringList{"query", kAggregate}, 5);
    const double recalcProcess = MedianProcess(orvel, home + QStringList{"recalc"}, 5);
    // A process on a file changed since the last run (the facts beside it dropped): a full pass.
    std::vector<double> changed;
    for (int i = 0; i < 5; ++i) {
        QFile::remove(StoreFactsFile(fastHome.path() + "/Databases/invent.db"));
        changed.push_back(MedianProcess(orvel, home + QStringList{"recalc"}, 1));
    }
    const double recalcProcessChanged = bench::Median(changed);

    QString out;
    QTextStream t(&out);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(4);
    t << "fuel rows " << counts.fuelRows << ", vehicles " << counts.vehicles << ", tanks " << counts.tanks
      << ", purchases " << counts.purchases << ", stock takes " << counts.stockTakes << "\n";
    t << "  floor: \"" << kAggregate << "\"  " << floor << " s\n";
    t << "  settled Recalc, full pass      " << fastSettled << " s  (" << fastSettled / floor << " x floor)\n";
    t << "  settled, store unchanged since " << fastUnchanged << " s  (" << fastUnchanged / floor << " x floor)\n";
    t << "  first Recalc                   " << fastFirst << " s  (" << first.valuesWritten << " values rewritten)\n";
    t << "  row by row, first              " << walkFirst << " s  (" << walkFirst / fastFirst << " x first Recalc)\n";
    t << "  row by row, settled            " << walkSettled << " s  (" << walkSettled / fastSettled
      << " x settled Recalc)\n";
    t << "  process: orvel query (aggregate) " << queryProcess << " s, orvel recalc " << recalcProcess << " s  ("
      << recalcProcess / queryProcess << " x); on a changed file " << recalcProcessChanged << " s  ("
      << recalcProcessChanged / queryProcess << " x)\n";
    return out;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    if (args.size() < 2) {
        std::fprintf(stderr, "usage: orvel_bench ORVEL_BINARY [figures-file] [fuel-rows ...]\n");
        return 2;
    }
    // orvel_bench --profile STORE N: N full passes of Recalc on a kept store, for a profiler.
    if (args[1] == "--profile" && args.size() > 3) {
        const int runs = args[3].toInt();
        RecalcSummary summary;
        double seconds = 0;
        for (int i = 0; i < runs; ++i) {
            auto store = Database::Open(args[2], false); // its first run does everything
            store->Execute("insert into owner (Name) values ('bench')");
            seconds += bench::Seconds([&] { Recalc(*store, nullptr, false, &summary); });
        }
        std::printf("%d runs, %.4f s each, %d values rewritten by the last\n", runs, seconds / runs,
                    summary.valuesWritten);
        return 0;
    }
    const QString orvel = args[1];
    const QString figures = args.size() > 2 ? args[2] : QStringLiteral("/tmp/bench_figures.txt");
    QList<int> sizes;
    for (int i = 3; i < args.size(); ++i)
        sizes << args[i].toInt();
    if (sizes.isEmpty())
        sizes = {10000, 100000};

    QString all = bench::BuildKind();
    std::printf("%s", qPrintable(all));
    for (int rows : sizes) {
        QString block;
        try {
            block = OneSize(orvel, rows);
        } catch (const DbError& e) {
            std::fprintf(stderr, "error %d: %s\n", e.number(), qPrintable(e.description()));
            return 1;
        }
        std::printf("%s", qPrintable(block));
        std::fflush(stdout);
        all += block;
    }
    bench::WriteFigures(figures, all);
    return 0;
}
