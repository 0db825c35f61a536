#pragma once

// The texts of the convert dialog and the -cnv command: the new size
// ("w*2;h+100"), the base offset ("40,40" or "-1,-1") and the colour
// transform rows ("1.0,0.0,1.402,0"). Each returns its message on failure.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "image/color_transform.h"

namespace korvanel {

struct NewSize {
  uint32_t width = 0;
  uint32_t height = 0;
};

// Width and height as expressions of the source's w and h; the message
// (empty on success) says what is wrong.
bool ParseNewSize(std::string_view text, uint32_t source_width, uint32_t source_height, NewSize& size,
                  std::string& message);

struct BaseOffset {
  int32_t x = 0;
  int32_t y = 0;
};

// A position in the output when the output is at least the source's size in
// both dimensions, else a position in the source; negative values count from
// the far edge.
bool ParseBaseOffset(std::string_view text, uint32_t source_width, uint32_t source_height,
                     const NewSize& size, BaseOffset& offset, std::string& message);

// Row letters "RGB" when the target names R, G and B, else "YUV"; three rows
// are checked when the target names a whole family, else only the first.
bool ParseColorTransform(const std::array<std::string, 3>& rows, std::string_view target_format,
                         ColorTransform& transform, std::string& message);

}  // namespace korvanel
