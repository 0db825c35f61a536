#pragma once

#include <optional>

#include "image/image_container.h"

namespace korvanel {

// The pixels a save, statistics file or export covers: the region of
// interest when there is one, else the whole image.
struct SaveArea {
  Rect area;
  bool from_roi = false;
};

// YUV images widen their region to whole chroma cells first, so that the
// file holds whole groups of the layout. Nothing for an empty image or a
// region outside it.
inline std::optional<SaveArea> ChooseSaveArea(const IImageContainer& image, bool align_to_chroma) {
  uint32_t width = 0, height = 0;
  image.GetSize(width, height);
  Rect roi = image.GetRegionOfInterest();
  const bool from_roi = !roi.IsNone();
  if (from_roi && align_to_chroma && ColorKindOf(image) == ColorKind::Yuv) {
    image.AlignToChromaGrid(roi);
  }
  const std::optional<Rect> area = WorkArea(roi, width, height);
  if (!area) return std::nullopt;
  return SaveArea{*area, from_roi};
}

}  // namespace korvanel
