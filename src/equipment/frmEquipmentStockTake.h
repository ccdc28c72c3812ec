#pragma once
// Counting the items of a category and posting the differences: one header, one ledger row for each item that
// differs, and toerinv.Hoeveel brought to the count.

#include <QWidget>

class FlexGrid;
class QDateEdit;
class QLineEdit;
class QListWidget;
class QPlainTextEdit;
class QPushButton;

class frmEquipmentStockTake : public QWidget {
    Q_OBJECT
public:
    explicit frmEquipmentStockTake(QWidget* parent = nullptr);

    enum Column { colId, colCategory, colItem, colComputer, colActual, colDifference, colRemarks };

    void list1_Click();
    void LoadGrid();
    void flg_Click(int row, int col);
    // Leaves the cell under txtG3: its text goes into the cell and the difference is worked out. False when the
    // text is refused.
    bool LeaveCell();
    // Enter in txtG3: leave the cell and go to the next row's count; past the last row, offer the post.
    void txtG3_Enter();
    void cmdPost_Click();
    void cmdPrint_Click();

    QListWidget* list1 = nullptr;
    FlexGrid* flg = nullptr;
    QLineEdit* txtG3 = nullptr;
    QPlainTextEdit* txtReason = nullptr;
    QLineEdit* txtPerson = nullptr;
    QDateEdit* dtp = nullptr;
    QPushButton* cmdPost = nullptr;
    QPushButton* cmdPrint = nullptr;

    long long lastStockTakeId() const { return m_lastStockTakeId; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void buildScreen();
    long long m_lastStockTakeId = 0;
    QString m_lastReason;
};
