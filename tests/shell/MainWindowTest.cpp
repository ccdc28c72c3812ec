#include "Database.h"
#include "QueryHelpers.h"
#include "ScreenRegistry.h"
#include "ScriptedMessageService.h"
#include "ShellTestUtil.h"
#include "frmMain.h"

#include <QDateEdit>
#include <QLocale>
#include <QMdiArea>
#include <QTest>
#include <QTreeWidget>
#include <gtest/gtest.h>

namespace {

struct Request {
    QString name;
    bool modal;
};

// Every screen the tree and the section labels can open, registered as a recording stand-in.
const char* const kScreens[] = {"frmowner",
                                "frmVoerk",
                                "frmEquipment",
                                "frmVKat",
                                "frmVerslae",
                                "frmReminders",
                                "frmPDP",
                                "frmRebate",
                                "frmVoerDiens",
                                "frmServAdd",
                                "frmFuel",
                                "frmTank",
                                "frmBackup",
                                "frmTankStock",
                                "frmEquipmentStockTake",
                                "frmEquipmentBookedout"};

class MainWindowTest : public ::testing::Test {
protected:
    void SetUp() override {
        UnregisterAllScreens();
        session.home = home.path();
        SetCurrentSession(&session);
    }
    void TearDown() override {
        window.reset();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        UnregisterAllScreens();
        SetReminderSqlBuilder({});
        session.db.reset();
        SetCurrentSession(nullptr);
    }

    void registerRecorders() {
        for (const char* name : kScreens) {
            RegisterScreen(name, [this, name](QWidget* parent) {
                auto* form = new QWidget(parent);
                // Once shown: a modal one is noted and closed at once, as its user would.
                QTimer::singleShot(0, form, [this, form, name] {
                    const bool modal = QApplication::activeModalWidget() != nullptr;
                    requests.push_back({name, modal});
                    if (modal)
                        form->close();
                });
                return form;
            });
        }
    }

    void start() {
        window = std::make_unique<frmMain>();
        ASSERT_TRUE(window->Startup());
        settle();
    }

