// The book-in list and one item statement on generated ledgers of 10 000 and 100 000 rows over twenty years,
// 1 000 book-outs open, against the floor: SQLite's own statement of the same look-up.
#include "BenchSupport.h"
#include "Database.h"
#include "EquipmentLedger.h"
#include "FlexGrid.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "StoreStartup.h"
#include "frmEquipmentBookedout.h"

#include <QApplication>
#include <QDir>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <algorithm>
#include <ctime>
#include <sqlite3.h>

namespace {

// Items, then book-outs with their book-ins: all but `open` book-outs come back whole and are closed.
void Generate(int rows, int open) {
    QRandomGenerator random(11);
    db().Execute("insert into toerkat ([desc]) values ('Tools')");
    const int items = 200;
    db().BeginTrans();
    for (int i = 1; i <= items; ++i) {
        db().Execute("insert into toerinv (tid, [desc], hoeveel, kitem) values (1, 'Item " + QString::number(i) +
                     "', 1000, 1)");
        db().Execute("insert into equipmenttrans (sortdate, trdate, equipid, actionid, trdesc, trqty, tramount, "
                     "trclosed, stocktakeid) values ('1980/01/01', '2005/01/01', " +
                     QString::number(i) + ", 0, 'Stock Take On', 1000, 0, 0, 0)");
    }
    const QDate first(2005, 1, 1);
    int pairs = (rows - items - open) / 2;
    long long id = items;
    // Every stride-th book-out stays open, spread over the twenty years, until `open` of them are.
    const int bookOuts = pairs + open;
    const int stride = open > 0 ? std::max(1, bookOuts / open) : 0;
    for (int n = 0; n < bookOuts; ++n) {
        const int item = random.bounded(1, items + 1);
        const QString day = first.addDays(n * 7300LL / bookOuts).toString("''yyyy/MM/dd''");
        const bool stays = open > 0 && n % stride == 0;
        db().Execute("insert into equipmenttrans (sortdate, trdate, equipid, actionid, trdesc, trqty, tramount, "
                     "trclosed, stocktakeid) values (" +
                     day + "," + day + "," + QString::number(item) + ", 2, 'Person', -2, 0, " + (stays ? "0" : "-1") +
                     ", 0)");
        const long long out = ++id;
        if (stays) {
            --open;
            continue;
        }
        db().Execute("insert into equipmenttrans (sortdate, trdate, equipid, actionid, trdesc, trqty, tramount, "
                     "trclosed, stocktakeid, bookoutid) values (" +
                     day + "," + day + "," + QString::number(item) + ", 1, 'Person', 2, 0, -1, 0, " +
                     QString::number(out) + ")");
        ++id;
    }
    db().CommitTrans();
}

double FloorList() {
    return bench::Seconds([] {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(db().handle(),
                           "select a.id, a.equipid, a.trdate, a.trdesc, a.trqty + coalesce((select sum(b.trqty) from "
                           "equipmenttrans b where b.actionid = 1 and b.bookoutid = a.id), 0) from equipmenttrans a "
                           "join toerinv c on c.iid = a.equipid where a.actionid = 2 and a.trclosed = 0 order by "
                           "c.[desc], a.id",
                           -1, &s, nullptr);
        while (sqlite3_step(s) == SQLITE_ROW) {
        }
        sqlite3_finalize(s);
    });
}

double FloorStatement() {
    return bench::Seconds([] {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(
            db().handle(),
            "select trdate, actionid, trdesc, trqty from equipmenttrans where equipid = 7 order by trdate", -1, &s,
            nullptr);
        while (sqlite3_step(s) == SQLITE_ROW) {
        }
        sqlite3_finalize(s);
    });
}

} // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    QString text = bench::BuildKind();
    try {
        for (int rows : {10000, 100000}) {
            QTemporaryDir dir;
            QDir(dir.path()).mkpath("Databases");
            Session session;
            session.home = dir.path();
            SetHomeFolder(dir.path());
            SetCurrentSession(&session);
            OpenSessionStore(session);
            RunStartupSteps(*session.db);
            Generate(rows, 1000);
            int listed = 0;
            // The processor time beside the elapsed time: on a machine shared with other work the two differ.
            const std::clock_t cpuBefore = std::clock();
            const double list = bench::Seconds([&] {
                frmEquipmentBookedout screen;
                listed = screen.flg->rowCount() - 1;
            });
            const double listCpu = static_cast<double>(std::clock() - cpuBefore) / CLOCKS_PER_SEC;
            const double statement = bench::Seconds([] {
                auto rs = db().OpenRecordset(ItemStatementSql(7, QDate(2005, 1, 1), QDate(2024, 12, 31)));
                for (; !rs->Eof(); rs->MoveNext()) {
                }
            });
            const double floorList = FloorList();
            const double floorStatement = FloorStatement();
            text += QString("ledger %1 rows, %2 open listed: book-in list %3 s, processor %9 s (floor %4 s, ratio %5); "
                            "item statement %6 s (floor %7 s, ratio %8)\n")
                        .arg(rows)
                        .arg(listed)
                        .arg(list, 0, 'f', 3)
                        .arg(floorList, 0, 'f', 4)
                        .arg(list / floorList, 0, 'f', 1)
                        .arg(statement, 0, 'f', 3)
                        .arg(floorStatement, 0, 'f', 4)
                        .arg(statement / floorStatement, 0, 'f', 1)
                        .arg(listCpu, 0, 'f', 3);
            session.db.reset();
            SetCurrentSession(nullptr);
        }
    } catch (const NumberedError& e) {
        return bench::Failed(e);
    }
    return bench::Report("equipment-bench.txt", text);
}
