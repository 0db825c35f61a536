#pragma once

// The viewer's dispatcher: window events and commands in, state changes on
// AppState and the views, and calls on the host out. All on the UI thread;
// positions and sizes are device pixels.

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ui/model/commands.h"
#include "ui/model/dialog_managers.h"
#include "ui/model/frame_plan.h"
#include "ui/model/geometry.h"
#include "ui/model/find_phase.h"
#include "ui/model/input_phase.h"
#include "ui/model/jump_phase.h"
#include "ui/model/keys.h"
#include "ui/model/layout.h"
#include "ui/model/pixel_search.h"
#include "ui/model/timers.h"
#include "ui/model/update_check.h"
#include "ui/model/viewer_host.h"
#include "ui/model/viewer_state.h"

namespace korvanel {

class AppState;
class ITextMetrics;

// Jump and find phases reach the view through the two host interfaces.
class CViewerController : private IJumpHost, private IFindHost {
 public:
  CViewerController(AppState& app, IViewerHost& host, const ViewerSettings& settings);

  // The client area and the status bar's height (the image area is the rest).
  void OnResize(ScreenSize client, int32_t status_height);
  // Once the window shows: menu check marks and the status bar (the first
  // OnResize does the same).
  void OnFirstShow();
  void OnKey(const KeyInput& key);            // key-down: physical key + modifiers
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

  // Starts an input phase unless one is active; then `refusal` shows as a
  // status message and the new phase is dropped.
  bool StartPhase(std::unique_ptr<IInputPhase> phase, std::string_view refusal);
  // Esc or a click: the phase undoes what is half done and the cancel text
  // shows. False when no phase was active.
  bool CancelPhase();
  InputPhaseKind ActivePhase() const;

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
  // Shows or hides the histogram overlay of image `index` (a click on its
  // tab); showing it recounts the statistics.
  void ToggleHistogramFor(size_t index);
  // Recounts the statistics of every shown overlay (the ROI or the filter
  // changed).
  void RefreshHistograms();
  // Used to judge whether pixel values fit a block; may be null.
  void SetTextMetrics(const ITextMetrics* metrics) { metrics_ = metrics; }

  // Lays out again when the view is dirty or the area changed, builds the
  // renditions of the drawn images, and clears view-dirty.
  const FramePlan& PrepareFrame();
  const ViewerState& State() const { return state_; }
  // A long operation runs: the window shows its last frame and takes no input.
  bool Busy() const;

  // The dialogs' state for the session; the window's dialogs edit it.
  DialogManagers& Dialogs() { return dialogs_; }
  // A dialog changed images (filtered, created): redraw everything.
  void OnDialogApplied();
  // Ctrl+F: the last accepted filter again on the focus image; without one
  // the filter dialog opens.
  void ReapplyLastFilter();
  // "Apply changes" of the ruler settings dialog: the party in compare mode,
  // else the focus image, takes the dialog's values.
  DialogResult ApplyRulerSettings();
  // E: the saved list is read again first unless it is read at start only.
  void OpenImageEvalDialog();
  // Ctrl+E: the last I-Eval request again; without one the dialog opens.
  void ReapplyLastIEval();
  // The scroll bars as last sent to the host.
  const ScrollBarState& HorizontalBar() const { return h_bar_; }
  const ScrollBarState& VerticalBar() const { return v_bar_; }

 private:
  // The images drawn this frame and how: the signature that forces a new
  // layout when it changes.
  struct DrawnSet {
    LayoutMode mode = LayoutMode::Single;
    std::vector<uint64_t> serials;
    friend bool operator==(const DrawnSet&, const DrawnSet&) = default;
  };

