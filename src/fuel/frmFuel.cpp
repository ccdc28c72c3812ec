#include "frmFuel.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "LookupLists.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "Recalc.h"
#include "ReportEngine.h"
#include "Session.h"
#include "Vb.h"

#include <QApplication>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

namespace {

// The background of a locked previous reading (the old platform's colour value 12247257).
const QColor kLockedReadingColour(217, 225, 186);

const char* const kCaptions[frmFuel::kCaptionCount] = {
    "Category",       "Vehicle",          "Tank",          "Date",
    "Litres",         "Rand / Litre",     "Pump Previous", "Pump Current",
    "Tank Balance",   "Driver",           "Activity",      "Current Tank",
    "PreviousTank",   "Previous10 Tanks", "Km Reading",    "Previous Km Reading",
    "Km's Travelled", "Km's / L",         "L / 100 km's",  "R / L",
    "Cost / Km"};

QLineEdit* MakeField(QWidget* parent, const QString& name, bool number) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    if (number)
        field->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    return field;
}

QLineEdit* MakeFigure(QWidget* parent, const QString& name) {
    QLineEdit* box = MakeField(parent, name, true);
    box->setReadOnly(true);
    box->setFocusPolicy(Qt::NoFocus);
    box->setMinimumWidth(80);
    return box;
}

QComboBox* MakeCombo(QWidget* parent, const QString& name) {
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->setMinimumWidth(220);
    return combo;
}

// The caption with the first occurrence of `word` replaced, rebuilt from the text before and behind it.
QString ReplaceFirst(const QString& caption, const QString& word, const QString& replacement) {
    const int at = caption.indexOf(word);
    if (at < 0)
        return caption;
    return caption.left(at) + replacement + caption.mid(at + word.size());
}

QString IdOf(const QComboBox* combo) {
    return QString::number(ItemDataAt(combo, combo->currentIndex()));
}

// A routine without an error handler of its own: the failure ends the run in plain sight.
template <typename Fn> void Untrapped(Fn&& fn) {
    try {
        fn();
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
    }
}

} // namespace

frmFuel::frmFuel(QWidget* parent) : QDialog(parent) {
    setObjectName("frmFuel");
    setWindowTitle("Orvel - Fuel Input");
    buildScreen();
    connectHandlers();
    Untrapped([this] { Form_Load(); });
}

