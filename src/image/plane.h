#pragma once

#include <cstdint>
#include <optional>

#include "image/block_recycler.h"

namespace korvanel {

// One component of an image: width x height unsigned samples of 8, 16 or 32
// bits, row after row without padding.
class Plane {
 public:
  Plane() = default;
  Plane(Plane&&) noexcept = default;
  Plane& operator=(Plane&&) noexcept = default;

  // Bytes needed for such a plane, or nothing when the count overflows 64 bits
  // or the address space. Callers check this before allocating anything.
  static std::optional<uint64_t> ByteCount(uint32_t bits, uint32_t width, uint32_t height);

  // Allocates (contents undefined unless `zero`); false on an unsupported depth,
  // an impossible size or allocation failure, leaving the plane empty.
  bool Allocate(uint32_t bits, uint32_t width, uint32_t height, bool zero = false);
  void Reset();

  // A copy of the rectangle [x0, x0+w) x [y0, y0+h), which must lie inside.
  std::optional<Plane> Crop(uint32_t x0, uint32_t y0, uint32_t w, uint32_t h) const;

  bool empty() const { return data_.empty(); }
  uint32_t bits() const { return bits_; }
  uint32_t width() const { return width_; }
  uint32_t height() const { return height_; }
  uint64_t byte_size() const { return byte_size_; }
  uint64_t row_bytes() const { return uint64_t{width_} * (bits_ / 8); }

  uint8_t* bytes() { return data_.data(); }
  const uint8_t* bytes() const { return data_.data(); }
  template <typename T>
  T* Row(uint32_t y) {
    return reinterpret_cast<T*>(data_.data()) + uint64_t{y} * width_;
  }
  template <typename T>
  const T* Row(uint32_t y) const {
    return reinterpret_cast<const T*>(data_.data()) + uint64_t{y} * width_;
  }

  // The sample at (x, y) widened to 32 bits; the caller checks the bounds.
  uint32_t SampleAt(uint32_t x, uint32_t y) const;

 private:
  // A zeroed plane is zero without a pass over it when its pages are fresh
  // from the system, so its first touch happens where it is written,
  // possibly on many threads.
  RecycledBlock data_;
  uint32_t bits_ = 0;
  uint32_t width_ = 0;
  uint32_t height_ = 0;
  uint64_t byte_size_ = 0;
};

}  // namespace korvanel
