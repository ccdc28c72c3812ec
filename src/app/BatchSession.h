#pragma once
// The store of a batch command, opened as the desktop program opens it: the previous-instance lock, the
// store, the version steps and the schema steps. The session is the current one while the object lives.

#include "CommandLine.h"
#include "Session.h"

#include <QString>

class BatchSession {
public:
    explicit BatchSession(const CommandLine& cl);
    ~BatchSession();
    BatchSession(const BatchSession&) = delete;
    BatchSession& operator=(const BatchSession&) = delete;

    // Empty when the store is open and up to date, else the reason to print. With probeOwner, the owner
    // table and the closing date are read as at start-up too. A lock already held by the session is kept.
    QString open(bool probeOwner);

    Session session;
};

// Prints "orvel <command>: <reason>" on standard error and gives the exit code 1.
int FailCommand(const char* command, const QString& reason);

// What `orvel check` does once the store is open: the integrity check (unless known to pass on this very file) and
// the summary line. Returns the exit code.
int CheckOpenStore(const char* command, Database& db);
