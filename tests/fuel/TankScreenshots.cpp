// Pictures of the tank and stock take screens on a small register, for the documentation. Not part of the
// ordinary run: start with --gtest_also_run_disabled_tests and ORVEL_SCREENSHOT_DIR set to the folder.

#include "TankTestStore.h"
#include "frmTank.h"
#include "frmTankPurchase.h"
#include "frmTankStock.h"

#include "WorkbookReader.h"

#include <QComboBox>
#include <QDateEdit>
#include <QFile>
#include <QListWidget>
#include <QPushButton>

namespace {

class TankScreenshots : public TankStoreTest {};

TEST_F(TankScreenshots, DISABLED_TankAndStockTake) {
    const QString dir = qEnvironmentVariable("ORVEL_SCREENSHOT_DIR");
    ASSERT_FALSE(dir.isEmpty());
    exec("insert into fuelsupplier (name, issystem) values ('Karoo Fuel Distributors', 0)");
    exec("insert into fuelsupplier (name, issystem) values ('Engen Worcester', 0)");
    const int north = addTank("NORTH DIESEL", 12450.5, "21.37");
    addTank("WORKSHOP PETROL", 830, "23.10");
    addPurchase(north, "2024/02/12", "10000.00", "20.85", "2");
    addPurchase(north, "2024/03/04", "8500.00", "21.02", "3");
    addPurchase(north, "2024/04/15", "12000.00", "21.37", "2");
    exec("update FuelPurchase set Cost = format(val(Liter) * val(CostPerLiter), '###0.00'), invoiceref = 'INV-' & "
         "TransID");
    {
        frmTank tanks;
        tanks.resize(1000, 520);
        tanks.show();
        tanks.list1->setCurrentRow(0);
        tanks.Label4_Click(1);
        QTest::qWait(50);
        ASSERT_TRUE(tanks.grab().save(dir + "/tank.png"));
    }
    {
        m_session.CurrentTankID = north;
        m_session.CurrentPurchaseID = 2;
        frmTankPurchase purchase;
        purchase.LoadDetail();
        purchase.show();
        QTest::qWait(50);
        ASSERT_TRUE(purchase.grab().save(dir + "/tankpurchase.png"));
    }
    exec("insert into TankStock (TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rvalue, Rede) values "
         "(1, 'NORTH DIESEL', '2024/03/31', '17420.00', '17500', '-80.00', '-1681.60', 'Leak at the outlet valve')");
    frmTankStock stock;
    stock.show();
    stock.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stock));
    stock.Label4_Click();
    stock.cmbTank->setCurrentIndex(0);
    emit stock.cmbTank->activated(0);
    typeInto(stock.txtLitIn, "12380");
    leave(stock.txtLitIn);
    typeInto(stock.txtReason, "Measured with the dip stick");
    QTest::qWait(50);
    ASSERT_TRUE(stock.grab().save(dir + "/tankstock.png"));
    // The workbooks of both screens, copied beside the pictures for a look in a spreadsheet program.
    stock.lblcmd_Click(1);
    stock.lblPrint_Click();
    const QString listBook = WorkbookReader::newestIn(m_home.path() + "/Reports/Vehicles");
    ASSERT_TRUE(QFile::copy(listBook, dir + "/fuel-stock.xlsx"));
    QTest::qWait(1100); // the file name carries the second of saving
    frmTank tanks;
    tanks.list1->setCurrentRow(0);
    tanks.lblPrint_Click();
    ASSERT_TRUE(
        QFile::copy(WorkbookReader::newestIn(m_home.path() + "/Reports/Vehicles"), dir + "/fuel-purchases.xlsx"));
}

} // namespace
