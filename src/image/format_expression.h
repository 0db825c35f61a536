#pragma once

// A format expression says how the bytes of a headerless raw file are laid
// out: "[regex],[A],[offset],packing,layout...,bpp", e.g. "P,Y,8",
// "I,YUYV,-16", "PI,YYYYUV,8", "A,P,Y,16", "-1024,I,RGB,8".

#include <cstdint>
#include <string>
#include <string_view>

#include "image/color_kind.h"
#include "image/component_layout.h"
#include "image/raw_layout.h"

namespace korvanel {

enum class Packing : uint32_t { Interleave = 0, Planar = 1, PlanarInterleave = 2 };

inline constexpr int32_t kOffsetNotGiven = 0x7FFFFFFF;

// |bpp| without overflow for the most negative value a text can give.
inline constexpr uint32_t BppMagnitude(int32_t bpp) {
  return static_cast<uint32_t>(bpp < 0 ? -int64_t{bpp} : int64_t{bpp});
}
inline constexpr uint32_t BppBytes(int32_t bpp) { return (BppMagnitude(bpp) + 7) / 8; }

struct FormatExpression {
  std::string regex = ".*";
  ColorKind color_kind = ColorKind::Gray;
  Packing packing = Packing::Planar;
  // I and PI: the one layout token; P: the three tokens joined by single blanks.
  std::string layout = "Y";
  // The layout read once: tokens, letters, counts and component order.
  ComponentLayout components = ReadComponentLayout("Y", ColorKind::Gray);
  // The layout attributes before the packing token; empty for today's grammar.
  RawLayout raw;
  // The text behind the regex without the leading A and offset tokens
  // (attributes included; a well-known name replaced by its expansion).
  std::string expression;
  // 8, 16, 32, -16 or -32; negative means big-endian components.
  int32_t bpp = 8;
  int32_t offset = kOffsetNotGiven;
  bool ascii = false;
  uint32_t line = 0;

  bool HasOffset() const { return offset != kOffsetNotGiven; }
  uint32_t BytesPerComponent() const { return BppBytes(bpp); }
  uint32_t BitsPerComponent() const { return BppMagnitude(bpp); }
  bool BigEndian() const { return bpp < 0; }
  // Significant bits of the loaded values: LSB/MSB's count, else the container's.
  uint32_t SignificantBits() const { return raw.SignificantBits(BitsPerComponent()); }
  // The expression in its plain form, "[A,][offset,]{attribute,}packing,layout...,bpp"
  // without the regex; parsing it gives this record back.
  std::string ToText() const;

  friend bool operator==(const FormatExpression&, const FormatExpression&) = default;
};

// "I", "P", "PI" as written in expressions.
std::string_view PackingToken(Packing packing);

}  // namespace korvanel
