#include "image/image_factory.h"


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

// Every class checks layout and size before it swaps big-endian bytes in
// place, so a refused try leaves the bytes as the next try needs them.
std::unique_ptr<CImageConcreteBase> LoadYuv(const FormatExpression& format, uint8_t* data,
                                            uint64_t byte_count, uint32_t width, uint32_t height,
                                            ILineSink& log, IParallelRunner* runner) {
  for (const YuvCandidate& candidate : kYuvOrder) {
    std::unique_ptr<CImageYuv> image = candidate.create();
    if (!image->CheckLayout(format.layout)) continue;
    image->SetPacking(format.packing);
    image->SetParallelRunner(runner);
    const bool loaded = image->Load(data, byte_count, width, height, format.layout, format.bpp);
    image->SetParallelRunner(nullptr);
    if (loaded) {
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
                                                   uint32_t height, ILineSink& log,
                                                   IParallelRunner* runner) {
  if (format.color_kind == ColorKind::Yuv) {
    return LoadYuv(format, data, byte_count, width, height, log, runner);
  }
  std::unique_ptr<CImageConcreteBase> image = CreateImageOfKind(format.color_kind);
  if (!image) return nullptr;
  // The runner serves this load only; the image keeps no pointer to it.
  image->SetParallelRunner(runner);
  const bool loaded = image->Load(data, byte_count, width, height, format.layout, format.bpp);
  image->SetParallelRunner(nullptr);
  return loaded ? std::move(image) : nullptr;
}

}  // namespace korvanel
