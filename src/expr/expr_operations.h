#pragma once

// The arithmetic of the expression language: binary operators and functions
// on ExprValues. Shared by direct evaluation, constant folding and the
// compiled per-pixel loop, so all three compute the same values.
//
// Error and Empty operands: an Error operand gives Error without a new error
// record (the operand's own failure was recorded where it happened), except
// that a comparison with an Error on the right is simply false. Empty
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

// The operators that cannot fail on two valid operands of these kinds:
// everything on two Integers but `/`, `%` and `^`; comparisons, `+` and `*`
// otherwise. Inline so that the compiled loop does the common case in place;
// ApplyBinary uses it too. False when the general path is needed.
inline bool ApplyTotalBinary(OperatorId op, ExprValue a, ExprValue b, ExprValue& out) {
  using Op = OperatorId;
  if (!a.IsValid() || !b.IsValid()) return false;
  // Sums and products of mixed kinds (weights times samples) come first.
  if (!(a.IsInteger() && b.IsInteger()) && (op == Op::kAdd || op == Op::kMultiply)) {
    const double x = a.AsDouble();
    const double y = b.AsDouble();
    out = ExprValue::Double(op == Op::kAdd ? x + y : x * y);
    return true;
  }
  if (a.IsInteger() && b.IsInteger()) {
    const int64_t x = a.i;
    const int64_t y = b.i;
    // Wrapping arithmetic is done on uint64_t (C++20 defines the conversion
    // back); the shift count is taken modulo 64 and >> keeps the sign.
    const uint64_t ux = static_cast<uint64_t>(x);
    const uint64_t uy = static_cast<uint64_t>(y);
    int64_t r = 0;
    switch (op) {
      case Op::kLess:
        r = x < y;
        break;
      case Op::kLessEqual:
        r = x <= y;
        break;
      case Op::kGreater:
        r = x > y;
        break;
      case Op::kGreaterEqual:
        r = x >= y;
        break;
      case Op::kEqual:
        r = x == y;
        break;
      case Op::kNotEqual:
        r = x != y;
        break;
      case Op::kLogicalOr:
        r = x != 0 || y != 0;
        break;
      case Op::kLogicalXor:
        r = (x != 0) != (y != 0);
        break;
      case Op::kLogicalAnd:
        r = x != 0 && y != 0;
        break;
      case Op::kBitOr:
        r = x | y;
        break;
      case Op::kBitXor:
        r = x ^ y;
        break;
      case Op::kBitAnd:
        r = x & y;
        break;
      case Op::kShiftRight:
        r = x >> (y & 63);
        break;
      case Op::kShiftLeft:
        r = static_cast<int64_t>(ux << (y & 63));
        break;
      case Op::kAdd:
        r = static_cast<int64_t>(ux + uy);
        break;
      case Op::kMultiply:
        r = static_cast<int64_t>(ux * uy);
        break;
      default:
        return false;
    }
    out = ExprValue::Integer(r);
    return true;
  }
  const double x = a.AsDouble();
  const double y = b.AsDouble();
  switch (op) {
    case Op::kLess:
      out = ExprValue::Integer(x < y);
      return true;
    case Op::kLessEqual:
      out = ExprValue::Integer(x <= y);
      return true;
    case Op::kGreater:
      out = ExprValue::Integer(x > y);
      return true;
    case Op::kGreaterEqual:
      out = ExprValue::Integer(x >= y);
      return true;
    case Op::kEqual:
      out = ExprValue::Integer(x == y);
      return true;
    case Op::kNotEqual:
      out = ExprValue::Integer(x != y);
      return true;
    default:
      return false;
  }
}

// `b` is ignored by one-argument functions.
ExprValue ApplyFunction(FunctionId fn, ExprValue a, ExprValue b, ExprErrorState& error);

}  // namespace korvanel
