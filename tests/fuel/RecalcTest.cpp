// The recalculation: odometer chains, stock take book figures, tank balances, the error handler's message and
// retry, and the row-by-row walk as the yardstick on generated registers, whole and after single changes.

#include "Recalc.h"
#include "FuelTestStore.h"
#include "RecalcReference.h"
#include "SyntheticRegister.h"

#include <QFile>
#include <QProgressBar>

namespace {

class RecalcStore : public FuelStoreTest {
protected:
    Database& store() { return *m_session.db; }
    double previousKm(int fuelId) {
        return scalar("select previouskmread from VecFuel where TransID = " + QString::number(fuelId)).toDouble();
    }
    void issue(int id, int vehicle, int tank, const QString& date, const QString& km, const QString& litres) {
        exec(QString("insert into VecFuel (TransID, VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres) "
                     "values (%1, %2, %3, '%4', %5, 0, %6)")
                 .arg(id)
                 .arg(vehicle)
                 .arg(tank)
                 .arg(date, km, litres));
    }
    void purchase(int tank, const QString& date, const QString& litres) {
        exec(QString("insert into FuelPurchase (TankID, Datum, Liter, Cost, CostPerLiter) values (%1, '%2', '%3', "
                     "'0', '0')")
                 .arg(tank)
                 .arg(date, litres));
    }
    void stockTake(int id, int tank, const QString& date, const QString& measured) {
        exec(QString("insert into TankStock (transid, TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rede) "
                     "values (%1, %2, 'T', '%3', '%4', '0', '0', 'Measured')")
                 .arg(id)
                 .arg(tank)
                 .arg(date, measured));
    }
    // Book figure and difference of a stock take, as "book/lost".
    QString stockFigures(int id) {
        return scalar("select LiterLesing & '/' & Verlore from TankStock where transid = " + QString::number(id));
    }
};

TEST_F(RecalcStore, ChainsFollowReadingsFromTheCleanedKm) {
    // Km as an older file holds it: text, before the start's type repair has run on it.
    exec("alter table voertuig alter column km text(20)");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (1, 1, 'Comma', 'A1', '12,5')");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (2, 1, 'Blank', 'A2', '1 234')");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (3, 1, 'Plain', 'A3', 5000)");
    issue(10, 1, 1, "2024/01/01", "20", "10");
    issue(11, 2, 1, "2024/01/01", "1300", "10");
    // Dates play no part: the highest reading carries the earliest date and is stored first.
    issue(20, 3, 1, "2024/01/01", "5900", "10");
    issue(21, 3, 1, "2024/03/01", "5300", "10");
    issue(22, 3, 1, "2024/02/01", "5600", "10");

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_DOUBLE_EQ(previousKm(10), 12.5);
    EXPECT_DOUBLE_EQ(previousKm(11), 1.234);
    EXPECT_DOUBLE_EQ(previousKm(21), 5000);
    EXPECT_DOUBLE_EQ(previousKm(22), 5300);
    EXPECT_DOUBLE_EQ(previousKm(20), 5600);

    // A reading edited upward past a later one moves that row in the chain.
    exec("update VecFuel set KmRead = 6000 where TransID = 21");
    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_DOUBLE_EQ(previousKm(22), 5000);
    EXPECT_DOUBLE_EQ(previousKm(20), 5600);
    EXPECT_DOUBLE_EQ(previousKm(21), 5900);
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

TEST_F(RecalcStore, StockTakesCountOnlyWhatCameStrictlyBefore) {
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 5)");
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (2, 'EMPTY', 77)");
    purchase(1, "2024/01/01", "1000.00");
    purchase(1, "2024/02/01", "500.00");
    issue(1, 9, 1, "2024/01/15", "100", "200");
    issue(2, 9, 1, "2024/02/01", "200", "100");
    stockTake(1, 1, "2024/02/01", "780.00");
    stockTake(2, 1, "2024/02/01", "790.00"); // same date: neither sees the other
    stockTake(3, 1, "2024/03/01", "1150.00");

    RecalcSummary summary;
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_EQ(stockFigures(1), "800/-20");
    EXPECT_EQ(stockFigures(2), "800/-10");
    EXPECT_EQ(stockFigures(3), "1170/-20");
    EXPECT_DOUBLE_EQ(volume(1), 1500 - 300 - 50);
    EXPECT_DOUBLE_EQ(volume(2), 0);
    EXPECT_EQ(summary.stockTakes, 3);
    EXPECT_EQ(summary.tanks, 2);

