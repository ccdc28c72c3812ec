// The engine's operations over the one book in hand, as every report calls them.

#include "ReportEngine.h"

#include "HomeFolder.h"
#include "MessageService.h"
#include "QueryHelpers.h"
#include "Vb.h"

#include <QDateTime>
#include <QDir>
#include <functional>

XlRef<XlApplication> xlApp;
XlRef<XlWorkbook> xlBook;
XlRef<XlWorksheet> xlSheet;
QString xlCell1;
QString xlCell2;
Value xlValue;
std::int32_t xlRow = 0;
QString xlSheetIndex;

namespace {

QString ErrorText(const std::exception& e) {
    if (const auto* x = dynamic_cast<const XlError*>(&e))
        return x->description();
    if (const auto* v = dynamic_cast<const VbError*>(&e))
        return v->description();
    if (const auto* d = dynamic_cast<const DbError*>(&e))
        return d->description();
    return QString::fromUtf8(e.what());
}

const QStringList& FontTable() {
    static const QStringList fonts = {"Arial",  "Calibri",  "Courier New", "Times New Roman", "Microsoft Sans Serif",
                                      "Tahoma", "Terminal", "Verdana",     "System"};
    return fonts;
}

} // namespace

bool REPORT_Workbook_Initialise(bool hide) {
    try {
        xlApp = std::make_shared<XlApplication>();
        xlBook = xlApp->WorkbooksAdd();
        REPORT_HideExcel(xlApp, hide);
        REPORT_DeleteExtraSheets(xlBook);
        REPORT_SetSheetIndex(1);
        xlSheet = xlBook->Worksheets(1);
        return true;
    } catch (const std::exception& e) {
        MsgBox("ERROR REPORT_Workbook_Initialise " + ErrorText(e), MsgButtons::Ok, MsgIcon::Critical);
        return false;
    }
}

bool REPORT_Workbook_Terminate() {
    try {
        // The references go; the file on disk and the shown workbook stay.
        xlSheet = nullptr;
        xlBook = nullptr;
        xlApp = nullptr;
        return true;
    } catch (const std::exception& e) {
        MsgBox("ERROR REPORT_Workbook_Terminate " + ErrorText(e), MsgButtons::Ok, MsgIcon::Critical);
        return false;
    }
}

void REPORT_HideExcel(const XlRef<XlApplication>& app, bool hide) {
    app->SetVisible(!hide);
    app->SetScreenUpdating(!hide);
    app->SetDisplayAlerts(!hide);
}

int REPORT_GetSheetIndex() {
    return static_cast<int>(vb::CInt(Value(xlSheetIndex)));
}

void REPORT_SetSheetIndex(int index) {
    xlSheetIndex = QString::number(index);
}

