#include "ui/qt/qt_text_metrics.h"

#include <QString>
#include <algorithm>
#include <cmath>

namespace korvanel {
namespace {

// Pixel values use a small fixed-pitch font: "255" is 14 pixels wide at 8
// pixels, so one-component values fit from ZF 15 (the manual's figure) and
// three-component ones ("255,10,10") from ZF 45. "Courier New" resolves to
// its metric twin Liberation Mono where it is not installed.
constexpr const char* kValueFamily = "Courier New";
constexpr int32_t kValuePixels = 8;
// The window's own texts (the no-image invitation).
constexpr const char* kTextFamily = "Arial";
constexpr int32_t kTextPixels = 16;
constexpr size_t kMaxValueChars = 32;
// The help overlay: fixed-pitch, 16 pixels, 14 when a page does not fit.
constexpr const char* kHelpFamily = "Courier New";
constexpr int32_t kHelpLargePixels = 16;
constexpr int32_t kHelpSmallPixels = 14;
// The histogram's emphasised texts are this much larger than its plain ones.
constexpr int32_t kEmphasisPixels = 2;

struct RoleFont {
  std::string name;
  int32_t pixels = 0;
  bool fixed_pitch = false;
  bool bold = false;
};

int32_t SmallPixels(const FontSpec& configured) {
  return configured.small_size > 0 ? configured.small_size : configured.size * 3 / 4;
}

// In FontRole order.
std::array<RoleFont, kFontRoleCount> RoleFonts(const ConfigGui& gui) {
  static_assert(static_cast<size_t>(FontRole::Tab) == 0 && static_cast<size_t>(FontRole::TabSmall) == 1 &&
                static_cast<size_t>(FontRole::Ruler) == 2 &&
                static_cast<size_t>(FontRole::RulerSmall) == 3 &&
                static_cast<size_t>(FontRole::Values) == 4 && static_cast<size_t>(FontRole::Text) == 5 &&
                static_cast<size_t>(FontRole::Histogram) == 6 &&
                static_cast<size_t>(FontRole::HistogramLabel) == 7 &&
                static_cast<size_t>(FontRole::HelpLarge) == 8 && static_cast<size_t>(FontRole::HelpSmall) == 9);
  return {{
      {gui.tab_font.name, gui.tab_font.size, false},
      {gui.tab_font.name, SmallPixels(gui.tab_font), false},
      {gui.ruler_font.name, gui.ruler_font.size, false},
      {gui.ruler_font.name, SmallPixels(gui.ruler_font), false},
      {kValueFamily, kValuePixels, true},
      {kTextFamily, kTextPixels, false},
      {gui.tab_font.name, SmallPixels(gui.tab_font), false},
      {gui.tab_font.name, SmallPixels(gui.tab_font) + kEmphasisPixels, false, true},
      {kHelpFamily, kHelpLargePixels, true},
      {kHelpFamily, kHelpSmallPixels, true},
  }};
}

QFont MakeFont(const RoleFont& role, qreal dpr) {
  QFont font(QString::fromStdString(role.name.empty() ? std::string(kTextFamily) : role.name));
  const int32_t pixels = std::max<int32_t>(1, static_cast<int32_t>(std::lround(role.pixels * dpr)));
  font.setPixelSize(pixels);
  if (role.fixed_pitch) {
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
  }
  font.setBold(role.bold);
  return font;
}

}  // namespace

CQtTextMetrics::CQtTextMetrics(const ConfigGui& gui) : gui_(gui) { Build(); }

void CQtTextMetrics::SetDevicePixelRatio(qreal dpr) {
  const qreal ratio = dpr > 0 ? dpr : 1.0;
  if (ratio == dpr_) return;
  dpr_ = ratio;
  Build();
}

void CQtTextMetrics::Build() {
  const auto roles = RoleFonts(gui_);
  for (size_t i = 0; i < kFontRoleCount; ++i) {
    fonts_[i].font = MakeFont(roles[i], dpr_);
    fonts_[i].metrics = QFontMetrics(fonts_[i].font);
  }
  const QFontMetrics& values = Metrics(FontRole::Values);
  value_widths_.assign(kMaxValueChars + 1, 0);
  for (size_t n = 1; n <= kMaxValueChars; ++n) {
    value_widths_[n] = values.horizontalAdvance(QString(static_cast<qsizetype>(n), QLatin1Char('0')));
  }
}

int32_t CQtTextMetrics::ValueWidth(size_t count) const {
  if (count < value_widths_.size()) return value_widths_[count];
  return static_cast<int32_t>(count) * Metrics(FontRole::Values).horizontalAdvance(QLatin1Char('0'));
}

int32_t CQtTextMetrics::Width(FontRole role, std::string_view text) const {
  return Metrics(role).horizontalAdvance(
      QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
}

int32_t CQtTextMetrics::Height(FontRole role) const { return Metrics(role).height(); }

}  // namespace korvanel
