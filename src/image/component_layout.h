#pragma once

// The layout part of a format expression ("YUYV", "YY U V", "BGR"), read once
// into what the loaders, writers and size checks need from it.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "image/color_kind.h"

namespace korvanel {

struct ComponentLayout {
  // As written: one token for I and PI, three for P (grey: the one token "Y").
  std::vector<std::string> tokens;
  // The tokens run together: "YUYV", "YYUV", "BGR".
  std::string letters;
  // Samples of each family component (Y,U,V or R,G,B) in one layout group.
  std::array<uint32_t, 3> counts{};
  // Each family component once, in the order the layout first names it
  // ("UYVY" gives "UYV"); empty unless all three occur.
  std::string order;

  uint32_t MaxCount() const;
  // Only letters of the family, so the group holds exactly the counted samples.
  bool OnlyFamilyLetters() const { return letters.size() == counts[0] + counts[1] + counts[2]; }
  // The Y plane followed by one chroma pair per 2x2 cell ("YYYYUV", "YYYYVU").
  bool IsCellPairLayout() const { return letters == "YYYYUV" || letters == "YYYYVU"; }

  friend bool operator==(const ComponentLayout&, const ComponentLayout&) = default;
};

// Reads `layout` (tokens separated by blanks) with the letters of `kind`.
ComponentLayout ReadComponentLayout(std::string_view layout, ColorKind kind);

}  // namespace korvanel
