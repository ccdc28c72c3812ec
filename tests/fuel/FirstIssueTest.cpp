// The first issue of a vehicle that has neither earlier issues nor a stored meter reading: the previous reading
// box is open for typing, the save goes through, the row counts from 0 and the vehicle can be picked again.

#include "FuelTestStore.h"
#include "Vb.h"
#include "frmFuel.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>

namespace {

class FirstIssueTest : public FuelStoreTest {
protected:
    void SetUp() override {
        FuelStoreTest::SetUp();
        SeedRegister();
    }
    static void pick(QComboBox* combo, const QString& text) {
        combo->setFocus();
        combo->setCurrentIndex(combo->findText(text));
    }
    static void type(QLineEdit* field, const QString& text) {
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
        QTest::keyClick(field, Qt::Key_Tab);
    }
};

TEST_F(FirstIssueTest, AVehicleWithoutAnyReadingSavesItsFirstIssue) {
    for (const QString typedPrevious : {"", "150"}) {
        SCOPED_TRACE(typedPrevious.toStdString());
        exec("delete * from VecFuel");
        frmFuel f;
        f.show();
        f.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&f));
        pick(f.Combo2, "Light");
        pick(f.Combo3, "Bare (CA 2)");
        pick(f.Combo7, "Main");
        ASSERT_FALSE(f.txtPrKm->isReadOnly());
        if (!typedPrevious.isEmpty())
            type(f.txtPrKm, typedPrevious);
        const int pump = scalar("select PumpReading from tanks").toInt();
        type(f.txtPumpCurr, QString::number(pump + 40));
        type(f.txtKm, "1400");
        f.txtDyy->setText("2024/03/01");
        QTest::mouseClick(f.lblcmd[0], Qt::LeftButton);
        ASSERT_TRUE(m_messages.shown.isEmpty()) << m_messages.last().toStdString();
        EXPECT_EQ(scalar("select count(*) from VecFuel where VoertuigID = " + QString::number(m_bare)), "1");
        EXPECT_EQ(vb::Val(scalar("select KmRead from VecFuel")), 1400.0);
        EXPECT_EQ(vb::Val(scalar("select Litres from VecFuel")), 40.0);
        EXPECT_EQ(scalar("select previouskmread from VecFuel"), "0");
        EXPECT_EQ(vb::Val(scalar("select PumpReading from tanks")), pump + 40.0);
        EXPECT_EQ(f.txtPumpPrev->text(), QString::number(pump + 40));
        pick(f.Combo3, "Bare (CA 2)");
        EXPECT_TRUE(m_messages.shown.isEmpty()) << m_messages.last().toStdString();
        EXPECT_EQ(f.txtPrKm->text(), "1400");
        EXPECT_EQ(f.txtKmTravel2->text(), "1400.00");
    }
}

} // namespace
