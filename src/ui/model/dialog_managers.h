#pragma once

// The state of the viewer's dialogs, kept for the whole session so that a
// dialog opens again as it was last left, and Ctrl+F can repeat a filter.

#include "app/config_values.h"
#include "ui/model/convert_raw_manager.h"
#include "ui/model/filter_colors_manager.h"
#include "ui/model/image_eval_manager.h"
#include "ui/model/open_raw_image_manager.h"
#include "ui/model/ruler_settings_manager.h"

namespace korvanel {

struct DialogManagers {
  explicit DialogManagers(const ConfigValues& config)
      : filter(config.dialog_filter),
        open_raw(config.dialog_open),
        convert(config.dialog_convert),
        ruler(config.dialog_ruler),
        ieval(config.dialog_ieval) {}

  CFilterColorsManager filter;
  COpenRawImageManager open_raw;
  CConvertRawManager convert;
  CRulerSettingsManager ruler;
  CImageEvalManager ieval;
};

}  // namespace korvanel
