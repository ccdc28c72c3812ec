#include "Rar5Archive.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <unistd.h>
#include <vector>

namespace {

// ---- CRC-32, eight bytes a step ----

using CrcTables = std::array<std::array<std::uint32_t, 256>, 8>;

CrcTables MakeCrcTables() {
    CrcTables t{};
    for (std::uint32_t i = 0; i < 256; ++i) {
        std::uint32_t c = i;
        for (int k = 0; k < 8; ++k)
            c = (c & 1) ? 0xEDB88320u ^ (c >> 1) : c >> 1;
        t[0][i] = c;
    }
    for (std::uint32_t i = 0; i < 256; ++i)
        for (int k = 1; k < 8; ++k)
            t[k][i] = (t[k - 1][i] >> 8) ^ t[0][t[k - 1][i] & 0xFF];
    return t;
}

const CrcTables& Tables() {
    static const CrcTables tables = MakeCrcTables();
    return tables;
}

// ---- The format's constants ----

const QByteArray kSignature("Rar!\x1A\x07\x01\x00", 8);
constexpr std::uint64_t kHeadMain = 1;
constexpr std::uint64_t kHeadFile = 2;
constexpr std::uint64_t kHeadService = 3;
constexpr std::uint64_t kHeadEnd = 5;
constexpr std::uint64_t kFlagExtra = 0x0001;
constexpr std::uint64_t kFlagData = 0x0002;
constexpr std::uint64_t kFileHasTime = 0x0002;
constexpr std::uint64_t kFileHasCrc = 0x0004;
constexpr std::uint64_t kArchiveVolume = 0x0001;
constexpr std::uint64_t kArchiveSolid = 0x0004;
constexpr std::uint64_t kHostUnix = 1;
constexpr std::uint64_t kUnixRegularFile = 0100644;

void AppendLe32(QByteArray& out, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        out.append(static_cast<char>((v >> (8 * i)) & 0xFF));
}

void PutLe32(char* at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i)
        at[i] = static_cast<char>((v >> (8 * i)) & 0xFF);
}

// A whole block: header CRC-32, header size, then `body` (type, flags and the fields).
QByteArray Block(const QByteArray& body) {
    QByteArray sized = RarVint(static_cast<std::uint64_t>(body.size())) + body;
    QByteArray out;
    AppendLe32(out, Crc32(sized.constData(), static_cast<std::size_t>(sized.size())));
    return out + sized;
}

[[noreturn]] void Fail(int number, const QString& what) {
    throw ArchiveError(number, what);
}

int NumberOfErrno(int error) {
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        return 61;
    case EACCES:
    case EPERM:
    case EROFS:
        return 70;
    case ENOENT:
    case ENOTDIR:
        return 76;
    case EIO:
        return 57;
    default:
        return 75;
    }
}

[[noreturn]] void FailErrno(const QString& what) {
    const int error = errno;
    Fail(NumberOfErrno(error), what + ": " + QString::fromLocal8Bit(std::strerror(error)));
}

// ---- Reading an earlier archive ----

struct Reader {
    const QByteArray& data;
    qint64 pos = 0;
    bool ok = true;

    std::uint64_t vint() {
        std::uint64_t value = 0;
        for (int shift = 0; shift < 64; shift += 7) {
            if (pos >= data.size()) {
                ok = false;
                return 0;
            }
            const auto byte = static_cast<unsigned char>(data[pos++]);
            value |= static_cast<std::uint64_t>(byte & 0x7F) << shift;
            if (!(byte & 0x80))
                return value;
        }
        ok = false;
        return 0;
    }
    std::uint32_t le32() {
        if (pos + 4 > data.size()) {
            ok = false;
            return 0;
        }
        std::uint32_t v = 0;
        for (int i = 0; i < 4; ++i)
            v |= static_cast<std::uint32_t>(static_cast<unsigned char>(data[pos + i])) << (8 * i);
        pos += 4;
        return v;
    }
};

