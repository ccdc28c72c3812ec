#include "ReminderSql.h"

#include "Session.h"
#include "Vb.h"

QString BuildReminderSql(const QString& dateText, int monthsBack, int monthsAhead, bool both, bool licence,
                         bool headings) {
    const QDateTime day = vb::CDate(Value(dateText));
    const QDateTime start = vb::DateAddMonths(day, -monthsBack);
    const QDateTime end = vb::DateAddMonths(day, monthsAhead);
    const QString period =
        "Between '" + start.toString("yyyy/MM/dd") + "'" + " and '" + end.toString("yyyy/MM/dd") + "'";
    QString sql;
    const QString kind = CurrentSession().ReminderKind;
    if (kind == "vehicle") {
        const QString column = (both || licence) ? "licenceduedate" : "serviceduedate";
        sql = headings ? "Select maak as [Make], Model,regnr as [Registration Nr]," : "Select maak, Model,regnr ,";
        sql += column + " from  voertuig";
        if (both)
            sql += " where licenceduedate " + period + " or serviceduedate  " + period;
        else if (licence)
            sql += " where licenceduedate  " + period;
        else
            sql += " where serviceduedate  " + period;
        sql += " order by maak,model,regnr";
    } else if (kind == "pdp") {
        if (headings)
            sql = QString("SELECT ") + "[id] as [Identity Ref]" + ",[Surname] " + ",[firstname] as [First Names]" +
                  ", [pdpdate] as [Renewal Date]";
        else
            sql = QString("SELECT ") + " [pdpid]" + ",[id]" + ",[surname]" + ",[firstname]" + ", [pdpdate]";
        sql += "From [pdp]" + QString(" where pdpdate  ") + period + " order by surname,firstname";
    }
    return sql;
}
