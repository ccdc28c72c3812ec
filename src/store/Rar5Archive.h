#pragma once
// The backup archive: a RAR 5 archive written in-process, its one file entry stored without compression. An
// existing RAR 5 archive of the same name keeps its other entries; any other file of that name is kept beside it.

#include "NumberedError.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <functional>

// A failure of the archive, numbered as the old platform's file errors: 53 file not found, 57 device I/O error,
// 61 disk full, 70 permission denied, 75 path/file access error, 76 path not found.
class ArchiveError : public NumberedError {
public:
    using NumberedError::NumberedError;
};

// CRC-32 as zip and RAR use it (reflected polynomial 0xEDB88320); `crc` carries on from an earlier part.
std::uint32_t Crc32(const char* data, std::size_t size, std::uint32_t crc = 0);
// The archive's variable-length integer: seven bits a byte, lowest first, the high bit set on all but the last.
QByteArray RarVint(std::uint64_t value);

struct ArchiveResult {
    QString archivePath;
    qint64 archiveSize = 0;
    std::uint32_t dataCrc = 0; // the CRC-32 of the stored file's data
    QString keptBeside;        // where a foreign file of the archive's name was put, "" when none
    int keptEntries = 0;       // entries of an earlier RAR 5 archive carried over
};

// Called while the data is copied: bytes done and in all. It may yield to the event loop.
using ArchiveProgress = std::function<void(qint64 done, qint64 total)>;

// Writes `archivePath` holding `sourceFile` as `entryName`: the data read once, its CRC-32 patched into the
// entry's header afterwards. The archive is written beside under a temporary name, synced and renamed over the
// old one, so that a failure leaves the old archive whole and no temporary file. Throws ArchiveError.
ArchiveResult WriteRar5Archive(const QString& archivePath, const QString& sourceFile, const QString& entryName,
                               const ArchiveProgress& progress = {});
