#include "frmTankStock.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "FlexGrid.h"
#include "FuelForms.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReportEngine.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

using fuelforms::Untrapped;

frmTankStock::frmTankStock(QWidget* parent) : QDialog(parent) {
    setObjectName("frmTankStock");
    setWindowTitle("Orvel - Tank Stock");

    auto* filterRow = new QHBoxLayout;
    auto* filterCaption = new QLabel("Tank", this);
    cboTank = new QComboBox(this);
    cboTank->setObjectName("cboTank");
    cboTank->setMinimumWidth(240);
    filterCaption->setBuddy(cboTank);
    filterRow->addWidget(filterCaption);
    filterRow->addWidget(cboTank);
    filterRow->addStretch(1);

    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    flg->setMinimumSize(820, 220);

    auto makeButton = [this](const QString& caption, const char* name) {
        auto* button = new QPushButton(caption, this);
        button->setObjectName(name);
        button->setAutoDefault(false);
        return button;
    };
    Label4 = makeButton(" &Add", "Label4");
    lblEdit = makeButton(" &Edit", "lblEdit");
    lblDelete = makeButton(" &Delete", "lblDelete");
    lblPrint = makeButton(" &Print", "lblPrint");
    Label4->setToolTip("Add a stock take.");
    lblEdit->setToolTip("Edit the selected stock take.");
    lblDelete->setToolTip("Delete the selected stock take.");
    lblPrint->setToolTip("The listed stock takes as a workbook.");
    auto* listButtons = new QHBoxLayout;
    listButtons->addWidget(lblPrint);
    listButtons->addStretch(1);
    listButtons->addWidget(Label4);
    listButtons->addWidget(lblEdit);
    listButtons->addWidget(lblDelete);

    fraEdit = new QGroupBox("Stock Take", this);
    fraEdit->setObjectName("fraEdit");
    auto* form = new QGridLayout(fraEdit);
    auto makeField = [this](const char* name, bool figure) {
        auto* field = new QLineEdit(fraEdit);
        field->setObjectName(name);
        if (figure) {
            field->setAlignment(Qt::AlignRight);
            field->setMaximumWidth(140);
        }
        return field;
    };
    lblDate = new QLabel("Date", fraEdit);
    dtpDate = new QDateEdit(fraEdit);
    dtpDate->setObjectName("dtpDate");
    dtpDate->setCalendarPopup(true);
    dtpDate->setDisplayFormat("yyyy/MM/dd");
    lblTank = new QLabel("Tank", fraEdit);
    cmbTank = new QComboBox(fraEdit);
    cmbTank->setObjectName("cmbTank");
    cmbTank->setMinimumWidth(200);
    lblLitLesing = new QLabel("Liters Available", fraEdit);
    txtLitLesing = makeField("txtLitLesing", true);
    lblLitIn = new QLabel("Liters  Measured", fraEdit);
    txtLitIn = makeField("txtLitIn", true);
    lblLost = new QLabel("Liters Lost", fraEdit);
    txtLost = makeField("txtLost", true);
    lblLostRP = new QLabel("@ Rand Per Litre", fraEdit);
    txtLostRP = makeField("txtLostRP", true);
    lblLostR = new QLabel("Lost R Value", fraEdit);
    txtLostR = makeField("txtLostR", true);
    lblReason = new QLabel("Reason Lost", fraEdit);
    txtReason = makeField("txtReason", false);
    txtReason->setMaxLength(100);
    // The book figures are worked out, never typed.
    for (QLineEdit* shown : {txtLitLesing, txtLost, txtLostR, txtLostRP}) {
        shown->setReadOnly(true);
        shown->setFocusPolicy(Qt::NoFocus);
    }
    form->addWidget(lblDate, 0, 0);
    form->addWidget(dtpDate, 0, 1);
    form->addWidget(lblTank, 0, 2);
    form->addWidget(cmbTank, 0, 3);
    form->addWidget(lblLitLesing, 1, 0);
    form->addWidget(txtLitLesing, 1, 1);
    form->addWidget(lblLitIn, 1, 2);
    form->addWidget(txtLitIn, 1, 3);
    form->addWidget(lblLost, 2, 0);
    form->addWidget(txtLost, 2, 1);
    form->addWidget(lblLostRP, 2, 2);
    form->addWidget(txtLostRP, 2, 3);
    form->addWidget(lblLostR, 3, 0);
    form->addWidget(txtLostR, 3, 1);
    form->addWidget(lblReason, 4, 0);
    form->addWidget(txtReason, 4, 1, 1, 4);
    const char* const captions[] = {"&Save && Close", " &Cancel"};
    auto* editButtons = new QHBoxLayout;
    cmdPrint = new QPushButton(" P&rint", fraEdit);
    cmdPrint->setObjectName("cmdPrint");
    cmdPrint->setAutoDefault(false);
    cmdPrint->setToolTip("This stock take as a workbook.");
    editButtons->addWidget(cmdPrint);
    editButtons->addStretch(1);
    for (int i = 0; i < 2; ++i) {
        auto*& button = lblcmd[static_cast<size_t>(i)];
        button = new QPushButton(captions[i], fraEdit);
        button->setObjectName(QString("lblcmd_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
        editButtons->addWidget(button);
    }
    form->addLayout(editButtons, 5, 0, 1, 5);
    form->setColumnStretch(4, 1);
    form->setHorizontalSpacing(12);
    dtpDate->setMaximumWidth(140);
    fraEdit->hide();

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(filterRow);
    layout->addWidget(flg, 1);
    layout->addLayout(listButtons);
    layout->addWidget(fraEdit);

    QWidget* order[] = {cboTank, flg,      Label4,    lblEdit,   lblDelete, lblPrint, dtpDate,
                        cmbTank, txtLitIn, txtReason, lblcmd[0], lblcmd[1], cmdPrint};
    for (size_t i = 1; i < std::size(order); ++i)
        setTabOrder(order[i - 1], order[i]);

    AttachNumericFilter(txtLitIn, true);
    fuelforms::EmptyWhenNoFigure(txtLitIn);
    AttachSelectOnFocus(txtLitIn);
    AttachFocusColour(txtLitIn, lblLitIn);
    AttachFocusColour(txtReason, lblReason);
    AttachFocusColour(cmbTank, lblTank);
    AttachFocusColour(dtpDate, lblDate);
    AttachEnterAsTab(txtLitIn);
    AttachEnterAsTab(txtReason);
    AttachEnterAsTab(cmbTank);
    AttachEnterAsTab(dtpDate);
    txtLitIn->installEventFilter(this);

    connect(Label4, &QPushButton::clicked, this, [this] { Label4_Click(); });
    connect(lblEdit, &QPushButton::clicked, this, [this] { lblEdit_Click(); });
    connect(lblDelete, &QPushButton::clicked, this, [this] { lblDelete_Click(); });
    connect(lblPrint, &QPushButton::clicked, this, [this] { lblPrint_Click(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });

    ResetStockFields();
    FillTankCombo(cboTank, true);
    FillTankCombo(cmbTank, false);
    Untrapped([this] { FillStockList(); });
    connect(cboTank, &QComboBox::currentIndexChanged, this, [this] { Untrapped([this] { FillStockList(); }); });
    // A pick of the tank runs its click, also when the user picks the tank already shown.
    auto tankClick = [this] {
        Untrapped([this] {
            FillStockList();
            ShowTankBalance();
        });
    };
    connect(cmbTank, &QComboBox::currentIndexChanged, this, tankClick);
    connect(cmbTank, &QComboBox::activated, this, tankClick);
    resize(900, 620);
}

bool frmTankStock::eventFilter(QObject* watched, QEvent* event) {
    if (watched == txtLitIn && event->type() == QEvent::FocusOut)
        Untrapped([this] { txtLitIn_LostFocus(); });
    return QDialog::eventFilter(watched, event);
}

QString frmTankStock::BuildStockSql(bool withKey) const {
    QString sql = "SELECT ";
    if (withKey)
        sql += " ts.[TransID],";
    sql += QString(" ts.[Datum] as [Date]") + " ,ts.[Tank]" + " ,ts.[LitersInTank] as [Liters Available]" +
           " ,ts.[LiterLesing] as [Liters Read]" + " ,ts.[Verlore] as [Liters Lost]" +
           " ,ts.[Rvalue] as [Liters Lost Rands]" + " ,[Rede] as [Note]" + " FROM [TankStock] as ts";
    if (ItemDataAt(cboTank, cboTank->currentIndex()) > 0) {
        QString name = cboTank->currentText();
        sql += " WHERE tank = '" + SqlEscape(name) + "'";
    }
    sql += " ORDER by tank,ts.Datum,transid";
    return sql;
}

void frmTankStock::FillStockList() {
    flg->setVisible(false);
    flg->Clear();
    flg->SetCols(8);
    flg->SetRows(1);
    m_Rows = 0;
    auto rs = db().OpenRecordset(BuildStockSql(true));
    flg->SetFormatString(FLEX_FieldNames(*rs));
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList cells;
        for (int c = 0; c < 8; ++c) {
            const Value v = rs->Field(c);
            if (v.isNull())
                cells << QString();
            else if (c >= 3 && c <= 6)
                cells << vb::Format(v, "### ##0.00");
            else
                cells << v.toString();
        }
        flg->AddItem(FLEX_JoinRow(cells));
        ++m_Rows;
    }
    if (flg->Rows() == 1)
        flg->SetRows(2);
    flg->SetColWidth(0, 0);
    flg->SetColWidth(1, 1200);
    flg->SetColWidth(2, 1800);
    for (int c = 3; c <= 6; ++c) {
        flg->SetColWidth(c, c == 6 ? 1900 : 1500);
        flg->SetColAlignment(c, flexAlignRightCenter);
    }
    flg->SetColWidth(7, 2500);
    for (QPushButton* b : {lblEdit, lblDelete, lblPrint})
        b->setEnabled(m_Rows > 0);
    flg->setVisible(true);
}

void frmTankStock::ResetStockFields() {
    dtpDate->setDate(QDate::currentDate());
    for (QLineEdit* field : {txtLitLesing, txtLitIn, txtLost, txtLostR, txtLostRP})
        field->setText("0");
    txtReason->setText("");
}

void frmTankStock::ShowTankBalance() {
    auto rs = db().OpenRecordset("SELECT * FROM Tanks WHERE TankNaam = '" + cmbTank->currentText() + "'");
    if (!rs->Eof())
        txtLitLesing->setText(rs->Field("HuidigeVolume").toString());
}

void frmTankStock::txtLitIn_LostFocus() {
    txtLitIn->setText(vb::Format(Value(txtLitIn->text()), "###0.00"));
    if (!txtLitLesing->text().isEmpty() && !txtLitIn->text().isEmpty()) {
        const Currency lost = vb::CCur(Value(txtLitIn->text())) - vb::CCur(Value(txtLitLesing->text()));
        txtLost->setText(vb::Format(Value(lost), "###0.00"));
    }
    auto rs = db().OpenRecordset("SELECT * FROM Tanks WHERE TankNaam = '" + cmbTank->currentText() + "'");
    if (!rs->Eof())
        RandPerLitreLost = Currency::fromDouble(vb::Val(rs->Field("CurRperL")));
    txtLostRP->setText(vb::Format(Value(RandPerLitreLost), "###0.00"));
    txtLostR->setText(vb::Format(Value(vb::CCur(Value(txtLost->text())) * RandPerLitreLost), "###0.00"));
}

void frmTankStock::SaveStockTake() {
    Session& s = CurrentSession();
    txtReason->setText(vb::Trim(txtReason->text()));
    if (txtLitIn->text().isEmpty()) {
        MsgBox("Liters required", MsgButtons::Ok, MsgIcon::None, "Tank Stock");
        txtLitIn->setFocus();
        return;
    }
    if (IsDateClosed(dtpDate->dateTime(), s.ClosedDate)) {
        dtpDate->setFocus();
        return;
    }
    if (txtReason->text().isEmpty()) {
        MsgBox("Please supply a reason for the lost fuel.", MsgButtons::Ok, MsgIcon::None, "Tank Stock");
        txtReason->setFocus();
        return;
    }
    const bool saved = Untrapped([&] {
        auto rs = db().OpenRecordset(QString("select * from tankstock") +
                                     " where transid = " + QString::number(s.CurrentPurchaseID));
        if (rs->Eof())
            rs->AddNew();
        else
            rs->Edit();
        rs->SetField("TankID", Value(ItemDataAt(cmbTank, cmbTank->currentIndex())));
        rs->SetField("Datum", Value(vb::Format(Value(dtpDate->dateTime()), "yyyy/mm/dd")));
        rs->SetField("tank", Value(cmbTank->currentText()));
        rs->SetField("LitersInTank", Value(txtLitIn->text()));
        rs->SetField("LiterLesing", Value(txtLitLesing->text()));
        rs->SetField("Verlore",
                     Value(vb::Format(Value(vb::Val(txtLitIn->text()) - vb::Val(txtLitLesing->text())), "0.00")));
        rs->SetField("Rvalue", Value(txtLostR->text().isEmpty() ? QString("0") : txtLostR->text()));
        rs->SetField("Rede", Value(txtReason->text()));
        rs->Update();
        SetTankToMeasured();
    });
    if (!saved)
        return;
    const int filter = cboTank->findText(cmbTank->currentText());
    if (filter >= 0)
        cboTank->setCurrentIndex(filter);
    fraEdit->hide();
}

void frmTankStock::SetTankToMeasured() {
    db().Execute("UPDATE Tanks Set HuidigeVolume = '" + txtLitIn->text() +
                 "' WHERE TransID = " + QString::number(ItemDataAt(cmbTank, cmbTank->currentIndex())));
    ResetStockFields();
    FillStockList();
}

void frmTankStock::LoadStockTake(int key) {
    auto rs = db().OpenRecordset(
        QString("SELECT tankid,[Datum],[Tank],[LitersInTank],[LiterLesing],[Verlore],[Rvalue],[Rede]FROM [TankStock]") +
        " where transid = " + QString::number(key));
    if (rs->Eof())
        return;
    dtpDate->setDate(vb::CDate(rs->Field("Datum")).date());
    cmbTank->setCurrentIndex(FindItemData(cmbTank, rs->Field("tankid").toLong()));
    // The book figure of the row, not the measured one: the user types the measurement again.
    txtLitIn->setText(rs->Field("LiterLesing").toString());
    txtLitIn_LostFocus();
    txtReason->setText(rs->Field("Rede").toString());
}

QString frmTankStock::CursorText(int col) const {
    return fuelforms::CellText(*flg, flg->Row(), col);
}

void frmTankStock::Label4_Click() {
    CurrentSession().CurrentPurchaseID = 0;
    ResetStockFields();
    fraEdit->show();
    dtpDate->setFocus();
}

void frmTankStock::lblEdit_Click() {
    const int key = fuelforms::CellKey(*flg, flg->Row(), 0);
    CurrentSession().CurrentPurchaseID = key;
    if (MsgBox("Edit Entry '" + CursorText(1) + " - " + CursorText(2) + "...' ?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    ResetStockFields();
    if (!Untrapped([&] { LoadStockTake(key); }))
        return;
    fraEdit->show();
    txtLitIn->setFocus();
}

void frmTankStock::lblDelete_Click() {
    if (MsgBox("Delete Entry '" + CursorText(1) + " - " + CursorText(2) + "...' ?", MsgButtons::YesNo) !=
        MsgResult::Yes)
        return;
    Untrapped([&] {
        db().Execute("delete FROM [TankStock] where transid =  " + CursorText(0));
        FillStockList();
    });
}

void frmTankStock::lblcmd_Click(int index) {
    if (index == 0)
        SaveStockTake();
    else
        fraEdit->hide();
}

void frmTankStock::lblPrint_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    QString tanks = cboTank->currentText();
    tanks.remove("---");
    Hourglass hourglass;
    Untrapped([&] {
        fuelforms::OpenFuelWorkbook("Fuel Stock");
        REPxlFmt(xlSheet, "a1", "g1", Value("Fuel Stock For Selected Tank(s) '" + tanks + "'"), 2, 12, true, false,
                 false, true, false, "", 1, xl::Center, xl::Center, 2, 0, Value(20));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "g1", 0);
        auto rs = db().OpenRecordset(BuildStockSql(false));
        const QStringList headings = rs->FieldNames();
        for (int c = 0; c < headings.size(); ++c) {
            const QString cell = COLUMN_Letter(c, true) + "2";
            REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 10, true, false, false, false, true, "", 1,
                     c >= 2 && c <= 5 ? xl::Right : xl::Left, xl::Center, 2, 0, Value(30));
        }
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "g2", 1);
        const int rows = rs->Eof() ? 0 : xlSheet->Range("a3").CopyFromRecordset(*rs);
        // The store keeps the litres and rands as text, and they are pasted as such: aligned as figures.
        if (rows > 0)
            xlSheet->Range("c3", "f" + QString::number(rows + 2)).SetHorizontalAlignment(xl::Right);
        xlSheet->Columns("d:f").SetNumberFormat("### ### ##0.00");
        xlSheet->Columns("a:a").SetColumnWidth(10);
        xlSheet->Columns("b:b").SetColumnWidth(14);
        xlSheet->Columns("c:f").SetColumnWidth(11);
        xlSheet->Columns("g:g").SetColumnWidth(22);
        xlSheet->Columns("g:g").SetWrapText(true);
        // Seven columns with the note: landscape keeps them on one page.
        REPORT_PageSetup(xlSheet, "$1:$2", "", "Date &D Time &T", "Page #&P Of &N Pages", xl::Landscape, "");
        fuelforms::SaveFuelWorkbook("Fuel Stock");
    });
}

