#pragma once

#include <atomic>
#include <cstdint>

#include "image/region.h"
#include "ops/worker_thread.h"

namespace korvanel {

// A job that works on a band of an image and counts the pixels it has done.
// The counter is read by the progress thread while the job writes it, and
// the band is set before the run; every job class shares this part.
class IImageProcessorThread : public IWorkerThread {
 public:
  uint32_t GetProgress() const { return progress_.load(std::memory_order_relaxed); }
  bool SetRegion(const Rect& band) {
    band_ = band;
    return true;
  }
  const Rect& Band() const { return band_; }

 protected:
  void ResetProgress() { progress_.store(0, std::memory_order_relaxed); }
  void AddProgress(uint32_t pixels) { progress_.fetch_add(pixels, std::memory_order_relaxed); }

 private:
  std::atomic<uint32_t> progress_{0};
  Rect band_{1, 1, 0, 0};
};

}  // namespace korvanel
