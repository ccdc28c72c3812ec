// Times "Detailed Veh. Fuel Usage" for every vehicle of both meter kinds on the large demo register: the print
// end to end (statement, two sheets, workbook saved) and the preview (the grid fill). The floor is the same
// rows read by SQLite's own statement on the same connection and written as the same cells and formats by
// plain libxlsxwriter calls.
//
//   orvel_usage_bench [figures-file] [fuel-rows]     (default: the large demo register, 100 000 fuel rows)

#include "BenchSupport.h"

#include "Database.h"
#include "DemoRegister.h"
#include "FillReportGrid.h"
#include "FlexGrid.h"
#include "FuelUsageReports.h"
#include "HomeFolder.h"
#include "MessageService.h"
#include "ReportScreens.h"
#include "Session.h"
#include "StoreStartup.h"
#include "SyntheticRegister.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cstdio>
#include <sqlite3.h>
#include <xlsxwriter.h>

namespace {

class QuietMessages : public MessageService {
public:
    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon, const QString&) override {
        if (!text.endsWith(" Completed"))
            throw DbError(3000, "unexpected message: " + text);
        return buttons == MsgButtons::Ok ? MsgResult::Ok : MsgResult::Yes;
    }
};

QString IdsOf(Database& store, bool hours) {
    QStringList ids;
    auto rs = store.OpenRecordset(QString("select v.transid from voertuig v, voerkat k where k.transid = v.catid and "
                                          "k.hours = ") +
                                      (hours ? "true" : "false"),
                                  RecordsetType::Snapshot);
    for (; !rs->Eof(); rs->MoveNext())
        ids << rs->Field(0).toString();
    return ids.join(",");
}

// The statement of one kind as SQLite's own text, with the dialect's proper-case function on the connection.
QByteArray FloorSql(const QString& ids, const QString& from, const QString& to) {
    return ("select f.datum, jet_strconv(t.tanknaam,3), jet_strconv(k.[desc],3), v.maak || '(' || v.regnr || ')', "
            "d.description, a.description, f.litres, f.kmread, f.previouskmread, f.kmread - f.previouskmread, "
            "(f.kmread - f.previouskmread) / f.litres, (f.litres / (f.kmread - f.previouskmread)) * 100, f.rperl, "
            "(f.litres * f.rperl) / (f.kmread - f.previouskmread) "
            "from vecfuel f, voertuig v, drivers d, activities a, voerkat k, tanks t "
            "where f.voertuigid = v.transid and f.driverid = d.id and f.activityid = a.id and f.tankid = t.transid "
            "and k.transid = v.catid and f.datum between '" +
            from + "' and '" + to + "' and f.kmread > 0 and v.transid in (" + ids + ") order by f.datum")
        .toUtf8();
}

// The floor: both kinds' sheets with the report's title, headings, cells, number format, widths and page.
int Floor(Database& store, const QStringList& kinds, const QStringList& ids, const QString& from, const QString& to,
          const QString& path) {
    static const char* const headings[] = {"Date",     "Tank",     "Category",      "Vehicle", "Driver",
                                           "Activity", "litres",   "Km/Hours Read", "Prev Km", "Km",
                                           "Km/l",     "L/100 Km", "Cost/Litre",    "Cost/Km"};
    lxw_workbook* book = workbook_new(path.toUtf8().constData());
    lxw_format* title = workbook_add_format(book);
    format_set_font_name(title, "Arial");
    format_set_font_size(title, 10);
    format_set_bold(title);
    format_set_align(title, LXW_ALIGN_CENTER);
    format_set_align(title, LXW_ALIGN_VERTICAL_CENTER);
    format_set_border(title, LXW_BORDER_THIN);
    format_set_pattern(title, LXW_PATTERN_SOLID);
    format_set_bg_color(title, 0xD9D9D9);
    lxw_format* heading = workbook_add_format(book);
    format_set_font_name(heading, "Arial");
    format_set_font_size(heading, 10);
    format_set_bold(heading);
    format_set_text_wrap(heading);
    format_set_align(heading, LXW_ALIGN_CENTER);
    format_set_align(heading, LXW_ALIGN_VERTICAL_CENTER);
    format_set_border(heading, LXW_BORDER_THIN);
    format_set_pattern(heading, LXW_PATTERN_SOLID);
    format_set_bg_color(heading, 0xD9D9D9);
    lxw_format* text = workbook_add_format(book);
    format_set_font_name(text, "Arial");
    format_set_font_size(text, 8);
    lxw_format* number = workbook_add_format(book);
    format_set_font_name(number, "Arial");
    format_set_font_size(number, 8);
    format_set_num_format(number, "### ### ##0.00");
    int rows = 0;
    for (int k = 0; k < kinds.size(); ++k) {
        lxw_worksheet* sheet = workbook_add_worksheet(book, kinds[k].toUtf8().constData());
        const QByteArray caption = ("Detailed Veh. Fuel Usage From " + from + " To " + to).toUtf8();
        worksheet_merge_range(sheet, 0, 0, 0, 13, caption.constData(), title);
        worksheet_set_row(sheet, 0, 18, nullptr);
        for (int c = 0; c < 14; ++c)
            worksheet_write_string(sheet, 1, static_cast<lxw_col_t>(c), headings[c], heading);
        worksheet_set_row(sheet, 1, 50, nullptr);
        sqlite3_stmt* s = nullptr;
        const QByteArray sql = FloorSql(ids[k], from, to);
        if (sqlite3_prepare_v2(store.handle(), sql.constData(), -1, &s, nullptr) != SQLITE_OK)
            throw DbError(3000, QString("floor statement: ") + sqlite3_errmsg(store.handle()));
        lxw_row_t row = 2;
        while (sqlite3_step(s) == SQLITE_ROW) {
            for (int c = 0; c < 14; ++c) {
                lxw_format* format = c >= 6 ? number : text;
                if (sqlite3_column_type(s, c) == SQLITE_TEXT)
                    worksheet_write_string(sheet, row, static_cast<lxw_col_t>(c),
                                           reinterpret_cast<const char*>(sqlite3_column_text(s, c)), format);
                else if (sqlite3_column_type(s, c) != SQLITE_NULL)
                    worksheet_write_number(sheet, row, static_cast<lxw_col_t>(c), sqlite3_column_double(s, c), format);
            }
            ++row;
            ++rows;
        }
        sqlite3_finalize(s);
        worksheet_set_column(sheet, 0, 0, 8, nullptr);
        worksheet_set_column(sheet, 1, 5, 10, nullptr);
        worksheet_set_column(sheet, 6, 9, 12, number);
        worksheet_set_column(sheet, 10, 13, 6, number);
        worksheet_set_landscape(sheet);
        worksheet_repeat_rows(sheet, 0, 1);
        worksheet_repeat_columns(sheet, 0, 0);
        worksheet_set_header(sheet, "&LDate &D Time &T&RPage #&P Of &N Pages");
        worksheet_fit_to_pages(sheet, 1, 0);
    }
    if (workbook_close(book) != LXW_NO_ERROR)
        throw DbError(3000, "the floor workbook was not saved");
    return rows;
}

} // namespace

