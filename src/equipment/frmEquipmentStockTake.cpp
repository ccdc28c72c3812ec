#include "frmEquipmentStockTake.h"

#include "ComboHelpers.h"
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
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmEquipmentStockTake::frmEquipmentStockTake(QWidget* parent) : QWidget(parent) {
    setObjectName("frmEquipmentStockTake");
    setWindowTitle("Equipment Stock Take");
    buildScreen();
    resize(1040, 620);
    FillEquipmentCategories(list1, kAllEquipmentCategories);
    CurrentSession().EquipmentMode = kStockTake;
    list1->setCurrentRow(0);
}

void frmEquipmentStockTake::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel("Equipment Categories", this));
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    list1->setMinimumWidth(200);
    left->addWidget(list1, 1);
    outer->addLayout(left);

    auto* right = new QVBoxLayout;
    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    right->addWidget(flg, 1);
    auto* form = new QGridLayout;
    form->addWidget(new QLabel("Reason", this), 0, 0, Qt::AlignTop);
    txtReason = new QPlainTextEdit(this);
    txtReason->setObjectName("txtReason");
    txtReason->setMaximumHeight(60);
    txtReason->setTabChangesFocus(true);
    form->addWidget(txtReason, 0, 1, 1, 3);
    form->addWidget(new QLabel("Person", this), 1, 0);
    txtPerson = new QLineEdit(this);
    txtPerson->setObjectName("txtPerson");
    txtPerson->setMaxLength(50);
    form->addWidget(txtPerson, 1, 1);
    form->addWidget(new QLabel("Date", this), 1, 2);
    dtp = new QDateEdit(QDate::currentDate(), this);
    dtp->setObjectName("dtp");
    dtp->setCalendarPopup(true);
    dtp->setDisplayFormat("yyyy/MM/dd");
    form->addWidget(dtp, 1, 3);
    right->addLayout(form);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdPrint = new QPushButton("&Print Stock Take", this);
    cmdPrint->setObjectName("cmdPrint");
    cmdPost = new QPushButton("P&ost", this);
    cmdPost->setObjectName("cmdPost");
    buttons->addWidget(cmdPrint);
    buttons->addWidget(cmdPost);
    right->addLayout(buttons);
    outer->addLayout(right, 1);

    // The count editor floats over the grid's cell; it is a child of the screen, laid over the grid.
    txtG3 = new QLineEdit(this);
    txtG3->setObjectName("txtG3");
    txtG3->hide();
    txtG3->setFrame(false); // it stands in the cell, at the cell's height
    txtG3->setMinimumHeight(0);
    txtG3->resize(80, 12);
    AttachDigitsFilter(txtG3, true);
    txtG3->installEventFilter(this);

    connect(list1, &QListWidget::currentRowChanged, this, [this] { list1_Click(); });
    connect(flg, &QTableWidget::cellClicked, this, [this](int row, int col) { flg_Click(row, col); });
    connect(cmdPost, &QPushButton::clicked, this, [this] { cmdPost_Click(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });
}

void frmEquipmentStockTake::list1_Click() {
    Session& s = CurrentSession();
    s.SelectedCategoryId = ItemDataAt(list1, list1->currentRow());
    // The look-up names a column that does not exist; it answers with today.
    dtp->setDate(ScalarDate("SELECT min(trdate) From [Equipmenttrans]" + QString(" WHERE euipid = ") +
                                QString::number(s.SelectedCategoryId),
                            QDate::currentDate()));
    LoadGrid();
}

void frmEquipmentStockTake::LoadGrid() {
    const int categoryId = CurrentSession().SelectedCategoryId;
    txtG3->hide();
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(7);
    flg->SetFormatString("ID|Category|Item|Computer Count|Actual Count|Difference|Remarks");
    QString sql = QString(" SELECT [IID] , toerkat.desc as [category], toerinv.[Desc] as [item], [Hoeveel], [KItem] ") +
                  " FROM [ToerInv] " + " inner join toerkat on toerkat.tid = toerinv.tid";
    if (categoryId > 0)
        sql += " Where toerinv.TID = " + QString::number(categoryId);
    sql += " ORDER BY toerkat.desc,toerinv.desc";
    try {
        auto rs = db().OpenRecordset(sql);
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            cells << rs->Field("IID").toString() << vb::ProperCase(rs->Field("category").toString())
                  << vb::ProperCase(rs->Field("item").toString()) << rs->Field("Hoeveel").toString() << QString()
                  << QString() << QString();
            flg->AddItem(cells.join('\t'));
        }
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
    const int widths[7] = {600, 1800, 2700, 1400, 1300, 1300, 1600};
    for (int c = 0; c < 7; ++c)
        flg->SetColWidth(c, widths[c]);
    for (int c = colComputer; c <= colDifference; ++c)
        flg->SetColAlignment(c, flexAlignRightCenter);
}

void frmEquipmentStockTake::flg_Click(int row, int col) {
    if (txtG3->isVisible() && !LeaveCell())
        return;
    if (row < 1 || col != colActual)
        return;
    flg->SetRow(row);
    flg->SetCol(col);
    FLEX_ShowEditor(*flg, *txtG3, true);
}

