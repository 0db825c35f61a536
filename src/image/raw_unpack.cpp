#include "image/raw_unpack.h"

#include <algorithm>

#include "image/sample_kernels.h"
#include "image/sample_type.h"

namespace korvanel {

namespace {

uint64_t PixelCount(const Plane& plane) { return uint64_t{plane.width()} * plane.height(); }

}  // namespace

void SwapBytesInPlace(uint8_t* data, uint64_t byte_count, int32_t bpp) {
  if (data == nullptr) return;
  if (bpp == -16) SwapUnits<uint16_t>(data, byte_count / 2);
  if (bpp == -32) SwapUnits<uint32_t>(data, byte_count / 4);
}

namespace {

template <typename T>
void CopySwappedUnits(uint8_t* src, T* dst, uint64_t units) {
  for (uint64_t i = 0; i < units; ++i) {
    const T v = ByteSwap(LoadSample<T>(src + i * sizeof(T)));
    StoreSample<T>(src + i * sizeof(T), v);
    dst[i] = v;
  }
}

}  // namespace

void CopySwappedSamplesOfPlane(uint8_t* src, int32_t bpp, Plane& plane) {
  const uint64_t bytes = plane.byte_size();
  if (bpp == -16) {
    CopySwappedUnits(src, plane.Row<uint16_t>(0), bytes / 2);
  } else if (bpp == -32) {
    CopySwappedUnits(src, plane.Row<uint32_t>(0), bytes / 4);
  } else {
    CopySamplesOfPlane(src, plane);
  }
}

uint64_t PlanarFrameBytes(uint32_t width, uint32_t height, uint32_t bytes_per_sample,
                          uint32_t components) {
  const uint64_t pixels = uint64_t{width} * height;
  if (pixels > (uint64_t{1} << 58)) return kImpossibleSize;
  return pixels * bytes_per_sample * components;
}

void ExpandPlane(const uint8_t* src, uint64_t samples, uint32_t repeat, Plane& plane) {
  const uint64_t pixels = PixelCount(plane);
  DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
    T* dst = plane.Row<T>(0);
    const uint64_t whole = std::min(samples, pixels / repeat);
    if (repeat == 1) {
      std::memcpy(dst, src, static_cast<size_t>(whole * sizeof(T)));
    } else {
      SpreadStridedAny<T>(src, sizeof(T), dst, repeat, repeat, 0, whole);
    }
    // Pixels past the last whole sample: what is left of the samples, then
    // the last sample repeated (or zero when there is none).
    uint64_t p = whole * repeat;
    for (uint64_t s = whole; s < samples && p < pixels; ++s) {
      const T v = LoadSample<T>(src + s * sizeof(T));
      for (uint32_t j = 0; j < repeat && p < pixels; ++j) dst[p++] = v;
    }
    const T last = samples > 0 ? LoadSample<T>(src + (samples - 1) * sizeof(T)) : T{0};
    std::fill(dst + p, dst + pixels, last);
  });
}

void ExpandCellPairs(const uint8_t* src, Plane& first, Plane& second) {
  const uint32_t width = first.width();
  const uint32_t cells = width / 2;
  DispatchBits(first.bits(), [&]<typename T>(std::type_identity<T>) {
    const uint8_t* pair = src;
    for (uint32_t y = 0; y + 1 < first.height(); y += 2) {
      T* a = first.Row<T>(y);
      T* b = second.Row<T>(y);
      for (uint32_t c = 0; c < cells; ++c, pair += 2 * sizeof(T)) {
        const T va = LoadSample<T>(pair);
        const T vb = LoadSample<T>(pair + sizeof(T));
        a[2 * c] = va;
        a[2 * c + 1] = va;
        b[2 * c] = vb;
        b[2 * c + 1] = vb;
      }
      std::memcpy(first.Row<T>(y + 1), a, width * sizeof(T));
      std::memcpy(second.Row<T>(y + 1), b, width * sizeof(T));
    }
  });
}

}  // namespace korvanel
