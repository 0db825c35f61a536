#include "ui/model/pixel_mapping.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace korvanel {

namespace {

// Below ZF 1: where pixel `index` starts on the screen.
int32_t ScaledStart(int64_t index, int32_t picture_start, int64_t picture_extent,
                    uint32_t image_extent) {
  return static_cast<int32_t>(picture_start + index * picture_extent / image_extent);
}

}  // namespace

int64_t ProportionalPixel(int64_t offset, int64_t picture_extent, uint32_t image_extent) {
  const double at = static_cast<double>(offset) / static_cast<double>(picture_extent) * image_extent;
  return std::clamp<int64_t>(std::llround(at), 0, int64_t{image_extent} - 1);
}

std::optional<PixelPoint> ScreenToPixel(const ImageView& view, ScreenPoint p) {
  if (view.picture.Empty() || view.size.width == 0 || view.size.height == 0 ||
      !view.picture.Contains(p)) {
    return std::nullopt;
  }
  if (!Replicates(view.zf)) {
    return PixelPoint{ProportionalPixel(p.x - view.picture.left, view.picture.Width(), view.size.width),
                      ProportionalPixel(p.y - view.picture.top, view.picture.Height(), view.size.height)};
  }
  const int64_t k = RoundedZoom(view.zf);
  const PixelPoint pixel{(int64_t{p.x} - view.picture.left - view.offset.x) / k,
                         (int64_t{p.y} - view.picture.top - view.offset.y) / k};
  if (pixel.x < 0 || pixel.y < 0 || pixel.x >= view.size.width || pixel.y >= view.size.height) {
    return std::nullopt;
  }
  return pixel;
}

ScreenRect PixelBlock(const ImageView& view, PixelPoint pixel) {
  return PixelSpan(view, {pixel.x, pixel.y, pixel.x, pixel.y});
}

ScreenRect PixelSpan(const ImageView& view, const PixelRect& pixels) {
  if (view.size.width == 0 || view.size.height == 0) return {};
  if (!Replicates(view.zf)) {
    const ScreenRect& pic = view.picture;
    const int32_t left = ScaledStart(pixels.left, pic.left, pic.Width(), view.size.width);
    const int32_t top = ScaledStart(pixels.top, pic.top, pic.Height(), view.size.height);
    // A pixel narrower than a screen pixel still covers one.
    const int32_t right = std::max(left, ScaledStart(pixels.right + 1, pic.left, pic.Width(), view.size.width) - 1);
    const int32_t bottom =
        std::max(top, ScaledStart(pixels.bottom + 1, pic.top, pic.Height(), view.size.height) - 1);
    return {left, top, right, bottom};
  }
  const int64_t k = RoundedZoom(view.zf);
  const int64_t x0 = int64_t{view.picture.left} + view.offset.x;
  const int64_t y0 = int64_t{view.picture.top} + view.offset.y;
  auto clamp32 = [](int64_t v) {
    return static_cast<int32_t>(std::clamp<int64_t>(v, INT32_MIN / 2, INT32_MAX / 2));
  };
  return {clamp32(x0 + pixels.left * k), clamp32(y0 + pixels.top * k),
          clamp32(x0 + (pixels.right + 1) * k - 1), clamp32(y0 + (pixels.bottom + 1) * k - 1)};
}

}  // namespace korvanel
