#include "expr/expr_operations.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

// Empty reaches only the left side of a binary operator (the empty span of
// "+5"); the parser has recorded "Empty token" by then, so these texts are
// checked here, on the operators themselves.
struct EmptyLeftCase {
  OperatorId op;
  ExprValue right;
  uint32_t code;
  const char* detail;
};

TEST(ApplyBinary, EmptyLeftOperand) {
  const EmptyLeftCase cases[] = {
      {OperatorId::kMultiply, ExprValue::Integer(5), kExprMathError, "can't multiply left of 5"},
      {OperatorId::kDivide, ExprValue::Double(2.5), kExprMathError,
       "can't divide left of 2.500000"},
      {OperatorId::kPower, ExprValue::Integer(2), kExprMathError, "can't raise up left of 2"},
      {OperatorId::kRemainder, ExprValue::Integer(2), kExprMathError, "modulus error:  MOD 2"},
      {OperatorId::kLess, ExprValue::Integer(1), kExprMathError,
       "can't perform condition on empty phrase (Left = , Right = 1)"},
      {OperatorId::kLogicalAnd, ExprValue::Integer(1), kExprMathError,
       "can't perform condition on empty phrase (Left = , Right = 1)"},
      {OperatorId::kShiftLeft, ExprValue::Integer(1), kExprMathError,
       "can't perform condition on empty phrase (Left = , Right = 1)"},
  };
  for (const EmptyLeftCase& c : cases) {
    ExprErrorState error;
    const ExprValue v = ApplyBinary(c.op, ExprValue::Empty(), c.right, error);
    EXPECT_EQ(v.kind, ExprKind::Error) << c.detail;
    EXPECT_EQ(error.code, c.code) << c.detail;
    EXPECT_EQ(error.detail, c.detail);
  }
  // "+" passes the right side through unchanged.
  ExprErrorState error;
  const ExprValue sum =
      ApplyBinary(OperatorId::kAdd, ExprValue::Empty(), ExprValue::Double(1.5), error);
  EXPECT_EQ(sum.kind, ExprKind::Double);
  EXPECT_EQ(sum.d, 1.5);
  EXPECT_FALSE(error.Failed());
}

TEST(ApplyBinary, ErrorOperandsGiveErrorWithoutANewRecord) {
  ExprErrorState error;
  // A comparison with an Error on the right is false, not a failure.
  const ExprValue cmp =
      ApplyBinary(OperatorId::kLess, ExprValue::Integer(1), ExprValue::Error(), error);
  EXPECT_EQ(cmp.kind, ExprKind::Integer);
  EXPECT_EQ(cmp.i, 0);
  EXPECT_EQ(ApplyBinary(OperatorId::kAdd, ExprValue::Error(), ExprValue::Integer(1), error).kind,
            ExprKind::Error);
  EXPECT_EQ(
      ApplyBinary(OperatorId::kMultiply, ExprValue::Integer(1), ExprValue::Error(), error).kind,
      ExprKind::Error);
  EXPECT_EQ(ApplyFunction(FunctionId::kMin, ExprValue::Integer(1), ExprValue::Error(), error).kind,
            ExprKind::Error);
  EXPECT_FALSE(error.Failed());
}

TEST(ExprErrorState, FirstErrorWins) {
  ExprErrorState error;
  error.Set(kExprDivideByZero, "first");
  error.Set(kExprMathError, "second");
  EXPECT_EQ(error.code, kExprDivideByZero);
  EXPECT_EQ(error.detail, "first");
  error.Reset();
  error.Set(kExprMathError, "again");
  EXPECT_EQ(error.code, kExprMathError);
}

TEST(NormaliseWhole, KeepsDoublesOutsideTheInt64Range) {
  struct Case {
    double in;
    ExprKind kind;
  };
  const Case cases[] = {{3.0, ExprKind::Integer},        {-0.0, ExprKind::Integer},
                        {-kTwoPow63, ExprKind::Integer}, {kTwoPow63, ExprKind::Double},
                        {-1e300, ExprKind::Double},      {2.5, ExprKind::Double},
                        {1.0 / 0.0, ExprKind::Double}};
  for (const Case& c : cases)
    EXPECT_EQ(NormaliseWhole(ExprValue::Double(c.in)).kind, c.kind) << c.in;
  EXPECT_EQ(NormaliseWhole(ExprValue::Double(-kTwoPow63)).i, INT64_MIN);
}

}  // namespace
}  // namespace korvanel
