#include "ServiceDemo.h"

#include "Database.h"
#include "QueryHelpers.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"

#include <QList>
#include <QRandomGenerator>
#include <QStringList>

namespace {

QList<int> Ids(const QString& sql) {
    QList<int> ids;
    auto rs = db().OpenRecordset(sql);
    for (; !rs->Eof(); rs->MoveNext())
        ids << static_cast<int>(rs->Field(0).toLong());
    return ids;
}

void EnsureNames(const QString& table, const QString& column, const QStringList& names) {
    if (GetScalar(db(), "select count(*) from " + table, "0") != "0")
        return;
    for (const QString& name : names)
        db().Execute("insert into " + table + " (" + column + ") values ('" + name + "')");
}

struct Line {
    const char* type;
    const char* reference1;
    const char* reference2;
    double value1;
    double value2;
};

// One open service as the capture screen saves it, its reference taken from the pool; returns its TransID.
int SaveOpen(const QDate& date, int vehicle, int supplier, int category, double km) {
    const int number = NextReference();
    auto rs = db().OpenRecordset("SELECT * FROM vdiens_unallocated WHERE TransID = 0");
    rs->AddNew();
    const int id = static_cast<int>(rs->Field("TransID").toLong());
    rs->SetField("Date", Value(vb::Format(Value(date), "yyyy/MM/dd")));
    rs->SetField("supplierid", Value(supplier));
    rs->SetField("costcatid", Value(category));
    rs->SetField("Cost", Value(QString("0.00")));
    rs->SetField("Km", Value(QString::number(km, 'f', 0).left(8)));
    rs->SetField("voertuigId", Value(vehicle));
    rs->SetField("reference", Value(ReferenceText(QString::number(number))));
    rs->Update();
    // Assigned on the service's own day (the screen stamps now), so that one seed and one day give one register.
    db().Execute("UPDATE [serviceReference] SET  [serviceReference].[isassigned] = 1 ,[serviceReference].[assignDate] "
                 "= #" +
                 date.toString("MM/dd/yyyy") + "# WHERE reference = " + QString::number(number));
    return id;
}

// The breakdown lines of the open service, then its cost from their total, as the cost screen leaves them.
void SaveLines(int openId, const QList<Line>& lines) {
    for (const Line& line : lines) {
        auto rs = db().OpenRecordset("SELECT  [transid],[vdiensid], historyid ,[costType],[reference1],[reference2],"
                                     "[value1],[value2] from vdiens_extra");
        rs->AddNew();
        rs->SetField("vDiensID", Value(openId));
        rs->SetField("costtype", Value(QString(line.type)));
        rs->SetField("reference1", Value(QString(line.reference1)));
        rs->SetField("reference2", Value(QString(line.reference2)));
        rs->SetField("Value1", Value(line.value1));
        rs->SetField("Value2", Value(line.value2));
        rs->Update();
    }
    db().Execute("update vdiens_unallocated set cost = " + QString::number(CostTotal(true, openId), 'f', 2) +
                 " where transid = " + QString::number(openId));
}

// The allocation: the history row, then the open row removed, then its breakdown moved.
void Allocate(int openId, const QString& note) {
    auto open = db().OpenRecordset("SELECT * FROM vdiens_unallocated WHERE TransID = " + QString::number(openId));
    auto rs = db().OpenRecordset("SELECT * FROM vdiens_allocated WHERE TransID = 0");
    rs->AddNew();
    const int historyId = static_cast<int>(rs->Field("TransID").toLong());
    rs->SetField("vechileid", open->Field("voertuigId"));
    rs->SetField("supplierid", open->Field("supplierid"));
    rs->SetField("CostCategoryID", open->Field("costcatid"));
    rs->SetField("Date", open->Field("Date"));
    rs->SetField("Cost", Value(vb::Format(open->Field("Cost"), "###0.00")));
    rs->SetField("Kilometers", open->Field("Km"));
    rs->SetField("note", Value(note));
    rs->SetField("reference", open->Field("reference"));
    rs->Update();
    open->Close();
    db().Execute("DELETE * FROM vdiens_unallocated WHERE TransID = " + QString::number(openId));
    db().Execute("update vdiens_extra set historyid = " + QString::number(historyId) +
                 ", vdiensid = 0 where vdiensid = " + QString::number(openId));
}

} // namespace

void WriteDemoServices(const QDate& today, quint32 seed) {
    const QList<int> vehicles = Ids("select transid from voertuig order by transid");
    if (vehicles.isEmpty())
        return;
    EnsureNames("VecSupplier", "SUP_Desc", {"Bosch Car Service", "Midas Motors", "Tyremart", "Auto Electric Works"});
    EnsureNames("CostCat", "CC_CostCatagory", {"Maintenance", "Repairs", "Tyres", "Accident"});
    const QList<int> suppliers = Ids("select sup_no from VecSupplier order by sup_no");
    const QList<int> categories = Ids("select cc_iid from CostCat order by cc_iid");

    QRandomGenerator random(seed);
    const QList<QList<Line>> breakdowns = {
        {{"Labour", "", "", 2, 760},
         {"Parts", "oil filter", "", 185.5, 0},
         {"Consumables", "engine oil 5l", "", 420, 0}},
        {{"Labour", "", "", 3.5, 1330},
         {"Out Work", "precision machining", "skim brake discs", 650, 0},
         {"Parts", "brake pads", "", 890, 0}},
        {{"Parts", "fan belt", "", 240, 0}, {"Consumables", "coolant", "", 95, 0}},
        {{"Labour", "", "", 1, 380}, {"Out Work", "auto electric works", "alternator rebuild", 1450, 0}},
    };
    const QStringList notes = {"Major service, oil and filters replaced", "Brakes done front and rear",
                               "Fan belt and coolant", "Alternator rebuilt; battery tested"};
    int n = 0;
    for (int vehicle : vehicles) {
        // Two services in history a few months back, one still open.
        for (int k = 0; k < 3; ++k, ++n) {
            const QDate date = today.addDays(-(k == 2 ? static_cast<int>(random.bounded(10)) + 1
                                                      : 60 * (2 - k) + static_cast<int>(random.bounded(30)) + 20));
            const int open = SaveOpen(date, vehicle, suppliers[n % suppliers.size()], categories[n % categories.size()],
                                      10000 + random.bounded(90000));
            SaveLines(open, breakdowns[n % breakdowns.size()]);
            if (k < 2)
                Allocate(open, notes[n % notes.size()]);
        }
    }
}
