#include "TankDetail.h"

#include "FlexGrid.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReportSheets.h"
#include "Session.h"
#include "TankSummary.h"
#include "Vb.h"

namespace {

const QString kTable = QStringLiteral("tmpdetail");
const QString kPivot = QStringLiteral("tmpdetailpivot");
const QString kPattern = QStringLiteral("### ### ##0.00");

QString Template() {
    return QString("select") + " 1 as id," + " [batterysize] as [tank name]" + " , '1900/01/01' as [sortDate] " +
           " , [licenceduedate] as [date]" + " , 'Open' as [Detail]" + " ,  [tyresize] as [vehicle]" +
           "  , [awaarde] as [open litres]" + " ,[depwaarde] as [litres added]" + " ,[vwaarde] as [litres out]" +
           " ,[fueltanksize] as [balance]" + " From voertuig" + " where transid = 0";
}

QString Fmt(const Value& v) {
    return v.isNull() || v.isEmpty() ? QString() : vb::Format(v, kPattern);
}

} // namespace

Currency TankOpeningBalance(const ReportRun& run, const QString& tankId) {
    const QString condition = " where tankid in (" + tankId + ")" + " and [datum] < '" + run.from + "'";
    const QString sql = " select sum(amt) from (" + QString(" SELECT sum(val(Liter)) as [amt] FROM FuelPurchase ") +
                        condition + " union all" + " SELECT sum(val(Verlore)) as [amt] FROM " + "tankstock" +
                        condition + " union all" + " SELECT -sum(val(Litres)) as [amt] FROM " + "VecFuel" + condition +
                        ")";
    return vb::CCur(Value(GetScalar(db(), sql, "0")));
}

bool ShowDetail_Preflight() {
    try {
        if (!TableExists(db(), kTable).isEmpty())
            db().Execute("delete from " + kTable);
        else
            db().Execute(" select * into " + kTable + " from (" + Template() + ")");
        db().RefreshTableDefs();
        return true;
    } catch (const NumberedError& e) {
        MsgBox("ERROR in ShowDetail_Preflight " + e.description());
        return false;
    }
}

