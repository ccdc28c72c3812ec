#include "Dialogs.h"

#include "InputBehaviours.h"
#include "QueryHelpers.h"

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>
#include <algorithm>

namespace {

constexpr int kTwipsPerPixel = 15;
constexpr int kOptionTextLimit = 70;
constexpr int kLabelLimit = 20;
constexpr int kCheckCaptionLimit = 30;
constexpr int kDefaultTimeLimitMs = 60000;

QWidget* dialogOwner() {
    if (QWidget* w = QApplication::activeModalWidget())
        return w;
    return QApplication::activeWindow();
}

// The sizes are the original's, in twips; they are a floor, the layout may need more.
void applySize(QDialog& form, int widthTwips, int heightTwips) {
    form.resize(std::max(form.sizeHint().width(), widthTwips / kTwipsPerPixel),
                std::max(form.sizeHint().height(), heightTwips / kTwipsPerPixel));
}

void setMaskCharacter(QLineEdit* field, QChar mask) {
    field->setEchoMode(QLineEdit::Password);
    field->setStyleSheet(QStringLiteral("lineedit-password-character: %1").arg(mask.unicode()));
}

} // namespace

// ---- option dialog ----

frmOptionDialog::frmOptionDialog(QWidget* parent) : QDialog(parent) {
    setObjectName("frmOptionDialog");
    lblMsg = new QLabel(this);
    lblMsg->setWordWrap(true);
    frameChoices = new QGroupBox(this);
    auto* choices = new QVBoxLayout(frameChoices);
    for (int i = 0; i < 3; ++i) {
        Option1[i] = new QRadioButton(frameChoices);
        Option1[i]->setObjectName(QStringLiteral("Option1_%1").arg(i));
        choices->addWidget(Option1[i]);
        connect(Option1[i], &QRadioButton::clicked, this, [this, i] {
            respond(i);
            accept();
        });
    }
    Option1[2]->hide();
    cmdQuestion = new QPushButton("More Help", this);
    cmdQuestion->hide();
    cmdCancel = new QPushButton("C&ancel", this);
    cmdCloseDialog = new QPushButton("&Close", this);
    cmdCloseDialog->hide(); // the control box closes; the button is not offered
    Timer1 = new QTimer(this);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->hide(); // no caller sets a time limit, so there is never a count-down to show

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(cmdQuestion);
    buttons->addStretch();
    buttons->addWidget(cmdCancel);
    buttons->addWidget(cmdCloseDialog);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblMsg);
    layout->addWidget(frameChoices);
    layout->addWidget(ProgressBar1);
    layout->addLayout(buttons);
    lblMsg->hide();

    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        respond(-1);
        QDialog::reject();
    });
    connect(cmdCloseDialog, &QPushButton::clicked, this, [this] { close(); });
}

void frmOptionDialog::respond(int index) {
    if (m_responded)
        return;
    m_responded = true;
    emit OptionResponse(index);
}

void frmOptionDialog::closeEvent(QCloseEvent* event) {
    respond(-1);
    event->accept();
    QDialog::closeEvent(event);
}

void frmOptionDialog::reject() {
    respond(-1);
    QDialog::reject();
}

void clsOptionDialog::ShowDialog(QWidget* owner, const QString& option1, const QString& option2, const QString& option3,
                                 int defaultIndex, int timeLimitMs, bool timeFlag, int width, int height,
                                 const QString& title, const QString& helpText) {
    if (defaultIndex > 65534)
        defaultIndex = 2;
    if (timeLimitMs < 0) {
        timeLimitMs = kDefaultTimeLimitMs;
        timeFlag = false;
    }
    frmOptionDialog form(owner);
    form.Timer1->setInterval(timeLimitMs);
    form.Timer1->setProperty("timeFlag", timeFlag);
    form.setWindowTitle(title);
    // Wide enough that the title, which carries the question, is read whole.
    form.setMinimumWidth(std::max(280, form.fontMetrics().horizontalAdvance(title) + 120));
    form.Option1[0]->setText(option1.left(kOptionTextLimit));
    form.Option1[1]->setText(option2.left(kOptionTextLimit));
    if (!option3.isEmpty()) {
        form.Option1[2]->setText(option3.left(kOptionTextLimit));
        form.Option1[2]->show();
    }
    if (option3.isEmpty() && defaultIndex > 1)
        defaultIndex = 1;
    else if (defaultIndex > 2)
        defaultIndex = 2;
    if (defaultIndex >= 0) {
        form.Option1[defaultIndex]->setChecked(true);
        form.Option1[defaultIndex]->setFocus();
    } else {
        form.Option1[0]->setFocus();
    }
    if (!helpText.isEmpty()) {
        form.cmdQuestion->setToolTip(helpText);
        form.cmdQuestion->show();
    }
    m_index = -1;
    connect(&form, &frmOptionDialog::OptionResponse, this, &clsOptionDialog::frmOptionDialog_OptionResponse);
    applySize(form, width, height);
    form.exec();
}

int ShowOptions(const QString& title, const QString& option1, const QString& option2, const QString& option3) {
    clsOptionDialog dialog;
    dialog.ShowDialog(dialogOwner(), option1, option2, option3, -1, -1, false, 2500, 1500, title, QString());
    DialogOption = dialog.DialogReponse();
    return DialogOption;
}

