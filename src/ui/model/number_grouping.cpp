#include "ui/model/number_grouping.h"

#include <cstdio>

namespace korvanel {

std::string GroupThousands(std::string_view number) {
  size_t digits = 0;
  while (digits < number.size() && number[digits] >= '0' && number[digits] <= '9') ++digits;
  std::string grouped;
  grouped.reserve(number.size() + digits / 3);
  for (size_t i = 0; i < digits; ++i) {
    if (i != 0 && (digits - i) % 3 == 0) grouped += ',';
    grouped += number[i];
  }
  grouped.append(number.substr(digits));
  return grouped;
}

std::string GroupedCount(uint64_t value) {
  char text[32];
  std::snprintf(text, sizeof text, "%llu", static_cast<unsigned long long>(value));
  return GroupThousands(text);
}

std::string GroupedReal(double value) {
  char text[64];
  std::snprintf(text, sizeof text, "%.4lf", value);
  return GroupThousands(text);
}

}  // namespace korvanel
