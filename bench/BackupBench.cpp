// The backup of a 200 MB store into "Inven.rar" against the floor of the same work: a plain copy of the store
// file, synced to disk as the archive is. Also the backup screen's whole start (repair, backup, reopening).
//
//   orvel_backup_bench [figures-file] [megabytes]

#include "BenchSupport.h"

#include "Backup.h"
#include "Database.h"
#include "Session.h"
#include "StoreStartup.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>
#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>
#include <vector>

namespace {

// Rows of 1 KB of text until the store file reaches `bytes`, written straight through SQLite.
void FillStore(Database& store, qint64 bytes) {
    sqlite3* h = store.handle();
    sqlite3_exec(h, "CREATE TABLE BenchFill (id INTEGER PRIMARY KEY, note TEXT)", nullptr, nullptr, nullptr);
    sqlite3_stmt* s = nullptr;
    if (sqlite3_prepare_v2(h, "INSERT INTO BenchFill (note) VALUES (?)", -1, &s, nullptr) != SQLITE_OK)
        throw DbError(3000, "prepare failed");
    QRandomGenerator random(2024);
    QByteArray note(1024, 'x');
    const qint64 rows = bytes / 1310; // a row and its share of the page come to about 1.3 KB
    sqlite3_exec(h, "BEGIN", nullptr, nullptr, nullptr);
    for (qint64 i = 0; i < rows; ++i) {
        for (char& c : note)
            c = static_cast<char>('a' + random.bounded(26));
        sqlite3_bind_text(s, 1, note.constData(), static_cast<int>(note.size()), SQLITE_TRANSIENT);
        if (sqlite3_step(s) != SQLITE_DONE)
            throw DbError(3000, "insert failed");
        sqlite3_reset(s);
    }
    sqlite3_exec(h, "COMMIT", nullptr, nullptr, nullptr);
    sqlite3_finalize(s);
}

// The floor: the file read and written in 1 MB pieces, then synced.
void PlainCopy(const QString& from, const QString& to) {
    QFile in(from);
    if (!in.open(QIODevice::ReadOnly))
        throw DbError(3044, "cannot read " + from);
    const int fd = ::open(QFile::encodeName(to).constData(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
    if (fd < 0)
        throw DbError(3044, "cannot write " + to);
    std::vector<char> buffer(1 << 20);
    for (qint64 got; (got = in.read(buffer.data(), static_cast<qint64>(buffer.size()))) > 0;)
        if (::write(fd, buffer.data(), static_cast<size_t>(got)) != got)
            throw DbError(3044, "short write");
    ::fsync(fd);
    ::close(fd);
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    const QString figures = args.size() > 1 ? args[1] : QStringLiteral("/tmp/backup_figures.txt");
    const qint64 megabytes = args.size() > 2 ? args[2].toLongLong() : 200;

    QTemporaryDir home;
    QString out;
    QTextStream t(&out);
    t.setRealNumberNotation(QTextStream::FixedNotation);
    t.setRealNumberPrecision(3);
    try {
        Session s;
        s.home = home.path();
        OpenSessionStore(s);
        FillStore(*s.db, megabytes * 1024 * 1024);
        const QString storeFile = s.DataPath + "invent.db";
        const QString folder = DefaultBackupFolder(s);
        const int runs = 5;
        std::vector<double> copies, backups;
        for (int i = 0; i < runs; ++i) {
            copies.push_back(bench::Seconds([&] { PlainCopy(storeFile, home.path() + "/copy.db"); }));
            backups.push_back(bench::Seconds([&] {
                if (BackupStore(s, folder).outcome != BackupOutcome::Written)
                    throw DbError(3000, "the store was held");
            }));
            ReopenStore(s);
        }
        const double withRepair = bench::Seconds([&] {
            RepairStore(s);
            BackupStore(s, folder);
            ReopenStore(s);
        });
        const double copy = bench::Median(copies);
        const double backup = bench::Median(backups);
        t << bench::BuildKind() << "store of " << QFileInfo(storeFile).size() / (1024.0 * 1024.0) << " MB, median of "
          << runs << ":\n";
        t << "  plain copy of the file, synced      " << copy << " s\n";
        t << "  BackupStore into Inven.rar, synced  " << backup << " s  (" << backup / copy << " x the copy)\n";
        t << "  backup screen's start: repair, backup, reopening  " << withRepair << " s  (" << withRepair / copy
          << " x the copy)\n";
    } catch (const NumberedError& e) {
        return bench::Failed(e);
    }
    return bench::Report(figures, out);
}
