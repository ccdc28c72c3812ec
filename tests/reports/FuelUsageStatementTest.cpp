// The fuel usage statements run through the store: every report of the family gives its columns and the rows
// worked out by hand from the usage register.

#include "FuelUsageStatement.h"
#include "FuelUsageTestStore.h"

namespace {

class FuelUsageStatementTest : public FuelUsageStoreTest {
protected:
    // The rows of a statement, each field as text; numbers without trailing zeros.
    QList<QStringList> rows(const QString& sql, QStringList* names = nullptr) {
        auto rs = m_session.db->OpenRecordset(sql, RecordsetType::Snapshot);
        if (names)
            *names = rs->FieldNames();
        QList<QStringList> result;
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            for (int f = 0; f < rs->FieldCount(); ++f)
                cells << rs->Field(f).toString();
            result << cells;
        }
        return result;
    }
    QString usage(const QString& title, bool byDate = false, bool forPrint = false) {
        return FuelUsageStatement(title, "2024/12/01", "2025/01/31", allIds(), byDate, forPrint);
    }
};

struct TotalsCase {
    const char* title;
    QStringList headings;
    QList<QStringList> rows;
};

TEST_F(FuelUsageStatementTest, TotalsPerVehicleDriverAndActivity) {
    SeedUsage();
    const TotalsCase cases[] = {
        {"Litres Per Vehicle",
         {"Vehicle", "Total"},
         {{"John Deere(jd 1)", "80"}, {"Nissan(ca 2)", "30"}, {"Toyota(ca 1)", "40"}}},
        {"Litres Per Driver", {"Driver", "Total"}, {{"Jan Smit", "65"}, {"Piet Nel", "85"}}},
        {"Litres Per Activity", {"Activity", "Total"}, {{"Delivery", "40"}, {"Ploughing", "110"}}},
    };
    for (const TotalsCase& c : cases) {
        QStringList names;
        EXPECT_EQ(rows(usage(c.title), &names), c.rows) << c.title;
        EXPECT_EQ(names, c.headings) << c.title;
    }
    // The kilometre vehicles alone, as the kilometre pass reads them.
    EXPECT_EQ(rows(FuelUsageStatement("Litres Per Vehicle", "2024/12/01", "2025/01/31", kmIds(), false, false)),
              QList<QStringList>({{"Nissan(ca 2)", "30"}, {"Toyota(ca 1)", "40"}}));
}

TEST_F(FuelUsageStatementTest, LineReportsFollowCaptureOrderOrDate) {
    SeedUsage();
    // Capture order is the order of entry; "Date" puts the January issue of the tractor after the others.
    const QStringList byEntry{"2024/12/05", "2024/12/07", "2024/12/10", "2025/01/15",
                              "2024/12/20", "2025/01/05", "2025/01/10"};
    const QStringList byDate{"2024/12/05", "2024/12/07", "2024/12/10", "2024/12/20",
                             "2025/01/05", "2025/01/10", "2025/01/15"};
    auto dates = [&](const QString& sql) {
        QStringList out;
        for (const QStringList& r : rows(sql))
            out << r.first();
        return out;
    };
    EXPECT_EQ(dates(usage("Litres Per Activity/Vehicle")), byEntry);
    EXPECT_EQ(dates(usage("Litres Per Activity/Vehicle", true)), byDate);
    for (const char* title : {"Litres Used", "Litres Per Driver/Vehicle", "Detailed Veh. Fuel Usage", "Pump Readings"})
        EXPECT_EQ(dates(usage(title, true)), byDate) << title;

    QStringList names;
    const auto activity = rows(usage("Litres Per Activity/Vehicle"), &names);
    EXPECT_EQ(names, QStringList({"Date", "Driver", "Vehicle", "Activity", "Litres", "Odometer"}));
    EXPECT_EQ(activity[1], QStringList({"2024/12/07", "Piet Nel", "John Deere(jd 1)", "Ploughing", "50", "510"}));

    const auto used = rows(usage("Litres Used", true), &names);
    EXPECT_EQ(names, QStringList({"Date", "Vehicle", "Prev Km", "Curr Km", "Km", "Litres Used"}));
    EXPECT_EQ(used[3], QStringList({"2024/12/20", "TOYOTA(CA 1)", "1100", "1300", "200", "20"}));

    const auto driver = rows(usage("Litres Per Driver/Vehicle", true), &names);
    EXPECT_EQ(names.size(), 4);
    EXPECT_EQ(driver[2], QStringList({"2024/12/10", "NISSAN(CA 2)", "JAN SMIT", "25"}));
}

