#pragma once

#include "image/image_concrete_base.h"

namespace korvanel {

// One component (luma).
class CImageGray : public CImageConcreteBase {
 public:
  CImageGray() : CImageConcreteBase(ColorKind::Gray) {}
  bool Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
            std::string_view layout, int32_t bpp) override;

 protected:
  std::unique_ptr<CImageConcreteBase> NewEmptyLike() const override;
  bool RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const override;
  WriterLayout DescribeForWriter() const override;
};

}  // namespace korvanel
