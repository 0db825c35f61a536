// Compiled mode: the grammar appends one node per sub-expression (children
// before parents); the chain then walks the non-constant nodes per pixel.

#include <unordered_map>

#include "expr/expr_grammar.h"
#include "expr/expr_operations.h"
#include "expr/expression_evaluator.h"

namespace korvanel {
namespace {

struct CompileSink {
  using Result = int32_t;

  std::vector<ExprNode>& nodes;
  ExprErrorState& error;
  CExpressionEvaluator::IVarResolver* resolver;

  Result Append(ExprNode node, std::string_view span) {
    node.index = static_cast<uint32_t>(nodes.size());
    node.text = span;
    nodes.push_back(std::move(node));
    return static_cast<Result>(nodes.back().index);
  }
  // An error node keeps its own failure so that the walk can report it where
  // direct evaluation would; the evaluator's state keeps the first one.
  Result ErrorNode(const ExprErrorState& failure, std::string_view span) {
    ExprNode node;
    node.kind = ExprNodeKind::Error;
    node.value = ExprValue::Error();
    node.error = failure;
    return Append(std::move(node), span);
  }

  Result Fail(uint32_t code, std::string detail, std::string_view span) {
    ExprErrorState failure;
    failure.Set(code, std::move(detail));
    error.Set(failure.code, failure.detail);
    return ErrorNode(failure, span);
  }
  Result Constant(ExprValue value, std::string_view span) {
    ExprNode node;
    node.kind = ExprNodeKind::Constant;
    node.value = value;
    return Append(std::move(node), span);
  }
  // The resolver confirms the name once here; its value is fetched per run.
  bool Variable(std::string_view name, Result& out) {
    ExprValue scratch;
    if (resolver == nullptr ||
        !resolver->Resolve(name.data(), static_cast<uint32_t>(name.size()), scratch)) {
      return false;
    }
    ExprNode node;
    node.kind = ExprNodeKind::Variable;
    out = Append(std::move(node), name);
    return true;
  }
  bool IsFailed(Result r) const { return nodes[r].kind == ExprNodeKind::Error; }
  Result Failed(Result failed, std::string_view span) {
    const ExprErrorState failure = nodes[failed].error;
    return ErrorNode(failure, span);
  }
  Result EmptyToError(Result r) { return r; }  // an empty span is an error node already
  Result None() { return -1; }

  bool IsConstant(Result r) const { return r < 0 || nodes[r].kind == ExprNodeKind::Constant; }
  ExprValue ValueOf(Result r) const { return r < 0 ? ExprValue::Empty() : nodes[r].value; }

  // Arguments that are all constants are computed now.
  Result Folded(ExprValue value, const ExprErrorState& failure, std::string_view span) {
    if (failure.Failed()) {
      error.Set(failure.code, failure.detail);
      return ErrorNode(failure, span);
    }
    return Constant(value, span);
  }

  Result Binary(const BinaryOperatorRow& op, Result left, Result right, std::string_view span) {
    if (IsConstant(left) && IsConstant(right)) {
      ExprErrorState failure;
      const ExprValue value = ApplyBinary(op.id, ValueOf(left), ValueOf(right), failure);
      return Folded(value, failure, span);
    }
    ExprNode node;
    node.kind = ExprNodeKind::Binary;
    node.op = op.id;
    node.left = left;
    node.right = right;
    return Append(std::move(node), span);
  }
  Result Call(FunctionId fn, Result a, Result b, std::string_view span) {
    if (IsConstant(a) && IsConstant(b)) {
      ExprErrorState failure;
      const ExprValue value = ApplyFunction(fn, ValueOf(a), ValueOf(b), failure);
      return Folded(value, failure, span);
    }
    ExprNode node;
    node.kind = ExprNodeKind::Function;
    node.fn = fn;
    node.left = a;
    node.right = b;
    return Append(std::move(node), span);
  }
};

}  // namespace

bool CExpressionEvaluator::Compile() {
  CompileSink sink{nodes_, error_, resolver_};
  ExprGrammar<CompileSink> grammar(sink, variables_);
  grammar.ParseExpression(text_, 0);
  BuildChain();
  return !error_.Failed() && nodes_.back().kind != ExprNodeKind::Error;
}

// The chain links the non-constant nodes in order; a constant root is
// evaluated alone. Then each chain node whose text repeats an earlier
// unshared node copies that node's value instead of computing it again.
void CExpressionEvaluator::BuildChain() {
  const uint32_t count = static_cast<uint32_t>(nodes_.size());
  for (ExprNode& node : nodes_) node.next = count;
  if (nodes_.back().kind == ExprNodeKind::Constant) {
    first_node_ = count - 1;
    return;
  }
  first_node_ = count;
  uint32_t previous = count;
  for (uint32_t i = 0; i < count; ++i) {
    if (nodes_[i].kind == ExprNodeKind::Constant) continue;
    (previous == count ? first_node_ : nodes_[previous].next) = i;
    previous = i;
  }
  std::unordered_map<std::string_view, uint32_t> first_with_text;
  for (uint32_t i = first_node_; i < count; i = nodes_[i].next) {
    const auto [it, inserted] = first_with_text.emplace(nodes_[i].text, i);
    if (!inserted) nodes_[i].shared_with = static_cast<int32_t>(it->second);
  }
}

bool CExpressionEvaluator::EvaluateCompiled(ExprValue& result) {
  if (error_.Failed()) error_.Reset();
  const uint32_t count = static_cast<uint32_t>(nodes_.size());
  if (count == 0) {
    error_.Set(kExprMathError, "No compiled expression");
    result = ExprValue::Error();
    return false;
  }
  ExprNode* const nodes = nodes_.data();
  for (uint32_t i = first_node_; i < count; i = nodes[i].next) {
    ExprNode& node = nodes[i];
    if (node.shared_with >= 0) {
      node.value = nodes[node.shared_with].value;
      continue;
    }
    switch (node.kind) {
      case ExprNodeKind::Binary: {
        const ExprValue a = nodes[node.left].value;
        const ExprValue b = nodes[node.right].value;
        if (ApplyTotalBinary(node.op, a, b, node.value)) continue;
        node.value = ApplyBinary(node.op, a, b, error_);
        break;
      }
      case ExprNodeKind::Function:
        node.value =
            ApplyFunction(node.fn, nodes[node.left].value,
                          node.right < 0 ? ExprValue::Empty() : nodes[node.right].value, error_);
        break;
      case ExprNodeKind::Variable:
        if (resolver_ == nullptr ||
            !resolver_->Resolve(node.text.data(), static_cast<uint32_t>(node.text.size()),
                                node.value) ||
            !node.value.IsValid()) {
          error_.Set(kExprUnknownVariable, node.text);
          node.value = ExprValue::Error();
        }
        break;
      case ExprNodeKind::Constant:
        break;
      case ExprNodeKind::Error:
        error_.Set(node.error.code, node.error.detail);
        break;
    }
    if (!node.value.IsValid()) {
      result = ExprValue::Error();
      return false;
    }
  }
  result = NormaliseWhole(nodes[count - 1].value);
  return true;
}

}  // namespace korvanel
