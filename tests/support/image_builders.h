#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "image/image_concrete_base.h"
#include "image/image_gray.h"
#include "image/plane.h"
#include "image/sample_type.h"

namespace korvanel::test {

// A plane whose sample at (x, y) is value(x, y), written sample by sample.
inline Plane MakePlane(uint32_t bits, uint32_t width, uint32_t height,
                       const std::function<uint32_t(uint32_t, uint32_t)>& value) {
  Plane plane;
  plane.Allocate(bits, width, height);
  DispatchBits(bits, [&]<typename T>(std::type_identity<T>) {
    for (uint32_t y = 0; y < height; ++y) {
      for (uint32_t x = 0; x < width; ++x) plane.Row<T>(y)[x] = static_cast<T>(value(x, y));
    }
  });
  return plane;
}

// Fills `image` with planes where component c at (x, y) holds c*1000 + y*100 + x.
template <typename Image>
std::unique_ptr<Image> MakeImage(uint32_t bits, uint32_t width, uint32_t height) {
  auto image = std::make_unique<Image>();
  std::vector<Plane> planes;
  for (uint32_t c = 0; c < image->ComponentCount(); ++c) {
    planes.push_back(MakePlane(bits, width, height,
                               [c](uint32_t x, uint32_t y) { return c * 1000 + y * 100 + x; }));
  }
  image->AdoptPlanes(std::move(planes));
  return image;
}

// A grey image whose sample at (x, y) is value(x, y).
inline std::unique_ptr<CImageGray> MakeGrayImage(
    uint32_t bits, uint32_t width, uint32_t height,
    const std::function<uint32_t(uint32_t, uint32_t)>& value) {
  auto image = std::make_unique<CImageGray>();
  std::vector<Plane> planes;
  planes.push_back(MakePlane(bits, width, height, value));
  image->AdoptPlanes(std::move(planes));
  return image;
}

// A grey image of one row holding `values`.
template <typename Image>
std::unique_ptr<Image> MakeRowImage(uint32_t bits, const std::vector<uint32_t>& values) {
  auto image = std::make_unique<Image>();
  std::vector<Plane> planes;
  planes.push_back(MakePlane(bits, static_cast<uint32_t>(values.size()), 1,
                             [&](uint32_t x, uint32_t) { return values[x]; }));
  image->AdoptPlanes(std::move(planes));
  return image;
}

// Every sample of `plane` in raster order.
inline std::vector<uint32_t> PlaneSamples(const Plane& plane) {
  std::vector<uint32_t> out;
  for (uint32_t y = 0; y < plane.height(); ++y) {
    for (uint32_t x = 0; x < plane.width(); ++x) out.push_back(plane.SampleAt(x, y));
  }
  return out;
}

}  // namespace korvanel::test
