#pragma once
// A physical measurement of a tank: the litres measured against the litres the books expect, the gain or
// loss and its value at the tank's rand per litre, with a reason. A save sets the tank's balance to the
// measured litres; the stock take's row keeps the correction alive through every recalculation.

#include "Value.h"

#include <QDialog>
#include <QString>
#include <array>

class FlexGrid;
class QComboBox;
class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The rate of the stock take on screen, rand per litre.
inline Currency RandPerLitreLost;

class frmTankStock : public QDialog {
    Q_OBJECT
public:
    explicit frmTankStock(QWidget* parent = nullptr);

    QString BuildStockSql(bool withKey) const;
    void FillStockList();
    void ResetStockFields();
    void ShowTankBalance();
    void SaveStockTake();
    void SetTankToMeasured();
    void LoadStockTake(int key);
    void txtLitIn_LostFocus();
    void Label4_Click();
    void lblEdit_Click();
    void lblDelete_Click();
    void lblPrint_Click();
    void cmdPrint_Click();
    void lblcmd_Click(int index);

    // Controls, named as the screen's.
    QComboBox* cboTank;
    FlexGrid* flg;
    QPushButton* Label4; // add
    QPushButton* lblEdit;
    QPushButton* lblDelete;
    QPushButton* lblPrint;
    QGroupBox* fraEdit;
    QLabel* lblDate;
    QDateEdit* dtpDate;
    QLabel* lblTank;
    QComboBox* cmbTank;
    QLabel* lblLitLesing;
    QLineEdit* txtLitLesing;
    QLabel* lblLitIn;
    QLineEdit* txtLitIn;
    QLabel* lblLost;
    QLineEdit* txtLost;
    QLabel* lblLostR;
    QLineEdit* txtLostR;
    QLabel* lblLostRP;
    QLineEdit* txtLostRP;
    QLabel* lblReason;
    QLineEdit* txtReason;
    QPushButton* cmdPrint;
    std::array<QPushButton*, 2> lblcmd; // 0 "&Save && Close", 1 " &Cancel"

    int listRows() const { return m_Rows; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QString CursorText(int col) const;
    int m_Rows = 0;
};
