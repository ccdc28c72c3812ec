// Bad text in every field of the permit list and the reminder list's day fields: each refusal names what is
// wrong and leaves the store as it was; what is taken is stored as typed, within the column's length.

#include "BadText.h"
#include "FlexGrid.h"
#include "ReminderScreens.h"
#include "ReminderTestStore.h"
#include "ScreenRegistry.h"
#include "frmPDP.h"
#include "frmReminders.h"

#include <QDateEdit>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QToolButton>
#include <map>

namespace {

using Fields = std::vector<std::pair<QString, QLineEdit*>>;

class ReminderBadText : public ReminderStoreTest {};

TEST_F(ReminderBadText, Permit) {
    std::unique_ptr<frmPDP> s;
    int serial = 0;
    BadTextScreen screen;
    screen.open = [&] {
        s = std::make_unique<frmPDP>();
        s->show();
        QTest::mouseClick(s->lblcmd[0], Qt::LeftButton);
        s->txtId->setText(QString("ID %1").arg(++serial)); // a new permit each time
        s->txtSurname->setText("Botha");
        s->txtFirstname->setText("Anna");
        s->dtpPdPdate->setDate(QDate(2025, 2, 28));
        return Fields{{"Id", s->txtId}, {"Surname", s->txtSurname}, {"First name", s->txtFirstname}};
    };
    screen.save = [&] { QTest::mouseClick(s->lblcmd[5], Qt::LeftButton); };
    screen.close = [&] { s.reset(); };
    // Only the names are checked, and only for being empty: blanks, quotes and the rest are stored as typed.
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen),
                       {{{"Surname", "empty"}, "Surname must be at least 1 character"},
                        {{"First name", "empty"}, "First name must be at least 1 character"}});
    EXPECT_EQ(scalar("select count(*) from pdp where surname = 'O''Neil''s'"), "1");
    EXPECT_EQ(scalar("select count(*) from pdp where firstname = '   '"), "1");
    EXPECT_EQ(scalar("select max(len(id)) from pdp"), "25");
}

TEST_F(ReminderBadText, ReminderDays) {
    RegisterReminderScreens();
    m_session.ReminderKind = "vehicle";
    std::unique_ptr<frmReminders> s;
    BadTextScreen screen;
    screen.open = [&] {
        s = std::make_unique<frmReminders>();
        s->show();
        return Fields{{"From", s->txtFrom}, {"To", s->txtTo}};
    };
    screen.save = [&] { QTest::mouseClick(s->imgRun, Qt::LeftButton); };
    screen.close = [&] { s.reset(); };
    // The day fields take digits only and a run reads the register: no message, and nothing written.
    const QString before = StoreDump(*m_session.db);
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), {});
    EXPECT_EQ(StoreDump(*m_session.db), before);
    UnregisterAllScreens();
}

} // namespace
