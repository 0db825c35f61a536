#pragma once

// What a band of work is told and tells back, row by row: stop when the
// cancel request is set; add each finished row's width to the progress.

#include <atomic>
#include <cstdint>

namespace korvanel {

struct BandControl {
  const std::atomic<bool>* cancel = nullptr;
  std::atomic<uint64_t>* progress = nullptr;

  // After a row: false when the work is to stop.
  bool RowDone(uint64_t width) const {
    if (progress != nullptr) progress->fetch_add(width, std::memory_order_relaxed);
    return cancel == nullptr || !cancel->load(std::memory_order_relaxed);
  }
};

}  // namespace korvanel
