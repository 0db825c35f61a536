#include "ops/convert_operation.h"

#include <algorithm>
#include <array>
#include <vector>

#include "image/display_conversion.h"
#include "image/image_factory.h"
#include "image/line_sink.h"
#include "image/sample_type.h"

namespace korvanel {

namespace {

enum class Family { Gray, Rgb, Yuv };

Family FamilyOf(ColorKind kind) {
  switch (kind) {
    case ColorKind::Rgb: return Family::Rgb;
    case ColorKind::Yuv: return Family::Yuv;
    case ColorKind::Gray: return Family::Gray;
  }
  return Family::Gray;
}

// The colour arithmetic of the display at any depth: offsets scale with the
// depth and results clamp to its range.
class FamilyConverter {
 public:
  FamilyConverter(Family from, Family to, uint32_t bits, const ColorTransform& yuv_to_rgb,
                  const ColorTransform& rgb_to_yuv)
      : from_(from == Family::Gray ? Family::Yuv : from),
        to_(to),
        scale_(bits > 8 ? double(uint64_t{1} << (bits - 8)) : 1.0),
        max_(bits >= 32 ? 0xFFFFFFFFll : (int64_t{1} << bits) - 1),
        center_(uint32_t{1} << (bits - 1)),
        yuv_to_rgb_(yuv_to_rgb),
        rgb_to_yuv_(rgb_to_yuv),
        gray_source_(from == Family::Gray) {}

  uint32_t Center() const { return center_; }
  // Black in the target's colour space, at the source's depth.
  std::array<uint32_t, 3> Black() const {
    return to_ == Family::Yuv ? std::array<uint32_t, 3>{0, center_, center_} : std::array<uint32_t, 3>{0, 0, 0};
  }
  bool YuvToRgbOnly() const { return from_ == Family::Yuv && to_ == Family::Rgb && !gray_source_; }

  // c[] holds the source's components (grey: c[0] only) and receives the
  // target's (grey: c[0]).
  void Convert(std::array<uint32_t, 3>& c) const {
    if (gray_source_) c[1] = c[2] = center_;
    if (from_ == Family::Yuv && to_ == Family::Rgb) {
      c = YuvToRgb(c);
    } else if (from_ == Family::Rgb && to_ == Family::Yuv) {
      c = RgbToYuv(c);
    } else if (from_ == Family::Rgb && to_ == Family::Gray) {
      c[0] = RgbToYuv(c)[0];
    }
  }

 private:
  uint32_t Clamp(double x) const {
    return static_cast<uint32_t>(std::clamp<int64_t>(static_cast<int64_t>(x), 0, max_));
  }
  std::array<uint32_t, 3> YuvToRgb(const std::array<uint32_t, 3>& in) const {
    double shifted[3];
    for (int k = 0; k < 3; ++k) shifted[k] = double(in[k]) + yuv_to_rgb_.m[k][3] * scale_;
    std::array<uint32_t, 3> out{};
    for (int i = 0; i < 3; ++i) {
      const double* m = yuv_to_rgb_.m[i];
      out[i] = Clamp(m[0] * shifted[0] + m[1] * shifted[1] + m[2] * shifted[2] + 0.5);
    }
    return out;
  }
  std::array<uint32_t, 3> RgbToYuv(const std::array<uint32_t, 3>& in) const {
    std::array<uint32_t, 3> out{};
    for (int i = 0; i < 3; ++i) {
      const double* m = rgb_to_yuv_.m[i];
      // Truncate first, then add the output's offset.
      const int64_t x = static_cast<int64_t>(m[0] * in[0] + m[1] * in[1] + m[2] * in[2] + 0.5);
      out[i] = static_cast<uint32_t>(std::clamp<int64_t>(x + static_cast<int64_t>(m[3] * scale_), 0, max_));
    }
    return out;
  }

