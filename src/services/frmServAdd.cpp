#include "frmServAdd.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "DateEntry.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "LookupLists.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "ReportEngine.h"
#include "ScreenRegistry.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

QString DateText(const QDate& date) {
    return vb::Format(Value(date), "yyyy/MM/dd");
}

// A date text of the form "yyyy/mm/dd" read by position, as the steppers read it; invalid when it is no date.
QDate DateByPosition(const QString& text) {
    bool okYear = false, okMonth = false, okDay = false;
    const int year = text.mid(0, 4).toInt(&okYear);
    const int month = text.mid(5, 2).toInt(&okMonth);
    const int day = text.right(2).toInt(&okDay);
    if (!okYear || !okMonth || !okDay)
        return {};
    return QDate(year, month, day);
}

} // namespace

frmServAdd::frmServAdd(QWidget* parent) : QDialog(parent) {
    setObjectName("frmServAdd");
    setWindowTitle("Orvel - Add Services");
    buildScreen();
    resize(1180, 640);

    // On load.
    txtDyy->setText(DateText(QDate::currentDate()));
    ClearService();
    FillCategoryCombo(Combo2);
    Combo2->setCurrentIndex(-1);
    Combo3->clear();
    LaaiSupliers();
    LaaiCostCat();
    LoadServiceList();
}

