#pragma once
// Capture of services not yet booked to a vehicle's history: each is saved under a running job reference,
// its job card (or an empty one) and the list of open services are printed from here.

#include <QDialog>
#include <QString>

class FlexGrid;
class QComboBox;
class QGroupBox;
class QLineEdit;
class QPushButton;
class QToolButton;

class frmServAdd : public QDialog {
    Q_OBJECT
public:
    explicit frmServAdd(QWidget* parent = nullptr);

    QString GetSupplier(int id);
    QString GetCostCategory(int id);
    QString GetReferenceText() const;
    void SetReference(const QString& text) { m_Reference = text; }
    void LoadServiceList();
    void SaveService();
    void DeleteService();
    void ClearService();
    void PrintJobCard(int id, bool empty);
    void PrintServiceList();

    void lblcmd_Click(int index);
    void Combo2_Click();
    void flx1_Click();
    void StepDate(int days); // the steppers: one day forwards (1) or backwards (-1)
    bool txtDyy_Validate();  // false (and the field emptied) when the text is no date

    // Controls, named as the screen's.
    QGroupBox* FrAddServices = nullptr;
    QLineEdit* txtReference = nullptr;
    QComboBox* Combo2 = nullptr; // vehicle category
    QComboBox* Combo3 = nullptr; // vehicle
    QLineEdit* txtDyy = nullptr;
    QComboBox* Combo4 = nullptr; // supplier
    QComboBox* Combo1 = nullptr; // cost category
    QLineEdit* txtKos = nullptr;
    QLineEdit* txtKm = nullptr;
    QLineEdit* txtTransID = nullptr;
    QPushButton* Command1 = nullptr; // date forwards
    QPushButton* Command2 = nullptr; // date backwards
    QToolButton* Image1 = nullptr;   // calendar
    QPushButton* cmdAddSupplier = nullptr;
    QPushButton* cmdAddCostCat = nullptr;
    QGroupBox* Frame1 = nullptr;
    FlexGrid* flx1 = nullptr;
    QPushButton* lblcmd[12] = {};

    QString lastSql() const { return m_Sql; }

public slots:
    // Refills of the supplier and cost category combos; other screens reach them by form name.
    void LaaiSupliers();
    void LaaiCostCat();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    void CloseFrame();
    void OpenCalendar();

    QString m_Reference;
    QString m_Sql;
};
