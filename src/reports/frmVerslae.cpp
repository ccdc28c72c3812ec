#include "frmVerslae.h"

#include "ComboHelpers.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReportRegistry.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "frmMain.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

const QStringList kTankReports = {"Fuel Usage",      "Fuel Available",       "Fuel Purchase",
                                  "Fuel Stock Take", "Detail per Fuel Tank", "Summary per Fuel Tank"};

QDate DateOf(const QString& text) {
    const QDate d = QDate::fromString(text.left(10).replace('-', '/'), "yyyy/MM/dd");
    return d.isValid() ? d : QDate::currentDate();
}

// The first field of each row of a statement, as integers.
QList<int> IdsOf(const QString& sql) {
    QList<int> ids;
    auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        ids << static_cast<int>(rs->Field(0).toLong());
    return ids;
}

} // namespace

frmVerslae::frmVerslae(QWidget* parent) : QWidget(parent) {
    setObjectName("frmVerslae");
    buildScreen();
    setWindowTitle(CurrentSession().ReportChoice);
    cmdPrint->setEnabled(false);
    ReportSetup();
}

void frmVerslae::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* side = new QVBoxLayout;
    outer->addLayout(side, 0);

    lblVerslag = new QLabel(this);
    lblVerslag->setObjectName("lblVerslag");
    QFont big = lblVerslag->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    lblVerslag->setFont(big);
    side->addWidget(lblVerslag);

    auto makeList = [this](const char* name) {
        auto* list = new QListWidget(this);
        list->setObjectName(name);
        list->setSelectionMode(QAbstractItemView::MultiSelection);
        list->setMinimumWidth(200);
        return list;
    };
    auto makeLabel = [this](const char* name) {
        auto* label = new QLabel(this);
        label->setObjectName(name);
        return label;
    };

    auto* lists = new QHBoxLayout;
    side->addLayout(lists, 1);
    auto* hours = new QVBoxLayout;
    lblHours = new QLabel("Hours", this);
    lblHours->setObjectName("lblHours");
    hours->addWidget(lblHours);
    lblVerlag1 = makeLabel("lblVerlag1");
    lstCat = makeList("lstCat");
    chkAllCat = new QCheckBox("Select All", this);
    chkAllCat->setObjectName("chkAllCat");
    lblVerslag2 = makeLabel("lblVerslag2");
    lstProd = makeList("lstProd");
    hours->addWidget(lblVerlag1);
    hours->addWidget(lstCat, 1);
    hours->addWidget(chkAllCat);
    hours->addWidget(lblVerslag2);
    hours->addWidget(lstProd, 2);
    lists->addLayout(hours);

    auto* km = new QVBoxLayout;
    km->addWidget(new QLabel(" ", this));
    lblkmcat = makeLabel("lblkmcat");
    lstCatKm = makeList("lstCatKm");
    chkAllCatKm = new QCheckBox("Select All", this);
    chkAllCatKm->setObjectName("chkAllCatKm");
    lblkm = makeLabel("lblkm");
    lstProdkm = makeList("lstProdkm");
    km->addWidget(lblkmcat);
    km->addWidget(lstCatKm, 1);
    km->addWidget(chkAllCatKm);
    km->addWidget(lblkm);
    km->addWidget(lstProdkm, 2);
    lists->addLayout(km);

    auto* dates = new QGridLayout;
    side->addLayout(dates);
    auto makeDate = [this](const char* name) {
        auto* picker = new QDateEdit(this);
        picker->setObjectName(name);
        picker->setCalendarPopup(true);
        picker->setDisplayFormat("yyyy/MM/dd");
        picker->setDate(QDate::currentDate());
        return picker;
    };
    dtpFrom = makeDate("dtpFrom");
    dtpTo = makeDate("dtpTo");
    dates->addWidget(new QLabel("Date From", this), 0, 0);
    dates->addWidget(dtpFrom, 0, 1);
    dates->addWidget(new QLabel("Date To", this), 1, 0);
    dates->addWidget(dtpTo, 1, 1);
    auto* order = new QGroupBox("Order by", this);
    auto* orderLayout = new QHBoxLayout(order);
    chkByDate = new QCheckBox("Date", order);
    chkByDate->setObjectName("chkByDate");
    orderLayout->addWidget(chkByDate);
    dates->addWidget(order, 0, 2, 2, 1);
    Text1 = new QLineEdit(this);
    Text1->setObjectName("Text1");
    Text1->hide();
    Text2 = new QLineEdit(this);
    Text2->setObjectName("Text2");
    Text2->hide();

    auto* buttons = new QHBoxLayout;
    side->addLayout(buttons);
    cmdApply = new QPushButton("&Preview", this);
    cmdApply->setObjectName("cmdApply");
    cmdPrint = new QPushButton("Pr&int View", this);
    cmdPrint->setObjectName("cmdPrint");
    cmdReset = new QPushButton("&Reset Filter", this);
    cmdReset->setObjectName("cmdReset");
    buttons->addWidget(cmdApply);
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdReset);

    auto* right = new QVBoxLayout;
    outer->addLayout(right, 1);
    grd3 = new FlexGrid(this);
    grd3->setObjectName("grd3");
    right->addWidget(grd3, 1);
    auto* status = new QHBoxLayout;
    lblMsg = new QLabel(this);
    lblMsg->setObjectName("lblMsg");
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName("ProgressBar1");
    ProgressBar1->setRange(0, 100);
    status->addWidget(lblMsg, 1);
    status->addWidget(ProgressBar1, 1);
    right->addLayout(status);

    connect(cmdApply, &QPushButton::clicked, this, [this] { cmdApply_Click(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });
    connect(cmdReset, &QPushButton::clicked, this, [this] { cmdReset_Click(); });
    connect(lstCat, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { lstCat_Click(item); });
    connect(lstCatKm, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) { lstCatKm_Click(item); });
    connect(chkAllCat, &QCheckBox::clicked, this, [this] { chkAllCat_Click(); });
    connect(chkAllCatKm, &QCheckBox::clicked, this, [this] { chkAllCatKm_Click(); });
}