void frmFuel::buildScreen() {
    for (int i = 0; i < kCaptionCount; ++i) {
        label4[static_cast<size_t>(i)] = new QLabel(kCaptions[i], this);
        label4[static_cast<size_t>(i)]->setObjectName(QString("label4_%1").arg(i));
    }
    auto cap = [this](int i) { return label4[static_cast<size_t>(i)]; };
    auto* outer = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    outer->addLayout(top);

    // Vehicle and tank.
    fmeTank = new QGroupBox("Vehicle and Tank", this);
    fmeTank->setObjectName("fmeTank");
    auto* tankGrid = new QGridLayout(fmeTank);
    Combo2 = MakeCombo(fmeTank, "Combo2");
    Combo3 = MakeCombo(fmeTank, "Combo3");
    Combo7 = MakeCombo(fmeTank, "Combo7");
    txtTankBal = MakeField(fmeTank, "txtTankBal", true);
    txtTankBal->setReadOnly(true);
    txtTankBal->setFocusPolicy(Qt::NoFocus);
    lblRebate = new QLabel(fmeTank);
    lblRebate->setObjectName("lblRebate");
    tankGrid->addWidget(cap(kCapCategory), 0, 0);
    tankGrid->addWidget(Combo2, 0, 1);
    tankGrid->addWidget(cap(kCapVehicle), 1, 0);
    tankGrid->addWidget(Combo3, 1, 1);
    tankGrid->addWidget(lblRebate, 2, 1);
    tankGrid->addWidget(cap(kCapTank), 3, 0);
    tankGrid->addWidget(Combo7, 3, 1);
    tankGrid->addWidget(cap(kCapTankBal), 4, 0);
    tankGrid->addWidget(txtTankBal, 4, 1);
    tankGrid->setRowStretch(5, 1);
    top->addWidget(fmeTank);

    // The issue.
    fmeDetail = new QGroupBox("Issue", this);
    fmeDetail->setObjectName("fmeDetail");
    auto* detail = new QGridLayout(fmeDetail);
    txtDyy = MakeField(fmeDetail, "txtDyy", false);
    txtDyy->setMaxLength(10);
    Command1 = new QToolButton(fmeDetail);
    Command1->setObjectName("Command1");
    Command1->setText("<");
    Command1->setToolTip("A day back");
    Command1->setFocusPolicy(Qt::NoFocus);
    Command2 = new QToolButton(fmeDetail);
    Command2->setObjectName("Command2");
    Command2->setText(">");
    Command2->setToolTip("A day on");
    Command2->setFocusPolicy(Qt::NoFocus);
    auto* dateRow = new QHBoxLayout;
    dateRow->addWidget(Command1);
    dateRow->addWidget(txtDyy, 1);
    dateRow->addWidget(Command2);
    txtLiter = MakeField(fmeDetail, "txtLiter", true);
    txtPrKm = MakeField(fmeDetail, "txtPrKm", true);
    txtKm = MakeField(fmeDetail, "txtKm", true);
    txtRandLiter = MakeField(fmeDetail, "txtRandLiter", true);
    txtPumpPrev = MakeField(fmeDetail, "txtPumpPrev", true);
    txtPumpPrev->setReadOnly(true);
    txtPumpPrev->setFocusPolicy(Qt::NoFocus);
    txtPumpCurr = MakeField(fmeDetail, "txtPumpCurr", true);
    cmbDriver = MakeCombo(fmeDetail, "cmbDriver");
    cmbActivity = MakeCombo(fmeDetail, "cmbActivity");
    cmdDriver = new QToolButton(fmeDetail);
    cmdDriver->setObjectName("cmdDriver");
    cmdDriver->setText("...");
    cmdDriver->setToolTip("Add, change or delete a driver");
    cmdActivity = new QToolButton(fmeDetail);
    cmdActivity->setObjectName("cmdActivity");
    cmdActivity->setText("...");
    cmdActivity->setToolTip("Add, change or delete an activity");
    lblrebateActivity = new QLabel("Rebate Activity", fmeDetail);
    lblrebateActivity->setObjectName("lblrebateActivity");
    lblrebateActivity->hide();
    txtTransID = MakeField(this, "txtTransID", false);
    txtTransID->hide();
    txtEditLiter = MakeField(this, "txtEditLiter", false);
    txtEditLiter->hide();

    int row = 0;
    detail->addWidget(cap(kCapDate), row, 0);
    detail->addLayout(dateRow, row++, 1);
    detail->addWidget(cap(kCapPumpPrev), row, 0);
    detail->addWidget(txtPumpPrev, row++, 1);
    detail->addWidget(cap(kCapPumpCurr), row, 0);
    detail->addWidget(txtPumpCurr, row++, 1);
    detail->addWidget(cap(kCapLitres), row, 0);
    detail->addWidget(txtLiter, row++, 1);
    detail->addWidget(cap(kCapRandLitre), row, 0);
    detail->addWidget(txtRandLiter, row++, 1);
    detail->addWidget(cap(kCapPrevKm), row, 0);
    detail->addWidget(txtPrKm, row++, 1);
    detail->addWidget(cap(kCapKmReading), row, 0);
    detail->addWidget(txtKm, row++, 1);
    auto* driverRow = new QHBoxLayout;
    driverRow->addWidget(cmbDriver, 1);
    driverRow->addWidget(cmdDriver);
    detail->addWidget(cap(kCapDriver), row, 0);
    detail->addLayout(driverRow, row++, 1);
    auto* activityRow = new QHBoxLayout;
    activityRow->addWidget(cmbActivity, 1);
    activityRow->addWidget(cmdActivity);
    detail->addWidget(cap(kCapActivity), row, 0);
    detail->addLayout(activityRow, row++, 1);
    detail->addWidget(lblrebateActivity, row++, 1);
    top->addWidget(fmeDetail);

    // The consumption figures.
    auto* figures = new QGroupBox("Consumption", this);
    figures->setObjectName("fmeFigures");
    auto* fig = new QGridLayout(figures);
    fig->addWidget(cap(kCapCurrent), 0, 1, Qt::AlignRight);
    fig->addWidget(cap(kCapPrevious), 0, 2, Qt::AlignRight);
    fig->addWidget(cap(kCapPrevious10), 0, 3, Qt::AlignRight);
    const std::array<std::array<QLineEdit**, 3>, 5> boxes = {{
        {&txtKmTravel1, &txtKmTravel2, &txtKmTravel3},
        {&txtKmL1, &txtKmL, &txtLKm10},
        {&txtL100Km1, &txtL100Km, &txtL100Km10},
        {&txtRL1, &txtRL, &txtRL10},
        {&txtCKM1, &txtCKM, &txtCKm10},
    }};
    const std::array<std::array<const char*, 3>, 5> names = {{
        {"txtKmTravel1", "txtKmTravel2", "txtKmTravel3"},
        {"txtKmL1", "txtKmL", "txtLKm10"},
        {"txtL100Km1", "txtL100Km", "txtL100Km10"},
        {"txtRL1", "txtRL", "txtRL10"},
        {"txtCKM1", "txtCKM", "txtCKm10"},
    }};
    for (size_t r = 0; r < boxes.size(); ++r) {
        fig->addWidget(cap(kCapTravelled + static_cast<int>(r)), static_cast<int>(r) + 1, 0);
        for (size_t c = 0; c < 3; ++c) {
            *boxes[r][c] = MakeFigure(figures, names[r][c]);
            fig->addWidget(*boxes[r][c], static_cast<int>(r) + 1, static_cast<int>(c) + 1);
        }
    }
    fig->setRowStretch(6, 1);
    top->addWidget(figures);

    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName("ProgressBar1");
    ProgressBar1->hide();
    outer->addWidget(ProgressBar1);

    // The fuel record grid.
    Frame8 = new QGroupBox("Fuel Records", this);
    Frame8->setObjectName("Frame8");
    auto* gridBox = new QVBoxLayout(Frame8);
    Flx4 = new FlexGrid(Frame8);
    Flx4->setObjectName("Flx4");
    flxDelete = new FlexGrid(Frame8);
    flxDelete->setObjectName("flxDelete");
    flxDelete->hide();
    gridBox->addWidget(Flx4, 1);
    gridBox->addWidget(flxDelete, 1);
    auto* gridButtons = new QHBoxLayout;
    lblcmd[2] = new QPushButton(" &Delete", Frame8);
    lblcmd[3] = new QPushButton(" C&lose", Frame8);
    gridButtons->addStretch(1);
    gridButtons->addWidget(lblcmd[2]);
    gridButtons->addWidget(lblcmd[3]);
    gridBox->addLayout(gridButtons);
    Frame8->setMinimumHeight(220);
    Frame8->hide();
    outer->addWidget(Frame8, 1);

    fmeButtons = new QWidget(this);
    fmeButtons->setObjectName("fmeButtons");
    auto* buttons = new QHBoxLayout(fmeButtons);
    buttons->setContentsMargins(0, 0, 0, 0);
    lblPrint = new QPushButton("&Print", fmeButtons);
    lblPrint->setObjectName("lblPrint");
    lblcmd[4] = new QPushButton(" &Edit", fmeButtons);
    lblcmd[0] = new QPushButton("&Save", fmeButtons);
    lblcmd[1] = new QPushButton(" &Cancel", fmeButtons);
    buttons->addWidget(lblPrint);
    buttons->addWidget(lblcmd[4]);
    buttons->addStretch(1);
    buttons->addWidget(lblcmd[0]);
    buttons->addWidget(lblcmd[1]);
    outer->addWidget(fmeButtons);
    for (size_t i = 0; i < lblcmd.size(); ++i) {
        lblcmd[i]->setObjectName(QString("lblcmd%1").arg(i));
        lblcmd[i]->setAutoDefault(false);
    }
    lblPrint->setAutoDefault(false);

    // The capture's order: vehicle, tank, the issue, then save.
    QWidget* order[] = {Combo2,    Combo3,    Combo7,    txtDyy,    txtPumpCurr, txtLiter,    txtRandLiter,
                        txtPrKm,   txtKm,     cmbDriver, cmdDriver, cmbActivity, cmdActivity, lblcmd[0],
                        lblcmd[1], lblcmd[4], lblPrint,  Flx4,      flxDelete,   lblcmd[2],   lblcmd[3]};
    for (size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void frmFuel::connectHandlers() {
    for (size_t i = 0; i < lblcmd.size(); ++i)
        connect(lblcmd[i], &QPushButton::clicked, this, [this, i] { lblcmd_Click(static_cast<int>(i)); });
    connect(lblPrint, &QPushButton::clicked, this, [this] { lblPrint_Click(); });
    connect(Command1, &QToolButton::clicked, this, [this] { MoveDate(-1); });
    connect(Command2, &QToolButton::clicked, this, [this] { MoveDate(1); });
    connect(Combo2, &QComboBox::currentIndexChanged, this, [this] { Combo2_Click(); });
    connect(Combo2, &QComboBox::editTextChanged, this, [this] { Combo2_Click(); });
    connect(Combo3, &QComboBox::currentIndexChanged, this, [this] { Untrapped([this] { Combo3_Click(); }); });
    connect(Combo7, &QComboBox::currentIndexChanged, this, [this] { Untrapped([this] { Combo7_Click(); }); });
    connect(cmbActivity, &QComboBox::currentIndexChanged, this, [this] { cmbActivity_Click(); });
    connect(cmdDriver, &QToolButton::clicked, this,
            [this] { AskNameList(kDrivers, cmbDriver, [this] { LoadNameList(kDrivers, cmbDriver); }); });
    connect(cmdActivity, &QToolButton::clicked, this,
            [this] { AskNameList(kActivities, cmbActivity, [this] { LoadNameList(kActivities, cmbActivity); }); });
    connect(Flx4, &QTableWidget::cellDoubleClicked, this, [this] { Untrapped([this] { Flx4_Pick(); }); });

    QLineEdit* captured[] = {txtDyy, txtLiter, txtPrKm, txtKm, txtRandLiter, txtPumpCurr};
    const int captions[] = {kCapDate, kCapLitres, kCapPrevKm, kCapKmReading, kCapRandLitre, kCapPumpCurr};
    for (size_t i = 0; i < std::size(captured); ++i) {
        AttachEnterAsTab(captured[i]);
        AttachSelectOnFocus(captured[i]);
        AttachFocusColour(captured[i], label4[static_cast<size_t>(captions[i])]);
    }
    for (QWidget* combo : {static_cast<QWidget*>(Combo2), static_cast<QWidget*>(Combo3), static_cast<QWidget*>(Combo7),
                           static_cast<QWidget*>(cmbDriver), static_cast<QWidget*>(cmbActivity)})
        AttachEnterAsTab(combo);
    AttachNumericFilter(txtLiter, true);
    AttachNumericFilter(txtKm, true);
    AttachNumericFilter(txtRandLiter, true);
    AttachNumericFilter(txtPumpCurr, true);
    for (QObject* o :
         {static_cast<QObject*>(txtLiter), static_cast<QObject*>(txtPumpCurr), static_cast<QObject*>(txtKm),
          static_cast<QObject*>(Flx4), static_cast<QObject*>(flxDelete), static_cast<QObject*>(lblcmd[2])})
        o->installEventFilter(this);
}

bool frmFuel::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) {
        // Leaving the field for another of the screen, not the screen for another window.
        const Qt::FocusReason reason = static_cast<QFocusEvent*>(event)->reason();
        if (reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason) {
        } else if (watched == txtLiter)
            txtLiter_LostFocus();
        else if (watched == txtPumpCurr)
            txtPumpCurr_LostFocus();
        else if (watched == txtKm)
            txtKm_LostFocus();
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (watched == Flx4 && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            Untrapped([this] { Flx4_Pick(); });
            return true;
        }
        if (watched == Flx4 && key == Qt::Key_F1) {
            Flx4->hide();
            flxDelete->show();
            Untrapped([this] { WysDuplikaatRekords(); });
            flxDelete->setFocus();
            return true;
        }
        if (watched == flxDelete && key == Qt::Key_Escape) {
            flxDelete->hide();
            Flx4->show();
            Flx4->setFocus();
            return true;
        }
        // The delete key on the grid's delete button, while the ledger is listed, removes a ledger row.
        if (watched == lblcmd[2] && key == Qt::Key_Delete && flxDelete->isVisible()) {
            Untrapped([this] { RemoveLedgerRow(); });
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmFuel::Form_Load() {
    m_loading = true;
    const QString today = QDate::currentDate().toString("yyyy/MM/dd");
    txtDyy->setText(today);
    LoadNameList(kActivities, cmbActivity);
    LoadNameList(kDrivers, cmbDriver);
    FillCategoryCombo(Combo2);
    ClearCapture();
    {
        const QSignalBlocker block(Combo7);
        FillTankCombo(Combo7, false);
        Combo7->setCurrentIndex(-1);
    }
    ResetVehicleChoice();
    txtDyy->setText(today);
    txtPumpCurr->setText("0");
    txtTransID->setText("0");
    LockPreviousReading(true);
    m_loading = false;
    Combo2_Click();
}

void frmFuel::ResetVehicleChoice() {
    auto rs = db().OpenRecordset("VecChoice", RecordsetType::Table);
    if (rs->Eof()) {
        rs->AddNew(); // a choice table left without its row gets one
    } else {
        rs->MoveFirst();
        rs->Edit();
    }
    rs->SetField("VoerKeuse", Value("0"));
    rs->Update();
    rs->Close();
}

void frmFuel::RememberVehicleChoice() {
    auto rs = db().OpenRecordset("VecChoice", RecordsetType::Table);
    if (rs->Eof()) {
        rs->AddNew();
    } else {
        rs->MoveFirst();
        rs->Edit();
    }
    rs->SetField("VoerKeuse", Value(Combo3->currentText()));
    rs->Update();
    rs->Close();
}

void frmFuel::Combo2_Click() {
    if (m_loading)
        return;
    const QSignalBlocker block(Combo3);
    Combo3->clear();
    if (Combo2->currentText().isEmpty())
        return;
    FillVehicleCombo(Combo3, ItemDataAt(Combo2, Combo2->currentIndex()));
    Combo3->setCurrentIndex(-1);
}

void frmFuel::Combo3_Click() {
    if (m_loading || Combo3->currentIndex() < 0)
        return;
    ClearFigures();
    const QString id = IdOf(Combo3);
    auto rs = db().OpenRecordset("select * from voertuig " + QString(" where  transid= ") + id);
    if (rs->Eof()) {
        rs->Close();
        return;
    }
    VehicleID = id;
    while (!rs->Eof()) {
        // The stored make as it stands, against the list's text.
        if (rs->Field("Maak").toString() + " " + "(" + rs->Field("RegNr").toString() + ")" == Combo3->currentText()) {
            IsHoursVehicle = rs->Field("Hours").toBool();
            lblRebate->setText(rs->Field("rebated").toBool() ? "Rebate Applicable" : "Rebate Not Applicable");
            if (cmbDriver->count() > 0)
                cmbDriver->setCurrentIndex(0);
            if (cmbActivity->count() > 0)
                cmbActivity->setCurrentIndex(0);
            break;
        }
        rs->MoveNext();
    }
    rs->Close();
    RememberVehicleChoice();
    ShowFuelFigures();
    ShowFirstFillFigures();
    txtPrKm->setText(GetLastKmRead(id));
    if (txtPrKm->text().isEmpty())
        txtPrKm->setText(GetVehicleKm(id));
    if (Flx4->isVisible())
        ViewFuel();
    LockPreviousReading(!txtPrKm->text().isEmpty());
    ApplyReadingCaptions();
}

void frmFuel::LockPreviousReading(bool locked) {
    txtPrKm->setReadOnly(locked);
    QPalette palette = txtPrKm->palette();
    palette.setColor(QPalette::Base,
                     locked ? kLockedReadingColour : QApplication::palette().color(QPalette::ToolTipBase));
    txtPrKm->setPalette(palette);
}

void frmFuel::ApplyReadingCaptions() {
    for (QLabel* label : label4) {
        QString caption = label->text();
        if (IsHoursVehicle) {
            caption = ReplaceFirst(caption, "Km's", "Hours");
            caption = ReplaceFirst(caption, "km's", "Hours");
            caption = ReplaceFirst(caption, "Km", "Hour");
        } else {
            caption = ReplaceFirst(caption, "Hours", "Km's");
            caption = ReplaceFirst(caption, "Hour", "Km");
        }
        label->setText(caption);
    }
}

void frmFuel::Combo7_Click() {
    if (m_loading || Combo7->currentIndex() < 0)
        return;
    LoadTankDetails();
}

QString frmFuel::TankKey() const {
    return IdOf(Combo7);
}

void frmFuel::LoadTankDetails() {
    Hourglass hourglass;
    auto rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(ItemDataAt(Combo7, Combo7->currentIndex()))});
    if (rs->NoMatch())
        return;
    if (!Recalc(ProgressBar1, false))
        return;
    // The table-type recordset shows the row as the recalculation left it.
    rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(ItemDataAt(Combo7, Combo7->currentIndex()))});
    if (rs->NoMatch())
        return;
    txtTankBal->setText(rs->Field("HuidigeVolume").toString());
    txtRandLiter->setText(vb::Format(rs->Field("CurRperL"), "###0.00"));
    const Value pump = rs->Field("PumpReading");
    txtPumpPrev->setText(pump.isNull() || pump.toString().isEmpty() ? QString("0") : pump.toString());
    rs->Close();
    txtLiter->clear();
    txtKm->clear();
}

