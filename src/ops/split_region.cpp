#include "ops/split_region.h"

namespace korvanel {

namespace {

void SplitAlong(IImageProcessorThread* const* jobs, uint32_t count, const Rect& rect, bool rows) {
  if (count == 0) return;
  if (count == 1) {
    jobs[0]->SetRegion(rect);
    return;
  }
  const uint64_t size = (rows ? rect.Height() : rect.Width()) / count;
  uint64_t start = rows ? rect.min_y : rect.min_x;
  for (uint32_t i = 0; i + 1 < count; ++i) {
    if (size == 0) {
      jobs[i]->SetRegion(kEmptyBand);
      continue;
    }
    Rect band = rect;
    const auto last = static_cast<uint32_t>(start + size - 1);
    if (rows) {
      band.min_y = static_cast<uint32_t>(start);
      band.max_y = last;
    } else {
      band.min_x = static_cast<uint32_t>(start);
      band.max_x = last;
    }
    jobs[i]->SetRegion(band);
    start += size;
  }
  Rect band = rect;
  (rows ? band.min_y : band.min_x) = static_cast<uint32_t>(start);
  jobs[count - 1]->SetRegion(band);
}

}  // namespace

void SplitRegion(IImageProcessorThread* const* jobs, uint32_t count, const Rect& rect) {
  SplitAlong(jobs, count, rect, rect.Width() <= rect.Height());
}

void SplitRows(IImageProcessorThread* const* jobs, uint32_t count, const Rect& rect) {
  SplitAlong(jobs, count, rect, true);
}

}  // namespace korvanel