void frmServAdd::buildScreen() {
    auto* outer = new QVBoxLayout(this);

    FrAddServices = new QGroupBox("Add Services", this);
    FrAddServices->setObjectName("FrAddServices");
    auto* form = new QGridLayout(FrAddServices);
    auto field = [&](int row, int col, const QString& caption, QWidget* w, int span = 1) {
        auto* label = new QLabel(caption, FrAddServices);
        label->setBuddy(w);
        form->addWidget(label, row, col);
        form->addWidget(w, row, col + 1, 1, span);
    };
    txtReference = new QLineEdit(FrAddServices);
    txtReference->setObjectName("txtReference");
    txtReference->setMaxLength(50);
    Combo2 = new QComboBox(FrAddServices);
    Combo2->setObjectName("Combo2");
    Combo3 = new QComboBox(FrAddServices);
    Combo3->setObjectName("Combo3");
    txtDyy = new QLineEdit(FrAddServices);
    txtDyy->setObjectName("txtDyy");
    txtDyy->setMaxLength(10);
    txtDyy->setPlaceholderText("yyyy/mm/dd");
    Combo4 = new QComboBox(FrAddServices);
    Combo4->setObjectName("Combo4");
    Combo1 = new QComboBox(FrAddServices);
    Combo1->setObjectName("Combo1");
    txtKos = new QLineEdit(FrAddServices);
    txtKos->setObjectName("txtKos");
    txtKm = new QLineEdit(FrAddServices);
    txtKm->setObjectName("txtKm");
    txtTransID = new QLineEdit(FrAddServices);
    txtTransID->setObjectName("txtTransID");
    txtTransID->hide();
    for (QComboBox* combo : {Combo2, Combo3, Combo4, Combo1})
        combo->setMinimumWidth(260);

    Command1 = new QPushButton(">", FrAddServices);
    Command1->setObjectName("Command1");
    Command1->setToolTip("Move the Date forwards");
    Command2 = new QPushButton("<", FrAddServices);
    Command2->setObjectName("Command2");
    Command2->setToolTip("Move the Date backwards");
    Image1 = new QToolButton(FrAddServices);
    Image1->setObjectName("Image1");
    Image1->setText("...");
    Image1->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    Image1->setToolTip("Pick the date from the calendar (Insert)");
    for (QPushButton* stepper : {Command1, Command2})
        stepper->setFixedWidth(28);
    cmdAddSupplier = new QPushButton("...", FrAddServices);
    cmdAddSupplier->setObjectName("cmdAddSupplier");
    cmdAddSupplier->setToolTip("Add, rename or delete a supplier");
    cmdAddCostCat = new QPushButton("...", FrAddServices);
    cmdAddCostCat->setObjectName("cmdAddCostCat");
    cmdAddCostCat->setToolTip("Add, rename or delete a cost category");
    for (QPushButton* dots : {cmdAddSupplier, cmdAddCostCat})
        dots->setFixedWidth(32);

    field(0, 0, "Reference", txtReference);
    auto* dateRow = new QHBoxLayout;
    dateRow->addWidget(Command2);
    dateRow->addWidget(txtDyy);
    dateRow->addWidget(Command1);
    dateRow->addWidget(Image1);
    auto* dateLabel = new QLabel("Date", FrAddServices);
    form->addWidget(dateLabel, 0, 3);
    form->addLayout(dateRow, 0, 4);
    field(1, 0, "Category", Combo2);
    field(1, 3, "Vehicle", Combo3);
    field(2, 0, "Supplier", Combo4);
    form->addWidget(cmdAddSupplier, 2, 2);
    field(2, 3, "Cost Category", Combo1);
    form->addWidget(cmdAddCostCat, 2, 5);
    field(3, 0, "Cost", txtKos);
    field(3, 3, "Km/Hour reading", txtKm);
    form->setColumnStretch(1, 1);
    form->setColumnStretch(4, 1);

    const char* const captions[12] = {"&Add",
                                      " &Edit",
                                      "&Delete",
                                      "&Cancel",
                                      "&Cancel",
                                      "&Save",
                                      "Allocate Services",
                                      "&Print Job Card",
                                      "&Print Job Card",
                                      "Print List",
                                      "&Print Job Card",
                                      "&Print Empty Job Card"};
    for (int i = 0; i < 12; ++i) {
        lblcmd[i] = new QPushButton(captions[i], this);
        lblcmd[i]->setObjectName(QString("lblcmd_%1").arg(i));
        connect(lblcmd[i], &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
        lblcmd[i]->setAutoDefault(false);
    }
    lblcmd[10]->hide(); // a caption of the card printing, without an action of its own
    auto* frameButtons = new QHBoxLayout;
    frameButtons->addStretch(1);
    frameButtons->addWidget(lblcmd[5]);
    frameButtons->addWidget(lblcmd[7]);
    frameButtons->addWidget(lblcmd[4]);
    form->addLayout(frameButtons, 4, 0, 1, 6);
    FrAddServices->hide();
    outer->addWidget(FrAddServices);

    Frame1 = new QGroupBox("Open Services", this);
    Frame1->setObjectName("Frame1");
    auto* list = new QVBoxLayout(Frame1);
    flx1 = new FlexGrid(Frame1);
    flx1->setObjectName("flx1");
    flx1->setToolTip("A list of all vehicle transactions.");
    list->addWidget(flx1, 1);
    auto* listButtons = new QHBoxLayout;
    for (int i : {0, 1, 2})
        listButtons->addWidget(lblcmd[i]);
    listButtons->addSpacing(16);
    for (int i : {8, 11, 9})
        listButtons->addWidget(lblcmd[i]);
    listButtons->addStretch(1);
    listButtons->addWidget(lblcmd[6]);
    listButtons->addWidget(lblcmd[3]);
    list->addLayout(listButtons);
    list->addWidget(lblcmd[10]);
    outer->addWidget(Frame1, 1);

    connect(Combo2, &QComboBox::activated, this, [this] { Combo2_Click(); });
    // A click, or a move by the keyboard in the grid; a refill that makes the first row current does not count.
    connect(flx1, &QTableWidget::cellClicked, this, [this] { flx1_Click(); });
    connect(flx1, &QTableWidget::currentCellChanged, this, [this] {
        if (flx1->hasFocus())
            flx1_Click();
    });
    connect(flx1, &QTableWidget::cellDoubleClicked, this, [this] { lblcmd_Click(1); });
    connect(Command1, &QPushButton::clicked, this, [this] { StepDate(1); });
    connect(Command2, &QPushButton::clicked, this, [this] { StepDate(-1); });
    connect(Image1, &QToolButton::clicked, this, [this] { OpenCalendar(); });
    connect(cmdAddSupplier, &QPushButton::clicked, this,
            [this] { AskSupplierCostCat("vecsupplier", "Supplier", Combo4, [this] { LaaiSupliers(); }); });
    connect(cmdAddCostCat, &QPushButton::clicked, this,
            [this] { AskSupplierCostCat("costcat", "Cost Category", Combo1, [this] { LaaiCostCat(); }); });

    AttachNumericFilter(txtKm, true);
    AttachNumericFilter(txtKos, true);
    for (QWidget* w :
         std::initializer_list<QWidget*>{txtReference, Combo2, Combo3, txtDyy, Combo4, Combo1, txtKos, txtKm})
        AttachEnterAsTab(w);
    AttachCalendarField(txtDyy);
    txtDyy->installEventFilter(this);
    txtKos->installEventFilter(this);
}

bool frmServAdd::eventFilter(QObject* watched, QEvent* e) {
    if (watched == txtDyy && e->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(e)->key() == Qt::Key_Insert) {
        OpenCalendar();
        return true;
    }
    if (e->type() == QEvent::FocusOut) {
        const auto reason = static_cast<QFocusEvent*>(e)->reason();
        const bool leaving = reason != Qt::ActiveWindowFocusReason && reason != Qt::PopupFocusReason;
        if (watched == txtDyy && leaving)
            txtDyy_Validate();
        if (watched == txtKos)
            txtKos->setText(vb::Format(Value(txtKos->text()), "###0.00"));
    }
    return QDialog::eventFilter(watched, e);
}

void frmServAdd::OpenCalendar() {
    ::OpenCalendar(txtDyy, [this](const QDate& date) { txtDyy->setText(DateText(date)); });
}

bool frmServAdd::txtDyy_Validate() {
    const QString text = txtDyy->text();
    // An empty field is left alone: it is refused by the save's own check.
    if (text.isEmpty() || (text.size() >= 4 && vb::IsDate(text)))
        return true;
    MsgBox("The  date is not valid!", MsgButtons::Ok, MsgIcon::None, "Add Service");
    txtDyy->setText("");
    return false;
}

void frmServAdd::StepDate(int days) {
    QDate date = DateByPosition(txtDyy->text());
    if (!date.isValid())
        date = QDate::currentDate();
    else
        date = date.addDays(days);
    txtDyy->setText(DateText(date));
}

void frmServAdd::LaaiSupliers() {
    Combo4->clear();
    try {
        auto rs = db().OpenRecordset("SELECT * FROM VecSupplier ORDER BY SUP_Desc");
        for (; !rs->Eof(); rs->MoveNext())
            Combo4->addItem(vb::ProperCase(rs->Field("SUP_Desc").toString()),
                            static_cast<qlonglong>(rs->Field("sup_no").toLong()));
    } catch (const NumberedError&) {
    }
    Combo4->setCurrentIndex(-1);
}

void frmServAdd::LaaiCostCat() {
    Combo1->clear();
    try {
        auto rs = db().OpenRecordset("SELECT * FROM CostCat ORDER BY CC_CostCatagory");
        for (; !rs->Eof(); rs->MoveNext())
            Combo1->addItem(vb::ProperCase(rs->Field("CC_CostCatagory").toString()),
                            static_cast<qlonglong>(rs->Field("CC_IID").toLong()));
    } catch (const NumberedError&) {
    }
    Combo1->setCurrentIndex(Combo1->count() > 0 ? 0 : -1);
}

QString frmServAdd::GetSupplier(int id) {
    return GetScalar(db(), "SELECT SUP_Desc FROM VecSupplier WHERE SUP_No = " + QString::number(id), "");
}

QString frmServAdd::GetCostCategory(int id) {
    return GetScalar(db(), "SELECT CC_CostCatagory FROM CostCat WHERE CC_IID = " + QString::number(id), "");
}

QString frmServAdd::GetReferenceText() const {
    return ReferenceText(m_Reference);
}

void frmServAdd::LoadServiceList() {
    FillServiceGrid(*flx1, 0, 0, true, "", ""); // the first row, if any, is made current
}

void frmServAdd::flx1_Click() {
    if (flx1->Rows() <= 1 || flx1->Row() < 1)
        return;
    CurrentSession().SelectedID = static_cast<int>(vb::Val(flx1->TextMatrix(flx1->Row(), svccol::TransID)));
}

void frmServAdd::Combo2_Click() {
    Combo3->clear();
    if (Combo2->currentIndex() >= 0)
        FillVehicleCombo(Combo3, ItemDataAt(Combo2, Combo2->currentIndex()));
    Combo3->setCurrentIndex(-1);
}

void frmServAdd::ClearService() {
    txtDyy->setText("");
    txtKm->setText("");
    txtKos->setText("");
    txtReference->setText("");
    Combo2->setCurrentIndex(-1);
    Combo3->setCurrentIndex(-1);
    FrAddServices->setTitle("Add Services");
}

void frmServAdd::CloseFrame() {
    FrAddServices->hide();
    flx1->setEnabled(true);
    Frame1->show();
}

void frmServAdd::lblcmd_Click(int index) {
    Session& s = CurrentSession();
    switch (index) {
    case 0:
        FrAddServices->show();
        ClearService();
        SetReference(QString::number(NextReference()));
        txtReference->setText(GetReferenceText());
        lblcmd[7]->show();
        txtDyy->setFocus();
        flx1->setEnabled(false);
        Frame1->hide();
        s.SelectedID = 0;
        break;
    case 1: {
        if (flx1->Rows() <= 1)
            break;
        FrAddServices->show();
        FrAddServices->setTitle("Edit Service");
        lblcmd[7]->hide();
        const int row = flx1->Row();
        s.SelectedID = static_cast<int>(vb::Val(flx1->TextMatrix(row, svccol::TransID)));
        txtTransID->setText(flx1->TextMatrix(row, svccol::TransID));
        txtDyy->setText(flx1->TextMatrix(row, svccol::Date));
        if (Combo4->count() > 0)
            Combo4->setCurrentIndex(Combo4->findText(flx1->TextMatrix(row, svccol::Supplier)));
        const QString vehicleId = flx1->TextMatrix(row, svccol::VehicleId(true));
        const int catId =
            GetScalar(db(), "select catid from voertuig where transid = " + QString::number(vb::Val(vehicleId)), "0")
                .toInt();
        Combo2->setCurrentIndex(FindItemData(Combo2, catId));
        Combo2_Click();
        Combo3->setCurrentIndex(FindItemData(Combo3, static_cast<long long>(vb::Val(vehicleId))));
        Combo1->setCurrentIndex(Combo1->findText(flx1->TextMatrix(row, svccol::CostCategory)));
        txtKos->setText(flx1->TextMatrix(row, svccol::Cost));
        txtKm->setText(flx1->TextMatrix(row, svccol::Km));
        txtReference->setText(flx1->TextMatrix(row, svccol::Reference));
        txtDyy->setFocus();
        break;
    }
    case 2:
        DeleteService();
        break;
    case 3:
        close();
        break;
    case 4:
        CloseFrame();
        break;
    case 5:
        SaveService();
        break;
    case 6:
        if (flx1->Rows() >= 2) {
            done(QDialog::Accepted);
            ShowScreen("frmVoerDiens", true);
        }
        break;
    case 7:
        PrintJobCard(s.SelectedID, false);
        lblcmd_Click(4);
        break;
    case 8:
        if (s.SelectedID > 0)
            PrintJobCard(s.SelectedID, false);
        else
            MsgBox("Select a Row", MsgButtons::Ok, MsgIcon::Information);
        break;
    case 9:
        PrintServiceList();
        break;
    case 11:
        PrintJobCard(0, true);
        break;
    default:
        break;
    }
}

void frmServAdd::SaveService() {
    Session& s = CurrentSession();
    if (Combo3->currentIndex() < 0) {
        MsgBox("Vehicle not selected", MsgButtons::Ok, MsgIcon::Exclamation);
        Combo3->setFocus();
        return;
    }
    if (Combo4->currentIndex() < 0) {
        MsgBox("Supplier not selected", MsgButtons::Ok, MsgIcon::Exclamation);
        Combo4->setFocus();
        return;
    }
    if (Combo1->currentIndex() < 0) {
        MsgBox("Cost Category not selected", MsgButtons::Ok, MsgIcon::Exclamation);
        Combo1->setFocus();
        return;
    }
    if (txtDyy->text().isEmpty() || Combo4->currentText().isEmpty() || txtKos->text().isEmpty() ||
        Combo1->currentText().isEmpty()) {
        MsgBox("Fill all the fields", MsgButtons::Ok, MsgIcon::Information, "Add Service");
        txtDyy->setFocus();
        return;
    }
    Hourglass hourglass;
    try {
        if (IsDateClosed(vb::CDate(Value(txtDyy->text())), s.ClosedDate)) {
            txtDyy->setFocus();
            return;
        }
        m_Sql = "SELECT * FROM vdiens_unallocated WHERE TransID = " + QString::number(s.SelectedID);
        auto rs = db().OpenRecordset(m_Sql);
        const bool added = rs->Eof();
        if (added)
            rs->AddNew();
        else
            rs->Edit();
        rs->SetField("Date", Value(txtDyy->text()));
        rs->SetField("supplierid", Value(ItemDataAt(Combo4, Combo4->currentIndex())));
        rs->SetField("costcatid", Value(ItemDataAt(Combo1, Combo1->currentIndex())));
        rs->SetField("Cost", Value(txtKos->text()));
        rs->SetField("Km", Value(vb::Trim(txtKm->text()).left(8)));
        rs->SetField("voertuigId", Value(ItemDataAt(Combo3, Combo3->currentIndex())));
        QString reference = vb::Trim(txtReference->text());
        rs->SetField("reference", Value(reference.replace("'", "''")));
        rs->Update();

        bool readId = true;
        if (vb::Trim(txtReference->text()) == GetReferenceText()) {
            const int number = static_cast<int>(vb::Val(m_Reference));
            if (number <= 1000) {
                // The seeded reference is marked assigned; the new row's id is not read on this path.
                db().Execute("UPDATE [serviceReference] SET " + QString(" [serviceReference].[isassigned] = 1") +
                             " ,[serviceReference].[assignDate] = now" +
                             " WHERE reference = " + QString::number(number));
                readId = false;
            } else {
                auto ref = db().OpenRecordset("select * from [serviceReference]" + QString("\r\n") +
                                              " WHERE reference = " + QString::number(number) + "\r\n");
                if (ref->Eof())
                    ref->AddNew();
                else
                    ref->Edit();
                ref->SetField("reference", Value(number));
                ref->SetField("isopened", Value(false));
                ref->SetField("isassigned", Value(true));
                ref->SetField("assigndate", Value(QDateTime::currentDateTime()));
                ref->Update();
            }
        }
        if (readId && added)
            s.SelectedID = GetScalar(db(), "select max(transid) from vdiens_unallocated", "0").toInt();
        rs->Close();
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in SaveService " + e.description());
        return;
    }
    hourglass.restore();
    LoadServiceList();
    lblcmd[7]->show();
}

void frmServAdd::DeleteService() {
    if (MsgBox("Proceed to delete Service?", MsgButtons::YesNo, MsgIcon::None, "Add Service") != MsgResult::Yes)
        return;
    if (flx1->Rows() <= 1)
        return;
    const QString id = flx1->TextMatrix(flx1->Row(), svccol::TransID);
    try {
        db().Execute("DELETE * FROM vdiens_unallocated WHERE TransID = " + QString::number(vb::Val(id)));
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    LoadServiceList();
}
