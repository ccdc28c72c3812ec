#include "frmMain.h"

#include "Database.h"
#include "Hourglass.h"
#include "QtMessageService.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "StoreStartup.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDateEdit>
#include <QFrame>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLocale>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QPointer>
#include <QShortcut>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <optional>

namespace {

QPointer<frmMain>& mainWindowPointer() {
    static QPointer<frmMain> window;
    return window;
}

const QColor kLabelRest(0, 0, 128);
const QColor kLabelHover(192, 0, 0);

void setLabelColour(QLabel* label, const QColor& colour) {
    QPalette p = label->palette();
    p.setColor(QPalette::WindowText, colour);
    label->setPalette(p);
}

// One row of the tree's dispatch: the first row whose text matches the clicked entry acts.
struct Dispatch {
    const char* text;
    bool closeAll;
    std::optional<const char*> reportChoice;
    std::optional<const char*> reminderKind;
    std::optional<int> equipmentMode;
    const char* screen;
    bool modal;
};

const Dispatch kDispatch[] = {
    {"Vehicle Reminders", false, {}, "vehicle", {}, "frmReminders", true},
    {"Employee PDP", false, {}, "pdp", {}, "frmPDP", true},
    {"Rebates", false, {}, {}, {}, "frmRebate", true},
    {"Vehicle List", true, "Vehicle List", {}, {}, "frmVerslae", false},
    {"Services", true, "Vehicle Services", {}, {}, "frmVerslae", false},
    {"Fuel Consumption", true, "Fuel Consumption", {}, {}, "frmVerslae", false},
    {"Services Allocate", true, {}, {}, {}, "frmVoerDiens", true},
    {"Add Service", true, {}, {}, {}, "frmServAdd", true},
    {"Fuel Allocations", true, {}, {}, {}, "frmFuel", true},
    {"Fuel Purchases", true, {}, {}, {}, "frmTank", false},
    {"Backup", false, {}, {}, {}, "frmBackup", false},
    {"Fuel Stock", true, {}, {}, {}, "frmTankStock", true},
    {"Fuel Usage", true, "Fuel Usage", {}, {}, "frmVerslae", false},
    {"Fuel Available", true, "Fuel Available", {}, {}, "frmVerslae", false},
    {"Fuel Stock Take", true, "Fuel Stock Take", {}, {}, "frmVerslae", false},
    {"Fuel Purchase", true, "Fuel Purchase", {}, {}, "frmVerslae", false},
    {"Detail per Tank", true, "Detail per Fuel Tank", {}, {}, "frmVerslae", false},
    {"Summary per Tank", true, "Summary per Fuel Tank", {}, {}, "frmVerslae", false},
    {"Stock Take", true, {}, {}, {}, "frmEquipmentStockTake", false},
    {"Equipment", true, "Equipment List", {}, 0, "frmEquipment", false},
    {"Stock Book Out", true, "Book Out Equipment", {}, 2, "frmEquipment", false},
    {"Stock Book In", true, "Book In Equipment", {}, 1, "frmEquipmentBookedout", false},
};

struct Node {
    const char* text;
    const char* key;
    int parent; // 1-based node number of the parent, 0 for a root
};

// Each section's tree, entries in the order they are added; parents by node number.
std::vector<Node> sectionTree(int labelIndex) {
    switch (labelIndex) {
    case 0:
        return {{"Setup", nullptr, 0}, {"Owner", nullptr, 1}, {"Backup", nullptr, 1}};
    case 2:
        return {{"Vehicle & Fuel", nullptr, 0},
                {"Add Service", "Add Service1", 1},
                {"Services Allocate", "Services Allocate1", 1},
                {"Fuel Purchases", nullptr, 1},
                {"Fuel Allocations", nullptr, 1},
                {"Fuel Stock", nullptr, 1}};
    case 3:
        return {{"Equipment", nullptr, 0},
                {"Stock Take", nullptr, 1},
                {"Stock Book Out", nullptr, 1},
                {"Stock Book In", nullptr, 1}};
    case 4:
        return {{"Stock", nullptr, 0}};
    case 5:
        return {{"Vehicles", nullptr, 0},
                {"Vehicle List", "List1", 1},
                {"Services", "Services1", 1},
                {"Fuel Consumption", "Fuel1", 1},
                {"Fuel Tanks", nullptr, 0},
                {"Fuel Usage", "Fuel Stock2", 5},
                {"Fuel Available", "Fuel Available", 5},
                {"Fuel Purchase", "Fuel Purchase", 5},
                {"Fuel Stock Take", "Fuel St", 5},
                {"Summary", nullptr, 0},
                {"Detail per Tank", "Detail per Tank", 10},
                {"Summary per Tank", "Summary per Tank", 10},
                {"Fuel Usage", nullptr, 0},
                {"Litres Per Vehicle", "lpv", 13},
                {"Litres Per Activity", "lpa", 13},
                {"Litres Per Driver", "lpd", 13},
                {"Litres Per Activity/Vehicle", "lpav", 13},
                {"Litres Used", "lu", 13},
                {"Litres Per Driver/Vehicle", "lpdv", 13},
                {"Detailed Veh. Fuel Usage", "dvfu", 13},
                {"Monthly Veh. Fuel Usage", "mvfu", 13},
                {"Vehicle Fuel Log Sheet", "vfls", 13},
                {"Rebate Applicable", "ra", 13},
                {"Pump Readings", "dvpr", 13}};
    case 7:
        return {{"Features", nullptr, 0},
                {"Vehicle Reminders", "FeaturesList", 1},
                {"Employee PDP", "FeaturesPDP", 1},
                {"Rebates", "FeaturesRebate", 1}};
    default:
        return {};
    }
}

// The original's platform ends the process after its run-time error box; here the box, then a clean end.
void EndWithRunTimeError(int number, const QString& description) {
    ShowRunTimeError(number, description);
    if (frmMain* main = MainWindow())
        main->close();
    QCoreApplication::exit(1);
}

} // namespace

