#include "EquipmentWorkbooks.h"

#include "Database.h"
#include "EquipmentLedger.h"
#include "Hourglass.h"
#include "MessageService.h"
#include "ReportEngine.h"
#include "Session.h"
#include "Vb.h"

#include <functional>

namespace {

const QString kFolder = QStringLiteral("Equipment");

void Title(const QString& lastColumn, const QString& text) {
    REPxlFmt(xlSheet, "a1", lastColumn + "1", Value(text), 2, 14, true, false, false, true, false, "", 1, xl::Center,
             xl::Center, 2, 0, Value(20));
}

void Headings(int row, const QStringList& headings) {
    for (int c = 0; c < headings.size(); ++c) {
        const QString cell = COLUMN_Letter(c, true) + QString::number(row);
        REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 9, true, false, false, false, true, "", 1, xl::Center,
                 xl::Center, 2, 0, Value(18));
    }
}

// Runs one workbook from start to save; a failure shows "ERROR in " and the routine's name.
QString Build(const QString& routine, const QString& sheetName, const QString& reportName,
              const std::function<void()>& body) {
    QString saved;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString name = sheetName;
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
        body();
        saved = REPORT_SaveReport(xlApp, kFolder, reportName);
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in " + routine + " " + e.description());
    }
    REPORT_Workbook_Terminate();
    return saved;
}

} // namespace

QString WriteEquipmentListWorkbook(int categoryId, const QString& categoryName) {
    return Build("EquipmentList", "Equipment List", "Equipment List", [&] {
        Title("d", "Equipment In Category " + categoryName);
        Headings(2, {"Item", "Quantity", "Price Per Item", "Value"});
        auto rs = db().OpenRecordset(EquipmentListSql(categoryId));
        xlSheet->Range("a3").CopyFromRecordset(*rs);
        xlSheet->Columns("a:a").SetColumnWidth(35);
        xlSheet->Columns("b:d").SetColumnWidth(15);
        xlSheet->Columns("b:b").SetNumberFormat("### ##0.00");
        xlSheet->Columns("c:c").SetNumberFormat("### ###.0000");
        xlSheet->Columns("d:d").SetNumberFormat("### ##0.00");
    });
}

QString WriteItemStatementWorkbook(int itemId, const QString& itemName, const QDate& dateFrom, const QDate& dateTo) {
    return Build("PrintTransactions", "Transactions", "Equipment Transactions", [&] {
        Title("d", "Transactions For " + itemName + " From " + dateFrom.toString("yyyy/MM/dd") + " To " +
                       dateTo.toString("yyyy/MM/dd"));
        Headings(2, {"Date", "Transaction", "Remarks", "Qty"});
        double opening = 0, bookOut = 0, bookIn = 0, stockTake = 0;
        int row = 3;
        auto rs = db().OpenRecordset(ItemStatementSql(itemId, dateFrom, dateTo));
        for (; !rs->Eof(); rs->MoveNext(), ++row) {
            const QString kind = rs->Field("transaction").toString();
            const double qty = rs->Field("qty").isNull() ? 0.0 : rs->Field("qty").toDouble();
            xlSheet->Cells(row, 1).SetValue(Value(vb::Format(rs->Field("date"), "yyyy-mm-dd hh:nn:ss")));
            xlSheet->Cells(row, 2).SetValue(Value(kind));
            xlSheet->Cells(row, 3).SetValue(rs->Field("Remarks"));
            xlSheet->Cells(row, 4).SetValue(Value(qty));
            const QString lower = kind.toLower();
            if (lower == "opening balance")
                opening += qty;
            else if (lower == "book out")
                bookOut += qty;
            else if (lower == "book in")
                bookIn += qty;
            else if (lower == "stock take")
                stockTake += qty;
        }
        ++row;
        REPxlFmt(xlSheet, "a" + QString::number(row), "d" + QString::number(row), Value("Transaction Summary"), 2, 10,
                 true, false, false, true, false, "", 1, xl::Left, xl::Center, 2, 0, Value(18));
        const std::pair<const char*, double> sums[4] = {
            {"Opening Balance", opening}, {"Book Out", bookOut}, {"Book In", bookIn}, {"Stock Take", stockTake}};
        for (const auto& [label, sum] : sums) {
            ++row;
            xlSheet->Cells(row, 3).SetValue(Value(QString(label)));
            xlSheet->Cells(row, 4).SetValue(Value(sum));
        }
        ++row;
        xlSheet->Cells(row, 3).SetValue(Value("Closing Balance"));
        xlSheet->Cells(row, 4).SetValue(Value(opening + bookOut + bookIn + stockTake));
        xlSheet->Range("c" + QString::number(row), "d" + QString::number(row)).SetFontBold(true);
        xlSheet->Columns("a:a").SetColumnWidth(20);
        xlSheet->Columns("b:b").SetColumnWidth(18);
        xlSheet->Columns("c:c").SetColumnWidth(30);
        xlSheet->Columns("d:d").SetColumnWidth(12);
        xlSheet->Columns("d:d").SetNumberFormat("### ##0.00");
    });
}

