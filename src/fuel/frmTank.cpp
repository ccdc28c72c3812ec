#include "frmTank.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "FlexGrid.h"
#include "FuelForms.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Recalc.h"
#include "ReportEngine.h"
#include "Session.h"
#include "Vb.h"
#include "frmTankPurchase.h"

#include <QComboBox>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

using fuelforms::TodayText;
using fuelforms::Untrapped;

namespace {

const char* const kSelectCategoryFirst = "You have to select a category first!";

QString PurchaseJoin(int tank) {
    return QString(" FROM FuelPurchase p ") + " inner join fuelsupplier s on  s.suppid = p.suppid" +
           " WHERE TankID = " + QString::number(tank);
}

} // namespace

frmTank::frmTank(QWidget* parent) : QWidget(parent) {
    setObjectName("frmTank");
    setWindowTitle("Fuel Tanks");
    buildScreen();
    resize(1000, 600);
    FillTankList();
}

void frmTank::buildScreen() {
    auto* outer = new QHBoxLayout(this);

    auto* left = new QVBoxLayout;
    auto* tanksCaption = new QLabel("Fuel Tanks", this);
    QFont bold = tanksCaption->font();
    bold.setBold(true);
    tanksCaption->setFont(bold);
    left->addWidget(tanksCaption);
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    list1->setMinimumWidth(220);
    list1->setMaximumWidth(280);
    left->addWidget(list1, 1);

    const char* const captions[9] = {" &Add",    " &Edit", " &Delete", " &Save", " &Cancel",
                                     " &Delete", " &Edit", " &Add",    ""};
    for (int i = 0; i < 9; ++i) {
        Label4[i] = new QPushButton(captions[i], this);
        Label4[i]->setObjectName(QString("Label4_%1").arg(i));
        Label4[i]->setAutoDefault(false);
        connect(Label4[i], &QPushButton::clicked, this, [this, i] { Label4_Click(i); });
        Label4[i]->installEventFilter(this);
    }
    Label4[8]->setIcon(style()->standardIcon(QStyle::SP_FileDialogContentsView));
    Label4[0]->setToolTip("Add a tank.");
    Label4[1]->setToolTip("Edit the selected tank.");
    Label4[2]->setToolTip("Delete the selected tank.");
    Label4[5]->setToolTip("Delete the selected purchase.");
    Label4[6]->setToolTip("Edit the selected purchase.");
    Label4[7]->setToolTip("Add a purchase to the selected tank.");
    Label4[8]->setToolTip("View the selected purchase.");

    auto* tankButtons = new QHBoxLayout;
    tankButtons->addWidget(Label4[0]);
    tankButtons->addWidget(Label4[1]);
    tankButtons->addWidget(Label4[2]);
    left->addLayout(tankButtons);

    Frame2 = new QGroupBox("Tank detail", this);
    Frame2->setObjectName("Frame2");
    auto* frameLayout = new QGridLayout(Frame2);
    lblTank = new QLabel("Description", Frame2);
    txtTank = new QLineEdit(Frame2);
    txtTank->setObjectName("txtTank");
    txtTank->setMaxLength(50);
    lblCapacity = new QLabel("Capacity", Frame2);
    txtCapacity = new QLineEdit(Frame2);
    txtCapacity->setObjectName("txtCapacity");
    txtCapacity->setToolTip("Litres Tank Holds");
    txtCapacity->setAlignment(Qt::AlignRight);
    lblPumpReading = new QLabel("Pump Reading", Frame2);
    txtPumpReading = new QLineEdit(Frame2);
    txtPumpReading->setObjectName("txtPumpReading");
    txtPumpReading->setAlignment(Qt::AlignRight);
    frameLayout->addWidget(lblTank, 0, 0);
    frameLayout->addWidget(txtTank, 0, 1);
    frameLayout->addWidget(lblCapacity, 1, 0);
    frameLayout->addWidget(txtCapacity, 1, 1);
    frameLayout->addWidget(lblPumpReading, 2, 0);
    frameLayout->addWidget(txtPumpReading, 2, 1);
    auto* frameButtons = new QHBoxLayout;
    frameButtons->addStretch(1);
    frameButtons->addWidget(Label4[3]);
    frameButtons->addWidget(Label4[4]);
    frameLayout->addLayout(frameButtons, 3, 0, 1, 2);
    Frame2->hide();
    left->addWidget(Frame2);

    // Never shown: the date and cost of the tank row.
    fraUNUSED = new QGroupBox(this);
    fraUNUSED->setObjectName("fraUNUSED");
    auto* unusedLayout = new QHBoxLayout(fraUNUSED);
    txtDyy = new QLineEdit(fraUNUSED);
    txtDyy->setObjectName("txtDyy");
    txtCost = new QLineEdit(fraUNUSED);
    txtCost->setObjectName("txtCost");
    unusedLayout->addWidget(txtDyy);
    unusedLayout->addWidget(txtCost);
    fraUNUSED->hide();
    outer->addLayout(left);

    auto* right = new QVBoxLayout;
    lblPurchases = new QLabel("Fuel Purchases", this);
    lblPurchases->setObjectName("lblPurchases");
    QFont big = lblPurchases->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    lblPurchases->setFont(big);
    right->addWidget(lblPurchases);
    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    flg->installEventFilter(this);
    right->addWidget(flg, 1);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->setObjectName("ProgressBar1");
    ProgressBar1->setMaximumHeight(12);
    ProgressBar1->setTextVisible(false);
    ProgressBar1->hide();
    right->addWidget(ProgressBar1);

    auto* purchaseButtons = new QHBoxLayout;
    lblPrint = new QPushButton(" &Print", this);
    lblPrint->setObjectName("lblPrint");
    lblPrint->setAutoDefault(false);
    lblPrint->setToolTip("The purchases of the selected tank as a workbook.");
    connect(lblPrint, &QPushButton::clicked, this, [this] { lblPrint_Click(); });
    purchaseButtons->addWidget(lblPrint);
    purchaseButtons->addStretch(1);
    purchaseButtons->addWidget(new QLabel("Purchases:", this));
    purchaseButtons->addWidget(Label4[7]);
    purchaseButtons->addWidget(Label4[6]);
    purchaseButtons->addWidget(Label4[5]);
    purchaseButtons->addWidget(Label4[8]);
    right->addLayout(purchaseButtons);
    outer->addLayout(right, 1);

    AttachDigitsFilter(txtPumpReading, false);
    AttachNumericFilter(txtCapacity, true);
    fuelforms::EmptyWhenNoFigure(txtCapacity);
    fuelforms::EmptyWhenNoFigure(txtPumpReading);
    for (auto [field, caption] : {std::pair{txtTank, lblTank}, std::pair{txtCapacity, lblCapacity},
                                  std::pair{txtPumpReading, lblPumpReading}}) {
        AttachFocusColour(field, caption);
        AttachEnterAsTab(field);
        AttachSelectOnFocus(field);
    }

    // The focus traps: narrow fields at the end of the tab order that run an action when tabbed into.
    Text1 = new QLineEdit(this);
    Text2 = new QLineEdit(this);
    Text3 = new QLineEdit(this);
    Text4 = new QLineEdit(this);
    int n = 1;
    for (QLineEdit* trap : {Text1, Text2, Text3, Text4}) {
        trap->setObjectName(QString("Text%1").arg(n++));
        trap->setFixedSize(2, 2);
        trap->setFrame(false);
        trap->move(0, 0);
        trap->lower();
        trap->installEventFilter(this);
    }

    QWidget* order[] = {list1,     Label4[0], Label4[1], Label4[2], txtTank,   txtCapacity, txtPumpReading,
                        Label4[3], Label4[4], flg,       Label4[7], Label4[6], Label4[5],   Label4[8],
                        lblPrint,  Text1,     Text2,     Text3,     Text4};
    for (size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);

    connect(list1, &QListWidget::currentRowChanged, this, [this] {
        if (!m_Filling)
            LoadTankPurchases();
    });
    connect(flg, &QTableWidget::cellDoubleClicked, this, [this] {
        if (flg->Row() >= 1)
            Label4_Click(6);
    });
}

