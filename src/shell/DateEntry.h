#pragma once
// Dates taken in three small fields (day, month, year) with a pop-up calendar, and the calendar itself.
// The calendar hands its date straight back to the field that asked for it.

#include <QDate>
#include <QDialog>
#include <QObject>
#include <functional>

class QCalendarWidget;
class QLineEdit;

using DatePicked = std::function<void(const QDate&)>;

// The pop-up month calendar: opens on today; a picked date (click or Enter) goes to the target, then it
// closes. Escape or the close box hands nothing back.
class frmCalen : public QDialog {
    Q_OBJECT
public:
    explicit frmCalen(DatePicked target, QWidget* parent = nullptr);
    QCalendarWidget* MonthView1;

private:
    void pick(const QDate& date);
    DatePicked m_target;
};

// Opens frmCalen modally for the asking widget.
void OpenCalendar(QWidget* asking, const DatePicked& target);

// The three fields txtDdd, txtDmm, txtDyy: a non-numeric text is emptied at once (and the field keeps the
// focus), "-" or a double click opens the calendar, Enter moves on, focus selects the text. A picked date
// fills the three fields unless the screen gives its own target (for example to add the time as well).
class DateEntry : public QObject {
    Q_OBJECT
public:
    DateEntry(QLineEdit* txtDdd, QLineEdit* txtDmm, QLineEdit* txtDyy, QObject* parent = nullptr);

    void setCalendarTarget(DatePicked target) { m_target = std::move(target); }
    void setDate(const QDate& date); // fills the fields ("dd", "mm", "yyyy"); an invalid date empties them
    QDate date() const;              // invalid when the three do not make a date
    QString storageText() const;     // "yyyy/MM/dd", or "" when no date

    QLineEdit* txtDdd;
    QLineEdit* txtDmm;
    QLineEdit* txtDyy;

signals:
    void datePicked(const QDate& date);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void openCalendar(QLineEdit* asking);
    DatePicked m_target;
};

// A single text field that holds a date as "yyyy/mm/dd": "-" or a double click opens the calendar, and the
// picked date is written into the field (or handed to target when one is given).
void AttachCalendarField(QLineEdit* field, DatePicked target = {});
