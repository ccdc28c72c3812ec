// The backup archive read back by the tools an office has: bsdtar lists and extracts it, 7z tests and extracts
// it, and what they give back is the file byte for byte, also at the sizes where the integers grow a byte. An
// earlier archive keeps its other entries; a failure leaves the old archive as it was.
#include "Rar5Archive.h"
#include "Backup.h"
#include "Database.h"
#include "StoreHome.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

namespace {

struct ToolRun {
    int exitCode = -1;
    QString out;
};

// A tool that cannot be started fails the test: the archive must be read by both.
ToolRun Tool(const QString& program, const QStringList& args, const QString& workDir = QString()) {
    QProcess p;
    p.setWorkingDirectory(workDir);
    p.setProcessChannelMode(QProcess::MergedChannels);
    p.start(program, args);
    if (!p.waitForStarted(10000)) {
        ADD_FAILURE() << program.toStdString() << " could not be started (install libarchive-tools and p7zip-full)";
        return {};
    }
    p.waitForFinished(120000);
    return {p.exitCode(), QString::fromUtf8(p.readAll())};
}

QByteArray ReadFile(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray("<unreadable>");
}

void WriteFile(const QString& path, const QByteArray& data) {
    QFile f(path);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly | QIODevice::Truncate));
    ASSERT_EQ(f.write(data), data.size());
}

QByteArray RandomBytes(qint64 size, quint32 seed) {
    QRandomGenerator random(seed);
    QByteArray out(size, Qt::Uninitialized);
    for (qint64 i = 0; i < size; ++i)
        out[i] = static_cast<char>(random.bounded(256));
    return out;
}

