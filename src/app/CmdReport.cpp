// `orvel report NAME ...`: the report screen driven offscreen as a person drives it, for batch runs and tests.

#include "BatchSession.h"
#include "CommandLine.h"
#include "Registration.h"

#include "FlexGrid.h"
#include "MessageService.h"
#include "frmVerslae.h"

#include <QApplication>
#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <cstdio>
#include <memory>

namespace {

// Every message goes to standard error; every question is answered Yes.
class BatchMessages : public MessageService {
public:
    MsgResult show(const QString& text, MsgButtons buttons, MsgIcon, const QString&) override {
        std::fprintf(stderr, "%s\n", qPrintable(text));
        return buttons == MsgButtons::Ok ? MsgResult::Ok : MsgResult::Yes;
    }
};

struct ReportArgs {
    QString name, from, to;
    QStringList tanks, categories, items;
    bool all = false, byDate = false, view = false;
    QString error;
};

ReportArgs ReadArgs(const QStringList& args) {
    ReportArgs r;
    for (int i = 0; i < args.size(); ++i) {
        const QString& a = args[i];
        auto next = [&]() -> QString {
            if (i + 1 >= args.size()) {
                r.error = a + " needs a value";
                return QString();
            }
            return args[++i];
        };
        if (a == "--from")
            r.from = next();
        else if (a == "--to")
            r.to = next();
        else if (a == "--tank")
            r.tanks << next();
        else if (a == "--category")
            r.categories << next();
        else if (a == "--item")
            r.items << next();
        else if (a == "--all")
            r.all = true;
        else if (a == "--by-date")
            r.byDate = true;
        else if (a == "--view")
            r.view = true;
        else if (a.startsWith("--"))
            r.error = "unknown option " + a;
        else if (r.name.isEmpty())
            r.name = a;
        else
            r.error = "one report name only";
        if (!r.error.isEmpty())
            break;
    }
    if (r.error.isEmpty() && r.name.isEmpty())
        r.error = "report takes the report's name";
    return r;
}

// Clicks the shown item of that text in the first of the lists that holds it.
bool ClickItem(frmVerslae& screen, const QList<QListWidget*>& lists, const QString& text) {
    for (QListWidget* list : lists) {
        if (!list->isVisible())
            continue;
        const auto found = list->findItems(text, Qt::MatchExactly);
        if (found.isEmpty())
            continue;
        QListWidgetItem* item = found.first();
        item->setSelected(!item->isSelected());
        if (list == screen.lstCat)
            screen.lstCat_Click(item);
        else if (list == screen.lstCatKm)
            screen.lstCatKm_Click(item);
        return true;
    }
    return false;
}

bool SetDate(QDateEdit* picker, const QString& text) {
    const QDate date = QDate::fromString(text, "yyyy/MM/dd");
    if (!date.isValid())
        return false;
    picker->setDate(date);
    return true;
}

} // namespace

int RunReportCommand(const CommandLine& cl, int argc, char** argv) {
    const ReportArgs args = ReadArgs(cl.args);
    if (!args.error.isEmpty())
        return FailCommand("report", args.error);
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A test's own application serves; a run from the shell makes its own.
    std::unique_ptr<QApplication> app;
    if (!QCoreApplication::instance())
        app = std::make_unique<QApplication>(argc, argv);
    QApplication::setApplicationName("Orvel");
    BatchMessages messages;
    MessageService::setInstance(&messages);
    struct Restore {
        ~Restore() { MessageService::setInstance(nullptr); }
    } restore;

    BatchSession batch(cl);
    if (const QString reason = batch.open(true); !reason.isEmpty())
        return FailCommand("report", reason);
    RegisterAllScreens();
    batch.session.ReportChoice = args.name;

    auto screen = std::make_unique<frmVerslae>();
    screen->show();
    // A report that is no screen (the log sheet) printed on opening: its workbook is the output.
    if (const QString printed = screen->LastRun().savedPath; !printed.isEmpty()) {
        std::printf("%s\n", qPrintable(printed));
        std::fflush(stdout);
        return 0;
    }
    bool failed = false;
    screen->SetStopOnError([&failed](const QString&) { failed = true; });
    if (!args.from.isEmpty() && !SetDate(screen->dtpFrom, args.from))
        return FailCommand("report", "--from takes a date as yyyy/mm/dd");
    if (!args.to.isEmpty() && !SetDate(screen->dtpTo, args.to))
        return FailCommand("report", "--to takes a date as yyyy/mm/dd");
    if (args.all) {
        for (QCheckBox* box : {screen->chkAllCat, screen->chkAllCatKm})
            if (box->isVisible())
                box->click();
    }
    for (const QString& tank : args.tanks)
        if (!ClickItem(*screen, {screen->lstCatKm}, tank))
            return FailCommand("report", "no tank " + tank);
    for (const QString& category : args.categories)
        if (!ClickItem(*screen, {screen->lstCat, screen->lstCatKm}, category))
            return FailCommand("report", "no category " + category);
    for (const QString& item : args.items)
        if (!ClickItem(*screen, {screen->lstProd, screen->lstProdkm}, item))
            return FailCommand("report", "no item " + item);
    if (args.byDate)
        screen->chkByDate->click();

    screen->cmdApply->click();
    if (failed)
        return 1;
    if (args.view) {
        const FlexGrid& grid = *screen->grd3;
        if (grid.Rows() < 2)
            return 1;
        for (int r = 0; r < grid.Rows(); ++r) {
            QStringList cells;
            for (int c = 0; c < grid.Cols(); ++c)
                cells << grid.TextMatrix(r, c);
            std::printf("%s\n", qPrintable(cells.join('\t')));
        }
        std::fflush(stdout);
        return 0;
    }
    screen->cmdPrint->click();
    if (failed || screen->LastRun().savedPath.isEmpty())
        return 1;
    std::printf("%s\n", qPrintable(screen->LastRun().savedPath));
    std::fflush(stdout);
    return 0;
}
