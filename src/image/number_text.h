#pragma once

// Appending numbers as text without printf: the writers print millions of
// values and these are several times faster. They give exactly what "%u",
// "%0Nu" and "%0NX" give (tests compare them with snprintf).

#include <cstdint>
#include <string>

namespace korvanel {

// Decimal, zero-padded to at least `min_digits`.
inline void AppendDecimal(std::string& out, uint64_t value, uint32_t min_digits = 1) {
  char digits[24];
  int n = 0;
  do {
    digits[n++] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  for (uint32_t i = static_cast<uint32_t>(n); i < min_digits; ++i) out.push_back('0');
  while (n > 0) out.push_back(digits[--n]);
}

// Upper-case hexadecimal, zero-padded to at least `min_digits`.
inline void AppendHex(std::string& out, uint64_t value, uint32_t min_digits) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  char digits[16];
  int n = 0;
  do {
    digits[n++] = kHex[value & 0xF];
    value >>= 4;
  } while (value != 0);
  for (uint32_t i = static_cast<uint32_t>(n); i < min_digits; ++i) out.push_back('0');
  while (n > 0) out.push_back(digits[--n]);
}

}  // namespace korvanel
