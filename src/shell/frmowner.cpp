#include "frmowner.h"

#include "frmBackup.h"

#include "Database.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "QtMessageService.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "frmMain.h"

#include <QCloseEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int kDuplicateKey = 3022;

QLineEdit* field(QWidget* parent, const char* name, int maxLength) {
    auto* edit = new QLineEdit(parent);
    edit->setObjectName(name);
    edit->setMaxLength(maxLength);
    edit->setMinimumWidth(320);
    return edit;
}

QLabel* caption(QWidget* parent, const char* name, const QString& text, QLineEdit* buddy) {
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    label->setBuddy(buddy);
    return label;
}

// The save writes the kept OID back. Where the store numbers OID itself (a counter column), the engine
// refuses the write (3164) and the row keeps its own number, which is the same one.
void WriteKeptOid(Recordset& rs, int oid) {
    try {
        rs.SetField("OID", oid);
    } catch (const DbError& e) {
        if (e.number() != 3164)
            throw;
    }
}

} // namespace

frmowner::frmowner(QWidget* parent) : QWidget(parent) {
    setObjectName("frmowner");
    setWindowTitle("Owner Details");
    buildLayout();
    LoadOwner();
}

void frmowner::buildLayout() {
    txtname = field(this, "txtname", 50);
    txtname->setPlaceholderText("Enter Company Name");
    txtadd1 = field(this, "txtadd1", 50);
    txtadd2 = field(this, "txtadd2", 50);
    txtadd3 = field(this, "txtadd3", 50);
    txtadd4 = field(this, "txtadd4", 50);
    txttel = field(this, "txttel", 20);
    txtfax = field(this, "txtfax", 20);
    txtemail = field(this, "txtemail", 50);
    txtvat = field(this, "txtvat", 20);
    txtck = field(this, "txtck", 20);
    txtPerson = field(this, "txtPerson", 50);

    lblname = caption(this, "lblname", "&Name", txtname);
    lbladd = caption(this, "lbladd", "&Address", txtadd1);
    lbltel = caption(this, "lbltel", "&Phone", txttel);
    lblfax = caption(this, "lblfax", "&Fax", txtfax);
    lblemail = caption(this, "lblemail", "&E-mail", txtemail);
    lblvat = caption(this, "lblvat", "&VAT Registration No", txtvat);
    lblck = caption(this, "lblck", "&CC / Cpy Registration No", txtck);
    lblPerson = caption(this, "lblPerson", "Contact Pe&rson", txtPerson);

    auto* grid = new QGridLayout;
    int row = 0;
    grid->addWidget(lblname, row, 0);
    grid->addWidget(txtname, row++, 1);
    grid->addWidget(lbladd, row, 0);
    for (QLineEdit* line : {txtadd1, txtadd2, txtadd3, txtadd4})
        grid->addWidget(line, row++, 1);
    const std::pair<QLabel*, QLineEdit*> rest[] = {{lbltel, txttel}, {lblfax, txtfax}, {lblemail, txtemail},
                                                   {lblvat, txtvat}, {lblck, txtck},   {lblPerson, txtPerson}};
    for (const auto& [label, edit] : rest) {
        grid->addWidget(label, row, 0);
        grid->addWidget(edit, row++, 1);
    }
    grid->setColumnStretch(1, 1);

    Picture2 = new QWidget(this);
    Picture2->setObjectName("Picture2");
    lblSave = new QPushButton("&Save", Picture2);
    lblSave->setObjectName("lblSave");
    lblSave->setAutoDefault(true); // Enter on the button saves
    auto* actions = new QHBoxLayout(Picture2);
    actions->setContentsMargins(0, 0, 0, 0);
    actions->addStretch();
    actions->addWidget(lblSave);
    connect(lblSave, &QPushButton::clicked, this, &frmowner::SaveOwner);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(grid);
    layout->addStretch();
    layout->addWidget(Picture2);

    // Names and the first three address lines take the proper-name filter.
    for (QLineEdit* edit : {txtname, txtPerson, txtadd1, txtadd2, txtadd3})
        AttachProperNameFilter(edit);
    const std::pair<QLineEdit*, QLabel*> captions[] = {{txtname, lblname}, {txtadd1, lbladd},     {txtadd2, lbladd},
                                                       {txtadd3, lbladd},  {txtadd4, lbladd},     {txttel, lbltel},
                                                       {txtfax, lblfax},   {txtemail, lblemail},  {txtvat, lblvat},
                                                       {txtck, lblck},     {txtPerson, lblPerson}};
    for (const auto& [edit, label] : captions) {
        AttachEnterAsTab(edit);
        AttachFocusColour(edit, label);
        AttachSelectOnFocus(edit);
    }
    QWidget* order[] = {txtname, txtadd1,  txtadd2, txtadd3, txtadd4,   txttel,
                        txtfax,  txtemail, txtvat,  txtck,   txtPerson, lblSave};
    for (size_t i = 0; i + 1 < std::size(order); ++i)
        setTabOrder(order[i], order[i + 1]);
    txtname->setFocus();
}

