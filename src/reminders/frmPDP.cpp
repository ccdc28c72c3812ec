#include "frmPDP.h"

#include "FlexGrid.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "ReminderGrid.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "Vb.h"

#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QVBoxLayout>

namespace {

constexpr int kFieldWidth = 25; // the width of the permit table's text columns

// A grid cell read as the screen's 16-bit id: an id beyond that range picks nothing.
short ShortIdOf(const QString& text) {
    try {
        return static_cast<short>(vb::CInt(Value(text.isEmpty() ? QString("0") : text)));
    } catch (const VbError&) {
        return 0;
    }
}

} // namespace

QString PdpSql() {
    return QString("SELECT ") + " [pdpid]" + ",[id]" + ",[surname]" + ",[firstname]" + ", [pdpdate]" + "From [pdp]";
}

frmPDP::frmPDP(QWidget* parent) : QDialog(parent) {
    setObjectName("frmPDP");
    setWindowTitle("Professional Driving Permit (PrDP)");
    buildScreen();
    LaaiPdp();
    FraPDP->setVisible(false);
}

void frmPDP::buildScreen() {
    auto* top = new QHBoxLayout(this);
    auto* left = new QVBoxLayout;
    flx1 = new FlexGrid(this);
    left->addWidget(flx1, 1);

    FraPDP = new QGroupBox("PDP Maintenance", this);
    auto* form = new QGridLayout(FraPDP);
    txtId = new QLineEdit(FraPDP);
    txtId->setToolTip("Any form of identification");
    txtSurname = new QLineEdit(FraPDP);
    txtFirstname = new QLineEdit(FraPDP);
    dtpPdPdate = new QDateEdit(FraPDP);
    dtpPdPdate->setCalendarPopup(true);
    dtpPdPdate->setDisplayFormat("yyyy/MM/dd");
    int row = 0;
    for (auto [caption, field] : {std::pair<const char*, QWidget*>{"Id Ref.", txtId},
                                  {"Surname", txtSurname},
                                  {"First Name", txtFirstname},
                                  {"Date", dtpPdPdate}}) {
        auto* label = new QLabel(caption, FraPDP);
        label->setBuddy(field);
        form->addWidget(label, row, 0);
        form->addWidget(field, row, 1);
        ++row;
    }
    for (QLineEdit* field : {txtId, txtSurname, txtFirstname})
        field->setMaxLength(kFieldWidth);
    const char* captions[6] = {"&Add", " &Edit", "&Delete", "&Close", "&Cancel", "&Save && Close"};
    for (int i = 0; i < 6; ++i) {
        lblcmd[i] = new QPushButton(captions[i], this);
        connect(lblcmd[i], &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
    }
    auto* frameButtons = new QHBoxLayout;
    frameButtons->addStretch();
    frameButtons->addWidget(lblcmd[4]);
    frameButtons->addWidget(lblcmd[5]);
    form->addLayout(frameButtons, row, 0, 1, 2);
    left->addWidget(FraPDP);
    top->addLayout(left, 1);

    auto* right = new QVBoxLayout;
    Image1 = new QLabel(this);
    Image1->setPixmap(style()->standardIcon(QStyle::SP_FileDialogDetailedView).pixmap(48, 48));
    Image1->setAlignment(Qt::AlignCenter);
    right->addWidget(Image1);
    for (int i = 0; i < 4; ++i)
        right->addWidget(lblcmd[i]);
    right->addSpacing(16);
    cmdViewReminders = new QPushButton("&View Reminders", this);
    right->addWidget(cmdViewReminders);
    right->addStretch();
    top->addLayout(right);

    connect(cmdViewReminders, &QPushButton::clicked, this, [this] { cmdViewReminders_Click(); });
    connect(flx1, &QTableWidget::cellClicked, this, [this] { flx1_Click(); });
    connect(flx1, &QTableWidget::cellDoubleClicked, this, [this] { lblcmd_Click(1); });
    resize(760, 520);
}

void frmPDP::LaaiPdp() {
    flx1->Clear();
    flx1->SetRows(1);
    flx1->SetCols(5);
    flx1->SetFormatString("pdpid|Id Ref.|Surname|First Name|Date");
    auto rs = db().OpenRecordset(PdpSql(), RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext()) {
        QStringList cells;
        cells << rs->Field("pDpid").toString() << rs->Field("ID").toString() << rs->Field("surname").toString()
              << rs->Field("firstname").toString() << rs->Field("pdpdate").toString();
        flx1->AddItem(cells.join('\t'));
    }
    if (flx1->Rows() == 1)
        flx1->SetRows(2); // the heading stands over one empty row
    ColourRows(*flx1);
    const int widths[5] = {0, 1900, 2400, 2400, 1500};
    for (int c = 0; c < 5; ++c)
        flx1->SetColWidth(c, widths[c]);
    flx1->SetColAlignment(1, flexAlignLeftCenter); // identification is text, whatever its digits
    flx1->setColumnHidden(0, true);
}

void frmPDP::ClearPdp() {
    dtpPdPdate->setDate(QDate::fromString(QDate::currentDate().toString("yyyy/MM/dd"), "yyyy/MM/dd"));
    txtSurname->setText("");
    txtFirstname->setText("");
    txtId->setText("");
}

int frmPDP::PickPdp() {
    m_PdpID = ShortIdOf(flx1->TextMatrix(flx1->Row(), 0));
    m_Row = static_cast<short>(flx1->Row());
    return m_PdpID;
}

bool frmPDP::CheckPdp() {
    if (txtSurname->text().length() < 1) {
        MsgBox("Surname must be at least 1 character", MsgButtons::Ok, MsgIcon::Exclamation);
        txtSurname->setFocus();
        return false;
    }
    if (txtFirstname->text().length() < 1) {
        MsgBox("First name must be at least 1 character", MsgButtons::Ok, MsgIcon::Exclamation);
        txtFirstname->setFocus();
        return false;
    }
    return true;
}

int frmPDP::MoveRow(const QString& word) {
    if (word == "add")
        ++m_Row;
    else if (word == "del")
        --m_Row;
    return m_Row;
}

void frmPDP::flx1_Click() {
    m_PdpID = ShortIdOf(flx1->TextMatrix(flx1->Row(), 0));
}

void frmPDP::lblcmd_Click(int index) {
    try {
        switch (index) {
        case 0:
            AddPdp();
            break;
        case 1:
            EditPdp();
            break;
        case 2:
            DeletePdp();
            break;
        case 3:
            close();
            break;
        case 4:
            CancelPdp();
            break;
        case 5:
            SavePdp();
            break;
        default:
            break;
        }
    } catch (const NumberedError& e) {
        // No handler of its own: the run ends in plain sight, with what was stored kept.
        EndRunWithError(e.number(), e.description());
    }
}

void frmPDP::AddPdp() {
    m_PdpID = 0;
    ClearPdp();
    FraPDP->setVisible(true);
    flx1->setEnabled(false);
    for (int i = 0; i < 4; ++i)
        lblcmd[i]->setEnabled(false);
    txtId->setFocus();
}

void frmPDP::EditPdp() {
    const int id = PickPdp();
    if (id == 0)
        return;
    ClearPdp();
    auto rs = db().OpenRecordset(PdpSql() + " where pdpid = " + QString::number(id), RecordsetType::Snapshot);
    if (!rs->Eof()) {
        dtpPdPdate->setDate(QDate::fromString(vb::Format(rs->Field("pdpdate"), "yyyy/MM/dd"), "yyyy/MM/dd"));
        txtSurname->setText(rs->Field("surname").toString());
        txtFirstname->setText(rs->Field("firstname").toString());
        txtId->setText(rs->Field("id").toString());
    }
    FraPDP->setVisible(true);
    txtId->setFocus();
}

void frmPDP::DeletePdp() {
    if (m_PdpID == 0)
        return;
    int row = -1;
    for (int r = flx1->FixedRows(); r < flx1->Rows(); ++r)
        if (flx1->TextMatrix(r, 0) == QString::number(m_PdpID))
            row = r;
    if (row < 0)
        return; // the picked person is no longer in the list
    const QString question =
        "Delete '" + flx1->TextMatrix(row, 1) + " " + flx1->TextMatrix(row, 2) + " " + flx1->TextMatrix(row, 3) + "?";
    if (MsgBox(question, MsgButtons::YesNoDefaultNo, MsgIcon::Question) != MsgResult::Yes)
        return;
    db().Execute("delete from pdp where pdpid = " + QString::number(m_PdpID));
    LaaiPdp();
    MoveRow("del");
    if (m_Row >= flx1->FixedRows() && m_Row < flx1->Rows()) {
        flx1->SetRow(m_Row);
        ColourPickedRow(*flx1, m_Row);
    }
}

void frmPDP::CancelPdp() {
    FraPDP->setVisible(false);
    GiveBackGrid();
}

void frmPDP::GiveBackGrid() {
    flx1->setEnabled(true);
    for (int i = 0; i < 3; ++i) // "&Close" is not given back
        lblcmd[i]->setEnabled(true);
}

void frmPDP::SavePdp() {
    if (!CheckPdp())
        return;
    const QString date = dtpPdPdate->date().toString("yyyy/MM/dd");
    QString surname = txtSurname->text();
    QString firstname = txtFirstname->text();
    QString id = txtId->text();
    surname = SqlEscape(surname, false);
    firstname = SqlEscape(firstname, false);
    id = SqlEscape(id, false);
    const bool editing = m_PdpID > 0;
    if (editing)
        db().Execute(QString("update pdp set") + " pdpdate = '" + date + "'" + " ,surname = '" + surname + "'" +
                     " ,firstname = '" + firstname + "'" + " ,id = '" + id + "'" +
                     " where pdpid = " + QString::number(m_PdpID));
    else
        db().Execute(QString("insert into pdp ([pdpdate],[surname],[firstname],[id])") + " values (" + " '" + date +
                     "'" + " ,'" + surname + "'" + " ,'" + firstname + "'" + " ,'" + id + "'" + " )");
    LaaiPdp();
    MoveRow(editing ? "edit" : "add");
    if (m_Row >= flx1->FixedRows() && m_Row < flx1->Rows()) {
        flx1->SetRow(m_Row);
        flx1->setCurrentCell(m_Row, 1);
    }
    FraPDP->setVisible(false);
    GiveBackGrid();
}

void frmPDP::cmdViewReminders_Click() {
    ShowScreen("frmReminders", true);
}
