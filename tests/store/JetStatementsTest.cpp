// The program's own statements, assembled as its screens and reports assemble them, run through the store
// on a small register and compared by their results. Each case states the rows the office would see.
#include "Database.h"
#include "Value.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

// ---- the register the statements run on --------------------------------------------------------------

const char* const kRegister[] = {
    "create table voerkat (TransID counter primary key, [Desc] text(50), Hours bit)",
    "insert into voerkat (TransID,[Desc],Hours) values (1,'BAKKIES',False)",
    "insert into voerkat (TransID,[Desc],Hours) values (2,'TRUCKS',0)",
    "insert into voerkat (TransID,[Desc],Hours) values (3,'TRACTORS',1)",

    "create table voertuig (TransID counter primary key, CatID long, Maak text(50), Model text(50), RegNr text(20),"
    " ADatum text(10), Hours bit, rebated bit, rebatepct long, batterysize text(50), licenceduedate text(10),"
    " tyresize text(50), awaarde double, depwaarde double, vwaarde double, fueltanksize double, deptid long)",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,deptid)"
    " values (1,1,'toyota','hilux','ABC123','2024/01/15',0,1,80,250000,1)",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,deptid)"
    " values (2,1,'isuzu','kb250','XYZ789','2023/06/01',False,0,50,180000,1)",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,deptid)"
    " values (3,3,'JOHN DEERE',Null,'JD1','2022/03/10',1,True,40,600000,1)",

    "create table tanks (TransID counter primary key, TankNaam text(50), HuidigeVolume double)",
    "insert into tanks (TransID,TankNaam,HuidigeVolume) values (1,'DIESEL TANK',500)",
    "insert into tanks (TransID,TankNaam,HuidigeVolume) values (2,'petrol tank',200.5)",

    "create table drivers (id long, description text(50), transid long, issys bit)",
    "insert into drivers (id,description,issys) values (1,'PIET POMPIES',1)",
    "create table activities (id long, description text(50), transid long, issys bit, rebated bit)",
    "insert into activities (id,description,issys,rebated) values (1,'farming',1,1)",
    "insert into activities (id,description,issys,rebated) values (2,'town trips',0,0)",

    "create table vecfuel (TransID counter primary key, VoertuigID long, TankID long, Datum text(10),"
    " KmRead double, PreviousKmRead double, Litres double, RperL double, driverid long, activityid long,"
    " pumpreadprev double, pumpreadcurr double)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (1,1,1,'2026/01/05',1100,1000,50,20,1,1)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (2,2,1,'2026/01/20',5300,5000,30,20,1,1)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (3,1,1,'2026/02/03',1250,1100,40,21,1,1)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (4,3,1,'2026/02/10',120,100,60,21,1,2)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (5,1,2,'2026/02/11',1400,1250,25,22,1,1)",
    "insert into vecfuel (TransID,VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL,driverid,activityid)"
    " values (6,1,1,'2025/01/07',900,800,10,19,1,1)",

    "create table FuelPurchase (TransID counter primary key, TankID long, Datum text(10), Liter text(20),"
    " Cost text(20), CostPerLiter text(20), suppid long, invoiceRef text(50))",
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,invoiceRef) values (1,1,'2025/12/01','1 234.50','INV1')",
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,invoiceRef) values (2,1,'2026/01/10','500.00','INV2')",
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,invoiceRef) values (3,2,'2026/01/15','abc','INV3')",

    "create table TankStock (transid counter primary key, TankID long, Tank text(50), Datum text(10),"
    " LitersInTank text(20), LiterLesing text(20), Verlore text(20), Rvalue text(20), Rede text(50))",
    "insert into TankStock (transid,TankID,Tank,Datum,Verlore) values (1,1,'Diesel Tank','2025/12/20','-12.5')",
    "insert into TankStock (transid,TankID,Tank,Datum,Verlore) values (2,1,'diesel tank','2026/01/25','5.00')",
    "insert into TankStock (transid,TankID,Tank,Datum,Verlore) values (3,1,'Diesel Tank','2026/02/05','-3.00')",

    "create table vdiens_extra (transid AUTOINCREMENT PRIMARY KEY NOT NULL, vdiensid long, historyid long,"
    " costType text(50), reference1 text(50), reference2 text(50), value1 float, value2 float)",
    "insert into vdiens_extra (vdiensid,costType,value1,value2) values (7,'Labour',3,450)",
    "insert into vdiens_extra (vdiensid,costType,value1,value2) values (7,'LABOUR',1,50)",
    "insert into vdiens_extra (vdiensid,costType,reference1,value1,value2) values (7,'Parts','filter',120.5,0)",
    "insert into vdiens_extra (vdiensid,costType,reference1,value1,value2) values (7,'Consumables','oil',80,0)",
    "insert into vdiens_extra (vdiensid,costType,reference1,reference2,value1,value2)"
    " values (7,'Out Work','panel','beater',300,0)",
    "insert into vdiens_extra (historyid,costType,value1,value2) values (8,'Parts',10,0)",

    "create table toerkat (TID long, [Desc] text(50))",
    "insert into toerkat (TID,[Desc]) values (1,'HAND TOOLS')",
    "create table toerinv (IID long, TID long, [Desc] text(50), Hoeveel double, kitem double)",
    "insert into toerinv (IID,TID,[Desc],Hoeveel,kitem) values (1,1,'SPADE',5,120)",
    "create table EquipmentAction (id short, trDesc text(50))",
    "insert into EquipmentAction (id,trDesc) values (1,'BOOK IN')",
    "insert into EquipmentAction (id,trDesc) values (2,'BOOK OUT')",
    "insert into EquipmentAction (id,trDesc) values (3,'STOCK TAKE')",
    "create table EquipmentTrans (id AUTOINCREMENT PRIMARY KEY NOT NULL, sortdate datetime, trdate datetime,"
    " equipid short, actionId short, trDesc text(50), trStockQty currency, trQty currency, trAmount currency,"
    " trUnitCost currency, trClosed bit, bookoutid short, stocktakeid short)",
    "insert into EquipmentTrans (trdate,equipid,actionId,trDesc,trQty,trClosed)"
    " values (#01-10-2026 09:00:00#,1,3,'count',10,0)",
    "insert into EquipmentTrans (trdate,equipid,actionId,trDesc,trQty,trClosed)"
    " values (#02-03-2026 10:30:00#,1,2,'piet',-4,False)",
    "insert into EquipmentTrans (trdate,equipid,actionId,trDesc,trQty,trClosed,bookoutid)"
    " values (#02-20-2026 08:00:00#,1,1,'piet',1,0,2)",
    "insert into EquipmentTrans (trdate,equipid,actionId,trDesc,trQty,trClosed)"
    " values (#03-01-2026 00:00:00#,1,2,'jan',-2,0)",
    "insert into EquipmentTrans (trdate,equipid,actionId,trDesc,trQty,trClosed)"
    " values (#02-28-2026 23:59:59#,1,2,'koos',-1,True)",
};

