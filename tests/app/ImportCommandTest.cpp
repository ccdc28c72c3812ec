// `orvel import` and the import that every entry point runs first: lines per table, the check's summary, what
// stands refused or replaced, and the desktop start's progress window and message.
#include "CommandRun.h"
#include "Database.h"
#include "ImportProgressWindow.h"
#include "OlderImport.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "frmMain.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QProgressBar>
#include <gtest/gtest.h>

namespace {

QString Fixture() {
    const QString path = QString(ORVEL_FIXTURES_DIR) + "/invent-old.mdb";
    EXPECT_TRUE(QFileInfo::exists(path)) << "missing fixture " << path.toStdString();
    return path;
}

void Copy(const QString& to, qint64 keep = -1) {
    QFile in(Fixture());
    ASSERT_TRUE(in.open(QIODevice::ReadOnly));
    QByteArray bytes = in.readAll();
    if (keep >= 0)
        bytes.truncate(keep);
    QFile out(to);
    ASSERT_TRUE(out.open(QIODevice::WriteOnly));
    out.write(bytes);
}

QByteArray Hash(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256)
                                       : QByteArray();
}

} // namespace

TEST(ImportCommand, LinesPerTableSummaryRefusalAndReplacement) {
    TempHome home;
    QTemporaryDir dir;
    const CommandRun first = RunCommand(home.path(), "import", {Fixture()});
    ASSERT_EQ(first.exitCode, 0) << first.err.toStdString();
    const QStringList lines = first.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.contains("VecFuel\t30"));
    EXPECT_TRUE(lines.contains("voertuig\t8"));
    EXPECT_TRUE(lines.contains("tblTeDate\t2"));
    EXPECT_EQ(lines.size(), 21); // 20 tables, then the summary
    EXPECT_TRUE(lines.last().endsWith("schema version 1.3.157, ok")) << lines.last().toStdString();

    // A store that stands is refused without --replace, and stays.
    const QByteArray standing = Hash(home.storeFile());
    const CommandRun again = RunCommand(home.path(), "import", {Fixture()});
    EXPECT_EQ(again.exitCode, 1);
    EXPECT_TRUE(again.err.contains("--replace")) << again.err.toStdString();
    EXPECT_EQ(Hash(home.storeFile()), standing);

    // A replacement from a damaged file fails with its cause and leaves the store as it was.
    Copy(dir.path() + "/cut.mdb", QFileInfo(Fixture()).size() - 16 * 4096);
    const CommandRun cut = RunCommand(home.path(), "import", {dir.path() + "/cut.mdb", "--replace"});
    EXPECT_EQ(cut.exitCode, 1);
    EXPECT_TRUE(cut.err.contains("orvel import: error ")) << cut.err.toStdString();
    EXPECT_TRUE(cut.err.contains("table '")) << cut.err.toStdString();
    EXPECT_EQ(Hash(home.storeFile()), standing);

    // A good replacement takes the place of a changed store.
    ASSERT_EQ(RunCommand(home.path(), "query", {"delete * from VecFuel"}).exitCode, 0);
    const CommandRun replaced = RunCommand(home.path(), "import", {Fixture(), "--replace"});
    EXPECT_EQ(replaced.exitCode, 0) << replaced.err.toStdString();
    EXPECT_EQ(RunCommand(home.path(), "query", {"select count(*) from VecFuel"}).out, "Expr1000\n30\n");

    // The lock of a running instance refuses the command.
    Session running;
    running.home = home.path();
    ASSERT_TRUE(AcquireInstanceLock(running));
    const CommandRun locked = RunCommand(home.path(), "import", {Fixture(), "--replace"});
    EXPECT_EQ(locked.exitCode, 1);
    EXPECT_TRUE(locked.err.contains("The Orvel Module is already open!"));
}

TEST(ImportAtStart, BatchCommandsTakeTheOlderFileOverFirstAndAFailureLeavesNoStore) {
    for (const char* sub : {"check", "query"}) {
        SCOPED_TRACE(sub);
        TempHome home;
        Copy(home.dataPath() + "invent.mdb");
        const CommandRun run = RunCommand(
            home.path(), sub, sub == QString("query") ? QStringList{"select count(*) from voertuig"} : QStringList{});
        EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
        EXPECT_TRUE(run.out.contains(sub == QString("query") ? "\n8\n" : "schema version 1.3.157"))
            << run.out.toStdString();
        EXPECT_TRUE(QFileInfo::exists(home.storeFile()));
    }
    TempHome broken;
    Copy(broken.dataPath() + "invent.mdb", 5000);
    const CommandRun run = RunCommand(broken.path(), "check", {});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.err.contains("cut short")) << run.err.toStdString();
    EXPECT_FALSE(QFileInfo::exists(broken.storeFile()));
    // The next start tries again, and fails the same way rather than making an empty store.
    EXPECT_EQ(RunCommand(broken.path(), "check", {}).exitCode, 1);
    EXPECT_FALSE(QFileInfo::exists(broken.storeFile()));
}

TEST(ImportAtStart, DesktopShowsItsProgressThenTheRegisterOrTheCause) {
    ScriptedMessageService messages;
    {
        TempHome home;
        Copy(home.dataPath() + "invent.mdb");
        Session session;
        session.home = home.path();
        SetCurrentSession(&session);
        ImportProgressWindow progress;
        QStringList seen;
        ImportObserver observer = progress.Observer();
        const auto show = observer.tableStarting;
        observer.tableStarting = [&](const QString& table, int done, int total) {
            show(table, done, total);
            seen << QString("%1 %2/%3 %4")
                        .arg(table)
                        .arg(progress.prgTables->value())
                        .arg(total)
                        .arg(progress.isVisible());
        };
        SetStartImportObserver(observer);
        {
            frmMain window;
            EXPECT_TRUE(window.Startup());
        }
        SetStartImportObserver({});
        EXPECT_EQ(seen.size(), 20);
        EXPECT_EQ(seen.value(2), "voertuig 2/20 1");
        EXPECT_TRUE(progress.lblTable->text().contains("tblTeDate")) << progress.lblTable->text().toStdString();
        EXPECT_EQ(progress.prgTables->value(), 20);
        EXPECT_TRUE(messages.shown.isEmpty()) << messages.last().toStdString();
        session.db.reset();
        SetCurrentSession(nullptr);
    }
    {
        TempHome home;
        QFile notJet(home.dataPath() + "invent.mdb");
        ASSERT_TRUE(notJet.open(QIODevice::WriteOnly));
        notJet.write(QByteArray(8192, 'z'));
        notJet.close();
        Session session;
        session.home = home.path();
        SetCurrentSession(&session);
        {
            frmMain window;
            EXPECT_FALSE(window.Startup());
        }
        ASSERT_EQ(messages.shown.size(), 1);
        EXPECT_EQ(messages.shown.front().title, "Orvel");
        EXPECT_EQ(messages.shown.front().icon, MsgIcon::Critical);
        EXPECT_TRUE(messages.last().contains("not a Jet database")) << messages.last().toStdString();
        EXPECT_FALSE(QFileInfo::exists(home.storeFile()));
        SetCurrentSession(nullptr);
    }
}
