// The lookup-list routines: what they store, and what they refuse with which message.

#include "LookupLists.h"
#include "BadText.h"
#include "Database.h"
#include "Dialogs.h"
#include "ScriptedMessageService.h"
#include "Session.h"
#include "ShellTestUtil.h"
#include "StoreStartup.h"
#include "TempHome.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <functional>
#include <gtest/gtest.h>
#include <optional>

namespace {

// What the person at the keyboard does with the next dialog that opens.
struct DialogSeen {
    QString prompt;
    QString startText;
    bool checkShown = false;
    bool checkValue = false;
    QStringList options;
    QString title;
};

// Acts on the next modal dialog of the given form once it is up; a dialog that never comes fails the test
// and whatever stands in its place is closed, so that nothing waits for ever.
template <typename Form> void WhenShown(std::function<void(Form*)> act, int triesLeft = 300) {
    QTimer::singleShot(10, [=] {
        if (auto* form = qobject_cast<Form*>(QApplication::activeModalWidget())) {
            act(form);
            return;
        }
        if (triesLeft > 0) {
            WhenShown<Form>(act, triesLeft - 1);
            return;
        }
        ADD_FAILURE() << "the expected dialog did not open";
        if (QWidget* other = QApplication::activeModalWidget())
            other->close();
    });
}

void TypeIntoNextInput(const QString& text, std::optional<bool> tick = std::nullopt, DialogSeen* seen = nullptr) {
    WhenShown<frmInputDialog>([=](frmInputDialog* form) {
        if (seen) {
            seen->prompt = form->lblMsg->text();
            seen->startText = form->txtMsg[0]->text();
            seen->checkShown = !form->chk->isHidden();
            seen->checkValue = form->chk->isChecked();
        }
        form->txtMsg[0]->selectAll();
        QTest::keyClick(form->txtMsg[0], Qt::Key_Delete);
        QTest::keyClicks(form->txtMsg[0], text);
        if (tick && form->chk->isChecked() != *tick)
            QTest::keyClick(form->chk, Qt::Key_Space);
        if (text.isEmpty())
            QTest::mouseClick(form->cmdCancel, Qt::LeftButton);
        else
            QTest::mouseClick(form->cmdCloseDialog, Qt::LeftButton);
    });
}

void PickInNextOptions(int index, DialogSeen* seen = nullptr) {
    WhenShown<frmOptionDialog>([=](frmOptionDialog* form) {
        if (seen) {
            seen->title = form->windowTitle();
            for (auto* option : form->Option1)
                if (!option->isHidden())
                    seen->options << option->text();
        }
        form->Option1[static_cast<size_t>(index)]->click();
    });
}

class LookupLists : public ::testing::Test {
protected:
    void SetUp() override {
        m_session.home = m_home.path();
        OpenSessionStore(m_session);
        RunSchemaSteps(*m_session.db); // activities.rebated arrives with the second start
        SetCurrentSession(&m_session);
    }
    void TearDown() override { SetCurrentSession(nullptr); }

    void exec(const QString& sql) { m_session.db->Execute(sql); }
    QString scalar(const QString& sql) {
        auto rs = m_session.db->OpenRecordset(sql, RecordsetType::Snapshot);
        return rs->Eof() ? QString("<none>") : rs->Field(0).toString();
    }
    void select(QComboBox& combo, const QString& text) {
        const int index = combo.findText(text);
        ASSERT_GE(index, 0) << text.toStdString();
        combo.setCurrentIndex(index);
    }

