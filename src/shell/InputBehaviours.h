#pragma once
// The input behaviours every entry screen attaches to its fields. The routines work on a key code as the
// original's key handlers do (keyAscii, 0 cancels the key); the Attach* functions install them on a field
// through an event filter owned by the field.

#include <QColor>

class QLabel;
class QLineEdit;
class QWidget;

// Quantity and decimal fields. True when the key is a digit, "." or backspace. With allowDecimal a second
// "." is cancelled (keyAscii set to 0); without it every "." is. Other bad keys are left to the caller.
bool FilterNumericKey(const QLineEdit* textBox, int& keyAscii, bool allowDecimal);
// Cost fields: cancels by itself. Digits and backspace pass; "." passes once when allowDecimal is set.
// True when the key passes.
bool FilterDigitsKey(const QLineEdit* textBox, int& keyAscii, bool allowDecimal);
// Enter (13) moves the focus on from the focused widget, as a Tab would. True when it did.
bool EnterAsTab(int keyAscii);
// Caret to startIndex (below 0 taken as 0), then the selection to the end of the text.
void SelectOnFocus(QLineEdit* textBox, int startIndex = 0);
// The typing filter for names and addresses, run on each change: no leading blanks, no double blank,
// each word's first letter upper case; the caret stays where it was.
void ProperNameFilter(QLineEdit* textBox);

// The key code Qt's key event stands for: 13 for Enter, 8 for backspace, else the typed character; 0 when
// the key types nothing (arrows, function keys).
int KeyAsciiOf(int qtKey, const QString& text);

inline const QColor kFocusCaptionColour{255, 0, 0}; // 255 as the original's colour value: red
inline const QColor kRestCaptionColour{0, 0, 0};

// Attachers. A field may carry several; they act in the order attached.
void AttachNumericFilter(QLineEdit* field, bool allowDecimal); // cancels what FilterNumericKey refuses
void AttachDigitsFilter(QLineEdit* field, bool allowDecimal);
void AttachEnterAsTab(QWidget* field);
void AttachSelectOnFocus(QLineEdit* field, int startIndex = 0);
void AttachFocusColour(QWidget* field, QLabel* caption); // caption red on focus, black on leaving
void AttachProperNameFilter(QLineEdit* field);
void SetCaptionColour(QLabel* caption, const QColor& colour);
