#pragma once

// The state of the Convert dialog: the target format (buttons or a direct
// expression), the custom colour transform rows, and the resize settings.
// Apply validates in the order the user is told about problems and creates
// the converted image; every refusal leaves the dialog open.

#include <array>
#include <string>

#include "app/config_values.h"
#include "app/edit_history.h"
#include "image/format_generator.h"
#include "ui/model/dialog_message.h"

namespace korvanel {

class AppState;

inline constexpr const char* kConvertDirectTag = "[CR_DIRECT_EXPR]";
inline constexpr std::array<const char*, 3> kConvertTransformTags = {"[CR_COLOR_TRANS1]", "[CR_COLOR_TRANS2]",
                                                                     "[CR_COLOR_TRANS3]"};
inline constexpr const char* kConvertSizeTag = "[CR_RESIZE_SIZE]";
inline constexpr const char* kConvertOffsetTag = "[CR_RESIZE_OFS]";
// The size field's example.
inline constexpr const char* kConvertSizeHint = "w*2;h+100;40;40";

class CConvertRawManager final : public IEditHistoryAccessor {
 public:
  explicit CConvertRawManager(const ConfigDialogConvert& defaults);

  std::string direct_expression;  // used as it stands when not blank
  FormatChoices choices;
  bool custom_transform = false;
  std::array<std::string, 3> transform_rows;
  bool resize = false;
  std::string size_text;
  std::string offset_text;
  bool tiled = false;

  // "Convert raw image from %s"
  static std::string Title(std::string_view source_name);
  std::string TargetFormat() const;
  std::string GeneratedLabel() const;
  // "R' =", "G' =", "B' =" when the target names R, G and B, else the Y'U'V' ones.
  std::array<std::string, 3> RowLabels() const;
  // The source-size button's text: "%u ; %u".
  static std::string SourceSizeText(uint32_t width, uint32_t height);
  // "New image size: %ux%u", or "New image size: ???" while the text does not evaluate.
  std::string NewSizeLine(uint32_t source_width, uint32_t source_height) const;

  // Converts the focus image into a new one.
  DialogResult Apply(AppState& app);

  void RecordEditHistory(CEditHistory& history) const override;
};

}  // namespace korvanel