    TempHome m_home;
    Session m_session;
    ScriptedMessageService m_messages;
    QComboBox m_combo;
};

TEST_F(LookupLists, DepartmentsStartWithTheProtectedSystemRow) {
    LaaiDepartments(&m_combo);
    ASSERT_EQ(m_combo.count(), 1);
    EXPECT_EQ(m_combo.currentText(), "Department 1");
    const QString id = scalar("select id from departments where description = 'Department 1'");
    EXPECT_EQ(QString::number(m_combo.currentData().toInt()), id);
    EXPECT_EQ(scalar("select issys from departments"), "True");

    EditDepartment(kDeleteName, &m_combo, [&] { LaaiDepartments(&m_combo); });
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.last(), "'Department 1' Cannot be deleted. Only name change allowed.");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(scalar("select count(*) from departments"), "1");

    // Renaming it is allowed, also to its own name.
    DialogSeen seen;
    TypeIntoNextInput("Department 1", std::nullopt, &seen);
    EditDepartment(kChangeName, &m_combo, [&] { LaaiDepartments(&m_combo); });
    EXPECT_EQ(seen.prompt, "Change  Department Name 50 characters max.");
    EXPECT_EQ(seen.startText, "Department 1");
    EXPECT_EQ(m_messages.shown.size(), 1);
    TypeIntoNextInput("head office");
    EditDepartment(kChangeName, &m_combo, [&] { LaaiDepartments(&m_combo); });
    EXPECT_EQ(scalar("select description from departments"), "head office");
    EXPECT_EQ(m_combo.currentText(), "Head Office");
}

TEST_F(LookupLists, AddRefusesAnExistingNameCaseBlind) {
    LaaiDepartments(&m_combo);
    DialogSeen seen;
    TypeIntoNextInput("Workshop", std::nullopt, &seen);
    EditDepartment(kAddName, &m_combo, [&] { LaaiDepartments(&m_combo); });
    EXPECT_EQ(seen.prompt, "Add  Department Name 50 characters max.");
    EXPECT_EQ(seen.startText, "");
    EXPECT_EQ(m_combo.count(), 2);

    TypeIntoNextInput("  WORKSHOP ");
    EditDepartment(kAddName, &m_combo, [&] { LaaiDepartments(&m_combo); });
    EXPECT_EQ(m_messages.last(), "'WORKSHOP' Already Exists");
    EXPECT_EQ(scalar("select count(*) from departments"), "2");
}

TEST_F(LookupLists, NamesInUseAreNotDeleted) {
    LaaiDepartments(&m_combo);
    exec("insert into departments (description, issys) values ('Sales', False)");
    exec("insert into departments (description, issys) values ('Stores', False)");
    exec("insert into departments (description, issys) values ('Spare', False)");
    const QString sales = scalar("select id from departments where description = 'Sales'");
    const QString stores = scalar("select id from departments where description = 'Stores'");
    exec("insert into voertuig (CatID, Maak, RegNr, deptid) values (1, 'Isuzu', 'X1', " + sales + ")");
    exec("insert into VecFuel (VoertuigID, TankID, Datum, KmRead, Litres, deptid) values (1, 1, '2024/01/01', 5, 5, " +
         stores + ")");
    LaaiDepartments(&m_combo);
    auto refill = [&] { LaaiDepartments(&m_combo); };

    select(m_combo, "Sales");
    EditDepartment(kDeleteName, &m_combo, refill);
    EXPECT_EQ(m_messages.last(), "'Sales' is in use and cannot be deleted. Suggest change name");
    select(m_combo, "Stores");
    EditDepartment(kDeleteName, &m_combo, refill);
    EXPECT_EQ(m_messages.last(), "'Stores' is in use and cannot be deleted. Suggest change name");

    select(m_combo, "Spare");
    EditDepartment(kDeleteName, &m_combo, refill);
    EXPECT_EQ(m_messages.shown.size(), 2);
    EXPECT_EQ(scalar("select count(*) from departments"), "3");
    EXPECT_EQ(m_combo.findText("Spare"), -1);
}

