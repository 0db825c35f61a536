#include "ops/job_runner.h"

#include <mutex>
#include <thread>

#include "ops/band_job.h"
#include "ops/split_region.h"

namespace korvanel {

bool JobRunner::RunWithoutPool() {
  const auto start = std::chrono::steady_clock::now();
  aborted_ = false;
  for (IImageProcessorThread* job : jobs_) {
    job->SetCancelFlag(nullptr);
    if (!job->Run()) {
      aborted_ = true;
      break;
    }
  }
  const auto ns =
      std::chrono::duration_cast<std::chrono::nanoseconds>(std::chrono::steady_clock::now() - start)
          .count();
  elapsed_ms_ = static_cast<uint64_t>(static_cast<double>(ns) / 1e6 + 0.5);
  return !aborted_;
}

bool JobRunner::RunJobs() {
  if (pool_ == nullptr) return RunWithoutPool();
  std::unique_lock lease(pool_->RunLease());
  const PoolRun run = RunOnPool(jobs_, sink_, period_ms_);
  aborted_ = run.aborted;
  elapsed_ms_ = run.elapsed_ms;
  return !aborted_;
}

JobRunner::PoolRun JobRunner::RunOnPool(const std::vector<IImageProcessorThread*>& jobs,
                                        IProgressSink* sink, uint32_t period_ms) {
  for (IImageProcessorThread* job : jobs) job->SetCancelFlag(pool_->AttachJob(job));
  last_sum_.store(0, std::memory_order_release);

  if (sink == nullptr) {
    pool_->Run();
  } else if (host_ != nullptr) {
    host_->RunPool(sink->Title(), [&] { RunWithProgress(jobs, *sink, period_ms); });
  } else {
    RunWithProgress(jobs, *sink, period_ms);
  }
  return {pool_->Aborted(), pool_->ElapsedMs()};
}

void JobRunner::RunWithProgress(const std::vector<IImageProcessorThread*>& jobs, IProgressSink& sink,
                                uint32_t period_ms) {
  // "IpmTimerEvent": ends the progress thread.
  CEvent finished(EventReset::Manual);
  std::thread progress([&] {
    while (!finished.WaitFor(std::chrono::milliseconds(period_ms))) {
      uint64_t sum = 0;
      for (const IImageProcessorThread* job : jobs) sum += job->GetProgress();
      const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                               std::chrono::steady_clock::now() - pool_->StartTime())
                               .count();
      sink.OnProgress(static_cast<uint64_t>(elapsed < 0 ? 0 : elapsed), sum);
      last_sum_.store(sum, std::memory_order_release);
    }
  });
  pool_->Run();
  finished.Set();
  progress.join();
}

BandRun JobRunner::RunBands(const Rect& region, IProgressSink* progress, const BandKernel& kernel) {
  if (pool_ == nullptr) return RunAsOneBand(region, kernel);
  std::unique_lock lease(pool_->RunLease(), std::try_to_lock);
  if (!lease.owns_lock()) return RunAsOneBand(region, kernel);

  std::vector<std::unique_ptr<CBandJob>> jobs;
  std::vector<IImageProcessorThread*> pointers;
  for (uint32_t j = 0; j < JobSlots(); ++j) {
    jobs.push_back(std::make_unique<CBandJob>(kernel));
    pointers.push_back(jobs.back().get());
  }
  SplitRows(pointers.data(), static_cast<uint32_t>(pointers.size()), region);
  const PoolRun pool_run = RunOnPool(pointers, progress, kDefaultPeriodMs);
  BandRun run;
  run.parallel = true;
  run.aborted = pool_run.aborted;
  run.ok = !pool_run.aborted;
  run.elapsed_ms = pool_run.elapsed_ms;
  return run;
}

void JobRunner::Cancel() {
  if (pool_ != nullptr) pool_->Cancel();
}

}  // namespace korvanel
