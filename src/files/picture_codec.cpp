#include "files/picture_codec.h"

#include <QImage>
#include <QImageReader>
#include <QString>

#include "image/text_util.h"

namespace korvanel {

bool IsPictureExtension(std::string_view extension) {
  if (extension.empty()) return false;
  const std::string lower = ToLowerAscii(extension);
  for (const std::string& word : SplitTokens(kPictureExtensions, " ")) {
    if (word == lower) return true;
  }
  return false;
}

std::unique_ptr<CImageRgb> DecodePicture(const std::string& path) {
  QImageReader reader(QString::fromStdString(path));
  reader.setAutoTransform(true);
  QImage decoded = reader.read();
  if (decoded.isNull()) return nullptr;
  const QImage rgb = decoded.convertToFormat(QImage::Format_RGB888);
  const auto width = static_cast<uint32_t>(rgb.width());
  const auto height = static_cast<uint32_t>(rgb.height());
  std::vector<Plane> planes(3);
  for (Plane& plane : planes) {
    if (!plane.Allocate(8, width, height)) return nullptr;
  }
  for (uint32_t y = 0; y < height; ++y) {
    const uchar* line = rgb.constScanLine(static_cast<int>(y));
    uint8_t* r = planes[0].Row<uint8_t>(y);
    uint8_t* g = planes[1].Row<uint8_t>(y);
    uint8_t* b = planes[2].Row<uint8_t>(y);
    for (uint32_t x = 0; x < width; ++x) {
      r[x] = line[3 * x];
      g[x] = line[3 * x + 1];
      b[x] = line[3 * x + 2];
    }
  }
  auto image = std::make_unique<CImageRgb>();
  if (!image->AdoptPlanes(std::move(planes))) return nullptr;
  image->SetFromPicture(true);
  return image;
}

}  // namespace korvanel
