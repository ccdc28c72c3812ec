#include "frmRebate.h"

#include "QtMessageService.h"

#include "InputBehaviours.h"
#include "MessageService.h"
#include "Rebate.h"
#include "Session.h"
#include "Vb.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmRebate::frmRebate(QWidget* parent) : QDialog(parent) {
    setObjectName("frmRebate");
    setWindowTitle("SARS Global Vehicle Rebate");

    lblRebateRate = new QLabel("Rebate Cents", this);
    txtRebateRate = new QLineEdit(this);
    txtRebateRate->setObjectName("txtRebateRate");
    txtRebateRate->setToolTip("Applies to all vehicles.");
    lblrebatesars = new QLabel("Rebate %", this);
    txtrebatesars = new QLineEdit(this);
    txtrebatesars->setObjectName("txtrebatesars");
    lblRebateRate->setBuddy(txtRebateRate);
    lblrebatesars->setBuddy(txtrebatesars);

    const char* const captions[] = {"&Save && Close", "&Cancel"};
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    for (int i = 0; i < 2; ++i) {
        lblcmd[static_cast<size_t>(i)] = new QPushButton(captions[i], this);
        lblcmd[static_cast<size_t>(i)]->setObjectName(QString("lblcmd_%1").arg(i));
        lblcmd[static_cast<size_t>(i)]->setAutoDefault(false);
        connect(lblcmd[static_cast<size_t>(i)], &QPushButton::clicked, this, [this, i] { lblcmd_Click(i); });
        buttons->addWidget(lblcmd[static_cast<size_t>(i)]);
    }

    auto* fields = new QGridLayout;
    fields->addWidget(lblRebateRate, 0, 0);
    fields->addWidget(txtRebateRate, 0, 1);
    fields->addWidget(lblrebatesars, 1, 0);
    fields->addWidget(txtrebatesars, 1, 1);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(fields);
    layout->addLayout(buttons);

    AttachFocusColour(txtRebateRate, lblRebateRate);
    AttachFocusColour(txtrebatesars, lblrebatesars);
    AttachEnterAsTab(txtRebateRate);
    AttachEnterAsTab(txtrebatesars);

    Form_Load();
}

void frmRebate::Form_Load() {
    txtRebateRate->setText(QString::number(RebateSetting(0)));
    txtrebatesars->setText(QString::number(RebateSetting(1)));
}

void frmRebate::lblcmd_Click(int index) {
    // A bad entry is never refused: it falls back to the default, which is then saved.
    if (!vb::IsNumeric(Value(txtRebateRate->text())))
        txtRebateRate->setText("349");
    if (!vb::IsNumeric(Value(txtrebatesars->text())))
        txtrebatesars->setText("80");
    if (index == 0) {
        try {
            db().Execute("update rebate set rebaterate = " + txtRebateRate->text() +
                         ",rebatesars = " + txtrebatesars->text());
        } catch (const DbError& e) {
            // No handler of its own: the run-time error box, and the program ends with what was stored kept.
            reject();
            EndRunWithError(e.number(), e.description());
            return;
        }
        accept();
        return;
    }
    reject();
}
