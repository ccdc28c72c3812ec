#include "FuelFigures.h"

#include "Database.h"
#include "Vb.h"

namespace {

const char* const kTravelFormat = "#####0.00";
const char* const kFigureFormat = "###0.00";

QString travelText(const Value& v) {
    return vb::Format(v, kTravelFormat);
}
QString figureText(const Value& v) {
    return vb::Format(v, kFigureFormat);
}

// Floating-point division as the old platform did it: a zero divisor fails instead of giving infinity.
double divide(double dividend, double divisor) {
    if (divisor == 0.0)
        throw VbError(11, "Division by zero");
    return dividend / divisor;
}

// The kilometres of an issue and what follows from them, shared by the current and the first-fill figures.
// Steps write into `group` in the order the screen shows them; a failure leaves what was written.
void figuresFromDistance(double km, double litres, const QString& txtRandLiter, FigureGroup& group) {
    const double kmPerLitre = divide(km, litres);
    const double litresPer100 = divide(100.0, kmPerLitre);
    group.kmPerLitre = figureText(Value(kmPerLitre));
    group.litresPer100 = figureText(Value(litresPer100));
    group.kmTravel = travelText(Value(km));
    group.randPerLitre = figureText(Value(txtRandLiter));
    const double cost = vb::Val(txtRandLiter) * litres;
    group.costPerKm = figureText(Value(divide(cost, km)));
}

} // namespace

bool FigureGroup::isEmpty() const {
    return kmTravel.isEmpty() && kmPerLitre.isEmpty() && litresPer100.isEmpty() && randPerLitre.isEmpty() &&
           costPerKm.isEmpty();
}

QString FuelFiguresSql(const QString& vehicleId) {
    return "SELECT * FROM VecFuel WHERE VoertuigID = " + vehicleId + " ORDER BY val(KMRead) Desc";
}

bool ShowCurrentTankFigures(const QString& txtPrKm, const QString& txtKm, const QString& txtLiter,
                            const QString& txtRandLiter, FigureGroup& current) {
    try {
        const double km = vb::Val(txtPrKm) == 0.0 ? vb::Val(txtKm) : vb::Val(txtKm) - vb::Val(txtPrKm);
        figuresFromDistance(km, vb::Val(txtLiter), txtRandLiter, current);
        return true;
    } catch (const VbError&) {
        return false;
    }
}

void ShowFuelFigures(Database& store, const QString& vehicleId, FigureGroup& previous, FigureGroup& previous10) {
    auto rs = store.OpenRecordset(FuelFiguresSql(vehicleId));
    if (!rs->Eof()) {
        const Currency travelled = vb::CCur(rs->Field("KmRead")) - vb::CCur(rs->Field("previouskmread"));
        previous.kmTravel = travelText(Value(travelled));
        const double kmPerLitre =
            vb::RoundHalfEven(divide(vb::CDbl(Value(previous.kmTravel)), vb::CDbl(rs->Field("Litres"))), 2);
        previous.kmPerLitre = figureText(Value(kmPerLitre));
        if (vb::Val(previous.kmPerLitre) > 0)
            previous.litresPer100 =
                figureText(Value(vb::RoundHalfEven(divide(100.0, vb::CDbl(Value(previous.kmPerLitre))), 2)));
        else
            previous.litresPer100 = figureText(Value(0));
        previous.randPerLitre = figureText(rs->Field("RperL"));
        if (vb::Val(previous.kmTravel) > 0) {
            const Currency cost = vb::CCur(rs->Field("Litres")) * vb::CCur(rs->Field("RperL"));
            previous.costPerKm = figureText(Value(divide(cost.toDouble(), vb::CDbl(Value(previous.kmTravel)))));
        } else {
            previous.costPerKm = figureText(Value(0));
        }
    }
    rs->Close();

    rs = store.OpenRecordset(FuelFiguresSql(vehicleId));
    if (rs->Eof())
        return;
    int n = 0;
    Currency kmSum, prevSum, litreSum, lastRate;
    while (!rs->Eof() && n < 11) {
        kmSum += vb::CCur(rs->Field("KmRead"));
        prevSum += vb::CCur(rs->Field("previouskmread"));
        litreSum += vb::CCur(rs->Field("Litres"));
        lastRate = vb::CCur(rs->Field("RperL"));
        ++n;
        rs->MoveNext();
    }
    rs->Close();
    previous10.kmTravel = travelText(Value(kmSum - prevSum));
    previous10.kmPerLitre =
        figureText(Value(vb::RoundHalfEven(divide(vb::CDbl(Value(previous10.kmTravel)), litreSum.toDouble()), 2)));
    if (vb::Val(previous10.kmPerLitre) > 0)
        previous10.litresPer100 =
            figureText(Value(vb::RoundHalfEven(divide(100.0, vb::CDbl(Value(previous10.kmPerLitre))), 2)));
    else
        previous10.litresPer100 = figureText(Value(0));
    previous10.randPerLitre = figureText(Value(lastRate));
    if (vb::Val(previous10.kmTravel) > 0) {
        const Currency cost = litreSum * vb::CCur(Value(previous10.randPerLitre));
        previous10.costPerKm = figureText(Value(divide(cost.toDouble(), vb::CDbl(Value(previous10.kmTravel)))));
    } else {
        previous10.costPerKm = figureText(Value(0));
    }
}

bool ShowFirstFillFigures(const QString& txtPrKm, const QString& txtRandLiter, double startReading, double startLitres,
                          FigureGroup& previous) {
    if (!previous.kmPerLitre.isEmpty())
        return true;
    try {
        figuresFromDistance(vb::Val(txtPrKm) - startReading, startLitres, txtRandLiter, previous);
        return true;
    } catch (const VbError&) {
        return false;
    }
}
