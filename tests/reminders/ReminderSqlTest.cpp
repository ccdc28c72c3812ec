// The reminder statement: the calendar months of its period, and the rows
// it finds around a day.
#include "ReminderSql.h"
#include "ReminderTestStore.h"
#include "Vb.h"

namespace {

class ReminderSqlTest : public ReminderStoreTest {
protected:
    QStringList regs(const QString& sql) {
        QStringList out;
        auto rs = m_session.db->OpenRecordset(sql, RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            out << rs->Field(2).toString();
        return out;
    }
};

TEST_F(ReminderSqlTest, PeriodInCalendarMonths) {
    m_session.ReminderKind = "pdp";
    const struct {
        const char* day;
        int back, ahead;
        const char* period;
    } cases[] = {
        {"2025/01/31", 0, 1, "Between '2025/01/31' and '2025/02/28'"},
        {"2024/01/31", 0, 1, "Between '2024/01/31' and '2024/02/29'"},
        {"2025/03/31", 1, 0, "Between '2025/02/28' and '2025/03/31'"},
        {"2024/11/15", 7, 7, "Between '2024/04/15' and '2025/06/15'"},
        {"2024/11/15", 0, 0, "Between '2024/11/15' and '2024/11/15'"},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(BuildReminderSql(c.day, c.back, c.ahead, true, true, false).contains(c.period)) << c.day;
    EXPECT_THROW(BuildReminderSql("not a day", 0, 0, true, true, false), VbError);
}

TEST_F(ReminderSqlTest, RowsAroundTheDay) {
    addVehicle("Toyota", "Hilux", "YESTERDAY", day(-1), "2000/01/01");
    addVehicle("Toyota", "Hilux", "TODAY-LIC", day(0), "2000/01/01");
    addVehicle("Toyota", "Hilux", "TODAY-SRV", "2000/01/01", day(0));
    addVehicle("Toyota", "Hilux", "TOMORROW", "2000/01/01", day(1));
    m_session.ReminderKind = "vehicle";
    const QString today = day(0);
    EXPECT_EQ(regs(BuildReminderSql(today, 0, 0, true, true, false)), QStringList({"TODAY-LIC", "TODAY-SRV"}));
    EXPECT_EQ(regs(BuildReminderSql(today, 0, 0, false, true, false)), QStringList({"TODAY-LIC"}));
    EXPECT_EQ(regs(BuildReminderSql(today, 0, 0, false, false, false)), QStringList({"TODAY-SRV"}));
    EXPECT_EQ(regs(BuildReminderSql(today, 1, 1, true, true, false)).size(), 4);
    EXPECT_EQ(regs(BuildReminderSql(day(-1), 0, 0, false, true, false)), QStringList({"YESTERDAY"}));
}

} // namespace
