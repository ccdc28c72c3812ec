#pragma once
// The functions the translated statements call (jet_like, jet_cat, jet_val, jet_format, ...), registered on
// a SQLite connection. They give VB's and Jet's results; a division by zero and VB's run-time errors fail the
// statement with a message of the form "Jet error <number>: <description>".

#include <QString>

struct sqlite3;

// Registers every function on the connection. Returns SQLite's result code (SQLITE_OK on success).
int RegisterJetFunctions(sqlite3* db);

// Reads the Jet error number and description out of the message a failing function left; false for any
// other SQLite message.
bool JetErrorFromFunctionMessage(const QString& message, int* number, QString* description);

// Jet's LIKE: `*` any run, `?` one character, `#` one digit, `[abc]`, `[!abc]`, `[a-z]`; case-blind.
bool JetLikeMatch(const QString& text, const QString& pattern);
