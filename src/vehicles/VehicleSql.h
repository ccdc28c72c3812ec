#pragma once
// The statement behind the vehicle list, its workbook and the earliest renewal dates.

#include <QDate>
#include <QString>

// What the vehicle list's filters hold at the moment of a fill.
struct VehicleListFilter {
    QDate dateFrom;
    QDate dateTo;
    bool useDates = false;         // the renewal-date filter applies to this fill
    bool useAllCategories = false; // the "Search All Categories" box is honoured in this fill
    bool searchAllChecked = false;
    int categoryIndex = 0;  // index in the category list; 0 is "_All Categories"
    int selectedId = 0;     // item data of that entry
    QString searchText;     // as typed
    int searchOption = 0;   // 0 make, 1 model, 2 registration; -1 none
    int renewalOption = -1; // 0 licence, 1 service; -1 none
};

enum class VehicleSqlKind { Grid, Workbook, MinLicence, MinService };

QString BuildVehicleSql(const VehicleListFilter& filter, VehicleSqlKind kind);
