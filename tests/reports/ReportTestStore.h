#pragma once
// A small register in a temporary home for the report tests: two tanks (the second never stock-taken),
// kilometre and hour vehicles, fuel issues over December and January, purchases, a gain and a loss, and
// equipment and room stock. The figures the tests expect are worked out by hand from these rows.

#include "Database.h"
#include "FlexGrid.h"
#include "HomeFolder.h"
#include "QueryHelpers.h"
#include "ReportScreens.h"
#include "ScreenRegistry.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "StoreStartup.h"
#include "TempHome.h"
#include "WorkbookReader.h"
#include "frmVerslae.h"

#include "ComboHelpers.h"
#include "CommandLine.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>

inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}
inline void PrintTo(const QStringList& list, std::ostream* os) {
    *os << '[' << list.join("|").toStdString() << ']';
}

// What `orvel report` wrote and returned.
struct CommandRun {
    int exitCode;
    QString out, err;
};

class ReportStoreTest : public ::testing::Test {
protected:
    void SetUp() override {
        qputenv("ORVEL_NO_SHOW", "1");
        m_session.home = m_home.path();
        SetHomeFolder(m_home.path());
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db);
        RegisterReportScreens();
    }
    void TearDown() override {
        m_screen.reset();
        m_session.db.reset();
        SetCurrentSession(nullptr);
    }

    // Runs `orvel report` on the test's home, with the test's own store closed meanwhile.
    CommandRun runReportCommand(const QStringList& args) {
        m_session.db.reset();
        SetCurrentSession(nullptr);
        CommandLine cl;
        cl.home = m_home.path();
        cl.subcommand = "report";
        cl.args = args;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        char name[] = "orvel";
        char* argv[] = {name, nullptr};
        const int code = RunReportCommand(cl, 1, argv);
        CommandRun result{code, QString::fromStdString(testing::internal::GetCapturedStdout()),
                          QString::fromStdString(testing::internal::GetCapturedStderr())};
        SetCurrentSession(&m_session);
        OpenSessionStore(m_session);
        return result;
    }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) { return GetScalar(*m_session.db, sql, "", 0, "<error>"); }

    int addCategory(const QString& name, bool hours) {
        exec(QString("insert into voerkat ([desc], hours) values ('%1', %2)").arg(name).arg(hours ? -1 : 0));
        return scalar("select max(transid) from voerkat").toInt();
    }
    int addVehicle(int cat, const QString& make, const QString& reg, bool hours, const QString& bought = "2022/01/01") {
        QString escaped = make;
        escaped.replace("'", "''");
        exec(
            QString("insert into voertuig (catid, maak, model, regnr, adatum, awaarde, depwaarde, vwaarde, boek, km, "
                    "hours, deptid, enjin) values (%1, '%2', 'model', '%3', '%4', 1000, 10, 1500, '900', '100', %5, 1, "
                    "'E1')")
                .arg(cat)
                .arg(escaped, reg, bought)
                .arg(hours ? -1 : 0));
        return scalar("select max(transid) from voertuig").toInt();
    }
    int addTank(const QString& name) {
        exec("insert into tanks (tanknaam, huidigevolume) values ('" + name + "', 0)");
        return scalar("select max(transid) from tanks").toInt();
    }
    void issue(int vehicle, int tank, const QString& date, double prev, double read, double litres, double rperl = 20) {
        exec(QString("insert into vecfuel (voertuigid, tankid, datum, previouskmread, kmread, litres, rperl, driverid, "
                     "activityid) values (%1, %2, '%3', %4, %5, %6, %7, 1, 1)")
                 .arg(vehicle)
                 .arg(tank)
                 .arg(date)
                 .arg(prev)
                 .arg(read)
                 .arg(litres)
                 .arg(rperl));
    }
    void purchase(int tank, const QString& date, const QString& litres, const QString& cost, const QString& invoice) {
        exec(QString("insert into fuelpurchase (tankid, datum, liter, cost, costperliter, suppid, invoiceref) values "
                     "(%1, '%2', '%3', '%4', '20', 1, '%5')")
                 .arg(tank)
                 .arg(date, litres, cost, invoice));
    }
    void stockTake(int tank, const QString& name, const QString& date, const QString& difference, const QString& why) {
        exec(QString("insert into tankstock (tankid, tank, datum, verlore, rede) values (%1, '%2', '%3', '%4', '%5')")
                 .arg(tank)
                 .arg(name, date, difference, why));
    }

    // The register of the tests.
    void SeedRegister() {
        exec("insert into departments (id, description) values (1, 'WORKSHOP')");
        m_kmCat = addCategory("BAKKIES", false);
        m_hourCat = addCategory("TRACTORS", true);
        m_k1 = addVehicle(m_kmCat, "TOYOTA", "CA 1", false);
        m_k2 = addVehicle(m_kmCat, "NISSAN", "CA 2", false, "2021/06/01");
        m_h1 = addVehicle(m_hourCat, "JOHN DEERE", "JD 1", true);
        m_h2 = addVehicle(m_hourCat, "MASSEY", "MF 2", true, "2023/03/03");
        m_t1 = addTank("MAIN DIESEL");
        m_t2 = addTank("PETROL");
        purchase(m_t1, "2024/11/01", "1000", "20000", "INV1");
        purchase(m_t2, "2024/11/15", "300", "6000", "INV3");
        issue(m_k1, m_t1, "2024/11/20", 900, 1000, 15);
        issue(m_k1, m_t1, "2024/12/05", 1000, 1100, 10);
        issue(m_k1, m_t1, "2024/12/20", 1100, 1300, 20);
        issue(m_k1, m_t1, "2025/01/10", 1300, 1400, 10);
        issue(m_h1, m_t1, "2024/12/07", 500, 510, 50);
        issue(m_h1, m_t1, "2025/01/15", 510, 530, 30);
        issue(m_h1, m_t1, "2025/01/15", 530, 530, 5);
        issue(m_k2, m_t2, "2024/12/10", 2000, 2100, 25);
        issue(m_k2, m_t1, "2025/01/05", 2100, 2150, 5);
        purchase(m_t1, "2024/12/20", "500", "10000", "INV2");
        stockTake(m_t1, "MAIN DIESEL", "2024/12/31", "-12", "LEAK");
        stockTake(m_t1, "MAIN DIESEL", "2025/01/20", "8", "HEAT");
    }

    // The report screen opened on `title`, shown offscreen.
    frmVerslae& open(const QString& title) {
        m_session.ReportChoice = title;
        m_screen = std::make_unique<frmVerslae>();
        m_screen->show();
        return *m_screen;
    }
    // Clicks the item of that text, as a person does.
    static void click(QListWidget* list, const QString& text) {
        const auto found = list->findItems(text, Qt::MatchExactly);
        ASSERT_EQ(found.size(), 1) << text.toStdString();
        list->scrollToItem(found.first());
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(found.first()).center());
    }
    void range(const QString& from, const QString& to) {
        m_screen->dtpFrom->setDate(QDate::fromString(from, "yyyy/MM/dd"));
        m_screen->dtpTo->setDate(QDate::fromString(to, "yyyy/MM/dd"));
    }
    // A grid row, each cell without the blanks that the number patterns put before short numbers.
    QStringList row(int r) const {
        QStringList cells;
        for (int c = 0; c < m_screen->grd3->Cols(); ++c)
            cells << m_screen->grd3->TextMatrix(r, c).trimmed();
        return cells;
    }
    // The workbook saved last in the reports' folder.
    WorkbookReader book() const {
        WorkbookReader reader;
        const QString path = WorkbookReader::newestIn(m_home.path() + "/Reports/Reports");
        EXPECT_TRUE(reader.open(path)) << path.toStdString() << " " << reader.error().toStdString();
        return reader;
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_msgs;
    std::unique_ptr<frmVerslae> m_screen;
    int m_kmCat = 0, m_hourCat = 0, m_k1 = 0, m_k2 = 0, m_h1 = 0, m_h2 = 0, m_t1 = 0, m_t2 = 0;
};
