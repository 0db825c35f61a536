#pragma once

// The viewer's inspection state: the pixel under the cursor and its image,
// the ROI being chosen or resized, the coordinate history of the jump phase,
// the earlier searches and the last hit of the find phase, and the two
// marker lists of timers 3 and 4.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ui/model/coordinate_history.h"
#include "ui/model/find_entry.h"
#include "ui/model/pixel_markers.h"
#include "ui/model/pixel_mapping.h"
#include "ui/model/pixel_search.h"
#include "ui/model/roi_editor.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

// The value searched last and where it was last found, for find next and
// find previous.
struct LastFind {
  std::optional<PixelValue> value;
  uint64_t serial = 0;  // the image searched
  std::optional<PixelPoint> hit;
  uint32_t hit_number = 0;
};

struct PixelInspection {
  // The image under the cursor (registry index) and the pixel there; the
  // other drawn images read the same coordinate.
  size_t image = static_cast<size_t>(-1);
  std::optional<PixelPoint> pixel;
  CRoiEditor roi;
  CCoordinateHistory jump_history;
  CFindHistory find_history;
  LastFind last_find;
  CMarkerList jump_markers;
  CMarkerList find_markers;
  CursorShape shape = CursorShape::Arrow;  // as last set on the window
  // The overlay rectangles that depend on the cursor, as last drawn.
  std::vector<ScreenRect> cursor_damage;
};

}  // namespace korvanel
