#include "EquipmentLedger.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QListWidget>

namespace {

QString IdText(long long id) {
    return QString::number(id);
}

} // namespace

long long& BookOutStockTakeId() {
    static long long id = 0;
    return id;
}

void FillEquipmentCategories(QListWidget* list, const QString& firstItem) {
    list->clear();
    AddItemWithData(list, firstItem, 0);
    try {
        auto rs = db().OpenRecordset("select * from toerkat");
        for (; !rs->Eof(); rs->MoveNext())
            AddItemWithData(list, rs->Field("Desc").toString(), rs->Field("TID").toLong());
    } catch (const DbError&) {
        // The list stays as far as it got.
    }
}

QString BookOutContext(const QString& itemName, const QString& quantityText) {
    return "'" + itemName + "' (" + quantityText + ") items available";
}

QString BookInContext(long long bookOutId, const QString& itemName, const QString& remarks) {
    return "ID " + IdText(bookOutId) + " - '" + itemName.left(35) + "' " + remarks + " booked out";
}

Currency ParseContextQuantity(const QString& context) {
    const QString captured = RegexCapture(context, kQuantityPattern, 0);
    if (vb::Trim(captured).isEmpty())
        return Currency();
    return Currency::fromDouble(vb::Val(captured));
}

long long ParseContextId(const QString& context) {
    const QString captured = RegexCapture(context, kIdPattern, 0);
    return captured.isEmpty() ? 0 : captured.toLongLong();
}

QString DayStartText(const QDate& date) {
    return date.toString("MM-dd-yyyy") + " 00:00:00";
}

QString DayEndText(const QDate& date) {
    return date.toString("MM-dd-yyyy") + " 23:59:59";
}

QString QuotedDate(const QDate& date) {
    return "'" + date.toString("yyyy/MM/dd") + "'";
}

QDate ScalarDate(const QString& sql, const QDate& fallback) {
    const QString today = fallback.toString("yyyy/MM/dd");
    const QString text = GetScalar(db(), sql, today, 0, today);
    try {
        return vb::CDate(Value(text)).date();
    } catch (const VbError&) {
        return fallback;
    }
}

QString BookOutBalanceSql(long long bookOutId) {
    return "select sum(qty) as [Balance] from (" + QString(" select   trqty as qty") + " From equipmenttrans" +
           " Where actionid = 2" + " and id= " + IdText(bookOutId) + " Union All" + " select   sum(trqty) as qty" +
           " From equipmenttrans" + " Where actionid = 1 " + " And bookoutid = " + IdText(bookOutId) + " )";
}

Currency GetBookOutBalance(long long bookOutId) {
    const QString text = GetScalar(db(), BookOutBalanceSql(bookOutId), "0", 0, "0");
    try {
        return Currency::fromDouble(vb::Val(text));
    } catch (const VbError&) {
        return Currency();
    }
}

QString BookOutListSql(bool wantDates, bool wantMax, int categoryId, const QDate& dateFrom, const QDate& dateTo) {
    QString sql;
    if (!wantDates) {
        sql = "SELECT " + QString(" a.equipid, strconv(d.[desc],3) as [Category]") + ",a.id" +
              ",format(a.trdate,'yyyy-mm-dd hh:nn:ss') as [Date]" + "  ,strconv(c.[desc],3) as [Equip]" +
              "  ,  a.trdesc &  ' ('" + "  & format( abs(a.trqty + iif(isnull(b.trqty),0,b.trqty))" +
              "  ,'### ##0.00') & ')' as item " + "  ,a.trqty as [qty] ";
    } else {
        sql = wantMax ? "select max(a.trdate) " : "select min(a.trdate) ";
    }
    sql += QString("  from ((equipmenttrans as a") + "  left join equipmenttrans as b on b.bookoutid = a.id)" +
           "  inner join toerinv as c on c.iid = a.equipid)" + "  inner join toerkat as d on d.tid = c.tid" +
           "  Where a.actionid = 2 And a.trclosed = False";
    if (categoryId > 0)
        sql += "  and c.tid = " + QString::number(categoryId);
    if (!wantDates) {
        sql += "  and a.trdate >= #" + DayStartText(dateFrom) + "#" + "  and a.trdate <= #" + DayEndText(dateTo) + "#" +
               "  order by d.[desc],a.[id]";
    }
    return sql;
}

