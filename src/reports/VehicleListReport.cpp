#include "FlexGrid.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "ReportSheets.h"
#include "Session.h"
#include "Vb.h"

namespace {

const QString kPattern = QStringLiteral("### ### ##0.00");

void NextSheet() {
    REPORT_AddSheet(xlBook);
    REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
    xlSheet = xlBook->Worksheets(REPORT_GetSheetIndex());
}

void VehicleSheetHeader(const ReportRun& run, const QString& lastColumn) {
    WriteTitleRow(xlSheet, lastColumn.isEmpty() ? "i" : lastColumn,
                  "Vehicle Listing From " + run.from + " To " + run.to);
}

// One tab: its sheet name, the title, the headings and the rows of the block. Returns the last data row.
int VehicleTab(const ReportRun& run, int part, const QString& sheetName, const QString& lastColumn,
               const QString& ids) {
    QString name = sheetName;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
    xlRow = 1;
    VehicleSheetHeader(run, lastColumn);
    xlRow = 2;
    auto rs = db().OpenRecordset(VehicleStatement(part, true, true, ids), RecordsetType::Snapshot);
    WriteFieldHeadings(xlSheet, *rs);
    const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
    return 2 + rows;
}

void FontOver(const QString& first, const QString& last) {
    int font = 2;
    XlRange range = xlSheet->Range(first, last);
    range.SetFontName(REPORT_FontName(font));
    range.SetFontSize(8);
}

void PrintVehicleList_Tab1(const ReportRun& run, const QString& kind, const QString& ids) {
    try {
        const int last = VehicleTab(run, 1, "Veh Information " + kind, "i", ids);
        const QString l = QString::number(std::max(last, 3));
        xlSheet->Columns("a:a").SetColumnWidth(14);
        xlSheet->Columns("b:b").SetColumnWidth(14);
        xlSheet->Columns("c").SetColumnWidth(11);
        xlSheet->Columns("d").SetColumnWidth(10);
        xlSheet->Columns("e").SetColumnWidth(7);
        xlSheet->Columns("f").SetColumnWidth(10);
        xlSheet->Columns("g:h").SetColumnWidth(12);
        FontOver("a1", "k" + l);
        xlSheet->Columns("g:g").SetNumberFormat(kPattern);
        xlSheet->Range("e3", "e" + l).SetHorizontalAlignment(xl::Center);
        xlSheet->Range("g3", "h" + l).SetHorizontalAlignment(xl::Center);
        ReportPageSetup(xlSheet);
    } catch (const NumberedError& e) {
        MsgBox("ERROR In  PrintVehicleList_Tab1 " + e.description());
    }
}

void PrintVehicleList_Tab2(const ReportRun& run, const QString& kind, const QString& ids) {
    try {
        const int last = VehicleTab(run, 2, "Additional Info " + kind, "i", ids);
        xlSheet->Columns("a:a").SetColumnWidth(14);
        xlSheet->Columns("b").SetColumnWidth(14);
        xlSheet->Columns("c").SetColumnWidth(11);
        xlSheet->Columns("d").SetColumnWidth(12);
        xlSheet->Columns("e").SetColumnWidth(11);
        xlSheet->Columns("f:i").SetColumnWidth(13);
        FontOver("a1", "i" + QString::number(last + 1));
        xlSheet->Columns("f:i").SetNumberFormat(kPattern);
        if (last >= 3) {
            const QString l = QString::number(last);
            for (const char* column : {"f", "h", "i"}) {
                XlRange cell = xlSheet->Range(column + QString::number(last + 1));
                cell.SetValue(Value(SheetSum(xlSheet, column + QString("3"), column + l)));
                cell.SetFontSize(8);
            }
        }
        ReportPageSetup(xlSheet);
    } catch (const NumberedError& e) {
        MsgBox("ERROR In  PrintVehicleList_Tab2 " + e.description());
    }
}

void PrintVehicleList_Tab3(const ReportRun& run, const QString& kind, const QString& ids) {
    const int last = VehicleTab(run, 3, "Specifications " + kind, "h", ids);
    xlSheet->Columns("a:a").SetColumnWidth(14);
    xlSheet->Columns("b:b").SetColumnWidth(14);
    xlSheet->Columns("c").SetColumnWidth(11);
    xlSheet->Columns("d:h").SetColumnWidth(13);
    FontOver("a1", "h" + QString::number(std::max(last, 3)));
    xlSheet->Columns("d").SetNumberFormat("### ### ##0");
    ReportPageSetup(xlSheet);
}

} // namespace

