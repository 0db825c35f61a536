#pragma once

#include <cstdint>

namespace korvanel {

// An inclusive rectangle of pixels. As a region of interest, "none" is the
// whole-plane marker 0,0 .. 0xFFFFFFFF,0xFFFFFFFF.
struct Rect {
  uint32_t min_x = 0;
  uint32_t min_y = 0;
  uint32_t max_x = 0xFFFFFFFF;
  uint32_t max_y = 0xFFFFFFFF;

  static constexpr Rect None() { return Rect{}; }
  constexpr bool IsNone() const { return *this == None(); }
  constexpr bool Contains(int64_t x, int64_t y) const {
    return x >= min_x && x <= max_x && y >= min_y && y <= max_y;
  }
  constexpr uint64_t Width() const { return uint64_t{max_x} - min_x + 1; }
  constexpr uint64_t Height() const { return uint64_t{max_y} - min_y + 1; }

  friend constexpr bool operator==(const Rect&, const Rect&) = default;
};

}  // namespace korvanel
