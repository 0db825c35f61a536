#include "image/format_names.h"

#include "image/text_util.h"

namespace korvanel {

namespace {

// Names whose expansion needs packed bits, 4:2:0 planar chroma or a colour
// filter array are not here: those layouts do not load yet.
constexpr FormatName kNames[] = {
    {"gray", "P,Y,8"},
    {"GREY", "P,Y,8"},
    {"gray10le", "LSB=10,P,Y,16"},
    {"Y10", "LSB=10,P,Y,16"},
    {"gray10be", "LSB=10,P,Y,-16"},
    {"gray12le", "LSB=12,P,Y,16"},
    {"Y12", "LSB=12,P,Y,16"},
    {"gray12be", "LSB=12,P,Y,-16"},
    {"gray14le", "LSB=14,P,Y,16"},
    {"gray16le", "P,Y,16"},
    {"Y16", "P,Y,16"},
    {"gray16be", "P,Y,-16"},
    {"rgb24", "I,RGB,8"},
    {"RGB3", "I,RGB,8"},
    {"bgr24", "I,BGR,8"},
    {"BGR3", "I,BGR,8"},
    {"rgb48le", "I,RGB,16"},
    {"rgb48be", "I,RGB,-16"},
    {"bgr48le", "I,BGR,16"},
    {"gbrp", "P,G,B,R,8"},
    {"yuyv422", "I,YUYV,8"},
    {"YUYV", "I,YUYV,8"},
    {"YUY2", "I,YUYV,8"},
    {"uyvy422", "I,UYVY,8"},
    {"UYVY", "I,UYVY,8"},
    {"yvyu422", "I,YVYU,8"},
    {"YVYU", "I,YVYU,8"},
    {"VYUY", "I,VYUY,8"},
    {"nv12", "PI,YYYYUV,8"},
    {"nv21", "PI,YYYYVU,8"},
    {"p010le", "MSB=10,PI,YYYYUV,16"},
    {"P010", "MSB=10,PI,YYYYUV,16"},
    {"p010be", "MSB=10,PI,YYYYUV,-16"},
    {"p016le", "PI,YYYYUV,16"},
    {"P016", "PI,YYYYUV,16"},
    {"p016be", "PI,YYYYUV,-16"},
    {"yuv422p", "P,YY,U,V,8"},
    {"422P", "P,YY,U,V,8"},
    {"yuv422p10le", "LSB=10,P,YY,U,V,16"},
    {"yuv422p10be", "LSB=10,P,YY,U,V,-16"},
    {"yuv444p", "P,Y,U,V,8"},
    {"yuv444p10le", "LSB=10,P,Y,U,V,16"},
};

}  // namespace

std::span<const FormatName> FormatNameTable() { return kNames; }

std::optional<std::string_view> FindFormatName(std::string_view token, std::span<const FormatName> table) {
  for (const FormatName& row : table) {
    if (EqualsIgnoreAsciiCase(row.name, token)) return row.expansion;
  }
  return std::nullopt;
}

}  // namespace korvanel
