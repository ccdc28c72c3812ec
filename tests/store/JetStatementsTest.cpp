// The program's own statements, assembled as its screens and reports assemble them, run through the store
// on a small register and compared by their results. Each case states the rows the office would see.
#include "Database.h"
#include "Value.h"

#include <QFile>
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
    " serviceduedate text(10), tyresize text(50), awaarde double, depwaarde double, vwaarde double,"
    " fueltanksize double, deptid long, Km double, Boek text(20), Enjin text(50))",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,depwaarde,deptid,"
    "licenceduedate,serviceduedate,Km,Boek,Enjin)"
    " values (1,1,'toyota','hilux','ABC123','2024/01/15',0,1,80,250000,20,1,'2026/03/15','2026/07/01',1250.5,"
    "'94520.55','E1')",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,deptid,"
    "licenceduedate,serviceduedate,Km,Boek)"
    " values (2,1,'isuzu','kb250','XYZ789','2023/06/01',False,0,50,180000,1,'2026/08/01','2026/03/20',5300,"
    "'1 000.00')",
    "insert into voertuig (TransID,CatID,Maak,Model,RegNr,ADatum,Hours,rebated,rebatepct,awaarde,deptid,"
    "licenceduedate,serviceduedate,Km,Boek)"
    " values (3,3,'JOHN DEERE',Null,'JD1','2022/03/10',1,True,40,600000,1,'2025/12/31','2026/12/31',120,'600000')",
    "create table departments (id long, description text(50), transid long, issys bit)",
    "insert into departments (id,description,issys) values (1,'department 1',1)",

    "create table tanks (TransID counter primary key, TankNaam text(50), HuidigeVolume double, PumpReading double)",
    "insert into tanks (TransID,TankNaam,HuidigeVolume,PumpReading) values (1,'DIESEL TANK',500,10000)",
    "insert into tanks (TransID,TankNaam,HuidigeVolume) values (2,'petrol tank',200.5)",
    "create table FuelSupplier (suppid AUTOINCREMENT PRIMARY KEY NOT NULL, Name text(50), det1 text(25),"
    " det2 text(25), pcode text(25), voice text(25), issystem bit)",
    "insert into FuelSupplier (name,issystem)  values ('_Fuel Supplier',1)",
    "insert into FuelSupplier (name,issystem)  values ('sasol',0)",

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
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,Cost,CostPerLiter,suppid,invoiceRef)"
    " values (1,1,'2025/12/01','1 234.50','24 690.00','20.00',1,'INV1')",
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,Cost,CostPerLiter,suppid,invoiceRef)"
    " values (2,1,'2026/01/10','500.00','10500.00','21.00',2,'INV2')",
    "insert into FuelPurchase (TransID,TankID,Datum,Liter,Cost,CostPerLiter,suppid,invoiceRef)"
    " values (3,2,'2026/01/15','abc','','',1,'INV3')",

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

struct StatementCase {
    const char* name;
    QString statement;
    QString columns;         // "a|b", compared case-blind; "" not checked
    QString rows;            // "x|y;z|w" as CStr shows the cells, "<Null>" for Null, "~x" case-blind; "!" fails
    QStringList before = {}; // statements run first, each expected to succeed
};

// Names the case in failure messages instead of gtest's byte dump.
void PrintTo(const StatementCase& sc, std::ostream* os) {
    *os << sc.name;
}