bool frmTank::eventFilter(QObject* watched, QEvent* e) {
    if (e->type() == QEvent::FocusIn) {
        const auto reason = static_cast<QFocusEvent*>(e)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            if (watched == Text1 || watched == Text4)
                Label4_Click(9);
            else if (watched == Text2)
                Label4_Click(0);
            else if (watched == Text3)
                LoadTankPurchases();
        }
    }
    if (e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
        for (int i = 0; i < 9; ++i) {
            if (watched == Label4[i] && enter) {
                Label4_Click(i);
                return true;
            }
        }
        if (watched == flg && enter && flg->Row() >= 1) {
            Label4_Click(6);
            return true;
        }
    }
    return QWidget::eventFilter(watched, e);
}

void frmTank::FillTankList() {
    QComboBox tanks;
    FillTankCombo(&tanks, false);
    m_Filling = true;
    list1->clear();
    for (int i = 0; i < tanks.count(); ++i)
        AddItemWithData(list1, tanks.itemText(i), ItemDataAt(&tanks, i));
    m_Filling = false;
    if (list1->count() > 0)
        list1->setCurrentRow(0); // the change loads its purchases
    else
        LoadTankPurchases();
}

void frmTank::LoadTankPurchases() {
    Session& s = CurrentSession();
    flg->SetCols(7);
    flg->setVisible(false);
    flg->Clear();
    flg->SetRows(1);
    QListWidgetItem* item = list1->currentItem();
    if (!item) {
        flg->setVisible(true);
        return;
    }
    id = item->data(Qt::UserRole).toInt();
    s.CurrentTankID = id;
    lblPurchases->setText("Fuel Purchases: " + item->text());
    const bool filled = Untrapped([&] {
        auto rs = db().OpenRecordset("SELECT * " + PurchaseJoin(id) + " ORDER by p.Datum");
        for (; !rs->Eof(); rs->MoveNext()) {
            const QStringList cells{rs->Field("TransID").toString(),     rs->Field("Datum").toString(),
                                    rs->Field("Name").toString(),        rs->Field("invoiceref").toString(),
                                    rs->Field("Liter").toString(),       rs->Field("Cost").toString(),
                                    rs->Field("CostPerLiter").toString()};
            flg->AddItem(FLEX_JoinRow(cells));
        }
    });
    if (!filled)
        return;
    if (flg->Rows() == 1)
        flg->SetRows(2);
    flg->SetFormatString("id|Date|Supplier|Invoice Ref|Litres|Cost|Cost/Litre");
    const int widths[7] = {0, 1200, 2500, 1500, 1500, 1500, 1500};
    for (int c = 0; c < 7; ++c)
        flg->SetColWidth(c, widths[c]);
    for (int c = 4; c <= 6; ++c)
        flg->SetColAlignment(c, flexAlignRightCenter);
    flg->setVisible(true);
}

