#pragma once
// Runs what the dialect layer made of a statement on the SQLite connection, with Jet's behaviour where
// SQLite's differs: definitions that keep Jet's types, table rebuilds for the changes SQLite's ALTER TABLE
// cannot make, and tables made by select ... into that number new rows.

#include "DatabaseImpl.h"
#include "sql/JetTranslator.h"

// Runs a plan that changes the store; sets impl.recordsAffected. A plan that yields rows fails with 3065.
void ExecutePlan(DatabaseImpl& impl, const SqlitePlan& plan);

// The rows of a plan that yields rows (a query or a crosstab). With withRowid, the query carries the rowid
// of its single base table when it has one (for updatable recordsets); *updatableTable names that table.
ResultSet QueryPlan(DatabaseImpl& impl, const SqlitePlan& plan, bool withRowid = false,
                    QString* updatableTable = nullptr);

// The definitions, shared by statements and the table-definition interface.
void CreateTable(DatabaseImpl& impl, const QString& table, const std::vector<JetColumnSpec>& columns);
void AddColumn(DatabaseImpl& impl, const QString& table, const JetColumnSpec& column);
void AlterColumn(DatabaseImpl& impl, const QString& table, const JetColumnSpec& column);
void DropColumn(DatabaseImpl& impl, const QString& table, const QString& column);
void DropTable(DatabaseImpl& impl, const QString& table);
void CreateIndex(DatabaseImpl& impl, const QString& table, const QString& name, const QStringList& fields, bool unique,
                 bool primary);
void DropIndex(DatabaseImpl& impl, const QString& table, const QString& name);

// The type of a column definition in Jet's words.
JetType JetTypeOfSpec(const JetColumnSpec& spec);
