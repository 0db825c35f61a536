#include "app/batch_executor.h"

#include <algorithm>
#include <optional>

#include "app/convert_command.h"
#include "app/diff_command.h"
#include "app/filter_command.h"
#include "app/ieval_command.h"
#include "app/save_commands.h"
#include "files/formats_file.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

// The reference as printed in messages: an omitted one stands for -1, the
// most recent image.
int32_t ShownReference(const ParsedCommand& c, size_t position = 0) {
  return c.images.size() > position ? c.images[position] : -1;
}

std::optional<size_t> ResolveImage(const AppState& app, const ParsedCommand& c, size_t position = 0) {
  return app.Images().ResolveHkReference(ShownReference(c, position));
}

// A command's own outcome, shown as the viewer would show it; a failure ends
// the run.
bool ReportOutcome(AppState& app, const CommandOutcome& outcome) {
  ShowOutcome(app, outcome);
  if (!outcome.done) app.SetBatchFailed(true);
  return outcome.done;
}

// --- open ------------------------------------------------------------------------

// Rules for an open with a forced size, format or both.
bool ForcedRules(AppState& app, const ParsedCommand& c, FormatRules& rules) {
  const FormatRules& in_force = app.Formats();
  if (!c.format_expression.empty()) {
    // Parsed once, so its section appears once in the format-load log. An
    // empty size would switch the expression off unparsed: parse it at 1x1 to
    // tell a bad expression apart.
    const bool sized = c.has_dimensions && uint64_t{c.width} * c.height != 0;
    DirectFormat parsed;
    if (!SetDirectExpression(c.format_expression, sized ? c.width : 1, sized ? c.height : 1, parsed,
                             app.FormatLog())) {
      app.ReportBatchError("Illegal format '%s'\n", c.format_expression.c_str());
      return false;
    }
    if (c.has_dimensions) {
      if (sized) rules.direct = std::move(parsed);
      return true;
    }
    // A format without a size takes the size from the rules that match.
    rules.groups = in_force.groups;
    for (FormatGroup& group : rules.groups) group.formats = parsed.group.formats;
    return true;
  }
  // A size without a format: every rule's formats at the forced size.
  rules.groups = in_force.groups;
  for (FormatGroup& group : rules.groups) {
    group.width_regex.clear();
    group.height_regex.clear();
    group.width_value = c.width;
    group.height_value = c.height;
  }
  return true;
}

bool RunOpen(AppState& app, const ParsedCommand& c) {
  if (!c.has_dimensions && c.format_expression.empty()) {
    if (app.OpenImage(c.path)) return true;
    app.ReportBatchError("Open image failed\n");
    return false;
  }
  FormatRules rules;
  if (!ForcedRules(app, c, rules)) return false;
  if (app.OpenImage(c.path, rules)) return true;
  if (c.has_dimensions && c.format_expression.empty()) {
    app.ReportBatchError("Can't open %s with known size but none supplied format expression\n", c.path.c_str());
  } else if (!c.has_dimensions) {
    app.ReportBatchError("Can't open %s with supplied format expression but unknown size\n", c.path.c_str());
  } else {
    app.ReportBatchError("Open image failed\n");
  }
  return false;
}

bool RunFormatFile(AppState& app, const ParsedCommand& c) {
  if (app.LoadFormats(c.path)) return true;
  app.ReportBatchError("Can't load format file '%s'\n", c.path.c_str());
  return false;
}

bool RunConfigFile(AppState& app, const ParsedCommand& c) {
  if (app.LoadConfiguration(c.path)) return true;
  app.ReportBatchError("Can't load config file '%s'\n", c.path.c_str());
  return false;
}

// --- images ----------------------------------------------------------------------

bool RunNew(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError("Can't duplicate a new image: invalid image index (%d)\n", ShownReference(c));
    return false;
  }
  // The pointer decides crop or copy in the viewer; here use_roi does.
  const Rect roi = app.Images().At(*index).image->GetRegionOfInterest();
  const bool crop = c.use_roi && !roi.IsNone();
  app.SetHover(*index, crop ? static_cast<int32_t>(roi.min_x) : -1, crop ? static_cast<int32_t>(roi.min_y) : -1);
  const bool ok = app.NewImageFromView();
  app.SetHover(kNoIndex, -1, -1);
  if (!ok) app.SetBatchFailed(true);
  return ok;
}

bool RunCompare(AppState& app, const ParsedCommand& c) {
  if (app.Images().Empty()) {
    app.ReportBatchError("Can't compare: no open image to select\n");
    return false;
  }
  if (c.images.empty()) {
    app.CompareAllLike(app.Images().Count() - 1);
    return true;
  }
  std::vector<size_t> indices;
  for (size_t i = 0; i < c.images.size(); ++i) {
    const std::optional<size_t> index = app.Images().ResolveHkReference(c.images[i]);
    if (!index) {
      app.ReportBatchError("Can't compare: invalid image index %d (%d)\n", c.images[i], static_cast<int>(i + 1));
      return false;
    }
    indices.push_back(*index);
  }
  app.CompareImages(indices);
  return true;
}

