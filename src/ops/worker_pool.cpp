#include "ops/worker_pool.h"

#include <pthread.h>
#include <sched.h>

#include <algorithm>

#include "image/text_util.h"

namespace korvanel {

uint32_t LogicalProcessorCount() { return std::max(1u, std::thread::hardware_concurrency()); }

uint32_t PoolCapacityFor(int32_t max_process_threads, uint32_t logical_processors) {
  if (max_process_threads < 0) return 0;
  if (max_process_threads == 0) return logical_processors;
  return std::min(static_cast<uint32_t>(max_process_threads), logical_processors);
}

WorkerPool::WorkerPool(uint32_t count, bool thread_per_core) : capacity_(count) {
  contexts_.reserve(count);
  for (uint32_t i = 0; i < count; ++i) {
    auto context = std::make_unique<WorkerContext>();
    context->pool = this;
    context->index = i;
    contexts_.push_back(std::move(context));
  }
  if (thread_per_core) affinity_count_ = std::min(LogicalProcessorCount(), capacity_);
}

WorkerPool::~WorkerPool() { Shutdown(); }

uint32_t WorkerPool::UsableWorkers() const {
  return affinity_count_ != 0 ? std::min(capacity_, affinity_count_) : capacity_;
}

uint32_t WorkerPool::StartedThreads() const {
  return static_cast<uint32_t>(std::count_if(contexts_.begin(), contexts_.end(),
                                             [](const auto& c) { return c->thread.joinable(); }));
}

const CancelFlag* WorkerPool::AttachJob(IWorkerThread* job) {
  const uint32_t active = active_count_.load(std::memory_order_relaxed);
  if (active >= UsableWorkers()) return nullptr;
  WorkerContext& context = *contexts_[active];
  context.cancel.store(0, std::memory_order_relaxed);
  context.idle.store(1, std::memory_order_relaxed);
  context.job = job;
  active_count_.store(active + 1, std::memory_order_release);
  return &context.cancel;
}

std::chrono::steady_clock::time_point WorkerPool::StartTime() const {
  return std::chrono::steady_clock::time_point(
      std::chrono::steady_clock::duration(start_ticks_.load(std::memory_order_acquire)));
}

bool WorkerPool::LastResult(uint32_t worker) const {
  return worker < capacity_ && contexts_[worker]->last_result.load(std::memory_order_acquire) != 0;
}

void WorkerPool::StartWorker(WorkerContext& context) {
  context.label = StrFormat("Worker%02u", context.index);
  context.work_label = StrFormat("EventWork%02u", context.index);
  context.done_label = StrFormat("EventDoneWork%02u", context.index);
  context.thread = std::thread(&WorkerPool::WorkerMain, &context);
  pthread_setname_np(context.thread.native_handle(), context.label.c_str());
  if (affinity_count_ != 0) {
    // Worker i runs on processor i mod 64 only; a refusal leaves it unbound.
    cpu_set_t set;
    CPU_ZERO(&set);
    CPU_SET(context.index % 64, &set);
    pthread_setaffinity_np(context.thread.native_handle(), sizeof(set), &set);
  }
  context.idle.store(0, std::memory_order_release);
}

bool WorkerPool::Run() {
  aborted_.store(0, std::memory_order_release);
  for (auto& context : contexts_) context->idle.store(1, std::memory_order_release);
  elapsed_ms_ = 0;
  const auto start = std::chrono::steady_clock::now();
  start_ticks_.store(start.time_since_epoch().count(), std::memory_order_release);

  const uint32_t active = active_count_.load(std::memory_order_acquire);
  for (uint32_t i = 0; i < active; ++i) {
    WorkerContext& context = *contexts_[i];
    {
      // A job that fails while later workers are still being started must
      // stop those too, as it stops every worker started in this run: under
      // the lock, a new worker either starts with the run already aborted
      // or is started before the failure looks at its idle mark.
      std::lock_guard lock(cancel_mutex_);
      const bool starts = !context.thread.joinable();
      context.cancel.store(starts && Aborted() ? 1 : 0, std::memory_order_relaxed);
      if (starts) StartWorker(context);
    }
    context.last_result.store(1, std::memory_order_relaxed);
    context.work.Set();
  }
  for (uint32_t i = 0; i < active; ++i) contexts_[i]->done.Wait();

  const auto ns = std::chrono::duration_cast<std::chrono::nanoseconds>(
                      std::chrono::steady_clock::now() - start)
                      .count();
  elapsed_ms_ = static_cast<uint64_t>(static_cast<double>(ns) / 1e6 + 0.5);
  if (completion_ != nullptr) completion_->Set();
  active_count_.store(0, std::memory_order_release);
  return !Aborted();
}

void WorkerPool::CancelStartedWorkers() {
  std::lock_guard lock(cancel_mutex_);
  for (auto& context : contexts_) {
    if (context->idle.load(std::memory_order_acquire) == 0) {
      context->cancel.store(1, std::memory_order_relaxed);
    }
  }
  aborted_.store(1, std::memory_order_release);
}

void WorkerPool::Cancel() {
  if (ActiveCount() > 0) CancelStartedWorkers();
}

void WorkerPool::WorkerMain(WorkerContext* context) {
  WorkerPool& pool = *context->pool;
  context->work.Wait();
  while (context->job != nullptr) {
    const bool ok = context->job->Run();
    context->last_result.store(ok ? 1 : 0, std::memory_order_release);
    if (!ok && !pool.Aborted()) pool.CancelStartedWorkers();
    context->done.Set();
    context->work.Wait();
  }
  context->done.Set();
}

void WorkerPool::Shutdown() {
  for (auto& context : contexts_) {
    if (!context->thread.joinable()) continue;
    context->job = nullptr;
    context->work.Set();
  }
  for (auto& context : contexts_) {
    if (context->thread.joinable()) context->thread.join();
  }
  active_count_.store(0, std::memory_order_release);
}

}  // namespace korvanel
