#include "image/image_gray.h"

#include <cstdlib>

#include "image/display_conversion.h"
#include "image/format_expression.h"
#include "image/raw_unpack.h"

namespace korvanel {

bool CImageGray::Load(uint8_t* data, uint64_t byte_count, uint32_t width, uint32_t height,
                      std::string_view layout, int32_t bpp) {
  if (layout != "Y") return false;
  const uint64_t expected = PlanarFrameBytes(width, height, BppBytes(bpp), 1);
  // The input is swapped while it is copied: one pass instead of two.
  std::vector<Plane> planes = PrepareLoad(data, byte_count, expected, bpp, width, height, 1,
                                          InputSwap::ByCaller);
  if (planes.empty()) return false;
  if (data != nullptr) CopySwappedSamplesOfPlane(data, bpp, planes[0]);
  FinishLoad(std::move(planes), byte_count, bpp);
  return true;
}

std::unique_ptr<CImageConcreteBase> CImageGray::NewEmptyLike() const {
  return std::make_unique<CImageGray>();
}

bool CImageGray::RenderDisplay(DisplayRendition& out, IParallelRunner* runner) const {
  return BuildGrayRendition(ShownPlanes()[0], out, runner, RawLayout().bits);
}

WriterLayout CImageGray::DescribeForWriter() const {
  WriterLayout layout;
  layout.planes = {&planes_[0]};
  layout.letters.push_back('Y');
  layout.order = {0};
  layout.gray = true;
  return layout;
}

}  // namespace korvanel
