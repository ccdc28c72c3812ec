#include "frmVoerk.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "DateEntry.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "Recalc.h"
#include "ReportEngine.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "Vb.h"
#include "frmVoerDet.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QEvent>
#include <QFocusEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

const char* const kSelectCategoryFirst = "You have to select a category first!";

QString TodayText() {
    return vb::Format(Value(QDate::currentDate()), "yyyy/MM/dd");
}

QDate DateOfText(const QString& text) {
    try {
        return vb::CDate(Value(text)).date();
    } catch (const VbError&) {
        return QDate::currentDate();
    }
}

// The grid shows ids as text; they are read back as 16-bit integers, so larger ids give 0.
int ShortIdOf(const QString& text) {
    try {
        return static_cast<int>(vb::CInt(Value(text)));
    } catch (const VbError&) {
        return 0;
    }
}

} // namespace

frmVoerk::frmVoerk(QWidget* parent) : QWidget(parent) {
    setObjectName("frmVoerk");
    setWindowTitle("Vehicles");
    buildScreen();
    connectHandlers();
    // Wide enough for the grid's columns without scrolling beside the navigation panel at 1280 pixels.
    resize(1000, 680);
    {
        Hourglass hourglass;
        LaaiKategorie();
    }
    list1_Click();
    Activate();
}

