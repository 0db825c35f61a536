#pragma once

// The application-wide view toggles (G, V, H, T, O, r).

namespace korvanel {

struct ViewFlags {
  bool grid = false;
  bool values = false;
  bool hex = false;
  bool tracking = false;
  bool offset = false;
  bool ruler = false;
  friend bool operator==(const ViewFlags&, const ViewFlags&) = default;
};

}  // namespace korvanel
