#pragma once

// Which sample values a colour filter lets through, per component: entry v
// of a table is 1 when value v stays visible. 8- and 16-bit images only
// (tables of 256 or 65,536 entries).

#include <array>
#include <cstdint>
#include <vector>

namespace korvanel {

struct FilterTables {
  uint32_t bits = 8;
  uint32_t components = 1;
  std::array<std::vector<uint8_t>, 3> table;
  // What masked-out components are shown as.
  std::array<uint32_t, 3> negation{0, 0, 0};

  uint32_t MaxValue() const { return bits >= 32 ? 0xFFFFFFFFu : (1u << bits) - 1; }
  void Reset(uint32_t bits_per_component, uint32_t component_count) {
    bits = bits_per_component;
    components = component_count;
    for (auto& t : table) t.assign(size_t{MaxValue()} + 1, 0);
    negation = {0, 0, 0};
  }
};

}  // namespace korvanel