void frmVoerk::buildScreen() {
    auto* outer = new QHBoxLayout(this);

    // Left: the categories and their detail frame.
    auto* left = new QVBoxLayout;
    auto* catCaption = new QLabel("Vehicle Categories", this);
    QFont bold = catCaption->font();
    bold.setBold(true);
    catCaption->setFont(bold);
    left->addWidget(catCaption);
    list1 = new QListWidget(this);
    list1->setObjectName("list1");
    list1->setMinimumWidth(220);
    left->addWidget(list1, 1);

    const char* const captions[9] = {" &Add",    " &Edit", " &Delete", " &Save",       " &Cancel",
                                     " &Delete", " &Edit", " &Add",    " &Recalculate"};
    for (int i = 0; i < 9; ++i) {
        Label4[i] = new QPushButton(captions[i], this);
        Label4[i]->setObjectName(QString("Label4_%1").arg(i));
    }
    Label4[8]->setToolTip("Recalculate All Vechile Kilometers");
    Label4[0]->setToolTip("Add a vehicle category.");
    Label4[1]->setToolTip("Edit the selected category.");
    Label4[2]->setToolTip("Delete the selected category.");
    Label4[5]->setToolTip("Delete the selected vehicle.");
    Label4[6]->setToolTip("Edit the selected vehicle.");
    Label4[7]->setToolTip("Add a vehicle to the selected category.");

    auto* catButtons = new QHBoxLayout;
    catButtons->addWidget(Label4[0]);
    catButtons->addWidget(Label4[1]);
    catButtons->addWidget(Label4[2]);
    left->addLayout(catButtons);

    Frame2 = new QGroupBox("Vehicle category detail", this);
    Frame2->setObjectName("Frame2");
    auto* frameLayout = new QGridLayout(Frame2);
    frameLayout->addWidget(new QLabel("Category", Frame2), 0, 0);
    txtKAT = new QLineEdit(Frame2);
    txtKAT->setObjectName("txtKAT");
    txtKAT->setMaxLength(50);
    frameLayout->addWidget(txtKAT, 0, 1, 1, 2);
    frameLayout->addWidget(new QLabel("Odometer", Frame2), 1, 0);
    Opt1[0] = new QRadioButton("Kilometer", Frame2);
    Opt1[0]->setObjectName("Opt1_0");
    Opt1[1] = new QRadioButton("Hours", Frame2);
    Opt1[1]->setObjectName("Opt1_1");
    Opt1[0]->setChecked(true);
    frameLayout->addWidget(Opt1[0], 1, 1);
    frameLayout->addWidget(Opt1[1], 1, 2);
    auto* frameButtons = new QHBoxLayout;
    frameButtons->addStretch(1);
    frameButtons->addWidget(Label4[3]);
    frameButtons->addWidget(Label4[4]);
    frameLayout->addLayout(frameButtons, 2, 0, 1, 3);
    Frame2->hide();
    left->addWidget(Frame2);
    outer->addLayout(left);

    // Right: caption, filters, grid and the vehicle actions.
    auto* right = new QVBoxLayout;
    auto* captionRow = new QHBoxLayout;
    Label3 = new QLabel("Selected Category", this);
    Label3->setObjectName("Label3");
    QFont big = Label3->font();
    big.setBold(true);
    big.setPointSizeF(big.pointSizeF() * 1.3);
    Label3->setFont(big);
    lblRows = new QLabel(this);
    lblRows->setObjectName("lblRows");
    captionRow->addWidget(Label3);
    captionRow->addStretch(1);
    captionRow->addWidget(lblRows);
    right->addLayout(captionRow);

    auto* filters = new QHBoxLayout;
    fraSearch = new QGroupBox("Search", this);
    fraSearch->setObjectName("fraSearch");
    auto* searchLayout = new QGridLayout(fraSearch);
    txtSearch = new QLineEdit(fraSearch);
    txtSearch->setObjectName("txtSearch");
    txtSearch->setClearButtonEnabled(false);
    searchLayout->addWidget(txtSearch, 0, 0, 1, 3);
    const char* const searchCaptions[3] = {"Make", "Model", "Reg. No."};
    auto* searchGroup = new QButtonGroup(fraSearch);
    for (int i = 0; i < 3; ++i) {
        optSearch[i] = new QRadioButton(searchCaptions[i], fraSearch);
        optSearch[i]->setObjectName(QString("optSearch_%1").arg(i));
        searchGroup->addButton(optSearch[i], i);
        searchLayout->addWidget(optSearch[i], 1, i);
    }
    optSearch[0]->setChecked(true);
    chkSearchAllCategories = new QCheckBox("Search All Categories", fraSearch);
    chkSearchAllCategories->setObjectName("chkSearchAllCategories");
    searchLayout->addWidget(chkSearchAllCategories, 2, 0, 1, 2);
    cmdClearSearch = new QPushButton("Clear Search", fraSearch);
    cmdClearSearch->setObjectName("cmdClearSearch");
    searchLayout->addWidget(cmdClearSearch, 2, 2);
    filters->addWidget(fraSearch, 3);

    fraRenewal = new QGroupBox("Renewals due", this);
    fraRenewal->setObjectName("fraRenewal");
    auto* renewalLayout = new QGridLayout(fraRenewal);
    optType[0] = new QRadioButton("Licence", fraRenewal);
    optType[0]->setObjectName("optType_0");
    optType[1] = new QRadioButton("Service", fraRenewal);
    optType[1]->setObjectName("optType_1");
    renewalLayout->addWidget(optType[0], 0, 0);
    renewalLayout->addWidget(optType[1], 0, 1);
    dtpDateFrom = new QDateEdit(fraRenewal);
    dtpDateFrom->setObjectName("dtpDateFrom");
    dtpDateTo = new QDateEdit(fraRenewal);
    dtpDateTo->setObjectName("dtpDateTo");
    for (QDateEdit* picker : {dtpDateFrom, dtpDateTo}) {
        picker->setCalendarPopup(true);
        picker->setDisplayFormat("yyyy/MM/dd");
        picker->setDate(QDate::currentDate());
    }
    renewalLayout->addWidget(new QLabel("From", fraRenewal), 1, 0);
    renewalLayout->addWidget(dtpDateFrom, 1, 1);
    renewalLayout->addWidget(new QLabel("To", fraRenewal), 2, 0);
    renewalLayout->addWidget(dtpDateTo, 2, 1);
    imgRun = new QToolButton(fraRenewal);
    imgRun->setObjectName("imgRun");
    imgRun->setText("Run");
    imgRun->setToolTip("List the vehicles due in the period.");
    imgRun->setIcon(style()->standardIcon(QStyle::SP_MediaPlay));
    imgRun->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    renewalLayout->addWidget(imgRun, 1, 2, 2, 1);
    filters->addWidget(fraRenewal, 2);
    right->addLayout(filters);

    flg = new FlexGrid(this);
    flg->setObjectName("flg");
    right->addWidget(flg, 1);

    pgb = new QProgressBar(this);
    pgb->setObjectName("pgb");
    pgb->setRange(0, 100);
    pgb->setMaximumHeight(12);
    pgb->setTextVisible(false);
    pgb->hide();
    right->addWidget(pgb);

    auto* vehicleButtons = new QHBoxLayout;
    lblPrint = new QPushButton(" &Print", this);
    lblPrint->setObjectName("lblPrint");
    lblPrint->setToolTip("Recalculate All Vechile Kilometers");
    vehicleButtons->addWidget(Label4[8]);
    vehicleButtons->addWidget(lblPrint);
    vehicleButtons->addStretch(1);
    vehicleButtons->addWidget(new QLabel("Vehicles:", this));
    vehicleButtons->addWidget(Label4[7]);
    vehicleButtons->addWidget(Label4[6]);
    vehicleButtons->addWidget(Label4[5]);
    right->addLayout(vehicleButtons);
    outer->addLayout(right, 1);

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
    QWidget::setTabOrder(Label4[5], Text1);
    QWidget::setTabOrder(Text1, Text2);
    QWidget::setTabOrder(Text2, Text3);
    QWidget::setTabOrder(Text3, Text4);
}