bool ShowDetail_UpdateTable(const ReportRun& run, const QStringList& tankIds) {
    try {
        const QString tankList = tankIds.join(",");
        run.Message("Updating tables...");
        if (TableExists(db(), kPivot).isEmpty())
            db().Execute("select *  into " + kPivot + " from " + kTable + " where id=0");
        else
            db().Execute("delete from " + kPivot);
        db().Execute("delete * from " + kTable);
        const QString condition = " where tankid in (" + tankList + ") " + " and p.datum between '" + run.from + "' " +
                                  " and  '" + run.to + "' ";
        for (const QString& tank : tankIds) {
            db().Execute(" INSERT INTO " + kTable + " SELECT * FROM(" + " select strconv(tanknaam,3) as [tank name]" +
                         " ,'1901/01/01' as [sortdate] " + " ,'" + run.fromShown + "' as [date]" +
                         " , 'open litres' as [detail]" + " , 'Opening Balance' as [vehicle]" + " ," +
                         TankOpeningBalance(run, tank).toString() + " as [open litres] " +
                         " from tanks where transid in (" + tank + "))");
        }
        QString moves = " INSERT INTO " + kTable + " SELECT * FROM (";
        moves += " select strconv(tanknaam,3) as [tank name]";
        moves += " ,p.datum as [sortdate],p.datum as [date]";
        moves += " ,  'litres added' as [detail] ";
        moves += " ,  'Fuel Purchase (' & invoiceref & ')' as [vehicle] ";
        moves += " ,liter as [open litres] from fuelpurchase p ";
        moves += " inner join tanks t on t.transid = p.tankid ";
        moves += condition;
        moves += " Union All";
        moves += " select  Strconv(tanknaam,3) as [tank name]";
        moves += " ,p.datum as [sortdate] ,p.datum as [date]";
        moves += " ,  'litres added' as [detail]";
        moves += " ,  'Tank Stocktake (Gain)' as [vehicle]";
        moves += " ,verlore as [open litres]  from tankstock p ";
        moves += " inner join tanks t on t.transid = p.tankid ";
        moves += condition;
        moves += " and val(verlore) > 0";
        moves += " Union All";
        moves += " select  Strconv(tanknaam,3) as [tank name]";
        moves += " ,p.datum as [sortdate] ,p.datum as [date]";
        moves += " ,  'litres out' as [detail]";
        moves += " ,  'Tank Stocktake (Loss)' as [vehicle]";
        moves += " , -val(verlore) as [open litres]  from tankstock p ";
        moves += " inner join tanks t on t.transid = p.tankid ";
        moves += condition;
        moves += " and val(verlore) < 0";
        moves += " Union All";
        moves += " select Strconv(tanknaam,3) as [tank name]";
        moves += " ,p.datum as [sortdate],p.datum as [date]";
        moves += " ,'litres out' as [detail]";
        moves += " ,strconv(maak & ' ' & regnr & ' (' & kmread & ')',3) as   [vehicle] ";
        moves += " , litres as [open litres]  ";
        moves += " from ( (vecfuel p inner join tanks t on t.transid = p.tankid) ";
        moves += " inner join voertuig  v on  v.transid = p.voertuigid) ";
        moves += condition;
        moves += ")";
        db().Execute(moves);

        run.Message("Finishing up");
        auto rs = db().OpenRecordset(QString(" Transform Sum([open litres])") +
                                         " select [tank name], sortdate,date,detail, vehicle" + " From " + kTable +
                                         " group by [tank name],sortdate,date,detail,vehicle" + " Pivot detail",
                                     RecordsetType::Snapshot);
        const int count = CountRecords(*rs);
        int counter = 1;
        Currency opening, balance;
        QString held;
        if (count > 0) {
            rs->MoveFirst();
            held = rs->Field("tank name").toString();
        }
        while (!rs->Eof()) {
            double added = 0, out = 0;
            const QString tankName = rs->Field("tank name").toString();
            const QString detail = rs->Field("Detail").toString();
            const QString vehicle = rs->Field("Vehicle").toString();
            if (detail == "open litres") {
                opening = vb::CCur(rs->Field("open litres"));
                balance = opening;
            }
            if (detail == "litres out") {
                out = vb::CDbl(rs->Field("litres out"));
                // A stock-take row would carry its sign here; the labels have a suffix, so every row subtracts.
                if (vehicle == "tank stocktake" && out > 0)
                    balance = balance + Currency::fromDouble(out);
                else if (vehicle == "tank stocktake" && out < 0)
                    balance = balance - Currency::fromDouble(std::abs(out));
                else
                    balance = balance - Currency::fromDouble(out);
            }
            if (detail == "litres added") {
                added = vb::CDbl(rs->Field("Litres Added"));
                balance = balance + Currency::fromDouble(added);
            }
            db().Execute("insert into " + kPivot + " ([id],[tank name],[sortdate],[date],[vehicle]" +
                         " ,[open litres],[litres added]" + " ,[litres out],[balance])" + " values (" +
                         QString::number(counter) + ",'" + tankName + "','" + rs->Field("sortdate").toString() + "','" +
                         rs->Field("date").toString() + "','" + vehicle + "'," + opening.toString() + "," +
                         SqlNumber(added) + "," + SqlNumber(out) + "," + balance.toString() + ")");
            ++counter;
            run.Message("Updating balances Row " + QString::number(counter - 1));
            run.Progress(100.0 * (counter - 1) / std::max(count, 1));
            rs->MoveNext();
            if (rs->Eof())
                break;
            if (rs->Field("tank name").toString().toLower() != held.toLower()) {
                opening = Currency();
                held = rs->Field("tank name").toString();
            }
        }
        return true;
    } catch (const NumberedError& e) {
        MsgBox("ERROR in ShowDetail_UpdateTable " + e.description());
        return false;
    }
}

