// The fuel totals: litres per tank, per vehicle, driver and activity, the rebate sums, the monthly crosstab
// and the charts after their sheets. Figures worked out by hand from the test register.

#include "FuelTotalsReports.h"
#include "ReportSheets.h"
#include "ReportTestStore.h"

namespace {

class FuelTotalsTest : public ReportStoreTest {
protected:
    // The register with drivers and activities: the Nissan's fills are transport (not rebated), the John
    // Deere is driven by Piet; the Toyota is fully rebated, the John Deere half.
    void SeedUsage() {
        SeedRegister();
        exec("insert into drivers (id, description) values (1, 'JAN SMIT')");
        exec("insert into drivers (id, description) values (2, 'PIET NEL')");
        exec("insert into activities (id, description, rebated) values (1, 'PLOUGHING', true)");
        exec("insert into activities (id, description, rebated) values (2, 'TRANSPORT', false)");
        exec(QString("update vecfuel set driverid = 2 where voertuigid = %1").arg(m_h1));
        exec(QString("update vecfuel set activityid = 2 where voertuigid = %1").arg(m_k2));
        exec(QString("update voertuig set rebated = true, rebatepct = 100 where transid = %1").arg(m_k1));
        exec(QString("update voertuig set rebated = true, rebatepct = 50 where transid = %1").arg(m_h1));
        exec(QString("update voertuig set rebated = true, rebatepct = 100 where transid = %1").arg(m_k2));
        exec("update rebate set rebaterate = 300, rebatesars = 70");
    }
    // Previews `title` over the vehicles given by their shown names, hour list first.
    void preview(const QString& title, const QStringList& hours, const QStringList& km, const QString& from,
                 const QString& to) {
        open(title);
        for (const QString& v : hours)
            click(m_screen->lstProd, v);
        for (const QString& v : km)
            click(m_screen->lstProdkm, v);
        range(from, to);
        QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
    }
    void print() {
        m_msgs.clear();
        QTest::mouseClick(m_screen->cmdPrint, Qt::LeftButton);
    }
    // The cells' texts (numbers as written), joined by "|".
    static QString Texts(const WbSheet& s, const QStringList& refs) {
        QStringList out;
        for (const QString& ref : refs)
            out << s.text(ref);
        return out.join('|');
    }
    // The sheet's one chart in a line: type, title, legend, label angle and spacing, each series' ranges.
    static QString Chart(const WbSheet& s) {
        if (s.charts.size() != 1)
            return QString("%1 charts").arg(s.charts.size());
        const WbChart& c = s.charts[0];
        QStringList out{c.kind + " " + c.barDir + " " + c.grouping, c.title, c.legendPosition,
                        QString::number(c.categoryLabelRotation), QString::number(c.tickLabelSkip)};
        for (const WbSeries& series : c.series)
            out << series.values + " by " + series.categories;
        return out.join('|');
    }

