#pragma once

// The view of one open image: where it is drawn, at which ZF and scroll
// offset, and its per-image display settings. Keyed by the image's serial,
// so renumbering HK ids on close never mixes views up. Small on purpose: the
// view holds no pixels.

#include <cstdint>
#include <vector>

#include "ui/model/geometry.h"
#include "ui/model/pixel_markers.h"

namespace korvanel {

inline constexpr double kGridThreshold = 5;

enum class RulerType : uint8_t { Indent, Matrix };

struct RulerSettings {
  bool screen_pixels = true;  // spacing in display pixels, else image pixels
  int32_t spacing_x = 0;
  int32_t spacing_y = 0;
  int32_t offset_x = 0;  // image-pixel mode only
  int32_t offset_y = 0;
  friend bool operator==(const RulerSettings&, const RulerSettings&) = default;
};

struct ImageView {
  uint64_t serial = 0;
  ImageSize size;
  ScreenRect panel;
  ScreenRect picture;
  double zf = 1;
  ScreenPoint offset;  // non-positive; ZF 1 and above only
  bool grid_requested = false;
  bool grid_visible = false;
  bool values = false;
  bool hex = false;
  RulerSettings ruler;
  RulerType ruler_type = RulerType::Indent;
  uint32_t ruler_color_index = 0;
  std::vector<MarkedPixel> marks;  // find hits, until cleared

  // Sets the ZF and what follows from it alone (the grid's visibility).
  void SetZoom(double new_zf) {
    zf = new_zf;
    grid_visible = grid_requested && zf >= kGridThreshold;
  }
};

}  // namespace korvanel
