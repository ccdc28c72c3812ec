#pragma once
// Taking an older installation's store file (invent.mdb) over: every user table with its columns, defaults,
// named indexes and rows, written into a new store file beside the target in one transaction, checked, and only
// then put in place as the target. On any failure nothing is left: no new file, and a store that stood at the
// target stays as it was. The older file is only read.

#include "OlderFile.h"

#include <QString>
#include <functional>

struct ImportObserver {
    std::function<void(const QString& table, int done, int total)> tableStarting; // done of total tables finished
    std::function<void(const QString& table, long long rows)> tableDone;
    std::function<void(long long rowsSoFar)> rowsWritten; // now and then within a table, to keep a window alive
};

// Takes the file over as target. Without replace, a target that stands is refused. Throws DbError naming the file,
// the table and the cause.
void ImportOlderStore(OlderFile& file, const QString& target, bool replace, const ImportObserver& observer = {});
void ImportOlderStore(const QString& olderFile, const QString& target, bool replace,
                      const ImportObserver& observer = {});

// The older file a store file is taken over from when it is missing: "invent.mdb" beside "invent.db".
QString OlderFileBeside(const QString& storeFile);

// What a start shows while it takes an older file over (the desktop's progress window); none in batch runs.
void SetStartImportObserver(const ImportObserver& observer);
const ImportObserver& StartImportObserver();
