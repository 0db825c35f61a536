#pragma once

// CExpressionEvaluator: infix arithmetic and logic on 64-bit integers and
// doubles, in two modes.
//   Direct mode: Evaluate() parses and computes in one recursive pass.
//   Compiled mode: Evaluate() parses once into a flat node list (children
//   before parents, constants folded, identical sub-expressions shared);
//   EvaluateCompiled() then runs the list once per pixel, fetching variables
//   through the resolver, without parsing or allocating.
// An instance keeps scratch buffers and its error state, so each thread uses
// its own. Errors are never thrown: the first error of an evaluation is kept
// and read with GetErrorText(). Nesting deeper than kMaxExpressionDepth
// (parentheses, operator chains, prefix operators) fails with a Math error.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "expr/expr_grammar.h"
#include "expr/expr_tables.h"
#include "expr/expr_value.h"

namespace korvanel {

enum class ExprNodeKind : uint32_t {
  Binary = 0,
  Function = 1,
  Variable = 2,
  Constant = 3,
  Error = 4
};

// One sub-expression of a compiled expression.
struct ExprNode {
  uint32_t index = 0;
  uint32_t next = 0;         // next node of the evaluation chain
  int32_t shared_with = -1;  // earlier node with the same text, or -1
  ExprNodeKind kind = ExprNodeKind::Error;
  OperatorId op = OperatorId::kNone;
  FunctionId fn = FunctionId::kNone;
  int32_t left = -1;     // left or only argument
  int32_t right = -1;    // second argument
  ExprValue value;       // folded value of a constant, else the last computed value
  std::string text;      // the sub-expression; for a variable its name
  ExprErrorState error;  // an error node's failure, reported when it is reached
};

class CExpressionEvaluator {
 public:
  class IVarResolver {
   public:
    virtual ~IVarResolver() = default;
    // `name` is not terminated at `length`. True when the name is known; at
    // compile time only the answer counts, at evaluation time `value` too.
    virtual bool Resolve(const char* name, uint32_t length, ExprValue& value) = 0;
  };

  static constexpr size_t kMaxVariables = 64;
  static constexpr size_t kMaxVariableNameLength = 128;

  CExpressionEvaluator();

  // Direct mode: `result` receives the value. Compiled mode: compiles, and
  // `result` receives Integer 1. True when the outcome is valid; a compile
  // that met any error fails, even when the failing part is not the root,
  // because such an expression could never evaluate.
  bool Evaluate(std::string_view text, ExprValue& result);

  // Runs the compiled node chain once. True with the final value; false on
  // any failure (the error state then tells which).
  bool EvaluateCompiled(ExprValue& result);

  // After compiling: true with the value when the whole expression folded to
  // a constant.
  bool GetConstantResult(ExprValue& result) const;

  // "<code text>: <detail>", e.g. "Unknown variable: foo".
  std::string GetErrorText() const;
  uint32_t GetErrorCode() const { return error_.code; }
  const std::string& GetErrorDetail() const { return error_.detail; }

  void SetResolver(IVarResolver* resolver) { resolver_ = resolver; }
  void SetCompiledMode(bool compiled) { compiled_mode_ = compiled; }
  void SetCaseFolding(bool fold) { fold_case_ = fold; }

  // Adds or updates a variable of the own table. Refused for the reserved
  // constants "e" and "pi", for names longer than 128 characters, and for a
  // new name once the table holds 64 entries.
  bool AddVariable(std::string_view name, ExprValue value);

  // The compiled form, for inspection.
  const std::vector<ExprNode>& GetNodes() const { return nodes_; }
  uint32_t GetFirstNode() const { return first_node_; }

 private:
  ExprValue EvaluateDirect();
  bool Compile();
  void BuildChain();

  std::string text_;  // the prepared working copy
  bool fold_case_ = false;
  bool compiled_mode_ = false;
  IVarResolver* resolver_ = nullptr;
  ExprVariableTable variables_;
  std::vector<ExprNode> nodes_;
  uint32_t first_node_ = 0;
  ExprErrorState error_;
};

}  // namespace korvanel
