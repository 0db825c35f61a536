#pragma once

// Hands the jobs of one operation to the pool and reports progress. Without
// a pool (max_process_threads -1) the jobs run one after the other on the
// calling thread, without progress and without cancel.
//
// Two uses:
// - Band kernels (IParallelRunner::RunBands): one CBandJob per worker over
//   consecutive bands of the region. Each call keeps its jobs to itself, so
//   several threads may call it at once; a call that finds the pool busy
//   with another run does its bands on its own thread.
// - Operations with jobs of their own (I-Eval stages, saving): build the
//   jobs (JobSlots() of them for a parallel operation, one for a single-job
//   operation), SplitRegion over the worked region, SetJobs, RunJobs; then
//   read Aborted() and ElapsedMs(). RunJobs waits while another thread's run
//   holds the pool. One thread at a time drives this sequence.

#include <atomic>
#include <cstdint>
#include <memory>
#include <vector>

#include "image/parallel_runner.h"
#include "image/progress_sink.h"
#include "ops/image_processor_thread.h"
#include "ops/run_host.h"
#include "ops/sync_event.h"
#include "ops/worker_pool.h"

namespace korvanel {

class JobRunner final : public IParallelRunner {
 public:
  static constexpr uint32_t kDefaultPeriodMs = 250;

  explicit JobRunner(WorkerPool* pool) : pool_(pool) {}
  JobRunner(const JobRunner&) = delete;
  JobRunner& operator=(const JobRunner&) = delete;

  // How many jobs a parallel operation should build.
  uint32_t JobSlots() const { return pool_ != nullptr ? pool_->UsableWorkers() : 1; }
  WorkerPool* Pool() { return pool_; }

  // IParallelRunner: one band per job slot.
  uint32_t BandCount() const override { return JobSlots(); }
  BandRun RunBands(const Rect& region, IProgressSink* progress, const BandKernel& kernel) override;

  // The jobs stay owned by the caller and keep their order.
  void SetJobs(std::vector<IImageProcessorThread*> jobs) { jobs_ = std::move(jobs); }
  // `sink` null: no progress thread.
  void SetProgressSink(IProgressSink* sink, uint32_t period_ms = kDefaultPeriodMs) {
    sink_ = sink;
    period_ms_ = period_ms;
  }

  // Runs every job and returns when all have finished; true unless aborted.
  // Jobs beyond the free workers are told a null cancel flag and do not run.
  bool RunJobs();
  // Callable from any thread while a run is under way.
  void Cancel();
  bool Aborted() const { return aborted_; }
  uint64_t ElapsedMs() const { return elapsed_ms_; }
  // The progress sum the progress thread reported last (0 when it never ran).
  uint64_t LastProgressSum() const { return last_sum_.load(std::memory_order_acquire); }

  // Runs with a progress sink go through `host` (null: on the calling
  // thread). Runs without a sink never do: they are short or nested.
  void SetRunHost(IRunHost* host) { host_ = host; }
  IRunHost* RunHost() const { return host_; }

 private:
  struct PoolRun {
    bool aborted = false;
    uint64_t elapsed_ms = 0;
  };
  bool RunWithoutPool();
  // Attaches `jobs`, runs the pool with a progress thread when `sink` is
  // set, and reports. The caller holds the pool's lease.
  PoolRun RunOnPool(const std::vector<IImageProcessorThread*>& jobs, IProgressSink* sink,
                    uint32_t period_ms);
  void RunWithProgress(const std::vector<IImageProcessorThread*>& jobs, IProgressSink& sink,
                       uint32_t period_ms);

  WorkerPool* pool_;
  std::vector<IImageProcessorThread*> jobs_;
  IProgressSink* sink_ = nullptr;
  IRunHost* host_ = nullptr;
  uint32_t period_ms_ = kDefaultPeriodMs;
  std::atomic<uint64_t> last_sum_{0};
  bool aborted_ = false;
  uint64_t elapsed_ms_ = 0;
};

}  // namespace korvanel
