#include "frmVoerDiens_Extra.h"

#include "Database.h"
#include "FlexGrid.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

bool ServiceModeNow() {
    return CurrentSession().ServiceMode != 0;
}

QString NoBlanks(QString text) {
    return text.remove(' ');
}

} // namespace

int GetCostAction() {
    return CurrentSession().CostAction;
}

void SetCostAction(int action) {
    CurrentSession().CostAction = action;
}

frmVoerDiens_Extra::frmVoerDiens_Extra(QWidget* parent) : QDialog(parent) {
    setObjectName("frmVoerDiens_Extra");
    setWindowTitle("Orvel - Service Cost Details");
    buildScreen();
    resize(760, 520);

    // On load.
    ShowCostTotal();
    FillCostTotals(*flexCosts, ServiceModeNow(), CurrentSession().ServiceLinkID);
    LaaiCostTypes();
    fraForm->hide();
    cboCostType_Click();
}

void frmVoerDiens_Extra::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;

    auto* typeRow = new QHBoxLayout;
    cboCostType = new QComboBox(this);
    cboCostType->setObjectName("cboCostType");
    cboCostType->setMinimumWidth(220);
    auto* typeLabel = new QLabel("Cost Type", this);
    typeLabel->setBuddy(cboCostType);
    typeRow->addWidget(typeLabel);
    typeRow->addWidget(cboCostType, 1);
    left->addLayout(typeRow);

    fraGrid = new QGroupBox(this);
    fraGrid->setObjectName("fraGrid");
    auto* gridLayout = new QVBoxLayout(fraGrid);
    flx2 = new FlexGrid(fraGrid);
    flx2->setObjectName("flx2");
    gridLayout->addWidget(flx2, 1);
    auto* gridButtons = new QHBoxLayout;
    const char* const cmdCaptions[4] = {" Add", " Edit", " &Delete", " &Close"};
    for (int i = 0; i < 4; ++i) {
        cmd[i] = new QPushButton(cmdCaptions[i], fraGrid);
        cmd[i]->setObjectName(QString("cmd_%1").arg(i));
        cmd[i]->setAutoDefault(false);
        connect(cmd[i], &QPushButton::clicked, this, [this, i] { cmd_Click(i); });
        gridButtons->addWidget(cmd[i]);
    }
    gridLayout->addLayout(gridButtons);
    left->addWidget(fraGrid, 1);

    fraForm = new QGroupBox(this);
    fraForm->setObjectName("fraForm");
    auto* form = new QGridLayout(fraForm);
    lblReference1 = new QLabel("Description", fraForm);
    txtReference1 = new QLineEdit(fraForm);
    txtReference1->setObjectName("txtReference1");
    txtReference1->setMaxLength(50);
    lblReference2 = new QLabel("Description", fraForm);
    txtReference2 = new QLineEdit(fraForm);
    txtReference2->setObjectName("txtReference2");
    txtReference2->setMaxLength(50);
    lblValue1 = new QLabel("Cost", fraForm);
    txtValue1 = new QLineEdit(fraForm);
    txtValue1->setObjectName("txtValue1");
    lblvalue2 = new QLabel("Cost", fraForm);
    txtValue2 = new QLineEdit(fraForm);
    txtValue2->setObjectName("txtValue2");
    chkTotalCost = new QCheckBox("Total Cost", fraForm);
    chkTotalCost->setObjectName("chkTotalCost");
    txtperlitre = new QLineEdit("0.00", fraForm);
    txtperlitre->setObjectName("txtperlitre");
    form->addWidget(lblReference1, 0, 0);
    form->addWidget(txtReference1, 0, 1, 1, 2);
    form->addWidget(lblReference2, 1, 0);
    form->addWidget(txtReference2, 1, 1, 1, 2);
    form->addWidget(lblValue1, 2, 0);
    form->addWidget(txtValue1, 2, 1, 1, 2);
    form->addWidget(lblvalue2, 3, 0);
    form->addWidget(txtValue2, 3, 1);
    form->addWidget(txtperlitre, 3, 1);
    form->addWidget(chkTotalCost, 3, 2);
    const char* const captions[4] = {"", " &Close Form", "", " &Save"};
    for (int i : {1, 3}) {
        lblcmd[i] = new QPushButton(captions[i], fraForm);
        lblcmd[i]->setObjectName(QString("lblcmd_%1").arg(i));
        lblcmd[i]->setAutoDefault(false);
        connect(lblcmd[i], &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
    }
    auto* formButtons = new QHBoxLayout;
    formButtons->addStretch(1);
    formButtons->addWidget(lblcmd[3]);
    formButtons->addWidget(lblcmd[1]);
    form->addLayout(formButtons, 4, 0, 1, 3);
    form->setRowStretch(5, 1);
    left->addWidget(fraForm, 1);
    outer->addLayout(left, 3);

    auto* right = new QVBoxLayout;
    flexCosts = new FlexGrid(this);
    flexCosts->setObjectName("flexCosts");
    right->addWidget(flexCosts, 1);
    auto* totalRow = new QHBoxLayout;
    lbl[0] = new QLabel("Total Additional Cost R", this);
    lbl[1] = new QLabel("0.00", this);
    lbl[1]->setObjectName("lbl_1");
    QFont bold = lbl[1]->font();
    bold.setBold(true);
    lbl[1]->setFont(bold);
    lbl[1]->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    totalRow->addWidget(lbl[0]);
    totalRow->addWidget(lbl[1], 1);
    right->addLayout(totalRow);
    outer->addLayout(right, 2);

    connect(cboCostType, &QComboBox::activated, this, [this] { cboCostType_Click(); });
    connect(chkTotalCost, &QCheckBox::clicked, this, [this] { chkTotalCost_Click(); });
    connect(txtValue1, &QLineEdit::textChanged, this, [this] {
        if (m_Tag == "perl" && txtperlitre->text() != "0.00" && !txtperlitre->text().isEmpty())
            CalcLabourCost();
    });
    // The rate typed after the hours works the cost out as well.
    connect(txtperlitre, &QLineEdit::textEdited, this, [this] {
        if (m_Tag == "perl" && !txtValue1->text().isEmpty())
            CalcLabourCost();
    });
    connect(flexCosts, &QTableWidget::cellClicked, this, [this](int row) {
        if (row < 1 || !cboCostType->isEnabled())
            return;
        cboCostType->setCurrentIndex(cboCostType->findText(flexCosts->TextMatrix(row, 0)));
        cboCostType_Click();
    });
    for (QLineEdit* field : {txtReference1, txtReference2, txtValue1, txtValue2, txtperlitre}) {
        AttachEnterAsTab(field);
        AttachSelectOnFocus(field);
    }
}

