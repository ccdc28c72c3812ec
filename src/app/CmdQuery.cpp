// `orvel --home DIR query "STATEMENT"`: one statement in the store's dialect. A query prints a heading of
// field names and its rows, tab-separated, each value as CStr shows it; a statement that changes data
// prints the number of rows it affected.

#include "CommandLine.h"

#include "Database.h"
#include "Session.h"
#include "StoreStartup.h"
#include "Vb.h"

#include <cstdio>
#include <exception>

namespace {

int Fail(const QString& reason) {
    std::fprintf(stderr, "orvel query: %s\n", qPrintable(reason));
    return 1;
}

void PrintLine(const QStringList& cells) {
    const QByteArray line = cells.join('\t').toUtf8();
    std::fwrite(line.constData(), 1, static_cast<size_t>(line.size()), stdout);
    std::fputc('\n', stdout);
}

// CStr of the value; Null, which CStr refuses, prints as nothing.
QString CellText(const Value& v) {
    return v.isNull() || v.isEmpty() ? QString() : vb::CStr(v);
}

void PrintRows(Recordset& rs) {
    PrintLine(rs.FieldNames());
    const int fields = rs.FieldCount();
    QStringList cells;
    while (!rs.Eof()) {
        cells.clear();
        for (int i = 0; i < fields; ++i)
            cells << CellText(rs.Field(i));
        PrintLine(cells);
        rs.MoveNext();
    }
}

} // namespace

int RunQueryCommand(const CommandLine& cl) {
    if (cl.args.size() != 1)
        return Fail("query takes one statement, in quotes");
    const QString statement = cl.args.front();
    Session s;
    s.home = cl.home;
    try {
        OpenSessionStore(s);
        Database& store = *s.db;
        if (store.ReturnsRows(statement)) {
            auto rs = store.OpenRecordset(statement, RecordsetType::Snapshot);
            PrintRows(*rs);
        } else {
            store.Execute(statement);
            std::printf("%d\n", store.RecordsAffected());
        }
        std::fflush(stdout);
        return 0;
    } catch (const NumberedError& e) {
        return Fail(QString("error %1: %2").arg(e.number()).arg(e.description()));
    } catch (const std::exception& e) {
        return Fail(QString::fromUtf8(e.what()));
    }
}
