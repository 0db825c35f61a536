#pragma once

// Runs a band-job operation over a region: as one job per worker when there
// is a pool and the region holds at least kParallelMinPixels pixels, else as
// a single job on the calling thread.

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "ops/band_job.h"
#include "ops/job_runner.h"
#include "ops/progress_sink.h"

namespace korvanel {

inline constexpr uint64_t kParallelMinPixels = 2001;

struct BandRun {
  bool ok = false;
  bool aborted = false;
  bool parallel = false;
  uint64_t elapsed_ms = 0;
};

// `make_job` builds one job (called once per worker, or once).
BandRun RunBandJobs(const Rect& region, JobRunner& runner, IProgressSink* progress,
                    const std::function<std::unique_ptr<CBandJob>()>& make_job);

}  // namespace korvanel
