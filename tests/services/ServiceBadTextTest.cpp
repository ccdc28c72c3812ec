// Bad text in every field of a service: the capture, the allocation into history, an edit of history, and the
// lines of the cost breakdown. Each refusal names what is wrong and leaves the store as it was.

#include "BadText.h"
#include "ServiceTestStore.h"
#include "frmServAdd.h"
#include "frmVoerDiens.h"
#include "frmVoerDiens_Extra.h"

#include <QGroupBox>
#include <QPlainTextEdit>
#include <map>

namespace {

using Fields = std::vector<std::pair<QString, QLineEdit*>>;
using Expected = BadTextExpected;

class ServiceBadText : public ServiceStoreTest {
protected:
    void SetUp() override {
        ServiceStoreTest::SetUp();
        SeedSuppliersAndCategories();
    }
    // The one open service of the Toyota that the allocation picks, put back when the last one was allocated.
    void keepOneOpen() {
        if (scalar("select count(*) from vdiens_unallocated") == "0")
            addOpenService(m_toyota, "2024/11/05", "250", "125400", "00018");
    }
};

TEST_F(ServiceBadText, Capture) {
    std::unique_ptr<frmServAdd> s;
    BadTextScreen screen;
    screen.open = [&] {
        s = open<frmServAdd>();
        click(s->lblcmd[0]);
        pick(s->Combo2, "Light Vehicles");
        pick(s->Combo3, "Toyota (CA 123-456)");
        pick(s->Combo4, "Bosch Service");
        pick(s->Combo1, "Repairs");
        type(s->txtDyy, "2024/11/05");
        type(s->txtKos, "450");
        type(s->txtKm, "125400");
        return Fields{{"Reference", s->txtReference}, {"Date", s->txtDyy}, {"Cost", s->txtKos}, {"Km", s->txtKm}};
    };
    screen.save = [&] { click(s->lblcmd[5]); };
    screen.close = [&] { s.reset(); };
    // The date field empties what is no date; the cost field takes digits only.
    const QString fill = "Fill all the fields";
    Expected expected;
    for (const char* bad : {"empty", "blanks only", "a quote", "a bracket", "300 characters", "text in a number field",
                            "31 February", "a control character", "outside Latin-1"})
        expected[{"Date", bad}] = fill;
    for (const char* bad : {"empty", "blanks only", "a quote", "a bracket", "300 characters", "text in a number field"})
        expected[{"Cost", bad}] = fill;
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
    EXPECT_EQ(scalar("select max(len(reference)) from vdiens_unallocated"), "50"); // the field's length
}

TEST_F(ServiceBadText, AllocationAndHistoryEdit) {
    std::unique_ptr<frmVoerDiens> s;
    BadTextScreen allocate;
    allocate.openFields = [&] {
        keepOneOpen();
        s = open<frmVoerDiens>();
        pick(s->Combo2, "Light Vehicles");
        pick(s->Combo3, "Toyota (CA 123-456)");
        pickRow(s->flx2, 1);
        click(s->lblcmd[8]);
        QTest::keyClicks(s->txtNota, "Full service");
        return std::vector<std::pair<QString, QWidget*>>{{"Km", s->txtKm}, {"Note", s->txtNota}};
    };
    allocate.save = [&] { click(s->lblcmd[3]); };
    allocate.close = [&] { s.reset(); };
    Expected expected = {{{"Note", "empty"}, "You need to fill in all the fields!"}};
    for (const char* bad : {"empty", "blanks only", "a quote", "a bracket", "300 characters", "text in a number field"})
        expected[{"Km", bad}] = "Fill in the kilometers";
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, allocate), expected);
    EXPECT_EQ(scalar("select max(len(note)) from vdiens_allocated"), "100"); // the note's column, not more

    addHistory(m_ford, "2024/08/01", "75.00", "9000", "Tyres");
    BadTextScreen edit;
    edit.openFields = [&] {
        s = open<frmVoerDiens>();
        pick(s->Combo2, "Light Vehicles");
        pick(s->Combo3, "Ford (CA 777)");
        click(s->lblcmd[2]);
        pickRow(s->Grid1, 1);
        click(s->lblcmd[5]);
        return std::vector<std::pair<QString, QWidget*>>{
            {"Date", s->txtDyy}, {"Cost", s->txtKos}, {"Km", s->txtKm}, {"Note", s->txtNota}};
    };
    edit.save = [&] { click(s->lblcmd[3]); };
    edit.close = [&] { s.reset(); };
    // A history date that cannot be read is refused before the closing-date comparison and before anything is written.
    expected = {{{"Note", "empty"}, "You need to fill in all the fields!"}};
    for (const BadText& bad : BadTexts())
        if (bad.name != QString("year 9999"))
            expected[{"Date", bad.name}] = "The date entered is not a valid date. Please change the date.";
    for (const char* bad : {"empty", "blanks only", "a quote", "a bracket", "300 characters", "text in a number field"})
        expected[{"Km", bad}] = "Fill in the kilometers";
    HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, edit), expected);
    EXPECT_EQ(scalar("select [date] from vdiens_allocated where vechileid = " + QString::number(m_ford)), "9999/12/31");
}

TEST_F(ServiceBadText, CostLines) {
    const int service = addOpenService(m_toyota, "2024/11/05", "480", "125400", "00018");
    m_session.ServiceMode = -1;
    m_session.ServiceLinkID = service;
    struct Kind {
        const char* type;
        std::vector<const char*> fields; // which of reference 1, reference 2, value 1 and value 2 it asks for
    };
    for (const Kind& kind :
         {Kind{"Out Work", {"Reference 1", "Reference 2", "Value 1"}}, Kind{"Labour", {"Value 1", "Value 2"}}}) {
        SCOPED_TRACE(kind.type);
        std::unique_ptr<frmVoerDiens_Extra> e;
        BadTextScreen screen;
        screen.open = [&] {
            exec("delete from vdiens_extra where costtype = 'Labour'"); // one labour line only
            e = open<frmVoerDiens_Extra>();
            pick(e->cboCostType, kind.type);
            click(e->cmd[0]);
            const std::map<QString, QLineEdit*> all = {{"Reference 1", e->txtReference1},
                                                       {"Reference 2", e->txtReference2},
                                                       {"Value 1", e->txtValue1},
                                                       {"Value 2", e->txtValue2}};
            Fields fields;
            for (const char* name : kind.fields) {
                QLineEdit* field = all.at(name);
                type(field, QString(name).startsWith("Value") ? "12" : "acme");
                fields.emplace_back(name, field);
            }
            return fields;
        };
        screen.save = [&] { click(e->lblcmd[3]); };
        screen.close = [&] { e.reset(); };
        // A reference must hold more than blanks; a value must be a figure, whatever figure a date's digits make.
        Expected expected;
        for (const BadText& bad : BadTexts()) {
            expected[{"Value 1", bad.name}] = "Invalid Value";
            expected[{"Value 2", bad.name}] = "Invalid value";
        }
        for (const char* field : {"Reference 1", "Reference 2"})
            for (const char* bad : {"empty", "blanks only"})
                expected[{field, bad}] = "Invalid Empty";
        HoldBadTextAgainst(TypeBadTextIntoEveryField(*m_session.db, m_messages, screen), expected);
    }
}

} // namespace
