#pragma once

// The coordinates jumped to, oldest first and without duplicates, with the
// index that Tab and "~" iterate by.

#include <cstddef>
#include <optional>
#include <vector>

#include "ui/model/pixel_mapping.h"

namespace korvanel {

class CCoordinateHistory {
 public:
  // Appends `pixel` unless it is already there.
  void Add(PixelPoint pixel);
  // Empties the history; returns how many entries it held.
  size_t Clear();
  // The entry at the iteration index, advancing the index cyclically;
  // nothing when the history is empty.
  std::optional<PixelPoint> Next();
  const std::vector<PixelPoint>& Entries() const { return entries_; }

 private:
  std::vector<PixelPoint> entries_;
  size_t index_ = 0;
};

}  // namespace korvanel
