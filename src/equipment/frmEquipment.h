#pragma once
// The equipment register: categories on the left, the items of the picked category in the grid, and the
// actions that start every stock movement through the maintenance screen.

#include <QString>
#include <QWidget>

class FlexGrid;
class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

class frmEquipment : public QWidget {
    Q_OBJECT
public:
    explicit frmEquipment(QWidget* parent = nullptr);

    void LoadEquipmentGrid();

    // Category actions (Label4): 0 Add, 1 Edit, 2 Delete, 3 Save, 4 Cancel.
    void Label4_Click(int index);
    void list1_Click();
    void cmdAddProduct_Click();
    void cmdEditItem_Click();
    void cmdDeleteItem_Click();
    void cmdView_Click();
    void cmdBookOut_Click();
    void cmdPrintView_Click();
    void cmdPrintTransactions_Click();

    QListWidget* list1 = nullptr;
    QGroupBox* fraCategory = nullptr; // the category actions
    QGroupBox* Frame2 = nullptr;      // the category's name, with Save and Cancel
    QLabel* fraOpening = nullptr;     // what a new category starts with
    QLineEdit* txtKAT = nullptr;
    QPushButton* Label4[5] = {};
    QLabel* Label7 = nullptr;
    FlexGrid* flg = nullptr;
    QGroupBox* fraItem = nullptr; // the item actions but Book Out
    QPushButton* cmdAddProduct = nullptr;
    QPushButton* cmdEditItem = nullptr;
    QPushButton* cmdDeleteItem = nullptr;
    QPushButton* cmdView = nullptr;
    QPushButton* cmdBookOut = nullptr;
    QPushButton* cmdPrintView = nullptr;
    QPushButton* cmdPrintTransactions = nullptr;
    QDateEdit* dtpFrom = nullptr;
    QDateEdit* dtpTo = nullptr;

    QSize sizeHint() const override { return QSize(1000, 640); }

private:
    void buildScreen();
    void DeleteCategory();
    void SaveCategory();
    void PrimeStatementDates();
    QString CurrentRowText(int col) const;
    int CurrentRowId() const;
};
