#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "ReportLists.h"
#include "Session.h"
#include "Vb.h"

namespace {

QString Text(const Value& v) {
    return NullToDefault(v, Value(QString())).toString();
}

QString Money(const Value& v) {
    return v.isNull() || v.isEmpty() ? QString() : vb::Format(v, "###0.00");
}

} // namespace

QString EquipmentDateFirst() {
    return GetScalar(db(), " select min(adatum) from voertuig", "");
}

QString EquipmentDateLast() {
    return GetScalar(db(), " select max(adatum) from voertuig", "");
}

void EquipmentList_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    grid.SetCols(10);
    grid.SetFormatString("Date|Desc|Make|Model|R Purches|Dep%|R Replace|Reff No|Supplier|Qty");
    const QString filter = "IID IN (" + run.VehicleList + ")";
    auto rs = db().OpenRecordset("SELECT * FROM ToerInv WHERE " + filter + " AND ADatum >= " + "'" + run.from + "'" +
                                     " AND ADatum <= " + "'" + run.to + "'" + " ORDER BY ADatum",
                                 RecordsetType::Snapshot);
    double bought = 0, replace = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        grid.AddItem(FLEX_JoinRow({Text(rs->Field("ADatum")), Text(rs->Field("Desc")), Text(rs->Field("Make")),
                                   Text(rs->Field("Model")), Money(rs->Field("AWaarde")), Text(rs->Field("depwaarde")),
                                   Money(rs->Field("VWaarde")), Text(rs->Field("verwys")),
                                   Text(rs->Field("Verskaffer")), Text(rs->Field("Hoeveel"))}));
        bought += vb::Val(Text(rs->Field("AWaarde")));
        replace += vb::Val(Text(rs->Field("VWaarde")));
    }
    if (grid.Rows() > 1)
        grid.AddItem(FLEX_JoinRow(
            {"TOTAL", "", "", "", vb::Format(Value(bought), "###0.00"), "", vb::Format(Value(replace), "###0.00")}));
}

void StockList_Show(ReportRun& run) {
    FlexGrid& grid = *run.grid;
    grid.SetCols(5);
    grid.SetFormatString("Date|Desc|Qty|R Purches|R Replace");
    const QString filter = "IID IN (" + run.VehicleList + ")";
    auto rs = db().OpenRecordset("SELECT * FROM VoorInv WHERE " + filter + " AND Datum >= " + "'" + run.from + "'" +
                                     " AND Datum <= " + "'" + run.to + "'" + " ORDER BY Datum",
                                 RecordsetType::Snapshot);
    double bought = 0, replace = 0;
    for (; !rs->Eof(); rs->MoveNext()) {
        grid.AddItem(FLEX_JoinRow({Text(rs->Field("Datum")), Text(rs->Field("Desc")), Text(rs->Field("Hoeveel")),
                                   Money(rs->Field("kwaarde")), Money(rs->Field("VWaarde"))}));
        bought += vb::Val(Text(rs->Field("kwaarde")));
        replace += vb::Val(Text(rs->Field("VWaarde")));
    }
    if (grid.Rows() > 1)
        grid.AddItem(FLEX_JoinRow(
            {"TOTAL", "", "", vb::Format(Value(bought), "###0.00"), vb::Format(Value(replace), "###0.00")}));
}
