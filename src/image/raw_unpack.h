#pragma once

// Kernels that turn raw file bytes into full-size planes. They know nothing
// of the image classes: the classes check layouts and sizes and call in here
// with allocated planes. Interleaved groups have their own plan
// (interleave_plan.h).

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "image/plane.h"

namespace korvanel {

// For bpp -16 every 2-byte unit, for -32 every 4-byte unit of `data` is
// byte-reversed; any other bpp leaves the bytes alone.
void SwapBytesInPlace(uint8_t* data, uint64_t byte_count, int32_t bpp);

// Frame sizes, or kImpossibleSize when the size cannot be represented (such a
// size never equals a real byte count, so the exact-size check refuses it).
inline constexpr uint64_t kImpossibleSize = ~uint64_t{0};
uint64_t PlanarFrameBytes(uint32_t width, uint32_t height, uint32_t bytes_per_sample,
                          uint32_t components);

// Copies a whole plane's worth of samples.
inline void CopySamplesOfPlane(const uint8_t* src, Plane& plane) {
  std::memcpy(plane.bytes(), src, static_cast<size_t>(plane.byte_size()));
}

// CopySamplesOfPlane and SwapBytesInPlace(src, plane bytes, bpp) in one pass
// over the bytes: for bpp -16 and -32 each unit reaches the plane and `src`
// byte-reversed; any other bpp is a plain copy.
void CopySwappedSamplesOfPlane(uint8_t* src, int32_t bpp, Plane& plane);

// One plane of a planar file: `samples` samples each written to `repeat`
// consecutive raster pixels; pixels past the last sample repeat it.
void ExpandPlane(const uint8_t* src, uint64_t samples, uint32_t repeat, Plane& plane);

// The chroma pairs of a Y-plane-then-interleaved-chroma 4:2:0 file: one pair
// per 2x2 cell, row pair by row pair. Width and height must be even.
void ExpandCellPairs(const uint8_t* src, Plane& first, Plane& second);

}  // namespace korvanel
