#include "FillReportGrid.h"

#include "FlexGrid.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Rebate.h"
#include "ReportRegistry.h"
#include "Session.h"
#include "Vb.h"

namespace {

const QString kPattern = QStringLiteral("### ### ##0.00");

QString Cell(const Value& v) {
    return vb::Format(v, kPattern);
}

} // namespace

void FillReportGrid(ReportRun& run, const QString& from, const QString& to, bool forPrint) {
    FlexGrid& grid = *run.grid;
    run.Message("Getting things ready");
    FLEX_Reset(grid);
    const ReportProcedures* procedures = FindReport(run.title);
    if (!procedures || !procedures->statement)
        throw VbError(5, "Invalid procedure call or argument");
    auto rs = db().OpenRecordset(procedures->statement(run, from, to, forPrint), RecordsetType::Snapshot);
    const int count = CountRecords(*rs);
    if (count == 0) {
        MsgBox("Nothing to show for " + run.title, MsgButtons::Ok, MsgIcon::Information);
        if (run.title == "Rebate Applicable")
            run.Message("No Vehicle(s) with Rebate Applicable");
        return;
    }
    const int fields = rs->FieldCount();
    grid.SetCols(fields);
    run.Message("Showing Rows");
    grid.SetFormatString(FLEX_FieldNames(*rs));

    const bool detailed = run.title == "Detailed Veh. Fuel Usage";
    const bool monthly = run.title == "Monthly Veh. Fuel Usage";
    const bool rebate = run.title == "Rebate Applicable";
    double litres = 0, rebated = 0, nonRebated = 0;
    if (detailed || monthly) {
        grid.SetRows(count + 1);
        int row = 1;
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext(), ++row) {
            for (int f = 0; f < fields; ++f) {
                const Value v = NullToDefault(rs->Field(f), Value(QStringLiteral("0")));
                QString text;
                if (monthly && f == 0)
                    text = vb::Format(v, "mmmm yyyy");
                else if (rs->FieldName(f) == "Date")
                    text = v.toString();
                else
                    text = FLEX_NumberText(v);
                grid.SetTextMatrix(row, f, text);
            }
            run.Progress(100.0 * row / count);
        }
    } else {
        int row = 0;
        for (rs->MoveFirst(); !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            for (int f = 0; f < fields; ++f)
                cells << FLEX_FieldText(rs->FieldName(f), rs->Field(f));
            if (rebate && fields > 6) {
                litres += vb::Val(rs->Field(4).toString());
                rebated += vb::Val(rs->Field(5).toString());
                nonRebated += vb::Val(rs->Field(6).toString());
            }
            grid.AddItem(FLEX_JoinRow(cells));
            run.Progress(100.0 * ++row / count);
        }
    }
    if (rebate) {
        const int pct = RebateSetting(1);
        const double rand = RebateSetting(0) / 100.0;
        const double share = rebated * pct / 100.0;
        grid.AddItem("");
        grid.AddItem("\t\t\tTotal Litres\t" + Cell(litres) + "\t" + Cell(rebated) + "\t" + Cell(nonRebated));
        grid.AddItem("\t\t\t " + QString::number(pct) + "% of Litres\t" + Cell(share));
        grid.AddItem("\t\t\t " + QString::number(pct) + "% @ R" + QString::number(rand) + "\t" + Cell(share * rand));
    }
    run.Message(QString::number(count) + " Rows");
}
