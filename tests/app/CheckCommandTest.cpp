// `orvel --home DIR check`: the store-side start-up as a batch command, with a summary line.
#include "CommandLine.h"
#include "Database.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

struct CheckRun {
    int exitCode;
    std::string out;
    std::string err;
};

CheckRun RunCheck(const QString& home, const QStringList& args = {}) {
    CommandLine cl;
    cl.home = home;
    cl.subcommand = "check";
    cl.args = args;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const int code = RunCheckCommand(cl);
    CheckRun run{code, testing::internal::GetCapturedStdout(), testing::internal::GetCapturedStderr()};
    return run;
}

} // namespace

TEST(CheckCommand, NewHomeGetsAStoreAndASummary) {
    QTemporaryDir root;
    const QString home = root.path() + "/fresh";
    const CheckRun first = RunCheck(home);
    EXPECT_EQ(first.exitCode, 0) << first.err;
    EXPECT_TRUE(QFile::exists(home + "/Databases/invent.db"));
    EXPECT_NE(first.out.find("schema version 1.3.157, ok"), std::string::npos) << first.out;
    EXPECT_NE(first.out.find(" tables, "), std::string::npos) << first.out;
    EXPECT_EQ(first.err, "");

    // A second run finds the same store, and the lock of the first run is gone.
    const CheckRun second = RunCheck(home);
    EXPECT_EQ(second.exitCode, 0) << second.err;
    EXPECT_EQ(second.out, first.out);
}

TEST(CheckCommand, RefusedWhileAnotherInstanceHoldsTheHome) {
    TempHome home;
    Session running;
    running.home = home.path();
    ASSERT_TRUE(AcquireInstanceLock(running));
    const CheckRun run = RunCheck(home.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("The Orvel Module is already open!"), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(QFile::exists(home.storeFile())); // refused before the store is touched
}

TEST(CheckCommand, StoreWithoutOwnerFailsWithTheReason) {
    TempHome home;
    ASSERT_EQ(RunCheck(home.path()).exitCode, 0);
    Database::Open(home.storeFile(), false)->Execute("drop table owner");
    const CheckRun run = RunCheck(home.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("orvel check: error"), std::string::npos) << run.err;
    EXPECT_EQ(run.out, "");
}

TEST(CheckCommand, FileThatIsNoStoreFails) {
    TempHome home;
    QFile junk(home.storeFile());
    ASSERT_TRUE(junk.open(QIODevice::WriteOnly));
    junk.write(QByteArray(4096, 'x'));
    junk.close();
    const CheckRun run = RunCheck(home.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("orvel check:"), std::string::npos) << run.err;
}

TEST(CheckCommand, ExtraWordsAreRefused) {
    TempHome home;
    const CheckRun run = RunCheck(home.path(), {"now"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_NE(run.err.find("check takes no arguments"), std::string::npos);
}
