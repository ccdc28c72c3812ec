#include "ServiceSql.h"

#include "Database.h"
#include "FlexGrid.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QStringList>

QString BuildServiceSql(int serviceID, bool noIds, int vehicleID, bool unallocated, const QString& searchText,
                        const QString& searchKind) {
    const QString a = unallocated ? "vd" : "asvc";
    QString s = "SELECT  ";
    if (!noIds)
        s += a + ".TransID ,";
    s += a + ".Date";
    s += "  ,vs.sup_desc as [Supplier]";
    s += " , cc.cc_costcatagory as [Cost Category]";
    s += " ,voerkat.desc as [Veh Category]";
    s += " ,maak & ' ' & model & ' ' & regnr as [Vehicle]";
    s += " ," + a + ".[Reference]";
    s += " ," + a + ".[Cost]";
    s += unallocated ? " ," + a + ".Km " : " ," + a + ".Kilometers ";
    if (!noIds) {
        s += unallocated ? " ," + a + ".[Kyk]" : QString(" ,Note ");
        s += " ," + a + ".supplierid";
        s += unallocated ? " ," + a + ".costcatid" : " ," + a + ".costcategoryid";
        s += unallocated ? " ," + a + ".voertuigid" : " ," + a + ".vechileid";
    }
    s += unallocated ? "  FROM ((( [vdiens_unallocated] as " : "  FROM ((( [vdiens_allocated] as ";
    s += a;
    s += "  inner join  costcat as cc on cc.cc_iid = " + a + (unallocated ? ".costcatid)" : ".costcategoryid)");
    s += "  inner join vecsupplier as vs on vs.sup_no = " + a + ".supplierid)";
    s += "  inner join voertuig on voertuig.transid =  " + a + (unallocated ? ".voertuigid)" : ".[VechileID])");
    s += "  inner join voerkat on voerkat.transid = voertuig.catid";
    s += "  where " + a + ".transid > 0";
    const QString vehicleCondition = unallocated ? " and " + a + ".voertuigid = " + QString::number(vehicleID)
                                                 : " and " + a + ".[VechileID] = " + QString::number(vehicleID);
    if (searchText.isEmpty()) {
        if (unallocated)
            s += "  and kyk = False";
        if (serviceID > 0)
            s += " and " + a + ".transid = " + QString::number(serviceID);
        if (vehicleID >= 1)
            s += vehicleCondition;
    } else {
        if (vehicleID > 0)
            s += vehicleCondition;
        const QString kind = searchKind.toLower();
        if (kind == "supplier")
            s += " and " + a + ".supplierid in (" + searchText + ")";
        else if (kind == "reference")
            s += " and " + a + ".reference like '*" + searchText + "*'";
    }
    s += "  order by " + a + ".transid";
    return s;
}

int FillServiceGrid(FlexGrid& grid, int serviceID, int vehicleID, bool unallocated, const QString& searchText,
                    const QString& searchKind) {
    grid.Clear();
    grid.SetRows(1);
    QString header = "transid|Date|Supplier|Cost Category|Veh Category|Vehicle|Ref|Cost|Km/Hour";
    if (!unallocated)
        header += "|Note";
    header += "|supplierid|voertuigid|costcatid";
    grid.SetCols(header.count('|') + 1);
    grid.SetFormatString(header);
    int rows = 0;
    try {
        auto rs = db().OpenRecordset(BuildServiceSql(serviceID, false, vehicleID, unallocated, searchText, searchKind));
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            cells << rs->Field("TransID").toString() << rs->Field("Date").toString()
                  << vb::ProperCase(rs->Field("supplier").toString())
                  << vb::ProperCase(rs->Field("cost category").toString())
                  << vb::ProperCase(rs->Field("Veh Category").toString())
                  << vb::ProperCase(rs->Field("Vehicle").toString()) << rs->Field("reference").toString()
                  << vb::Format(rs->Field("Cost"), "### ### ##0.00")
                  << vb::Format(rs->Field(unallocated ? "Km" : "Kilometers"), "### ### ##0.00");
            if (!unallocated)
                cells << rs->Field("note").toString();
            cells << rs->Field("supplierid").toString()
                  << rs->Field(unallocated ? "costcatid" : "CostCategoryID").toString()
                  << rs->Field(unallocated ? "voertuigId" : "vechileid").toString();
            grid.AddItem(cells.join('\t'));
            ++rows;
        }
    } catch (const NumberedError&) {
        // A failing statement leaves the grid as far as it got.
    }
    const int widths[9] = {0, 1200, 2400, 2000, 2400, 2400, 1200, 1200, 1200};
    for (int c = 0; c < 9; ++c)
        grid.SetColWidth(c, widths[c]);
    int idFrom = 9;
    if (!unallocated) {
        grid.SetColWidth(svccol::Note, 3000);
        idFrom = 10;
    }
    for (int c = idFrom; c < grid.Cols(); ++c)
        grid.SetColWidth(c, 0);
    grid.SetColAlignment(svccol::Cost, flexAlignRightCenter);
    grid.SetColAlignment(svccol::Km, flexAlignRightCenter);
    if (grid.Rows() > 1)
        grid.SetRow(1);
    return rows;
}