void frmVoerk::connectHandlers() {
    for (int i = 0; i < 9; ++i) {
        connect(Label4[i], &QPushButton::clicked, this, [this, i] { Label4_Click(i); });
        Label4[i]->installEventFilter(this);
    }
    connect(list1, &QListWidget::currentRowChanged, this, [this] {
        if (!m_FillingCategories)
            list1_Click();
    });
    // A click on the category already selected changes no row, and still reloads, as every click does.
    list1->viewport()->installEventFilter(this);
    connect(list1, &QListWidget::itemClicked, this, [this](QListWidgetItem* item) {
        if (list1->row(item) == m_RowAtPress)
            list1_Click();
    });
    connect(list1, &QListWidget::itemDoubleClicked, this, [this] { list1_DblClick(); });
    connect(txtSearch, &QLineEdit::textChanged, this, [this] { txtSearch_Change(); });
    for (QRadioButton* option : optSearch)
        connect(option, &QRadioButton::clicked, this, [this] { txtSearch->setText(""); });
    for (QRadioButton* option : optType)
        connect(option, &QRadioButton::clicked, this, [this] { optType_Click(); });
    connect(imgRun, &QToolButton::clicked, this, [this] { imgRun_Click(); });
    connect(cmdClearSearch, &QPushButton::clicked, this, [this] { cmdClearSearch_Click(); });
    connect(lblPrint, &QPushButton::clicked, this, [this] { lblPrint_Click(); });
    connect(flg, &QTableWidget::cellDoubleClicked, this, [this] {
        if (flg->Row() >= 1)
            Label4_Click(6);
    });
    flg->installEventFilter(this);
}

void frmVoerk::showEvent(QShowEvent* e) {
    QWidget::showEvent(e);
    if (m_WatchingActivation)
        return;
    // Inside the main window the screen is a sub-window; each time it becomes the active one it resets.
    auto* sub = qobject_cast<QMdiSubWindow*>(parentWidget());
    if (!sub || !sub->mdiArea())
        return;
    m_WatchingActivation = true;
    connect(sub->mdiArea(), &QMdiArea::subWindowActivated, this, [this, sub](QMdiSubWindow* active) {
        if (active == sub && !m_WasActive)
            Activate();
        m_WasActive = active == sub;
    });
    m_WasActive = sub->mdiArea()->activeSubWindow() == sub;
}

void frmVoerk::Activate() {
    Frame2->hide();
    dtpDateFrom->setDate(QDate::currentDate());
    dtpDateTo->setDate(QDate::currentDate());
    LoadEarliestDates();
}

