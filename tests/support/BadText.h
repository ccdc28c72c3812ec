#pragma once
// Bad text in every field: for a screen, each bad text is typed into each field of a capture that is otherwise
// valid, and the save is pressed. What may happen is one of two things: the save refuses with a message (its
// checks' or its handler's, never the run-time error box that ends the program) and the store stays byte for
// byte as it was, or the save takes the text as the column can hold it. A crash, a run-time error box or a
// refusal that wrote something fails the case.

#include "Database.h"
#include "ScriptedMessageService.h"

#include <QLineEdit>
#include <QString>
#include <functional>
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
    std::function<void()> save;  // presses the save as a person does
    std::function<void()> close; // closes the screen again
};

struct BadTextOutcome {
    QString field;
    QString text;
    bool refused = false;
    QString message;
};

// Runs every bad text in every field. Failures are reported through gtest; the outcomes are returned so that a
// test can hold them against the messages it expects.
std::vector<BadTextOutcome> TypeBadTextIntoEveryField(Database& db, ScriptedMessageService& messages,
                                                      const BadTextScreen& screen);