int frmTank::CursorKey() const {
    return fuelforms::CellKey(*flg, flg->Row(), 0);
}

void frmTank::Label4_Click(int index) {
    switch (index) {
    case 0:
        AddTank();
        break;
    case 1:
        EditTank();
        break;
    case 2:
        DeleteTank();
        break;
    case 3:
        SaveTank();
        break;
    case 4:
        Frame2->hide();
        txtTank->setText("");
        break;
    case 5:
        DeletePurchase();
        break;
    case 6:
        EditPurchase();
        break;
    case 7:
        AddPurchase();
        break;
    case 8:
        ViewPurchase();
        break;
    default:
        break; // the traps' index 9
    }
}

void frmTank::AddTank() {
    id = 0;
    txtTank->setText("");
    txtDyy->setText(TodayText());
    txtCapacity->setText("");
    txtCost->setText("");
    Frame2->show();
    txtTank->setFocus();
}

void frmTank::EditTank() {
    const QString sql = "select pumpreading,capacity from tanks where transid = " + QString::number(id);
    txtTank->setText(list1->currentItem() ? list1->currentItem()->text() : QString());
    txtCapacity->setText(GetScalar(db(), sql, "0", 1));
    txtPumpReading->setText(GetScalar(db(), sql, "0", 0));
    Frame2->show();
    txtTank->setFocus();
}