struct EarlierArchive {
    bool isRar5 = false;
    QByteArray keptBlocks; // the blocks carried over, whole, in their order
    int keptEntries = 0;
};

// The entries of an earlier RAR 5 archive other than `entryName`, with their data as they stand. An archive this
// writer cannot carry over entry by entry (not RAR 5, damaged, encrypted headers, solid, a volume) is no RAR 5.
// Only the headers are read: the data of the entry that is replaced (the whole store) is passed over.
EarlierArchive ReadEarlier(QFile& file, const QString& entryName) {
    EarlierArchive result;
    const qint64 fileSize = file.size();
    if (file.read(kSignature.size()) != kSignature)
        return result;
    bool droppingFollowers = false; // service blocks that belong to a dropped file entry
    bool sawMain = false;
    qint64 blockStart = kSignature.size();
    while (blockStart < fileSize) {
        // The header's CRC-32 and its size (a vint of at most ten bytes), then the header itself.
        if (!file.seek(blockStart))
            return result;
        QByteArray block = file.read(std::min<qint64>(14, fileSize - blockStart));
        Reader r{block, 0};
        const std::uint32_t crc = r.le32();
        const qint64 sizeStart = r.pos;
        const std::uint64_t headerSize = r.vint();
        if (!r.ok || headerSize == 0 || headerSize > 2 * 1024 * 1024)
            return result;
        const qint64 bodyStart = r.pos;
        const qint64 headerEnd = bodyStart + static_cast<qint64>(headerSize);
        if (blockStart + headerEnd > fileSize)
            return result;
        if (block.size() < headerEnd)
            block += file.read(headerEnd - block.size());
        if (block.size() < headerEnd)
            return result;
        block.truncate(headerEnd);
        if (Crc32(block.constData() + sizeStart, static_cast<std::size_t>(headerEnd - sizeStart)) != crc)
            return result;
        const std::uint64_t type = r.vint();
        const std::uint64_t flags = r.vint();
        if (flags & kFlagExtra)
            r.vint();
        const std::uint64_t dataSize = (flags & kFlagData) ? r.vint() : 0;
        if (!r.ok || dataSize > static_cast<std::uint64_t>(fileSize - blockStart - headerEnd))
            return result;
        const qint64 blockEnd = blockStart + headerEnd + static_cast<qint64>(dataSize);
        if (type == kHeadMain) {
            const std::uint64_t archiveFlags = r.vint();
            if (!r.ok || (archiveFlags & (kArchiveVolume | kArchiveSolid)))
                return result;
            sawMain = true;
        } else if (!sawMain) {
            return result; // encrypted headers, or no main header first
        } else if (type == kHeadEnd) {
            result.isRar5 = true;
            return result;
        } else if (type == kHeadFile || type == kHeadService) {
            const std::uint64_t fileFlags = r.vint();
            r.vint(); // unpacked size
            r.vint(); // attributes
            if (fileFlags & kFileHasTime)
                r.le32();
            if (fileFlags & kFileHasCrc)
                r.le32();
            r.vint(); // compression
            r.vint(); // host
            const std::uint64_t nameLength = r.vint();
            if (!r.ok || r.pos + static_cast<qint64>(nameLength) > headerEnd)
                return result;
            const QString name = QString::fromUtf8(block.constData() + r.pos, static_cast<qsizetype>(nameLength));
            bool keep;
            if (type == kHeadFile) {
                droppingFollowers = name.compare(entryName, Qt::CaseInsensitive) == 0;
                keep = !droppingFollowers;
            } else {
                // Quick open and recovery records describe the whole old archive; they would be wrong now.
                keep = !droppingFollowers && name != "QO" && name != "RR";
            }
            if (keep) {
                if (!file.seek(blockStart))
                    return result;
                const QByteArray whole = file.read(blockEnd - blockStart);
                if (whole.size() != blockEnd - blockStart)
                    return result;
                result.keptBlocks += whole;
                if (type == kHeadFile)
                    ++result.keptEntries;
            }
        } else {
            return result; // a block this writer does not know
        }
        blockStart = blockEnd;
    }
    return result;
}

