#include "image/image_diff.h"

#include <algorithm>

#include "image/sample_type.h"

namespace korvanel {

namespace {

bool MaskBit(const std::vector<uint32_t>& mask, uint64_t pixel) {
  return (mask[pixel / 32] >> (pixel % 32)) & 1u;
}

template <typename T>
uint32_t AbsDelta(T a, T b) {
  const T d = a > b ? static_cast<T>(a - b) : static_cast<T>(b - a);
  return d > 255 ? 255u : static_cast<uint32_t>(d);
}

// The difference of one pixel: 0/255 or the saturated largest delta.
template <typename T, size_t N>
uint8_t PixelDelta(const T (&a)[N], const T (&b)[N], bool absolute) {
  if (!absolute) {
    for (size_t c = 0; c < N; ++c) {
      if (a[c] != b[c]) return 255;
    }
    return 0;
  }
  uint32_t delta = 0;
  for (size_t c = 0; c < N; ++c) delta = std::max(delta, AbsDelta(a[c], b[c]));
  return static_cast<uint8_t>(delta);
}

template <typename T, size_t N>
void DiffRow(const CImageConcreteBase& left, const CImageConcreteBase& right, uint32_t code,
             uint32_t y, uint32_t x0, uint32_t x1, uint8_t* out) {
  const T* l[N];
  const T* r[N];
  for (size_t c = 0; c < N; ++c) {
    l[c] = left.GetPlane(static_cast<uint32_t>(c)).Row<T>(y);
    r[c] = right.GetPlane(static_cast<uint32_t>(c)).Row<T>(y);
  }
  uint32_t width = 0, height = 0;
  left.GetSize(width, height);
  const bool absolute = (code & kDiffAbsolute) != 0;
  const bool masked = (code & kDiffMasked) != 0;
  const uint64_t row_pixel = uint64_t{y} * width;
  for (uint32_t x = x0; x <= x1; ++x) {
    if (masked && !(MaskBit(left.SelectionMask(), row_pixel + x) &&
                    MaskBit(right.SelectionMask(), row_pixel + x))) {
      continue;
    }
    T a[N], b[N];
    for (size_t c = 0; c < N; ++c) {
      a[c] = l[c][x];
      b[c] = r[c][x];
    }
    out[x] = PixelDelta(a, b, absolute);
  }
}

}  // namespace

bool DiffBand(const CImageConcreteBase& left, const CImageConcreteBase& right, uint32_t code,
              const Rect& band, Plane& out, IRowObserver* observer) {
  uint32_t width = 0, height = 0, rw = 0, rh = 0;
  left.GetSize(width, height);
  right.GetSize(rw, rh);
  if (width != rw || height != rh || left.PlaneCount() != right.PlaneCount() ||
      left.GetBitsPerComponent() != right.GetBitsPerComponent() || out.bits() != 8 ||
      out.width() != width || out.height() != height || band.max_x >= width || band.max_y >= height ||
      band.min_x > band.max_x || band.min_y > band.max_y) {
    return false;
  }
  // Without a mask on either side there is nothing to mask with.
  if (!left.HasSelectionMask() || !right.HasSelectionMask()) code &= ~uint32_t{kDiffMasked};
  bool finished = true;
  const bool three = left.PlaneCount() == 3;
  const bool dispatched = DispatchBits(left.GetBitsPerComponent(), [&]<typename T>(std::type_identity<T>) {
    for (uint32_t y = band.min_y; y <= band.max_y && finished; ++y) {
      if (three) DiffRow<T, 3>(left, right, code, y, band.min_x, band.max_x, out.Row<uint8_t>(y));
      else DiffRow<T, 1>(left, right, code, y, band.min_x, band.max_x, out.Row<uint8_t>(y));
      finished = ContinueAfterRow(observer, band.max_x - band.min_x + 1);
    }
  });
  return dispatched && finished;
}

}  // namespace korvanel
