#include "Recalc.h"

#include "Database.h"
#include "JetTypes.h"
#include "QueryHelpers.h"
#include "RecalcSteps.h"
#include "Session.h"
#include "StoreFacts.h"
#include "TouchLog.h"
#include "Vb.h"

#include <QHash>
#include <QLocale>
#include <QProgressBar>
#include <QStringList>
#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <sqlite3.h>
#include <stdexcept>
#include <string>
#include <vector>

namespace recalc {

QString CleanedKm(const Value& km) {
    if (km.isNull())
        return "0";
    return RegexReplace(ReadingText(km), "[^0-9\\.]", ".");
}

} // namespace recalc

namespace {

using recalc::Retrying;

// A key column's value as a spliced "= n" matches it: numerically. Null and text match no number.
std::optional<double> NumericKey(const Value& v) {
    if (v.isNull() || v.isEmpty() || !v.isNumeric())
        return std::nullopt;
    return v.toDouble();
}

// Whether a column holds plain numbers that read the same straight from the row as through a Value.
bool PlainNumberColumn(const RowView& row, int column) {
    const JetKind kind = row.type(column).kind;
    return (kind == JetKind::Long || kind == JetKind::Short || kind == JetKind::Counter || kind == JetKind::Double ||
            kind == JetKind::Single) &&
           row.isNumber(column);
}

std::optional<double> NumericKeyOf(const RowView& row, int column) {
    if (PlainNumberColumn(row, column))
        return row.number(column);
    return NumericKey(row.value(column));
}

// How "Datum < 'bound'" orders a stored date: Null never passes, a number stands before every text,
// texts compare case-blind (ASCII), as the text columns' NOCASE collation does.
struct DateKey {
    int rank = 0; // 0 number, 1 text
    std::string folded;
    auto operator<=>(const DateKey&) const = default;
};

std::string FoldAscii(const QString& text) {
    std::string bytes = text.toStdString();
    for (char& c : bytes)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return bytes;
}

std::optional<DateKey> StoredDateKey(const Value& v) {
    if (v.isNull() || v.isEmpty())
        return std::nullopt;
    if (v.type() == VType::String)
        return DateKey{1, FoldAscii(v.toString())};
    return DateKey{0, {}};
}

std::string FoldAscii(const QByteArray& utf8) {
    std::string bytes(utf8.constData(), static_cast<size_t>(utf8.size()));
    for (char& c : bytes)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return bytes;
}

bool PlainTextColumn(const RowView& row, int column) {
    const JetKind kind = row.type(column).kind;
    return (kind == JetKind::Text || kind == JetKind::Memo) && row.isText(column);
}

std::optional<DateKey> StoredDateKeyOf(const RowView& row, int column) {
    if (PlainTextColumn(row, column))
        return DateKey{1, FoldAscii(row.utf8(column))};
    return StoredDateKey(row.value(column));
}

DateKey BoundDateKey(const Value& stockTakeDate) {
    return DateKey{1, FoldAscii(stockTakeDate.toString())};
}

// val() of a stored amount as the summing statements read it; Null adds nothing.
std::optional<double> Amount(const Value& v) {
    if (v.isNull() || v.isEmpty())
        return std::nullopt;
    return vb::Val(v);
}

std::optional<double> AmountOf(const RowView& row, int column) {
    if (PlainNumberColumn(row, column))
        return row.number(column);
    return Amount(row.value(column));
}

Currency SumToCurrency(long double sum) {
    return Currency::fromDouble(static_cast<double>(sum));
}

// Dated amounts of one tank, in date order, with running sums: the sum before a date is one search.
class DatedSums {
public:
    void add(const std::optional<DateKey>& date, double amount) {
        m_total += amount;
        if (date)
            m_rows.push_back({*date, amount});
    }
    void seal() {
        std::stable_sort(m_rows.begin(), m_rows.end(), [](const Row& a, const Row& b) { return a.date < b.date; });
        m_prefix.assign(m_rows.size() + 1, 0.0L);
        for (size_t i = 0; i < m_rows.size(); ++i)
            m_prefix[i + 1] = m_prefix[i] + m_rows[i].amount;
    }
    long double before(const DateKey& bound) const {
        auto it = std::lower_bound(m_rows.begin(), m_rows.end(), bound,
                                   [](const Row& r, const DateKey& b) { return r.date < b; });
        return m_prefix[static_cast<size_t>(it - m_rows.begin())];
    }
    long double total() const { return m_total; }

private:
    struct Row {
        DateKey date;
        double amount;
    };
    std::vector<Row> m_rows;
    std::vector<long double> m_prefix{0.0L};
    long double m_total = 0.0L;
};

// Whether the stored text, folded as the NOCASE collation folds it, sorts before the folded bound.
bool FoldedLess(const QByteArray& raw, const std::string& folded) {
    const size_t n = std::min(static_cast<size_t>(raw.size()), folded.size());
    for (size_t i = 0; i < n; ++i) {
        char c = raw[static_cast<qsizetype>(i)];
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
        const auto a = static_cast<unsigned char>(c), b = static_cast<unsigned char>(folded[i]);
        if (a != b)
            return a < b;
    }
    return static_cast<size_t>(raw.size()) < folded.size();
}

// The issues of one tank summed against the few dates that are ever asked (its stock takes' dates): an issue
// goes into the bucket of the first asked date after its own, so the sum before an asked date is the sum of
// the buckets up to it. No issue's date is kept.
class BoundedSums {
public:
    explicit BoundedSums(std::vector<DateKey> bounds) : m_bounds(std::move(bounds)) {
        std::sort(m_bounds.begin(), m_bounds.end());
        m_bounds.erase(std::unique(m_bounds.begin(), m_bounds.end()), m_bounds.end());
        m_buckets.assign(m_bounds.size() + 1, 0.0L);
    }
    void addText(const QByteArray& raw, double amount) { // a date held as text
        m_total += amount;
        const auto it = std::partition_point(m_bounds.begin(), m_bounds.end(), [&](const DateKey& b) {
            return b.rank == 0 || !FoldedLess(raw, b.folded);
        });
        m_buckets[static_cast<size_t>(it - m_bounds.begin())] += amount;
    }
    void add(const std::optional<DateKey>& date, double amount) {
        m_total += amount;
        if (!date)
            return;
        const auto it = std::upper_bound(m_bounds.begin(), m_bounds.end(), *date);
        m_buckets[static_cast<size_t>(it - m_bounds.begin())] += amount;
    }
    void seal() {
        for (size_t i = 1; i < m_buckets.size(); ++i)
            m_buckets[i] += m_buckets[i - 1];
    }
    long double before(const DateKey& bound) const {
        const auto it = std::lower_bound(m_bounds.begin(), m_bounds.end(), bound);
        return m_buckets[static_cast<size_t>(it - m_bounds.begin())];
    }
    long double total() const { return m_total; }

private:
    std::vector<DateKey> m_bounds;
    std::vector<long double> m_buckets; // after seal: the sum of every issue before each bound
    long double m_total = 0.0L;
};

// Where two rows have the same reading, the chain keeps the order in which the store hands the vehicle's
// rows to the sort: the order of the index that finds a vehicle's rows (its later columns, then stored
// order), or stored order without such an index. A key part sorts as SQLite orders values in an index:
// Null, then numbers, then texts (case-blind for the text columns).
struct TiePart {
    int rank = 0; // 0 Null, 1 number, 2 text
    double number = 0;
    std::string text;
    auto operator<=>(const TiePart&) const = default;
};

TiePart TiePartOf(const Value& v) {
    if (v.isNull() || v.isEmpty())
        return {0, 0, {}};
    if (v.type() == VType::String)
        return {2, 0, FoldAscii(v.toString())};
    return {1, v.toDouble(), {}};
}

TiePart TiePartOf(const RowView& row, int column) {
    if (PlainTextColumn(row, column))
        return {2, 0, FoldAscii(row.utf8(column))};
    if (PlainNumberColumn(row, column))
        return {1, row.number(column), {}};
    return TiePartOf(row.value(column));
}

// A reading whose text, as the chain carries it, reads back as the very same number: at most four decimals
// well inside fifteen digits. Its text need not be made to know what the next row is given.
bool ReadsBackExactly(double x) {
    if (!(std::fabs(x) < 1e10))
        return false;
    return std::nearbyint(x * 10000.0) / 10000.0 == x;
}

// A field of a fuel row kept small: a plain number in place, anything else (Null, a text) beside the rows.
struct Cell {
    double number = 0;
    std::int32_t other = -1; // index of the Value beside the rows, or -1 for a plain number
    bool integer = false;    // a plain number of a whole-number column
};

struct FuelRow {
    Cell transId;
    Cell kmRead;
    Cell previousKmRead;
    double vehicle = 0;
    double order = 0; // val(KmRead); Null sorts first
    bool hasVehicle = false;
    bool nullOrder = false;
};

struct StockRow {
    Value transId;
    std::optional<double> tank;
    Value date;
    Value litersInTank;
    Value literLesing;
    Value verlore;
};

struct PendingWrite {
    QString table;
    QString keyColumn;
    Value key;
    QString column;
    Value value;
};

QString Literal(const Value& v) {
    switch (v.type()) {
    case VType::Empty:
    case VType::Null:
        return "Null";
    case VType::Boolean:
        return v.toBool() ? "True" : "False";
    case VType::Long:
        return QString::number(v.toLong());
    case VType::Double:
        return QLocale::c().toString(v.toDouble(), 'f', QLocale::FloatingPointShortest);
    case VType::Currency:
        return v.toCurrency().toString();
    case VType::Date:
        return "#" + v.toDate().toString("MM/dd/yyyy hh:mm:ss") + "#";
    case VType::String:
        break;
    }
    QString text = v.toString();
    text.replace("'", "''");
    return "'" + text + "'";
}

// Whole-number keys as a list for "IN (...)".
QString KeyList(const std::set<double>& keys) {
    QStringList parts;
    for (double k : keys)
        parts << QString::number(static_cast<std::int64_t>(k));
    return parts.join(", ");
}

JetType ColumnType(Database& store, const QString& table, const QString& column) {
    for (const FieldDef& f : store.Fields(table))
        if (f.name.compare(column, Qt::CaseInsensitive) == 0)
            return JetTypeFromWord(f.type, f.size);
    throw DbError(3265, "Item not found in this collection.");
}

class FastRecalc {
public:
    FastRecalc(Database& store, bool& ok) : m_db(store), m_ok(ok) {}