    const QStringList kHours = {"JOHN DEERE (JD 1)"};
    const QStringList kKm = {"TOYOTA (CA 1)", "NISSAN (CA 2)"};
};

TEST_F(FuelTotalsTest, TankTotalsShowTheLitresDrawnOverAllDatesAndTheLitresAvailable) {
    SeedUsage();
    exec(QString("update tanks set huidigevolume = 1234.5 where transid = %1").arg(m_t1));
    struct Case {
        const char* title;
        const char* heading;
        QList<QStringList> rows;
        const char* sheetTotal;
    } cases[] = {
        // The screen's range leaves every fill out; "Fuel Usage" reads all dates.
        {"Fuel Usage", "Tank Number|Litres Used", {{"Main Diesel", "145.00"}, {"Petrol", "25.00"}}, "145"},
        {"Fuel Available", "Tank Number|Litres Available", {{"Main Diesel", "1 234.50"}, {"Petrol", "0.00"}}, "1234.5"},
    };
    for (const Case& c : cases) {
        m_msgs.clear();
        open(c.title);
        click(m_screen->lstCatKm, "MAIN DIESEL");
        click(m_screen->lstCatKm, "PETROL");
        range("2030/01/01", "2030/01/31");
        QTest::mouseClick(m_screen->cmdApply, Qt::LeftButton);
        EXPECT_TRUE(m_msgs.shown.isEmpty()) << m_msgs.last().toStdString();
        EXPECT_EQ(m_screen->grd3->FormatString(), c.heading);
        ASSERT_EQ(m_screen->grd3->Rows(), c.rows.size() + 1) << c.title;
        for (int r = 0; r < c.rows.size(); ++r)
            EXPECT_EQ(row(r + 1), c.rows[r]) << c.title;
        EXPECT_EQ(m_screen->lblMsg->text(), "2 Rows");

        print();
        EXPECT_EQ(m_msgs.texts(),
                  QStringList({QString("Print %1?").arg(c.title), QString("%1 Completed").arg(c.title)}));
        const WorkbookReader saved = book();
        ASSERT_EQ(saved.sheetNames(), QStringList({"Fuel Tanks"}));
        const WbSheet& s = *saved.sheet(0);
        EXPECT_EQ(Texts(s, {"A1", "A2", "B2", "A3", "B3"}),
                  QString("%1 From 2030/01/01 To 2030/01/31|%2|%3|%4")
                      .arg(c.title, QString(c.heading), "Main Diesel", c.sheetTotal));
        EXPECT_TRUE(s.merged("A1:B1"));
        EXPECT_EQ(s.cells.at("A3").style.horizontal + s.cells.at("B4").style.horizontal, "leftright");
        EXPECT_EQ(s.cells.at("B4").style.numberFormat, "### ### ##0.00");
        EXPECT_EQ(s.columnWidths, (std::map<int, double>{{1, 25}, {2, 15}}));
    }
}

TEST_F(FuelTotalsTest, LitresTotalsGiveAPassAndAChartPerKind) {
    SeedUsage();
    struct Case {
        const char* title;
        QList<QStringList> grid; // both kinds in one grid
        const char* km;          // the kilometre sheet's a3 to b4
        const char* hours;       // the hour sheet's a3 and b3
    } cases[] = {
        {"Litres Per Vehicle",
         {{"John Deere(jd 1)", "85.00"}, {"Nissan(ca 2)", "30.00"}, {"Toyota(ca 1)", "40.00"}},
         "Nissan(ca 2)|30|Toyota(ca 1)|40",
         "John Deere(jd 1)|85"},
        {"Litres Per Driver", {{"Jan Smit", "70.00"}, {"Piet Nel", "85.00"}}, "Jan Smit|70||", "Piet Nel|85"},
        {"Litres Per Activity",
         {{"Ploughing", "125.00"}, {"Transport", "30.00"}},
         "Ploughing|40|Transport|30",
         "Ploughing|85"},
    };
    for (const Case& c : cases) {
        preview(c.title, kHours, kKm, "2024/12/01", "2025/01/31");
        ASSERT_EQ(m_screen->grd3->Rows(), c.grid.size() + 1) << c.title;
        for (int r = 0; r < c.grid.size(); ++r)
            EXPECT_EQ(row(r + 1), c.grid[r]) << c.title;

        print();
        EXPECT_EQ(m_msgs.last(), QString(c.title) + " Completed");
        const WorkbookReader saved = book();
        ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Chart Km", "Hours", "Chart Hours"})) << c.title;
        EXPECT_EQ(saved.activeSheet(), 0);
        EXPECT_EQ(saved.sheet(0)->text("A1"), QString(c.title) + " From 2024/12/01 To 2025/01/31");
        EXPECT_EQ(Texts(*saved.sheet(0), {"A3", "B3", "A4", "B4"}), c.km);
        EXPECT_EQ(Texts(*saved.sheet(2), {"A3", "B3"}), c.hours);
        // A range of one cell is written as that cell.
        EXPECT_EQ(Chart(*saved.sheet(1)),
                  QString("barChart col clustered|%1 Km|b|45|1|").arg(c.title) +
                      (QString(c.km).endsWith("||") ? "Km!$B$3 by Km!$A$3" : "Km!$B$3:$B$4 by Km!$A$3:$A$4"));
        EXPECT_EQ(Chart(*saved.sheet(3)),
                  QString("barChart col clustered|%1 Hours|b|45|1|Hours!$B$3 by Hours!$A$3").arg(c.title));
    }
}

TEST_F(FuelTotalsTest, RebateSheetTakesEightyPercentWhileTheGridTakesTheSetting) {
    SeedUsage();
    preview("Rebate Applicable", kHours, kKm, "2024/12/01", "2025/01/31");
    // Six rebated fills (the Nissan's transport is not rebated), then the closing rows at the setting's 70%.
    ASSERT_EQ(m_screen->grd3->Rows(), 1 + 6 + 4);
    EXPECT_EQ(row(1), QStringList({"2024/12/05", "Jan Smit", "Ploughing", "Toyota(ca 1)", "10.00", "10.00", "0.00"}));
    EXPECT_EQ(row(8).mid(3), QStringList({"Total Litres", "125.00", "82.50", "42.50"}));
    EXPECT_EQ(m_screen->grd3->TextMatrix(9, 3), " 70% of Litres"); // the blank stands before the share
    EXPECT_EQ(row(9).mid(3, 2), QStringList({"70% of Litres", "57.75"}));
    EXPECT_EQ(row(10).mid(3, 2), QStringList({"70% @ R3", "173.25"}));

    print();
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Hours"}));
    // The sums, 80% of the rebated litres (not the setting's 70) and their worth at R3.
    const char* blocks[] = {"Total Litres|40|40|0|80% of Rebated Litres|32|70% @ R3|96",
                            "Total Litres|85|42.5|42.5|80% of Rebated Litres|34|70% @ R3|102"};
    for (int i = 0; i < 2; ++i) {
        const WbSheet& s = *saved.sheet(i);
        EXPECT_EQ(Texts(s, {"D6", "E6", "F6", "G6", "D7", "E7", "D8", "E8"}), blocks[i]);
        EXPECT_EQ(s.cells.at("G6").style.numberFormat, "### ### ##0.00");
        EXPECT_EQ(s.lastRow(), 8);
        EXPECT_TRUE(s.charts.empty());
    }
}

TEST_F(FuelTotalsTest, APassWithoutRowsGetsTheLabelAndNoTotals) {
    SeedUsage();
    // The Nissan's fills are all transport: its kind has nothing rebated.
    preview("Rebate Applicable", kHours, {"NISSAN (CA 2)"}, "2024/12/01", "2025/01/31");
    ASSERT_EQ(m_screen->grd3->Rows(), 1 + 3 + 4);
    print();
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(), QStringList({"Km", "Hours"}));
    const WbSheet& km = *saved.sheet(0);
    EXPECT_EQ(km.text("A3"), "No Vehicle(s) with Rebate Applicable");
    EXPECT_TRUE(km.merged("A3:C3"));
    EXPECT_EQ(km.lastRow(), 3);
    EXPECT_EQ(km.text("D4"), "");
    EXPECT_EQ(saved.sheet(1)->text("D6"), "Total Litres");

