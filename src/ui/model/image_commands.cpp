#include "ui/model/image_commands.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "app/app_state.h"
#include "app/save_commands.h"
#include "ops/job_runner.h"
#include "ui/model/clipboard_copy.h"
#include "ui/model/save_choice.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

size_t ContextImage(const AppState& app, size_t under) {
  const size_t index = app.CompareMode() ? under : app.FocusIndex();
  return index < app.Images().Count() ? index : kNoIndex;
}

size_t ImageOrFocus(const AppState& app, size_t under) {
  const size_t index = under < app.Images().Count() ? under : app.FocusIndex();
  return index < app.Images().Count() ? index : kNoIndex;
}

void CloseContextImage(AppState& app, size_t under) {
  const size_t index = ContextImage(app, under);
  if (index == kNoIndex) {
    if (app.CompareMode()) app.StatusMessage("Can't close window: not in mouse sensitivity range");
    return;
  }
  app.CloseImage(index);
}

void CloseAllContext(AppState& app) {
  if (!app.CompareMode()) {
    app.CloseAllImages();
    return;
  }
  // From the back, so the indices still to close stay valid.
  std::vector<size_t> party = app.ComparisonGroup();
  std::ranges::sort(party, std::greater<>());
  for (size_t index : party) app.CloseImage(index);
}

void ExportPngContext(AppState& app, size_t under) {
  if (const size_t index = ContextImage(app, under); index != kNoIndex) ExportPngAt(app, index, {});
}

void SaveStatisticsContext(AppState& app, size_t under) {
  if (const size_t index = ContextImage(app, under); index != kNoIndex) {
    SaveStatisticsAt(app, index, {});
  }
}

void SaveFocusWith(AppState& app, const SaveMenuEntry& entry) { SaveFocusImages(app, entry.kind); }

void SaveForCommand(AppState& app, Command command) {
  if (const SaveMenuEntry* entry = SaveEntryForCommand(command)) SaveFocusWith(app, *entry);
}

void CopyPathToClipboard(AppState& app, IViewerHost& host, size_t index) {
  if (index < app.Images().Count()) host.SetClipboardText(FullPathOf(app.Images().At(index)));
}

void CopyImageToClipboard(AppState& app, IViewerHost& host, size_t index) {
  if (index >= app.Images().Count()) return;
  const std::optional<Rgb888Image> copy =
      ClipboardImageOf(*app.Images().At(index).image, &app.Jobs());
  if (copy) host.SetClipboardImage(*copy);
}

}  // namespace korvanel
