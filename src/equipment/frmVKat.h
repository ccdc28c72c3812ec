#pragma once
// The room stock register: its categories (voorkat) and the items of one category (voorinv), each item kept
// through frmVoor.

#include <QDialog>
#include <QWidget>

class DateEntry;
class FlexGrid;
class QComboBox;
class QLineEdit;
class QListWidget;
class QPushButton;

class frmVoor : public QDialog {
    Q_OBJECT
public:
    frmVoor(int categoryId, int itemId, QWidget* parent = nullptr);

    void LoadDetail();
    void Command1_Click(); // the date one day forwards
    void Command2_Click(); // the date one day backwards
    void lblcmd_Click();   // save

    QLineEdit* txtDesc = nullptr;
    QLineEdit* txtHoev = nullptr;
    QComboBox* cmbLOK = nullptr;
    QLineEdit* txtYY = nullptr;
    QLineEdit* txtMM = nullptr;
    QLineEdit* txtDD = nullptr;
    QLineEdit* txtKoop = nullptr;
    QLineEdit* txtVerseker = nullptr;
    QLineEdit* txtVerwys = nullptr;
    QPushButton* Command1 = nullptr;
    QPushButton* Command2 = nullptr;
    QPushButton* lblcmd = nullptr;
    DateEntry* dateEntry = nullptr;

private:
    void MoveDate(int days);
    int m_categoryId;
    int m_itemId;
};

class frmVKat : public QWidget {
    Q_OBJECT
public:
    explicit frmVKat(QWidget* parent = nullptr);

    void FillCategories();
    void list1_Click();
    void cmdSaveCategory_Click();
    void cmdDeleteCategory_Click();
    void cmdAddItem_Click();
    void cmdEditItem_Click();
    void cmdDeleteItem_Click();

    QListWidget* list1 = nullptr;
    QLineEdit* txtKAT = nullptr;
    FlexGrid* flg = nullptr;
    QPushButton* cmdSaveCategory = nullptr;
    QPushButton* cmdDeleteCategory = nullptr;
    QPushButton* cmdAddItem = nullptr;
    QPushButton* cmdEditItem = nullptr;
    QPushButton* cmdDeleteItem = nullptr;

    int categoryId() const { return m_categoryId; }

private:
    void OpenItem(int itemId);
    int CurrentItemId() const;
    int m_categoryId = 0;
};