bool frmVoerk::eventFilter(QObject* watched, QEvent* e) {
    if (watched == list1->viewport() && e->type() == QEvent::MouseButtonPress)
        m_RowAtPress = list1->currentRow(); // before the press moves the selection
    if (e->type() == QEvent::FocusIn) {
        // Only a move by the keyboard springs a trap; focus coming back after a dialog does not.
        const auto reason = static_cast<QFocusEvent*>(e)->reason();
        if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) {
            if (watched == Text1 || watched == Text4)
                Label4_Click(9);
            else if (watched == Text2)
                Label4_Click(0);
            else if (watched == Text3)
                list1_Click();
        }
    }
    if (e->type() == QEvent::KeyPress) {
        // Enter on an action acts, then moves on as a Tab would.
        const int key = static_cast<QKeyEvent*>(e)->key();
        for (int i = 0; i < 9; ++i) {
            if (watched == Label4[i] && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
                Label4_Click(i);
                if (Label4[i]->hasFocus()) // the action may have moved the focus itself
                    focusNextChild();
                return true;
            }
        }
    }
    if (watched == flg && e->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(e)->key();
        if (flg->Row() >= 1) {
            if (key == Qt::Key_Delete) {
                Label4_Click(5);
                return true;
            }
            if (key == Qt::Key_Return || key == Qt::Key_Enter) {
                Label4_Click(6);
                return true;
            }
            if (key == Qt::Key_Insert) {
                Label4_Click(7);
                return true;
            }
        }
    }
    return QWidget::eventFilter(watched, e);
}

void frmVoerk::LaaiKategorie() {
    // The shared filler works on a combo; the list takes its entries over, item data and all.
    QComboBox categories;
    FillCategoryCombo(&categories, "_All Categories");
    m_FillingCategories = true;
    list1->clear();
    for (int i = 0; i < categories.count(); ++i)
        AddItemWithData(list1, categories.itemText(i), ItemDataAt(&categories, i));
    if (list1->count() > 0)
        list1->setCurrentRow(0);
    m_FillingCategories = false;
}

QString frmVoerk::BuildVehicleSql(bool forExcel, bool minLicence, bool minService) {
    if (m_UseDates)
        m_UseAllCategories = true;
    VehicleSqlKind kind = VehicleSqlKind::Grid;
    if (minLicence)
        kind = VehicleSqlKind::MinLicence;
    else if (minService)
        kind = VehicleSqlKind::MinService;
    else if (forExcel)
        kind = VehicleSqlKind::Workbook;
    return ::BuildVehicleSql(CurrentFilter(), kind);
}

VehicleListFilter frmVoerk::CurrentFilter() const {
    VehicleListFilter f;
    f.dateFrom = dtpDateFrom->date();
    f.dateTo = dtpDateTo->date();
    f.useDates = m_UseDates;
    f.useAllCategories = m_UseAllCategories;
    f.searchAllChecked = chkSearchAllCategories->isChecked();
    f.categoryIndex = list1->currentRow();
    f.selectedId = CurrentSession().SelectedID;
    f.searchText = txtSearch->text();
    f.searchOption = -1;
    for (int i = 0; i < 3; ++i)
        if (optSearch[i]->isChecked())
            f.searchOption = i;
    f.renewalOption = optType[0]->isChecked() ? 0 : (optType[1]->isChecked() ? 1 : -1);
    return f;
}

void frmVoerk::LoadEarliestDates() {
    const QString today = TodayText();
    m_MinLicence = vb::Format(Value(DateOfText(GetScalar(db(), BuildVehicleSql(false, true, false), today, 0, today))),
                              "yyyy/MM/dd");
    m_MinService = vb::Format(Value(DateOfText(GetScalar(db(), BuildVehicleSql(false, false, true), today, 0, today))),
                              "yyyy/MM/dd");
}

void frmVoerk::SetRenewalFrom() {
    dtpDateFrom->setDate(DateOfText(optType[0]->isChecked() ? m_MinLicence : m_MinService));
    dtpDateTo->setDate(QDate::currentDate());
}

void frmVoerk::optType_Click() {
    dtpDateFrom->setDate(DateOfText(optType[0]->isChecked() ? m_MinLicence : m_MinService));
}

