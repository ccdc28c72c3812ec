#include "MessageService.h"

#include <cstdio>

namespace {

// Used until the program installs the screen service: command-line runs print the text and take the
// safe answer (OK, or No where there is a choice).
class ConsoleMessageService : public MessageService {
public:
    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon, const QString& title) override {
        std::fprintf(stderr, "%s: %s\n", qPrintable(title.isEmpty() ? QStringLiteral("Orvel") : title),
                     qPrintable(text));
        return buttons == MsgButtons::Ok ? MsgResult::Ok : MsgResult::No;
    }
};

ConsoleMessageService g_console;
MessageService* g_current = &g_console;

} // namespace

MessageService& MessageService::instance() {
    return *g_current;
}

void MessageService::setInstance(MessageService* service) {
    g_current = service ? service : &g_console;
}
