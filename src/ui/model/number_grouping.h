#pragma once

// Value beautifying: numbers grouped by thousands with commas, the integer
// part only ("1234567.1234" -> "1,234,567.1234").

#include <cstdint>
#include <string>
#include <string_view>

namespace korvanel {

// Groups the leading run of digits of `number`; what follows it (a decimal
// point and fraction) is kept as it is.
std::string GroupThousands(std::string_view number);
std::string GroupedCount(uint64_t value);  // "%u", grouped
std::string GroupedReal(double value);     // "%.4lf", grouped

}  // namespace korvanel
