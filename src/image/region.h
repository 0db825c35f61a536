#pragma once

#include <algorithm>
#include <cstdint>
#include <optional>

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

// The pixels an operation works on: the region of interest cut to the image,
// or the whole image when there is none. Nothing when the region lies
// outside the image or the image is empty.
constexpr std::optional<Rect> WorkArea(const Rect& roi, uint32_t width, uint32_t height) {
  if (width == 0 || height == 0) return std::nullopt;
  if (roi.IsNone()) return Rect{0, 0, width - 1, height - 1};
  if (roi.min_x >= width || roi.min_y >= height || roi.min_x > roi.max_x || roi.min_y > roi.max_y) {
    return std::nullopt;
  }
  return Rect{roi.min_x, roi.min_y, std::min(roi.max_x, width - 1), std::min(roi.max_y, height - 1)};
}

}  // namespace korvanel