    // Nothing at all: the message and the label, and nothing to print.
    m_msgs.clear();
    preview("Rebate Applicable", {}, {"NISSAN (CA 2)"}, "2024/12/01", "2025/01/31");
    EXPECT_EQ(m_msgs.texts(), QStringList({"Nothing to show for Rebate Applicable"}));
    EXPECT_EQ(m_screen->lblMsg->text(), "No Vehicle(s) with Rebate Applicable");
    EXPECT_FALSE(m_screen->cmdPrint->isEnabled());
}

TEST_F(FuelTotalsTest, MonthlyCrosstabPutsJanuaryFirstAndChartsEverySheet) {
    SeedUsage();
    preview("Monthly Veh. Fuel Usage", kHours, kKm, "2024/11/01", "2025/01/31");
    EXPECT_EQ(m_screen->lblMsg->text(), "'Print View' To view more options and Charts");
    EXPECT_EQ(m_screen->grd3->FormatString(), "Date|JOHN DEERE(JD 1)|NISSAN(CA 2)|TOYOTA(CA 1)");
    ASSERT_EQ(m_screen->grd3->Rows(), 4);
    // 'mm yyyy' order: January 2025 before November and December 2024; no fill shows a nought.
    EXPECT_EQ(row(1), QStringList({"January 2025", "35.00", "5.00", "10.00"}));
    EXPECT_EQ(row(2), QStringList({"November 2024", "0.00", "0.00", "15.00"}));
    EXPECT_EQ(row(3), QStringList({"December 2024", "50.00", "25.00", "30.00"}));

    print();
    EXPECT_EQ(m_msgs.last(), "Monthly Veh. Fuel Usage Completed");
    const WorkbookReader saved = book();
    ASSERT_EQ(saved.sheetNames(),
              QStringList({"Litres Km", "Chart Litres Km", "Cost Km", "Chart Cost Km", "Litres Hours",
                           "Chart Litres Hours", "Cost Hours", "Chart Cost Hours"}));
    // November has no Nissan fill: empty on the sheet where the grid shows a nought.
    EXPECT_EQ(Texts(*saved.sheet(0), {"B2", "A3", "A4", "B4", "C4", "C5"}),
              "NISSAN(CA 2)|January 2025|November 2024||15|30");
    EXPECT_EQ(saved.sheet(0)->orientation, "landscape");
    EXPECT_EQ(Texts(*saved.sheet(2), {"B3", "C3", "B5"}), "100|200|500"); // litres at 20 a litre
    EXPECT_EQ(Texts(*saved.sheet(4), {"A3", "A4", "B4"}), "January 2025|December 2024|50");
    EXPECT_EQ(Chart(*saved.sheet(1)), "barChart col clustered|Monthly Veh. Fuel Usage Litres Km|b|0|1|"
                                      "'Litres Km'!$B$3:$B$5 by 'Litres Km'!$A$3:$A$5|"
                                      "'Litres Km'!$C$3:$C$5 by 'Litres Km'!$A$3:$A$5");
    EXPECT_EQ(Chart(*saved.sheet(7)), "barChart col clustered|Monthly Veh. Fuel Usage Cost Hours|b|0|1|"
                                      "'Cost Hours'!$B$3:$B$4 by 'Cost Hours'!$A$3:$A$4");
}

