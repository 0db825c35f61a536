#pragma once

// The value every expression computes with: a signed 64-bit integer or a
// double, tagged with its kind. Integer-ness is kept wherever the operators
// allow it, so `7/2` stays integer arithmetic.

#include <cstdint>
#include <string>
#include <utility>

namespace korvanel {

enum class ExprKind : uint32_t { Integer = 0, Double = 1, Error = 2, Empty = 3 };

struct ExprValue {
  union {
    int64_t i;
    double d;
  };
  ExprKind kind;

  constexpr ExprValue() : i(0), kind(ExprKind::Empty) {}

  static constexpr ExprValue Integer(int64_t v) {
    ExprValue out;
    out.i = v;
    out.kind = ExprKind::Integer;
    return out;
  }
  static constexpr ExprValue Double(double v) {
    ExprValue out;
    out.d = v;
    out.kind = ExprKind::Double;
    return out;
  }
  static constexpr ExprValue Error() {
    ExprValue out;
    out.kind = ExprKind::Error;
    return out;
  }
  static constexpr ExprValue Empty() { return ExprValue(); }

  bool IsValid() const { return kind == ExprKind::Integer || kind == ExprKind::Double; }
  bool IsInteger() const { return kind == ExprKind::Integer; }
  bool IsDouble() const { return kind == ExprKind::Double; }
  // Integer or Double read as a double; meaningless for other kinds.
  double AsDouble() const { return kind == ExprKind::Integer ? static_cast<double>(i) : d; }
};

static_assert(sizeof(ExprValue) == 16, "ExprValue is passed by value in the per-pixel loop");

// Error codes of the evaluator; the texts are in ExprErrorText().
enum ExprErrorCode : uint32_t {
  kExprSuccess = 0,
  kExprExtraOpenParenthesis = 1,
  kExprUnexpectedCloseParenthesis = 2,
  kExprUnknownFunction = 3,
  kExprUnknownVariable = 4,
  kExprIllegalOperator = 5,
  kExprDivideByZero = 6,
  kExprMathError = 7,
  kExprMathDomainError = 8,
  kExprMathRangeError = 9,
  kExprFunctionArgumentError = 10,
};

// "Success", "Unknown variable", ...; "Unknown error" outside the table.
const char* ExprErrorText(uint32_t code);

// Error code plus detail. Only the first error is kept: later ones are
// dropped, so the message names the cause rather than its consequences.
struct ExprErrorState {
  uint32_t code = kExprSuccess;
  std::string detail;

  bool Failed() const { return code != kExprSuccess; }
  void Set(uint32_t new_code, std::string new_detail) {
    if (code != kExprSuccess) return;
    code = new_code;
    detail = std::move(new_detail);
  }
  void Reset() {
    code = kExprSuccess;
    detail.clear();
  }
};

}  // namespace korvanel