// ---- cases --------------------------------------------------------------------------------------------

enum class Expect { Rows, RowsAnyOrder, Fails };

struct StatementCase {
    const char* name;
    std::vector<QString> before; // statements run first, each expected to succeed
    QString statement;
    Expect expect = Expect::Rows;
    QStringList columns;           // empty: not checked; compared case-blind
    std::vector<QStringList> rows; // cells as CStr shows them, "<Null>" for Null; "~x" compares case-blind
};

// Names the case in failure messages instead of gtest's byte dump.
void PrintTo(const StatementCase& sc, std::ostream* os) {
    *os << sc.name;
}

QString Cat(std::initializer_list<const char*> pieces) {
    QString s;
    for (const char* p : pieces)
        s += QString::fromLatin1(p);
    return s;
}

// The cost total of a service (service cost breakdown).
QString CostTotalSql(const QString& column, int id) {
    const QString sid = QString::number(id);
    return "select sum(total) from (" + QString(" select sum(value1) as [Total] from vdiens_extra where ") + column +
           " = " + sid + " and costtype <> 'labour'" + " Union All" +
           " select sum(value2) as [Total]  from vdiens_extra where " + column + " = " + sid + ")";
}

// The select behind the tank summary's working table.
QString TankSummarySelect(const QString& tanks, const QString& from, const QString& to) {
    const QString dates = " and f.datum between '" + from + "'" + " and '" + to + "'";
    return QString(" select tankid,catid,voertuigid") + " , [tanknaam] as [Fuel Tank]" +
           " ,maak  &  ' (' & regnr & ')' as [vehicle]" + " ,sum(litres) as [Total Litres]" + " , 100 as [Open Km]" +
           " , 250 as [Close Km]" + " , 150 as [Covered]" + " , 10.00 as [Km/Litre]" +
           " , iif(hours=true,'hours','km') as [Type] " + " from (vecfuel f " +
           " inner join voertuig t on t.transid = f.voertuigid) " + " inner join tanks k on k.transid=f.tankid " +
           " where tankid in (" + tanks + ") " + dates + " and voertuigid in" + " (" +
           " select distinct voertuigid from vecfuel " + " where tankid in (" + tanks + ") " + dates + " )" +
           " group by tankid, catid,voertuigid, [tanknaam],maak  &  ' (' & regnr & ')' ,100,200,10.00,hours";
}

QString TankOpeningBalanceSql(const QString& tank, const QString& date) {
    const QString condition = " where tankid in (" + tank + ")" + " and [datum] < '" + date + "'";
    return QString(" select sum(amt) from (") + " SELECT sum(val(Liter)) as [amt] FROM FuelPurchase " + condition +
           " union all" + " SELECT sum(val(Verlore)) as [amt] FROM " + "tankstock" + condition + " union all" +
           " SELECT -sum(val(Litres)) as [amt] FROM " + "VecFuel" + condition + ")";
}

const QString kDetailTemplate =
    Cat({"select", " 1 as id,", " [batterysize] as [tank name]", " , '1900/01/01' as [sortDate] ",
         " , [licenceduedate] as [date]", " , 'Open' as [Detail]", " ,  [tyresize] as [vehicle]",
         "  , [awaarde] as [open litres]", " ,[depwaarde] as [litres added]", " ,[vwaarde] as [litres out]",
         " ,[fueltanksize] as [balance]", " From voertuig", " where transid = 0"});

QString DetailOpeningRowSql(const QString& tank, const QString& shownFrom, const QString& opening) {
    return QString(" INSERT INTO tmpdetail SELECT * FROM(") + " select strconv(tanknaam,3) as [tank name]" +
           " ,'1901/01/01' as [sortdate] " + " ,'" + shownFrom + "' as [date]" + " , 'open litres' as [detail]" +
           " , 'Opening Balance' as [vehicle]" + " ," + opening + " as [open litres] " +
           " from tanks where transid in (" + tank + "))";
}

QString DetailMovementsSql(const QString& tanks, const QString& from, const QString& to) {
    const QString condition =
        " where tankid in (" + tanks + ") " + " and p.datum between '" + from + "' " + " and  '" + to + "' ";
    const QString join = " inner join tanks t on t.transid = p.tankid ";
    return QString(" INSERT INTO tmpdetail SELECT * FROM (") + " select strconv(tanknaam,3) as [tank name]" +
           " ,p.datum as [sortdate],p.datum as [date]" + " ,  'litres added' as [detail] " +
           " ,  'Fuel Purchase (' & invoiceref & ')' as [vehicle] " + " ,liter as [open litres] from fuelpurchase p " +
           join + condition + " Union All" + " select  Strconv(tanknaam,3) as [tank name]" +
           " ,p.datum as [sortdate] ,p.datum as [date]" + " ,  'litres added' as [detail]" +
           " ,  'Tank Stocktake (Gain)' as [vehicle]" + " ,verlore as [open litres]  from tankstock p " + join +
           condition + " and val(verlore) > 0" + " Union All" + " select  Strconv(tanknaam,3) as [tank name]" +
           " ,p.datum as [sortdate] ,p.datum as [date]" + " ,  'litres out' as [detail]" +
           " ,  'Tank Stocktake (Loss)' as [vehicle]" + " , -val(verlore) as [open litres]  from tankstock p " + join +
           condition + " and val(verlore) < 0" + " Union All" + " select Strconv(tanknaam,3) as [tank name]" +
           " ,p.datum as [sortdate],p.datum as [date]" + " ,'litres out' as [detail]" +
           " ,strconv(maak & ' ' & regnr & ' (' & kmread & ')',3) as   [vehicle] " + " , litres as [open litres]  " +
           " from ( (vecfuel p inner join tanks t on t.transid = p.tankid) " +
           " inner join voertuig  v on  v.transid = p.voertuigid) " + condition + ")";
}

