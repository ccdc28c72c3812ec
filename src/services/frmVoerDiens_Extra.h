#pragma once
// The cost breakdown of one service: labour (hours and their cost), parts, out work and consumables. The sum
// of the lines becomes the service's cost.

#include <QDialog>
#include <QString>

class FlexGrid;
class QCheckBox;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;

class frmVoerDiens_Extra : public QDialog {
    Q_OBJECT
public:
    explicit frmVoerDiens_Extra(QWidget* parent = nullptr);

    void ShowCostTotal();
    void LaaiCostTypes();
    void ClearCostFields();
    void LoadCostFields();
    void SetCostForm();
    bool CheckCostFields();
    void SaveCostLine();
    void FillCostGrid();
    void CalcLabourCost();

    void cmd_Click(int index);
    void lblcmd_Click(int index);
    void cboCostType_Click();
    void chkTotalCost_Click();

    // Controls, named as the screen's.
    QComboBox* cboCostType = nullptr;
    QGroupBox* fraForm = nullptr;
    QLabel* lblReference1 = nullptr;
    QLineEdit* txtReference1 = nullptr;
    QLabel* lblReference2 = nullptr;
    QLineEdit* txtReference2 = nullptr;
    QLabel* lblValue1 = nullptr;
    QLineEdit* txtValue1 = nullptr;
    QLabel* lblvalue2 = nullptr;
    QLineEdit* txtValue2 = nullptr;
    QCheckBox* chkTotalCost = nullptr;
    QLineEdit* txtperlitre = nullptr;
    QPushButton* lblcmd[4] = {};
    QGroupBox* fraGrid = nullptr;
    FlexGrid* flx2 = nullptr;
    QPushButton* cmd[4] = {};
    FlexGrid* flexCosts = nullptr;
    QLabel* lbl[2] = {};

    void reject() override; // Escape and the close box: as " &Close"

private:
    void buildScreen();
    void FormClosed(); // the form part gone: the grid, the type and the actions available again
    QString CostType() const;

    QString m_Tag = "labour"; // chkTotalCost's word: "labour" for a total, "perl" for a rate
};

// The edit state of the breakdown screen: 5 add, 6 edit, 7 delete.
int GetCostAction();
void SetCostAction(int action);
