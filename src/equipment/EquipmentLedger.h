#pragma once
// The equipment ledger without screens: the statements of the register, book-outs and book-ins, and the writes of
// a movement in their order. The screens and the demo register both write through these, so that the stock take
// headers, the ledger and toerinv.Hoeveel tell the same story.

#include "Value.h"

#include <QDate>
#include <QString>

class QListWidget;

// EquipmentMode and the ledger's actionId.
enum EquipmentAction { kOpeningBalance = 0, kBookIn = 1, kBookOut = 2, kPurchase = 3, kStockTake = 4, kEditItem = 6 };

inline const QString kAllEquipmentCategories = QStringLiteral("--- _All Categories ---");
// The quantity in brackets at the end of a list text; the digits may be split by blanks.
inline const QString kQuantityPattern = QStringLiteral(R"(.*\(((?:[0-9]*\s)*[0-9]*\.?[0-9]{0,5})\))");
inline const QString kLeadingIdPattern = QStringLiteral(R"(^id\s+([0-9]+))");
inline const QString kIdPattern = QStringLiteral(R"(id\s*([0-9]{1,}))");

// The stock take header of the book-out that the next book-in returns against: set by the list of open
// book-outs, read by the entry screen. It grows with ordinary use, so it is 64-bit.
long long& BookOutStockTakeId();

// Clears the list, adds firstItem (data 0), then each toerkat Desc with its TID.
void FillEquipmentCategories(QListWidget* list, const QString& firstItem);

// Context texts between the screens.
QString BookOutContext(const QString& itemName, const QString& quantityText);
QString BookInContext(long long bookOutId, const QString& itemName, const QString& remarks);
// The quantity in brackets of a context text; an empty capture reads as 0.
Currency ParseContextQuantity(const QString& context);
// The book-out's id: "id\s*([0-9]{1,})", 0 when there is none.
long long ParseContextId(const QString& context);

// Date texts of the statements: a day's bounds as "#mm-dd-yyyy 00:00:00#" and "#mm-dd-yyyy 23:59:59#" pieces, and
// the date only as quoted text "yyyy/MM/dd" for inserts.
QString DayStartText(const QDate& date); // "mm-dd-yyyy 00:00:00"
QString DayEndText(const QDate& date);   // "mm-dd-yyyy 23:59:59"
QString QuotedDate(const QDate& date);   // "'yyyy/MM/dd'"
// A date of a scalar look-up (min or max), or `fallback` when it gives none.
QDate ScalarDate(const QString& sql, const QDate& fallback);

// The open quantity of a book-out: its own (negative) quantity plus its book-ins; 0 on any failure.
Currency GetBookOutBalance(long long bookOutId);
QString BookOutBalanceSql(long long bookOutId);

// The statement of the open book-outs: rows, or the first or last date when wantDates is set.
QString BookOutListSql(bool wantDates, bool wantMax, int categoryId, const QDate& dateFrom, const QDate& dateTo);
// The open book-outs, one id each, in the list's order.
QString OpenBookOutIdsSql();
// The look-up of one open book-out for the list, with its open quantity spliced in: abs in the bracket, with its
// sign in [qty]; the book-out's own stocktakeid comes last.
QString BookOutRowSql(long long bookOutId, Currency openQuantity, int categoryId);

// The item grid and the item list workbook.
QString EquipmentGridSql(int categoryId);
QString EquipmentListSql(int categoryId);
// Who still has what, for one category.
QString BookOutSummarySql(int categoryId);
// The statement of one item: carried forward then each movement in the range.
QString ItemStatementSql(int itemId, const QDate& dateFrom, const QDate& dateTo);

// One movement as the entry screen saves it (after its checks).
struct EquipmentEntry {
    int mode = kOpeningBalance;
    int categoryId = 0;      // SelectedCategoryId
    int itemId = 0;          // SelectedItemId; 0 for a new item
    QString description;     // txtDesc: the item's name in modes 0 and 6, the person in modes 1 and 2
    Currency quantity;       // negative for a book-out
    Currency cost;           // txtCostBuy
    QDate date;              // dtpTrans
    long long bookOutId = 0; // mode 1: the book-out returned against
    long long bookOutStockTakeId = 0;
};

// The writes, each one statement or one recordset update; they throw DbError or VbError as the store does.
int WriteEquipmentItem(EquipmentEntry& entry); // toerinv; keeps the IID in entry.itemId
long long AddStockTakeHeader(const QDate& date, int categoryId, const QString& description);
long long AddEquipmentTrans(const EquipmentEntry& entry); // its header first, then the ledger row
void UpdateStock(const EquipmentEntry& entry);
void LinkBookIn(long long bookInId, long long bookOutId);
void CloseBookOut(long long bookOutId);
// The writes of a movement in their order (item, header, ledger row, stock, book-in link and closing). Returns
// the new ledger id, 0 in mode 6.
long long WriteEquipmentMovement(EquipmentEntry& entry);