void frmVoerDiens_Extra::reject() {
    fraForm->hide();
    QDialog::reject();
}

QString frmVoerDiens_Extra::CostType() const {
    return cboCostType->currentText();
}

void frmVoerDiens_Extra::ShowCostTotal() {
    const Session& s = CurrentSession();
    lbl[1]->setText(
        vb::Format(Value(GetScalar(db(), CostTotalSql(ServiceModeNow(), s.ServiceLinkID), "0")), "### ### ##0.00"));
    FillCostTotals(*flexCosts, ServiceModeNow(), s.ServiceLinkID);
}

void frmVoerDiens_Extra::LaaiCostTypes() {
    cboCostType->clear();
    cboCostType->addItem("--- Select Type ---");
    try {
        auto rs = db().OpenRecordset("select * from vdiens_costtype");
        for (; !rs->Eof(); rs->MoveNext())
            cboCostType->addItem(rs->Field("Description").toString());
    } catch (const NumberedError&) {
    }
    cboCostType->setCurrentIndex(0);
}

void frmVoerDiens_Extra::cboCostType_Click() {
    ClearCostFields();
    flx2->Clear();
    flx2->SetRows(1);
    FormClosed();
    if (cboCostType->currentIndex() > 0)
        FillCostGrid();
}

void frmVoerDiens_Extra::FormClosed() {
    fraForm->hide();
    fraGrid->show();
    cboCostType->setEnabled(true);
    const bool typeChosen = cboCostType->currentIndex() > 0;
    for (int i = 0; i < 3; ++i)
        cmd[i]->setEnabled(typeChosen);
    cmd[3]->setEnabled(true);
}

void frmVoerDiens_Extra::ClearCostFields() {
    for (QLineEdit* field : {txtReference1, txtReference2, txtValue1, txtValue2})
        field->setText("");
    txtperlitre->setText("0.00");
    if (m_Tag != "labour")
        chkTotalCost_Click();
    chkTotalCost->setChecked(false);
}