void frmFuel::cmbActivity_Click() {
    if (m_loading || cmbActivity->currentIndex() < 0)
        return;
    const QString rebated =
        GetScalar(db(), "select rebated from activities" + QString(" where id = ") + IdOf(cmbActivity), "0");
    bool on = false;
    try {
        on = Value(rebated).toBool();
    } catch (const VbError&) {
        on = false;
    }
    lblrebateActivity->setVisible(on);
}

void frmFuel::txtLiter_LostFocus() {
    txtPumpCurr->setEnabled(true);
    const QString litres = txtLiter->text().isEmpty() ? QString("0") : txtLiter->text();
    if (vb::Val(litres) > 0)
        txtPumpCurr->setEnabled(false);
}

void frmFuel::txtPumpCurr_LostFocus() {
    txtLiter->setText(Value(vb::Val(txtPumpCurr->text()) - vb::Val(txtPumpPrev->text())).toString());
    txtKm_LostFocus();
}

void frmFuel::txtKm_LostFocus() {
    if (!txtKm->text().isEmpty() && !txtPrKm->text().isEmpty() && txtKm->text() > QString("0"))
        ShowCurrentTankFigures();
}

void frmFuel::MoveDate(int days) {
    try {
        const QDateTime date = vb::CDate(Value(txtDyy->text()));
        txtDyy->setText(vb::DateAddDays(date, days).toString("yyyy/MM/dd"));
    } catch (const VbError&) {
        txtDyy->setText(QDate::currentDate().toString("yyyy/MM/dd"));
    }
}

