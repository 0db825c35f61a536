#pragma once

#include <cstdint>
#include <string_view>

namespace korvanel {

// Receives the progress of a running operation. Called on the progress
// thread, every period, with the milliseconds since the run started and the
// summed progress counters of its jobs (pixels done).
class IProgressSink {
 public:
  virtual ~IProgressSink() = default;
  virtual void OnProgress(uint64_t elapsed_ms, uint64_t progress_sum) = 0;
  // The operation's name, shown as the progress window's title.
  virtual std::string_view Title() const { return {}; }
};

}  // namespace korvanel
