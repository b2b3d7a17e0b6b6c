#pragma once

#include "tree.h"

#include <string>

namespace tp3 {

/// A tree as text, for tests and for looking at: expressions in prefix form, such as (+ A 1), statements one
/// a line, indented by what holds them.
std::string dumpExpression(const Expr* expr);
std::string dumpStatements(const Stmt* first, int indentation = 0);

} // namespace tp3