void frmFuel::lblcmd_Click(int index) {
    switch (index) {
    case 0:
        Untrapped([this] {
            txtKm_LostFocus();
            SaveFuel();
        });
        break;
    case 1:
        reject();
        break;
    case 2:
        if (Flx4->Rows() >= 2)
            Untrapped([this] { DeleteFuelRecord(Flx4->TextMatrix(Flx4->Row(), 0)); });
        break;
    case 3:
        Frame8->hide();
        break;
    case 4:
        EditingFromGrid = -1;
        Untrapped([this] { ViewFuel(); });
        break;
    default:
        break;
    }
}

void frmFuel::SaveFuel() {
    auto refuse = [this](const QString& text, MsgIcon icon, const QString& title, QWidget* focus) {
        MsgBox(text, MsgButtons::Ok, icon, title);
        if (focus)
            focus->setFocus();
    };
    auto rs = db().OpenRecordset("SELECT * FROM VecFuel WHERE TransID = " + txtTransID->text());
    if (!rs->Eof()) {
        rs->Edit();
        IsEditing = true;
    } else {
        rs->AddNew();
    }
    const struct {
        QLineEdit* field;
        const char* text;
    } required[] = {{txtDyy, "Date field is empty"},
                    {txtLiter, "Litres is empty"},
                    {txtRandLiter, "Rand per litre is empty"},
                    {txtKm, "Km is empty"}};
    for (const auto& r : required) {
        if (r.field->text().isEmpty()) {
            SaveFailed = 1;
            refuse(r.text, MsgIcon::Information, QString(), r.field);
            return;
        }
    }
    // The rate is stored as typed in a number column; the key filter keeps letters out, but a pasted text that is
    // no figure would fail the row's update, so it is refused here like an empty one.
    if (!vb::IsNumeric(Value(txtRandLiter->text()))) {
        SaveFailed = 1;
        refuse("Rand per litre is not a valid figure", MsgIcon::Information, QString(), txtRandLiter);
        return;
    }
    if (!(vb::Val(txtPrKm->text()) < vb::Val(txtKm->text()))) {
        SaveFailed = 1;
        refuse(label4[kCapKmReading]->text() + " must be more than the previous reading", MsgIcon::Exclamation,
               QString(), txtKm);
        return;
    }
    if (Combo7->currentText().isEmpty() || Combo2->currentText().isEmpty() || Combo3->currentText().isEmpty()) {
        refuse("Some fields are empty, fill all the fields before you save!", MsgIcon::Exclamation, "Fuel", Combo7);
        return;
    }
    if (vb::Val(txtLiter->text()) <= 0) {
        refuse("The litres reading cannot be 0 or less. Please change the reading.", MsgIcon::Critical, "Km reading",
               txtKm);
        return;
    }
    if (vb::Val(txtPrKm->text()) > vb::Val(txtKm->text())) {
        refuse("The km reading entered is less than the previous reading. Please change the reading.", MsgIcon::None,
               "Km reading", nullptr);
        return;
    }
    if (vb::Val(txtPumpPrev->text()) > vb::Val(txtPumpCurr->text())) {
        refuse("The Current pump reading entered is less than the previous reading. Please change the reading.",
               MsgIcon::Critical, "Km reading", txtKm);
        return;
    }
    if (txtKmTravel1->text().isEmpty() || txtKmL1->text().isEmpty())
        ShowCurrentTankFigures();
    // The date as typed; the comparison goes through its "dd/mm/yyyy" text. A text that is no date is refused
    // first, rather than ending the run in the comparison.
    if (IsDateUnreadable(txtDyy->text()) ||
        IsDateClosed(vb::CDate(Value(txtDyy->text())), CurrentSession().ClosedDate)) {
        txtDyy->setFocus();
        return;
    }
    Hourglass hourglass;
    const QString tank = TankKey();
    rs->SetField("voertuigId", Value(VehicleID));
    rs->SetField("TankID", Value(tank));
    rs->SetField("Datum", Value(txtDyy->text()));
    rs->SetField("KmRead", Value(txtKm->text()));
    LastKmRead = GetLastKmRead(IdOf(Combo3));
    if (LastKmRead.isEmpty())
        LastKmRead = GetVehicleKm(IdOf(Combo3));
    // A vehicle with neither issues nor a stored meter reading counts from 0: an empty text cannot stand in the
    // number column, and an empty reading would stop the figures and the recalculation at every later pick.
    if (!IsEditing)
        rs->SetField("previouskmread", Value(LastKmRead.isEmpty() ? QString("0") : LastKmRead));
    rs->SetField("Litres", Value(txtLiter->text()));
    rs->SetField("RperL", Value(txtRandLiter->text()));
    rs->SetField("driverid", Value(IdOf(cmbDriver)));
    rs->SetField("activityid", Value(IdOf(cmbActivity)));
    rs->SetField("pumpreadprev", Value(txtPumpPrev->text()));
    rs->SetField("pumpreadcurr", Value(txtPumpCurr->text()));
    rs->Update();
    SavedFuelID = static_cast<qint32>(rs->Field("TransID").toLong());
    rs->Close();
    if (!IsEditing)
        TakeFromTank();
    ShowFuelFigures();
    if (IsEditing) {
        RelinkLastRecord();
        AdjustTankAfterEdit();
        IsEditing = false;
    }
    db().Execute("update tanks set pumpreading = " + txtPumpCurr->text() + " where transid = " + tank);
    txtPumpPrev->setText(txtPumpCurr->text());
    txtPumpCurr->setText("0");
    txtTankBal->setText(ReadTankBalance(tank));
    txtLiter->clear();
    txtEditLiter->clear();
    txtKm->clear();
    txtPrKm->clear();
    txtPrKm->setReadOnly(false);
    txtPumpCurr->setEnabled(true);
    txtTransID->setText("0");
    ClearFigures();
    hourglass.restore();
    SavedFuelID = 0;
    SaveFailed = 0;
    EditingFromGrid = 0;
    LockPreviousReading(true);
    Combo3->setEnabled(true);
    Combo3->setCurrentIndex(-1);
    txtDyy->setFocus();
}