  Family from_, to_;
  double scale_;
  int64_t max_;
  uint32_t center_;
  const ColorTransform& yuv_to_rgb_;
  const ColorTransform& rgb_to_yuv_;
  bool gray_source_;
};

// Keeps the most significant bits when the depth changes.
uint32_t ChangeDepth(uint32_t value, uint32_t from_bits, uint32_t to_bits) {
  if (to_bits >= from_bits) return value << (to_bits - from_bits);
  return value >> (from_bits - to_bits);
}

// Where output coordinate v comes from in the source, or -1 for none.
struct AxisMap {
  int64_t shift;   // source = output - shift (output larger) or output + shift
  uint32_t extent; // source size along the axis
  bool tiled;
  int64_t operator()(int64_t v) const {
    int64_t s = v - shift;
    if (s >= 0 && s < extent) return s;
    if (!tiled) return -1;
    s %= int64_t{extent};
    return s < 0 ? s + extent : s;
  }
};

struct Canvas {
  AxisMap x, y;
  bool identity = false;  // every output pixel is the source pixel at its place
};

// Converts a band row by row: the row's source samples are gathered (or
// black where the canvas has no source), converted pixel by pixel, and
// stored with the target's depth. Gathering and storing are typed loops per
// row; the family converter still branches on the source and target
// families for every pixel. One per band: it holds the band's row buffers.
class CConvertBand final {
 public:
  CConvertBand(const CImageConcreteBase& source, CImageConcreteBase& target, const Canvas& canvas,
               const FamilyConverter& converter, const CYuvToRgbRows* fast_yuv)
      : source_(source), target_(target), canvas_(canvas), converter_(converter), fast_yuv_(fast_yuv) {}

  bool Work(const Rect& band, IRowObserver* observer) {
    if (fast_yuv_ != nullptr && canvas_.identity && target_.SignificantBits() == 8) {
      return WorkDirect(band, observer);
    }
    const uint32_t count = band.max_x - band.min_x + 1;
    std::vector<int64_t> xmap(count);
    for (uint32_t i = 0; i < count; ++i) xmap[i] = canvas_.x(band.min_x + i);
    for (auto& row : rows_) row.assign(count, 0);
    if (fast_yuv_ != nullptr) packed_.assign(count, 0);
    for (uint32_t y = band.min_y; y <= band.max_y; ++y) {
      const int64_t sy = canvas_.y(y);
      Gather(sy, xmap);
      Convert(sy, xmap);
      Store(y, band.min_x);
      if (!ContinueAfterRow(observer, count)) return false;
    }
    return true;
  }

 private:
  // 8-bit YUV to 8-bit RGB at the same place: the display's row kernel from
  // the source rows straight into the target's planes.
  bool WorkDirect(const Rect& band, IRowObserver* observer) {
    const uint32_t count = band.max_x - band.min_x + 1;
    packed_.assign(count, 0);
    for (uint32_t y = band.min_y; y <= band.max_y; ++y) {
      fast_yuv_->ConvertRow(source_.GetPlane(0).Row<uint8_t>(y) + band.min_x,
                            source_.GetPlane(1).Row<uint8_t>(y) + band.min_x,
                            source_.GetPlane(2).Row<uint8_t>(y) + band.min_x, packed_.data(), count);
      uint8_t* r = target_.MutablePlane(0).Row<uint8_t>(y) + band.min_x;
      uint8_t* g = target_.MutablePlane(1).Row<uint8_t>(y) + band.min_x;
      uint8_t* b = target_.MutablePlane(2).Row<uint8_t>(y) + band.min_x;
      for (uint32_t i = 0; i < count; ++i) {
        const uint32_t p = packed_[i];
        r[i] = static_cast<uint8_t>(p);
        g[i] = static_cast<uint8_t>(p >> 8);
        b[i] = static_cast<uint8_t>(p >> 16);
      }
      if (!ContinueAfterRow(observer, count)) return false;
    }
    return true;
  }

  void Gather(int64_t sy, const std::vector<int64_t>& xmap) {
    if (sy < 0) return;
    for (uint32_t k = 0; k < source_.PlaneCount(); ++k) {
      const Plane& plane = source_.GetPlane(k);
      uint32_t* out = rows_[k].data();
      DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
        const T* src = plane.Row<T>(static_cast<uint32_t>(sy));
        for (size_t i = 0; i < xmap.size(); ++i) out[i] = xmap[i] >= 0 ? src[xmap[i]] : 0;
      });
    }
  }

