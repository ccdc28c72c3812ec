#pragma once
// The program's message boxes: QMessageBox with the title "Orvel" when none is given.

#include "MessageService.h"

class QtMessageService : public MessageService {
public:
    MsgResult show(const QString& text, MsgButtons buttons = MsgButtons::Ok, MsgIcon icon = MsgIcon::None,
                   const QString& title = QString()) override;
};

// The critical box that stands for the run-time error box which ends the process: "Orvel", the number
// and the description.
void ShowRunTimeError(int number, const QString& description);

// Where a routine has no error handler of its own, the run ends after that box, as it did on the original
// platform: the main window closes (its exit steps run, and everything stored stays) and the program quits.
void EndRunWithError(int number, const QString& description);
