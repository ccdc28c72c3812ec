#pragma once
// Small helpers that every screen uses with the store. They swallow errors and answer with a neutral value.

#include "Database.h"
#include "Value.h"

#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

QString GetScalar(Database& db, const QString& sql, const QString& defaultValue, int fieldIndex = 0,
                  const QString& errorDefault = QString());
Value NullToDefault(const Value& value, const Value& defaultValue);
QString SqlEscape(QString& text, bool trim = true, bool dotToUnderscore = false, bool properCase = false);
QString SqlUnescape(const QString& text, bool properCase = false, int maxLength = 255);
QString TableExists(Database& db, const QString& name);
QString FieldExists(Database& db, const QString& table, const QString& field);
QString TrimToLastDelimiter(const QString& text, const QString& delimiter);
int CountRecords(Recordset& rs);

// A table-type recordset on `table`, positioned by a seek for `keys` on the named index; NoMatch tells.
std::unique_ptr<Recordset> SeekTable(Database& db, const QString& table, const QString& index,
                                     const std::vector<Value>& keys);
QString PercentOfTotal(double total, double part, int decimals, double minimum, double fallback, bool asPercent);
int FindInCollection(const QStringList& collection, const QString& value, bool exact, bool leadingWildcard);
QStringList CollectionFromQuery(Database& db, const QString& sql, int fieldIndex, bool unique);

// The yes/no error box: heading, detail2, detail1, "Yes - Resume Next, No - Exit". True on Yes.
bool ConfirmError(bool show, const QString& heading, const QString& detail1, const QString& detail2);

// The closed-date test of the transaction saves: true (and the "Closed date" box shown) when the date,
// as "dd/mm/yyyy" read back, is on or before the closing date.
bool IsDateClosed(const QDateTime& entered, const QDateTime& closedDate);

// The check before it for a date typed as text: true (and a box asking for another date shown) when the text
// cannot be read as a date at all.
bool IsDateUnreadable(const QString& typed);

// Regular-expression helpers; patterns ignore case and run global.
QString RegexCapture(const QString& text, const QString& pattern, int groupIndex);
QString RegexFind(const QString& pattern, const QString& text, bool emptyOnFail);
QString RegexReplace(const QString& text, const QString& pattern, const QString& replacement);
bool FolderExists(const QString& path);