void frmVoerDiens_Extra::FillCostGrid() {
    const Session& s = CurrentSession();
    const QString type = CostType();
    const QString sql = "SELECT  [transid],[vdiensid],[costType],[reference1],[reference2],[value1],[value2]" +
                        QString(" from vdiens_extra") + " where costType = '" + type + "'" +
                        (ServiceModeNow() ? " and vdiensid = " : " and historyid = ") +
                        QString::number(s.ServiceLinkID);
    QString header = "transid|Cost Type";
    if (type == "Labour")
        header += "|Hours|Cost";
    else if (type == "Parts" || type == "Consumables")
        header += "|Description|Cost";
    else if (type == "Out Work")
        header += "|Supplier|Description|Cost";
    flx2->Clear();
    flx2->SetRows(1);
    flx2->SetCols(header.count('|') + 1);
    flx2->SetFormatString(header);
    try {
        auto rs = db().OpenRecordset(sql);
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            cells << rs->Field("transid").toString() << rs->Field("costtype").toString();
            if (type == "Labour")
                cells << vb::Format(rs->Field("Value1"), "### ### ##0.00")
                      << vb::Format(rs->Field("Value2"), "### ### ##0.00");
            else if (type == "Parts" || type == "Consumables")
                cells << vb::ProperCase(rs->Field("reference1").toString())
                      << vb::Format(rs->Field("Value1"), "### ### ##0.00");
            else if (type == "Out Work")
                cells << vb::ProperCase(rs->Field("reference1").toString())
                      << vb::ProperCase(rs->Field("reference2").toString())
                      << vb::Format(rs->Field("Value1"), "### ### ##0.00");
            flx2->AddItem(cells.join('\t'));
        }
    } catch (const NumberedError&) {
        MsgBox("Error in fillgrid");
    }
    flx2->SetColWidth(0, 0);
    for (int c = 2; c < flx2->Cols(); ++c)
        flx2->SetColWidth(c, c == flx2->Cols() - 1 ? 1400 : 2400);
    flx2->SetColAlignment(flx2->Cols() - 1, flexAlignRightCenter);
    if (type == "Labour")
        flx2->SetColAlignment(2, flexAlignRightCenter);
    if (flx2->Rows() > 1)
        flx2->SetRow(1);
}

void frmVoerDiens_Extra::cmd_Click(int index) {
    if (index == 0 && CostType() == "Labour" && flx2->Rows() == 2) {
        MsgBox("Only 1 Entry allowed for Labour Cost", MsgButtons::Ok, MsgIcon::Information);
        cboCostType->setEnabled(true);
        return;
    }
    if ((index == 1 || index == 2) && flx2->Rows() <= 1)
        return; // no line to edit or delete
    ClearCostFields();
    SetCostForm();
    fraForm->show();
    switch (index) {
    case 0:
        SetCostAction(5);
        (txtReference1->isHidden() ? txtValue1 : txtReference1)->setFocus();
        break;
    case 1:
        SetCostAction(6);
        LoadCostFields();
        (txtReference1->isHidden() ? txtValue1 : txtReference1)->setFocus();
        break;
    case 2:
        SetCostAction(7);
        if (MsgBox("Delete Entry?", MsgButtons::YesNoDefaultNo) == MsgResult::Yes)
            SaveCostLine();
        else
            FormClosed();
        cboCostType->setEnabled(true);
        break;
    case 3:
        fraForm->hide();
        done(QDialog::Accepted);
        break;
    default:
        break;
    }
}

void frmVoerDiens_Extra::lblcmd_Click(int index) {
    if (index == 1) {
        fraForm->hide();
        ClearCostFields();
        FormClosed();
    } else if (index == 3) {
        SaveCostLine();
    }
}

void frmVoerDiens_Extra::SetCostForm() {
    for (QWidget* w :
         std::initializer_list<QWidget*>{lblReference1, txtReference1, lblReference2, txtReference2, lblValue1,
                                         txtValue1, lblvalue2, txtValue2, chkTotalCost, txtperlitre})
        w->hide();
    lblReference1->setText("Description");
    lblReference2->setText("Description");
    lblValue1->setText("Cost");
    lblvalue2->setText("Cost");
    const QString type = CostType();
    if (type == "Labour") {
        lblValue1->setText("Hours");
        lblvalue2->setText("Cost");
        for (QWidget* w : std::initializer_list<QWidget*>{lblValue1, txtValue1, lblvalue2, txtValue2, chkTotalCost})
            w->show();
    } else if (type == "Parts" || type == "Consumables") {
        lblReference1->setText("Description");
        lblValue1->setText("Cost");
        for (QWidget* w : std::initializer_list<QWidget*>{lblReference1, txtReference1, lblValue1, txtValue1})
            w->show();
    } else if (type == "Out Work") {
        lblReference1->setText("Supplier");
        lblReference2->setText("Description");
        lblValue1->setText("Cost");
        for (QWidget* w : std::initializer_list<QWidget*>{lblReference1, txtReference1, lblReference2, txtReference2,
                                                          lblValue1, txtValue1})
            w->show();
    }
    fraForm->setTitle(type);
    fraGrid->hide();
    fraForm->show();
    cboCostType->setEnabled(false);
    for (QPushButton* button : cmd)
        button->setEnabled(false);
}