void frmVoerk::ClearRenewalOptions() {
    // Radio buttons of one frame are exclusive; clearing both needs the rule lifted for a moment.
    for (QRadioButton* option : optType)
        option->setAutoExclusive(false);
    optType[0]->setChecked(false);
    optType[1]->setChecked(false);
    for (QRadioButton* option : optType)
        option->setAutoExclusive(true);
}

void frmVoerk::LaaiVoertuie() {
    Session& s = CurrentSession();
    flg->setVisible(false);
    flg->Clear();
    flg->SetRows(1);
    flg->SetCols(9);
    flg->SetFormatString("ID|Category|Make|Model|Registration Nr|Puchase Value|Kilometers|Licence Renewal|Service Due");

    if (list1->count() >= 1) {
        s.SelectedID = list1->currentItem() ? list1->currentItem()->data(Qt::UserRole).toInt() : 0;
        m_Rows = 0; // a statement that fails counts no rows
        try {
            auto rs = db().OpenRecordset(BuildVehicleSql(false, false, false));
            m_Rows = CountRecords(*rs);
            for (; !rs->Eof(); rs->MoveNext()) {
                QStringList cells;
                cells << rs->Field("TransID").toString()
                      << SqlUnescape(vb::Trim(rs->Field("Category").toString()), true, 50)
                      << vb::ProperCase(rs->Field("Maak").toString()) << vb::ProperCase(rs->Field("Model").toString())
                      << " " + rs->Field("RegNr").toString() << vb::Format(rs->Field("AWaarde"), "### ### ##0.00")
                      << vb::Format(rs->Field("Km"), "### ### ##0.00") << rs->Field("licenceduedate").toString()
                      << rs->Field("serviceduedate").toString();
                flg->AddItem(cells.join('\t'));
            }
        } catch (const DbError&) {
            // A failing statement leaves the grid as far as it got, without a word.
        } catch (const VbError&) {
        }
    }
    if (QListWidgetItem* item = list1->currentItem()) {
        m_CatID = item->data(Qt::UserRole).toInt();
        txtKAT->setText(item->text());
    }
    const int widths[9] = {0, 2500, 3000, 1800, 1500, 1500, 1500, 1700, 1200};
    for (int c = 0; c < 9; ++c)
        flg->SetColWidth(c, widths[c]);
    flg->SetColAlignment(3, flexAlignLeftCenter);
    flg->SetColAlignment(5, flexAlignRightCenter);
    flg->SetColAlignment(6, flexAlignRightCenter);
    if (flg->Rows() == 1)
        flg->SetRows(2); // a fixed row needs a row under it
    Label3->setText(list1->currentItem() ? list1->currentItem()->text() : QString());
    lblRows->setText(QString::number(m_Rows) + " Rows");
    flg->setVisible(true);
}

QString frmVoerk::CurrentRowText(int col) const {
    try {
        return flg->TextMatrix(flg->Row(), col);
    } catch (const VbError&) {
        return QString();
    }
}

int frmVoerk::CurrentRowId() const {
    return ShortIdOf(CurrentRowText(0));
}

int frmVoerk::GetSelectedVehicle() {
    Session& s = CurrentSession();
    const int id = CurrentRowId();
    s.SelectedID = id;
    m_Row = static_cast<short>(flg->Row());
    s.SelectedCatID =
        GetScalar(db(), "select transid from voerkat where desc = '" + CurrentRowText(1) + "'", "0", 0, "0").toInt();
    return id;
}

void frmVoerk::list1_Click() {
    txtSearch->setText("");
    LaaiVoertuie();
}

void frmVoerk::list1_DblClick() {
    EditCategory();
}

void frmVoerk::txtSearch_Change() {
    m_UseAllCategories = true;
    LaaiVoertuie();
    m_UseAllCategories = false;
}

void frmVoerk::imgRun_Click() {
    m_UseDates = true;
    LaaiVoertuie();
    m_UseDates = false;
    m_UseAllCategories = false;
}

void frmVoerk::cmdClearSearch_Click() {
    txtSearch->setText("");
    SetRenewalFrom();
    ClearRenewalOptions();
    LaaiVoertuie();
}

