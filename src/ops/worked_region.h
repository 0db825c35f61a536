#pragma once

#include <algorithm>

#include "image/image_container.h"

namespace korvanel {

// The region an operation works on: the region of interest clipped to the
// image, or the whole image when there is none (or it lies outside).
inline Rect WorkedRegion(const IImageContainer& image) {
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  const Rect whole{0, 0, width == 0 ? 0 : width - 1, height == 0 ? 0 : height - 1};
  const Rect roi = image.GetRegionOfInterest();
  if (roi.IsNone() || roi.min_x >= width || roi.min_y >= height) return whole;
  return {roi.min_x, roi.min_y, std::min(roi.max_x, whole.max_x), std::min(roi.max_y, whole.max_y)};
}

inline uint64_t WorkedRegionPixels(const IImageContainer& image) {
  const Rect region = WorkedRegion(image);
  return region.Width() * region.Height();
}

}  // namespace korvanel
