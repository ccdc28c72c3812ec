#include "StoreFacts.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QStringList>

namespace {

quint32 BigEndian32(const QByteArray& bytes, int at) {
    quint32 v = 0;
    for (int i = 0; i < 4; ++i)
        v = (v << 8) | static_cast<quint8>(bytes[at + i]);
    return v;
}

QString FingerprintText(const StoreFingerprint& f) {
    return QString("%1 %2 %3 %4").arg(f.size).arg(f.modifiedMs).arg(f.changeCounter).arg(f.pageCount);
}

} // namespace

QString StoreFactsFile(const QString& storeFile) {
    return storeFile + ".checked";
}

StoreFingerprint FingerprintOf(const QString& storeFile) {
    StoreFingerprint f;
    if (QFileInfo::exists(storeFile + "-journal") || QFileInfo::exists(storeFile + "-wal"))
        return f;
    QFile file(storeFile);
    if (!file.open(QIODevice::ReadOnly))
        return f;
    const QByteArray header = file.read(100);
    if (header.size() < 100 || !header.startsWith(QByteArray("SQLite format 3\0", 16)))
        return f;
    const QFileInfo info(storeFile);
    f.size = info.size();
    f.modifiedMs = info.lastModified().toMSecsSinceEpoch();
    f.changeCounter = BigEndian32(header, 24);
    f.pageCount = BigEndian32(header, 28);
    return f;
}

StoreFacts ReadStoreFacts(const QString& storeFile) {
    StoreFacts facts;
    const StoreFingerprint now = FingerprintOf(storeFile);
    QFile file(StoreFactsFile(storeFile));
    if (!now.valid() || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return facts;
    const QStringList lines = QString::fromUtf8(file.read(4096)).split('\n', Qt::SkipEmptyParts);
    if (lines.isEmpty() || lines.first() != "fingerprint " + FingerprintText(now))
        return facts;
    facts.stepsChangeNothing = lines.contains("steps change nothing");
    facts.intact = lines.contains("intact");
    facts.recalcSettled = lines.contains("recalc settled");
    return facts;
}

void RecordStoreFacts(const QString& storeFile, const StoreFingerprint& found, const StoreFacts& facts) {
    if (!found.valid() || !(FingerprintOf(storeFile) == found))
        return;
    QSaveFile file(StoreFactsFile(storeFile));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Text))
        return;
    QByteArray text = "fingerprint " + FingerprintText(found).toUtf8() + "\n";
    if (facts.stepsChangeNothing)
        text += "steps change nothing\n";
    if (facts.intact)
        text += "intact\n";
    if (facts.recalcSettled)
        text += "recalc settled\n";
    file.write(text);
    file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    file.commit();
}
