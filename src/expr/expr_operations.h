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

// The common per-pixel case of ApplyBinary, inlined into the compiled loop:
// `+` and `*` on two valid operands, which cannot fail. False when the
// general path is needed.
inline bool ApplyArithmeticFast(OperatorId op, ExprValue a, ExprValue b, ExprValue& out) {
  if (!a.IsValid() || !b.IsValid()) return false;
  const bool integers = a.IsInteger() && b.IsInteger();
  if (op == OperatorId::kAdd) {
    out = integers ? ExprValue::Integer(static_cast<int64_t>(static_cast<uint64_t>(a.i) +
                                                             static_cast<uint64_t>(b.i)))
                   : ExprValue::Double(a.AsDouble() + b.AsDouble());
    return true;
  }
  if (op == OperatorId::kMultiply) {
    out = integers ? ExprValue::Integer(static_cast<int64_t>(static_cast<uint64_t>(a.i) *
                                                             static_cast<uint64_t>(b.i)))
                   : ExprValue::Double(a.AsDouble() * b.AsDouble());
    return true;
  }
  return false;
}

// `b` is ignored by one-argument functions.
ExprValue ApplyFunction(FunctionId fn, ExprValue a, ExprValue b, ExprErrorState& error);

}  // namespace korvanel
