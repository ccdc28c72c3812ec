#pragma once
// Recursive-descent parser for the Jet dialect the program writes. It builds a syntax tree and refuses
// anything else with Jet's error number and a readable description (DbError).

#include "JetAst.h"

#include <QString>

namespace jet {

// One statement, an optional ';' at its end.
Statement ParseStatement(const QString& statement);

// A bare expression (FindFirst criteria, for example). Throws DbError 3077 when it is no expression.
ExprPtr ParseExpression(const QString& expression);

} // namespace jet
