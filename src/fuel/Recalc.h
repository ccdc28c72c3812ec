#pragma once
// The recalculation of everything the capture screens keep incrementally: the odometer chain of every
// vehicle, the book figures of every tank stock take and the balance of every tank, rebuilt from the
// transactions alone.

class Database;
class QProgressBar;

struct RecalcSummary {
    int vehicles = 0;
    int fuelRows = 0;
    int stockTakes = 0;
    int tanks = 0;
    int valuesWritten = 0; // stored values that differed and were rewritten
    bool narrowed = false; // only the vehicles and tanks touched since the last run were done
};

// Runs on the session's store. The bar is shown for the run (maximum the vehicle count, value 0) and
// hidden at the end; showDone ends with "Recalculation done". False when an error was reported.
bool Recalc(QProgressBar* progressBar, bool showDone);

// The same on a given store. It reads each table once, computes in memory and writes only the values
// that change, in one transaction; the store then holds exactly what the row-by-row walk
// (RecalcRowByRow) leaves, including the effect of stock takes that stand out of date order.
// Between runs the connection logs which vehicles and tanks its writes touch; a run that can trust the log
// redoes only those (their figures depend on nothing else), and a run that cannot does every one.
bool Recalc(Database& store, QProgressBar* progressBar, bool showDone, RecalcSummary* summary = nullptr);
