#pragma once
// The one entry screen of the equipment register: a new item with its opening balance (mode 0), an edit of an
// item (6), a book-out (2) and a book-in (1). It reads EquipmentMode, ReportChoice, SelectedCategoryId and
// SelectedItemId on load.

#include "Value.h"

#include <QDialog>

class FlexGrid;
class QDateEdit;
class QLabel;
class QLineEdit;
class QPushButton;

class frmEquipmentAdj : public QDialog {
    Q_OBJECT
public:
    explicit frmEquipmentAdj(QWidget* parent = nullptr);

    void cmdSave_Click();
    void cmdCancel_Click();
    // The checks of the description and the quantity; false after a refusal has been shown.
    bool ValidateEquipment(Currency quantity);
    // The writes in their order, after ValidateEquipment.
    void SaveEquipmentTrans(Currency quantity);
    void FillBookOutGrid();

    QLabel* lblItem = nullptr;
    QLabel* lblDesc = nullptr;
    QLineEdit* txtDesc = nullptr;
    QLineEdit* txtQtyBuy = nullptr;
    QLineEdit* txtCostBuy = nullptr;
    QDateEdit* dtpTrans = nullptr;
    QPushButton* cmdSave = nullptr;
    QPushButton* cmdCancel = nullptr;
    FlexGrid* flg = nullptr;

    int mode() const { return m_mode; }

private:
    void buildScreen();
    void LoadItem();

    int m_mode = 0;
};