const QString kDetailCrosstab =
    Cat({" Transform Sum([open litres])", " select [tank name], sortdate,date,detail, vehicle", " From tmpdetail",
         " group by [tank name],sortdate,date,detail,vehicle", " Pivot detail"});

QString MonthlyUsageSql(const QString& from, const QString& to, const QString& ids, bool litres) {
    return QString(litres ? "Transform Sum(vecfuel.Litres)" : "Transform Sum(vecfuel.Litres * vecfuel.rperl)") +
           "\n select format(datum,'mmmm yyyy') AS [Date] " +
           "\n from voertuig, vecfuel where voertuig.transid = vecfuel.voertuigid" +
           "\n and [VecFuel].datum between  '" + from + "'" + "\n and  '" + to + "'" + "\n and voertuig.transid in (" +
           ids + ") " + "\n  group by  format(datum,'mmmm yyyy'),format(datum,'mm yyyy')" +
           "\n order by format(datum,'mm yyyy')" + "\n pivot [voertuig].[maak]  &   '(' & [voertuig].[regnr]  & ')' " +
           "\n";
}

QString FuelUsageDates(const QString& from, const QString& to) {
    return " and datum between  '" + from + "'" + " and  '" + to + "'";
}

QString FuelUsageVehicles(const QString& ids) {
    return " and voertuig.transid in (" + ids + ") ";
}

// An item's ledger over a range: the carried-forward row, then the range's rows.
QString EquipmentLedgerSql(const QString& id, const QString& from, const QString& to) {
    return QString("select  #") + to + " 23:59:59" + "# as [date]" + " ,'Opening Balance' as transaction" +
           " ,'Carried Forward'  as [Remarks]" + " ,sum((trqty)) as qty " + " from (equipmenttrans  " +
           " inner join toerinv on toerinv.iid = equipmenttrans.equipid) " +
           " inner join equipmentaction on equipmentaction.id = equipmenttrans.actionid " + " WHERE equipid =  " + id +
           " and trdate < #" + from + " 00:00:00" + "#" + " Group By  'Opening'" + " ,'Opening Balance'" +
           " ,'Carried Forward'" + " Having Sum(trqty) <> 0" + " union all" +
           " select trdate, strconv(equipmentaction.[trdesc],3) as transaction," +
           " strconv(equipmenttrans.[trdesc],3) as remarks, trqty as qty" + " from (equipmenttrans  " +
           " inner join toerinv on toerinv.iid = equipmenttrans.equipid) " +
           " inner join equipmentaction on equipmentaction.id = equipmenttrans.actionid " + " WHERE equipid =  " + id +
           " and trdate >= #" + from + " 00:00:00#" + " and trdate <= #" + to + " 23:59:59#" + " order by [date]";
}

QString BookOutListSql(const QString& from, const QString& to) {
    return QString("SELECT ") + " a.equipid, strconv(d.[desc],3) as [Category]" + ",a.id" +
           ",format(a.trdate,'yyyy-mm-dd hh:nn:ss') as [Date]" + "  ,strconv(c.[desc],3) as [Equip]" +
           "  ,  a.trdesc &  ' ('" + "  & format( abs(a.trqty + iif(isnull(b.trqty),0,b.trqty))" +
           "  ,'### ##0.00') & ')' as item " + "  ,a.trqty as [qty] " + "  from ((equipmenttrans as a" +
           "  left join equipmenttrans as b on b.bookoutid = a.id)" +
           "  inner join toerinv as c on c.iid = a.equipid)" + "  inner join toerkat as d on d.tid = c.tid" +
           "  Where a.actionid = 2 And a.trclosed = False" + "  and a.trdate >= #" + from + " 00:00:00" + "#" +
           "  and a.trdate <= #" + to + " 23:59:59" + "#" + "  order by d.[desc],a.[id]";
}

