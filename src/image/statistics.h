#pragma once

// Per-component statistics of the visible pixels of an area, and their text.
// 8- and 16-bit samples are counted in tables, 32-bit samples in an ordered
// map (slow for many distinct values). The moments come from the bins:
//
//   mean          = sum(count * value) / total
//   variance      = sum(count * (value - mean)^2) / total   (population)
//   std_dev       = sqrt(variance)
//   weighted_dist = sum(count * |value - mean|) / total     (mean absolute deviation)
//
// All are 0 when no pixel counts. Quantiles walk the bins upwards and stop at
// the first bin whose running count exceeds fraction x total; the median is
// the walk at 0.5.

#include <cstdint>
#include <string>
#include <vector>

#include "image/plane.h"
#include "image/region.h"

namespace korvanel {

struct StatisticsBin {
  uint32_t value = 0;
  uint64_t count = 0;
  friend bool operator==(const StatisticsBin&, const StatisticsBin&) = default;
};

struct ComponentStatistics {
  std::string name;
  uint32_t bits = 8;
  std::vector<StatisticsBin> bins;      // ascending value, only values present
  std::vector<StatisticsBin> by_count;  // descending count, equal counts by ascending value
  uint64_t total = 0;
  double weighted_dist = 0;
  double mean = 0;
  double variance = 0;
  double std_dev = 0;
  uint32_t median = 0;
};

// `mask`: one bit per image pixel (pixel i at bit i mod 32 of word i / 32);
// empty lets every pixel count. `area` lies inside the plane.
ComponentStatistics ComputeStatistics(const Plane& plane, const Rect& area,
                                      const std::vector<uint32_t>& mask);

// The value where the running count first exceeds fraction x total; the last
// bin's value when none does, 0 without bins.
uint32_t QuantileValue(const std::vector<StatisticsBin>& bins, uint64_t total, double fraction);

// "Luma-16", "R-16", "Y" ...: `letter` 0 for grey.
std::string ComponentName(char letter, uint32_t bits);

// The section of the statistics file for one component.
void AppendStatisticsText(std::string& out, const ComponentStatistics& stats);

}  // namespace korvanel
