// The reminder screen as the office sees it: the option picked by what stands, the lists, the fields, the
// workbook, and the screens the start shows by themselves.
#include "frmReminders.h"
#include "FlexGrid.h"
#include "ReminderGrid.h"
#include "ReminderScreens.h"
#include "ReminderTestStore.h"
#include "WorkbookReader.h"
#include "frmMain.h"

#include <QDateEdit>
#include <QDir>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QToolButton>

namespace {

class RemindersTest : public ReminderStoreTest {
protected:
    void SetUp() override {
        ReminderStoreTest::SetUp();
        RegisterReminderScreens();
    }
    void TearDown() override {
        UnregisterAllScreens();
        SetReminderSqlBuilder({});
        ReminderStoreTest::TearDown();
    }

    static QStringList column(const frmReminders& s, int col) {
        QStringList out;
        for (int r = 1; r < s.flg->Rows(); ++r)
            out << s.flg->TextMatrix(r, col);
        return out;
    }
    static QStringList headings(const frmReminders& s) {
        QStringList out;
        for (int c = 0; c < s.flg->Cols(); ++c)
            out << s.flg->TextMatrix(0, c);
        return out;
    }
};

TEST_F(RemindersTest, OptionPickedByWhatStands) {
    // Only service dates in the period: the service option, and a licence date in the period does not list.
    addVehicle("Nissan", "Np200", "SRV-ONLY", "2001/01/01", day(30));
    addVehicle("Ford", "Ranger", "OUTSIDE", "2001/01/01", day(400));
    m_session.ReminderKind = "vehicle";
    frmReminders s;
    EXPECT_TRUE(s.optBoth[2]->isChecked());
    EXPECT_FALSE(s.BothFound());
    EXPECT_EQ(s.lblDue->text(), "Service Due Date");
    EXPECT_EQ(headings(s), QStringList({"id", "Make", "Model", "Registration #", "Service Due Date"}));
    EXPECT_EQ(column(s, 3), QStringList({"SRV-ONLY"}));
    EXPECT_EQ(column(s, 4), QStringList({day(30)}));
    EXPECT_TRUE(s.fraBoth->isVisibleTo(&s));
    EXPECT_TRUE(m_messages.shown.isEmpty());

    // Licence and service both present: the licence option first; the service option lists only service dates.
    addVehicle("Audi", "A4", "LIC-ONLY", day(-20), "2001/01/01");
    frmReminders both;
    EXPECT_TRUE(both.optBoth[1]->isChecked());
    EXPECT_TRUE(both.BothFound());
    EXPECT_EQ(column(both, 3), QStringList({"LIC-ONLY"}));
    EXPECT_EQ(column(both, 0), QStringList({"1"}));
    QTest::mouseClick(both.optBoth[2], Qt::LeftButton, {}, QPoint(6, both.optBoth[2]->height() / 2));
    EXPECT_EQ(column(both, 3), QStringList({"SRV-ONLY"}));
    // "Both" lists the service dates with no due column of its own.
    QTest::mouseClick(both.optBoth[0], Qt::LeftButton, {}, QPoint(6, both.optBoth[0]->height() / 2));
    EXPECT_EQ(column(both, 3), QStringList({"SRV-ONLY"}));
    EXPECT_EQ(column(both, 4), QStringList({""}));
    EXPECT_EQ(both.lblDue->text(), "");
}

TEST_F(RemindersTest, NothingDueNamesToday) {
    addVehicle("Ford", "Ranger", "FAR", day(400), day(-400));
    addPermit("1", "Far", "Away", day(-400));
    for (const char* kind : {"vehicle", "pdp"}) {
        m_messages.clear();
        m_session.ReminderKind = kind;
        frmReminders s;
        ASSERT_EQ(m_messages.shown.size(), 1);
        const QString expected = QString(kind) == "pdp" ? "No Pdp reminders for '" : "No Vehicle reminders for '";
        EXPECT_EQ(m_messages.shown[0].text, expected + day(0) + "'");
        EXPECT_EQ(m_messages.shown[0].title, "Orvel");
        EXPECT_FALSE(s.fraDue->isVisibleTo(&s));
        EXPECT_LE(s.flg->Rows(), 2);
        EXPECT_EQ(s.flg->TextMatrix(s.flg->Rows() - 1, 0), "");
    }
}

TEST_F(RemindersTest, PermitList) {
    addPermit("8001", "O''Neill", "Sean", day(5)); // stored as O'Neill
    addPermit("8002", "Botha", "Anna", day(-5));
    addPermit("8003", "Zulu", "Far", day(365));
    m_session.ReminderKind = "pdp";
    frmReminders s;
    EXPECT_FALSE(s.fraBoth->isVisibleTo(&s));
    EXPECT_EQ(s.optBoth[1]->text(), "Pdp renewal Date");
    EXPECT_TRUE(s.optBoth[1]->isChecked());
    EXPECT_EQ(s.lblDue->text(), "Licence Renewal");
    EXPECT_EQ(headings(s), QStringList({"Id Reference", "Surname", "First Name", "Licence Renewal"}));
    EXPECT_EQ(column(s, 1), QStringList({"Botha", "O'Neill"}));
    EXPECT_EQ(column(s, 3), QStringList({day(-5), day(5)}));
}

TEST_F(RemindersTest, MonthFieldsAndRun) {
    addVehicle("Ford", "Ranger", "TODAY", day(0), "2001/01/01");
    addVehicle("Ford", "Ranger", "NEXT-WEEK", day(7), "2001/01/01");
    m_session.ReminderKind = "vehicle";
    frmReminders s;
    s.show();
    EXPECT_EQ(column(s, 3), QStringList({"NEXT-WEEK", "TODAY"}));
    s.txtFrom->setText("0");
    s.txtTo->setText("99");
    // 99 is beyond the up-down: the lowest value, so that 0 and 0 list only the chosen date.
    QTest::mouseClick(s.imgRun, Qt::LeftButton);
    EXPECT_EQ(s.txtTo->text(), "0");
    EXPECT_EQ(column(s, 3), QStringList({"TODAY"}));
    s.DueDate->setDate(QDate::currentDate().addDays(7));
    QTest::mouseClick(s.imgRun, Qt::LeftButton);
    EXPECT_EQ(column(s, 3), QStringList({"NEXT-WEEK"}));
    QTest::mouseClick(s.UpDownTo->up, Qt::LeftButton);
    EXPECT_EQ(s.txtTo->text(), "1");
}

TEST_F(RemindersTest, WorkbookHoldsBothLists) {
    addVehicle("Audi", "A4", "LIC", day(10), "2001/01/01");
    addVehicle("Bmw", "X3", "SRV", "2001/01/01", day(-10));
    m_session.ReminderKind = "vehicle";
    frmReminders s;
    m_messages.answer(MsgResult::No);
    QTest::mouseClick(s.lblPrint, Qt::LeftButton);
    EXPECT_EQ(m_messages.last(), "Print Reminders?");
    const QString folder = m_home.path() + "/Reports/Features";
    EXPECT_TRUE(QDir(folder).entryList({"*.xlsx"}, QDir::Files).isEmpty());
    QTest::mouseClick(s.lblPrint, Qt::LeftButton);
    const QStringList saved = QDir(folder).entryList({"Vehicle-*.xlsx"}, QDir::Files);
    ASSERT_EQ(saved.size(), 1);
    WorkbookReader book;
    ASSERT_TRUE(book.open(folder + "/" + saved.first())) << qPrintable(book.error());
    const WbSheet* sheet = book.sheet(0);
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(sheet->text("A1"), "Vehicle Reminders");
    EXPECT_TRUE(sheet->merged("A1:D1"));
    EXPECT_EQ(QStringList({sheet->text("A2"), sheet->text("B2"), sheet->text("C2"), sheet->text("D2")}),
              QStringList({"Make", "Model", "Registration #", "Licence Renewal"}));
    EXPECT_EQ(sheet->text("C3"), "LIC");
    EXPECT_EQ(sheet->shown("D3"), day(10));
    // The service list follows after a blank row.
    EXPECT_EQ(sheet->text("A5"), "Vehicle Reminders");
    EXPECT_EQ(sheet->text("D6"), "Service Due Date");
    EXPECT_EQ(sheet->text("C7"), "SRV");
    EXPECT_EQ(sheet->shown("D7"), day(-10));
}

// The start: the reminder screen by itself for what falls due today, vehicles before permits.
class StartTest : public RemindersTest {
protected:
    // The kinds and captions of the reminder screens the start shows, each closed by its user.
    QStringList startAndRecord() {
        m_session.db.reset();
        QStringList seen;
        QTimer poll;
        poll.setInterval(10);
        QObject::connect(&poll, &QTimer::timeout, [&seen] {
            if (QWidget* modal = QApplication::activeModalWidget()) {
                seen << CurrentSession().ReminderKind + ":" + modal->windowTitle();
                modal->close();
            }
        });
        poll.start();
        {
            frmMain window;
            EXPECT_TRUE(window.Startup());
            QTest::qWait(50);
        }
        return seen;
    }
};

TEST_F(StartTest, VehiclesThenPermitsForWhatFallsDueToday) {
    struct Case {
        const char* name;
        int vehicleService; // days from today; 99: no vehicle
        int permit;         // days from today; 99: no permit
        QStringList shown;
    };
    const Case cases[] = {
        {"both due", 0, 0, {"vehicle:Reminders", "pdp:Reminders"}},
        {"nothing today", 1, 1, {}},
        {"a permit alone", 99, 0, {"pdp:Reminders"}},
    };
    for (const Case& c : cases) {
        exec("delete from voertuig");
        exec("delete from pdp");
        if (c.vehicleService != 99)
            addVehicle("Ford", "Ranger", "SRV", day(-1), day(c.vehicleService));
        if (c.permit != 99)
            addPermit("1", "Botha", "Anna", day(c.permit));
        EXPECT_EQ(startAndRecord(), c.shown) << c.name;
        EXPECT_TRUE(m_messages.shown.isEmpty()) << c.name;
        m_session.instanceLock.reset();
        OpenSessionStore(m_session);
    }
}

} // namespace
