#pragma once

// An image pixel's column and row (signed, so arithmetic on them may leave
// the image before it is checked).

#include <cstdint>

namespace korvanel {

struct PixelPoint {
  int64_t x = 0;
  int64_t y = 0;
  friend bool operator==(const PixelPoint&, const PixelPoint&) = default;
};

}  // namespace korvanel