TEST_F(FuelTotalsTest, AFailingChartIsReportedAndTheWorkbookStillSaved) {
    SeedUsage();
    ReportRun run;
    run.title = "Litres Per Vehicle";
    REPORT_Workbook_Initialise(true);
    // "Chart " and this name are more than a sheet name may hold.
    xlSheet->SetName("Litres Per Vehicle Kilometres");
    xlSheet->Range("a2").SetValue(Value(QStringLiteral("Vehicle")));
    xlSheet->Range("b2").SetValue(Value(QStringLiteral("Total")));
    xlSheet->Range("a3").SetValue(Value(QStringLiteral("Toyota")));
    xlSheet->Range("b3").SetValue(Value(40.0));
    PrintChart(run, ChartForm::Columns, 3);
    ASSERT_EQ(m_msgs.shown.size(), 1);
    EXPECT_TRUE(m_msgs.last().startsWith("Error In PrintChart:") && m_msgs.last().size() > 20)
        << m_msgs.last().toStdString();
    EXPECT_EQ(m_msgs.shown[0].buttons, MsgButtons::Ok);
    FinishReport(run, run.title);
    const WorkbookReader saved = book();
    EXPECT_EQ(saved.sheet(0)->text("A3"), "Toyota");
    EXPECT_TRUE(saved.sheet(1)->charts.empty());
}

} // namespace