// The detailed usage report, whose figures divide by the distance.
const QString kDetailedUsage =
    "select [vecfuel].[datum] as [Date]\n  , strconv(tanks.tanknaam,3) as [Tank]\n ,strconv(voerkat.desc,3) "
    "as [Category]\n ,  [voertuig].[maak]  &   '(' & [voertuig].[regnr]  & ')' as [Vehicle]\n , "
    "[drivers].[description] "
    "as [Driver]\n   , activities.description as [Activity]\n ,   [vecfuel].[litres] , [vecfuel].[kmread] "
    "as [Km/Hours Read]\n , [vecfuel].[previouskmread] as [Prev Km]\n , [vecfuel].[kmread] - "
    "[vecfuel].[previouskmread] "
    "as [Km]\n , ([vecfuel].[kmread] - [vecfuel].[previouskmread]) / [vecfuel].[litres] as [Km/l]\n , "
    "( [vecfuel].[litres] /  ([vecfuel].[kmread] - [vecfuel].[previouskmread]))*100 as [L/100 Km]\n ,vecfuel.rperl "
    "as [Cost/Litre]\n ,([vecfuel].[litres]*rperl)/([vecfuel].[kmread] - [vecfuel].[previouskmread]) "
    "as [Cost/Km]\n  From [vecfuel], [voertuig], [drivers], [activities], voerkat, tanks  Where "
    "[vecfuel].[voertuigId] "
    "= [voertuig].[TransID] and [vecfuel].[driverid] = [drivers].[id] and [vecfuel].[activityid] = [activities].[id] "
    "and vecfuel.tankid =  tanks.transid and voerkat.transid = voertuig.catid\n and [VecFuel].datum between "
    " '2026/01/01' and  '2026/01/31'\n and  kmread> 0\n and voertuig.transid in (1) \n order by [VecFuel].[Datum]\n";

