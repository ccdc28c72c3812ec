#include "ServiceReports.h"

#include "Database.h"
#include "FlexGrid.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QHash>
#include <QStringList>

namespace {

QString IdList(const QList<int>& ids) {
    QStringList parts;
    for (int id : ids)
        parts << QString::number(id);
    return parts.isEmpty() ? QString("0") : parts.join(",");
}

// The workbook's headings: the first nine columns from a, the reference and the note one further (k, l), so
// that j stands empty between the reading and the reference.
int HeadingColumn(int fieldIndex) {
    return fieldIndex < 9 ? fieldIndex + 1 : fieldIndex + 2;
}

constexpr int kLabourColumn = 13; // m

} // namespace

QString ServiceStatement(const QList<int>& vehicleIds, const QString& from, const QString& to, bool transIdsOnly,
                         bool first, bool last) {
    QString s;
    if (first)
        s = "SELECT min(vdiens_allocated.Date)";
    else if (last)
        s = "SELECT max(vdiens_allocated.Date)";
    else if (transIdsOnly)
        s = "SELECT vdiens_allocated.Transid";
    else
        s = "SELECT vdiens_allocated.Date" + QString(" ,[CC_CostCatagory] as [Category]") +
            " ,strconv(sup_desc,3) as Supplier" + " ,strconv(dept.description,3) as Department" +
            " , strconv(maak,3) as Make" + " , strconv(Model,3) as [Veh Model]" + " , regnr as [Reg Nr]" +
            " , cdbl(vdiens_allocated.Cost) as [R Cost]" + " , cdbl(kilometers) as Km" +
            " , iif(Reference is null, 'None',Reference) as [Reference:]" + " , Note";
    s += " FROM (((vdiens_allocated inner join voertuig ";
    s += " on voertuig.transid = vdiens_allocated.vechileid)";
    s += " inner join vecsupplier ";
    s += " on   [VecSupplier].[SUP_No]= vdiens_allocated.supplierid)";
    s += " inner join costcat ";
    s += " on costcat.CC_IID = vdiens_allocated.CostCategoryID)";
    s += " inner join departments as dept ";
    s += " on dept.ID = voertuig.deptid";
    s += " WHERE vdiens_allocated.VechileID IN (" + IdList(vehicleIds) + ")";
    if (!first && !last) {
        s += " AND vdiens_allocated.Date >= '" + from + "'";
        s += " AND vdiens_allocated.Date <= '" + to + "'";
        s += " ORDER BY vdiens_allocated.Date, vdiens_allocated.Transid";
    }
    return s;
}

QString ServiceDateFirst(const QList<int>& vehicleIds) {
    return GetScalar(db(), ServiceStatement(vehicleIds, "", "", false, true, false), "");
}

QString ServiceDateLast(const QList<int>& vehicleIds) {
    return GetScalar(db(), ServiceStatement(vehicleIds, "", "", false, false, true), "");
}

