// A home holds people's names and permits: every folder the program makes in it is its owner's alone (0700) and
// every file (the store, its journal, the backup archive, workbooks, an imported store) is read and written by its
// owner only (0600). The program itself is run, so that what it sets on its own start is what is checked.
#include "TempHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/stat.h>

namespace {

struct HomeRun {
    int exitCode = -1;
    std::string err;
};

HomeRun Orvel(const QString& home, const QStringList& args) {
    QProcess p;
    p.start(ORVEL_BINARY, QStringList({"--home", home}) + args);
    if (!p.waitForStarted(10000) || !p.waitForFinished(300000))
        return {-1, "did not run to its end"};
    return {p.exitCode(), p.readAllStandardError().toStdString()};
}

// Every entry below `root` with its mode bits, as "path 0600".
QStringList ModesUnder(const QString& root) {
    QStringList out;
    QDirIterator it(root, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString path = it.next();
        struct stat st {};
        if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
            continue;
        out << QDir(root).relativeFilePath(path) + " " + QString::number(st.st_mode & 07777, 8).rightJustified(4, '0');
    }
    out.sort();
    return out;
}

mode_t ModeOf(const QString& path) {
    struct stat st {};
    return ::stat(QFile::encodeName(path).constData(), &st) == 0 ? st.st_mode & 07777 : 07777;
}

} // namespace

TEST(PrivateHome, EveryKindOfFileTheProgramMakesIsTheOwnersAlone) {
    QTemporaryDir root;
    const QString home = root.path() + "/office";
    // A register, a workbook of it, a backup, and a change after the backup (the store's journal comes and goes).
    HomeRun run = Orvel(home, {"demo", "--size", "small", "--seed", "7"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = Orvel(home, {"report", "Vehicle List", "--all"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = Orvel(home, {"backup"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    run = Orvel(home, {"query", "update pdp set surname = surname"});
    ASSERT_EQ(run.exitCode, 0) << run.err;
    // A second home whose store comes from an older installation's file.
    const QString older = root.path() + "/older";
    run = Orvel(older, {"import", QString(ORVEL_FIXTURES_DIR) + "/invent-old.mdb"});
    ASSERT_EQ(run.exitCode, 0) << run.err;

    const QStringList modes = ModesUnder(home) + ModesUnder(older);
    bool workbook = false, archive = false;
    for (const QString& entry : modes) {
        workbook |= entry.contains(".xlsx ");
        archive |= entry.contains("Inven.rar ");
    }
    EXPECT_TRUE(workbook) << modes.join('\n').toStdString();
    EXPECT_TRUE(archive) << modes.join('\n').toStdString();
    EXPECT_TRUE(modes.contains("Databases/invent.db 0600")) << modes.join('\n').toStdString();
    for (const QString& entry : modes) {
        const QString path = entry.section(' ', 0, -2);
        const QString full = (QFileInfo::exists(home + "/" + path) ? home : older) + "/" + path;
        const bool folder = QFileInfo(full).isDir();
        EXPECT_TRUE(entry.endsWith(folder ? " 0700" : " 0600")) << entry.toStdString();
    }
    EXPECT_EQ(ModeOf(home), 0700u);
    EXPECT_EQ(ModeOf(older), 0700u);
    EXPECT_EQ(ModeOf(older + "/Databases/invent.db"), 0600u);
}
