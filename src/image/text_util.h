#pragma once

// Small text helpers shared by every layer: printf-style formatting (the
// program's messages are printf templates), ASCII case folding, tokenising.

#include <cstdarg>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korvanel {

std::string StrFormat(const char* format, ...) __attribute__((format(printf, 1, 2)));
std::string StrFormatV(const char* format, va_list args);

// Only 'a'..'z' / 'A'..'Z' change; other bytes stay as they are.
std::string ToUpperAscii(std::string_view text);
std::string ToLowerAscii(std::string_view text);
bool EqualsIgnoreAsciiCase(std::string_view a, std::string_view b);

// Splits at every character of `separators`; empty pieces are dropped.
std::vector<std::string> SplitTokens(std::string_view text, std::string_view separators);
// The same keeping empty pieces: "a,,b" gives "a", "", "b"; "" gives one "".
std::vector<std::string> SplitKeepingEmpty(std::string_view text, std::string_view separators);

// The value of the leading "[blanks][sign]digits" of `text`, 0 when there are
// no digits; saturates at the int32 range instead of overflowing.
int32_t ParseLeadingInt32(std::string_view text);

std::string_view TrimAscii(std::string_view text);

}  // namespace korvanel
