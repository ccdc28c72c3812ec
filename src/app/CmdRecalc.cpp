#include "CommandLine.h"

#include "MessageService.h"
#include "Recalc.h"
#include "Session.h"
#include "StoreStartup.h"

#include <cstdio>

namespace {

struct SessionScope {
    explicit SessionScope(Session& s) { SetCurrentSession(&s); }
    ~SessionScope() { SetCurrentSession(nullptr); }
    SessionScope(const SessionScope&) = delete;
    SessionScope& operator=(const SessionScope&) = delete;
};

struct GaveUp {
    QString message;
};

// On the desktop the error box repeats for as long as the failed step fails. A batch run has nobody to
// wait for: it prints each message and gives up when the same one keeps coming back.
class BatchMessages : public MessageService {
public:
    BatchMessages() { MessageService::setInstance(this); }
    ~BatchMessages() override { MessageService::setInstance(nullptr); }

    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon, const QString& title) override {
        std::fprintf(stderr, "%s: %s\n", qPrintable(title.isEmpty() ? QStringLiteral("Orvel") : title),
                     qPrintable(text));
        m_repeats = text == m_last ? m_repeats + 1 : 1;
        m_last = text;
        if (m_repeats >= kPatience)
            throw GaveUp{text};
        return buttons == MsgButtons::Ok ? MsgResult::Ok : MsgResult::No;
    }

private:
    static constexpr int kPatience = 20;
    QString m_last;
    int m_repeats = 0;
};

int Fail(const QString& reason) {
    std::fprintf(stderr, "orvel recalc: %s\n", qPrintable(reason));
    return 1;
}

} // namespace

int RunRecalcCommand(const CommandLine& cl) {
    if (!cl.args.isEmpty())
        return Fail("recalc takes no arguments");
    Session s;
    s.home = cl.home;
    SessionScope scope(s);
    if (!AcquireInstanceLock(s)) {
        std::fprintf(stderr, "The Orvel Module is already open!\n");
        return 1;
    }
    try {
        OpenSessionStore(s);
        CreateVersionTable(*s.db);
        CheckVersion(*s.db);
        RunSchemaSteps(*s.db);
    } catch (const NumberedError& e) {
        return Fail(QString("error %1: %2").arg(e.number()).arg(e.description()));
    }

    BatchMessages messages;
    RecalcSummary summary;
    bool ok = false;
    try {
        ok = Recalc(*s.db, nullptr, false, &summary);
    } catch (const GaveUp& g) {
        return Fail("gave up after the same error kept coming back: " + g.message);
    }
    std::printf("recalc: %d vehicles, %d fuel rows, %d stock takes, %d tanks; %d values rewritten; %s\n",
                summary.vehicles, summary.fuelRows, summary.stockTakes, summary.tanks, summary.valuesWritten,
                ok ? "ok" : "errors reported");
    std::fflush(stdout);
    return ok ? 0 : 1;
}
