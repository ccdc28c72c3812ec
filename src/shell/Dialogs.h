#pragma once
// The two small dialogs of the list editors: up to three options, or one or two text fields with an
// optional check box. Each class owns its form and receives the form's answer through a signal.

#include <QDialog>
#include <QObject>
#include <QString>
#include <array>

class QCheckBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QRadioButton;
class QTimer;

// The results of the last dialog, as the callers read them.
inline int DialogOption = -1;
inline QString DialogText;

class frmOptionDialog : public QDialog {
    Q_OBJECT
public:
    explicit frmOptionDialog(QWidget* parent = nullptr);

    QLabel* lblMsg;
    QGroupBox* frameChoices;
    std::array<QRadioButton*, 3> Option1;
    QPushButton* cmdQuestion; // "More Help"
    QPushButton* cmdCancel;   // "C&ancel"
    QPushButton* cmdCloseDialog;
    QTimer* Timer1;
    QProgressBar* ProgressBar1;

signals:
    void OptionResponse(int index);

protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    void respond(int index);
    bool m_responded = false;
};

class clsOptionDialog : public QObject {
    Q_OBJECT
public:
    // The form is shown modally; the answer is DialogReponse(): the option's index, -1 on cancel or close.
    void ShowDialog(QWidget* owner, const QString& option1, const QString& option2, const QString& option3,
                    int defaultIndex, int timeLimitMs, bool timeFlag, int width, int height, const QString& title,
                    const QString& helpText);
    int DialogReponse() const { return m_index; }

public slots:
    void frmOptionDialog_OptionResponse(int index) { m_index = index; }

private:
    int m_index = -1;
};

class frmInputDialog : public QDialog {
    Q_OBJECT
public:
    explicit frmInputDialog(QWidget* parent = nullptr);

    std::array<QLabel*, 2> Label1;
    std::array<QLineEdit*, 2> txtMsg;
    std::array<QPushButton*, 2> cmdPwd; // held down: the field's text in plain
    QCheckBox* chk;
    QLabel* lblMsg;
    QPushButton* cmdCancel;
    QPushButton* cmdCloseDialog; // "OK": closes and sends the text
    QTimer* Timer1;
    QProgressBar* ProgressBar1;

    int fieldCount = 1;

    // The text the form sends back on closing: "" for blanks or cancel, else field 1 [, field 2] [| flag].
    QString ComposeText() const;

signals:
    void sendText(const QString& text);

protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

private:
    void finish(bool cancelled);
    bool m_sent = false;
};

class clsInputDialog : public QObject {
    Q_OBJECT
public:
    void ShowDialog(QWidget* owner, const QString& title, int fieldCount, const QString& label1, const QString& label2,
                    bool mask, const QString& checkCaption, int width, int height, const QString& prompt = QString(),
                    const QString& startText = QString(), int maxLength = 0, bool checkValue = false);
    QString GetText() const { return m_text; }

public slots:
    void frmInputDialog_sendText(const QString& text) { m_text = text; }

private:
    QString m_text;
};

// The wrappers the screens call. ShowOptions: width 2500, height 1500 (twips), no default; the index or -1,
// also left in DialogOption. ShowInput: one field with the prompt above it; "" means cancelled; with a
// check box caption the answer is text + "|" + the box's value ("1" ticked, "0" not); with trimAtLastComma the text is
// first cut by TrimToLastDelimiter(text, ","). The answer is also left in DialogText.
int ShowOptions(const QString& title, const QString& option1, const QString& option2,
                const QString& option3 = QString());
QString ShowInput(const QString& prompt, const QString& startText = QString(), int maxLength = 0,
                  const QString& checkCaption = QString(), bool checkValue = false, bool trimAtLastComma = false);
