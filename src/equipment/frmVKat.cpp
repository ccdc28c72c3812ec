#include "frmVKat.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "DateEntry.h"
#include "FlexGrid.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "Session.h"
#include "Vb.h"

#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

frmVoor::frmVoor(int categoryId, int itemId, QWidget* parent)
    : QDialog(parent), m_categoryId(categoryId), m_itemId(itemId) {
    setObjectName("frmVoor");
    setWindowTitle("Stock Item");
    auto* grid = new QGridLayout(this);
    auto field = [this](const char* name) {
        auto* f = new QLineEdit(this);
        f->setObjectName(name);
        AttachSelectOnFocus(f);
        AttachEnterAsTab(f);
        return f;
    };
    txtDesc = field("txtDesc");
    txtHoev = field("txtHoev");
    AttachNumericFilter(txtHoev, false);
    cmbLOK = new QComboBox(this);
    cmbLOK->setObjectName("cmbLOK");
    txtYY = field("txtYY");
    txtMM = field("txtMM");
    txtDD = field("txtDD");
    txtYY->setMaxLength(4);
    txtMM->setMaxLength(2);
    txtDD->setMaxLength(2);
    // The name and the reference columns hold 50 characters each: a longer text cannot be typed, rather than
    // failing at the save and ending the run.
    txtDesc->setMaxLength(50);
    txtKoop = field("txtKoop");
    txtVerseker = field("txtVerseker");
    txtVerwys = field("txtVerwys");
    txtVerwys->setMaxLength(50);
    AttachNumericFilter(txtKoop, true);
    AttachNumericFilter(txtVerseker, true);
    dateEntry = new DateEntry(txtDD, txtMM, txtYY, this);
    Command1 = new QPushButton(">", this);
    Command1->setObjectName("Command1");
    Command1->setToolTip("Move the Date forwards");
    Command2 = new QPushButton("<", this);
    Command2->setObjectName("Command2");
    Command2->setToolTip("Move the Date backwards");
    lblcmd = new QPushButton("&Save", this);
    lblcmd->setObjectName("lblcmd");

    grid->addWidget(new QLabel("Description", this), 0, 0);
    grid->addWidget(txtDesc, 0, 1, 1, 5);
    grid->addWidget(new QLabel("Quantity", this), 1, 0);
    grid->addWidget(txtHoev, 1, 1, 1, 2);
    grid->addWidget(new QLabel("Room", this), 2, 0);
    grid->addWidget(cmbLOK, 2, 1, 1, 5);
    grid->addWidget(new QLabel("Date (yyyy/mm/dd)", this), 3, 0);
    grid->addWidget(Command2, 3, 1);
    grid->addWidget(txtYY, 3, 2);
    grid->addWidget(txtMM, 3, 3);
    grid->addWidget(txtDD, 3, 4);
    grid->addWidget(Command1, 3, 5);
    grid->addWidget(new QLabel("Purchase Value", this), 4, 0);
    grid->addWidget(txtKoop, 4, 1, 1, 5);
    grid->addWidget(new QLabel("Insured Value", this), 5, 0);
    grid->addWidget(txtVerseker, 5, 1, 1, 5);
    grid->addWidget(new QLabel("Reference", this), 6, 0);
    grid->addWidget(txtVerwys, 6, 1, 1, 5);
    grid->addWidget(lblcmd, 7, 5);
    connect(Command1, &QPushButton::clicked, this, [this] { Command1_Click(); });
    connect(Command2, &QPushButton::clicked, this, [this] { Command2_Click(); });
    connect(lblcmd, &QPushButton::clicked, this, [this] { lblcmd_Click(); });

    try {
        auto rs = db().OpenRecordset("select * from kamer");
        for (; !rs->Eof(); rs->MoveNext())
            cmbLOK->addItem(rs->Field("Desc").toString(), QVariant::fromValue(rs->Field("KID").toLong()));
    } catch (const DbError&) {
    }
    cmbLOK->setCurrentIndex(-1);
    dateEntry->setDate(QDate::currentDate());
}

