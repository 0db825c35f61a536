#include "image/image_gray.h"

#include "image/format_label.h"

namespace korvanel {

namespace {
constexpr const char* kGrayLabels[] = {"Y8", "Y16", "Y32"};
}  // namespace

bool CImageGray::Load(uint8_t*, uint64_t, uint32_t, uint32_t, std::string_view, int32_t) {
  return false;
}

bool CImageGray::GetSampleValues(int64_t x, int64_t y, std::array<uint32_t, 3>& values) const {
  if (readout_plane_.empty()) return CImageConcreteBase::GetSampleValues(x, y, values);
  if (x < 0 || y < 0 || x >= readout_plane_.width() || y >= readout_plane_.height()) return false;
  const uint32_t value = readout_plane_.SampleAt(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
  values = {value, value, value};
  return true;
}

std::string CImageGray::FormatLabel() const { return LabelForBits(kGrayLabels, bits_); }

std::unique_ptr<CImageConcreteBase> CImageGray::NewEmptyLike() const {
  return std::make_unique<CImageGray>();
}

}  // namespace korvanel
