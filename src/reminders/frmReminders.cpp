#include "frmReminders.h"

#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "ReminderGrid.h"
#include "ReminderSql.h"
#include "ReportEngine.h"
#include "Session.h"
#include "Vb.h"

#include <QCoreApplication>
#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

constexpr int kMonthsMin = 0;
constexpr int kMonthsMax = 24;
constexpr int kMonthsStart = 7;

bool IsPdp() {
    return CurrentSession().ReminderKind == "pdp";
}

short MonthsOf(const QLineEdit* field) {
    return static_cast<short>(vb::CInt(Value(field->text())));
}

} // namespace

frmReminders::frmReminders(QWidget* parent) : QDialog(parent) {
    setObjectName("frmReminders");
    setWindowTitle("Reminders");
    buildScreen();
    Form_Load();
}

void frmReminders::buildScreen() {
    auto* top = new QVBoxLayout(this);

    fraDue = new QGroupBox(this);
    auto* due = new QGridLayout(fraDue);
    lblDue = new QLabel("Licence Expires", fraDue);
    DueDate = new QDateEdit(fraDue);
    DueDate->setCalendarPopup(true);
    DueDate->setDisplayFormat("yyyy/MM/dd");
    due->addWidget(lblDue, 0, 0);
    due->addWidget(DueDate, 1, 0);

    Label1[0] = new QLabel("Months Before", fraDue);
    Label1[1] = new QLabel("Months After", fraDue);
    txtFrom = new QLineEdit(QString::number(kMonthsStart), fraDue);
    txtTo = new QLineEdit(QString::number(kMonthsStart), fraDue);
    UpDownFrom = new UpDown(txtFrom, kMonthsMin, kMonthsMax, fraDue);
    UpDownTo = new UpDown(txtTo, kMonthsMin, kMonthsMax, fraDue);
    int col = 1;
    for (auto [label, field, updown] : {std::tuple{Label1[0], txtFrom, UpDownFrom}, {Label1[1], txtTo, UpDownTo}}) {
        field->setMaximumWidth(50);
        AttachDigitsFilter(field, false);
        due->addWidget(label, 0, col, 1, 2);
        due->addWidget(field, 1, col);
        due->addWidget(updown, 1, col + 1, Qt::AlignLeft);
        col += 2;
    }
    imgRun = new QToolButton(fraDue);
    imgRun->setIcon(style()->standardIcon(QStyle::SP_BrowserReload));
    imgRun->setIconSize(QSize(24, 24));
    imgRun->setToolTip("Run");
    due->addWidget(imgRun, 1, col);
    due->setColumnStretch(col + 1, 1);

    fraBoth = new QGroupBox("Select", this);
    auto* both = new QHBoxLayout(fraBoth);
    const char* captions[3] = {"Both", "Licence Due Date", "Service Due Date"};
    for (int i = 0; i < 3; ++i) {
        optBoth[i] = new QRadioButton(captions[i], fraBoth);
        both->addWidget(optBoth[i]);
        connect(optBoth[i], &QRadioButton::clicked, this, [this, i] { optBoth_Click(i); });
    }
    both->addStretch();

    auto* head = new QHBoxLayout;
    head->addWidget(fraDue, 3);
    head->addWidget(fraBoth, 2);
    top->addLayout(head);

    flg = new FlexGrid(this);
    top->addWidget(flg, 1);

    auto* buttons = new QHBoxLayout;
    lblPrint = new QPushButton(" &Print", this);
    lblPrint->setToolTip("Recalculate All Vechile Kilometers");
    lblcmd[0] = new QPushButton("&Close", this);
    buttons->addStretch();
    buttons->addWidget(lblPrint);
    buttons->addWidget(lblcmd[0]);
    top->addLayout(buttons);

    connect(imgRun, &QToolButton::clicked, this, [this] { imgRun_Click(); });
    connect(lblPrint, &QPushButton::clicked, this, [this] { lblPrint_Click(); });
    connect(lblcmd[0], &QPushButton::clicked, this, [this] { lblcmd_Click(0); });
    fraDue->setVisible(false);
    resize(760, 520);
}

