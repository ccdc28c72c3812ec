// `orvel demo`: a register whose figures agree with each other, whose references all resolve, and that one seed
// and one day give again.
#include "CommandLine.h"
#include "Database.h"
#include "Recalc.h"
#include "TempHome.h"

#include <QFileInfo>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <map>

namespace {

int Demo(const QString& home, const QStringList& args, QString* err = nullptr) {
    CommandLine cl;
    cl.home = home;
    cl.subcommand = "demo";
    cl.args = args;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int code = RunDemoCommand(cl);
    testing::internal::GetCapturedStdout();
    const std::string e = testing::internal::GetCapturedStderr();
    if (err)
        *err = QString::fromStdString(e);
    return code;
}

double Number(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    return rs->Field(0).isNull() ? 0 : rs->Field(0).toDouble();
}

// Every row of every table, as text: two stores with the same dump hold the same register.
QString Dump(Database& db) {
    QString out;
    QStringList tables = db.TableNames();
    tables.sort(Qt::CaseInsensitive);
    for (const QString& table : tables) {
        out += "#" + table + "\n";
        auto rs = db.OpenRecordset("select * from [" + table + "]", RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            for (int i = 0; i < rs->FieldCount(); ++i)
                out += rs->Field(i).toString() + "\t";
            out += "\n";
        }
    }
    return out;
}

class DemoRegister : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        s_home = new TempHome;
        ASSERT_EQ(Demo(s_home->path(), {"--size", "small", "--seed", "11", "--today", "2026/03/31"}), 0);
    }
    static void TearDownTestSuite() {
        delete s_home;
        s_home = nullptr;
    }
    void SetUp() override { db = Database::Open(s_home->storeFile(), false); }

    static TempHome* s_home;
    std::unique_ptr<Database> db;
};
TempHome* DemoRegister::s_home = nullptr;

} // namespace

TEST_F(DemoRegister, AFurtherRecalcChangesNothing) {
    RecalcSummary summary;
    ASSERT_TRUE(Recalc(*db, nullptr, false, &summary));
    EXPECT_EQ(summary.valuesWritten, 0);
    EXPECT_EQ(summary.tanks, 3);
    EXPECT_GE(summary.vehicles, 20);
    EXPECT_LE(summary.vehicles, 30);
    EXPECT_GT(summary.fuelRows, 1000);
    EXPECT_GT(summary.stockTakes, 0);
}

TEST_F(DemoRegister, EveryReferenceResolves) {
    const struct {
        const char* from;
        const char* column;
        const char* to;
        const char* key;
    } links[] = {
        {"voertuig", "CatID", "voerkat", "TransID"},
        {"voertuig", "deptid", "departments", "id"},
        {"VecFuel", "VoertuigID", "voertuig", "TransID"},
        {"VecFuel", "TankID", "Tanks", "TransID"},
        {"VecFuel", "driverid", "drivers", "id"},
        {"VecFuel", "activityid", "activities", "id"},
        {"VecFuel", "deptid", "departments", "id"},
        {"FuelPurchase", "TankID", "Tanks", "TransID"},
        {"FuelPurchase", "suppid", "FuelSupplier", "suppid"},
        {"TankStock", "TankID", "Tanks", "TransID"},
    };
    for (const auto& l : links) {
        SCOPED_TRACE(std::string(l.from) + "." + l.column);
        EXPECT_GT(Number(*db, QString("select count(*) from %1").arg(l.from)), 0);
        EXPECT_EQ(Number(*db, QString("select count(*) from %1 where %2 is null or %2 not in (select %4 from %3)")
                                  .arg(l.from, l.column, l.to, l.key)),
                  0);
    }
    EXPECT_LE(Number(*db, "select max(TransID) from voertuig"), 32767);
    EXPECT_EQ(Number(*db, "select count(*) from owner"), 1);
    EXPECT_GT(Number(*db, "select count(*) from activities where rebated"), 0);
}

TEST_F(DemoRegister, ReadingsRisePumpReadingsChainAndBothMeterKindsArePresent) {
    std::map<long long, double> lastReading;
    std::map<long long, double> lastPump;
    int issues = 0;
    db->ForEachRow("select VoertuigID, KmRead, PreviousKmRead, TankID, pumpreadprev, pumpreadcurr, Litres, Datum "
                   "from VecFuel order by TransID",
                   [&](const RowView& r) {
                       ++issues;
                       const long long vehicle = r.integer(0), tank = r.integer(3);
                       if (lastReading.count(vehicle)) {
                           EXPECT_GT(r.number(1), lastReading[vehicle]) << "vehicle " << vehicle;
                           EXPECT_DOUBLE_EQ(r.number(2), lastReading[vehicle]) << "vehicle " << vehicle;
                       }
                       lastReading[vehicle] = r.number(1);
                       if (lastPump.count(tank)) {
                           EXPECT_DOUBLE_EQ(r.number(4), lastPump[tank]) << "tank " << tank;
                       }
                       EXPECT_DOUBLE_EQ(r.number(5) - r.number(4), r.number(6));
                       lastPump[tank] = r.number(5);
                       EXPECT_TRUE(
                           QRegularExpression("^20\\d\\d/\\d\\d/\\d\\d$").match(r.value(7).toString()).hasMatch());
                   });
    EXPECT_GT(issues, 1000);
    EXPECT_EQ(Number(*db, "select count(*) from Tanks t where PumpReading <> (select max(pumpreadcurr) from VecFuel "
                          "where TankID = t.TransID)"),
              0);
    EXPECT_GT(Number(*db, "select count(*) from voertuig v inner join voerkat k on v.CatID = k.TransID where k.Hours"),
              0);
    EXPECT_GT(
        Number(*db, "select count(*) from voertuig v inner join voerkat k on v.CatID = k.TransID where not k.Hours"),
        0);
    // Registrations in the provinces' forms; dates within the two years before the day given.
    const QRegularExpression plate("^(CA \\d{3}-\\d{3}|ND \\d{5}|[A-Z]{2} \\d\\d [A-Z]{2} GP|[A-Z]{3} \\d{3} MP)$");
    auto rs = db->OpenRecordset("select RegNr from voertuig", RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        EXPECT_TRUE(plate.match(rs->Field(0).toString()).hasMatch()) << rs->Field(0).toString().toStdString();
    EXPECT_EQ(Number(*db, "select count(*) from VecFuel where Datum > '2026/03/31' or Datum < '2024/03/31'"), 0);
    EXPECT_EQ(Number(*db, "select count(*) from TankStock where Rede is null or Rede = ''"), 0);
}

TEST_F(DemoRegister, OneSeedAndOneDayGiveOneRegisterAndAStoreIsNeverFilledOver) {
    TempHome same, other;
    ASSERT_EQ(Demo(same.path(), {"--seed", "11", "--today", "2026/03/31"}), 0);
    ASSERT_EQ(Demo(other.path(), {"--seed", "12", "--today", "2026/03/31"}), 0);
    const QString dump = Dump(*db);
    EXPECT_EQ(Dump(*Database::Open(same.storeFile(), false)), dump);
    EXPECT_NE(Dump(*Database::Open(other.storeFile(), false)), dump);

    QString err;
    EXPECT_EQ(Demo(same.path(), {"--seed", "11"}, &err), 1);
    EXPECT_TRUE(err.contains("already has a store")) << err.toStdString();
    EXPECT_EQ(Dump(*Database::Open(same.storeFile(), false)), dump);
    TempHome bad;
    EXPECT_EQ(Demo(bad.path(), {"--size", "huge"}, &err), 1);
    EXPECT_TRUE(err.contains("usage")) << err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(bad.storeFile()));
}
