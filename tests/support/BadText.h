#pragma once
// Bad text in every field: for a screen, each bad text is typed into each field of a capture that is otherwise
// valid, and the save is pressed. What may happen is one of two things: the save refuses with a message (its
// checks' or its handler's, never the run-time error box that ends the program) and the store stays byte for
// byte as it was, or the save takes the text as the column can hold it. A crash, a run-time error box or a
// refusal that wrote something fails the case.

#include "Database.h"
#include "ScriptedMessageService.h"

#include <QLineEdit>
#include <QPlainTextEdit>
#include <QString>
#include <functional>
#include <map>
#include <vector>

struct BadText {
    const char* name;
    QString text;
};

// The texts every field gets: empty, blanks only, a quote, a bracket, 300 characters, a text in a number field,
// "31" into February, a year of 9999, a control character, and text outside Latin-1.
const std::vector<BadText>& BadTexts();

// Every row of every user table, in a fixed order: two dumps are equal when the store is unchanged.
QString StoreDump(Database& db);

struct BadTextScreen {
    // Opens the screen afresh with a valid capture; returns the fields by name.
    std::function<std::vector<std::pair<QString, QLineEdit*>>()> open;
    // In place of open, for a screen whose fields include a text box of several lines (QPlainTextEdit).
    std::function<std::vector<std::pair<QString, QWidget*>>()> openFields;
    std::function<void()> save;  // presses the save as a person does
    std::function<void()> close; // closes the screen again
    // Boxes that tell of a save that went through ("Posted"): not refusals. Questions are never refusals.
    QStringList notices;
    // Questions answered No (a print after the save, say); every other question is answered Yes.
    QStringList declined;
    // The cases where the save has no trap of its own and the run-time error box ends the run, as the system does
    // on purpose (a name put into a statement as typed): the box must then be the critical one, and the store
    // as it was. Every other case must not end the run.
    std::function<bool(const QString& field, const QString& badText)> endsRun;
};

struct BadTextOutcome {
    QString field;
    QString text;
    bool refused = false;
    bool endedRun = false;
    QString message; // the refusal's text
    QString title;
    MsgIcon icon = MsgIcon::None;
};

// Runs every bad text in every field. Failures are reported through gtest; the outcomes are returned so that a
// test can hold them against the messages it expects.
std::vector<BadTextOutcome> TypeBadTextIntoEveryField(Database& db, ScriptedMessageService& messages,
                                                      const BadTextScreen& screen);

// The message each refused case must give, by field and bad text; a case not listed must be taken.
using BadTextExpected = std::map<std::pair<QString, QString>, QString>;
void HoldBadTextAgainst(const std::vector<BadTextOutcome>& outcomes, const BadTextExpected& expected);
