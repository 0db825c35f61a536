#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

#include "expr/expression_evaluator.h"
#include "expr_test_support.h"

namespace korvanel {
namespace {

using test::MapResolver;
using test::Outcome;
using test::RunExpression;

std::vector<ExprNodeKind> Kinds(const CExpressionEvaluator& eval) {
  std::vector<ExprNodeKind> out;
  for (const ExprNode& n : eval.GetNodes()) out.push_back(n.kind);
  return out;
}

std::vector<uint32_t> Chain(const CExpressionEvaluator& eval) {
  std::vector<uint32_t> out;
  const auto& nodes = eval.GetNodes();
  for (uint32_t i = eval.GetFirstNode(); i < nodes.size(); i = nodes[i].next) out.push_back(i);
  return out;
}

class CompiledTest : public ::testing::Test {
 protected:
  void SetUp() override {
    vars_.vars = {{"x", ExprValue::Integer(3)}, {"z", ExprValue::Integer(0)}};
    eval_.SetResolver(&vars_);
    eval_.SetCompiledMode(true);
  }
  MapResolver vars_;
  CExpressionEvaluator eval_;
  ExprValue v_;
};

TEST_F(CompiledTest, FoldsConstantsAndChainsTheRest) {
  ASSERT_TRUE(eval_.Evaluate("x*2 + 3*4", v_));
  EXPECT_EQ(v_.i, 1);  // compiling answers Integer 1
  using K = ExprNodeKind;
  // x, 2, x*2, 3, 4, 3*4 folded, the sum.
  EXPECT_EQ(Kinds(eval_), (std::vector<K>{K::Variable, K::Constant, K::Binary, K::Constant,
                                          K::Constant, K::Constant, K::Binary}));
  EXPECT_EQ(eval_.GetNodes()[5].value.i, 12);
  EXPECT_EQ(eval_.GetNodes()[5].text, "3*4");
  EXPECT_EQ(Chain(eval_), (std::vector<uint32_t>{0, 2, 6}));
  for (const ExprNode& n : eval_.GetNodes()) {
    EXPECT_LT(n.left, static_cast<int32_t>(n.index));  // children before parents
    EXPECT_LT(n.right, static_cast<int32_t>(n.index));
  }
  ExprValue constant;
  EXPECT_FALSE(eval_.GetConstantResult(constant));
  ASSERT_TRUE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.i, 18);
  vars_.vars["x"] = ExprValue::Double(0.5);
  ASSERT_TRUE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.kind, ExprKind::Integer);  // 13.0 is normalised
  EXPECT_EQ(v_.i, 13);
}

TEST_F(CompiledTest, ConstantExpressionEvaluatesOnlyItsRoot) {
  ASSERT_TRUE(eval_.Evaluate("2*(3+4) - pi/pi", v_));
  ExprValue constant;
  ASSERT_TRUE(eval_.GetConstantResult(constant));
  EXPECT_EQ(constant.kind, ExprKind::Integer);
  EXPECT_EQ(constant.i, 13);
  EXPECT_EQ(Chain(eval_),
            std::vector<uint32_t>{static_cast<uint32_t>(eval_.GetNodes().size() - 1)});
  eval_.SetResolver(nullptr);  // a constant needs no resolver
  ASSERT_TRUE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.i, 13);
}

TEST_F(CompiledTest, SharesIdenticalTextsAndResolvesOncePerRun) {
  ASSERT_TRUE(eval_.Evaluate("x*x + x*x", v_));
  const auto& nodes = eval_.GetNodes();
  // x, x, x*x, x, x, x*x, sum: every repeat points at the first of its text.
  const std::vector<int32_t> shared = {-1, 0, -1, 0, 0, 2, -1};
  ASSERT_EQ(nodes.size(), shared.size());
  for (size_t i = 0; i < nodes.size(); ++i) EXPECT_EQ(nodes[i].shared_with, shared[i]) << i;
  vars_.calls = 0;
  ASSERT_TRUE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.i, 18);
  EXPECT_EQ(vars_.calls, 1);
}

TEST_F(CompiledTest, ResolverConfirmsNamesAtCompileTime) {
  vars_.calls = 0;
  ASSERT_FALSE(eval_.Evaluate("x + foo", v_));
  EXPECT_EQ(eval_.GetErrorText(), "Unknown variable: foo");
  EXPECT_EQ(vars_.calls, 2);
}

TEST_F(CompiledTest, AnyErrorFailsTheCompileEvenBelowTheRoot) {
  ASSERT_FALSE(eval_.Evaluate("1/0 + x", v_));
  EXPECT_EQ(eval_.GetErrorText(), "Divide by zero: right of 1 is zero");
  EXPECT_EQ(eval_.GetNodes().back().kind, ExprNodeKind::Binary);
  // The node list still reports the failure when it is run.
  EXPECT_FALSE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(eval_.GetErrorCode(), kExprDivideByZero);
}

TEST_F(CompiledTest, RunTimeErrorsAreResetPerEvaluation) {
  ASSERT_TRUE(eval_.Evaluate("x/z", v_));
  EXPECT_FALSE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.kind, ExprKind::Error);
  EXPECT_EQ(eval_.GetErrorText(), "Divide by zero: right of 3 is zero");
  vars_.vars["z"] = ExprValue::Integer(2);
  ASSERT_TRUE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(v_.i, 1);
  EXPECT_EQ(eval_.GetErrorCode(), kExprSuccess);
}