void frmFuel::TakeFromTank() {
    const QString tank = TankKey();
    auto rs = db().OpenRecordset("SELECT * FROM Tanks WHERE TransID = " + tank);
    if (!rs->Eof()) {
        rs->Edit();
        const double balance = vb::Val(rs->Field("HuidigeVolume")) - vb::Val(txtLiter->text());
        rs->SetField("HuidigeVolume", Value(vb::Format(Value(balance), "########0.00")));
        rs->Update();
    }
    rs->Close();
    ReadTankBalance(tank);
}

QString frmFuel::ReadTankBalance(const QString& tankId) {
    Recalc(ProgressBar1, false);
    auto rs = db().OpenRecordset("SELECT * FROM Tanks WHERE TransID = " + tankId);
    QString balance;
    if (!rs->Eof())
        balance = vb::Format(rs->Field("HuidigeVolume"), "###0.00");
    rs->Close();
    return balance;
}

Currency frmFuel::GetTankBalance() {
    auto rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(ItemDataAt(Combo7, Combo7->currentIndex()))});
    if (rs->NoMatch())
        return Currency();
    return vb::CCur(rs->Field("HuidigeVolume"));
}

void frmFuel::RelinkLastRecord() {
    const Currency previous = vb::CCur(Value(txtPrKm->text()));
    auto rs = db().OpenRecordset("SELECT * FROM VecFuel WHERE VoertuigID = " + VehicleID +
                                 " AND ccur(PreviousKmRead) > " + previous.toString() + " ORDER BY val(KmRead) Desc");
    if (!rs->Eof()) {
        const QString key = rs->Field("TransID").toString();
        rs->Close();
        db().Execute("UPDATE VecFuel SET PreviousKmRead = '" + txtKm->text() + "' WHERE TransID = " + key);
        return;
    }
    rs->Close();
}