    int readVehicles();
    // Limits the run to the chains of these vehicles and the stock takes and balances of these tanks.
    void limitTo(std::set<double> vehicles, std::set<double> tanks) {
        m_onlyVehicles = std::move(vehicles);
        m_onlyTanks = std::move(tanks);
    }
    void run(RecalcSummary& summary);
    void countRows(bool wanted) { m_countRows = wanted; }
    RecalcSummary settledSummary();

private:
    void readFuel();
    void inStoredOrder(std::vector<FuelRow>& rows);
    void readPurchasesAndStock();
    void chainOdometers();
    std::vector<size_t> chainOrder(const Value& vehicleId, std::vector<size_t> rows);
    void bookStockTakes();
    void balanceTanks();
    void writeChanges();

    // Records a write when the value the column would hold differs from what it holds.
    void stage(const QString& table, const QString& keyColumn, const Value& key, const QString& column,
               const JetType& type, const Value& stored, const Value& assigned);

    template <typename Step> auto guarded(Step&& step) { return Retrying(m_ok, std::forward<Step>(step)); }

    Database& m_db;
    bool& m_ok;

    std::vector<std::pair<Value, Value>> m_vehicles; // TransID, Km in table order
    std::vector<FuelRow> m_fuel;
    std::vector<TiePart> m_ties; // tieCount parts per fuel row, in the rows' order
    size_t m_tieCount = 0;
    std::vector<StockRow> m_stock;
    std::vector<std::pair<Value, Value>> m_tanks; // TransID, HuidigeVolume in table order

