#pragma once
// A message service for tests: answers are queued in advance, every message shown is recorded.

#include "MessageService.h"

#include <QList>
#include <QString>
#include <deque>
#include <functional>

struct ShownMessage {
    QString text;
    MsgButtons buttons;
    MsgIcon icon;
    QString title; // as the user sees it: "Orvel" when the caller gave none
};

class ScriptedMessageService : public MessageService {
public:
    ScriptedMessageService() { MessageService::setInstance(this); }
    ~ScriptedMessageService() override { MessageService::setInstance(nullptr); }

    // The next answers, in order. With none queued: Ok for an OK box, Yes for a question.
    void answer(MsgResult result) { m_answers.push_back(result); }

    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override {
        shown.append({text, buttons, icon, title.isEmpty() ? QStringLiteral("Orvel") : title});
        if (shown.size() > 500) // a handler that retries for ever would hang the test run
            qFatal("more than 500 messages, the last: %s", qPrintable(text));
        if (onShow)
            onShow(shown.last()); // what stands on screen while the box is up
        if (!m_answers.empty()) {
            MsgResult r = m_answers.front();
            m_answers.pop_front();
            return r;
        }
        return buttons == MsgButtons::Ok ? MsgResult::Ok : MsgResult::Yes;
    }

    QStringList texts() const {
        QStringList out;
        for (const auto& m : shown)
            out << m.text;
        return out;
    }
    QString last() const { return shown.isEmpty() ? QString() : shown.last().text; }
    void clear() { shown.clear(); }

    QList<ShownMessage> shown;
    std::function<void(const ShownMessage&)> onShow;

private:
    std::deque<MsgResult> m_answers;
};
