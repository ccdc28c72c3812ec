// `orvel --home DIR check`: the store-side start-up as a batch command, with a summary line.
#include "CommandRun.h"
#include "Database.h"
#include "HomeFolder.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "frmMain.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <functional>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

// Read-only for the superuser too: the immutable attribute where the mode bits do not bind.
void MakeReadOnly(const QString& path) {
    if (geteuid() == 0) {
        ASSERT_EQ(QProcess::execute("chattr", {"+i", path}), 0) << "chattr +i " << path.toStdString();
        return;
    }
    QFile::setPermissions(path, QFileInfo(path).isDir() ? QFileDevice::ReadOwner | QFileDevice::ExeOwner
                                                        : QFileDevice::ReadOwner);
}

void MakeWritable(const QString& path) {
    if (geteuid() == 0)
        QProcess::execute("chattr", {"-i", path});
    QFile::setPermissions(path, QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                    (QFileInfo(path).isDir() ? QFileDevice::ExeOwner : QFileDevice::Permissions()));
}

CommandRun RunCheck(const QString& home, const QStringList& args = {}) {
    return RunCommand(home, "check", args);
}

// The desktop program's start on the same home: the main window refuses to open, and what it showed.
struct DesktopStart {
    bool started = false;
    QList<ShownMessage> shown;
};

DesktopStart StartDesktop(const QString& home) {
    ScriptedMessageService messages;
    Session s;
    s.home = home;
    SetHomeFolder(home);
    SetCurrentSession(&s);
    DesktopStart start;
    {
        frmMain window;
        start.started = window.Startup();
    }
    start.shown = messages.shown;
    s.db.reset();
    SetCurrentSession(nullptr);
    return start;
}

} // namespace

TEST(CheckCommand, NewHomeGetsAStoreAndASummary) {
    QTemporaryDir root;
    const QString home = root.path() + "/fresh";
    const CommandRun first = RunCheck(home);
    EXPECT_EQ(first.exitCode, 0) << first.err.toStdString();
    EXPECT_TRUE(QFile::exists(home + "/Databases/invent.db"));
    EXPECT_TRUE(first.out.contains("schema version 1.3.157, ok")) << first.out.toStdString();
    EXPECT_TRUE(first.out.contains(" tables, ")) << first.out.toStdString();
    EXPECT_EQ(first.err, "");

    // A second run finds the same store, and the lock of the first run is gone.
    const CommandRun second = RunCheck(home);
    EXPECT_EQ(second.exitCode, 0) << second.err.toStdString();
    EXPECT_EQ(second.out, first.out);
}

TEST(CheckCommand, RefusedWhileAnotherInstanceHoldsTheHome) {
    TempHome home;
    Session running;
    running.home = home.path();
    ASSERT_TRUE(AcquireInstanceLock(running));
    const CommandRun run = RunCheck(home.path());
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("The Orvel Module is already open!")) << run.err.toStdString();
    EXPECT_EQ(run.out, "");
    EXPECT_FALSE(QFile::exists(home.storeFile())); // refused before the store is touched
}