TEST_F(FuelUsageStatementTest, DetailedUsageAndPumpReadings) {
    SeedUsage();
    QStringList names;
    const auto detailed = rows(usage("Detailed Veh. Fuel Usage", true), &names);
    EXPECT_EQ(names, QStringList({"Date", "Tank", "Category", "Vehicle", "Driver", "Activity", "Litres",
                                  "Km/Hours Read", "Prev Km", "Km", "Km/l", "L/100 Km", "Cost/Litre", "Cost/Km"}));
    ASSERT_EQ(detailed.size(), 7);
    // 2024/12/20: 200 km on 20 litres at R20.
    EXPECT_EQ(detailed[3], QStringList({"2024/12/20", "Main Diesel", "Bakkies", "TOYOTA(CA 1)", "PIET NEL", "DELIVERY",
                                        "20", "1300", "1100", "200", "10", "10", "20", "2"}));

    const auto view = rows(usage("Pump Readings", true, false), &names);
    EXPECT_EQ(names.mid(6), QStringList({"Litres", "Pump Reading Before", "Pump Reading After"}));
    EXPECT_EQ(view[2], QStringList({"2024/12/10", "Petrol", "Bakkies", "NISSAN(CA 2)", "JAN SMIT", "PLOUGHING", "25",
                                    "0", "25"}));
    rows(usage("Pump Readings", true, true), &names);
    EXPECT_EQ(names.mid(7), QStringList({"Previous", "Current"}));
}

TEST_F(FuelUsageStatementTest, RebateRowsAreRebatedVehiclesOnRebatedActivities) {
    SeedUsage();
    QStringList names;
    const auto rebate = rows(usage("Rebate Applicable"), &names);
    EXPECT_EQ(names, QStringList({"Date", "Driver", "Activity", "Vehicle", "Litres", "Rebate", "Non Rebate"}));
    EXPECT_EQ(rebate,
              QList<QStringList>({{"2024/12/07", "Piet Nel", "Ploughing", "John Deere(jd 1)", "50", "50", "0"},
                                  {"2024/12/10", "Jan Smit", "Ploughing", "Nissan(ca 2)", "25", "12.5", "12.5"},
                                  {"2025/01/05", "Piet Nel", "Ploughing", "Nissan(ca 2)", "5", "2.5", "2.5"},
                                  {"2025/01/15", "Jan Smit", "Ploughing", "John Deere(jd 1)", "30", "30", "0"}}));
}

TEST_F(FuelUsageStatementTest, MonthlyCrosstabPutsJanuaryFirst) {
    SeedUsage();
    QStringList names;
    const auto litres = rows(MonthlyUsageStatement("2024/12/01", "2025/01/31", allIds(), true), &names);
    EXPECT_EQ(names, QStringList({"Date", "JOHN DEERE(JD 1)", "NISSAN(CA 2)", "TOYOTA(CA 1)"}));
    EXPECT_EQ(litres, QList<QStringList>({{"January 2025", "30", "5", "10"}, {"December 2024", "50", "25", "30"}}));
    const auto rands = rows(MonthlyUsageStatement("2024/12/01", "2025/01/31", allIds(), false));
    EXPECT_EQ(rands,
              QList<QStringList>({{"January 2025", "630", "100", "210"}, {"December 2024", "1000", "550", "600"}}));
    // A vehicle without issues in a month has no value there.
    const auto one = rows(MonthlyUsageStatement("2024/12/01", "2024/12/31", QString::number(m_k1), true));
    EXPECT_EQ(one, QList<QStringList>({{"December 2024", "30"}}));
}

TEST_F(FuelUsageStatementTest, LogSheetDescribesItsTenColumnsOnAnEmptyStore) {
    QStringList names;
    EXPECT_TRUE(rows(FuelUsageStatement("Vehicle Fuel Log Sheet", "", "", "", false, false), &names).isEmpty());
    EXPECT_EQ(names, QStringList({"Date", "Tank", "Vehicle", "Driver", "Block/Cost Centre", "Activity", "Litres",
                                  "Km/Hours Read", "Time Start", "Time End"}));
    EXPECT_EQ(FuelUsageStatement("Fuel Usage", "", "", "", false, false), QString());
}

} // namespace