const StatementCase kCases[] = {
    // Service cost breakdown: the union-all total, and the totals by type.
    {"CostTotalUnionAllComparesTypeCaseBlind",
     "select sum(total) from ( select sum(value1) as [Total] from vdiens_extra where vdiensid = 7 and "
     "costtype <> 'labour' Union All select sum(value2) as [Total]  from vdiens_extra where vdiensid = "
     "7)",
     "", "1000.5"},
    {"LabourTotalsGroupCaseBlind",
     "select   costtype ,sum(value2) as [Total]  from vdiens_extra  where costtype = 'Labour'  and vdiensid "
     "=   7 group by costtype",
     "costtype|Total", "~Labour|500"},
    // Tank detail: text that is no number counts nothing; a stock take of nothing is neither gain nor loss.
    {"TankOpeningBalanceNonNumberTextCountsZero",
     " select sum(amt) from ( SELECT sum(val(Liter)) as [amt] FROM FuelPurchase  where tankid in (2) and "
     "[datum] < '2026/02/01' union all SELECT sum(val(Verlore)) as [amt] FROM tankstock where tankid in "
     "(2) and [datum] < '2026/02/01' union all SELECT -sum(val(Litres)) as [amt] FROM VecFuel where tankid "
     "in (2) and [datum] < '2026/02/01')",
     "", "0"},
    {"TankDetailLossesAreNegatedAndZeroStockTakesLeftOut",
     "select [vehicle],[open litres] from tmpdetail order by sortdate",
     "",
     "Toyota Abc123 (1250)|40;Tank Stocktake (Loss)|3;John Deere Jd1 (120)|60",
     {" select * into tmpdetail from (select 1 as id, [batterysize] as [tank name] , '1900/01/01' as [sortDate] "
      " , [licenceduedate] as [date] , 'Open' as [Detail] ,  [tyresize] as [vehicle]  , [awaarde] as [open "
      "litres] ,[depwaarde] as [litres added] ,[vwaarde] as [litres out] ,[fueltanksize] as [balance] From "
      "voertuig where transid = 0)",
      "delete * from tmpdetail", "insert into tankstock (TankID,Tank,Datum,Verlore) values (1,'x','2026/02/06','0.00')",
      " INSERT INTO tmpdetail SELECT * FROM ( select strconv(tanknaam,3) as [tank name] ,p.datum as [sortdate],p.datum "
      "as [date] ,  'litres added' as [detail]  ,  'Fuel Purchase (' & invoiceref & ')' as [vehicle]  ,liter "
      "as [open litres] from fuelpurchase p  inner join tanks t on t.transid = p.tankid  where tankid in "
      "(1)  and p.datum between '2026/02/01'  and  '2026/02/28'  Union All select  Strconv(tanknaam,3) "
      "as [tank name] ,p.datum as [sortdate] ,p.datum as [date] ,  'litres added' as [detail] ,  'Tank "
      "Stocktake (Gain)' as [vehicle] ,verlore as [open litres]  from tankstock p  inner join tanks t on "
      "t.transid = p.tankid  where tankid in (1)  and p.datum between '2026/02/01'  and  '2026/02/28'  "
      "and val(verlore) > 0 Union All select  Strconv(tanknaam,3) as [tank name] ,p.datum as [sortdate] "
      ",p.datum as [date] ,  'litres out' as [detail] ,  'Tank Stocktake (Loss)' as [vehicle] , -val(verlore) "
      "as [open litres]  from tankstock p  inner join tanks t on t.transid = p.tankid  where tankid in "
      "(1)  and p.datum between '2026/02/01'  and  '2026/02/28'  and val(verlore) < 0 Union All select "
      "Strconv(tanknaam,3) as [tank name] ,p.datum as [sortdate],p.datum as [date] ,'litres out' as [detail] "
      ",strconv(maak & ' ' & regnr & ' (' & kmread & ')',3) as   [vehicle]  , litres as [open litres]  "
      " from ( (vecfuel p inner join tanks t on t.transid = p.tankid)  inner join voertuig  v on  v.transid "
      "= p.voertuigid)  where tankid in (1)  and p.datum between '2026/02/01'  and  '2026/02/28' )"}},
    // Fuel usage: the monthly crosstab and the reports by vehicle.
    {"MonthlyUsageCrosstabOrdersMonthBeforeYear",
     "Transform Sum(vecfuel.Litres)\n select format(datum,'mmmm yyyy') AS [Date] \n from voertuig, vecfuel "
     "where voertuig.transid = vecfuel.voertuigid\n and [VecFuel].datum between  '2025/01/01'\n and  '2026/12/31'\n "
     "and voertuig.transid in (1,2,3) \n  group by  format(datum,'mmmm yyyy'),format(datum,'mm yyyy')\n "
     "order by format(datum,'mm yyyy')\n pivot [voertuig].[maak]  &   '(' & [voertuig].[regnr]  & ')' "
     "\n",
     "Date|isuzu(XYZ789)|JOHN DEERE(JD1)|toyota(ABC123)",
     "January 2025|<Null>|<Null>|10;January 2026|30|<Null>|50;February 2026|<Null>|60|65"},
    {"RebateApplicableComparesBooleansWrittenAsOneWithTrue",
     "SELECT [VecFuel].[Datum] as [Date] ,  strconv([drivers].[description],3) as [Driver] , "
     "strconv(activities.description,3) "
     "as [Activity] ,  strconv([Voertuig].[Maak]  &   '(' & [Voertuig].[RegNR]  & ')',3) as [Vehicle] "
     ",   [VecFuel].[Litres] , VecFuel.litres * ([Voertuig].[rebatepct]/100) as [Rebate] , VecFuel.litres "
     "* (1 - [Voertuig].[rebatepct]/100) as [Non Rebate] From [VecFuel], [Voertuig], [drivers], [activities] "
     "Where [VecFuel].[voertuigId] = [Voertuig].[TransID] AND [VecFuel].[driverid] = [drivers].[id] AND "
     "[VecFuel].[activityid] = [activities].[id] and datum between  '2026/01/01' and  '2026/02/28' and "
     " voertuig.rebated = true and  activities.rebated = true and voertuig.transid in (1,2,3)  order by "
     "datum",
     "Date|Driver|Activity|Vehicle|Litres|Rebate|Non Rebate",
     "2026/01/05|Piet Pompies|Farming|Toyota(abc123)|50|40|10;2026/02/03|Piet "
     "Pompies|Farming|Toyota(abc123)|40|32|8;2026/02/11|Piet "
     "Pompies|Farming|Toyota(abc123)|25|20|5"},
    {"LastReadingOrdersByValueOfText",
     "SELECT * FROM readings WHERE id > 0 ORDER BY val(KMRead) Desc",
     "id|KmRead",
     "2|1 100.00;1|900;3|12abc",
     {"create table readings (id long, KmRead text(20))", "insert into readings values (1,'900')",
      "insert into readings values (2,'1 100.00')", "insert into readings values (3,'12abc')"}},
    // Equipment: datetime ranges written month first, constants in group by, the left-joined book-out list.
    {"EquipmentLedgerCarriesForwardAndReadsDatesMonthFirst",
     "select  #02-27-2026 23:59:59# as [date] ,'Opening Balance' as transaction ,'Carried Forward'  as "
     "[Remarks] ,sum((trqty)) as qty  from (equipmenttrans   inner join toerinv on toerinv.iid = "
     "equipmenttrans.equipid) "
     " inner join equipmentaction on equipmentaction.id = equipmenttrans.actionid  WHERE equipid =  1 "
     "and trdate < #02-01-2026 00:00:00# Group By  'Opening' ,'Opening Balance' ,'Carried Forward' Having "
     "Sum(trqty) <> 0 union all select trdate, strconv(equipmentaction.[trdesc],3) as transaction, "
     "strconv(equipmenttrans.[trdesc],3) "
     "as remarks, trqty as qty from (equipmenttrans   inner join toerinv on toerinv.iid = equipmenttrans.equipid) "
     " inner join equipmentaction on equipmentaction.id = equipmenttrans.actionid  WHERE equipid =  1 "
     "and trdate >= #02-01-2026 00:00:00# and trdate <= #02-27-2026 23:59:59# order by [date]",
     "date|transaction|Remarks|qty",
     "2026/02/03 10:30:00|Book Out|Piet|-4;2026/02/20 08:00:00|Book In|Piet|1;2026/02/27 23:59:59|Opening "
     "Balance|Carried Forward|10"},
    {"BookOutListLeftJoinAndFormats",
     "SELECT  a.equipid, strconv(d.[desc],3) as [Category],a.id,format(a.trdate,'yyyy-mm-dd hh:nn:ss') "
     "as [Date]  ,strconv(c.[desc],3) as [Equip]  ,  a.trdesc &  ' ('  & format( abs(a.trqty + "
     "iif(isnull(b.trqty),0,b.trqty)) "
     " ,'### ##0.00') & ')' as item   ,a.trqty as [qty]   from ((equipmenttrans as a  left join equipmenttrans "
     "as b on b.bookoutid = a.id)  inner join toerinv as c on c.iid = a.equipid)  inner join toerkat as "
     "d on d.tid = c.tid  Where a.actionid = 2 And a.trclosed = False  and a.trdate >= #02-01-2026 00:00:00# "
     " and a.trdate <= #03-31-2026 23:59:59#  order by d.[desc],a.[id]",
     "equipid|Category|id|Date|Equip|item|qty",
     "1|Hand Tools|2|2026-02-03 10:30:00|Spade|piet ( 3.00)|-4;1|Hand Tools|4|2026-03-01 00:00:00|Spade|jan "
     "( 2.00)|-2"},
    {"JoinOnTextAcrossCase", "select count(*) from tanks t inner join tankstock s on s.tank = t.tanknaam", "", "3"},
    // The vehicle report and the consumption rows.
    {"VehicleReportWithBookValueAsNumber",
     "SELECT strconv(maak,3) as Make ,strconv(Model,3) as [Veh Model]  ,regnr as [Reg Nr] ,enjin as [Engine "
     "Nr] ,adatum as[Purchase Date] ,awaarde as[Purchase Price] ,depwaarde as [Depreciation %] ,cdbl(boek) "
     "as [Book Value] ,vwaarde as [Insured Value] FROM Voertuig  inner join departments as dept on dept.id "
     "= voertuig.deptid  WHERE voertuig.transid in (1,2,3)  ORDER BY ADatum,Maak",
     "Make|Veh Model|Reg Nr|Engine Nr|Purchase Date|Purchase Price|Depreciation %|Book Value|Insured Value",
     "John "
     "Deere|<Null>|JD1|<Null>|2022/03/10|600000|<Null>|600000|<Null>;Isuzu|Kb250|XYZ789|<Null>|2023/06/"
     "01|180000|<Null>|1000|<Null>;Toyota|Hilux|ABC123|E1|2024/01/15|250000|20|94520.55|<Null>"},
    {"ConsumptionRowsRoundToCents",
     " select Datum as [Date] ,strconv(maak,3)  as [Make] ,regnr as [Reg Nr] ,kmread-previouskmread as "
     "[Km] ,Litres   ,cdbl(rperl) as [Cost/L] ,round((kmread-previouskmread)/litres,2) as [Km/L] "
     ",round((litres/(kmread-previouskmread))*100,2) "
     "as [Litre/100km] ,round((rperl*litres)/(kmread-previouskmread),2) as [Cost/Km] ,round(rperl*litres,2) "
     "as [Total Rands] FROM VecFuel as f inner join voertuig as v on v.transid = f.voertuigid WHERE voertuigid "
     "in (1) and datum between '2026/01/01' and '2026/02/28'",
     "Date|Make|Reg Nr|Km|Litres|Cost/L|Km/L|Litre/100km|Cost/Km|Total Rands",
     "2026/01/05|Toyota|ABC123|100|50|20|2|50|10|1000;2026/02/03|Toyota|ABC123|150|40|21|3.75|26.67|5.6|840;2026/02/"
     "11|Toyota|ABC123|150|25|22|6|16.67|3.67|550"},
    // Job card numbers: booleans written as 1, bare boolean conditions, line breaks inside the statement.
    {"JobCardsHighestAssigned",
     "select  max(reference) \r\n from servicereference\r\n where isassigned\r\n",
     "",
     "2",
     {"create table serviceReference (id AUTOINCREMENT PRIMARY KEY NOT NULL, reference long, isopened bit, "
      "isassigned bit, assignDate datetime)",
      "insert into serviceReference (reference) values (1)", "insert into serviceReference (reference) values (2)",
      "insert into serviceReference (reference) values (3)",
      "UPDATE [serviceReference] SET  [serviceReference].[isassigned] = 1 ,[serviceReference].[assignDate] "
      "= now WHERE reference = 2"}},
    // Lookup lists: flags written as True and False, quotes doubled.
    {"LookupAddAndChangeActivityWithFlag",
     "select description, rebated from activities order by description",
     "",
     "Farmer's Work|False;mining|True;town trips|False",
     {"insert into activities (description,rebated) Values ('mining',True)",
      "update activities set rebated = False where id = 1",
      "update activities set description = 'Farmer''s Work' where id = 1"}},
    // Fuel purchases: text amounts through Val, the system supplier.
    {"FuelPurchaseStatementThroughVal",
     " SELECT strconv(tanknaam,3) as [Tank] , p.datum as [Date] , s.name as [Supplier] , p.invoiceref "
     "as [Invoice] , val(liter) as [Litres Added],val(Cost) as [R Cost] , val(costperLiter) as [Cost Per "
     "Litre]  FROM (FuelPurchase as p  inner join tanks as t  on t.transid = p.tankid)  inner join fuelsupplier "
     "as s  on s.suppid = p.suppid  WHERE p.tankid in (1,2) AND p.Datum between '2025/12/01'  AND '2026/01/31' "
     " ORDER BY p.Datum ",
     "Tank|Date|Supplier|Invoice|Litres Added|R Cost|Cost Per Litre",
     "Diesel Tank|2025/12/01|_Fuel Supplier|INV1|1234.5|24690|20;Diesel Tank|2026/01/10|sasol|INV2|500|10500|21;Petrol "
     "Tank|2026/01/15|_Fuel Supplier|INV3|0|0|0"},
    // The log sheet and the detailed usage report.
    {"LogSheetHeadingsEvenWithoutFuelRows",
     "select top 1 [vecfuel].[datum] as [Date]  , strconv(tanks.tanknaam,3) as [Tank] ,  [voertuig].[maak] "
     " &   '(' & [voertuig].[regnr]  & ')' as [Vehicle] , [drivers].[description] as [Driver] , '' as "
     "[Block/Cost Centre]   , activities.description as [Activity] ,   [vecfuel].[Litres] , [vecfuel].[kmread] "
     "as [Km/Hours Read] ,'' as [Time Start],'' as [Time End]  From [vecfuel], [voertuig], [drivers], "
     "[activities], voerkat, tanks  Where [vecfuel].[voertuigId] = [voertuig].[TransID] and [vecfuel].[driverid] "
     "= [drivers].[id] and [vecfuel].[activityid] = [activities].[id] and vecfuel.tankid =  tanks.transid "
     "and voerkat.transid = voertuig.catid",
     "Date|Tank|Vehicle|Driver|Block/Cost Centre|Activity|Litres|Km/Hours Read|Time Start|Time End",
     "",
     {"delete from vecfuel"}},
    {"DetailedUsageFigures", kDetailedUsage,
     "Date|Tank|Category|Vehicle|Driver|Activity|litres|Km/Hours Read|Prev Km|Km|Km/l|L/100 Km|Cost/Litre|Cost/Km",
     "2026/01/05|Diesel Tank|Bakkies|toyota(ABC123)|PIET POMPIES|farming|50|1100|1000|100|2|50|20|10"},
    {"DetailedUsageZeroDistanceFails",
     kDetailedUsage,
     "",
     "!",
     {"update vecfuel set previouskmread = kmread where transid = 1"}},
    // Equipment stock take: the ledger row written with # dates and the printed list with its empty on-hand.
    {"StockTakeLedgerRowAndPrintedList",
     "select  strconv(b.[desc],3),  trstockqty as [on hand],trstockqty+trqty,a.trqty as [diff],trunitcost, "
     "round((trstockqty+trqty) * trunitcost,2) as [value],a.trdesc as [reason] from ([equipmenttrans] "
     "as a  inner join toerinv as b on b.iid = a.equipid) where actionid = 4  and stocktakeid = 1 order "
     "by [desc]",
     "",
     "Spade|<Null>|<Null>|-2|120|<Null>|Difference",
     {"insert into equipmenttrans "
      "([sortdate],[trdate],[equipid],[actionId],[trDesc],[trQty],[trAmount],[trunitcost],trclosed,stocktakeid) "
      "VALUES ( #03-05-2026 00:00:00#,#03-05-2026 00:00:00#,1,4,'Difference',-2,-240,120,0,1)"}},
    // Equipment book-in: dates spliced as quoted text into datetime columns, the new id, the closing update.
    {"BookInClosesTheBookOutAndItsBookIns",
     "select id, trdate, trclosed from equipmenttrans where id = 2 or bookoutid = 2 order by id",
     "",
     "2|2026/02/03 10:30:00|True;3|2026/02/20 08:00:00|True;6|2026/03/05 10:00:00|True",
     {"insert into equipmenttrans "
      "([sortdate],[trdate],[equipid],[actionId],[trDesc],[trQty],[trAmount],trclosed,stocktakeid) "
      "VALUES ( '2026/03/05 10:00:00','2026/03/05 10:00:00',1,1,'piet',3,0,0,0)",
      "update equipmenttrans set bookoutid= 2 where id = 6", "update [ToerInv] set hoeveel = hoeveel + 3 where iid = 1",
      "update equipmenttrans set trclosed= true where id = 2 or bookoutid = 2"}},
    {"CategoryDeleteTakesLedgerThroughSubquery",
     "select (select count(*) from equipmenttrans) + (select count(*) from toerinv) as n from tanks where "
     "transid = 1",
     "",
     "0",
     {"delete from equipmenttrans  where equipid in  (select iid from toerinv where tid= 1) ",
      "delete from toerinv where tid = 1", "delete from toerkat where tid = 1"}},
    // Report screen: the data repair before consumption figures, the categories with kilometre vehicles.
    {"ConsumptionDataRepair",
     "select transid, kmread - previouskmread, litres from vecfuel where transid in (1,2) order by transid",
     "",
     "1|-1|1;2|300|30",
     {"update vecfuel set previouskmread = 1100, litres = 0 where transid = 1",
      " update vecfuel set previouskmread = 0 where previouskmread is null",
      " update vecfuel set kmread = 0 where kmread is null",
      " update vecfuel set previouskmread = cstr(cdbl(previouskmread)+1) where cdbl(kmread)- cdbl(previouskmread) "
      "= 0",
      " update vecfuel set litres = 1 where litres = 0"}},
    {"CategoriesWithKilometreVehicles",
     "select distinct k.transid , k.desc from voerkat as k  left join voertuig t on t.catid = k.transid "
     "where Maak Is Not Null and k.Hours = false  ORDER BY  [desc]",
     "", "1|BAKKIES"},
};

