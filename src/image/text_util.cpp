#include "image/text_util.h"

#include <cstdio>
#include <limits>

namespace korvanel {

std::string StrFormatV(const char* format, va_list args) {
  va_list copy;
  va_copy(copy, args);
  const int needed = std::vsnprintf(nullptr, 0, format, copy);
  va_end(copy);
  if (needed <= 0) return {};
  std::string out(static_cast<size_t>(needed), '\0');
  std::vsnprintf(out.data(), out.size() + 1, format, args);
  return out;
}

std::string StrFormat(const char* format, ...) {
  va_list args;
  va_start(args, format);
  std::string out = StrFormatV(format, args);
  va_end(args);
  return out;
}

std::string ToUpperAscii(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  return out;
}

std::string ToLowerAscii(std::string_view text) {
  std::string out(text);
  for (char& c : out) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return out;
}

bool EqualsIgnoreAsciiCase(std::string_view a, std::string_view b) {
  return a.size() == b.size() && ToLowerAscii(a) == ToLowerAscii(b);
}

std::vector<std::string> SplitTokens(std::string_view text, std::string_view separators) {
  std::vector<std::string> tokens;
  size_t start = 0;
  while (start <= text.size()) {
    const size_t end = text.find_first_of(separators, start);
    const size_t stop = end == std::string_view::npos ? text.size() : end;
    if (stop > start) tokens.emplace_back(text.substr(start, stop - start));
    if (end == std::string_view::npos) break;
    start = end + 1;
  }
  return tokens;
}

std::vector<std::string> SplitKeepingEmpty(std::string_view text, std::string_view separators) {
  std::vector<std::string> pieces;
  size_t start = 0;
  while (true) {
    const size_t end = text.find_first_of(separators, start);
    pieces.emplace_back(text.substr(start, end == std::string_view::npos ? std::string_view::npos : end - start));
    if (end == std::string_view::npos) return pieces;
    start = end + 1;
  }
}

int32_t ParseLeadingInt32(std::string_view text) {
  size_t i = 0;
  while (i < text.size() && (text[i] == ' ' || text[i] == '\t')) ++i;
  bool negative = false;
  if (i < text.size() && (text[i] == '+' || text[i] == '-')) {
    negative = text[i] == '-';
    ++i;
  }
  int64_t value = 0;
  constexpr int64_t kLimit = int64_t{std::numeric_limits<int32_t>::max()} + 1;
  for (; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i) {
    value = value * 10 + (text[i] - '0');
    if (value > kLimit) value = kLimit;
  }
  if (negative) return static_cast<int32_t>(-value);
  return static_cast<int32_t>(value > std::numeric_limits<int32_t>::max()
                                  ? std::numeric_limits<int32_t>::max()
                                  : value);
}

std::string_view TrimAscii(std::string_view text) {
  const char* blanks = " \t\r\n";
  const size_t first = text.find_first_not_of(blanks);
  if (first == std::string_view::npos) return {};
  const size_t last = text.find_last_not_of(blanks);
  return text.substr(first, last - first + 1);
}

}  // namespace korvanel
