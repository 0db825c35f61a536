#include "expr/expr_preparation.h"

#include <cstddef>

#include "expr/expr_grammar.h"
#include "expr/expr_tables.h"
#include "image/text_util.h"

namespace korvanel {
namespace {

// The count stops at the first close parenthesis without a partner, so ")("
// is reported as unexpected rather than balanced.
int ParenthesisBalance(std::string_view text) {
  int count = 0;
  for (char c : text) {
    if (c == '(') ++count;
    if (c == ')' && --count < 0) break;
  }
  return count;
}

// A '-' after an operand is a subtraction: it becomes "+-" so that the parser
// sees only the prefix minus. After an operator, '(' , ',' , '.' or another
// '-' it already is a prefix minus.
void RewriteMinus(std::string& text) {
  for (size_t i = 1; i < text.size(); ++i) {
    if (!IsMinusChar(text[i])) continue;
    const char p = text[i - 1];
    if (IsMinusChar(p) || p == ',' || IsOperatorChar(p) || p == '(' || p == '.') continue;
    text.insert(i, 1, '+');
    ++i;
  }
}

// "-sin(x)" becomes "-(sin(x))" so that the minus applies to the call's value
// through the prefix function "-". The name scan accepts letters and '_'
// only, so names with digits ("log10", "atan2") are left alone on purpose.
void WrapNegatedCalls(std::string& text) {
  for (size_t i = 0; i + 1 < text.size(); ++i) {
    if (!IsMinusChar(text[i])) continue;
    size_t j = i + 1;
    if (!IsAsciiLetter(text[j]) && text[j] != '_') continue;
    while (j < text.size() && (IsAsciiLetter(text[j]) || text[j] == '_')) ++j;
    if (j >= text.size() || text[j] != '(') continue;
    const size_t close = FindMatchingClose(text, j);
    if (close == std::string_view::npos) continue;
    text.insert(close + 1, 1, ')');
    text.insert(i + 1, 1, '(');
  }
}

}  // namespace

bool PrepareExpressionText(std::string_view raw, bool fold_case, std::string& out,
                           ExprErrorState& error) {
  const int balance = ParenthesisBalance(raw);
  if (balance != 0) {
    error.Set(balance > 0 ? kExprExtraOpenParenthesis : kExprUnexpectedCloseParenthesis,
              StrFormat("%d", balance));
    return false;
  }
  out.clear();
  for (char c : raw) {
    if (c != ' ') out.push_back(c);
  }
  if (fold_case) out = ToLowerAscii(out);
  RewriteMinus(out);
  WrapNegatedCalls(out);
  return true;
}

}  // namespace korvanel