    // Lets the stand-ins record themselves.
    void settle() {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    QStringList treeTexts() const {
        QStringList out;
        for (QTreeWidgetItemIterator it(window->TreeView1); *it; ++it)
            out << (*it)->text(0) + "=" + (*it)->data(0, Qt::UserRole).toString();
        return out;
    }

    void clickNode(const QString& text) {
        requests.clear();
        ASSERT_TRUE(window->ClickNode(text)) << text.toStdString();
        settle();
    }

    TempHome home;
    Session session;
    ScriptedMessageService messages;
    std::unique_ptr<frmMain> window;
    std::vector<Request> requests;
};

} // namespace

TEST_F(MainWindowTest, StartUpOpensTheVehiclesSectionAsAClickDoes) {
    registerRecorders();
    start();
    EXPECT_EQ(window->windowTitle(), "Quillmere Data: Orvel Register: Version 2024-11-11");
    EXPECT_EQ(window->Label3->text(), QLocale::c().toString(QDate::currentDate(), "MMMM d, yyyy"));
    EXPECT_EQ(window->TodayText, QDate::currentDate().toString("yyyy/MM/dd"));
    EXPECT_EQ(session.CurrentSection, 3);
    ASSERT_EQ(requests.size(), 1u);
    EXPECT_EQ(requests[0].name, "frmVoerk");
    EXPECT_FALSE(requests[0].modal);
    EXPECT_EQ(OpenForms(), QStringList({"frmVoerk"}));
    EXPECT_EQ(treeTexts(),
              QStringList({"Vehicle & Fuel=", "Add Service=Add Service1", "Services Allocate=Services Allocate1",
                           "Fuel Purchases=", "Fuel Allocations=", "Fuel Stock="}));
    EXPECT_TRUE(messages.shown.isEmpty());
    // The closing date of a new store.
    EXPECT_EQ(session.ClosedDate.date(), QDate(2000, 1, 1));
    EXPECT_EQ(window->dtpCDate->date(), QDate(2000, 1, 1));
}

TEST_F(MainWindowTest, ASecondStartIsRefusedBeforeTheStoreIsTouched) {
    start();
    Session second;
    second.home = home.path();
    SetCurrentSession(&second);
    frmMain other;
    EXPECT_FALSE(other.Startup());
    SetCurrentSession(&session);
    ASSERT_EQ(messages.shown.size(), 1);
    EXPECT_EQ(messages.shown[0].text, "The Orvel Module is already open!");
    EXPECT_EQ(messages.shown[0].icon, MsgIcon::Critical);
    EXPECT_EQ(messages.shown[0].buttons, MsgButtons::Ok);
    EXPECT_EQ(second.db, nullptr);
}

TEST_F(MainWindowTest, TheClosingDateIsSavedOnEveryChangeAndReadBack) {
    start();
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    window->dtpCDate->setFocus();
    window->dtpCDate->setDate(QDate(2024, 6, 14));
    EXPECT_EQ(session.ClosedDate, QDateTime(QDate(2024, 6, 14), QTime(0, 0)));
    EXPECT_EQ(GetClosedDate(db()).date(), QDate(2024, 6, 14));
    EXPECT_EQ(session.ClosedDateId, 2);
    // Stepping a day at a time saves each day on the way.
    QTest::keyClick(window->dtpCDate, Qt::Key_Up);
    EXPECT_EQ(GetClosedDate(db()).date(), window->dtpCDate->date());
    EXPECT_NE(window->dtpCDate->date(), QDate(2024, 6, 14));
    EXPECT_EQ(GetScalar(db(), "select count(*) from tblTeDate where TeDateID=2", "0"), "1");

    // A new run shows what was saved.
    window.reset();
    session.db.reset();
    session.instanceLock.reset();
    start();
    EXPECT_EQ(window->dtpCDate->date(), GetClosedDate(db()).date());
    EXPECT_NE(window->dtpCDate->date(), QDate(2000, 1, 1));
}

TEST_F(MainWindowTest, EachTreeEntrySetsItsGlobalsAndAsksForItsScreen) {
    registerRecorders();
    start();
    struct Case {
        int section;
        const char* entry;
        const char* screen;
        bool modal;
        const char* reportChoice; // nullptr: left as it was
        const char* reminderKind;
        int equipmentMode; // -1: left as it was
    };
    const Case cases[] = {
        {2, "Add Service", "frmServAdd", true, nullptr, nullptr, -1},
        {2, "Services Allocate", "frmVoerDiens", true, nullptr, nullptr, -1},
        {2, "Fuel Purchases", "frmTank", false, nullptr, nullptr, -1},
        {2, "Fuel Allocations", "frmFuel", true, nullptr, nullptr, -1},
        {2, "Fuel Stock", "frmTankStock", true, nullptr, nullptr, -1},
        {0, "Backup", "frmBackup", false, nullptr, nullptr, -1},
        {3, "Equipment", "frmEquipment", false, "Equipment List", nullptr, 0},
        {3, "Stock Take", "frmEquipmentStockTake", false, nullptr, nullptr, -1},
        {3, "Stock Book Out", "frmEquipment", false, "Book Out Equipment", nullptr, 2},
        {3, "Stock Book In", "frmEquipmentBookedout", false, "Book In Equipment", nullptr, 1},
        {7, "Vehicle Reminders", "frmReminders", true, nullptr, "vehicle", -1},
        {7, "Employee PDP", "frmPDP", true, nullptr, "pdp", -1},
        {7, "Rebates", "frmRebate", true, nullptr, nullptr, -1},
        {5, "Vehicle List", "frmVerslae", false, "Vehicle List", nullptr, -1},
        {5, "Services", "frmVerslae", false, "Vehicle Services", nullptr, -1},
        {5, "Fuel Consumption", "frmVerslae", false, "Fuel Consumption", nullptr, -1},
        {5, "Fuel Usage", "frmVerslae", false, "Fuel Usage", nullptr, -1},
        {5, "Fuel Available", "frmVerslae", false, "Fuel Available", nullptr, -1},
        {5, "Fuel Purchase", "frmVerslae", false, "Fuel Purchase", nullptr, -1},
        {5, "Fuel Stock Take", "frmVerslae", false, "Fuel Stock Take", nullptr, -1},
        {5, "Detail per Tank", "frmVerslae", false, "Detail per Fuel Tank", nullptr, -1},
        {5, "Summary per Tank", "frmVerslae", false, "Summary per Fuel Tank", nullptr, -1},
        {5, "Litres Per Activity/Vehicle", "frmVerslae", false, "Litres Per Activity/Vehicle", nullptr, -1},
        {5, "Pump Readings", "frmVerslae", false, "Pump Readings", nullptr, -1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.entry);
        window->Label1_Click(c.section);
        settle();
        session.ReportChoice = "before";
        session.ReminderKind = "before";
        session.EquipmentMode = 99;
        const QStringList before = OpenForms();
        clickNode(c.entry);
        ASSERT_EQ(requests.size(), 1u) << "open before: " << before.join(",").toStdString();
        EXPECT_EQ(requests[0].name, c.screen);
        EXPECT_EQ(requests[0].modal, c.modal);
        EXPECT_EQ(session.ReportChoice, c.reportChoice ? QString(c.reportChoice) : QString("before"));
        EXPECT_EQ(session.ReminderKind, c.reminderKind ? QString(c.reminderKind) : QString("before"));
        EXPECT_EQ(session.EquipmentMode, c.equipmentMode >= 0 ? c.equipmentMode : 99);
    }
}

TEST_F(MainWindowTest, EntriesThatCloseTheOpenScreensFirstAndThoseThatDoNot) {
    registerRecorders();
    start();
    ASSERT_EQ(OpenForms(), QStringList({"frmVoerk"}));
    clickNode("Fuel Purchases"); // closes all children first
    EXPECT_EQ(OpenForms(), QStringList({"frmTank"}));

    window->Label1_Click(0); // Setup closes frmTank among others, opens the owner screen
    settle();
    EXPECT_EQ(session.CurrentSection, 1);
    EXPECT_EQ(OpenForms(), QStringList({"frmowner"}));
    clickNode("Backup"); // does not close the owner screen
    EXPECT_EQ(OpenForms(), QStringList({"frmowner", "frmBackup"}));
    clickNode("Owner"); // no row in the dispatch: nothing opens
    EXPECT_TRUE(requests.empty());
    EXPECT_EQ(OpenForms(), QStringList({"frmowner", "frmBackup"}));
}

TEST_F(MainWindowTest, SectionsSetTheirNumberAndScreen) {
    registerRecorders();
    start();
    struct Case {
        int label;
        int section;
        const char* screen; // nullptr: nothing opens
        const char* reportChoice;
    };
    // "&Location", in the hidden frame, does nothing even when called.
    const Case cases[] = {{3, 4, "frmEquipment", "Equipment List"},
                          {5, 6, "frmVerslae", "Vehicle List"},
                          {1, 6, nullptr, "Vehicle List"}};
    for (const Case& c : cases) {
        requests.clear();
        window->Label1_Click(c.label);
        settle();
        EXPECT_EQ(session.CurrentSection, c.section) << c.label;
        EXPECT_EQ(session.ReportChoice, c.reportChoice) << c.label;
        ASSERT_EQ(requests.size(), c.screen ? 1u : 0u) << c.label;
        if (c.screen) {
            EXPECT_EQ(requests[0].name, c.screen);
        }
    }
    EXPECT_FALSE(window->Label1[1]->isVisibleTo(window.get()));
    // A click on a label, as the user makes it.
    QTest::mouseClick(window->Label1[2], Qt::LeftButton);
    settle();
    EXPECT_EQ(session.CurrentSection, 3);
    EXPECT_EQ(OpenForms(), QStringList({"frmVoerk"}));
}

TEST_F(MainWindowTest, ExitClosesTheScreensAndEndsTheRun) {
    registerRecorders();
    start();
    window->show();
    ASSERT_EQ(OpenForms(), QStringList({"frmVoerk"}));
    window->Label1_Click(6);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(session.CurrentSection, 7);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(OpenForms().isEmpty());
    EXPECT_EQ(session.db, nullptr); // closed by the repair step
    // The store that was repaired opens again with what was stored.
    EXPECT_NO_THROW(Database::Open(home.storeFile(), false));
}
