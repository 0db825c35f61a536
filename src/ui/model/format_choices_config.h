#pragma once

// The radio-button state of the open-raw and convert dialogs as the
// configuration stores it, turned into the generator's choices.

#include "app/config_values.h"
#include "image/format_generator.h"

namespace korvanel {

inline FormatChoices FormatChoicesFromConfig(ImageTypeChoice type, PackingChoice packing, BppChoice bpp,
                                             bool little_endian) {
  constexpr ColorChoice kColors[] = {ColorChoice::Yuv444, ColorChoice::Yuv422, ColorChoice::Yuv420,
                                     ColorChoice::Gray, ColorChoice::Rgb};
  constexpr DepthChoice kDepths[] = {DepthChoice::Bits8, DepthChoice::Bits16, DepthChoice::Bits32};
  const auto type_index = static_cast<size_t>(type);
  const auto bpp_index = static_cast<size_t>(bpp);
  FormatChoices choices;
  choices.planar = packing == PackingChoice::kPlanner;
  choices.color = type_index < std::size(kColors) ? kColors[type_index] : ColorChoice::Gray;
  choices.depth = bpp_index < std::size(kDepths) ? kDepths[bpp_index] : DepthChoice::Bits8;
  choices.little_endian = little_endian;
  return choices;
}

}  // namespace korvanel
