#pragma once
// Turns a parsed Jet statement into SQL that SQLite runs with Jet's results, given the functions of
// JetFunctions.h registered on the connection. Text compares case-blind, `&` and `+` keep their Jet
// meanings, a division by zero fails, `top n` keeps ties, constants in group by stay constants.

#include "JetAst.h"
#include "JetTranslator.h"

namespace jet {

// source is the statement's text, quoted in error messages.
SqlitePlan EmitSqlite(const Statement& statement, const QString& source, const SchemaCatalog& catalog);

// A condition (boolean context): FindFirst criteria and the like.
QString EmitSqliteCondition(const Expr& expression, const QString& source, const SchemaCatalog& catalog);

} // namespace jet