void frmFuel::AdjustTankAfterEdit() {
    const QString tank = TankKey();
    Currency balance = vb::CCur(Value(ReadTankBalance(tank))) + vb::CCur(Value(vb::Val(txtEditLiter->text())));
    db().Execute("UPDATE Tanks SET HuidigeVolume = '" + balance.toString() + "' WHERE TransID = " + tank);
    balance = vb::CCur(Value(ReadTankBalance(tank))) - vb::CCur(Value(txtLiter->text()));
    db().Execute("UPDATE Tanks SET HuidigeVolume = '" + balance.toString() + "' WHERE TransID = " + tank);
    txtTankBal->setText(vb::Format(Value(ReadTankBalance(tank)), "##0.00"));
}

QString frmFuel::GetLastKmRead(const QString& vehicleId) {
    auto rs =
        db().OpenRecordset("SELECT * FROM VecFuel WHERE VoertuigID = " + vehicleId + " ORDER BY val(KMRead) Desc");
    const QString reading = rs->Eof() ? QString() : rs->Field("KmRead").toString();
    rs->Close();
    return reading;
}

QString frmFuel::GetVehicleKm(const QString& vehicleId) {
    auto rs = db().OpenRecordset("SELECT * FROM Voertuig WHERE TransID = " + vehicleId);
    const QString km = rs->Eof() ? QString() : rs->Field("Km").toString();
    rs->Close();
    return km;
}

