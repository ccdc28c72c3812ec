// Pictures of the equipment screens on the demo register, for the documentation. Run on purpose with
// --gtest_also_run_disabled_tests and ORVEL_SCREENSHOTS set to the folder that receives them.
#include "EquipmentDemo.h"
#include "EquipmentTestStore.h"
#include "FlexGrid.h"
#include "frmEquipment.h"
#include "frmEquipmentBookedout.h"
#include "frmEquipmentStockTake.h"

#include <QLineEdit>
#include <QListWidget>
#include <QPixmap>

namespace {
class Screenshots : public EquipmentStoreTest {};
} // namespace

TEST_F(Screenshots, DISABLED_EquipmentScreens) {
    const QString folder = qEnvironmentVariable("ORVEL_SCREENSHOTS");
    ASSERT_FALSE(folder.isEmpty());
    WriteDemoEquipment(QDate::currentDate(), 7);
    m_session.ReportChoice = "Equipment List";
    frmEquipment list;
    list.resize(1000, 560);
    list.show();
    list.list1->setCurrentRow(1);
    list.flg->setCurrentCell(2, 2);
    EXPECT_TRUE(list.grab().save(folder + "/equipment-register.png"));

    frmEquipmentBookedout out;
    out.resize(1000, 460);
    out.show();
    EXPECT_TRUE(out.grab().save(folder + "/equipment-booked-out.png"));

    frmEquipmentStockTake take;
    take.resize(1000, 460);
    take.show();
    take.list1->setCurrentRow(1);
    take.flg_Click(2, frmEquipmentStockTake::colActual);
    take.txtG3->setText("7");
    EXPECT_TRUE(take.grab().save(folder + "/equipment-stock-take.png"));
}
