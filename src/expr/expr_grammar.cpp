#include "expr/expr_grammar.h"

#include <charconv>

namespace korvanel {

SplitPoint FindSplitOperator(std::string_view span) {
  SplitPoint best;
  int depth = 0;
  size_t i = 0;
  size_t run_end = 0;  // end of the operator run around i, kept while i is inside it
  while (i < span.size()) {
    const char c = span[i];
    if (c == '(') ++depth;
    if (c == ')') --depth;
    if (depth != 0 || !IsOperatorChar(c)) {
      ++i;
      continue;
    }
    if (run_end <= i) {
      run_end = i;
      while (run_end < span.size() && IsOperatorChar(span[run_end])) ++run_end;
    }
    const size_t end = run_end;
    const std::string_view run = span.substr(i, end - i);
    const BinaryOperatorRow* op = FindBinaryOperator(run);
    if (op == nullptr) {
      if (c == '!' || c == '~') {
        ++i;  // a prefix operator of the following atom
        continue;
      }
      return SplitPoint{SplitPoint::kIllegal, i, run.size(), nullptr};
    }
    if (best.status == SplitPoint::kNone || op->level <= best.op->level) {
      best = SplitPoint{SplitPoint::kFound, i, run.size(), op};
    }
    i = end;
  }
  return best;
}

size_t FindMatchingClose(std::string_view text, size_t open) {
  int depth = 0;
  for (size_t i = open; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')' && --depth == 0) return i;
  }
  return std::string_view::npos;
}

size_t FindTopLevelComma(std::string_view text) {
  int depth = 0;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')') --depth;
    if (text[i] == ',' && depth == 0) return i;
  }
  return std::string_view::npos;
}

// Automatic base: "0x" hexadecimal, a leading "0" octal, else decimal. A
// decimal number outside the int64 range is no integer (it then reads as a
// floating number); hexadecimal and octal take all 64 bits, so 0xFFFFFFFFFFFFFFFF
// is -1, which is what a bit mask author means.
bool ParseIntegerLiteral(std::string_view span, int64_t& out) {
  const bool negative = !span.empty() && span[0] == '-';
  std::string_view digits = negative ? span.substr(1) : span;
  if (digits.empty() || digits[0] < '0' || digits[0] > '9') return false;
  int base = 10;
  if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
    base = 16;
    digits.remove_prefix(2);
  } else if (digits.size() > 1 && digits[0] == '0') {
    base = 8;
    digits.remove_prefix(1);
  }
  const char* end = digits.data() + digits.size();
  if (base == 10) {
    int64_t value = 0;
    const auto [ptr, ec] = std::from_chars(digits.data(), end, value, 10);
    if (ec != std::errc() || ptr != end) {
      // "-9223372036854775808": the magnitude alone does not fit.
      if (negative && digits == "9223372036854775808") {
        out = INT64_MIN;
        return true;
      }
      return false;
    }
    out = negative ? -value : value;
    return true;
  }
  uint64_t value = 0;
  const auto [ptr, ec] = std::from_chars(digits.data(), end, value, base);
  if (ec != std::errc() || ptr != end) return false;
  if (negative) value = 0 - value;
  out = static_cast<int64_t>(value);
  return true;
}

// Plain decimal notation with an optional exponent; the words "inf" and
// "nan" are names, not numbers.
bool ParseFloatLiteral(std::string_view span, double& out) {
  const size_t first = (!span.empty() && span[0] == '-') ? 1 : 0;
  if (first >= span.size()) return false;
  const char c = span[first];
  if (!(c == '.' || (c >= '0' && c <= '9'))) return false;
  const char* end = span.data() + span.size();
  const auto [ptr, ec] = std::from_chars(span.data(), end, out, std::chars_format::general);
  return ec == std::errc() && ptr == end;
}

// "101b" = 5: one to 63 binary digits before a final 'b'. A lone "b" is a
// name, not an empty literal.
bool ParseBinaryLiteral(std::string_view span, int64_t& out) {
  if (span.size() < 2 || span.size() > 64 || span.back() != 'b') return false;
  int64_t value = 0;
  for (char c : span.substr(0, span.size() - 1)) {
    if (c != '0' && c != '1') return false;
    value = (value << 1) | (c - '0');
  }
  out = value;
  return true;
}

}  // namespace korvanel
