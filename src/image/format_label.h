#pragma once

#include <cstdint>

namespace korvanel {

// Picks the label for 8, 16 or 32 bits from a table of three; "N/A" otherwise.
inline const char* LabelForBits(const char* const* labels, uint32_t bits) {
  switch (bits) {
    case 8: return labels[0];
    case 16: return labels[1];
    case 32: return labels[2];
    default: return "N/A";
  }
}

}  // namespace korvanel
