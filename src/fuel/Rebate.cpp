#include "Rebate.h"

#include "QtMessageService.h"

#include "MessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QCoreApplication>

int RebateSetting(int fieldIndex) {
    const QString text = GetScalar(db(), "SELECT  [rebaterate],rebatesars FROM [rebate]", "0", fieldIndex, "0");
    try {
        return static_cast<int>(vb::CInt(Value(text)));
    } catch (const VbError& e) {
        // No handler of its own: the run-time error box, and the program ends.
        EndRunWithError(e.number(), e.description());
        return 0;
    }
}

QString GetRebateRate() {
    return GetScalar(db(), "SELECT  [rebaterate] FROM [rebate]", "0", 0, "0");
}
