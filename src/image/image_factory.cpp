#include "image/image_factory.h"

#include <cstring>
#include <new>
#include <vector>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"

namespace korvanel {

namespace {

struct YuvCandidate {
  std::unique_ptr<CImageYuv> (*create)();
  const char* matched;
};

template <typename T>
std::unique_ptr<CImageYuv> Make() {
  return std::make_unique<T>();
}

constexpr YuvCandidate kYuvOrder[] = {
    {&Make<CImageYuv444>, "Matched YUV-444"},
    {&Make<CImageYuv422>, "Matched YUV-422"},
    {&Make<CImageYuv420>, "Matched YUV-420 (SP)"},
    {&Make<CImageYuv>, "Matched YUV (user-defined)"},
};

std::unique_ptr<CImageConcreteBase> LoadYuv(const FormatExpression& format, uint8_t* data,
                                            uint64_t byte_count, uint32_t width, uint32_t height,
                                            ILineSink& log) {
  // A big-endian try swaps the bytes in place, so every later try starts from
  // a pristine copy.
  std::vector<uint8_t> pristine;
  const bool swaps = format.bpp < -8 && data != nullptr;
  if (swaps) {
    try {
      pristine.assign(data, data + byte_count);
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }
  bool first = true;
  for (const YuvCandidate& candidate : kYuvOrder) {
    std::unique_ptr<CImageYuv> image = candidate.create();
    if (!image->CheckLayout(format.layout)) continue;
    if (swaps && !first) std::memcpy(data, pristine.data(), pristine.size());
    first = false;
    image->SetPacking(format.packing);
    if (image->Load(data, byte_count, width, height, format.layout, format.bpp)) {
      log.AddLine(candidate.matched);
      return image;
    }
  }
  return nullptr;
}

}  // namespace

std::unique_ptr<CImageConcreteBase> CreateImageOfKind(ColorKind kind) {
  switch (kind) {
    case ColorKind::Rgb: return std::make_unique<CImageRgb>();
    case ColorKind::Yuv: return std::make_unique<CImageYuv>();
    case ColorKind::Gray: return std::make_unique<CImageGray>();
  }
  return nullptr;
}

std::unique_ptr<CImageConcreteBase> LoadWithFormat(const FormatExpression& format, uint8_t* data,
                                                   uint64_t byte_count, uint32_t width,
                                                   uint32_t height, ILineSink& log) {
  if (format.color_kind == ColorKind::Yuv) {
    return LoadYuv(format, data, byte_count, width, height, log);
  }
  std::unique_ptr<CImageConcreteBase> image = CreateImageOfKind(format.color_kind);
  if (!image || !image->Load(data, byte_count, width, height, format.layout, format.bpp)) {
    return nullptr;
  }
  return image;
}

}  // namespace korvanel
