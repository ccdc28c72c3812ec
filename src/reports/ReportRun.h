#pragma once
// What one run of a report reads from the report screen: the title, the dates, the selected lists and the
// widgets it fills. The screen builds it in GetReport; the report procedures read it and never the screen.

#include <QString>
#include <QStringList>

class FlexGrid;
class QLabel;
class QProgressBar;

struct ReportRun {
    QString title;     // lblVerslag, exactly as shown
    QString from, to;  // "yyyy/mm/dd"
    QString fromShown; // dtpFrom as the screen shows it
    // The ids of the selected items, joined by ",": categories and vehicles of the hour lists (CatList,
    // VehicleList) and of the kilometre lists (CatKmList, VehicleKmList). For tank reports CatKmList holds the
    // tank ids; for the equipment lists CatList and VehicleList hold the categories and items.
    QString CatList, VehicleList, CatKmList, VehicleKmList;
    QString mergedIds;         // the hour list and the kilometre list in one, for the vehicle reports
    QString tankNames;         // the chosen tanks' shown names, joined by ","
    bool byDate = false;       // chkByDate
    mutable QString savedPath; // the workbook a print saved, "" when none

    FlexGrid* grid = nullptr;
    QLabel* lblMsg = nullptr;
    QProgressBar* progress = nullptr;

    // The message label's text, shown at once.
    void Message(const QString& text) const;
    // The progress bar's value, 0 to 100.
    void Progress(double percent) const;
    void ProgressVisible(bool visible) const;
};

// The hour list and the kilometre list joined by ",", an empty list left out; every id is kept, so that a
// vehicle chosen in both lists is sent twice.
QString MergeVehicleLists(const QString& hourList, const QString& kmList);
