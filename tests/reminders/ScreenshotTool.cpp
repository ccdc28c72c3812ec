// Pictures of the screens for the documentation, on a small register; run on demand with
// --gtest_also_run_disabled_tests --gtest_filter='*Screenshots*' (ORVEL_SCREENSHOTS names the folder).
#include "FlexGrid.h"
#include "ReminderDemo.h"
#include "ReminderTestStore.h"
#include "frmPDP.h"
#include "frmReminders.h"

#include <QDateEdit>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

class ScreenshotTest : public ReminderStoreTest {};

TEST_F(ScreenshotTest, DISABLED_Screenshots) {
    const QString folder = qEnvironmentVariable("ORVEL_SCREENSHOTS", "/tmp");
    const char* regs[][5] = {{"Toyota", "Hilux 2.4", "CA 123-456", "0", "40"},
                             {"Ford", "Ranger", "CA 777", "-20", "120"},
                             {"Isuzu", "D-Max", "CAW 5", "100", "0"},
                             {"John Deere", "6120M", "NONE", "60", "-30"}};
    for (auto& r : regs)
        addVehicle(r[0], r[1], r[2], day(QString(r[3]).toInt()), day(QString(r[4]).toInt()));
    WriteDemoPermits(QDate::currentDate(), 7);
    m_session.ReminderKind = "vehicle";
    {
        frmReminders s;
        s.show();
        QTest::qWait(50);
        EXPECT_TRUE(s.grab().save(folder + "/reminders-vehicles.png"));
    }
    m_session.ReminderKind = "pdp";
    {
        frmReminders s;
        s.show();
        QTest::qWait(50);
        EXPECT_TRUE(s.grab().save(folder + "/reminders-permits.png"));
    }
    frmPDP p;
    p.show();
    p.flx1->setCurrentCell(2, 1);
    p.flx1->SetRow(2);
    QTest::mouseClick(p.lblcmd[1], Qt::LeftButton);
    p.txtSurname->setText("Van der Merwe");
    QTest::qWait(50);
    EXPECT_TRUE(p.grab().save(folder + "/pdp-edit.png"));
}

} // namespace
