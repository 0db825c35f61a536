#pragma once

// Small typed building blocks of the pixel kernels. Source bytes may sit at
// any alignment (an offset into a file buffer), so samples are read and
// written with memcpy, which compiles to plain loads and stores.

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace korvanel {

template <typename T>
inline T LoadSample(const uint8_t* p) {
  T v;
  std::memcpy(&v, p, sizeof(T));
  return v;
}

template <typename T>
inline void StoreSample(uint8_t* p, T v) {
  std::memcpy(p, &v, sizeof(T));
}

template <typename T>
inline T ByteSwap(T v) {
  if constexpr (sizeof(T) == 2) return static_cast<T>(__builtin_bswap16(v));
  else return __builtin_bswap32(v);
}

template <typename T>
void SwapUnits(uint8_t* data, uint64_t units) {
  for (uint64_t i = 0; i < units; ++i) {
    StoreSample<T>(data + i * sizeof(T), ByteSwap(LoadSample<T>(data + i * sizeof(T))));
  }
}

// Writes the sample found every `src_stride` bytes to `Repeat` consecutive
// destination samples every `dst_step` samples, for groups [g0, g1).
template <typename T, uint32_t Repeat>
void SpreadStrided(const uint8_t* src, uint64_t src_stride, T* dst, uint64_t dst_step, uint64_t g0,
                   uint64_t g1) {
  for (uint64_t g = g0; g < g1; ++g) {
    const T v = LoadSample<T>(src + g * src_stride);
    T* d = dst + g * dst_step;
    for (uint32_t j = 0; j < Repeat; ++j) d[j] = v;
  }
}

template <typename T>
void SpreadStridedAny(const uint8_t* src, uint64_t src_stride, T* dst, uint64_t dst_step,
                      uint32_t repeat, uint64_t g0, uint64_t g1) {
  switch (repeat) {
    case 1: SpreadStrided<T, 1>(src, src_stride, dst, dst_step, g0, g1); break;
    case 2: SpreadStrided<T, 2>(src, src_stride, dst, dst_step, g0, g1); break;
    case 4: SpreadStrided<T, 4>(src, src_stride, dst, dst_step, g0, g1); break;
    default:
      for (uint64_t g = g0; g < g1; ++g) {
        const T v = LoadSample<T>(src + g * src_stride);
        std::fill_n(dst + g * dst_step, repeat, v);
      }
  }
}

}  // namespace korvanel
