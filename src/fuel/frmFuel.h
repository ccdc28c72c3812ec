#pragma once
// "Orvel - Fuel Input": fuel issued from a tank to a vehicle. The user picks category, vehicle and tank, gives
// the date, the litres or the pump reading, the odometer (or hour meter), driver and activity, and saves one
// VecFuel row; the tank's pump reading moves forward and its balance is read back after a recalculation. The
// fuel record grid edits and deletes earlier issues of the vehicle.

#include "FuelFigures.h"
#include "Value.h"

#include <QDialog>
#include <QString>
#include <array>

class FlexGrid;
class QComboBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;

class frmFuel : public QDialog {
    Q_OBJECT
public:
    explicit frmFuel(QWidget* parent = nullptr);

    // The caption numbers of label4 that the routines refer to.
    enum Caption {
        kCapCategory = 0,
        kCapVehicle,
        kCapTank,
        kCapDate,
        kCapLitres,
        kCapRandLitre,
        kCapPumpPrev,
        kCapPumpCurr,
        kCapTankBal,
        kCapDriver,
        kCapActivity,
        kCapCurrent,
        kCapPrevious,
        kCapPrevious10,
        kCapKmReading = 14,
        kCapPrevKm,
        kCapTravelled,
        kCapKmPerLitre,
        kCapLitresPer100,
        kCapRandPerLitre,
        kCapCostPerKm,
        kCaptionCount
    };

    QComboBox* Combo2; // vehicle category
    QComboBox* Combo3; // vehicle
    QComboBox* Combo7; // tank
    QComboBox* cmbDriver;
    QComboBox* cmbActivity;
    QToolButton* cmdDriver;
    QToolButton* cmdActivity;
    QLineEdit* txtDyy;
    QToolButton* Command1; // a day back
    QToolButton* Command2; // a day on
    QLineEdit* txtLiter;
    QLineEdit* txtPrKm;
    QLineEdit* txtKm;
    QLineEdit* txtRandLiter;
    QLineEdit* txtPumpPrev;
    QLineEdit* txtPumpCurr;
    QLineEdit* txtTankBal;
    QLineEdit* txtTransID;   // hidden: "0" for a new row
    QLineEdit* txtEditLiter; // hidden: the litres of the row being edited, before the change
    std::array<QLabel*, kCaptionCount> label4{};
    QLabel* lblRebate;
    QLabel* lblrebateActivity;

    // The figure boxes: Current Tank, PreviousTank, Previous10 Tanks.
    QLineEdit *txtKmTravel1, *txtKmL1, *txtL100Km1, *txtRL1, *txtCKM1;
    QLineEdit *txtKmTravel2, *txtKmL, *txtL100Km, *txtRL, *txtCKM;
    QLineEdit *txtKmTravel3, *txtLKm10, *txtL100Km10, *txtRL10, *txtCKm10;

    QGroupBox* fmeTank;
    QGroupBox* fmeDetail;
    QWidget* fmeButtons;
    QGroupBox* Frame8; // the fuel record grid and its buttons
    FlexGrid* Flx4;
    FlexGrid* flxDelete;
    QProgressBar* ProgressBar1;
    // 0 "&Save", 1 " &Cancel", 2 " &Delete", 3 " C&lose", 4 " &Edit"
    std::array<QPushButton*, 5> lblcmd{};
    QPushButton* lblPrint;

    // Screen state.
    QString VehicleID; // key of the picked vehicle, as text
    bool IsHoursVehicle = false;
    bool IsEditing = false;
    QString LastKmRead;
    int SaveFailed = 0;
    qint32 SavedFuelID = 0;
    int EditingFromGrid = 0;

    void lblcmd_Click(int index);
    void SaveFuel();
    void ViewFuel();
    void WysDuplikaatRekords();
    void DeleteFuelRecord(const QString& transId);
    void RemoveLedgerRow();
    void LoadTankDetails();
    QString ReadTankBalance(const QString& tankId);
    QString GetLastKmRead(const QString& vehicleId);
    QString GetVehicleKm(const QString& vehicleId);
    Currency GetTankBalance();
    void lblPrint_Click();

    void ShowCurrentTankFigures();
    void ShowFuelFigures();
    void ShowFirstFillFigures();
    void ClearFigures();
    void ClearCapture();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    void connectHandlers();
    void Form_Load();
    void Combo2_Click();
    void Combo3_Click();
    void Combo7_Click();
    void cmbActivity_Click();
    void txtLiter_LostFocus();
    void txtPumpCurr_LostFocus();
    void txtKm_LostFocus();
    void MoveDate(int days);
    void ResetVehicleChoice();
    void RememberVehicleChoice();
    void ApplyReadingCaptions();
    void LockPreviousReading(bool locked);
    void ShowCaptureButtons();
    void Flx4_Pick();
    void TakeFromTank();
    void RelinkLastRecord();
    void AdjustTankAfterEdit();
    void RestoreTankAfterDelete(const QString& tankId, const QString& litres);
    void SetGroup(const FigureGroup& group, QLineEdit* travel, QLineEdit* perLitre, QLineEdit* per100, QLineEdit* rate,
                  QLineEdit* costPerKm);
    FigureGroup Group(QLineEdit* travel, QLineEdit* perLitre, QLineEdit* per100, QLineEdit* rate,
                      QLineEdit* costPerKm) const;
    QString TankKey() const;

    bool m_loading = false;
};
