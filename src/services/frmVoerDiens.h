#pragma once
// Allocation of open services into a vehicle's history, and the history itself: search, edit, delete, the
// cost breakdown and the printed transaction.

#include <QDialog>
#include <QString>
#include <functional>

class FlexGrid;
class QCalendarWidget;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QRadioButton;
class QToolButton;

class frmVoerDiens : public QDialog {
    Q_OBJECT
public:
    explicit frmVoerDiens(QWidget* parent = nullptr);

    void LoadServices(int id); // the vehicle list calls it before showing the screen; it does nothing
    void RefreshServiceCost();
    void SaveServiceRecord();
    void DeleteServiceRecord();
    void ClearServiceForm();
    void LoadServiceForm(FlexGrid* grid);
    void RemoveOpenService();
    void RelinkCosts();
    void ShowCostTotals();
    void LockServiceForm();
    void PrintServiceDetail();
    QString CostBreakdownSql(const QString& costType, bool distinct) const;

    void lblcmd_Click(int index);
    void Combo2_Click();
    void Combo3_Change();
    void txtSearch_Change();
    void optSearch_Click(int index);
    void CloseForm();

    // Controls, named as the screen's.
    QComboBox* Combo2 = nullptr; // category
    QComboBox* Combo3 = nullptr; // vehicle
    QGroupBox* fraForm = nullptr;
    QLineEdit* txtDyy = nullptr;
    QLineEdit* txtSupplier = nullptr;
    QComboBox* Combo4 = nullptr; // supplier
    QLineEdit* txtCostCat = nullptr;
    QLineEdit* txtCostCatID = nullptr;
    QComboBox* Combo1 = nullptr; // cost category
    QLineEdit* txtReference = nullptr;
    QLineEdit* txtKos = nullptr;
    QLineEdit* txtKm = nullptr;
    QPlainTextEdit* txtNota = nullptr;
    FlexGrid* flexCosts = nullptr;
    QGroupBox* fraFlex = nullptr;
    FlexGrid* flx2 = nullptr;  // open services
    FlexGrid* Grid1 = nullptr; // history
    QGroupBox* fraSearch = nullptr;
    QLineEdit* txtSearch = nullptr;
    QRadioButton* optSearch[2] = {};
    QCalendarWidget* Calendar = nullptr;
    QToolButton* Image2 = nullptr;
    QPushButton* lblcmd[10] = {};
    QPushButton* cmdClose = nullptr;
    QPushButton* cmdPrintCostDetails = nullptr;

    FlexGrid* currentGrid() const { return m_Grid; }
    QString searchKind() const { return m_SearchKind; }

    void reject() override; // Escape and the close box

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    void AllocateMode();
    void HistoryMode();
    void OpenCostDetails();
    void ShowModeButtons();
    int VehicleOfCombo() const;
    void ServiceDetail_Sheet();
    void CostBreakdown_Sheet();
    void showComboOver(QLineEdit* field, QComboBox* combo);

    FlexGrid* m_Grid = nullptr;
    QString m_SearchKind;
    bool m_ShowingCombo = false;
    bool m_FormOpen = false;
};

// The service history workbook of " &Print View" for one vehicle, over the first to the last date of its history.
// The report subsystem provides it; the program sets it at start.
using ServiceHistoryPrinter = std::function<void(int vehicleId)>;
void SetServiceHistoryPrinter(ServiceHistoryPrinter printer);
