#include "app/convert_command.h"

#include <cstring>

#include "app/feedback_progress.h"
#include "files/path_parts.h"
#include "image/format_parser.h"
#include "image/text_util.h"
#include "ops/convert_operation.h"
#include "ops/convert_parsers.h"

namespace korvanel {

namespace {

std::string ConvertedName(const ImageRecord& record) {
  const PathParts parts = SplitPath(record.path.empty() ? record.display_name : record.path);
  return "Converted_Copy_" + parts.stem + (parts.has_extension ? "." + parts.extension : "");
}

}  // namespace

CommandOutcome RunConvertCommand(AppState& app, const ConvertCommand& command) {
  if (command.index >= app.Images().Count()) return CommandOutcome::Failed("No image to convert", "Convert");
  const ImageRecord& record = app.Images().At(command.index);
  const auto& source = dynamic_cast<const CImageConcreteBase&>(*record.image);

  CNullLineSink quiet;
  std::optional<FormatExpression> target =
      ParseFormatExpression(ToUpperAscii(command.target_text), 0, quiet);
  if (!target) {
    return CommandOutcome::Failed(StrFormat("Illegal format '%s'", command.target_text.c_str()),
                                  "Image format string parse error");
  }
  ConvertRequest request;
  request.target = std::move(*target);
  request.yuv_to_rgb = command.use_default_transform ? kDefaultYuvToRgb : g_yuv_to_rgb;
  request.rgb_to_yuv = command.use_default_transform ? kDefaultRgbToYuv : g_rgb_to_yuv;
  if (command.user_transform) {
    // The rows are named by the target: R'G'B' from YUV, Y'U'V' (or Y') from RGB.
    if (request.target.color_kind == ColorKind::Rgb) request.yuv_to_rgb = *command.user_transform;
    else request.rgb_to_yuv = *command.user_transform;
  }

  uint32_t sw = 0, sh = 0;
  source.GetSize(sw, sh);
  if (command.resize) {
    std::string message;
    request.resize = true;
    if (!ParseNewSize(command.size_text, sw, sh, request.size, message)) {
      return CommandOutcome::Failed(message, "Parse image size error");
    }
    if (!ParseBaseOffset(command.offset_text, sw, sh, request.size, request.offset, message)) {
      return CommandOutcome::Failed(message, "Parse base offset error");
    }
    request.tiled = command.tiled;
  }
  if (app.Images().Full()) {
    return CommandOutcome::Failed(app.FormatMessage("Too many open images, reached a max of %u",
                                                    static_cast<unsigned>(app.Images().Count())),
                                  "Open image error");
  }

  app.StatusMessage("Converting a new image from %s...", record.display_name.c_str());
  const std::string name = ConvertedName(record);
  const std::string format_text = request.target.expression;
  CFeedbackProgress progress(app.Feedback());
  progress.Start("Image Convert",
                 uint64_t{request.resize ? request.size.width : sw} * (request.resize ? request.size.height : sh));
  ConvertRun run = RunConvert(source, request, app.Jobs(), &progress);
  if (run.run.aborted) {
    app.StatusMessage("Convert: Aborted after %llu ms", static_cast<unsigned long long>(run.run.elapsed_ms));
    return CommandOutcome::FailedQuietly("aborted");
  }
  if (!run.image) return CommandOutcome::Failed("Not enough memory for the converted image", "Convert");
  const IImageContainer* created = run.image.get();
  const size_t index = app.RegisterImage(std::move(run.image), name, format_text, false);
  app.MarkCreatedUnsaved(created);
  app.StatusMessage("Converted new image (%llu ms): Created %s (HK id %u)",
                    static_cast<unsigned long long>(run.run.elapsed_ms), name.c_str(),
                    app.Images().At(index).hk_id);
  return CommandOutcome::Done();
}

}  // namespace korvanel