frmMain* MainWindow() {
    return mainWindowPointer().data();
}

// ---- section labels ----

SectionLabel::SectionLabel(int index, const QString& caption, QWidget* parent)
    : QLabel(caption, parent), m_index(index) {
    setObjectName(QStringLiteral("Label1_%1").arg(index));
    setTextFormat(Qt::PlainText);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    setMargin(4);
    QFont f = font();
    f.setBold(true);
    f.setPointSize(f.pointSize() + 1);
    setFont(f);
    // The "&" marks the access key, as on the original's labels: its letter is underlined.
    const int amp = caption.indexOf('&');
    if (amp >= 0 && amp + 1 < caption.length()) {
        setTextFormat(Qt::RichText);
        setText(caption.left(amp).toHtmlEscaped() + "<u>" + caption.mid(amp + 1, 1).toHtmlEscaped() + "</u>" +
                caption.mid(amp + 2).toHtmlEscaped());
    }
}

void SectionLabel::mouseReleaseEvent(QMouseEvent* event) {
    QLabel::mouseReleaseEvent(event);
    if (rect().contains(event->position().toPoint()))
        emit clicked(m_index);
}

void SectionLabel::enterEvent(QEnterEvent* event) {
    QLabel::enterEvent(event);
    emit hovered(m_index);
}

void SectionLabel::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space) {
        emit clicked(m_index);
        return;
    }
    QLabel::keyPressEvent(event);
}

void SectionLabel::focusInEvent(QFocusEvent* event) {
    QLabel::focusInEvent(event);
    QPalette p = palette();
    p.setColor(QPalette::Window, QColor(210, 222, 240));
    setPalette(p);
    setAutoFillBackground(true);
}

void SectionLabel::focusOutEvent(QFocusEvent* event) {
    QLabel::focusOutEvent(event);
    setAutoFillBackground(false);
}

// ---- main window ----

frmMain::frmMain(QWidget* parent) : QMainWindow(parent) {
    setObjectName("frmMain");
    setWindowTitle(kMainWindowTitle);
    mainWindowPointer() = this;
    buildLayout();
}

frmMain::~frmMain() {
    SetMdiArea(nullptr);
    if (mainWindowPointer() == this)
        mainWindowPointer() = nullptr;
}

