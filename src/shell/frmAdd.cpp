#include "frmAdd.h"

#include "Database.h"
#include "InputBehaviours.h"
#include "QtMessageService.h"
#include "ScreenRegistry.h"
#include "Session.h"
#include "Vb.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmAdd::frmAdd(QWidget* parent) : QDialog(parent) {
    setObjectName("frmAdd");
    setWindowTitle("Add");
    lblAdd = new QLabel(this);
    lblAdd->setObjectName("lblAdd");
    txtAdd = new QLineEdit(this);
    txtAdd->setObjectName("txtAdd");
    txtAdd->setMinimumWidth(260);
    // The name column of each of the three lists holds 50 characters: a longer name cannot be typed, as the list
    // dialogs limit theirs, rather than failing at the save and ending the run.
    txtAdd->setMaxLength(50);
    lblAdd->setBuddy(txtAdd);

    const char* const captions[] = {"&Cancel", "&Save && Close"};
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (int i : {1, 0}) {
        auto*& button = lblcmd[static_cast<size_t>(i)];
        button = new QPushButton(captions[i], this);
        button->setObjectName(QString("lblcmd_%1").arg(i));
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
        buttons->addWidget(button);
    }
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblAdd);
    layout->addWidget(txtAdd);
    layout->addLayout(buttons);

    AttachFocusColour(txtAdd, lblAdd);
    AttachEnterAsTab(txtAdd);
    setTabOrder(txtAdd, lblcmd[1]);
    setTabOrder(lblcmd[1], lblcmd[0]);
}

void frmAdd::lblcmd_Click(int index) {
    if (index == 0) {
        reject();
        return;
    }
    const QString caption = lblAdd->text();
    // The name goes into the look-up with its quotes doubled, whatever the list: "O'Brien Motors" is a name like
    // any other and finds itself.
    QString quoted = txtAdd->text();
    quoted.replace("'", "''");
    try {
        if (caption == "Supplier") {
            AddName("SELECT * FROM VecSupplier WHERE SUP_Desc = '" + quoted + "'", "SUP_Desc", "LaaiSupliers");
        } else if (caption == "Cost Category") {
            AddName("SELECT * FROM CostCat WHERE CC_CostCatagory = '" + quoted + "'", "CC_CostCatagory", "LaaiCostCat");
        } else if (caption == "Fuel Supplier") {
            // The refill named here is the cost categories' of the service screen, as it has always been.
            AddName("SELECT * FROM fuelsupplier WHERE name = '" + quoted + "'", "Name", "LaaiCostCat");
        }
    } catch (const NumberedError& e) {
        // No handler of its own: the run-time error box, and the program ends with what was stored kept.
        reject();
        EndRunWithError(e.number(), e.description());
        return;
    }
    accept();
}

void frmAdd::AddName(const QString& select, const QString& column, const QString& refillRoutine) {
    auto rs = db().OpenRecordset(select);
    if (rs->Eof()) {
        rs->AddNew();
        rs->SetField(column, Value(vb::Trim(txtAdd->text())));
        rs->Update();
    }
    rs->Close();
    CallFormRoutine("frmServAdd", refillRoutine);
}

void ShowAdd(QWidget* parent, const QString& caption) {
    frmAdd adder(parent);
    adder.lblAdd->setText(caption);
    TrackForm(&adder);
    adder.exec();
}
