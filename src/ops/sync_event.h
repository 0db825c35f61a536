#pragma once

// An event in the sense the pool's protocol needs: signalled or not, with an
// auto-reset flavour (one waiter consumes the signal) and a manual-reset one
// (stays signalled until reset). A mutex and a condition variable give both
// and a timed wait without busy waiting; signalling an already signalled
// event is harmless, which a binary semaphore would not allow.

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace korvanel {

enum class EventReset { Auto, Manual };

class CEvent {
 public:
  explicit CEvent(EventReset reset) : auto_reset_(reset == EventReset::Auto) {}
  CEvent(const CEvent&) = delete;
  CEvent& operator=(const CEvent&) = delete;

  void Set() {
    {
      std::lock_guard lock(mutex_);
      signalled_ = true;
    }
    if (auto_reset_) {
      changed_.notify_one();
    } else {
      changed_.notify_all();
    }
  }
  void Reset() {
    std::lock_guard lock(mutex_);
    signalled_ = false;
  }
  void Wait() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return signalled_; });
    if (auto_reset_) signalled_ = false;
  }
  // True when signalled within `timeout`, false on time-out.
  bool WaitFor(std::chrono::milliseconds timeout) {
    std::unique_lock lock(mutex_);
    if (!changed_.wait_for(lock, timeout, [this] { return signalled_; })) return false;
    if (auto_reset_) signalled_ = false;
    return true;
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  bool signalled_ = false;
  const bool auto_reset_;
};

}  // namespace korvanel
