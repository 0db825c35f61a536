#pragma once

// The viewer's fonts, one per role, and their measurements for the model.
// Configured fonts are pixel heights ("Arial, 16, 12"); they are built at
// that height times the device pixel ratio, because the model and the frame
// buffer work in device pixels.

#include <QFont>
#include <QFontMetrics>
#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "app/config_values.h"
#include "ui/model/text_metrics.h"

namespace korvanel {

inline constexpr size_t kFontRoleCount = static_cast<size_t>(FontRole::HelpSmall) + 1;

class CQtTextMetrics : public ITextMetrics {
 public:
  explicit CQtTextMetrics(const ConfigGui& gui);
  // Rebuilds every font for `dpr` (1 when not positive).
  void SetDevicePixelRatio(qreal dpr);
  qreal DevicePixelRatio() const { return dpr_; }

  const QFont& Font(FontRole role) const { return fonts_[Slot(role)].font; }
  const QFontMetrics& Metrics(FontRole role) const { return fonts_[Slot(role)].metrics; }
  // Ascent of the role's font: where a baseline goes below a text's top.
  int32_t Ascent(FontRole role) const { return Metrics(role).ascent(); }
  // Width of `count` characters of the fixed-pitch value font, so that
  // values are centred from their length without measuring each text.
  int32_t ValueWidth(size_t count) const;

  int32_t Width(FontRole role, std::string_view text) const override;
  int32_t Height(FontRole role) const override;

 private:
  struct RoleFont {
    QFont font;
    QFontMetrics metrics{QFont()};
  };
  static size_t Slot(FontRole role) { return static_cast<size_t>(role); }
  void Build();

  ConfigGui gui_;
  qreal dpr_ = 1.0;
  std::array<RoleFont, kFontRoleCount> fonts_;
  std::vector<int32_t> value_widths_;  // by character count
};

}  // namespace korvanel
