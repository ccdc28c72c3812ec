// The recalculation: odometer chains, stock take book figures, tank balances, the row-by-row walk as the
// yardstick on generated registers, and the error handler's message and retry.

#include "Recalc.h"
#include "Database.h"
#include "RecalcReference.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"
#include "TempHome.h"

#include <QFile>
#include <QProgressBar>
#include <functional>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace {

class RecalcStore : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        OpenSessionStore(m_session);
        SetCurrentSession(&m_session);
    }
    void TearDown() override { SetCurrentSession(nullptr); }

    Database& store() { return *m_session.db; }
    void exec(const QString& sql) { store().Execute(sql); }
    Value scalar(const QString& sql) {
        auto rs = store().OpenRecordset(sql, RecordsetType::Snapshot);
        return rs->Eof() ? Value::null() : rs->Field(0);
    }
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
    QString stockText(int id, const QString& column) {
        return scalar("select " + column + " from TankStock where transid = " + QString::number(id)).toString();
    }
    double volume(int tank) {
        return scalar("select HuidigeVolume from Tanks where TransID = " + QString::number(tank)).toDouble();
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
};

TEST_F(RecalcStore, ChainsFollowReadingsFromTheCleanedKm) {
    // Km as an older file holds it: text, before the start's type repair has run on it.
    exec("alter table voertuig alter column km text(20)");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (1, 1, 'Comma', 'A1', '12,5')");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (2, 1, 'Blank', 'A2', '1 234')");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (3, 1, 'Plain', 'A3', 5000)");
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (4, 1, 'Idle', 'A4', 70)");
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
    EXPECT_EQ(stockText(1, "LiterLesing"), "800");
    EXPECT_EQ(stockText(1, "Verlore"), "-20");
    EXPECT_EQ(stockText(2, "LiterLesing"), "800");
    EXPECT_EQ(stockText(2, "Verlore"), "-10");
    EXPECT_EQ(stockText(3, "LiterLesing"), "1170");
    EXPECT_EQ(stockText(3, "Verlore"), "-20");
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
    EXPECT_EQ(stockText(1, "LiterLesing"), "1000");
    EXPECT_EQ(stockText(1, "Verlore"), "-100");
    EXPECT_EQ(stockText(2, "Verlore"), "-50");
    EXPECT_DOUBLE_EQ(volume(3), 850);

    ASSERT_TRUE(Recalc(nullptr, false));
    EXPECT_EQ(stockText(1, "LiterLesing"), "950");
    EXPECT_EQ(stockText(1, "Verlore"), "-50");
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
    EXPECT_EQ(stockText(1, "LiterLesing"), "750");
    EXPECT_EQ(stockText(1, "Verlore"), "-750");
    EXPECT_EQ(stockText(2, "LiterLesing"), "0");
    EXPECT_EQ(stockText(2, "Verlore"), "700");
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

// Releases a lock held by another connection when the first error box is shown, as a user would wait
// for a colleague's row to be let go.
class ReleasingMessages : public ScriptedMessageService {
public:
    std::function<void()> onFirst;
    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override {
        MsgResult r = ScriptedMessageService::show(text, buttons, icon, title);
        if (onFirst) {
            auto f = std::move(onFirst);
            onFirst = nullptr;
            f();
        }
        return r;
    }
};

TEST_F(RecalcStore, ALockedStoreGivesTheErrorBoxThenTheRetrySucceeds) {
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 123)");
    purchase(1, "2024/01/01", "400");

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_home.storeFile().toUtf8().constData(), &other), SQLITE_OK);
    // Another writer holds the store: reads go on, the balance's write waits and fails.
    ASSERT_EQ(sqlite3_exec(other, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);

    ReleasingMessages messages;
    messages.onFirst = [other] { sqlite3_exec(other, "COMMIT", nullptr, nullptr, nullptr); };
    const bool ok = Recalc(nullptr, false);
    sqlite3_close(other);

    EXPECT_FALSE(ok);
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_TRUE(messages.shown[0].text.startsWith("ERROR in Recalc ")) << messages.shown[0].text.toStdString();
    EXPECT_GT(messages.shown[0].text.size(), QString("ERROR in Recalc ").size());
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages.shown[0].title, "Orvel");
    EXPECT_DOUBLE_EQ(volume(1), 400); // the failed write ran again and the run went on
}

// Every value Recalc writes, row by row, for comparing two stores.
QStringList DerivedValues(Database& store) {
    QStringList out;
    auto dump = [&](const QString& sql) {
        auto rs = store.OpenRecordset(sql, RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            QString line;
            for (int i = 0; i < rs->FieldCount(); ++i) {
                const Value v = rs->Field(i);
                line += QString::number(static_cast<int>(v.type())) + ":" + v.toString() + " ";
            }
            out << line;
        }
    };
    dump("select TransID, PreviousKmRead from VecFuel order by TransID");
    dump("select transid, LiterLesing, Verlore from TankStock order by transid");
    dump("select TransID, HuidigeVolume from Tanks order by TransID");
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
    ScriptedMessageService messages;
    TwinRegisters twins(GetParam().shape);
    ASSERT_TRUE(twins.copied);
    ASSERT_EQ(DerivedValues(*twins.fast), DerivedValues(*twins.walk));
    for (int call = 1; call <= 3; ++call) {
        SCOPED_TRACE(call);
        twins.runBoth();
    }
    EXPECT_TRUE(messages.shown.isEmpty());
}

