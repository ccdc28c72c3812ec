#pragma once
// The consumption figures beside the fuel capture: "Current Tank" for the issue being typed, "PreviousTank"
// from the vehicle's latest issue and "Previous10 Tanks" over its latest issues. Display only: none is stored.

#include <QString>

class Database;

// The five figures of one group, as display text ("" for a box left empty).
struct FigureGroup {
    QString kmTravel;     // travelled, "#####0.00"
    QString kmPerLitre;   // "###0.00"
    QString litresPer100; // "###0.00"
    QString randPerLitre; // "###0.00"
    QString costPerKm;    // "###0.00"
    bool isEmpty() const;
};

// "Current Tank" from the capture fields. A failing step (a division by zero, an empty litres box) ends the
// routine quietly: the figures set before it stay, the others keep what they held. False when it stopped so.
bool ShowCurrentTankFigures(const QString& txtPrKm, const QString& txtKm, const QString& txtLiter,
                            const QString& txtRandLiter, FigureGroup& current);

// "PreviousTank" (the issue with the highest reading) and "Previous10 Tanks" (up to eleven issues with the
// highest readings) of the vehicle. No trap: a zero in a divisor throws VbError 11, Null throws VbError 94.
// A vehicle without issues leaves both groups untouched.
void ShowFuelFigures(Database& store, const QString& vehicleId, FigureGroup& previous, FigureGroup& previous10);

// The first-fill figures for "PreviousTank" while it is empty: kilometres from txtPrKm less the start
// reading, figures as for the current tank from the start litres. Trapped like the current figures; false when
// it stopped. The register keeps no start reading or start litres, so with both 0 it stops at the first division.
bool ShowFirstFillFigures(const QString& txtPrKm, const QString& txtRandLiter, double startReading, double startLitres,
                          FigureGroup& previous);

// The statement both groups of ShowFuelFigures read.
QString FuelFiguresSql(const QString& vehicleId);