std::vector<StatementCase> Cases() {
    std::vector<StatementCase> c;

    // Service cost breakdown: the union-all total, and the totals by type.
    c.push_back(
        {"CostTotalUnionAllComparesTypeCaseBlind", {}, CostTotalSql("vdiensid", 7), Expect::Rows, {}, {{"1000.5"}}});
    c.push_back({"CostTotalOfHistoryRow", {}, CostTotalSql("historyid", 8), Expect::Rows, {}, {{"10"}}});
    c.push_back(
        {"CostTotalOfServiceWithoutLinesIsNull", {}, CostTotalSql("vdiensid", 99), Expect::Rows, {}, {{"<Null>"}}});
    c.push_back({"LabourTotalsGroupCaseBlind",
                 {},
                 Cat({"select   costtype ,sum(value2) as [Total]  from vdiens_extra ", " where costtype = 'Labour' ",
                      " and vdiensid =   7", " group by costtype"}),
                 Expect::Rows,
                 {"costtype", "Total"},
                 {{"~Labour", "500"}}});
    c.push_back({"OtherCostTotalsByType",
                 {},
                 Cat({"select   costtype ,sum(value1) as [Total]  from vdiens_extra ", " where costtype <> 'Labour' ",
                      " and vdiensid =   7", " group by costtype"}),
                 Expect::RowsAnyOrder,
                 {"costtype", "Total"},
                 {{"Consumables", "80"}, {"Out Work", "300"}, {"Parts", "120.5"}}});
    c.push_back({"DistinctIsCaseBlind",
                 {},
                 "select distinct costtype from vdiens_extra where vdiensid = 7",
                 Expect::RowsAnyOrder,
                 {},
                 {{"~labour"}, {"Parts"}, {"Consumables"}, {"Out Work"}}});
    c.push_back({"CostLinesOfOneType",
                 {},
                 Cat({"SELECT  [transid],[vdiensid],[costType],[reference1],[reference2],[value1],[value2]",
                      " from vdiens_extra", " where costType = '", "Out Work", "'", " and vdiensid = ", "7"}),
                 Expect::Rows,
                 {"transid", "vdiensid", "costType", "reference1", "reference2", "value1", "value2"},
                 {{"5", "7", "Out Work", "panel", "beater", "300", "0"}}});

    // Tank summary: the working table made by select into, constants in its group by.
    const QString summary = TankSummarySelect("1", "2026/01/01", "2026/02/28");
    c.push_back({"TankSummarySelectIntoKeepsColumnsInOrder",
                 {" select * into tmpsummary from (" + summary + ")"},
                 "select * from tmpsummary order by vehicle",
                 Expect::Rows,
                 {"tankid", "catid", "voertuigid", "Fuel Tank", "vehicle", "Total Litres", "Open Km", "Close Km",
                  "Covered", "Km/Litre", "Type"},
                 {{"1", "1", "2", "DIESEL TANK", "isuzu (XYZ789)", "30", "100", "250", "150", "10", "km"},
                  {"1", "3", "3", "DIESEL TANK", "JOHN DEERE (JD1)", "60", "100", "250", "150", "10", "hours"},
                  {"1", "1", "1", "DIESEL TANK", "toyota (ABC123)", "90", "100", "250", "150", "10", "km"}}});
    c.push_back({"TankSummaryRefillByDeleteAndInsert",
                 {" select * into tmpsummary from (" + summary + ")", "delete from tmpsummary",
                  " insert into tmpsummary" + TankSummarySelect("1", "2026/01/01", "2026/01/31")},
                 "select [Fuel Tank] ,[Vehicle] ,[Total Litres] ,[Open Km] ,[Type] from tmpsummary order by vehicle",
                 Expect::Rows,
                 {"Fuel Tank", "Vehicle", "Total Litres", "Open Km", "Type"},
                 {{"DIESEL TANK", "isuzu (XYZ789)", "30", "100", "km"},
                  {"DIESEL TANK", "toyota (ABC123)", "50", "100", "km"}}});
    c.push_back({"TankSummaryFirstReadingBySubquery",
                 {},
                 Cat({"select ", " kmread as reading from vecfuel where transid =(select min(transid) ",
                      " from vecfuel ", " where tankid = ", "1", " and datum between '", "2026/01/01", "'", " and '",
                      "2026/02/28", "'", " and voertuigid = ", "1", ")"}),
                 Expect::Rows,
                 {"reading"},
                 {{"1100"}}});
    c.push_back({"TankSummaryUpdateStats",
                 {" select * into tmpsummary from (" + summary + ")",
                  Cat({"update tmpsummary set ", " [Open Km] = ", "1100", " ,[Close Km] = ", "1250",
                       " ,covered = ", "150", " ,[Km/Litre] = ", "1.67", " ,type = '", "km", "'", " where",
                       " tankid = ", "1", " and voertuigid = ", "1"})},
                 "select [Open Km],[Close Km],[Covered],[Km/Litre],[Type] from tmpsummary where voertuigid = 1",
                 Expect::Rows,
                 {},
                 {{"1100", "1250", "150", "1.67", "km"}}});
    c.push_back({"TankSummaryShareByCategory",
                 {" select * into tmpsummary from (" + summary + ")"},
                 Cat({"select strconv([desc],3) as [group]", " , sum([total litres]) as [biggie] ",
                      " , format((sum([total litres]) /", "180", ")*100,'##0.00') & '%' as pct", " from tmpsummary ",
                      " inner join voerkat on voerkat.transid = tmpsummary.catid ", " group by [desc]"}),
                 Expect::RowsAnyOrder,
                 {"group", "biggie", "pct"},
                 {{"Bakkies", "120", "66.67%"}, {"Tractors", "60", "33.33%"}}});
    c.push_back({"TankTotalsUsed",
                 {" select * into tmpsummary from (" + summary + ")"},
                 Cat({"select strconv([fuel tank],3) as Tank, sum([total litres]) as [Total] from tmpsummary ",
                      " where tankid in (", "1", ")", " group by [fuel tank]"}),
                 Expect::Rows,
                 {"Tank", "Total"},
                 {{"Diesel Tank", "180"}}});
    c.push_back({"TankTotalsAvailable",
                 {},
                 Cat({"select strconv(tanknaam,3) as tank, sum(huidigevolume) as [Total] from tanks ",
                      " where transid in (", "1,2", ")", " group by tanknaam"}),
                 Expect::RowsAnyOrder,
                 {"tank", "Total"},
                 {{"Diesel Tank", "500"}, {"Petrol Tank", "200.5"}}});

    // Tank detail: the opening balance by union all, the working tables and the crosstab.
    c.push_back({"TankOpeningBalanceUnionAllThroughVal",
                 {},
                 TankOpeningBalanceSql("1", "2026/01/01"),
                 Expect::Rows,
                 {},
                 {{"1212"}}});
    c.push_back({"TankOpeningBalanceNonNumberTextCountsZero",
                 {},
                 TankOpeningBalanceSql("2", "2026/02/01"),
                 Expect::Rows,
                 {},
                 {{"0"}}});
    const std::vector<QString> detailBuild = {" select * into tmpdetail from (" + kDetailTemplate + ")",
                                              "select *  into tmpdetailpivot from tmpdetail where id=0",
                                              "delete * from tmpdetail", DetailOpeningRowSql("1", "2026/01/01", "1212"),
                                              DetailMovementsSql("1", "2026/01/01", "2026/01/31")};
    c.push_back(
        {"TankDetailCrosstabColumnsAndRowOrder",
         detailBuild,
         kDetailCrosstab,
         Expect::Rows,
         {"tank name", "sortdate", "date", "detail", "vehicle", "litres added", "litres out", "open litres"},
         {{"Diesel Tank", "1901/01/01", "2026/01/01", "open litres", "Opening Balance", "<Null>", "<Null>", "1212"},
          {"Diesel Tank", "2026/01/05", "2026/01/05", "litres out", "Toyota Abc123 (1100)", "<Null>", "50", "<Null>"},
          {"Diesel Tank", "2026/01/10", "2026/01/10", "litres added", "Fuel Purchase (INV2)", "500", "<Null>",
           "<Null>"},
          {"Diesel Tank", "2026/01/20", "2026/01/20", "litres out", "Isuzu Xyz789 (5300)", "<Null>", "30", "<Null>"},
          {"Diesel Tank", "2026/01/25", "2026/01/25", "litres added", "Tank Stocktake (Gain)", "5", "<Null>",
           "<Null>"}}});
    c.push_back({"TankDetailLossesAreNegatedAndZeroStockTakesLeftOut",
                 {detailBuild[0], "delete * from tmpdetail",
                  "insert into tankstock (TankID,Tank,Datum,Verlore) values (1,'x','2026/02/06','0.00')",
                  DetailMovementsSql("1", "2026/02/01", "2026/02/28")},
                 "select [vehicle],[open litres] from tmpdetail order by sortdate",
                 Expect::Rows,
                 {},
                 {{"Toyota Abc123 (1250)", "40"}, {"Tank Stocktake (Loss)", "3"}, {"John Deere Jd1 (120)", "60"}}});
    c.push_back({"TankDetailTwoIssuesOfOneDaySumInOneCrosstabRow",
                 {detailBuild[0], "delete * from tmpdetail",
                  "insert into vecfuel (VoertuigID,TankID,Datum,KmRead,PreviousKmRead,Litres,RperL)"
                  " values (2,1,'2026/01/20',5300,5000,12.5,20)",
                  DetailMovementsSql("1", "2026/01/20", "2026/01/20")},
                 kDetailCrosstab,
                 Expect::Rows,
                 {"tank name", "sortdate", "date", "detail", "vehicle", "litres out"},
                 {{"Diesel Tank", "2026/01/20", "2026/01/20", "litres out", "Isuzu Xyz789 (5300)", "42.5"}}});
    c.push_back(
        {"TankDetailPivotRowsWrittenAndOpeningRead",
         {detailBuild[0], "select *  into tmpdetailpivot from tmpdetail where id=0",
          Cat({"insert into ",
               "tmpdetailpivot",
               " ([id],[tank name],[sortdate],[date],[vehicle]",
               " ,[open litres],[litres added]",
               " ,[litres out],[balance])",
               " values (",
               "1",
               ",'",
               "Diesel Tank",
               "','",
               "1901/01/01",
               "','",
               "2026/01/01",
               "','",
               "Opening Balance",
               "',",
               "1212",
               ",",
               "0",
               ",",
               "0",
               ",",
               "1212",
               ")"}),
          Cat({"update tmpdetailpivot set [litres added] = [open litres]  ", " where [sortDate] = '1901/01/01'"})},
         Cat({"select [open litres], [litres added], [balance] from tmpdetailpivot",
              " where [sortDate] = '1901/01/01'"}),
         Expect::Rows,
         {},
         {{"1212", "1212", "1212"}}});
    c.push_back(
        {"CrosstabHeadingsAscendCaseBlindAndNullMakesAngleColumn",
         {"create table fruit (grp text(10), kind text(10), qty double)", "insert into fruit values ('x','cherry',1)",
          "insert into fruit values ('x','Banana',2)", "insert into fruit values ('y','apple',3)",
          "insert into fruit values ('x',Null,4)", "insert into fruit values ('x','apple',5)"},
         "transform sum(qty) select grp from fruit group by grp pivot kind",
         Expect::Rows,
         {"grp", "<>", "apple", "Banana", "cherry"},
         {{"x", "4", "5", "2", "1"}, {"y", "<Null>", "3", "<Null>", "<Null>"}}});

    // Fuel usage: the monthly crosstab and the reports by vehicle.
    c.push_back({"MonthlyUsageCrosstabOrdersMonthBeforeYear",
                 {},
                 MonthlyUsageSql("2025/01/01", "2026/12/31", "1,2,3", true),
                 Expect::Rows,
                 {"Date", "isuzu(XYZ789)", "JOHN DEERE(JD1)", "toyota(ABC123)"},
                 {{"January 2025", "<Null>", "<Null>", "10"},
                  {"January 2026", "30", "<Null>", "50"},
                  {"February 2026", "<Null>", "60", "65"}}});
    c.push_back({"MonthlyUsageCrosstabInRands",
                 {},
                 MonthlyUsageSql("2026/02/01", "2026/02/28", "1", false),
                 Expect::Rows,
                 {"Date", "toyota(ABC123)"},
                 {{"February 2026", "1390"}}});
    c.push_back({"LitresPerVehicle",
                 {},
                 "select strconv(maak & '(' &regnr & ')',3) as [Vehicle] ,sum(litres) as [Total]" +
                     QString(" From [vecfuel], [voertuig]") + " Where [vecfuel].[voertuigId] = [voertuig].[TransID]" +
                     FuelUsageDates("2026/01/01", "2026/02/28") + FuelUsageVehicles("1,2,3") +
                     " group by maak & '(' &regnr & ')'",
                 Expect::RowsAnyOrder,
                 {"Vehicle", "Total"},
                 {{"Isuzu(Xyz789)", "30"}, {"John Deere(Jd1)", "60"}, {"Toyota(Abc123)", "115"}}});
    c.push_back(
        {"LitresPerActivity",
         {},
         "select  strconv([activities].[Description],3) as [Activity]  , sum( [vecfuel].[litres]) as  [Total]  " +
             QString(" from  [vecfuel],[activities], [voertuig]") +
             " where [vecfuel].[activityid] = [activities].[id]" + " and  vecfuel.voertuigid = voertuig.transid " +
             FuelUsageDates("2026/01/01", "2026/02/28") + FuelUsageVehicles("1,2,3") +
             " group by [activities].[description]",
         Expect::RowsAnyOrder,
         {"Activity", "Total"},
         {{"Farming", "145"}, {"Town Trips", "60"}}});
    c.push_back({"LitresUsedKmIsReadingLessPrevious",
                 {},
                 "SELECT [VecFuel].[Datum] as [Date] " +
                     QString(" ,  [Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')' as [Vehicle]") +
                     " , [VecFuel].[previouskmread] as [Prev Km]" + " , [VecFuel].[KmRead] as [Curr Km]" +
                     " , [vecfuel].[kmread] - [VecFuel].[previouskmread] as [Km] " +
                     " ,    [vecfuel].[litres] as [Litres Used] " + " from [vecfuel], [voertuig]" +
                     " Where [VecFuel].[voertuigId] = [Voertuig].[TransID]" +
                     FuelUsageDates("2026/01/01", "2026/01/31") + FuelUsageVehicles("1,2") + " order by datum",
                 Expect::Rows,
                 {"Date", "Vehicle", "Prev Km", "Curr Km", "Km", "Litres Used"},
                 {{"2026/01/05", "toyota(ABC123)", "1000", "1100", "100", "50"},
                  {"2026/01/20", "isuzu(XYZ789)", "5000", "5300", "300", "30"}}});
    c.push_back({"RebateApplicableComparesBooleansWrittenAsOneWithTrue",
                 {},
                 "SELECT [VecFuel].[Datum] as [Date] ,  strconv([drivers].[description],3) as [Driver]" +
                     QString(" , strconv(activities.description,3) as [Activity]") +
                     " ,  strconv([Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')',3) as [Vehicle]" +
                     " ,   [VecFuel].[Litres]" + " , VecFuel.litres * ([Voertuig].[rebatepct]/100) as [Rebate]" +
                     " , VecFuel.litres * (1 - [Voertuig].[rebatepct]/100) as [Non Rebate]" +
                     " From [VecFuel], [Voertuig], [drivers], [activities]" +
                     " Where [VecFuel].[voertuigId] = [Voertuig].[TransID]" +
                     " AND [VecFuel].[driverid] = [drivers].[id]" + " AND [VecFuel].[activityid] = [activities].[id]" +
                     FuelUsageDates("2026/01/01", "2026/02/28") + " and  voertuig.rebated = true" +
                     " and  activities.rebated = true" + FuelUsageVehicles("1,2,3") + " order by datum",
                 Expect::Rows,
                 {"Date", "Driver", "Activity", "Vehicle", "Litres", "Rebate", "Non Rebate"},
                 {{"2026/01/05", "Piet Pompies", "Farming", "Toyota(Abc123)", "50", "40", "10"},
                  {"2026/02/03", "Piet Pompies", "Farming", "Toyota(Abc123)", "40", "32", "8"},
                  {"2026/02/11", "Piet Pompies", "Farming", "Toyota(Abc123)", "25", "20", "5"}}});
    c.push_back({"TopOneReturnsTheRowsTiedWithIt",
                 {},
                 "select top 1 transid, rperl from vecfuel where tankid = 1 order by rperl desc",
                 Expect::RowsAnyOrder,
                 {"transid", "rperl"},
                 {{"3", "21"}, {"4", "21"}}});
    c.push_back({"TopOneWithoutTiesGivesOneRow",
                 {},
                 "select top 1 [vecfuel].[datum] as [Date] from vecfuel order by kmread desc",
                 Expect::Rows,
                 {"Date"},
                 {{"2026/01/20"}}});
    c.push_back({"LastReadingOrdersByValueOfText",
                 {"create table readings (id long, KmRead text(20))", "insert into readings values (1,'900')",
                  "insert into readings values (2,'1 100.00')", "insert into readings values (3,'12abc')"},
                 "SELECT * FROM readings WHERE id > 0 ORDER BY val(KMRead) Desc",
                 Expect::Rows,
                 {"id", "KmRead"},
                 {{"2", "1 100.00"}, {"1", "900"}, {"3", "12abc"}}});

    // Equipment: datetime ranges written month first, constants in group by, the left-joined book-out list.
    c.push_back({"EquipmentLedgerCarriesForwardAndReadsDatesMonthFirst",
                 {},
                 EquipmentLedgerSql("1", "02-01-2026", "02-27-2026"),
                 Expect::Rows,
                 {"date", "transaction", "Remarks", "qty"},
                 {{"2026/02/03 10:30:00", "Book Out", "Piet", "-4"},
                  {"2026/02/20 08:00:00", "Book In", "Piet", "1"},
                  {"2026/02/27 23:59:59", "Opening Balance", "Carried Forward", "10"}}});
    c.push_back({"DatetimeColumnsAndLiteralsReadAsDates",
                 {},
                 "select trdate, #12-31-2025 23:59:59# as d, sortdate from equipmenttrans where id = 2",
                 Expect::Rows,
                 {},
                 {{"2026/02/03 10:30:00", "2025/12/31 23:59:59", "<Null>"}}});
    c.push_back({"DatetimeRangeIncludesBothEnds",
                 {},
                 "select id from equipmenttrans where trdate >= #02-28-2026 00:00:00# and trdate <= "
                 "#03-01-2026 23:59:59# order by id",
                 Expect::Rows,
                 {},
                 {{"4"}, {"5"}}});
    c.push_back({"DatetimeBetweenSlashLiteralsMonthFirst",
                 {},
                 "select count(*) from equipmenttrans where trdate between #2/1/2026# and #2/28/2026#",
                 Expect::Rows,
                 {},
                 {{"2"}}});
    c.push_back({"BookOutListLeftJoinAndFormats",
                 {},
                 BookOutListSql("02-01-2026", "03-31-2026"),
                 Expect::Rows,
                 {"equipid", "Category", "id", "Date", "Equip", "item", "qty"},
                 {{"1", "Hand Tools", "2", "2026-02-03 10:30:00", "Spade", "piet ( 3.00)", "-4"},
                  {"1", "Hand Tools", "4", "2026-03-01 00:00:00", "Spade", "jan ( 2.00)", "-2"}}});
    c.push_back({"BookOutBalanceUnionAll",
                 {},
                 Cat({"select sum(qty) as [Balance] from (", " select   trqty as qty", " From equipmenttrans",
                      " Where actionid = 2", " and id= ", "2", " Union All", " select   sum(trqty) as qty",
                      " From equipmenttrans", " Where actionid = 1 ", " And bookoutid = ", "2", " )"}),
                 Expect::Rows,
                 {"Balance"},
                 {{"-3"}}});
    c.push_back(
        {"BookedOutSummaryHavingAndClosedFlag",
         {},
         Cat({" select toerkat.[desc] as [category]", " , strconv(toerinv.[desc],3) as [item]",
              " , abs(sum(trqty)) as [qty booked out] ", " , trdesc", " from (equipmenttrans",
              " inner join toerinv on toerinv.iid = equipmenttrans.equipid)",
              " inner join toerkat on toerinv.tid = toerkat.tid", " where actionid in (1,2)",
              " and toerinv.tid = ", "1", " group by  toerkat.[desc], toerinv.[desc],trdesc having sum(trqty) <> 0"}),
         Expect::RowsAnyOrder,
         {"category", "item", "qty booked out", "trdesc"},
         {{"HAND TOOLS", "Spade", "2", "jan"},
          {"HAND TOOLS", "Spade", "1", "koos"},
          {"HAND TOOLS", "Spade", "3", "piet"}}});
    c.push_back(
        {"OpenBookOutsByFalseFlag",
         {},
         Cat({"select id", " From equipmenttrans", " inner join toerinv on toerinv.iid = equipmenttrans.equipid",
              " where actionid in (2) and trclosed = false", " order by toerinv.[desc],id"}),
         Expect::Rows,
         {},
         {{"2"}, {"4"}}});

    // The dialect's semantics, one at a time.
    c.push_back({"AmpersandReadsNullAsEmptyWhilePlusGivesNull",
                 {},
                 "select maak & model as a, maak + model as b, 'x' & null & 'y' as c from voertuig where transid = 3",
                 Expect::Rows,
                 {"a", "b", "c"},
                 {{"JOHN DEERE", "<Null>", "xy"}}});
    c.push_back({"AmpersandBindsLooserThanArithmetic",
                 {},
                 "select 2 + 3 * 4 & 'x' as a from tanks where transid = 1",
                 Expect::Rows,
                 {},
                 {{"14x"}}});
    c.push_back({"BooleansReadBackAsTrueAndFalse",
                 {},
                 "select rebated, hours from voertuig order by transid",
                 Expect::Rows,
                 {},
                 {{"True", "False"}, {"False", "False"}, {"True", "True"}}});
    c.push_back({"NotOnABitColumn", {}, "select maak from voertuig where not rebated", Expect::Rows, {}, {{"isuzu"}}});
    c.push_back({"AddedBitColumnIsFalseForExistingRows",
                 {"alter table voertuig add column isassigned bit"},
                 "select count(*) from voertuig where isassigned = false",
                 Expect::Rows,
                 {},
                 {{"3"}}});
    c.push_back({"TextDatesCompareAsText",
                 {},
                 "select transid from vecfuel where datum between '2026/01/01' and '2026/01/31' order by datum desc",
                 Expect::Rows,
                 {},
                 {{"2"}, {"1"}}});
    c.push_back({"ValOfTextNumbers",
                 {},
                 "select val(liter) as a, val('12abc') as b, val('abc') as c from fuelpurchase order by transid",
                 Expect::Rows,
                 {},
                 {{"1234.5", "12", "0"}, {"500", "12", "0"}, {"0", "12", "0"}}});
    c.push_back({"SumOfValOverTextColumn",
                 {},
                 "SELECT sum(val(Liter)) FROM FuelPurchase WHERE TankID = 1",
                 Expect::Rows,
                 {},
                 {{"1734.5"}}});
    c.push_back({"DivisionByZeroFails", {}, "select litres / 0 as x from vecfuel", Expect::Fails, {}, {}});
    c.push_back({"DivisionByZeroInRowFails",
                 {},
                 "select round((kmread-previouskmread)/(litres-litres),2) as x from vecfuel",
                 Expect::Fails,
                 {},
                 {}});
    c.push_back({"LikeWithStarIsCaseBlind",
                 {},
                 "select maak from voertuig where maak like '*deer*'",
                 Expect::Rows,
                 {},
                 {{"JOHN DEERE"}}});
    c.push_back({"LikeWithQuestionAndDigitMarks",
                 {},
                 "select regnr from voertuig where regnr like 'JD?' or regnr like 'abc1##' or regnr like 'XYZ#9#'",
                 Expect::RowsAnyOrder,
                 {},
                 {{"JD1"}, {"ABC123"}}});
    c.push_back({"LikeWithCharacterLists",
                 {},
                 "select regnr from voertuig where regnr like '[!a-j]*' or regnr like '[j]d1'",
                 Expect::RowsAnyOrder,
                 {},
                 {{"XYZ789"}, {"JD1"}}});
    c.push_back({"TextEqualsAcrossCase",
                 {},
                 "select transid from voerkat where [desc] = 'Bakkies'",
                 Expect::Rows,
                 {},
                 {{"1"}}});
    c.push_back({"JoinOnTextAcrossCase",
                 {},
                 "select count(*) from tanks t inner join tankstock s on s.tank = t.tanknaam",
                 Expect::Rows,
                 {},
                 {{"3"}}});
    c.push_back({"OrderByTextIsCaseBlind",
                 {},
                 "select maak from voertuig order by maak",
                 Expect::Rows,
                 {},
                 {{"isuzu"}, {"JOHN DEERE"}, {"toyota"}}});
    c.push_back({"AggregatesOverNoRows",
                 {},
                 "select sum(litres), min(litres), max(litres), avg(litres), count(*) from vecfuel where tankid = 99",
                 Expect::Rows,
                 {},
                 {{"<Null>", "<Null>", "<Null>", "<Null>", "0"}}});
    c.push_back({"IntegerDivisionAndMod",
                 {},
                 "select 7 \\ 2 as a, 7 mod 2 as b, -7 \\ 2 as c from tanks where transid = 1",
                 Expect::Rows,
                 {},
                 {{"3", "1", "-3"}}});
    c.push_back({"IifIsNullAndIsNull",
                 {},
                 "select iif(isnull(model),'none',model) as m from voertuig where model is null or transid = 1 "
                 "order by transid",
                 Expect::Rows,
                 {},
                 {{"hilux"}, {"none"}}});
    c.push_back({"ProperCaseTrimCstrAbs",
                 {},
                 "select strconv('o''BRIEN tank',3) as a, trim('  x  ') as b, cstr(12.5) as c, abs(-3) as d,"
                 " ccur('1 000.10') as e, cdbl('2.5') as f from tanks where transid = 1",
                 Expect::Rows,
                 {},
                 {{"O'brien Tank", "x", "12.5", "3", "1000.1", "2.5"}}});
    c.push_back({"FormatOfNumbersAndTextDates",
                 {},
                 "select format(1234.5,'### ##0.00') as a, format(12.5,'### ##0.00') as b,"
                 " format(datum,'mmmm yyyy') as c, format(trdate,'yyyy-mm-dd hh:nn:ss') as d"
                 " from vecfuel, equipmenttrans where vecfuel.transid = 6 and equipmenttrans.id = 2",
                 Expect::Rows,
                 {},
                 {{"1 234.50", " 12.50", "January 2025", "2026-02-03 10:30:00"}}});
    c.push_back({"CounterNumbersNewRows",
                 {"insert into vdiens_extra (vdiensid,costType,value1,value2) values (9,'Parts',1,0)"},
                 "select transid from vdiens_extra where vdiensid = 9",
                 Expect::Rows,
                 {},
                 {{"7"}}});
    c.push_back({"DeleteStarFrom",
                 {"delete * from tankstock where val(verlore) < 0"},
                 "select transid from tankstock",
                 Expect::Rows,
                 {},
                 {{"2"}}});
    c.push_back({"AlterColumnTypeWithoutTheWordColumn",
                 {"alter table toerinv alter hoeveel text(10)", "update toerinv set hoeveel = '2.5'",
                  "alter table toerinv alter column hoeveel double"},
                 "select hoeveel * 2 from toerinv",
                 Expect::Rows,
                 {},
                 {{"5"}}});
    c.push_back({"NamesAreCaseBlindAndBracketed",
                 {},
                 "SELECT [TANKNAAM] FROM [Tanks] WHERE TRANSID = 2",
                 Expect::Rows,
                 {"tanknaam"},
                 {{"petrol tank"}}});
    c.push_back({"DuplicateTableFails", {}, "create table tanks (x long)", Expect::Fails, {}, {}});
    c.push_back({"MissingColumnFails", {}, "select euipid from equipmenttrans", Expect::Fails, {}, {}});
    c.push_back({"SyntaxErrorFails", {}, "select from where", Expect::Fails, {}, {}});
    return c;
}

