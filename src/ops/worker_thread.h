#pragma once

#include <atomic>
#include <cstdint>

namespace korvanel {

// A cancel request as a job sees it: its worker's byte, 1 asking it to stop.
// Atomic because the cancel button and failing jobs on other workers write it
// while the job reads it; relaxed ordering suffices, it carries no data.
using CancelFlag = std::atomic<uint8_t>;

// One job's whole share of an operation, run on one worker.
class IWorkerThread {
 public:
  virtual ~IWorkerThread() = default;
  // True on success; false fails the run and cancels the other jobs.
  virtual bool Run() = 0;
  // The worker's cancel request, polled while the job works; null when the
  // job got no worker (it then does not run) or runs without a pool.
  virtual void SetCancelFlag(const CancelFlag* flag) = 0;
};

inline bool CancelRequested(const CancelFlag* flag) {
  return flag != nullptr && flag->load(std::memory_order_relaxed) != 0;
}

}  // namespace korvanel