// Read-only for the superuser too: the immutable attribute where the mode bits do not bind.
void SetImmutable(const QString& path, bool on) {
    if (geteuid() == 0) {
        ASSERT_EQ(QProcess::execute("chattr", {on ? "+i" : "-i", path}), 0);
        return;
    }
    QFile::setPermissions(path, on ? QFileDevice::ReadOwner | QFileDevice::ExeOwner
                                   : QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
}

class ArchiveTest : public ::testing::Test {
protected:
    QString path(const QString& name) const { return m_dir.path() + "/" + name; }

    // Both tools' view of one entry: listed with its size, tested, extracted equal to `expected`.
    void expectReadBack(const QString& archive, const QString& entry, const QByteArray& expected) {
        const ToolRun list = Tool("bsdtar", {"-tvf", archive});
        EXPECT_EQ(list.exitCode, 0) << list.out.toStdString();
        EXPECT_TRUE(list.out.contains(QString::number(expected.size()) + " ")) << list.out.toStdString();
        EXPECT_TRUE(list.out.contains(entry)) << list.out.toStdString();
        const ToolRun test = Tool("7z", {"t", archive});
        EXPECT_EQ(test.exitCode, 0) << test.out.toStdString();
        EXPECT_TRUE(test.out.contains("Everything is Ok")) << test.out.toStdString();

        QDir(m_dir.path()).mkpath("bsd");
        QDir(m_dir.path()).mkpath("7z");
        QFile::remove(path("bsd/" + entry));
        QFile::remove(path("7z/" + entry));
        EXPECT_EQ(Tool("bsdtar", {"-xf", archive, entry}, path("bsd")).exitCode, 0);
        EXPECT_EQ(Tool("7z", {"x", "-y", "-o" + path("7z"), archive, entry}).exitCode, 0);
        EXPECT_TRUE(ReadFile(path("bsd/" + entry)) == expected) << "bsdtar extract of " << entry.toStdString();
        EXPECT_TRUE(ReadFile(path("7z/" + entry)) == expected) << "7z extract of " << entry.toStdString();
    }

    // 7z's CRC of the entry, as its technical listing prints it.
    QString sevenZipCrc(const QString& archive, const QString& entry) {
        const ToolRun slt = Tool("7z", {"l", "-slt", archive});
        const qsizetype at = slt.out.indexOf("Path = " + entry);
        const qsizetype crc = slt.out.indexOf("CRC = ", at);
        return at < 0 || crc < 0 ? QString() : slt.out.mid(crc + 6, 8);
    }

    QTemporaryDir m_dir;
};

TEST_F(ArchiveTest, ReadBackAcrossTheIntegersByteLimits) {
    for (const qint64 size : {0LL, 1LL, 127LL, 128LL, 16383LL, 16384LL, 2097151LL, 2097152LL}) {
        SCOPED_TRACE(size);
        const QByteArray data = RandomBytes(size, static_cast<quint32>(size));
        WriteFile(path("invent.db"), data);
        const ArchiveResult r = WriteRar5Archive(path("Inven.rar"), path("invent.db"), "invent.db");
        EXPECT_EQ(r.archiveSize, QFileInfo(path("Inven.rar")).size());
        EXPECT_EQ(r.dataCrc, Crc32(data.constData(), static_cast<std::size_t>(data.size())));
        EXPECT_EQ(sevenZipCrc(path("Inven.rar"), "invent.db"),
                  QString("%1").arg(r.dataCrc, 8, 16, QChar('0')).toUpper());
        expectReadBack(path("Inven.rar"), "invent.db", data);
        EXPECT_EQ(QDir(m_dir.path()).entryList({"*.tmp"}, QDir::Files | QDir::Hidden), QStringList());
    }
    // A name long enough that the header's size takes two bytes.
    const QString longName = QString("n").repeated(140) + ".db";
    const QByteArray data = RandomBytes(300, 9);
    WriteFile(path(longName), data);
    WriteRar5Archive(path("Long.rar"), path(longName), longName);
    expectReadBack(path("Long.rar"), longName, data);
}

TEST_F(ArchiveTest, EarlierEntriesSurviveAndTheStoreIsReplaced) {
    const QByteArray notes = RandomBytes(5000, 1);
    WriteFile(path("notes.txt"), notes);
    WriteRar5Archive(path("Inven.rar"), path("notes.txt"), "notes.txt");
    const QByteArray first = RandomBytes(20000, 2);
    WriteFile(path("invent.db"), first);
    EXPECT_EQ(WriteRar5Archive(path("Inven.rar"), path("invent.db"), "invent.db").keptEntries, 1);
    const QByteArray second = RandomBytes(30000, 3);
    WriteFile(path("invent.db"), second);
    const ArchiveResult r = WriteRar5Archive(path("Inven.rar"), path("invent.db"), "invent.db");
    EXPECT_EQ(r.keptEntries, 1);
    EXPECT_TRUE(r.keptBeside.isEmpty());
    expectReadBack(path("Inven.rar"), "notes.txt", notes);
    expectReadBack(path("Inven.rar"), "invent.db", second);
    EXPECT_EQ(Tool("bsdtar", {"-tf", path("Inven.rar")}).out.split('\n', Qt::SkipEmptyParts),
              QStringList({"notes.txt", "invent.db"}));
}

TEST_F(ArchiveTest, AnotherFileOfTheNameIsKeptBeside) {
    WriteFile(path("Inven-1.rar"), "taken");
    WriteFile(path("Inven.rar"), "Rar!\x1a\x07\x00 an older archive");
    WriteFile(path("invent.db"), RandomBytes(100, 4));
    const ArchiveResult r = WriteRar5Archive(path("Inven.rar"), path("invent.db"), "invent.db");
    EXPECT_EQ(r.keptBeside, path("Inven-2.rar"));
    EXPECT_EQ(ReadFile(path("Inven-2.rar")), QByteArray("Rar!\x1a\x07\x00 an older archive"));
    EXPECT_EQ(ReadFile(path("Inven-1.rar")), "taken");
    expectReadBack(path("Inven.rar"), "invent.db", ReadFile(path("invent.db")));
}

TEST_F(ArchiveTest, UnwritableFolderLeavesTheOldArchiveWhole) {
    QDir(m_dir.path()).mkpath("locked");
    WriteFile(path("invent.db"), RandomBytes(1000, 6));
    WriteRar5Archive(path("locked/Inven.rar"), path("invent.db"), "invent.db");
    const QByteArray before = ReadFile(path("locked/Inven.rar"));
    WriteFile(path("invent.db"), RandomBytes(2000, 7));
    const auto errorOf = [&](const QString& archive) {
        try {
            WriteRar5Archive(archive, path("invent.db"), "invent.db");
        } catch (const ArchiveError& e) {
            return e.number();
        }
        return 0;
    };
    SetImmutable(path("locked"), true);
    const int number = errorOf(path("locked/Inven.rar"));
    SetImmutable(path("locked"), false);
    EXPECT_EQ(number, 70);
    EXPECT_EQ(ReadFile(path("locked/Inven.rar")), before);
    EXPECT_EQ(QDir(path("locked")).entryList(QDir::Files | QDir::Hidden), QStringList({"Inven.rar"}));
    EXPECT_EQ(errorOf(path("nowhere/Inven.rar")), 76);
}

// The repair after a backup leaves no free pages, even with statements open on the store.
TEST(StoreBackup, RepairWithAnOpenStatementLeavesNoFreePages) {
    StoreHome h;
    Session& session = h.session;
    for (int i = 0; i < 300; ++i)
        session.db->Execute(QString("insert into pdp (id, surname, firstname, pdpdate) values ('%1', '%2', 'x', "
                                    "'2025/01/01')")
                                .arg(i)
                                .arg(QString("s").repeated(20)));
    session.db->Execute("delete from pdp");
    auto open = session.db->OpenRecordset("select * from owner", RecordsetType::Snapshot);
    auto table = session.db->OpenRecordset("voertuig", RecordsetType::Table);
    const auto freePages = [&session] {
        sqlite3_stmt* s = nullptr;
        sqlite3_prepare_v2(session.db->handle(), "PRAGMA freelist_count", -1, &s, nullptr);
        sqlite3_step(s);
        const int n = sqlite3_column_int(s, 0);
        sqlite3_finalize(s);
        return n;
    };
    ASSERT_GT(freePages(), 0);
    RepairStore(session);
    EXPECT_EQ(freePages(), 0);
}

} // namespace
