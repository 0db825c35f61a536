#include "app/batch_executor.h"

#include <algorithm>
#include <optional>

#include "app/save_commands.h"
#include "files/formats_file.h"

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

// --- open ------------------------------------------------------------------------

// Rules for an open with a forced size, format or both.
bool ForcedRules(AppState& app, const ParsedCommand& c, FormatRules& rules) {
  const FormatRules& in_force = app.Formats();
  if (!c.format_expression.empty()) {
    // Parse once, at a size that cannot be wrong, to tell a bad expression apart.
    DirectFormat probe;
    if (!SetDirectExpression(c.format_expression, 1, 1, probe, app.FormatLog())) {
      app.ReportBatchError("Illegal format '%s'\n", c.format_expression.c_str());
      return false;
    }
    if (c.has_dimensions) {
      SetDirectExpression(c.format_expression, c.width, c.height, rules.direct, app.FormatLog());
      return true;
    }
    // A format without a size takes the size from the rules that match.
    rules.groups = in_force.groups;
    for (FormatGroup& group : rules.groups) group.formats = probe.group.formats;
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

constexpr char kCantSave[] = "Can't save image: invalid image index (%d)\n";
constexpr char kCantSaveStatistics[] = "Can't save image statistics: invalid image index (%d)\n";
constexpr char kCantExportPng[] = "Can't export image to PNG: invalid image index (%d)\n";

// -s, -sst and -spng: one image by reference. A save that did not happen has
// shown its own message; the run fails.
template <const char* InvalidIndex, bool (*Operation)(AppState&, size_t, const ParsedCommand&)>
bool RunSaving(AppState& app, const ParsedCommand& c) {
  const std::optional<size_t> index = ResolveImage(app, c);
  if (!index) {
    app.ReportBatchError(InvalidIndex, ShownReference(c));
    return false;
  }
  const bool done = Operation(app, *index, c);
  if (!done) app.SetBatchFailed(true);
  return done;
}

// Operations whose engines are not in this build yet say so instead of
// pretending to succeed.
template <const char* Name>
bool RunUnavailable(AppState& app, const ParsedCommand&) {
  app.ReportBatchError("%s: not available yet\n", Name);
  return false;
}

constexpr char kDiff[] = "Diff";
constexpr char kFilter[] = "Filter colors";
constexpr char kIEval[] = "I-Eval";
constexpr char kConvert[] = "Convert";

struct Handler {
  Switch code;
  bool (*run)(AppState&, const ParsedCommand&);
};

constexpr Handler kHandlers[] = {
    {Switch::Open, &RunOpen},
    {Switch::FormatFile, &RunFormatFile},
    {Switch::ConfigFile, &RunConfigFile},
    {Switch::New, &RunNew},
    {Switch::Diff, &RunUnavailable<kDiff>},
    {Switch::Compare, &RunCompare},
    {Switch::Filter, &RunUnavailable<kFilter>},
    {Switch::IEval, &RunUnavailable<kIEval>},
    {Switch::Roi, &RunRoi},
    {Switch::Save, &RunSaving<kCantSave, &SaveAt>},
    {Switch::SaveStatistics, &RunSaving<kCantSaveStatistics, &SaveStatisticsOf>},
    {Switch::SavePng, &RunSaving<kCantExportPng, &ExportPngOf>},
    {Switch::Convert, &RunUnavailable<kConvert>},
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
