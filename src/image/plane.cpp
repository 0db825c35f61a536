#include "image/plane.h"

#include <cstring>
#include <limits>

#include "image/memory_budget.h"
#include "image/sample_type.h"

namespace korvanel {

std::optional<uint64_t> Plane::ByteCount(uint32_t bits, uint32_t width, uint32_t height) {
  if (!IsSupportedBits(bits)) return std::nullopt;
  const uint64_t pixels = uint64_t{width} * height;  // cannot overflow: both below 2^32
  const uint64_t bytes_per_sample = bits / 8;
  if (pixels > std::numeric_limits<uint64_t>::max() / bytes_per_sample) return std::nullopt;
  const uint64_t bytes = pixels * bytes_per_sample;
  if (bytes > std::numeric_limits<size_t>::max() / 2) return std::nullopt;
  return bytes;
}

bool Plane::Allocate(uint32_t bits, uint32_t width, uint32_t height, bool zero) {
  Reset();
  const std::optional<uint64_t> bytes = ByteCount(bits, width, height);
  if (!bytes || !MemoryAvailableFor(*bytes)) return false;
  data_ = RecycledBlock::Take(static_cast<size_t>(*bytes), zero);
  if (data_.empty()) return false;
  bits_ = bits;
  width_ = width;
  height_ = height;
  byte_size_ = *bytes;
  return true;
}

void Plane::Reset() {
  data_.Reset();
  bits_ = width_ = height_ = 0;
  byte_size_ = 0;
}

std::optional<Plane> Plane::Crop(uint32_t x0, uint32_t y0, uint32_t w, uint32_t h) const {
  Plane out;
  if (!out.Allocate(bits_, w, h)) return std::nullopt;
  const uint64_t bytes_per_sample = bits_ / 8;
  const uint64_t out_row = uint64_t{w} * bytes_per_sample;
  for (uint32_t y = 0; y < h; ++y) {
    const uint8_t* src = data_.data() + (uint64_t{y0 + y} * width_ + x0) * bytes_per_sample;
    std::memcpy(out.data_.data() + uint64_t{y} * out_row, src, static_cast<size_t>(out_row));
  }
  return out;
}

uint32_t Plane::SampleAt(uint32_t x, uint32_t y) const {
  switch (bits_) {
    case 8: return Row<uint8_t>(y)[x];
    case 16: return Row<uint16_t>(y)[x];
    case 32: return Row<uint32_t>(y)[x];
    default: return 0;
  }
}

}  // namespace korvanel
