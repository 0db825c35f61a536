#pragma once

// Shared helpers of the expression tests: a resolver over a map, and one
// call that runs an expression in either mode and collects the outcome.

#include <map>
#include <string>
#include <string_view>

#include "expr/expression_evaluator.h"

namespace korvanel::test {

class MapResolver : public CExpressionEvaluator::IVarResolver {
 public:
  std::map<std::string, ExprValue, std::less<>> vars;
  int calls = 0;

  bool Resolve(const char* name, uint32_t length, ExprValue& value) override {
    ++calls;
    const auto it = vars.find(std::string_view(name, length));
    if (it == vars.end()) return false;
    value = it->second;
    return true;
  }
};

struct Outcome {
  bool ok = false;
  ExprValue value;
  uint32_t code = 0;
  std::string detail;
};

// Compiled: compiles, then (when the compile succeeded, or `run_anyway`)
// runs the chain once.
inline Outcome RunExpression(std::string_view text, bool compiled,
                             CExpressionEvaluator::IVarResolver* resolver,
                             bool run_anyway = false) {
  CExpressionEvaluator eval;
  eval.SetResolver(resolver);
  eval.SetCompiledMode(compiled);
  Outcome out;
  out.ok = eval.Evaluate(text, out.value);
  if (compiled && (out.ok || run_anyway)) out.ok = eval.EvaluateCompiled(out.value);
  out.code = eval.GetErrorCode();
  out.detail = eval.GetErrorDetail();
  return out;
}

}  // namespace korvanel::test
