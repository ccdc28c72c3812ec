// Taking an older installation's file over: the fixture against its listing, the start-up upgrade after it, the
// conversions of the file's stored forms, and all or nothing on every failure.
#include "OlderImport.h"
#include "Database.h"
#include "OlderFile.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTextStream>
#include <cmath>
#include <gtest/gtest.h>
#include <map>

namespace {

QString FixturePath(const char* name) {
    return QString(ORVEL_FIXTURES_DIR) + "/" + name;
}

// The fixture is required: a missing file fails the test rather than skipping it.
QString Fixture() {
    const QString path = FixturePath("invent-old.mdb");
    EXPECT_TRUE(QFileInfo::exists(path)) << "missing fixture " << path.toStdString();
    return path;
}

QByteArray Sha256(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return QCryptographicHash::hash(f.readAll(), QCryptographicHash::Sha256);
}

double Number(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    const Value v = rs->Field(0);
    return v.isNull() ? 0.0 : v.toDouble();
}

QString Text(Database& db, const QString& sql) {
    auto rs = db.OpenRecordset(sql, RecordsetType::Snapshot);
    return rs->Eof() ? QString("<none>") : rs->Field(0).isNull() ? QString("<null>") : rs->Field(0).toString();
}

// The listing names types as mdbtools does.
QString StoreTypeOf(const QString& listed, int* size) {
    static const QRegularExpression text("^Text \\((\\d+)\\)$");
    if (const auto m = text.match(listed); m.hasMatch()) {
        *size = m.captured(1).toInt();
        return "text";
    }
    static const std::map<QString, QString> words = {
        {"Long Integer", "long"}, {"Integer", "short"}, {"Double", "double"},     {"Single", "single"},
        {"Currency", "currency"}, {"Boolean", "bit"},   {"DateTime", "datetime"}, {"Memo/Hyperlink", "memo"},
    };
    const auto found = words.find(listed);
    return found == words.end() ? QString("?") + listed : found->second;
}

bool Near(double a, double b) {
    return std::fabs(a - b) <= 1e-6 * std::max(1.0, std::fabs(b));
}

class OlderImport : public ::testing::Test {
protected:
    TempHome home;
};

} // namespace

TEST_F(OlderImport, FixtureMatchesItsListingTableByTableAndColumnByColumn) {
    const QString mdb = Fixture();
    ASSERT_TRUE(QFileInfo::exists(mdb));
    const QByteArray before = Sha256(mdb);
    QStringList tablesDone;
    ImportObserver observer;
    observer.tableDone = [&](const QString& table, long long) { tablesDone << table; };
    ImportOlderStore(mdb, home.storeFile(), false, observer);
    EXPECT_EQ(Sha256(mdb), before) << "the older file must stay byte for byte as it was";

    auto db = Database::Open(home.storeFile(), false);
    QFile listing(FixturePath("invent-old.expected.txt"));
    ASSERT_TRUE(listing.open(QIODevice::ReadOnly | QIODevice::Text));
    QTextStream in(&listing);
    int checked = 0;
    QStringList listedTables;
    while (!in.atEnd()) {
        const QString line = in.readLine();
        if (line.startsWith('#') || line.trimmed().isEmpty())
            continue;
        const QStringList cells = line.split('\t');
        ASSERT_GE(cells.size(), 4) << line.toStdString();
        const QString table = cells[0], column = cells[1];
        SCOPED_TRACE((table + "." + column).toStdString());
        if (column == "*") {
            listedTables << table;
            EXPECT_EQ(Number(*db, "select count(*) from [" + table + "]"), cells[3].toDouble());
            ++checked;
            continue;
        }
        // Names and order kept, case and all.
        const std::vector<FieldDef> fields = db->Fields(table);
        const auto field =
            std::find_if(fields.begin(), fields.end(), [&](const FieldDef& f) { return f.name == column; });
        ASSERT_NE(field, fields.end());
        int size = 0;
        const QString type = StoreTypeOf(cells[2], &size);
        if (type == "long") {
            EXPECT_TRUE(field->type == "long" || field->type == "counter") << field->type.toStdString();
        } else {
            EXPECT_EQ(field->type, type);
        }
        if (type == "text") {
            EXPECT_EQ(field->size, size);
        }
        const QString col = "[" + column + "]", from = " from [" + table + "]";
        for (int i = 3; i < cells.size(); ++i) {
            const QString key = cells[i].section('=', 0, 0), value = cells[i].section('=', 1);
            if (key == "sum")
                EXPECT_TRUE(Near(Number(*db, "select sum(" + col + ")" + from), value.toDouble())) << key.toStdString();
            else if (key == "valsum")
                EXPECT_TRUE(Near(Number(*db, "select sum(val(" + col + "))" + from), value.toDouble()));
            else if (key == "nonnull")
                EXPECT_EQ(Number(*db, "select count(" + col + ")" + from), value.toDouble());
            else if (key == "true") // mdbtools shows Yes as 1; the store keeps Jet's -1
                EXPECT_EQ(Number(*db, "select sum(" + col + ")" + from), -value.toDouble());
            else if (key == "min")
                EXPECT_EQ(Text(*db, "select format(min(" + col + "),'yyyy-mm-dd hh:nn:ss')" + from), value);
            else if (key == "max")
                EXPECT_EQ(Text(*db, "select format(max(" + col + "),'yyyy-mm-dd hh:nn:ss')" + from), value);
            else
                ADD_FAILURE() << "unknown key " << key.toStdString();
            ++checked;
        }
    }
    EXPECT_GT(checked, 200);
    QStringList stored = db->TableNames();
    stored.sort(Qt::CaseInsensitive);
    listedTables.sort(Qt::CaseInsensitive);
    EXPECT_EQ(stored, listedTables);
    EXPECT_EQ(tablesDone.size(), listedTables.size());
    EXPECT_FALSE(QFileInfo::exists(home.storeFile() + ".import"));
}
