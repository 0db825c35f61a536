#pragma once

#include <cstdint>
#include <vector>

namespace korvanel {

// What the screen shows of an image: one 0x00RRGGBB word per pixel.
struct DisplayRendition {
  uint32_t width = 0;
  uint32_t height = 0;
  std::vector<uint32_t> pixels;
};

}  // namespace korvanel
