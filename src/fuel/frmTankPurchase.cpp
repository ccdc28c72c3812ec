#include "frmTankPurchase.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "DateEntry.h"
#include "FuelForms.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"
#include "frmAdd.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QVBoxLayout>
#include <functional>
#include <vector>

using fuelforms::Untrapped;

namespace {

const char* const kDateClosed = "The date entered is already closed. Please change the date.";

// A recordset that a failed step never opened is an object that is not set.
Recordset& Open(const std::unique_ptr<Recordset>& rs) {
    if (!rs)
        throw VbError(91, "Object variable or With block variable not set");
    return *rs;
}

} // namespace

QString MakeFuelSupplierSeed(const QString& table) {
    return "insert into " + table + " (name,issystem) " + " values (" + "'_Fuel Supplier'" + ",1)";
}

frmTankPurchase::frmTankPurchase(QWidget* parent) : QDialog(parent) {
    setObjectName("frmTankPurchase");
    setWindowTitle("Fuel Purchase");

    auto makeField = [this](const char* name, Qt::Alignment align) {
        auto* field = new QLineEdit(this);
        field->setObjectName(name);
        field->setAlignment(align);
        return field;
    };
    lblDate = new QLabel("Date", this);
    txtDyy = makeField("txtDyy", Qt::AlignLeft);
    txtDyy->setToolTip("yyyy/mm/dd; \"-\" or a double click opens the calendar.");
    txtDmm = makeField("txtDmm", Qt::AlignLeft);
    txtDdd = makeField("txtDdd", Qt::AlignLeft);
    txtDmm->hide(); // parts of the date that nothing reads
    txtDdd->hide();
    Command2 = new QPushButton("<", this);
    Command2->setObjectName("Command2");
    Command2->setToolTip("A day back");
    Command1 = new QPushButton(">", this);
    Command1->setObjectName("Command1");
    Command1->setToolTip("A day forward");
    for (QPushButton* b : {Command1, Command2}) {
        b->setAutoDefault(false);
        b->setFixedWidth(28);
    }
    lblSupplier = new QLabel("Supplier", this);
    cmbsupplier = new QComboBox(this);
    cmbsupplier->setObjectName("cmbsupplier");
    cmbsupplier->setMinimumWidth(220);
    cmdAddSupplier = new QPushButton("...", this);
    cmdAddSupplier->setObjectName("cmdAddSupplier");
    cmdAddSupplier->setToolTip("Add a fuel supplier");
    cmdAddSupplier->setAutoDefault(false);
    cmdAddSupplier->setFixedWidth(28);
    lblInvoice = new QLabel("Invoice Ref", this);
    txtinvoiceref = makeField("txtinvoiceref", Qt::AlignLeft);
    txtinvoiceref->setMaxLength(50);
    lblLiter = new QLabel("Litres", this);
    txtLiter = makeField("txtLiter", Qt::AlignRight);
    lblCost = new QLabel("Cost", this);
    txtCost = makeField("txtCost", Qt::AlignRight);
    lblCostLitre = new QLabel("Cost/Litre", this);
    txtCostLitre = makeField("txtCostLitre", Qt::AlignRight);

    auto* grid = new QGridLayout;
    auto* dateRow = new QHBoxLayout;
    dateRow->addWidget(txtDyy, 1);
    dateRow->addWidget(Command2);
    dateRow->addWidget(Command1);
    dateRow->addWidget(txtDmm);
    dateRow->addWidget(txtDdd);
    grid->addWidget(lblDate, 0, 0);
    grid->addLayout(dateRow, 0, 1);
    auto* supplierRow = new QHBoxLayout;
    supplierRow->addWidget(cmbsupplier, 1);
    supplierRow->addWidget(cmdAddSupplier);
    grid->addWidget(lblSupplier, 1, 0);
    grid->addLayout(supplierRow, 1, 1);
    grid->addWidget(lblInvoice, 2, 0);
    grid->addWidget(txtinvoiceref, 2, 1);
    grid->addWidget(lblLiter, 3, 0);
    grid->addWidget(txtLiter, 3, 1);
    grid->addWidget(lblCost, 4, 0);
    grid->addWidget(txtCost, 4, 1);
    grid->addWidget(lblCostLitre, 5, 0);
    grid->addWidget(txtCostLitre, 5, 1);

    const char* const captions[] = {"&Save && Close", " &Cancel", " &Add"};
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (int i : {2, 0, 1}) {
        auto*& button = lblcmd[static_cast<size_t>(i)];
        button = new QPushButton(captions[i], this);
        button->setObjectName(QString("lblcmd_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addLayout(buttons);

    QWidget* order[] = {txtDyy,   Command2, Command1,     cmbsupplier, cmdAddSupplier, txtinvoiceref,
                        txtLiter, txtCost,  txtCostLitre, lblcmd[0],   lblcmd[1],      lblcmd[2]};
    for (size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    AttachCalendarField(txtDyy);
    for (auto [field, caption] :
         {std::pair{txtDyy, lblDate}, std::pair{txtinvoiceref, lblInvoice}, std::pair{txtLiter, lblLiter},
          std::pair{txtCost, lblCost}, std::pair{txtCostLitre, lblCostLitre}}) {
        AttachFocusColour(field, caption);
        AttachEnterAsTab(field);
        AttachSelectOnFocus(field);
    }
    AttachEnterAsTab(cmbsupplier);
    for (QLineEdit* field : {txtCost, txtLiter, txtCostLitre}) {
        AttachDigitsFilter(field, true);
        fuelforms::EmptyWhenNoFigure(field);
    }
    // The date takes digits and "/" only: anything else empties it, and the save then asks for it.
    connect(txtDyy, &QLineEdit::textEdited, this, [this](const QString& text) {
        static const QRegularExpression allowed("^[0-9/]*$");
        if (!allowed.match(text).hasMatch())
            txtDyy->setText("");
    });
    txtCost->installEventFilter(this);
    txtDmm->installEventFilter(this);
    connect(Command1, &QPushButton::clicked, this, [this] { MoveDate(1); });
    connect(Command2, &QPushButton::clicked, this, [this] { MoveDate(-1); });
    connect(cmdAddSupplier, &QPushButton::clicked, this, [this] { cmdAddSupplier_Click(); });

    txtDyy->setText(fuelforms::TodayText());
    Untrapped([this] { LoadFuelSuppliers(); });
    ClearPurchaseFields();
}

bool frmTankPurchase::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::FocusOut) {
        if (watched == txtCost)
            txtCost_LostFocus();
        else if (watched == txtDmm)
            Untrapped([this] { LookupTankByDate(); });
    }
    return QDialog::eventFilter(watched, event);
}

void frmTankPurchase::ClearPurchaseFields() {
    for (QLineEdit* field : {txtDdd, txtDmm, txtDyy, txtinvoiceref})
        field->setText("");
    for (QLineEdit* field : {txtCost, txtCostLitre, txtLiter})
        field->setText("0");
}

void frmTankPurchase::LoadFuelSuppliers() {
    if (GetScalar(db(), "select count(*) from fuelsupplier", "0") == "0")
        db().Execute(MakeFuelSupplierSeed("fuelsupplier"));
    cmbsupplier->clear();
    auto rs = db().OpenRecordset("select suppid, [name] from fuelsupplier order by [name]");
    for (; !rs->Eof(); rs->MoveNext())
        cmbsupplier->addItem(vb::ProperCase(rs->Field("Name").toString()),
                             QVariant::fromValue(rs->Field("suppid").toLong()));
}

void frmTankPurchase::txtCost_LostFocus() {
    try {
        const Currency quotient = vb::CCur(Value(txtCost->text())) / vb::CCur(Value(txtLiter->text()));
        txtCostLitre->setText(vb::Format(Value(quotient), "###0.00"));
    } catch (const NumberedError&) {
        // No litres (or no number): the division fails and the field keeps its value.
    }
}

void frmTankPurchase::MoveDate(int days) {
    const QString text = txtDyy->text();
    if (!vb::IsDate(text))
        return;
    txtDyy->setText(vb::Format(Value(vb::DateAddDays(vb::CDate(Value(text)), days)), "yyyy/MM/dd"));
}

void frmTankPurchase::cmdAddSupplier_Click() {
    ShowAdd(this, "Fuel Supplier");
    Untrapped([this] { LoadFuelSuppliers(); });
}

void frmTankPurchase::lblcmd_Click(int index) {
    switch (index) {
    case 0:
        UpdatePompe();
        break;
    case 1:
        reject();
        break;
    case 2:
        ClearPurchaseFields(); // the record in hand stays: a save after this still writes over it
        txtDyy->setFocus();
        break;
    default:
        break;
    }
}

void frmTankPurchase::LoadDetail() {
    Hourglass hourglass;
    auto rs = SeekTable(db(), "FuelPurchase", "TransID", {Value(CurrentSession().CurrentPurchaseID)});
    if (rs->NoMatch())
        return;
    const QString datum = rs->Field("Datum").toString();
    txtDdd->setText(datum.mid(8));
    txtDmm->setText(datum.mid(6));
    txtDyy->setText(datum);
    txtCost->setText(vb::Format(rs->Field("Cost"), "###0.00"));
    txtCostLitre->setText(vb::Format(rs->Field("CostPerLiter"), "###0.00"));
    txtLiter->setText(vb::Format(rs->Field("Liter"), "###0.00"));
    cmbsupplier->setCurrentIndex(
        FindItemData(cmbsupplier, rs->Field("suppid").isNull() ? 0 : rs->Field("suppid").toLong()));
    const Value ref = rs->Field("invoiceref");
    txtinvoiceref->setText(ref.isNull() ? QString() : ref.toString());
}

void frmTankPurchase::UpdatePompe() {
    Session& s = CurrentSession();
    if (txtDyy->text().isEmpty() || txtCost->text().isEmpty() || txtLiter->text().isEmpty()) {
        MsgBox("You need to fill all the Fields!", MsgButtons::Ok, MsgIcon::None, "Fuel Purchases");
        txtDyy->setFocus();
        return;
    }
    try {
        if (IsDateClosed(vb::CDate(Value(txtDyy->text())), s.ClosedDate)) {
            txtDyy->setFocus();
            return;
        }
    } catch (const NumberedError& e) {
        // A date that is no date fails the test itself. Resuming goes on inside the refusal, as it always has;
        // leaving ends the routine and unloads the screen.
        if (ConfirmError(true, "ERROR in UpdatePompe", QString(), e.description())) {
            MsgBox(kDateClosed, MsgButtons::Ok, MsgIcon::Critical, "Closed date");
            txtDyy->setFocus();
            return;
        }
        done(QDialog::Rejected);
        return;
    }

    Hourglass hourglass;
    std::unique_ptr<Recordset> rs;
    std::unique_ptr<Recordset> tank;
    std::unique_ptr<Recordset> latest;
    Currency earlier;
    bool tankFound = true;
    const int tankId = s.CurrentTankID;
    // One statement to a step: after an error that the user lets pass, the next step runs.
    const std::vector<std::function<void()>> steps = {
        [&] { rs = SeekTable(db(), "FuelPurchase", "TransID", {Value(s.CurrentPurchaseID)}); },
        [&] {
            if (Open(rs).NoMatch()) {
                rs->AddNew();
                earlier = Currency();
            } else {
                rs->Edit();
                earlier = vb::CCur(rs->Field("Liter"));
            }
        },
        [&] {
            const Value key = Open(rs).Field("TransID");
            m_RecordNumber = key.isNull() || key.isEmpty() ? 0 : static_cast<int>(key.toLong());
        },
        [&] { Open(rs).SetField("Datum", Value(txtDyy->text())); },
        [&] { Open(rs).SetField("TankID", Value(tankId)); },
        [&] { Open(rs).SetField("Cost", Value(vb::Format(Value(txtCost->text()), "###0.00"))); },
        [&] {
            if (txtCostLitre->text().isEmpty())
                txtCostLitre->setText(
                    vb::CStr(Value(vb::CDbl(Value(txtCost->text())) / vb::CDbl(Value(txtLiter->text())))));
        },
        [&] {
            if (cmbsupplier->currentIndex() < 0)
                throw VbError(381, "Invalid property array index");
            Open(rs).SetField("suppid", Value(ItemDataAt(cmbsupplier, cmbsupplier->currentIndex())));
        },
        [&] { Open(rs).SetField("invoiceref", Value(txtinvoiceref->text())); },
        [&] { Open(rs).SetField("CostPerLiter", Value(vb::Format(Value(txtCostLitre->text()), "###0.00"))); },
        [&] { Open(rs).SetField("Liter", Value(vb::Format(Value(txtLiter->text()), "###0.00"))); },
        [&] { Open(rs).Update(); },
        [&] { Open(rs).Close(); },
        [&] {
            tank = SeekTable(db(), "Tanks", "PrimaryKey", {Value(tankId)});
            if (tank->NoMatch()) {
                tank->Close();
                tankFound = false;
            }
        },
        [&] { Open(tank).Edit(); },
        [&] {
            const Currency volume =
                Open(tank).Field("HuidigeVolume").toCurrency() + (vb::CCur(Value(txtLiter->text())) - earlier);
            tank->SetField("HuidigeVolume", Value(vb::Format(Value(volume), "###0.00")));
        },
        [&] {
            latest = db().OpenRecordset("Select * from FuelPurchase Where TankID = " + QString::number(tankId) +
                                        " ORDER by Datum");
        },
        [&] {
            if (!Open(latest).Eof()) {
                latest->MoveLast();
                Open(tank).SetField("CurRperL", Value(vb::Format(latest->Field("CostPerLiter"), "###0.00")));
            }
        },
        [&] { Open(tank).Update(); },
    };
    for (size_t i = 0; i < steps.size(); ++i) {
        if (i > 13 && !tankFound)
            break;
        try {
            steps[i]();
        } catch (const NumberedError& e) {
            hourglass.restore();
            if (!ConfirmError(true, "ERROR in UpdatePompe", QString(), e.description()))
                break;
        }
    }
    hourglass.restore();
    done(QDialog::Accepted);
}

void frmTankPurchase::LookupTankByDate() {
    const QString date = txtDyy->text() + "/" + txtDmm->text() + "/" + txtDdd->text();
    auto rs = SeekTable(db(), "Tanks", "TANKDATUM", {Value(date)});
    if (rs->NoMatch())
        return;
    const QString datum = rs->Field("Datum").toString();
    txtDyy->setText(datum.left(4));
    txtDmm->setText(datum.mid(5, 2));
    txtDdd->setText(datum.mid(8, 2));
    txtCost->setText(rs->Field("Koste").toString());
    txtLiter->setText(rs->Field("Liters").toString());
}
