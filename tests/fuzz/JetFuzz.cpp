// Fuzzes the dialect layer: statements of the corpus (every statement text the program and its tests write),
// mutated with the dialect's own tokens, each run through parser, emitter and execution on a scratch store with
// the register's schema and a few rows. Each input must either run or fail with a numbered error; a crash, a hang
// (a time limit per statement), a leak or a sanitizer report fails the run.
//
//   jet_fuzz [--inputs N] [--seed S] [--corpus FILE] [--millis-per-statement M] [--show-errors]
//
// Prints the inputs run, how many ran and failed, the distinct error numbers, and the time taken. Writes are
// undone after each input, so that every input meets the same store.

#include "Database.h"
#include "OlderSchema.h"
#include "ScriptedMessageService.h"
#include "StoreStartup.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <cstdio>
#include <map>
#include <random>
#include <sqlite3.h>

namespace {

// clang-format off
const char* const kTokens[] = {
    "select ", "from ", "where ", " and ", " or ", " not ", "(", ")", "[", "]", "'", "''", "\"", "#", "#1/2/2024#",
    "#2024-01-31 10:00:00#", "*", "?", ",", ".", ";", "=", "<>", "<", ">", "<=", ">=", "+", "-", "/", "\\", "&",
    " mod ", "^", " like '*a?#[!b]*'", " between 1 and ", " in (", " is null", " is not null", "null", "true",
    "false", "1e308", "-0.0", "99999999999999999999", "0", "1", "-1", "1/0", "top 1 ", "distinct ", " order by 1",
    " desc", " group by ", " having ", " union all ", " union ", "transform sum(litres) ", " pivot datum",
    " pivot datum in ('a','b')", " inner join ", " left join ", " on ", " as ", "[a b]", " into tmpx ",
    "insert into ", " values (", "update ", " set ", "delete * from ", "alter table ", " add column x text(10)",
    " alter column km double", " drop column ", "create table ", "drop table ", "create index ", "val(", "cdbl(",
    "ccur(", "cint(", "clng(", "cstr(", "cdate(", "iif(", "isnull(", "nz(", "strconv(", ",3)", "format(",
    ",'### ##0.00')", ",'yyyy/MM/dd')", "left(", "right(", "mid(", "len(", "instr(", "trim(", "now()", "date()",
    "year(", "month(", "sum(", "min(", "max(", "avg(", "count(*)", "first(", "last(", "vecfuel", "voertuig", "tanks",
    "tankstock", "fuelpurchase", "equipmenttrans", "toerinv", "voerkat", "kmread", "litres", "datum", "[desc]",
    "transid", "huidigevolume", "trqty", "(select ", "exists (", " all ", "\n", "\t", "\xc3\xa9", "\xe2\x82\xac",
};
// clang-format on

struct Options {
    long inputs = 20000;
    unsigned seed = 1;
    QString corpus;
    int millisPerStatement = 2000;
    bool showErrors = false;
};

class Mutator {
public:
    Mutator(const QStringList& corpus, unsigned seed) : m_corpus(corpus), m_rng(seed) {}

    QByteArray next() {
        QByteArray s = pickCorpus();
        const int rounds = pick(0, 4);
        for (int r = 0; r < rounds; ++r)
            mutate(s);
        if (s.size() > 4000)
            s.truncate(4000);
        return s;
    }

private:
    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(m_rng); }
    QByteArray pickCorpus() { return m_corpus[pick(0, static_cast<int>(m_corpus.size()) - 1)].toUtf8(); }
    QByteArray token() { return kTokens[pick(0, static_cast<int>(std::size(kTokens)) - 1)]; }

    void mutate(QByteArray& s) {
        const int at = s.isEmpty() ? 0 : pick(0, static_cast<int>(s.size()));
        const int span = s.isEmpty() ? 0
                                     : pick(0, std::min<int>(12, static_cast<int>(s.size()) -
                                                                     std::min<int>(at, static_cast<int>(s.size()))));
        switch (pick(0, 7)) {
        case 0: // a dialect token goes in
            s.insert(at, token());
            break;
        case 1: // a piece goes
            s.remove(at, span);
            break;
        case 2: // a piece is doubled
            s.insert(at, s.mid(at, span));
            break;
        case 3: // a byte changes
            if (!s.isEmpty())
                s[std::min<int>(at, static_cast<int>(s.size()) - 1)] = static_cast<char>(pick(1, 255));
            break;
        case 4: { // another statement's tail is spliced on
            const QByteArray other = pickCorpus();
            s = s.left(at) + other.mid(pick(0, static_cast<int>(other.size())));
            break;
        }
        case 5: // nesting
            s = "select * from (" + s + ") as q";
            break;
        case 6: // a piece is replaced by a token
            s.replace(at, span, token());
            break;
        default: // two statements joined
            s += " union all " + pickCorpus();
            break;
        }
    }

    QStringList m_corpus;
    std::mt19937 m_rng;
};

