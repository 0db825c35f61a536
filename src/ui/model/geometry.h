#pragma once

// View geometry in device pixels: zoom steps, where a picture sits in its
// panel, which image pixels it shows, scrolling that keeps a point centred
// and the scroll-bar state that follows. Screen rectangles are inclusive,
// as are image-pixel rectangles. A ZF of 0 means fit to window, below 1 a
// fraction of the fit size, 1 and above an integer replication factor.

#include <cstdint>
#include <string>

namespace korvanel {

struct ScreenPoint {
  int32_t x = 0;
  int32_t y = 0;
  friend bool operator==(const ScreenPoint&, const ScreenPoint&) = default;
};

struct ScreenSize {
  int32_t width = 0;
  int32_t height = 0;
  friend bool operator==(const ScreenSize&, const ScreenSize&) = default;
};

// Inclusive on every side; a rectangle whose right is left of its left (or
// bottom above its top) is empty.
template <typename T>
struct InclusiveRect {
  T left = 0;
  T top = 0;
  T right = -1;
  T bottom = -1;

  constexpr T Width() const { return right - left + 1; }
  constexpr T Height() const { return bottom - top + 1; }
  constexpr bool Empty() const { return right < left || bottom < top; }
  constexpr bool Contains(ScreenPoint p) const {
    return p.x >= left && p.x <= right && p.y >= top && p.y <= bottom;
  }
  friend bool operator==(const InclusiveRect&, const InclusiveRect&) = default;
};

using ScreenRect = InclusiveRect<int32_t>;  // device pixels
using PixelRect = InclusiveRect<int64_t>;   // image pixels

struct ImageSize {
  uint32_t width = 0;
  uint32_t height = 0;
  friend bool operator==(const ImageSize&, const ImageSize&) = default;
};

inline constexpr double kFitZoom = 0;
inline constexpr double kMaxZoom = 100;
inline constexpr double kMinZoom = 0.25;

double ZoomIn(double zf);
double ZoomOut(double zf);
// The replication factor: the ZF plus 0.5, truncated, and never below 1
// (fit and fractions draw at most one screen pixel per image pixel).
uint32_t RoundedZoom(double zf);
// "F2W", "1:%u" or "%4.2lf".
std::string ZoomText(double zf);
bool Replicates(double zf);  // ZF 1 and above

// Where the picture is drawn inside `panel`. At ZF 1 and above a picture
// smaller than the panel is centred, a larger one spans the panel (and is
// scrolled); below 1 it is fitted keeping its aspect and centred. Never
// wider or taller than the panel; empty when the panel or the image is.
ScreenRect PictureRect(const ScreenRect& panel, ImageSize image, double zf);

// The image pixels the picture shows. `offset` is the non-positive scroll
// offset of the picture's origin (used at ZF 1 and above only).
PixelRect VisibleRect(const ScreenRect& picture, ImageSize image, double zf, ScreenPoint offset);

// The scroll offset that puts image pixel `centre` in the middle of the
// panel at ZF `zf`; offsets reset to 0 when the result would show anything
// outside the image.
ScreenPoint ScrollToCentre(const ScreenRect& panel, ImageSize image, double zf,
                           ScreenPoint centre);

// The screen size of the whole zoomed picture at ZF 1 and above (64-bit:
// 65535 pixels at 100 overflow nothing), or the picture's size below 1.
int64_t ContentExtent(uint32_t image_extent, int32_t picture_extent, double zf);

enum class Axis : uint8_t { Horizontal, Vertical };
enum class ScrollAction : uint8_t { LineUp, LineDown, PageUp, PageDown, Thumb, Top, Bottom };

// One scroll bar in the terms of a toolkit slider: positions 0..maximum,
// a page step of the visible size, disabled when nothing scrolls.
struct ScrollBarState {
  int32_t maximum = 0;
  int32_t page = 0;
  int32_t line = 1;
  int32_t position = 0;
  bool enabled = false;
  friend bool operator==(const ScrollBarState&, const ScrollBarState&) = default;
};

// content and visible are screen pixels; position is minus the offset.
ScrollBarState MakeScrollBar(int64_t content, int32_t visible, int32_t line, int32_t position);

// The position after `action` (thumb: `thumb`), clamped to 0..maximum.
int32_t ScrollPosition(const ScrollBarState& bar, ScrollAction action, int32_t thumb);

}  // namespace korvanel
