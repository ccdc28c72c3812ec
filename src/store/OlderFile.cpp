#include "OlderFile.h"

#include <QFile>
#include <QFileInfo>
#include <cmath>
#include <cstring>
#include <iconv.h>
#include <map>

#include <glib.h>

#include <mdbtools.h>

namespace olderfile {

namespace {

quint32 le32(const unsigned char* p) {
    return static_cast<quint32>(p[0]) | static_cast<quint32>(p[1]) << 8 | static_cast<quint32>(p[2]) << 16 |
           static_cast<quint32>(p[3]) << 24;
}

// The first page of a file is kept under RC4 from offset 0x18 with a fixed key.
QByteArray DecodedHeader(const QByteArray& page) {
    QByteArray h = page;
    const unsigned char key[4] = {0xc7, 0xda, 0x39, 0x6b};
    unsigned char s[256];
    for (int i = 0; i < 256; ++i)
        s[i] = static_cast<unsigned char>(i);
    for (int i = 0, j = 0; i < 256; ++i) {
        j = (j + s[i] + key[i % 4]) & 0xff;
        std::swap(s[i], s[j]);
    }
    const int end = std::min<int>(static_cast<int>(h.size()), 0x18 + 128);
    for (int k = 0x18, i = 0, j = 0; k < end; ++k) {
        i = (i + 1) & 0xff;
        j = (j + s[i]) & 0xff;
        std::swap(s[i], s[j]);
        h[k] = static_cast<char>(static_cast<unsigned char>(h[k]) ^ s[(s[i] + s[j]) & 0xff]);
    }
    return h;
}

} // namespace

Currency CurrencyFromBytes(const unsigned char* bytes) {
    std::uint64_t v = 0;
    for (int i = 7; i >= 0; --i)
        v = (v << 8) | bytes[i];
    return Currency::fromRaw(static_cast<std::int64_t>(v));
}

QDateTime DateFromJet(double serial) {
    const double whole = std::trunc(serial);
    const qint64 seconds = std::llround(std::fabs(serial - whole) * 86400.0);
    const QDate day = QDate(1899, 12, 30).addDays(static_cast<qint64>(whole));
    if (seconds >= 86400)
        return QDateTime(day.addDays(1), QTime(0, 0));
    return QDateTime(day, QTime::fromMSecsSinceStartOfDay(static_cast<int>(seconds * 1000)));
}

QString Jet4Text(const QByteArray& bytes) {
    const auto* b = reinterpret_cast<const unsigned char*>(bytes.constData());
    const qsizetype n = bytes.size();
    QString out;
    if (n >= 2 && b[0] == 0xff && b[1] == 0xfe) {
        // Compressed: single bytes stand for characters below 256; a zero byte switches to and from plain UCS-2.
        bool compressed = true;
        out.reserve(n);
        for (qsizetype i = 2; i < n;) {
            if (b[i] == 0) {
                compressed = !compressed;
                ++i;
            } else if (compressed) {
                out += QChar(b[i]);
                ++i;
            } else if (i + 1 < n) {
                out += QChar(static_cast<char16_t>(b[i] | b[i + 1] << 8));
                i += 2;
            } else {
                break;
            }
        }
        return out;
    }
    out.reserve(n / 2);
    for (qsizetype i = 0; i + 1 < n; i += 2)
        out += QChar(static_cast<char16_t>(b[i] | b[i + 1] << 8));
    return out;
}

QString Jet3Text(const QByteArray& bytes, int codePage) {
    if (bytes.isEmpty())
        return QString();
    const QByteArray from = "CP" + QByteArray::number(codePage > 0 ? codePage : 1252);
    iconv_t cd = iconv_open("UTF-8", from.constData());
    if (cd == reinterpret_cast<iconv_t>(-1))
        return QString::fromLatin1(bytes);
    QByteArray in = bytes;
    QByteArray out(bytes.size() * 4 + 4, '\0');
    char* inPtr = in.data();
    size_t inLeft = static_cast<size_t>(in.size());
    char* outPtr = out.data();
    size_t outLeft = static_cast<size_t>(out.size());
    while (inLeft > 0) {
        if (iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft) == static_cast<size_t>(-1)) {
            // A byte the code page leaves undefined: kept as the character of the same number.
            if (outLeft < 4)
                break;
            const QByteArray kept = QString(QChar(static_cast<unsigned char>(*inPtr))).toUtf8();
            std::memcpy(outPtr, kept.constData(), static_cast<size_t>(kept.size()));
            outPtr += kept.size();
            outLeft -= static_cast<size_t>(kept.size());
            ++inPtr;
            --inLeft;
        }
    }
    iconv_close(cd);
    return QString::fromUtf8(out.constData(), outPtr - out.data());
}