int NextReference() {
    const QString free = GetScalar(db(), "select count(*) from servicereference where not isassigned", "0");
    if (vb::Val(free) == 1000)
        return 1;
    const QString highest = GetScalar(db(),
                                      "select  max(reference) "
                                      "\r\n"
                                      " from servicereference"
                                      "\r\n"
                                      " where isassigned"
                                      "\r\n",
                                      "0");
    return static_cast<int>(vb::Val(highest)) + 1;
}

QString ReferenceText(const QString& number) {
    const int zeros = 5 - static_cast<int>(number.size());
    return zeros > 0 ? QString(zeros, '0') + number : number;
}

QString CostLinkColumn(bool serviceMode) {
    return serviceMode ? "vdiensid" : "historyid";
}

QString CostTotalSql(bool serviceMode, int linkId) {
    const QString column = CostLinkColumn(serviceMode);
    const QString id = QString::number(linkId);
    return "select sum(total) from (" + QString(" select sum(value1) as [Total] from vdiens_extra where ") + column +
           " = " + id + " and costtype <> 'labour'" + " Union All" +
           " select sum(value2) as [Total]  from vdiens_extra where " + column + " = " + id + ")";
}

double CostTotal(bool serviceMode, int linkId) {
    return vb::Val(GetScalar(db(), CostTotalSql(serviceMode, linkId), "0"));
}

int FillCostTotals(FlexGrid& grid, bool serviceMode, int linkId) {
    const QString link = (serviceMode ? " and vdiensid =   " : " and historyid =   ") + QString::number(linkId);
    QStringList kept;
    auto collect = [&](const QString& sql, const QString& pattern) {
        try {
            auto rs = db().OpenRecordset(sql);
            for (; !rs->Eof(); rs->MoveNext())
                kept << rs->Field("costtype").toString() + "-" + vb::Format(rs->Field("Total"), pattern);
        } catch (const NumberedError&) {
        }
    };
    collect("select   costtype ,sum(value2) as [Total]  from vdiens_extra " + QString(" where costtype = 'Labour' ") +
                link + " group by costtype",
            "### ### ##0.00");
    collect("select   costtype ,sum(value1) as [Total]  from vdiens_extra " + QString(" where costtype <> 'Labour' ") +
                link + " group by costtype",
            "0.00");
    grid.Clear();
    grid.SetRows(1);
    grid.SetCols(2);
    if (kept.isEmpty()) {
        grid.setVisible(false);
        return 0;
    }
    grid.SetFormatString("Cost Type|Rands");
    for (const QString& row : kept) {
        const QStringList parts = row.split('-');
        grid.AddItem(parts.value(0) + "\t" + parts.value(1));
    }
    grid.SetColWidth(0, 1500);
    grid.SetColWidth(1, 1400);
    grid.SetColAlignment(1, flexAlignRightCenter);
    grid.setVisible(true);
    return static_cast<int>(kept.size());
}

QString NoteForStore(const QString& shown) {
    QString text = shown;
    text.replace("\r\n", "\n");
    text.replace('\n', "\r\n");
    return text;
}

QString NoteForShow(const QString& stored) {
    QString text = stored;
    text.replace("\r\n", "\n");
    return text;
}