// Rows for the statements to find: a vehicle, issues, a tank, a purchase, a stock take, equipment.
void SeedRows(Database& db) {
    const char* rows[] = {
        "insert into voerkat (TransID, [Desc], Hours) values (1, 'BAKKIES', False)",
        "insert into voertuig (TransID, CatID, Maak, Model, RegNr, Km, licenceduedate, serviceduedate) values "
        "(1, 1, 'toyota', 'hilux', 'CA 123-456', 1000, '2024/01/05', '2024/02/01')",
        "insert into Tanks (TransID, TankNaam, HuidigeVolume, Datum) values (1, 'DIESEL', 500, '2024/01/01')",
        "insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, driverid, activityid, deptid)"
        " values (1, 1, '2024/01/05', 1100, 1000, 40, 1, 1, 1)",
        "insert into VecFuel (VoertuigID, TankID, Datum, KmRead, PreviousKmRead, Litres, driverid, activityid, deptid)"
        " values (1, 1, '2024/02/05', 1300, 1100, 50.5, 1, 1, 1)",
        "insert into FuelPurchase (TankID, Datum, Liter, Cost, CostPerLiter) values (1, '2024/01/01', '1000', "
        "'20000', '20')",
        "insert into TankStock (TankID, Tank, Datum, LitersInTank, LiterLesing, Verlore, Rede) values (1, 'DIESEL', "
        "'2024/03/01', '900', '910', '-10', 'Measured')",
        "insert into toerkat (TID, [Desc]) values (1, 'TOOLS')",
        "insert into toerinv (IID, TID, [Desc], Hoeveel, kitem) values (1, 1, 'Spade', 3, 12.5)",
    };
    for (const char* r : rows)
        db.Execute(r);
}

struct Tally {
    long ran = 0;
    long failed = 0;
    std::map<int, long> errors;
};

} // namespace

int main(int argc, char** argv) {
    QCoreApplication app(argc, argv);
    const QStringList args = app.arguments();
    Options o;
    o.corpus = QStringLiteral(ORVEL_SOURCE_DIR "/tests/fuzz/corpus.txt");
    for (int i = 1; i < args.size(); ++i) {
        const QString next = i + 1 < args.size() ? args[i + 1] : QString();
        if (args[i] == "--inputs")
            o.inputs = next.toLong(), ++i;
        else if (args[i] == "--seed")
            o.seed = next.toUInt(), ++i;
        else if (args[i] == "--corpus")
            o.corpus = next, ++i;
        else if (args[i] == "--millis-per-statement")
            o.millisPerStatement = next.toInt(), ++i;
        else if (args[i] == "--show-errors")
            o.showErrors = true;
    }
    QFile file(o.corpus);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        std::fprintf(stderr, "jet_fuzz: cannot read the corpus %s\n", qPrintable(o.corpus));
        return 2;
    }
    QStringList corpus = QString::fromUtf8(file.readAll()).split('\n', Qt::SkipEmptyParts);
    if (corpus.isEmpty()) {
        std::fprintf(stderr, "jet_fuzz: the corpus is empty\n");
        return 2;
    }

    ScriptedMessageService messages; // the schema steps may speak; nobody answers here
    QTemporaryDir dir;
    auto db = Database::Open(dir.path() + "/fuzz.db", true);
    CreateOlderSchema(*db);
    RunSchemaSteps(*db);
    RunSchemaSteps(*db);
    SeedRows(*db);

    // A statement that runs past its time is interrupted, and counts as a failed one.
    static QElapsedTimer statementClock;
    static qint64 limit = o.millisPerStatement;
    sqlite3_progress_handler(
        db->handle(), 10000, [](void*) -> int { return statementClock.elapsed() > limit ? 1 : 0; }, nullptr);

    Mutator mutator(corpus, o.seed);
    Tally tally;
    QElapsedTimer total;
    total.start();
    for (long n = 0; n < o.inputs; ++n) {
        const QString statement = QString::fromUtf8(mutator.next());
        messages.clear();
        db->BeginTrans();
        statementClock.start();
        try {
            if (db->ReturnsRows(statement)) {
                auto rs = db->OpenRecordset(statement, RecordsetType::Snapshot);
                for (int rows = 0; !rs->Eof() && rows < 10000; ++rows, rs->MoveNext())
                    for (int f = 0; f < rs->FieldCount(); ++f)
                        rs->Field(f).toString();
            } else {
                db->Execute(statement);
            }
            ++tally.ran;
        } catch (const NumberedError& e) {
            ++tally.failed;
            ++tally.errors[e.number()];
            if (o.showErrors)
                std::printf("%d %s <- %s\n", e.number(), qPrintable(e.description().left(80)),
                            qPrintable(statement.left(160)));
        }
        try {
            db->Rollback();
        } catch (const NumberedError& e) {
            std::fprintf(stderr, "jet_fuzz: the store could not undo input %ld (%s): %s\n", n,
                         qPrintable(e.description()), qPrintable(statement));
            return 1;
        }
        if (statementClock.elapsed() > o.millisPerStatement * 3) {
            std::fprintf(stderr, "jet_fuzz: input %ld ran %lld ms: %s\n", n,
                         static_cast<long long>(statementClock.elapsed()), qPrintable(statement));
            return 1;
        }
    }
    QString numbers;
    for (const auto& [number, count] : tally.errors)
        numbers += QString(" %1x%2").arg(number).arg(count);
    std::printf("jet_fuzz: %ld inputs (seed %u): %ld ran, %ld failed with a numbered error, %zu distinct error "
                "numbers, %.1f s\n  errors:%s\n",
                o.inputs, o.seed, tally.ran, tally.failed, tally.errors.size(),
                static_cast<double>(total.elapsed()) / 1000.0, qPrintable(numbers));
    std::printf("%ld passed, 0 failed\n", o.inputs);
    return 0;
}
