#pragma once
// An older installation's store file (invent.mdb), read once to take its register over: the user tables with
// their columns and named indexes, and their rows as the program's values. The file is opened read-only and is
// never written.

#include "Database.h"
#include "Value.h"

#include <QByteArray>
#include <QDateTime>
#include <QString>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

struct OlderColumn {
    QString name;
    QString type;         // in the store's words: short, long, single, double, currency, bit, datetime, text, memo,
                          // counter; empty for a type the store has no word for (see foreignType)
    int size = 0;         // text width in characters
    QString defaultValue; // the column's default as the file holds it, empty for none
    QString foreignType;  // the file's name of a type the store cannot take ("Binary", "OLE Object", ...)
};

struct OlderIndex {
    QString name;
    QStringList fields;
    bool primary = false;
    bool unique = false;
};

struct OlderTableDef {
    QString name;
    std::vector<OlderColumn> columns;
    std::vector<OlderIndex> indexes;
    long long rows = 0; // as the table's definition counts them
};

class OlderFile {
public:
    virtual ~OlderFile() = default;
    virtual int JetVersion() const = 0; // 3 or 4
    virtual const std::vector<OlderTableDef>& Tables() const = 0;
    // Hands each row of the table to visit, values in the order of its columns. Throws DbError naming what could
    // not be read.
    virtual void ReadRows(const OlderTableDef& table, const std::function<void(const std::vector<Value>&)>& visit) = 0;
};

// The password every installation's file carries.
inline constexpr char kOlderFilePassword[] = "VqTrun73";

// Opens an older file with libmdb. Refuses, with a DbError saying what was found, a file that cannot be read, is
// not a Jet 3 or Jet 4 database, is cut short, or does not carry the installation's password.
std::unique_ptr<OlderFile> OpenOlderFile(const QString& path);

// The conversions of the file's stored forms, on their own so that every edge can be tried.
namespace olderfile {
Currency CurrencyFromBytes(const unsigned char* bytes);  // 8 bytes, little-endian ten-thousandths
QDateTime DateFromJet(double serial);                    // days since 1899-12-30, to the second; negative days
                                                         // count back while the time of day counts forward
QString Jet4Text(const QByteArray& bytes);               // UCS-2, or Jet 4's compressed form (FF FE ...)
QString Jet3Text(const QByteArray& bytes, int codePage); // the Windows code page of the file
// The password a file's first page holds (empty for none), from its header as stored.
QString PasswordOfHeader(const QByteArray& firstPage);
} // namespace olderfile
