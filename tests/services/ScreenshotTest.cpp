// Pictures of the three service screens with demonstration services, for the documentation. Run on request:
//     services_tests --gtest_also_run_disabled_tests --gtest_filter='*Screenshots*'
// with ORVEL_SCREENSHOTS set to the folder to write into.
#include "ServiceDemo.h"
#include "ServiceReports.h"
#include "ServiceTestStore.h"
#include "frmServAdd.h"
#include "frmVoerDiens.h"
#include "frmVoerDiens_Extra.h"

#include <QDir>
#include <QFile>
#include <QGroupBox>

TEST_F(ServiceStoreTest, DISABLED_Screenshots) {
    const QString folder = qEnvironmentVariable("ORVEL_SCREENSHOTS");
    ASSERT_FALSE(folder.isEmpty());
    QDir().mkpath(folder);
    exec("insert into departments (description, issys) values ('Department 1', 1)");
    WriteDemoServices(QDate::currentDate(), 11);

    {
        auto s = open<frmServAdd>();
        pickRow(s->flx1, 2);
        click(s->lblcmd[1]);
        QCoreApplication::processEvents();
        EXPECT_TRUE(s->grab().save(folder + "/service-capture.png"));
        click(s->lblcmd[4]);
        click(s->lblcmd[8]);
        QFile::copy(newestWorkbook("Services Allocate"), folder + "/job-card.xlsx");
    }
    {
        auto s = open<frmVoerDiens>();
        pick(s->Combo2, "Light Vehicles");
        pick(s->Combo3, "Toyota (CA 123-456)");
        click(s->lblcmd[2]);
        pickRow(s->Grid1, 1);
        click(s->lblcmd[5]);
        QCoreApplication::processEvents();
        EXPECT_TRUE(s->grab().save(folder + "/service-history.png"));
        ServiceHistory_PrintVehicle(m_toyota);
        QFile::copy(newestWorkbook("Reports"), folder + "/history.xlsx");
        click(s->lblcmd[9]);
        QFile::copy(newestWorkbook("Services"), folder + "/transaction.xlsx");
        m_session.ServiceMode = 0;
        frmVoerDiens_Extra e;
        e.resize(900, 520);
        e.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&e));
        pick(e.cboCostType, "Labour");
        pickRow(e.flx2, 1);
        click(e.cmd[1]);
        QCoreApplication::processEvents();
        EXPECT_TRUE(e.grab().save(folder + "/service-costs.png"));
    }
}
