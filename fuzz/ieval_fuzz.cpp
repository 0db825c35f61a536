// I-Eval: stage preparation and evaluation of arbitrary expressions over two
// tiny fixed images, on the calling thread.
#include <fuzzer/FuzzedDataProvider.h>

#include <memory>
#include <vector>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "ops/ieval_operation.h"

namespace {

template <typename Image>
std::unique_ptr<Image> Tiny(uint32_t seed) {
  auto image = std::make_unique<Image>();
  std::vector<korvanel::Plane> planes(image->ComponentCount());
  for (korvanel::Plane& plane : planes) {
    plane.Allocate(8, 5, 3);
    for (uint32_t i = 0; i < 15; ++i) plane.bytes()[i] = static_cast<uint8_t>(i * 37 + seed);
  }
  image->AdoptPlanes(std::move(planes));
  return image;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const auto gray = Tiny<korvanel::CImageGray>(3);
  static const auto rgb = Tiny<korvanel::CImageRgb>(11);
  FuzzedDataProvider input(data, size);
  korvanel::IEvalRequest request;
  request.out_of_range = input.ConsumeRandomLengthString(12);
  request.output_override = input.ConsumeRandomLengthString(8);
  request.expression = input.ConsumeRemainingBytesAsString();
  std::vector<const korvanel::CImageConcreteBase*> images = {gray.get(), rgb.get()};
  if (request.expression.size() % 2 == 1) std::swap(images[0], images[1]);
  korvanel::JobRunner runner(nullptr);
  korvanel::RunImageEval(request, images, runner);
  return 0;
}
