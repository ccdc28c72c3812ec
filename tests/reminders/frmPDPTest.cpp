// The permit list: the checks in their order, texts stored as typed, the grid and buttons through add, edit
// and delete.
#include "frmPDP.h"
#include "FlexGrid.h"
#include "ReminderTestStore.h"

#include <QDateEdit>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

class PdpTest : public ReminderStoreTest {
protected:
    static void click(QPushButton* b) { QTest::mouseClick(b, Qt::LeftButton); }
    static void pickRow(frmPDP& s, int row) {
        const QRect r = s.flx1->visualItemRect(s.flx1->item(row, 1));
        QTest::mouseClick(s.flx1->viewport(), Qt::LeftButton, {}, r.center());
    }
    static void type(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }
    QString stored(const QString& id) {
        return scalar("select surname & '|' & firstname & '|' & pdpdate from pdp where id = '" + id + "'");
    }
};

TEST_F(PdpTest, ChecksInOrderAndTextsAsTyped) {
    frmPDP s;
    s.show();
    s.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&s));
    click(s.lblcmd[0]);
    EXPECT_TRUE(s.FraPDP->isVisible());
    EXPECT_FALSE(s.flx1->isEnabled());
    EXPECT_EQ(s.dtpPdPdate->date(), QDate::currentDate());
    // Both names empty: the surname is named first; then the first name.
    click(s.lblcmd[5]);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Surname must be at least 1 character");
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::Exclamation);
    EXPECT_EQ(QApplication::focusWidget(), s.txtSurname);
    type(s.txtSurname, "  o'Brien ");
    click(s.lblcmd[5]);
    EXPECT_EQ(m_messages.last(), "First name must be at least 1 character");
    EXPECT_EQ(QApplication::focusWidget(), s.txtFirstname);
    EXPECT_EQ(scalar("select count(*) from pdp"), "0");
    type(s.txtFirstname, "jan-hendrik");
    type(s.txtId, "ID 12345678901234567890123456789"); // 25 characters at most
    s.dtpPdPdate->setDate(QDate(2025, 2, 28));
    click(s.lblcmd[5]);
    EXPECT_EQ(stored("ID 1234567890123456789012"), "  o'Brien |jan-hendrik|2025/02/28");
    EXPECT_FALSE(s.FraPDP->isVisible());
    // Save gives back the grid and the buttons, except "&Close".
    EXPECT_TRUE(s.flx1->isEnabled() && s.lblcmd[0]->isEnabled() && s.lblcmd[2]->isEnabled());
    EXPECT_FALSE(s.lblcmd[3]->isEnabled());
    EXPECT_EQ(s.flx1->TextMatrix(1, 2), "  o'Brien ");
    // After adding, the grid stands on the next row.
    EXPECT_EQ(s.CurrentRow(), 1);
    EXPECT_EQ(s.flx1->Row(), 1);
}

TEST_F(PdpTest, EditKeepsTheGridAndUpdatesTheRow) {
    addPermit("A1", "Botha", "Anna", "2025/01/31");
    addPermit("A1", "Smit", "Koos", "2025/03/01"); // the same identification stands twice
    frmPDP s;
    s.show();
    pickRow(s, 2);
    click(s.lblcmd[1]);
    EXPECT_TRUE(s.FraPDP->isVisible());
    EXPECT_TRUE(s.flx1->isEnabled());
    EXPECT_EQ(s.txtSurname->text(), "Smit");
    EXPECT_EQ(s.dtpPdPdate->date(), QDate(2025, 3, 1));
    type(s.txtSurname, "Smith");
    click(s.lblcmd[5]);
    EXPECT_EQ(scalar("select surname from pdp where firstname = 'Koos'"), "Smith");
    EXPECT_EQ(scalar("select count(*) from pdp where id = 'A1'"), "2");
    EXPECT_EQ(s.flx1->Row(), 2);
    // Cancel hides the frame and changes nothing.
    pickRow(s, 1);
    click(s.lblcmd[1]);
    type(s.txtSurname, "Changed");
    click(s.lblcmd[4]);
    EXPECT_FALSE(s.FraPDP->isVisible());
    EXPECT_EQ(scalar("select surname from pdp where firstname = 'Anna'"), "Botha");
}

TEST_F(PdpTest, DeleteAsksWithNoAsDefault) {
    addPermit("A1", "Botha", "Anna", "2025/01/31");
    addPermit("B2", "Smit", "Koos", "2025/03/01");
    frmPDP s;
    s.show();
    click(s.lblcmd[2]); // nothing picked: nothing happens
    EXPECT_TRUE(m_messages.shown.isEmpty());
    pickRow(s, 2);
    m_messages.answer(MsgResult::No);
    click(s.lblcmd[2]);
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.shown[0].text, "Delete 'B2 Smit Koos?");
    EXPECT_EQ(m_messages.shown[0].buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_EQ(scalar("select count(*) from pdp"), "2");
    click(s.lblcmd[2]);
    EXPECT_EQ(scalar("select count(*) from pdp"), "1");
    EXPECT_EQ(s.flx1->TextMatrix(1, 1), "A1");
    EXPECT_TRUE(s.flx1->isEnabled());
    EXPECT_TRUE(s.lblcmd[3]->isEnabled());
}

} // namespace
