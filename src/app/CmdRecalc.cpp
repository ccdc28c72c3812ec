#include "CommandLine.h"

#include "BatchSession.h"

#include "MessageService.h"
#include "Recalc.h"
#include "Session.h"
#include "StoreStartup.h"

#include <cstdio>

namespace {

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

} // namespace

int RunRecalcCommand(const CommandLine& cl) {
    if (!cl.args.isEmpty())
        return FailCommand("recalc", "recalc takes no arguments");
    BatchSession batch(cl);
    if (const QString reason = batch.open(false); !reason.isEmpty())
        return FailCommand("recalc", reason);
    Session& s = batch.session;

    BatchMessages messages;
    RecalcSummary summary;
    bool ok = false;
    try {
        ok = Recalc(*s.db, nullptr, false, &summary);
    } catch (const GaveUp& g) {
        return FailCommand("recalc", "gave up after the same error kept coming back: " + g.message);
    }
    std::printf("recalc: %d vehicles, %d fuel rows, %d stock takes, %d tanks; %d values rewritten; %s\n",
                summary.vehicles, summary.fuelRows, summary.stockTakes, summary.tanks, summary.valuesWritten,
                ok ? "ok" : "errors reported");
    std::fflush(stdout);
    return ok ? 0 : 1;
}
