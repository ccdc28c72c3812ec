#pragma once
// Straight-line book value of a vehicle, as the detail screen shows it while the user types.

#include <QDate>
#include <QString>

// The text for the book-value label. purchaseDate is the purchase date field as typed, price and
// percentage the purchase price and the yearly depreciation percentage as typed. A purchase date that is
// no date gives "0.00"; a price or percentage that does not convert leaves `previous` as it stood. The
// value never falls below 1.00 but has no ceiling, so a negative percentage raises it day by day.
QString CalcBookValue(const QString& purchaseDate, const QString& price, const QString& percentage, const QDate& today,
                      const QString& previous);
