// The cost breakdown: lines by type, labour by rate, the refusals of a line, and the service's cost following
// the total before and after the screen.
#include "ServiceTestStore.h"
#include "Vb.h"
#include "frmVoerDiens.h"
#include "frmVoerDiens_Extra.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QLabel>

namespace {

class CostDetailsTest : public ServiceStoreTest {
protected:
    void SetUp() override {
        ServiceStoreTest::SetUp();
        SeedSuppliersAndCategories();
        m_open = addOpenService(m_toyota, "2024/11/05", "480", "125400", "00018");
        m_session.ServiceMode = -1;
        m_session.ServiceLinkID = m_open;
    }
    void chooseType(frmVoerDiens_Extra& e, const QString& type) { pick(e.cboCostType, type); }
    void addLine(frmVoerDiens_Extra& e, const QString& kind, const QString& ref1, const QString& value1,
                 const QString& ref2 = QString()) {
        chooseType(e, kind);
        click(e.cmd[0]);
        if (!ref1.isEmpty())
            type(e.txtReference1, ref1);
        if (!ref2.isEmpty())
            type(e.txtReference2, ref2);
        type(e.txtValue1, value1);
        click(e.lblcmd[3]);
    }
    int m_open = 0;
};

} // namespace

TEST_F(CostDetailsTest, LabourByRateAndAPartTotalTheService) {
    auto e = open<frmVoerDiens_Extra>();
    chooseType(*e, "Labour");
    click(e->cmd[0]);
    EXPECT_EQ(e->lblValue1->text(), "Hours");
    EXPECT_FALSE(e->txtReference1->isVisible());
    EXPECT_FALSE(e->cboCostType->isEnabled());
    type(e->txtValue1, "2");
    QTest::mouseClick(e->chkTotalCost, Qt::LeftButton, {}, QPoint(6, e->chkTotalCost->height() / 2));
    EXPECT_EQ(e->chkTotalCost->text(), "Rand/Hr.");
    EXPECT_TRUE(e->txtperlitre->isVisible());
    type(e->txtperlitre, "100");
    EXPECT_EQ(e->txtValue2->text(), "  200.00");
    click(e->lblcmd[3]);
    EXPECT_EQ(scalar("select value1 & '|' & value2 from vdiens_extra where costtype = 'Labour'"), "2|200");
    EXPECT_EQ(scalar("select historyid & '|' & vdiensid from vdiens_extra"), "|" + QString::number(m_open));

    addLine(*e, "Parts", "oil filter", "50");
    EXPECT_EQ(e->lbl[1]->text(), "  250.00");
    EXPECT_EQ(column(e->flexCosts, 0), QStringList({"Labour", "Parts"}));
    EXPECT_EQ(column(e->flexCosts, 1), QStringList({"  200.00", "50.00"}));
    EXPECT_EQ(column(e->flx2, 2), QStringList({"Oil Filter"}));

    // A second labour line is refused; the one line is edited.
    chooseType(*e, "Labour");
    click(e->cmd[0]);
    EXPECT_EQ(m_messages.last(), "Only 1 Entry allowed for Labour Cost");
    EXPECT_EQ(m_messages.shown.last().icon, MsgIcon::Information);
    EXPECT_FALSE(e->fraForm->isVisible());
    pickRow(e->flx2, 1);
    click(e->cmd[1]);
    EXPECT_EQ(e->txtValue1->text(), "2.00");
    EXPECT_EQ(e->txtValue2->text(), "200.00");
    type(e->txtValue2, "300");
    click(e->lblcmd[3]);
    EXPECT_EQ(scalar("select count(*) from vdiens_extra where costtype = 'Labour'"), "1");
    EXPECT_EQ(e->lbl[1]->text(), "  350.00");
}

TEST_F(CostDetailsTest, RefusalsOfALine) {
    auto e = open<frmVoerDiens_Extra>();
    addLine(*e, "Out Work", "acme", "50");
    EXPECT_EQ(m_messages.last(), "Invalid Empty");
    EXPECT_TRUE(e->txtReference2->hasFocus());
    click(e->lblcmd[1]);

    addLine(*e, "Parts", "filter", "fifty");
    EXPECT_EQ(m_messages.last(), "Invalid Value");
    click(e->lblcmd[1]);
    addLine(*e, "Consumables", "", "5");
    EXPECT_EQ(m_messages.last(), "Invalid Empty");
    click(e->lblcmd[1]);

    chooseType(*e, "Labour");
    click(e->cmd[0]);
    type(e->txtValue1, "3");
    type(e->txtValue2, "lots");
    click(e->lblcmd[3]);
    EXPECT_EQ(m_messages.last(), "Invalid value");
    EXPECT_EQ(scalar("select count(*) from vdiens_extra"), "0");
}

TEST_F(CostDetailsTest, TheServiceCostFollowsTheBreakdownAndDeletingTheLastLineGivesZero) {
    auto s = open<frmVoerDiens>();
    pick(s->Combo2, "Light Vehicles");
    pick(s->Combo3, "Toyota (CA 123-456)");
    pickRow(s->flx2, 1);
    click(s->lblcmd[8]);

    whenShown<frmVoerDiens_Extra>([this](frmVoerDiens_Extra* e) {
        addLine(*e, "Consumables", "grease", "30.5");
        addLine(*e, "Out Work", "acme", "19.5", "machining");
        click(e->cmd[3]);
    });
    click(s->lblcmd[6]);
    EXPECT_EQ(s->txtKos->text(), "50.00");
    EXPECT_FALSE(s->txtKos->isEnabled());
    EXPECT_EQ(vb::Val(scalar("select cost from vdiens_unallocated")), 50);
    EXPECT_EQ(s->flx2->TextMatrix(1, 7), "50.00");
    EXPECT_EQ(column(s->flexCosts, 0), QStringList({"Consumables", "Out Work"}));

    whenShown<frmVoerDiens_Extra>([this](frmVoerDiens_Extra* e) {
        for (const char* kind : {"Consumables", "Out Work"}) {
            chooseType(*e, kind);
            pickRow(e->flx2, 1);
            m_messages.answer(MsgResult::Yes);
            click(e->cmd[2]);
            EXPECT_EQ(m_messages.shown.last().buttons, MsgButtons::YesNoDefaultNo);
        }
        EXPECT_EQ(e->lbl[1]->text(), "  0.00");
        e->reject();
    });
    click(s->lblcmd[6]);
    EXPECT_EQ(m_messages.texts().count("Delete Entry?"), 2);
    EXPECT_EQ(s->txtKos->text(), "0.00");
    EXPECT_TRUE(s->txtKos->isEnabled());
    EXPECT_EQ(scalar("select count(*) from vdiens_extra"), "0");
}
