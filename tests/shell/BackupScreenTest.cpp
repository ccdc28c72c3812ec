// The backup screen driven by its buttons: the archive in the Backup folder, the store open again afterwards,
// and a held store's three lines with the old archive left as it was.
#include "Backup.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "frmBackup.h"

#include <QCheckBox>
#include <QFile>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class BackupScreenTest : public ::testing::Test {
protected:
    void SetUp() override {
        session.home = home.path();
        SetCurrentSession(&session);
        OpenSessionStore(session);
        RunSchemaSteps(*session.db);
    }
    void TearDown() override {
        session.db.reset();
        SetCurrentSession(nullptr);
    }
    static QByteArray ReadFile(const QString& path) {
        QFile f(path);
        return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
    }
    TempHome home;
    Session session;
    ScriptedMessageService messages;
};

TEST_F(BackupScreenTest, WritesTheArchiveAndReopensTheStore) {
    const QString archive = home.dataPath() + "Backup/Inven.rar";
    {
        frmBackup s;
        s.show();
        EXPECT_EQ(s.windowTitle(), "Backup Orvel Register Data");
        EXPECT_EQ(s.Dir1Path(), home.dataPath() + "Backup");
        EXPECT_FALSE(s.chk[0]->isEnabled());
        EXPECT_FALSE(s.chk[1]->isEnabled());
        QTest::mouseClick(s.cmd[0], Qt::LeftButton);
    }
    EXPECT_TRUE(messages.shown.isEmpty());
    ASSERT_TRUE(QFileInfo::exists(archive));
    ASSERT_TRUE(session.db);
    const QByteArray before = ReadFile(archive);
    session.db->Execute("insert into pdp (id, surname, firstname, pdpdate) values ('1', 'A', 'B', '2025/01/01')");

    // Cancel changes nothing.
    {
        frmBackup s;
        QTest::mouseClick(s.cmd[1], Qt::LeftButton);
    }
    EXPECT_EQ(ReadFile(archive), before);

    // Another writer holds the store: the three lines, and the old archive stays.
    auto other = Database::Open(home.storeFile(), false);
    other->BeginTrans();
    other->Execute("insert into pdp (id, surname, firstname, pdpdate) values ('2', 'C', 'D', '2025/01/01')");
    {
        frmBackup s;
        QTest::mouseClick(s.cmd[0], Qt::LeftButton);
    }
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].text, kStoreHeldMessage);
    EXPECT_EQ(ReadFile(archive), before);
    other->Rollback();
    ASSERT_TRUE(session.db);
    EXPECT_EQ(session.db->OpenRecordset("select count(*) from pdp")->Field(0).toLong(), 1);
}

} // namespace
