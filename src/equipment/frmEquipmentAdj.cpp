#include "frmEquipmentAdj.h"

#include "Database.h"
#include "EquipmentLedger.h"
#include "EquipmentWorkbooks.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmEquipmentAdj::frmEquipmentAdj(QWidget* parent) : QDialog(parent) {
    setObjectName("frmEquipmentAdj");
    const Session& s = CurrentSession();
    m_mode = s.EquipmentMode;
    setWindowTitle(s.ReportChoice);
    buildScreen();
    if (m_mode == kEditItem)
        LoadItem();
    if (m_mode == kBookIn || m_mode == kBookOut)
        FillBookOutGrid();
    else
        flg->hide();
    resize(m_mode == kBookIn || m_mode == kBookOut ? QSize(820, 520) : QSize(460, 240));
}

void frmEquipmentAdj::buildScreen() {
    const bool movement = m_mode == kBookIn || m_mode == kBookOut;
    auto* outer = new QVBoxLayout(this);
    lblItem = new QLabel(CurrentSession().ReportChoice, this);
    lblItem->setObjectName("lblItem");
    QFont bold = lblItem->font();
    bold.setBold(true);
    lblItem->setFont(bold);
    lblItem->setWordWrap(true);
    outer->addWidget(lblItem);

    auto* fields = new QGridLayout;
    lblDesc = new QLabel(movement ? "Person / Remarks" : "Item", this);
    txtDesc = new QLineEdit(this);
    txtDesc->setObjectName("txtDesc");
    txtDesc->setMaxLength(50);
    txtQtyBuy = new QLineEdit(this);
    txtQtyBuy->setObjectName("txtQtyBuy");
    txtCostBuy = new QLineEdit("0", this);
    txtCostBuy->setObjectName("txtCostBuy");
    dtpTrans = new QDateEdit(QDate::currentDate(), this);
    dtpTrans->setObjectName("dtpTrans");
    dtpTrans->setCalendarPopup(true);
    dtpTrans->setDisplayFormat("yyyy/MM/dd");
    auto* lblQty = new QLabel(m_mode == kBookIn ? "Quantity Returned" : "Quantity", this);
    auto* lblCost = new QLabel(movement ? "Amount" : "Total Cost", this);
    auto* lblDate = new QLabel("Date", this);
    fields->addWidget(lblDesc, 0, 0);
    fields->addWidget(txtDesc, 0, 1);
    fields->addWidget(lblQty, 1, 0);
    fields->addWidget(txtQtyBuy, 1, 1);
    fields->addWidget(lblCost, 2, 0);
    fields->addWidget(txtCostBuy, 2, 1);
    fields->addWidget(lblDate, 3, 0);
    fields->addWidget(dtpTrans, 3, 1);
    outer->addLayout(fields);
    const std::pair<QLineEdit*, QLabel*> captions[3] = {{txtDesc, lblDesc}, {txtQtyBuy, lblQty}, {txtCostBuy, lblCost}};
    for (const auto& [field, caption] : captions) {
        AttachSelectOnFocus(field);
        AttachFocusColour(field, caption);
    }
    AttachDigitsFilter(txtQtyBuy, true);
    AttachDigitsFilter(txtCostBuy, true);
    for (QWidget* field : {static_cast<QWidget*>(txtDesc), static_cast<QWidget*>(txtQtyBuy),
                           static_cast<QWidget*>(txtCostBuy), static_cast<QWidget*>(dtpTrans)})
        AttachEnterAsTab(field);

    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    outer->addWidget(flg, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdSave = new QPushButton(" &Save", this);
    cmdSave->setObjectName("cmdSave");
    cmdCancel = new QPushButton(" &Cancel", this);
    cmdCancel->setObjectName("cmdCancel");
    buttons->addWidget(cmdSave);
    buttons->addWidget(cmdCancel);
    outer->addLayout(buttons);
    connect(cmdSave, &QPushButton::clicked, this, [this] { cmdSave_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    cmdSave->setAutoDefault(false);
    cmdCancel->setAutoDefault(false);
}

void frmEquipmentAdj::LoadItem() {
    try {
        auto rs = SeekTable(db(), "toerinv", "PrimaryKey", {Value(CurrentSession().SelectedItemId)});
        if (rs->NoMatch())
            return;
        const Value quantity = rs->Field("Hoeveel");
        const Value unit = rs->Field("kitem");
        txtDesc->setText(rs->Field("Desc").toString());
        txtQtyBuy->setText(quantity.toString());
        const double cost = (quantity.isNull() || unit.isNull()) ? 0.0 : quantity.toDouble() * unit.toDouble();
        txtCostBuy->setText(vb::Format(Value(cost), "###0.00"));
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
}

void frmEquipmentAdj::FillBookOutGrid() {
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(5);
    flg->SetFormatString("Category|ID|Date|Equipment|Item");
    const QDate today = QDate::currentDate();
    const QDate from = ScalarDate(BookOutListSql(true, false, 0, today, today), today);
    const QDate to = ScalarDate(BookOutListSql(true, true, 0, today, today), today);
    try {
        auto rs = db().OpenRecordset(BookOutListSql(false, false, 0, from, to));
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            cells << rs->Field("Category").toString() << rs->Field("id").toString() << rs->Field("Date").toString()
                  << rs->Field("Equip").toString() << rs->Field("item").toString();
            flg->AddItem(cells.join('\t'));
        }
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
    const int widths[5] = {2000, 800, 2600, 2600, 3400};
    for (int c = 0; c < 5; ++c)
        flg->SetColWidth(c, widths[c]);
}

bool frmEquipmentAdj::ValidateEquipment(Currency quantity) {
    if (vb::Trim(txtDesc->text()).isEmpty()) {
        MsgBox("Description required", MsgButtons::Ok, MsgIcon::Exclamation, "Equipment Inventory");
        return false;
    }
    if (quantity == Currency()) {
        MsgBox("0 value is invalid.", MsgButtons::Ok, MsgIcon::Exclamation, "Equipment Inventory");
        return false;
    }
    return true;
}

void frmEquipmentAdj::SaveEquipmentTrans(Currency quantity) {
    if (!ValidateEquipment(quantity))
        return;
    Session& s = CurrentSession();
    EquipmentEntry entry;
    entry.mode = m_mode;
    entry.categoryId = s.SelectedCategoryId;
    entry.itemId = s.SelectedItemId;
    entry.description = txtDesc->text();
    entry.quantity = quantity;
    entry.cost = Currency::fromDouble(vb::Val(txtCostBuy->text()));
    entry.date = dtpTrans->date();
    if (m_mode == kBookIn) {
        entry.bookOutId = ParseContextId(s.ReportChoice);
        entry.bookOutStockTakeId = BookOutStockTakeId();
    }
    Hourglass hourglass;
    WriteEquipmentMovement(entry);
    s.SelectedItemId = entry.itemId;
    if (m_mode == kBookIn || m_mode == kBookOut)
        FillBookOutGrid();
}

void frmEquipmentAdj::cmdSave_Click() {
    Session& s = CurrentSession();
    const QString question = s.SelectedItemId == 0 ? "Add Item?" : "Update?";
    if (MsgBox(question, MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
        return;
    Currency quantity = Currency::fromDouble(vb::Val(txtQtyBuy->text()));
    try {
        if (m_mode == kBookIn) {
            const Currency open = ParseContextQuantity(s.ReportChoice);
            if (quantity > open) {
                MsgBox("Amount exceeds Bookout of " + open.toString(), MsgButtons::Ok, MsgIcon::Exclamation);
                txtQtyBuy->setText(open.toString());
                txtQtyBuy->setFocus();
                return;
            }
            const QString when = GetScalar(db(),
                                           "select trdate from equipmenttrans" + QString(" where id = ") +
                                               QString::number(ParseContextId(s.ReportChoice)),
                                           "", 0, "");
            if (!when.isEmpty() && vb::IsDate(when) && vb::CDate(Value(when)).date() > dtpTrans->date()) {
                MsgBox("ERROR Book In Date " + when + "' After Book Out Date", MsgButtons::Ok, MsgIcon::Exclamation);
                return;
            }
        }
        if (m_mode == kBookOut) {
            const Currency available = ParseContextQuantity(s.ReportChoice);
            if (available - quantity < Currency()) {
                MsgBox("Negative Stock Result", MsgButtons::Ok, MsgIcon::Exclamation);
                txtQtyBuy->setText(available.toString());
                txtQtyBuy->setFocus();
                return;
            }
            quantity = -quantity;
        }
        SaveEquipmentTrans(quantity);
    } catch (const NumberedError& e) {
        if (m_mode == kBookIn) {
            MsgBox("ERROR in Book In " + e.description());
        } else {
            EndRunWithError(e.number(), e.description());
            reject();
            return;
        }
    }
    if (m_mode == kBookIn || m_mode == kBookOut) {
        if (MsgBox("Print Form?", MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes) {
            const Currency shown = quantity < Currency() ? -quantity : quantity;
            WriteMovementForm(m_mode, s.ReportChoice, txtDesc->text(), shown, dtpTrans->date());
        }
    }
    cmdCancel_Click();
}

void frmEquipmentAdj::cmdCancel_Click() {
    accept();
}
