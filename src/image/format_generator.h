#pragma once

// Builds a format expression from the radio buttons of the open-raw and
// convert dialogs, so the dialogs and the tests share one implementation.

#include <string>

namespace korvanel {

enum class ColorChoice { Yuv444, Yuv422, Yuv420, Gray, Rgb };
enum class DepthChoice { Bits8, Bits16, Bits32 };

struct FormatChoices {
  bool planar = true;
  ColorChoice color = ColorChoice::Gray;
  DepthChoice depth = DepthChoice::Bits8;
  bool little_endian = true;  // ignored at 8 bits
};

std::string GenerateFormatExpression(const FormatChoices& choices);

// "Generated format expression: %s"
std::string GeneratedExpressionLabel(const FormatChoices& choices);

}  // namespace korvanel
