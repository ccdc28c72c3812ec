#include "frmVoerDet.h"

#include "BookValue.h"
#include "ComboHelpers.h"
#include "Database.h"
#include "DateEntry.h"
#include "Dialogs.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "LookupLists.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "Rebate.h"
#include "ReportEngine.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QTabBar>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const char* const kDateFormat = "yyyy/MM/dd";

QDate TodayDate() {
    return QDate::currentDate();
}

// A date text as the store holds it ("yyyy/MM/dd"), or an invalid date.
QDate DateOfText(const QString& text) {
    try {
        return vb::CDate(Value(text)).date();
    } catch (const VbError&) {
        return QDate();
    }
}

QDateEdit* MakeDatePicker(QWidget* parent, const QString& name) {
    auto* picker = new QDateEdit(parent);
    picker->setObjectName(name);
    picker->setCalendarPopup(true);
    picker->setDisplayFormat(kDateFormat);
    picker->setDate(TodayDate());
    return picker;
}

QLineEdit* MakeField(QWidget* parent, const QString& name, int maxLength = 0) {
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    if (maxLength > 0)
        field->setMaxLength(maxLength);
    return field;
}

QToolButton* MakeToolButton(QWidget* parent, const QString& name, const QString& text, const QString& tip) {
    auto* button = new QToolButton(parent);
    button->setObjectName(name);
    button->setText(text);
    button->setToolTip(tip);
    return button;
}

} // namespace

void DefaultIfEmpty(QLineEdit* field, const QString& text) {
    if (field->text().isEmpty() || vb::Val(field->text()) == 0.0)
        field->setText(text);
}

frmVoerDet::frmVoerDet(QWidget* parent) : QDialog(parent) {
    setObjectName("frmVoerDet");
    setWindowTitle("Orvel- Vehicle Detail");
    Hourglass hourglass;
    buildScreen();
    connectHandlers();
    SSTab1->setCurrentIndex(0);
    LaaiDepartments();
}

void frmVoerDet::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    outer->addLayout(left, 1);

    auto* idRow = new QHBoxLayout;
    txtIid = MakeField(this, "txtIid");
    txtIid->setText("Id");
    txtIid->setReadOnly(true);
    txtIid->setFocusPolicy(Qt::NoFocus);
    txtIid->setMaximumWidth(80);
    idRow->addWidget(new QLabel("Vehicle", this));
    idRow->addWidget(txtIid);
    idRow->addStretch(1);
    left->addLayout(idRow);

    SSTab1 = new QTabWidget(this);
    SSTab1->setObjectName("SSTab1");
    SSTab1->addTab(buildVehiclePage(), "&Vehicle Information");
    SSTab1->addTab(buildAdditionalPage(), "Additional Information");
    SSTab1->addTab(buildSizesPage(), "Specifications");
    left->addWidget(SSTab1, 1);

    auto* buttons = new QHBoxLayout;
    cmdPrint = new QPushButton("&Print", this);
    cmdPrint->setObjectName("cmdPrint");
    cmdPrint->setToolTip("Print the vehicle to a workbook.");
    lblcmd[0] = new QPushButton("&Save && Close", this);
    lblcmd[0]->setObjectName("lblcmd0");
    lblcmd[0]->setToolTip("Save the detail and exit.");
    lblcmd[1] = new QPushButton("&Cancel", this);
    lblcmd[1]->setObjectName("lblcmd1");
    buttons->addWidget(cmdPrint);
    buttons->addStretch(1);
    buttons->addWidget(lblcmd[0]);
    buttons->addWidget(lblcmd[1]);
    left->addLayout(buttons);

    fraImage = new QGroupBox("Photo", this);
    fraImage->setObjectName("fraImage");
    auto* imageLayout = new QVBoxLayout(fraImage);
    ImFot = new QLabel(fraImage);
    ImFot->setObjectName("ImFot");
    ImFot->setFixedSize(320, 240);
    ImFot->setAlignment(Qt::AlignCenter);
    ImFot->setFrameShape(QFrame::StyledPanel);
    cmdClearSearchList = new QPushButton("close", fraImage);
    cmdClearSearchList->setObjectName("cmdClearSearchList");
    imageLayout->addWidget(ImFot);
    imageLayout->addWidget(cmdClearSearchList, 0, Qt::AlignRight);
    imageLayout->addStretch(1);
    fraImage->hide();
    outer->addWidget(fraImage);

    setMinimumWidth(560);
}

