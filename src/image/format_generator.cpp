#include "image/format_generator.h"

#include "image/text_util.h"

namespace korvanel {

namespace {

struct ColorText {
  ColorChoice color;
  const char* planar;
  const char* interleaved;
};

constexpr ColorText kColorTexts[] = {
    {ColorChoice::Yuv444, ",Y,U,V", ",YUV"},
    {ColorChoice::Yuv422, ",YY,U,V", ",YUYV"},
    {ColorChoice::Yuv420, nullptr, nullptr},  // replaces the whole text
    {ColorChoice::Gray, ",Y", ",Y"},
    {ColorChoice::Rgb, ",R,G,B", ",RGB"},
};

const char* DepthText(const FormatChoices& choices) {
  switch (choices.depth) {
    case DepthChoice::Bits8: return ",8";
    case DepthChoice::Bits16: return choices.little_endian ? ",16" : ",-16";
    case DepthChoice::Bits32: return choices.little_endian ? ",32" : ",-32";
  }
  return ",8";
}

}  // namespace

std::string GenerateFormatExpression(const FormatChoices& choices) {
  std::string text = choices.planar ? "P" : "I";
  for (const ColorText& entry : kColorTexts) {
    if (entry.color != choices.color) continue;
    if (entry.planar == nullptr) {
      text = "PI,YYYYUV";  // 4:2:0 has one packing whatever was chosen
    } else {
      text += choices.planar ? entry.planar : entry.interleaved;
    }
  }
  return text + DepthText(choices);
}

std::string GeneratedExpressionLabel(const FormatChoices& choices) {
  return StrFormat("Generated format expression: %s", GenerateFormatExpression(choices).c_str());
}

}  // namespace korvanel