int ServiceHistory_Show(FlexGrid& grid, const QList<int>& vehicleIds, const QString& from, const QString& to,
                        const QString& meterName) {
    const QString heading =
        "Date|Category|Supplier|Department|Make|Model|Reg Nr|Cost|" + meterName + "|Reference|Note|";
    grid.Clear();
    grid.SetRows(1);
    grid.SetCols(static_cast<int>(heading.count('|')) + 1);
    grid.SetFormatString(heading);
    int rows = 0;
    double total = 0;
    try {
        auto rs = db().OpenRecordset("SELECT * FROM vdiens_allocated WHERE VechileID IN (" + IdList(vehicleIds) +
                                     ") AND Date >= '" + from + "'" + " AND Date <= '" + to + "'" + " ORDER BY Date");
        for (; !rs->Eof(); rs->MoveNext()) {
            const QString lookup =
                "select  [CC_CostCatagory],maak,model,regnr,dept.description as [Department] from ((voertuig " +
                QString("  inner join vdiens_allocated on vdiens_allocated.VechileID = voertuig.transid)") +
                "  inner join costcat on costcat.CC_IID = vdiens_allocated.CostCategoryID)" +
                "  inner join departments as dept on dept.id = voertuig.deptid" +
                " where  vdiens_allocated.[transid] = " + rs->Field("TransID").toString();
            QStringList cells;
            cells << rs->Field("Date").toString();
            cells << GetScalar(db(), lookup, "", 0);
            cells << GetScalar(db(),
                               "SELECT SUP_Desc FROM VecSupplier WHERE SUP_No = " +
                                   QString::number(vb::Val(rs->Field("supplierid").toString())),
                               "");
            cells << GetScalar(db(), lookup, "", 4) << GetScalar(db(), lookup, "", 1) << GetScalar(db(), lookup, "", 2)
                  << GetScalar(db(), lookup, "", 3);
            cells << vb::Format(rs->Field("Cost"), "### ### ##0.00")
                  << vb::Format(rs->Field("Kilometers"), "### ### ##0.00");
            cells << (rs->Field("reference").isNull() ? QString("None") : rs->Field("reference").toString());
            cells << rs->Field("note").toString();
            grid.AddItem(cells.join('\t'));
            total += vb::Val(rs->Field("Cost").toString());
            ++rows;
        }
    } catch (const NumberedError&) {
        // A failing statement leaves the grid as far as it got.
    }
    grid.AddItem(QStringList({"Total", "", "", "", "", "", "", vb::Format(Value(total), "### ### ##0.00")}).join('\t'));
    grid.SetColAlignment(7, flexAlignRightCenter);
    grid.SetColAlignment(8, flexAlignRightCenter);
    return rows;
}

QString ServiceHistory_Print(const QList<ServicePass>& passes, const QString& from, const QString& to) {
    QString saved;
    try {
        REPORT_Workbook_Initialise(true);
        bool firstPass = true;
        for (const ServicePass& pass : passes) {
            if (firstPass)
                xlSheet = xlBook->Worksheets(1);
            else
                xlSheet = xlBook->WorksheetsAdd(xlSheet);
            firstPass = false;
            QString name = pass.meterName;
            xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
            REPxlFmt(xlSheet, "a1", "p1", Value("Service Listing From " + from + " To " + to), 2, 12, true, false,
                     false, true, false, "", xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(20));
            REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "p1", 0);

            auto rs = db().OpenRecordset(ServiceStatement(pass.vehicleIds, from, to, false, false, false));
            for (int f = 0; f < rs->FieldCount(); ++f) {
                const QString cell = COLUMN_Letter(HeadingColumn(f) - 1, true) + "2";
                REPxlFmt(xlSheet, cell, cell, Value(rs->FieldName(f)), 2, 8, true, false, false, false, true, "",
                         xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(25));
            }
            const int rows = xlSheet->Range("a3").CopyFromRecordset(*rs);
            const int last = rows + 2;
            // The reference and the note under their headings, one column further, kept as text.
            if (rows > 0)
                xlSheet->Range("k3", "l" + QString::number(last)).SetNumberFormat("@");
            for (int row = 3; row <= last; ++row) {
                for (int col = 11; col >= 10; --col) {
                    const XlRange source = xlSheet->Cells(row, col);
                    xlSheet->Cells(row, col + 1).SetValue(source.GetValue());
                }
                xlSheet->Cells(row, 10).SetValue(Value());
            }
            if (rows > 0) {
                const XlRange costs = xlSheet->Range("h3", "h" + QString::number(last));
                xlSheet->Cells(last + 1, 8).SetValue(Value(xlApp->WorksheetFunction().Sum(costs)));
                xlSheet->Range("k3", "l" + QString::number(last)).SetWrapText(true);
            }
            xlSheet->Columns("a:a").SetColumnWidth(10);
            xlSheet->Columns("b:b").SetColumnWidth(14);
            xlSheet->Columns("c:c").SetColumnWidth(18);
            xlSheet->Columns("d:d").SetColumnWidth(14);
            xlSheet->Columns("f:f").SetColumnWidth(12);
            xlSheet->Columns("h:i").SetColumnWidth(11);
            xlSheet->Columns("j:j").SetColumnWidth(2);
            xlSheet->Columns("l:l").SetColumnWidth(30);
            int font = 2;
            xlSheet->Columns("a:p").SetFontName(REPORT_FontName(font));
            xlSheet->Columns("a:p").SetFontSize(8);
            xlSheet->Columns("h:i").SetNumberFormat("### ### ##0.00");
            ServiceCostColumns(xlSheet, pass.vehicleIds, from, to);
            REPORT_PageSetup(xlSheet, "$1:$2", "", "Date &D Time &T", "Page #&P Of &N Pages", xl::Landscape,
                             "Service History");
        }
        if (xlBook->SheetsCount() > 0)
            xlBook->Worksheets(1)->Activate();
        saved = REPORT_SaveReport(xlApp, "Reports", "Service List");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        MsgBox("ERROR in ServiceHistory_Print " + e.description());
    }
    REPORT_Workbook_Terminate();
    return saved;
}