    // Settled: a second run finds nothing to write.
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_EQ(summary.valuesWritten, 0);
}

TEST_F(RecalcStore, AnOlderStockTakeStoredLaterCountsWithItsOldValueUntilTheNextRun) {
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (3, 'PETROL', 0)");
    purchase(3, "2024/01/01", "1000");
    stockTake(1, 3, "2024/03/01", "900");
    stockTake(2, 3, "2024/02/01", "950");

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_EQ(stockFigures(1), "1000/-100");
    EXPECT_EQ(stockFigures(2), "1000/-50");
    EXPECT_DOUBLE_EQ(volume(3), 850);

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_EQ(stockFigures(1), "950/-50");
    EXPECT_DOUBLE_EQ(volume(3), 900);
}

// Worked by hand: Null and empty amounts count nothing (val of an empty text is 0), in every sum.
TEST_F(RecalcStore, NullAndEmptyAmountsCountNothing) {
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 5)");
    purchase(1, "2024/01/01", "1000");
    purchase(1, "2024/01/02", "");
    purchase(1, "2024/01/03", "abc");
    exec("insert into FuelPurchase (TankID, Datum, Liter) values (1, '2024/01/04', Null)");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (9, 1, 'A', 'B', '50')");
    issue(1, 9, 1, "2024/01/05", "100", "250");
    issue(2, 9, 1, "2024/01/06", "200", "Null");
    issue(3, 9, 1, "2024/01/07", "300", "''"); // a text that is no number is stored as Null
    stockTake(1, 1, "2024/02/01", "");
    exec("insert into TankStock (transid, TankID, Datum, LitersInTank) values (2, 1, '2024/03/01', '700')");

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_EQ(stockFigures(1), "750/-750");
    EXPECT_EQ(stockFigures(2), "0/700");
    EXPECT_DOUBLE_EQ(volume(1), 1000 - 250 - 750 + 700);
    EXPECT_DOUBLE_EQ(previousKm(1), 50);
    EXPECT_DOUBLE_EQ(previousKm(2), 100);
    EXPECT_DOUBLE_EQ(previousKm(3), 200);
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

TEST_F(RecalcStore, ShowsTheBarWhileWorkingAndTheDoneMessageOnlyWhenAsked) {
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (1, 1, 'A', 'B', 1)");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (2, 1, 'C', 'D', 1)");
    QWidget screen;
    auto* bar = new QProgressBar(&screen);
    bar->setValue(50);
    bar->hide();
    screen.show();
    QList<bool> barShownWithMessage;
    m_messages.onShow = [&](const ShownMessage&) { barShownWithMessage << bar->isVisible(); };

    ASSERT_TRUE(Recalc(bar, false));
    EXPECT_TRUE(m_messages.shown.isEmpty());
    EXPECT_FALSE(bar->isVisible());
    EXPECT_EQ(bar->maximum(), 2);
    EXPECT_EQ(bar->value(), 0);

    // The message comes while the bar still stands; the bar goes after it.
    ASSERT_TRUE(Recalc(bar, true));
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Recalculation done");
    EXPECT_EQ(m_messages.shown[0].title, "Recalc");
    EXPECT_EQ(barShownWithMessage, QList<bool>({true}));
    EXPECT_FALSE(bar->isVisible());
    m_messages.onShow = nullptr;
}

TEST_F(RecalcStore, ALockedStoreGivesTheErrorBoxThenTheRetrySucceeds) {
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 123)");
    purchase(1, "2024/01/01", "400");

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_home.storeFile().toUtf8().constData(), &other), SQLITE_OK);
    // Another writer holds the store: reads go on, the balance's write waits and fails until the first error box
    // lets it go, as a user waits for a colleague's row.
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);
    m_messages.onShow = [other](const ShownMessage&) { sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr); };
    const bool ok = Recalc(nullptr, false);
    m_messages.onShow = nullptr;
    sqlite3_close(other);

    EXPECT_FALSE(ok);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_TRUE(m_messages.shown[0].text.startsWith("ERROR in Recalc ")) << m_messages.shown[0].text.toStdString();
    EXPECT_GT(m_messages.shown[0].text.size(), QString("ERROR in Recalc ").size());
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(m_messages.shown[0].title, "Orvel");
    EXPECT_DOUBLE_EQ(volume(1), 400); // the failed write ran again and the run went on
}

