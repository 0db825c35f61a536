// Per-pixel cost of compiled expressions: EvaluateCompiled with a resolver
// that answers fixed values, as the image evaluator's inner loop does.

#include <benchmark/benchmark.h>

#include "expr/expression_evaluator.h"

namespace korvanel {
namespace {

// Three single-letter variables with fixed sample values.
class FixedResolver : public CExpressionEvaluator::IVarResolver {
 public:
  bool Resolve(const char* name, uint32_t length, ExprValue& value) override {
    if (length != 1) return false;
    switch (name[0]) {
      case 'a':
        value = ExprValue::Integer(200);
        return true;
      case 'b':
        value = ExprValue::Integer(117);
        return true;
      case 'c':
        value = ExprValue::Integer(31);
        return true;
      default:
        return false;
    }
  }
};

void RunCompiled(benchmark::State& state, const char* text) {
  FixedResolver resolver;
  CExpressionEvaluator eval;
  eval.SetResolver(&resolver);
  eval.SetCompiledMode(true);
  ExprValue result;
  if (!eval.Evaluate(text, result)) {
    state.SkipWithError(eval.GetErrorText().c_str());
    return;
  }
  for (auto _ : state) {
    eval.EvaluateCompiled(result);
    benchmark::DoNotOptimize(result);
  }
  state.counters["nodes"] = static_cast<double>(eval.GetNodes().size());
}

void BM_ExprWeightedSum(benchmark::State& state) {
  RunCompiled(state, "0.299*a + 0.587*b + 0.114*c");
}
void BM_ExprCompareBits(benchmark::State& state) {
  RunCompiled(state, "(a & 0xF0) >> 4 > (b ^| c) && c != 0");
}
void BM_ExprSqrtMin(benchmark::State& state) {
  RunCompiled(state, "sqrt(a*a + b*b) + min(a, c) / 2");
}
void BM_ExprConstantFolded(benchmark::State& state) {
  RunCompiled(state, "a + 2*(3+4) - pi/pi");
}
void BM_ExprShared(benchmark::State& state) {
  RunCompiled(state, "(a+b)*(a+b) - (a+b)");
}

BENCHMARK(BM_ExprWeightedSum);
BENCHMARK(BM_ExprCompareBits);
BENCHMARK(BM_ExprSqrtMin);
BENCHMARK(BM_ExprConstantFolded);
BENCHMARK(BM_ExprShared);

void BM_ExprDirectWeightedSum(benchmark::State& state) {
  FixedResolver resolver;
  CExpressionEvaluator eval;
  eval.SetResolver(&resolver);
  ExprValue result;
  for (auto _ : state) {
    eval.Evaluate("0.299*a + 0.587*b + 0.114*c", result);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK(BM_ExprDirectWeightedSum);

}  // namespace
}  // namespace korvanel
