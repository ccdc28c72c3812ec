#pragma once
// The equipment workbooks, saved under Reports/Equipment/. Each returns the saved file's path ("" when the
// workbook could not be made; the error has then been shown).

#include "Value.h"

#include <QDate>
#include <QString>

// The items of one category; under all categories (id 0) the list is empty, as its filter has it.
QString WriteEquipmentListWorkbook(int categoryId, const QString& categoryName);
// One item's movements in the range, a "Carried Forward" row before them, the "Transaction Summary" by kind and
// the "Closing Balance".
QString WriteItemStatementWorkbook(int itemId, const QString& itemName, const QDate& dateFrom, const QDate& dateTo);
// The form a person signs for a book-out or a book-in.
QString WriteMovementForm(int mode, const QString& context, const QString& person, Currency quantity,
                          const QDate& date);
// One stock take's ledger rows.
QString WriteStockTakeListWorkbook(long long stockTakeId, const QString& reason);
// Who still has what in one category.
QString WriteBookOutSummaryWorkbook(int categoryId, const QString& categoryName);