int main(int argc, char** argv) {
    qputenv("ORVEL_NO_SHOW", "1");
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const QString file = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QString();
    const int wanted = argc > 2 ? QString::fromLocal8Bit(argv[2]).toInt() : 0;
    QuietMessages messages;
    MessageService::setInstance(&messages);
    try {
        QTemporaryDir home;
        Session s;
        bench::StartStore(s, home.path());
        RegisterReportScreens();
        const double made = bench::Seconds([&] {
            if (wanted > 0) {
                RegisterShape shape;
                shape.fuelRows = wanted;
                shape.vehicles = std::max(10, wanted / 333);
                shape.lifelike = true;
                shape.drivers = 12;
                shape.activities = 8;
                GenerateRegister(*s.db, shape);
                for (int n = 1; n <= shape.drivers; ++n)
                    s.db->Execute(QString("insert into drivers (id, description) values (%1, 'Driver %1')").arg(n));
                for (int n = 1; n <= shape.activities; ++n)
                    s.db->Execute(
                        QString("insert into activities (id, description) values (%1, 'Activity %1')").arg(n));
            } else {
                DemoOptions options;
                options.large = true;
                options.today = QDate(2026, 6, 30);
                MakeDemoRegister(*s.db, options);
            }
        });
        const int fuelRows =
            s.db->OpenRecordset("select count(*) from vecfuel", RecordsetType::Snapshot)->Field(0).toString().toInt();
        const QString from = "1900/01/01", to = "2999/12/31";

        ReportRun run;
        run.title = "Detailed Veh. Fuel Usage";
        run.from = from;
        run.to = to;
        run.byDate = true;
        run.VehicleList = IdsOf(*s.db, true);
        run.VehicleKmList = IdsOf(*s.db, false);
        run.mergedIds = MergeVehicleLists(run.VehicleList, run.VehicleKmList);
        FlexGrid grid;
        run.grid = &grid;

        const int runs = 3;
        std::vector<double> prints, floors, previews;
        int floorRows = 0;
        const QString floorPath = QDir(home.path()).filePath("floor.xlsx");
        for (int i = 0; i < runs; ++i) {
            prints.push_back(bench::Seconds([&] { UsageLines_Print(run); }));
            floors.push_back(bench::Seconds([&] {
                floorRows = Floor(*s.db, {"Km", "Hours"}, {run.VehicleKmList, run.VehicleList}, from, to, floorPath);
            }));
            previews.push_back(bench::Seconds([&] { FillReportGrid(run, from, to, false); }));
        }
        const double print = bench::Median(prints), floor = bench::Median(floors), preview = bench::Median(previews);
        const QString text =
            bench::BuildKind() +
            QString("register: %1 fuel rows (made in %2 s); report rows: %3 on two sheets, grid rows: %4\n")
                .arg(fuelRows)
                .arg(made, 0, 'f', 1)
                .arg(floorRows)
                .arg(grid.Rows() - 1) +
            QString("Detailed Veh. Fuel Usage, both kinds, print end to end: %1 s (median of %2)\n")
                .arg(print, 0, 'f', 3)
                .arg(runs) +
            QString("floor (SQLite's statement + plain libxlsxwriter, same cells and formats): %1 s\n")
                .arg(floor, 0, 'f', 3) +
            QString("ratio print / floor: %1 (target at most 2)\n").arg(print / floor, 0, 'f', 2) +
            QString("preview (grid fill): %1 s\n").arg(preview, 0, 'f', 3);
        MessageService::setInstance(nullptr);
        return bench::Report(file, text);
    } catch (const NumberedError& e) {
        MessageService::setInstance(nullptr);
        return bench::Failed(e);
    }
}