QWidget* frmVoerDet::buildVehiclePage() {
    auto* page = new QWidget(SSTab1);
    auto* form = new QFormLayout(page);
    form->setLabelAlignment(Qt::AlignRight);
    for (int i = 0; i < 8; ++i) {
        Label14[i] = new QLabel(page);
        Label14[i]->setObjectName(QString("Label14_%1").arg(i));
    }

    txtMaak = MakeField(page, "txtMaak", 50);
    Label14[0]->setText("Name/Make");
    form->addRow(Label14[0], txtMaak);

    txtReg = MakeField(page, "txtReg", 20); // as wide as RegNr
    Label14[1]->setText("Registration No");
    form->addRow(Label14[1], txtReg);

    auto* odometer = new QGroupBox("Odometer", page);
    auto* odoLayout = new QHBoxLayout(odometer);
    Opt1[0] = new QRadioButton("Kilometer", odometer);
    Opt1[0]->setObjectName("Opt1_0");
    Opt1[1] = new QRadioButton("Hour", odometer);
    Opt1[1]->setObjectName("Opt1_1");
    Opt1[0]->setChecked(true);
    odoLayout->addWidget(Opt1[0]);
    odoLayout->addWidget(Opt1[1]);
    odoLayout->addStretch(1);
    form->addRow(odometer);

    txtKilo = MakeField(page, "txtKilo");
    Label14[7]->setText("Kilometers");
    form->addRow(Label14[7], txtKilo);

    auto* rebateChoice = new QGroupBox("Rebate", page);
    auto* rebateLayout = new QHBoxLayout(rebateChoice);
    optRebate[0] = new QRadioButton("Yes", rebateChoice);
    optRebate[0]->setObjectName("optRebate_0");
    optRebate[1] = new QRadioButton("No", rebateChoice);
    optRebate[1]->setObjectName("optRebate_1");
    optRebate[1]->setChecked(true);
    rebateLayout->addWidget(optRebate[0]);
    rebateLayout->addWidget(optRebate[1]);
    rebateLayout->addStretch(1);
    form->addRow(rebateChoice);

    fraRebate = new QGroupBox(page);
    fraRebate->setObjectName("fraRebate");
    auto* rebateForm = new QFormLayout(fraRebate);
    txtRebatePct = MakeField(fraRebate, "txtRebatePct", 5);
    txtRebatePct->setText("100");
    rebateForm->addRow("Rebate %", txtRebatePct);
    auto* rateRow = new QHBoxLayout;
    txtRebateRate = MakeField(fraRebate, "txtRebateRate", 8);
    txtRebateRate->setText("349");
    txtRebateRate->setToolTip("Applies to all vehicles.");
    cmdEditRebate = new QPushButton("Edit", fraRebate);
    cmdEditRebate->setObjectName("cmdEditRebate");
    rateRow->addWidget(txtRebateRate);
    rateRow->addWidget(cmdEditRebate);
    rebateForm->addRow("SARS Rebate Rate", rateRow);
    fraRebate->hide();
    form->addRow(fraRebate);

    auto* deptRow = new QHBoxLayout;
    cmbDepartment = new QComboBox(page);
    cmbDepartment->setObjectName("cmbDepartment");
    cmdDepartment = new QPushButton("...", page);
    cmdDepartment->setObjectName("cmdDepartment");
    cmdDepartment->setMaximumWidth(36);
    cmdDepartment->setToolTip("Add, rename or delete a department.");
    deptRow->addWidget(cmbDepartment, 1);
    deptRow->addWidget(cmdDepartment);
    Label14[2]->setText("Department");
    form->addRow(Label14[2], deptRow);

    const QString pickerTip = "Click to select a date from the calendar.";
    auto* licenceRow = new QHBoxLayout;
    dtpLicenceDueDate = MakeDatePicker(page, "dtpLicenceDueDate");
    Image1 = MakeToolButton(page, "Image1", "...", pickerTip);
    licenceRow->addWidget(dtpLicenceDueDate, 1);
    licenceRow->addWidget(Image1);
    Label14[3]->setText("Licence Renewal Date");
    form->addRow(Label14[3], licenceRow);

    auto* serviceRow = new QHBoxLayout;
    dtpServiceDueDate = MakeDatePicker(page, "dtpServiceDueDate");
    Image4 = MakeToolButton(page, "Image4", "...", pickerTip);
    serviceRow->addWidget(dtpServiceDueDate, 1);
    serviceRow->addWidget(Image4);
    Label14[4]->setText("Service Due");
    form->addRow(Label14[4], serviceRow);
    return page;
}