// ---- running them --------------------------------------------------------------------------------------

QString Cell(const Value& v) {
    return v.isNull() ? QStringLiteral("<Null>") : v.toString();
}

bool CellMatches(const QString& actual, const QString& expected) {
    if (expected.startsWith(u'~'))
        return actual.compare(expected.mid(1), Qt::CaseInsensitive) == 0;
    return actual == expected;
}

bool RowMatches(const QStringList& actual, const QStringList& expected) {
    if (actual.size() != expected.size())
        return false;
    for (int i = 0; i < actual.size(); ++i) {
        if (!CellMatches(actual[i], expected[i]))
            return false;
    }
    return true;
}

bool IsQuery(const QString& statement) {
    const QString head = statement.trimmed().section(u' ', 0, 0).toLower();
    return head == u"select" || head == u"transform" || head.startsWith(u"select") || head.startsWith(u"(");
}

class JetStatements : public ::testing::TestWithParam<StatementCase> {
protected:
    void SetUp() override {
        ASSERT_TRUE(m_dir.isValid());
        m_db = Database::Open(m_dir.filePath("register.db"));
        for (const char* statement : kRegister) {
            try {
                m_db->Execute(QString::fromLatin1(statement));
            } catch (const DbError& e) {
                FAIL() << "register statement failed: " << statement << "\n  " << e.number() << " "
                       << e.description().toStdString();
            }
        }
    }