QString PasswordOfHeader(const QByteArray& firstPage) {
    if (firstPage.size() < 0x7a)
        return QString();
    const QByteArray h = DecodedHeader(firstPage);
    const auto* p = reinterpret_cast<const unsigned char*>(h.constData());
    QString password;
    if (p[0x14] == 0) {
        for (int i = 0; i < 20 && p[0x42 + i] != 0; ++i)
            password += QChar(p[0x42 + i]);
        return password;
    }
    // Jet 4 masks the UCS-2 password further with the whole days of the file's creation date.
    double created = 0;
    std::memcpy(&created, p + 0x72, sizeof created);
    const qint32 days = std::isfinite(created) && std::fabs(created) < 2e9 ? static_cast<qint32>(created) : 0;
    unsigned char mask[4];
    for (int i = 0; i < 4; ++i)
        mask[i] = static_cast<unsigned char>(static_cast<quint32>(days) >> (8 * i));
    for (int i = 0; i < 40; i += 2) {
        const char16_t c = static_cast<char16_t>((p[0x42 + i] ^ mask[i % 4]) | (p[0x43 + i] ^ mask[(i + 1) % 4]) << 8);
        if (c == 0)
            break;
        password += QChar(c);
    }
    return password;
}

} // namespace olderfile

namespace {

DbError Refused(const QString& file, const QString& cause, int number = 3343) {
    return DbError(number, QString("'%1' cannot be taken over: %2.").arg(file, cause));
}

QString Utf8(const char* s) {
    return QString::fromUtf8(s);
}

QString ForeignTypeName(int type) {
    switch (type) {
    case MDB_BYTE:
        return "Byte";
    case MDB_BINARY:
        return "Binary";
    case MDB_OLE:
        return "OLE Object";
    case MDB_REPID:
        return "Replication ID";
    case MDB_NUMERIC:
        return "Decimal";
    case MDB_COMPLEX:
        return "Complex";
    default:
        return QString("type %1").arg(type);
    }
}

class MdbOlderFile : public OlderFile {
public:
    MdbOlderFile(MdbHandle* mdb, QString path, int version) : m_mdb(mdb), m_path(std::move(path)), m_version(version) {}
    ~MdbOlderFile() override {
        for (auto& [name, def] : m_defs)
            mdb_free_tabledef(def);
        mdb_close(m_mdb);
    }
    MdbOlderFile(const MdbOlderFile&) = delete;
    MdbOlderFile& operator=(const MdbOlderFile&) = delete;

    int JetVersion() const override { return m_version; }
    const std::vector<OlderTableDef>& Tables() const override { return m_tables; }
    void ReadRows(const OlderTableDef& table, const std::function<void(const std::vector<Value>&)>& visit) override;

    void readCatalog();

private:
    OlderTableDef describe(MdbTableDef* t) const;
    Value fieldValue(MdbColumn* col, const OlderColumn& def, const MdbField& field, const QString& table);
    QByteArray memoBytes(int start, int size, const QString& table, const QString& column);
    QString text(const QByteArray& bytes) const {
        return m_version == 3 ? olderfile::Jet3Text(bytes, m_mdb->f->code_page) : olderfile::Jet4Text(bytes);
    }
    DbError unreadable(const QString& table, const QString& cause) const {
        return DbError(3343, QString("table '%1' of '%2' cannot be read: %3.").arg(table, m_path, cause));
    }