  void Convert(int64_t sy, const std::vector<int64_t>& xmap) {
    const size_t count = xmap.size();
    const std::array<uint32_t, 3> black = converter_.Black();
    if (fast_yuv_ != nullptr && sy >= 0) {
      // 8-bit YUV to RGB: the display's row kernel gives the same bytes.
      std::vector<uint8_t>& b = bytes_;
      b.resize(3 * count);
      for (size_t i = 0; i < count; ++i) {
        for (int k = 0; k < 3; ++k) b[k * count + i] = static_cast<uint8_t>(rows_[k][i]);
      }
      fast_yuv_->ConvertRow(b.data(), b.data() + count, b.data() + 2 * count, packed_.data(), count);
      for (size_t i = 0; i < count; ++i) {
        for (int k = 0; k < 3; ++k) rows_[k][i] = xmap[i] >= 0 ? (packed_[i] >> (8 * k)) & 0xFF : black[k];
      }
      return;
    }
    for (size_t i = 0; i < count; ++i) {
      std::array<uint32_t, 3> c = black;
      if (sy >= 0 && xmap[i] >= 0) {
        c = {rows_[0][i], rows_[1][i], rows_[2][i]};
        converter_.Convert(c);
      }
      for (int k = 0; k < 3; ++k) rows_[k][i] = c[k];
    }
  }

  void Store(uint32_t y, uint32_t x0) {
    // Significant depths: 10-bit values keep their top 8 bits in an 8-bit target.
    const uint32_t from_bits = source_.SignificantBits();
    const uint32_t to_bits = target_.SignificantBits();
    for (uint32_t k = 0; k < target_.PlaneCount(); ++k) {
      Plane& plane = target_.MutablePlane(k);
      const uint32_t* in = rows_[k].data();
      const size_t count = rows_[k].size();
      DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
        T* dst = plane.Row<T>(y) + x0;
        for (size_t i = 0; i < count; ++i) dst[i] = static_cast<T>(ChangeDepth(in[i], from_bits, to_bits));
      });
    }
  }

  const CImageConcreteBase& source_;
  CImageConcreteBase& target_;  // each job writes only its band
  const Canvas& canvas_;
  const FamilyConverter& converter_;
  const CYuvToRgbRows* fast_yuv_;
  std::array<std::vector<uint32_t>, 3> rows_;
  std::vector<uint8_t> bytes_;
  std::vector<uint32_t> packed_;
};

}  // namespace

ConvertRun RunConvert(const CImageConcreteBase& source, const ConvertRequest& request, JobRunner& runner,
                      IProgressSink* progress) {
  ConvertRun result;
  uint32_t sw = 0, sh = 0;
  source.GetSize(sw, sh);
  const uint32_t width = request.resize ? request.size.width : sw;
  const uint32_t height = request.resize ? request.size.height : sh;
  CNullLineSink quiet;
  std::unique_ptr<CImageConcreteBase> target = LoadWithFormat(request.target, nullptr, 0, width, height, quiet);
  if (!target || width == 0 || height == 0) return result;
  target->SetRawLayout(request.target.raw);

  const bool output_larger = width >= sw && height >= sh;
  const int64_t sign = output_larger ? 1 : -1;
  Canvas canvas{{sign * request.offset.x, sw, request.tiled}, {sign * request.offset.y, sh, request.tiled}};
  canvas.identity = width == sw && height == sh && request.offset.x == 0 && request.offset.y == 0;
  const FamilyConverter converter(FamilyOf(ColorKindOf(source)), FamilyOf(request.target.color_kind),
                                  source.SignificantBits(), request.yuv_to_rgb, request.rgb_to_yuv);
  std::unique_ptr<CYuvToRgbRows> fast_yuv;
  if (converter.YuvToRgbOnly() && source.SignificantBits() == 8 && source.GetBitsPerComponent() == 8) {
    fast_yuv = std::make_unique<CYuvToRgbRows>(request.yuv_to_rgb);
  }
  CImageConcreteBase& out = *target;
  const Rect region{0, 0, width - 1, height - 1};
  result.run = RunInBands(region, &runner, progress, [&](const Rect& band, IRowObserver* observer) {
    return CConvertBand(source, out, canvas, converter, fast_yuv.get()).Work(band, observer);
  });
  if (result.run.ok) result.image = std::move(target);
  return result;
}

}  // namespace korvanel