QString FreeNameBeside(const QString& path) {
    const QFileInfo info(path);
    for (int n = 1;; ++n) {
        const QString candidate =
            info.dir().filePath(info.completeBaseName() + "-" + QString::number(n) + "." + info.suffix());
        if (!QFileInfo::exists(candidate))
            return candidate;
    }
}

void WriteAll(int fd, const char* data, qint64 size, const QString& file) {
    while (size > 0) {
        const ssize_t n = ::write(fd, data, static_cast<std::size_t>(size));
        if (n < 0) {
            if (errno == EINTR)
                continue;
            FailErrno("Cannot write '" + file + "'");
        }
        data += n;
        size -= n;
    }
}

} // namespace

std::uint32_t Crc32(const char* data, std::size_t size, std::uint32_t crc) {
    const CrcTables& t = Tables();
    auto p = reinterpret_cast<const unsigned char*>(data);
    std::uint32_t c = ~crc;
    while (size >= 8) {
        const std::uint32_t lo = c ^ (static_cast<std::uint32_t>(p[0]) | static_cast<std::uint32_t>(p[1]) << 8 |
                                      static_cast<std::uint32_t>(p[2]) << 16 | static_cast<std::uint32_t>(p[3]) << 24);
        const std::uint32_t hi = static_cast<std::uint32_t>(p[4]) | static_cast<std::uint32_t>(p[5]) << 8 |
                                 static_cast<std::uint32_t>(p[6]) << 16 | static_cast<std::uint32_t>(p[7]) << 24;
        c = t[7][lo & 0xFF] ^ t[6][(lo >> 8) & 0xFF] ^ t[5][(lo >> 16) & 0xFF] ^ t[4][lo >> 24] ^ t[3][hi & 0xFF] ^
            t[2][(hi >> 8) & 0xFF] ^ t[1][(hi >> 16) & 0xFF] ^ t[0][hi >> 24];
        p += 8;
        size -= 8;
    }
    while (size-- > 0)
        c = t[0][(c ^ *p++) & 0xFF] ^ (c >> 8);
    return ~c;
}

QByteArray RarVint(std::uint64_t value) {
    QByteArray out;
    do {
        unsigned char byte = value & 0x7F;
        value >>= 7;
        if (value)
            byte |= 0x80;
        out.append(static_cast<char>(byte));
    } while (value);
    return out;
}

