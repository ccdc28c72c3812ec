// The list grid: the row protocol, headings, dropping empty rows, the look of columns and cells.

#include "FlexGrid.h"

#include "TempHome.h"

#include <QLineEdit>
#include <QTest>
#include <gtest/gtest.h>
#include <ostream>

// Readable texts in failure messages.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

void Fill(FlexGrid& grid, const QStringList& firstColumn) {
    FLEX_Reset(grid);
    grid.SetFormatString("Fuel Tank|Date|Vehicle");
    for (const QString& cell : firstColumn)
        grid.AddItem(FLEX_JoinRow({cell, "2024/01/05", "Truck"}));
}

TEST(FlexGrid, ResetHeadingsAndTheTabJoinedRowProtocol) {
    FlexGrid grid;
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.FixedRows(), 1);
    grid.SetTextMatrix(1, 1, "old");
    FLEX_Reset(grid);
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_EQ(grid.Cols(), 4);
    EXPECT_EQ(grid.TextMatrix(0, 1), "");

    grid.SetFormatString("Fuel Tank|Date|>Litres");
    EXPECT_EQ(grid.Cols(), 3);
    EXPECT_EQ(grid.TextMatrix(0, 0), "Fuel Tank");
    EXPECT_EQ(grid.TextMatrix(0, 2), "Litres");
    EXPECT_EQ(grid.ColAlignment(2), flexAlignRightCenter);

    grid.AddItem("Tank A\t2024/01/05\t1 234.50");
    grid.AddItem("\t\tTotal\textra cell ignored");
    grid.AddItem("only one");
    ASSERT_EQ(grid.Rows(), 4);
    EXPECT_EQ(grid.TextMatrix(1, 2), "1 234.50");
    EXPECT_EQ(grid.TextMatrix(2, 0), "");
    EXPECT_EQ(grid.TextMatrix(2, 2), "Total");
    EXPECT_EQ(grid.TextMatrix(3, 1), "");
    grid.AddItem("First\tx\ty", 1);
    EXPECT_EQ(grid.TextMatrix(1, 0), "First");
    EXPECT_THROW(grid.TextMatrix(5, 0), VbError);
    EXPECT_THROW(grid.TextMatrix(1, 3), VbError);
    EXPECT_EQ(FLEX_JoinRow({"a", "", "c"}), "a\t\tc");
}

TEST(FlexGrid, TheLastRowThatIsNotFixedCannotBeRemoved) {
    FlexGrid grid;
    Fill(grid, {"A"});
    try {
        grid.RemoveItem(1);
        FAIL() << "the last data row was removed under a fixed row";
    } catch (const VbError& e) {
        EXPECT_EQ(e.number(), 30015);
    }
    grid.SetFixedRows(0);
    grid.RemoveItem(1);
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_THROW(grid.RemoveItem(0), VbError);
    EXPECT_THROW(grid.SetFixedRows(2), VbError);
}

TEST(FlexGrid, DropEmptyRowsWalksUpAndDropsTheFixedRowAtTheFirstEmptyOne) {
    FlexGrid grid;
    Fill(grid, {"x", "", "y", ""});
    EXPECT_TRUE(FLEX_DropEmptyRows(grid, 0));
    ASSERT_EQ(grid.Rows(), 3);
    EXPECT_EQ(grid.TextMatrix(0, 0), "Fuel Tank");
    EXPECT_EQ(grid.TextMatrix(1, 0), "x");
    EXPECT_EQ(grid.TextMatrix(2, 0), "y");
    EXPECT_EQ(grid.FixedRows(), 0);

    // Nothing empty: the fixed row stays.
    FlexGrid full;
    Fill(full, {"x", "y"});
    EXPECT_TRUE(FLEX_DropEmptyRows(full, 0));
    EXPECT_EQ(full.Rows(), 3);
    EXPECT_EQ(full.FixedRows(), 1);

    // The only data row empty: removed after the fixed row is dropped.
    grid.SetFixedRows(1);
    Fill(grid, {""});
    EXPECT_TRUE(FLEX_DropEmptyRows(grid, 0));
    EXPECT_EQ(grid.Rows(), 1);
    EXPECT_EQ(grid.FixedRows(), 0);

    // Another column decides; a column outside the grid fails without a message.
    Fill(grid, {"x", "y"});
    grid.SetTextMatrix(2, 2, "");
    EXPECT_TRUE(FLEX_DropEmptyRows(grid, 2));
    EXPECT_EQ(grid.Rows(), 2);
    EXPECT_EQ(grid.TextMatrix(1, 0), "x");
    EXPECT_FALSE(FLEX_DropEmptyRows(grid, 9));
}

