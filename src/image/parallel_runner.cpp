#include "image/parallel_runner.h"

#include <chrono>

namespace korvanel {

BandRun RunAsOneBand(const Rect& region, const BandKernel& kernel) {
  const auto start = std::chrono::steady_clock::now();
  BandRun run;
  // A band past its end (as SplitRegion gives spare jobs) has nothing to do.
  const bool empty = region.min_x > region.max_x || region.min_y > region.max_y;
  run.ok = empty || kernel(region, nullptr);
  run.elapsed_ms = static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                             std::chrono::steady_clock::now() - start)
                                             .count());
  return run;
}

BandRun RunInBands(const Rect& region, IParallelRunner* runner, IProgressSink* progress,
                   const BandKernel& kernel, uint64_t min_pixels) {
  const uint64_t pixels = region.Width() * region.Height();
  if (runner == nullptr || runner->BandCount() <= 1 || pixels < min_pixels) {
    return RunAsOneBand(region, kernel);
  }
  return runner->RunBands(region, progress, kernel);
}

}  // namespace korvanel
