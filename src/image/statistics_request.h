#pragma once

#include <string>

#include "image/region.h"

namespace korvanel {

// What WriteStatistics writes: the statistics text of the visible pixels of `area`
// (inclusive, inside the image) to `path`.
struct StatisticsRequest {
  std::string path;
  Rect area;
  std::string* error = nullptr;  // optional: receives the failure text
};

}  // namespace korvanel