void frmFuel::ViewFuel() {
    if (Combo3->currentIndex() < 0) {
        MsgBox("Select a vehicle to edit!", MsgButtons::Ok, MsgIcon::None, "Edit");
        Combo3->setFocus();
        return;
    }
    Flx4->show();
    flxDelete->hide();
    Frame8->show();
    Flx4->SetCols(8);
    Flx4->SetFixedRows(1);
    const QStringList headings = {"No",       "Date", IsHoursVehicle ? "Hours" : "Km", "Litres", "Tank", "Vehicle",
                                  "Previous", "R/L"};
    for (int c = 0; c < headings.size(); ++c)
        Flx4->SetTextMatrix(0, c, headings[c]);
    if (!VehicleID.isEmpty()) {
        Flx4->SetRows(1);
        Flx4->setUpdatesEnabled(false);
        const int widths[8] = {0, 1100, 1200, 1300, 0, 0, 0, 0};
        for (int c = 0; c < 8; ++c)
            Flx4->SetColWidth(c, widths[c]);
        Flx4->SetColAlignment(2, flexAlignRightCenter);
        Flx4->SetColAlignment(3, flexAlignRightCenter);
        auto rs =
            db().OpenRecordset("SELECT * FROM VecFuel WHERE VoertuigID = " + VehicleID + " ORDER BY ccur(KMRead)");
        while (!rs->Eof()) {
            QStringList cells;
            for (const char* name :
                 {"TransID", "Datum", "KmRead", "Litres", "TankID", "voertuigId", "previouskmread", "RperL"})
                cells << rs->Field(name).toString();
            Flx4->AddItem(cells.join('\t'));
            rs->MoveNext();
        }
        rs->Close();
        // The shown columns widen to their longest text, so that no date or reading is cut.
        for (int c = 1; c <= 3; ++c) {
            const int given = Flx4->columnWidth(c);
            Flx4->resizeColumnToContents(c);
            Flx4->setColumnWidth(c, std::max(given, Flx4->columnWidth(c)));
        }
        Flx4->setUpdatesEnabled(true);
    }
    Flx4->show();
    Flx4->setFocus();
}

void frmFuel::Flx4_Pick() {
    const int row = Flx4->Row();
    if (row < Flx4->FixedRows() || row >= Flx4->Rows())
        return;
    txtTransID->setText(Flx4->TextMatrix(row, 0));
    txtDyy->setText(Flx4->TextMatrix(row, 1));
    txtKm->setText(Flx4->TextMatrix(row, 2));
    txtLiter->setText(Flx4->TextMatrix(row, 3));
    txtPrKm->setText(Flx4->TextMatrix(row, 6));
    txtEditLiter->setText(Flx4->TextMatrix(row, 3));
    txtRandLiter->setText(Flx4->TextMatrix(row, 7));
    Combo3->setEnabled(false);
    Frame8->hide();
    ShowCaptureButtons();
}

void frmFuel::ShowCaptureButtons() {
    for (QWidget* frame : {static_cast<QWidget*>(fmeTank), static_cast<QWidget*>(fmeDetail), fmeButtons}) {
        frame->show();
        frame->setEnabled(true);
    }
    for (QPushButton* button : lblcmd)
        button->setPalette(QPalette());
}

void frmFuel::WysDuplikaatRekords() {
    flxDelete->SetCols(8);
    flxDelete->SetFixedRows(1);
    flxDelete->SetRows(1);
    const char* const fields[] = {"FID",          "TankID",        "TankNaam",   "Datum",
                                  "LitersGeneem", "LiterNaGeneem", "LiterSaldo", "RandPerLiter"};
    for (int c = 0; c < 8; ++c)
        flxDelete->SetTextMatrix(0, c, fields[c]);
    auto rs = db().OpenRecordset("TankRekords");
    while (!rs->Eof()) {
        QStringList cells;
        for (const char* name : fields)
            cells << rs->Field(name).toString();
        flxDelete->AddItem(cells.join('\t'));
        rs->MoveNext();
    }
    rs->Close();
}

