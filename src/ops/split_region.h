#pragma once

#include <cstdint>

#include "image/region.h"
#include "ops/image_processor_thread.h"

namespace korvanel {

// A band with nothing in it: its minimum lies past its maximum, so a loop
// `for (y = min_y; y <= max_y; ++y)` does not run.
inline constexpr Rect kEmptyBand{1, 1, 0, 0};

inline bool IsEmptyBand(const Rect& band) {
  return band.min_x > band.max_x || band.min_y > band.max_y;
}

// Gives jobs[0 .. count-1] consecutive bands of `rect` (inclusive): rows when
// the rect is at least as tall as wide, else columns. Each band has the size
// of the integer quotient; the last job also takes the remainder. With more
// jobs than rows (or columns) the quotient is 0 and the first jobs get
// kEmptyBand instead of a band that wraps around.
void SplitRegion(IImageProcessorThread* const* jobs, uint32_t count, const Rect& rect);
// The same, always in bands of whole rows (band kernels read and write rows).
void SplitRows(IImageProcessorThread* const* jobs, uint32_t count, const Rect& rect);

}  // namespace korvanel