QWidget* frmVoerDet::buildAdditionalPage() {
    auto* page = new QWidget(SSTab1);
    auto* form = new QFormLayout(page);
    form->setLabelAlignment(Qt::AlignRight);

    txtModel = MakeField(page, "txtModel", 50);
    txtModel->setText("Model");
    form->addRow("Model", txtModel);
    txtEnj = MakeField(page, "txtEnj", 50);
    form->addRow("Engine Number", txtEnj);

    auto* dateRow = new QHBoxLayout;
    Command2 = MakeToolButton(page, "Command2", "<", "Move the Date backwards");
    txtYY = MakeField(page, "txtYY", 10);
    txtYY->setToolTip("Press \"Insert\" to select a date from the calendar.");
    Command3 = MakeToolButton(page, "Command3", ">", "Move the Date forwards");
    dtpPurchaseDate = MakeDatePicker(page, "dtpPurchaseDate");
    dtpPurchaseDate->setMinimumWidth(120);
    Image3 = MakeToolButton(page, "Image3", "...", "Click to select a date from the calendar.");
    dateRow->addWidget(Command2);
    dateRow->addWidget(txtYY);
    dateRow->addWidget(Command3);
    dateRow->addWidget(dtpPurchaseDate);
    dateRow->addWidget(Image3);
    form->addRow("Purchase Date", dateRow);

    txtKoop = MakeField(page, "txtKoop");
    form->addRow("Purchase Price", txtKoop);
    txtDep = MakeField(page, "txtDep");
    txtDep->setToolTip("Positive % let the book value decrease while Negative % let it increase.");
    form->addRow("Depreciation %", txtDep);
    lblBoek = new QLabel(page);
    lblBoek->setObjectName("lblBoek");
    lblBoek->setFrameShape(QFrame::StyledPanel);
    lblBoek->setMinimumWidth(120);
    form->addRow("Value", lblBoek);
    txtVerseker = MakeField(page, "txtVerseker");
    form->addRow("Insured Value", txtVerseker);

    auto* photoRow = new QHBoxLayout;
    txtFoto = MakeField(page, "txtFoto", 100); // as wide as Foto
    Command1 = MakeToolButton(page, "Command1", "...", "Click to select a photo. A JPG or BMP format can be used.");
    photoRow->addWidget(txtFoto, 1);
    photoRow->addWidget(Command1);
    form->addRow("Photo", photoRow);
    return page;
}

QWidget* frmVoerDet::buildSizesPage() {
    auto* page = new QWidget(SSTab1);
    auto* form = new QFormLayout(page);
    form->setLabelAlignment(Qt::AlignRight);
    txtFuelTankSize = MakeField(page, "txtFuelTankSize");
    form->addRow("Fuel Tank Size", txtFuelTankSize);
    txtBatterySize = MakeField(page, "txtBatterySize", 50);
    form->addRow("Battery Size", txtBatterySize);
    txtTyreSize = MakeField(page, "txtTyreSize", 50);
    form->addRow("Tyre Size", txtTyreSize);
    txtOilFilterRef = MakeField(page, "txtOilFilterRef", 50);
    form->addRow("Oil Filter Info", txtOilFilterRef);
    txtFanbeltRef = MakeField(page, "txtFanbeltRef", 50);
    form->addRow("Fanbelt Info", txtFanbeltRef);
    return page;
}

