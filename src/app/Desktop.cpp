// The desktop program: the Qt application, the message service, the run's session and the main window.

#include "CommandLine.h"
#include "ImportProgressWindow.h"
#include "Registration.h"

#include "QtMessageService.h"
#include "Session.h"
#include "frmMain.h"

#include <QApplication>
#include <memory>

int RunDesktop(const CommandLine& cl, int argc, char** argv) {
    QApplication app(argc, argv);
    QApplication::setApplicationName("Orvel");

    QtMessageService messages;
    MessageService::setInstance(&messages);

    Session session;
    session.home = cl.home;
    SetCurrentSession(&session);
    RegisterAllScreens();

    int exitCode = 0;
    {
        // An older installation's file is taken over at start, in view, before the store opens.
        ImportProgressWindow progress;
        SetStartImportObserver(progress.Observer());
        auto window = std::make_unique<frmMain>();
        const bool started = window->Startup();
        SetStartImportObserver({});
        progress.close();
        if (!started) {
            // A refused second start, or a start-up failure already reported: the run ends here, as the
            // original's process does, with what was stored kept and no repair step.
            exitCode = 1;
        } else {
            window->show();
            exitCode = app.exec();
        }
    }
    SetCurrentSession(nullptr);
    MessageService::setInstance(nullptr);
    return exitCode;
}
