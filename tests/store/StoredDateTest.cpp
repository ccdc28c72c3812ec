// Dates as the store reads them back: the store's own two text shapes take a quick path, so every other shape,
// impossible days and serial numbers must still read exactly as the general reading gives them.
#include "StoreFixture.h"

#include <sqlite3.h>

namespace {

class StoredDateTest : public StoreFixture {
protected:
    Value ReadBack(const QString& literal) {
        db->Execute("delete from Stamps");
        const QByteArray sql = ("insert into Stamps (TransID, Stamp) values (1, " + literal + ")").toUtf8();
        EXPECT_EQ(sqlite3_exec(db->handle(), sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK) << qPrintable(literal);
        return db->OpenRecordset("select Stamp from Stamps", RecordsetType::Snapshot)->Field(0);
    }
};

TEST_F(StoredDateTest, TextsAndSerialsReadAsTheirDayAndTime) {
    db->CreateTableDef("Stamps", {{"TransID", "long", 0}, {"Stamp", "datetime", 0}});
    const QDate day(2024, 1, 5);
    const struct {
        const char* literal;
        Value expected;
    } cases[] = {
        {"'2024-01-05'", Value(QDateTime(day, QTime(0, 0)))},
        {"'2024-01-05 00:00:00'", Value(QDateTime(day, QTime(0, 0)))},
        {"'2024-01-05 13:04:05'", Value(QDateTime(day, QTime(13, 4, 5)))},
        {"'2024-01-05T13:04:05'", Value(QDateTime(day, QTime(13, 4, 5)))},
        {"'2024-01-05 13:04'", Value(QDateTime(day, QTime(13, 4)))},
        {"'0999-12-31'", Value(QDateTime(QDate(999, 12, 31), QTime(0, 0)))},
        {"'2024-02-30'", Value(QStringLiteral("2024-02-30"))},
        {"'2024-01-05 25:00:00'", Value(QStringLiteral("2024-01-05 25:00:00"))},
        {"'-024-01-05'", Value(QStringLiteral("-024-01-05"))},
        {"'2024/01/05'", Value(QStringLiteral("2024/01/05"))},
        {"45296", Value(QDateTime(day, QTime(0, 0)))},
        {"45296.5", Value(QDateTime(day, QTime(12, 0)))},
        {"-1", Value(QDateTime(QDate(1899, 12, 29), QTime(0, 0)))},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ReadBack(c.literal), c.expected) << c.literal;
}

TEST(LocalMidnight, IsTheDaysMidnightEveryTime) {
    for (const QDate day : {QDate(2024, 2, 29), QDate(1899, 12, 30), QDate(9999, 12, 31)}) {
        EXPECT_EQ(LocalMidnight(day), QDateTime(day, QTime(0, 0)));
        EXPECT_EQ(LocalMidnight(day), LocalMidnight(day));
    }
    EXPECT_FALSE(LocalMidnight(QDate()).isValid());
}

} // namespace
