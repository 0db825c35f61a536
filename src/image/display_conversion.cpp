#include "image/display_conversion.h"

#include <algorithm>
#include <new>
#include <optional>
#include <type_traits>

#include "image/sample_type.h"

namespace korvanel {

namespace {

// The offset column holds a double; it is used as an integer.
int OffsetOf(const ColorTransform& transform, int row) {
  return static_cast<int>(transform.m[row][ColorTransform::kOffsetColumn]);
}

// Truncation toward zero, then the byte range.
uint8_t TruncateAndClamp(double x) { return static_cast<uint8_t>(std::clamp(static_cast<int>(x), 0, 255)); }

bool AllocatePixels(uint32_t width, uint32_t height, DisplayRendition& out) {
  const std::optional<uint64_t> bytes = Plane::ByteCount(32, width, height);
  if (!bytes) return false;
  try {
    out.pixels.resize(static_cast<size_t>(*bytes / 4));
  } catch (const std::bad_alloc&) {
    out.pixels.clear();
    return false;
  }
  out.width = width;
  out.height = height;
  return true;
}

// Today's reduction: the stored top byte.
struct TopByte {
  template <typename T>
  uint8_t operator()(T value) const {
    return ReduceToByte(value);
  }
};

// Rows of three planes reduced to bytes, ready for a byte kernel. 8-bit
// planes are read in place when the reduction keeps them as they are.
template <typename T, typename Reducer>
class ByteRows {
 public:
  ByteRows(uint32_t width, Reducer reduce) : reduce_(reduce) {
    if constexpr (!kInPlace) {
      for (auto& row : rows_) row.resize(width);
    }
  }
  const uint8_t* Reduce(const Plane& plane, uint32_t y, int index) {
    const T* src = plane.Row<T>(y);
    if constexpr (kInPlace) {
      (void)index;
      return src;
    } else {
      // A local copy: byte stores may alias the member, which would be
      // reloaded for every sample and keep the loop from vectorising.
      const Reducer reduce = reduce_;
      uint8_t* dst = rows_[index].data();
      for (uint32_t x = 0; x < plane.width(); ++x) dst[x] = reduce(src[x]);
      return dst;
    }
  }

 private:
  static constexpr bool kInPlace = sizeof(T) == 1 && std::is_same_v<Reducer, TopByte>;
  Reducer reduce_;
  std::vector<uint8_t> rows_[3];
};

// n significant bits stretched to a byte, so 2^n - 1 shows as full white:
// min(255, v >> (n - 8)) from 8 bits up, in the sample's own width so the
// row loops vectorise ...
class ShiftDownToByte {
 public:
  explicit ShiftDownToByte(uint32_t bits) : down_(bits - 8) {}
  template <typename T>
  uint8_t operator()(T value) const {
    const T scaled = static_cast<T>(value >> down_);
    return static_cast<uint8_t>(scaled > 255 ? 255 : scaled);
  }

 private:
  uint32_t down_;
};

// ... and min(255, v << (8 - n)) below 8 bits, widened: stray values may be large.
class ShiftUpToByte {
 public:
  explicit ShiftUpToByte(uint32_t bits) : up_(8 - bits) {}
  template <typename T>
  uint8_t operator()(T value) const {
    const uint64_t scaled = uint64_t{value} << up_;
    return static_cast<uint8_t>(scaled > 255 ? 255 : scaled);
  }