RegisterShape Shape(std::function<void(RegisterShape&)> change) {
    RegisterShape s;
    s.fuelRows = 300;
    change(s);
    return s;
}

INSTANTIATE_TEST_SUITE_P(Shapes, RecalcAgainstRowByRow,
                         ::testing::Values(ShapeCase{"Settled", Shape([](RegisterShape&) {})},
                                           ShapeCase{"EqualReadingsStoredOutOfOrder", Shape([](RegisterShape& s) {
                                                         s.equalReadingPercent = 35;
                                                         s.issuesOutOfDateOrder = true;
                                                         s.seed = 7;
                                                     })},
                                           ShapeCase{"TextKmAndStockTakesOnPurchaseDates", Shape([](RegisterShape& s) {
                                                         s.textKm = true;
                                                         s.stockTakesOnPurchaseDates = true;
                                                         s.unsettledPercent = 30;
                                                         s.seed = 11;
                                                     })},
                                           ShapeCase{"StockTakesOutOfDateOrder", Shape([](RegisterShape& s) {
                                                         s.tanks = 2;
                                                         s.stockTakesPerTank = 6;
                                                         s.stockTakesOutOfDateOrder = true;
                                                         s.unsettledPercent = 50;
                                                         s.seed = 3;
                                                     })},
                                           ShapeCase{"ManyTanksFewVehicles", Shape([](RegisterShape& s) {
                                                         s.vehicles = 2;
                                                         s.tanks = 9;
                                                         s.hoursVehiclePercent = 50;
                                                         s.equalReadingPercent = 20;
                                                         s.unsettledPercent = 10;
                                                         s.seed = 5;
                                                     })}),
                         [](const ::testing::TestParamInfo<ShapeCase>& shapeCase) {
                             return std::string(shapeCase.param.name);
                         });

} // namespace

namespace {

// A run that rewrote nothing is not repeated while the store stands unchanged; any change, by this connection or
// by another program, makes the next run read everything again.
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
    EXPECT_DOUBLE_EQ(previousKm(1), 200);
    EXPECT_DOUBLE_EQ(previousKm(2), 100);

    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary)); // settled again
    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_home.storeFile().toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "UPDATE VecFuel SET Litres = 10 WHERE TransID = 2", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(other);
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_DOUBLE_EQ(volume(1), 950);
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

} // namespace

namespace {

// Changes made between runs, each the same on two copies of a register: the run that redoes only what the
// change touched must leave what the row-by-row walk leaves over everything.
struct ChangeCase {
    const char* name;
    QStringList statements;
};

class RecalcAfterChange : public ::testing::TestWithParam<ChangeCase> {};

TEST_P(RecalcAfterChange, RedoesWhatTheChangeTouchedAsTheWalkDoes) {
    ScriptedMessageService messages;
    RegisterShape shape;
    shape.fuelRows = 240;
    shape.vehicles = 6;
    shape.tanks = 3;
    shape.stockTakesPerTank = 4;
    shape.equalReadingPercent = 10;
    shape.seed = 17;
    TwinRegisters twins(shape);
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
    EXPECT_TRUE(messages.shown.isEmpty());
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
                   {"update VecFuel set VoertuigID = 5 where TransID = 7", "update VecFuel set VoertuigID = 1 "
                                                                           "where TransID = 8"}},
        ChangeCase{"PurchaseRedated", {"update FuelPurchase set Datum = '2020/12/31' where TransID = 2"}},
        ChangeCase{"TankBalanceOverwritten", {"update Tanks set HuidigeVolume = 5 where TransID = 2"}},
        ChangeCase{"NewIssueSaved",
                   {"insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres) "
                    "values (1, 2, '2021/02/01', 999999, 0, 44)"}},
        ChangeCase{"VehicleRemoved", {"delete * from voertuig where TransID = 3"}}),
    [](const ::testing::TestParamInfo<ChangeCase>& c) { return std::string(c.param.name); });

// A write by another connection is not in this connection's log: the next run does everything.
TEST_F(RecalcStore, AWriteByAnotherProgramMakesTheNextRunDoEverything) {
    exec("insert into voertuig (TransID, CatID, Maak, RegNr, Km) values (1, 1, 'A', 'B', 100)");
    exec("insert into Tanks (TransID, TankNaam, HuidigeVolume) values (1, 'DIESEL', 0)");
    purchase(1, "2024/01/01", "1000");
    issue(1, 1, 1, "2024/01/02", "150", "40");
    RecalcSummary summary;
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    issue(2, 1, 1, "2024/01/03", "200", "60");
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_TRUE(summary.narrowed);
    EXPECT_DOUBLE_EQ(volume(1), 900);

    sqlite3* other = nullptr;
    ASSERT_EQ(sqlite3_open(m_home.storeFile().toUtf8().constData(), &other), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(other, "UPDATE VecFuel SET Litres = 10 WHERE TransID = 2", nullptr, nullptr, nullptr),
              SQLITE_OK);
    sqlite3_close(other);
    ASSERT_TRUE(Recalc(store(), nullptr, false, &summary));
    EXPECT_FALSE(summary.narrowed);
    EXPECT_DOUBLE_EQ(volume(1), 950);
    EXPECT_EQ(store().TableNames().filter("touch", Qt::CaseInsensitive), QStringList());
}

} // namespace