void ServiceCostColumns(const XlRef<XlWorksheet>& sheet, const QList<int>& vehicleIds, const QString& from,
                        const QString& to) {
    int col = kLabourColumn;
    auto types = db().OpenRecordset("select [description] from vdiens_costtype");
    for (; !types->Eof(); types->MoveNext()) {
        const QString cell = COLUMN_Letter(col - 1, true) + "2";
        REPxlFmt(sheet, cell, cell, types->Field("Description"), 2, 8, true, false, false, false, true, "",
                 xl::Continuous, xl::Center, xl::Center, xl::Thin, 0, Value(25));
        ++col;
    }
    const QHash<QString, int> columnOf = {{"parts", 14}, {"out work", 15}, {"consumables", 16}};
    auto services = db().OpenRecordset(ServiceStatement(vehicleIds, from, to, true, false, false));
    for (int row = 3; !services->Eof(); services->MoveNext(), ++row) {
        const QString id = services->Field(0).toString();
        const QString labour = GetScalar(db(),
                                         " select value2 from vdiens_extra  " +
                                             QString(" where costtype = 'Labour'  ") + " and historyid = " + id,
                                         "0");
        sheet->Cells(row, kLabourColumn).SetValue(Value(vb::Val(labour)));
        auto pivot = db().OpenRecordset("Transform Sum(Value1)" + QString(" select  '' as [-] from vdiens_extra  ") +
                                        " where costtype <> 'Labour'  " + " and historyid = " + id + " group by  ''" +
                                        " Pivot costtype");
        if (!pivot->Eof()) {
            for (int f = 0; f < pivot->FieldCount(); ++f) {
                const int target = columnOf.value(pivot->FieldName(f).toLower(), 0);
                if (target > 0)
                    sheet->Cells(row, target)
                        .SetValue(Value(pivot->Field(f).isNull() ? 0.0 : pivot->Field(f).toDouble()));
            }
        }
        for (int c = kLabourColumn; c <= 16; ++c) {
            XlRange cell = sheet->Cells(row, c);
            if (cell.GetValue().toString().isEmpty())
                cell.SetValue(Value(0.0));
            cell.SetNumberFormat("### ### ##0.00");
        }
    }
}

QString ServiceHistory_PrintVehicle(int vehicleId) {
    const QList<int> ids{vehicleId};
    const bool hours = GetScalar(db(),
                                 "select voerkat.hours from voertuig inner join voerkat on voerkat.transid = "
                                 "voertuig.catid where voertuig.transid = " +
                                     QString::number(vehicleId),
                                 "False") == "True";
    return ServiceHistory_Print({ServicePass{ids, hours ? "Hours" : "Km"}}, ServiceDateFirst(ids),
                                ServiceDateLast(ids));
}
