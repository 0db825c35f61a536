#pragma once

#include "image/image_concrete_base.h"

namespace korvanel {

// One component (luma). May hold a second plane that the readout shows
// instead of the first, left there by an operation.
class CImageGray : public CImageConcreteBase {
 public:
  CImageGray() = default;
  bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
            std::string_view layout, int32_t bpp) override;
  bool GetSampleValues(int64_t x, int64_t y, std::array<uint32_t, 3>& values) const override;
  const char* TypeName() const override { return "GRAY"; }
  std::string FormatLabel() const override;
  uint32_t ComponentCount() const override { return 1; }

  void SetReadoutPlane(Plane plane) { readout_plane_ = std::move(plane); }
  bool HasReadoutPlane() const { return !readout_plane_.empty(); }

 protected:
  std::unique_ptr<CImageConcreteBase> NewEmptyLike() const override;
  bool RenderDisplay(DisplayRendition& out) const override;
  WriterLayout DescribeForWriter() const override;

 private:
  Plane readout_plane_;
};

}  // namespace korvanel
