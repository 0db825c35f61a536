#pragma once

// The window as the controller sees it. The Qt main window implements it;
// tests use a recording fake.

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ui/model/commands.h"
#include "ui/model/frame_kernels.h"
#include "ui/model/geometry.h"
#include "ui/model/status_bar.h"
#include "ui/model/timers.h"

namespace korvanel {

enum class CursorShape : uint8_t { Arrow, SizeHorizontal, SizeVertical, SizeDiagonal, SizeAntiDiagonal, Move };
enum class ModifiedAnswer : uint8_t { Yes, Ignore, YesToAll, IgnoreAll };
enum class DialogId : uint8_t { Filter, Convert, ImageEval, RulerSettings, HelpWindow, About, Update };

class IViewerHost {
 public:
  virtual ~IViewerHost() = default;
  // Repaint: the whole base layer when `base_dirty`, else only `damage`.
  virtual void Invalidate(bool base_dirty, std::span<const ScreenRect> damage) = 0;
  virtual void SetScrollBars(const ScrollBarState& h, const ScrollBarState& v) = 0;
  virtual void ShowStatus(const StatusFields& fields) = 0;
  // The status bar in its own units (logical pixels): its width, and the
  // width of `text` in its font. The status parts are measured in these,
  // never in the image area's device pixels.
  virtual int32_t StatusBarWidth() const = 0;
  virtual int32_t StatusTextWidth(std::string_view text) const = 0;
  virtual void StartTimer(TimerId id, uint32_t period_ms) = 0;
  virtual void StopTimer(TimerId id) = 0;
  virtual void SetCursorShape(CursorShape shape) = 0;
  virtual void SetClipboardText(std::string_view text) = 0;
  virtual std::string ClipboardText() = 0;
  virtual void SetClipboardImage(const Rgb888Image& image) = 0;
  virtual std::optional<std::string> AskOpenPath() = 0;
  virtual ModifiedAnswer AskFileModified(std::string_view path, bool& keep_settings) = 0;
  virtual void OpenDialog(DialogId id) = 0;
  virtual void SetMenuState(Command command, bool checked, bool enabled) = 0;
  virtual void DestroyWindow() = 0;  // File > Exit: no prompt
  // Fetches the update document at `url` without blocking; the window hands
  // the outcome to CViewerController::OnUpdateReply.
  virtual void StartUpdateCheck(const std::string& url) = 0;
};

}  // namespace korvanel
