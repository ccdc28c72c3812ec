#include "OlderImport.h"

#include "DatabaseImpl.h"
#include "JetTypes.h"
#include "StoreFacts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <cstdio>

namespace {

ImportObserver& startObserver() {
    static ImportObserver observer;
    return observer;
}

void RemoveWithJournal(const QString& file) {
    QFile::remove(file);
    QFile::remove(file + "-journal");
}

// Every column's type is known before anything is written: a file with a column the store cannot keep is refused
// whole.
void RequireKnownTypes(const OlderFile& file, const QString& path) {
    for (const OlderTableDef& table : file.Tables())
        for (const OlderColumn& column : table.columns)
            if (column.type.isEmpty())
                throw DbError(3259, QString("'%1' cannot be taken over: column '%2' of table '%3' is of the type %4, "
                                            "which the register does not keep.")
                                        .arg(path, column.name, table.name, column.foreignType));
}

long long CopyTable(OlderFile& file, Database& store, const OlderTableDef& table, const ImportObserver& observer) {
    std::vector<FieldDef> fields;
    QStringList names, marks;
    std::vector<JetType> types;
    for (const OlderColumn& c : table.columns) {
        fields.push_back({c.name, c.type, c.size, c.defaultValue});
        names << QuoteName(c.name);
        marks << "?";
        types.push_back(JetTypeFromWord(c.type, c.size));
    }
    store.CreateTableDef(table.name, fields);
    DatabaseImpl& impl = store.impl();
    Statement insert = impl.prepare("INSERT INTO " + QuoteName(table.name) + " (" + names.join(", ") + ") VALUES (" +
                                    marks.join(", ") + ")");
    long long rows = 0;
    file.ReadRows(table, [&](const std::vector<Value>& row) {
        for (size_t i = 0; i < row.size() && i < types.size(); ++i)
            BindValue(insert, static_cast<int>(i) + 1, ConvertForColumn(row[i], types[i]));
        impl.runToEnd(insert);
        sqlite3_reset(insert);
        sqlite3_clear_bindings(insert);
        if (++rows % 2000 == 0 && observer.rowsWritten)
            observer.rowsWritten(rows);
    });
    for (const OlderIndex& index : table.indexes)
        store.CreateIndex(table.name, {index.name, index.fields, index.primary, index.unique});
    return rows;
}

} // namespace

void ImportOlderStore(OlderFile& file, const QString& target, bool replace, const ImportObserver& observer) {
    if (!replace && QFileInfo::exists(target))
        throw DbError(3204, QString("A store already stands at '%1'; it is replaced only when asked to.").arg(target));
    const QString making = target + ".import";
    RemoveWithJournal(making);
    const std::vector<OlderTableDef>& tables = file.Tables();
    const int total = static_cast<int>(tables.size());
    try {
        std::unique_ptr<Database> store = Database::Open(making, true);
        QFile::setPermissions(making, QFileDevice::ReadOwner | QFileDevice::WriteOwner);
        store->BeginTrans();
        for (int i = 0; i < total; ++i) {
            const OlderTableDef& table = tables[static_cast<size_t>(i)];
            if (observer.tableStarting)
                observer.tableStarting(table.name, i, total);
            long long rows = 0;
            try {
                rows = CopyTable(file, *store, table, observer);
            } catch (const NumberedError& e) {
                if (e.description().contains("'" + table.name + "'"))
                    throw;
                throw DbError(e.number(),
                              QString("table '%1' cannot be taken over: %2").arg(table.name, e.description()));
            }
            if (observer.tableDone)
                observer.tableDone(table.name, rows);
        }
        store->CommitTrans();
        QString fault;
        if (!store->IntegrityCheck(&fault))
            throw DbError(3049, "The new store failed its integrity check: " + fault);
        store.reset();
        // One rename puts the new store in place; a store that stood there stays until this moment.
        if (std::rename(QFile::encodeName(making).constData(), QFile::encodeName(target).constData()) != 0)
            throw DbError(3026, QString("The new store could not be put in place as '%1'.").arg(target));
    } catch (...) {
        RemoveWithJournal(making);
        throw;
    }
    QFile::remove(StoreFactsFile(target));
}

void ImportOlderStore(const QString& olderFile, const QString& target, bool replace, const ImportObserver& observer) {
    if (!replace && QFileInfo::exists(target))
        throw DbError(3204, QString("A store already stands at '%1'; it is replaced only when asked to.").arg(target));
    std::unique_ptr<OlderFile> file = OpenOlderFile(olderFile);
    RequireKnownTypes(*file, olderFile);
    ImportOlderStore(*file, target, replace, observer);
}

QString OlderFileBeside(const QString& storeFile) {
    return QFileInfo(storeFile).absoluteDir().filePath("invent.mdb");
}

void SetStartImportObserver(const ImportObserver& observer) {
    startObserver() = observer;
}

const ImportObserver& StartImportObserver() {
    return startObserver();
}
