#include "RecalcReference.h"

#include "Database.h"
#include "RecalcSteps.h"
#include "Vb.h"

#include <QProgressBar>

namespace {

using recalc::Retrying;

// "If it has a row and its field 0 is not null": the sum, else nothing.
bool SumOf(Database& store, const QString& sql, bool& ok, Currency& sum) {
    auto rs = Retrying(ok, [&] { return store.OpenRecordset(sql); });
    const Value first = Retrying(ok, [&] { return rs->Eof() ? Value::null() : rs->Field(0); });
    if (first.isNull())
        return false;
    sum = Retrying(ok, [&] { return first.toCurrency(); });
    return true;
}

void ChainVehicle(Database& store, Recordset& vehicle, bool& ok) {
    const QString id = Retrying(ok, [&] { return vehicle.Field("TransID").toString(); });
    auto fuel = Retrying(ok, [&] {
        return store.OpenRecordset("SELECT * FROM VecFuel WHERE VoertuigID = " + id + " ORDER BY val(KMRead) Asc");
    });
    if (fuel->Eof())
        return;
    QString previousKm;
    Retrying(ok, [&] { fuel->Edit(); });
    Retrying(ok, [&] { fuel->SetField("previouskmread", Value(recalc::CleanedKm(vehicle.Field("Km")))); });
    previousKm = Retrying(ok, [&] { return recalc::ReadingText(fuel->Field("KmRead")); });
    Retrying(ok, [&] { fuel->Update(); });
    Retrying(ok, [&] { fuel->MoveNext(); });
    while (!fuel->Eof()) {
        Retrying(ok, [&] { fuel->Edit(); });
        Retrying(ok, [&] { fuel->SetField("previouskmread", Value(previousKm)); });
        previousKm = Retrying(ok, [&] { return recalc::ReadingText(fuel->Field("KmRead")); });
        Retrying(ok, [&] { fuel->Update(); });
        Retrying(ok, [&] { fuel->MoveNext(); });
    }
}

void BookStockTake(Database& store, Recordset& stock, bool& ok) {
    const QString tank = Retrying(ok, [&] { return stock.Field("TankID").toString(); });
    const QString date = Retrying(ok, [&] { return stock.Field("Datum").toString(); });
    const QString dated = " AND Datum < '" + date + "'";
    Currency balance;
    Currency sum;
    if (SumOf(store, "SELECT sum(val(Liter)) FROM FuelPurchase WHERE TankID = " + tank + dated, ok, sum))
        balance = sum;
    if (SumOf(store, "SELECT sum(val(Verlore)) FROM TankStock WHERE TankID = " + tank + dated, ok, sum))
        balance = balance + sum;
    if (SumOf(store, "SELECT sum(val(Litres)) FROM VecFuel WHERE TankID = " + tank + dated, ok, sum))
        balance = balance - sum;
    Retrying(ok, [&] { stock.Edit(); });
    Retrying(ok, [&] { stock.SetField("LiterLesing", Value(balance)); });
    Retrying(ok, [&] {
        stock.SetField("Verlore", Value(Currency::fromDouble(vb::Val(stock.Field("LitersInTank"))) - balance));
    });
    Retrying(ok, [&] { stock.Update(); });
}

void BalanceTank(Database& store, Recordset& tanks, bool& ok) {
    const QString tank = Retrying(ok, [&] { return tanks.Field("TransID").toString(); });
    Currency balance;
    Currency sum;
    if (SumOf(store, "SELECT sum(val(Liter)) FROM FuelPurchase WHERE TankID = " + tank, ok, sum))
        balance = sum;
    if (SumOf(store, "SELECT sum(val(Verlore)) FROM TankStock WHERE TankID = " + tank, ok, sum))
        balance = balance + sum;
    if (SumOf(store, "SELECT sum(val(Litres)) FROM VecFuel WHERE TankID = " + tank, ok, sum))
        balance = balance - sum;
    Retrying(ok, [&] { tanks.Edit(); });
    Retrying(ok, [&] { tanks.SetField("HuidigeVolume", Value(balance)); });
    Retrying(ok, [&] { tanks.Update(); });
}

} // namespace

bool RecalcRowByRow(Database& store, QProgressBar* progressBar, bool showDone) {
    bool ok = true;
    if (progressBar)
        progressBar->setVisible(true);

    auto vehicles = Retrying(ok, [&] { return store.OpenRecordset("SELECT * FROM Voertuig"); });
    if (progressBar) {
        // The count of a freshly opened set is what it has visited; the bar only tells that work goes on.
        progressBar->setMaximum(Retrying(ok, [&] { return vehicles->RecordCount(); }));
        progressBar->setValue(0);
    }
    while (!vehicles->Eof()) {
        ChainVehicle(store, *vehicles, ok);
        Retrying(ok, [&] { vehicles->MoveNext(); });
    }

    auto stock = Retrying(ok, [&] { return store.OpenRecordset("TankStock", RecordsetType::Table); });
    while (!stock->Eof()) {
        BookStockTake(store, *stock, ok);
        Retrying(ok, [&] { stock->MoveNext(); });
    }

    auto tanks = Retrying(ok, [&] { return store.OpenRecordset("Tanks", RecordsetType::Table); });
    while (!tanks->Eof()) {
        BalanceTank(store, *tanks, ok);
        Retrying(ok, [&] { tanks->MoveNext(); });
    }

    if (showDone)
        MsgBox("Recalculation done", MsgButtons::Ok, MsgIcon::None, "Recalc");
    if (progressBar)
        progressBar->setVisible(false);
    return ok;
}
