// The vehicle list's service history action reaches the service screen through the registered screens.
#include "../vehicles/VehicleTestStore.h"
#include "FlexGrid.h"
#include "Registration.h"
#include "ScreenRegistry.h"
#include "frmVoerk.h"

#include <QListWidget>
#include <QTest>

namespace {

class ServiceNavigationTest : public VehicleStoreTest {
protected:
    void SetUp() override {
        VehicleStoreTest::SetUp();
        SeedRegister();
        UnregisterAllScreens();
        RegisterAllScreens();
    }
    void TearDown() override {
        UnregisterAllScreens();
        VehicleStoreTest::TearDown();
    }
    // The form name of the next modal screen, which is then closed as its user would.
    void noteNextModal() {
        WhenModalOpens([this](QWidget* modal) {
            m_modal = modal->objectName();
            modal->close();
        });
    }
    QString m_modal;
};

} // namespace

TEST_F(ServiceNavigationTest, TheVehicleListOpensTheServiceScreenForThePickedVehicle) {
    frmVoerk list;
    list.show();
    list.list1->setCurrentRow(1); // Light Vehicles
    list.flg->setCurrentCell(1, 2);
    noteNextModal();
    list.Label4_Click(9);
    EXPECT_EQ(m_modal, "frmVoerDiens");
    EXPECT_EQ(m_session.ServiceHistoryVehicleID, 0); // set only while the screen is up
}