void frmVoerDiens_Extra::LoadCostFields() {
    const int row = flx2->RowSel();
    const QString type = CostType();
    if (type == "Labour") {
        txtValue1->setText(NoBlanks(flx2->TextMatrix(row, 2)));
        txtValue2->setText(NoBlanks(flx2->TextMatrix(row, 3)));
    } else if (type == "Parts" || type == "Consumables") {
        txtReference1->setText(vb::ProperCase(flx2->TextMatrix(row, 2)));
        txtValue1->setText(NoBlanks(flx2->TextMatrix(row, 3)));
    } else if (type == "Out Work") {
        txtReference1->setText(vb::ProperCase(flx2->TextMatrix(row, 2)));
        txtReference2->setText(vb::ProperCase(flx2->TextMatrix(row, 3)));
        txtValue1->setText(NoBlanks(flx2->TextMatrix(row, 4)));
    }
}

void frmVoerDiens_Extra::chkTotalCost_Click() {
    if (m_Tag.startsWith("labour")) {
        m_Tag = "perl";
        txtValue2->hide();
        txtperlitre->show();
        txtperlitre->setFocus();
        chkTotalCost->setText("Rand/Hr.");
        lblvalue2->setText("Rate");
    } else {
        m_Tag = "labour";
        txtValue2->setVisible(CostType() == "Labour");
        txtValue2->setFocus();
        txtperlitre->hide();
        chkTotalCost->setText("Total Cost");
        lblvalue2->setText("Cost");
    }
}

void frmVoerDiens_Extra::CalcLabourCost() {
    txtValue2->setText(vb::Format(Value(vb::Val(txtValue1->text()) * vb::Val(txtperlitre->text())), "### ### ##0.00"));
}

bool frmVoerDiens_Extra::CheckCostFields() {
    const QString type = CostType();
    if (!vb::IsNumeric(Value(txtValue1->text()))) {
        MsgBox("Invalid Value");
        txtValue1->setFocus();
        return false;
    }
    if (type != "Labour" && txtReference1->text().isEmpty()) {
        MsgBox("Invalid Empty");
        txtReference1->setFocus();
        return false;
    }
    if (type == "Parts" || type == "Consumables")
        return true;
    if (type == "Out Work" && txtReference2->text().isEmpty()) {
        MsgBox("Invalid Empty");
        txtReference2->setFocus();
        return false;
    }
    if (type == "Labour" && !vb::IsNumeric(Value(txtValue2->text()))) {
        MsgBox("Invalid value");
        if (txtValue2->isHidden())
            chkTotalCost_Click();
        txtValue2->setFocus();
        return false;
    }
    return true;
}

void frmVoerDiens_Extra::SaveCostLine() {
    Session& s = CurrentSession();
    lbl[1]->setText("0.00");
    txtReference1->setText(vb::Trim(txtReference1->text()));
    txtReference2->setText(vb::Trim(txtReference2->text()));
    const int action = GetCostAction();
    if (action != 7 && !CheckCostFields())
        return;
    try {
        if (action == 6 || action == 7)
            s.SelectedID = static_cast<int>(vb::Val(flx2->TextMatrix(flx2->RowSel(), 0)));
        if (action == 7) {
            db().Execute("delete from vdiens_extra " + QString(" where transid = ") + QString::number(s.SelectedID));
        } else {
            QString sql = "SELECT  [transid],[vdiensid], historyid" +
                          QString(" ,[costType],[reference1],[reference2],[value1],[value2]") + " from vdiens_extra";
            if (action == 6)
                sql += " where transid = " + QString::number(s.SelectedID);
            auto rs = db().OpenRecordset(sql);
            if (action == 5)
                rs->AddNew();
            else
                rs->Edit();
            rs->SetField(ServiceModeNow() ? "vDiensID" : "historyid", Value(s.ServiceLinkID));
            rs->SetField("costtype", Value(CostType()));
            rs->SetField("reference1", Value(txtReference1->text()));
            rs->SetField("reference2", Value(txtReference2->text()));
            rs->SetField("Value1", Value(vb::Val(txtValue1->text())));
            rs->SetField("Value2", Value(vb::Val(txtValue2->text())));
            rs->Update();
            rs->Close();
        }
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    if (action != 7)
        FormClosed();
    ShowCostTotal();
    cboCostType_Click();
}
