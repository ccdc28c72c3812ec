// Reads every field of every row of "SELECT * FROM VecFuel" through each kind of recordset, and the same rows
// straight from SQLite (sqlite3_step and sqlite3_column_*) in the same run, on a register of 100 000 fuel rows.
// Also opens a table-type recordset on an index and seeks one key, as the screens do for a single row.
//
//   orvel_recordset_bench [figures-file] [fuel-rows]

#include "BenchSupport.h"

#include "Database.h"
#include "Session.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"

#include <QCoreApplication>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <sqlite3.h>

namespace {

volatile double g_sink = 0; // keeps the reads from being optimised away

void RawRead(Database& store) {
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(store.handle(), "SELECT * FROM VecFuel", -1, &s, nullptr) != SQLITE_OK)
        throw DbError(3000, "prepare failed");
    double sink = 0;
    const int columns = sqlite3_column_count(s);
    while (sqlite3_step(s) == SQLITE_ROW) {
        for (int c = 0; c < columns; ++c) {
            switch (sqlite3_column_type(s, c)) {
            case SQLITE_INTEGER:
                sink += static_cast<double>(sqlite3_column_int64(s, c));
                break;
            case SQLITE_FLOAT:
                sink += sqlite3_column_double(s, c);
                break;
            case SQLITE_TEXT:
                sink += sqlite3_column_bytes(s, c) + (sqlite3_column_text(s, c) ? 1 : 0);
                break;
            default:
                break;
            }
        }
    }
    sqlite3_finalize(s);
    g_sink = g_sink + sink;
}

void RecordsetRead(Database& store, RecordsetType type, const QString& source) {
    auto rs = store.OpenRecordset(source, type);
    double sink = 0;
    const int fields = rs->FieldCount();
    for (; !rs->Eof(); rs->MoveNext())
        for (int i = 0; i < fields; ++i)
            sink += rs->Field(i).isNull() ? 0 : 1;
    g_sink = g_sink + sink;
}

double Best(int runs, const std::function<void()>& work) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i)
        times.push_back(bench::Seconds(work));
    return bench::Median(times);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString figures = args.size() > 1 ? args[1] : QStringLiteral("/tmp/recordset_figures.txt");
    const int fuelRows = args.size() > 2 ? args[2].toInt() : 100000;

    QTemporaryDir home;
    QString out;
    QTextStream t(&out);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(4);
    try {
        Session s;
        s.home = home.path();
        OpenSessionStore(s);
        RegisterShape shape;
        shape.fuelRows = fuelRows;
        shape.vehicles = 300;
        shape.tanks = 6;
        shape.seed = 2024;
        GenerateRegister(*s.db, shape);
        Database& store = *s.db;

        const int runs = 5;
        const double raw = Best(runs, [&] { RawRead(store); });
        const double snapshot =
            Best(runs, [&] { RecordsetRead(store, RecordsetType::Snapshot, "SELECT * FROM VecFuel"); });
        const double dynaset =
            Best(runs, [&] { RecordsetRead(store, RecordsetType::Dynaset, "SELECT * FROM VecFuel"); });
        const double table = Best(runs, [&] { RecordsetRead(store, RecordsetType::Table, "VecFuel"); });
        const double seek = Best(runs, [&] {
            auto rs = store.OpenRecordset("VecFuel", RecordsetType::Table);
            rs->SetIndex("FUELDEX2");
            rs->Seek("=", {Value(1)});
            g_sink = g_sink + (rs->NoMatch() ? 0 : 1);
        });
        const double oneRow = Best(runs, [&] {
            auto rs = store.OpenRecordset("SELECT * FROM VecFuel WHERE TransID = " + QString::number(fuelRows / 2),
                                          RecordsetType::Dynaset);
            g_sink = g_sink + (rs->Eof() ? 0 : 1);
        });
        t << bench::BuildKind() << "every field of every row of VecFuel, " << fuelRows << " rows (median of " << runs
          << "):\n";
        t << "  raw SQLite (step, column)   " << raw << " s\n";
        t << "  snapshot recordset          " << snapshot << " s  (" << snapshot / raw << " x raw)\n";
        t << "  dynaset recordset           " << dynaset << " s  (" << dynaset / raw << " x raw)\n";
        t << "  table-type recordset        " << table << " s  (" << table / raw << " x raw)\n";
        t << "one row:\n";
        t << "  table type, index, Seek     " << seek << " s  (" << seek / raw << " x the raw scan)\n";
        t << "  dynaset of one row by key   " << oneRow << " s  (" << oneRow / raw << " x the raw scan)\n";
    } catch (const NumberedError& e) {
        return bench::Failed(e);
    }
    return bench::Report(figures, out);
}
