#pragma once
// The details of the business that owns the register: the first row of owner, shown and saved.

#include <QWidget>

class QLabel;
class QLineEdit;
class QPushButton;

class frmowner : public QWidget {
    Q_OBJECT
public:
    explicit frmowner(QWidget* parent = nullptr);

    void SaveOwner(); // the action "&Save"
    bool saved() const { return m_saved; }
    int oid() const { return m_oid; }

    QLineEdit* txtname;
    QLineEdit* txtadd1;
    QLineEdit* txtadd2;
    QLineEdit* txtadd3;
    QLineEdit* txtadd4;
    QLineEdit* txttel;
    QLineEdit* txtfax;
    QLineEdit* txtemail;
    QLineEdit* txtvat;
    QLineEdit* txtck;
    QLineEdit* txtPerson;

    QLabel* lblname;
    QLabel* lbladd;
    QLabel* lbltel;
    QLabel* lblfax;
    QLabel* lblemail;
    QLabel* lblvat;
    QLabel* lblck;
    QLabel* lblPerson;

    QWidget* Picture2;
    QPushButton* lblSave; // "&Save"

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildLayout();
    void LoadOwner();

    int m_oid = 0;
    bool m_saved = false;
};

// Registers the shell's own screens (frmowner) with the screen registry.
void RegisterShellScreens();
