// The workbook engine, read back from the saved files.

#include "ReportEngine.h"

#include "HomeFolder.h"
#include "ScriptedMessageService.h"
#include "TempHome.h"
#include "WorkbookReader.h"

#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QUrl>
#include <gtest/gtest.h>
#include <ostream>

// Readable texts in failure messages.
inline void PrintTo(const QString& text, std::ostream* os) {
    *os << '"' << text.toStdString() << '"';
}

namespace {

class WorkbookEngine : public ::testing::Test {
protected:
    void SetUp() override {
        SetHomeFolder(m_home.path());
        XlApplication::SetSheetsInNewWorkbook(3);
        ASSERT_TRUE(REPORT_Workbook_Initialise(true));
    }
    void TearDown() override { REPORT_Workbook_Terminate(); }

    // Saves the book in hand under Reports/Reports and reads it back.
    WorkbookReader SaveAndRead(const QString& reportName = "Engine Test") {
        const QString path = REPORT_SaveReport(xlApp, "Reports", reportName);
        EXPECT_FALSE(path.isEmpty()) << m_messages.texts().join(" | ").toStdString();
        WorkbookReader reader;
        EXPECT_TRUE(reader.open(path)) << reader.error().toStdString();
        return reader;
    }

    void Title(const QString& first, const QString& last, const QString& text) {
        REPxlFmt(xlSheet, first, last, text, 2, 10, true, false, false, true, true, "", 1, -4108, -4108, 2, 0, 18);
    }