void frmMain::buildLayout() {
    mdiArea = new QMdiArea(this);
    mdiArea->setObjectName("mdiArea");
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    SetMdiArea(mdiArea);

    auto* side = new QWidget(this);
    side->setObjectName("sidePanel");
    side->setMinimumWidth(230);
    side->setMaximumWidth(300);
    auto* sideLayout = new QVBoxLayout(side);
    sideLayout->setContentsMargins(6, 6, 6, 6);

    Label3 = new QLabel(side);
    Label3->setObjectName("Label3");
    Label3->setAlignment(Qt::AlignCenter);
    sideLayout->addWidget(Label3);

    // The labels of sections that are no longer offered lie on a frame that stays hidden.
    fraUNUSED = new QFrame(side);
    fraUNUSED->setObjectName("fraUNUSED");
    auto* unusedLayout = new QVBoxLayout(fraUNUSED);
    fraUNUSED->hide();

    const char* captions[8] = {"&Setup", "&Location", "&Vehicles", "&Equipment",
                               "S&tock", "&Reports",  "&Exit",     "Features"};
    for (int i = 0; i < 8; ++i) {
        const bool unused = i == 1 || i == 4;
        Label1[i] = new SectionLabel(i, captions[i], unused ? static_cast<QWidget*>(fraUNUSED) : side);
        connect(Label1[i], &SectionLabel::clicked, this, &frmMain::Label1_Click);
        connect(Label1[i], &SectionLabel::hovered, this, [this](int index) {
            LabelKleure();
            setLabelColour(Label1[index], kLabelHover);
        });
        if (unused) {
            unusedLayout->addWidget(Label1[i]);
        } else {
            sideLayout->addWidget(Label1[i]);
            const QKeySequence access = QKeySequence::mnemonic(captions[i]);
            if (!access.isEmpty())
                connect(new QShortcut(access, this), &QShortcut::activated, this, [this, i] { Label1_Click(i); });
        }
    }
    sideLayout->addWidget(fraUNUSED);

    Picture2 = new QWidget(side);
    Picture2->setObjectName("Picture2");
    auto* pictureLayout = new QVBoxLayout(Picture2);
    pictureLayout->setContentsMargins(0, 0, 0, 0);
    TreeView1 = new QTreeWidget(Picture2);
    TreeView1->setObjectName("TreeView1");
    TreeView1->setHeaderHidden(true);
    TreeView1->setColumnCount(1);
    TreeView1->setItemsExpandable(false); // a click opens and closes a node, as the original's tree does
    TreeView1->setExpandsOnDoubleClick(false);
    TreeView1->setRootIsDecorated(true);
    TreeView1->setMinimumHeight(220);
    pictureLayout->addWidget(TreeView1);
    sideLayout->addWidget(Picture2, 1);

    auto* closedCaption = new QLabel("Closed Date", side);
    closedCaption->setObjectName("lblCDate");
    dtpCDate = new QDateEdit(side);
    dtpCDate->setObjectName("dtpCDate");
    dtpCDate->setDisplayFormat("dd/MM/yyyy");
    dtpCDate->setCalendarPopup(true);
    dtpCDate->setDate(QDate(2000, 1, 1));
    closedCaption->setBuddy(dtpCDate);
    sideLayout->addWidget(closedCaption);
    sideLayout->addWidget(dtpCDate);

    connect(dtpCDate, &QDateEdit::dateChanged, this, [this] { dtpCDate_Change(); });
    connect(TreeView1, &QTreeWidget::itemClicked, this, [this](QTreeWidgetItem* node) { TreeView1_NodeClick(node); });
    // The release of a button anywhere in the tree acts on the last node clicked, once the tree has taken
    // the click itself.
    TreeView1->viewport()->installEventFilter(this);
    // The keyboard reaches the tree as well: Enter on an entry acts as a click on it.
    TreeView1->installEventFilter(this);

    auto* central = new QWidget(this);
    auto* centralLayout = new QHBoxLayout(central);
    centralLayout->setContentsMargins(0, 0, 0, 0);
    centralLayout->setSpacing(0);
    centralLayout->addWidget(side);
    centralLayout->addWidget(mdiArea, 1);
    setCentralWidget(central);

    setTabOrder(Label1[0], Label1[2]);
    setTabOrder(Label1[2], Label1[3]);
    setTabOrder(Label1[3], Label1[5]);
    setTabOrder(Label1[5], Label1[6]);
    setTabOrder(Label1[6], Label1[7]);
    setTabOrder(Label1[7], TreeView1);
    setTabOrder(TreeView1, dtpCDate);
    LabelKleure();
    resize(1280, 800);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (watched == TreeView1 && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if ((key == Qt::Key_Return || key == Qt::Key_Enter) && TreeView1->currentItem()) {
            TreeView1_NodeClick(TreeView1->currentItem());
            TreeView1_MouseUp();
            return true;
        }
    }
    if (watched == TreeView1->viewport() && event->type() == QEvent::MouseButtonRelease)
        QMetaObject::invokeMethod(this, &frmMain::TreeView1_MouseUp, Qt::QueuedConnection);
    return QMainWindow::eventFilter(watched, event);
}

