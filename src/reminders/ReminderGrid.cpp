#include "ReminderGrid.h"

#include "FlexGrid.h"

#include <QHBoxLayout>
#include <QLineEdit>
#include <QPalette>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

UpDown::UpDown(QLineEdit* buddy, int min, int max, QWidget* parent)
    : QWidget(parent), m_buddy(buddy), m_min(min), m_max(max) {
    auto* box = new QVBoxLayout(this);
    box->setContentsMargins(0, 0, 0, 0);
    box->setSpacing(0);
    up = new QToolButton(this);
    up->setArrowType(Qt::UpArrow);
    down = new QToolButton(this);
    down->setArrowType(Qt::DownArrow);
    for (QToolButton* b : {up, down}) {
        b->setFixedSize(18, 12);
        b->setAutoRepeat(true);
        box->addWidget(b);
    }
    connect(up, &QToolButton::clicked, this, [this] { Step(1); });
    connect(down, &QToolButton::clicked, this, [this] { Step(-1); });
}

void UpDown::Step(int by) {
    bool ok = false;
    int value = m_buddy->text().toInt(&ok);
    if (!ok)
        value = m_min;
    m_buddy->setText(QString::number(std::clamp(value + by, m_min, m_max)));
}

void ColourRows(FlexGrid& grid) {
    const int keepRow = grid.Row();
    const int keepCol = grid.Col();
    const QColor base = grid.palette().color(QPalette::Base);
    for (int r = grid.FixedRows(); r < grid.Rows(); ++r) {
        grid.SetRow(r);
        const bool banded = (r - grid.FixedRows()) % 2 == 1;
        for (int c = 0; c < grid.Cols(); ++c) {
            grid.SetCol(c);
            if (banded)
                grid.SetCellBackColor(kBandColour);
            else
                grid.SetCellBackColor(base);
        }
    }
    if (keepRow < grid.Rows())
        grid.SetRow(keepRow);
    if (keepCol < grid.Cols())
        grid.SetCol(keepCol);
}

void ColourPickedRow(FlexGrid& grid, int row) {
    ColourRows(grid);
    if (row < grid.FixedRows() || row >= grid.Rows())
        return;
    const int keepCol = grid.Col();
    grid.SetRow(row);
    for (int c = 0; c < grid.Cols(); ++c) {
        grid.SetCol(c);
        grid.SetCellBackColor(kPickedColour);
    }
    grid.SetCol(keepCol);
}