    MdbHandle* m_mdb;
    QString m_path;
    int m_version;
    std::vector<OlderTableDef> m_tables;
    std::map<QString, MdbTableDef*> m_defs;
};

void MdbOlderFile::readCatalog() {
    if (!mdb_read_catalog(m_mdb, MDB_TABLE))
        throw Refused(m_path, "its list of tables cannot be read");
    for (unsigned int i = 0; i < m_mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(m_mdb->catalog, i));
        if (entry->object_type != MDB_TABLE || mdb_is_system_table(entry))
            continue;
        const QString name = Utf8(entry->object_name);
        if (name.startsWith("MSys", Qt::CaseInsensitive) || name.startsWith('~'))
            continue;
        MdbTableDef* t = mdb_read_table(entry);
        if (!t)
            throw unreadable(name, "its definition is damaged or missing");
        m_defs[name] = t;
        if (!mdb_read_columns(t))
            throw unreadable(name, "its columns cannot be read");
        mdb_read_indices(t);
        m_tables.push_back(describe(t));
    }
}

OlderTableDef MdbOlderFile::describe(MdbTableDef* t) const {
    OlderTableDef def;
    def.name = Utf8(t->name);
    def.rows = t->num_rows;
    for (unsigned int c = 0; c < t->num_cols; ++c) {
        auto* col = static_cast<MdbColumn*>(g_ptr_array_index(t->columns, c));
        OlderColumn oc;
        oc.name = Utf8(col->name);
        switch (col->col_type) {
        case MDB_BOOL:
            oc.type = "bit";
            break;
        case MDB_INT:
            oc.type = "short";
            break;
        case MDB_LONGINT:
            oc.type = col->is_long_auto ? "counter" : "long";
            break;
        case MDB_MONEY:
            oc.type = "currency";
            break;
        case MDB_FLOAT:
            oc.type = "single";
            break;
        case MDB_DOUBLE:
            oc.type = "double";
            break;
        case MDB_DATETIME:
            oc.type = "datetime";
            break;
        case MDB_TEXT:
            oc.type = "text";
            oc.size = m_version == 3 ? col->col_size : col->col_size / 2; // Jet 4 counts bytes of UCS-2
            break;
        case MDB_MEMO:
            oc.type = "memo";
            break;
        default:
            oc.foreignType = ForeignTypeName(col->col_type);
            break;
        }
        if (const char* d = mdb_col_get_prop(col, "DefaultValue"))
            oc.defaultValue = Utf8(d);
        def.columns.push_back(oc);
    }
    if (t->indices) {
        for (unsigned int i = 0; i < t->num_idxs; ++i) {
            auto* idx = static_cast<MdbIndex*>(g_ptr_array_index(t->indices, i));
            if (idx->index_type == 2) // the other side of a relationship, not an index of the table's own
                continue;
            OlderIndex oi;
            oi.name = Utf8(idx->name);
            oi.primary = idx->index_type == 1;
            oi.unique = (idx->flags & MDB_IDX_UNIQUE) != 0 || oi.primary;
            for (unsigned int k = 0; k < idx->num_keys; ++k) {
                const int colNum = idx->key_col_num[k] - 1;
                if (colNum >= 0 && colNum < static_cast<int>(t->num_cols))
                    oi.fields << Utf8(static_cast<MdbColumn*>(g_ptr_array_index(t->columns, colNum))->name);
            }
            if (!oi.fields.isEmpty())
                def.indexes.push_back(oi);
        }
    }
    return def;
}

