#pragma once
// What the reminder and permit screens share: the up-down beside a months field and the rows' colouring.

#include <QWidget>

class FlexGrid;
class QLineEdit;
class QToolButton;

// An up-down control bound to a field of digits: its arrows step the field's number within the range.
class UpDown : public QWidget {
    Q_OBJECT
public:
    UpDown(QLineEdit* buddy, int min, int max, QWidget* parent = nullptr);
    int Min() const { return m_min; }
    int Max() const { return m_max; }
    void Step(int by); // the buddy's number moved by `by`, kept within the range

    QToolButton* up = nullptr;
    QToolButton* down = nullptr;

private:
    QLineEdit* m_buddy;
    int m_min;
    int m_max;
};

// The list grids' colouring: every second data row a pale band, so that a line is followed across the grid.
void ColourRows(FlexGrid& grid);
// The colouring of the picked row: the band colours, and the row given the selection's colour.
void ColourPickedRow(FlexGrid& grid, int row);

inline constexpr unsigned int kBandColour = 0xF3EFE8;   // &HF3EFE8: a pale blue-grey
inline constexpr unsigned int kPickedColour = 0xE0C8A0; // a light blue
