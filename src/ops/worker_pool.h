#pragma once

// A fixed set of persistent worker threads. Each worker has a context: its
// work and done events, the job attached for the current run, its cancel
// request and an idle mark. Threads start lazily at their first run and then
// sleep on their work event between runs; the destructor joins them all.
//
// A run belongs to one calling thread: it attaches jobs (AttachJob), calls
// Run() and reads Aborted() and ElapsedMs() afterwards. Cancel() may come
// from any thread while the run is under way. Callers that share the pool
// between threads hold RunLease() from the first AttachJob to the last
// read, so that one run never sees another's jobs.
//
// The idle mark decides which workers a cancel request reaches. Run() sets
// every mark and clears it only for a worker whose thread it starts, so a
// failing job or Cancel() stops the other jobs only when their threads
// started in the same run; in later runs the run is still marked aborted and
// the operation reports so once every job has ended on its own.

#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ops/sync_event.h"
#include "ops/worker_thread.h"

namespace korvanel {

// Workers for the configured maximum: -1 gives none (operations run on the
// calling thread), 0 one per logical processor, n at most that many.
uint32_t PoolCapacityFor(int32_t max_process_threads, uint32_t logical_processors);
// The system's logical processor count (at least 1).
uint32_t LogicalProcessorCount();

class WorkerPool;

struct WorkerContext {
  WorkerPool* pool = nullptr;
  CEvent work{EventReset::Auto};
  CEvent done{EventReset::Auto};
  IWorkerThread* job = nullptr;  // written only while the worker sleeps
  CancelFlag cancel{0};
  std::atomic<uint8_t> last_result{1};
  uint32_t index = 0;
  std::thread thread;
  std::atomic<uint8_t> idle{1};
  // Diagnostics only: the thread carries the first as its name.
  std::string label;
  std::string work_label;
  std::string done_label;
};

class WorkerPool final {
 public:
  // `count` empty worker contexts; no thread starts yet. With
  // `thread_per_core` each worker thread is bound to one processor.
  explicit WorkerPool(uint32_t count, bool thread_per_core = false);
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  uint32_t Capacity() const { return capacity_; }
  uint32_t AffinityCount() const { return affinity_count_; }
  // Jobs one run can take: the capacity, or the affinity count when bound.
  uint32_t UsableWorkers() const;
  uint32_t StartedThreads() const;

  // Attaches `job` to the next free worker and returns that worker's cancel
  // request, or null when every usable worker has a job already.
  const CancelFlag* AttachJob(IWorkerThread* job);
  uint32_t ActiveCount() const { return active_count_.load(std::memory_order_acquire); }

  // Runs the attached jobs and waits for all of them. True unless a job
  // failed or the run was cancelled.
  bool Run();
  // The cancel button: stops the jobs of the current run (see the idle mark).
  void Cancel();
  bool Aborted() const { return aborted_.load(std::memory_order_acquire) != 0; }
  uint64_t ElapsedMs() const { return elapsed_ms_; }
  // When the current (or last) run started.
  std::chrono::steady_clock::time_point StartTime() const;
  // Signalled at the end of every run; null for none.
  void SetCompletionEvent(CEvent* event) { completion_ = event; }
  // Result of worker i's job in the last run.
  bool LastResult(uint32_t worker) const;

  // Held by whoever attaches jobs and runs them while other threads may
  // want the pool too.
  std::mutex& RunLease() { return lease_; }

  // Asks every started thread to leave, joins them and forgets all jobs.
  void Shutdown();

 private:
  void StartWorker(WorkerContext& context);
  static void WorkerMain(WorkerContext* context);
  void CancelStartedWorkers();

  uint32_t capacity_;
  uint32_t affinity_count_ = 0;
  std::atomic<uint32_t> active_count_{0};
  std::vector<std::unique_ptr<WorkerContext>> contexts_;
  std::atomic<uint8_t> aborted_{0};
  std::mutex lease_;
  std::mutex cancel_mutex_;  // orders cancel requests against worker starts
  CEvent* completion_ = nullptr;
  std::atomic<int64_t> start_ticks_{0};
  uint64_t elapsed_ms_ = 0;
};

}  // namespace korvanel
