#pragma once
// The reminder screen: the vehicles whose licence or service falls due, or the people whose driving permit
// does, in a number of months around a date. The session's ReminderKind ("vehicle" or "pdp") says which.

#include <QDialog>
#include <QString>

class FlexGrid;
class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QToolButton;
class UpDown;

class frmReminders : public QDialog {
    Q_OBJECT
public:
    explicit frmReminders(QWidget* parent = nullptr);

    void Form_Load();
    void FirstReminder();
    QString DueColumn(bool wantLabel) const;
    void LaaiReminders();
    void ReminderHeader();

    void optBoth_Click(int index);
    void imgRun_Click();
    void lblPrint_Click();
    void lblcmd_Click(int index);

    // Sets the option as code does: its click runs only when it was not set already.
    void SetOption(int index);

    QLabel* lblDue = nullptr;
    QDateEdit* DueDate = nullptr;
    QLineEdit* txtFrom = nullptr;
    UpDown* UpDownFrom = nullptr;
    QLineEdit* txtTo = nullptr;
    UpDown* UpDownTo = nullptr;
    QLabel* Label1[2] = {};
    QToolButton* imgRun = nullptr;
    QGroupBox* fraBoth = nullptr;
    QRadioButton* optBoth[3] = {};
    QGroupBox* fraDue = nullptr;
    FlexGrid* flg = nullptr;
    QPushButton* lblcmd[1] = {};
    QPushButton* lblPrint = nullptr;

    bool BothFound() const { return m_BothFound; }
    QString LastSavedWorkbook() const { return m_savedWorkbook; }

private:
    void buildScreen();
    int CheckedOption() const;
    void Reminders_Header(int option);
    void Reminders_Data(int option);
    QString DueLabelOf(int option) const;

    QString m_Today;
    QString m_Title;
    bool m_BothFound = false;
    QString m_savedWorkbook;
};