void ShowDetail(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    if (run.CatKmList.isEmpty()) {
        MsgBox("Select a Tank");
        return;
    }
    run.Message("Getting things ready...");
    if (!ShowDetail_Preflight())
        return;
    run.Message("Building...");
    grid.SetFormatString("Fuel Tank|Date|Vehicle|Open Litres|Litres +|Litres -|Balance");
    if (!ShowDetail_UpdateTable(run, run.CatKmList.split(',')))
        return;
    run.Message("Displaying rows");
    auto rs = db().OpenRecordset(QString(" SELECT") + " [tank Name]" + " ,[sortDate]" + " ,[date]" + " ,[vehicle]" +
                                     " ,[open litres]" + " ,[litres added]" + " ,[litres out]" + " ,[balance]" +
                                     " From [tmpdetailpivot]",
                                 RecordsetType::Snapshot);
    const int count = CountRecords(*rs);
    double sumAdded = 0, sumOut = 0;
    int row = 0;
    for (; count > 0 && !rs->Eof(); rs->MoveNext()) {
        grid.AddItem(
            FLEX_JoinRow({rs->Field("tank name").toString(), rs->Field("Date").toString(),
                          rs->Field("Vehicle").toString(), Fmt(rs->Field("open litres")),
                          Fmt(rs->Field("Litres Added")), Fmt(rs->Field("litres out")), Fmt(rs->Field("Balance"))}));
        sumAdded += vb::Val(rs->Field("Litres Added").toString());
        sumOut += vb::Val(rs->Field("litres out").toString());
        run.Message("Updating row " + QString::number(++row));
        run.Progress(100.0 * row / count);
    }
    const double opening = vb::Val(
        GetScalar(db(), QString("select [open litres] from tmpdetailpivot") + " where [sortDate] = '1901/01/01'", "0"));
    grid.AddItem(FLEX_JoinRow(
        {"", "", "", "", vb::Format(Value(opening + sumAdded), kPattern), vb::Format(Value(sumOut), kPattern)}));
    grid.SetRow(grid.Rows() - 1);
    for (int c = 0; c < grid.Cols(); ++c) {
        grid.SetCol(c);
        grid.SetCellBackColor(0xE0E0E0u);
    }
    run.Message("Done");
}

void ShowDetail_Print(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    run.Message("Starting up...");
    REPORT_Workbook_Initialise(true);
    REPORT_SetSheetIndex(1);
    xlSheet = xlBook->Worksheets(1);
    QString name = run.tankNames;
    xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
    xlRow = 1;
    WriteTitleRow(xlSheet, "g", run.title + " From " + run.from + " To " + run.to);
    xlRow = 2;
    for (int c = 0; c < grid.Cols(); ++c) {
        const QString cell = COLUMN_Letter(c, true) + "2";
        REPxlFmt(xlSheet, cell, cell, Value(grid.TextMatrix(0, c)), 2, 10, true, false, false, true, true, "", 1,
                 xl::Center, xl::Center, 2, 0, Value(18));
    }
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "g2", 0);
    db().Execute(QString("update tmpdetailpivot set [litres added] = [open litres]  ") +
                 " where [sortDate] = '1901/01/01'");
    auto rs = db().OpenRecordset(
        QString(" select [tank name],[date],[vehicle],[open litres],[litres added],[litres out],[balance]") +
            " FROM [tmpdetailpivot]",
        RecordsetType::Snapshot);
    const int rows = xlSheet->Range("a3").CopyFromRecordset(*rs);
    const int last = 2 + rows;
    xlRow = last + 1;
    if (rows > 0) {
        for (const char* column : {"d", "e", "f", "g"}) {
            XlRange cell = xlSheet->Range(column + QString::number(xlRow));
            cell.SetValue(Value(SheetSum(xlSheet, column + QString("3"), column + QString::number(last))));
            cell.SetNumberFormat(kPattern);
        }
    }
    run.Message("Formatting");
    run.Progress(90);
    xlSheet->Columns("a:a").SetColumnWidth(15);
    xlSheet->Columns("b:b").SetColumnWidth(10);
    xlSheet->Columns("c:c").SetColumnWidth(25);
    xlSheet->Columns("d:g").SetColumnWidth(10);
    xlSheet->Columns("d:g").SetNumberFormat(kPattern);
    int font = 2;
    XlRange used = xlSheet->Range("a1", "g" + QString::number(xlRow));
    used.SetFontName(REPORT_FontName(font));
    used.SetFontSize(8);
    ReportPageSetup(xlSheet);
    FinishReport(run, run.title);
}
