// `orvel --home DIR backup [--to FOLDER]`: the program itself writes the archive that bsdtar and 7z read back,
// prints what 7z lists, and leaves an old archive whole when the store is held or the folder refuses.
#include "Database.h"
#include "TempHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {

struct ProgramRun {
    int exitCode = -1;
    QString out;
    QString err;
};

ProgramRun Start(const QString& program, const QStringList& args, const QString& workDir = QString()) {
    QProcess p;
    p.setWorkingDirectory(workDir);
    p.start(program, args);
    if (!p.waitForStarted(10000)) {
        ADD_FAILURE() << program.toStdString() << " could not be started";
        return {};
    }
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromUtf8(p.readAllStandardOutput()), QString::fromUtf8(p.readAllStandardError())};
}

ProgramRun Orvel(const QString& home, const QStringList& args) {
    return Start(ORVEL_BINARY, QStringList({"--home", home}) + args);
}

QByteArray ReadFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

class BackupCommandTest : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(Orvel(home.path(), {"check"}).exitCode, 0);
        ASSERT_EQ(Orvel(home.path(), {"query", "insert into pdp (id, surname, firstname, pdpdate) values ('1', "
                                               "'O''Neill', 'Sean', '2025/01/31')"})
                      .exitCode,
                  0);
    }

    // The printed line: path, size, CRC-32; each checked against the file and 7z's listing, and the extracts.
    void expectArchive(const ProgramRun& run, const QString& archive) {
        ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
        const QStringList parts = run.out.trimmed().split('\t');
        ASSERT_EQ(parts.size(), 3) << run.out.toStdString();
        EXPECT_EQ(parts[0], archive);
        EXPECT_EQ(parts[1], QString::number(QFileInfo(archive).size()) + " bytes");
        const ProgramRun slt = Start("7z", {"l", "-slt", archive});
        EXPECT_TRUE(slt.out.contains("Path = invent.db")) << slt.out.toStdString();
        EXPECT_TRUE(slt.out.contains("CRC = " + parts[2].mid(6))) << parts[2].toStdString();
        EXPECT_EQ(Start("7z", {"t", archive}).exitCode, 0);
        const QString x = out.path() + "/x";
        QDir().mkpath(x + "/bsd");
        EXPECT_EQ(Start("bsdtar", {"-xf", archive}, x + "/bsd").exitCode, 0);
        EXPECT_EQ(Start("7z", {"x", "-y", "-o" + x + "/7z", archive}).exitCode, 0);
        const QByteArray store = ReadFile(home.storeFile());
        EXPECT_TRUE(ReadFile(x + "/bsd/invent.db") == store);
        EXPECT_TRUE(ReadFile(x + "/7z/invent.db") == store);
        QDir(x).removeRecursively();
    }

    TempHome home;
    QTemporaryDir out;
};

TEST_F(BackupCommandTest, IntoTheBackupFolderAndAnother) {
    expectArchive(Orvel(home.path(), {"backup"}), home.dataPath() + "Backup/Inven.rar");
    const QString folder = out.path() + "/made/here";
    expectArchive(Orvel(home.path(), {"backup", "--to", folder}), folder + "/Inven.rar");
    // The store still answers, with its functions, and the repair left no free page.
    const ProgramRun q = Orvel(home.path(), {"query", "select val('1 234.50') & '|' & surname from pdp"});
    EXPECT_TRUE(q.out.contains("1234.5|O'Neill")) << q.out.toStdString();
    auto db = Database::Open(home.storeFile(), false);
    EXPECT_EQ(db->OpenRecordset("select count(*) from pdp")->Field(0).toLong(), 1);
    EXPECT_NE(Orvel(home.path(), {"backup", "--to"}).exitCode, 0);
}

TEST_F(BackupCommandTest, HeldStoreAndRefusingFolderLeaveTheOldArchive) {
    const QString folder = out.path() + "/b";
    ASSERT_EQ(Orvel(home.path(), {"backup", "--to", folder}).exitCode, 0);
    const QByteArray before = ReadFile(folder + "/Inven.rar");
    ASSERT_EQ(Orvel(home.path(), {"query", "delete from pdp"}).exitCode, 0);
    {
        auto other = Database::Open(home.storeFile(), false);
        other->BeginTrans();
        other->Execute("insert into pdp (id, surname, firstname, pdpdate) values ('2', 'A', 'B', '2025/01/01')");
        const ProgramRun held = Orvel(home.path(), {"backup", "--to", folder});
        EXPECT_EQ(held.exitCode, 1);
        EXPECT_TRUE(held.err.contains("Die Rugsteun kan nie voltooi word nie,\nwant 'n gebruiker is nog besig "
                                      "daarmee.\nMaak asseblief alle ander kaarte programme toe."))
            << held.err.toStdString();
        EXPECT_EQ(ReadFile(folder + "/Inven.rar"), before);
        other->Rollback();
    }
    if (geteuid() == 0)
        ASSERT_EQ(QProcess::execute("chattr", {"+i", folder}), 0);
    else
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::ExeOwner);
    const ProgramRun refused = Orvel(home.path(), {"backup", "--to", folder});
    if (geteuid() == 0)
        QProcess::execute("chattr", {"-i", folder});
    else
        QFile::setPermissions(folder, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    EXPECT_EQ(refused.exitCode, 1);
    EXPECT_TRUE(refused.err.contains("ERROR (70)")) << refused.err.toStdString();
    EXPECT_EQ(ReadFile(folder + "/Inven.rar"), before);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files | QDir::Hidden), QStringList({"Inven.rar"}));
}

} // namespace