bool REPORT_AddSheet(const XlRef<XlWorkbook>& book) {
    try {
        book->WorksheetsAdd(book->Worksheets(book->SheetsCount()));
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool REPORT_DeleteExtraSheets(const XlRef<XlWorkbook>& book) {
    try {
        const int count = book->SheetsCount();
        if (count > 1)
            for (int i = count; i >= 2; --i)
                book->Sheets(i)->Delete();
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool REPORT_SheetNameOk(const XlRef<XlWorkbook>& book, QString& name) {
    name = name.left(30);
    const QString found = RegexFind(QStringLiteral("[\\\\/\\?\\*\\[\\]]"), name, false);
    if (found != QLatin1String("Failed") || vb::Trim(name).isEmpty())
        return false;
    for (int i = 1; i <= book->SheetsCount(); ++i)
        if (book->Sheets(i)->Name() == name)
            return false;
    return true;
}

QString REPORT_SafeSheetName(const XlRef<XlWorkbook>& book, QString& name) {
    QString copy = name;
    if (!REPORT_SheetNameOk(book, name))
        copy = "Sheet " + QString::number(book->SheetsCount());
    return copy;
}

QString REPORT_FontName(int& index) {
    const QStringList& fonts = FontTable();
    if (index > fonts.size())
        index = 1;
    if (index < 1)
        throw VbError(9, QStringLiteral("Subscript out of range"));
    return fonts[index - 1];
}

void REPxlFmt(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell, const Value& value,
              int fontIndex, int fontSize, bool bold, bool italic, bool underline, bool mergeCells, bool wrapText,
              const QString& numberFormat, int lineStyle, int horizontal, int vertical, int weight, int orientationCode,
              const Value& rowHeight) {
    REPORT_ToExcel_Format(ws, firstCell, lastCell, value, fontIndex, fontSize, bold, italic, underline, mergeCells,
                          wrapText, numberFormat, lineStyle, horizontal, vertical, weight, orientationCode, rowHeight);
}

bool REPORT_ToExcel_Format(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                           const Value& value, int fontIndex, int fontSize, bool bold, bool italic, bool underline,
                           bool mergeCells, bool wrapText, const QString& numberFormat, int lineStyle, int horizontal,
                           int vertical, int weight, int orientationCode, const Value& rowHeight) {
    try {
        XlRange r = ws->Range(firstCell, lastCell);
        r.SetFontItalic(italic);
        r.SetMergeCells(mergeCells);
        r.SetWrapText(wrapText);
        r.SetValue(value);
        r.SetFontName(REPORT_FontName(fontIndex));
        r.SetFontSize(fontSize);
        r.SetFontBold(bold);
        r.SetHorizontalAlignment(horizontal);
        r.SetVerticalAlignment(vertical);
        r.SetBorderLineStyle(lineStyle);
        if (lineStyle != xl::None)
            r.SetBorderWeight(weight);
        if (!numberFormat.isEmpty())
            r.SetNumberFormat(numberFormat);
        r.SetRowHeight(rowHeight);
        r.SetFontUnderline(underline);
        r.SetOrientation(REPORT_TextAngle(orientationCode));
        return true;
    } catch (const std::exception&) {
        return false; // the range stays as far as it got
    }
}

bool REPORT_ToExcel_FormatOne(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                              int selector, const Value& /*value*/, int fontIndex, int fontSize, bool bold, bool italic,
                              bool underline, bool mergeCells, bool wrapText, const QString& numberFormat,
                              int lineStyle, int horizontal, int vertical, int weight, int /*orientationCode*/,
                              const Value& rowHeight) {
    try {
        XlRange r = ws->Range(firstCell, lastCell);
        switch (selector) {
        case 0:
            r.SetBorderLineStyle(lineStyle);
            break;
        case 1:
            r.SetFontSize(fontSize);
            break;
        case 2:
            r.SetHorizontalAlignment(horizontal);
            break;
        case 3:
            r.SetMergeCells(mergeCells);
            break;
        case 4:
            r.SetWrapText(wrapText);
            break;
        case 5:
            r.SetFontBold(bold);
            break;
        case 6:
            r.SetFontUnderline(underline);
            break;
        case 7:
            r.SetRowHeight(rowHeight);
            break;
        case 8:
            r.SetBorderWeight(weight);
            break;
        case 9:
            r.SetVerticalAlignment(vertical);
            break;
        case 10:
            r.SetFontName(REPORT_FontName(fontIndex));
            break;
        case -1:
            r.SetFontItalic(italic);
            break;
        case 13:
            r.SetNumberFormat(numberFormat);
            break;
        default:
            break; // 11 and any other selector set nothing
        }
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

bool REPORT_ToExcel_ApplyCustomformat(const XlRef<XlWorksheet>& ws, const QString& firstCell, const QString& lastCell,
                                      int shade) {
    try {
        XlRange r = ws->Range(firstCell, lastCell);
        r.SetInteriorPattern(1);
        r.SetInteriorPatternColorIndex(-4105);
        r.SetInteriorThemeColor(1);
        r.SetInteriorTintAndShade(REPORT_FillTint(shade));
        r.SetInteriorPatternTintAndShade(0);
        return true;
    } catch (const std::exception&) {
        return false;
    }
}

Value REPORT_FillTint(int shade) {
    if (shade == 0)
        return Value(-0.149998474074526);
    if (shade == 1)
        return Value(-0.0499893185216834);
    return Value();
}

int REPORT_TextAngle(int code) {
    if (code == 3)
        return 90;
    if (code == 4)
        return -90;
    return 0;
}

void REPORT_PageSetup(const XlRef<XlWorksheet>& ws, const QString& titleRows, const QString& titleColumns,
                      const QString& leftHeader, const QString& rightHeader, int orientation,
                      const QString& centreHeader) {
    // Each property on its own: one that fails is passed over.
    const std::function<void()> steps[] = {
        [&] { ws->SetPrintTitleRows(titleRows); },
        [&] {
            if (!titleColumns.isEmpty())
                ws->SetPrintTitleColumns(ws->Columns(titleColumns).Address());
        },
        [&] { ws->SetLeftHeader(leftHeader); },
        [&] { ws->SetCenterHeader(centreHeader); },
        [&] { ws->SetRightHeader(rightHeader); },
        [&] { ws->SetOrientation(orientation); },
    };
    for (const auto& step : steps) {
        try {
            step();
        } catch (const std::exception&) {
        }
    }
}

QString REPORT_SaveReport(const XlRef<XlApplication>& app, const QString& folder, const QString& reportName) {
    QString base, name, path, saved;
    auto makeFolder = [](const QString& dir) {
        if (!QDir().mkpath(dir))
            throw XlError(75, QStringLiteral("Path/File access error: cannot make the folder %1").arg(dir));
    };
    const bool inFolder = !vb::Trim(folder).isEmpty();
    // The statements in order; after a failure the user may go on with the next one (Resume Next) or leave.
    std::vector<std::function<void()>> steps = {
        [&] { base = HomeFolder() + "/Reports/"; },
        [&] {
            name = reportName + "-" + vb::Format(Value(QDateTime::currentDateTime()), "yyyy_MM_dd HH_nn_ss") + ".xlsx";
        },
        [&] { name = RegexReplace(name, QStringLiteral("[\\<\\>\\:/\\\\\\|\\?\\*\\+]"), QStringLiteral("_")); },
        [&] {
            if (!FolderExists(base))
                makeFolder(base);
        },
    };
    if (inFolder) {
        steps.push_back([&] {
            if (!QFileInfo(base + folder).isDir())
                makeFolder(base + folder);
        });
        steps.push_back([&] { path = base + folder + "/" + name; });
        steps.push_back([&] {
            app->ActiveWorkbook()->SaveAs(path, xl::Workbook);
            saved = path;
        });
    } else {
        steps.push_back([&] { path = HomeFolder() + "/" + name; });
        steps.push_back([&] {
            app->ActiveWorkbook()->SaveAs(path, xl::Workbook);
            saved = path;
        });
        steps.push_back([&] { MsgBox("File saved in " + path); });
    }
    for (const auto& step : steps) {
        try {
            step();
        } catch (const std::exception& e) {
            if (!ConfirmError(true, "Error in REPORT_SaveReport ", QString(), ErrorText(e)))
                return saved;
        }
    }
    return saved;
}

QStringList COLUMN_LetterTable() {
    QStringList table;
    table.reserve(442);
    for (char j = 'a'; j <= 'z'; ++j)
        table << QString(QChar(j));
    for (int i = 0; i < 16; ++i)
        for (int j = 0; j < 26; ++j)
            table << table[i] + table[j];
    return table;
}

// The lookups share one table: it never changes, and reports ask for a letter per cell.
static const QStringList& LetterTable() {
    static const QStringList table = COLUMN_LetterTable();
    return table;
}

QString COLUMN_Letter(int index, bool lower) {
    const QStringList& table = LetterTable();
    if (index < 0 || index >= table.size())
        throw VbError(9, QStringLiteral("Subscript out of range"));
    return lower ? table[index] : table[index].toUpper();
}

int COLUMN_Number(const QString& letters) {
    const QStringList& table = LetterTable();
    const QString wanted = letters.toLower();
    for (int i = 0; i < table.size(); ++i)
        if (table[i] == wanted)
            return i + 1;
    return 0;
}

QString COLUMN_Offset(const QString& letters, bool back, int count) {
    try {
        const int n = COLUMN_Number(letters);
        return back ? COLUMN_Letter(n - (count + 1), false) : COLUMN_Letter(n + count - 1, false);
    } catch (const std::exception&) {
        return QStringLiteral("a");
    }
}