TEST_F(LookupLists, DriversAskOnlyToAddWhenEmptyThenOfferTheOptions) {
    exec("delete from drivers");
    auto refill = [&] { LoadNameList(kDrivers, &m_combo); };
    m_messages.answer(MsgResult::No);
    AskNameList(kDrivers, &m_combo, refill);
    EXPECT_EQ(m_messages.last(), "Add new driver?");
    EXPECT_EQ(scalar("select count(*) from drivers"), "0");

    LoadNameList(kDrivers, &m_combo);
    EXPECT_EQ(m_combo.currentText(), "Driver 1");
    DialogSeen seen;
    PickInNextOptions(0, &seen);
    TypeIntoNextInput("jan smit");
    AskNameList(kDrivers, &m_combo, refill);
    EXPECT_EQ(seen.title, "Driver - Please Select an Option Below");
    EXPECT_EQ(seen.options, QStringList({"Add Driver", "Change Driver Name", "Delete Driver"}));
    EXPECT_NE(m_combo.findText("Jan Smit"), -1);

    select(m_combo, "Jan Smit");
    exec(
        "insert into VecFuel (VoertuigID, TankID, Datum, KmRead, Litres, driverid) values (1, 1, '2024/01/01', 5, 5, " +
        QString::number(m_combo.currentData().toInt()) + ")");
    ManageNameList(kDrivers, kDeleteName, &m_combo, refill);
    EXPECT_EQ(m_messages.last(), "'Jan Smit' is in use and cannot be deleted. Suggest change name");
}

TEST_F(LookupLists, AnActivitysRebateFlagIsWrittenEvenWhenTheNewNameIsRefused) {
    LoadNameList(kActivities, &m_combo);
    auto refill = [&] { LoadNameList(kActivities, &m_combo); };
    DialogSeen seen;
    TypeIntoNextInput("Farming", true, &seen);
    ManageNameList(kActivities, kAddName, &m_combo, refill);
    EXPECT_TRUE(seen.checkShown);
    EXPECT_EQ(seen.prompt, "Add  Activity Name 50 characters max.");
    EXPECT_EQ(scalar("select rebated from activities where description = 'Farming'"), "True");

    select(m_combo, "Activity 1");
    TypeIntoNextInput("farming", true, &seen);
    ManageNameList(kActivities, kChangeName, &m_combo, refill);
    EXPECT_FALSE(seen.checkValue); // seeded from the row's present flag
    EXPECT_EQ(m_messages.last(), "'farming' Already Exists");
    EXPECT_EQ(scalar("select rebated from activities where description = 'Activity 1'"), "True");
    EXPECT_EQ(scalar("select count(*) from activities where description = 'Activity 1'"), "1");
}

