#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <vector>

#include "expr/block_evaluator.h"
#include "expr/expr_operations.h"
#include "expr_test_support.h"

namespace korvanel {
namespace {

// Values that reach the awkward corners: zero, negatives, -1, large ones.
int64_t SampleA(uint32_t p) { return static_cast<int64_t>(p % 17) - 5; }
int64_t SampleB(uint32_t p) { return static_cast<int64_t>((p * 7) % 23) - 3; }
int64_t SampleC(uint32_t p) { return p == 100 ? INT64_MIN : static_cast<int64_t>(p) * 1000003; }

bool SameValue(ExprValue a, ExprValue b) {
  if (a.kind != b.kind) return false;
  if (a.IsInteger()) return a.i == b.i;
  if (a.IsDouble()) return std::bit_cast<uint64_t>(a.d) == std::bit_cast<uint64_t>(b.d);
  return true;
}

// Every pixel before the first failure must equal the per-pixel walk, and
// the first failure must be where the walk first fails.
TEST(BlockEvaluatorTest, MatchesThePerPixelWalkValueKindAndFirstFailure) {
  const char* expressions[] = {
      "a+b", "(a+b)/2", "a/b", "a%b", "a/4", "a%4", "-a/8", "c/8", "c%16", "a*0.5+b",
      "a/2.0", "a>b", "a<=b*1.5", "a&&b", "a^^b", "a||0", "a^2", "2^a", "sqrt(a)",
      "min(a,b)", "max(a,b*1.0)", "abs(-a)", "-a", "-(a*0.25)", "a>>2|b<<1", "a^|b&3",
      "c*c*c", "(a+0.5)*(b-0.5)", "a==b", "a!=b*1.0", "b/(a-a)", "log(a)", "a/(b-3)",
      "double(a)/3 + (a>b)", "a%(b-b)", "fact(a)", "(a>0)*1.5 + (a<=0)", "~a", "!a",
      "bits(a)", "round(a/3.0)", "(a+b)*(a+b)-(a+b)", "7", "a", "c/-1", "c%-1", "a/b/0.5",
      "a*2.5 > b", "a*1.0/(b*1.0)", "atan2(a,b)", "dist(a,b)", "sign(a*1.0)", "a+b*1e300*1e300",
  };
  constexpr uint32_t kCount = 200;
  std::vector<int64_t> a(kExprBlockSize), b(kExprBlockSize), c(kExprBlockSize);
  for (uint32_t p = 0; p < kExprBlockSize; ++p) {
    a[p] = SampleA(p);
    b[p] = SampleB(p);
    c[p] = SampleC(p);
  }
  const int64_t* lanes[] = {a.data(), b.data(), c.data()};
  const std::string_view names[] = {"a", "b", "c"};

  for (const char* text : expressions) {
    test::MapResolver resolver;
    resolver.vars = {{"a", ExprValue::Integer(0)}, {"b", ExprValue::Integer(0)},
                     {"c", ExprValue::Integer(0)}};
    CExpressionEvaluator eval;
    eval.SetResolver(&resolver);
    eval.SetCompiledMode(true);
    ExprValue compiled;
    ASSERT_TRUE(eval.Evaluate(text, compiled)) << text << ": " << eval.GetErrorText();
    CBlockEvaluator block;
    ASSERT_TRUE(block.Bind(eval, names)) << text;
    const uint32_t done = block.Run(kCount, lanes);

    uint32_t first_failure = kCount;
    for (uint32_t p = 0; p < kCount; ++p) {
      resolver.vars["a"] = ExprValue::Integer(a[p]);
      resolver.vars["b"] = ExprValue::Integer(b[p]);
      resolver.vars["c"] = ExprValue::Integer(c[p]);
      ExprValue expected;
      if (!eval.EvaluateCompiled(expected)) {
        first_failure = p;
        break;
      }
      ASSERT_TRUE(SameValue(block.ResultAt(p), expected))
          << text << " at pixel " << p << ": block " << FormatExprValue(block.ResultAt(p))
          << ", walk " << FormatExprValue(expected);
    }
    EXPECT_EQ(done, first_failure) << text;
  }
}

TEST(BlockEvaluatorTest, RefusesAVariableItIsNotGivenALaneFor) {
  test::MapResolver resolver;
  resolver.vars = {{"a", ExprValue::Integer(1)}, {"q", ExprValue::Integer(2)}};
  CExpressionEvaluator eval;
  eval.SetResolver(&resolver);
  eval.SetCompiledMode(true);
  ExprValue compiled;
  ASSERT_TRUE(eval.Evaluate("a+q", compiled));
  CBlockEvaluator block;
  const std::string_view only_a[] = {"a"};
  EXPECT_FALSE(block.Bind(eval, only_a));
}

}  // namespace
}  // namespace korvanel