    QTemporaryDir m_dir;
    std::unique_ptr<Database> m_db;
};

TEST_P(JetStatements, GiveTheRowsTheOfficeSees) {
    const StatementCase& sc = GetParam();
    for (const QString& statement : sc.before) {
        try {
            if (IsQuery(statement) && !statement.contains(QStringLiteral(" into "), Qt::CaseInsensitive))
                m_db->OpenRecordset(statement, RecordsetType::Snapshot);
            else
                m_db->Execute(statement);
        } catch (const DbError& e) {
            FAIL() << "preparing statement failed: " << statement.toStdString() << "\n  " << e.number() << " "
                   << e.description().toStdString();
        }
    }

    std::vector<QStringList> rows;
    QStringList columns;
    bool failed = false;
    QString failure;
    try {
        if (IsQuery(sc.statement)) {
            auto rs = m_db->OpenRecordset(sc.statement, RecordsetType::Snapshot);
            columns = rs->FieldNames();
            while (!rs->Eof()) {
                QStringList row;
                for (int i = 0; i < rs->FieldCount(); ++i)
                    row << Cell(rs->Field(i));
                rows.push_back(row);
                rs->MoveNext();
            }
        } else {
            m_db->Execute(sc.statement);
        }
    } catch (const DbError& e) {
        failed = true;
        failure = QString::number(e.number()) + " " + e.description();
    } catch (const VbError& e) {
        failed = true;
        failure = QString::number(e.number()) + " " + e.description();
    }

    if (sc.expect == Expect::Fails) {
        EXPECT_TRUE(failed) << "the statement should fail: " << sc.statement.toStdString();
        return;
    }
    ASSERT_FALSE(failed) << sc.statement.toStdString() << "\n  failed with " << failure.toStdString();

    if (!sc.columns.isEmpty()) {
        ASSERT_EQ(columns.size(), sc.columns.size()) << columns.join(u'|').toStdString();
        for (int i = 0; i < columns.size(); ++i)
            EXPECT_EQ(columns[i].toLower(), sc.columns[i].toLower()) << "column " << i;
    }

    auto show = [](const std::vector<QStringList>& r) {
        std::string s;
        for (const QStringList& row : r)
            s += "\n  " + row.join(u'|').toStdString();
        return s;
    };
    ASSERT_EQ(rows.size(), sc.rows.size()) << "rows:" << show(rows);
    if (sc.expect == Expect::Rows) {
        for (size_t i = 0; i < rows.size(); ++i)
            EXPECT_TRUE(RowMatches(rows[i], sc.rows[i])) << "row " << i << ": " << rows[i].join(u'|').toStdString()
                                                         << "\n expected: " << sc.rows[i].join(u'|').toStdString();
    } else {
        std::vector<bool> used(rows.size(), false);
        for (const QStringList& want : sc.rows) {
            bool found = false;
            for (size_t i = 0; i < rows.size() && !found; ++i) {
                if (!used[i] && RowMatches(rows[i], want)) {
                    used[i] = true;
                    found = true;
                }
            }
            EXPECT_TRUE(found) << "missing row " << want.join(u'|').toStdString() << "\n got:" << show(rows);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Register, JetStatements, ::testing::ValuesIn(Cases()),
                         [](const ::testing::TestParamInfo<StatementCase>& param) { return param.param.name; });

} // namespace