void frmReminders::Form_Load() {
    DueDate->setDate(QDate::fromString(QDate::currentDate().toString("yyyy/MM/dd"), "yyyy/MM/dd"));
    txtFrom->setToolTip("Max Days " + QString::number(UpDownFrom->Max()));
    txtTo->setToolTip("Max Days " + QString::number(UpDownTo->Max()));
    if (IsPdp()) {
        optBoth[1]->setText("Pdp renewal Date");
        lblDue->setText("Pdp renewal Date");
        fraBoth->setVisible(false);
    }
    FirstReminder();
}

void frmReminders::FirstReminder() {
    Database& store = db();
    m_Today = QDate::currentDate().toString("yyyy/MM/dd");
    const auto hasRows = [&store](const QString& sql) {
        auto rs = store.OpenRecordset(sql, RecordsetType::Snapshot);
        return !rs->Eof();
    };
    const QString kind = CurrentSession().ReminderKind;
    if (kind == "vehicle") {
        if (!hasRows(BuildReminderSql(m_Today, 7, 7, true, true, false))) {
            MsgBox("No Vehicle reminders for '" + m_Today + "'");
            return;
        }
        const bool licenceRows = hasRows(BuildReminderSql(m_Today, 7, 7, false, true, false));
        const bool serviceRows = hasRows(BuildReminderSql(m_Today, 7, 7, false, false, false));
        m_BothFound = licenceRows && serviceRows;
        SetOption(licenceRows ? 1 : 2);
    } else if (kind == "pdp") {
        if (!hasRows(BuildReminderSql(m_Today, 7, 7, true, true, false))) {
            MsgBox("No Pdp reminders for '" + m_Today + "'");
            return;
        }
        SetOption(1);
    }
}

void frmReminders::SetOption(int index) {
    if (optBoth[index]->isChecked())
        return;
    optBoth[index]->setChecked(true);
    optBoth_Click(index);
}

int frmReminders::CheckedOption() const {
    for (int i = 0; i < 3; ++i)
        if (optBoth[i]->isChecked())
            return i;
    return -1;
}

void frmReminders::optBoth_Click(int /*index*/) {
    lblDue->setText(DueColumn(true));
    LaaiReminders();
    fraDue->setVisible(true);
}

QString frmReminders::DueLabelOf(int option) const {
    if (option == 1)
        return "Licence Renewal";
    if (option == 2)
        return "Service Due Date";
    return QString();
}

QString frmReminders::DueColumn(bool wantLabel) const {
    const int option = CheckedOption();
    if (wantLabel)
        return DueLabelOf(option);
    if (option == 1)
        return "licenceduedate";
    if (option == 2)
        return "serviceduedate";
    return QString();
}

void frmReminders::LaaiReminders() {
    try {
        const QString sql = BuildReminderSql(DueDate->date().toString("yyyy/MM/dd"), MonthsOf(txtFrom), MonthsOf(txtTo),
                                             false, optBoth[1]->isChecked(), false);
        auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
        flg->setVisible(false);
        flg->Clear();
        flg->SetRows(1);
        ReminderHeader();
        const bool pdp = IsPdp();
        const QString dueColumn = DueColumn(false);
        int number = 0;
        for (; !rs->Eof(); rs->MoveNext()) {
            QStringList cells;
            if (pdp)
                cells << rs->Field("ID").toString() << rs->Field("surname").toString()
                      << rs->Field("firstname").toString() << rs->Field("pdpdate").toString();
            else
                cells << QString::number(++number) << rs->Field("Maak").toString() << rs->Field("Model").toString()
                      << rs->Field("RegNr").toString()
                      << (dueColumn.isEmpty() ? QString() : rs->Field(dueColumn).toString());
            flg->AddItem(cells.join('\t'));
            QCoreApplication::processEvents();
        }
        if (flg->Rows() == 1)
            flg->SetRows(2); // the heading stands over one empty row
        ColourRows(*flg);
        flg->setVisible(true);
    } catch (const NumberedError& e) {
        flg->setVisible(true);
        MsgBox("Error in Fillgrid. Please contact Quillmere Data " + QString::number(e.number()) + " - " +
                   e.description(),
               MsgButtons::Ok, MsgIcon::Exclamation, "Error in Fillgrid");
    }
}

