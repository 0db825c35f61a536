#pragma once

// The per-pixel rule of the difference image: two images of the same kind,
// size and depth compared into an 8-bit grey plane.

#include <cstdint>

#include "image/row_observer.h"
#include "image/image_concrete_base.h"

namespace korvanel {

// Routine code: bit 0 set writes the absolute difference (the largest of
// the component differences, saturated at 255) instead of 0/255 for
// equal/different; bit 1 set writes only pixels masked in by both images.
enum DiffCode : uint32_t { kDiffAbsolute = 1, kDiffMasked = 2 };

// Writes the pixels of `band` (inclusive, inside both images) into `out`,
// an 8-bit plane of the images' size. Bands of different rows may run at
// the same time.
bool DiffBand(const CImageConcreteBase& left, const CImageConcreteBase& right, uint32_t code,
              const Rect& band, Plane& out, IRowObserver* observer);

}  // namespace korvanel