QString OpenBookOutIdsSql() {
    return QString("select id") + " From equipmenttrans" +
           " inner join toerinv on toerinv.iid = equipmenttrans.equipid" +
           " where actionid in (2) and trclosed = false" + " order by toerinv.[desc],id";
}

QString BookOutRowSql(long long bookOutId, Currency openQuantity, int categoryId) {
    const Currency shown = openQuantity < Currency() ? -openQuantity : openQuantity;
    QString sql = "SELECT " + QString(" a.equipid") + " , a.id" + " , strconv(c.[desc],3) as [Category]" +
                  ",format(a.trdate,'yyyy-mm-dd hh:nn:ss') as [Date]" + "  ,strconv(b.[desc],3) as [Equip]" +
                  "  ,  a.trdesc &  ' ('" + "  & format(" + shown.toString() + ",'### ##0.00') & ')' as item " + "  ," +
                  openQuantity.toString() + " as [qty] " + "  , a.stocktakeid" + "  from (equipmenttrans as a  " +
                  " inner join toerinv as b on b.iid = a.equipid)" + "  inner join toerkat as c on c.tid = b.tid" +
                  "  where a.id = " + IdText(bookOutId);
    if (categoryId > 0)
        sql += " and c.tid =  " + QString::number(categoryId);
    return sql;
}

QString EquipmentGridSql(int categoryId) {
    QString sql = QString(" SELECT [IID] , toerkat.desc as [category], toerinv.[Desc] as [item], [Hoeveel], [KItem] ") +
                  " FROM [ToerInv] " + " inner join toerkat on toerkat.tid = toerinv.tid";
    if (categoryId > 0)
        sql += " WHERE toerkat.TID = " + QString::number(categoryId) + " ORDER BY toerinv.[desc]";
    else
        sql += " ORDER BY toerkat.desc,toerinv.[desc]";
    return sql;
}

QString EquipmentListSql(int categoryId) {
    return "SELECT " + QString(" strconv(toerinv.[Desc],3) as [Item]") + " , [Hoeveel]" + " , [KItem]" +
           " , hoeveel*kitem as [Value]" + " FROM [ToerInv] " + " inner join toerkat on toerkat.tid = toerinv.tid" +
           " Where toerkat.TID = " + QString::number(categoryId) + " ORDER BY toerinv.desc";
}

QString BookOutSummarySql(int categoryId) {
    return QString(" select toerkat.[desc] as [category]") + " , strconv(toerinv.[desc],3) as [item]" +
           " , abs(sum(trqty)) as [qty booked out] " + " , trdesc" + " from (equipmenttrans" +
           " inner join toerinv on toerinv.iid = equipmenttrans.equipid)" +
           " inner join toerkat on toerinv.tid = toerkat.tid" + " where actionid in (1,2)" +
           " and toerinv.tid = " + QString::number(categoryId) +
           " group by  toerkat.[desc], toerinv.[desc],trdesc having sum(trqty) <> 0";
}

QString ItemStatementSql(int itemId, const QDate& dateFrom, const QDate& dateTo) {
    const QString id = QString::number(itemId);
    const QString joins = QString(" from (equipmenttrans  ") +
                          " inner join toerinv on toerinv.iid = equipmenttrans.equipid) " +
                          " inner join equipmentaction on equipmentaction.id = equipmenttrans.actionid ";
    QString sql = "select  #" + DayEndText(dateTo) + "# as [date]" + " ,'Opening Balance' as transaction" +
                  " ,'Carried Forward'  as [Remarks]" + " ,sum((trqty)) as qty " + joins + " WHERE equipid =  " + id +
                  " and trdate < #" + DayStartText(dateFrom) + "#" + " Group By  'Opening'" + " ,'Opening Balance'" +
                  " ,'Carried Forward'" + " Having Sum(trqty) <> 0";
    sql += QString(" union all ") + " select trdate as [date]" +
           " ,strconv(equipmentaction.[trdesc],3) as transaction" +
           " ,strconv(equipmenttrans.[trdesc],3) as [Remarks]" + " ,trqty as qty " + joins + " WHERE equipid =  " + id +
           " and trdate >= #" + DayStartText(dateFrom) + "#" + " and trdate <= #" + DayEndText(dateTo) + "#";
    sql += " order by [date]";
    return sql;
}