void frmowner::LoadOwner() {
    Database& store = db();
    store.OpenRecordset("Select * from owner order by name asc");
    auto rs = store.OpenRecordset("Select top 1 * from owner ");
    if (rs->Eof())
        return; // a store without an owner row: the fields stay empty
    m_oid = static_cast<int>(rs->Field("OID").toLong());
    const std::pair<QLineEdit*, const char*> columns[] = {{txtname, "Name"}, {txtadd1, "Add1"},    {txtadd2, "Add2"},
                                                          {txtadd3, "Add3"}, {txtadd4, "Add4"},    {txttel, "Tel"},
                                                          {txtfax, "Fax"},   {txtemail, "Email"},  {txtvat, "vat"},
                                                          {txtck, "Reg"},    {txtPerson, "Person"}};
    for (const auto& [edit, column] : columns) {
        const QSignalBlocker block(edit); // what is stored is shown as stored
        edit->setText(rs->Field(column).toString());
    }
}

void frmowner::SaveOwner() {
    if (txtname->text().isEmpty()) {
        MsgBox("Please complete the Name field!");
        return;
    }
    Hourglass hourglass;
    try {
        auto rs =
            db().OpenRecordset("Select * from owner where OID =" + QString::number(m_oid), RecordsetType::Dynaset);
        rs->FindFirst("OID = " + QString::number(m_oid));
        if (rs->NoMatch())
            rs->AddNew();
        else
            rs->Edit();
        WriteKeptOid(*rs, m_oid);
        rs->SetField("Name", txtname->text());
        rs->SetField("Tel", txttel->text());
        rs->SetField("Fax", txtfax->text());
        rs->SetField("Email", txtemail->text());
        rs->SetField("Add1", txtadd1->text());
        rs->SetField("Add2", txtadd2->text());
        rs->SetField("Add3", txtadd3->text());
        rs->SetField("Add4", txtadd4->text());
        rs->SetField("vat", txtvat->text());
        rs->SetField("Reg", txtck->text());
        rs->SetField("Person", txtPerson->text());
        rs->Update();
    } catch (const DbError& e) {
        hourglass.restore();
        if (e.number() == kDuplicateKey)
            MsgBox("Daar is reeds 'n eienaar gespesifiseer" + txtname->text() + " !");
        else
            EndRunWithError(e.number(), e.description());
        return;
    } catch (const VbError& e) {
        hourglass.restore();
        EndRunWithError(e.number(), e.description());
        return;
    }
    m_saved = true;
    hourglass.restore();
    close();
}

void frmowner::keyPressEvent(QKeyEvent* event) {
    // Enter on the panel (not in a field, whose Enter moves on) saves.
    if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && Picture2->isAncestorOf(focusWidget())) {
        SaveOwner();
        return;
    }
    QWidget::keyPressEvent(event);
}

void frmowner::closeEvent(QCloseEvent* event) {
    if (CurrentSession().CurrentSection == 1)
        if (frmMain* main = MainWindow())
            main->LabelKleure();
    QWidget::closeEvent(event);
}

void RegisterShellScreens() {
    RegisterScreen("frmowner", [](QWidget* parent) -> QWidget* { return new frmowner(parent); });
    RegisterBackupScreen();
}
