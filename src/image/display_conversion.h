#pragma once

// Samples to 8-bit colour: the reduction to the most significant byte and the
// YUV <-> RGB arithmetic of ColorTransform. The arithmetic is fixed to the
// last bit (see the .cpp); the row kernel must give exactly what the
// per-pixel functions give, which a test checks over every 8-bit input.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/color_transform.h"
#include "image/display_rendition.h"
#include "image/parallel_runner.h"
#include "image/plane.h"

namespace korvanel {

// The stored bits as they are, never stretched: 0x1234 shows as 0x12.
template <typename T>
constexpr uint8_t ReduceToByte(T value) {
  return static_cast<uint8_t>(value >> (8 * (sizeof(T) - 1)));
}

using Rgb8 = std::array<uint8_t, 3>;

// Offsets shift the inputs before the products are taken.
Rgb8 YuvToRgb(uint8_t y, uint8_t u, uint8_t v, const ColorTransform& transform);
// Offsets are added to the truncated outputs.
Rgb8 RgbToYuv(uint8_t r, uint8_t g, uint8_t b, const ColorTransform& transform);

// YUV to RGB over whole rows, one output channel per pass. A channel whose
// row has a zero coefficient depends on two inputs only (a zero product adds
// nothing but the sign of a zero, which truncation cannot see), so it is one
// lookup in a table of 65,536 bytes made with the per-pixel function. Other
// channels take each product coefficient x (value + offset) from a table of
// doubles and sum them in the per-pixel function's order: the same double,
// the same byte.
class CYuvToRgbRows {
 public:
  explicit CYuvToRgbRows(const ColorTransform& transform);
  void ConvertRow(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint32_t* out,
                  size_t count) const;

 private:
  struct Channel {
    bool paired = false;
    int first = 0;   // inputs of a paired channel: lookup index first << 8 | second
    int second = 0;
    std::vector<uint8_t> pair_table;
  };
  template <bool PairedR, bool PairedG, bool PairedB>
  void ConvertRowAs(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint32_t* out,
                    size_t count) const;

  Channel channels_[3];
  // [output row][input component][8-bit value]
  double product_[3][3][256];
};

// Renditions of one plane (grey) or three planes (RGB, or YUV through the
// transform). The planes share one size and depth. False on an unsupported
// depth or when the pixels cannot be allocated. With a runner, bands of rows
// are built on its threads; the bytes are the same either way.
// `significant_bits` below the container's depth stretches 0..2^n-1 to the
// byte range; 0 (or the container's depth) keeps the stored top byte.
bool BuildGrayRendition(const Plane& plane, DisplayRendition& out, IParallelRunner* runner = nullptr,
                        uint32_t significant_bits = 0);
bool BuildRgbRendition(const std::vector<Plane>& planes, DisplayRendition& out,
                       IParallelRunner* runner = nullptr, uint32_t significant_bits = 0);
bool BuildYuvRendition(const std::vector<Plane>& planes, const ColorTransform& transform,
                       DisplayRendition& out, IParallelRunner* runner = nullptr,
                       uint32_t significant_bits = 0);

}  // namespace korvanel
