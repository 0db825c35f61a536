#pragma once

// The three colour families an image or a format expression belongs to, and
// the letters that name their components.

#include <cstdint>
#include <string_view>

namespace korvanel {

enum class ColorKind : uint32_t { Rgb = 0, Yuv = 1, Gray = 2 };

// "RGB", "YUV" or "Y": the component letters in plane order.
constexpr std::string_view FamilyLetters(ColorKind kind) {
  switch (kind) {
    case ColorKind::Rgb: return "RGB";
    case ColorKind::Yuv: return "YUV";
    case ColorKind::Gray: return "Y";
  }
  return "Y";
}

// The type name an image of the family reports: "RGB", "YUV" or "GRAY".
constexpr const char* KindTypeName(ColorKind kind) {
  switch (kind) {
    case ColorKind::Rgb: return "RGB";
    case ColorKind::Yuv: return "YUV";
    case ColorKind::Gray: return "GRAY";
  }
  return "GRAY";
}

}  // namespace korvanel
