#pragma once
// What the tank, purchase and stock take screens share: today's date as the fuel tables keep it, the run-time
// error path of a handler without a trap of its own, and the number read out of a grid cell.

#include "NumberedError.h"
#include "QtMessageService.h"

#include <QString>

class FlexGrid;
class QLineEdit;

namespace fuelforms {

// Today as "yyyy/MM/dd".
QString TodayText();

// The grid cell as text, "" outside the grid.
QString CellText(const FlexGrid& grid, int row, int col);

// A key in a grid cell, as a 32-bit number; 0 for an empty or non-numeric cell.
int CellKey(const FlexGrid& grid, int row, int col);

// A litres or rands field: a text that is no figure (pasted, say) empties the field at once, as the date fields
// do, so that the save's own check asks for it.
void EmptyWhenNoFigure(QLineEdit* field);

// A new workbook whose first sheet is named `sheetName` and in hand as xlSheet.
void OpenFuelWorkbook(const QString& sheetName);
// Saves the workbook in hand as `reportName` in the reports' "Vehicles" folder, shows it and lets it go.
void SaveFuelWorkbook(const QString& reportName);

// Runs a handler body that has no error trap: a store, value or workbook error shows the run-time error box and
// ends the program, with what was stored kept. False when it ended that way.
template <class Body> bool Untrapped(Body body) {
    try {
        body();
        return true;
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return false;
    }
}

} // namespace fuelforms
