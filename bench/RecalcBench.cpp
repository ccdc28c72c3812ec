// Times the recalculation against the row-by-row walk and against one plain scan of the fuel rows, on
// synthetic registers of 10 000 and 100 000 fuel rows. Prints the times and their ratios, and writes them
// to the file named by the first argument (default /tmp/bench_figures.txt).
//
//   orvel_bench [figures-file] [fuel-rows ...]

#include "Database.h"
#include "MessageService.h"
#include "Recalc.h"
#include "RecalcReference.h"
#include "Session.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <functional>

namespace {

double Seconds(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

// One plain scan: every fuel row read, every field touched.
void PlainScan(Database& store) {
    auto rs = store.OpenRecordset("SELECT * FROM VecFuel", RecordsetType::Snapshot);
    double sink = 0;
    for (; !rs->Eof(); rs->MoveNext())
        for (int i = 0; i < rs->FieldCount(); ++i)
            sink += rs->Field(i).isNull() ? 0 : 1;
    if (sink < 0)
        std::printf("impossible\n");
}

QString OneSize(int fuelRows) {
    QTemporaryDir fastHome;
    QTemporaryDir walkHome;
    RegisterShape shape;
    shape.fuelRows = fuelRows;
    shape.vehicles = std::max(10, fuelRows / 200);
    shape.tanks = 6;
    shape.purchasesPerTank = std::max(10, fuelRows / 2000);
    shape.stockTakesPerTank = 12;
    shape.equalReadingPercent = 5;
    shape.issuesOutOfDateOrder = true;
    shape.unsettledPercent = 10;
    shape.seed = 2024;

    RegisterCounts counts;
    double generate = 0;
    {
        Session s;
        s.home = fastHome.path();
        OpenSessionStore(s);
        generate = Seconds([&] { counts = GenerateRegister(*s.db, shape); });
    }
    QDir(walkHome.path()).mkpath("Databases");
    if (!QFile::copy(fastHome.path() + "/Databases/invent.db", walkHome.path() + "/Databases/invent.db"))
        throw DbError(3024, "could not copy the generated store");
    auto fast = Database::Open(fastHome.path() + "/Databases/invent.db", false);
    auto walk = Database::Open(walkHome.path() + "/Databases/invent.db", false);

    const double scan = Seconds([&] { PlainScan(*fast); });
    RecalcSummary first;
    const double fastFirst = Seconds([&] { Recalc(*fast, nullptr, false, &first); });
    const double walkFirst = Seconds([&] { RecalcRowByRow(*walk, nullptr, false); });
    // Settle both (stock takes stored out of date order take more than one run), then time a settled run.
    RecalcSummary settled;
    for (int i = 0; i < 20; ++i) {
        Recalc(*fast, nullptr, false, &settled);
        if (settled.valuesWritten == 0)
            break;
    }
    const double fastSettled = Seconds([&] { Recalc(*fast, nullptr, false, &settled); });
    const double walkSettled = Seconds([&] { RecalcRowByRow(*walk, nullptr, false); });

    QString out;
    QTextStream t(&out);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(3);
    t << "fuel rows " << counts.fuelRows << ", vehicles " << counts.vehicles << ", tanks " << counts.tanks
      << ", purchases " << counts.purchases << ", stock takes " << counts.stockTakes << " (generated in " << generate
      << " s)\n";
    t << "  plain scan of VecFuel          " << scan << " s\n";
    t << "  first run:   Recalc " << fastFirst << " s (" << first.valuesWritten << " values rewritten), row by row "
      << walkFirst << " s, ratio row-by-row/Recalc " << walkFirst / fastFirst << "\n";
    t << "  settled run: Recalc " << fastSettled << " s (" << settled.valuesWritten << " values rewritten), row by row "
      << walkSettled << " s, ratio row-by-row/Recalc " << walkSettled / fastSettled << "\n";
    t << "  settled Recalc / plain scan    " << fastSettled / scan << "\n";
    return out;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString figures = args.size() > 1 ? args[1] : QStringLiteral("/tmp/bench_figures.txt");
    QList<int> sizes;
    for (int i = 2; i < args.size(); ++i)
        sizes << args[i].toInt();
    if (sizes.isEmpty())
        sizes = {10000, 100000};

    QString all;
#ifdef NDEBUG
    all += "build: optimised\n";
#else
    all += "build: debug (unoptimised)\n";
#endif
    for (int rows : sizes) {
        QString block;
        try {
            block = OneSize(rows);
        } catch (const DbError& e) {
            std::fprintf(stderr, "error %d: %s\n", e.number(), qPrintable(e.description()));
            return 1;
        }
        std::printf("%s", qPrintable(block));
        std::fflush(stdout);
        all += block;
    }
    QFile file(figures);
    if (file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        file.write(all.toUtf8());
    else
        std::fprintf(stderr, "cannot write %s\n", qPrintable(figures));
    return 0;
}
