#include "ScreenRegistry.h"
#include "Database.h"
#include "ScriptedMessageService.h"
#include "ShellTestUtil.h"

#include <QCloseEvent>
#include <QDialog>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class ScreenRegistryTest : public ::testing::Test {
protected:
    void SetUp() override {
        UnregisterAllScreens();
        SetMdiArea(&area);
        area.resize(800, 600);
        area.show();
    }
    void TearDown() override {
        area.closeAllSubWindows();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        SetMdiArea(nullptr);
        UnregisterAllScreens();
    }
    QMdiArea area;
    ScriptedMessageService messages;
};

} // namespace

TEST_F(ScreenRegistryTest, ANormalShowIsOneMdiChildPerFormName) {
    int made = 0;
    RegisterScreen("frmTank", [&](QWidget* parent) {
        ++made;
        return new QWidget(parent);
    });
    EXPECT_TRUE(IsScreenRegistered("FRMTANK")); // form names are case-blind
    QWidget* first = ShowScreen("frmTank", false);
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->objectName(), "frmTank");
    EXPECT_EQ(area.subWindowList().size(), 1);
    EXPECT_EQ(ShowScreen("frmTank", false), first);
    EXPECT_EQ(made, 1);
    EXPECT_EQ(OpenForms(), QStringList({"frmTank"}));
    EXPECT_TRUE(IsFormVisible("frmTank"));

    UnloadForm("frmTank");
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(OpenForms().isEmpty());
    EXPECT_FALSE(IsFormVisible("frmTank"));
    EXPECT_TRUE(area.subWindowList().isEmpty());

    // A form that closes itself is gone as well, frame and all.
    QWidget* again = ShowScreen("frmTank", false);
    EXPECT_EQ(made, 2);
    again->close();
    EXPECT_TRUE(OpenForms().isEmpty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCoreApplication::processEvents();
    EXPECT_TRUE(area.subWindowList().isEmpty());
}

TEST_F(ScreenRegistryTest, AModalShowRunsTheDialogAndUnloadsItAfter) {
    RegisterScreen("frmRebate", [](QWidget* parent) { return new QDialog(parent); });
    RegisterScreen("frmPDP", [](QWidget* parent) { return new QWidget(parent); }); // a plain form
    for (const char* name : {"frmRebate", "frmPDP"}) {
        bool wasVisible = false;
        bool wasModal = false;
        OnNextModal([&](QWidget* w) {
            wasVisible = IsFormVisible(name);
            wasModal = w->isModal();
            w->close();
        });
        EXPECT_EQ(ShowScreen(name, true), nullptr);
        EXPECT_TRUE(wasVisible) << name;
        EXPECT_TRUE(wasModal) << name;
        EXPECT_TRUE(OpenForms().isEmpty()) << name;
        EXPECT_TRUE(area.subWindowList().isEmpty()) << name;
    }
}

TEST_F(ScreenRegistryTest, AFactoryThatFailsIsReportedAndOpensNothing) {
    RegisterScreen("frmowner", [](QWidget*) -> QWidget* { throw DbError(3078, "no such table: owner"); });
    EXPECT_EQ(ShowScreen("frmowner", false), nullptr);
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages.shown[0].title, "Orvel");
    EXPECT_TRUE(messages.shown[0].text.contains("3078"));
    EXPECT_TRUE(messages.shown[0].text.contains("no such table: owner"));
    EXPECT_TRUE(OpenForms().isEmpty());
}
