#pragma once
// The plain adder of a lookup list: one name typed and added to the vehicle suppliers, the cost categories or
// the fuel suppliers, as the caller's caption says. A name already there is passed over without a word.

#include <QDialog>
#include <array>

class QLabel;
class QLineEdit;
class QPushButton;

class frmAdd : public QDialog {
    Q_OBJECT
public:
    explicit frmAdd(QWidget* parent = nullptr);

    QLabel* lblAdd; // set by the caller: "Supplier", "Cost Category" or "Fuel Supplier"
    QLineEdit* txtAdd;
    std::array<QPushButton*, 2> lblcmd; // 0 "&Cancel", 1 "&Save && Close"

    void lblcmd_Click(int index);

private:
    void AddName(const QString& select, const QString& column, const QString& refillRoutine);
};

// Opens the adder modally with its caption set; returns once it has unloaded.
void ShowAdd(QWidget* parent, const QString& caption);
