// The list grid over QTableWidget: every cell is an item of display text; fixed rows and columns are drawn
// as headings and cannot be selected.

#include "FlexGrid.h"

#include "ReportEngine.h"
#include "Vb.h"

#include <QHeaderView>
#include <QRegularExpression>

namespace {

constexpr int ExplicitBackRole = Qt::UserRole + 1;
constexpr int CellAlignRole = Qt::UserRole + 2;

[[noreturn]] void BadRow(int row) {
    throw VbError(30009, QStringLiteral("Invalid Row value (%1)").arg(row));
}
[[noreturn]] void BadCol(int col) {
    throw VbError(30010, QStringLiteral("Invalid Col value (%1)").arg(col));
}

bool LooksNumeric(const QString& text) {
    static const QRegularExpression re(QStringLiteral("^\\s*[-+]?[0-9][0-9 ]*(\\.[0-9]*)?\\s*%?\\s*$"));
    return re.match(text).hasMatch();
}

Qt::Alignment QtAlignmentOf(int flex, const QString& text) {
    switch (flex) {
    case flexAlignLeftTop:
        return Qt::AlignLeft | Qt::AlignTop;
    case flexAlignLeftCenter:
        return Qt::AlignLeft | Qt::AlignVCenter;
    case flexAlignLeftBottom:
        return Qt::AlignLeft | Qt::AlignBottom;
    case flexAlignCenterTop:
        return Qt::AlignHCenter | Qt::AlignTop;
    case flexAlignCenterCenter:
        return Qt::AlignHCenter | Qt::AlignVCenter;
    case flexAlignCenterBottom:
        return Qt::AlignHCenter | Qt::AlignBottom;
    case flexAlignRightTop:
        return Qt::AlignRight | Qt::AlignTop;
    case flexAlignRightCenter:
        return Qt::AlignRight | Qt::AlignVCenter;
    case flexAlignRightBottom:
        return Qt::AlignRight | Qt::AlignBottom;
    default:
        return (LooksNumeric(text) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
    }
}

} // namespace

FlexGrid::FlexGrid(QWidget* parent) : QTableWidget(2, 2, parent) {
    horizontalHeader()->hide();
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSortingEnabled(false);
    setWordWrap(false);
    m_colAlignments = {flexAlignGeneral, flexAlignGeneral};
    ApplyFixedLook();
    // A click makes the cell current, as the grid's Row and Col report it.
    connect(this, &QTableWidget::currentCellChanged, this, [this](int row, int col, int, int) {
        if (row < m_fixedRows || col < m_fixedCols)
            return; // a heading cell never becomes the current cell
        m_row = m_rowSel = row;
        m_col = m_colSel = col;
    });
}

void FlexGrid::CheckRow(int row) const {
    if (row < 0 || row >= rowCount())
        BadRow(row);
}

void FlexGrid::CheckCol(int col) const {
    if (col < 0 || col >= columnCount())
        BadCol(col);
}

QTableWidgetItem* FlexGrid::ItemAt(int row, int col) const {
    QTableWidgetItem* it = item(row, col);
    if (!it) {
        it = new QTableWidgetItem;
        const_cast<FlexGrid*>(this)->setItem(row, col, it);
    }
    return it;
}

void FlexGrid::ApplyAlignment(int row, int col) {
    QTableWidgetItem* it = item(row, col);
    if (!it)
        return;
    const QVariant own = it->data(CellAlignRole);
    const bool fixed = row < m_fixedRows || col < m_fixedCols;
    int flex = own.isValid() ? own.toInt() : fixed ? flexAlignLeftCenter : m_colAlignments.value(col, flexAlignGeneral);
    it->setTextAlignment(QtAlignmentOf(flex, it->text()));
}

void FlexGrid::ApplyFixedLook() {
    const QBrush headingBack = palette().button();
    for (int r = 0; r < rowCount(); ++r)
        for (int c = 0; c < columnCount(); ++c) {
            QTableWidgetItem* it = ItemAt(r, c);
            const bool fixed = r < m_fixedRows || c < m_fixedCols;
            const QVariant own = it->data(ExplicitBackRole);
            it->setBackground(own.isValid() ? QBrush(own.value<QColor>()) : fixed ? headingBack : QBrush());
            it->setFlags(fixed ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
            ApplyAlignment(r, c);
        }
}

void FlexGrid::Clear() {
    for (int r = 0; r < rowCount(); ++r)
        for (int c = 0; c < columnCount(); ++c)
            if (QTableWidgetItem* it = item(r, c))
                it->setText(QString());
}

void FlexGrid::SetRows(int rows) {
    if (rows < 0)
        BadRow(rows);
    m_fixedRows = std::min(m_fixedRows, rows);
    setRowCount(rows);
    m_row = std::min(m_row, std::max(0, rows - 1));
    m_rowSel = std::min(m_rowSel, std::max(0, rows - 1));
    ApplyFixedLook();
}

void FlexGrid::SetCols(int cols) {
    if (cols < 1)
        BadCol(cols);
    m_fixedCols = std::min(m_fixedCols, cols);
    setColumnCount(cols);
    while (m_colAlignments.size() < cols)
        m_colAlignments << flexAlignGeneral;
    m_colAlignments = m_colAlignments.mid(0, cols);
    m_col = std::min(m_col, cols - 1);
    m_colSel = std::min(m_colSel, cols - 1);
    ApplyFixedLook();
}

void FlexGrid::SetFixedRows(int fixedRows) {
    if (fixedRows < 0 || fixedRows > rowCount())
        BadRow(fixedRows);
    m_fixedRows = fixedRows;
    ApplyFixedLook();
}

void FlexGrid::SetFixedCols(int fixedCols) {
    if (fixedCols < 0 || fixedCols > columnCount())
        BadCol(fixedCols);
    m_fixedCols = fixedCols;
    ApplyFixedLook();
}

void FlexGrid::SetFormatString(const QString& headings) {
    m_formatString = headings;
    const QStringList parts = headings.section(';', 0, 0).split('|');
    SetCols(static_cast<int>(parts.size()));
    if (rowCount() < 1)
        SetRows(1);
    for (int c = 0; c < parts.size(); ++c) {
        QString text = parts[c];
        int align = flexAlignGeneral;
        if (text.startsWith('<'))
            align = flexAlignLeftCenter;
        else if (text.startsWith('^'))
            align = flexAlignCenterCenter;
        else if (text.startsWith('>'))
            align = flexAlignRightCenter;
        if (align != flexAlignGeneral)
            text.remove(0, 1);
        m_colAlignments[c] = align;
        ItemAt(0, c)->setText(text);
        setColumnWidth(c, std::max(fontMetrics().horizontalAdvance(text) + 12, 24));
    }
    ApplyFixedLook();
}

void FlexGrid::AddItem(const QString& tabJoined, int index) {
    const int at = index < 0 ? rowCount() : index;
    if (at > rowCount())
        BadRow(at);
    insertRow(at);
    const QStringList cells = tabJoined.split('\t');
    for (int c = 0; c < columnCount(); ++c) {
        QTableWidgetItem* it = ItemAt(at, c);
        it->setText(c < cells.size() ? cells[c] : QString());
        const bool fixed = at < m_fixedRows || c < m_fixedCols;
        it->setFlags(fixed ? Qt::ItemIsEnabled : Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        if (fixed)
            it->setBackground(palette().button());
        ApplyAlignment(at, c);
    }
}

void FlexGrid::RemoveItem(int row) {
    CheckRow(row);
    if (row < m_fixedRows)
        throw VbError(30015, QStringLiteral("Cannot remove a fixed row"));
    if (rowCount() - m_fixedRows <= 1)
        throw VbError(30015, QStringLiteral("Cannot remove last non-fixed row"));
    removeRow(row);
    m_row = std::min(m_row, rowCount() - 1);
    m_rowSel = std::min(m_rowSel, rowCount() - 1);
}

QString FlexGrid::TextMatrix(int row, int col) const {
    if (row < 0 || row >= rowCount() || col < 0 || col >= columnCount())
        throw VbError(381, QStringLiteral("Subscript out of range (%1, %2)").arg(row).arg(col));
    const QTableWidgetItem* it = item(row, col);
    return it ? it->text() : QString();
}

void FlexGrid::SetTextMatrix(int row, int col, const QString& text) {
    if (row < 0 || row >= rowCount() || col < 0 || col >= columnCount())
        throw VbError(381, QStringLiteral("Subscript out of range (%1, %2)").arg(row).arg(col));
    ItemAt(row, col)->setText(text);
    ApplyAlignment(row, col);
}

void FlexGrid::SetRow(int row) {
    CheckRow(row);
    m_row = m_rowSel = row;
    if (m_col < columnCount())
        setCurrentCell(row, m_col);
    m_row = m_rowSel = row;
}

void FlexGrid::SetCol(int col) {
    CheckCol(col);
    m_col = m_colSel = col;
    if (m_row < rowCount())
        setCurrentCell(m_row, col);
    m_col = m_colSel = col;
}

void FlexGrid::SetRowSel(int row) {
    CheckRow(row);
    m_rowSel = row;
    clearSelection();
    const QTableWidgetSelectionRange range(std::min(m_row, row), std::min(m_col, m_colSel), std::max(m_row, row),
                                           std::max(m_col, m_colSel));
    setRangeSelected(range, true);
}

void FlexGrid::SetColSel(int col) {
    CheckCol(col);
    m_colSel = col;
}

int FlexGrid::ColWidth(int col) const {
    CheckCol(col);
    return columnWidth(col) * TwipsPerPixel;
}

void FlexGrid::SetColWidth(int col, int twips) {
    if (twips < -1)
        throw VbError(380, QStringLiteral("Invalid property value"));
    const int pixels = twips < 0 ? 64 : twips / TwipsPerPixel;
    if (col == -1) {
        for (int c = 0; c < columnCount(); ++c)
            setColumnWidth(c, pixels);
        return;
    }
    CheckCol(col);
    setColumnWidth(col, pixels);
}

int FlexGrid::ColAlignment(int col) const {
    CheckCol(col);
    return m_colAlignments.value(col, flexAlignGeneral);
}

void FlexGrid::SetColAlignment(int col, int alignment) {
    if (alignment < 0 || alignment > flexAlignGeneral)
        throw VbError(380, QStringLiteral("Invalid property value"));
    const int first = col == -1 ? 0 : col;
    const int last = col == -1 ? columnCount() - 1 : col;
    if (col != -1)
        CheckCol(col);
    for (int c = first; c <= last; ++c) {
        m_colAlignments[c] = alignment;
        for (int r = 0; r < rowCount(); ++r)
            ApplyAlignment(r, c);
    }
}

QColor FlexGrid::CellBackColor() const {
    const QTableWidgetItem* it = item(m_row, m_col);
    if (it && it->data(ExplicitBackRole).isValid())
        return it->data(ExplicitBackRole).value<QColor>();
    return palette().base().color();
}

void FlexGrid::SetCellBackColor(const QColor& color) {
    CheckRow(m_row);
    CheckCol(m_col);
    QTableWidgetItem* it = ItemAt(m_row, m_col);
    it->setData(ExplicitBackRole, color);
    it->setBackground(color);
}

void FlexGrid::SetCellBackColor(unsigned int oleColor) {
    if (oleColor & 0x80000000u) { // a system colour: the ordinary background
        CheckRow(m_row);
        CheckCol(m_col);
        QTableWidgetItem* it = ItemAt(m_row, m_col);
        it->setData(ExplicitBackRole, QVariant());
        ApplyFixedLook();
        return;
    }
    SetCellBackColor(QColor(oleColor & 0xFF, (oleColor >> 8) & 0xFF, (oleColor >> 16) & 0xFF));
}

int FlexGrid::CellAlignment() const {
    const QTableWidgetItem* it = item(m_row, m_col);
    if (it && it->data(CellAlignRole).isValid())
        return it->data(CellAlignRole).toInt();
    return m_colAlignments.value(m_col, flexAlignGeneral);
}

void FlexGrid::SetCellAlignment(int alignment) {
    CheckRow(m_row);
    CheckCol(m_col);
    if (alignment < 0 || alignment > flexAlignGeneral)
        throw VbError(380, QStringLiteral("Invalid property value"));
    ItemAt(m_row, m_col)->setData(CellAlignRole, alignment);
    ApplyAlignment(m_row, m_col);
}

QRect FlexGrid::CellRect(int row, int col) const {
    CheckRow(row);
    CheckCol(col);
    const QRect r = visualRect(model()->index(row, col));
    return r.translated(viewport()->pos());
}

void FLEX_Reset(FlexGrid& grid) {
    grid.Clear();
    grid.SetRows(1);
    grid.SetCols(4);
}

QString FLEX_JoinRow(const QStringList& cells) {
    return cells.join('\t');
}

QString FLEX_FieldNames(Recordset& rs) {
    return rs.FieldNames().join('|');
}

bool FLEX_DropEmptyRows(FlexGrid& grid, int col) {
    try {
        for (int row = grid.Rows() - 1; row >= 1; --row) {
            if (grid.TextMatrix(row, col).isEmpty()) {
                if (grid.FixedRows() != 0)
                    grid.SetFixedRows(0);
                grid.RemoveItem(row);
            }
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

void FLEX_ShowEditor(FlexGrid& grid, QLineEdit& editor, bool visible) {
    const QRect cell = grid.CellRect(grid.Row(), grid.Col());
    QPoint topLeft(grid.x() + cell.left(), grid.y() + cell.top());
    QWidget* parent = editor.parentWidget();
    if (parent && parent != grid.parentWidget() && parent->isAncestorOf(&grid))
        topLeft = grid.mapTo(parent, cell.topLeft());
    editor.setGeometry(topLeft.x(), topLeft.y(), cell.width(), std::max(editor.height(), cell.height()));
    editor.setText(grid.Text());
    editor.setVisible(visible);
    if (visible) {
        editor.raise();
        editor.setFocus();
        editor.selectAll();
    }
}

QString FLEX_NumberText(const Value& value, const QString& pattern) {
    switch (value.type()) {
    case VType::Empty:
    case VType::Null:
        return QString();
    case VType::String:
        if (!vb::IsNumeric(value))
            return value.toString(); // a name passes through the number format unchanged
        return vb::Format(Value(vb::Val(value.toString())), pattern);
    case VType::Date:
        return vb::Format(Value(ExcelSerialOf(value.toDate())), pattern);
    default:
        return vb::Format(value, pattern);
    }
}

QString FLEX_FieldText(const QString& fieldName, const Value& value) {
    if (fieldName == QLatin1String("Date"))
        return value.toString();
    return FLEX_NumberText(value, QStringLiteral("### ### ##0.00"));
}
