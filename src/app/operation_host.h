#pragma once

// Hands the pool runs of long operations to the user feedback, so that the
// viewer can keep its window alive and offer Cancel while one runs, and
// tells whether one is running.

#include <atomic>

#include "app/user_feedback.h"
#include "ops/run_host.h"

namespace korvanel {

class JobRunner;

class COperationHost final : public IRunHost {
 public:
  COperationHost(IUserFeedback& feedback, JobRunner& jobs) : feedback_(feedback), jobs_(jobs) {}

  void RunPool(std::string_view title, const std::function<void()>& work) override;
  bool Running() const { return running_.load(std::memory_order_acquire); }

 private:
  IUserFeedback& feedback_;
  JobRunner& jobs_;
  std::atomic<bool> running_{false};
};

}  // namespace korvanel