void frmVoerk::Label4_Click(int index) {
    // Every action starts by resetting the renewal period, four times over as it always has.
    for (int pass = 4; pass <= 7; ++pass) {
        LoadEarliestDates();
        SetRenewalFrom();
    }
    switch (index) {
    case 0:
        m_CatID = 0;
        txtKAT->setText("");
        Opt1[0]->setChecked(true);
        Opt1[1]->setChecked(false);
        Frame2->show();
        txtKAT->setFocus();
        break;
    case 1:
        EditCategory();
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
    case 5:
        DeleteVehicle();
        break;
    case 6:
        EditVehicle();
        break;
    case 7:
        AddVehicle();
        break;
    case 8:
        Recalc(pgb, false);
        break;
    case 9:
        OpenServiceHistory();
        break;
    default:
        break;
    }
}

void frmVoerk::EditCategory() {
    QListWidgetItem* item = list1->currentItem();
    if (!item || item->text().isEmpty())
        return;
    txtKAT->setText(item->text());
    m_CatID = item->data(Qt::UserRole).toInt();
    try {
        auto rs = SeekTable(db(), "voerkat", "PrimaryKey", {Value(m_CatID)});
        if (!rs->NoMatch()) {
            const bool hours = rs->Field("Hours").toBool();
            Opt1[1]->setChecked(hours);
            Opt1[0]->setChecked(!hours);
        }
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    Frame2->show();
    txtKAT->setFocus();
}

void frmVoerk::DeleteCategory() {
    if (m_CatID == 0)
        return;
    if (MsgBox("Proceed to delete category?", MsgButtons::YesNo, MsgIcon::None, "Vehicles") != MsgResult::Yes)
        return;
    try {
        Hourglass hourglass;
        auto vehicles = SeekTable(db(), "Voertuig", "VID", {Value(m_CatID)});
        if (!vehicles->NoMatch()) {
            vehicles->Close();
            MsgBox("This catagory is still in use. Action cancelled.", MsgButtons::Ok, MsgIcon::Critical, "Vehicles");
            return;
        }
        vehicles->Close();
        auto rs = SeekTable(db(), "voerkat", "PrimaryKey", {Value(m_CatID)});
        if (!rs->NoMatch())
            rs->Delete();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    LaaiKategorie();
    Frame2->hide();
    list1_Click();
}

void frmVoerk::SaveCategory() {
    const QString typed = txtKAT->text();
    if (vb::Trim(typed).isEmpty()) {
        MsgBox("Fill in vehicle category", MsgButtons::Ok, MsgIcon::None, "Vehicles");
        return;
    }
    const QString first = vb::Trim(typed).left(1);
    if (RegexFind("[^a-z0-9]", first, false) != "Failed") {
        MsgBox("Reserved character '" + first + "' not allowed.", MsgButtons::Ok, MsgIcon::Exclamation);
        return;
    }
    try {
        Hourglass hourglass;
        auto rs = SeekTable(db(), "voerkat", "PrimaryKey", {Value(m_CatID)});
        if (rs->NoMatch())
            rs->AddNew();
        else
            rs->Edit();
        rs->SetField("Desc", Value(typed.toUpper()));
        rs->SetField("Hours", Value(Opt1[1]->isChecked()));
        rs->Update();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    LaaiKategorie();
    Frame2->hide();
    list1_Click();
}

void frmVoerk::DeleteVehicle() {
    if (CurrentSession().SelectedID < 1) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::None, "Category");
        return;
    }
    const int id = CurrentRowId();
    if (id <= 0)
        return;
    if (MsgBox("Proceed to delete vehicle?", MsgButtons::YesNo, MsgIcon::Exclamation, "Vehicle Inventory") !=
        MsgResult::Yes)
        return;
    try {
        Hourglass hourglass;
        auto rs = SeekTable(db(), "voertuig", "PrimaryKey", {Value(id)});
        if (!rs->NoMatch())
            rs->Delete();
        rs->Close();
    } catch (const DbError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    list1_Click();
}

void frmVoerk::EditVehicle() {
    if (GetSelectedVehicle() < 1) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::None, "Category");
        return;
    }
    {
        frmVoerDet detail(this);
        detail.LoadDetail();
        detail.WysVoettuig();
        detail.exec();
    }
    Activate();
    list1_Click();
}

