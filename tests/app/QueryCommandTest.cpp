// `orvel --home DIR query "STATEMENT"`: the heading and rows of a query, the count of a change, errors.
#include "CommandLine.h"
#include "TempHome.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct QueryRun {
    int exitCode;
    std::string out;
    std::string err;
};

QueryRun RunQuery(const QString& home, const QStringList& args) {
    CommandLine cl;
    cl.home = home;
    cl.subcommand = "query";
    cl.args = args;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int code = RunQueryCommand(cl);
    QueryRun run{code, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
    return run;
}

} // namespace

TEST(QueryCommand, ChangesPrintTheRowsAffectedAndQueriesTheirRows) {
    TempHome home;
    QueryRun run = RunQuery(home.path(), {"insert into voerkat ([desc], hours) values ('BAKKIES', true)"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "1\n");
    EXPECT_TRUE(QFile::exists(home.storeFile()));
    RunQuery(home.path(), {"insert into voerkat ([desc]) values ('Trucks')"});
    RunQuery(home.path(), {"insert into tanks (tanknaam, huidigevolume) values ('Diesel', 12345.5)"});

    run = RunQuery(home.path(), {"select [desc], hours, transid from voerkat order by [desc]"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "Desc\tHours\tTransID\nBAKKIES\tTrue\t1\nTrucks\tFalse\t2\n");

    // Field names as the table has them; numbers without grouping, Null as nothing.
    run = RunQuery(home.path(), {"select TankNaam, HuidigeVolume, Capacity from Tanks"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    EXPECT_EQ(run.out, "TankNaam\tHuidigeVolume\tCapacity\nDiesel\t12345.5\t\n");

    run = RunQuery(home.path(), {"update voerkat set hours = false"});
    EXPECT_EQ(run.out, "2\n");
}

TEST(QueryCommand, ErrorsGoToStandardErrorWithExitCodeOne) {
    TempHome home;
    QueryRun run = RunQuery(home.path(), {"select * from nosuch"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_NE(run.err.find("3078"), std::string::npos) << run.err;
    EXPECT_NE(run.err.find("nosuch"), std::string::npos) << run.err;

    run = RunQuery(home.path(), {});
    EXPECT_EQ(run.exitCode, 1);
    run = RunQuery(home.path(), {"select 1", "extra"});
    EXPECT_EQ(run.exitCode, 1);
}
