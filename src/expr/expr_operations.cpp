#include "expr/expr_operations.h"

#include <bit>
#include <cerrno>
#include <cmath>
#include <numbers>

#include "image/text_util.h"

namespace korvanel {
namespace {

// Two's complement wrap without signed overflow: the arithmetic is done on
// uint64_t and converted back, which C++20 defines as modulo 2^64.
int64_t WrapAdd(int64_t a, int64_t b) {
  return static_cast<int64_t>(static_cast<uint64_t>(a) + static_cast<uint64_t>(b));
}
int64_t WrapMul(int64_t a, int64_t b) {
  return static_cast<int64_t>(static_cast<uint64_t>(a) * static_cast<uint64_t>(b));
}
int64_t WrapNeg(int64_t a) {
  return static_cast<int64_t>(0 - static_cast<uint64_t>(a));
}

bool IsZero(ExprValue v) {
  return v.IsInteger() ? v.i == 0 : v.d == 0.0;
}

ExprValue Fail(ExprErrorState& error, uint32_t code, std::string detail) {
  error.Set(code, std::move(detail));
  return ExprValue::Error();
}

// The math library reports domain and range errors through errno; an
// infinite or NaN result counts as the same failure even where it does not.
ExprValue MathChecked(double result, ExprErrorState& error) {
  const int err = errno;
  if (err == EDOM || (std::isnan(result) && err != ERANGE)) {
    return Fail(error, kExprMathDomainError,
                StrFormat("%lld", static_cast<long long>(std::bit_cast<int64_t>(result))));
  }
  if (err == ERANGE || std::isinf(result)) {
    return Fail(error, kExprMathRangeError,
                StrFormat("%lld", static_cast<long long>(std::bit_cast<int64_t>(result))));
  }
  return ExprValue::Double(result);
}

template <typename F>
ExprValue CallMath(ExprErrorState& error, F f) {
  errno = 0;
  const double result = f();
  return MathChecked(result, error);
}

// "%s isn't allowed for %s %s", the wording shared by the integer-only operations.
ExprValue NotAllowed(ExprErrorState& error, const char* what, ExprValue offending) {
  return Fail(error, kExprMathDomainError,
              StrFormat("%s isn't allowed for %s %s", what, "non-natural values ",
                        FormatExprValue(offending).c_str()));
}

ExprValue Divide(ExprValue a, ExprValue b, ExprErrorState& error) {
  if (a.kind == ExprKind::Empty) {
    return Fail(error, kExprMathError,
                StrFormat("can't divide left of %s", FormatExprValue(b).c_str()));
  }
  if (IsZero(b)) {
    return Fail(error, kExprDivideByZero,
                StrFormat("right of %s is zero", FormatExprValue(a).c_str()));
  }
  if (a.IsInteger() && b.IsInteger()) {
    // INT64_MIN / -1 would overflow; it wraps to INT64_MIN like negation does.
    if (b.i == -1) return ExprValue::Integer(WrapNeg(a.i));
    return ExprValue::Integer(a.i / b.i);
  }
  return ExprValue::Double(a.AsDouble() / b.AsDouble());
}

ExprValue Remainder(ExprValue a, ExprValue b, ExprErrorState& error) {
  if (!a.IsInteger() || !b.IsInteger()) {
    return Fail(error, kExprMathError,
                StrFormat("modulus error: %s MOD %s", FormatExprValue(a).c_str(),
                          FormatExprValue(b).c_str()));
  }
  if (b.i == 0) {
    return Fail(error, kExprDivideByZero,
                StrFormat("right of %s is zero", FormatExprValue(a).c_str()));
  }
  // Any value % -1 is 0; INT64_MIN % -1 would trap, so it is answered directly.
  if (b.i == -1) return ExprValue::Integer(0);
  return ExprValue::Integer(a.i % b.i);  // takes the sign of the dividend
}

ExprValue Power(ExprValue a, ExprValue b, ExprErrorState& error) {
  if (a.kind == ExprKind::Empty) {
    return Fail(error, kExprMathError,
                StrFormat("can't raise up left of %s", FormatExprValue(b).c_str()));
  }
  if (a.IsInteger() && b.IsInteger()) {
    if (b.i < 0) {
      return Fail(error, kExprMathDomainError,
                  StrFormat("can't raise negative values %s", FormatExprValue(b).c_str()));
    }
    const ExprValue p = CallMath(error, [&] { return std::pow(a.AsDouble(), b.AsDouble()); });
    if (p.IsDouble() && FitsInt64(p.d)) return ExprValue::Integer(static_cast<int64_t>(p.d));
    return p;
  }
  return CallMath(error, [&] { return std::pow(a.AsDouble(), b.AsDouble()); });
}

// x! in double precision; Integer while below 2^63, Double above (no error).
ExprValue Factorial(ExprValue x, ExprErrorState& error) {
  if (!x.IsInteger()) {
    return Fail(
        error, kExprMathDomainError,
        StrFormat("can't perform factorial on non-integer values %s", FormatExprValue(x).c_str()));
  }
  if (x.i < 0) {
    return Fail(
        error, kExprMathDomainError,
        StrFormat("can't perform factorial on negative values %s", FormatExprValue(x).c_str()));
  }
  double product = 1.0;
  // Past 170! the product is infinite; stopping there bounds the loop.
  for (int64_t k = 2; k <= x.i && !std::isinf(product); ++k) product *= static_cast<double>(k);
  if (product < kTwoPow63) return ExprValue::Integer(static_cast<int64_t>(product));
  return ExprValue::Double(product);
}

// n! / (k! (n-k)!) in 64-bit integers. When a factorial no longer fits an
// int64 (n > 20) the quotient is formed in doubles and returned as a Double.
ExprValue Binomial(ExprValue k, ExprValue n, ExprErrorState& error) {
  const ExprValue fn = Factorial(n, error);
  const ExprValue fk = Factorial(k, error);
  if (!fn.IsValid() || !fk.IsValid()) return ExprValue::Error();
  const ExprValue fnk = Factorial(ExprValue::Integer(WrapAdd(n.i, WrapNeg(k.i))), error);
  if (!fnk.IsValid()) return ExprValue::Error();
  if (fn.IsInteger() && fk.IsInteger() && fnk.IsInteger()) {
    // k! (n-k)! divides n! <= 20!, so the product fits and is non-zero.
    return ExprValue::Integer(fn.i / (fk.i * fnk.i));
  }
  return ExprValue::Double(fn.AsDouble() / (fk.AsDouble() * fnk.AsDouble()));
}

// Rounding functions give an Integer; a double outside the int64 range is
// already whole (or NaN) and is returned unchanged as a Double.
template <typename F>
ExprValue ToIntegerBy(ExprValue x, F f) {
  if (x.IsInteger()) return x;
  const double r = f(x.d);
  if (FitsInt64(r)) return ExprValue::Integer(static_cast<int64_t>(r));
  return ExprValue::Double(r);
}

// The number of significant bits: ceil(log2(|x| + 1)). Integers use the
// exact bit width (so bits(INT64_MIN) is 64); doubles use log2, which is
// exact at powers of two. A non-finite double has no bit count.
ExprValue Bits(ExprValue x, ExprErrorState& error) {
  if (x.IsInteger()) {
    const uint64_t magnitude =
        x.i < 0 ? 0 - static_cast<uint64_t>(x.i) : static_cast<uint64_t>(x.i);
    return ExprValue::Integer(static_cast<int64_t>(std::bit_width(magnitude)));
  }
  const double r = std::ceil(std::log2(std::fabs(x.d) + 1.0));
  if (!std::isfinite(r)) {
    return Fail(error, kExprMathDomainError,
                StrFormat("%lld", static_cast<long long>(std::bit_cast<int64_t>(x.d))));
  }
  return ExprValue::Integer(static_cast<int64_t>(r));
}

ExprValue Sign(ExprValue x) {
  if (x.IsInteger()) return ExprValue::Integer(x.i > 0 ? 1 : (x.i < 0 ? -1 : 0));
  return ExprValue::Double(x.d > 0.0 ? 1.0 : (x.d < 0.0 ? -1.0 : 0.0));
}

ExprValue Distance(ExprValue a, ExprValue b) {
  if (a.IsInteger() && b.IsInteger()) {
    // The sum of squares wraps in 64 bits before the conversion.
    const int64_t sum = WrapAdd(WrapMul(a.i, a.i), WrapMul(b.i, b.i));
    return ExprValue::Double(std::sqrt(static_cast<double>(sum)));
  }
  const double x = a.AsDouble();
  const double y = b.AsDouble();
  return ExprValue::Double(std::sqrt(x * x + y * y));
}

// Equal values give the second argument.
ExprValue MinMax(bool want_min, ExprValue a, ExprValue b) {
  if (a.IsInteger() && b.IsInteger()) {
    const bool take_a = want_min ? a.i < b.i : a.i > b.i;
    return take_a ? a : b;
  }
  const double x = a.AsDouble();
  const double y = b.AsDouble();
  return ExprValue::Double((want_min ? x < y : x > y) ? x : y);
}

ExprValue LogBase(ExprValue base, ExprValue x, ExprErrorState& error) {
  const ExprValue num = CallMath(error, [&] { return std::log(x.AsDouble()); });
  if (!num.IsValid()) return num;
  const ExprValue den = CallMath(error, [&] { return std::log(base.AsDouble()); });
  if (!den.IsValid()) return den;
  return ExprValue::Double(num.d / den.d);
}

// One-argument library functions whose results pass the math check.
struct MathFunctionRow {
  FunctionId id;
  double (*f)(double);
};
constexpr MathFunctionRow kMathFunctions[] = {
    {FunctionId::kSin, [](double v) { return std::sin(v); }},
    {FunctionId::kCos, [](double v) { return std::cos(v); }},
    {FunctionId::kTan, [](double v) { return std::tan(v); }},
    {FunctionId::kExp, [](double v) { return std::exp(v); }},
    {FunctionId::kLog, [](double v) { return std::log(v); }},
    {FunctionId::kLog10, [](double v) { return std::log10(v); }},
    {FunctionId::kSqrt, [](double v) { return std::sqrt(v); }},
};

}  // namespace

ExprValue NormaliseWhole(ExprValue v) {
  if (v.IsDouble() && FitsInt64(v.d) && std::trunc(v.d) == v.d) {
    return ExprValue::Integer(static_cast<int64_t>(v.d));
  }
  return v;
}

std::string FormatExprValue(ExprValue v) {
  if (v.IsInteger()) return StrFormat("%lld", static_cast<long long>(v.i));
  if (v.IsDouble()) return StrFormat("%.6lf", v.d);
  return {};
}

ExprValue ApplyBinary(OperatorId op, ExprValue a, ExprValue b, ExprErrorState& error) {
  using Op = OperatorId;
  if (a.kind == ExprKind::Error) return a;
  // Comparisons, logical and bitwise operators (ids 0..13) check both sides.
  const auto id = static_cast<uint32_t>(op);
  if (id <= static_cast<uint32_t>(Op::kShiftLeft)) {
    if (a.kind == ExprKind::Empty || b.kind == ExprKind::Empty) {
      return Fail(error, kExprMathError,
                  StrFormat("can't perform condition on empty phrase (Left = %s, Right = %s)",
                            FormatExprValue(a).c_str(), FormatExprValue(b).c_str()));
    }
    if (b.kind == ExprKind::Error) {
      return id <= static_cast<uint32_t>(Op::kNotEqual) ? ExprValue::Integer(0) : b;
    }
  } else if (!b.IsValid()) {
    return ExprValue::Error();
  }
  ExprValue out;
  if (ApplyTotalBinary(op, a, b, out)) return out;
  switch (op) {
    case Op::kLogicalOr:
    case Op::kLogicalXor:
    case Op::kLogicalAnd:
      return NotAllowed(error, "condition", a.IsInteger() ? b : a);
    case Op::kBitOr:
    case Op::kBitXor:
    case Op::kBitAnd:
    case Op::kShiftRight:
    case Op::kShiftLeft:
      return NotAllowed(error, "bitwise", a.IsInteger() ? b : a);
    case Op::kAdd:
      return b;  // an empty left side adds nothing
    case Op::kMultiply:
      return Fail(error, kExprMathError,
                  StrFormat("can't multiply left of %s", FormatExprValue(b).c_str()));
    case Op::kDivide:
      return Divide(a, b, error);
    case Op::kRemainder:
      return Remainder(a, b, error);
    case Op::kPower:
      return Power(a, b, error);
    default:
      return Fail(error, kExprIllegalOperator, "");
  }
}

ExprValue ApplyFunction(FunctionId fn, ExprValue a, ExprValue b, ExprErrorState& error) {
  if (fn >= FunctionId::kNone) return Fail(error, kExprUnknownFunction, "");
  if (!a.IsValid()) return ExprValue::Error();
  if (FunctionRowOf(fn).arity == 2 && !b.IsValid()) return ExprValue::Error();
  const double x = a.AsDouble();
  for (const MathFunctionRow& row : kMathFunctions) {
    if (row.id == fn) return CallMath(error, [&] { return row.f(x); });
  }
  switch (fn) {
    case FunctionId::kAtan2:
      return CallMath(error, [x, b] { return std::atan2(x, b.AsDouble()); });
    case FunctionId::kRad:
      return ExprValue::Double(x * std::numbers::pi / 180.0);
    case FunctionId::kDeg:
      return ExprValue::Double(x * 180.0 / std::numbers::pi);
    case FunctionId::kFact:
      return Factorial(a, error);
    // abs(INT64_MIN) wraps and stays negative.
    case FunctionId::kAbs:
      return a.IsInteger() ? ExprValue::Integer(a.i < 0 ? WrapNeg(a.i) : a.i)
                           : ExprValue::Double(std::fabs(a.d));
    case FunctionId::kSign:
      return Sign(a);
    case FunctionId::kBool:
      if (!a.IsInteger()) return NotAllowed(error, "boolean", a);
      return ExprValue::Integer(a.i != 0 ? 1 : 0);
    case FunctionId::kComplement:
      if (!a.IsInteger()) return NotAllowed(error, "complement", a);
      return ExprValue::Integer(~a.i);
    // -INT64_MIN wraps to INT64_MIN.
    case FunctionId::kNegate:
      return a.IsInteger() ? ExprValue::Integer(WrapNeg(a.i)) : ExprValue::Double(-a.d);
    case FunctionId::kNot:
      if (!a.IsInteger()) return NotAllowed(error, "not", a);
      return ExprValue::Integer(a.i == 0 ? 1 : 0);
    case FunctionId::kBits:
      return Bits(a, error);
    case FunctionId::kLogb:
      return LogBase(a, b, error);
    case FunctionId::kRound:
      return ToIntegerBy(a, [](double v) { return std::trunc(v >= 0.0 ? v + 0.5 : v - 0.5); });
    case FunctionId::kCeil:
      return ToIntegerBy(a, [](double v) { return std::ceil(v); });
    case FunctionId::kFloor:
      return ToIntegerBy(a, [](double v) { return std::floor(v); });
    case FunctionId::kDist:
      return Distance(a, b);
    case FunctionId::kDouble:
      return ExprValue::Double(x);
    case FunctionId::kMin:
      return MinMax(true, a, b);
    case FunctionId::kMax:
      return MinMax(false, a, b);
    case FunctionId::kBinom:
      return Binomial(a, b, error);
    default:
      break;
  }
  return Fail(error, kExprUnknownFunction, "");
}

}  // namespace korvanel
