#include "image/format_expression.h"

namespace korvanel {

std::string_view PackingToken(Packing packing) {
  switch (packing) {
    case Packing::Interleave: return "I";
    case Packing::Planar: return "P";
    case Packing::PlanarInterleave: return "PI";
  }
  return "?";
}

std::string FormatExpression::ToText() const {
  std::string text;
  if (ascii) text += "A,";
  if (HasOffset()) text += std::to_string(offset) + ",";
  text += raw.ToText();
  text += PackingToken(packing);
  for (const std::string& token : components.tokens) text += "," + token;
  text += "," + std::to_string(bpp);
  return text;
}

}  // namespace korvanel