void frmReminders::ReminderHeader() {
    if (IsPdp()) {
        flg->SetCols(4);
        flg->SetFormatString("Id Reference|Surname|First Name|" + DueColumn(true));
        const int widths[4] = {2000, 2600, 2600, 1700};
        for (int c = 0; c < 4; ++c)
            flg->SetColWidth(c, widths[c]);
        flg->SetColAlignment(0, flexAlignLeftCenter);
    } else {
        flg->SetCols(5);
        flg->SetFormatString("id|Make|Model|Registration #|" + DueColumn(true));
        const int widths[5] = {600, 2400, 2400, 1800, 1700};
        for (int c = 0; c < 5; ++c)
            flg->SetColWidth(c, widths[c]);
    }
}

void frmReminders::imgRun_Click() {
    for (auto [field, updown] : {std::pair{txtFrom, UpDownFrom}, {txtTo, UpDownTo}}) {
        bool ok = false;
        const int value = field->text().toInt(&ok);
        if (!ok || value < updown->Min() || value > updown->Max())
            field->setText(QString::number(updown->Min()));
    }
    LaaiReminders();
}

void frmReminders::lblPrint_Click() {
    m_Title = IsPdp() ? "PDP" : "Vehicle";
    if (MsgBox("Print Reminders?", MsgButtons::YesNo) != MsgResult::Yes)
        return;
    Hourglass hourglass;
    try {
        REPORT_Workbook_Initialise(true);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        QString name = m_Title + " Reminders";
        xlSheet->SetName(REPORT_SafeSheetName(xlBook, name));
        xlRow = 1;
        QList<int> options;
        if (m_BothFound)
            options << 1 << 2;
        else
            options << CheckedOption();
        for (int option : options) {
            Reminders_Header(option);
            Reminders_Data(option);
            ++xlRow; // a blank row between the lists
        }
        int font = 2;
        xlSheet->Columns("a:d").SetFontName(REPORT_FontName(font));
        xlSheet->Columns("a:b").SetColumnWidth(22);
        xlSheet->Columns("c:c").SetColumnWidth(18);
        xlSheet->Columns("d:d").SetColumnWidth(16);
        m_savedWorkbook = REPORT_SaveReport(xlApp, "Features", m_Title);
        REPORT_HideExcel(xlApp, false);
    } catch (const NumberedError& e) {
        hourglass.restore();
        MsgBox("ERROR in lblPrint_Click " + e.description());
    }
    REPORT_Workbook_Terminate();
}

void frmReminders::Reminders_Header(int option) {
    const QString row = QString::number(xlRow);
    REPxlFmt(xlSheet, "a" + row, "d" + row, Value(m_Title + " Reminders"), 2, 12, true, false, false, true, false, "",
             1, xl::Center, xl::Center, 2, 0, Value(18));
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a" + row, "d" + row, 0);
    ++xlRow;
    QStringList headings;
    if (IsPdp())
        headings << "Identification Ref"
                 << "Surname"
                 << "First Name" << DueLabelOf(option);
    else
        headings << "Make"
                 << "Model"
                 << "Registration #" << DueLabelOf(option);
    for (int c = 0; c < 4; ++c) {
        const QString cell = COLUMN_Letter(c, true) + QString::number(xlRow);
        REPxlFmt(xlSheet, cell, cell, Value(headings[c]), 2, 9, true, false, false, false, true, "", 1, xl::Center,
                 xl::Center, 2, 0, Value(18));
    }
    REPORT_ToExcel_ApplyCustomformat(xlSheet, "a" + QString::number(xlRow), "d" + QString::number(xlRow), 1);
    ++xlRow;
}

void frmReminders::Reminders_Data(int option) {
    const QString sql = BuildReminderSql(DueDate->date().toString("yyyy/MM/dd"), MonthsOf(txtFrom), MonthsOf(txtTo),
                                         false, option == 1, true);
    auto rs = db().OpenRecordset(sql, RecordsetType::Snapshot);
    const int rows = xlSheet->Range("a" + QString::number(xlRow)).CopyFromRecordset(*rs);
    xlRow += rows;
}

void frmReminders::lblcmd_Click(int index) {
    if (index == 0)
        close();
}
