#pragma once

// Saving, statistics files and PNG export for the application: the settings
// come from the state, messages and questions go through its feedback, and a
// saved image leaves the created-but-unsaved set.

#include <cstddef>
#include <vector>

#include "app/app_state.h"
#include "files/save_host.h"
#include "files/save_kind.h"

namespace korvanel {

class CAppSaveHost final : public ISaveHost {
 public:
  explicit CAppSaveHost(AppState& app) : app_(app) {}
  void ShowError(std::string_view text, std::string_view title) override;
  void ShowStatus(std::string_view text) override;
  bool AskYesNo(std::string_view text, std::string_view title) override;
  bool AskFileName(std::string_view suggested, std::string& path) override;
  void Saved(const IImageContainer* image) override;

 private:
  AppState& app_;
};

SaveSettings SaveSettingsOf(const AppState& app);

// The images at registry positions `indices`.
bool SaveImagesAt(AppState& app, const std::vector<size_t>& indices, const SaveKind& kind,
                  const SaveOptions& options);
// The focus image, or every member of the comparison group in compare mode.
bool SaveFocusImages(AppState& app, const SaveKind& kind);
bool SaveStatisticsAt(AppState& app, size_t index, const SaveOptions& options);
bool ExportPngAt(AppState& app, size_t index, const SaveOptions& options);

}  // namespace korvanel
