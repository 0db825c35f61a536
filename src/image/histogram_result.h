#pragma once

#include <cstdint>
#include <vector>

namespace korvanel {

// One component's histogram and summary for the overlay. 8-bit samples have
// a bin per value; deeper samples 65,536 bins (32-bit values by their upper
// 16 bits).
struct HistogramChannel {
  std::vector<uint64_t> counts;
  uint64_t total = 0;
  double mean = 0;
  double variance = 0;
  double std_dev = 0;
  uint32_t median = 0;
  uint32_t mode = 0;  // the most frequent value (the lowest of equals)
  uint64_t mode_count = 0;
};

// Histogram fills it for the image's region of interest (the whole image when
// none), counting only pixels the selection mask lets through.
struct HistogramResult {
  uint32_t bins = 0;
  std::vector<HistogramChannel> channels;
};

}  // namespace korvanel
