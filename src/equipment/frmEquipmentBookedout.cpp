#include "frmEquipmentBookedout.h"

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
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <algorithm>

frmEquipmentBookedout::frmEquipmentBookedout(QWidget* parent) : QWidget(parent) {
    setObjectName("frmEquipmentBookedout");
    setWindowTitle("Equipment Booked Out");
    buildScreen();
    resize(1060, 600);
    CurrentSession().EquipmentMode = kStockTake;
    FillEquipmentCategories(list1, kAllEquipmentCategories);
    {
        // Picking the first entry is no change of category: the list is read once, below, with its dates primed.
        const QSignalBlocker quiet(list1);
        list1->setCurrentRow(0);
    }
    PrimeDates();
    LoadBookedOut();
}

void frmEquipmentBookedout::buildScreen() {
    auto* outer = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    left->addWidget(new QLabel("Equipment Categories", this));
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    list1->setMinimumWidth(200);
    left->addWidget(list1, 1);
    outer->addLayout(left);

    auto* right = new QVBoxLayout;
    lblMessage = new QLabel(this);
    lblMessage->setObjectName("lblMessage");
    QFont bold = lblMessage->font();
    bold.setBold(true);
    lblMessage->setFont(bold);
    right->addWidget(lblMessage);
    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    right->addWidget(flg, 1);
    auto* bottom = new QHBoxLayout;
    dtp = new QDateEdit(this);
    dtp->setObjectName("dtp");
    dtp2 = new QDateEdit(this);
    dtp2->setObjectName("dtp2");
    for (QDateEdit* picker : {dtp, dtp2}) {
        picker->setCalendarPopup(true);
        picker->setDisplayFormat("yyyy/MM/dd");
    }
    bottom->addWidget(new QLabel("From", this));
    bottom->addWidget(dtp);
    bottom->addWidget(new QLabel("To", this));
    bottom->addWidget(dtp2);
    bottom->addStretch(1);
    cmdPrint = new QPushButton("&Print Booked Out", this);
    cmdPrint->setObjectName("cmdPrint");
    cmdBookIn = new QPushButton("Book &In", this);
    cmdBookIn->setObjectName("cmdBookIn");
    bottom->addWidget(cmdPrint);
    bottom->addWidget(cmdBookIn);
    right->addLayout(bottom);
    outer->addLayout(right, 1);

    connect(list1, &QListWidget::currentRowChanged, this, [this] { LoadBookedOut(); });
    connect(cmdBookIn, &QPushButton::clicked, this, [this] { cmdBookIn_Click(); });
    connect(cmdPrint, &QPushButton::clicked, this, [this] { cmdPrint_Click(); });
    connect(flg, &QTableWidget::cellClicked, this, [this](int row, int col) {
        if (row == 0)
            SortByColumn(col);
    });
    connect(flg, &QTableWidget::cellDoubleClicked, this, [this](int row) {
        if (row >= 1)
            cmdBookIn_Click();
    });
}

int frmEquipmentBookedout::CategoryId() const {
    return ItemDataAt(list1, list1->currentRow());
}

void frmEquipmentBookedout::PrimeDates() {
    const QDate today = QDate::currentDate();
    if (CurrentSession().ReportChoice == "Equipment Stocktake Lists") {
        dtp->setDate(ScalarDate("SELECT min(trdate) From [EquipmentStockTake]", today));
        dtp2->setDate(ScalarDate("SELECT max(trdate) From [EquipmentStockTake]", today));
    } else {
        dtp->setDate(ScalarDate(BookOutListSql(true, false, CategoryId(), today, today), today));
        dtp2->setDate(ScalarDate(BookOutListSql(true, true, CategoryId(), today, today), today));
    }
}

void frmEquipmentBookedout::LoadBookedOut() {
    Hourglass hourglass;
    flg->setVisible(false);
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(7);
    flg->SetFormatString("equipid|Category|Date|Equipment|Remarks|unknown|ID");
    flg->SetCols(8);
    const int categoryId = CategoryId();
    try {
        std::vector<long long> ids;
        auto open = db().OpenRecordset(OpenBookOutIdsSql(), RecordsetType::Snapshot);
        for (; !open->Eof(); open->MoveNext())
            ids.push_back(open->Field("id").toLong());
        open->Close();
        for (long long id : ids) {
            const Currency balance = GetBookOutBalance(id);
            auto rs = db().OpenRecordset(BookOutRowSql(id, balance, categoryId), RecordsetType::Snapshot);
            if (rs->Eof())
                continue;
            QStringList cells;
            cells << rs->Field("equipid").toString() << rs->Field("Category").toString() << rs->Field("Date").toString()
                  << rs->Field("Equip").toString() << rs->Field("item").toString() << rs->Field("qty").toString()
                  << rs->Field("id").toString() << rs->Field("stocktakeid").toString();
            flg->AddItem(cells.join('\t'));
        }
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
    }
    const int widths[8] = {0, 1700, 2300, 2400, 2600, 900, 700, 0};
    for (int c = 0; c < 8; ++c)
        flg->SetColWidth(c, widths[c]);
    flg->setColumnHidden(colEquipId, true);
    flg->setColumnHidden(colStockTakeId, true);
    flg->SetColAlignment(colQty, flexAlignRightCenter);
    const bool empty = flg->Rows() <= 1;
    lblMessage->setText(empty ? "No Items Booked Out" : QString::number(flg->Rows() - 1) + " book-outs open");
    cmdPrint->setEnabled(!empty);
    flg->setVisible(true);
}

void frmEquipmentBookedout::SortByColumn(int col) {
    const int rows = flg->Rows();
    if (rows <= 2)
        return;
    std::vector<QStringList> table;
    for (int r = 1; r < rows; ++r) {
        QStringList cells;
        for (int c = 0; c < flg->Cols(); ++c)
            cells << flg->TextMatrix(r, c);
        table.push_back(cells);
    }
    std::stable_sort(table.begin(), table.end(), [col](const QStringList& a, const QStringList& b) {
        const QString& x = a[col];
        const QString& y = b[col];
        if (vb::IsNumeric(Value(x)) && vb::IsNumeric(Value(y)))
            return vb::Val(x) < vb::Val(y);
        return x.compare(y, Qt::CaseInsensitive) < 0;
    });
    for (int r = 1; r < rows; ++r)
        for (int c = 0; c < flg->Cols(); ++c)
            flg->SetTextMatrix(r, c, table[static_cast<size_t>(r - 1)][c]);
}

void frmEquipmentBookedout::cmdBookIn_Click() {
    Session& s = CurrentSession();
    const int row = flg->Row();
    if (row < 1 || row >= flg->Rows() || flg->TextMatrix(row, colId).isEmpty()) {
        MsgBox("Select a Category");
        return;
    }
    s.EquipmentMode = kBookIn;
    s.ReportChoice = BookInContext(flg->TextMatrix(row, colId).toLongLong(), flg->TextMatrix(row, colEquipment),
                                   flg->TextMatrix(row, colRemarks));
    s.SelectedItemId = flg->TextMatrix(row, colEquipId).toInt();
    BookOutStockTakeId() = flg->TextMatrix(row, colStockTakeId).toLongLong();
    ShowScreen("frmEquipmentAdj", true);
    LoadBookedOut();
}

void frmEquipmentBookedout::cmdPrint_Click() {
    const QString category = list1->currentItem() ? list1->currentItem()->text() : QString();
    WriteBookOutSummaryWorkbook(CategoryId(), category);
}
