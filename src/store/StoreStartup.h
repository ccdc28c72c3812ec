#pragma once
// The store side of the program's start and end: the one-instance lock, opening (or creating) the store,
// the version steps, the owner probe, the closing date, the schema steps and the repair at exit.

#include "Database.h"
#include "Session.h"

#include <QDateTime>
#include <QString>

// The program's own version and the number CheckVersion compares: major*100000000 + minor*10000 + revision.
inline constexpr int kProgramMajor = 1;
inline constexpr int kProgramMinor = 3;
inline constexpr int kProgramRevision = 157;
inline constexpr int kProgramVersionNumber = kProgramMajor * 100000000 + kProgramMinor * 10000 + kProgramRevision;
QString ProgramVersionText(); // "1.3.157"
int VersionNumber(int major, int minor, int revision);

bool AcquireInstanceLock(Session& s); // false when another instance holds <home>/orvel.lock; throws DbError when
                                      // the home folder cannot be made or written to
void OpenSessionStore(Session& s);    // DataPath; creates Databases/ and an older-shaped invent.db when missing
                                      // (then runs the seventeen steps once); opens s.db. Throws DbError.
void CreateVersionTable(Database& db);
void CheckVersion(Database& db);
void OwnerProbe(Database& db); // the store side of `Owner`; throws DbError when owner is missing
QDateTime GetClosedDate(Database& db);
void SaveClosedDate(Session& s);   // writes s.ClosedDate to tblTeDate row 2, sets s.ClosedDateId
bool RunSchemaSteps(Database& db); // the seventeen steps, in order; false when a step showed its failure
// The seventeen steps as every start runs them. On a store file that is byte for byte the one on which they last
// ran without writing or showing anything, they would do nothing again, and are not run.
void RunStartupSteps(Database& db);
void RepairAtExit(Session& s); // closes s.db, integrity check + VACUUM, errors ignored