    std::map<double, DatedSums> m_purchases;
    std::map<double, BoundedSums> m_issues;
    std::vector<Value> m_others; // the fuel fields that are no plain number

    Cell cellOf(const RowView& row, int column) {
        const JetType& type = row.type(column);
        if (type.kind == JetKind::Double && row.isNumber(column))
            return {row.number(column), -1, false};
        if (type.isInteger() && row.isNumber(column) && !row.isText(column)) {
            const std::int64_t whole = row.integer(column);
            if (static_cast<double>(whole) == row.number(column) && std::abs(whole) < (std::int64_t(1) << 53))
                return {row.number(column), -1, true};
        }
        m_others.push_back(row.value(column));
        return {0, static_cast<std::int32_t>(m_others.size() - 1), false};
    }
    // What a recordset would have given for the field.
    Value valueOf(const Cell& c) const {
        if (c.other >= 0)
            return m_others[static_cast<size_t>(c.other)];
        if (c.integer)
            return Value(static_cast<std::int64_t>(c.number));
        return Value(c.number);
    }
    static bool sameCell(const Cell& a, const Cell& b) {
        return a.other < 0 && b.other < 0 && a.integer == b.integer && a.number == b.number;
    }
    BoundedSums& issuesOfTank(double tank);
    std::map<double, long double> m_verloreTotal; // after the stock takes are rewritten

    std::optional<std::set<double>> m_onlyVehicles, m_onlyTanks; // unset: every vehicle, every tank
    bool m_countRows = true;                                     // the summary's counts are wanted
    bool chainsVehicle(double id) const { return !m_onlyVehicles || m_onlyVehicles->count(id) > 0; }
    bool balancesTank(double id) const { return !m_onlyTanks || m_onlyTanks->count(id) > 0; }

    enum class TieRule { Unknown, StoredOrder, IndexOrder, AskEach };
    TieRule m_tieRule = TieRule::Unknown;