bool frmMain::Startup() {
    Session& s = CurrentSession();
    m_loading = true;
    try {
        if (!AcquireInstanceLock(s)) {
            MsgBox("The Orvel Module is already open!", MsgButtons::Ok, MsgIcon::Critical);
            m_loading = false;
            return false;
        }
        Label3->setText(QLocale::c().toString(QDateTime::currentDateTime(), "MMMM d, yyyy"));
        OpenSessionStore(s);
        CreateVersionTable(*s.db);
        CheckVersion(*s.db);
        Owner();
        s.ClosedDate = GetClosedDate(*s.db);
        {
            const QSignalBlocker block(dtpCDate); // showing the stored date is no change to save
            dtpCDate->setDate(s.ClosedDate.date());
        }
        RunStartupSteps(*s.db);
        TodayText = QDate::currentDate().toString("yyyy/MM/dd");
        if (CurrentReminderSqlBuilder()) {
            s.ReminderKind = "vehicle";
            CheckReminders();
            s.ReminderKind = "pdp";
            CheckReminders();
        }
        m_loading = false;
        Label1_Click(2);
    } catch (const NumberedError& e) {
        m_loading = false;
        ShowRunTimeError(e.number(), e.description());
        return false;
    } catch (const std::exception& e) {
        m_loading = false;
        ShowRunTimeError(0, QString::fromLocal8Bit(e.what()));
        return false;
    }
    return true;
}

void frmMain::Owner() {
    Hourglass hourglass;
    OwnerProbe(db());
}

void frmMain::CheckReminders() {
    const ReminderSqlBuilder& build = CurrentReminderSqlBuilder();
    if (!build)
        return;
    ReminderSql = build(TodayText, 0, 0, true, true, false);
    bool anyDue = false;
    {
        auto rs = db().OpenRecordset(ReminderSql, RecordsetType::Snapshot);
        anyDue = !rs->Eof();
    }
    if (anyDue)
        ShowScreen("frmReminders", true);
}

void frmMain::UnloadChildForms() {
    for (const QString& name : OpenForms())
        if (name.compare("frmMain", Qt::CaseInsensitive) != 0)
            UnloadForm(name);
}

void frmMain::closeForms(const QStringList& names) {
    for (const QString& name : names)
        UnloadForm(name);
}

void frmMain::LabelKleure() {
    for (SectionLabel* label : Label1)
        setLabelColour(label, kLabelRest);
    setLabelColour(Label1[0], kLabelRest);
}

void frmMain::showSectionTree(int index) {
    TreeView1->clear();
    SelectedNode = nullptr;
    std::vector<QTreeWidgetItem*> nodes;
    for (const Node& n : sectionTree(index)) {
        QTreeWidgetItem* item =
            n.parent == 0 ? new QTreeWidgetItem(TreeView1) : new QTreeWidgetItem(nodes.at(n.parent - 1));
        item->setText(0, n.text);
        if (n.key)
            item->setData(0, Qt::UserRole, QString::fromLatin1(n.key));
        nodes.push_back(item);
    }
}