// A run that rewrote nothing is not repeated while the store stands unchanged; a change by this connection is
// redone narrowly, and a write by another program (not in this connection's log) makes the next run read all.
TEST_F(RecalcStore, ASettledStoreIsRecalculatedAfterAnyChange) {
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (1, 1, 'A', 'B', 100)");
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 0)");
    purchase(1, "2024/01/01", "1000");
    issue(1, 1, 1, "2024/01/02", "150", "40");
    issue(2, 1, 1, "2024/01/03", "200", "60");
    RecalcSummary summary;
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_EQ(summary.valuesWritten, 0);
    EXPECT_EQ(summary.fuelRows, 2);
    EXPECT_DOUBLE_EQ(volume(1), 900);

    exec("update VecFuel set KmRead = 250 where TransID = 1"); // now the later reading
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_TRUE(summary.narrowed);
    EXPECT_DOUBLE_EQ(previousKm(1), 200);
    EXPECT_DOUBLE_EQ(previousKm(2), 100);

    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary)); // settled again
    elsewhere("UPDATE VecFuel SET Litres = 10 WHERE TransID = 2");
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_FALSE(summary.narrowed);
    EXPECT_DOUBLE_EQ(volume(1), 950);
    EXPECT_EQ(store().TableNames().filter("touch", Qt::CaseInsensitive), QStringList());
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

// Every value Recalc writes, row by row, for comparing two stores.
QStringList DerivedValues(Database& store) {
    QStringList out;
    for (const char* sql : {"select TransID, PreviousKmRead from VecFuel order by TransID",
                            "select transid, LiterLesing, Verlore from TankStock order by transid",
                            "select TransID, HuidigeVolume from Tanks order by TransID"}) {
        auto rs = store.OpenRecordset(sql, RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            QString line;
            for (int i = 0; i < rs->FieldCount(); ++i) {
                const Value v = rs->Field(i);
                line += QString::number(static_cast<int>(v.type())) + ":" + v.toString() + " ";
            }
            out << line;
        }
    }
    return out;
}

// Two copies of one generated register: one for Recalc, one for the row-by-row walk.
struct TwinRegisters {
    explicit TwinRegisters(const RegisterShape& shape) {
        {
            Session s;
            s.home = fastHome.path();
            OpenSessionStore(s);
            GenerateRegister(*s.db, shape);
        }
        copied = QFile::copy(fastHome.storeFile(), walkHome.storeFile());
        fast = Database::Open(fastHome.storeFile(), false);
        walk = Database::Open(walkHome.storeFile(), false);
    }
    // Runs both and compares every derived value.
    void runBoth(RecalcSummary* summary = nullptr) {
        EXPECT_TRUE(Recalc(*fast, nullptr, false, summary));
        EXPECT_TRUE(RecalcRowByRow(*walk, nullptr, false));
        const QStringList a = DerivedValues(*fast);
        const QStringList b = DerivedValues(*walk);
        ASSERT_EQ(a.size(), b.size());
        for (int i = 0; i < a.size(); ++i)
            ASSERT_EQ(a[i].toStdString(), b[i].toStdString()) << "row " << i;
    }

    ScriptedMessageService messages;
    TempHome fastHome;
    TempHome walkHome;
    bool copied = false;
    std::unique_ptr<Database> fast, walk;
};

struct ShapeCase {
    const char* name;
    RegisterShape shape;
};

class RecalcAgainstRowByRow : public ::testing::TestWithParam<ShapeCase> {};

