#pragma once
// The report screen: one screen for every report of the vehicle, fuel and equipment trees. The selection
// (categories, vehicles or tanks, and dates) follows the report chosen in the tree; "&Preview" fills the grid,
// "Pr&int View" builds the workbook. GetReport dispatches both by the report's title (see ReportRegistry).

#include "ReportRun.h"

#include <QString>
#include <QWidget>
#include <functional>

class FlexGrid;
class QCheckBox;
class QDateEdit;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QPushButton;

class frmVerslae : public QWidget {
    Q_OBJECT
public:
    explicit frmVerslae(QWidget* parent = nullptr);

    // Prepares the screen for the session's ReportChoice.
    void ReportSetup();
    void VehicleCategories_Load(int kind);
    void Vehicles_Load(QListWidget* categories);
    void Tanks_Load();
    void ReportDates_Load();
    bool IsTankReport() const;

    // Handlers, named as the screen's events.
    void cmdApply_Click();
    void cmdPrint_Click();
    void cmdReset_Click();
    void lstCat_Click(QListWidgetItem* item);
    void lstCatKm_Click(QListWidgetItem* item);
    void chkAllCat_Click();
    void chkAllCatKm_Click();
    void GetReport(bool print);

    // What a run of GetReport saw last (for the batch command and tests).
    const ReportRun& LastRun() const { return m_run; }
    // A batch run ends at the first failure in GetReport instead of showing it again: the callback is told.
    void SetStopOnError(std::function<void(const QString&)> stop) { m_stopOnError = std::move(stop); }

    // Controls, named as the screen's.
    QLabel* lblVerslag = nullptr;
    QLabel* lblVerlag1 = nullptr;
    QLabel* lblVerslag2 = nullptr;
    QLabel* lblkmcat = nullptr;
    QLabel* lblkm = nullptr;
    QLabel* lblHours = nullptr;
    QListWidget* lstCat = nullptr;
    QListWidget* lstProd = nullptr;
    QListWidget* lstCatKm = nullptr;
    QListWidget* lstProdkm = nullptr;
    QCheckBox* chkAllCat = nullptr;
    QCheckBox* chkAllCatKm = nullptr;
    QDateEdit* dtpFrom = nullptr;
    QDateEdit* dtpTo = nullptr;
    QLineEdit* Text1 = nullptr;
    QLineEdit* Text2 = nullptr;
    QCheckBox* chkByDate = nullptr;
    QPushButton* cmdApply = nullptr;
    QPushButton* cmdPrint = nullptr;
    QPushButton* cmdReset = nullptr;
    FlexGrid* grd3 = nullptr;
    QProgressBar* ProgressBar1 = nullptr;
    QLabel* lblMsg = nullptr;

    QSize sizeHint() const override { return QSize(1180, 700); }

private:
    void buildScreen();
    void setDates(const QString& first, const QString& last);
    void categoryClicked(QListWidget* categories, QListWidget* items, QListWidgetItem* item);
    void equipmentItems_Load();
    bool isEquipmentReport() const;
    void runReport(bool print);

    ReportRun m_run;
    std::function<void(const QString&)> m_stopOnError;
    bool m_settingUp = false;
};
