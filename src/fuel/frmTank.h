#pragma once
// The bulk fuel tanks: the tank list with its detail frame on the left, the purchases booked into the picked
// tank on the right, the purchase actions and the purchases workbook.

#include <QWidget>

class FlexGrid;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

class frmTank : public QWidget {
    Q_OBJECT
public:
    explicit frmTank(QWidget* parent = nullptr);

    void LoadTankPurchases();
    void Label4_Click(int index);
    void lblPrint_Click();
    void FillTankList();

    // Controls, named as the screen's.
    QListWidget* list1 = nullptr;
    FlexGrid* flg = nullptr;
    QGroupBox* Frame2 = nullptr;
    QLabel* lblTank = nullptr;
    QLineEdit* txtTank = nullptr;
    QLabel* lblCapacity = nullptr;
    QLineEdit* txtCapacity = nullptr;
    QLabel* lblPumpReading = nullptr;
    QLineEdit* txtPumpReading = nullptr;
    QGroupBox* fraUNUSED = nullptr;
    QLineEdit* txtDyy = nullptr;
    QLineEdit* txtCost = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    QPushButton* Label4[9] = {};
    QPushButton* lblPrint = nullptr;
    QLabel* lblPurchases = nullptr;
    QLineEdit* Text1 = nullptr;
    QLineEdit* Text2 = nullptr;
    QLineEdit* Text3 = nullptr;
    QLineEdit* Text4 = nullptr;

    int tankId() const { return id; }
    QSize sizeHint() const override { return QSize(1000, 600); }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    void AddTank();
    void EditTank();
    void SaveTank();
    void DeleteTank();
    void DeletePurchase();
    void EditPurchase();
    void AddPurchase();
    void ViewPurchase();
    int CursorKey() const;

    int id = 0; // TransID of the tank picked in list1; 0 for a new tank on save
    bool m_Filling = false;
};
