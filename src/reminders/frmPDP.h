#pragma once
// The driving permit list: the people whose professional driving permits are tracked, each with a renewal date.

#include <QDialog>
#include <QString>

class FlexGrid;
class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The statement of the permit rows, without order.
QString PdpSql();

class frmPDP : public QDialog {
    Q_OBJECT
public:
    explicit frmPDP(QWidget* parent = nullptr);

    void LaaiPdp();
    void ClearPdp();
    int PickPdp();
    bool CheckPdp();
    int MoveRow(const QString& word);

    void lblcmd_Click(int index);
    void flx1_Click();
    void cmdViewReminders_Click();

    FlexGrid* flx1 = nullptr;
    QGroupBox* FraPDP = nullptr;
    QLineEdit* txtId = nullptr;
    QLineEdit* txtSurname = nullptr;
    QLineEdit* txtFirstname = nullptr;
    QDateEdit* dtpPdPdate = nullptr;
    QLabel* Image1 = nullptr;
    QPushButton* lblcmd[6] = {};
    QPushButton* cmdViewReminders = nullptr;

    int PdpID() const { return m_PdpID; }
    int CurrentRow() const { return m_Row; }

private:
    void buildScreen();
    void AddPdp();
    void EditPdp();
    void DeletePdp();
    void SavePdp();
    void CancelPdp();
    void GiveBackGrid();

    short m_PdpID = 0;
    short m_Row = 0;
};