void frmMain::Label1_Click(int index) {
    Session& s = CurrentSession();
    switch (index) {
    case 0:
        Picture2->setVisible(true);
        s.CurrentSection = 1;
        closeForms({"frmTank", "frmVoerk", "frmVKat", "frmTank", "frmVerslae"});
        ShowScreen("frmowner", false);
        showSectionTree(0);
        break;
    case 1:
        break; // the label lies on the hidden frame
    case 2:
        Picture2->setVisible(true);
        s.CurrentSection = 3;
        UnloadChildForms();
        ShowScreen("frmVoerk", false);
        showSectionTree(2);
        break;
    case 3:
        s.CurrentSection = 4;
        UnloadChildForms();
        s.ReportChoice = "Equipment List";
        ShowScreen("frmEquipment", false);
        showSectionTree(3);
        break;
    case 4:
        Picture2->setVisible(true);
        s.CurrentSection = 5;
        closeForms({"frmowner", "frmVoerk", "frmEquipment", "frmTank", "frmVerslae"});
        ShowScreen("frmVKat", false);
        showSectionTree(4);
        break;
    case 5:
        s.CurrentSection = 6;
        UnloadChildForms();
        s.ReportChoice = "Vehicle List";
        ShowScreen("frmVerslae", false);
        showSectionTree(5);
        break;
    case 6:
        s.CurrentSection = 7;
        close();
        break;
    case 7:
        UnloadChildForms();
        showSectionTree(7);
        break;
    default:
        break;
    }
}

void frmMain::TreeView1_NodeClick(QTreeWidgetItem* node) {
    if (!node)
        return;
    node->setExpanded(!node->isExpanded());
    SelectedNode = node;
}

void frmMain::TreeView1_MouseUp() {
    TreeSelection();
}

bool frmMain::ClickNode(const QString& text) {
    const auto found = TreeView1->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    if (found.isEmpty())
        return false;
    TreeView1->setCurrentItem(found.first());
    TreeView1_NodeClick(found.first());
    TreeView1_MouseUp();
    return true;
}

void frmMain::TreeSelection() {
    if (!SelectedNode)
        return;
    Session& s = CurrentSession();
    const QString text = SelectedNode->text(0);
    const Dispatch* row = nullptr;
    for (const Dispatch& d : kDispatch)
        if (text == QLatin1String(d.text)) {
            row = &d;
            break;
        }
    if (!row) {
        // The children of the root "Fuel Usage" open the report screen on their own text.
        const QTreeWidgetItem* parent = SelectedNode->parent();
        if (parent && !parent->parent() && parent->text(0) == "Fuel Usage") {
            UnloadChildForms();
            s.ReportChoice = text;
            ShowScreen("frmVerslae", false);
        }
        return;
    }
    if (row->closeAll)
        UnloadChildForms();
    if (row->reportChoice)
        s.ReportChoice = *row->reportChoice;
    if (row->reminderKind)
        s.ReminderKind = *row->reminderKind;
    if (row->equipmentMode)
        s.EquipmentMode = *row->equipmentMode;
    ShowScreen(row->screen, row->modal);
}

void frmMain::dtpCDate_Change() {
    if (m_loading)
        return;
    Session& s = CurrentSession();
    if (!s.db)
        return;
    // Through "dd/mm/yyyy" and back: the closing date carries no time.
    s.ClosedDate = QDateTime(QDate::fromString(dtpCDate->date().toString("dd/MM/yyyy"), "dd/MM/yyyy"), QTime(0, 0));
    try {
        SaveClosedDate(s);
    } catch (const NumberedError& e) {
        EndWithRunTimeError(e.number(), e.description());
    }
}

void frmMain::runUnloadSteps() {
    if (m_unloaded)
        return;
    m_unloaded = true;
    Session& s = CurrentSession();
    if (s.db)
        RepairAtExit(s);
    QCoreApplication::quit();
}

void frmMain::closeEvent(QCloseEvent* event) {
    // The children go first; one that refuses keeps the run going, as an MDI parent's unload does.
    mdiArea->closeAllSubWindows();
    if (!mdiArea->subWindowList().isEmpty()) {
        event->ignore();
        return;
    }
    UnloadChildForms();
    runUnloadSteps();
    event->accept();
}
