#include "FuelUsageStatement.h"

#include <QStringList>

namespace {

const QString kBreak = QStringLiteral("\r\n");

// The pieces that several statements share, each exactly as the family writes it.
const QString kTankPiece = QStringLiteral("  , strconv(tanks.tanknaam,3) as [Tank]");
const QString kCategoryPiece = QStringLiteral(" ,strconv(voerkat.desc,3) as [Category]");
const QString kVehiclePiece = QStringLiteral(" ,  [voertuig].[maak]  &   '(' & [voertuig].[regnr]  & ')' as [Vehicle]");
const QString kDriverPiece = QStringLiteral(" , [drivers].[description] as [Driver]");
const QString kActivityPiece = QStringLiteral("   , activities.description as [Activity]");
const QString kUsedVehiclePiece =
    QStringLiteral(" ,  [Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')' as [Vehicle]");
const QString kLogFrom = QStringLiteral("  From [vecfuel], [voertuig], [drivers], [activities], voerkat, tanks");

QStringList LogWhere() {
    return {"  Where [vecfuel].[voertuigId] = [voertuig].[TransID]", " and [vecfuel].[driverid] = [drivers].[id]",
            " and [vecfuel].[activityid] = [activities].[id]", " and vecfuel.tankid =  tanks.transid",
            " and voerkat.transid = voertuig.catid"};
}

QString Dates(const QString& from, const QString& to) {
    return " and datum between  '" + from + "'" + " and  '" + to + "'";
}

// The date pieces of the pump readings and the detailed usage: the column named by its table.
QString FuelDates(const QString& from, const QString& to) {
    return " and [VecFuel].datum between  '" + from + "'" + " and  '" + to + "'";
}

QString Vehicles(const QString& ids) {
    return " and voertuig.transid in (" + ids + ") ";
}

QString LitresPerVehicle(const QString& from, const QString& to, const QString& ids) {
    return QString("select strconv(maak & '(' &regnr & ')',3) as [Vehicle] ,sum(litres) as [Total]") +
           " From [vecfuel], [voertuig]" + " Where [vecfuel].[voertuigId] = [voertuig].[TransID]" + Dates(from, to) +
           Vehicles(ids) + " group by maak & '(' &regnr & ')'";
}

QString LitresPerActivity(const QString& from, const QString& to, const QString& ids) {
    return QString("select  strconv([activities].[Description],3) as [Activity]  , sum( [vecfuel].[litres]) as  "
                   "[Total]  ") +
           " from  [vecfuel],[activities], [voertuig]" + " where [vecfuel].[activityid] = [activities].[id]" +
           " and  vecfuel.voertuigid = voertuig.transid " + Dates(from, to) + Vehicles(ids) +
           " group by [activities].[description]";
}

QString LitresPerDriver(const QString& from, const QString& to, const QString& ids) {
    return QString("Select  strconv([drivers].[Description],3) as [Driver] ,  sum( [vecfuel].[litres]) as [Total]   ") +
           " from  [drivers],[vecfuel],voertuig" + " where [drivers].[id] = [vecfuel].[driverid]" +
           " and  vecfuel.voertuigid = voertuig.transid " + Dates(from, to) + Vehicles(ids) +
           " group by [drivers].[description]";
}

QString LitresPerActivityVehicle(const QString& from, const QString& to, const QString& ids, bool byDate) {
    return QString("SELECT [VecFuel].[Datum] as [Date] ,  strconv([drivers].[description],3) as [Driver]") +
           " ,  strconv([Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')',3) as [Vehicle]" +
           " , strconv(activities.description,3) as [Activity]" + " ,   [VecFuel].[Litres]" +
           " , [VecFuel].[KmRead] as [Odometer]" + " From [VecFuel], [Voertuig], [drivers], [activities]" +
           " Where [VecFuel].[voertuigId] = [Voertuig].[TransID]" + " AND [VecFuel].[driverid] = [drivers].[id]" +
           " AND [VecFuel].[activityid] = [activities].[id]" + Dates(from, to) + Vehicles(ids) +
           (byDate ? " order by datum" : "  order by vecfuel.transid");
}

QString LitresUsed(const QString& from, const QString& to, const QString& ids, bool byDate) {
    return QString("SELECT [VecFuel].[Datum] as [Date] ") + kUsedVehiclePiece +
           " , [VecFuel].[previouskmread] as [Prev Km]" + " , [VecFuel].[KmRead] as [Curr Km]" +
           " , [vecfuel].[kmread] - [VecFuel].[previouskmread] as [Km] " +
           " ,    [vecfuel].[litres] as [Litres Used] " + " from [vecfuel], [voertuig]" +
           " Where [VecFuel].[voertuigId] = [Voertuig].[TransID]" + Dates(from, to) + Vehicles(ids) +
           (byDate ? " order by datum" : "");
}

QString LitresPerDriverVehicle(const QString& from, const QString& to, const QString& ids, bool byDate) {
    return QString("Select  [VecFuel].[Datum] as [Date]") + kUsedVehiclePiece +
           " ,[drivers].[Description],    [vecfuel].[Litres] " + " from  [drivers],[vecfuel],voertuig" +
           " where [drivers].[id] = [vecfuel].[driverid]" + " and  vecfuel.voertuigid = voertuig.transid " +
           Dates(from, to) + Vehicles(ids) + (byDate ? " order by [VecFuel].[Datum]" : "");
}

QString LogSheet() {
    return QString("select top 1 [vecfuel].[datum] as [Date]") + kTankPiece + kVehiclePiece + kDriverPiece +
           " , '' as [Block/Cost Centre]" + kActivityPiece +
           " ,   [vecfuel].[Litres] , [vecfuel].[kmread] as [Km/Hours Read]" + " ,'' as [Time Start],'' as [Time End]" +
           kLogFrom + LogWhere().join(QString());
}

QString PumpReadings(const QString& from, const QString& to, const QString& ids, bool byDate, bool forPrint) {
    return QString("select [vecfuel].[datum] as [Date]") + kTankPiece + kCategoryPiece + kVehiclePiece + kDriverPiece +
           kActivityPiece + " ,   [vecfuel].[litres] " + " , pumpreadprev as " +
           (forPrint ? "[Previous]" : "[Pump Reading Before]") + " ,pumpreadcurr as " +
           (forPrint ? "[Current]" : "[Pump Reading After]") + kLogFrom + LogWhere().join(QString()) +
           FuelDates(from, to) + " and  kmread > 0" + Vehicles(ids) + (byDate ? " order by [VecFuel].[Datum]" : "");
}

QString DetailedUsage(const QString& from, const QString& to, const QString& ids, bool byDate) {
    QStringList lines{"select [vecfuel].[datum] as [Date]",
                      kTankPiece,
                      kCategoryPiece,
                      kVehiclePiece,
                      kDriverPiece,
                      kActivityPiece,
                      " ,   [vecfuel].[litres] , [vecfuel].[kmread] as [Km/Hours Read]",
                      " , [vecfuel].[previouskmread] as [Prev Km]",
                      " , [vecfuel].[kmread] - [vecfuel].[previouskmread] as [Km]",
                      " , ([vecfuel].[kmread] - [vecfuel].[previouskmread]) / [vecfuel].[litres] as [Km/l]",
                      " , ( [vecfuel].[litres] /  ([vecfuel].[kmread] - [vecfuel].[previouskmread]))*100 as [L/100 Km]",
                      " ,vecfuel.rperl as [Cost/Litre]",
                      " ,([vecfuel].[litres]*rperl)/([vecfuel].[kmread] - [vecfuel].[previouskmread]) as [Cost/Km]",
                      kLogFrom};
    lines << LogWhere();
    lines << " and [VecFuel].datum between  '" + from + "'"
          << " and  '" + to + "'"
          << " and  kmread> 0" << Vehicles(ids);
    if (byDate)
        lines << " order by [VecFuel].[Datum]";
    return lines.join(kBreak) + kBreak;
}

QString RebateApplicable(const QString& from, const QString& to, const QString& ids) {
    QStringList lines{"SELECT [VecFuel].[Datum] as [Date] ,  strconv([drivers].[description],3) as [Driver]",
                      " , strconv(activities.description,3) as [Activity]",
                      " ,  strconv([Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')',3) as [Vehicle]",
                      " ,   [VecFuel].[Litres]",
                      " , VecFuel.litres * ([Voertuig].[rebatepct]/100) as [Rebate]",
                      " , VecFuel.litres * (1 - [Voertuig].[rebatepct]/100) as [Non Rebate]",
                      " From [VecFuel], [Voertuig], [drivers], [activities]",
                      " Where [VecFuel].[voertuigId] = [Voertuig].[TransID]",
                      " AND [VecFuel].[driverid] = [drivers].[id]",
                      " AND [VecFuel].[activityid] = [activities].[id]",
                      Dates(from, to),
                      " and  voertuig.rebated = true",
                      " and  activities.rebated = true",
                      Vehicles(ids),
                      " order by datum"};
    return lines.join(kBreak) + kBreak;
}

} // namespace

