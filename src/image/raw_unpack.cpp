#include "image/raw_unpack.h"

#include <algorithm>

#include "image/sample_type.h"

namespace korvanel {

namespace {

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

uint64_t PixelCount(const Plane& plane) { return uint64_t{plane.width()} * plane.height(); }

}  // namespace

void SwapBytesInPlace(uint8_t* data, uint64_t byte_count, int32_t bpp) {
  if (data == nullptr) return;
  if (bpp == -16) SwapUnits<uint16_t>(data, byte_count / 2);
  if (bpp == -32) SwapUnits<uint32_t>(data, byte_count / 4);
}

std::string CompactLayout(std::string_view layout) {
  std::string out;
  out.reserve(layout.size());
  for (char c : layout) {
    if (c != ' ' && c != '\t') out.push_back(c);
  }
  return out;
}

uint64_t PlanarFrameBytes(uint32_t width, uint32_t height, uint32_t bytes_per_sample,
                          uint32_t components) {
  const uint64_t pixels = uint64_t{width} * height;
  if (pixels > (uint64_t{1} << 58)) return kImpossibleSize;
  return pixels * bytes_per_sample * components;
}

void DeinterleaveThree(const uint8_t* src, uint64_t pixels, uint32_t bits, const uint32_t order[3],
                       Plane* planes[3]) {
  DispatchBits(bits, [&]<typename T>(std::type_identity<T>) {
    T* d0 = planes[order[0]]->Row<T>(0);
    T* d1 = planes[order[1]]->Row<T>(0);
    T* d2 = planes[order[2]]->Row<T>(0);
    for (uint64_t i = 0; i < pixels; ++i) {
      T px[3];
      std::memcpy(px, src + i * sizeof(px), sizeof(px));
      d0[i] = px[0];
      d1[i] = px[1];
      d2[i] = px[2];
    }
  });
}

InterleavePlan::InterleavePlan(std::string_view letters, std::string_view components,
                               const uint32_t counts[3], uint32_t bits)
    : bits_(bits) {
  pixels_per_group_ = std::max({counts[0], counts[1], counts[2], 1u});
  uint32_t seen[3] = {0, 0, 0};
  for (char letter : letters) {
    const size_t c = components.find(letter);
    if (c == std::string_view::npos || c > 2 || counts[c] == 0) continue;
    const uint32_t repeat = pixels_per_group_ / counts[c];
    positions_.push_back({static_cast<uint32_t>(c), seen[c] * repeat, repeat});
    ++seen[c];
  }
}

uint64_t InterleavePlan::GroupCount(uint64_t pixels) const {
  return (pixels + pixels_per_group_ - 1) / pixels_per_group_;
}

void InterleavePlan::RunPosition(uint32_t position, uint64_t group_begin, uint64_t group_end,
                                 const uint8_t* src, uint64_t byte_count,
                                 Plane* const planes[3]) const {
  const InterleavePosition& pos = positions_[position];
  Plane& plane = *planes[pos.plane];
  const uint64_t pixels = PixelCount(plane);
  const uint64_t group_samples = positions_.size();
  const uint64_t bytes = bits_ / 8;
  const uint64_t m = pixels_per_group_;
  const uint64_t available = byte_count / bytes;  // whole samples in the input
  // Groups whose sample exists and whose pixels all lie inside the plane.
  const uint64_t with_sample =
      available > position ? (available - position + group_samples - 1) / group_samples : 0;
  const uint64_t full_end = std::min({group_end, pixels / m, with_sample});

  DispatchBits(bits_, [&]<typename T>(std::type_identity<T>) {
    T* dst = plane.Row<T>(0);
    const uint8_t* first = src + position * bytes;
    if (group_begin < full_end) {
      SpreadStridedAny<T>(first, group_samples * bytes, dst + pos.first_pixel, m, pos.repeat,
                          group_begin, full_end);
    }
    // The last, partial group (a pixel count that is not a multiple of the
    // group) stays inside the plane; a pixel whose sample is missing from
    // the file repeats the last sample of this position.
    for (uint64_t g = std::max(group_begin, full_end); g < group_end; ++g) {
      const uint64_t sample = g * group_samples + position;
      T v{0};
      if (sample < available) {
        v = LoadSample<T>(src + sample * bytes);
      } else if (available > position) {
        const uint64_t last = position + (available - 1 - position) / group_samples * group_samples;
        v = LoadSample<T>(src + last * bytes);
      }
      const uint64_t begin = g * m + pos.first_pixel;
      for (uint64_t p = begin; p < begin + pos.repeat && p < pixels; ++p) dst[p] = v;
    }
  });
}

void InterleavePlan::RunAll(const uint8_t* src, uint64_t byte_count, Plane* const planes[3]) const {
  const uint64_t groups = GroupCount(PixelCount(*planes[0]));
  // Chunks keep the source stretch in cache while every position reads it.
  constexpr uint64_t kChunkBytes = 64 * 1024;
  const uint64_t chunk = std::max<uint64_t>(1, kChunkBytes / (positions_.size() * (bits_ / 8)));
  for (uint64_t g0 = 0; g0 < groups; g0 += chunk) {
    const uint64_t g1 = std::min(groups, g0 + chunk);
    for (uint32_t p = 0; p < Positions(); ++p) RunPosition(p, g0, g1, src, byte_count, planes);
  }
}

void ExpandPlane(const uint8_t* src, uint64_t samples, uint32_t repeat, Plane& plane) {
  const uint64_t pixels = PixelCount(plane);
  DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
    T* dst = plane.Row<T>(0);
    const uint64_t whole = std::min(samples, pixels / repeat);
    if (repeat == 1) {
      CopySamples<T>(src, dst, whole);
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
