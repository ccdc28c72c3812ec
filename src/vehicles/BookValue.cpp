#include "BookValue.h"

#include "Value.h"
#include "Vb.h"

#include <stdexcept>

QString CalcBookValue(const QString& purchaseDate, const QString& price, const QString& percentage, const QDate& today,
                      const QString& previous) {
    if (!vb::IsDate(purchaseDate))
        return QStringLiteral("0.00");
    try {
        const Currency cPrice = vb::CCur(Value(price));
        const Currency cPct = vb::CCur(Value(percentage));

        // Both dates go through their "yyyy/mm/dd" text, so only whole days count.
        const QDateTime bought = vb::CDate(Value(vb::Format(Value(vb::CDate(Value(purchaseDate))), "yyyy/mm/dd")));
        const QDateTime now = vb::CDate(Value(vb::Format(Value(today), "yyyy/mm/dd")));
        const QString days = QString::number(vb::DateDiffDays(bought, now));

        const double rate = cPct.toDouble() / 100.0;
        const Currency daily = Currency::fromDouble(cPrice.toDouble() * rate / 365.0);
        const Currency written = Currency::fromDouble(days.toDouble() * daily.toDouble());
        const Currency book = cPrice - written;

        if (book < Currency::fromRaw(10000))
            return QStringLiteral("1.00");
        return vb::Format(Value(book), "###0.00");
    } catch (const VbError&) {
        return previous;
    } catch (const std::exception&) {
        return previous;
    }
}