void frmVoerk::AddVehicle() {
    Session& s = CurrentSession();
    if (s.SelectedID < 1) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::None, "Category");
        return;
    }
    s.SelectedCatID = s.SelectedID;
    {
        frmVoerDet detail(this);
        detail.SetNewVehicleDefaults();
        detail.exec();
    }
    Activate();
    list1_Click();
}

void frmVoerk::OpenServiceHistory() {
    if (CurrentSession().SelectedID < 1) {
        MsgBox(kSelectCategoryFirst, MsgButtons::Ok, MsgIcon::None, "Category");
        Text1->setEnabled(false);
        return;
    }
    const int id = CurrentRowId();
    if (id > 0) {
        // The history screen belongs to the services; it reads the vehicle from the session on load.
        Session& s = CurrentSession();
        s.ServiceHistoryVehicleID = id;
        ShowScreen("frmVoerDiens", true);
        s.ServiceHistoryVehicleID = 0;
        Activate();
    }
}

void frmVoerk::lblPrint_Click() {
    if (MsgBox("Print View?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString title = "Vehicle Category";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, title));
        VehicleList_Header();
        VehicleList_Data();

        const QString last = QString::number(m_Rows + 2);
        xlSheet->Columns("a:a").SetColumnWidth(10);
        xlSheet->Columns("b:b").SetColumnWidth(12);
        xlSheet->Columns("c:e").SetColumnWidth(10);
        xlSheet->Columns("f:f").SetColumnWidth(8);
        int font = 2;
        xlSheet->Columns("a:h").SetFontName(REPORT_FontName(font));
        xlSheet->Columns("e:e").SetNumberFormat("### ### ##0.00");
        xlSheet->Columns("f:f").SetNumberFormat("### ### ###");
        // The readings come back as their own values, so that a reading held as text becomes a number.
        for (int row = 3; row <= m_Rows + 2; ++row) {
            XlRange cell = xlSheet->Cells(row, 6);
            cell.SetValue(cell.GetValue());
        }
        if (m_Rows > 0) {
            xlSheet->Range("b3", "b" + last).SetHorizontalAlignment(xl::Left);
            xlSheet->Range("e3", "f" + last).SetHorizontalAlignment(xl::Right);
            xlSheet->Range("h3", "h" + last).SetHorizontalAlignment(xl::Left);
            XlRange body = xlSheet->Range("a3", "h" + last);
            body.SetFontSize(8);
            body.SetVerticalAlignment(xl::Center);
            body.SetRowHeight(Value(18));
            xlSheet->Range("h3", "h" + last).SetRowHeight(Value(25));
        }
        REPORT_SaveReport(xlApp, "Vehicles", "Vehicle Category");
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in lblPrint_Click " + e.description());
    }
    REPORT_Workbook_Terminate();
}

void frmVoerk::VehicleList_Header() {
    xlRow = 1;
    const QString title = "Vehicles In Selected Category " + txtKAT->text();
    REPxlFmt(xlSheet, "a1", "h1", Value(title), 2, 15, true, false, false, true, false, "", 1, xl::Center, xl::Center,
             2, 0, Value(18));
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "h1", 0);
    ++xlRow;
    const char* const headings[8] = {"Category",       "Make",       "Model",           "Registration #",
                                     "Purchase Price", "Kilometers", "Licence Renewal", "Service Due"};
    for (int c = 0; c < 8; ++c) {
        const QString cell = COLUMN_Letter(c, true) + QString::number(xlRow);
        REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 8, true, false, false, false, true, "", 1, xl::Center,
                 xl::Center, 2, 0, Value(c == 7 ? 25 : 18));
    }
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "h2", 1);
    ++xlRow;
}

void frmVoerk::VehicleList_Data() {
    auto rs = db().OpenRecordset(BuildVehicleSql(true, false, false));
    m_Rows = CountRecords(*rs);
    if (m_Rows > 0)
        xlSheet->Range("a" + QString::number(xlRow)).CopyFromRecordset(*rs);
}