  void SyncViews();
  bool HasImages() const;
  std::vector<size_t> PartyIndices() const;
  std::vector<size_t> DrawnIndices() const;
  LayoutMode CurrentLayoutMode() const;
  ImageView* ViewAt(size_t index);
  const ImageView* ViewAt(size_t index) const;
  size_t AnchorIndex() const;
  ImageView* FocusView();
  void EnsureLayout();
  void Relayout();
  void ApplyZoom(double zf);
  void ScrollByPage(Axis axis, bool forward);
  void SetScrollPosition(Axis axis, int32_t position);
  void UpdateScrollBars();
  void UpdateStatus();
  void UpdateMenuChecks();
  void MarkDirty();
  void Repaint();
  void CycleImage(bool forward);
  void SelectSlot(uint32_t slot);
  void BackKey();
  void ToggleLayerMode();
  void LayerModeKey();
  void ToggleFlag(bool ViewFlags::*flag);
  void ApplyFlagsToView(ImageView& view) const;
  std::vector<ImageView*> RulerTargets();
  void NextRulerColor();
  void ToggleRulerType();
  void ChangeHelpPage(int32_t delta);
  void Escape();
  // A status text of the window's own: shown and logged.
  void SayStatus(std::string_view text);
  void ApplyPhaseStep(PhaseStep step);
  void DropEndedPhase();
  void CompareStart();
  void CompareAll();
  void StartSavePhase();
  void PasteIntoPhase();
  size_t ImageUnderCursor() const;
  size_t TabUnderCursor() const;
  void CopyContext();
  void ShowStartTexts();
  void UpdateTabHover();
  void MarkCloseBoxes(bool ctrl);
  void ShowLayerUnderCursor();
  void BuildPanelPlan(size_t index, size_t panel, PanelPlan& plan);
  bool ValuesFit(uint32_t k, bool one_component) const;
  std::string TabText(size_t index) const;
  void OpenImageDialog(DialogId id);

  // --- pixel inspection (viewer_inspection.cpp) ---
  void UpdateReadout();
  std::optional<PixelPoint> CursorPixelIn(size_t index) const;
  std::string ReadoutText(size_t index) const;
  std::string StatusReadout() const;
  size_t PhaseTargetIndex() const;
  void SetPartyRoi(const Rect& roi);
  void RoiMouseDown(ScreenPoint p);
  void RoiMouseUp();
  void DragRoi();
  void UpdateRoiCursor();
  void ClearRoiAndMarks();
  void CopyPixel();
  void CentreOn(PixelPoint pixel);
  bool EnsureInspectionPhase(InputPhaseKind kind);
  void ToggleJumpPhase();
  void FeedJumpPhase(char32_t ch);
  void PasteIntoInspectionPhase(InputPhaseKind kind);
  void StartFindPhase();
  JumpContext JumpTarget() const override;
  CCoordinateHistory& JumpHistory() override { return state_.inspect.jump_history; }
  void JumpTo(PixelPoint pixel) override;
  FindContext FindTarget() const override;
  CFindHistory& FindHistory() override { return state_.inspect.find_history; }
  std::string FindValue(const PixelValue& value) override;
  void ClearFindMarks() override;
  void FindAgain(SearchDirection direction);
  void MarkFindHit(size_t index, PixelPoint hit);
  void ClearMarks(bool context);
  bool AnyMarks() const;
  void TickMarkers(TimerId id);
  std::vector<ScreenRect> MarkerDamage() const;
  std::vector<ScreenRect> CursorDamage() const;
  void BuildInspectionPlan(size_t index, PanelPlan& plan) const;
  DirectivePlan BuildDirectivePlan() const;

  // The histogram overlay and the help pages (histogram_commands.cpp).
  void ToggleHistogramInContext();
  void SetHistogramVisible(size_t index, bool visible);
  void RebuildHistogram(size_t index, bool recount);
  bool AnyHistogramShown() const;
  void ChangeHistogramStyle(Command command);
  void ToggleBeautify();
  void UpdateHistogramHover(Modifiers m);
  std::optional<std::array<uint32_t, 3>> CursorSamples(size_t index) const;
  void BuildHistogramPlan(size_t index, PanelPlan& plan);
  void BuildHelpPlan();

  AppState& app_;
  IViewerHost& host_;
  ViewerSettings settings_;
  const ITextMetrics* metrics_ = nullptr;
  ViewerState state_;
  Layout layout_;
  FramePlan plan_;
  ScrollBarState h_bar_;
  ScrollBarState v_bar_;
  DrawnSet drawn_;
  std::unique_ptr<IInputPhase> phase_;
  StatusFields shown_status_;
  bool status_shown_ = false;
  bool menus_set_ = false;
  bool start_texts_shown_ = false;
  CUpdateCheck update_check_;
  DialogManagers dialogs_;
};

}  // namespace korvanel
