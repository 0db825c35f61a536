#pragma once

// Readable failure messages for the model's geometry types.

#include <ostream>

#include "ui/model/geometry.h"

namespace korvanel {

template <typename T>
void PrintTo(const InclusiveRect<T>& r, std::ostream* os) {
  *os << "{" << r.left << "," << r.top << " .. " << r.right << "," << r.bottom << "}";
}
inline void PrintTo(const ScreenPoint& p, std::ostream* os) { *os << "(" << p.x << "," << p.y << ")"; }
inline void PrintTo(const ScrollBarState& b, std::ostream* os) {
  *os << "{max " << b.maximum << " page " << b.page << " line " << b.line << " pos " << b.position
      << (b.enabled ? " enabled}" : " disabled}");
}

}  // namespace korvanel
