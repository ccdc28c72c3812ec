// How the service screens are reached: the two tree entries (open screens closed first, each shown modally)
// and the vehicle list's service history action.
#include "../vehicles/VehicleTestStore.h"
#include "FlexGrid.h"
#include "Registration.h"
#include "ScreenRegistry.h"
#include "frmMain.h"
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
            m_openWhileModal = OpenForms();
            modal->close();
        });
    }
    QString m_modal;
    QStringList m_openWhileModal;
};

} // namespace

TEST_F(ServiceNavigationTest, TreeEntriesCloseTheOpenScreensAndShowTheServiceScreensModally) {
    frmMain window;
    SetMdiArea(window.mdiArea);
    window.show();
    for (const char* entry : {"Add Service", "Services Allocate"}) {
        window.Label1_Click(2); // the vehicles section: its tree, and the vehicle list open
        ASSERT_TRUE(OpenForms().contains("frmVoerk"));
        noteNextModal();
        ASSERT_TRUE(window.ClickNode(entry)) << entry;
        EXPECT_EQ(m_modal, entry == QString("Add Service") ? "frmServAdd" : "frmVoerDiens");
        EXPECT_FALSE(m_openWhileModal.contains("frmVoerk"));
    }
    SetMdiArea(nullptr);
}

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
