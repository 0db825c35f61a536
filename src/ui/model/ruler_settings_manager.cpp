#include "ui/model/ruler_settings_manager.h"

#include <charconv>
#include <vector>

#include "image/text_util.h"

namespace korvanel {

namespace {

constexpr int32_t kMaxSpacing = 0xFFFF;
constexpr int32_t kMaxOffsetX = 0xFFFF;
constexpr int32_t kMaxOffsetY = 0x7FFF;

struct Pair {
  int32_t x = 0;
  int32_t y = 0;
};

bool ReadNumber(std::string_view text, int32_t& value) {
  text = TrimAscii(text);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

// "x,y" (a ";" also separates), each a whole number within its limits.
std::optional<Pair> ReadPair(std::string_view text, int32_t min, int32_t max_x, int32_t max_y) {
  const std::vector<std::string> parts = SplitKeepingEmpty(text, ",;");
  Pair pair;
  if (parts.size() != 2 || !ReadNumber(parts[0], pair.x) || !ReadNumber(parts[1], pair.y)) return std::nullopt;
  if (pair.x < min || pair.y < min || pair.x > max_x || pair.y > max_y) return std::nullopt;
  return pair;
}

std::string PairText(const std::vector<int32_t>& values, size_t first, int32_t fallback) {
  const auto at = [&](size_t i) { return i < values.size() ? values[i] : fallback; };
  return std::to_string(at(first)) + "," + std::to_string(at(first + 1));
}

}  // namespace

CRulerSettingsManager::CRulerSettingsManager(const ConfigDialogRuler& defaults)
    : screen_spacing(PairText(defaults.crd_screen, 0, 100)),
      image_spacing(PairText(defaults.crd_image, 0, 10)),
      image_offset(PairText(defaults.crd_image, 2, 0)),
      screen_pixels(defaults.cfg_type == RulerSpacing::kScreen) {}

std::optional<RulerSettings> CRulerSettingsManager::Settings(DialogMessage& message) const {
  const std::optional<Pair> spacing =
      ReadPair(screen_pixels ? screen_spacing : image_spacing, 1, kMaxSpacing, kMaxSpacing);
  if (!spacing) {
    message = {"The ruler spacing must be two whole numbers \"x,y\" from 1 to 65535", kRulerSettingsErrorTitle};
    return std::nullopt;
  }
  RulerSettings settings;
  settings.screen_pixels = screen_pixels;
  settings.spacing_x = spacing->x;
  settings.spacing_y = spacing->y;
  if (!screen_pixels) {
    const std::optional<Pair> offset = ReadPair(image_offset, 0, kMaxOffsetX, kMaxOffsetY);
    if (!offset) {
      message = {"The ruler offset must be two whole numbers \"x,y\": x from 0 to 65535, y from 0 to 32767",
                 kRulerSettingsErrorTitle};
      return std::nullopt;
    }
    settings.offset_x = offset->x;
    settings.offset_y = offset->y;
  }
  return settings;
}

void CRulerSettingsManager::RecordEditHistory(CEditHistory& history) const {
  history.Add(kRulerScreenSpacingTag, screen_spacing);
  history.Add(kRulerImageSpacingTag, image_spacing);
  history.Add(kRulerImageOffsetTag, image_offset);
}

}  // namespace korvanel