TEST_F(LookupLists, SuppliersAndCostCategories) {
    auto fillSuppliers = [&] {
        m_combo.clear();
        auto rs = m_session.db->OpenRecordset("select SUP_No, SUP_Desc from VecSupplier order by SUP_Desc");
        for (; !rs->Eof(); rs->MoveNext())
            m_combo.addItem(rs->Field(1).toString(), static_cast<int>(rs->Field(0).toLong()));
    };
    m_messages.answer(MsgResult::Yes);
    DialogSeen seen;
    TypeIntoNextInput("Tyre World", std::nullopt, &seen);
    AskSupplierCostCat("vecsupplier", "Supplier", &m_combo, fillSuppliers);
    EXPECT_EQ(m_messages.last(), "Add new Supplier?");
    EXPECT_EQ(seen.prompt, "Add Supplier Name 30 characters max.");
    ASSERT_EQ(m_combo.count(), 1);

    TypeIntoNextInput("tyre world");
    EditSupplierCostCat(kAddSupplierCostCat, "vecsupplier", "Supplier", &m_combo, fillSuppliers);
    EXPECT_EQ(m_messages.last(), "'tyre world' Already Exists");

    exec("insert into vdiens_unallocated (supplierid, costcatid, Cost) values (" +
         QString::number(m_combo.currentData().toInt()) + ", 1, '10')");
    EditSupplierCostCat(kDeleteSupplierCostCat, "vecsupplier", "Supplier", &m_combo, fillSuppliers);
    EXPECT_EQ(m_messages.last(), "'Tyre World' is in use and cannot be deleted. Suggest change name");
    exec("delete from vdiens_unallocated");
    EditSupplierCostCat(kDeleteSupplierCostCat, "vecsupplier", "Supplier", &m_combo, fillSuppliers);
    EXPECT_EQ(m_combo.count(), 0);

    auto fillCategories = [&] {
        m_combo.clear();
        auto rs = m_session.db->OpenRecordset("select CC_IID, CC_CostCatagory from CostCat");
        for (; !rs->Eof(); rs->MoveNext())
            m_combo.addItem(rs->Field(1).toString(), static_cast<int>(rs->Field(0).toLong()));
    };
    TypeIntoNextInput("Tyres");
    EditSupplierCostCat(kAddSupplierCostCat, "costcat", "Cost Category", &m_combo, fillCategories);
    ASSERT_EQ(m_combo.count(), 1);
    exec("insert into vdiens_allocated (vechileid, supplierid, CostCategoryID, Cost) values (1, 1, " +
         QString::number(m_combo.currentData().toInt()) + ", '10')");
    EditSupplierCostCat(kDeleteSupplierCostCat, "costcat", "Cost Category", &m_combo, fillCategories);
    EXPECT_EQ(m_messages.last(), "'Tyres' is in use and cannot be deleted. Suggest change name");
}

} // namespace

namespace {

// Bad text as a new or changed name of every list: refused with a message and nothing written, or stored as the
// column holds it; never the run-time error box, never more than 50 characters.
TEST_F(LookupLists, BadTextAsANameIsRefusedOrStoredNeverAnError) {
    struct List {
        const char* name;
        const char* table;
        std::function<void()> add;
    };
    auto refill = [] {};
    const List lists[] = {
        {"departments", "departments", [&] { EditDepartment(kAddName, &m_combo, refill); }},
        {"drivers", "drivers", [&] { ManageNameList(kDrivers, kAddName, &m_combo, refill); }},
        {"activities", "activities", [&] { ManageNameList(kActivities, kAddName, &m_combo, refill); }},
        {"suppliers", "vecsupplier",
         [&] { EditSupplierCostCat(kAddSupplierCostCat, "vecsupplier", "Supplier", &m_combo, refill); }},
        {"cost categories", "costcat",
         [&] { EditSupplierCostCat(kAddSupplierCostCat, "costcat", "Cost Category", &m_combo, refill); }},
    };
    for (const List& list : lists) {
        for (const BadText& bad : BadTexts()) {
            SCOPED_TRACE(std::string(list.name) + " <- " + bad.name);
            m_messages.clear();
            const QString before = StoreDump(*m_session.db);
            // Typed where a key makes it, pasted where none does.
            WhenShown<frmInputDialog>([text = bad.text](frmInputDialog* form) {
                form->txtMsg[0]->selectAll();
                QTest::keyClick(form->txtMsg[0], Qt::Key_Delete);
                form->txtMsg[0]->insert(text);
                QTest::mouseClick(form->cmdCloseDialog, Qt::LeftButton);
            });
            list.add();
            for (const ShownMessage& m : m_messages.shown)
                EXPECT_FALSE(m.text.startsWith("Run-time error")) << m.text.toStdString();
            if (!m_messages.shown.isEmpty()) {
                EXPECT_EQ(StoreDump(*m_session.db), before);
            }
            const QString longest = scalar(QString("select max(len(%1)) from %2")
                                               .arg(QString(list.table) == "vecsupplier" ? "SUP_Desc"
                                                    : QString(list.table) == "costcat"   ? "CC_CostCatagory"
                                                                                         : "description",
                                                    list.table));
            EXPECT_LE(longest.toInt(), 50);
        }
    }
}

} // namespace