bool frmVerslae::IsTankReport() const {
    return kTankReports.contains(lblVerslag->text());
}

bool frmVerslae::isEquipmentReport() const {
    return lblVerslag->text() == "Equipment List" || lblVerslag->text() == "Stock List";
}

void frmVerslae::ReportSetup() {
    Session& s = CurrentSession();
    m_settingUp = true;
    const QString choice = s.ReportChoice;
    lblVerslag->setText(choice);
    setWindowTitle(choice);
    lblVerlag1->setText("Categories");
    lblkmcat->setText("Categories");
    lblVerslag2->setText("Vehicles");
    lblkm->setText("Vehicles");
    lblHours->setText("Hours");
    lblMsg->hide();
    ProgressBar1->hide();
    chkAllCat->show();
    chkAllCat->setChecked(false);
    chkAllCatKm->setChecked(false);
    cmdApply->show();
    for (QListWidget* list : {lstCat, lstProd, lstCatKm, lstProdkm}) {
        list->clear();
        list->show();
    }
    for (QWidget* w :
         {static_cast<QWidget*>(lblHours), static_cast<QWidget*>(lblVerlag1), static_cast<QWidget*>(lblVerslag2),
          static_cast<QWidget*>(lblkmcat), static_cast<QWidget*>(lblkm), static_cast<QWidget*>(chkAllCatKm)})
        w->show();
    cmdApply->setEnabled(!choice.isEmpty());
    cmdPrint->setEnabled(false);
    m_settingUp = false;
    if (choice.isEmpty())
        return;

    if (choice == "Vehicle Fuel Log Sheet") {
        if (MsgBox("Print " + choice + "?", MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes) {
            if (const ReportProcedures* p = FindReport(choice); p && p->print) {
                m_run = ReportRun{};
                m_run.title = choice;
                m_run.lblMsg = lblMsg;
                m_run.progress = ProgressBar1;
                m_run.grid = grd3;
                try {
                    p->print(m_run);
                } catch (const NumberedError& e) {
                    MsgBox("ERROR in GetReport " + e.description());
                }
            }
        } else {
            MsgBox("Select " + choice + " to Reprint", MsgButtons::Ok, MsgIcon::Information);
        }
        return;
    }
    m_settingUp = true;
    try {
        if (isEquipmentReport()) {
            const bool equipment = choice == "Equipment List";
            lblHours->setText("");
            lblVerlag1->setText("Category");
            lblVerslag2->setText(equipment ? "Equipment" : "Stock");
            auto rs = db().OpenRecordset(equipment ? "SELECT * FROM ToerKat" : "SELECT * FROM VoorKat",
                                         RecordsetType::Snapshot);
            for (; !rs->Eof(); rs->MoveNext())
                AddItemWithData(lstCat, rs->Field("Desc").toString(), rs->Field(0).toLong());
            for (QWidget* w :
                 {static_cast<QWidget*>(lblkmcat), static_cast<QWidget*>(lblkm), static_cast<QWidget*>(lstCatKm),
                  static_cast<QWidget*>(lstProdkm), static_cast<QWidget*>(chkAllCatKm)})
                w->hide();
        } else if (!IsTankReport()) {
            VehicleCategories_Load(0);
            VehicleCategories_Load(1);
            Vehicles_Load(lstCat);
            Vehicles_Load(lstCatKm);
        }
        if (choice == "Fuel Consumption") {
            db().Execute(" update vecfuel set previouskmread = 0 where previouskmread is null");
            db().Execute(" update vecfuel set kmread = 0 where kmread is null");
            db().Execute(" update vecfuel set previouskmread = cstr(cdbl(previouskmread)+1) where cdbl(kmread)- "
                         "cdbl(previouskmread) = 0");
            db().Execute(" update vecfuel set litres = 1 where litres = 0");
        }
        const ReportProcedures* p = FindReport(choice);
        if (p && p->dateRange) {
            const auto [first, last] = p->dateRange();
            setDates(first, last);
        } else {
            ReportDates_Load();
        }
        if (IsTankReport()) {
            Tanks_Load();
            lblVerlag1->setText("Fuel Tanks");
            lblkmcat->setText("Fuel Tanks");
            lblHours->setText("");
            for (QWidget* w :
                 {static_cast<QWidget*>(lblHours), static_cast<QWidget*>(lblVerlag1), static_cast<QWidget*>(lstCat),
                  static_cast<QWidget*>(chkAllCat), static_cast<QWidget*>(lblVerslag2), static_cast<QWidget*>(lstProd),
                  static_cast<QWidget*>(lstProdkm)})
                w->hide();
            lblVerslag2->setText("");
            lblkm->setText("");
        }
    } catch (const NumberedError& e) {
        m_settingUp = false;
        MsgBox("ERROR in ReportSetup " + e.description(), MsgButtons::Ok, MsgIcon::Exclamation);
    }
    m_settingUp = false;
}

void frmVerslae::setDates(const QString& first, const QString& last) {
    dtpFrom->setDate(DateOf(first));
    dtpTo->setDate(DateOf(last));
}

void frmVerslae::VehicleCategories_Load(int kind) {
    QString sql = "select distinct k.transid";
    sql += " , k.desc from voerkat as k ";
    sql += " left join voertuig t on t.catid = k.transid";
    sql += " where Maak Is Not Null";
    sql += kind == 0 ? " and k.Hours = true " : " and k.Hours = false ";
    sql += " ORDER BY  [desc]";
    QListWidget* list = kind == 0 ? lstCat : lstCatKm;
    list->clear();
    auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        AddItemWithData(list, rs->Field("desc").toString(), rs->Field("transid").toLong());
}

void frmVerslae::Vehicles_Load(QListWidget* categories) {
    // On opening every category's vehicles are listed; a category click then selects its own.
    QListWidget* vehicles = categories == lstCat ? lstProd : lstProdkm;
    vehicles->clear();
    for (int i = 0; i < categories->count(); ++i) {
        auto rs = db().OpenRecordset("SELECT * FROM Voertuig WHERE CatID = " +
                                         QString::number(categories->item(i)->data(Qt::UserRole).toLongLong()),
                                     RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            AddItemWithData(vehicles, rs->Field("Maak").toString() + " (" + rs->Field("RegNr").toString() + ")",
                            rs->Field("TransID").toLong());
    }
}

void frmVerslae::Tanks_Load() {
    lstCatKm->clear();
    auto rs = db().OpenRecordset("SELECT * FROM Tanks ORDER BY TankNaam", RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        AddItemWithData(lstCatKm, rs->Field("TankNaam").toString(), rs->Field("TransID").toLong());
}

void frmVerslae::ReportDates_Load() {
    QString first, last;
    for (const char* table : {"FuelPurchase", "Tankstock", "VecFuel"}) {
        auto rs =
            db().OpenRecordset(QString("SELECT Datum FROM ") + table + " ORDER BY Datum", RecordsetType::Snapshot);
        if (rs->Eof())
            continue;
        const QString earliest = rs->Field(0).toString();
        rs->MoveLast();
        const QString latest = rs->Field(0).toString();
        if (!earliest.isEmpty() && (first.isEmpty() || earliest < first))
            first = earliest;
        if (latest > last)
            last = latest;
    }
    setDates(first, last);
}

void frmVerslae::categoryClicked(QListWidget* categories, QListWidget* items, QListWidgetItem* item) {
    const QString id = QString::number(item->data(Qt::UserRole).toLongLong());
    const bool selected = item->isSelected();
    if (isEquipmentReport()) {
        equipmentItems_Load();
        const QString sql = lblVerslag->text() == "Equipment List" ? "SELECT IID FROM ToerInv WHERE TID = " + id
                                                                   : "SELECT IID FROM VoorInv WHERE VID = " + id;
        const QList<int> ids = IdsOf(sql);
        for (int i = 0; i < items->count(); ++i)
            if (ids.contains(items->item(i)->data(Qt::UserRole).toInt()))
                items->item(i)->setSelected(selected);
        return;
    }
    Q_UNUSED(categories);
    const QList<int> ids = IdsOf("SELECT transid FROM Voertuig WHERE CatID = " + id);
    for (int i = 0; i < items->count(); ++i)
        if (ids.contains(items->item(i)->data(Qt::UserRole).toInt()))
            items->item(i)->setSelected(selected);
}

void frmVerslae::equipmentItems_Load() {
    // The items of the selected categories, the selection of those still listed kept.
    QList<int> kept;
    for (const QListWidgetItem* item : lstProd->selectedItems())
        kept << item->data(Qt::UserRole).toInt();
    lstProd->clear();
    const bool equipment = lblVerslag->text() == "Equipment List";
    for (int i = 0; i < lstCat->count(); ++i) {
        if (!lstCat->item(i)->isSelected())
            continue;
        const QString id = QString::number(lstCat->item(i)->data(Qt::UserRole).toLongLong());
        auto rs = db().OpenRecordset(equipment ? "SELECT * FROM ToerInv WHERE TID = " + id
                                               : "SELECT * FROM VoorInv WHERE VID = " + id,
                                     RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext()) {
            AddItemWithData(lstProd, rs->Field("Desc").toString(), rs->Field("IID").toLong());
            lstProd->item(lstProd->count() - 1)
                ->setSelected(kept.contains(static_cast<int>(rs->Field("IID").toLong())));
        }
    }
}

void frmVerslae::lstCat_Click(QListWidgetItem* item) {
    if (!item || m_settingUp)
        return;
    try {
        categoryClicked(lstCat, lstProd, item);
    } catch (const NumberedError& e) {
        MsgBox("ERROR in lstCat_Click " + e.description(), MsgButtons::Ok, MsgIcon::Exclamation);
    }
}

void frmVerslae::lstCatKm_Click(QListWidgetItem* item) {
    if (!item || m_settingUp)
        return;
    if (IsTankReport()) {
        const QString title = lblVerslag->text();
        const bool oneTank = title.compare("Detail Per Fuel Tank", Qt::CaseInsensitive) == 0 ||
                             title.compare("Summary Per Fuel Tank", Qt::CaseInsensitive) == 0;
        if (oneTank && lstCatKm->selectedItems().size() > 1) {
            MsgBox("Only one Fuel Tank allowed");
            item->setSelected(false);
        }
        return;
    }
    try {
        categoryClicked(lstCatKm, lstProdkm, item);
    } catch (const NumberedError& e) {
        MsgBox("ERROR in lstCatKm_Click " + e.description(), MsgButtons::Ok, MsgIcon::Exclamation);
    }
}

void frmVerslae::chkAllCat_Click() {
    const bool on = chkAllCat->isChecked();
    SetAllSelected(lstCat, on, -1);
    if (IsTankReport())
        return;
    for (int i = 0; i < lstCat->count(); ++i)
        lstCat_Click(lstCat->item(i));
}

void frmVerslae::chkAllCatKm_Click() {
    const bool on = chkAllCatKm->isChecked();
    SetAllSelected(lstCatKm, on, -1);
    if (IsTankReport())
        return;
    for (int i = 0; i < lstCatKm->count(); ++i)
        lstCatKm_Click(lstCatKm->item(i));
}

void frmVerslae::cmdApply_Click() {
    grd3->Clear();
    grd3->setVisible(false);
    grd3->SetRows(1);
    if (lblVerslag->text().isEmpty()) {
        MsgBox("You need to select a report!", MsgButtons::Ok, MsgIcon::Exclamation, " Reports");
        grd3->setVisible(true);
        return;
    }
    cmdPrint->setEnabled(false);
    GetReport(false);
    grd3->setVisible(true);
}

void frmVerslae::cmdPrint_Click() {
    if (grd3->Rows() < 2)
        return;
    if (MsgBox("Print " + lblVerslag->text() + "?", MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
        return;
    GetReport(true);
    grd3->setVisible(true);
}

void frmVerslae::cmdReset_Click() {
    if (lblVerslag->text().isEmpty())
        return;
    if (frmMain* main = MainWindow())
        main->TreeSelection();
    else
        ReportSetup();
}

void frmVerslae::GetReport(bool print) {
    for (;;) {
        try {
            runReport(print);
            return;
        } catch (const NumberedError& e) {
            ProgressBar1->hide();
            MsgBox("ERROR in GetReport " + e.description());
            if (m_stopOnError) {
                m_stopOnError(e.description());
                return;
            }
            // The failing report runs again, so that a lasting failure brings the same message back.
        }
    }
}

void frmVerslae::runReport(bool print) {
    lblMsg->show();
    m_run = ReportRun{};
    m_run.title = lblVerslag->text();
    m_run.grid = grd3;
    m_run.lblMsg = lblMsg;
    m_run.progress = ProgressBar1;
    m_run.from = dtpFrom->date().toString("yyyy/MM/dd");
    m_run.to = dtpTo->date().toString("yyyy/MM/dd");
    m_run.fromShown = dtpFrom->text();
    m_run.byDate = chkByDate->isChecked();
    Text1->setText(m_run.from);
    Text2->setText(m_run.to);

    m_run.VehicleKmList = SelectedItemsList(lstProdkm, false);
    m_run.CatKmList = SelectedItemsList(lstCatKm, false);
    m_run.VehicleList = SelectedItemsList(lstProd, false);
    m_run.CatList = SelectedItemsList(lstCat, false);
    const bool tank = IsTankReport();
    if (tank && m_run.CatKmList.isEmpty()) {
        MsgBox("Select a Tank", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    if (!tank && m_run.VehicleList.isEmpty() && m_run.VehicleKmList.isEmpty()) {
        MsgBox("Select a Product", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    if (tank)
        m_run.tankNames = SelectedItemsList(lstCatKm, true);
    else
        m_run.mergedIds = MergeVehicleLists(m_run.VehicleList, m_run.VehicleKmList);

    if (const ReportProcedures* p = FindReport(m_run.title)) {
        const auto& procedure = print ? p->print : p->show;
        if (procedure) {
            if (print) {
                ProgressBar1->setValue(0);
                ProgressBar1->show();
            }
            Hourglass hourglass;
            procedure(m_run);
            ProgressBar1->hide();
        }
    }
    // Every column wide enough for its texts, and no cell standing out as chosen.
    grd3->resizeColumnsToContents();
    grd3->clearSelection();
    if (!print && m_run.title == "Monthly Veh. Fuel Usage")
        m_run.Message("'Print View' To view more options and Charts");
    cmdPrint->setEnabled(grd3->Rows() >= 2);
}
