#pragma once

// Lets image code spread independent bands of work over threads without
// knowing about them. The worker pool implements it; code that gets none
// runs its bands one after the other on the calling thread.

#include <cstdint>
#include <functional>

namespace korvanel {

class IParallelRunner {
 public:
  virtual ~IParallelRunner() = default;
  // How many bands are worth cutting the work into.
  virtual uint32_t BandCount() const = 0;
  // Calls work(band) for band = 0 .. count-1, possibly concurrently, and
  // returns when every call has returned. Each call must touch only data of
  // its own band.
  virtual void RunBands(uint32_t count, const std::function<void(uint32_t)>& work) = 0;
};

// Every band in order on the calling thread (also when `runner` is null).
inline void RunBandsOn(IParallelRunner* runner, uint32_t count,
                       const std::function<void(uint32_t)>& work) {
  if (runner != nullptr && count > 1) {
    runner->RunBands(count, work);
    return;
  }
  for (uint32_t band = 0; band < count; ++band) work(band);
}

}  // namespace korvanel