void frmVoor::LoadDetail() {
    try {
        auto rs = db().OpenRecordset(
            "Select voorinv.desc as Temp, datum, hoeveel, kwaarde, vwaarde, verwys, kamer.desc "
            "as KTemp" +
            QString(" from voorinv, kamer where iid = ") + QString::number(m_itemId) + " and voorinv.kid = kamer.kid");
        if (rs->Eof())
            return;
        txtDesc->setText(rs->Field("Temp").toString());
        txtHoev->setText(rs->Field("hoeveel").toString());
        cmbLOK->setCurrentIndex(cmbLOK->findText(rs->Field("KTemp").toString()));
        const QString date = rs->Field("datum").toString();
        txtYY->setText(date.left(4));
        txtMM->setText(date.mid(5, 2));
        txtDD->setText(date.right(2));
        txtKoop->setText(vb::Format(rs->Field("kwaarde"), "#0.00"));
        txtVerseker->setText(vb::Format(rs->Field("vwaarde"), "#0.00"));
        txtVerwys->setText(rs->Field("verwys").toString());
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
}

void frmVoor::MoveDate(int days) {
    const QString text = txtYY->text() + "/" + txtMM->text() + "/" + txtDD->text();
    const QDate date(text.left(4).toInt(), text.mid(5, 2).toInt(), text.right(2).toInt());
    if (!date.isValid())
        return;
    const QString moved = date.addDays(days).toString("yyyy/MM/dd");
    txtYY->setText(moved.left(4));
    txtMM->setText(moved.mid(5, 2));
    txtDD->setText(moved.right(2));
}

void frmVoor::Command1_Click() {
    MoveDate(1);
}

void frmVoor::Command2_Click() {
    MoveDate(-1);
}

void frmVoor::lblcmd_Click() {
    if (vb::Trim(txtDesc->text()).isEmpty()) {
        MsgBox("Please complete description", MsgButtons::Ok, MsgIcon::Exclamation, "Stock Inventory");
        return;
    }
    if (cmbLOK->currentIndex() < 0) {
        MsgBox("Please specify the room", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    try {
        auto rs = SeekTable(db(), "voorinv", "PrimaryKey", {Value(m_itemId)});
        // The key is written with the row only where the store takes it: a counter cannot be updated on an edit
        // (the engine refuses, and the run would end at every edit), and a key of 0 would give every new row 0.
        if (rs->NoMatch()) {
            rs->AddNew();
            if (m_itemId > 0)
                rs->SetField("IID", Value(m_itemId));
        } else {
            rs->Edit();
        }
        rs->SetField("VID", Value(m_categoryId));
        rs->SetField("KID", Value(cmbLOK->currentData().toLongLong()));
        rs->SetField("Desc", Value(txtDesc->text()));
        rs->SetField("Hoeveel", Value(static_cast<std::int64_t>(vb::Val(txtHoev->text()))));
        const QString date = txtYY->text() + "/" + txtMM->text() + "/" + txtDD->text();
        if (vb::IsDate(date))
            rs->SetField("Datum", Value(date));
        rs->SetField("kwaarde", Value(vb::Val(txtKoop->text())));
        rs->SetField("VWaarde", Value(vb::Val(txtVerseker->text())));
        rs->SetField("verwys", Value(txtVerwys->text()));
        rs->Update();
        m_itemId = static_cast<int>(rs->Field("IID").toLong());
        rs->Close();
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    accept();
}

frmVKat::frmVKat(QWidget* parent) : QWidget(parent) {
    setObjectName("frmVKat");
    setWindowTitle("Stock");
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel("Select a Category", this));
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    left->addWidget(list1, 1);
    txtKAT = new QLineEdit(this);
    txtKAT->setObjectName("txtKAT");
    txtKAT->setMaxLength(50); // the category column's length
    left->addWidget(txtKAT);
    auto* catButtons = new QHBoxLayout;
    cmdSaveCategory = new QPushButton("&Save", this);
    cmdDeleteCategory = new QPushButton("&Delete", this);
    catButtons->addWidget(cmdSaveCategory);
    catButtons->addWidget(cmdDeleteCategory);
    left->addLayout(catButtons);
    outer->addLayout(left);
    auto* right = new QVBoxLayout;
    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    right->addWidget(flg, 1);
    auto* itemButtons = new QHBoxLayout;
    itemButtons->addStretch(1);
    cmdAddItem = new QPushButton("&Add Item", this);
    cmdEditItem = new QPushButton("&Edit Item", this);
    cmdDeleteItem = new QPushButton("Delete &Item", this);
    itemButtons->addWidget(cmdAddItem);
    itemButtons->addWidget(cmdEditItem);
    itemButtons->addWidget(cmdDeleteItem);
    right->addLayout(itemButtons);
    outer->addLayout(right, 1);
    resize(900, 560);

    connect(list1, &QListWidget::currentRowChanged, this, [this] { list1_Click(); });
    connect(cmdSaveCategory, &QPushButton::clicked, this, [this] { cmdSaveCategory_Click(); });
    connect(cmdDeleteCategory, &QPushButton::clicked, this, [this] { cmdDeleteCategory_Click(); });
    connect(cmdAddItem, &QPushButton::clicked, this, [this] { cmdAddItem_Click(); });
    connect(cmdEditItem, &QPushButton::clicked, this, [this] { cmdEditItem_Click(); });
    connect(cmdDeleteItem, &QPushButton::clicked, this, [this] { cmdDeleteItem_Click(); });
    FillCategories();
}

void frmVKat::FillCategories() {
    const QSignalBlocker quiet(list1);
    list1->clear();
    try {
        auto rs = db().OpenRecordset("select * from voorkat");
        for (; !rs->Eof(); rs->MoveNext())
            AddItemWithData(list1, rs->Field("Desc").toString(), rs->Field("VID").toLong());
    } catch (const DbError&) {
    }
    m_categoryId = 0;
}

void frmVKat::list1_Click() {
    m_categoryId = ItemDataAt(list1, list1->currentRow());
    txtKAT->setText(list1->currentItem() ? list1->currentItem()->text() : QString());
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(4);
    flg->SetFormatString("ID|Item|Reference|Quantity");
    try {
        auto rs = db().OpenRecordset("SELECT * FROM VoorInv WHERE VID = " + QString::number(m_categoryId));
        for (; !rs->Eof(); rs->MoveNext())
            flg->AddItem(QStringList({rs->Field("IID").toString(), rs->Field("Desc").toString(),
                                      rs->Field("verwys").toString(), rs->Field("Hoeveel").toString()})
                             .join('\t'));
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
    const int widths[4] = {700, 3600, 2400, 1400};
    for (int c = 0; c < 4; ++c)
        flg->SetColWidth(c, widths[c]);
}

void frmVKat::cmdSaveCategory_Click() {
    if (vb::Trim(txtKAT->text()).isEmpty()) {
        MsgBox("Fill in stock category", MsgButtons::Ok, MsgIcon::Exclamation, "Stock");
        return;
    }
    try {
        auto rs = SeekTable(db(), "voorkat", "PrimaryKey", {Value(m_categoryId)});
        if (rs->NoMatch())
            rs->AddNew();
        else
            rs->Edit();
        rs->SetField("Desc", Value(txtKAT->text()));
        rs->Update();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    FillCategories();
}

void frmVKat::cmdDeleteCategory_Click() {
    if (MsgBox("Proceed to delete category?", MsgButtons::YesNo, MsgIcon::Question, "Vehicles") != MsgResult::Yes)
        return;
    try {
        auto rs = SeekTable(db(), "voorkat", "PrimaryKey", {Value(m_categoryId)});
        if (!rs->NoMatch())
            rs->Delete();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    FillCategories();
}

int frmVKat::CurrentItemId() const {
    if (flg->Row() < 1 || flg->Row() >= flg->Rows())
        return 0;
    return flg->TextMatrix(flg->Row(), 0).toInt();
}

void frmVKat::OpenItem(int itemId) {
    if (m_categoryId == 0) {
        MsgBox("You have to select a category first!", MsgButtons::Ok, MsgIcon::Exclamation, "Category");
        return;
    }
    {
        frmVoor item(m_categoryId, itemId, this);
        if (itemId > 0)
            item.LoadDetail();
        item.exec();
    }
    list1_Click();
}

void frmVKat::cmdAddItem_Click() {
    OpenItem(0);
}

void frmVKat::cmdEditItem_Click() {
    OpenItem(CurrentItemId());
}

void frmVKat::cmdDeleteItem_Click() {
    const int id = CurrentItemId();
    if (MsgBox("Proceed to delete stock item?", MsgButtons::YesNo, MsgIcon::Question, "Stock Inventory") !=
        MsgResult::Yes)
        return;
    try {
        auto rs = SeekTable(db(), "voorinv", "PrimaryKey", {Value(id)});
        if (!rs->NoMatch())
            rs->Delete();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    list1_Click();
}
