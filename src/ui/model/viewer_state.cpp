#include "ui/model/viewer_state.h"

#include <algorithm>

namespace korvanel {

ViewerSettings ViewerSettings::FromConfig(const ConfigValues& values) {
  const ConfigGui& gui = values.gui;
  ViewerSettings settings;
  settings.flags = {gui.grid_mode,       gui.pixel_value_mode,
                    gui.pixel_display_base == PixelBase::kHex,
                    gui.coord_track_mode, gui.coord_ofs_mode,
                    gui.ruler_mode};
  settings.ruler_matrix = gui.ruler_type_matrix;
  settings.value_comma = gui.value_comma_decorate;
  settings.ruler_colors = gui.ruler_color;
  settings.watch_files = !values.system.ignore_file_extern_modify;
  settings.reload_keeps_format = values.dialog_file_modify.try_relaod_same_file_cfg;
  settings.dialog_defaults = values;
  settings.histogram = HistogramStyle::FromConfig(gui);
  const ConfigDialogRuler& ruler = values.dialog_ruler;
  settings.ruler_settings.screen_pixels = ruler.cfg_type == RulerSpacing::kScreen;
  const std::vector<int32_t>& spacing =
      settings.ruler_settings.screen_pixels ? ruler.crd_screen : ruler.crd_image;
  const auto at = [&](size_t i) { return i < spacing.size() ? spacing[i] : 0; };
  settings.ruler_settings.spacing_x = at(0);
  settings.ruler_settings.spacing_y = at(1);
  if (!settings.ruler_settings.screen_pixels) {
    settings.ruler_settings.offset_x = at(2);
    settings.ruler_settings.offset_y = at(3);
  }
  settings.update = {values.system.auto_check_updates, values.system.update_check_url,
                     values.system.update_download_url};
  return settings;
}

}  // namespace korvanel