TEST_F(CompiledTest, VariableThatVanishesFailsAtRunTime) {
  ASSERT_TRUE(eval_.Evaluate("x+1", v_));
  vars_.vars.erase("x");
  EXPECT_FALSE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(eval_.GetErrorText(), "Unknown variable: x");
  eval_.SetResolver(nullptr);
  EXPECT_FALSE(eval_.EvaluateCompiled(v_));
  EXPECT_EQ(eval_.GetErrorCode(), kExprUnknownVariable);
}

TEST(CompiledMode, NothingCompiledFails) {
  CExpressionEvaluator eval;
  ExprValue v;
  EXPECT_FALSE(eval.EvaluateCompiled(v));
  EXPECT_EQ(eval.GetErrorText(), "Math error: No compiled expression");
  EXPECT_FALSE(eval.GetConstantResult(v));
}

// Random expressions over integers, doubles and variables: direct evaluation
// and compile-then-run must agree in success, value bits, kind and error.
class ExpressionGenerator {
 public:
  explicit ExpressionGenerator(uint32_t seed) : rng_(seed) {}

  std::string Generate(int depth) {
    if (depth == 0 || Pick(4) == 0) return Leaf();
    switch (Pick(6)) {
      case 0:
      case 1:
      case 2:
        return Generate(depth - 1) + " " + Pick(kBinary) + " " + Generate(depth - 1);
      case 3:
        return "(" + Generate(depth - 1) + ")";
      case 4:
        return Pick(kPrefix) + Leaf();
      default: {
        const Fn& fn = kFunctions[Pick(std::size(kFunctions))];
        std::string call = std::string(fn.name) + "(" + Generate(depth - 1);
        if (fn.arity == 2) call += ", " + Generate(depth - 1);
        return call + ")";
      }
    }
  }

 private:
  struct Fn {
    const char* name;
    int arity;
  };
  static constexpr const char* kBinary[] = {
      "||", "^^", "&&", "<",  "<=", ">", ">=", "==", "!=", "|",
      "^|", "&",  ">>", "<<", "+",  "-", "*",  "/",  "%",  "^"};
  static constexpr const char* kPrefix[] = {"-", "!", "~", "-"};
  static constexpr const char* kLeaves[] = {"0",   "1",   "2",    "3",  "7", "-5", "0x1F", "101b",
                                            "2.5", "0.5", "-1.5", "pi", "x", "y",  "n",    "z"};
  static constexpr Fn kFunctions[] = {
      {"sin", 1},   {"cos", 1},    {"atan2", 2}, {"fact", 1}, {"abs", 1},  {"sign", 1},
      {"bool", 1},  {"bits", 1},   {"exp", 1},   {"log", 1},  {"logb", 2}, {"round", 1},
      {"ceil", 1},  {"floor", 1},  {"sqrt", 1},  {"dist", 2}, {"min", 2},  {"max", 2},
      {"binom", 2}, {"double", 1}, {"-", 1},     {"!", 1},    {"~", 1},    {"rad", 1}};

  size_t Pick(size_t n) { return rng_() % n; }
  template <size_t N>
  const char* Pick(const char* const (&items)[N]) {
    return items[Pick(N)];
  }
  std::string Leaf() { return Pick(kLeaves); }

  std::mt19937 rng_;
};

bool SameValue(ExprValue a, ExprValue b) {
  if (a.kind != b.kind) return false;
  if (a.IsInteger()) return a.i == b.i;
  if (a.IsDouble()) return std::bit_cast<uint64_t>(a.d) == std::bit_cast<uint64_t>(b.d);
  return true;
}

TEST(CompiledMode, AgreesWithDirectEvaluationOnRandomExpressions) {
  ExpressionGenerator gen(20240611);
  const ExprValue assignments[][4] = {
      {ExprValue::Integer(3), ExprValue::Double(2.5), ExprValue::Integer(-4),
       ExprValue::Integer(0)},
      {ExprValue::Integer(0), ExprValue::Double(-1.5), ExprValue::Integer(7),
       ExprValue::Integer(1)},
      {ExprValue::Double(0.25), ExprValue::Integer(12), ExprValue::Integer(INT64_MIN),
       ExprValue::Integer(-1)},
  };
  int succeeded = 0;
  int failed = 0;
  for (int k = 0; k < 3000; ++k) {
    const std::string text = gen.Generate(1 + k % 5);
    bool compile_ok = false;
    {
      MapResolver probe;
      probe.vars = {{"x", {}}, {"y", {}}, {"n", {}}, {"z", {}}};
      CExpressionEvaluator eval;
      eval.SetResolver(&probe);
      eval.SetCompiledMode(true);
      ExprValue v;
      compile_ok = eval.Evaluate(text, v);
    }
    for (const auto& a : assignments) {
      MapResolver vars;
      vars.vars = {{"x", a[0]}, {"y", a[1]}, {"n", a[2]}, {"z", a[3]}};
      const Outcome direct = RunExpression(text, false, &vars);
      const Outcome compiled = RunExpression(text, true, &vars, /*run_anyway=*/true);
      ASSERT_EQ(direct.ok, compiled.ok) << text;
      ASSERT_EQ(direct.code, compiled.code)
          << text << ": " << direct.detail << " / " << compiled.detail;
      ASSERT_EQ(direct.detail, compiled.detail) << text;
      if (direct.ok) {
        ASSERT_TRUE(SameValue(direct.value, compiled.value)) << text;
      }
      // A failed compile means no assignment of the variables can succeed.
      if (!compile_ok) {
        ASSERT_FALSE(direct.ok) << text;
      }
      (direct.ok ? succeeded : failed)++;
    }
  }
  // Both outcomes must be well represented for the comparison to mean much.
  EXPECT_GT(succeeded, 2000);
  EXPECT_GT(failed, 2000);
}

}  // namespace
}  // namespace korvanel
