#include "BadText.h"

#include <QTest>
#include <gtest/gtest.h>

namespace {

// Stands in front of the scripted service for one case: answers No to the screen's declined questions.
class DecliningService : public MessageService {
public:
    DecliningService(ScriptedMessageService& inner, const QStringList& declined)
        : m_inner(inner), m_declined(declined) {
        MessageService::setInstance(this);
    }
    ~DecliningService() override { MessageService::setInstance(&m_inner); }
    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon icon, const QString& title) override {
        const MsgResult r = m_inner.show(text, buttons, icon, title);
        return buttons != MsgButtons::Ok && m_declined.contains(text) ? MsgResult::No : r;
    }

private:
    ScriptedMessageService& m_inner;
    const QStringList& m_declined;
};

} // namespace

const std::vector<BadText>& BadTexts() {
    static const std::vector<BadText> texts = {
        {"empty", ""},
        {"blanks only", "   "},
        {"a quote", "O'Neil's"},
        {"a bracket", "[x"},
        {"300 characters", QString(300, 'w')},
        {"text in a number field", "twelve"},
        {"31 February", "2024/02/31"},
        {"year 9999", "9999/12/31"},
        {"a control character", QString("a") + QChar(7) + "b"},
        {"outside Latin-1", QString::fromUtf8("\xe2\x82\xac \xd0\x96 \xe4\xb8\xad")},
    };
    return texts;
}

QString StoreDump(Database& db) {
    QString out;
    QStringList tables = db.TableNames();
    tables.sort(Qt::CaseInsensitive);
    for (const QString& table : tables) {
        out += "== " + table + "\n";
        auto rs = db.OpenRecordset("select * from [" + table + "]", RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            for (int i = 0; i < rs->FieldCount(); ++i)
                out += rs->Field(i).toString() + "|";
            out += "\n";
        }
    }
    return out;
}

std::vector<BadTextOutcome> TypeBadTextIntoEveryField(Database& db, ScriptedMessageService& messages,
                                                      const BadTextScreen& screen) {
    std::vector<BadTextOutcome> outcomes;
    const auto fieldsOf = [&screen] {
        if (screen.openFields)
            return screen.openFields();
        std::vector<std::pair<QString, QWidget*>> fields;
        for (const auto& [name, edit] : screen.open())
            fields.emplace_back(name, edit);
        return fields;
    };
    const std::vector<std::pair<QString, QWidget*>> names = fieldsOf();
    screen.close();
    for (size_t f = 0; f < names.size(); ++f) {
        for (const BadText& bad : BadTexts()) {
            SCOPED_TRACE(names[f].first.toStdString() + " <- " + bad.name);
            const std::vector<std::pair<QString, QWidget*>> fields = fieldsOf();
            QWidget* field = fields[f].second;
            auto* line = qobject_cast<QLineEdit*>(field);
            auto* lines = qobject_cast<QPlainTextEdit*>(field);
            if (!line && !lines) {
                ADD_FAILURE() << "a field is a line or a text box";
                screen.close();
                continue;
            }
            const QString before = StoreDump(db);
            messages.clear();
            field->setFocus();
            if (line)
                line->selectAll();
            else
                lines->selectAll();
            QTest::keyClick(field, Qt::Key_Delete);
            // Typed as a person types: printable text by keys; what no key makes is pasted.
            bool printable = true;
            for (const QChar c : bad.text)
                printable = printable && c.unicode() >= 32 && c.unicode() < 127;
            if (printable)
                QTest::keyClicks(field, bad.text);
            else if (line)
                line->insert(bad.text);
            else
                lines->insertPlainText(bad.text);
            {
                DecliningService declining(messages, screen.declined);
                screen.save();
            }
            BadTextOutcome outcome{names[f].first, bad.name, false, false, {}, {}, MsgIcon::None};
            const bool mayEndRun = screen.endsRun && screen.endsRun(outcome.field, outcome.text);
            for (const ShownMessage& m : messages.shown) {
                // The run-time error box that ends the program: only where the screen ends it on purpose. A screen's
                // own handler ("ERROR in ...") is a refusal like any other, as long as it wrote nothing.
                if (m.text.startsWith("Run-time error")) {
                    outcome.endedRun = true;
                    EXPECT_TRUE(mayEndRun) << m.text.toStdString();
                    EXPECT_EQ(m.icon, MsgIcon::Critical);
                    EXPECT_EQ(m.title, "Orvel");
                }
                if (m.buttons != MsgButtons::Ok || screen.notices.contains(m.text))
                    continue;
                outcome.refused = true;
                outcome.message = m.text;
                outcome.title = m.title;
                outcome.icon = m.icon;
            }
            if (mayEndRun) {
                EXPECT_TRUE(outcome.endedRun) << "the run was to end with the run-time error box";
            }
            if (outcome.refused) {
                EXPECT_EQ(StoreDump(db), before)
                    << "refused with \"" << outcome.message.toStdString() << "\" yet the store changed";
            }
            outcomes.push_back(outcome);
            screen.close();
        }
    }
    return outcomes;
}

void HoldBadTextAgainst(const std::vector<BadTextOutcome>& outcomes, const BadTextExpected& expected) {
    for (const BadTextOutcome& o : outcomes) {
        SCOPED_TRACE(o.field.toStdString() + " <- " + o.text.toStdString());
        const auto it = expected.find({o.field, o.text});
        const QString shown = o.endedRun ? o.message.section('\n', 0, 0) : o.refused ? o.message : "<taken>";
        EXPECT_EQ(shown.toStdString(), (it == expected.end() ? QString("<taken>") : it->second).toStdString());
    }
}
