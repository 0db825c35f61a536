#include "ui/model/open_raw_image_manager.h"

#include <charconv>
#include <cstdint>

#include "image/text_util.h"
#include "ui/model/format_choices_config.h"

namespace korvanel {

namespace {

template <typename T>
bool ReadWhole(std::string_view text, T& value) {
  text = TrimAscii(text);
  if (!text.empty() && text.front() == '+') text.remove_prefix(1);
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return !text.empty() && error == std::errc() && end == text.data() + text.size();
}

}  // namespace

COpenRawImageManager::COpenRawImageManager(const ConfigDialogOpen& defaults)
    : width_text(defaults.def_width),
      height_text(defaults.def_height),
      offset_text(defaults.def_offset),
      choices(FormatChoicesFromConfig(defaults.type, defaults.packing, defaults.bpp, defaults.little_end)),
      ascii(defaults.ascii) {}

std::string COpenRawImageManager::Expression() const {
  const std::string_view direct = TrimAscii(direct_expression);
  if (!direct.empty()) return std::string(direct);
  std::string prefix = ascii ? "A," : "";
  const std::string_view offset = TrimAscii(offset_text);
  if (!offset.empty()) prefix += std::string(offset) + ",";
  return prefix + GenerateFormatExpression(choices);
}

std::string COpenRawImageManager::GeneratedLabel() const { return GeneratedExpressionLabel(choices); }

DialogResult COpenRawImageManager::Accept(OpenRawAnswer& answer) const {
  uint32_t width = 0;
  uint32_t height = 0;
  if (!ReadWhole(width_text, width) || !ReadWhole(height_text, height) || width == 0 || height == 0) {
    return DialogMessage{"Please enter the image width and height as positive whole numbers",
                         kOpenRawErrorTitle};
  }
  int32_t offset = 0;
  if (!TrimAscii(offset_text).empty() && !ReadWhole(offset_text, offset)) {
    return DialogMessage{"The offset must be a whole number of bytes (negative counts from the file's end)",
                         kOpenRawErrorTitle};
  }
  answer.expression = Expression();
  answer.width = width;
  answer.height = height;
  return std::nullopt;
}

void COpenRawImageManager::RecordEditHistory(CEditHistory& history) const {
  history.Add(kOpenRawExpressionTag, direct_expression);
  history.Add(kOpenRawWidthTag, width_text);
  history.Add(kOpenRawHeightTag, height_text);
  history.Add(kOpenRawOffsetTag, offset_text);
}

}  // namespace korvanel