QString VehicleStatement(int part, bool withHead, bool withTail, const QString& ids) {
    QString sql;
    if (withHead)
        sql += QString("SELECT strconv(maak,3) as Make") + " ,strconv(Model,3) as [Veh Model] " + " ,regnr as [Reg Nr]";
    switch (part) {
    case 1:
    case 4:
        sql += QString(" ,iif(not hours,'Kilometer','Hour') as [Odometer]") + " ,iif(rebated,'Yes','No') as [Rebate]" +
               " ,cdbl(KM) as Reading" + " ,dept.description as [Department]" +
               " ,licenceduedate as [Licence Renewal Date]" + " ,serviceduedate as [Service Renewal Date]";
        break;
    case 2:
    case 5:
        sql += QString(" ,enjin as [Engine Nr]") + " ,adatum as[Purchase Date]" + " ,awaarde as[Purchase Price]" +
               " ,depwaarde as [Depreciation %]" + " ,cdbl(boek) as [Book Value]" + " ,vwaarde as [Insured Value]";
        break;
    case 3:
    case 6:
        sql += QString(" ,FuelTankSize as [Fuel Tank Size]") + " ,batterysize as [Battery Size]" +
               " ,TyreSize as [Tyre Size]" + " ,OilFilterRef as [Oil Filter Info]" + " ,FanbeltRef as [Fanbelt Info]";
        break;
    default:
        break;
    }
    if (withTail)
        sql += QString(" FROM Voertuig ") + " inner join departments as dept on dept.id = voertuig.deptid " +
               " WHERE voertuig.transid in (" + ids + ") " + " ORDER BY ADatum,Maak";
    return sql;
}

void VehicleList_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    const QString ids = run.mergedIds.isEmpty() ? run.VehicleList : run.mergedIds;
    const QString sql = VehicleStatement(1, true, false, ids) + "\n" + VehicleStatement(2, false, false, ids) + "\n" +
                        VehicleStatement(3, false, true, ids);
    auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
    grid.SetCols(rs->FieldCount());
    grid.SetFormatString(FLEX_FieldNames(*rs));
    const QList<int> formatted = {5, 11, 12, 13, 14};
    Currency price, book, insured;
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList cells;
        for (int f = 0; f < rs->FieldCount(); ++f) {
            const Value v = NullToDefault(rs->Field(f), Value(QString()));
            cells << (formatted.contains(f) ? vb::Format(v, "### ##0.00") : v.toString());
        }
        price = price + vb::CCur(Value(vb::Val(rs->Field(11).toString())));
        book = book + vb::CCur(Value(vb::Val(rs->Field(13).toString())));
        insured = insured + vb::CCur(Value(vb::Val(rs->Field(14).toString())));
        grid.AddItem(FLEX_JoinRow(cells));
    }
    if (grid.Rows() < 2)
        return;
    QStringList closing;
    for (int f = 0; f < grid.Cols(); ++f)
        closing << QString();
    closing[11] = vb::Format(Value(price), "### ##0.00");
    closing[13] = vb::Format(Value(book), "### ##0.00");
    closing[14] = vb::Format(Value(insured), "### ##0.00");
    grid.AddItem(FLEX_JoinRow(closing));
}

void PrintVehicleList(ReportRun& run) {
    try {
        run.Message("Starting up");
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        for (int pass = 0; pass <= MeterSheets(run); ++pass) {
            const QString kind = MeterName(run, pass);
            const QString ids = MeterIds(run, pass);
            if (pass > 0)
                NextSheet();
            run.Message("Building Tab 1 of 3");
            PrintVehicleList_Tab1(run, kind, ids);
            NextSheet();
            run.Message("Building Tab 2 of 3");
            PrintVehicleList_Tab2(run, kind, ids);
            NextSheet();
            xlSheet->Select();
            run.Message("Building Tab 3 of 3");
            PrintVehicleList_Tab3(run, kind, ids);
            run.Progress(50.0 * (pass + 1));
        }
        xlBook->Sheets(1)->Select();
        run.Message("Finishing up");
        FinishReport(run, "Vehicle List");
    } catch (const NumberedError& e) {
        MsgBox("ERROR in PrintVehicleList " + e.description());
    }
}
