#pragma once

// Pixel values as the find phase takes them ("255", "0x5F", "0xAB,0x80,0xFF")
// and the scan for a pixel holding one.
//
// The scan runs in raster order, rows top to bottom and each row left to
// right, over the active ROI when there is one (as statistics and the
// histogram do) and over the whole image otherwise. "Next" continues after
// the last hit in that order, "previous" goes back from it.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "image/region.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {

class IImageContainer;

struct PixelValue {
  std::array<uint32_t, 3> components{};
  uint32_t count = 1;  // 1 or 3
  friend bool operator==(const PixelValue&, const PixelValue&) = default;
};

// A parsed value, or the message that ends the find phase.
struct ParsedPixelValue {
  std::optional<PixelValue> value;
  std::string error;
};

// One decimal or "0x" hexadecimal number per component, comma-separated:
// one for one-component images, three for the others; none may exceed what
// `bits` bits hold.
ParsedPixelValue ParsePixelValue(std::string_view text, uint32_t component_count, uint32_t bits);

// The value shown back: "%u" / "%u,%u,%u", or "0x%X" / "0x%X,0x%X,0x%X".
std::string PixelValueText(const PixelValue& value, bool hex);

enum class SearchDirection : uint8_t { Forward, Backward };

// The first pixel of `area` holding `value` in `direction`, starting just
// after (or before) `from`, or at the area's first (last) pixel without it.
std::optional<PixelPoint> FindPixelValue(const IImageContainer& image, const Rect& area,
                                         const PixelValue& value, std::optional<PixelPoint> from,
                                         SearchDirection direction);

}  // namespace korvanel