QString WriteMovementForm(int mode, const QString& context, const QString& person, Currency quantity,
                          const QDate& date) {
    const QString kind = mode == kBookIn ? "Book In" : "Book Out";
    return Build("PrintForm", kind, "Equipment " + kind, [&] {
        Title("d", "Equipment " + kind);
        const std::pair<QString, Value> lines[4] = {{"Equipment", Value(context)},
                                                    {"Person", Value(person)},
                                                    {"Quantity", Value(quantity.toDouble())},
                                                    {"Date", Value(date.toString("yyyy/MM/dd"))}};
        int row = 3;
        for (const auto& [label, value] : lines) {
            xlSheet->Cells(row, 1).SetValue(Value(label));
            xlSheet->Cells(row, 2).SetValue(value);
            ++row;
        }
        row += 2;
        xlSheet->Cells(row, 1).SetValue(Value("Returned By"));
        row += 3;
        xlSheet->Cells(row, 1).SetValue(Value("Received By:"));
        xlSheet->Columns("a:a").SetColumnWidth(16);
        xlSheet->Columns("b:b").SetColumnWidth(50);
        xlSheet->Cells(5, 2).SetNumberFormat("### ##0.00");
        xlSheet->Cells(5, 2).SetHorizontalAlignment(xl::Left);
    });
}

QString WriteStockTakeListWorkbook(long long stockTakeId, const QString& reason) {
    return Build("StockTakeList", "Stock Take", "Equipment Stock Take", [&] {
        Title("g", "Equipment Stock Take For Stocktake '" + reason);
        Headings(2, {"Item", "On Hand", "Counted", "Difference", "Unit Cost", "Value", "Reason"});
        auto rs = db().OpenRecordset(
            "select  strconv(b.[desc],3)," +
            QString("  trstockqty as [on hand],trstockqty+trqty,a.trqty as [diff],trunitcost, round((trstockqty+trqty) "
                    "* trunitcost,2) as [value],a.trdesc as [reason]") +
            " from ([equipmenttrans] as a  inner join toerinv as b on b.iid = a.equipid)" + " where actionid = 4 " +
            " and stocktakeid = " + QString::number(stockTakeId) + " order by [desc]");
        xlSheet->Range("a3").CopyFromRecordset(*rs);
        xlSheet->Columns("a:a").SetColumnWidth(30);
        xlSheet->Columns("b:f").SetColumnWidth(12);
        xlSheet->Columns("g:g").SetColumnWidth(25);
        xlSheet->Columns("b:f").SetNumberFormat("### ##0.00");
    });
}

QString WriteBookOutSummaryWorkbook(int categoryId, const QString& categoryName) {
    return Build("BookOutSummary", "Booked Out", "Equipment Booked Out", [&] {
        Title("d", "Equipment Booked Out In " + categoryName);
        Headings(2, {"Category", "Item", "Qty Booked Out", "Person"});
        auto rs = db().OpenRecordset(BookOutSummarySql(categoryId));
        xlSheet->Range("a3").CopyFromRecordset(*rs);
        xlSheet->Columns("a:b").SetColumnWidth(25);
        xlSheet->Columns("c:c").SetColumnWidth(15);
        xlSheet->Columns("d:d").SetColumnWidth(30);
        xlSheet->Columns("c:c").SetNumberFormat("### ##0.00");
    });
}
