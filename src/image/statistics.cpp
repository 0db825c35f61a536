#include "image/statistics.h"

#include <algorithm>
#include <cmath>
#include <map>

#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

constexpr int kBarWidth = 60;

bool Visible(const std::vector<uint32_t>& mask, uint64_t pixel) {
  return pixel / 32 < mask.size() && ((mask[pixel / 32] >> (pixel % 32)) & 1u) != 0;
}

template <typename Counter>
void AppendTableBins(const Counter& counts, std::vector<StatisticsBin>& bins) {
  for (size_t v = 0; v < counts.size(); ++v) {
    if (counts[v] != 0) bins.push_back({static_cast<uint32_t>(v), counts[v]});
  }
}

// 8 bits: four tables filled in turn so that runs of equal values do not
// wait on one counter; 16 bits: one table; 32 bits: an ordered map.
template <typename T>
std::vector<StatisticsBin> CountBins(const Plane& plane, const Rect& area,
                                     const std::vector<uint32_t>& mask) {
  std::vector<StatisticsBin> bins;
  const uint32_t width = plane.width();
  const auto visible = [&](uint32_t x, uint32_t y) {
    return mask.empty() || Visible(mask, uint64_t{y} * width + x);
  };
  if constexpr (sizeof(T) == 1) {
    std::vector<uint64_t> tables(4 * 256, 0);
    uint64_t* t = tables.data();
    for (uint32_t y = area.min_y; y <= area.max_y; ++y) {
      const T* row = plane.Row<T>(y);
      uint32_t x = area.min_x;
      if (mask.empty()) {
        for (; x + 3 <= area.max_x; x += 4) {
          ++t[row[x]];
          ++t[256 + row[x + 1]];
          ++t[512 + row[x + 2]];
          ++t[768 + row[x + 3]];
        }
      }
      for (; x <= area.max_x; ++x) {
        if (visible(x, y)) ++t[row[x]];
      }
    }
    std::vector<uint64_t> merged(256);
    for (size_t v = 0; v < 256; ++v) merged[v] = t[v] + t[256 + v] + t[512 + v] + t[768 + v];
    AppendTableBins(merged, bins);
  } else if constexpr (sizeof(T) == 2) {
    std::vector<uint64_t> table(65536, 0);
    for (uint32_t y = area.min_y; y <= area.max_y; ++y) {
      const T* row = plane.Row<T>(y);
      if (mask.empty()) {
        for (uint32_t x = area.min_x; x <= area.max_x; ++x) ++table[row[x]];
      } else {
        for (uint32_t x = area.min_x; x <= area.max_x; ++x) {
          if (visible(x, y)) ++table[row[x]];
        }
      }
    }
    AppendTableBins(table, bins);
  } else {
    std::map<uint32_t, uint64_t> counts;
    for (uint32_t y = area.min_y; y <= area.max_y; ++y) {
      const T* row = plane.Row<T>(y);
      for (uint32_t x = area.min_x; x <= area.max_x; ++x) {
        if (visible(x, y)) ++counts[row[x]];
      }
    }
    bins.reserve(counts.size());
    for (const auto& [value, count] : counts) bins.push_back({value, count});
  }
  return bins;
}

uint32_t DecimalDigits(uint64_t value) {
  uint32_t digits = 1;
  while (value >= 10) {
    value /= 10;
    ++digits;
  }
  return digits;
}

// ceil(log10(n)): the digits of the largest index, 0 for a single bin.
uint32_t IndexDigits(uint64_t n) {
  uint32_t digits = 0;
  for (uint64_t power = 1; power < n; power *= 10) ++digits;
  return digits;
}

const char* ValueFormat(uint32_t bits) {
  return bits == 8 ? "%4u" : bits == 16 ? "%6u" : "%10u";
}

// The line formats are made from templates in two steps: the value format
// goes in first.
std::string LineFormat(const char* line_template, uint32_t bits) {
  return StrFormat(line_template, ValueFormat(bits));
}

// snprintf with a format made at run time.
template <typename... Args>
void AppendFormatted(std::string& out, const std::string& format, Args... args) {
  const int n = std::snprintf(nullptr, 0, format.c_str(), args...);
  if (n <= 0) return;
  const size_t at = out.size();
  out.resize(at + static_cast<size_t>(n) + 1);
  std::snprintf(out.data() + at, static_cast<size_t>(n) + 1, format.c_str(), args...);
  out.resize(at + static_cast<size_t>(n));
}

void AppendHistogram(std::string& out, const std::vector<StatisticsBin>& bins, uint32_t bits) {
  if (bins.empty()) return;
  const std::string format = LineFormat("[%%0*u] %s = %%*u  %%s", bits);
  uint64_t largest = 0;
  for (const StatisticsBin& bin : bins) largest = std::max(largest, bin.count);
  const int index_width = static_cast<int>(IndexDigits(bins.size()));
  const int count_width = static_cast<int>(DecimalDigits(largest));
  std::string bar;
  for (size_t i = 0; i < bins.size(); ++i) {
    AppendFormatted(out, format, index_width, static_cast<unsigned>(i), bins[i].value, count_width,
                    static_cast<unsigned>(bins[i].count), " |");
    const long stars = std::clamp<long>(
        std::lround(static_cast<double>(bins[i].count) / static_cast<double>(largest) * kBarWidth), 1,
        kBarWidth);
    bar.assign(static_cast<size_t>(stars), '*');
    bar.resize(kBarWidth, ' ');
    out += bar;
    out += '\n';
  }
}

