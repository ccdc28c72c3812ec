#include "frmVoerDiens.h"

#include "ComboHelpers.h"
#include "Database.h"
#include "FlexGrid.h"
#include "Hourglass.h"
#include "InputBehaviours.h"
#include "MessageService.h"
#include "QtMessageService.h"
#include "QueryHelpers.h"
#include "ServiceSql.h"
#include "Session.h"
#include "Vb.h"
#include "frmVoerDiens_Extra.h"

#include <QAbstractItemView>
#include <QCalendarWidget>
#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QStackedLayout>
#include <QStyle>
#include <QTextCursor>
#include <QToolButton>
#include <QVBoxLayout>

namespace {

ServiceHistoryPrinter& historyPrinter() {
    static ServiceHistoryPrinter printer;
    return printer;
}

bool GetServiceMode() {
    return CurrentSession().ServiceMode != 0;
}

void SetServiceMode(bool mode) {
    CurrentSession().ServiceMode = mode ? -1 : 0;
}

// The id in column 0 of a grid row, read in 32 bits; 0 when the cell holds no number.
int RowId(const FlexGrid& grid, int row) {
    return static_cast<int>(vb::Val(grid.TextMatrix(row, svccol::TransID)));
}

void FillCombo(QComboBox* combo, const QString& sql, const QString& textField, const QString& idField) {
    combo->clear();
    try {
        auto rs = db().OpenRecordset(sql);
        for (; !rs->Eof(); rs->MoveNext())
            combo->addItem(vb::ProperCase(rs->Field(textField).toString()),
                           static_cast<qlonglong>(rs->Field(idField).toLong()));
    } catch (const NumberedError&) {
    }
    combo->setCurrentIndex(-1);
}

} // namespace

void SetServiceHistoryPrinter(ServiceHistoryPrinter printer) {
    historyPrinter() = std::move(printer);
}

frmVoerDiens::frmVoerDiens(QWidget* parent) : QDialog(parent) {
    setObjectName("frmVoerDiens");
    setWindowTitle("Orvel - Services");
    buildScreen();
    resize(1240, 720);

    // On load.
    Grid1->hide();
    Grid1->SetColWidth(0, 0);
    Grid1->SetRows(1);
    SetServiceMode(true); // the open list is the one shown
    m_Grid = flx2;
    ClearServiceForm();
    FillCategoryCombo(Combo2);
    Combo2_Click();
    FillCombo(Combo4, "SELECT * FROM VecSupplier ORDER BY SUP_Desc", "SUP_Desc", "sup_no");
    FillCombo(Combo1, "SELECT * FROM CostCat ORDER BY CC_CostCatagory", "CC_CostCatagory", "CC_IID");
    m_SearchKind = optSearch[0]->text();
    fraSearch->hide();
    LockServiceForm();
    txtKos->setReadOnly(true);
    ShowModeButtons();
}

