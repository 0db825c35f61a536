#include "ops/band_operation.h"

#include <chrono>

#include "ops/split_region.h"

namespace korvanel {

BandRun RunBandJobs(const Rect& region, JobRunner& runner, IProgressSink* progress,
                    const std::function<std::unique_ptr<CBandJob>()>& make_job) {
  BandRun run;
  const uint64_t pixels = region.Width() * region.Height();
  if (runner.Pool() == nullptr || pixels < kParallelMinPixels) {
    const auto start = std::chrono::steady_clock::now();
    std::unique_ptr<CBandJob> job = make_job();
    job->SetRegion(region);
    run.ok = job->Run();
    run.elapsed_ms = static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                               std::chrono::steady_clock::now() - start)
                                               .count());
    return run;
  }
  run.parallel = true;
  std::vector<std::unique_ptr<CBandJob>> jobs;
  std::vector<IImageProcessorThread*> pointers;
  for (uint32_t j = 0; j < runner.JobSlots(); ++j) {
    jobs.push_back(make_job());
    pointers.push_back(jobs.back().get());
  }
  SplitRegion(pointers.data(), static_cast<uint32_t>(pointers.size()), region);
  runner.SetJobs(pointers);
  runner.SetProgressSink(progress);
  run.ok = runner.RunJobs();
  runner.SetProgressSink(nullptr);
  run.aborted = runner.Aborted();
  run.elapsed_ms = runner.ElapsedMs();
  return run;
}

}  // namespace korvanel
