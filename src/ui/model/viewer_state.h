#pragma once

// The viewer's application-wide state: the shared ZF and its text, the view
// toggles, layer mode, the dirty flags, the last image area, the status bar,
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
#include "ui/model/status_bar.h"
#include "ui/model/view_flags.h"

namespace korvanel {

// The start-up values the viewer takes from the configuration.
struct ViewerSettings {
  ViewFlags flags;
  bool ruler_matrix = false;
  bool value_comma = false;
  std::vector<Rgb> ruler_colors;  // empty: red
  RulerSettings ruler_settings;
  HistogramStyle histogram;

  static ViewerSettings FromConfig(const ConfigValues& values);
};

// Layer mode: compare mode showing one party image at a time.
struct LayerState {
  bool on = false;
  size_t visible = 0;   // index within the party
  size_t previous = 0;  // the layer the back key returns to
};

struct ViewerState {
  double zf = 0;
  std::string zoom_text;
  ViewFlags flags;
  LayerState layer;
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
  bool value_comma = false;  // A: numbers grouped by thousands
  HistogramStyle histogram;
  std::map<uint64_t, HistogramOverlayState> histograms;  // by image serial, while shown
  std::vector<std::string> help_pages;                   // 0..10

  ImageView* FindView(uint64_t serial);
  const ImageView* FindView(uint64_t serial) const;
};

}  // namespace korvanel
