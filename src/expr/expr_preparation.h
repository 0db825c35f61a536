#pragma once

// Text preparation before parsing: parenthesis balance, blank removal, case
// folding, minus rewriting and wrapping of negated calls. After it the parser
// only needs binary operators, calls and atoms.

#include <string>
#include <string_view>

#include "expr/expr_value.h"

namespace korvanel {

// Writes the prepared text to `out`. Fails (error code 1 or 2, the final
// parenthesis count as detail) when the parentheses do not balance.
bool PrepareExpressionText(std::string_view raw, bool fold_case, std::string& out,
                           ExprErrorState& error);

}  // namespace korvanel