 private:
  uint32_t up_;
};

// Calls work(reduce) with the reduction the depth asks for, chosen once per image.
template <typename Work>
bool WithReduction(uint32_t container, uint32_t significant_bits, const Work& work) {
  if (significant_bits == 0 || significant_bits >= container) {
    work(TopByte{});
  } else if (significant_bits >= 8) {
    work(ShiftDownToByte(significant_bits));
  } else {
    work(ShiftUpToByte(significant_bits));
  }
  return true;
}

}  // namespace

namespace {

// Output channel i of YuvToRgb: x = c1*Y' + c2*U' + c3*V' + 0.5, summed left
// to right; the core is built without fused multiply-add, so no step rounds
// differently on any machine.
uint8_t YuvToRgbChannel(const uint8_t (&yuv)[3], const ColorTransform& transform, int i) {
  const double in[3] = {static_cast<double>(yuv[0] + OffsetOf(transform, 0)),
                        static_cast<double>(yuv[1] + OffsetOf(transform, 1)),
                        static_cast<double>(yuv[2] + OffsetOf(transform, 2))};
  const double* c = transform.m[i];
  return TruncateAndClamp(c[0] * in[0] + c[1] * in[1] + c[2] * in[2] + 0.5);
}

}  // namespace

Rgb8 YuvToRgb(uint8_t y, uint8_t u, uint8_t v, const ColorTransform& transform) {
  const uint8_t yuv[3] = {y, u, v};
  return {YuvToRgbChannel(yuv, transform, 0), YuvToRgbChannel(yuv, transform, 1),
          YuvToRgbChannel(yuv, transform, 2)};
}

Rgb8 RgbToYuv(uint8_t r, uint8_t g, uint8_t b, const ColorTransform& transform) {
  Rgb8 out{};
  for (int i = 0; i < 3; ++i) {
    const double* c = transform.m[i];
    const int x = static_cast<int>(c[0] * r + c[1] * g + c[2] * b + 0.5);
    out[i] = static_cast<uint8_t>(std::clamp(x + OffsetOf(transform, i), 0, 255));
  }
  return out;
}

CYuvToRgbRows::CYuvToRgbRows(const ColorTransform& transform) {
  for (int k = 0; k < 3; ++k) {
    const int offset = OffsetOf(transform, k);
    for (int value = 0; value < 256; ++value) {
      const double shifted = static_cast<double>(value + offset);
      for (int i = 0; i < 3; ++i) product_[i][k][value] = transform.m[i][k] * shifted;
    }
  }
  for (int i = 0; i < 3; ++i) {
    const double* c = transform.m[i];
    const int zero = c[0] == 0.0 ? 0 : c[1] == 0.0 ? 1 : c[2] == 0.0 ? 2 : -1;
    if (zero < 0) continue;
    Channel& channel = channels_[i];
    channel.paired = true;
    channel.first = zero == 0 ? 1 : 0;
    channel.second = zero == 2 ? 1 : 2;
    channel.pair_table.resize(65536);
    uint8_t in[3] = {0, 0, 0};
    for (int p = 0; p < 256; ++p) {
      for (int q = 0; q < 256; ++q) {
        in[channel.first] = static_cast<uint8_t>(p);
        in[channel.second] = static_cast<uint8_t>(q);
        // Only the channel the table serves: a third of the work per entry.
        channel.pair_table[static_cast<size_t>(p << 8 | q)] = YuvToRgbChannel(in, transform, i);
      }
    }
  }
}

namespace {

// One output channel's inputs for a row, read into locals before the loop:
// the stores to the output may alias anything the compiler cannot see
// through, so nothing is re-read per pixel.
struct ChannelRow {
  const uint8_t* table;  // paired: 65,536 bytes
  const uint8_t* p;
  const uint8_t* q;
  const double* t0;  // unpaired: products of Y, U and V
  const double* t1;
  const double* t2;
};

template <bool Paired>
inline uint32_t ChannelValue(const ChannelRow& c, const uint8_t* y, const uint8_t* u,
                             const uint8_t* v, size_t x) {
  if constexpr (Paired) {
    return c.table[c.p[x] << 8 | c.q[x]];
  } else {
    return TruncateAndClamp(c.t0[y[x]] + c.t1[u[x]] + c.t2[v[x]] + 0.5);
  }
}

}  // namespace

template <bool PairedR, bool PairedG, bool PairedB>
void CYuvToRgbRows::ConvertRowAs(const uint8_t* y, const uint8_t* u, const uint8_t* v,
                                 uint32_t* out, size_t count) const {
  const uint8_t* const inputs[3] = {y, u, v};
  ChannelRow rows[3];
  for (int i = 0; i < 3; ++i) {
    const Channel& c = channels_[i];
    rows[i] = {c.pair_table.data(), inputs[c.first], inputs[c.second],
               product_[i][0],      product_[i][1],  product_[i][2]};
  }
  const ChannelRow r = rows[0], g = rows[1], b = rows[2];
  for (size_t x = 0; x < count; ++x) {
    out[x] = ChannelValue<PairedR>(r, y, u, v, x) | ChannelValue<PairedG>(g, y, u, v, x) << 8 |
             ChannelValue<PairedB>(b, y, u, v, x) << 16;
  }
}

void CYuvToRgbRows::ConvertRow(const uint8_t* y, const uint8_t* u, const uint8_t* v, uint32_t* out,
                               size_t count) const {
  using Kernel = void (CYuvToRgbRows::*)(const uint8_t*, const uint8_t*, const uint8_t*, uint32_t*,
                                         size_t) const;
  static constexpr Kernel kKernels[8] = {
      &CYuvToRgbRows::ConvertRowAs<false, false, false>, &CYuvToRgbRows::ConvertRowAs<true, false, false>,
      &CYuvToRgbRows::ConvertRowAs<false, true, false>,  &CYuvToRgbRows::ConvertRowAs<true, true, false>,
      &CYuvToRgbRows::ConvertRowAs<false, false, true>,  &CYuvToRgbRows::ConvertRowAs<true, false, true>,
      &CYuvToRgbRows::ConvertRowAs<false, true, true>,   &CYuvToRgbRows::ConvertRowAs<true, true, true>,
  };
  const int kind = (channels_[0].paired ? 1 : 0) | (channels_[1].paired ? 2 : 0) |
                   (channels_[2].paired ? 4 : 0);
  (this->*kKernels[kind])(y, u, v, out, count);
}

namespace {

// Below this many pixels a rendition is built on the calling thread.
constexpr uint64_t kBandedRenditionPixels = uint64_t{1} << 16;

// Calls band_rows(first, last) for bands of the rendition's rows, on
// `runner` when it has threads to spare. Every row is written by exactly one
// call, with the same arithmetic as a single pass, so the bytes do not
// depend on the banding.
template <typename BandRows>
void BuildInBands(const DisplayRendition& out, IParallelRunner* runner, const BandRows& band_rows) {
  if (out.width == 0 || out.height == 0) return;
  const Rect rows{0, 0, out.width - 1, out.height - 1};
  RunInBands(
      rows, runner, nullptr,
      [&](const Rect& band, IRowObserver*) {
        band_rows(band.min_y, band.max_y);
        return true;
      },
      kBandedRenditionPixels);
}

}  // namespace

bool BuildGrayRendition(const Plane& plane, DisplayRendition& out, IParallelRunner* runner,
                        uint32_t significant_bits) {
  if (!AllocatePixels(plane.width(), plane.height(), out)) return false;
  return DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
    WithReduction(plane.bits(), significant_bits, [&](const auto shared_reduce) {
      BuildInBands(out, runner, [&](uint32_t first, uint32_t last) {
        const auto reduce = shared_reduce;  // in registers, not behind the captured reference
        for (uint32_t y = first; y <= last; ++y) {
          const T* src = plane.Row<T>(y);
          uint32_t* dst = out.pixels.data() + uint64_t{y} * plane.width();
          for (uint32_t x = 0; x < plane.width(); ++x) {
            const uint8_t v = reduce(src[x]);
            dst[x] = PackDisplayPixel(v, v, v);
          }
        }
      });
    });
  });
}