bool RunRoi(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError("Can't set ROI: invalid image index (%d)\n", ShownReference(c));
    return false;
  }
  const ImageRecord& record = app.Images().At(*index);
  uint32_t width = 0, height = 0;
  record.image->GetSize(width, height);
  if (c.roi.max_x >= width || c.roi.max_y >= height) {
    app.ReportBatchError("Can't set ROI: image index %u size doesn't fit the roi (size = <%u,%u>)\n",
                         record.hk_id, width, height);
    return false;
  }
  record.image->SetRegionOfInterest(c.roi);
  return true;
}

bool RunClose(AppState& app, const ParsedCommand& c) {
  if (c.close_all) {
    app.CloseAllImages();
    return true;
  }
  std::vector<size_t> indices;
  for (size_t i = 0; i < c.images.size(); ++i) {
    const std::optional<size_t> index = app.Images().ResolveHkReference(c.images[i]);
    if (!index) {
      app.ReportBatchError("Can't close: invalid image index %d (%d)\n", c.images[i], static_cast<int>(i + 1));
      return false;
    }
    indices.push_back(*index);
  }
  // Highest first, so that closing one does not move the others.
  std::sort(indices.rbegin(), indices.rend());
  indices.erase(std::unique(indices.begin(), indices.end()), indices.end());
  for (size_t index : indices) app.CloseImage(index);
  return true;
}

// -e: the comparison group, or the focus image; an explicit reference
// leaves any comparison for the rest of the run and works on that image.
bool RunIEval(AppState& app, const ParsedCommand& c) {
  std::vector<size_t> indices;
  if (!c.images.empty()) {
    const std::optional<size_t> index = ResolveImage(app, c);
    if (!index) {
      app.ReportBatchError("Can't apply I-Eval: invalid image index (%d)\n", ShownReference(c));
      return false;
    }
    if (app.CompareMode()) app.LeaveCompareMode();
    app.SetFocus(*index);
    indices.push_back(*index);
  } else if (app.CompareMode() && !app.ComparisonGroup().empty()) {
    indices = app.ComparisonGroup();
  } else if (app.FocusIndex() < app.Images().Count()) {
    indices.push_back(app.FocusIndex());
  } else {
    app.ReportBatchError("Can't apply I-Eval: invalid image index (%d)\n", ShownReference(c));
    return false;
  }
  IEvalRequest request;
  request.expression = c.ieval_expression;
  if (!c.out_of_range.empty()) request.out_of_range = c.out_of_range;
  request.output_override = c.output_override;
  request.options.in_roi = c.in_roi;
  request.options.channels =
      c.channels == IEvalChannels::Single ? IEvalChannelMode::Single : IEvalChannelMode::Context;
  request.options.yuv = c.channels == IEvalChannels::ContextYuv;
  request.options.out_bits = c.output_bits;
  if (RunIEvalCommand(app, request, indices)) return true;
  app.SetBatchFailed(true);
  return false;
}

bool RunDiff(AppState& app, const ParsedCommand& c) {
  if (app.Images().Count() < 2) {
    app.ReportBatchError("Can't diff: not enough open images\n");
    return false;
  }
  // Without references: the two most recent images.
  const int32_t first = c.images.size() == 2 ? c.images[0] : -2;
  const int32_t second = c.images.size() == 2 ? c.images[1] : -1;
  const std::optional<size_t> left = app.Images().ResolveHkReference(first);
  const std::optional<size_t> right = app.Images().ResolveHkReference(second);
  if (!left || !right) {
    app.ReportBatchError("Can't diff: invalid image index (%d,%d)\n", first, second);
    return false;
  }
  app.ForceComparison({*left, *right});
  // The kind names of the command map onto the routine code bits directly.
  // Told before leaving the comparison, whose focus change rewrites the status.
  const bool ok = ReportOutcome(app, DiffComparison(app, static_cast<uint32_t>(c.diff_kind)));
  app.LeaveCompareMode();
  return ok;
}

bool RunFilter(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError("Can't filter: invalid image index (%d)\n", ShownReference(c));
    return false;
  }
  FilterCommand command;
  command.expression = c.filter_expression;
  command.negation = c.negation_expression;
  command.all_components = c.all_components;
  command.target = c.separate_components ? FilterTarget::SeparateComponents : FilterTarget::Image;
  command.index = *index;
  const FilterResult result = RunFilterCommand(app, command);
  switch (result.status) {
    case FilterOutcome::Applied: return true;
    case FilterOutcome::BadExpression:
      app.ReportBatchError("Can't filter: illegal expression (%s or %s)\n", c.filter_expression.c_str(),
                           c.negation_expression.c_str());
      return false;
    case FilterOutcome::BadDepth:
      app.ReportBatchError("Can't filter: illegal BPP (%d)\n",
                           static_cast<int>(app.Images().At(*index).image->GetBitsPerComponent()));
      return false;
    case FilterOutcome::NoSlots:
    case FilterOutcome::Failed: break;
  }
  return ReportOutcome(app, result.outcome);
}

