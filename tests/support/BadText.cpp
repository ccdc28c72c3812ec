#include "BadText.h"

#include <QTest>
#include <gtest/gtest.h>

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
    const std::vector<std::pair<QString, QLineEdit*>> names = screen.open();
    screen.close();
    for (size_t f = 0; f < names.size(); ++f) {
        for (const BadText& bad : BadTexts()) {
            SCOPED_TRACE(names[f].first.toStdString() + " <- " + bad.name);
            const std::vector<std::pair<QString, QLineEdit*>> fields = screen.open();
            QLineEdit* field = fields[f].second;
            const QString before = StoreDump(db);
            messages.clear();
            field->setFocus();
            field->selectAll();
            QTest::keyClick(field, Qt::Key_Delete);
            // Typed as a person types: printable text by keys; what no key makes is pasted.
            bool printable = true;
            for (const QChar c : bad.text)
                printable = printable && c.unicode() >= 32 && c.unicode() < 127;
            if (printable)
                QTest::keyClicks(field, bad.text);
            else
                field->insert(bad.text);
            screen.save();
            BadTextOutcome outcome{names[f].first, bad.name, false, {}};
            for (const ShownMessage& m : messages.shown) {
                // The run-time error box that ends the program: never for something typed. A screen's own handler
                // ("ERROR in ...") is a refusal like any other, as long as it wrote nothing.
                EXPECT_FALSE(m.text.startsWith("Run-time error")) << m.text.toStdString();
                outcome.refused = true;
                outcome.message = m.text;
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