TEST(FlexGrid, ColumnWidthsInTwipsAlignmentAndCellColours) {
    FlexGrid grid;
    Fill(grid, {"x", "y"});
    grid.SetColWidth(1, 1500);
    EXPECT_EQ(grid.ColWidth(1), 1500);
    EXPECT_EQ(grid.columnWidth(1), 100);
    grid.SetColAlignment(2, flexAlignCenterCenter);
    EXPECT_EQ(grid.item(1, 2)->textAlignment(), int(Qt::AlignHCenter | Qt::AlignVCenter));
    grid.SetColAlignment(0, flexAlignGeneral);
    grid.SetTextMatrix(2, 0, "1 234.50");
    EXPECT_TRUE(grid.item(2, 0)->textAlignment() & Qt::AlignRight);
    EXPECT_TRUE(grid.item(1, 0)->textAlignment() & Qt::AlignLeft);

    grid.SetRow(2);
    grid.SetCol(1);
    EXPECT_EQ(grid.Text(), "2024/01/05");
    grid.SetCellBackColor(0x0000FFu); // &HFF: red
    EXPECT_EQ(grid.CellBackColor(), QColor(255, 0, 0));
    EXPECT_EQ(grid.item(2, 1)->background().color(), QColor(255, 0, 0));
    grid.SetRowSel(1);
    EXPECT_EQ(grid.RowSel(), 1);
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_THROW(grid.SetRow(3), VbError);
}

TEST(FlexGrid, ClickingACellMakesItCurrentAndTheEditorLiesOverIt) {
    QWidget form;
    form.resize(500, 300);
    FlexGrid grid(&form);
    grid.setGeometry(20, 30, 400, 200);
    QLineEdit editor(&form);
    editor.hide();
    Fill(grid, {"x", "y"});
    grid.SetTextMatrix(2, 2, "Bakkie");
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&form));

    const QRect cell = grid.visualRect(grid.model()->index(2, 2));
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, cell.center());
    EXPECT_EQ(grid.Row(), 2);
    EXPECT_EQ(grid.Col(), 2);

    FLEX_ShowEditor(grid, editor, true);
    EXPECT_TRUE(editor.isVisible());
    EXPECT_EQ(editor.text(), "Bakkie");
    const QRect at = grid.CellRect(2, 2);
    EXPECT_EQ(editor.x(), grid.x() + at.left());
    EXPECT_EQ(editor.y(), grid.y() + at.top());
    EXPECT_EQ(editor.width(), at.width());
    FLEX_ShowEditor(grid, editor, false);
    EXPECT_FALSE(editor.isVisible());
}

TEST(FlexGrid, CellTextOfNumbersDatesAndNames) {
    EXPECT_EQ(FLEX_FieldText("Date", Value("2024/01/05")), "2024/01/05");
    EXPECT_EQ(FLEX_FieldText("Litres", Value(1234567.5)), "1 234 567.50");
    EXPECT_EQ(FLEX_FieldText("Driver", Value("Jan Smit")), "Jan Smit");
    EXPECT_EQ(FLEX_FieldText("Litres", Value::null()), "");
    EXPECT_EQ(FLEX_NumberText(Value("12.5"), "0.00"), "12.50"); // a number held as text is formatted
    // A date in a column not named "Date" comes out as a number.
    EXPECT_EQ(FLEX_FieldText("datum", Value(QDate(2024, 1, 15))).trimmed(), "45 306.00");
}

TEST(FlexGrid, FieldNamesAreTheHeadingString) {
    TempHome home;
    auto db = Database::Open(home.dataPath() + "grid.db");
    db->Execute("create table g (tank text(20), [Open Litres] double, balance double)");
    auto rs = db->OpenRecordset("select tank as [Fuel Tank], [Open Litres], balance from g");
    EXPECT_EQ(FLEX_FieldNames(*rs), "Fuel Tank|Open Litres|balance");
}

} // namespace