QByteArray MdbOlderFile::memoBytes(int start, int size, const QString& table, const QString& column) {
    if (size == 0)
        return QByteArray();
    if (size < 12)
        throw unreadable(table, QString("a memo of column '%1' is damaged").arg(column));
    const unsigned char* head = m_mdb->pg_buf + start;
    const quint32 header = olderfile::le32(head);
    const quint32 length = header & 0x3fffffff;
    if (header & 0x80000000u) // kept in the row itself
        return QByteArray(reinterpret_cast<const char*>(head + 12), std::min<int>(size - 12, static_cast<int>(length)));
    quint32 pgRow = olderfile::le32(head + 4);
    const bool onePage = (header & 0x40000000u) != 0;
    if (!onePage && (header & 0xff000000u) != 0)
        throw unreadable(table, QString("a memo of column '%1' has an unknown form").arg(column));
    QByteArray out;
    for (int pages = 0; pgRow != 0 && out.size() < static_cast<qsizetype>(length); ++pages) {
        void* buf = nullptr;
        int rowStart = 0;
        size_t rowLen = 0;
        if (pages > 100000 || mdb_find_pg_row(m_mdb, static_cast<int>(pgRow), &buf, &rowStart, &rowLen) != 0)
            throw unreadable(table, QString("a memo of column '%1' lies beyond the end of the file").arg(column));
        rowStart &= 0x1fff;
        const auto* data = static_cast<const unsigned char*>(buf) + rowStart;
        if (rowStart + static_cast<int>(rowLen) > m_mdb->fmt->pg_size)
            throw unreadable(table, QString("a memo of column '%1' is damaged").arg(column));
        if (onePage) {
            out.append(reinterpret_cast<const char*>(data), static_cast<qsizetype>(rowLen));
            break;
        }
        if (rowLen < 4)
            throw unreadable(table, QString("a memo of column '%1' is damaged").arg(column));
        pgRow = olderfile::le32(data);
        out.append(reinterpret_cast<const char*>(data + 4), static_cast<qsizetype>(rowLen - 4));
    }
    if (out.size() < static_cast<qsizetype>(length))
        throw unreadable(table, QString("a memo of column '%1' is cut short").arg(column));
    out.truncate(length);
    return out;
}

Value MdbOlderFile::fieldValue(MdbColumn* col, const OlderColumn& def, const MdbField& field, const QString& table) {
    if (col->col_type == MDB_BOOL)
        return Value(!field.is_null); // a Yes/No lives in the row's null mask: set is Yes
    if (field.is_null)
        return Value::null();
    const unsigned char* p = m_mdb->pg_buf + field.start;
    auto need = [&](int bytes) {
        if (field.siz < bytes || field.start + bytes > m_mdb->fmt->pg_size)
            throw unreadable(table, QString("a value of column '%1' is damaged").arg(def.name));
    };
    switch (col->col_type) {
    case MDB_INT:
        need(2);
        return Value(static_cast<std::int64_t>(static_cast<qint16>(p[0] | p[1] << 8)));
    case MDB_LONGINT:
        need(4);
        return Value(static_cast<std::int64_t>(static_cast<qint32>(olderfile::le32(p))));
    case MDB_MONEY:
        need(8);
        return Value(olderfile::CurrencyFromBytes(p));
    case MDB_FLOAT: {
        need(4);
        float f = 0;
        std::memcpy(&f, p, sizeof f);
        return Value(static_cast<double>(f));
    }
    case MDB_DOUBLE:
    case MDB_DATETIME: {
        need(8);
        double d = 0;
        std::memcpy(&d, p, sizeof d);
        if (col->col_type == MDB_DOUBLE)
            return Value(d);
        if (!std::isfinite(d) || std::fabs(d) > 3.0e6)
            throw unreadable(table, QString("a date of column '%1' is out of range").arg(def.name));
        return Value(olderfile::DateFromJet(d));
    }
    case MDB_TEXT:
        if (field.start + field.siz > m_mdb->fmt->pg_size)
            throw unreadable(table, QString("a value of column '%1' is damaged").arg(def.name));
        return Value(text(QByteArray(reinterpret_cast<const char*>(p), field.siz)));
    case MDB_MEMO:
        return Value(text(memoBytes(field.start, field.siz, table, def.name)));
    default:
        throw unreadable(table, QString("column '%1' is of the type %2").arg(def.name, def.foreignType));
    }
}

