// `orvel --home DIR demo [--size small|large] [--seed N] [--today yyyy/mm/dd]`: a new home's store, made as at any
// start and filled with a demo register.

#include "CommandLine.h"

#include "BatchSession.h"

#include "DemoRegister.h"
#include "HomeFolder.h"
#include "StoreStartup.h"

#include <QFileInfo>
#include <cstdio>
#include <exception>

namespace {

const char kUsage[] = "usage: orvel [--home DIR] demo [--size small|large] [--seed N] [--today yyyy/mm/dd]";

} // namespace

int RunDemoCommand(const CommandLine& cl) {
    DemoOptions options;
    options.today = QDate::currentDate();
    for (int i = 0; i < cl.args.size(); ++i) {
        const QString& a = cl.args[i];
        const QString next = i + 1 < cl.args.size() ? cl.args[i + 1] : QString();
        bool ok = !next.isEmpty();
        if (a == "--size" && (next == "small" || next == "large")) {
            options.large = next == "large";
        } else if (a == "--seed") {
            options.seed = next.toUInt(&ok);
        } else if (a == "--today") {
            options.today = QDate::fromString(next, "yyyy/MM/dd");
            ok = options.today.isValid();
        } else {
            ok = false;
        }
        if (!ok)
            return FailCommand("demo", QString(kUsage));
        ++i;
    }

    BatchSession batch(cl);
    Session& s = batch.session;
    try {
        if (!AcquireInstanceLock(s))
            return FailCommand("demo", "The Orvel Module is already open!");
    } catch (const NumberedError& e) {
        return FailCommand("demo", QString("error %1: %2").arg(e.number()).arg(e.description()));
    }
    const QString dataPath = DataPathOf(s.home.isEmpty() ? HomeFolder() : s.home);
    for (const char* name : {"invent.db", "invent.mdb"})
        if (QFileInfo::exists(dataPath + name))
            return FailCommand("demo", "the home already has a store ('" + dataPath + name +
                                           "'); a demo register is made only in a home without one");
    if (const QString reason = batch.open(true); !reason.isEmpty())
        return FailCommand("demo", reason);
    try {
        const DemoSummary made = MakeDemoRegister(*s.db, options);
        std::printf("demo: %d vehicles, %d tanks, %d purchases, %d fuel rows, %d stock takes; seed %u, today %s\n",
                    made.vehicles, made.tanks, made.purchases, made.fuelRows, made.stockTakes, options.seed,
                    qPrintable(options.today.toString("yyyy/MM/dd")));
        std::fflush(stdout);
    } catch (const NumberedError& e) {
        return FailCommand("demo", QString("error %1: %2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        return FailCommand("demo", QString::fromUtf8(e.what()));
    }
    return CheckOpenStore("demo", *s.db);
}
