#pragma once
// Every message box goes through this service, so that tests can script the answers and read what was shown.

#include <QString>

enum class MsgButtons { Ok, YesNo, YesNoDefaultNo, OkCancel };
enum class MsgIcon { None, Critical, Exclamation, Question, Information };
enum class MsgResult { Ok, Cancel, Yes, No };

class MessageService {
public:
    virtual ~MessageService() = default;
    // An empty title shows the application's title, "Orvel".
    virtual MsgResult show(const QString& text, MsgButtons buttons = MsgButtons::Ok, MsgIcon icon = MsgIcon::None,
                           const QString& title = QString()) = 0;

    static MessageService& instance();
    static void setInstance(MessageService* service); // the program sets the Qt one; tests a scripted one
};

// Shorthand used everywhere: MsgBox("text", MsgButtons::YesNo, MsgIcon::Question, "Title").
inline MsgResult MsgBox(const QString& text, MsgButtons buttons = MsgButtons::Ok, MsgIcon icon = MsgIcon::None,
                        const QString& title = QString()) {
    return MessageService::instance().show(text, buttons, icon, title);
}
