#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "ui/model/viewer_host.h"

namespace korvanel::test {

// Records what the controller asks of the window.
class RecordingViewerHost : public IViewerHost {
 public:
  void Invalidate(bool base_dirty, std::span<const ScreenRect> damage) override {
    ++invalidations;
    if (base_dirty) ++base_invalidations;
    last_damage.assign(damage.begin(), damage.end());
  }
  void SetScrollBars(const ScrollBarState& h, const ScrollBarState& v) override {
    horizontal = h;
    vertical = v;
    ++scroll_bar_updates;
  }
  void ShowStatus(const StatusFields& fields) override { statuses.push_back(fields); }
  int32_t StatusBarWidth() const override { return status_width; }
  // Seven units an average character.
  int32_t StatusTextWidth(std::string_view text) const override { return 7 * static_cast<int32_t>(text.size()); }
  void StartTimer(TimerId id, uint32_t period_ms) override { timers[id] = period_ms; }
  void StopTimer(TimerId id) override { timers.erase(id); }
  void SetCursorShape(CursorShape shape) override { cursor = shape; }
  void SetClipboardText(std::string_view text) override { clipboard.assign(text); }
  std::string ClipboardText() override { return clipboard; }
  void SetClipboardImage(const Rgb888Image& image) override { clipboard_image = image; }
  std::optional<std::string> AskOpenPath() override { return open_path; }
  ModifiedAnswer AskFileModified(std::string_view, bool&) override { return ModifiedAnswer::Ignore; }
  void OpenDialog(DialogId id) override { dialogs.push_back(id); }
  void SetMenuState(Command command, bool checked, bool enabled) override {
    menu[command] = {checked, enabled};
  }
  void DestroyWindow() override { destroyed = true; }
  void StartUpdateCheck(const std::string& url) override { update_fetches.push_back(url); }

  struct MenuState {
    bool checked = false;
    bool enabled = false;
  };

  int invalidations = 0;
  int base_invalidations = 0;
  std::vector<ScreenRect> last_damage;
  ScrollBarState horizontal;
  ScrollBarState vertical;
  int scroll_bar_updates = 0;
  std::vector<StatusFields> statuses;
  int32_t status_width = 800;
  std::map<TimerId, uint32_t> timers;
  CursorShape cursor = CursorShape::Arrow;
  std::string clipboard;
  std::optional<Rgb888Image> clipboard_image;
  std::optional<std::string> open_path;
  std::vector<DialogId> dialogs;
  std::map<Command, MenuState> menu;
  bool destroyed = false;
  std::vector<std::string> update_fetches;
};

}  // namespace korvanel::test