    JetType m_prevKmType, m_lesingType, m_verloreType, m_volumeType;
    std::vector<PendingWrite> m_writes;
};

int FastRecalc::readVehicles() {
    m_vehicles = guarded([&] {
        std::vector<std::pair<Value, Value>> rows;
        auto rs = m_db.OpenRecordset("SELECT TransID, Km FROM Voertuig", RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            rows.emplace_back(rs->Field(0), rs->Field(1));
        return rows;
    });
    return static_cast<int>(m_vehicles.size());
}

QStringList VehicleIndexTail(Database& store) {
    for (const IndexDef& index : store.Indexes("VecFuel"))
        if (!index.fields.isEmpty() && index.fields.first().compare("VoertuigID", Qt::CaseInsensitive) == 0)
            return index.fields.mid(1);
    return {};
}

void FastRecalc::readFuel() {
    m_prevKmType = guarded([&] { return ColumnType(m_db, "VecFuel", "previouskmread"); });
    const QStringList tieColumns = guarded([&] { return VehicleIndexTail(m_db); });
    QString tieSelect;
    for (const QString& column : tieColumns)
        tieSelect += ", " + column;
    m_tieCount = static_cast<size_t>(tieColumns.size());
    // A row read keeps its key and readings for the chains; read for the sums too, it adds its litres to its tank.
    // Adds an issue's litres to its tank's sums, from the columns that hold its tank, date and litres.
    auto addToSums = [&](const RowView& r, int tankColumn) {
        if (auto tank = NumericKeyOf(r, tankColumn)) {
            if (auto litres = AmountOf(r, tankColumn + 2)) {
                BoundedSums& sums = issuesOfTank(*tank);
                if (PlainTextColumn(r, tankColumn + 1))
                    sums.addText(r.utf8(tankColumn + 1), *litres);
                else
                    sums.add(StoredDateKey(r.value(tankColumn + 1)), *litres);
            }
        }
    };
    auto readRows = [&](const QString& where, bool forSums, std::vector<FuelRow>& rows) {
        m_db.ForEachRow("SELECT TransID, VoertuigID, KmRead, PreviousKmRead, TankID, Datum, Litres" + tieSelect +
                            " FROM VecFuel" + where,
                        [&](const RowView& r) {
                            if (forSums)
                                addToSums(r, 4);
                            FuelRow row;
                            row.transId = cellOf(r, 0);
                            if (const auto vehicle = NumericKeyOf(r, 1)) {
                                row.vehicle = *vehicle;
                                row.hasVehicle = true;
                            }
                            row.kmRead = cellOf(r, 2);
                            row.previousKmRead = cellOf(r, 3);
                            for (int t = 0; t < tieColumns.size(); ++t)
                                m_ties.push_back(TiePartOf(r, 7 + t));
                            rows.push_back(row);
                        });
    };
    auto startReading = [&] {
        m_ties.clear();
        m_others.clear();
        m_issues.clear();
    };
    if (m_onlyVehicles && m_onlyTanks) {
        // A partial run reads the rows of the vehicles it chains (in stored order: the key is the row's number)
        // and, apart, the rows of the tanks it balances.
        m_fuel = guarded([&] {
            std::vector<FuelRow> rows;
            startReading();
            if (!m_onlyVehicles->empty())
                readRows(" WHERE VoertuigID IN (" + KeyList(*m_onlyVehicles) + ")", false, rows);
            inStoredOrder(rows);
            if (!m_onlyTanks->empty())
                m_db.ForEachRow("SELECT TankID, Datum, Litres FROM VecFuel WHERE TankID IN (" + KeyList(*m_onlyTanks) +
                                    ")",
                                [&](const RowView& r) { addToSums(r, 0); });
            return rows;
        });
    } else {
        const std::int64_t expected = guarded([&] {
            std::int64_t count = 0;
            m_db.ForEachRow("SELECT count(*) FROM VecFuel", [&](const RowView& r) { count = r.integer(0); });
            return count;
        });
        // One scan in stored order serves both the chains and the tank sums.
        m_fuel = guarded([&] {
            std::vector<FuelRow> rows;
            rows.reserve(static_cast<size_t>(expected));
            startReading();
            m_ties.reserve(static_cast<size_t>(expected) * m_tieCount);
            readRows(QString(), true, rows);
            return rows;
        });
    }
    for (auto& [tank, sums] : m_issues)
        sums.seal();
    for (FuelRow& row : m_fuel) {
        if (row.kmRead.other < 0) {
            row.order = row.kmRead.number;
            continue;
        }
        const Value& reading = m_others[static_cast<size_t>(row.kmRead.other)];
        if (reading.isNull() || reading.isEmpty())
            row.nullOrder = true;
        else
            row.order = guarded([&] { return vb::Val(reading); });
    }
}

// Puts rows read through the vehicle index back in stored order, which is the order of their row numbers. (Asked
// of the statement, that order would make the store walk the whole table rather than the index.)
void FastRecalc::inStoredOrder(std::vector<FuelRow>& rows) {
    std::vector<size_t> order(rows.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = i;
    std::stable_sort(order.begin(), order.end(),
                     [&](size_t a, size_t b) { return rows[a].transId.number < rows[b].transId.number; });
    std::vector<FuelRow> sorted;
    std::vector<TiePart> ties;
    sorted.reserve(rows.size());
    ties.reserve(m_ties.size());
    for (size_t i : order) {
        sorted.push_back(rows[i]);
        for (size_t t = 0; t < m_tieCount; ++t)
            ties.push_back(m_ties[i * m_tieCount + t]);
    }
    rows = std::move(sorted);
    m_ties = std::move(ties);
}

// The sums of a tank's issues, bucketed by the dates of its stock takes (read before the issues).
BoundedSums& FastRecalc::issuesOfTank(double tank) {
    auto found = m_issues.find(tank);
    if (found != m_issues.end())
        return found->second;
    std::vector<DateKey> bounds;
    for (const StockRow& stock : m_stock)
        if (stock.tank && *stock.tank == tank)
            bounds.push_back(BoundDateKey(stock.date));
    return m_issues.emplace(tank, BoundedSums(std::move(bounds))).first->second;
}

void FastRecalc::readPurchasesAndStock() {
    m_lesingType = guarded([&] { return ColumnType(m_db, "TankStock", "LiterLesing"); });
    m_verloreType = guarded([&] { return ColumnType(m_db, "TankStock", "Verlore"); });
    guarded([&] {
        m_purchases.clear();
        m_db.ForEachRow("SELECT TankID, Datum, Liter FROM FuelPurchase", [&](const RowView& r) {
            if (auto tank = NumericKeyOf(r, 0))
                if (auto litres = AmountOf(r, 2))
                    m_purchases[*tank].add(StoredDateKeyOf(r, 1), *litres);
        });
    });
    for (auto& [tank, sums] : m_purchases)
        sums.seal();
    m_stock = guarded([&] {
        std::vector<StockRow> rows;
        auto rs = m_db.OpenRecordset("SELECT transid, TankID, Datum, LitersInTank, LiterLesing, Verlore FROM TankStock",
                                     RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            rows.push_back(
                {rs->Field(0), NumericKey(rs->Field(1)), rs->Field(2), rs->Field(3), rs->Field(4), rs->Field(5)});
        return rows;
    });
}

void FastRecalc::stage(const QString& table, const QString& keyColumn, const Value& key, const QString& column,
                       const JetType& type, const Value& stored, const Value& assigned) {
    const Value converted = guarded([&] { return ConvertForColumn(assigned, type); });
    if (converted == stored)
        return;
    m_writes.push_back({table, keyColumn, key, column, converted});
}

bool SameReading(const FuelRow& a, const FuelRow& b) {
    return a.nullOrder == b.nullOrder && (a.nullOrder || a.order == b.order);
}

// The chain's order as the store gives it to the per-vehicle statement: readings ascending, and rows with
// the same reading in the order the store read them. That order depends on how the store finds a
// vehicle's rows (by stored order, or through the vehicle index). Where the two would differ for a
// vehicle, the statement itself is run once to learn which way the store goes; only if neither
// explains it is the statement run for every such vehicle.
std::vector<size_t> FastRecalc::chainOrder(const Value& vehicleId, std::vector<size_t> rows) {
    std::stable_sort(rows.begin(), rows.end(), [&](size_t a, size_t b) {
        const FuelRow& ra = m_fuel[a];
        const FuelRow& rb = m_fuel[b];
        if (ra.nullOrder != rb.nullOrder)
            return ra.nullOrder;
        return !ra.nullOrder && ra.order < rb.order;
    });
    std::vector<size_t> byIndex = rows;
    bool ambiguous = false;
    for (size_t first = 0; first < byIndex.size();) {
        size_t last = first + 1;
        while (last < byIndex.size() && SameReading(m_fuel[byIndex[first]], m_fuel[byIndex[last]]))
            ++last;
        if (last - first > 1) {
            std::stable_sort(byIndex.begin() + static_cast<std::ptrdiff_t>(first),
                             byIndex.begin() + static_cast<std::ptrdiff_t>(last), [&](size_t a, size_t b) {
                                 return std::lexicographical_compare(
                                     m_ties.begin() + static_cast<std::ptrdiff_t>(a * m_tieCount),
                                     m_ties.begin() + static_cast<std::ptrdiff_t>((a + 1) * m_tieCount),
                                     m_ties.begin() + static_cast<std::ptrdiff_t>(b * m_tieCount),
                                     m_ties.begin() + static_cast<std::ptrdiff_t>((b + 1) * m_tieCount));
                             });
            ambiguous = ambiguous || !std::equal(byIndex.begin() + static_cast<std::ptrdiff_t>(first),
                                                 byIndex.begin() + static_cast<std::ptrdiff_t>(last),
                                                 rows.begin() + static_cast<std::ptrdiff_t>(first));
        }
        first = last;
    }
    if (!ambiguous || m_tieRule == TieRule::StoredOrder)
        return rows;
    if (m_tieRule == TieRule::IndexOrder)
        return byIndex;

    // The vehicle's own rows by key: the statement's rows are matched to them.
    QHash<QString, size_t> byKey;
    for (size_t i : rows)
        byKey.insert(valueOf(m_fuel[i].transId).toString(), i);
    const std::vector<size_t> asStored = guarded([&] {
        std::vector<size_t> order;
        m_db.ForEachRow("SELECT TransID FROM VecFuel WHERE VoertuigID = " + vehicleId.toString() +
                            " ORDER BY val(KMRead) Asc",
                        [&](const RowView& r) {
                            auto found = byKey.constFind(r.value(0).toString());
                            if (found != byKey.constEnd())
                                order.push_back(found.value());
                        });
        return order;
    });
    if (asStored.size() != rows.size())
        return rows;
    if (m_tieRule == TieRule::Unknown)
        m_tieRule = asStored == rows      ? TieRule::StoredOrder
                    : asStored == byIndex ? TieRule::IndexOrder
                                          : TieRule::AskEach;
    return asStored;
}

void FastRecalc::chainOdometers() {
    std::map<double, std::vector<size_t>> rowsOfVehicle; // stored order within each vehicle
    for (size_t i = 0; i < m_fuel.size(); ++i)
        if (m_fuel[i].hasVehicle)
            rowsOfVehicle[m_fuel[i].vehicle].push_back(i);

    // A vehicle number standing twice walks its chain twice; the later walk is what stays.
    std::map<double, size_t> lastOccurrence;
    for (size_t v = 0; v < m_vehicles.size(); ++v)
        if (auto id = NumericKey(m_vehicles[v].first))
            lastOccurrence[*id] = v;

    for (size_t v = 0; v < m_vehicles.size(); ++v) {
        auto id = NumericKey(m_vehicles[v].first);
        if (!id || lastOccurrence[*id] != v || !chainsVehicle(*id))
            continue;
        auto found = rowsOfVehicle.find(*id);
        if (found == rowsOfVehicle.end())
            continue;
        const std::vector<size_t> chain = chainOrder(m_vehicles[v].first, found->second);
        const bool doubleColumn = m_prevKmType.kind == JetKind::Double;
        QString previousKm = guarded([&] { return recalc::CleanedKm(m_vehicles[v].second); });
        for (size_t n = 0; n < chain.size(); ++n) {
            FuelRow& row = m_fuel[chain[n]];
            if (n > 0) {
                const Cell& before = m_fuel[chain[n - 1]].kmRead;
                if (doubleColumn && before.other < 0 && !before.integer && ReadsBackExactly(before.number)) {
                    // The text the chain carries would read back as this very number.
                    if (!sameCell(before, row.previousKmRead))
                        m_writes.push_back(
                            {"VecFuel", "TransID", valueOf(row.transId), "previouskmread", Value(before.number)});
                    continue;
                }
                previousKm = guarded([&] { return recalc::ReadingText(valueOf(before)); });
            }
            stage("VecFuel", "TransID", valueOf(row.transId), "previouskmread", m_prevKmType,
                  valueOf(row.previousKmRead), Value(previousKm));
        }
    }
}

void FastRecalc::bookStockTakes() {
    // Stock takes are rewritten in stored order, and each one sums the Verlore standing in the table at
    // that moment: rows already passed with their new value, later rows with their old one.
    std::vector<std::optional<DateKey>> dates(m_stock.size());
    std::vector<std::optional<double>> verloreNow(m_stock.size());
    for (size_t i = 0; i < m_stock.size(); ++i) {
        dates[i] = StoredDateKey(m_stock[i].date);
        verloreNow[i] = guarded([&] { return Amount(m_stock[i].verlore); });
    }
    std::map<double, std::vector<size_t>> rowsOfTank;
    for (size_t i = 0; i < m_stock.size(); ++i)
        if (m_stock[i].tank)
            rowsOfTank[*m_stock[i].tank].push_back(i);

    for (size_t i = 0; i < m_stock.size(); ++i) {
        StockRow& row = m_stock[i];
        if (row.tank && !balancesTank(*row.tank))
            continue;
        Currency balance;
        if (row.tank) {
            const double tank = *row.tank;
            const DateKey bound = BoundDateKey(row.date);
            if (auto p = m_purchases.find(tank); p != m_purchases.end())
                balance = guarded([&] { return SumToCurrency(p->second.before(bound)); });
            long double lost = 0.0L;
            for (size_t j : rowsOfTank[tank])
                if (dates[j] && *dates[j] < bound && verloreNow[j])
                    lost += *verloreNow[j];
            balance = guarded([&] { return balance + SumToCurrency(lost); });
            if (auto s = m_issues.find(tank); s != m_issues.end())
                balance = guarded([&] { return balance - SumToCurrency(s->second.before(bound)); });
        } else {
            // "TankID = " with nothing after it is no statement; the handler repeats it.
            guarded([&] {
                throw DbError(3075, "Syntax error (missing operator) in query expression 'TankID ='.");
                return 0;
            });
        }
        const Currency lostNow = guarded([&] { return Currency::fromDouble(vb::Val(row.litersInTank)) - balance; });
        stage("TankStock", "transid", row.transId, "LiterLesing", m_lesingType, row.literLesing, Value(balance));
        stage("TankStock", "transid", row.transId, "Verlore", m_verloreType, row.verlore, Value(lostNow));
        const Value stored = guarded([&] { return ConvertForColumn(Value(lostNow), m_verloreType); });
        verloreNow[i] = guarded([&] { return Amount(stored); });
    }
    m_verloreTotal.clear();
    for (size_t i = 0; i < m_stock.size(); ++i)
        if (m_stock[i].tank && verloreNow[i])
            m_verloreTotal[*m_stock[i].tank] += *verloreNow[i];
}

void FastRecalc::balanceTanks() {
    m_volumeType = guarded([&] { return ColumnType(m_db, "Tanks", "HuidigeVolume"); });
    m_tanks = guarded([&] {
        std::vector<std::pair<Value, Value>> rows;
        auto rs = m_db.OpenRecordset("SELECT TransID, HuidigeVolume FROM Tanks", RecordsetType::Snapshot);
        for (; !rs->Eof(); rs->MoveNext())
            rows.emplace_back(rs->Field(0), rs->Field(1));
        return rows;
    });
    for (const auto& [transId, volume] : m_tanks) {
        auto id = NumericKey(transId);
        if (!id) {
            guarded([&] {
                throw DbError(3075, "Syntax error (missing operator) in query expression 'TankID ='.");
                return 0;
            });
            continue;
        }
        if (!balancesTank(*id))
            continue;
        Currency balance;
        if (auto p = m_purchases.find(*id); p != m_purchases.end())
            balance = guarded([&] { return SumToCurrency(p->second.total()); });
        if (auto l = m_verloreTotal.find(*id); l != m_verloreTotal.end())
            balance = guarded([&] { return balance + SumToCurrency(l->second); });
        if (auto s = m_issues.find(*id); s != m_issues.end())
            balance = guarded([&] { return balance - SumToCurrency(s->second.total()); });
        stage("Tanks", "TransID", transId, "HuidigeVolume", m_volumeType, volume, Value(balance));
    }
}

// Undoes an unfinished batch, so that a retry starts from what is stored. A commit that failed leaves the
// store's own transaction open although the layer above counts it closed; it is rolled back here too.
class TransactionGuard {
public:
    explicit TransactionGuard(Database& store) : m_db(store) {}
    ~TransactionGuard() {
        if (!m_open)
            return;
        try {
            m_db.Rollback();
        } catch (...) {
        }
        if (sqlite3* handle = m_db.handle(); handle && !sqlite3_get_autocommit(handle))
            sqlite3_exec(handle, "ROLLBACK", nullptr, nullptr, nullptr);
    }
    TransactionGuard(const TransactionGuard&) = delete;
    TransactionGuard& operator=(const TransactionGuard&) = delete;
    void opened() { m_open = true; }
    void closed() { m_open = false; }

private:
    Database& m_db;
    bool m_open = false;
};

// The changed values go in one transaction. A failure anywhere in it undoes the batch before the error box,
// and the whole batch is written again: the store never keeps half of it.
void FastRecalc::writeChanges() {
    if (m_writes.empty())
        return;
    QStringList statements;
    for (const PendingWrite& w : m_writes)
        statements << "UPDATE " + w.table + " SET " + w.column + " = " + Literal(w.value) + " WHERE " + w.keyColumn +
                          " = " + Literal(w.key);
    guarded([&] {
        TransactionGuard guard(m_db);
        guard.opened();
        m_db.BeginTrans();
        for (const QString& statement : statements)
            m_db.Execute(statement);
        m_db.CommitTrans();
        guard.closed();
    });
}

void FastRecalc::run(RecalcSummary& summary) {
    readPurchasesAndStock(); // the stock takes' dates are the only dates the issues are summed against
    readFuel();
    chainOdometers();
    bookStockTakes();
    balanceTanks();
    writeChanges();
    if (m_onlyVehicles) {
        if (m_countRows) // counting every table would cost more than the narrowed run itself
            summary = settledSummary();
        summary.narrowed = true;
    } else {
        summary.vehicles = static_cast<int>(m_vehicles.size());
        summary.fuelRows = static_cast<int>(m_fuel.size());
        summary.stockTakes = static_cast<int>(m_stock.size());
        summary.tanks = static_cast<int>(m_tanks.size());
    }
    summary.valuesWritten = static_cast<int>(m_writes.size());
}

// What a run on a store at its fixed point reports: the counts as they stand, nothing rewritten.
RecalcSummary FastRecalc::settledSummary() {
    auto count = [&](const char* table) {
        return guarded([&] {
            std::int64_t n = 0;
            m_db.ForEachRow(QString("SELECT count(*) FROM ") + table, [&](const RowView& r) { n = r.integer(0); });
            return static_cast<int>(n);
        });
    };
    RecalcSummary summary;
    summary.vehicles = static_cast<int>(m_vehicles.size());
    summary.fuelRows = count("VecFuel");
    summary.stockTakes = count("TankStock");
    summary.tanks = count("Tanks");
    return summary;
}

const QString kSettledMark = QStringLiteral("recalc settled");

// What a run reads, by the key that finds it: a vehicle's chain follows its fuel rows and its Km; a tank's
// stock takes and balance follow its purchases, stock takes, issues and its own row.
const std::vector<TouchWatch>& RecalcWatches() {
    static const std::vector<TouchWatch> watches = {
        {"VecFuel", "vehicle", "VoertuigID", {}}, {"VecFuel", "tank", "TankID", {}},
        {"Voertuig", "vehicle", "TransID", {}},   {"FuelPurchase", "tank", "TankID", {}},
        {"TankStock", "tank", "TankID", {}},      {"Tanks", "tank", "TransID", {"TransID", "HuidigeVolume"}},
    };
    return watches;
}

// The vehicles and tanks whose figures may differ from what the last run left, when the log can say so: every
// key a whole number, and the fuel rows' key the row number itself (so that key order is stored order).
std::optional<std::pair<std::set<double>, std::set<double>>> TouchedByKind(Database& store,
                                                                           const TouchedSince& touched) {
    if (!touched.trusted)
        return std::nullopt;
    std::set<double> vehicles, tanks;
    for (const TouchedKey& k : touched.keys) {
        if (!k.key || std::abs(*k.key) >= (std::int64_t(1) << 53))
            return std::nullopt;
        (k.tag == "vehicle" ? vehicles : tanks).insert(static_cast<double>(*k.key));
    }
    bool rowNumberKey = false;
    try {
        for (const FieldDef& f : store.Fields("VecFuel"))
            if (f.name.compare("TransID", Qt::CaseInsensitive) == 0)
                rowNumberKey = JetTypeFromWord(f.type, f.size).kind == JetKind::Counter;
    } catch (const DbError&) {
        return std::nullopt; // the full run reports what is wrong
    }
    if (!rowNumberKey)
        return std::nullopt;
    return std::make_pair(std::move(vehicles), std::move(tanks));
}

class BarShown {
public:
    explicit BarShown(QProgressBar* bar) : m_bar(bar) {
        if (m_bar)
            m_bar->setVisible(true);
    }
    ~BarShown() {
        if (m_bar)
            m_bar->setVisible(false);
    }

private:
    QProgressBar* m_bar;
};

} // namespace

bool Recalc(Database& store, QProgressBar* progressBar, bool showDone, RecalcSummary* summary) {
    bool ok = true;
    RecalcSummary local;
    {
        BarShown shown(progressBar);
        FastRecalc work(store, ok);
        const int vehicles = work.readVehicles();
        if (progressBar) {
            progressBar->setMinimum(0);
            progressBar->setMaximum(vehicles);
            progressBar->setValue(0);
        }
        // A run that found nothing to rewrite left the store at its fixed point; while nothing has touched the
        // store since, a run would read the same rows and again write nothing.
        // The same holds across runs of the program for a file that is byte for byte the one it settled.
        const StoreFingerprint file = FingerprintOf(store.Path());
        StoreFacts facts = ReadStoreFacts(store.Path());
        const bool noTransaction = sqlite3_get_autocommit(store.handle()) != 0;
        work.countRows(summary != nullptr);
        if (store.UnchangedSince(kSettledMark) || (facts.recalcSettled && noTransaction)) {
            if (summary)
                local = work.settledSummary();
        } else {
            // The log of what this connection touched since the last run narrows the work to those vehicles and
            // tanks; where it cannot vouch for every change (first run of the session, another connection's
            // write, a schema change, a run that failed) every vehicle and tank is done.
            const TouchedSince touched = noTransaction ? ReadTouched(store, "recalc", RecalcWatches()) : TouchedSince{};
            if (auto narrowed = TouchedByKind(store, touched))
                work.limitTo(std::move(narrowed->first), std::move(narrowed->second));
            work.run(local);
            if (noTransaction)
                ClearTouched(store, "recalc", touched, ok);
            if (ok && local.valuesWritten == 0 && noTransaction) {
                store.MarkUnchanged(kSettledMark);
                // The file's fact is kept from a run over everything (the first of a session, a command's run);
                // the narrowed runs after a save leave it, since the repair at the end of the session rewrites
                // the file and each record would cost a synchronised write.
                if (!local.narrowed) {
                    facts.recalcSettled = true;
                    RecordStoreFacts(store.Path(), file, facts);
                }
            }
        }
        if (showDone)
            MsgBox("Recalculation done", MsgButtons::Ok, MsgIcon::None, "Recalc");
    }
    if (summary)
        *summary = local;
    return ok;
}

bool Recalc(QProgressBar* progressBar, bool showDone) {
    return Recalc(db(), progressBar, showDone);
}