// ---- running them --------------------------------------------------------------------------------------

// Each cell as CStr shows it, "<Null>" for Null; a row's cells joined by '|'.
QStringList RowsOf(Recordset& rs) {
    QStringList rows;
    for (; !rs.Eof(); rs.MoveNext()) {
        QStringList row;
        for (int i = 0; i < rs.FieldCount(); ++i)
            row << (rs.Field(i).isNull() ? QStringLiteral("<Null>") : rs.Field(i).toString());
        rows << row.join(u'|');
    }
    return rows;
}

bool RowMatches(const QString& actual, const QString& expected) {
    const QStringList a = actual.split(u'|'), e = expected.split(u'|');
    if (a.size() != e.size())
        return false;
    for (int i = 0; i < a.size(); ++i) {
        const bool blind = e[i].startsWith(u'~');
        if (a[i].compare(blind ? e[i].mid(1) : e[i], blind ? Qt::CaseInsensitive : Qt::CaseSensitive) != 0)
            return false;
    }
    return true;
}

// The register is built once; each case works on its own copy of the file.
class JetStatements : public ::testing::TestWithParam<StatementCase> {
public:
    static void SetUpTestSuite() {
        s_templateDir = new QTemporaryDir;
        auto db = Database::Open(s_templateDir->filePath("register.db"));
        for (const char* statement : kRegister) {
            try {
                db->Execute(QString::fromLatin1(statement));
            } catch (const DbError& e) {
                s_registerFailure = QString::fromLatin1(statement) + "\n  " + e.description();
                return;
            }
        }
    }
    static void TearDownTestSuite() {
        delete s_templateDir;
        s_templateDir = nullptr;
    }

protected:
    void SetUp() override {
        ASSERT_TRUE(s_registerFailure.isEmpty()) << "register statement failed: " << s_registerFailure.toStdString();
        ASSERT_TRUE(QFile::copy(s_templateDir->filePath("register.db"), m_dir.filePath("register.db")));
        m_db = Database::Open(m_dir.filePath("register.db"), false);
    }

