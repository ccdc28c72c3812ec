#pragma once
// The tables an installation of the previous generation had, in their older shape. A new store starts
// from exactly these, so that the start-up upgrade brings it to the present schema as it does an old file.

#include "Database.h"

#include <QString>
#include <vector>

struct OlderTable {
    QString name;
    std::vector<FieldDef> fields;
    std::vector<IndexDef> indexes;
};

// Every older table with its columns in order and its named indexes.
const std::vector<OlderTable>& OlderTables();

// Makes the older tables and indexes on an empty store, and the one row of VecChoice. Throws DbError.
void CreateOlderSchema(Database& db);
