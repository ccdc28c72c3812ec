#include "frmEquipment.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "EquipmentLedger.h"
#include "EquipmentWorkbooks.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "Vb.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmEquipment::frmEquipment(QWidget* parent) : QWidget(parent) {
    setObjectName("frmEquipment");
    setWindowTitle("Equipment");
    buildScreen();
    resize(1000, 640);
    Session& s = CurrentSession();
    FillEquipmentCategories(list1, kAllEquipmentCategories);
    list1->setCurrentRow(0);
    s.SelectedCategoryId = 0;
    s.SelectedItemId = 0;
    // The tree's "Stock Book Out" leaves only the book-out.
    const bool bookOutOnly = s.EquipmentMode == kBookOut;
    fraCategory->setVisible(!bookOutOnly);
    fraItem->setVisible(!bookOutOnly);
    Label7->setText(s.ReportChoice);
    LoadEquipmentGrid();
}

void frmEquipment::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    auto* caption = new QLabel("Equipment Categories", this);
    QFont bold = caption->font();
    bold.setBold(true);
    caption->setFont(bold);
    left->addWidget(caption);
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    list1->setMinimumWidth(220);
    left->addWidget(list1, 1);

    const char* const captions[5] = {"&Add", "&Edit", "&Delete", "&Save", "&Cancel"};
    for (int i = 0; i < 5; ++i) {
        Label4[i] = new QPushButton(captions[i], this);
        Label4[i]->setObjectName(QString("Label4_%1").arg(i));
        connect(Label4[i], &QPushButton::clicked, this, [this, i] { Label4_Click(i); });
    }
    fraCategory = new QGroupBox("Category", this);
    fraCategory->setObjectName("fraCategory");
    auto* catButtons = new QHBoxLayout(fraCategory);
    catButtons->addWidget(Label4[0]);
    catButtons->addWidget(Label4[1]);
    catButtons->addWidget(Label4[2]);
    left->addWidget(fraCategory);

    Frame2 = new QGroupBox("Equipment category", this);
    Frame2->setObjectName("Frame2");
    auto* frame = new QGridLayout(Frame2);
    frame->addWidget(new QLabel("Name", Frame2), 0, 0);
    txtKAT = new QLineEdit(Frame2);
    txtKAT->setObjectName("txtKAT");
    txtKAT->setMaxLength(50);
    frame->addWidget(txtKAT, 0, 1);
    fraOpening = new QLabel("Items are added to a category with \"Add Product\".", Frame2);
    fraOpening->setObjectName("fraOpening");
    fraOpening->setWordWrap(true);
    frame->addWidget(fraOpening, 1, 0, 1, 2);
    auto* frameButtons = new QHBoxLayout;
    frameButtons->addStretch(1);
    frameButtons->addWidget(Label4[3]);
    frameButtons->addWidget(Label4[4]);
    frame->addLayout(frameButtons, 2, 0, 1, 2);
    Frame2->hide();
    left->addWidget(Frame2);
    outer->addLayout(left);

    auto* right = new QVBoxLayout;
    Label7 = new QLabel(this);
    Label7->setObjectName("Label7");
    QFont big = Label7->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    Label7->setFont(big);
    right->addWidget(Label7);
    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    right->addWidget(flg, 1);

    auto makeButton = [this](const char* text, const char* name) {
        auto* b = new QPushButton(text, this);
        b->setObjectName(name);
        return b;
    };
    cmdAddProduct = makeButton("&Add Product", "cmdAddProduct");
    cmdEditItem = makeButton("&Edit", "cmdEditItem");
    cmdDeleteItem = makeButton("&Delete", "cmdDeleteItem");
    cmdView = makeButton("&View", "cmdView");
    cmdPrintView = makeButton("&Print View", "cmdPrintView");
    cmdPrintTransactions = makeButton("&Print Transactions", "cmdPrintTransactions");
    cmdBookOut = makeButton("&Book Out", "cmdBookOut");
    dtpFrom = new QDateEdit(this);
    dtpFrom->setObjectName("dtpFrom");
    dtpTo = new QDateEdit(this);
    dtpTo->setObjectName("dtpTo");
    for (QDateEdit* picker : {dtpFrom, dtpTo}) {
        picker->setCalendarPopup(true);
        picker->setDisplayFormat("yyyy/MM/dd");
        picker->setDate(QDate::currentDate());
    }

    fraItem = new QGroupBox("Items", this);
    fraItem->setObjectName("fraItem");
    auto* items = new QGridLayout(fraItem);
    items->addWidget(cmdAddProduct, 0, 0);
    items->addWidget(cmdEditItem, 0, 1);
    items->addWidget(cmdDeleteItem, 0, 2);
    items->addWidget(cmdView, 0, 3);
    items->addWidget(cmdPrintView, 0, 4);
    items->addWidget(new QLabel("From", fraItem), 1, 0, Qt::AlignRight);
    items->addWidget(dtpFrom, 1, 1);
    items->addWidget(new QLabel("To", fraItem), 1, 2, Qt::AlignRight);
    items->addWidget(dtpTo, 1, 3);
    items->addWidget(cmdPrintTransactions, 1, 4);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(fraItem, 1);
    bottom->addWidget(cmdBookOut, 0, Qt::AlignBottom);
    right->addLayout(bottom);
    outer->addLayout(right, 1);

    connect(list1, &QListWidget::itemClicked, this, [this] { list1_Click(); });
    connect(list1, &QListWidget::currentRowChanged, this, [this] { list1_Click(); });
    connect(flg, &QTableWidget::currentCellChanged, this, [this](int row) {
        if (row >= 1) {
            CurrentSession().SelectedItemId = CurrentRowId();
            PrimeStatementDates();
        }
    });
    connect(cmdAddProduct, &QPushButton::clicked, this, [this] { cmdAddProduct_Click(); });
    connect(cmdEditItem, &QPushButton::clicked, this, [this] { cmdEditItem_Click(); });
    connect(cmdDeleteItem, &QPushButton::clicked, this, [this] { cmdDeleteItem_Click(); });
    connect(cmdView, &QPushButton::clicked, this, [this] { cmdView_Click(); });
    connect(cmdBookOut, &QPushButton::clicked, this, [this] { cmdBookOut_Click(); });
    connect(cmdPrintView, &QPushButton::clicked, this, [this] { cmdPrintView_Click(); });
    connect(cmdPrintTransactions, &QPushButton::clicked, this, [this] { cmdPrintTransactions_Click(); });
    connect(flg, &QTableWidget::cellDoubleClicked, this, [this](int row) {
        if (row >= 1 && fraItem->isVisible())
            cmdEditItem_Click();
    });
}

