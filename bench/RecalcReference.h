#pragma once
// The recalculation walked row by row: one statement per vehicle, three summing statements per stock take
// and per tank, and every row edited whether or not its value changes. Kept as the yardstick that the
// fast Recalc is measured and checked against.

class Database;
class QProgressBar;

bool RecalcRowByRow(Database& store, QProgressBar* progressBar, bool showDone);
