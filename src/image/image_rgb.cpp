#include "image/image_rgb.h"

#include "image/format_label.h"

namespace korvanel {

namespace {
constexpr const char* kRgbLabels[] = {"RGBx8", "RGBx16", "RGBx32"};
}  // namespace

bool CImageRgb::Load(uint8_t*, uint64_t, uint32_t, uint32_t, std::string_view, int32_t) {
  return false;
}

std::string CImageRgb::FormatLabel() const { return LabelForBits(kRgbLabels, bits_); }

std::unique_ptr<CImageConcreteBase> CImageRgb::NewEmptyLike() const {
  auto out = std::make_unique<CImageRgb>();
  out->from_picture_ = from_picture_;
  return out;
}

}  // namespace korvanel