void MdbOlderFile::ReadRows(const OlderTableDef& table, const std::function<void(const std::vector<Value>&)>& visit) {
    const auto found = m_defs.find(table.name);
    if (found == m_defs.end())
        throw unreadable(table.name, "there is no such table");
    MdbTableDef* t = found->second;
    mdb_rewind_table(t);
    std::vector<MdbField> fields(MDB_MAX_COLS);
    std::vector<Value> row(t->num_cols);
    long long read = 0;
    while (mdb_fetch_row(t)) {
        int rowStart = 0;
        size_t rowSize = 0;
        if (mdb_find_row(m_mdb, static_cast<int>(t->cur_row) - 1, &rowStart, &rowSize) != 0)
            throw unreadable(table.name, "a row is damaged");
        const int n = mdb_crack_row(t, rowStart & 0x1fff, rowSize, fields.data());
        if (n < 0 || n > static_cast<int>(t->num_cols))
            throw unreadable(table.name, "a row is damaged");
        std::fill(row.begin(), row.end(), Value::null());
        for (int i = 0; i < n; ++i) {
            const int c = fields[i].colnum;
            if (c < 0 || c >= static_cast<int>(t->num_cols))
                throw unreadable(table.name, "a row is damaged");
            auto* col = static_cast<MdbColumn*>(g_ptr_array_index(t->columns, c));
            row[c] = fieldValue(col, table.columns[c], fields[i], table.name);
        }
        ++read;
        visit(row);
    }
    if (read != static_cast<long long>(t->num_rows))
        throw unreadable(
            table.name,
            QString("%1 of its %2 rows could be read; the file is damaged or cut short").arg(read).arg(t->num_rows));
}

} // namespace

std::unique_ptr<OlderFile> OpenOlderFile(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        throw Refused(path, f.errorString().toLower(), 3044);
    const QByteArray head = f.read(4096);
    const qint64 size = f.size();
    f.close();
    if (head.size() < 0x100)
        throw Refused(path, head.isEmpty() ? "the file is empty" : "the file is too short for a Jet database");
    if (head.mid(4, 16) == QByteArray("Standard ACE DB\0", 16))
        throw Refused(path, "it is an Access 2007 or later (ACE) database, not a Jet 3 or Jet 4 one");
    if (head.mid(4, 16) != QByteArray("Standard Jet DB\0", 16))
        throw Refused(path, "it is not a Jet database (no Jet header)");
    const int versionByte = static_cast<unsigned char>(head[0x14]);
    if (versionByte > 1)
        throw Refused(path, QString("its format (version byte %1) is not Jet 3 or Jet 4").arg(versionByte));
    const int version = versionByte == 0 ? 3 : 4;
    const qint64 pageSize = version == 3 ? 2048 : 4096;
    if (size % pageSize != 0 || size < 3 * pageSize)
        throw Refused(
            path,
            QString("the file is cut short (%1 bytes, not a whole number of %2-byte pages)").arg(size).arg(pageSize));
    if (olderfile::PasswordOfHeader(head) != QLatin1String(kOlderFilePassword))
        throw DbError(3031,
                      QString("Not a valid password. '%1' is not a file of this register's installations.").arg(path));
    MdbHandle* mdb = mdb_open(QFile::encodeName(path).constData(), MDB_NOFLAGS);
    if (!mdb)
        throw Refused(path, "libmdb cannot open it");
    auto file = std::make_unique<MdbOlderFile>(mdb, path, version);
    file->readCatalog();
    return file;
}
