#include "VehicleSql.h"

#include "Vb.h"

QString BuildVehicleSql(const VehicleListFilter& filter, VehicleSqlKind kind) {
    const QString period = "Between '" + vb::Format(Value(filter.dateFrom), "yyyy/MM/dd") + "'" + " and '" +
                           vb::Format(Value(filter.dateTo), "yyyy/MM/dd") + "'";
    // A date search always looks across all categories.
    const bool useAll = filter.useAllCategories || filter.useDates;

    QString sql;
    switch (kind) {
    case VehicleSqlKind::MinLicence:
        sql = QString("SELECT  ") + " min(licenceduedate) as [LicenceDate]";
        break;
    case VehicleSqlKind::MinService:
        sql = QString("SELECT  ") + " min(serviceduedate) as [ServiceDate]";
        break;
    case VehicleSqlKind::Workbook:
        sql = QString("SELECT  ") + " desc as Category" + " ,[Maak] as [Make]" + " ,[Model]" +
              " ,[RegNR] as [Registration #]" + " ,[AWaarde] as [Purchase Price]" + " ,[KM]" +
              " ,licenceduedate as [Licence Renewal] " + " ,serviceduedate as [Service Due] ";
        break;
    case VehicleSqlKind::Grid:
        sql = QString("SELECT  ") + " voertuig.[TransID]" + " ,desc as Category" + " ,[Maak] " + " ,[Model]" +
              " ,[RegNR] " + " ,[AWaarde] " + " ,[KM]" + " ,licenceduedate  " + " ,serviceduedate ";
        break;
    }
    sql += QString(" From [Voertuig]") + " inner join voerkat on voerkat.transid = voertuig.catid" +
           " where voertuig.transid > 0 ";
    if (kind == VehicleSqlKind::MinLicence || kind == VehicleSqlKind::MinService)
        return sql;

    // The check box counts only for fills that asked for it (typing a search, the date run).
    const bool considerCategory = !useAll || !filter.searchAllChecked;
    if (considerCategory && filter.categoryIndex >= 1)
        sql += " and CatID = " + QString::number(filter.selectedId);

    if (!vb::Trim(filter.searchText).isEmpty()) {
        static const char* const columns[] = {" and maak like '*", " and model like '*", " and regnr like '*"};
        if (filter.searchOption >= 0 && filter.searchOption <= 2)
            sql += QString(columns[filter.searchOption]) + filter.searchText + "*'";
    }

    if (filter.useDates) {
        if (filter.renewalOption == 0)
            sql += " and licenceduedate " + period;
        else if (filter.renewalOption == 1)
            sql += " and serviceduedate " + period;
    }
    sql += " order by maak,model, regnr";
    return sql;
}
