// `orvel --home DIR query "STATEMENT"`: the heading and rows of a query, the count of a change, errors.
#include "CommandRun.h"
#include "TempHome.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(QueryCommand, ChangesPrintTheRowsAffectedAndQueriesTheirRows) {
    TempHome home;
    CommandRun run = RunCommand(home.path(), "query", {"insert into voerkat ([desc], hours) values ('BAKKIES', true)"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "1\n");
    EXPECT_TRUE(QFile::exists(home.storeFile()));
    RunCommand(home.path(), "query", {"insert into voerkat ([desc]) values ('Trucks')"});
    RunCommand(home.path(), "query", {"insert into tanks (tanknaam, huidigevolume) values ('Diesel', 12345.5)"});

    run = RunCommand(home.path(), "query", {"select [desc], hours, transid from voerkat order by [desc]"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "Desc\tHours\tTransID\nBAKKIES\tTrue\t1\nTrucks\tFalse\t2\n");

    // Field names as the table has them; numbers without grouping, Null as nothing.
    run = RunCommand(home.path(), "query", {"select TankNaam, HuidigeVolume, Capacity from Tanks"});
    ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
    EXPECT_EQ(run.out, "TankNaam\tHuidigeVolume\tCapacity\nDiesel\t12345.5\t\n");

    run = RunCommand(home.path(), "query", {"update voerkat set hours = false"});
    EXPECT_EQ(run.out, "2\n");
}

TEST(QueryCommand, ErrorsGoToStandardErrorWithExitCodeOne) {
    TempHome home;
    CommandRun run = RunCommand(home.path(), "query", {"select * from nosuch"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.out, "");
    EXPECT_TRUE(run.err.contains("3078")) << run.err.toStdString();
    EXPECT_TRUE(run.err.contains("nosuch")) << run.err.toStdString();

    run = RunCommand(home.path(), "query", {});
    EXPECT_EQ(run.exitCode, 1);
    run = RunCommand(home.path(), "query", {"select 1", "extra"});
    EXPECT_EQ(run.exitCode, 1);
}