// A file that is no register, one cut short, another program's database, a store that lacks a table or a column,
// a read-only store: each is refused with its file and cause named, and left byte for byte as it was.
TEST(CheckCommand, DamagedOrForeignStoresAreRefusedAndLeftAsTheyWere) {
    struct Case {
        const char* name;
        std::function<void(const QString& file)> make;
        const char* cause;
    };
    auto validStore = [](const QString& file) {
        Session s;
        s.home = QFileInfo(file).absolutePath() + "/..";
        OpenSessionStore(s);
        RunStartupSteps(*s.db);
    };
    auto writeBytes = [](const QString& file, const QByteArray& bytes) {
        QFile f(file);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
        f.write(bytes);
    };
    const Case cases[] = {
        {"zeros", [&](const QString& f) { writeBytes(f, QByteArray(8192, '\0')); }, "the file is not a database"},
        {"text", [&](const QString& f) { writeBytes(f, "Vehicle list\nCA 123-456\n"); }, "the file is not a database"},
        {"empty", [&](const QString& f) { writeBytes(f, ""); }, "the file is empty"},
        {"truncated",
         [&](const QString& f) {
             validStore(f);
             QFile file(f);
             ASSERT_TRUE(file.resize(file.size() / 2));
         },
         "the file is cut short"},
        {"another program's database",
         [](const QString& f) { Database::Open(f, true)->Execute("create table notes (id long, body text(50))"); },
         "it has no table 'owner'"},
        {"a table lacks a column",
         [&](const QString& f) {
             validStore(f);
             Database::Open(f, false)->Execute("alter table vecfuel drop column kmread");
         },
         "its table 'VecFuel' has no column 'KmRead'"},
        {"a table is missing",
         [&](const QString& f) {
             validStore(f);
             Database::Open(f, false)->Execute("drop table owner");
         },
         "it has no table 'owner'"},
        {"read-only",
         [&](const QString& f) {
             validStore(f);
             MakeReadOnly(f);
         },
         "the file is read-only"},
        {"a read-only folder",
         [&](const QString& f) {
             validStore(f);
             MakeReadOnly(QFileInfo(f).absolutePath());
         },
         "the folder is read-only"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        TempHome home;
        c.make(home.storeFile());
        QFile::remove(home.storeFile() + ".checked");
        QFile before(home.storeFile());
        ASSERT_TRUE(before.open(QIODevice::ReadOnly));
        const QByteArray bytes = before.readAll();
        before.close();
        const CommandRun run = RunCheck(home.path());
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_TRUE(run.err.contains(home.dataPath())) << run.err.toStdString(); // file or folder
        EXPECT_TRUE(run.err.contains(c.cause)) << run.err.toStdString();
        EXPECT_EQ(run.out, "");
        // The desktop start says the same in a critical box and goes no further.
        const DesktopStart desktop = StartDesktop(home.path());
        EXPECT_FALSE(desktop.started);
        ASSERT_EQ(desktop.shown.size(), 1);
        EXPECT_EQ(desktop.shown[0].icon, MsgIcon::Critical);
        EXPECT_EQ(desktop.shown[0].title, "Orvel");
        EXPECT_TRUE(desktop.shown[0].text.contains(home.dataPath())) << desktop.shown[0].text.toStdString();
        EXPECT_TRUE(desktop.shown[0].text.contains(c.cause)) << desktop.shown[0].text.toStdString();
        QFile after(home.storeFile());
        ASSERT_TRUE(after.open(QIODevice::ReadOnly));
        EXPECT_TRUE(after.readAll() == bytes);
        EXPECT_FALSE(QFile::exists(home.storeFile() + "-journal"));
        MakeWritable(home.storeFile());
        MakeWritable(home.dataPath());
    }
}

// A home that cannot be made, or a data folder that cannot: the message names the folder and the cause.
TEST(CheckCommand, AHomeThatCannotBeMadeIsNamedWithItsCause) {
    QTemporaryDir root;
    QFile blocker(root.path() + "/home");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.write("a file where the home folder should be");
    blocker.close();
    CommandRun run = RunCheck(root.path() + "/home");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("The home folder '" + root.path() + "/home' cannot be made")) << run.err.toStdString();
    EXPECT_FALSE(run.err.contains("already open")) << run.err.toStdString();

    QDir(root.path()).mkpath("home2");
    QFile data(root.path() + "/home2/Databases");
    ASSERT_TRUE(data.open(QIODevice::WriteOnly));
    data.close();
    run = RunCheck(root.path() + "/home2");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("Databases/' is not a valid path")) << run.err.toStdString();
}

namespace {

// Runs the program under a limit on the size of the files it writes, as a full disk stands in the way.
CommandRun RunOnAFullDisk(const QString& home, const QStringList& args) {
    QProcess p;
    QStringList quoted;
    for (const QString& a : QStringList{ORVEL_BINARY, "--home", home} + args)
        quoted << "'" + QString(a).replace("'", "'\\''") + "'";
    p.start("bash", {"-c", "ulimit -f 64; exec " + quoted.join(' ')});
    p.waitForFinished(60000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

TEST(CheckCommand, AFullDiskEndsTheRunWithItsMessageAndKeepsTheStore) {
    // A new store that cannot be written whole is not left behind.
    QTemporaryDir root;
    const QString fresh = root.path() + "/fresh";
    CommandRun run = RunOnAFullDisk(fresh, {"check"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("Not enough space on disk")) << run.err.toStdString();
    EXPECT_FALSE(QFile::exists(fresh + "/Databases/invent.db"));
    EXPECT_FALSE(QFile::exists(fresh + "/Databases/invent.db.new"));

    // A write that does not fit fails with the message; what was stored stays, whole.
    TempHome home;
    ASSERT_EQ(RunCheck(home.path()).exitCode, 0);
    QFile store(home.storeFile());
    ASSERT_TRUE(store.open(QIODevice::ReadOnly));
    const QByteArray before = store.readAll();
    store.close();
    run = RunOnAFullDisk(home.path(), {"query", "update serviceReference set assignDate = now()"});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("Not enough space on disk")) << run.err.toStdString();
    // The next start finds what the failed write left in the journal and undoes it.
    const CommandRun after = RunCheck(home.path());
    EXPECT_EQ(after.exitCode, 0) << after.err.toStdString();
    ASSERT_TRUE(store.open(QIODevice::ReadOnly));
    EXPECT_TRUE(store.readAll() == before);
}

} // namespace
