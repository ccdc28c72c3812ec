// The rebate settings and their screen.

#include "Rebate.h"
#include "BadText.h"
#include "FuelTestStore.h"
#include "frmRebate.h"

#include <QPushButton>

namespace {

class Rebate : public FuelStoreTest {
protected:
    QStringList rows() {
        QStringList out;
        auto rs = m_session.db->OpenRecordset("select rebaterate, rebatesars from rebate", RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            out << rs->Field(0).toString() + "/" + rs->Field(1).toString();
        return out;
    }
};

TEST_F(Rebate, TheSeedRatesADecimalSettingRoundedAndAMissingTableReadingZero) {
    EXPECT_EQ(RebateSetting(0), 349);
    EXPECT_EQ(RebateSetting(1), 80);
    EXPECT_EQ(GetRebateRate(), "349");
    m_session.db->Execute("update rebate set rebaterate = 349.6, rebatesars = 79.5");
    EXPECT_EQ(RebateSetting(0), 350);
    EXPECT_EQ(RebateSetting(1), 80); // half to even
    frmRebate form;
    EXPECT_EQ(form.txtRebateRate->text(), "350");

    m_session.db->Execute("drop table rebate");
    EXPECT_EQ(RebateSetting(0), 0);
    EXPECT_EQ(RebateSetting(1), 0);
    EXPECT_EQ(GetRebateRate(), "0");
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

TEST_F(Rebate, TheScreenSavesWhatIsTypedAndFallsBackToTheDefaultsSilently) {
    frmRebate form;
    EXPECT_EQ(form.windowTitle(), "SARS Global Vehicle Rebate");
    EXPECT_EQ(form.txtrebatesars->text(), "80");
    typeInto(form.txtRebateRate, "375");
    typeInto(form.txtrebatesars, "");
    QTest::mouseClick(form.lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_EQ(rows(), QStringList({"375/80"}));

    frmRebate again;
    EXPECT_EQ(again.txtRebateRate->text(), "375");
    typeInto(again.txtRebateRate, "abc");
    typeInto(again.txtrebatesars, "90");
    QTest::mouseClick(again.lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(rows(), QStringList({"349/90"}));
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

TEST_F(Rebate, CancelWritesNothingAndSaveChangesEveryRow) {
    frmRebate form;
    typeInto(form.txtRebateRate, "400");
    QTest::mouseClick(form.lblcmd[1], Qt::LeftButton);
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_EQ(rows(), QStringList({"349/80"}));

    m_session.db->Execute("insert into rebate (rebaterate,rebatesars) values (1,2)");
    frmRebate twice;
    typeInto(twice.txtRebateRate, "410");
    QTest::mouseClick(twice.lblcmd[0], Qt::LeftButton);
    EXPECT_EQ(rows(), QStringList({"410/80", "410/80"}));
}

} // namespace

namespace {

// Bad text in both rates: the screen falls back silently or stores a number; never an error box, never a text.
TEST_F(Rebate, BadTextInEveryFieldIsRefusedOrStoredNeverAnError) {
    std::unique_ptr<frmRebate> form;
    BadTextScreen screen;
    screen.open = [&] {
        form = std::make_unique<frmRebate>();
        form->show();
        return std::vector<std::pair<QString, QLineEdit*>>{{"Rate", form->txtRebateRate},
                                                           {"SARS percentage", form->txtrebatesars}};
    };
    screen.save = [&] { QTest::mouseClick(form->lblcmd[0], Qt::LeftButton); };
    screen.close = [&] { form.reset(); };
    TypeBadTextIntoEveryField(*m_session.db, m_messages, screen);
    sqlite3_stmt* texts = nullptr;
    ASSERT_EQ(sqlite3_prepare_v2(m_session.db->handle(),
                                 "SELECT count(*) FROM rebate WHERE typeof(rebaterate) = 'text' OR "
                                 "typeof(rebatesars) = 'text'",
                                 -1, &texts, nullptr),
              SQLITE_OK);
    ASSERT_EQ(sqlite3_step(texts), SQLITE_ROW);
    EXPECT_EQ(sqlite3_column_int(texts, 0), 0);
    sqlite3_finalize(texts);
}

} // namespace