void frmVoerDet::connectHandlers() {
    // The book value follows every field it could depend on, as the user types.
    for (QLineEdit* field : {txtDep, txtEnj, txtFoto, txtKilo, txtKoop, txtMaak, txtModel, txtVerseker, txtYY})
        connect(field, &QLineEdit::textChanged, this, [this] { CalcBoek(); });
    connect(dtpPurchaseDate, &QDateEdit::dateChanged, this, [this] { dtpPurchaseDate_Change(); });

    connect(optRebate[0], &QRadioButton::clicked, this, [this] { optRebate_Click(); });
    connect(optRebate[1], &QRadioButton::clicked, this, [this] { optRebate_Click(); });
    connect(Opt1[0], &QRadioButton::clicked, this, [this] { Opt1_Click(); });
    connect(Opt1[1], &QRadioButton::clicked, this, [this] { Opt1_Click(); });
    connect(cmdEditRebate, &QPushButton::clicked, this, [this] { cmdEditRebate_Click(); });
    connect(cmdDepartment, &QPushButton::clicked, this, [this] { cmdDepartment_Click(); });
    connect(Command1, &QToolButton::clicked, this, [this] { Command1_Click(); });
    connect(Command2, &QToolButton::clicked, this, [this] { StepPurchaseDate(-1, "Command2_Click"); });
    connect(Command3, &QToolButton::clicked, this, [this] { StepPurchaseDate(1, "Command3_Click"); });
    connect(Image3, &QToolButton::clicked, this, [this] { OpenPurchaseCalendar(); });
    connect(Image1, &QToolButton::clicked, this, [this] { dtpLicenceDueDate->setFocus(); });
    connect(Image4, &QToolButton::clicked, this, [this] { dtpServiceDueDate->setFocus(); });
    connect(cmdClearSearchList, &QPushButton::clicked, this, [this] { fraImage->hide(); });
    connect(lblcmd[0], &QPushButton::clicked, this, [this] { SaveVehicle(); });
    connect(lblcmd[1], &QPushButton::clicked, this, [this] { reject(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });

    // Leaving a field: defaults and formats.
    for (QWidget* w :
         {static_cast<QWidget*>(txtRebatePct), static_cast<QWidget*>(txtRebateRate), static_cast<QWidget*>(txtKoop),
          static_cast<QWidget*>(txtVerseker), static_cast<QWidget*>(txtReg), static_cast<QWidget*>(txtYY)})
        w->installEventFilter(this);
    for (QLineEdit* numeric : {txtKilo, txtFuelTankSize, txtRebatePct, txtRebateRate})
        AttachNumericFilter(numeric, true);
    // Every field: caption red while it has the focus, text selected on entry, Enter moves on.
    for (QLineEdit* field : findChildren<QLineEdit*>()) {
        if (field == txtIid)
            continue;
        AttachSelectOnFocus(field);
        AttachEnterAsTab(field);
        if (auto* form = qobject_cast<QFormLayout*>(field->parentWidget()->layout()))
            if (auto* caption = qobject_cast<QLabel*>(form->labelForField(field)))
                AttachFocusColour(field, caption);
    }
    for (QWidget* w : {static_cast<QWidget*>(cmbDepartment), static_cast<QWidget*>(dtpLicenceDueDate),
                       static_cast<QWidget*>(dtpServiceDueDate), static_cast<QWidget*>(dtpPurchaseDate)})
        AttachEnterAsTab(w);
    // Enter on an option, a check box or the tab bar moves on too; no button is ever pressed by Enter.
    for (QAbstractButton* option : findChildren<QAbstractButton*>())
        if (!qobject_cast<QPushButton*>(option) && !qobject_cast<QToolButton*>(option))
            AttachEnterAsTab(option);
    AttachEnterAsTab(SSTab1->tabBar());
    for (QPushButton* button : findChildren<QPushButton*>()) {
        button->setAutoDefault(false);
        button->setDefault(false);
    }
}

bool frmVoerDet::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) {
        if (watched == txtRebatePct)
            DefaultIfEmpty(txtRebatePct, "100");
        else if (watched == txtRebateRate)
            DefaultIfEmpty(txtRebateRate, "349");
        else if (watched == txtKoop)
            txtKoop->setText(vb::Format(Value(txtKoop->text()), "###0.00"));
        else if (watched == txtVerseker)
            txtVerseker->setText(vb::Format(Value(txtVerseker->text()), "###0.00"));
        else if (watched == txtReg)
            WysVoettuig();
    } else if (watched == txtYY) {
        if (event->type() == QEvent::MouseButtonDblClick) {
            OpenPurchaseCalendar();
            return true;
        }
        if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Insert) {
            OpenPurchaseCalendar();
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void frmVoerDet::WysVoettuig() {}

void frmVoerDet::CalcBoek() {
    lblBoek->setText(CalcBookValue(txtYY->text(), txtKoop->text(), txtDep->text(), TodayDate(), lblBoek->text()));
}

void frmVoerDet::dtpPurchaseDate_Change() {
    if (m_Loading)
        return;
    txtYY->setText(vb::Format(Value(dtpPurchaseDate->date()), "yyyy/mm/dd"));
    CalcBoek();
}

void frmVoerDet::SetNewVehicleDefaults() {
    m_Loading = true;
    txtMaak->setText("");
    txtModel->setText("Model");
    txtReg->setText("");
    txtYY->setText(vb::Format(Value(TodayDate()), "yyyy/mm/dd"));
    txtKoop->setText("1");
    txtDep->setText("1");
    lblBoek->setText("1");
    txtVerseker->setText("1");
    txtFoto->setText("");
    txtEnj->setText("");
    txtKilo->setText("");
    dtpLicenceDueDate->setDate(TodayDate());
    dtpServiceDueDate->setDate(TodayDate());
    txtFuelTankSize->setText("0");
    txtBatterySize->setText("");
    txtTyreSize->setText("");
    txtOilFilterRef->setText("");
    txtFanbeltRef->setText("");
    m_Loading = false;
    // The odometer kind comes from the category the vehicle is added under.
    const int category = CurrentSession().SelectedID;
    try {
        auto rs = SeekTable(db(), "voerkat", "PrimaryKey", {Value(category)});
        if (!rs->NoMatch()) {
            const bool hours = rs->Field("Hours").toBool();
            Opt1[1]->setChecked(hours);
            Opt1[0]->setChecked(!hours);
            if (hours) {
                Label14[7]->setText("Hours");
            } else {
                Opt1[0]->setEnabled(true);
                Opt1[1]->setEnabled(true);
                Label14[7]->setText("Kilometers");
            }
        }
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
}

void frmVoerDet::LoadDetail() {
    Hourglass hourglass;
    m_Loading = true;
    try {
        auto rs = SeekTable(db(), "voertuig", "PrimaryKey", {Value(CurrentSession().SelectedID)});
        if (rs->NoMatch()) {
            rs->Close();
            m_Loading = false;
            return;
        }
        const Value model = rs->Field("Model");
        txtMaak->setText(rs->Field("Maak").toString());
        txtModel->setText(vb::IsNumeric(model) && vb::Val(model.toString()) == 0.0 ? QString() : model.toString());
        txtIid->setText(rs->Field("TransID").toString());
        txtRebateRate->setText(GetRebateRate());
        txtRebatePct->setText(rs->Field("rebatepct").toString());
        txtReg->setText(rs->Field("RegNr").toString());

        const QDate bought = DateOfText(rs->Field("ADatum").toString());
        if (bought.isValid())
            dtpPurchaseDate->setDate(bought);
        txtYY->setText(vb::Format(Value(dtpPurchaseDate->date()), "yyyy/mm/dd"));
        const QDate licence = DateOfText(rs->Field("licenceduedate").toString());
        if (licence.isValid())
            dtpLicenceDueDate->setDate(licence);
        const QDate service = DateOfText(rs->Field("serviceduedate").toString());
        if (service.isValid())
            dtpServiceDueDate->setDate(service);

        txtKoop->setText(rs->Field("AWaarde").toString());
        txtDep->setText(rs->Field("depwaarde").toString());
        txtVerseker->setText(rs->Field("VWaarde").toString());
        txtKilo->setText(rs->Field("Km").toString());
        txtFoto->setText(rs->Field("Foto").toString());
        txtFuelTankSize->setText(rs->Field("FuelTankSize").toString());
        txtBatterySize->setText(rs->Field("batterysize").toString());
        txtTyreSize->setText(rs->Field("TyreSize").toString());
        txtOilFilterRef->setText(rs->Field("OilFilterRef").toString());
        txtFanbeltRef->setText(rs->Field("FanbeltRef").toString());

        txtYY->setText(rs->Field("ADatum").toString());

        const bool hours = rs->Field("Hours").toBool();
        Opt1[1]->setChecked(hours);
        Opt1[0]->setChecked(!hours);
        const bool rebated = rs->Field("rebated").toBool();
        optRebate[0]->setChecked(rebated);
        optRebate[1]->setChecked(!rebated);
        m_Loading = false;
        optRebate_Click();
        m_Loading = true;

        const Value dept = rs->Field("deptid");
        cmbDepartment->setCurrentIndex(
            FindItemData(cmbDepartment, dept.isNull() || dept.isEmpty() ? 0 : static_cast<int>(dept.toLong())));
        if (Opt1[1]->isChecked())
            Label14[7]->setText("Hours");

        const Value engine = rs->Field("Enjin");
        if (!engine.isNull() && !engine.toString().isEmpty())
            txtEnj->setText(engine.toString());
        rs->Close();
    } catch (const NumberedError& e) {
        m_Loading = false;
        EndRunWithError(e.number(), e.description());
        return;
    }
    m_Loading = false;
    CalcBoek();
    // A missing photo leaves the picture empty.
    if (!txtFoto->text().isEmpty() && !LoadPhoto(txtFoto->text()))
        LoadPhoto(CurrentSession().DataPath + txtFoto->text());
}

bool frmVoerDet::LoadPhoto(const QString& path) {
    QPixmap picture;
    if (path.isEmpty() || !QFileInfo(path).isFile() || !picture.load(path))
        return false;
    ImFot->setPixmap(picture.scaled(ImFot->size(), Qt::KeepAspectRatio, Qt::SmoothTransformation));
    return true;
}

void frmVoerDet::ShowPhoto() {
    fraImage->show();
}

void frmVoerDet::Command1_Click() {
    const QString chosen = QFileDialog::getOpenFileName(this, "Select a photo", CurrentSession().DataPath,
                                                        "Pictures (*.jpg *.jpeg *.bmp);;All files (*)");
    if (chosen.isEmpty())
        return; // cancelled: nothing else happens
    const QString title = QFileInfo(chosen).fileName();
    txtFoto->setText(title);
    LoadPhoto(chosen);
    // The photos belong in the data folder; one that is not there shows the stand-by picture.
    if (!LoadPhoto(CurrentSession().DataPath + title))
        LoadPhoto(CurrentSession().DataPath + "geen.jpg");
    ShowPhoto();
}

void frmVoerDet::optRebate_Click() {
    m_Rebate = optRebate[0]->isChecked();
    fraRebate->setVisible(m_Rebate);
}

void frmVoerDet::Opt1_Click() {
    Label14[7]->setText(Opt1[1]->isChecked() ? "Hours" : "Kilometers");
}

void frmVoerDet::cmdEditRebate_Click() {
    ShowScreen("frmRebate", true);
    txtRebateRate->setText(GetRebateRate());
}

void frmVoerDet::LaaiDepartments() {
    ::LaaiDepartments(cmbDepartment);
}

void frmVoerDet::EditDepartment(int action) {
    ::EditDepartment(action, cmbDepartment, [this] { LaaiDepartments(); });
}

void frmVoerDet::cmdDepartment_Click() {
    AskDepartment(cmbDepartment, [this] { LaaiDepartments(); });
}
void frmVoerDet::StepPurchaseDate(int days, const QString& routine) {
    // The text is read by position: year, month, and the last two characters as the day.
    const QString text = txtYY->text();
    const int year = text.mid(0, 4).toInt();
    const int month = text.mid(5, 2).toInt();
    const int day = text.right(2).toInt();
    const QDate date(year, month, day);
    if (!date.isValid()) {
        MsgBox("ERROR in " + routine + " Type mismatch");
        return;
    }
    txtYY->setText(vb::Format(Value(date.addDays(days)), "yyyy/mm/dd"));
}

void frmVoerDet::OpenPurchaseCalendar() {
    OpenCalendar(txtYY, [this](const QDate& picked) { txtYY->setText(vb::Format(Value(picked), "yyyy/mm/dd")); });
}

bool frmVoerDet::CheckVehicle() {
    if (m_Rebate) {
        DefaultIfEmpty(txtRebateRate, "389");
        DefaultIfEmpty(txtRebatePct, "100");
    }
    const std::pair<QLineEdit*, const char*> required[] = {
        {txtMaak, "Make"},
        {txtModel, "Model"},
        {txtReg, "Registration No"},
        {txtDep, "Depreciation %"},
        {txtVerseker, "Insured Value"},
        {txtKilo, "Kilometers"},
    };
    for (const auto& [field, word] : required) {
        if (field->text().isEmpty()) {
            SSTab1->setCurrentIndex(0);
            MsgBox(QString("Complete the ") + word + " field!", MsgButtons::Ok, MsgIcon::Information,
                   "Vehicle Details");
            field->setFocus(); // the page stays the first, also for a field on another page
            return false;
        }
    }
    return true;
}

void frmVoerDet::SaveVehicle() {
    if (!CheckVehicle())
        return;
    Session& s = CurrentSession();
    try {
        Hourglass hourglass;
        auto rs = db().OpenRecordset("voertuig", RecordsetType::Table);
        rs->SetIndex("PrimaryKey");
        const bool isNew = txtIid->text() == "Id";
        if (!isNew)
            rs->Seek("=", {Value(s.SelectedID)});
        if (isNew)
            rs->AddNew();
        else
            rs->Edit();

        rs->SetField("CatID", Value(s.SelectedCatID));
        rs->SetField("Maak", Value(txtMaak->text()));
        rs->SetField("Model", Value(txtModel->text()));
        rs->SetField("RegNr", Value(txtReg->text()));
        rs->SetField("ADatum", Value(vb::Format(Value(dtpPurchaseDate->date()), kDateFormat)));
        rs->SetField("rebated", Value(m_Rebate));
        rs->SetField("rebatepct", Value(txtRebatePct->text()));
        rs->SetField("licenceduedate", Value(vb::Format(Value(dtpLicenceDueDate->date()), kDateFormat)));
        rs->SetField("serviceduedate", Value(vb::Format(Value(dtpServiceDueDate->date()), kDateFormat)));
        rs->SetField("AWaarde", Value(vb::Val(txtKoop->text())));
        rs->SetField("depwaarde", Value(vb::Val(txtDep->text())));
        rs->SetField("VWaarde", Value(vb::Val(txtVerseker->text())));
        rs->SetField("Km", Value(vb::Val(txtKilo->text())));
        rs->SetField("Foto", Value(txtFoto->text()));
        rs->SetField("Enjin", Value(txtEnj->text()));
        rs->SetField("Boek", Value(lblBoek->text()));
        rs->SetField("Hours", Value(Opt1[1]->isChecked()));
        rs->SetField("FuelTankSize", Value(txtFuelTankSize->text().isEmpty() ? QString("1") : txtFuelTankSize->text()));
        rs->SetField("batterysize", Value(txtBatterySize->text()));
        rs->SetField("TyreSize", Value(txtTyreSize->text()));
        rs->SetField("OilFilterRef", Value(txtOilFilterRef->text()));
        rs->SetField("FanbeltRef", Value(txtFanbeltRef->text()));
        rs->SetField("deptid", Value(cmbDepartment->currentIndex() >= 0 ? cmbDepartment->currentData().toInt() : 0));
        rs->Update();
        s.LastVehicleID = static_cast<int>(rs->Field("TransID").toLong());
        rs->Close();
    } catch (const NumberedError& e) {
        MsgBox("ERROR in SaveVehicle " + e.description());
        return;
    }
    accept();
}

void frmVoerDet::cmdPrint_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Vehicle Form View";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
        PrintVehicle_Sheet();
        xlSheet->Columns("d:d").SetColumnWidth(20);
        xlSheet->Columns("e:e").SetNumberFormat("### ### ##0.00");
        xlSheet->Columns("f:f").SetNumberFormat("### ### ###");
        REPORT_SaveReport(xlApp, "Vehicles", "Vehicle Form View");
        REPORT_HideExcel(xlApp, false);
    } catch (const XlError& e) {
        hourglass.restore();
        MsgBox("ERROR in cmdPrint_Click " + e.description());
    }
    REPORT_Workbook_Terminate();
}

