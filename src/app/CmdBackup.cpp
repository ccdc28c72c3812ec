#include "CommandLine.h"

#include "BatchSession.h"

#include "Backup.h"
#include "Session.h"

#include <QDir>
#include <cstdio>

// orvel backup [--to FOLDER]: the repair, then the store into "Inven.rar" in FOLDER (made when missing) or the
// backup screen's folder under the data folder. Prints the archive's path, its size and the CRC-32 of the store.
int RunBackupCommand(const CommandLine& cl) {
    QString folder;
    if (cl.args.size() == 2 && cl.args[0] == "--to")
        folder = cl.args[1];
    else if (!cl.args.isEmpty())
        return FailCommand("backup", "usage: backup [--to FOLDER]");
    BatchSession batch(cl);
    if (const QString reason = batch.open(false); !reason.isEmpty())
        return FailCommand("backup", reason);
    Session& s = batch.session;
    if (folder.isEmpty()) {
        folder = DefaultBackupFolder(s);
        if (folder.isEmpty())
            return FailCommand("backup", "cannot make the folder '" + s.DataPath + "Backup'");
    } else if (!QDir().mkpath(folder)) {
        return FailCommand("backup", "cannot make the folder '" + folder + "'");
    }
    RepairStore(s);
    try {
        const BackupResult result = BackupStore(s, QDir(folder).absolutePath());
        if (result.outcome == BackupOutcome::StoreHeld)
            return FailCommand("backup", kStoreHeldMessage);
        std::printf("%s\t%lld bytes\tCRC32 %08X\n", qPrintable(QDir::toNativeSeparators(result.archive.archivePath)),
                    static_cast<long long>(result.archive.archiveSize), result.archive.dataCrc);
        if (!result.archive.keptBeside.isEmpty())
            std::printf("an earlier file of that name was kept as %s\n", qPrintable(result.archive.keptBeside));
        std::fflush(stdout);
        return 0;
    } catch (const NumberedError& e) {
        return FailCommand("backup", "ERROR (" + QString::number(e.number()) + ") " + e.description());
    }
}
