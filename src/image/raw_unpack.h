#pragma once

// Row kernels and plans that turn raw file bytes into full-size planes. They
// know nothing of the image classes: the classes check layouts and sizes and
// call in here with typed planes. Source bytes may sit at any alignment (an
// offset into a file buffer), so samples are read with memcpy, which the
// compiler turns into plain loads.

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "image/plane.h"

namespace korvanel {

// For bpp -16 every 2-byte unit, for -32 every 4-byte unit of `data` is
// byte-reversed; any other bpp leaves the bytes alone.
void SwapBytesInPlace(uint8_t* data, uint64_t byte_count, int32_t bpp);

// The layout with blanks removed.
std::string CompactLayout(std::string_view layout);

// Frame sizes, or kImpossibleSize when the size cannot be represented (such a
// size never equals a real byte count, so the exact-size check refuses it).
inline constexpr uint64_t kImpossibleSize = ~uint64_t{0};
uint64_t PlanarFrameBytes(uint32_t width, uint32_t height, uint32_t bytes_per_sample,
                          uint32_t components);

// Copies `count` samples of type T from unaligned bytes.
template <typename T>
inline void CopySamples(const uint8_t* src, T* dst, uint64_t count) {
  std::memcpy(dst, src, static_cast<size_t>(count * sizeof(T)));
}

// Copies a whole plane's worth of samples.
inline void CopySamplesOfPlane(const uint8_t* src, Plane& plane) {
  std::memcpy(plane.bytes(), src, static_cast<size_t>(plane.byte_size()));
}

// Splits `pixels` interleaved 3-sample pixels into three planes. `order[i]`
// is the plane that sample i of a pixel goes to.
void DeinterleaveThree(const uint8_t* src, uint64_t pixels, uint32_t bits, const uint32_t order[3],
                       Plane* planes[3]);

// Interleaved groups: the layout's samples repeat as groups of `group_size`
// samples; each group covers `pixels_per_group` consecutive raster pixels.
// Work is split per layout position so that positions can run in parallel.
struct InterleavePosition {
  uint32_t plane = 0;      // destination component
  uint32_t first_pixel = 0;  // offset of its pixels inside the group
  uint32_t repeat = 1;     // pixels one sample covers
};

class InterleavePlan {
 public:
  // `letters` names the component of each group position ('Y','U','V' or
  // 'R','G','B'); `counts` how often each component occurs in a group.
  InterleavePlan(std::string_view letters, std::string_view components, const uint32_t counts[3],
                 uint32_t bits);
  uint32_t Positions() const { return static_cast<uint32_t>(positions_.size()); }
  // Fills the pixels of groups [group_begin, group_end) for one position.
  // `planes` are the three full-size planes; `src`/`byte_count` the input.
  void RunPosition(uint32_t position, uint64_t group_begin, uint64_t group_end, const uint8_t* src,
                   uint64_t byte_count, Plane* const planes[3]) const;
  // Every position over every group, in cache-sized chunks.
  void RunAll(const uint8_t* src, uint64_t byte_count, Plane* const planes[3]) const;
  uint64_t GroupCount(uint64_t pixels) const;

 private:
  std::vector<InterleavePosition> positions_;
  uint32_t bits_ = 8;
  uint32_t pixels_per_group_ = 1;
};

// One plane of a planar file: `samples` samples each written to `repeat`
// consecutive raster pixels; pixels past the last sample repeat it.
void ExpandPlane(const uint8_t* src, uint64_t samples, uint32_t repeat, Plane& plane);

// The chroma pairs of a Y-plane-then-interleaved-chroma 4:2:0 file: one pair
// per 2x2 cell, row pair by row pair. Width and height must be even.
void ExpandCellPairs(const uint8_t* src, Plane& first, Plane& second);

}  // namespace korvanel
