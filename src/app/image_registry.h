#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "app/image_record.h"

namespace korvanel {

// The ordered list of open images. Position i carries HK id i + 1, so an HK
// id names a position: closing an image renumbers the ones after it.
class ImageRegistry {
 public:
  static constexpr uint32_t kMaxImages = 20;

  size_t Count() const { return records_.size(); }
  bool Empty() const { return records_.empty(); }
  bool Full() const { return records_.size() >= kMaxImages; }

  ImageRecord& At(size_t index) { return records_[index]; }
  const ImageRecord& At(size_t index) const { return records_[index]; }

  // Appends with HK id = count before the append + 1; returns the new index.
  size_t Append(ImageRecord record);
  // Removes the record and renumbers every later one down by one.
  void Remove(size_t index);

  // Index of an opened file whose path equals `path` ignoring ASCII case.
  std::optional<size_t> FindPath(std::string_view path) const;
  std::optional<size_t> IndexOfSerial(uint64_t serial) const;
  // HK references: 1..count name positions, -1..-count count back from the last.
  std::optional<size_t> ResolveHkReference(int32_t reference) const;

  // Counts changes to the set of images and to what a record holds, so that
  // observers compare numbers instead of walking the records.
  uint64_t Generation() const { return generation_; }
  // A record's image was replaced in place (reloaded, say).
  void MarkChanged() { ++generation_; }

 private:
  std::vector<ImageRecord> records_;
  uint64_t generation_ = 1;
};

}  // namespace korvanel
