#include "ui/model/coordinate_history.h"

#include <algorithm>

namespace korvanel {

void CCoordinateHistory::Add(PixelPoint pixel) {
  if (std::ranges::find(entries_, pixel) == entries_.end()) entries_.push_back(pixel);
}

size_t CCoordinateHistory::Clear() {
  const size_t count = entries_.size();
  entries_.clear();
  index_ = 0;
  return count;
}

std::optional<PixelPoint> CCoordinateHistory::Next() {
  if (entries_.empty()) return std::nullopt;
  if (index_ >= entries_.size()) index_ = 0;
  return entries_[index_++];
}

}  // namespace korvanel
