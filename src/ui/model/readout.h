#pragma once

// The pixel readout texts: the tab line of an image under the cursor (the
// "~" spans are drawn highlighted), the status bar's ROI and cursor prefixes,
// the directive line's length and angle, and the text P copies.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "image/region.h"
#include "ui/model/pixel_mapping.h"

namespace korvanel {

class IImageContainer;

inline constexpr const char* kOutOfRangeText = "Out-of-range (Press F1 for help window)";
inline constexpr const char* kOutOfRangeShortText = "<OOR> (Press F1 for help window)";

// What the readout shows of one pixel: its raw components and display colour.
struct PixelSample {
  std::array<uint32_t, 3> values{};
  uint8_t r = 0;
  uint8_t g = 0;
  uint8_t b = 0;
};

// The pixel's values, or nothing outside the image. The display colour is
// black until the image's rendition exists.
std::optional<PixelSample> SamplePixel(const IImageContainer& image, PixelPoint pixel);

// The component letters the readout names: "Y", "RGB" or "YUV".
std::string ComponentNames(const IImageContainer& image);
// " (10-bit)" for an image whose values use fewer bits than its words, for
// the tab text; "" for every other image.
std::string SignificantBitsTag(const IImageContainer& image);

struct ReadoutFormat {
  bool one_component = true;
  bool hex = false;
};

// "[tag] <~x,y~> names: <~v~> (RGB-8: <r,g,b>)" and its three-component and
// hexadecimal forms.
std::string ReadoutLine(std::string_view tag, std::string_view names, PixelPoint pixel,
                        const PixelSample& sample, ReadoutFormat format);
// "[tag] Out-of-Range": the tab of an image that does not hold the pixel.
std::string OutOfRangeLine(std::string_view tag);

// "ROI: x0,y0..x1,y1 (wxh) | "
std::string RoiPrefix(const Rect& roi);
// "ROI: ax,ay..?,? (wxh) | ": the size the ROI would have with its second
// corner at `cursor`.
std::string PendingRoiPrefix(PixelPoint anchor, PixelPoint cursor);
// "XY <x,y>: "
std::string CursorPrefix(PixelPoint pixel);

// The directive line from the ROI anchor to the cursor: its length in image
// pixels and its angle in degrees, counter-clockwise from the x axis as on
// paper (screen rows grow downwards), in -180..180.
std::string DirectiveText(PixelPoint anchor, PixelPoint cursor);

// The text P copies: the offset piece ("[n]" or "[0xN] ", only with offset
// display on), then "<x,y> =" and the value ("<v>", "<a,b,c>" or the 0x
// forms). The offset is the linear pixel index y * width + x.
std::string CopyPixelText(PixelPoint pixel, const PixelSample& sample, ReadoutFormat format,
                          std::optional<uint64_t> offset);
// Outside every image P copies the image's size, "wxh".
std::string CopySizeText(uint32_t width, uint32_t height);

// The pieces of a text P copied; nothing when the text is not such a copy.
struct CopiedPixel {
  PixelPoint pixel;
  std::string value;  // as written between the brackets: "255", "0x1,0x2,0x3"
};
std::optional<CopiedPixel> ParseCopiedPixel(std::string_view text);

}  // namespace korvanel