// --- saving ----------------------------------------------------------------------

SaveOptions SaveOptionsOf(const ParsedCommand& c) {
  return {c.path, c.overwrite};
}

// Text or hex text, the packing, the byte order; binary in the image's own
// packing, little-endian, by default.
SaveKind SaveKindOf(const ParsedCommand& c) {
  SaveKind kind;
  kind.format = c.text ? SaveFormat::Text : c.hex_text ? SaveFormat::HexText : SaveFormat::Binary;
  kind.packing = c.planar ? SavePacking::Planar : c.interleave ? SavePacking::Interleave : SavePacking::Original;
  kind.big_endian = c.big_endian;
  return kind;
}

bool SaveAt(AppState& app, size_t index, const ParsedCommand& c) {
  return SaveImagesAt(app, {index}, SaveKindOf(c), SaveOptionsOf(c));
}
bool SaveStatisticsOf(AppState& app, size_t index, const ParsedCommand& c) {
  return SaveStatisticsAt(app, index, SaveOptionsOf(c));
}
bool ExportPngOf(AppState& app, size_t index, const ParsedCommand& c) {
  return ExportPngAt(app, index, SaveOptionsOf(c));
}

constexpr char kCantSave[] = "Can't save image";
constexpr char kCantSaveStatistics[] = "Can't save image statistics";
constexpr char kCantExportPng[] = "Can't export image to PNG";

// Without a window nobody can be asked for a file name.
bool NeedsForcedName(const AppState& app, const ParsedCommand& c) {
  return c.path.empty() && !app.AutoFileNaming() && app.BatchConsoleMode();
}

// -s, -sst and -spng: one image by reference. A save that did not happen has
// shown its own message; the run fails.
template <const char* What, bool (*Operation)(AppState&, size_t, const ParsedCommand&)>
bool RunSaving(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError("%s: invalid image index (%d)\n", What, ShownReference(c));
    return false;
  }
  if (NeedsForcedName(app, c)) {
    app.ReportBatchError("%s: automatic file naming is off, add 'name <path>' to name the output file\n", What);
    return false;
  }
  const bool done = Operation(app, *index, c);
  if (!done) app.SetBatchFailed(true);
  return done;
}

bool RunConvert(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError("Can't create new converted image: invalid image index (%d)\n", ShownReference(c));
    return false;
  }
  ConvertCommand command;
  command.index = *index;
  command.target_text = c.format_expression;
  command.use_default_transform = c.use_default_transform;
  if (c.has_transform) command.user_transform = c.transform;
  if (!c.resize.empty()) {
    // "w;h" or "w;h;x;y": the size, then the offset.
    const std::vector<std::string> parts = SplitKeepingEmpty(c.resize, ";");
    command.resize = true;
    command.size_text = parts[0] + ";" + parts[1];
    if (parts.size() == 4) command.offset_text = parts[2] + "," + parts[3];
    command.tiled = c.resize_tiled;
  }
  const CommandOutcome outcome = RunConvertCommand(app, command);
  if (outcome.done) return true;
  app.ReportBatchError("Convert error: %s\n", outcome.text.c_str());
  return false;
}

struct Handler {
  Switch code;
  bool (*run)(AppState&, const ParsedCommand&);
};

constexpr Handler kHandlers[] = {
    {Switch::Open, &RunOpen},
    {Switch::FormatFile, &RunFormatFile},
    {Switch::ConfigFile, &RunConfigFile},
    {Switch::New, &RunNew},
    {Switch::Diff, &RunDiff},
    {Switch::Compare, &RunCompare},
    {Switch::Filter, &RunFilter},
    {Switch::IEval, &RunIEval},
    {Switch::Roi, &RunRoi},
    {Switch::Save, &RunSaving<kCantSave, &SaveAt>},
    {Switch::SaveStatistics, &RunSaving<kCantSaveStatistics, &SaveStatisticsOf>},
    {Switch::SavePng, &RunSaving<kCantExportPng, &ExportPngOf>},
    {Switch::Convert, &RunConvert},
    {Switch::Close, &RunClose},
};

}  // namespace

bool RunBatchCommands(AppState& app, const std::vector<ParsedCommand>& commands) {
  app.SetCommandsPresent(true);
  bool ok = true;
  for (const ParsedCommand& command : commands) {
    const auto handler = std::find_if(std::begin(kHandlers), std::end(kHandlers),
                                      [&](const Handler& h) { return h.code == command.kind; });
    if (handler != std::end(kHandlers) && !handler->run(app, command)) {
      ok = false;
      break;
    }
  }
  app.SetCommandsPresent(false);
  return ok && !app.BatchFailed();
}

}  // namespace korvanel
