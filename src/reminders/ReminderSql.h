#pragma once
// The statement of the reminder lists, for the start-up check and the reminder screen. The kind of list is the
// session's ReminderKind: "vehicle" or "pdp".

#include <QString>

// The rows due between monthsBack calendar months before dateText ("yyyy/MM/dd") and monthsAhead after it, both
// ends included. For vehicles: both lists the licence or the service date falling in the period (the column shown
// is the licence date); licence alone the licence date; neither the service date. headings names the columns for
// a workbook. Throws VbError 13 when dateText is no date.
QString BuildReminderSql(const QString& dateText, int monthsBack, int monthsAhead, bool both, bool licence,
                         bool headings);
