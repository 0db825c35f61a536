#pragma once

// Writing numbers as text without printf: the writers print millions of
// values and these are several times faster. They give exactly what "%u",
// "%0Nu" and "%0NX" give (tests compare them with snprintf). The pointer
// forms write into room the caller reserved (at most 20 characters, or
// `min_digits` when more) and return the end.

#include <cstdint>
#include <cstring>
#include <string>

namespace korvanel {

inline constexpr size_t kMaxNumberChars = 20;

// Decimal, zero-padded to at least `min_digits`; two digits per step.
inline char* WriteDecimal(char* p, uint64_t value, uint32_t min_digits = 1) {
  static constexpr char kPairs[] =
      "00010203040506070809101112131415161718192021222324252627282930313233343536373839"
      "40414243444546474849505152535455565758596061626364656667686970717273747576777879"
      "8081828384858687888990919293949596979899";
  char digits[24];
  char* end = digits + sizeof(digits);
  char* d = end;
  while (value >= 100) {
    const char* pair = kPairs + 2 * (value % 100);
    value /= 100;
    *--d = pair[1];
    *--d = pair[0];
  }
  if (value >= 10) {
    *--d = kPairs[2 * value + 1];
    *--d = kPairs[2 * value];
  } else {
    *--d = static_cast<char>('0' + value);
  }
  const auto n = static_cast<uint32_t>(end - d);
  for (uint32_t i = n; i < min_digits; ++i) *p++ = '0';
  std::memcpy(p, d, n);
  return p + n;
}

// A number written as text and counted up in place: consecutive offsets and
// columns cost a copy and a carry instead of a conversion.
class DecimalCounter {
 public:
  DecimalCounter(uint64_t value, uint32_t min_digits) {
    char* end = WriteDecimal(text_ + kRoom - 24, value, 1);
    const auto n = static_cast<uint32_t>(end - (text_ + kRoom - 24));
    std::memmove(text_ + kRoom - n, text_ + kRoom - 24, n);
    start_ = kRoom - (n > min_digits ? n : min_digits);
    for (uint32_t i = start_; i < kRoom - n; ++i) text_[i] = '0';
  }
  char* Write(char* p) const {
    std::memcpy(p, text_ + start_, kRoom - start_);
    return p + (kRoom - start_);
  }
  void Increment() {
    uint32_t i = kRoom;
    while (i > start_ && text_[i - 1] == '9') text_[--i] = '0';
    if (i > start_) {
      ++text_[i - 1];
    } else {
      text_[--start_] = '1';
    }
  }

 private:
  static constexpr uint32_t kRoom = 48;
  char text_[kRoom];
  uint32_t start_ = 0;
};

// Upper-case hexadecimal, zero-padded to at least `min_digits`.
inline char* WriteHex(char* p, uint64_t value, uint32_t min_digits) {
  static constexpr char kHex[] = "0123456789ABCDEF";
  char digits[16];
  int n = 0;
  do {
    digits[n++] = kHex[value & 0xF];
    value >>= 4;
  } while (value != 0);
  for (uint32_t i = static_cast<uint32_t>(n); i < min_digits; ++i) *p++ = '0';
  while (n > 0) *p++ = digits[--n];
  return p;
}

template <size_t N>
inline char* WriteLiteral(char* p, const char (&text)[N]) {
  std::memcpy(p, text, N - 1);
  return p + N - 1;
}

inline void AppendDecimal(std::string& out, uint64_t value, uint32_t min_digits = 1) {
  char buffer[kMaxNumberChars + 8];
  out.append(buffer, static_cast<size_t>(WriteDecimal(buffer, value, min_digits) - buffer));
}

inline void AppendHex(std::string& out, uint64_t value, uint32_t min_digits) {
  char buffer[kMaxNumberChars + 8];
  out.append(buffer, static_cast<size_t>(WriteHex(buffer, value, min_digits) - buffer));
}

}  // namespace korvanel
