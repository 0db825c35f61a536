#pragma once

// The start-up settings of the viewer and the state its parts share.

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "app/config_values.h"
#include "ui/model/geometry.h"
#include "ui/model/histogram_overlay.h"
#include "ui/model/image_view.h"
#include "ui/model/update_check.h"
#include "ui/model/view_flags.h"

namespace korvanel {

// The start-up values the viewer takes from the configuration.
struct ViewerSettings {
  ViewFlags flags;
  bool ruler_matrix = false;
  bool value_comma = false;
  std::vector<Rgb> ruler_colors;  // empty: red
  RulerSettings ruler_settings;
  bool watch_files = true;          // timer 2 polls for files changed outside
  bool reload_keeps_format = true;  // the reload question's check box at first
  UpdateSettings update;
  // The dialogs' configured start values.
  ConfigValues dialog_defaults;
  HistogramStyle histogram;

  static ViewerSettings FromConfig(const ConfigValues& values);
};

// What the window shows beyond the images' views: the view toggles, the
// help overlay, the image area, the update check's outcome, and whether the
// base layer must be composed again.
struct ViewerState {
  ViewFlags flags;
  bool help_visible = false;
  uint32_t help_page = 0;
  std::vector<std::string> help_pages;  // 0..10
  bool base_dirty = true;
  ScreenSize client;
  ScreenRect area;  // the image area
  UpdateState update;
};

// What the current event leaves for the one refresh at its end.
struct RefreshNeeds {
  bool repaint = false;               // the whole area
  std::vector<ScreenRect> damage;     // else only these rectangles
  bool menus = false;

  void Damage(std::span<const ScreenRect> rects) { damage.insert(damage.end(), rects.begin(), rects.end()); }
};

}  // namespace korvanel
