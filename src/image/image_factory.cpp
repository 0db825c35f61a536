#include "image/image_factory.h"

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "image/image_yuv.h"

namespace korvanel {

namespace {

// Every class checks layout and size before it swaps big-endian bytes in
// place, so a refused try leaves the bytes as the next try needs them.
std::unique_ptr<CImageConcreteBase> LoadYuv(const FormatExpression& format, uint8_t* data,
                                            uint64_t byte_count, uint32_t width, uint32_t height,
                                            ILineSink& log, IParallelRunner* runner) {
  for (const YuvSampling* sampling : kYuvLoadOrder) {
    if (!sampling->accepts(CountsOf(format.components))) continue;
    auto image = std::make_unique<CImageYuv>(*sampling);
    image->DescribeLayout(format);
    image->SetParallelRunner(runner);
    const bool loaded = image->Load(data, byte_count, width, height, format.layout, format.bpp);
    image->SetParallelRunner(nullptr);
    if (loaded) {
      log.AddLine(sampling->matched);
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

std::unique_ptr<CImageConcreteBase> CreateImageForFormat(const FormatExpression& format) {
  std::unique_ptr<CImageConcreteBase> image;
  if (format.color_kind == ColorKind::Yuv) {
    for (const YuvSampling* sampling : kYuvLoadOrder) {
      if (!sampling->accepts(CountsOf(format.components))) continue;
      image = std::make_unique<CImageYuv>(*sampling);
      break;
    }
  } else {
    image = CreateImageOfKind(format.color_kind);
  }
  if (image) {
    image->DescribeLayout(format);
    image->SetRawLayout(format.raw);
  }
  return image;
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