TEST_P(RecalcAgainstRowByRow, LeavesTheSameValuesAfterEachCall) {
    TwinRegisters twins(GetParam().shape);
    ASSERT_TRUE(twins.copied);
    for (int call = 1; call <= 3; ++call) {
        SCOPED_TRACE(call);
        twins.runBoth();
    }
    EXPECT_TRUE(twins.messages.shown.isEmpty());
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Shapes, RecalcAgainstRowByRow, ::testing::Values(
    ShapeCase{"Settled", {.fuelRows = 300}},
    ShapeCase{"EqualReadingsStoredOutOfOrder",
              {.fuelRows = 300, .equalReadingPercent = 35, .issuesOutOfDateOrder = true, .seed = 7}},
    ShapeCase{"TextKmAndStockTakesOnPurchaseDates",
              {.fuelRows = 300, .textKm = true, .stockTakesOnPurchaseDates = true, .unsettledPercent = 30, .seed = 11}},
    ShapeCase{"StockTakesOutOfDateOrder", {.tanks = 2, .fuelRows = 300, .stockTakesPerTank = 6,
              .stockTakesOutOfDateOrder = true, .unsettledPercent = 50, .seed = 3}},
    ShapeCase{"ManyTanksFewVehicles", {.vehicles = 2, .hoursVehiclePercent = 50, .tanks = 9, .fuelRows = 300,
              .equalReadingPercent = 20, .unsettledPercent = 10, .seed = 5}}),
    [](const ::testing::TestParamInfo<ShapeCase>& c) { return std::string(c.param.name); });
// clang-format on

// Changes made between runs, each the same on two copies of a register: the run that redoes only what the
// change touched must leave what the row-by-row walk leaves over everything.
struct ChangeCase {
    const char* name;
    QStringList statements;
};

class RecalcAfterChange : public ::testing::TestWithParam<ChangeCase> {};

TEST_P(RecalcAfterChange, RedoesWhatTheChangeTouchedAsTheWalkDoes) {
    TwinRegisters twins({.vehicles = 6, .tanks = 3, .fuelRows = 240, .equalReadingPercent = 10, .seed = 17});
    ASSERT_TRUE(twins.copied);
    RecalcSummary summary;
    twins.runBoth(&summary); // the session's first run does everything
    EXPECT_FALSE(summary.narrowed);

    for (const QString& statement : GetParam().statements) {
        twins.fast->Execute(statement);
        ASSERT_GT(twins.fast->RecordsAffected(), 0) << statement.toStdString();
        twins.walk->Execute(statement);
    }
    for (int call = 1; call <= 3; ++call) {
        SCOPED_TRACE(call);
        twins.runBoth(&summary);
        if (call == 1) {
            EXPECT_TRUE(summary.narrowed);
        }
    }
    EXPECT_TRUE(twins.messages.shown.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(
    Changes, RecalcAfterChange,
    ::testing::Values(
        ChangeCase{"EarlierIssueReadingRaised", {"update VecFuel set KmRead = KmRead + 900 where TransID = 3"}},
        ChangeCase{"EarlierIssueLitresChanged", {"update VecFuel set Litres = 333 where TransID = 4"}},
        ChangeCase{"IssueDeleted", {"delete * from VecFuel where TransID = 20"}},
        ChangeCase{"VehicleStartReadingChanged", {"update voertuig set Km = '7 5' where TransID = 2"}},
        ChangeCase{"StockTakeOutOfDateOrder",
                   {"insert into TankStock (TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rede) "
                    "values (1, 'T', '2021/01/15', '120', '0', '0', 'Late')"}},
        ChangeCase{"StockTakeDeleted", {"delete * from TankStock where transid = 2"}},
        ChangeCase{"IssueMovedToAnotherTank", {"update VecFuel set TankID = 3 where TankID = 1 and TransID < 30"}},
        ChangeCase{"IssueMovedToAnotherVehicle",
                   {"update VecFuel set VoertuigID = 5 where TransID = 7",
                    "update VecFuel set VoertuigID = 1 where TransID = 8"}},
        ChangeCase{"PurchaseRedated", {"update FuelPurchase set Datum = '2020/12/31' where TransID = 2"}},
        ChangeCase{"TankBalanceOverwritten", {"update Tanks set HuidigeVolume = 5 where TransID = 2"}},
        ChangeCase{"NewIssueSaved",
                   {"insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres) "
                    "values (1, 2, '2021/02/01', 999999, 0, 44)"}},
        ChangeCase{"VehicleRemoved", {"delete * from voertuig where TransID = 3"}}),
    [](const ::testing::TestParamInfo<ChangeCase>& c) { return std::string(c.param.name); });

} // namespace
