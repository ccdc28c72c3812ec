#include "Session.h"

#include <QLockFile>

namespace {
// Until the program or a test sets its own, screens see an empty session with no store.
Session g_fallback;
Session* g_current = nullptr;
} // namespace

Session& CurrentSession() {
    return g_current ? *g_current : g_fallback;
}

void SetCurrentSession(Session* session) {
    g_current = session;
}
