#include "expr/expression_evaluator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <string>
#include <tuple>
#include <utility>

#include "expr/expr_grammar.h"
#include "expr_test_support.h"

namespace korvanel {
namespace {

using test::MapResolver;
using test::Outcome;
using test::RunExpression;

MapResolver StandardVariables() {
  MapResolver r;
  r.vars = {{"x", ExprValue::Integer(3)},  {"y", ExprValue::Double(2.5)},
            {"n", ExprValue::Integer(-4)}, {"z", ExprValue::Integer(0)},
            {"a", ExprValue::Integer(1)},  {"b", ExprValue::Integer(0)}};
  return r;
}

struct ValueCase {
  const char* text;
  ExprValue expected;
};
void PrintTo(const ValueCase& c, std::ostream* os) {
  *os << c.text;
}

constexpr ExprValue I(int64_t v) {
  return ExprValue::Integer(v);
}
constexpr ExprValue D(double v) {
  return ExprValue::Double(v);
}

// clang-format off
const ValueCase kValueCases[] = {
    // Integer-ness and the normalisation of whole doubles.
    {"7/2", I(3)}, {"7/2.0", D(3.5)}, {"6/2.0", I(3)}, {"1e3", I(1000)},
    {"9223372036854775808", D(9223372036854775808.0)},
    // Minus rewriting and prefix operators.
    {"5-3", I(2)}, {"5--3", I(8)}, {"-3%2", I(-1)}, {"7%-3", I(1)}, {"-2^2", I(4)},
    {"-(2+3)", I(-5)}, {"-abs(-3)", I(-3)}, {"x - n", I(7)}, {"!0", I(1)}, {"~0", I(-1)},
    {"2*-3", I(-6)},
    // Levels: one logical level, bitwise above comparisons, left-associative.
    {"1 || 0 && 0", I(0)}, {"7 < 2 | 4", I(0)}, {"1 < 2 | 4", I(1)}, {"2^3^2", I(64)},
    {"8/4/2", I(1)}, {"2+3*4", I(14)}, {"1 ^^ 1", I(0)}, {"1 < 2 == 1", I(1)},
    {"0.1+0.2 == 0.3", I(0)}, {"2 == 2.0", I(1)}, {"2.5 <= 2", I(0)},
    // Literals.
    {"0x1F", I(31)}, {"010", I(8)}, {"101b", I(5)}, {"0xFFFFFFFFFFFFFFFF", I(-1)},
    {"-0x10", I(-16)}, {"e", D(2.718281828459045)}, {"pi", D(3.141592653589793)},
    // Bitwise and shifts (count modulo 64, >> keeps the sign).
    {"5^|3", I(6)}, {"6&3", I(2)}, {"1<<3", I(8)}, {"-16>>2", I(-4)}, {"1<<65", I(2)},
    {"1<<-1", I(INT64_MIN)},
    // Wrapping 64-bit integers instead of overflow.
    {"9223372036854775807+1", I(INT64_MIN)}, {"-9223372036854775808/-1", I(INT64_MIN)},
    {"-9223372036854775808%-1", I(0)}, {"abs(-9223372036854775808)", I(INT64_MIN)},
    {"4294967296*4294967296", I(0)},
    // Power.
    {"2^62", I(4611686018427387904)}, {"2^63", D(9223372036854775808.0)}, {"(-2)^63", I(INT64_MIN)},
    {"0^0", I(1)}, {"2.0^-1", D(0.5)}, {"4^0.5", I(2)},
    // Functions.
    {"fact(20)", I(2432902008176640000)}, {"fact(21)", D(51090942171709440000.0)},
    {"fact(0)", I(1)}, {"binom(2,5)", I(10)}, {"binom(20,20)", I(1)}, {"bits(0)", I(0)},
    {"bits(256)", I(9)}, {"bits(-256)", I(9)}, {"bits(2.5)", I(2)},
    {"bits(0x8000000000000000)", I(64)}, {"round(2.5)", I(3)}, {"round(-2.5)", I(-3)},
    {"ceil(2.1)", I(3)}, {"floor(-2.1)", I(-3)}, {"round(1e300)", D(1e300)}, {"min(1,2)", I(1)},
    {"max(1,2.5)", D(2.5)}, {"max(-1,n)", I(-1)},
    // Ties return the second argument: atan2 tells +0.0 from -0.0.
    {"atan2(0.0, min(0.0, -0.0))", D(3.141592653589793)}, {"atan2(0.0, min(-0.0, 0.0))", I(0)},
    {"atan2(0.0, max(0.0, -0.0))", D(3.141592653589793)}, {"abs(-2.5)", D(2.5)},
    {"sign(-2.5)/2", D(-0.5)}, {"sign(-7)/2", I(0)}, {"bool(5)", I(1)}, {"sqrt(16)", I(4)},
    {"sqrt(2)", D(1.4142135623730951)}, {"dist(3,4)", I(5)}, {"log(1)", I(0)},
    {"rad(180)", D(3.141592653589793)}, {"sin(0)", I(0)}, {"cos(0)", I(1)}, {"double(3)/2", D(1.5)},
    // Variables through the resolver.
    {"x*2", I(6)}, {"x+y", D(5.5)}, {"n%3", I(-1)}, {"min(x, y)", D(2.5)},
};
// clang-format on

class ExprValueTest : public ::testing::TestWithParam<std::tuple<ValueCase, bool>> {};

TEST_P(ExprValueTest, ComputesValueAndKind) {
  const auto& [c, compiled] = GetParam();
  MapResolver vars = StandardVariables();
  const Outcome out = RunExpression(c.text, compiled, &vars);
  ASSERT_TRUE(out.ok) << c.text << ": " << out.code << " " << out.detail;
  EXPECT_EQ(out.value.kind, c.expected.kind) << c.text;
  if (c.expected.IsInteger()) {
    EXPECT_EQ(out.value.i, c.expected.i) << c.text;
  } else {
    EXPECT_EQ(out.value.d, c.expected.d) << c.text;
  }
  EXPECT_EQ(out.code, kExprSuccess);
}

INSTANTIATE_TEST_SUITE_P(BothModes, ExprValueTest,
                         ::testing::Combine(::testing::ValuesIn(kValueCases), ::testing::Bool()));

struct ErrorCase {
  const char* text;
  uint32_t code;
  const char* detail;  // nullptr: the detail is a platform's NaN/infinity bit pattern
};
void PrintTo(const ErrorCase& c, std::ostream* os) {
  *os << c.text;
}

// clang-format off
const ErrorCase kErrorCases[] = {
    {"(1+2", kExprExtraOpenParenthesis, "1"}, {"1+2)", kExprUnexpectedCloseParenthesis, "-1"},
    {"sin(1,2)", kExprFunctionArgumentError, "Invalid no. of arguments for function sin (expected 2)"},
    {"min(1)", kExprFunctionArgumentError, "Invalid no. of arguments for function min (expected 1)"},
    {"min(,1)", kExprFunctionArgumentError, "Left argument of min(,1) is empty"},
    {"min(1,)", kExprFunctionArgumentError, "Right argument of min(1,) is empty"},
    {"(1)(2)", kExprFunctionArgumentError, "Invalid argument in expression (1)(2)"},
    {"fact(2.5)", kExprMathDomainError, "can't perform factorial on non-integer values 2.500000"},
    {"fact(-1)", kExprMathDomainError, "can't perform factorial on negative values -1"},
    {"binom(3,2)", kExprMathDomainError, "can't perform factorial on negative values -1"},
    {"1/0", kExprDivideByZero, "right of 1 is zero"},
    {"1.5/0.0", kExprDivideByZero, "right of 1.500000 is zero"},
    {"x/z", kExprDivideByZero, "right of 3 is zero"},
    {"5%2.0", kExprMathError, "modulus error: 5 MOD 2.000000"},
    {"y%2", kExprMathError, "modulus error: 2.500000 MOD 2"},
    {"a&&!b", kExprIllegalOperator, "Illegal operand '&&!'"},
    {"1 <<= 2", kExprIllegalOperator, "Illegal operand '<<='"},
    {"2^-1", kExprMathDomainError, "can't raise negative values -1"},
    {"1e-3", kExprUnknownVariable, "1e"}, {"foo", kExprUnknownVariable, "foo"},
    {"+5", kExprMathError, "Empty token"}, {"", kExprMathError, "Empty token"},
    {"bar(1)", kExprUnknownFunction, "bar"}, {"-log10(100)", kExprUnknownFunction, "-log10"},
    {"SIN(0)", kExprUnknownFunction, "SIN"},
    {"1.5 && 1", kExprMathDomainError, "condition isn't allowed for non-natural values  1.500000"},
    {"1 | 2.5", kExprMathDomainError, "bitwise isn't allowed for non-natural values  2.500000"},
    {"bool(1.5)", kExprMathDomainError, "boolean isn't allowed for non-natural values  1.500000"},
    {"!y", kExprMathDomainError, "not isn't allowed for non-natural values  2.500000"},
    {"~1.5", kExprMathDomainError, "complement isn't allowed for non-natural values  1.500000"},
    {"sqrt(-1)", kExprMathDomainError, nullptr}, {"log(0)", kExprMathRangeError, nullptr},
    {"exp(1000)", kExprMathRangeError, nullptr}, {"10^400", kExprMathRangeError, nullptr},
    {"logb(2, -1)", kExprMathDomainError, nullptr},
    // The first error wins.
    {"foo+bar", kExprUnknownVariable, "foo"},
    {"1/0 + foo", kExprDivideByZero, "right of 1 is zero"},
    {"fact(2.5) + 1/0", kExprMathDomainError, "can't perform factorial on non-integer values 2.500000"},
};
// clang-format on

class ExprErrorTest : public ::testing::TestWithParam<std::tuple<ErrorCase, bool>> {};

TEST_P(ExprErrorTest, ReportsCodeAndDetail) {
  const auto& [c, compiled] = GetParam();
  MapResolver vars = StandardVariables();
  const Outcome out = RunExpression(c.text, compiled, &vars);
  EXPECT_FALSE(out.ok) << c.text;
  EXPECT_EQ(out.value.kind, ExprKind::Error) << c.text;
  EXPECT_EQ(out.code, c.code) << c.text << ": " << out.detail;
  if (c.detail != nullptr) {
    EXPECT_EQ(out.detail, c.detail) << c.text;
  }
}

INSTANTIATE_TEST_SUITE_P(BothModes, ExprErrorTest,
                         ::testing::Combine(::testing::ValuesIn(kErrorCases), ::testing::Bool()));

TEST(ExpressionEvaluator, ErrorTextJoinsCodeTextAndDetail) {
  CExpressionEvaluator eval;
  ExprValue v;
  // A math check's detail is the result's bit pattern: +infinity is 0x7FF0000000000000.
  for (const auto& [text, message] : {std::pair{"foo", "Unknown variable: foo"},
                                      {"exp(1000)", "Math range error: 9218868437227405312"}}) {
    ASSERT_FALSE(eval.Evaluate(text, v));
    EXPECT_EQ(eval.GetErrorText(), message);
  }
  // A new evaluation starts from a clean error state.
  ASSERT_TRUE(eval.Evaluate("1+1", v));
  EXPECT_EQ(eval.GetErrorCode(), kExprSuccess);
}

TEST(ExpressionEvaluator, CaseFoldingLowersTheTextBeforeParsing) {
  CExpressionEvaluator eval;
  ExprValue v;
  eval.SetCaseFolding(true);
  ASSERT_TRUE(eval.Evaluate("SIN(0) + PI", v)) << eval.GetErrorText();
  EXPECT_EQ(v.kind, ExprKind::Double);
  EXPECT_EQ(v.d, 3.141592653589793);
}

TEST(ExpressionEvaluator, OwnVariablesAreConstantsWithLimits) {
  CExpressionEvaluator eval;
  ExprValue v;
  EXPECT_FALSE(eval.AddVariable("e", I(1)));
  EXPECT_FALSE(eval.AddVariable("pi", I(1)));
  EXPECT_FALSE(eval.AddVariable(std::string(129, 'v'), I(1)));
  EXPECT_TRUE(eval.AddVariable(std::string(128, 'v'), I(1)));
  EXPECT_FALSE(eval.AddVariable("bad", ExprValue::Error()));
  // e, pi and the long name hold three of the 64 entries.
  for (int k = 0; k < 61; ++k) EXPECT_TRUE(eval.AddVariable("v" + std::to_string(k), I(k)));
  EXPECT_FALSE(eval.AddVariable("one_too_many", I(0)));
  EXPECT_TRUE(eval.AddVariable("v7", I(700)));  // updating is not adding
  ASSERT_TRUE(eval.Evaluate("v7 + v60", v));
  EXPECT_EQ(v.i, 760);
}

struct DepthCase {
  std::string text;
  bool ok;
};

std::string Nested(int levels) {
  return std::string(levels, '(') + "1" + std::string(levels, ')');
}
std::string Chain(int terms) {
  std::string s = "1";
  for (int k = 1; k < terms; ++k) s += "+1";
  return s;
}

TEST(ExpressionEvaluator, DeepNestingFailsCleanlyInBothModes) {
  const DepthCase cases[] = {
      {Nested(kMaxExpressionDepth), true},
      {Nested(kMaxExpressionDepth + 1), false},
      {Nested(5000), false},
      {Chain(kMaxExpressionDepth), true},
      {Chain(5000), false},
      {std::string(20000, '!') + "1", false},
  };
  for (bool compiled : {false, true}) {
    for (const DepthCase& c : cases) {
      const Outcome out = RunExpression(c.text, compiled, nullptr);
      EXPECT_EQ(out.ok, c.ok) << c.text.size();
      if (!c.ok) {
        EXPECT_EQ(out.code, kExprMathError);
        EXPECT_EQ(out.detail, "Expression nested deeper than 1000 levels");
      }
    }
  }
}

TEST(ExpressionEvaluator, OverlongTextsFailBeforePreparation) {
  const std::string text =
      Chain(static_cast<int>(kMaxExpressionLength / 2) + 1);  // "1+1+..." past the limit
  for (bool compiled : {false, true}) {
    const Outcome out = RunExpression(text, compiled, nullptr);
    EXPECT_FALSE(out.ok);
    EXPECT_EQ(out.code, kExprMathError);
    EXPECT_EQ(out.detail, "Expression longer than 65536 characters");
  }
  EXPECT_TRUE(RunExpression(std::string(kMaxExpressionLength - 1, ' ') + "7", false, nullptr).ok);
}

}  // namespace
}  // namespace korvanel
