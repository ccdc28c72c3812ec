#include "BenchSupport.h"

#include "HomeFolder.h"
#include "Session.h"
#include "StoreStartup.h"

#include <QElapsedTimer>
#include <QFile>
#include <algorithm>
#include <cstdio>

namespace bench {

double Seconds(const std::function<void()>& work) {
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e9;
}

double Median(std::vector<double> values) {
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

QString BuildKind() {
#ifdef NDEBUG
    return "build: optimised\n";
#else
    return "build: debug (unoptimised)\n";
#endif
}

void WriteFigures(const QString& file, const QString& text) {
    if (file.isEmpty())
        return; // no figures file asked for: the printed text is the whole report
    QFile f(file);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        f.write(text.toUtf8());
    else
        std::fprintf(stderr, "cannot write %s\n", qPrintable(file));
}

int Report(const QString& file, const QString& text) {
    std::printf("%s", qPrintable(text));
    WriteFigures(file, text);
    return 0;
}

int Failed(const NumberedError& e) {
    std::fprintf(stderr, "error %d: %s\n", e.number(), qPrintable(e.description()));
    return 1;
}

void StartStore(Session& session, const QString& home) {
    session.home = home;
    SetHomeFolder(home);
    SetCurrentSession(&session);
    OpenSessionStore(session);
    RunStartupSteps(*session.db); // as the program starts its store: steps, then the working objects
}

} // namespace bench