void frmTank::SaveTank() {
    txtCost->setText("0");
    if (txtPumpReading->text().isEmpty() || !vb::IsNumeric(Value(txtPumpReading->text())))
        txtPumpReading->setText("0");
    if (txtDyy->text().isEmpty())
        txtDyy->setText(TodayText());
    const QString name = txtTank->text();
    if (name == QString(name.size(), ' ') || txtDyy->text().isEmpty() || txtCost->text().isEmpty() ||
        txtCapacity->text().isEmpty()) {
        MsgBox("Fill in all the empty fields!", MsgButtons::Ok, MsgIcon::Information, "Tanks");
        return;
    }
    Hourglass hourglass;
    const bool saved = Untrapped([&] {
        auto rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(id)});
        Value volume("0.00");
        Value rate("0.00");
        if (rs->NoMatch()) {
            rs->AddNew();
        } else {
            rs->Edit();
            volume = rs->Field("HuidigeVolume");
            rate = rs->Field("CurRperL");
        }
        rs->SetField("TankNaam", Value(name.toUpper()));
        rs->SetField("Datum", Value(vb::Format(Value(txtDyy->text()), "yyyy/MM/dd")));
        rs->SetField("Koste", Value(txtCost->text()));
        rs->SetField("Capacity", Value(txtCapacity->text()));
        rs->SetField("HuidigeVolume", volume);
        rs->SetField("CurRperL", rate);
        rs->SetField("PumpReading", Value(txtPumpReading->text()));
        rs->Update();
        rs->Close();
    });
    if (!saved)
        return;
    FillTankList();
    Frame2->hide();
}

void frmTank::DeleteTank() {
    if (id == 0)
        return;
    if (MsgBox("Proceed to delete the tank?", MsgButtons::YesNo, MsgIcon::Information, "Tanks") != MsgResult::Yes)
        return;
    Hourglass hourglass;
    bool inUse = false;
    const bool done = Untrapped([&] {
        auto purchases = SeekTable(db(), "FuelPurchase", "TankID", {Value(id)});
        inUse = !purchases->NoMatch();
        purchases->Close();
        if (inUse)
            return;
        auto rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(id)});
        if (!rs->NoMatch())
            rs->Delete();
        rs->Close();
    });
    if (!done)
        return;
    if (inUse) {
        hourglass.restore();
        MsgBox("This tank is still in use.Permission denied!", MsgButtons::Ok, MsgIcon::Critical, "Tanks");
        return;
    }
    id = 0;
    FillTankList();
    Frame2->hide();
}

void frmTank::DeletePurchase() {
    Session& s = CurrentSession();
    if (s.CurrentTankID <= 0) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::Information, "Category");
        return;
    }
    const int purchase = CursorKey();
    if (purchase <= 0)
        return;
    if (MsgBox("Proceed to delete Fuel purchase?", MsgButtons::YesNo, MsgIcon::Exclamation, "Fuel purchase") !=
        MsgResult::Yes)
        return;
    const QString litres = fuelforms::CellText(*flg, flg->Row(), 4);
    Hourglass hourglass;
    const bool done = Untrapped([&] {
        db().Execute("DELETE * FROM FuelPurchase WHERE TransID = " + QString::number(purchase));
        // The rebuilt balance already lacks the deleted litres; they come off once more below, and the
        // balance stays that much low until the next recalculation.
        Recalc(ProgressBar1, true);
        auto rs = SeekTable(db(), "Tanks", "PrimaryKey", {Value(s.CurrentTankID)});
        if (rs->NoMatch()) {
            rs->Close();
            return;
        }
        rs->Edit();
        const Currency balance = rs->Field("HuidigeVolume").toCurrency() - vb::CCur(Value(litres));
        rs->SetField("HuidigeVolume", Value(vb::Format(Value(balance), "###0.00")));
        auto latest = db().OpenRecordset(
            "Select * from FuelPurchase Where TankID = " + QString::number(s.CurrentTankID) + " ORDER by Datum");
        if (!latest->Eof()) {
            latest->MoveLast();
            rs->SetField("CurRperL", Value(vb::Format(latest->Field("CostPerLiter"), "###0.00")));
        }
        rs->Update();
        rs->Close();
    });
    if (done)
        LoadTankPurchases();
}

