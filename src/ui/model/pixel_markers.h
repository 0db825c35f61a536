#pragma once

// Pixels the viewer points out: short-lived markers (a jump target lives 20
// ticks of timer 3, a find hit 40 ticks of timer 4) and the find hits kept in
// an image's marked-pixel list until the marks are cleared.

#include <cstdint>
#include <vector>

#include "app/config_values.h"
#include "ui/model/pixel_point.h"

namespace korvanel {

inline constexpr uint32_t kJumpMarkerLife = 20;
inline constexpr uint32_t kFindMarkerLife = 40;
inline constexpr Rgb kJumpMarkerColor{255, 255, 255};
inline constexpr Rgb kFindMarkerColor{255, 255, 0};

struct TimedMarker {
  PixelPoint pixel;
  uint32_t life = 0;  // ticks left
};

class CMarkerList {
 public:
  void Add(PixelPoint pixel, uint32_t life) { markers_.push_back({pixel, life}); }
  // One tick: every marker ages, and those at 0 go. True while any is left.
  bool Tick();
  void Clear() { markers_.clear(); }
  bool Empty() const { return markers_.empty(); }
  const std::vector<TimedMarker>& Markers() const { return markers_; }

 private:
  std::vector<TimedMarker> markers_;
};

// A find hit in an image's marked-pixel list, drawn in the contrast colour of
// the pixel it marks.
struct MarkedPixel {
  PixelPoint pixel;
  Rgb color;
};

// Per channel 255 where the pixel's component is below 128, else 0.
constexpr Rgb ContrastRgb(uint8_t r, uint8_t g, uint8_t b) {
  auto flip = [](uint8_t c) { return static_cast<uint8_t>(c < 128 ? 255 : 0); };
  return {flip(r), flip(g), flip(b)};
}

}  // namespace korvanel
