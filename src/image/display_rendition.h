#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "image/block_recycler.h"

namespace korvanel {

// Leaves elements uninitialised when a vector grows without a value: the
// rendition is written whole right after it is sized, so zeroing it first
// would only cost a pass over memory. Large blocks are recycled.
template <typename T>
struct NoFillAllocator : std::allocator<T> {
  using value_type = T;
  template <typename U>
  struct rebind {
    using other = NoFillAllocator<U>;
  };
  NoFillAllocator() = default;
  T* allocate(size_t n) {
    if (n > std::allocator_traits<std::allocator<T>>::max_size(*this)) throw std::bad_array_new_length();
    void* p = CBlockRecycler::Shared().Take(n * sizeof(T), false);
    if (p == nullptr) throw std::bad_alloc();
    return static_cast<T*>(p);
  }
  void deallocate(T* p, size_t n) noexcept { CBlockRecycler::Shared().Give(p, n * sizeof(T)); }
  template <typename U>
  NoFillAllocator(const NoFillAllocator<U>&) noexcept {}
  template <typename U>
  void construct(U* p) noexcept {
    ::new (static_cast<void*>(p)) U;
  }
  template <typename U, typename... Args>
  void construct(U* p, Args&&... args) {
    ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
  }
};

// What the screen shows of an image: one 32-bit pixel per image pixel with
// red in byte 0, green in byte 1, blue in byte 2 and byte 3 zero, for every
// image class. As a little-endian word that is 0x00BBGGRR; the bytes in
// memory read R, G, B, 0, which a painter takes as RGBX without a copy.
struct DisplayRendition {
  uint32_t width = 0;
  uint32_t height = 0;
  std::vector<uint32_t, NoFillAllocator<uint32_t>> pixels;
};

constexpr uint32_t PackDisplayPixel(uint8_t r, uint8_t g, uint8_t b) {
  return uint32_t{r} | uint32_t{g} << 8 | uint32_t{b} << 16;
}
constexpr uint8_t DisplayRed(uint32_t pixel) { return static_cast<uint8_t>(pixel); }
constexpr uint8_t DisplayGreen(uint32_t pixel) { return static_cast<uint8_t>(pixel >> 8); }
constexpr uint8_t DisplayBlue(uint32_t pixel) { return static_cast<uint8_t>(pixel >> 16); }

}  // namespace korvanel
