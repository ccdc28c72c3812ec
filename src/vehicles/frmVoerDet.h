#pragma once
// Vehicle detail: shows, adds and edits one vehicle, with its book value computed as the user types.

#include <QDialog>

class QComboBox;
class QDateEdit;
class QFrame;
class QGroupBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QRadioButton;
class QTabWidget;
class QToolButton;

class frmVoerDet : public QDialog {
    Q_OBJECT
public:
    explicit frmVoerDet(QWidget* parent = nullptr);

    // Fills the screen from the vehicle whose TransID is the session's SelectedID.
    void LoadDetail();
    // Kept as an empty hook: the list calls it after LoadDetail and the registration field on leaving.
    void WysVoettuig();
    void CalcBoek();
    bool CheckVehicle();
    void SaveVehicle();
    // Start values of a new vehicle under the session's SelectedID category.
    void SetNewVehicleDefaults();

    // Fields, named as the screen's controls.
    QTabWidget* SSTab1 = nullptr;
    QLineEdit* txtIid = nullptr;
    QLineEdit* txtMaak = nullptr;
    QLineEdit* txtModel = nullptr;
    QLineEdit* txtReg = nullptr;
    QLineEdit* txtYY = nullptr;
    QDateEdit* dtpPurchaseDate = nullptr;
    QDateEdit* dtpLicenceDueDate = nullptr;
    QDateEdit* dtpServiceDueDate = nullptr;
    QLineEdit* txtKoop = nullptr;
    QLineEdit* txtDep = nullptr;
    QLabel* lblBoek = nullptr;
    QLineEdit* txtVerseker = nullptr;
    QLineEdit* txtKilo = nullptr;
    QLineEdit* txtFoto = nullptr;
    QLineEdit* txtEnj = nullptr;
    QLineEdit* txtFuelTankSize = nullptr;
    QLineEdit* txtBatterySize = nullptr;
    QLineEdit* txtTyreSize = nullptr;
    QLineEdit* txtOilFilterRef = nullptr;
    QLineEdit* txtFanbeltRef = nullptr;
    QLineEdit* txtRebatePct = nullptr;
    QLineEdit* txtRebateRate = nullptr;
    QRadioButton* Opt1[2] = {};
    QRadioButton* optRebate[2] = {};
    QGroupBox* fraRebate = nullptr;
    QPushButton* cmdEditRebate = nullptr;
    QComboBox* cmbDepartment = nullptr;
    QPushButton* cmdDepartment = nullptr;
    QLabel* Label14[8] = {};
    QToolButton* Command1 = nullptr; // photo
    QToolButton* Command2 = nullptr; // date backwards
    QToolButton* Command3 = nullptr; // date forwards
    QToolButton* Image1 = nullptr;
    QToolButton* Image3 = nullptr;
    QToolButton* Image4 = nullptr;
    QGroupBox* fraImage = nullptr;
    QLabel* ImFot = nullptr;
    QPushButton* cmdClearSearchList = nullptr;
    QPushButton* lblcmd[2] = {};
    QPushButton* cmdPrint = nullptr;

    bool rebateApplies() const { return m_Rebate; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    QWidget* buildVehiclePage();
    QWidget* buildAdditionalPage();
    QWidget* buildSizesPage();
    void connectHandlers();

    void optRebate_Click();
    void Opt1_Click();
    void cmdEditRebate_Click();
    void cmdDepartment_Click();
    void Command1_Click();
    void StepPurchaseDate(int days, const QString& routine);
    void OpenPurchaseCalendar();
    void dtpPurchaseDate_Change();
    void cmdPrint_Click();
    void PrintVehicle_Sheet();
    bool LoadPhoto(const QString& path);
    void ShowPhoto();
    void LaaiDepartments();
    void EditDepartment(int action);

    bool m_Rebate = false;
    bool m_Loading = false;
};

// Sets the field to `text` when it is empty or its numeric value is 0.
void DefaultIfEmpty(QLineEdit* field, const QString& text);
