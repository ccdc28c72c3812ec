#pragma once
// The list grid of every screen: a table of display text with fixed heading rows, offering the members the
// screens use (Rows, Cols, FixedRows, FormatString, AddItem of tab-joined text, RemoveItem, TextMatrix, Row,
// Col, RowSel, ColWidth in twips, ColAlignment, CellBackColor). Grids are read-only; order comes from the
// statements, so the user cannot sort them.
//
// Refused calls throw VbError with the grid's numbers: 30009 "Invalid Row value", 30010 "Invalid Col value",
// 30015 "Cannot remove last non-fixed row".

#include "Database.h"
#include "Value.h"

#include <QColor>
#include <QLineEdit>
#include <QString>
#include <QStringList>
#include <QTableWidget>

// Column and cell alignments, as the grid numbers them.
enum FlexAlignment {
    flexAlignLeftTop = 0,
    flexAlignLeftCenter = 1,
    flexAlignLeftBottom = 2,
    flexAlignCenterTop = 3,
    flexAlignCenterCenter = 4,
    flexAlignCenterBottom = 5,
    flexAlignRightTop = 6,
    flexAlignRightCenter = 7,
    flexAlignRightBottom = 8,
    flexAlignGeneral = 9 // text left, numbers right
};

class FlexGrid : public QTableWidget {
    Q_OBJECT
public:
    static constexpr int TwipsPerPixel = 15;

    // 2 rows, 2 columns, 1 fixed row; no fixed column, so that the first column is data like the others.
    explicit FlexGrid(QWidget* parent = nullptr);

    void Clear(); // empties every cell, the fixed ones too; the size stays

    int Rows() const { return rowCount(); }
    void SetRows(int rows); // not below FixedRows
    int Cols() const { return columnCount(); }
    void SetCols(int cols); // not below FixedCols
    int FixedRows() const { return m_fixedRows; }
    void SetFixedRows(int fixedRows); // at most Rows
    int FixedCols() const { return m_fixedCols; }
    void SetFixedCols(int fixedCols);

    // "Fuel Tank|Date|Vehicle": one column per part, headings in row 0; a leading "<", "^" or ">" aligns the
    // column left, centred or right. Columns get a width that fits their heading.
    QString FormatString() const { return m_formatString; }
    void SetFormatString(const QString& headings);

    // Appends a row (or inserts it at `index`); cells joined by a tab, extra cells beyond Cols ignored.
    void AddItem(const QString& tabJoined, int index = -1);
    void RemoveItem(int row); // 30015 when it is the last row that is not fixed

    QString TextMatrix(int row, int col) const;
    void SetTextMatrix(int row, int col, const QString& text);

    // The current cell and the selection.
    int Row() const { return m_row; }
    void SetRow(int row);
    int Col() const { return m_col; }
    void SetCol(int col);
    int RowSel() const { return m_rowSel; }
    void SetRowSel(int row);
    int ColSel() const { return m_colSel; }
    void SetColSel(int col);
    QString Text() const { return TextMatrix(m_row, m_col); }
    void SetText(const QString& text) { SetTextMatrix(m_row, m_col, text); }

    int ColWidth(int col) const; // twips
    void SetColWidth(int col, int twips);
    int ColAlignment(int col) const;
    void SetColAlignment(int col, int alignment);

    // The look of the current cell. A colour as an OLE value (&HBBGGRR) or as a QColor.
    QColor CellBackColor() const;
    void SetCellBackColor(const QColor& color);
    void SetCellBackColor(unsigned int oleColor);
    int CellAlignment() const;
    void SetCellAlignment(int alignment);

    // The cell's rectangle in the grid's own coordinates (for an editor laid over it).
    QRect CellRect(int row, int col) const;

private:
    void CheckRow(int row) const;
    void CheckCol(int col) const;
    QTableWidgetItem* ItemAt(int row, int col) const;
    void ApplyFixedLook();
    void ApplyAlignment(int row, int col);

    int m_fixedRows = 1;
    int m_fixedCols = 0;
    int m_row = 1, m_col = 1, m_rowSel = 1, m_colSel = 1;
    QString m_formatString;
    QList<int> m_colAlignments;
};

// The reset before a fill: Clear, Rows 1, Cols 4.
void FLEX_Reset(FlexGrid& grid);
// The row protocol: cells joined by a tab, none after the last.
QString FLEX_JoinRow(const QStringList& cells);
// The recordset's field names in order, joined with "|" (no trailing "|").
QString FLEX_FieldNames(Recordset& rs);
// From the last row up to row 1, removes each row whose cell in `col` is ""; FixedRows goes to 0 at the first
// such row. False on a failure, with no message.
bool FLEX_DropEmptyRows(FlexGrid& grid, int col);
// Lays `editor` over the grid's current cell (both children of the same parent), copies the cell's text into
// it and shows or hides it.
void FLEX_ShowEditor(FlexGrid& grid, QLineEdit& editor, bool visible);

// Cell text: a number through the pattern ("### ### ##0.00" for litres and rands); Null gives "", and a text
// passes through as it stands.
QString FLEX_NumberText(const Value& value, const QString& pattern = QStringLiteral("### ### ##0.00"));
// The fill's convention: a field named "Date" gives its value as text, any other through "### ### ##0.00".
QString FLEX_FieldText(const QString& fieldName, const Value& value);