ArchiveResult WriteRar5Archive(const QString& archivePath, const QString& sourceFile, const QString& entryName,
                               const ArchiveProgress& progress) {
    ArchiveResult result;
    result.archivePath = archivePath;
    const QFileInfo archiveInfo(archivePath);
    const QString folder = archiveInfo.absolutePath();
    if (!QFileInfo(folder).isDir())
        Fail(76, "Path not found: '" + folder + "'");

    // What an earlier archive of this name holds.
    EarlierArchive earlier;
    const bool archiveStands = archiveInfo.exists();
    if (archiveStands) {
        QFile old(archivePath);
        if (!old.open(QIODevice::ReadOnly))
            Fail(75, "Cannot read '" + archivePath + "': " + old.errorString());
        earlier = ReadEarlier(old, entryName);
    }

    QFile source(sourceFile);
    if (!source.open(QIODevice::ReadOnly))
        Fail(53, "Cannot open '" + sourceFile + "': " + source.errorString());
    const qint64 total = source.size();
    const QDateTime modified = QFileInfo(sourceFile).lastModified();

    // The file entry's header, its two CRC-32s patched in once the data has been read.
    const QByteArray name = entryName.toUtf8();
    QByteArray body;
    body += RarVint(kHeadFile);
    body += RarVint(kFlagData);
    body += RarVint(static_cast<std::uint64_t>(total)); // data size: stored, so the packed size is the size
    body += RarVint(kFileHasTime | kFileHasCrc);
    body += RarVint(static_cast<std::uint64_t>(total));
    body += RarVint(kUnixRegularFile);
    AppendLe32(body, static_cast<std::uint32_t>(std::max<qint64>(0, modified.toSecsSinceEpoch())));
    const qsizetype crcAt = body.size();
    AppendLe32(body, 0);
    body += RarVint(0); // compression: version 0, method 0 (stored)
    body += RarVint(kHostUnix);
    body += RarVint(static_cast<std::uint64_t>(name.size()));
    body += name;
    QByteArray fileHeader = Block(body);
    const qsizetype crcInHeader = fileHeader.size() - body.size() + crcAt;

    QByteArray head = kSignature;
    QByteArray mainBody = RarVint(kHeadMain) + RarVint(0) + RarVint(0);
    head += Block(mainBody);
    head += earlier.keptBlocks;
    const qint64 fileHeaderAt = head.size();
    head += fileHeader;

    QTemporaryFile temp(folder + "/.Inven-XXXXXX.tmp");
    temp.setAutoRemove(true);
    errno = 0;
    if (!temp.open()) {
        const int error = errno;
        Fail(error ? NumberOfErrno(error) : 75, "Cannot write in '" + folder + "': " + temp.errorString());
    }
    const int fd = temp.handle();
    WriteAll(fd, head.constData(), head.size(), temp.fileName());

    std::vector<char> buffer(1 << 20);
    std::uint32_t crc = 0;
    qint64 done = 0;
    while (done < total) {
        const qint64 want = std::min<qint64>(static_cast<qint64>(buffer.size()), total - done);
        const qint64 got = source.read(buffer.data(), want);
        if (got <= 0)
            Fail(57, "Cannot read '" + sourceFile + "': " + source.errorString());
        crc = Crc32(buffer.data(), static_cast<std::size_t>(got), crc);
        WriteAll(fd, buffer.data(), got, temp.fileName());
        done += got;
        if (progress)
            progress(done, total);
    }
    if (source.read(buffer.data(), 1) != 0)
        Fail(57, "'" + sourceFile + "' changed while it was read");

    const QByteArray end = Block(RarVint(kHeadEnd) + RarVint(0) + RarVint(0));
    WriteAll(fd, end.constData(), end.size(), temp.fileName());

    // The data's CRC-32, and the header's own over it.
    PutLe32(fileHeader.data() + crcInHeader, crc);
    const qsizetype sizeAt = 4;
    PutLe32(fileHeader.data(),
            Crc32(fileHeader.constData() + sizeAt, static_cast<std::size_t>(fileHeader.size() - sizeAt)));
    if (::pwrite(fd, fileHeader.constData(), static_cast<std::size_t>(fileHeader.size()), fileHeaderAt) !=
        fileHeader.size())
        FailErrno("Cannot write '" + temp.fileName() + "'");
    if (::fsync(fd) != 0)
        FailErrno("Cannot write '" + temp.fileName() + "'");
    result.archiveSize = head.size() + total + end.size();
    result.dataCrc = crc;
    result.keptEntries = earlier.keptEntries;

    // A file of the archive's name that is no RAR 5 archive is kept beside it.
    if (archiveStands && !earlier.isRar5) {
        result.keptBeside = FreeNameBeside(archivePath);
        if (std::rename(QFile::encodeName(archivePath).constData(), QFile::encodeName(result.keptBeside).constData()))
            FailErrno("Cannot keep '" + archivePath + "' beside the new archive");
    }
    if (std::rename(QFile::encodeName(temp.fileName()).constData(), QFile::encodeName(archivePath).constData()))
        FailErrno("Cannot replace '" + archivePath + "'");
    temp.setAutoRemove(false); // it is the archive now
    const int dir = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return result;
}
