#include "BadText.h"
#include "Database.h"
#include "QueryHelpers.h"
#include "ScriptedMessageService.h"
#include "ShellTestUtil.h"
#include "frmowner.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

class OwnerTest : public ::testing::Test {
protected:
    std::unique_ptr<frmowner> open() {
        auto form = std::make_unique<frmowner>();
        form->show();
        form->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(form.get()));
        form->txtname->setFocus();
        QCoreApplication::processEvents();
        return form;
    }
    QString scalar(const QString& sql) { return GetScalar(db(), sql, "<null>", 0, "<none>"); }

    StoreSession store;
    ScriptedMessageService messages;
};

} // namespace

TEST_F(OwnerTest, AnEmptyNameIsRefusedAndNothingIsStored) {
    auto form = open();
    QTest::keyClicks(form->txttel, "012 345 6789");
    QTest::mouseClick(form->lblSave, Qt::LeftButton);
    ASSERT_EQ(messages.texts(), QStringList({"Please complete the Name field!"}));
    EXPECT_EQ(messages.shown[0].title, "Orvel");
    EXPECT_EQ(scalar("select count(*) from owner"), "0");
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(form->saved());
}

TEST_F(OwnerTest, ANameWithAnApostropheIsStoredAsTypedAndTheScreenCloses) {
    auto form = open();
    QTest::keyClicks(form->txtname, "o'brien  transport");
    EXPECT_EQ(form->txtname->text(), "O'brien Transport");
    QTest::keyClick(form->txtname, Qt::Key_Return);
    EXPECT_TRUE(form->txtadd1->hasFocus());
    QTest::keyClicks(form->txtadd1, "12 main road");
    QTest::keyClicks(form->txtadd4, "2001");
    QTest::keyClicks(form->txtemail, "info@obrien.co.za");
    QTest::keyClicks(form->txtPerson, "piet  o'brien");
    QTest::mouseClick(form->lblSave, Qt::LeftButton);
    EXPECT_TRUE(messages.shown.isEmpty()) << messages.last().toStdString();
    EXPECT_TRUE(form->saved());
    EXPECT_FALSE(form->isVisible());
    EXPECT_EQ(scalar("select count(*) from owner"), "1");
    EXPECT_EQ(scalar("select Name & '|' & Add1 & '|' & Add4 & '|' & Email & '|' & Person from owner"),
              "O'brien Transport|12 Main Road|2001|info@obrien.co.za|Piet O'brien");
}

TEST_F(OwnerTest, TheFirstRowIsShownAndSavedInPlace) {
    db().Execute("insert into owner (Name, Tel, Add1, vat, Reg) values ('Quill Farms', '011', 'Plot 4', 'V1', 'R2')");
    db().Execute("insert into owner (Name, Tel) values ('Second Owner', '022')");
    const QString firstOid = scalar("select min(OID) from owner");
    auto form = open();
    EXPECT_EQ(QString::number(form->oid()), firstOid);
    EXPECT_EQ(QStringList({form->txtname->text(), form->txttel->text(), form->txtadd1->text(), form->txtvat->text(),
                           form->txtck->text()}),
              QStringList({"Quill Farms", "011", "Plot 4", "V1", "R2"}));
    form->txttel->selectAll();
    QTest::keyClicks(form->txttel, "011 555 1234");
    form->lblSave->setFocus();
    QTest::keyClick(form->lblSave, Qt::Key_Return); // Enter on the panel saves
    EXPECT_TRUE(form->saved());
    EXPECT_EQ(scalar("select count(*) from owner"), "2");
    EXPECT_EQ(scalar("select Tel from owner where OID = " + firstOid), "011 555 1234");
    EXPECT_EQ(scalar("select Tel from owner where Name = 'Second Owner'"), "022");
}

TEST_F(OwnerTest, ADuplicateKeyIsReportedInAfrikaansAndTheScreenStays) {
    db().Execute("insert into owner (Name) values ('Alpha')");
    db().Execute("insert into owner (Name) values ('Beta')");
    db().CreateIndex("owner", IndexDef{"OwnerName", {"Name"}, false, true});
    auto form = open();
    ASSERT_EQ(form->txtname->text(), "Alpha");
    form->txtname->selectAll();
    QTest::keyClicks(form->txtname, "Beta");
    QTest::mouseClick(form->lblSave, Qt::LeftButton);
    EXPECT_EQ(messages.texts(), QStringList({"Daar is reeds 'n eienaar gespesifiseerBeta !"}));
    EXPECT_TRUE(form->isVisible());
    EXPECT_FALSE(form->saved());
    EXPECT_EQ(scalar("select count(*) from owner where Name = 'Beta'"), "1");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr); // the pointer is back
}

// Bad text in every owner field: refused with a message and nothing written, or stored; never an error box.
TEST_F(OwnerTest, BadTextInEveryFieldIsRefusedOrStoredNeverAnError) {
    std::unique_ptr<frmowner> form;
    BadTextScreen screen;
    screen.open = [&] {
        form = open();
        form->txtname->setText("Quillmere Farms");
        return std::vector<std::pair<QString, QLineEdit*>>{
            {"Name", form->txtname},       {"Address 1", form->txtadd1}, {"Address 2", form->txtadd2},
            {"Address 3", form->txtadd3},  {"Address 4", form->txtadd4}, {"Tel", form->txttel},
            {"Fax", form->txtfax},         {"Email", form->txtemail},    {"VAT", form->txtvat},
            {"Registration", form->txtck}, {"Person", form->txtPerson}};
    };
    screen.save = [&] { QTest::mouseClick(form->lblSave, Qt::LeftButton); };
    screen.close = [&] { form.reset(); };
    TypeBadTextIntoEveryField(db(), messages, screen);
}
