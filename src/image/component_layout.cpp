#include "image/component_layout.h"

#include <algorithm>

#include "image/text_util.h"

namespace korvanel {

uint32_t ComponentLayout::MaxCount() const { return std::max({counts[0], counts[1], counts[2]}); }

ComponentLayout ReadComponentLayout(std::string_view layout, ColorKind kind) {
  const std::string_view family = FamilyLetters(kind);
  ComponentLayout out;
  out.tokens = SplitTokens(layout, " \t");
  for (const std::string& token : out.tokens) out.letters += token;
  std::string order;
  for (char c : out.letters) {
    const size_t component = family.find(c);
    if (component == std::string_view::npos) continue;
    ++out.counts[component];
    if (order.find(c) == std::string::npos) order.push_back(c);
  }
  if (order.size() == 3) out.order = std::move(order);
  return out;
}

}  // namespace korvanel
