#include "ui/model/pixel_search.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <type_traits>
#include <vector>

#include "image/image_container.h"
#include "image/plane.h"
#include "image/sample_type.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

enum class ComponentError : uint8_t { None, NotNumber, OutOfRange };

ComponentError ParseComponent(std::string_view text, uint64_t max, uint32_t& out) {
  int base = 10;
  if (text.size() >= 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
    text.remove_prefix(2);
    base = 16;
  }
  if (text.empty()) return ComponentError::NotNumber;
  uint64_t value = 0;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value, base);
  // After an overflow from_chars still passes every digit.
  if (end != text.data() + text.size()) return ComponentError::NotNumber;
  if (ec == std::errc::result_out_of_range || value > max) return ComponentError::OutOfRange;
  if (ec != std::errc()) return ComponentError::NotNumber;
  out = static_cast<uint32_t>(value);
  return ComponentError::None;
}

std::vector<std::string_view> SplitComponents(std::string_view text) {
  std::vector<std::string_view> parts;
  size_t start = 0;
  while (true) {
    const size_t comma = text.find(',', start);
    parts.push_back(text.substr(start, comma == std::string_view::npos ? comma : comma - start));
    if (comma == std::string_view::npos) return parts;
    start = comma + 1;
  }
}

uint64_t MaxForBits(uint32_t bits) { return bits >= 32 ? 0xFFFFFFFFull : (uint64_t{1} << bits) - 1; }

// The columns of one row that are searched, in search order.
struct RowSpan {
  int64_t first;
  int64_t last;  // inclusive
};

template <typename T>
std::optional<int64_t> ScanRow(const std::array<const T*, 3>& rows, uint32_t count,
                               const std::array<T, 3>& want, RowSpan span, int64_t step) {
  for (int64_t x = span.first;; x += step) {
    bool hit = rows[0][x] == want[0];
    if (count == 3) hit = hit && rows[1][x] == want[1] && rows[2][x] == want[2];
    if (hit) return x;
    if (x == span.last) return std::nullopt;
  }
}

}  // namespace

ParsedPixelValue ParsePixelValue(std::string_view text, uint32_t component_count, uint32_t bits) {
  const std::string shown(text);
  const std::vector<std::string_view> parts = SplitComponents(text);
  if (text.empty() || parts.size() != component_count || (component_count != 1 && component_count != 3)) {
    return {std::nullopt,
            StrFormat("'%s' is not a valid pixel value for this image, aborting...", shown.c_str())};
  }
  PixelValue value;
  value.count = component_count;
  for (uint32_t i = 0; i < component_count; ++i) {
    const std::string part(parts[i]);
    switch (ParseComponent(parts[i], MaxForBits(bits), value.components[i])) {
      case ComponentError::None: break;
      case ComponentError::NotNumber:
        return {std::nullopt, StrFormat("Error parsing component %u '%s' of pixel value, aborting...",
                                        i + 1, part.c_str())};
      case ComponentError::OutOfRange:
        return {std::nullopt,
                StrFormat("Component %u '%s' is out of BPP range, aborting...", i + 1, part.c_str())};
    }
  }
  return {value, {}};
}

std::string PixelValueText(const PixelValue& v, bool hex) {
  if (v.count == 1) return StrFormat(hex ? "0x%X" : "%u", v.components[0]);
  return StrFormat(hex ? "0x%X,0x%X,0x%X" : "%u,%u,%u", v.components[0], v.components[1],
                   v.components[2]);
}

std::optional<PixelPoint> FindPixelValue(const IImageContainer& image, const Rect& area,
                                         const PixelValue& value, std::optional<PixelPoint> from,
                                         SearchDirection direction) {
  const std::vector<Plane>& planes = image.ShownPlanes();
  uint32_t width = 0;
  uint32_t height = 0;
  image.GetSize(width, height);
  const std::optional<Rect> work = WorkArea(area, width, height);
  if (!work || planes.size() < value.count || planes[0].empty()) return std::nullopt;
  const bool forward = direction == SearchDirection::Forward;
  const int64_t step = forward ? 1 : -1;
  const int64_t left = work->min_x;
  const int64_t right = work->max_x;
  int64_t y = forward ? work->min_y : work->max_y;
  int64_t x = forward ? left : right;
  // Start beside the last hit; a hit outside the area restarts the scan.
  if (from && !work->Contains(from->x, from->y)) from.reset();
  if (from) {
    y = from->y;
    x = from->x + step;
    if (x < left || x > right) {
      y += step;
      x = forward ? left : right;
    }
  }
  std::optional<PixelPoint> found;
  DispatchBits(planes[0].bits(), [&]<typename T>(std::type_identity<T>) {
    if (value.components[0] > std::numeric_limits<T>::max() ||
        value.components[1] > std::numeric_limits<T>::max() ||
        value.components[2] > std::numeric_limits<T>::max()) {
      return;
    }
    const std::array<T, 3> want{static_cast<T>(value.components[0]),
                                static_cast<T>(value.components[1]),
                                static_cast<T>(value.components[2])};
    for (; y >= work->min_y && y <= work->max_y; y += step) {
      const auto row = static_cast<uint32_t>(y);
      const std::array<const T*, 3> rows{
          planes[0].Row<T>(row), planes[std::min<size_t>(1, planes.size() - 1)].Row<T>(row),
          planes[std::min<size_t>(2, planes.size() - 1)].Row<T>(row)};
      const RowSpan span{x, forward ? right : left};
      if (const std::optional<int64_t> hit = ScanRow(rows, value.count, want, span, step)) {
        found = PixelPoint{*hit, y};
        return;
      }
      x = forward ? left : right;
    }
  });
  return found;
}

}  // namespace korvanel
