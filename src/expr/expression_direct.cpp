// Direct mode: the grammar computes values as it parses.

#include "expr/expr_grammar.h"
#include "expr/expr_operations.h"
#include "expr/expression_evaluator.h"

namespace korvanel {
namespace {

struct DirectSink {
  using Result = ExprValue;

  ExprErrorState& error;
  CExpressionEvaluator::IVarResolver* resolver;

  Result Fail(uint32_t code, std::string detail, std::string_view) {
    error.Set(code, std::move(detail));
    return ExprValue::Error();
  }
  Result Constant(ExprValue value, std::string_view) { return value; }
  bool Variable(std::string_view name, Result& out) {
    if (resolver == nullptr) return false;
    ExprValue value;
    if (!resolver->Resolve(name.data(), static_cast<uint32_t>(name.size()), value)) return false;
    out = value.IsValid() ? value : Fail(kExprUnknownVariable, std::string(name), name);
    return true;
  }
  bool IsFailed(Result r) const { return !r.IsValid(); }
  Result Failed(Result, std::string_view) { return ExprValue::Error(); }
  Result EmptyToError(Result r) { return r.kind == ExprKind::Empty ? ExprValue::Error() : r; }
  Result Binary(const BinaryOperatorRow& op, Result left, Result right, std::string_view) {
    return ApplyBinary(op.id, left, right, error);
  }
  Result Call(FunctionId fn, Result a, Result b, std::string_view) {
    return ApplyFunction(fn, a, b, error);
  }
  Result None() { return ExprValue::Empty(); }
};

}  // namespace

ExprValue CExpressionEvaluator::EvaluateDirect() {
  DirectSink sink{error_, resolver_};
  ExprGrammar<DirectSink> grammar(sink, variables_);
  return grammar.ParseExpression(text_, 0);
}

}  // namespace korvanel
