// The printed service transaction: the detail of the service in hand and its cost breakdown.
#include "Database.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "MessageService.h"
#include "ReportEngine.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"
#include "frmVoerDiens.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>

namespace {

void Filled(int row, const QString& text, const QString& last, int shade) {
    const QString r = QString::number(row);
    REPxlFmt(xlSheet, "a" + r, last + r, Value(text), 2, 10, true, false, false, true, false, "", xl::Continuous,
             xl::Left, xl::Center, xl::Thin, 0, Value(18));
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a" + r, last + r, shade);
}

} // namespace

QString frmVoerDiens::CostBreakdownSql(const QString& costType, bool distinct) const {
    QString s;
    if (distinct)
        s = "SELECT distinct vdiens_costtype.[description],costtypeid ";
    else if (costType == "Labour")
        s = " SELECT [value1],[value2] ";
    else if (costType == "Parts" || costType == "Consumables")
        s = " SELECT strconv([reference1],3),[value1] ";
    else
        s = " SELECT strconv([reference1],3),strconv([reference2],3),[value1] ";
    s += " FROM [vdiens_extra]";
    s += " inner join vdiens_costtype ";
    s += " on vdiens_costtype.description = vdiens_extra.costtype";
    s += " where historyid =  " + QString::number(CurrentSession().ServiceLinkID);
    if (!costType.isEmpty())
        s += " and vdiens_extra.costtype =  '" + costType + "'";
    s += distinct ? " order by vdiens_costtype.costtypeid" : " order by vdiens_extra.transid";
    return s;
}

void frmVoerDiens::PrintServiceDetail() {
    if (MsgBox("Print Service Detail?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Service Detail";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
        ServiceDetail_Sheet();
        CostBreakdown_Sheet();
        xlSheet->Columns("a:c").SetColumnWidth(15);
        // The rows under the title at a height of 13 points (the one property that selector 7 sets).
        REPORT_ToExcel_FormatOne(xlSheet, "a2", "c" + QString::number(std::max(2, xlRow - 1)), 7, Value(), 2, 9, false,
                                 false, false, false, false, "", 1, xl::Left, xl::Center, 2, 0, Value(13));
        REPORT_SaveReport(xlApp, "Services", "Service Transaction");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in PrintServiceDetail " + e.description());
    }
    REPORT_Workbook_Terminate();
}

void frmVoerDiens::ServiceDetail_Sheet() {
    xlRow = 1;
    Filled(xlRow, "Service Detail", "c", 0);
    ++xlRow;
    const bool history = CurrentSession().ServiceMode == 0 && !Grid1->isHidden() && Grid1->Rows() > 1;
    auto fromGrid = [&](int col) { return Grid1->TextMatrix(Grid1->RowSel(), col); };
    struct Line {
        const char* label;
        QString value;
        const char* format;
    };
    const Line lines[] = {
        {"Vehicle Category", history ? fromGrid(svccol::VehCategory) : Combo2->currentText(), ""},
        {"Vehicle", history ? fromGrid(svccol::Vehicle) : Combo3->currentText(), ""},
        {"Date", history ? fromGrid(svccol::Date) : txtDyy->text(), ""},
        {"Supplier", history ? fromGrid(svccol::Supplier) : txtSupplier->text(), ""},
        {"Cost Category", history ? fromGrid(svccol::CostCategory) : txtCostCat->text(), ""},
        {"Reference", history ? fromGrid(svccol::Reference) : txtReference->text(), "00000"},
        {"Km Reading", history ? fromGrid(svccol::Km) : txtKm->text(), "### ### ##0.00"},
        {"Note", history ? NoteForShow(fromGrid(svccol::Note)) : txtNota->toPlainText(), ""},
        {"Cost", history ? fromGrid(svccol::Cost) : txtKos->text(), "### ### ##0.00"},
    };
    for (const Line& line : lines) {
        const QString r = QString::number(xlRow);
        REPxlFmt(xlSheet, "a" + r, "a" + r, Value(line.label), 2, 9, true, false, false, false, false, "",
                 xl::Continuous, xl::Left, xl::Center, xl::Thin, 0, Value(15));
        const QString format = line.format;
        REPxlFmt(xlSheet, "b" + r, "c" + r, Value(vb::Trim(line.value)), 2, 9, false, false, false, true,
                 format.isEmpty(), format, xl::Continuous, xl::Left, xl::Center, xl::Thin, 0, Value(15));
        ++xlRow;
    }
    ++xlRow;
}

void frmVoerDiens::CostBreakdown_Sheet() {
    auto types = db().OpenRecordset(CostBreakdownSql("", true));
    if (types->Eof()) {
        Filled(xlRow, "No Cost Breakdown", "c", 1);
        ++xlRow;
        return;
    }
    Filled(xlRow, "Cost Breakdown", "c", 0);
    ++xlRow;
    for (; !types->Eof(); types->MoveNext()) {
        const QString type = types->Field(0).toString();
        Filled(xlRow, type, "c", 1);
        ++xlRow;
        QStringList headings;
        if (type == "Labour")
            headings = {"Hours", "Cost"};
        else if (type == "Parts" || type == "Consumables")
            headings = {"Description", "Cost"};
        else
            headings = {"Supplier", "Description", "Cost"};
        for (int c = 0; c < headings.size(); ++c) {
            const QString cell = COLUMN_Letter(c, true) + QString::number(xlRow);
            REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 9, true, false, false, false, false, "",
                     xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(15));
        }
        ++xlRow;
        auto lines = db().OpenRecordset(CostBreakdownSql(type, false));
        const int first = xlRow;
        const int count = xlSheet->Range("a" + QString::number(xlRow)).CopyFromRecordset(*lines);
        xlRow += count;
        if (count > 0) {
            const QString costColumn = COLUMN_Letter(static_cast<int>(headings.size()) - 1, true);
            xlSheet->Range(costColumn + QString::number(first), costColumn + QString::number(xlRow - 1))
                .SetNumberFormat("### ### ##0.00");
            if (type == "Labour")
                xlSheet->Range("a" + QString::number(first), "a" + QString::number(xlRow - 1))
                    .SetNumberFormat("### ### ##0.00");
        }
    }
}
