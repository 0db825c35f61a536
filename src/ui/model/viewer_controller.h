#pragma once

// The viewer's front: window events in, commands to the parts that own the
// behaviour, and one refresh at the end of each event (scroll bars, status,
// menus, repaint) for whatever the event left dirty. All on the UI thread;
// positions and sizes are device pixels.

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/model/commands.h"
#include "ui/model/dialog_managers.h"
#include "ui/model/find_jump_controller.h"
#include "ui/model/frame_builder.h"
#include "ui/model/frame_plan.h"
#include "ui/model/geometry.h"
#include "ui/model/histogram_controller.h"
#include "ui/model/hit_map.h"
#include "ui/model/input_phase.h"
#include "ui/model/keys.h"
#include "ui/model/phase_runner.h"
#include "ui/model/pointer_controller.h"
#include "ui/model/status_presenter.h"
#include "ui/model/timers.h"
#include "ui/model/update_check.h"
#include "ui/model/view_set.h"
#include "ui/model/viewer_host.h"
#include "ui/model/viewer_state.h"

namespace korvanel {

class AppState;
class ITextMetrics;
struct CommandRow;

class CViewerController {
 public:
  CViewerController(AppState& app, IViewerHost& host, const ViewerSettings& settings);

  // The client area in device pixels; the image area is all of it.
  void OnResize(ScreenSize client);
  // Once the window shows: menu check marks and the status bar.
  void OnFirstShow();
  void OnKey(const KeyInput& key);            // key-down: physical key + modifiers
  void OnKeyUp(const KeyInput& key);          // key-up: Ctrl's release ends its close boxes
  void OnChar(char32_t ch, Modifiers mods);   // a typed character (never with Ctrl)
  void OnMouseMove(ScreenPoint p, Modifiers m);
  void OnLeftDown(ScreenPoint p, Modifiers m);
  void OnLeftUp(ScreenPoint p);
  void OnRightUp(ScreenPoint p);
  // Wheel notches, positive forward.
  void OnWheel(int32_t steps, Modifiers m);
  void OnScroll(Axis axis, ScrollAction action, int32_t thumb);
  void OnTimer(TimerId id);
  void OnDrop(const std::vector<std::string>& paths);
  // The Window menu's image items, in AppState::ImagesMenu() order.
  void OnWindowMenu(size_t index);
  void Execute(Command command);
  bool RequestClose();  // the exit prompt; false keeps the program running

  bool StartPhase(std::unique_ptr<IInputPhase> phase, std::string_view refusal);
  bool CancelPhase();
  InputPhaseKind ActivePhase() const { return phases_.Active(); }

  // A status message from the core: cut at 511 characters, shown in part 0
  // for 16 ticks of timer 1.
  void ShowStatusMessage(std::string_view text);
  // The image set changed outside the controller (opened, closed, replaced).
  void OnImagesChanged();
  // At window creation: the start-up update check, when enabled and an
  // address is configured.
  void CheckUpdatesAtStart() { update_check_.OnStart(); }
  // The update fetch ended: the document's bytes, or nothing on failure.
  void OnUpdateReply(std::optional<std::string_view> body);
  const CUpdateCheck& UpdateCheck() const { return update_check_; }
  // Recounts the statistics of every shown overlay (the ROI or the filter
  // changed).
  void RefreshHistograms();
  // Used to judge whether pixel values fit a block; may be null.
  void SetTextMetrics(const ITextMetrics* metrics) { metrics_ = metrics; }

  // Lays out again when needed, builds the renditions of the drawn images,
  // and clears base-dirty.
  const FramePlan& PrepareFrame();
  const ViewerState& State() const { return state_; }
  std::string ZoomText() const { return views_.ZoomText(); }
  const HistogramStyle& HistogramLook() const { return histograms_.Style(); }
  const CCoordinateHistory& JumpHistory() const { return find_jump_.JumpHistory(); }
  size_t ViewCount() const { return views_.ViewCount(); }
  // A long operation runs: the window shows its last frame and takes no input.
  bool Busy() const;

  // The dialogs' state for the session; the window's dialogs edit it.
  DialogManagers& Dialogs() { return dialogs_; }
  // A dialog changed images (filtered, created): redraw everything.
  void OnDialogApplied();
  // "Apply changes" of the ruler settings dialog: the party in compare mode,
  // else the focus image, takes the dialog's values.
  DialogResult ApplyRulerSettings();
  // The scroll bars as last sent to the host.
  const ScrollBarState& HorizontalBar() const { return h_bar_; }
  const ScrollBarState& VerticalBar() const { return v_bar_; }

 private:
  friend struct CommandActions;

  // The outermost event handler first follows the app, and refreshes once
  // when it returns.
  class EventScope {
   public:
    explicit EventScope(CViewerController& c) : c_(c) {
      if (c_.event_depth_++ == 0) c_.SyncWithApp();
    }
    ~EventScope();
    EventScope(const EventScope&) = delete;
    EventScope& operator=(const EventScope&) = delete;

   private:
    CViewerController& c_;
  };

  void SyncWithApp();
  void Refresh();
  void ShowStartTexts();
  void SelectSlot(uint32_t slot);
  void Run(Command command);
  void UpdateMenus();
  void UpdateScrollBars();
  StatusFields CurrentStatus() const;
  void ScrollTo(Axis axis, ScrollAction action, int32_t thumb);
  void Repaint() { refresh_.repaint = true; }
  void MarkDirty();

  AppState& app_;
  IViewerHost& host_;
  ViewerSettings settings_;
  const ITextMetrics* metrics_ = nullptr;
  ViewerState state_;
  RefreshNeeds refresh_;
  CViewSet views_;
  CStatusPresenter status_;
  CHistograms histograms_;
  CPointer pointer_;
  CFindJump find_jump_;
  CPhaseRunner phases_;
  CUpdateCheck update_check_;
  DialogManagers dialogs_;
  CFrameBuilder builder_;
  FramePlan plan_;
  HitMap hits_;
  ScrollBarState h_bar_;
  ScrollBarState v_bar_;
  int event_depth_ = 0;
  bool start_texts_shown_ = false;
};

}  // namespace korvanel