    TempHome m_home;
    ScriptedMessageService m_messages;
};

TEST_F(WorkbookEngine, InitialiseLeavesOneSheetOfTheDefaultBookAndSheetIndexOne) {
    EXPECT_EQ(xlBook->SheetsCount(), 1);
    EXPECT_EQ(xlSheet->Name(), "Sheet1");
    EXPECT_EQ(REPORT_GetSheetIndex(), 1);
    EXPECT_FALSE(xlApp->Visible());
    EXPECT_FALSE(xlApp->DisplayAlerts());
    EXPECT_FALSE(xlApp->ScreenUpdating());

    XlRef<XlWorkbook> other = xlApp->WorkbooksAdd();
    EXPECT_TRUE(REPORT_AddSheet(other));
    EXPECT_EQ(other->SheetsCount(), 4);
    EXPECT_EQ(other->Sheets(4)->Name(), "Sheet4");
    EXPECT_TRUE(REPORT_DeleteExtraSheets(other));
    EXPECT_EQ(other->SheetsCount(), 1);
    EXPECT_FALSE(REPORT_AddSheet(nullptr));
    EXPECT_FALSE(REPORT_DeleteExtraSheets(nullptr));
    EXPECT_TRUE(m_messages.shown.isEmpty());
}

TEST_F(WorkbookEngine, SheetNamesFollowTheSafeNameRulesAndRefusalsReachTheCaller) {
    QString slashed = "a/b";
    const QString first = REPORT_SafeSheetName(xlBook, slashed);
    EXPECT_EQ(first, "Sheet 1");
    xlSheet->SetName(first);

    ASSERT_TRUE(REPORT_AddSheet(xlBook));
    REPORT_SetSheetIndex(REPORT_GetSheetIndex() + 1);
    xlSheet = xlBook->Worksheets(REPORT_GetSheetIndex());
    QString fuel = "Fuel";
    xlBook->Worksheets(1)->SetName(REPORT_SafeSheetName(xlBook, fuel));
    QString again = "Fuel";
    EXPECT_EQ(REPORT_SafeSheetName(xlBook, again), "Sheet 2"); // the count includes the new sheet

    // The test looks at 30 characters but the uncut name is returned, and the sheet refuses it.
    QString longName = "Litres Per Vehicle From 2024-01-01"; // 34 characters
    const QString returned = REPORT_SafeSheetName(xlBook, longName);
    EXPECT_EQ(returned, "Litres Per Vehicle From 2024-01-01");
    EXPECT_EQ(longName, "Litres Per Vehicle From 2024-0");
    try {
        xlSheet->SetName(returned);
        FAIL() << "a 34-character sheet name was accepted";
    } catch (const XlError& e) {
        EXPECT_EQ(e.number(), 1004);
    }
    // A colon passes the engine's own test but not the sheet; nor does a name differing only in case.
    QString colon = "Km: Hours";
    EXPECT_TRUE(REPORT_SheetNameOk(xlBook, colon));
    EXPECT_THROW(xlSheet->SetName(colon), XlError);
    QString upper = "FUEL";
    EXPECT_TRUE(REPORT_SheetNameOk(xlBook, upper));
    EXPECT_THROW(xlSheet->SetName(upper), XlError);
    QString blank = "   ";
    EXPECT_FALSE(REPORT_SheetNameOk(xlBook, blank));
    for (const char* bad : {"a\\b", "a?", "a*", "[a]"}) {
        QString name = bad;
        EXPECT_EQ(REPORT_SafeSheetName(xlBook, name), "Sheet 2") << bad;
    }
    xlSheet->SetName("Litres Km");
    EXPECT_EQ(SaveAndRead().sheetNames(), (QStringList{"Fuel", "Litres Km"}));
}

TEST_F(WorkbookEngine, FormatCallPutsEveryPropertyInTheSavedFile) {
    Title("a1", "f1", "Fuel Purchases 2024/01/01 To 2024/01/31");
    REPxlFmt(xlSheet, "c3", "c3", Value(1234.5), 3, 8, false, true, true, false, false, "### ### ##0.00", 1, -4152,
             -4160, -4138, 3, 30);
    REPxlFmt(xlSheet, "d3", "d3", "Down", 2, 8, false, false, false, false, false, "", -4142, -4131, -4108, 2, 4, 30);
    REPORT_PageSetup(xlSheet, "$1:$2", "A:A", "Date &D Time &T", "Page #&P Of &N Pages", 2, "");
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    ASSERT_NE(s, nullptr);

    EXPECT_TRUE(s->merged("A1:F1"));
    EXPECT_EQ(s->text("A1"), "Fuel Purchases 2024/01/01 To 2024/01/31");
    const WbStyle& t = s->cell("A1")->style;
    EXPECT_TRUE(t.font.bold);
    EXPECT_EQ(t.font.size, 10);
    EXPECT_EQ(t.font.name, "Calibri");
    EXPECT_TRUE(t.wrapText);
    EXPECT_EQ(t.horizontal, "center");
    EXPECT_EQ(t.vertical, "center");
    EXPECT_EQ(t.borderTop, "thin");
    EXPECT_EQ(s->cell("F1")->style.borderRight, "thin"); // every cell of the range has its lines
    EXPECT_EQ(s->rowHeights.at(1), 18);

    const WbCell* c3 = s->cell("C3");
    ASSERT_TRUE(c3 && c3->isNumber());
    EXPECT_DOUBLE_EQ(c3->number, 1234.5);
    EXPECT_EQ(c3->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(c3->style.font.name, "Courier New");
    EXPECT_TRUE(c3->style.font.italic);
    EXPECT_TRUE(c3->style.font.underline);
    EXPECT_EQ(c3->style.borderLeft, "medium");
    EXPECT_EQ(c3->style.horizontal, "right");
    EXPECT_EQ(c3->style.vertical, "top");
    EXPECT_EQ(c3->style.rotation, 90);
    EXPECT_EQ(s->rowHeights.at(3), 30);

    const WbCell* d3 = s->cell("D3");
    EXPECT_EQ(d3->style.rotation, -90);
    EXPECT_EQ(d3->style.borderLeft, ""); // line style none leaves the weight alone

    EXPECT_EQ(s->orientation, "landscape");
    EXPECT_EQ(s->header, "&LDate &D Time &T&RPage #&P Of &N Pages");
    EXPECT_TRUE(s->printTitles.contains("$1:$2")) << s->printTitles.toStdString();
    EXPECT_TRUE(s->printTitles.contains("$A:$A")) << s->printTitles.toStdString();
}

TEST_F(WorkbookEngine, PageSetupPassesOverARefusedPropertyAndSetsTheRest) {
    xlSheet->Range("a1").SetValue("x");
    REPORT_PageSetup(xlSheet, "rows 1 and 2", "b:c", "Left", "Right", 7, "Centre");
    EXPECT_TRUE(m_messages.shown.isEmpty());
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_EQ(s->printTitles, "Sheet1!$B:$C");
    EXPECT_EQ(s->header, "&LLeft&CCentre&RRight");
    EXPECT_EQ(s->orientation, "portrait");
}

TEST_F(WorkbookEngine, FormattingStopsSilentlyAtTheRefusedPropertyInItsOrder) {
    // Horizontal alignment 0 is refused: value, font, size and bold are set before it, the lines after it are not.
    REPxlFmt(xlSheet, "b2", "b2", "Heading", 2, 12, true, false, false, false, false, "0.0", 1, 0, -4108, 2, 0, 40);
    REPxlFmt(xlSheet, "a0", "a0", "nowhere", 2, 12, true, false, false, false, false, "", 1, -4108, -4108, 2, 0, 40);
    EXPECT_TRUE(m_messages.shown.isEmpty());
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    const WbCell* b2 = s->cell("B2");
    ASSERT_NE(b2, nullptr);
    EXPECT_EQ(b2->text, "Heading");
    EXPECT_TRUE(b2->style.font.bold);
    EXPECT_EQ(b2->style.font.size, 12);
    EXPECT_EQ(b2->style.borderTop, "");
    EXPECT_EQ(b2->style.numberFormat, "General");
    EXPECT_EQ(s->rowHeights.count(2), 0u);
}

TEST_F(WorkbookEngine, FormatOneSetsOnlyItsSelectedProperty) {
    const Value v("x");
    auto one = [&](const char* cell, int selector) {
        return REPORT_ToExcel_FormatOne(xlSheet, cell, cell, selector, v, 3, 14, true, true, true, false, true, "0.000",
                                        1, -4152, -4160, 4, 0, 33);
    };
    xlSheet->Range("a1", "f1").SetValue("cell");
    EXPECT_TRUE(one("a1", 5));  // bold
    EXPECT_TRUE(one("b1", -1)); // italic
    EXPECT_TRUE(one("c1", 11)); // nothing
    EXPECT_TRUE(one("d1", 13)); // number format
    EXPECT_TRUE(one("e1", 10)); // font name
    EXPECT_TRUE(one("f1", 0));  // line style
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_TRUE(s->cell("A1")->style.font.bold);
    EXPECT_FALSE(s->cell("A1")->style.font.italic);
    EXPECT_TRUE(s->cell("B1")->style.font.italic);
    EXPECT_FALSE(s->cell("B1")->style.font.bold);
    const WbStyle& c1 = s->cell("C1")->style;
    EXPECT_FALSE(c1.font.bold || c1.font.italic || c1.font.underline || c1.wrapText);
    EXPECT_EQ(c1.numberFormat, "General");
    EXPECT_EQ(s->cell("D1")->style.numberFormat, "0.000");
    EXPECT_EQ(s->cell("E1")->style.font.name, "Courier New");
    EXPECT_EQ(s->cell("F1")->style.borderBottom, "thin");
    EXPECT_EQ(s->rowHeights.count(1), 0u);
}

TEST_F(WorkbookEngine, GreyFillsAreTheThemeTints) {
    xlSheet->Range("a1", "c1").SetValue("Title");
    EXPECT_TRUE(REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "c1", 0));
    EXPECT_TRUE(REPORT_ToExcel_ApplyCustomformat(xlSheet, "a2", "c2", 1));
    EXPECT_TRUE(REPORT_ToExcel_ApplyCustomformat(xlSheet, "a3", "a3", 7));
    EXPECT_FALSE(REPORT_ToExcel_ApplyCustomformat(xlSheet, "a1", "zzzz1", 0));
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_EQ(s->cell("A1")->style.fillPattern, "solid");
    EXPECT_EQ(s->cell("C1")->style.fillRgb, "D9D9D9");
    EXPECT_EQ(s->cell("B2")->style.fillRgb, "F2F2F2");
    EXPECT_EQ(s->cell("A3")->style.fillRgb, "FFFFFF"); // no tint: the plain background colour
}

TEST_F(WorkbookEngine, SumIsWrittenAsTheNumberItReturns) {
    xlSheet->Range("d3").SetValue(Value(10.25));
    xlSheet->Range("d4").SetValue("1 000.50");
    xlSheet->Range("d5").SetValue("Total"); // text counts nothing
    xlSheet->Range("d6").SetValue(Value(Currency::fromRaw(200000)));
    const double sum = xlApp->WorksheetFunction().Sum(xlSheet->Range("d3", "d6"));
    EXPECT_DOUBLE_EQ(sum, 1030.75);
    xlSheet->Range("d7").SetValue(sum);
    xlSheet->Range("d7").SetNumberFormat("### ### ##0.00");
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    const WbCell* d7 = s->cell("D7");
    ASSERT_TRUE(d7 && d7->isNumber());
    EXPECT_DOUBLE_EQ(d7->number, 1030.75);
    EXPECT_TRUE(d7->formula.isEmpty());
    EXPECT_EQ(d7->style.numberFormat, "### ### ##0.00");
}

TEST_F(WorkbookEngine, TextThatReadsAsANumberIsStoredAsTheNumber) {
    xlSheet->Range("a1").SetValue("1 234.50");
    xlSheet->Range("a2").SetValue("-12 345 678.9");
    xlSheet->Range("a3").SetValue("12abc");
    xlSheet->Range("a4").SetValue("12 34");
    xlSheet->Range("a5").SetValue("45.50%");
    xlSheet->Range("a6").SetValue("'0012");
    xlSheet->Range("a7").SetNumberFormat("@");
    xlSheet->Range("a7").SetValue("0012");
    xlSheet->Range("a8").SetValue("0012");
    EXPECT_EQ(xlSheet->Range("a1").GetValue().type(), VType::Double);
    // Writing a cell's value back turns text into numbers, as the reports do after a paste.
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_TRUE(s->cell("A1")->isNumber());
    EXPECT_DOUBLE_EQ(s->number("A1"), 1234.5);
    EXPECT_DOUBLE_EQ(s->number("A2"), -12345678.9);
    EXPECT_TRUE(s->cell("A3")->isText());
    EXPECT_TRUE(s->cell("A4")->isText()); // not a thousands grouping
    EXPECT_DOUBLE_EQ(s->number("A5"), 0.455);
    EXPECT_EQ(s->cell("A5")->style.numberFormat, "0.00%");
    EXPECT_EQ(s->text("A6"), "0012");
    EXPECT_TRUE(s->cell("A6")->isText());
    EXPECT_EQ(s->text("A7"), "0012");
    EXPECT_DOUBLE_EQ(s->number("A8"), 12);
}

TEST_F(WorkbookEngine, RangesOutsideTheSheetAndUnsetReferencesFailAsErrors) {
    for (const char* bad : {"a0", "a1048577", "xfe1", "1a", ""}) {
        try {
            xlSheet->Range(bad);
            ADD_FAILURE() << bad << " accepted";
        } catch (const XlError& e) {
            EXPECT_EQ(e.number(), 1004) << bad;
        }
    }
    EXPECT_NO_THROW(xlSheet->Range("XFD1048576"));
    EXPECT_EQ(xlSheet->Range("$b$2:c3").Address(), "$B$2:$C$3");
    EXPECT_EQ(xlSheet->Columns("A:A").Address(), "$A:$A");
    EXPECT_THROW(xlSheet->Columns("e3:e"), XlError);
    EXPECT_THROW(xlBook->Worksheets(2), XlError);
    EXPECT_THROW(xlSheet->Range("a1").SetFontSize(500), XlError);
    EXPECT_THROW(xlSheet->Range("a1").SetColumnWidth(300), XlError);
    EXPECT_THROW(xlSheet->SetOrientation(3), XlError);

    REPORT_Workbook_Terminate();
    try {
        xlSheet->Name();
        FAIL() << "an unset sheet reference was used";
    } catch (const XlError& e) {
        EXPECT_EQ(e.number(), 91);
    }
    EXPECT_THROW(REPORT_HideExcel(xlApp, false), XlError);
    ASSERT_TRUE(REPORT_Workbook_Initialise(true));
}

TEST_F(WorkbookEngine, ColumnsCarryWidthsAndFormatsToCellsWrittenLater) {
    xlSheet->Range("b3").SetValue(Value(5.0));
    xlSheet->Columns("a:a").SetColumnWidth(25);
    xlSheet->Columns("b:e").SetColumnWidth(15);
    xlSheet->Columns("b:e").SetNumberFormat("### ### ##0.00");
    xlSheet->Columns("c").SetFontSize(8);
    xlSheet->Range("e9").SetValue(Value(7.0));
    EXPECT_DOUBLE_EQ(xlSheet->Columns("c").ColumnWidth(), 15);
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_EQ(s->columnWidths.at(1), 25);
    EXPECT_EQ(s->columnWidths.at(4), 15);
    EXPECT_EQ(s->cell("B3")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(s->cell("E9")->style.numberFormat, "### ### ##0.00");
    EXPECT_EQ(s->cell("B3")->style.font.size, 11);
}

TEST_F(WorkbookEngine, MergedAreasKeepTheirFirstValueAndGrowOverOverlaps) {
    xlSheet->Range("a1").SetValue("keep");
    xlSheet->Range("b1").SetValue("lost");
    xlSheet->Range("a1", "b1").SetMergeCells(true);
    xlSheet->Range("b1", "c1").SetMergeCells(true); // overlaps: one area a1:c1
    xlSheet->Range("a1", "c1").SetValue("title");
    xlSheet->Range("e5").SetMergeCells(true); // one cell: no area
    EXPECT_TRUE(xlSheet->Range("c1").MergeCells());
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_EQ(s->merges, QStringList{"A1:C1"});
    EXPECT_EQ(s->text("A1"), "title");
    EXPECT_EQ(s->text("B1"), "");
}

TEST_F(WorkbookEngine, SaveNamesTheFileByReportAndSecondInItsFolder) {
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    const QString path = REPORT_SaveReport(xlApp, "Reports", "Litres Per Activity/Vehicle");
    const QDateTime after = QDateTime::currentDateTime().addSecs(1);
    ASSERT_FALSE(path.isEmpty());
    EXPECT_TRUE(m_messages.shown.isEmpty()); // no message when saved in a folder
    const QFileInfo info(path);
    EXPECT_EQ(info.absolutePath(), QDir(m_home.path() + "/Reports/Reports").absolutePath());
    static const QRegularExpression re(
        "^Litres Per Activity_Vehicle-(\\d{4}_\\d\\d_\\d\\d \\d\\d_\\d\\d_\\d\\d)\\.xlsx$");
    const auto m = re.match(info.fileName());
    ASSERT_TRUE(m.hasMatch()) << info.fileName().toStdString();
    const QDateTime stamp = QDateTime::fromString(m.captured(1), "yyyy_MM_dd HH_mm_ss");
    EXPECT_GE(stamp, before.addMSecs(-before.time().msec()));
    EXPECT_LE(stamp, after);
    EXPECT_TRUE(info.isFile());
    EXPECT_EQ(xlApp->ActiveWorkbook()->FullName(), info.absoluteFilePath());

    // A new folder is made; an empty folder name saves in the home folder and says so.
    EXPECT_TRUE(QFileInfo(REPORT_SaveReport(xlApp, "Services Allocate", "Service: List")).isFile());
    EXPECT_TRUE(QDir(m_home.path() + "/Reports/Services Allocate").exists());
    const QString direct = REPORT_SaveReport(xlApp, "  ", "Vehicle List");
    EXPECT_EQ(QFileInfo(direct).absolutePath(), QDir(m_home.path()).absolutePath());
    ASSERT_EQ(m_messages.shown.size(), 1);
    EXPECT_EQ(m_messages.last(), "File saved in " + direct);
    EXPECT_EQ(m_messages.shown[0].icon, MsgIcon::None);
}

TEST_F(WorkbookEngine, SaveFailureAsksToResumeOrLeave) {
    // A file where the Reports folder should be: neither the folder nor the file can be made.
    QDir(m_home.path()).rmdir("Reports");
    QFile blocker(m_home.path() + "/Reports");
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    m_messages.answer(MsgResult::No);
    EXPECT_TRUE(REPORT_SaveReport(xlApp, "Reports", "Fuel Usage").isEmpty());
    ASSERT_EQ(m_messages.shown.size(), 1);
    const ShownMessage& box = m_messages.shown[0];
    EXPECT_TRUE(box.text.startsWith("Error in REPORT_SaveReport \r\n")) << box.text.toStdString();
    EXPECT_TRUE(box.text.endsWith("\r\n\r\nYes - Resume Next, No - Exit")) << box.text.toStdString();
    EXPECT_EQ(box.buttons, MsgButtons::YesNoDefaultNo);
    EXPECT_EQ(box.icon, MsgIcon::Question);

    // Yes goes on with the next statement: the sub-folder and the save fail in turn.
    m_messages.clear();
    m_messages.answer(MsgResult::Yes);
    m_messages.answer(MsgResult::Yes);
    m_messages.answer(MsgResult::Yes);
    EXPECT_TRUE(REPORT_SaveReport(xlApp, "Reports", "Fuel Usage").isEmpty());
    EXPECT_EQ(m_messages.shown.size(), 3);
    // The book is still in hand and can be shown.
    EXPECT_NO_THROW(REPORT_HideExcel(xlApp, false));
    EXPECT_TRUE(xlApp->Visible());
}

TEST_F(WorkbookEngine, CopyFromRecordsetWritesTypedCells) {
    auto db = Database::Open(m_home.dataPath() + "copy.db");
    db->Execute("create table t (id long, name text(50), litres double, amount currency, fmt text(20))");
    db->Execute("insert into t (id, name, litres, amount, fmt) values (1, 'Tank A', 12.5, 100.25, '1 234.50')");
    db->Execute("insert into t (id, name, litres, amount, fmt) values (2, null, 7, 3, '9')");
    auto rs = db->OpenRecordset("select id, name, litres, amount, fmt from t order by id");
    EXPECT_EQ(xlSheet->Range("a3").CopyFromRecordset(*rs), 2);
    EXPECT_TRUE(rs->Eof());
    // The pasted text stays text until its value is written back.
    EXPECT_EQ(xlSheet->Range("e3").GetValue().type(), VType::String);
    xlSheet->Range("e4").SetValue(xlSheet->Range("e4").GetValue());
    const WorkbookReader book = SaveAndRead();
    const WbSheet* s = book.sheet(0);
    EXPECT_DOUBLE_EQ(s->number("A3"), 1);
    EXPECT_EQ(s->text("B3"), "Tank A");
    EXPECT_EQ(s->cell("B4"), nullptr);
    EXPECT_DOUBLE_EQ(s->number("C3"), 12.5);
    EXPECT_DOUBLE_EQ(s->number("D3"), 100.25);
    EXPECT_TRUE(s->cell("E3")->isText());
    EXPECT_TRUE(s->cell("E4")->isNumber());
}

TEST(ColumnLetters, TableLookupsAndTheFontIndex) {
    const QStringList table = COLUMN_LetterTable();
    ASSERT_EQ(table.size(), 442);
    EXPECT_EQ(QStringList({table[0], table[25], table[26], table[441]}), QStringList({"a", "z", "aa", "pz"}));
    EXPECT_EQ(COLUMN_Letter(27, false) + COLUMN_Letter(27, true), "ABab");
    EXPECT_THROW(COLUMN_Letter(442, true), VbError);
    EXPECT_EQ(QList<int>({COLUMN_Number("A"), COLUMN_Number("Aa"), COLUMN_Number("qa")}), QList<int>({1, 27, 0}));
    EXPECT_EQ(COLUMN_Offset("c", true, 1) + COLUMN_Offset("c", false, 2) + COLUMN_Offset("b", true, 5), "BEa");
    EXPECT_EQ(QList<int>({REPORT_TextAngle(3), REPORT_TextAngle(4), REPORT_TextAngle(1)}), QList<int>({90, -90, 0}));
    // A font number past the table falls back to the first font and the caller's number is rewritten.
    int index = 12;
    EXPECT_EQ(REPORT_FontName(index), "Arial");
    EXPECT_EQ(index, 1);
}

} // namespace

// Catches the desktop's "open this file" instead of starting a program.
class OpenedFiles : public QObject {
    Q_OBJECT
public:
    QList<QUrl> urls;
public slots:
    void open(const QUrl& url) { urls << url; }
};

TEST(WorkbookShow, ComingForwardOpensTheSavedFileUnlessShowingIsOff) {
    TempHome home;
    SetHomeFolder(home.path());
    ScriptedMessageService messages;
    OpenedFiles opened;
    QDesktopServices::setUrlHandler("file", &opened, "open");
    const QByteArray noShow = qgetenv("ORVEL_NO_SHOW");

    qunsetenv("ORVEL_NO_SHOW");
    ASSERT_TRUE(REPORT_Workbook_Initialise(false)); // an empty new book shows nothing
    EXPECT_TRUE(opened.urls.isEmpty());
    xlSheet->Range("a1").SetValue("Fuel");
    const QString path = REPORT_SaveReport(xlApp, "Reports", "Shown");
    REPORT_HideExcel(xlApp, true);
    REPORT_HideExcel(xlApp, false);
    REPORT_HideExcel(xlApp, false); // once per file
    ASSERT_EQ(opened.urls.size(), 1);
    EXPECT_EQ(opened.urls[0].toLocalFile(), QFileInfo(path).absoluteFilePath());
    REPORT_Workbook_Terminate();

    qputenv("ORVEL_NO_SHOW", "1");
    ASSERT_TRUE(REPORT_Workbook_Initialise(true));
    xlSheet->Range("a1").SetValue("Fuel");
    REPORT_SaveReport(xlApp, "Reports", "Not shown");
    REPORT_HideExcel(xlApp, false);
    EXPECT_EQ(opened.urls.size(), 1);
    REPORT_Workbook_Terminate();

    QDesktopServices::unsetUrlHandler("file");
    qputenv("ORVEL_NO_SHOW", noShow);
}

#include "WorkbookEngineTests.moc"
