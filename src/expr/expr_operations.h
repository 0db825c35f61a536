#pragma once

// The arithmetic of the expression language: binary operators and functions
// on ExprValues. Shared by direct evaluation, constant folding and the
// compiled per-pixel loop, so all three compute the same values.
//
// Error and Empty operands: an Error operand gives Error without a new error
// record (the operand's own failure was recorded where it happened). Empty
// only reaches the left side of a binary operator (an empty span such as the
// left of "+5"), and each operator says what it does with it.

#include <cstdint>
#include <string>

#include "expr/expr_tables.h"
#include "expr/expr_value.h"

namespace korvanel {

// 2^63 as a double: the first whole double that no longer fits an int64.
inline constexpr double kTwoPow63 = 9223372036854775808.0;

// True when `v` lies in [-2^63, 2^63), where truncation to int64 is defined.
inline bool FitsInt64(double v) {
  return v >= -kTwoPow63 && v < kTwoPow63;
}

// A Double with no fractional part that fits an int64 becomes an Integer.
// (Values below -2^63, infinities and NaN stay Double.)
ExprValue NormaliseWhole(ExprValue v);

// "%lld" for Integer, "%.6lf" for Double, nothing for Error and Empty.
std::string FormatExprValue(ExprValue v);

ExprValue ApplyBinary(OperatorId op, ExprValue a, ExprValue b, ExprErrorState& error);

// `b` is ignored by one-argument functions.
ExprValue ApplyFunction(FunctionId fn, ExprValue a, ExprValue b, ExprErrorState& error);

}  // namespace korvanel
