#include "InputBehaviours.h"

#include <QApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPointer>
#include <QTimer>
#include <functional>

namespace {

constexpr int kEnter = 13;
constexpr int kBackspace = 8;
constexpr int kFullStop = 46;

bool isDigit(int keyAscii) {
    return keyAscii >= 48 && keyAscii <= 57;
}

// One behaviour on one field: a key handler that may cancel the key, or focus handlers.
class Behaviour : public QObject {
public:
    using KeyHandler = std::function<bool(int& keyAscii)>; // false cancels the key
    using FocusHandler = std::function<void()>;

    Behaviour(QWidget* field, KeyHandler onKey, FocusHandler onFocusIn = {}, FocusHandler onFocusOut = {})
        : QObject(field), m_onKey(std::move(onKey)), m_onFocusIn(std::move(onFocusIn)),
          m_onFocusOut(std::move(onFocusOut)) {
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
            if (m_onKey) {
                auto* key = static_cast<QKeyEvent*>(event);
                int keyAscii = KeyAsciiOf(key->key(), key->text());
                if (keyAscii != 0 && key->modifiers().testAnyFlags(Qt::ControlModifier | Qt::AltModifier))
                    keyAscii = 0; // shortcuts (copy, paste) are not typing
                if (keyAscii != 0 && !m_onKey(keyAscii))
                    return true;
            }
            break;
        case QEvent::FocusIn:
            if (m_onFocusIn)
                m_onFocusIn();
            break;
        case QEvent::FocusOut:
            if (m_onFocusOut)
                m_onFocusOut();
            break;
        default:
            break;
        }
        return false;
    }

private:
    KeyHandler m_onKey;
    FocusHandler m_onFocusIn;
    FocusHandler m_onFocusOut;
};

} // namespace

int KeyAsciiOf(int qtKey, const QString& text) {
    if (qtKey == Qt::Key_Return || qtKey == Qt::Key_Enter)
        return kEnter;
    if (qtKey == Qt::Key_Backspace)
        return kBackspace;
    if (text.isEmpty() || !text.at(0).isPrint())
        return 0;
    return text.at(0).unicode();
}

bool FilterNumericKey(const QLineEdit* textBox, int& keyAscii, bool allowDecimal) {
    const bool good = isDigit(keyAscii) || keyAscii == kFullStop || keyAscii == kBackspace;
    if (keyAscii == kFullStop) {
        if (!allowDecimal || (textBox && textBox->text().contains('.')))
            keyAscii = 0;
    }
    return good;
}

bool FilterDigitsKey(const QLineEdit* textBox, int& keyAscii, bool allowDecimal) {
    if (allowDecimal) {
        if (keyAscii == kFullStop && textBox && textBox->text().contains('.'))
            keyAscii = 0;
        else if (!(isDigit(keyAscii) || keyAscii == kFullStop || keyAscii == kBackspace))
            keyAscii = 0;
    } else if (!(isDigit(keyAscii) || keyAscii == kBackspace)) {
        keyAscii = 0;
    }
    return keyAscii != 0;
}

namespace {

// As the original sends a Tab key: the focus moves from the widget to the next field in the tab order.
void sendTab(QWidget* from) {
    QKeyEvent tab(QEvent::KeyPress, Qt::Key_Tab, Qt::NoModifier);
    QApplication::sendEvent(from, &tab);
}

} // namespace

bool EnterAsTab(int keyAscii) {
    if (keyAscii != kEnter)
        return false;
    QWidget* focused = QApplication::focusWidget();
    if (!focused)
        return false;
    sendTab(focused);
    return true;
}

void SelectOnFocus(QLineEdit* textBox, int startIndex) {
    if (!textBox)
        return;
    if (startIndex < 0)
        startIndex = 0;
    const int length = textBox->text().length();
    startIndex = std::min(startIndex, length);
    textBox->setSelection(startIndex, length - startIndex);
}

void ProperNameFilter(QLineEdit* textBox) {
    QString text = textBox->text();
    if (text.isEmpty())
        return;
    int caret = textBox->cursorPosition();
    while (text.startsWith(' '))
        text.remove(0, 1);
    if (text.endsWith("  ")) {
        while (text.endsWith(' '))
            text.chop(1);
        text += ' ';
        --caret;
    }
    if (!text.isEmpty())
        text[0] = text.at(0).toUpper();
    for (int i = 0; i + 1 < text.length(); ++i)
        if (text.at(i) == ' ')
            text[i + 1] = text.at(i + 1).toUpper();
    if (text != textBox->text()) {
        const QSignalBlocker block(textBox); // the write-back is no new change to filter
        textBox->setText(text);
    }
    textBox->setCursorPosition(std::clamp(caret, 0, static_cast<int>(text.length())));
}

void AttachNumericFilter(QLineEdit* field, bool allowDecimal) {
    new Behaviour(field, [field, allowDecimal](int& keyAscii) {
        if (keyAscii == kEnter)
            return true;
        const bool good = FilterNumericKey(field, keyAscii, allowDecimal);
        return good && keyAscii != 0;
    });
}

void AttachDigitsFilter(QLineEdit* field, bool allowDecimal) {
    new Behaviour(field, [field, allowDecimal](int& keyAscii) {
        if (keyAscii == kEnter)
            return true;
        return FilterDigitsKey(field, keyAscii, allowDecimal);
    });
}

void AttachEnterAsTab(QWidget* field) {
    new Behaviour(field, [field](int& keyAscii) {
        if (keyAscii != kEnter)
            return true;
        sendTab(field);
        return false; // the Enter itself goes no further (no default button fires)
    });
}

void AttachSelectOnFocus(QLineEdit* field, int startIndex) {
    new Behaviour(field, {}, [field, startIndex] {
        // After the focus event the line edit places its own caret (a mouse click does); select after that.
        QTimer::singleShot(0, field, [field, startIndex] {
            if (field->hasFocus())
                SelectOnFocus(field, startIndex);
        });
    });
}

void SetCaptionColour(QLabel* caption, const QColor& colour) {
    if (!caption)
        return;
    QPalette palette = caption->palette();
    palette.setColor(QPalette::WindowText, colour);
    caption->setPalette(palette);
}

void AttachFocusColour(QWidget* field, QLabel* caption) {
    QPointer<QLabel> label(caption);
    new Behaviour(
        field, {}, [label] { SetCaptionColour(label, kFocusCaptionColour); },
        [label] { SetCaptionColour(label, kRestCaptionColour); });
}

void AttachProperNameFilter(QLineEdit* field) {
    QObject::connect(field, &QLineEdit::textChanged, field, [field] { ProperNameFilter(field); });
}
