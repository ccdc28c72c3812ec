#include "DateEntry.h"

#include "InputBehaviours.h"
#include "Vb.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

namespace {

constexpr int kMinus = 45;

bool isNumericText(const QString& text) {
    return vb::IsNumeric(Value(text));
}

// "-" and a double click on a field open the calendar; the key itself is not typed, since the field is
// about to receive the picked date.
class CalendarOpener : public QObject {
public:
    CalendarOpener(QLineEdit* field, std::function<void()> open) : QObject(field), m_open(std::move(open)) {
        field->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::KeyPress) {
            auto* key = static_cast<QKeyEvent*>(event);
            if (KeyAsciiOf(key->key(), key->text()) == kMinus) {
                m_open();
                return true;
            }
        } else if (event->type() == QEvent::MouseButtonDblClick) {
            m_open();
            return true;
        }
        return false;
    }

private:
    std::function<void()> m_open;
};

} // namespace

frmCalen::frmCalen(DatePicked target, QWidget* parent) : QDialog(parent), m_target(std::move(target)) {
    setObjectName("frmCalen");
    setWindowTitle("Calendar");
    MonthView1 = new QCalendarWidget(this);
    MonthView1->setObjectName("MonthView1");
    MonthView1->setGridVisible(true);
    MonthView1->setSelectedDate(QDate::currentDate());
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(MonthView1);
    // A click on a day and Enter in the month view both pick (activated covers Enter and double click).
    connect(MonthView1, &QCalendarWidget::clicked, this, &frmCalen::pick);
    connect(MonthView1, &QCalendarWidget::activated, this, &frmCalen::pick);
    MonthView1->setFocus();
}

void frmCalen::pick(const QDate& date) {
    if (m_target) {
        const DatePicked target = m_target;
        m_target = nullptr; // one date per opening
        target(date);
    }
    accept();
}

void OpenCalendar(QWidget* asking, const DatePicked& target) {
    frmCalen calendar(target, asking ? asking->window() : nullptr);
    if (asking) // placed under the field that asked
        calendar.move(asking->mapToGlobal(QPoint(0, asking->height())));
    calendar.exec();
}

DateEntry::DateEntry(QLineEdit* day, QLineEdit* month, QLineEdit* year, QObject* parent)
    : QObject(parent ? parent : day), txtDdd(day), txtDmm(month), txtDyy(year) {
    for (QLineEdit* field : {txtDdd, txtDmm, txtDyy}) {
        field->installEventFilter(this);
        AttachEnterAsTab(field);
        AttachSelectOnFocus(field);
    }
    txtDdd->setMaxLength(2);
    txtDmm->setMaxLength(2);
    txtDyy->setMaxLength(4);
}

void DateEntry::setDate(const QDate& date) {
    if (!date.isValid()) {
        txtDdd->clear();
        txtDmm->clear();
        txtDyy->clear();
        return;
    }
    txtDdd->setText(date.toString("dd"));
    txtDmm->setText(date.toString("MM"));
    txtDyy->setText(date.toString("yyyy"));
}

QDate DateEntry::date() const {
    bool okD = false, okM = false, okY = false;
    const int d = txtDdd->text().trimmed().toInt(&okD);
    const int m = txtDmm->text().trimmed().toInt(&okM);
    const int y = txtDyy->text().trimmed().toInt(&okY);
    if (!okD || !okM || !okY)
        return {};
    return QDate(y, m, d);
}

QString DateEntry::storageText() const {
    const QDate d = date();
    return d.isValid() ? d.toString("yyyy/MM/dd") : QString();
}

void DateEntry::openCalendar(QLineEdit* asking) {
    OpenCalendar(asking, [this](const QDate& picked) {
        if (m_target)
            m_target(picked);
        else
            setDate(picked);
        emit datePicked(picked);
    });
}

bool DateEntry::eventFilter(QObject* watched, QEvent* event) {
    auto* field = qobject_cast<QLineEdit*>(watched);
    if (!field)
        return false;
    switch (event->type()) {
    case QEvent::KeyPress: {
        auto* key = static_cast<QKeyEvent*>(event);
        if (KeyAsciiOf(key->key(), key->text()) == kMinus) {
            openCalendar(field);
            return true;
        }
        break;
    }
    case QEvent::KeyRelease:
        if (!field->text().isEmpty() && !isNumericText(field->text())) {
            field->clear();
            field->setFocus();
        }
        break;
    case QEvent::MouseButtonDblClick:
        openCalendar(field);
        return true;
    default:
        break;
    }
    return false;
}

void AttachCalendarField(QLineEdit* field, DatePicked target) {
    new CalendarOpener(field, [field, target] {
        OpenCalendar(field, [field, target](const QDate& picked) {
            if (target)
                target(picked);
            else
                field->setText(picked.toString("yyyy/MM/dd"));
        });
    });
}
