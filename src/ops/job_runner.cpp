#include "ops/job_runner.h"

#include <thread>

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
  for (IImageProcessorThread* job : jobs_) job->SetCancelFlag(pool_->AttachJob(job));
  last_sum_.store(0, std::memory_order_release);

  if (sink_ == nullptr) {
    pool_->Run();
  } else {
    if (!progress_event_) {
      progress_event_ = std::make_unique<CEvent>(EventReset::Manual);
    } else {
      progress_event_->Reset();
    }
    std::thread progress(&JobRunner::ProgressLoop, this);
    pool_->Run();
    progress_event_->Set();
    progress.join();
  }
  aborted_ = pool_->Aborted();
  elapsed_ms_ = pool_->ElapsedMs();
  return !aborted_;
}

void JobRunner::ProgressLoop() {
  while (!progress_event_->WaitFor(std::chrono::milliseconds(period_ms_))) {
    uint64_t sum = 0;
    for (const IImageProcessorThread* job : jobs_) sum += job->GetProgress();
    const auto elapsed = std::chrono::duration_cast<std::chrono::milliseconds>(
                             std::chrono::steady_clock::now() - pool_->StartTime())
                             .count();
    sink_->OnProgress(static_cast<uint64_t>(elapsed < 0 ? 0 : elapsed), sum);
    last_sum_.store(sum, std::memory_order_release);
  }
}

void JobRunner::Cancel() {
  if (pool_ != nullptr) pool_->Cancel();
}

}  // namespace korvanel
