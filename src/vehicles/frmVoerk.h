#pragma once
// The vehicle register's entry screen: categories on the left, the vehicles of the selected category on the
// right, with the search and renewal filters, the category and vehicle actions and the list workbook.

#include "VehicleSql.h"

#include <QString>
#include <QWidget>

class FlexGrid;
class QCheckBox;
class QDateEdit;
class QGroupBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QToolButton;

class frmVoerk : public QWidget {
    Q_OBJECT
public:
    explicit frmVoerk(QWidget* parent = nullptr);

    void LaaiKategorie();
    void LoadEarliestDates();
    void SetRenewalFrom();
    QString BuildVehicleSql(bool forExcel, bool minLicence, bool minService);
    void LaaiVoertuie();
    int GetSelectedVehicle();

    // Handlers, named as the screen's events.
    void Label4_Click(int index);
    void list1_Click();
    void list1_DblClick();
    void txtSearch_Change();
    void imgRun_Click();
    void optType_Click();
    void cmdClearSearch_Click();
    void lblPrint_Click();
    void Activate(); // what each activation of the screen resets

    // Controls, named as the screen's.
    QListWidget* list1 = nullptr;
    QGroupBox* Frame2 = nullptr;
    QLineEdit* txtKAT = nullptr;
    QRadioButton* Opt1[2] = {};
    FlexGrid* flg = nullptr;
    QLabel* lblRows = nullptr;
    QLabel* Label3 = nullptr;
    QGroupBox* fraSearch = nullptr;
    QLineEdit* txtSearch = nullptr;
    QRadioButton* optSearch[3] = {};
    QCheckBox* chkSearchAllCategories = nullptr;
    QPushButton* cmdClearSearch = nullptr;
    QGroupBox* fraRenewal = nullptr;
    QRadioButton* optType[2] = {};
    QDateEdit* dtpDateFrom = nullptr;
    QDateEdit* dtpDateTo = nullptr;
    QToolButton* imgRun = nullptr;
    QProgressBar* pgb = nullptr;
    QPushButton* Label4[9] = {};
    QPushButton* lblPrint = nullptr;
    QLineEdit* Text1 = nullptr;
    QLineEdit* Text2 = nullptr;
    QLineEdit* Text3 = nullptr;
    QLineEdit* Text4 = nullptr;

    // Room for the list and most of the grid inside the main window.
    QSize sizeHint() const override { return QSize(1000, 740); }

    int rowCount() const { return m_Rows; }
    int categoryId() const { return m_CatID; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;

private:
    void buildScreen();
    void connectHandlers();
    QString CurrentRowText(int col) const;
    int CurrentRowId() const; // the id in column 0 of the grid's current row, 0 when it is no number
    void OpenServiceHistory();
    void EditCategory();
    void DeleteCategory();
    void SaveCategory();
    void DeleteVehicle();
    void EditVehicle();
    void AddVehicle();
    void VehicleList_Header();
    void VehicleList_Data();
    VehicleListFilter CurrentFilter() const;
    void ClearRenewalOptions();

    int m_CatID = 0;
    int m_Rows = 0;
    short m_Row = 0;
    bool m_UseAllCategories = false;
    bool m_UseDates = false;
    QString m_MinLicence;
    QString m_MinService;
    bool m_FillingCategories = false;
    int m_RowAtPress = -1; // the list's row when the mouse was pressed on it
    bool m_WatchingActivation = false;
    bool m_WasActive = false;
};
