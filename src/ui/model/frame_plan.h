#pragma once

// What one frame shows, decided by the controller and executed by the
// renderer: per panel the rectangles, scale, grid, values, rings, ruler and
// tab; with no image open the invitation texts. The panels point at the
// images' renditions, built on the UI thread by PrepareFrame and valid until
// the next command changes the image set.

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/config_values.h"
#include "image/display_rendition.h"
#include "ui/model/geometry.h"
#include "ui/model/help_pages.h"
#include "ui/model/histogram_overlay.h"
#include "ui/model/image_view.h"
#include "ui/model/inspection_plan.h"

namespace korvanel {

class IImageContainer;

struct ValuePlan {
  bool show = false;          // on and the width template fits a block
  bool hex = false;
  bool one_component = true;
  const char* format = "%u";  // "%u", "%X", "%u,%u,%u" or "%X,%X,%X"
};

struct RulerPlan {
  bool show = false;
  RulerType type = RulerType::Indent;
  RulerSettings settings;
  Rgb color;
};

struct TabPlan {
  ScreenRect rect;       // empty: no tab
  ScreenRect close_box;  // top-left of the tab
  std::string text;
  char close_text = 'X';  // 'O' removes from the party
  bool hovered = false;
  bool close_hovered = false;
};

// The histogram box over a panel. `data` points into the viewer state and
// stays valid until the next command changes the image set.
struct HistogramPlan {
  bool show = false;
  const HistogramData* data = nullptr;
  HistogramBoxLayout layout;
  bool transparent = false;
  bool shadow = false;
  Rgb foreground;
  Rgb shadow_color;
  std::optional<HistogramHover> hover;
  std::vector<std::optional<uint32_t>> lit;  // per channel
};

struct PanelPlan {
  size_t image_index = 0;
  uint32_t hk_id = 0;
  IImageContainer* image = nullptr;
  const DisplayRendition* rendition = nullptr;  // null: nothing to draw
  ScreenRect panel;
  ScreenRect picture;
  PixelRect source;      // the visible image pixels
  ScreenPoint origin;    // screen position of image pixel (0, 0) when replicating
  bool stretch = false;  // below ZF 1: fill the panel with (4,0,0), stretch
  uint32_t k = 1;
  bool grid = false;
  PixelRect roi;  // the active ROI for the grid colours; empty: none
  ValuePlan values;
  uint32_t rings = 0;
  RulerPlan ruler;
  TabPlan tab;
  PanelInspectionPlan inspect;
  HistogramPlan histogram;
};

inline constexpr const char* kNoImageInvitation =
    "Drag one or more images to open them... (F1 for extra help)";
inline constexpr const char* kNewerVersionFormat =
    "Newer version %s is available. Refer to Help menu";

struct NoImagePlan {
  bool show = false;
  std::string invitation;
  std::string newer_version;  // empty unless the update check found one
};

struct FramePlan {
  ScreenRect area;         // the image area
  bool base_dirty = true;  // the base layer must be composed again
  std::vector<PanelPlan> panels;
  NoImagePlan no_image;
  bool help_visible = false;
  uint32_t help_page = 0;
  DirectivePlan directive;
  const std::string* help_text = nullptr;  // the page shown, when visible
  HelpOverlayLayout help;
};

}  // namespace korvanel