void frmTank::EditPurchase() {
    const int purchase = CursorKey();
    if (purchase <= 0)
        return;
    CurrentSession().CurrentPurchaseID = purchase;
    {
        frmTankPurchase screen(this);
        if (!Untrapped([&] { screen.LoadDetail(); }))
            return;
        screen.exec();
    }
    LoadTankPurchases();
}

void frmTank::AddPurchase() {
    Session& s = CurrentSession();
    if (s.CurrentTankID <= 0) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::Information, "Category");
        return;
    }
    s.CurrentPurchaseID = 0;
    {
        frmTankPurchase screen(this);
        for (QLineEdit* field : {screen.txtDdd, screen.txtDmm, screen.txtCost, screen.txtLiter, screen.txtCostLitre})
            field->setText("");
        screen.txtDyy->setText(TodayText());
        screen.exec();
    }
    LoadTankPurchases();
}

void frmTank::ViewPurchase() {
    // The purchase shown is the one last opened for edit: the record number is not taken from the cursor here.
    if (CurrentSession().CurrentPurchaseID <= 0 || CursorKey() <= 0)
        return;
    {
        frmTankPurchase screen(this);
        if (!Untrapped([&] { screen.LoadDetail(); }))
            return;
        for (QLineEdit* field :
             {screen.txtDdd, screen.txtDmm, screen.txtDyy, screen.txtCost, screen.txtLiter, screen.txtCostLitre})
            field->setReadOnly(true);
        screen.exec();
    }
    LoadTankPurchases();
}

void frmTank::lblPrint_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    const QString tankName = list1->currentItem() ? list1->currentItem()->text() : QString();
    Hourglass hourglass;
    Untrapped([&] {
        fuelforms::OpenFuelWorkbook("Fuel Purchases");
        REPxlFmt(xlSheet, "a1", "f1", Value("Fuel Purchases In Selected Category " + tankName), 2, 12, true, false,
                 false, true, false, "", 1, xl::Center, xl::Center, 2, 0, Value(20));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "f1", 0);
        const char* const headings[6] = {"Date", "Supplier", "Invoice Ref.", "Litres", "Cost", "Cost/Litre"};
        for (int c = 0; c < 6; ++c) {
            const QString cell = COLUMN_Letter(c, true) + "2";
            REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 10, true, false, false, false, false, "", 1,
                     c >= 3 ? xl::Right : xl::Left, xl::Center, 2, 0, Value(18));
        }
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "f2", 1);
        auto rs = db().OpenRecordset(QString("SELECT [Datum],[Name],[invoiceRef],[Liter],[Cost],[CostPerLiter] ") +
                                     PurchaseJoin(id) + " ORDER by Datum");
        const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
        xlSheet->Columns("d:f").SetNumberFormat("### ### ##0.00");
        // The store keeps these figures as text: each is written back so that the sheet holds numbers.
        for (int row = 3; row < 3 + rows; ++row)
            for (int col = 4; col <= 6; ++col) {
                XlRange cell = xlSheet->Cells(row, col);
                cell.SetValue(cell.GetValue());
            }
        xlSheet->Columns("a:a").SetColumnWidth(11);
        xlSheet->Columns("b:b").SetColumnWidth(24);
        xlSheet->Columns("c:c").SetColumnWidth(14);
        xlSheet->Columns("d:f").SetColumnWidth(12);
        // Landscape keeps the six columns on one page across.
        xlSheet->SetOrientation(xl::Landscape);
        fuelforms::SaveFuelWorkbook("Fuel Purchases");
    });
}