// ---- input dialog ----

frmInputDialog::frmInputDialog(QWidget* parent) : QDialog(parent) {
    setObjectName("frmInputDialog");
    lblMsg = new QLabel(this);
    lblMsg->setWordWrap(true);
    auto* fields = new QGridLayout;
    for (int i = 0; i < 2; ++i) {
        Label1[i] = new QLabel(this);
        txtMsg[i] = new QLineEdit(this);
        txtMsg[i]->setObjectName(QStringLiteral("txtMsg_%1").arg(i));
        Label1[i]->setBuddy(txtMsg[i]);
        cmdPwd[i] = new QPushButton("Show", this);
        cmdPwd[i]->setFocusPolicy(Qt::NoFocus);
        cmdPwd[i]->hide();
        fields->addWidget(Label1[i], i, 0);
        fields->addWidget(txtMsg[i], i, 1);
        fields->addWidget(cmdPwd[i], i, 2);
        AttachEnterAsTab(txtMsg[i]);
        AttachSelectOnFocus(txtMsg[i]);
        QLineEdit* field = txtMsg[i];
        connect(cmdPwd[i], &QPushButton::pressed, field, [field] { field->setEchoMode(QLineEdit::Normal); });
        connect(cmdPwd[i], &QPushButton::released, field, [field] { setMaskCharacter(field, QChar('#')); });
    }
    fields->setColumnStretch(1, 1);
    chk = new QCheckBox(this);
    chk->hide();
    cmdCancel = new QPushButton("C&ancel", this);
    cmdCloseDialog = new QPushButton("&OK", this);
    Timer1 = new QTimer(this);
    ProgressBar1 = new QProgressBar(this);
    ProgressBar1->hide();

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdCloseDialog);
    buttons->addWidget(cmdCancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(lblMsg);
    layout->addLayout(fields);
    layout->addWidget(chk);
    layout->addWidget(ProgressBar1);
    layout->addLayout(buttons);

    connect(cmdCancel, &QPushButton::clicked, this, [this] {
        finish(true);
        QDialog::reject();
    });
    connect(cmdCloseDialog, &QPushButton::clicked, this, [this] {
        finish(false);
        accept();
    });
}

QString frmInputDialog::ComposeText() const {
    for (int i = 0; i < fieldCount; ++i)
        if (txtMsg[i]->text().trimmed().isEmpty())
            return QString();
    QString text = txtMsg[0]->text();
    if (fieldCount == 2)
        text += "," + txtMsg[1]->text();
    if (!chk->isHidden())
        text += "|" + QString::number(chk->isChecked() ? 1 : 0);
    return text;
}

void frmInputDialog::finish(bool cancelled) {
    if (m_sent)
        return;
    m_sent = true;
    emit sendText(cancelled ? QString() : ComposeText());
}

void frmInputDialog::closeEvent(QCloseEvent* event) {
    finish(false);
    event->accept();
    QDialog::closeEvent(event);
}

void frmInputDialog::reject() {
    finish(true); // Escape is the cancel button
    QDialog::reject();
}

void clsInputDialog::ShowDialog(QWidget* owner, const QString& title, int fieldCount, const QString& label1,
                                const QString& label2, bool mask, const QString& checkCaption, int width, int height,
                                const QString& prompt, const QString& startText, int maxLength, bool checkValue) {
    if (fieldCount < 1 || fieldCount > 2)
        fieldCount = 2;
    frmInputDialog form(owner);
    form.setWindowTitle(title);
    form.fieldCount = fieldCount;
    form.Label1[0]->setText(label1.left(kLabelLimit));
    form.Label1[1]->setText(label2.left(kLabelLimit));
    form.Label1[0]->setVisible(!label1.isEmpty());
    if (mask) {
        for (int i = 0; i < 2; ++i) {
            setMaskCharacter(form.txtMsg[i], QChar('*'));
            form.cmdPwd[i]->show();
        }
    }
    const bool second = fieldCount == 2;
    form.Label1[1]->setVisible(second);
    form.txtMsg[1]->setVisible(second);
    form.cmdPwd[1]->setVisible(second && mask);
    if (!checkCaption.isEmpty()) {
        form.chk->setText(checkCaption.left(kCheckCaptionLimit));
        form.chk->setChecked(checkValue);
        form.chk->show();
    }
    form.lblMsg->setText(prompt);
    form.lblMsg->setVisible(!prompt.isEmpty());
    if (maxLength > 0)
        form.txtMsg[0]->setMaxLength(maxLength);
    form.txtMsg[0]->setText(startText);
    form.txtMsg[0]->setFocus();
    m_text.clear();
    connect(&form, &frmInputDialog::sendText, this, &clsInputDialog::frmInputDialog_sendText);
    applySize(form, width, height);
    form.exec();
}

QString ShowInput(const QString& prompt, const QString& startText, int maxLength, const QString& checkCaption,
                  bool checkValue, bool trimAtLastComma) {
    clsInputDialog dialog;
    dialog.ShowDialog(dialogOwner(), prompt, 1, QString(), QString(), false, checkCaption, 4500, 1800, prompt,
                      startText, maxLength, checkValue);
    QString text = dialog.GetText();
    if (trimAtLastComma)
        text = TrimToLastDelimiter(text, ",");
    DialogText = text;
    return text;
}
