// The desktop program: the Qt application, the message service, the run's session and the main window.

#include "CommandLine.h"
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
        auto window = std::make_unique<frmMain>();
        if (!window->Startup()) {
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