// Rank 1 and 2 of an ordering; a missing rank repeats the last there is.
StatisticsBin Ranked(const std::vector<StatisticsBin>& ordered, size_t rank) {
  if (ordered.empty()) return {};
  return ordered[std::min(rank, ordered.size()) - 1];
}

}  // namespace

ComponentStatistics ComputeStatistics(const Plane& plane, const Rect& area,
                                      const std::vector<uint32_t>& mask) {
  ComponentStatistics stats;
  stats.bits = plane.bits();
  DispatchBits(plane.bits(), [&]<typename T>(std::type_identity<T>) {
    stats.bins = CountBins<T>(plane, area, mask);
  });
  double weighted_sum = 0;
  for (const StatisticsBin& bin : stats.bins) {
    stats.total += bin.count;
    weighted_sum += static_cast<double>(bin.count) * bin.value;
  }
  if (stats.total != 0) {
    const double total = static_cast<double>(stats.total);
    stats.mean = weighted_sum / total;
    double squares = 0, distances = 0;
    for (const StatisticsBin& bin : stats.bins) {
      const double d = bin.value - stats.mean;
      squares += static_cast<double>(bin.count) * d * d;
      distances += static_cast<double>(bin.count) * std::fabs(d);
    }
    stats.variance = squares / total;
    stats.std_dev = std::sqrt(stats.variance);
    stats.weighted_dist = distances / total;
  }
  stats.median = QuantileValue(stats.bins, stats.total, 0.5);
  stats.by_count = stats.bins;
  std::stable_sort(stats.by_count.begin(), stats.by_count.end(),
                   [](const StatisticsBin& a, const StatisticsBin& b) { return a.count > b.count; });
  return stats;
}

uint32_t QuantileValue(const std::vector<StatisticsBin>& bins, uint64_t total, double fraction) {
  if (bins.empty()) return 0;
  const double limit = fraction * static_cast<double>(total);
  uint64_t running = 0;
  for (const StatisticsBin& bin : bins) {
    running += bin.count;
    if (static_cast<double>(running) > limit) return bin.value;
  }
  return bins.back().value;
}

std::string ComponentName(char letter, uint32_t bits) {
  if (letter == 0) return StrFormat("Luma-%u", bits);
  return bits == 8 ? std::string(1, letter) : StrFormat("%c-%u", letter, bits);
}

void AppendStatisticsText(std::string& out, const ComponentStatistics& s) {
  const char* name = s.name.c_str();
  out += StrFormat("<%s>\n", name);
  out += StrFormat("  Distribution        = %u\n", static_cast<unsigned>(s.total));
  out += StrFormat("  Bins / Samples      = %u\n", static_cast<unsigned>(s.bins.size()));
  out += StrFormat("  Weighted Dist       = %7.2lf\n", s.weighted_dist);
  out += StrFormat("  Mean                = %7.2lf\n", s.mean);
  out += StrFormat("  Variance            = %7.2lf\n", s.variance);
  out += StrFormat("  Standard Deviation  = %7.2lf\n", s.std_dev);
  const std::string prob = LineFormat("  Prob %%4.2lf         = %s\n", s.bits);
  AppendFormatted(out, prob, 0.25, QuantileValue(s.bins, s.total, 0.25));
  AppendFormatted(out, prob, 0.50, s.median);
  AppendFormatted(out, prob, 0.75, QuantileValue(s.bins, s.total, 0.75));
  const std::string mode_max = LineFormat("  Mode Max %%u = %s (%%u)\n", s.bits);
  const std::string mode_min = LineFormat("  Mode Min %%u = %s (%%u)\n", s.bits);
  std::vector<StatisticsBin> rarest = s.bins;
  std::stable_sort(rarest.begin(), rarest.end(),
                   [](const StatisticsBin& a, const StatisticsBin& b) { return a.count < b.count; });
  for (unsigned rank = 1; rank <= 2; ++rank) {
    const StatisticsBin bin = Ranked(s.by_count, rank);
    AppendFormatted(out, mode_max, rank, bin.value, static_cast<unsigned>(bin.count));
  }
  for (unsigned rank = 1; rank <= 2; ++rank) {
    const StatisticsBin bin = Ranked(rarest, rank);
    AppendFormatted(out, mode_min, rank, bin.value, static_cast<unsigned>(bin.count));
  }
  AppendHistogram(out, s.bins, s.bits);
  out += StrFormat("</%s>\n", name);
  out += StrFormat("<%s> Mode\n", name);
  AppendHistogram(out, s.by_count, s.bits);
  out += StrFormat("</%s  Mode>\n", name);
}

}  // namespace korvanel
