// Saves that survive kill -9: a scripted day of work (day_of_work) is killed with SIGKILL at random moments, 200
// times with a fixed seed. After each kill the store passes SQLite's integrity check, holds exactly what the same
// day held after the last write it reported (or the one after it, written but not yet reported), and a start runs
// on it.
#include "RawDump.h"

#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <random>
#include <signal.h>

namespace {

QString IntegrityOf(const QString& file) {
    sqlite3* db = nullptr;
    QString result = "<cannot open>";
    if (sqlite3_open_v2(file.toUtf8().constData(), &db, SQLITE_OPEN_READWRITE, nullptr) == SQLITE_OK) {
        sqlite3_stmt* s = nullptr;
        if (sqlite3_prepare_v2(db, "PRAGMA integrity_check", -1, &s, nullptr) == SQLITE_OK &&
            sqlite3_step(s) == SQLITE_ROW)
            result = QString::fromUtf8(reinterpret_cast<const char*>(sqlite3_column_text(s, 0)));
        sqlite3_finalize(s);
    }
    sqlite3_close(db);
    return result;
}

// The day run once to its end, with the store's dump hash after each durable write: the states a kill may leave.
QList<QByteArray> RecordTheDay() {
    QTemporaryDir dir;
    const QString record = dir.path() + "/record.txt";
    QProcess day;
    day.start(DAY_OF_WORK, {dir.path() + "/home", "--record", record});
    EXPECT_TRUE(day.waitForFinished(300000));
    EXPECT_EQ(day.exitCode(), 0) << day.readAllStandardError().toStdString();
    QFile f(record);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly));
    QList<QByteArray> states = f.readAll().split('\n');
    states.removeAll(QByteArray());
    return states;
}

TEST(KillLoop, EveryKillLeavesAWholeStoreAtAReportedWrite) {
    const QList<QByteArray> states = RecordTheDay();
    ASSERT_GT(states.size(), 20); // the state before the first write, then one after each
    std::mt19937 rng(2024);
    int kills = 0;
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        TempHome home;
        // A first start makes the store; the kills fall on the day's work after it.
        QProcess day;
        day.setProcessChannelMode(QProcess::SeparateChannels);
        day.start(DAY_OF_WORK, {home.path()});
        ASSERT_TRUE(day.waitForStarted());
        const int target = std::uniform_int_distribution<int>(0, static_cast<int>(states.size()) - 1)(rng);
        const int extraMicros = std::uniform_int_distribution<int>(0, 3000)(rng);
        int reported = 0;
        while (reported < target && day.state() == QProcess::Running) {
            day.waitForReadyRead(50);
            reported += static_cast<int>(day.readAllStandardOutput().count('\n'));
        }
        usleep(static_cast<useconds_t>(extraMicros));
        if (day.state() == QProcess::Running) {
            ::kill(static_cast<pid_t>(day.processId()), SIGKILL);
            ++kills;
        }
        day.waitForFinished(30000);
        reported += static_cast<int>(day.readAllStandardOutput().count('\n'));

        const QString file = home.storeFile();
        if (!QFile::exists(file)) {
            // Killed while the first start made the store: nothing was put in place, the next start makes it.
            EXPECT_EQ(reported, 0);
            continue;
        }
        ASSERT_EQ(IntegrityOf(file), "ok");
        const QByteArray now = RawDumpHash(file);
        EXPECT_TRUE(now == states.value(reported) || now == states.value(reported + 1))
            << "after " << reported << " reported writes the store matches neither state";
        // The program starts on what was left.
        ScriptedMessageService messages;
        Session s;
        s.home = home.path();
        ASSERT_NO_THROW({
            OpenSessionStore(s);
            CreateVersionTable(*s.db);
            CheckVersion(*s.db);
            OwnerProbe(*s.db);
            RunStartupSteps(*s.db);
        });
    }
    EXPECT_GE(kills, 150); // most rounds end by the kill, not by the day's end
    std::printf("%d of 200 rounds killed\n", kills);
}

} // namespace
