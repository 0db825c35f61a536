#include "ops/diff_operation.h"

#include "image/image_diff.h"
#include "image/image_gray.h"
#include "ops/worked_region.h"

namespace korvanel {

uint32_t DiffRoutineCode(uint32_t type_index) {
  constexpr uint32_t kCodes[] = {0, kDiffMasked, kDiffAbsolute, kDiffMasked | kDiffAbsolute};
  return type_index < 4 ? kCodes[type_index] : 0;
}

DiffRun RunDiff(const CImageConcreteBase& left, const CImageConcreteBase& right, uint32_t code,
                JobRunner& runner, IProgressSink* progress) {
  DiffRun result;
  uint32_t width = 0, height = 0;
  left.GetSize(width, height);
  Plane out;
  if (width == 0 || height == 0 || !out.Allocate(8, width, height, true)) return result;
  const Rect region = WorkedRegion(left);
  result.run = RunInBands(region, &runner, progress, [&](const Rect& band, IRowObserver* observer) {
    return DiffBand(left, right, code, band, out, observer);
  });
  if (!result.run.ok) return result;
  auto image = std::make_unique<CImageGray>();
  std::vector<Plane> planes;
  planes.push_back(std::move(out));
  if (!image->AdoptPlanes(std::move(planes))) return result;
  if (!left.GetRegionOfInterest().IsNone()) image->SetRegionOfInterest(region);
  result.image = std::move(image);
  return result;
}

}  // namespace korvanel
