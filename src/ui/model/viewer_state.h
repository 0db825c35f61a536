#pragma once

// The viewer's application-wide state: the shared ZF and its text, the view
// toggles, the dirty flags, the last image area, the status bar,
// and the views of the open images.

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "app/config_values.h"
#include "ui/model/geometry.h"
#include "ui/model/histogram_overlay.h"
#include "ui/model/image_view.h"
#include "ui/model/pixel_inspection.h"
#include "ui/model/status_bar.h"
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

struct ViewerState {
  double zf = 0;
  std::string zoom_text;
  ViewFlags flags;
  bool help_visible = false;
  uint32_t help_page = 0;
  bool view_dirty = true;
  bool layout_dirty = true;
  ScreenSize client;
  int32_t status_height = 0;
  ScreenRect area;       // the image area: client less status bar
  ScreenRect last_area;  // the area of the last layout
  StatusFields status;
  StatusMessage message;
  ScreenPoint cursor{-1, -1};
  std::vector<ImageView> views;
  PixelInspection inspect;
  UpdateState update;
  bool value_comma = false;  // A: numbers grouped by thousands
  HistogramStyle histogram;
  std::map<uint64_t, HistogramOverlayState> histograms;  // by image serial, while shown
  std::vector<std::string> help_pages;                   // 0..10

  ImageView* FindView(uint64_t serial);
  const ImageView* FindView(uint64_t serial) const;
};

}  // namespace korvanel
