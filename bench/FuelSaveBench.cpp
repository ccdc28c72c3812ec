// Times the fuel capture screen as the office uses it, on registers of two sizes: the click on "&Save" of an
// issue (vehicle and tank picked, pump, litres and reading typed) and the pick of the tank, each a median of
// several. The floor is SQLite's own insert of the same row, prepared and stepped on the same connection.
//
//   orvel_fuel_bench [figures-file] [fuel-rows ...]     (default 1000 and 100000)

#include "BenchSupport.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "HomeFolder.h"
#include "MessageService.h"
#include "Recalc.h"
#include "Session.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"
#include "Vb.h"
#include "frmFuel.h"

#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTextStream>
#include <cstdio>
#include <sqlite3.h>

namespace {

// Any box during a timed save means the capture was refused: the figures would be of the wrong work.
class FailingMessages : public MessageService {
public:
    MsgResult show(const QString& text, MsgButtons, MsgIcon, const QString&) override {
        throw DbError(3000, "unexpected message: " + text);
    }
};

struct Figures {
    double save = 0;
    double tankPick = 0;
    double floor = 0;
    double recalc = 0; // one pass over everything, as the first of a session; a save's two passes are narrowed
};

// The floor: the same row inserted by one prepared statement, straight on SQLite.
double InsertFloor(Database& store, int runs) {
    std::vector<double> times;
    for (int i = 0; i < runs; ++i) {
        times.push_back(bench::Seconds([&] {
            sqlite3_stmt* s = nullptr;
            const char* sql = "insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, RperL, "
                              "driverid, activityid, pumpreadprev, pumpreadcurr) "
                              "values (1, 1, '2026/01/01', 900000, 899900, 10, 20.5, 1, 1, 100, 110)";
            if (sqlite3_prepare_v2(store.handle(), sql, -1, &s, nullptr) != SQLITE_OK ||
                sqlite3_step(s) != SQLITE_DONE) {
                sqlite3_finalize(s);
                throw DbError(3000, "the floor insert failed");
            }
            sqlite3_finalize(s);
        }));
    }
    store.Execute("delete from VecFuel where KmRead = 900000");
    return bench::Median(times);
}

Figures OneSize(int fuelRows) {
    QTemporaryDir home;
    Session s;
    bench::StartStore(s, home.path());
    s.ClosedDate = QDateTime(QDate(2000, 1, 1), QTime(0, 0));
    RegisterShape shape;
    shape.fuelRows = fuelRows;
    shape.vehicles = std::max(10, fuelRows / 333);
    shape.tanks = 6;
    shape.purchasesPerTank = std::max(10, fuelRows / 2000);
    shape.seed = 2024;
    GenerateRegister(*s.db, shape);

    Figures out;
    {
        frmFuel f;
        f.show();
        // The first category that holds vehicles, its first vehicle, the first tank.
        for (int i = 0; i < f.Combo2->count() && f.Combo3->count() == 0; ++i)
            f.Combo2->setCurrentIndex(i);
        if (f.Combo3->count() == 0 || f.Combo7->count() == 0)
            throw DbError(3000, "the register has no vehicle or no tank to pick");
        f.Combo3->setCurrentIndex(0);
        f.Combo7->setCurrentIndex(0); // the first pick settles the register

        const int runs = 7;
        std::vector<double> saves, picks;
        for (int i = 0; i < runs; ++i) {
            if (f.Combo3->currentIndex() < 0)
                f.Combo3->setCurrentIndex(0);
            const double previous = vb::Val(f.txtPrKm->text());
            const double pump = vb::Val(f.txtPumpPrev->text());
            f.txtPumpCurr->setText(QString::number(pump + 10, 'f', 2));
            f.txtLiter->setText("10");
            f.txtKm->setText(QString::number(previous + 100, 'f', 0));
            saves.push_back(bench::Seconds([&] { f.lblcmd[0]->click(); }));
            // The pick of the tank after a save, whose last recalculation left the register settled.
            f.Combo7->setCurrentIndex(-1);
            picks.push_back(bench::Seconds([&] { f.Combo7->setCurrentIndex(0); }));
        }
        out.save = bench::Median(saves);
        out.tankPick = bench::Median(picks);
    }
    out.floor = InsertFloor(*s.db, 7);
    std::vector<double> passes;
    for (int i = 0; i < 5; ++i) {
        // A connection of its own has no log of what was touched: its first run does every vehicle and tank.
        auto fresh = Database::Open(s.db->Path(), false);
        fresh->Execute("insert into owner (Name) values ('bench')");
        RecalcSummary summary;
        passes.push_back(bench::Seconds([&] { Recalc(*fresh, nullptr, false, &summary); }));
        if (summary.narrowed)
            throw DbError(3000, "the pass over everything was narrowed");
    }
    out.recalc = bench::Median(passes);
    SetCurrentSession(nullptr);
    return out;
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("ORVEL_NO_SHOW", "1");
    QApplication app(argc, argv);
    FailingMessages messages;
    MessageService::setInstance(&messages);
    const QStringList args = app.arguments();
    const QString file = args.size() > 1 ? args[1] : QStringLiteral("/tmp/fuel_save_figures.txt");
    QList<int> sizes;
    for (int i = 2; i < args.size(); ++i)
        sizes << args[i].toInt();
    if (sizes.isEmpty())
        sizes = {1000, 100000};

    QString text;
    QTextStream t(&text);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(1);
    t << bench::BuildKind();
    t << "fuel rows | save ms | floor insert ms | save / floor | tank pick ms | recalc full pass ms\n";
    try {
        std::vector<Figures> all;
        for (int rows : sizes) {
            const Figures f = OneSize(rows);
            all.push_back(f);
            t << rows << " | " << f.save * 1000 << " | ";
            t.setRealNumberPrecision(3);
            t << f.floor * 1000;
            t.setRealNumberPrecision(1);
            t << " | " << f.save / f.floor << " | " << f.tankPick * 1000 << " | " << f.recalc * 1000 << "\n";
        }
        if (all.size() > 1) {
            t.setRealNumberPrecision(2);
            t << "save at " << sizes.last() << " rows / save at " << sizes.first()
              << " rows: " << all.back().save / all.front().save << "\n";
        }
    } catch (const NumberedError& e) {
        MessageService::setInstance(nullptr);
        return bench::Failed(e);
    }
    MessageService::setInstance(nullptr);
    return bench::Report(file, text);
}
