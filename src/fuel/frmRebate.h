#pragma once
// "SARS Global Vehicle Rebate": the rebate rate and claimable percentage that apply to all vehicles.

#include <QDialog>
#include <array>

class QLabel;
class QLineEdit;
class QPushButton;

class frmRebate : public QDialog {
    Q_OBJECT
public:
    explicit frmRebate(QWidget* parent = nullptr);

    QLabel* lblRebateRate;
    QLineEdit* txtRebateRate;
    QLabel* lblrebatesars;
    QLineEdit* txtrebatesars;
    std::array<QPushButton*, 2> lblcmd; // 0 "&Save && Close", 1 "&Cancel"

    void lblcmd_Click(int index);

private:
    void Form_Load();
};
