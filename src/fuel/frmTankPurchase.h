#pragma once
// One bulk purchase of fuel into the tank in hand: date, supplier, invoice reference, litres, cost and cost per
// litre. A save raises the tank's balance by the difference in litres and gives the tank the cost per litre of
// its latest purchase.

#include <QDialog>
#include <QString>
#include <array>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

// The statement that makes the fuel suppliers' placeholder row in `table`.
QString MakeFuelSupplierSeed(const QString& table);

class frmTankPurchase : public QDialog {
    Q_OBJECT
public:
    explicit frmTankPurchase(QWidget* parent = nullptr);

    void LoadDetail();
    void UpdatePompe();
    void ClearPurchaseFields();
    void LoadFuelSuppliers();
    void LookupTankByDate();
    void lblcmd_Click(int index);
    void txtCost_LostFocus();
    void cmdAddSupplier_Click();

    // Controls, named as the screen's.
    QLabel* lblSupplier;
    QComboBox* cmbsupplier;
    QPushButton* cmdAddSupplier;
    QLabel* lblInvoice;
    QLineEdit* txtinvoiceref;
    QLabel* lblDate;
    QLineEdit* txtDyy;
    QLineEdit* txtDmm;
    QLineEdit* txtDdd;
    QPushButton* Command1; // a day forward
    QPushButton* Command2; // a day back
    QLabel* lblCost;
    QLineEdit* txtCost;
    QLabel* lblLiter;
    QLineEdit* txtLiter;
    QLabel* lblCostLitre;
    QLineEdit* txtCostLitre;
    std::array<QPushButton*, 3> lblcmd; // 0 "&Save && Close", 1 " &Cancel", 2 " &Add"

    int recordNumber() const { return m_RecordNumber; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void MoveDate(int days);
    int m_RecordNumber = 0; // TransID of the purchase last saved
};
