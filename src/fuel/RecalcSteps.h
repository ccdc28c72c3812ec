#pragma once
// What the fast recalculation and the row-by-row one share: the error handler with its retry, and the
// conversions whose failures the handler sees.

#include "Database.h"
#include "MessageService.h"
#include "Value.h"

#include <QString>
#include <stdexcept>

namespace recalc {

// The one handler of the routine: every failure shows "ERROR in Recalc " with the description, marks the
// run as failed and runs the failed step again, for as long as it fails.
template <typename Step> auto Retrying(bool& ok, Step&& step) -> decltype(step()) {
    for (;;) {
        try {
            return step();
        } catch (const DbError& e) {
            MsgBox("ERROR in Recalc " + e.description(), MsgButtons::Ok, MsgIcon::Critical);
        } catch (const VbError& e) {
            MsgBox("ERROR in Recalc " + e.description(), MsgButtons::Ok, MsgIcon::Critical);
        } catch (const std::overflow_error&) {
            MsgBox("ERROR in Recalc Overflow", MsgButtons::Ok, MsgIcon::Critical);
        }
        ok = false;
    }
}

// A reading held in the text variable that carries it down the chain: Null cannot be held in text.
inline QString ReadingText(const Value& reading) {
    if (reading.isNull())
        throw VbError(94, "Invalid use of Null");
    return reading.toString();
}

// The first reading of a chain: the vehicle's Km with every character that is neither a digit nor a
// point turned into a point ("12,5" gives 12.5, "1 234" gives 1.234). A vehicle whose Km was never set
// counts from 0, as the report screen counts a missing previous reading.
QString CleanedKm(const Value& km);

} // namespace recalc
