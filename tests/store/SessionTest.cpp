// The store side of a run: one instance per home, the store opened or made, the closing date, the end.
#include "Session.h"
#include "Database.h"
#include "QueryHelpers.h"
#include "StoreHome.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <gtest/gtest.h>

TEST(SessionInstance, SecondInstanceIsRefusedUntilTheFirstEnds) {
    TempHome home;
    Session first;
    first.home = home.path();
    ASSERT_TRUE(AcquireInstanceLock(first));
    EXPECT_TRUE(QFile::exists(home.path() + "/orvel.lock"));

    Session second;
    second.home = home.path();
    EXPECT_FALSE(AcquireInstanceLock(second));
    EXPECT_EQ(second.instanceLock, nullptr);

    // Another home is another program.
    TempHome other;
    Session elsewhere;
    elsewhere.home = other.path();
    EXPECT_TRUE(AcquireInstanceLock(elsewhere));

    first.instanceLock.reset();
    EXPECT_TRUE(AcquireInstanceLock(second));
}

TEST(SessionStore, MissingFoldersAndStoreAreMadeAndAStandingStoreIsReopened) {
    QTemporaryDir root;
    Session s;
    s.home = root.path() + "/new home";
    OpenSessionStore(s);
    EXPECT_EQ(s.DataPath, QDir(s.home).absolutePath() + "/Databases/");
    EXPECT_TRUE(QFile::exists(s.DataPath + "invent.db"));
    ASSERT_NE(s.db, nullptr);
    s.db->Execute("insert into kamer ([Desc]) values ('Office')");
    s.db.reset();
    OpenSessionStore(s);
    EXPECT_EQ(GetScalar(*s.db, "select [desc] from kamer", ""), "Office");
}

TEST(SessionStore, OwnerProbeNeedsTheOwnerTableAndAnEmptyClosingTableGivesFirstJanuary2000) {
    StoreHome h;
    EXPECT_EQ(GetClosedDate(h.db()), QDateTime(QDate(2000, 1, 1), QTime(0, 0)));
    h.db().Execute("drop table owner");
    EXPECT_THROW(OwnerProbe(h.db()), DbError);
}

TEST(SessionClosedDate, RoundTripsThroughRowTwoWithoutItsTime) {
    StoreHome h;
    Database& db = *h.session.db;
    h.session.ClosedDate = QDateTime(QDate(2023, 6, 30), QTime(16, 45, 10));
    SaveClosedDate(h.session);
    EXPECT_EQ(h.session.ClosedDateId, 2);
    EXPECT_EQ(GetScalar(db, "select count(*) from tblTeDate", "0"), "1");
    EXPECT_EQ(GetScalar(db, "select TeDateID from tblTeDate", "", 0, "none"), "2");
    EXPECT_EQ(GetClosedDate(db), QDateTime(QDate(2023, 6, 30), QTime(0, 0)));

    // A later change edits the same row; other rows of the table are never read.
    db.Execute("insert into tblTeDate (TeDateID,TeDate) values (1,#01/15/2024#)");
    h.session.ClosedDate = QDateTime(QDate(2019, 2, 28), QTime(0, 0));
    SaveClosedDate(h.session);
    EXPECT_EQ(GetScalar(db, "select count(*) from tblTeDate where TeDateID = 2", "0"), "1");
    EXPECT_EQ(GetClosedDate(db), QDateTime(QDate(2019, 2, 28), QTime(0, 0)));
}

TEST(SessionEnd, RepairClosesTheStoreAndLeavesItWhole) {
    StoreHome h(false);
    h.db().Execute("insert into kamer ([Desc]) values ('Workshop')");
    RepairAtExit(h.session);
    EXPECT_EQ(h.session.db, nullptr);

    auto again = Database::Open(h.home.storeFile(), false);
    QString reason;
    EXPECT_TRUE(again->IntegrityCheck(&reason)) << qPrintable(reason);
    EXPECT_EQ(GetScalar(*again, "select [Desc] from kamer", ""), "Workshop");
    EXPECT_TRUE(h.messages.shown.isEmpty());
}

TEST(SessionEnd, RepairWithoutAStoreIsSilent) {
    Session s;
    EXPECT_NO_THROW(RepairAtExit(s));
    TempHome home;
    s.DataPath = home.dataPath();
    EXPECT_NO_THROW(RepairAtExit(s));
    EXPECT_FALSE(QFile::exists(home.storeFile()));
}