void frmVoerDet::PrintVehicle_Sheet() {
    struct Line {
        enum Kind { Title, Section, Item } kind;
        QString label;
        Value value;
        QString format;
    };
    const Line lines[] = {
        {Line::Title, "Vehicle Information", {}, ""},
        {Line::Section, "Vehicle Information", {}, ""},
        {Line::Item, "Odometer", Value(Opt1[1]->isChecked() ? "Hour" : "Kilometer"), ""},
        {Line::Item, "Rebate", Value(m_Rebate ? "Yes" : "No"), ""},
        {Line::Item, "Name/Make", Value(txtMaak->text()), ""},
        {Line::Item, "Registration No", Value(txtReg->text()), ""},
        {Line::Item, "Kilometers", Value(txtKilo->text()), "### ### ##0"},
        {Line::Item, "Licence Renewal Date", Value(dtpLicenceDueDate->date()), ""},
        {Line::Item, "Service Due Date", Value(dtpServiceDueDate->date()), ""},
        {Line::Section, "Additional Information", {}, ""},
        {Line::Item, "Model", Value(txtModel->text()), ""},
        {Line::Item, "Engine Number", Value(txtEnj->text()), ""},
        {Line::Item, "Purchase Date", Value(txtYY->text()), ""},
        {Line::Item, "Purchase Price", Value(txtKoop->text()), "### ### ##0"},
        {Line::Item, "Depreciation %", Value(txtDep->text()), "##0.00"},
        {Line::Item, "Value", Value(lblBoek->text()), "### ### ##0"},
        {Line::Item, "Insured Value", Value(txtVerseker->text()), "### ### ##0"},
        {Line::Section, "Specifications", {}, ""},
        {Line::Item, "Fuel Tank Size", Value(txtFuelTankSize->text()), ""},
        {Line::Item, "Battery Size", Value(txtBatterySize->text()), ""},
        {Line::Item, "Tyre Size", Value(txtTyreSize->text()), ""},
        {Line::Item, "Oil Filter Info", Value(txtOilFilterRef->text()), ""},
        // This row has always printed the oil filter reference under the fanbelt label.
        {Line::Item, "Fanbelt Info", Value(txtOilFilterRef->text()), ""},
    };
    xlRow = 1;
    for (const Line& line : lines) {
        const QString row = QString::number(xlRow);
        switch (line.kind) {
        case Line::Title:
            REPxlFmt(xlSheet, "a" + row, "d" + row, Value(line.label), 2, 15, true, false, false, true, false, "", 1,
                     xl::Center, xl::Center, 2, 0, Value(18));
            REPORT_ToExcel_ApplyCustomformat(xlSheet, "a" + row, "d" + row, 0);
            break;
        case Line::Section:
            REPxlFmt(xlSheet, "a" + row, "d" + row, Value(line.label), 2, 8, true, false, false, true, false, "", 1,
                     xl::Left, xl::Center, 2, 0, Value(18));
            REPORT_ToExcel_ApplyCustomformat(xlSheet, "a" + row, "d" + row, 1);
            break;
        case Line::Item:
            REPxlFmt(xlSheet, "a" + row, "c" + row, Value(line.label), 2, 8, false, false, false, true, false, "", 1,
                     xl::Left, xl::Center, 2, 0, Value(18));
            REPxlFmt(xlSheet, "d" + row, "d" + row, line.value, 2, 8, false, false, false, false, false, line.format, 1,
                     line.format.isEmpty() ? xl::Left : xl::Right, xl::Center, 2, 0, Value(18));
            break;
        }
        ++xlRow;
    }
}
