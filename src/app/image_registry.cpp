#include "app/image_registry.h"

#include "image/text_util.h"

namespace korvanel {

size_t ImageRegistry::Append(ImageRecord record) {
  record.hk_id = static_cast<uint32_t>(records_.size()) + 1;
  records_.push_back(std::move(record));
  ++generation_;
  return records_.size() - 1;
}

void ImageRegistry::Remove(size_t index) {
  if (index >= records_.size()) return;
  for (ImageRecord& record : records_) {
    if (record.hk_id - 1 > index) --record.hk_id;
  }
  records_.erase(records_.begin() + static_cast<ptrdiff_t>(index));
  ++generation_;
}

std::optional<size_t> ImageRegistry::FindPath(std::string_view path) const {
  const std::string wanted = ToLowerAscii(path);
  for (size_t i = 0; i < records_.size(); ++i) {
    if (!records_[i].path.empty() && ToLowerAscii(records_[i].path) == wanted) return i;
  }
  return std::nullopt;
}

std::optional<size_t> ImageRegistry::IndexOfSerial(uint64_t serial) const {
  for (size_t i = 0; i < records_.size(); ++i) {
    if (records_[i].serial == serial) return i;
  }
  return std::nullopt;
}

std::optional<size_t> ImageRegistry::ResolveHkReference(int32_t reference) const {
  const auto count = static_cast<int64_t>(records_.size());
  if (reference >= 1 && reference <= count) return static_cast<size_t>(reference - 1);
  if (reference <= -1 && -int64_t{reference} <= count) return static_cast<size_t>(count + reference);
  return std::nullopt;
}

}  // namespace korvanel