bool frmEquipmentStockTake::LeaveCell() {
    const int row = flg->Row();
    const QString text = vb::Trim(txtG3->text());
    if (!text.isEmpty() && !vb::IsNumeric(Value(text))) {
        txtG3->clear();
        txtG3->setFocus();
        return false;
    }
    txtG3->hide();
    if (row < 1 || row >= flg->Rows())
        return true;
    flg->SetTextMatrix(row, colActual, text);
    if (!text.isEmpty()) {
        const Currency difference =
            Currency::fromDouble(vb::Val(text)) - Currency::fromDouble(vb::Val(flg->TextMatrix(row, colComputer)));
        flg->SetTextMatrix(row, colDifference, difference.toString());
    } else {
        flg->SetTextMatrix(row, colDifference, QString());
    }
    return true;
}

void frmEquipmentStockTake::txtG3_Enter() {
    if (!LeaveCell())
        return;
    const int next = flg->Row() + 1;
    if (next >= flg->Rows()) {
        if (MsgBox("Completed. Post stock take?", MsgButtons::YesNo, MsgIcon::Question) == MsgResult::Yes)
            cmdPost_Click();
        return;
    }
    flg->setCurrentCell(next, colActual);
    flg->SetRow(next);
    flg->SetCol(colActual);
    FLEX_ShowEditor(*flg, *txtG3, true);
}

bool frmEquipmentStockTake::eventFilter(QObject* watched, QEvent* e) {
    if (watched == txtG3 && e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            txtG3_Enter();
            return true;
        }
        if (key == Qt::Key_Escape) {
            txtG3->hide();
            return true;
        }
    }
    return QWidget::eventFilter(watched, e);
}

void frmEquipmentStockTake::cmdPost_Click() {
    Session& s = CurrentSession();
    if (txtG3->isVisible() && !LeaveCell())
        return;
    QString reason = txtReason->toPlainText();
    QString flat = reason;
    flat.remove('\r');
    flat.remove('\n');
    if (flat.length() < 5) {
        MsgBox("Reason must be at least 5 characters", MsgButtons::Ok, MsgIcon::Exclamation);
        txtReason->setFocus();
        return;
    }
    QString person = txtPerson->text();
    if (person.isEmpty()) {
        MsgBox("Person is required", MsgButtons::Ok, MsgIcon::Exclamation);
        txtPerson->setFocus();
        return;
    }
    for (int r = 1; r < flg->Rows(); ++r) {
        if (flg->TextMatrix(r, colId).isEmpty())
            continue;
        if (flg->TextMatrix(r, colActual).isEmpty()) {
            flg->SetTextMatrix(r, colActual, flg->TextMatrix(r, colComputer));
            flg->SetTextMatrix(r, colDifference, "0");
        }
    }
    if (MsgBox("Post?", MsgButtons::YesNo, MsgIcon::Question, "Post Stock Take") != MsgResult::Yes)
        return;
    try {
        Hourglass hourglass;
        const QString date = QuotedDate(dtp->date());
        m_lastReason = reason;
        db().Execute("insert into equipmentstocktake (" + QString(" [trdate],[equipid],[trReason],[trPerson]") +
                     " ) VALUES (" + date + "," + QString::number(s.SelectedCategoryId) + ",'" + SqlEscape(reason) +
                     "'" + ",'" + SqlEscape(person) + "'" + ")");
        m_lastStockTakeId = GetScalar(db(), "select max(id) from equipmentstocktake", "0", 0, "0").toLongLong();
        for (int r = 1; r < flg->Rows(); ++r) {
            const QString id = flg->TextMatrix(r, colId);
            if (id.isEmpty())
                continue;
            const Currency difference = Currency::fromDouble(vb::Val(flg->TextMatrix(r, colDifference)));
            if (difference == Currency())
                continue;
            QString remarks = flg->TextMatrix(r, colRemarks);
            const Currency unit = Currency::fromDouble(
                vb::Val(GetScalar(db(), "select kitem from toerinv where iid = " + id, "0", 0, "0")));
            db().Execute("insert into equipmenttrans (" + QString("[sortdate],[trdate],[equipid]") +
                         ",[actionId],[trDesc],[trQty],[trAmount],[trunitcost],trclosed,stocktakeid" + ") VALUES ( " +
                         date + "," + date + "," + id + "," + QString::number(s.EquipmentMode) +
                         (remarks.isEmpty() ? QString(",'Difference'") : ",'" + SqlEscape(remarks) + "'") + "," +
                         difference.toString() + "," + (difference * unit).toString() + "," + unit.toString() + ",0," +
                         QString::number(m_lastStockTakeId) + ")");
        }
        for (int r = 1; r < flg->Rows(); ++r) {
            const QString id = flg->TextMatrix(r, colId);
            if (id.isEmpty())
                continue;
            db().Execute("update [ToerInv] set" + QString(" hoeveel = hoeveel + ") +
                         Currency::fromDouble(vb::Val(flg->TextMatrix(r, colDifference))).toString() +
                         " where iid = " + id);
        }
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    MsgBox("Posted");
    LoadGrid();
}

void frmEquipmentStockTake::cmdPrint_Click() {
    if (m_lastStockTakeId == 0) {
        m_lastStockTakeId =
            GetScalar(db(), "select max(id) from equipmentstocktake where trreason <> 'Book Out'", "0", 0, "0")
                .toLongLong();
        m_lastReason =
            GetScalar(db(), "select trreason from equipmentstocktake where id = " + QString::number(m_lastStockTakeId),
                      "", 0, "");
    }
    WriteStockTakeListWorkbook(m_lastStockTakeId, m_lastReason);
}