void frmEquipment::list1_Click() {
    CurrentSession().SelectedCategoryId = ItemDataAt(list1, list1->currentRow());
    LoadEquipmentGrid();
}

void frmEquipment::LoadEquipmentGrid() {
    Session& s = CurrentSession();
    flg->setVisible(false);
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(6);
    flg->SetFormatString("ID|Category|Item|Quantity Available|Price Per Item|Value");
    try {
        auto rs = db().OpenRecordset(EquipmentGridSql(s.SelectedCategoryId));
        for (; !rs->Eof(); rs->MoveNext()) {
            const Value quantity = rs->Field("Hoeveel");
            const Value unit = rs->Field("KItem");
            QStringList cells;
            cells << rs->Field("IID").toString() << rs->Field("category").toString() << rs->Field("item").toString()
                  << quantity.toString() << vb::Format(unit, "### ###.0000");
            double value = 0;
            if (!quantity.isNull() && !unit.isNull())
                value = quantity.toDouble() * unit.toDouble();
            cells << vb::Format(Value(value), "### ##0.00");
            flg->AddItem(cells.join('\t'));
        }
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
    const int widths[6] = {600, 1800, 2700, 1800, 1500, 1500};
    for (int c = 0; c < 6; ++c)
        flg->SetColWidth(c, widths[c]);
    for (int c = 3; c < 6; ++c)
        flg->SetColAlignment(c, flexAlignRightCenter);
    // Keep the row of the item in hand, so that "&View" shows it again.
    for (int r = 1; r < flg->Rows(); ++r) {
        if (s.SelectedItemId > 0 && flg->TextMatrix(r, 0) == QString::number(s.SelectedItemId)) {
            flg->setCurrentCell(r, 2);
            break;
        }
    }
    flg->setVisible(true);
}

QString frmEquipment::CurrentRowText(int col) const {
    if (flg->Row() < 1 || flg->Row() >= flg->Rows())
        return QString();
    return flg->TextMatrix(flg->Row(), col);
}

int frmEquipment::CurrentRowId() const {
    return CurrentRowText(0).toInt();
}

void frmEquipment::PrimeStatementDates() {
    const QString where = " where equipid = " + QString::number(CurrentSession().SelectedItemId);
    const QDate today = QDate::currentDate();
    dtpFrom->setDate(ScalarDate("SELECT min(trdate) From [EquipmentTrans]" + where, today));
    dtpTo->setDate(ScalarDate("SELECT max(trdate) From [EquipmentTrans]" + where, today));
}

void frmEquipment::Label4_Click(int index) {
    Session& s = CurrentSession();
    switch (index) {
    case 0:
        s.SelectedCategoryId = 0;
        txtKAT->setText("");
        Frame2->show();
        fraOpening->show();
        txtKAT->setFocus();
        break;
    case 1:
        if (s.SelectedCategoryId == 0)
            return;
        txtKAT->setText(list1->currentItem() ? list1->currentItem()->text() : QString());
        Frame2->show();
        fraOpening->show();
        txtKAT->setFocus();
        break;
    case 2:
        DeleteCategory();
        break;
    case 3:
        SaveCategory();
        break;
    case 4:
        Frame2->hide();
        txtKAT->setText("");
        break;
    default:
        break;
    }
}

void frmEquipment::DeleteCategory() {
    Session& s = CurrentSession();
    const int id = s.SelectedCategoryId;
    if (id == 0 || !list1->currentItem())
        return;
    if (MsgBox("Delete Category '" + list1->currentItem()->text() + "'?", MsgButtons::YesNo, MsgIcon::Question,
               "Vehicles") != MsgResult::Yes)
        return;
    const QString idText = QString::number(id);
    const int items = GetScalar(db(), "select count(*) from toerinv where tid = " + idText, "0", 0, "0").toInt();
    if (items > 0) {
        if (MsgBox("Category has items. Delete Anyway?", MsgButtons::YesNoDefaultNo, MsgIcon::Question) !=
            MsgResult::Yes)
            return;
        if (MsgBox("Sure?", MsgButtons::YesNoDefaultNo, MsgIcon::Question) != MsgResult::Yes)
            return;
    }
    try {
        Hourglass hourglass;
        db().Execute("delete from equipmenttrans " + QString(" where equipid in ") +
                     " (select iid from toerinv where tid= " + idText + ") ");
        db().Execute("delete from toerinv where tid = " + idText);
        db().Execute("delete from toerkat where tid = " + idText);
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    FillEquipmentCategories(list1, kAllEquipmentCategories);
    list1->setCurrentRow(0);
}

void frmEquipment::SaveCategory() {
    Session& s = CurrentSession();
    QString name = txtKAT->text();
    if (vb::Trim(name).isEmpty()) {
        MsgBox("Fill in equipment category", MsgButtons::Ok, MsgIcon::Exclamation, "Equipment");
        return;
    }
    const QString first = vb::Trim(name).left(1);
    if (RegexFind("[^a-z0-9]", first, false) != "Failed") {
        MsgBox("Reserved character '" + first + "' not allowed.", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    SqlEscape(name);
    try {
        Hourglass hourglass;
        auto rs = SeekTable(db(), "toerkat", "PrimaryKey", {Value(s.SelectedCategoryId)});
        if (rs->NoMatch())
            rs->AddNew();
        else
            rs->Edit();
        rs->SetField("Desc", Value(name));
        rs->Update();
        s.SelectedCategoryId = static_cast<int>(rs->Field("TID").toLong());
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    const int kept = s.SelectedCategoryId;
    FillEquipmentCategories(list1, kAllEquipmentCategories);
    list1->setCurrentRow(FindItemData(list1, kept));
    Frame2->hide();
    txtKAT->setText("");
}

void frmEquipment::cmdAddProduct_Click() {
    Session& s = CurrentSession();
    if (s.SelectedCategoryId == 0) {
        MsgBox("You have to select a category first!", MsgButtons::Ok, MsgIcon::Exclamation, "Category");
        return;
    }
    // A new item: without this the save would seek the item saved last and write over it.
    s.SelectedItemId = 0;
    s.ReportChoice = "Add Equipment";
    s.EquipmentMode = kOpeningBalance;
    ShowScreen("frmEquipmentAdj", true);
    LoadEquipmentGrid();
}

void frmEquipment::cmdEditItem_Click() {
    Session& s = CurrentSession();
    if (CurrentRowId() <= 0) {
        MsgBox("Select a Product");
        return;
    }
    s.SelectedItemId = CurrentRowId();
    s.ReportChoice = "Edit Equipment";
    s.EquipmentMode = kEditItem;
    ShowScreen("frmEquipmentAdj", true);
    LoadEquipmentGrid();
}

void frmEquipment::cmdDeleteItem_Click() {
    const int id = CurrentRowId();
    if (id <= 0)
        return;
    if (MsgBox("Delete '" + CurrentRowText(2) + "' item?", MsgButtons::YesNo, MsgIcon::Question,
               "Equipment Inventory") != MsgResult::Yes)
        return;
    const QString idText = QString::number(id);
    const int movements = GetScalar(db(),
                                    "select count(*) as howmany from equipmenttrans" + QString("  where equipid = ") +
                                        idText + "  and actionid <> 0",
                                    "0", 0, "0")
                              .toInt();
    if (movements > 0) {
        if (MsgBox("Transactions exist. Delete Anyway?", MsgButtons::YesNoDefaultNo, MsgIcon::Question) !=
            MsgResult::Yes)
            return;
        if (MsgBox("Sure?", MsgButtons::YesNoDefaultNo, MsgIcon::Question) != MsgResult::Yes)
            return;
    }
    try {
        db().Execute("delete from toerinv where iid = " + idText);
        db().Execute("delete from equipmenttrans where equipid = " + idText);
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    CurrentSession().SelectedItemId = 0;
    LoadEquipmentGrid();
}

void frmEquipment::cmdView_Click() {
    Session& s = CurrentSession();
    if (s.SelectedCategoryId == 0)
        return;
    if (CurrentRowId() > 0)
        s.SelectedItemId = CurrentRowId();
    LoadEquipmentGrid();
}

void frmEquipment::cmdBookOut_Click() {
    Session& s = CurrentSession();
    const QString available = CurrentRowText(3);
    if (vb::Val(available) == 0) {
        MsgBox("Insufficient stock to book out", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    s.SelectedItemId = CurrentRowId();
    s.ReportChoice = BookOutContext(CurrentRowText(2), available);
    s.EquipmentMode = kBookOut;
    ShowScreen("frmEquipmentAdj", true);
    LoadEquipmentGrid();
}

void frmEquipment::cmdPrintView_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo, MsgIcon::Question) != MsgResult::Yes)
        return;
    const QString category = list1->currentItem() ? list1->currentItem()->text() : QString();
    WriteEquipmentListWorkbook(CurrentSession().SelectedCategoryId, category);
}

void frmEquipment::cmdPrintTransactions_Click() {
    const int id = CurrentRowId();
    if (id <= 0) {
        MsgBox("Select a Product");
        return;
    }
    WriteItemStatementWorkbook(id, CurrentRowText(2), dtpFrom->date(), dtpTo->date());
}
