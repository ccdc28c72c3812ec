#pragma once
// The open book-outs, each with the quantity still out, from which a book-in starts.

#include <QWidget>

class FlexGrid;
class QDateEdit;
class QLabel;
class QListWidget;
class QPushButton;

class frmEquipmentBookedout : public QWidget {
    Q_OBJECT
public:
    explicit frmEquipmentBookedout(QWidget* parent = nullptr);

    void LoadBookedOut();
    void SortByColumn(int col);
    void cmdBookIn_Click();
    void cmdPrint_Click();

    // Grid columns, under their headings; the last is hidden: the book-out's stock take header.
    enum Column { colEquipId, colCategory, colDate, colEquipment, colRemarks, colQty, colId, colStockTakeId };

    QListWidget* list1 = nullptr;
    FlexGrid* flg = nullptr;
    QLabel* lblMessage = nullptr;
    QDateEdit* dtp = nullptr;
    QDateEdit* dtp2 = nullptr;
    QPushButton* cmdBookIn = nullptr;
    QPushButton* cmdPrint = nullptr;

    QSize sizeHint() const override { return QSize(1060, 600); }

private:
    void buildScreen();
    void PrimeDates();
    int CategoryId() const;
};
