#pragma once

// The one way band kernels run in parallel: a kernel over one band of a
// region, handed to a runner that cuts the region into bands and spreads
// them over its threads, with progress and a stop request. Image code sees
// only this interface; the job runner over the worker pool implements it.
// Code that gets no runner runs the whole region as one band on the calling
// thread.

#include <cstdint>
#include <functional>

#include "image/progress_sink.h"
#include "image/region.h"
#include "image/row_observer.h"

namespace korvanel {

// The kernel over `band` (inclusive). It calls observer->RowDone after every
// row (ContinueAfterRow) and stops, returning false, when that says so; it
// returns false as well on a failure of its own. Each call must write only
// the data of its own band.
using BandKernel = std::function<bool(const Rect& band, IRowObserver* observer)>;

// Below this many pixels a region runs as one band: handing bands over
// costs more than the work.
inline constexpr uint64_t kParallelMinPixels = 2001;

struct BandRun {
  bool ok = false;
  bool aborted = false;   // stopped by a cancel request or a failing band
  bool parallel = false;  // the bands ran on the runner's threads
  uint64_t elapsed_ms = 0;
};

class IParallelRunner {
 public:
  virtual ~IParallelRunner() = default;
  // How many bands a region is cut into (1: no parallelism).
  virtual uint32_t BandCount() const = 0;
  // Runs `kernel` over bands of consecutive whole rows of `region` and
  // returns when every band has ended. `progress` (may be null) hears the summed rows' pixels.
  virtual BandRun RunBands(const Rect& region, IProgressSink* progress, const BandKernel& kernel) = 0;
};

// Runs `kernel` over `region`: in bands on `runner` when there is one with
// more than one band and the region holds at least `min_pixels` pixels, else
// as one band on the calling thread (no progress, no stop request).
BandRun RunInBands(const Rect& region, IParallelRunner* runner, IProgressSink* progress,
                   const BandKernel& kernel, uint64_t min_pixels = kParallelMinPixels);

// The whole region as one band on the calling thread.
BandRun RunAsOneBand(const Rect& region, const BandKernel& kernel);

}  // namespace korvanel
