#include "QtMessageService.h"

#include "frmMain.h"

#include <QApplication>
#include <QCoreApplication>
#include <QMessageBox>
#include <QTimer>

MsgResult QtMessageService::show(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) {
    QMessageBox box(QApplication::activeModalWidget() ? QApplication::activeModalWidget()
                                                      : QApplication::activeWindow());
    box.setWindowTitle(title.isEmpty() ? QStringLiteral("Orvel") : title);
    box.setText(text);
    switch (icon) {
    case MsgIcon::Critical:
        box.setIcon(QMessageBox::Critical);
        break;
    case MsgIcon::Exclamation:
        box.setIcon(QMessageBox::Warning);
        break;
    case MsgIcon::Question:
        box.setIcon(QMessageBox::Question);
        break;
    case MsgIcon::Information:
        box.setIcon(QMessageBox::Information);
        break;
    case MsgIcon::None:
        box.setIcon(QMessageBox::NoIcon);
        break;
    }
    switch (buttons) {
    case MsgButtons::Ok:
        box.setStandardButtons(QMessageBox::Ok);
        box.setDefaultButton(QMessageBox::Ok);
        break;
    case MsgButtons::YesNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::Yes);
        break;
    case MsgButtons::YesNoDefaultNo:
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        break;
    case MsgButtons::OkCancel:
        box.setStandardButtons(QMessageBox::Ok | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Ok);
        break;
    }
    // The pointer may stand at the hourglass while a handler reports; the box is read with the arrow.
    const bool overridden = QApplication::overrideCursor() != nullptr;
    if (overridden)
        QApplication::setOverrideCursor(Qt::ArrowCursor);
    const int pressed = box.exec();
    if (overridden)
        QApplication::restoreOverrideCursor();
    switch (pressed) {
    case QMessageBox::Yes:
        return MsgResult::Yes;
    case QMessageBox::No:
        return MsgResult::No;
    case QMessageBox::Cancel:
        return MsgResult::Cancel;
    default:
        break;
    }
    // Closing a question box by its close box answers as its Escape button would.
    if (buttons == MsgButtons::YesNo || buttons == MsgButtons::YesNoDefaultNo)
        return pressed == QMessageBox::Ok ? MsgResult::Ok : MsgResult::No;
    if (buttons == MsgButtons::OkCancel && pressed != QMessageBox::Ok)
        return MsgResult::Cancel;
    return MsgResult::Ok;
}

void ShowRunTimeError(int number, const QString& description) {
    MsgBox(QStringLiteral("Run-time error '%1':\n\n%2").arg(number).arg(description), MsgButtons::Ok, MsgIcon::Critical,
           QStringLiteral("Orvel"));
}

void EndRunWithError(int number, const QString& description) {
    ShowRunTimeError(number, description);
    // Queued, so that the handler that failed returns first and no half-run screen code acts on a closed window.
    QTimer::singleShot(0, qApp, [] {
        if (frmMain* main = MainWindow())
            main->close();
        QCoreApplication::exit(1);
    });
}
