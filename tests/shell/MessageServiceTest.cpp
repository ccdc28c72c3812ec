#include "Hourglass.h"
#include "QtMessageService.h"
#include "ShellTestUtil.h"

#include <QAbstractButton>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace {

struct BoxSeen {
    QString title;
    QString text;
    QMessageBox::Icon icon = QMessageBox::NoIcon;
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton defaultButton = QMessageBox::NoButton;
    Qt::CursorShape cursor = Qt::ArrowCursor;
};

// Reads the box that is up and presses one of its buttons (or Enter, which presses the default).
void answerNextBox(BoxSeen& seen, QMessageBox::StandardButton press) {
    OnNextModal([&seen, press](QWidget* w) {
        auto* box = qobject_cast<QMessageBox*>(w);
        ASSERT_NE(box, nullptr);
        seen.title = box->windowTitle();
        seen.text = box->text();
        seen.icon = box->icon();
        seen.buttons = box->standardButtons();
        seen.defaultButton = box->standardButton(box->defaultButton());
        if (QApplication::overrideCursor())
            seen.cursor = QApplication::overrideCursor()->shape();
        if (press == QMessageBox::NoButton)
            QTest::keyClick(box, Qt::Key_Return);
        else
            box->button(press)->click();
    });
}

} // namespace

TEST(QtMessageService, UntitledBoxesAreTitledOrvelAndQuestionsDefaultToNoWhenAsked) {
    QtMessageService service;
    BoxSeen seen;
    answerNextBox(seen, QMessageBox::NoButton);
    EXPECT_EQ(service.show("Sure?", MsgButtons::YesNoDefaultNo, MsgIcon::Question), MsgResult::No);
    EXPECT_EQ(seen.title, "Orvel");
    EXPECT_EQ(seen.text, "Sure?");
    EXPECT_EQ(seen.icon, QMessageBox::Question);
    EXPECT_EQ(seen.buttons, QMessageBox::Yes | QMessageBox::No);
    EXPECT_EQ(seen.defaultButton, QMessageBox::No);

    answerNextBox(seen, QMessageBox::Yes);
    EXPECT_EQ(service.show("Delete?", MsgButtons::YesNo, MsgIcon::Exclamation, "Closed date"), MsgResult::Yes);
    EXPECT_EQ(seen.title, "Closed date");
    EXPECT_EQ(seen.icon, QMessageBox::Warning);
    EXPECT_EQ(seen.defaultButton, QMessageBox::Yes);

    answerNextBox(seen, QMessageBox::NoButton);
    EXPECT_EQ(service.show("The Orvel Module is already open!", MsgButtons::Ok, MsgIcon::Critical), MsgResult::Ok);
    EXPECT_EQ(seen.icon, QMessageBox::Critical);
    EXPECT_EQ(seen.buttons, QMessageBox::Ok);
}

TEST(QtMessageService, ABoxShownUnderTheHourglassIsReadWithTheArrow) {
    QtMessageService service;
    MessageService::setInstance(&service);
    BoxSeen seen;
    {
        Hourglass hourglass;
        ASSERT_NE(QApplication::overrideCursor(), nullptr);
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
        answerNextBox(seen, QMessageBox::Ok);
        ShowRunTimeError(3078, "The Microsoft Jet database engine cannot find the input table 'owner'.");
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor); // back to the hourglass after
        hourglass.restore();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    }
    EXPECT_EQ(QApplication::overrideCursor(), nullptr); // restored once only
    MessageService::setInstance(nullptr);
    EXPECT_EQ(seen.cursor, Qt::ArrowCursor);
    EXPECT_EQ(seen.title, "Orvel");
    EXPECT_EQ(seen.text, "Run-time error '3078':\n\nThe Microsoft Jet database engine cannot find the input table "
                         "'owner'.");
    EXPECT_EQ(seen.icon, QMessageBox::Critical);
}
