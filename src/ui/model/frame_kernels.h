#pragma once

// Pixel kernels that turn a display rendition (bytes R,G,B,0) into a
// device-pixel frame buffer of 0xFFRRGGBB words, the layout of
// QImage::Format_RGB32. They write only what is on screen, so their cost
// follows the screen area and never the image area. Every kernel clips to
// the buffer.

#include <cstdint>
#include <vector>

#include "app/config_values.h"
#include "image/display_rendition.h"
#include "ui/model/frame_plan.h"
#include "ui/model/geometry.h"

namespace korvanel {

struct PixelBuffer {
  uint32_t* pixels = nullptr;
  int32_t width = 0;
  int32_t height = 0;
  int32_t stride = 0;  // in pixels

  uint32_t* Row(int32_t y) const { return pixels + static_cast<int64_t>(y) * stride; }
  ScreenRect Bounds() const { return {0, 0, width - 1, height - 1}; }
};

constexpr uint32_t ScreenColor(uint8_t r, uint8_t g, uint8_t b) {
  return 0xFF000000u | uint32_t{r} << 16 | uint32_t{g} << 8 | b;
}
constexpr uint32_t ScreenColor(const Rgb& c) { return ScreenColor(c.r, c.g, c.b); }

// R,G,B,0 in memory (0x00BBGGRR) to 0xFFRRGGBB.
constexpr uint32_t SwizzleDisplayPixel(uint32_t p) {
  return 0xFF000000u | (p & 0xFFu) << 16 | (p & 0xFF00u) | (p >> 16 & 0xFFu);
}

// Per channel 255 where the component is below 128, else 0.
constexpr uint32_t ContrastColor(uint32_t screen) {
  const auto flip = [](uint32_t c) { return c < 128 ? 255u : 0u; };
  return ScreenColor(static_cast<uint8_t>(flip(screen >> 16 & 0xFF)),
                     static_cast<uint8_t>(flip(screen >> 8 & 0xFF)),
                     static_cast<uint8_t>(flip(screen & 0xFF)));
}

inline constexpr uint32_t kZoomOutBackground = ScreenColor(4, 0, 0);
inline constexpr uint32_t kRoiGridColorA = ScreenColor(255, 0, 0);
inline constexpr uint32_t kRoiGridColorB = ScreenColor(255, 255, 255);

void FillRect(PixelBuffer& buffer, const ScreenRect& rect, uint32_t color);

// The grid drawn into replicated blocks: each block's top row and left
// column alternate a dot colour and the pixel's colour, starting with the
// dot at the block's corner. The dot is the pixel's contrast colour, or red
// and white alternating inside `roi` (empty: no active ROI).
struct GridStyle {
  bool on = false;
  PixelRect roi;
};

// Image pixel (x, y) becomes the k x k block whose top-left screen pixel is
// origin + (x k, y k); only the part inside `dest` (and the buffer) is
// written. `dest` must lie inside the rendition's zoomed extent.
void BlitReplicated(const DisplayRendition& source, const ScreenRect& dest, ScreenPoint origin,
                    uint32_t k, const GridStyle& grid, PixelBuffer& buffer);

// Nearest-neighbour stretch of the whole rendition into `picture` by
// dropping (or repeating) rows and columns; never smooths. Only the part
// inside `clip` is written.
void BlitStretched(const DisplayRendition& source, const ScreenRect& picture,
                   const ScreenRect& clip, PixelBuffer& buffer);

// Ring `index` (0 = innermost) of a highlight frame: 255,0,128 first; each
// next ring takes red x 0.8 and blue 255 - blue x 0.8 (both rounded), green 0.
Rgb RingColor(uint32_t index);
// Draws `count` one-pixel rings outward around `picture`.
void DrawRings(PixelBuffer& buffer, const ScreenRect& picture, uint32_t count);

// One panel's picture: below ZF 1 the panel filled with (4,0,0) and the
// stretched rendition, else the replicated blocks with the grid; then the
// highlight rings. Values, rulers and tabs are drawn by the painter.
void DrawPanelPicture(const PanelPlan& panel, PixelBuffer& buffer);

// An RGB888 copy of part of a rendition, rows without padding (clipboard).
struct Rgb888Image {
  uint32_t width = 0;
  uint32_t height = 0;
  std::vector<uint8_t> bytes;
};

}  // namespace korvanel