bool BuildRgbRendition(const std::vector<Plane>& planes, DisplayRendition& out, IParallelRunner* runner,
                       uint32_t significant_bits) {
  if (planes.size() != 3 || !AllocatePixels(planes[0].width(), planes[0].height(), out)) {
    return false;
  }
  return DispatchBits(planes[0].bits(), [&]<typename T>(std::type_identity<T>) {
    WithReduction(planes[0].bits(), significant_bits, [&](const auto shared_reduce) {
      BuildInBands(out, runner, [&](uint32_t first, uint32_t last) {
        const auto reduce = shared_reduce;  // in registers, not behind the captured reference
        for (uint32_t y = first; y <= last; ++y) {
          const T* r = planes[0].Row<T>(y);
          const T* g = planes[1].Row<T>(y);
          const T* b = planes[2].Row<T>(y);
          uint32_t* dst = out.pixels.data() + uint64_t{y} * out.width;
          for (uint32_t x = 0; x < out.width; ++x) {
            dst[x] = PackDisplayPixel(reduce(r[x]), reduce(g[x]), reduce(b[x]));
          }
        }
      });
    });
  });
}

bool BuildYuvRendition(const std::vector<Plane>& planes, const ColorTransform& transform,
                       DisplayRendition& out, IParallelRunner* runner, uint32_t significant_bits) {
  if (planes.size() != 3 || !AllocatePixels(planes[0].width(), planes[0].height(), out)) {
    return false;
  }
  const CYuvToRgbRows kernel(transform);
  return DispatchBits(planes[0].bits(), [&]<typename T>(std::type_identity<T>) {
    WithReduction(planes[0].bits(), significant_bits, [&]<typename Reduce>(Reduce reduce) {
      BuildInBands(out, runner, [&](uint32_t first, uint32_t last) {
        ByteRows<T, Reduce> bytes(out.width, reduce);  // each band reduces into rows of its own
        for (uint32_t y = first; y <= last; ++y) {
          const uint8_t* yy = bytes.Reduce(planes[0], y, 0);
          const uint8_t* uu = bytes.Reduce(planes[1], y, 1);
          const uint8_t* vv = bytes.Reduce(planes[2], y, 2);
          kernel.ConvertRow(yy, uu, vv, out.pixels.data() + uint64_t{y} * out.width, out.width);
        }
      });
    });
  });
}

}  // namespace korvanel
