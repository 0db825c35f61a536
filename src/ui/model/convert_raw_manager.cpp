#include "ui/model/convert_raw_manager.h"

#include "app/app_state.h"
#include "app/convert_command.h"
#include "image/format_parser.h"
#include "image/line_sink.h"
#include "image/text_util.h"
#include "ops/convert_parsers.h"
#include "ui/model/format_choices_config.h"

namespace korvanel {

CConvertRawManager::CConvertRawManager(const ConfigDialogConvert& defaults)
    : choices(FormatChoicesFromConfig(defaults.type, defaults.packing, defaults.bpp, defaults.little_end)),
      custom_transform(defaults.custom_color_trans_on),
      transform_rows{defaults.def_trans_c1, defaults.def_trans_c2, defaults.def_trans_c3},
      resize(defaults.resize_on),
      size_text(defaults.def_resize_size),
      offset_text(defaults.def_resize_pos_ofs),
      tiled(defaults.resize_tiled_on) {}

std::string CConvertRawManager::Title(std::string_view source_name) {
  return "Convert raw image from " + std::string(source_name);
}

std::string CConvertRawManager::TargetFormat() const {
  const std::string_view direct = TrimAscii(direct_expression);
  return direct.empty() ? GenerateFormatExpression(choices) : std::string(direct);
}

std::string CConvertRawManager::GeneratedLabel() const { return GeneratedExpressionLabel(choices); }

std::array<std::string, 3> CConvertRawManager::RowLabels() const {
  const std::string target = ToUpperAscii(TargetFormat());
  const bool rgb = target.find('R') != std::string::npos && target.find('G') != std::string::npos &&
                   target.find('B') != std::string::npos;
  if (rgb) return {"R' =", "G' =", "B' ="};
  return {"Y' =", "U' =", "V' ="};
}

std::string CConvertRawManager::SourceSizeText(uint32_t width, uint32_t height) {
  return StrFormat("%u ; %u", width, height);
}

std::string CConvertRawManager::NewSizeLine(uint32_t source_width, uint32_t source_height) const {
  NewSize size;
  std::string message;
  if (!ParseNewSize(size_text, source_width, source_height, size, message)) return "New image size: ???";
  return StrFormat("New image size: %ux%u", size.width, size.height);
}

DialogResult CConvertRawManager::Apply(AppState& app) {
  if (app.FocusIndex() >= app.Images().Count()) return std::nullopt;
  ConvertCommand command;
  command.index = app.FocusIndex();
  command.target_text = TargetFormat();
  // The target is checked before the transform, whose rows it names.
  CNullLineSink quiet;
  if (!ParseFormatExpression(ToUpperAscii(command.target_text), 0, quiet)) {
    return DialogMessage{StrFormat("Illegal format '%s'", command.target_text.c_str()),
                         "Image format string parse error"};
  }
  if (custom_transform) {
    ColorTransform transform;
    std::string message;
    if (!ParseColorTransform(transform_rows, command.target_text, transform, message)) {
      return DialogMessage{message, "Color transform coefficients parse error"};
    }
    command.user_transform = transform;
  }
  command.resize = resize;
  command.size_text = size_text;
  command.offset_text = offset_text;
  command.tiled = tiled;
  const CommandOutcome outcome = RunConvertCommand(app, command);
  if (!outcome.done) return DialogMessage{outcome.text, outcome.caption};
  RecordEditHistory(app.EditHistory());
  app.StoreEditHistory();
  return std::nullopt;
}

void CConvertRawManager::RecordEditHistory(CEditHistory& history) const {
  history.Add(kConvertDirectTag, direct_expression);
  for (size_t i = 0; i < transform_rows.size(); ++i) history.Add(kConvertTransformTags[i], transform_rows[i]);
  history.Add(kConvertSizeTag, size_text);
  history.Add(kConvertOffsetTag, offset_text);
}

}  // namespace korvanel