void frmFuel::DeleteFuelRecord(const QString& transId) {
    const int row = Flx4->Row();
    const QString tank = Flx4->TextMatrix(row, 4);
    const QString litres = Flx4->TextMatrix(row, 3);
    if (row != Flx4->Rows() - 1) {
        MsgBox("Delete transaction Not allowed.", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    if (MsgBox("Delete transaction " + Flx4->TextMatrix(row, 1) + "-" + vb::Format(Value(litres), "### ### ##0.00") +
                   "?",
               MsgButtons::YesNo) != MsgResult::Yes)
        return;
    db().Execute("DELETE * FROM VecFuel WHERE TransID = " + transId);
    RestoreTankAfterDelete(tank, litres);
    ShowCaptureButtons();
    lblcmd_Click(3);
    lblcmd_Click(4);
    Flx4->setFocus();
}

void frmFuel::RestoreTankAfterDelete(const QString& tankId, const QString& litres) {
    auto rs = db().OpenRecordset("SELECT * FROM Tanks WHERE TransID = " + tankId);
    Currency balance;
    if (!rs->Eof()) {
        balance = vb::CCur(Value(litres)) + vb::CCur(rs->Field("HuidigeVolume"));
        rs->Close();
        db().Execute("UPDATE Tanks SET HuidigeVolume = '" + balance.toString() + "' WHERE TransID = " + tankId);
    } else {
        rs->Close();
    }
    db().Execute("update tanks set pumpreading = pumpreading - " + litres + " WHERE TransID = " + tankId);
    txtPumpPrev->setText(Value(vb::Val(txtPumpPrev->text()) - vb::Val(litres)).toString());
    txtTankBal->setText(balance.toString());
    txtPrKm->setText(Value(vb::Val(txtPrKm->text()) - vb::Val(txtKmTravel2->text())).toString());
}

void frmFuel::RemoveLedgerRow() {
    const QString key = QString::number(SavedFuelID);
    auto rs = db().OpenRecordset("SELECT * FROM VecFuel WHERE FID = " + key);
    if (!rs->Eof()) {
        if (MsgBox("Continue removing the transaction?", MsgButtons::YesNo, MsgIcon::None, "Under Construction") !=
            MsgResult::Yes)
            return;
        rs->Delete();
    }
    rs->Close();
    rs = db().OpenRecordset("SELECT * FROM TankRekords WHERE FID = " + key);
    if (!rs->Eof())
        rs->Delete();
    rs->Close();
    ViewFuel();
}

void frmFuel::lblPrint_Click() {
    if (MsgBox("Print Fuel Records?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Fuel Records";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
        auto rs = db().OpenRecordset("SELECT datum as[Date],kmread as [Km],Litres FROM VecFuel " +
                                     QString(" WHERE VoertuigID = ") + (VehicleID.isEmpty() ? "0" : VehicleID) +
                                     " ORDER BY datum");
        for (int c = 0; c < rs->FieldCount(); ++c)
            xlSheet->Cells(1, c + 1).SetValue(Value(rs->FieldName(c)));
        if (!rs->Eof())
            xlSheet->Range("a2").CopyFromRecordset(*rs);
        rs->Close();
        xlSheet->Columns("b:b").SetNumberFormat("### ### ##0");
        xlSheet->Columns("c:c").SetNumberFormat("### ### ##0.00");
        REPORT_SaveReport(xlApp, "Reports", "Fuel Records");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in lblPrint_Click " + e.description());
    }
    REPORT_Workbook_Terminate();
}

// ---- consumption figures on the screen ----

FigureGroup frmFuel::Group(QLineEdit* travel, QLineEdit* perLitre, QLineEdit* per100, QLineEdit* rate,
                           QLineEdit* costPerKm) const {
    return {travel->text(), perLitre->text(), per100->text(), rate->text(), costPerKm->text()};
}

void frmFuel::SetGroup(const FigureGroup& group, QLineEdit* travel, QLineEdit* perLitre, QLineEdit* per100,
                       QLineEdit* rate, QLineEdit* costPerKm) {
    travel->setText(group.kmTravel);
    perLitre->setText(group.kmPerLitre);
    per100->setText(group.litresPer100);
    rate->setText(group.randPerLitre);
    costPerKm->setText(group.costPerKm);
}

void frmFuel::ShowCurrentTankFigures() {
    FigureGroup current = Group(txtKmTravel1, txtKmL1, txtL100Km1, txtRL1, txtCKM1);
    ::ShowCurrentTankFigures(txtPrKm->text(), txtKm->text(), txtLiter->text(), txtRandLiter->text(), current);
    SetGroup(current, txtKmTravel1, txtKmL1, txtL100Km1, txtRL1, txtCKM1);
}

void frmFuel::ShowFuelFigures() {
    FigureGroup previous = Group(txtKmTravel2, txtKmL, txtL100Km, txtRL, txtCKM);
    FigureGroup previous10 = Group(txtKmTravel3, txtLKm10, txtL100Km10, txtRL10, txtCKm10);
    try {
        ::ShowFuelFigures(db(), IdOf(Combo3), previous, previous10);
    } catch (...) {
        // What was shown before the failure stays on screen; the failure goes on to the caller.
        SetGroup(previous, txtKmTravel2, txtKmL, txtL100Km, txtRL, txtCKM);
        SetGroup(previous10, txtKmTravel3, txtLKm10, txtL100Km10, txtRL10, txtCKm10);
        throw;
    }
    SetGroup(previous, txtKmTravel2, txtKmL, txtL100Km, txtRL, txtCKM);
    SetGroup(previous10, txtKmTravel3, txtLKm10, txtL100Km10, txtRL10, txtCKm10);
}

void frmFuel::ShowFirstFillFigures() {
    // The register keeps no start reading and no start litres: both stand at 0.
    FigureGroup previous = Group(txtKmTravel2, txtKmL, txtL100Km, txtRL, txtCKM);
    ::ShowFirstFillFigures(txtPrKm->text(), txtRandLiter->text(), 0.0, 0.0, previous);
    SetGroup(previous, txtKmTravel2, txtKmL, txtL100Km, txtRL, txtCKM);
}

void frmFuel::ClearFigures() {
    for (QLineEdit* box : {txtKmTravel1, txtKmL1, txtL100Km1, txtRL1, txtCKM1, txtKmTravel2, txtKmL, txtL100Km, txtRL,
                           txtCKM, txtKmTravel3, txtLKm10, txtL100Km10, txtRL10, txtCKm10, txtPrKm})
        box->clear();
}

void frmFuel::ClearCapture() {
    for (QLineEdit* box :
         {txtDyy, txtLiter, txtKm, txtPrKm, txtKmL, txtL100Km, txtRL, txtCKM, txtLKm10, txtL100Km10, txtRL10, txtCKm10})
        box->clear();
    lblRebate->clear();
}
