#include "Dialogs.h"
#include "ShellTestUtil.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

frmOptionDialog* optionForm(QWidget* w) {
    return qobject_cast<frmOptionDialog*>(w);
}
frmInputDialog* inputForm(QWidget* w) {
    return qobject_cast<frmInputDialog*>(w);
}

// A click on the round mark of the option, where a person aims.
void clickOption(QRadioButton* option) {
    QTest::mouseClick(option, Qt::LeftButton, {}, QPoint(8, option->height() / 2));
}

} // namespace

TEST(OptionDialog, ClickingAnOptionAnswersItsIndexAndLeavesItInDialogOption) {
    QStringList texts;
    bool thirdShown = true;
    OnNextModal([&](QWidget* w) {
        auto* form = optionForm(w);
        ASSERT_NE(form, nullptr);
        texts << form->Option1[0]->text() << form->Option1[1]->text();
        thirdShown = !form->Option1[2]->isHidden();
        EXPECT_FALSE(form->Option1[0]->isChecked()); // no default: nothing selected
        EXPECT_FALSE(form->Option1[1]->isChecked());
        clickOption(form->Option1[1]);
    });
    EXPECT_EQ(ShowOptions("Driver - Please Select an Option Below", "Add Driver", "Change Driver Name"), 1);
    EXPECT_EQ(DialogOption, 1);
    EXPECT_EQ(texts, QStringList({"Add Driver", "Change Driver Name"}));
    EXPECT_FALSE(thirdShown);
}

TEST(OptionDialog, CancelTheCloseBoxAndEscapeAllAnswerMinusOne) {
    const std::function<void(QWidget*)> ways[] = {
        [](QWidget* w) { QTest::mouseClick(optionForm(w)->cmdCancel, Qt::LeftButton); }, [](QWidget* w) { w->close(); },
        [](QWidget* w) { QTest::keyClick(w, Qt::Key_Escape); }};
    for (const auto& way : ways) {
        DialogOption = 7;
        OnNextModal(way);
        EXPECT_EQ(ShowOptions("t", "a", "b", "c"), -1);
        EXPECT_EQ(DialogOption, -1);
    }
}

TEST(OptionDialog, TextsAreCutAt70AndTheDefaultIsBroughtIntoRange) {
    const QString longText = QString(70, 'x') + "TAIL";
    QString shown;
    int checked = -1;
    OnNextModal([&](QWidget* w) {
        auto* form = optionForm(w);
        shown = form->Option1[2]->text();
        for (int i = 0; i < 3; ++i)
            if (form->Option1[i]->isChecked())
                checked = i;
        clickOption(form->Option1[2]);
    });
    clsOptionDialog dialog;
    dialog.ShowDialog(nullptr, "a", "b", longText, 9, -5, true, 2500, 1500, "T", QString());
    EXPECT_EQ(shown, QString(70, 'x'));
    EXPECT_EQ(checked, 2); // a default above 2 becomes 2
    EXPECT_EQ(dialog.DialogReponse(), 2);
}

TEST(InputDialog, TypedTextComesBackWhileBlanksAndCancelMeanNothing) {
    struct Case {
        const char* name;
        const char* typed;
        int how; // 0: OK, 1: Cancel, 2: the close box, which sends what stands in the field
        const char* answer;
    };
    const Case cases[] = {{"typed", "Jan Smit", 0, "Jan Smit"},
                          {"blanks", "   ", 0, ""},
                          {"cancel", "Diesel", 1, ""},
                          {"close box", "Petrol", 2, "Petrol"}};
    for (const Case& c : cases) {
        QString prompt;
        OnNextModal([&](QWidget* w) {
            auto* form = inputForm(w);
            prompt = form->lblMsg->text();
            QTest::keyClicks(form->txtMsg[0], c.typed);
            if (c.how == 2)
                w->close();
            else
                QTest::mouseClick(c.how == 0 ? form->cmdCloseDialog : form->cmdCancel, Qt::LeftButton);
        });
        EXPECT_EQ(ShowInput("Add  Driver Name 50 characters max."), c.answer) << c.name;
        EXPECT_EQ(DialogText, c.answer) << c.name;
        EXPECT_EQ(prompt, "Add  Driver Name 50 characters max.") << c.name;
    }
}

TEST(InputDialog, StartTextLimitCheckBoxAndCommaCut) {
    OnNextModal([](QWidget* w) {
        auto* form = inputForm(w);
        EXPECT_EQ(form->txtMsg[0]->text(), "Old Name");
        EXPECT_FALSE(form->chk->isHidden());
        EXPECT_EQ(form->chk->text(), "Rebate Applicable");
        EXPECT_FALSE(form->chk->isChecked());
        form->txtMsg[0]->selectAll();
        QTest::keyClicks(form->txtMsg[0], QString(60, 'a'));
        QTest::keyClick(form->chk, Qt::Key_Space);
        QTest::mouseClick(form->cmdCloseDialog, Qt::LeftButton);
    });
    EXPECT_EQ(ShowInput("Change  Activity Name 50 characters max.", "Old Name", 50, "Rebate Applicable", false),
              QString(50, 'a') + "|1");

    OnNextModal([](QWidget* w) {
        QTest::keyClicks(inputForm(w)->txtMsg[0], "one,two,three");
        QTest::mouseClick(inputForm(w)->cmdCloseDialog, Qt::LeftButton);
    });
    EXPECT_EQ(ShowInput("p", "", 0, "", false, true), "one,two");
    EXPECT_EQ(DialogText, "one,two");
}
