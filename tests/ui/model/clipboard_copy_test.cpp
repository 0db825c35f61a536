#include "ui/model/clipboard_copy.h"

#include <gtest/gtest.h>

#include <optional>
#include <vector>

namespace korvanel {
namespace {

// A 3 x 2 rendition whose pixel (x, y) shows red x, green y, blue 9.
DisplayRendition SmallRendition() {
  DisplayRendition shown;
  shown.width = 3;
  shown.height = 2;
  shown.pixels.resize(6);
  for (uint32_t y = 0; y < 2; ++y) {
    for (uint32_t x = 0; x < 3; ++x) {
      shown.pixels[y * 3 + x] = PackDisplayPixel(static_cast<uint8_t>(x), static_cast<uint8_t>(y), 9);
    }
  }
  return shown;
}

TEST(ClipboardCopy, CopiesTheAreaAsRgbRowsAndRefusesAreasOutside) {
  const DisplayRendition shown = SmallRendition();
  struct Row {
    const char* name;
    Rect area;
    std::optional<std::vector<uint8_t>> bytes;
  };
  const Row rows[] = {
      {"whole", {0, 0, 2, 1}, std::vector<uint8_t>{0, 0, 9, 1, 0, 9, 2, 0, 9, 0, 1, 9, 1, 1, 9, 2, 1, 9}},
      {"one column", {1, 0, 1, 1}, std::vector<uint8_t>{1, 0, 9, 1, 1, 9}},
      {"one pixel", {2, 1, 2, 1}, std::vector<uint8_t>{2, 1, 9}},
      {"past the right edge", {1, 0, 3, 1}, std::nullopt},
      {"past the bottom", {0, 1, 0, 2}, std::nullopt},
      {"turned round", {2, 0, 1, 1}, std::nullopt},
      {"no region", Rect::None(), std::nullopt},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const std::optional<Rgb888Image> copy = CopyRenditionArea(shown, row.area);
    ASSERT_EQ(copy.has_value(), row.bytes.has_value());
    if (!copy) continue;
    EXPECT_EQ(copy->bytes, *row.bytes);
    EXPECT_EQ(uint64_t{copy->width} * copy->height * 3, row.bytes->size());
    EXPECT_EQ(copy->width, row.area.Width());
  }
}

}  // namespace
}  // namespace korvanel