void frmVoerDiens::buildScreen() {
    auto* outer = new QVBoxLayout(this);

    // The vehicle and the modes.
    auto* top = new QHBoxLayout;
    Combo2 = new QComboBox(this);
    Combo2->setObjectName("Combo2");
    Combo3 = new QComboBox(this);
    Combo3->setObjectName("Combo3");
    Combo2->setMinimumWidth(200);
    Combo3->setMinimumWidth(260);
    top->addWidget(new QLabel("Category", this));
    top->addWidget(Combo2);
    top->addWidget(new QLabel("Vehicle", this));
    top->addWidget(Combo3);
    top->addStretch(1);

    const char* const captions[10] = {
        " &Print View", " &Close Form", "&History",          " &Save",    " &Delete",
        " &Edit",       "Cost Details", " Service Allocate", " Allocate", " &Print Transaction"};
    for (int i = 0; i < 10; ++i) {
        lblcmd[i] = new QPushButton(captions[i], this);
        lblcmd[i]->setObjectName(QString("lblcmd_%1").arg(i));
        lblcmd[i]->setAutoDefault(false);
        connect(lblcmd[i], &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
    }
    cmdClose = new QPushButton(" E&xit", this);
    cmdClose->setObjectName("cmdClose");
    cmdClose->setAutoDefault(false);
    cmdPrintCostDetails = new QPushButton(" &Print Transaction", this);
    cmdPrintCostDetails->setObjectName("cmdPrintCostDetails");
    cmdPrintCostDetails->setAutoDefault(false);
    top->addWidget(lblcmd[7]);
    top->addWidget(lblcmd[2]);
    top->addWidget(lblcmd[0]);
    top->addWidget(cmdClose);
    outer->addLayout(top);

    auto* body = new QHBoxLayout;
    // The lists.
    fraFlex = new QGroupBox(" Service Allocate", this);
    fraFlex->setObjectName("fraFlex");
    auto* lists = new QVBoxLayout(fraFlex);
    fraSearch = new QGroupBox("Search", fraFlex);
    fraSearch->setObjectName("fraSearch");
    auto* search = new QHBoxLayout(fraSearch);
    txtSearch = new QLineEdit(fraSearch);
    txtSearch->setObjectName("txtSearch");
    search->addWidget(txtSearch, 1);
    const char* const searchCaptions[2] = {"Supplier", "Reference"};
    for (int i = 0; i < 2; ++i) {
        optSearch[i] = new QRadioButton(searchCaptions[i], fraSearch);
        optSearch[i]->setObjectName(QString("optSearch_%1").arg(i));
        search->addWidget(optSearch[i]);
        connect(optSearch[i], &QRadioButton::clicked, this, [this, i] { optSearch_Click(i); });
    }
    optSearch[0]->setChecked(true);
    lists->addWidget(fraSearch);
    flx2 = new FlexGrid(fraFlex);
    flx2->setObjectName("flx2");
    flx2->setToolTip("Select the transaction you want to allocate");
    Grid1 = new FlexGrid(fraFlex);
    Grid1->setObjectName("Grid1");
    Grid1->setToolTip("This is a list of services and repairs done on the selected vehicle.");
    lists->addWidget(flx2, 1);
    lists->addWidget(Grid1, 1);
    auto* listButtons = new QHBoxLayout;
    listButtons->addWidget(lblcmd[8]);
    listButtons->addWidget(lblcmd[5]);
    listButtons->addWidget(lblcmd[4]);
    listButtons->addStretch(1);
    listButtons->addWidget(lblcmd[9]);
    lists->addLayout(listButtons);
    body->addWidget(fraFlex, 1);

    // The form part.
    fraForm = new QGroupBox("Service Detail", this);
    fraForm->setObjectName("fraForm");
    fraForm->setFixedWidth(400);
    auto* form = new QGridLayout(fraForm);
    txtDyy = new QLineEdit(fraForm);
    txtDyy->setObjectName("txtDyy");
    txtDyy->setMaxLength(10);
    Image2 = new QToolButton(fraForm);
    Image2->setObjectName("Image2");
    Image2->setIcon(style()->standardIcon(QStyle::SP_FileDialogDetailedView));
    Image2->setToolTip("Pick the date from the calendar");
    txtSupplier = new QLineEdit(fraForm);
    txtSupplier->setObjectName("txtSupplier");
    Combo4 = new QComboBox(fraForm);
    Combo4->setObjectName("Combo4");
    txtCostCat = new QLineEdit(fraForm);
    txtCostCat->setObjectName("txtCostCat");
    Combo1 = new QComboBox(fraForm);
    Combo1->setObjectName("Combo1");
    txtCostCatID = new QLineEdit(fraForm);
    txtCostCatID->setObjectName("txtCostCatID");
    txtCostCatID->hide();
    txtReference = new QLineEdit(fraForm);
    txtReference->setObjectName("txtReference");
    txtReference->setToolTip("Document Reference eg. Invoiice or Order Number");
    txtReference->setMaxLength(50);
    txtKos = new QLineEdit(fraForm);
    txtKos->setObjectName("txtKos");
    txtKm = new QLineEdit(fraForm);
    txtKm->setObjectName("txtKm");
    txtNota = new QPlainTextEdit(fraForm);
    txtNota->setObjectName("txtNota");
    txtNota->setToolTip("Fill comments or notes here.");
    txtNota->setTabChangesFocus(true);
    // The note column holds 100 characters: what goes past them is not taken, as a one-line field's limit does,
    // rather than failing at the save and ending the run.
    connect(txtNota, &QPlainTextEdit::textChanged, this, [this] {
        constexpr int kNoteLength = 100;
        const QString note = txtNota->toPlainText();
        if (note.size() <= kNoteLength)
            return;
        const QSignalBlocker block(txtNota);
        txtNota->setPlainText(note.left(kNoteLength));
        txtNota->moveCursor(QTextCursor::End);
    });
    flexCosts = new FlexGrid(fraForm);
    flexCosts->setObjectName("flexCosts");
    flexCosts->setMaximumHeight(130);

    auto overlay = [&](QLineEdit* field, QComboBox* combo) {
        auto* holder = new QWidget(fraForm);
        auto* stack = new QStackedLayout(holder);
        stack->setContentsMargins(0, 0, 0, 0);
        stack->addWidget(field);
        stack->addWidget(combo);
        holder->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
        holder->setFixedHeight(field->sizeHint().height());
        return holder;
    };
    int row = 0;
    auto addRow = [&](const QString& caption, QWidget* w) {
        form->addWidget(new QLabel(caption, fraForm), row, 0);
        form->addWidget(w, row, 1);
        ++row;
    };
    auto* dateRow = new QWidget(fraForm);
    auto* dateLayout = new QHBoxLayout(dateRow);
    dateLayout->setContentsMargins(0, 0, 0, 0);
    dateLayout->addWidget(txtDyy, 1);
    dateLayout->addWidget(Image2);
    addRow("Date", dateRow);
    addRow("Supplier", overlay(txtSupplier, Combo4));
    addRow("Cost Category", overlay(txtCostCat, Combo1));
    addRow("Reference", txtReference);
    addRow("Cost", txtKos);
    addRow("Km reading", txtKm);
    addRow("Note", txtNota);
    form->addWidget(flexCosts, row++, 0, 1, 2);
    auto* formButtons = new QGridLayout;
    formButtons->addWidget(lblcmd[3], 0, 0);
    formButtons->addWidget(lblcmd[6], 0, 1);
    formButtons->addWidget(cmdPrintCostDetails, 1, 0);
    formButtons->addWidget(lblcmd[1], 1, 1);
    form->addLayout(formButtons, row, 0, 1, 2);
    body->addWidget(fraForm);
    outer->addLayout(body, 1);

    Calendar = new QCalendarWidget(this);
    Calendar->setObjectName("Calendar");
    Calendar->setWindowFlags(Qt::Popup);
    Calendar->hide();

    connect(Combo2, &QComboBox::activated, this, [this] { Combo2_Click(); });
    connect(Combo3, &QComboBox::activated, this, [this] { Combo3_Change(); });
    connect(Combo4, &QComboBox::activated, this, [this] {
        if (m_ShowingCombo)
            return;
        txtSupplier->setText(Combo4->currentText());
        qobject_cast<QStackedLayout*>(txtSupplier->parentWidget()->layout())->setCurrentIndex(0);
    });
    connect(Combo1, &QComboBox::activated, this, [this] {
        if (m_ShowingCombo)
            return;
        txtCostCat->setText(Combo1->currentText());
        txtCostCatID->setText(QString::number(ItemDataAt(Combo1, Combo1->currentIndex())));
        qobject_cast<QStackedLayout*>(txtCostCat->parentWidget()->layout())->setCurrentIndex(0);
    });
    connect(txtSearch, &QLineEdit::textChanged, this, [this] { txtSearch_Change(); });
    connect(flx2, &QTableWidget::cellDoubleClicked, this, [this] { lblcmd_Click(8); });
    connect(Grid1, &QTableWidget::cellDoubleClicked, this, [this] { lblcmd_Click(5); });
    connect(cmdClose, &QPushButton::clicked, this, [this] { done(QDialog::Accepted); });
    connect(cmdPrintCostDetails, &QPushButton::clicked, this, [this] { lblcmd_Click(9); });
    connect(Image2, &QToolButton::clicked, this, [this] {
        if (txtDyy->isReadOnly())
            return;
        QDate start;
        try {
            start = vb::CDate(Value(txtDyy->text())).date();
        } catch (const VbError&) {
            start = QDate::currentDate();
        }
        Calendar->setSelectedDate(start);
        Calendar->move(Image2->mapToGlobal(QPoint(0, Image2->height())));
        Calendar->show();
    });
    connect(Calendar, &QCalendarWidget::activated, this, [this](const QDate& date) {
        txtDyy->setText(vb::Format(Value(date), "yyyy/MM/dd"));
        Calendar->hide();
    });
    connect(Calendar, &QCalendarWidget::clicked, this, [this](const QDate& date) {
        txtDyy->setText(vb::Format(Value(date), "yyyy/MM/dd"));
        Calendar->hide();
    });

    AttachNumericFilter(txtKm, true);
    AttachNumericFilter(txtKos, true);
    for (QWidget* w : std::initializer_list<QWidget*>{txtDyy, txtSupplier, txtCostCat, txtReference, txtKos, txtKm})
        AttachEnterAsTab(w);
    txtSupplier->installEventFilter(this);
    txtCostCat->installEventFilter(this);
    Combo4->installEventFilter(this);
    Combo1->installEventFilter(this);
}

bool frmVoerDiens::eventFilter(QObject* watched, QEvent* e) {
    if (e->type() == QEvent::FocusIn) {
        if (watched == txtSupplier && !txtSupplier->isReadOnly())
            showComboOver(txtSupplier, Combo4);
        else if (watched == txtCostCat && !txtCostCat->isReadOnly())
            showComboOver(txtCostCat, Combo1);
    }
    if (e->type() == QEvent::FocusOut && (watched == Combo4 || watched == Combo1)) {
        auto* combo = static_cast<QComboBox*>(watched);
        if (!combo->view()->isVisible())
            qobject_cast<QStackedLayout*>(combo->parentWidget()->layout())->setCurrentIndex(0);
    }
    return QDialog::eventFilter(watched, e);
}

void frmVoerDiens::showComboOver(QLineEdit* field, QComboBox* combo) {
    m_ShowingCombo = true;
    combo->setCurrentIndex(combo->findText(field->text()));
    qobject_cast<QStackedLayout*>(field->parentWidget()->layout())->setCurrentIndex(1);
    combo->setFocus();
    m_ShowingCombo = false;
}

void frmVoerDiens::reject() {
    done(QDialog::Rejected);
}

void frmVoerDiens::LoadServices(int) {}

int frmVoerDiens::VehicleOfCombo() const {
    return Combo3->currentIndex() >= 0 ? ItemDataAt(Combo3, Combo3->currentIndex()) : 0;
}

void frmVoerDiens::ShowModeButtons() {
    const bool allocate = GetServiceMode() && Grid1->isHidden();
    lblcmd[8]->setVisible(allocate);
    lblcmd[5]->setVisible(!allocate);
    lblcmd[4]->setVisible(!allocate);
    lblcmd[3]->setVisible(true);
    lblcmd[7]->setEnabled(true);
    lblcmd[2]->setEnabled(true);
    if (allocate) {
        lblcmd[9]->hide();
        cmdPrintCostDetails->hide();
    }
}

void frmVoerDiens::Combo2_Click() {
    Combo3->clear();
    if (Combo2->currentIndex() >= 0)
        FillVehicleCombo(Combo3, ItemDataAt(Combo2, Combo2->currentIndex()));
    Combo3->setCurrentIndex(-1);
}

void frmVoerDiens::Combo3_Change() {
    AllocateMode();
}

void frmVoerDiens::AllocateMode() {
    SetServiceMode(true);
    flx2->show();
    Grid1->hide();
    m_Grid = flx2;
    fraFlex->setTitle(lblcmd[7]->text().remove('&').trimmed());
    ClearServiceForm();
    FillServiceGrid(*flx2, 0, VehicleOfCombo(), true, "", "");
    fraSearch->show();
    ShowModeButtons();
}

void frmVoerDiens::HistoryMode() {
    SetServiceMode(false);
    Grid1->show();
    flx2->hide();
    m_Grid = Grid1;
    Grid1->setFocus();
    fraFlex->setTitle("Service History");
    const int rows = FillServiceGrid(*Grid1, 0, VehicleOfCombo(), false, "", "");
    ShowModeButtons();
    lblcmd[9]->setVisible(rows > 0);
    lblcmd[0]->setVisible(rows > 0 || lblcmd[0]->isVisible());
    fraSearch->setVisible(rows > 0);
}

void frmVoerDiens::optSearch_Click(int index) {
    m_SearchKind = optSearch[index]->text();
    txtSearch->setText("");
}

void frmVoerDiens::txtSearch_Change() {
    QString text = txtSearch->text();
    if (m_SearchKind.toLower() == "supplier" && !text.isEmpty()) {
        QStringList numbers;
        try {
            auto rs = db().OpenRecordset("SELECT [SUP_No]FROM [VecSupplier] " + QString(" where [Sup_desc] like '*") +
                                         text + "*'");
            for (; !rs->Eof(); rs->MoveNext())
                numbers << rs->Field(0).toString();
        } catch (const NumberedError&) {
        }
        text = numbers.isEmpty() ? QString("0") : numbers.join(",");
    }
    FlexGrid* grid = Grid1->isHidden() ? flx2 : Grid1;
    FillServiceGrid(*grid, 0, VehicleOfCombo(), grid == flx2, text, m_SearchKind);
}

void frmVoerDiens::ClearServiceForm() {
    for (QLineEdit* field : {txtDyy, txtSupplier, txtCostCat, txtCostCatID, txtReference, txtKos, txtKm})
        field->setText("");
    txtNota->setPlainText("");
    flexCosts->Clear();
    flexCosts->SetRows(1);
    flexCosts->hide();
    fraForm->hide();
    m_FormOpen = false;
}

void frmVoerDiens::LockServiceForm() {
    for (QLineEdit* field : {txtDyy, txtSupplier, txtCostCat, txtKm})
        field->setReadOnly(true);
    txtNota->setReadOnly(true);
}

void frmVoerDiens::LoadServiceForm(FlexGrid* grid) {
    const int row = grid->RowSel();
    txtDyy->setText(grid->TextMatrix(row, svccol::Date));
    txtSupplier->setText(grid->TextMatrix(row, svccol::Supplier));
    Combo4->setCurrentIndex(Combo4->findText(txtSupplier->text()));
    txtKos->setText(grid->TextMatrix(row, svccol::Cost));
    Combo1->setCurrentIndex(Combo1->findText(grid->TextMatrix(row, svccol::CostCategory)));
    txtCostCat->setText(Combo1->currentText());
    txtCostCatID->setText(QString::number(ItemDataAt(Combo1, Combo1->currentIndex())));
    txtReference->setText(grid->TextMatrix(row, svccol::Reference));
    txtKm->setText(grid->TextMatrix(row, svccol::Km));
    txtNota->setPlainText(NoteForShow(grid->TextMatrix(row, svccol::Note)));
}

void frmVoerDiens::ShowCostTotals() {
    FillCostTotals(*flexCosts, GetServiceMode(), CurrentSession().ServiceLinkID);
}

void frmVoerDiens::lblcmd_Click(int index) {
    Session& s = CurrentSession();
    switch (index) {
    case 0:
        if (historyPrinter() && VehicleOfCombo() > 0)
            historyPrinter()(VehicleOfCombo());
        break;
    case 1:
        CloseForm();
        break;
    case 2:
        ClearServiceForm();
        HistoryMode();
        break;
    case 3:
        SaveServiceRecord();
        break;
    case 4:
        DeleteServiceRecord();
        break;
    case 5:
        if (Grid1->Rows() <= 1 || Grid1->isHidden())
            break;
        fraForm->show();
        m_FormOpen = true;
        LoadServiceForm(Grid1);
        s.ServiceLinkID = RowId(*Grid1, Grid1->RowSel());
        ShowCostTotals();
        lblcmd[6]->show();
        cmdPrintCostDetails->hide();
        for (QLineEdit* field : {txtKm, txtDyy, txtSupplier, txtCostCat, txtKos})
            field->setReadOnly(false);
        txtNota->setReadOnly(false);
        txtKos->setEnabled(CostTotal(false, s.ServiceLinkID) == 0);
        txtDyy->setFocus();
        break;
    case 6:
        OpenCostDetails();
        break;
    case 7:
        AllocateMode();
        break;
    case 8:
        if (flx2->Rows() <= 1 || flx2->isHidden())
            break;
        LoadServiceForm(flx2);
        fraForm->show();
        m_FormOpen = true;
        lblcmd[0]->hide();
        txtNota->setReadOnly(false);
        txtNota->setPlainText("");
        txtKm->setReadOnly(false);
        for (QLineEdit* field : {txtDyy, txtSupplier, txtCostCat})
            field->setReadOnly(true);
        s.ServiceLinkID = RowId(*flx2, flx2->RowSel());
        ShowCostTotals();
        lblcmd[6]->show();
        txtNota->setFocus();
        break;
    case 9:
        PrintServiceDetail();
        break;
    default:
        break;
    }
}

void frmVoerDiens::CloseForm() {
    if (MsgBox("Unsaved changes will be lost. Continue?", MsgButtons::YesNoDefaultNo, MsgIcon::Question) !=
        MsgResult::Yes)
        return;
    fraForm->hide();
    m_FormOpen = false;
    lblcmd[0]->show();
}

void frmVoerDiens::OpenCostDetails() {
    RefreshServiceCost();
    {
        frmVoerDiens_Extra extra(this);
        extra.exec();
    }
    RefreshServiceCost();
}

void frmVoerDiens::RefreshServiceCost() {
    Session& s = CurrentSession();
    const bool mode = GetServiceMode();
    try {
        const QString total = vb::Format(Value(GetScalar(db(), CostTotalSql(mode, s.ServiceLinkID), "0")), "0.00");
        txtKos->setText(total);
        txtKos->setEnabled(vb::Val(total) == 0);
        const QString amount = QString::number(vb::Val(txtKos->text()), 'f', 4);
        FlexGrid* grid = Grid1->isHidden() ? flx2 : Grid1;
        if (mode)
            db().Execute("update vdiens_unallocated set cost = " + amount +
                         " where transid = " + QString::number(RowId(*flx2, flx2->RowSel())));
        else
            db().Execute("update vdiens_allocated set cost = " + amount +
                         " where transid = " + QString::number(s.ServiceLinkID));
        ShowCostTotals();
        m_Grid = grid;
        m_Grid->SetTextMatrix(m_Grid->RowSel(), svccol::Cost, txtKos->text());
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
    }
}

void frmVoerDiens::SaveServiceRecord() {
    Session& s = CurrentSession();
    if (txtKm->text().isEmpty()) {
        MsgBox("Fill in the kilometers", MsgButtons::Ok, MsgIcon::Information, "Service Record");
        txtKm->setFocus();
        return;
    }
    if (Combo2->currentText().isEmpty() || Combo3->currentText().isEmpty()) {
        MsgBox("Select a catagory and description!", MsgButtons::Ok, MsgIcon::None, "Service Record");
        return;
    }
    Hourglass hourglass;
    try {
        if (IsDateUnreadable(txtDyy->text()) || IsDateClosed(vb::CDate(Value(txtDyy->text())), s.ClosedDate)) {
            txtDyy->setFocus();
            return;
        }
        // 1, 2: the row in hand.
        m_Grid = Grid1->isHidden() ? flx2 : Grid1;
        s.SelectedID = RowId(*m_Grid, m_Grid->RowSel());
        // 3: one statement in both modes.
        auto rs = db().OpenRecordset("SELECT * FROM vdiens_allocated WHERE TransID = " + QString::number(s.SelectedID));
        if (rs->Eof())
            rs->AddNew();
        else
            rs->Edit();
        // 4
        QString note = NoteForStore(txtNota->toPlainText());
        if (note.isEmpty()) {
            rs->CancelUpdate();
            hourglass.restore();
            MsgBox("You need to fill in all the fields!", MsgButtons::Ok, MsgIcon::Exclamation, "Service Record");
            txtNota->setFocus();
            return;
        }
        // 5
        if (note.endsWith("\r\n"))
            note.chop(2);
        // 6
        s.SelectedID = static_cast<int>(rs->Field("TransID").toLong());
        // 7
        rs->SetField("vechileid", Value(ItemDataAt(Combo3, Combo3->currentIndex())));
        rs->SetField("supplierid", Value(ItemDataAt(Combo4, Combo4->currentIndex())));
        rs->SetField("CostCategoryID", Value(ItemDataAt(Combo1, Combo1->currentIndex())));
        rs->SetField("Date", Value(txtDyy->text()));
        rs->SetField("Cost", Value(vb::Format(Value(txtKos->text()), "###0.00")));
        rs->SetField("Kilometers", Value(txtKm->text()));
        rs->SetField("note", Value(note));
        QString reference = vb::Trim(txtReference->text());
        rs->SetField("reference", Value(reference.replace("'", "''")));
        rs->Update();
        rs->Close();
        hourglass.restore();
        // 8, 9: the open row goes, then its breakdown follows the history row.
        RemoveOpenService();
        RelinkCosts();
    } catch (const NumberedError& e) {
        hourglass.restore();
        EndRunWithError(e.number(), e.description());
        return;
    }
    // 10
    const bool history = !GetServiceMode();
    lblcmd[9]->setVisible(history && !flexCosts->TextMatrix(0, 0).isEmpty());
    lblcmd[6]->show();
    // 11
    if (GetServiceMode())
        AllocateMode();
    else
        HistoryMode();
    LockServiceForm();
}

void frmVoerDiens::RemoveOpenService() {
    if (!Grid1->isHidden())
        return;
    db().Execute("DELETE * FROM vdiens_unallocated WHERE TransID = " + QString::number(RowId(*flx2, flx2->RowSel())));
}

void frmVoerDiens::RelinkCosts() {
    const Session& s = CurrentSession();
    db().Execute("update vdiens_extra" + QString(" set historyid = ") + QString::number(s.SelectedID) +
                 ", vdiensid = 0" + " where vdiensid = " + QString::number(s.ServiceLinkID));
}

void frmVoerDiens::DeleteServiceRecord() {
    if (Grid1->Rows() <= 1 || Grid1->isHidden())
        return;
    const int row = Grid1->RowSel();
    if (MsgBox("Delete '" + Grid1->TextMatrix(row, svccol::Date) + "'?", MsgButtons::YesNo, MsgIcon::Exclamation,
               "Service Record") != MsgResult::Yes)
        return;
    try {
        const QString id = QString::number(RowId(*Grid1, row));
        db().Execute("DELETE * FROM vdiens_allocated WHERE TransID = " + id);
        db().Execute((GetServiceMode() ? "DELETE * FROM VDiens_extra WHERE vdiensid = "
                                       : "DELETE * FROM VDiens_extra WHERE historyid = ") +
                     id);
    } catch (const NumberedError& e) {
        EndRunWithError(e.number(), e.description());
        return;
    }
    const int rows = FillServiceGrid(*Grid1, 0, VehicleOfCombo(), false, "", "");
    lblcmd[9]->setVisible(rows > 0);
    ClearServiceForm();
}
