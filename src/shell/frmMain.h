#pragma once
// The main window: the MDI parent, the section labels and the navigation tree. Its start-up runs the
// program's start in a fixed order; closing it ends the run.

#include <QLabel>
#include <QMainWindow>
#include <QString>
#include <array>

class QDateEdit;
class QFrame;
class QMdiArea;
class QTreeWidget;
class QTreeWidgetItem;

inline const QString kMainWindowTitle = QStringLiteral("Quillmere Data: Orvel Register: Version 2024-11-11");

// A section label: a caption that answers a click and colours itself under the pointer.
class SectionLabel : public QLabel {
    Q_OBJECT
public:
    SectionLabel(int index, const QString& caption, QWidget* parent = nullptr);
    int index() const { return m_index; }

signals:
    void clicked(int index);
    void hovered(int index);

protected:
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;  // Enter or space on a focused label clicks it
    void focusInEvent(QFocusEvent* event) override; // a focused label is marked, for the keyboard user
    void focusOutEvent(QFocusEvent* event) override;

private:
    int m_index;
};

class frmMain : public QMainWindow {
    Q_OBJECT
public:
    explicit frmMain(QWidget* parent = nullptr);
    ~frmMain() override;

    // The load handler: steps 1 to 16 of the start. False when the run is to end at once (a second
    // instance, or a failure already reported by a critical box).
    bool Startup();

    void Owner();
    void CheckReminders();
    void UnloadChildForms();
    void TreeSelection();
    void LabelKleure();
    void Label1_Click(int index);

    // Acts as a click and release on the node with this visible text (the first one found).
    bool ClickNode(const QString& text);

    std::array<SectionLabel*, 8> Label1{};
    QLabel* Label3 = nullptr;
    QDateEdit* dtpCDate = nullptr;
    QWidget* Picture2 = nullptr;
    QFrame* fraUNUSED = nullptr;
    QTreeWidget* TreeView1 = nullptr;
    QMdiArea* mdiArea = nullptr;

    QString TodayText;
    QString ReminderSql;
    QTreeWidgetItem* SelectedNode = nullptr;

protected:
    void closeEvent(QCloseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildLayout();
    void dtpCDate_Change();
    void TreeView1_NodeClick(QTreeWidgetItem* node);
    void TreeView1_MouseUp();
    void showSectionTree(int index);
    void closeForms(const QStringList& names);
    void runUnloadSteps();

    bool m_loading = false;
    bool m_unloaded = false;
};

// The main window of the run, for screens that call back into it (the report screen's reset calls
// TreeSelection; the owner screen resets the label colours). Null before it exists.
frmMain* MainWindow();
