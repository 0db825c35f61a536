#pragma once

// The recursive parser, written once for both evaluation modes. A sink
// decides what a parsed piece becomes: direct evaluation computes values,
// compiling appends nodes. The sink provides
//   Result Fail(code, detail, span)           record an error, give a failed result
//   Result Constant(value, span)              a number or own variable
//   bool   Variable(span, Result& out)        a name the resolver knows
//   bool   IsFailed(Result)                   Error or Empty
//   Result Failed(Result failed, span)        a failure carried to the parent
//   Result EmptyToError(Result)
//   Result Binary(op, left, right, span)
//   Result Call(function, arg, second_arg_or_none, span)
//   Result None()                             "no second argument"
//
// Spans are views into the prepared text, which outlives the parse.

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "expr/expr_tables.h"
#include "expr/expr_value.h"
#include "image/text_util.h"

namespace korvanel {

// Deeper nesting (parentheses, operator chains, prefix operators) fails with
// kExprMathError instead of exhausting the stack. One level costs a few
// hundred bytes of stack, far below a thread's default stack.
inline constexpr int kMaxExpressionDepth = 1000;
// Longer texts are refused before preparation: the image evaluator's own
// limit is 3000 characters after name expansion, so this leaves room for
// generated expressions while bounding the work on pasted junk.
inline constexpr size_t kMaxExpressionLength = 65536;

using ExprVariableTable = std::map<std::string, ExprValue, std::less<>>;

struct SplitPoint {
  enum Status { kNone, kFound, kIllegal };
  Status status = kNone;
  size_t pos = 0;
  size_t length = 0;
  const BinaryOperatorRow* op = nullptr;
};

// The operator a span splits at: the lowest level at parenthesis depth 0,
// the rightmost of equals (so every operator is left-associative). Each run
// of operator characters is looked up whole; a run that is no operator is
// illegal unless it starts with a prefix '!' or '~'.
SplitPoint FindSplitOperator(std::string_view span);

// Index of the ')' matching the '(' at `open`, or npos when the text ends first.
size_t FindMatchingClose(std::string_view text, size_t open);

// Index of the first ',' at parenthesis depth 0, or npos.
size_t FindTopLevelComma(std::string_view text);

// Whole-span literals; false when the span is not one.
bool ParseIntegerLiteral(std::string_view span, int64_t& out);
bool ParseFloatLiteral(std::string_view span, double& out);
bool ParseBinaryLiteral(std::string_view span, int64_t& out);

template <typename Sink>
class ExprGrammar {
 public:
  using Result = typename Sink::Result;

  ExprGrammar(Sink& sink, const ExprVariableTable& own) : sink_(sink), own_(own) {}

  // expression = expression binary-operator expression | call | atom
  Result ParseExpression(std::string_view span, int depth) {
    if (depth > kMaxExpressionDepth) return TooDeep(span);
    const SplitPoint split = FindSplitOperator(span);
    if (split.status == SplitPoint::kIllegal) {
      return sink_.Fail(kExprIllegalOperator,
                        StrFormat("Illegal operand '%.*s'", static_cast<int>(split.length),
                                  span.data() + split.pos),
                        span);
    }
    if (split.status == SplitPoint::kFound) {
      const Result left = ParseExpression(span.substr(0, split.pos), depth + 1);
      const Result right = ParseExpression(span.substr(split.pos + split.length), depth + 1);
      if (sink_.IsFailed(right)) return sink_.Failed(right, span);
      return sink_.Binary(*split.op, left, right, span);
    }
    const size_t open = span.find('(');
    if (open == std::string_view::npos || open + 1 == span.size()) return ParseAtom(span, depth);
    const size_t close = FindMatchingClose(span, open);
    if (close == std::string_view::npos) return ParseAtom(span, depth);
    if (close + 1 != span.size()) {
      return sink_.Fail(kExprFunctionArgumentError,
                        StrFormat("Invalid argument in expression %.*s",
                                  static_cast<int>(span.size()), span.data()),
                        span);
    }
    return ParseCall(span, open, depth);
  }

 private:
  // call = [name] "(" expression ["," expression] ")"
  Result ParseCall(std::string_view span, size_t open, int depth) {
    const std::string_view name = span.substr(0, open);
    const std::string_view inside = span.substr(open + 1, span.size() - open - 2);
    const size_t comma = FindTopLevelComma(inside);
    if (comma != std::string_view::npos) {
      if (comma == 0 || comma + 1 == inside.size()) return EmptyArgument(comma == 0, span);
      const Result first = ParseExpression(inside.substr(0, comma), depth + 1);
      const Result second = ParseExpression(inside.substr(comma + 1), depth + 1);
      const FunctionRow* fn = FindFunction(name);
      if (fn == nullptr) return sink_.Fail(kExprUnknownFunction, std::string(name), span);
      if (fn->arity != 2) return ArityFailure(name, 2, span);
      return sink_.Call(fn->id, first, second, span);
    }
    const Result arg = sink_.EmptyToError(ParseExpression(inside, depth + 1));
    if (name.empty()) return arg;  // plain grouping
    const FunctionRow* fn = FindFunction(name);
    if (fn == nullptr) return sink_.Fail(kExprUnknownFunction, std::string(name), span);
    if (fn->arity != 1) return ArityFailure(name, 1, span);
    return sink_.Call(fn->id, arg, sink_.None(), span);
  }

  // atom = "" | integer | floating | own-variable | resolver-variable
  //      | binary-literal | prefix-operator atom
  Result ParseAtom(std::string_view span, int depth) {
    if (depth > kMaxExpressionDepth) return TooDeep(span);
    if (span.empty()) return sink_.Fail(kExprMathError, "Empty token", span);
    int64_t integer = 0;
    if (ParseIntegerLiteral(span, integer))
      return sink_.Constant(ExprValue::Integer(integer), span);
    double floating = 0.0;
    if (ParseFloatLiteral(span, floating)) return sink_.Constant(ExprValue::Double(floating), span);
    if (const auto own = own_.find(span); own != own_.end())
      return sink_.Constant(own->second, span);
    Result variable{};
    if (sink_.Variable(span, variable)) return variable;
    if (ParseBinaryLiteral(span, integer)) return sink_.Constant(ExprValue::Integer(integer), span);
    if (span.size() > 1) {
      const FunctionRow* prefix = FindFunction(span.substr(0, 1));
      if (prefix != nullptr && prefix->prefix) {
        const Result operand = ParseAtom(span.substr(1), depth + 1);
        return sink_.Call(prefix->id, operand, sink_.None(), span);
      }
    }
    return sink_.Fail(kExprUnknownVariable, std::string(span), span);
  }

  Result TooDeep(std::string_view span) {
    return sink_.Fail(kExprMathError,
                      StrFormat("Expression nested deeper than %d levels", kMaxExpressionDepth),
                      span);
  }

  Result EmptyArgument(bool left, std::string_view span) {
    return sink_.Fail(kExprFunctionArgumentError,
                      StrFormat("%s argument of %.*s is empty", left ? "Left" : "Right",
                                static_cast<int>(span.size()), span.data()),
                      span);
  }

  // The count in the message is the number of arguments written, not the arity.
  Result ArityFailure(std::string_view name, int written, std::string_view span) {
    return sink_.Fail(kExprFunctionArgumentError,
                      StrFormat("Invalid no. of arguments for function %.*s (expected %d)",
                                static_cast<int>(name.size()), name.data(), written),
                      span);
  }

  Sink& sink_;
  const ExprVariableTable& own_;
};

}  // namespace korvanel
