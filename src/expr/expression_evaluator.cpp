#include "expr/expression_evaluator.h"

#include <numbers>

#include "expr/expr_grammar.h"
#include "expr/expr_operations.h"
#include "expr/expr_preparation.h"
#include "image/text_util.h"

namespace korvanel {

CExpressionEvaluator::CExpressionEvaluator() {
  variables_.emplace("e", ExprValue::Double(std::numbers::e));
  variables_.emplace("pi", ExprValue::Double(std::numbers::pi));
}

bool CExpressionEvaluator::Evaluate(std::string_view text, ExprValue& result) {
  error_.Reset();
  nodes_.clear();
  first_node_ = 0;
  result = ExprValue::Error();
  if (text.size() > kMaxExpressionLength) {
    error_.Set(kExprMathError, StrFormat("Expression longer than %zu characters", kMaxExpressionLength));
    return false;
  }
  if (!PrepareExpressionText(text, fold_case_, text_, error_)) return false;
  if (compiled_mode_) {
    if (!Compile()) return false;
    result = ExprValue::Integer(1);
    return true;
  }
  const ExprValue value = EvaluateDirect();
  // "+5" computes 5 but has recorded its empty left side: it still fails.
  if (error_.Failed() || !value.IsValid()) return false;
  result = NormaliseWhole(value);
  return true;
}

bool CExpressionEvaluator::GetConstantResult(ExprValue& result) const {
  if (nodes_.empty() || nodes_.back().kind != ExprNodeKind::Constant) return false;
  result = NormaliseWhole(nodes_.back().value);
  return true;
}

std::string CExpressionEvaluator::GetErrorText() const {
  return StrFormat("%s: %s", ExprErrorText(error_.code), error_.detail.c_str());
}

bool CExpressionEvaluator::AddVariable(std::string_view name, ExprValue value) {
  if (name.empty() || name.size() > kMaxVariableNameLength || !value.IsValid()) return false;
  if (name == "e" || name == "pi") return false;
  const auto it = variables_.find(name);
  if (it != variables_.end()) {
    it->second = value;
    return true;
  }
  if (variables_.size() >= kMaxVariables) return false;
  variables_.emplace(std::string(name), value);
  return true;
}

}  // namespace korvanel
