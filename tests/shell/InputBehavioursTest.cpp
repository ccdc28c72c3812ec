#include "InputBehaviours.h"
#include "DateEntry.h"
#include "ShellTestUtil.h"

#include <QCalendarWidget>
#include <QLabel>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QVBoxLayout>
#include <gtest/gtest.h>

namespace {

// A small form with fields in a column, shown and active so that focus moves as on screen.
struct Form {
    explicit Form(int fields) {
        auto* layout = new QVBoxLayout(&window);
        for (int i = 0; i < fields; ++i) {
            labels.push_back(new QLabel(QStringLiteral("Field %1").arg(i), &window));
            edits.push_back(new QLineEdit(&window));
            layout->addWidget(labels.back());
            layout->addWidget(edits.back());
        }
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        edits.front()->setFocus();
        QCoreApplication::processEvents();
    }
    QWidget window;
    std::vector<QLabel*> labels;
    std::vector<QLineEdit*> edits;
};

} // namespace

// The key routines: whether the key is a good one, and the key they leave (0: cancelled).
TEST(KeyFilters, RoutinesReportGoodKeysAndCancelAsTheyShould) {
    using Filter = bool (*)(const QLineEdit*, int&, bool);
    const struct {
        const char* name;
        Filter filter;
        const char* text;
        int key;
        bool allowDecimal;
        bool good;
        int keyAfter;
    } cases[] = {
        {"numeric: second full stop is good but cancelled", FilterNumericKey, "1.5", '.', true, true, 0},
        {"numeric: a letter is left for the caller", FilterNumericKey, "1.5", 'a', true, false, 'a'},
        {"numeric: first full stop", FilterNumericKey, "15", '.', true, true, '.'},
        {"numeric: full stop where none is allowed", FilterNumericKey, "15", '.', false, true, 0},
        {"numeric: backspace", FilterNumericKey, "15", 8, false, true, 8},
        {"digits: a letter is cancelled by the routine", FilterDigitsKey, "", 'x', true, false, 0},
        {"digits: first full stop", FilterDigitsKey, "", '.', true, true, '.'},
        {"digits: second full stop", FilterDigitsKey, "2.", '.', true, false, 0},
        {"digits: full stop where none is allowed", FilterDigitsKey, "", '.', false, false, 0},
        {"digits: a digit", FilterDigitsKey, "", '9', false, true, '9'},
    };
    for (const auto& c : cases) {
        QLineEdit field;
        field.setText(c.text);
        int key = c.key;
        EXPECT_EQ(c.filter(&field, key, c.allowDecimal), c.good) << c.name;
        EXPECT_EQ(key, c.keyAfter) << c.name;
    }
}

TEST(InputBehaviour, FocusTurnsTheCaptionRedAndLeavingTurnsItBlack) {
    Form form(2);
    AttachFocusColour(form.edits[0], form.labels[0]);
    AttachFocusColour(form.edits[1], form.labels[1]);
    form.edits[1]->setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(form.labels[1]->palette().color(QPalette::WindowText), QColor(255, 0, 0));
    form.edits[0]->setFocus();
    QCoreApplication::processEvents();
    EXPECT_EQ(form.labels[1]->palette().color(QPalette::WindowText), QColor(0, 0, 0));
    EXPECT_EQ(form.labels[0]->palette().color(QPalette::WindowText), QColor(255, 0, 0));
}

TEST(DateEntry, ALetterEmptiesTheFieldAndDigitsStay) {
    Form form(3);
    DateEntry entry(form.edits[0], form.edits[1], form.edits[2]);
    QTest::keyClicks(form.edits[0], "1");
    EXPECT_EQ(form.edits[0]->text(), "1");
    QTest::keyClicks(form.edits[0], "a");
    EXPECT_EQ(form.edits[0]->text(), "");
    EXPECT_TRUE(form.edits[0]->hasFocus());
    QTest::keyClicks(form.edits[0], "31");
    QTest::keyClick(form.edits[0], Qt::Key_Return);
    EXPECT_TRUE(form.edits[1]->hasFocus());
    QTest::keyClicks(form.edits[1], "12");
    QTest::keyClick(form.edits[1], Qt::Key_Return);
    QTest::keyClicks(form.edits[2], "2024");
    EXPECT_EQ(entry.date(), QDate(2024, 12, 31));
    EXPECT_EQ(entry.storageText(), "2024/12/31");
    form.edits[0]->setText("32");
    EXPECT_FALSE(entry.date().isValid());
    EXPECT_EQ(entry.storageText(), "");
}

TEST(DateEntry, MinusOpensTheCalendarWhoseDateFillsTheThreeFields) {
    Form form(3);
    DateEntry entry(form.edits[0], form.edits[1], form.edits[2]);
    QDate shownOnOpen;
    OnNextModal([&](QWidget* w) {
        auto* calendar = qobject_cast<frmCalen*>(w);
        ASSERT_NE(calendar, nullptr);
        shownOnOpen = calendar->MonthView1->selectedDate();
        calendar->MonthView1->setSelectedDate(QDate(2023, 2, 14));
        auto* view = calendar->MonthView1->findChild<QTableView*>();
        ASSERT_NE(view, nullptr);
        QTest::keyClick(view, Qt::Key_Return);
    });
    QTest::keyClick(form.edits[1], Qt::Key_Minus);
    EXPECT_EQ(shownOnOpen, QDate::currentDate());
    EXPECT_EQ(form.edits[0]->text(), "14");
    EXPECT_EQ(form.edits[1]->text(), "02");
    EXPECT_EQ(form.edits[2]->text(), "2023");

    // A screen with its own target gets the date instead; Escape hands nothing back.
    QDate handed;
    entry.setCalendarTarget([&](const QDate& d) { handed = d; });
    OnNextModal([](QWidget* w) { QTest::keyClick(w, Qt::Key_Escape); });
    QTest::mouseDClick(form.edits[0], Qt::LeftButton);
    EXPECT_FALSE(handed.isValid());
    EXPECT_EQ(form.edits[0]->text(), "14");
}