int WriteEquipmentItem(EquipmentEntry& entry) {
    auto rs = SeekTable(db(), "toerinv", "PrimaryKey", {Value(entry.itemId)});
    if (rs->NoMatch()) {
        rs->AddNew();
        rs->SetField("Hoeveel", Value(0)); // a Null quantity would stay Null through every movement
    } else {
        rs->Edit();
    }
    // An edit opened under all categories keeps the item where it is.
    if (entry.categoryId > 0 || entry.mode != kEditItem)
        rs->SetField("TID", Value(entry.categoryId));
    rs->SetField("Desc", Value(entry.description));
    if (entry.mode == kEditItem)
        rs->SetField("kitem",
                     Value(Currency::fromDouble(vb::RoundHalfEven((entry.cost / entry.quantity).toDouble(), 4))));
    rs->Update();
    entry.itemId = static_cast<int>(rs->Field("IID").toLong());
    rs->Close();
    return entry.itemId;
}

long long AddStockTakeHeader(const QDate& date, int categoryId, const QString& description) {
    QString text = description;
    db().Execute("insert into equipmentstocktake (" + QString(" [trdate],[equipid],[trReason],[trPerson]") +
                 " ) VALUES (" + QuotedDate(date) + "," + QString::number(categoryId) + ",'Book Out'" + ",'" +
                 SqlEscape(text) + "'" + ")");
    return GetScalar(db(), "select max(id) from equipmentstocktake", "0", 0, "0").toLongLong();
}

long long AddEquipmentTrans(const EquipmentEntry& entry) {
    const long long header = AddStockTakeHeader(entry.date, entry.categoryId, entry.description);
    QString remarks = entry.description;
    QString sortDate = QuotedDate(entry.date);
    QString trDesc;
    long long stockTakeId = 0;
    switch (entry.mode) {
    case kOpeningBalance:
        sortDate = QuotedDate(QDate::currentDate().addYears(-50));
        trDesc = "Stock Take On";
        break;
    case kBookOut:
        trDesc = SqlEscape(remarks);
        stockTakeId = header;
        break;
    default:
        trDesc = SqlEscape(remarks);
        stockTakeId = entry.bookOutStockTakeId;
        break;
    }
    db().Execute("insert into equipmenttrans (" + QString("[sortdate],[trdate],[equipid]") +
                 ",[actionId],[trDesc],[trQty],[trAmount],trclosed,stocktakeid" + ") VALUES ( " + sortDate + "," +
                 QuotedDate(entry.date) + "," + QString::number(entry.itemId) + "," + QString::number(entry.mode) +
                 ",'" + trDesc + "'," + entry.quantity.toString() + "," + entry.cost.toString() + ",0," +
                 QString::number(stockTakeId) + ")");
    return GetScalar(db(), "select max(id) from equipmenttrans", "0", 0, "0").toLongLong();
}

void UpdateStock(const EquipmentEntry& entry) {
    QString sql = "update [ToerInv] set" + QString(" hoeveel = hoeveel + ") + entry.quantity.toString();
    if (entry.mode == kOpeningBalance) {
        const double unit = vb::RoundHalfEven((entry.cost / entry.quantity).toDouble(), 2);
        sql += " ,kitem = " + Currency::fromDouble(unit).toString();
    }
    sql += " where iid = " + QString::number(entry.itemId);
    db().Execute(sql);
}

void LinkBookIn(long long bookInId, long long bookOutId) {
    db().Execute("update equipmenttrans set bookoutid= " + IdText(bookOutId) + " where id = " + IdText(bookInId));
}

void CloseBookOut(long long bookOutId) {
    db().Execute("update equipmenttrans set trclosed= true" + QString(" where id = ") + IdText(bookOutId) +
                 " or bookoutid = " + IdText(bookOutId));
}

long long WriteEquipmentMovement(EquipmentEntry& entry) {
    if (entry.mode == kOpeningBalance || entry.mode == kEditItem)
        WriteEquipmentItem(entry);
    if (entry.mode == kEditItem)
        return 0;
    const long long newId = AddEquipmentTrans(entry);
    UpdateStock(entry);
    if (entry.mode == kBookIn) {
        LinkBookIn(newId, entry.bookOutId);
        if (GetBookOutBalance(entry.bookOutId) == Currency())
            CloseBookOut(entry.bookOutId);
    }
    return newId;
}
