#include "app/save_commands.h"

#include "app/feedback_progress.h"

#include <string>

#include "files/png_export.h"
#include "files/save_images.h"
#include "files/save_statistics.h"

namespace korvanel {

namespace {

SaveTarget TargetAt(const AppState& app, size_t index) {
  const ImageRecord& record = app.Images().At(index);
  const bool from_file = !record.path.empty();
  return {record.image.get(), from_file ? record.path : record.display_name, from_file};
}

}  // namespace

void CAppSaveHost::ShowError(std::string_view text, std::string_view title) {
  app_.ShowMessage(text, title);
}

void CAppSaveHost::ShowStatus(std::string_view text) {
  app_.StatusMessage("%.*s", static_cast<int>(text.size()), text.data());
}

bool CAppSaveHost::AskYesNo(std::string_view text, std::string_view title) {
  return app_.Feedback().AskYesNo(text, title);
}

bool CAppSaveHost::AskFileName(std::string_view suggested, std::string& path) {
  return app_.Feedback().AskSaveFileName(suggested, path);
}

void CAppSaveHost::Saved(const IImageContainer* image) { app_.MarkSaved(image); }

SaveSettings SaveSettingsOf(const AppState& app) {
  SaveSettings settings;
  settings.auto_naming = app.AutoFileNaming();
  settings.console_batch = app.BatchConsoleMode();
  settings.c_arrays = app.SaveTextHexCArray();
  settings.work_path = app.WorkPath();
  return settings;
}

bool SaveImagesAt(AppState& app, const std::vector<size_t>& indices, const SaveKind& kind,
                  const SaveOptions& options) {
  std::vector<SaveTarget> targets;
  for (size_t index : indices) {
    if (index < app.Images().Count()) targets.push_back(TargetAt(app, index));
  }
  if (targets.empty()) return false;
  CAppSaveHost host(app);
  CFeedbackProgress progress(app.Feedback());
  uint64_t pixels = 0;
  for (const SaveTarget& target : targets) {
    uint32_t width = 0, height = 0;
    target.image->GetSize(width, height);
    pixels += uint64_t{width} * height;
  }
  progress.Start("Save image", pixels);
  return SaveImages(targets, kind, options, SaveSettingsOf(app), host, nullptr, &app.Jobs(), &progress);
}

bool SaveFocusImages(AppState& app, const SaveKind& kind) {
  if (app.CompareMode()) return SaveImagesAt(app, app.ComparisonGroup(), kind, {});
  if (app.FocusIndex() == kNoIndex) return false;
  return SaveImagesAt(app, {app.FocusIndex()}, kind, {});
}

bool SaveStatisticsAt(AppState& app, size_t index, const SaveOptions& options) {
  if (index >= app.Images().Count()) return false;
  CAppSaveHost host(app);
  return SaveStatistics(TargetAt(app, index), options, SaveSettingsOf(app), host);
}

bool ExportPngAt(AppState& app, size_t index, const SaveOptions& options) {
  if (index >= app.Images().Count()) return false;
  CAppSaveHost host(app);
  return ExportPng(TargetAt(app, index), options, SaveSettingsOf(app), host);
}

}  // namespace korvanel