void frmTankStock::cmdPrint_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    Untrapped([&] {
        fuelforms::OpenFuelWorkbook("Fuel Stock");
        REPxlFmt(xlSheet, "a1", "b1", Value("Stock Take"), 2, 14, true, false, false, true, false, "", 1, xl::Center,
                 xl::Center, 2, 0, Value(22));
        REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "b1", 0);
        struct Line {
            const char* label;
            Value value;
        };
        auto number = [](const QLineEdit* field) { return Value(vb::Val(field->text())); };
        const Line lines[] = {{"Date", Value(vb::Format(Value(dtpDate->dateTime()), "yyyy/mm/dd"))},
                              {"Tank", Value(cmbTank->currentText())},
                              {"Liter Available", number(txtLitLesing)},
                              {"Liters  Measured", number(txtLitIn)},
                              {"Liters Lost", number(txtLost)},
                              {"Lost R Value", number(txtLostR)},
                              {"@ Rand Per Litre", number(txtLostRP)},
                              {"Reason Lost", Value(txtReason->text())}};
        int row = 3;
        for (const Line& line : lines) {
            const QString r = QString::number(row++);
            REPxlFmt(xlSheet, "a" + r, "a" + r, Value(line.label), 2, 10, true, false, false, false, false, "", 1,
                     xl::Left, xl::Center, 2, 0, Value(18));
            const bool isNumber = line.value.isNumeric();
            REPxlFmt(xlSheet, "b" + r, "b" + r, line.value, 2, 10, false, false, false, false, true,
                     isNumber ? "### ### ##0.00" : "", 1, isNumber ? xl::Right : xl::Left, xl::Center, 2, 0, Value(18));
        }
        xlSheet->Columns("a:a").SetColumnWidth(20);
        xlSheet->Columns("b:b").SetColumnWidth(36);
        fuelforms::SaveFuelWorkbook("Fuel Stock");
    });
}