    static QTemporaryDir* s_templateDir;
    static QString s_registerFailure;
    QTemporaryDir m_dir;
    std::unique_ptr<Database> m_db;
};

QTemporaryDir* JetStatements::s_templateDir = nullptr;
QString JetStatements::s_registerFailure;

TEST_P(JetStatements, GiveTheRowsTheOfficeSees) {
    const StatementCase& sc = GetParam();
    try {
        for (const QString& statement : sc.before)
            m_db->Execute(statement);
    } catch (const DbError& e) {
        FAIL() << "preparing statement failed: " << e.number() << " " << e.description().toStdString();
    }

    QStringList rows, columns;
    QString failure;
    try {
        auto rs = m_db->OpenRecordset(sc.statement, RecordsetType::Snapshot);
        columns = rs->FieldNames();
        rows = RowsOf(*rs);
    } catch (const NumberedError& e) {
        failure = QString::number(e.number()) + " " + e.description();
    }
    if (sc.rows == u"!") {
        EXPECT_FALSE(failure.isEmpty()) << "the statement should fail: " << sc.statement.toStdString();
        return;
    }
    ASSERT_TRUE(failure.isEmpty()) << sc.statement.toStdString() << "\n  failed with " << failure.toStdString();
    if (!sc.columns.isEmpty()) {
        EXPECT_EQ(columns.join(u'|').toLower(), sc.columns.toLower());
    }

    QStringList expected = sc.rows.isEmpty() ? QStringList() : sc.rows.split(u';');
    if (!sc.statement.contains(QStringLiteral("order by"), Qt::CaseInsensitive)) { // no order asked: any order
        rows.sort();
        expected.sort();
    }
    ASSERT_EQ(rows.size(), expected.size()) << "rows:\n  " << rows.join(u'\n').toStdString();
    for (int i = 0; i < rows.size(); ++i)
        EXPECT_TRUE(RowMatches(rows[i], expected[i]))
            << "row " << i << ": " << rows[i].toStdString() << "\n expected: " << expected[i].toStdString();
}

INSTANTIATE_TEST_SUITE_P(Register, JetStatements, ::testing::ValuesIn(kCases),
                         [](const ::testing::TestParamInfo<StatementCase>& param) { return param.param.name; });

} // namespace