QString FuelUsageStatement(const QString& title, const QString& from, const QString& to, const QString& ids,
                           bool byDate, bool forPrint) {
    if (title == "Litres Per Vehicle")
        return LitresPerVehicle(from, to, ids);
    if (title == "Litres Per Activity")
        return LitresPerActivity(from, to, ids);
    if (title == "Litres Per Driver")
        return LitresPerDriver(from, to, ids);
    if (title == "Litres Per Activity/Vehicle")
        return LitresPerActivityVehicle(from, to, ids, byDate);
    if (title == "Litres Used")
        return LitresUsed(from, to, ids, byDate);
    if (title == "Litres Per Driver/Vehicle")
        return LitresPerDriverVehicle(from, to, ids, byDate);
    if (title == "Vehicle Fuel Log Sheet")
        return LogSheet();
    if (title == "Pump Readings")
        return PumpReadings(from, to, ids, byDate, forPrint);
    if (title == "Detailed Veh. Fuel Usage")
        return DetailedUsage(from, to, ids, byDate);
    if (title == "Monthly Veh. Fuel Usage")
        return MonthlyUsageStatement(from, to, ids, true);
    if (title == "Rebate Applicable")
        return RebateApplicable(from, to, ids);
    return QString();
}

QString FuelUsageStatement(const ReportRun& run, const QString& from, const QString& to, bool forPrint) {
    return FuelUsageStatement(run.title, from, to, run.mergedIds, run.byDate, forPrint);
}

QString MonthlyUsageStatement(const QString& from, const QString& to, const QString& ids, bool litres) {
    const QStringList lines{litres ? "Transform Sum(vecfuel.Litres)" : "Transform Sum(vecfuel.Litres * vecfuel.rperl)",
                            " select format(datum,'mmmm yyyy') AS [Date] ",
                            " from voertuig, vecfuel where voertuig.transid = vecfuel.voertuigid",
                            " and [VecFuel].datum between  '" + from + "'",
                            " and  '" + to + "'",
                            " and voertuig.transid in (" + ids + ") ",
                            "  group by  format(datum,'mmmm yyyy'),format(datum,'mm yyyy')",
                            " order by format(datum,'mm yyyy')",
                            " pivot [voertuig].[maak]  &   '(' & [voertuig].[regnr]  & ')' "};
    return lines.join(kBreak) + kBreak;
}

QString MonthlyUsageStatement(const ReportRun& run, const QString& from, const QString& to, bool litres) {
    return MonthlyUsageStatement(from, to, run.mergedIds, litres);
}
