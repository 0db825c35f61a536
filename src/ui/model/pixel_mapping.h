#pragma once

// Screen points to image pixels and back for one image view. At ZF 1 and
// above a pixel is a k x k block placed by the scroll offset; below 1 the
// picture is the whole image scaled, so the mapping is by proportion.

#include <cstdint>
#include <optional>

#include "ui/model/geometry.h"
#include "ui/model/image_view.h"
#include "ui/model/pixel_point.h"

namespace korvanel {

// Below ZF 1: the pixel whose share of a picture `picture_extent` screen
// pixels long holds screen offset `offset` from its start, rounded to the
// nearest and kept within the image. The readout and the rulers both map
// through it, so they name the same pixel.
int64_t ProportionalPixel(int64_t offset, int64_t picture_extent, uint32_t image_extent);

// The image pixel under `p`, or nothing when `p` is outside the picture.
std::optional<PixelPoint> ScreenToPixel(const ImageView& view, ScreenPoint p);

// The screen block that shows image pixel `pixel` (one screen pixel below
// ZF 1). Not clipped to the picture.
ScreenRect PixelBlock(const ImageView& view, PixelPoint pixel);

// The screen rectangle an inclusive image-pixel rectangle covers.
ScreenRect PixelSpan(const ImageView& view, const PixelRect& pixels);

}  // namespace korvanel
