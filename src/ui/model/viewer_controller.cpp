#include "ui/model/viewer_controller.h"

#include <algorithm>
#include <cstdlib>

#include "app/app_state.h"
#include "app/manual_pages.h"
#include "ui/model/command_table.h"
#include "ui/model/diff_commands.h"
#include "ui/model/dropped_files.h"
#include "ui/model/file_watch.h"
#include "ui/model/help_pages.h"
#include "ui/model/key_tables.h"
#include "ui/model/tab_hits.h"

namespace korvanel {

namespace {

inline constexpr Rgb kDefaultRulerColor{255, 0, 0};

ViewerSettings WithRulerColor(ViewerSettings settings) {
  if (settings.ruler_colors.empty()) settings.ruler_colors.push_back(kDefaultRulerColor);
  return settings;
}

}  // namespace

CViewerController::CViewerController(AppState& app, IViewerHost& host, const ViewerSettings& settings)
    : app_(app), host_(host), settings_(WithRulerColor(settings)),
      views_(app, app.DefaultZoom(), settings_.ruler_settings, settings_.ruler_matrix),
      status_(app, host),
      histograms_(app, views_, settings_.histogram, settings_.value_comma),
      pointer_(app, host, views_, histograms_, state_, refresh_),
      find_jump_({app, host, views_, pointer_, status_, state_, refresh_}),
      phases_({app, host, views_, status_, find_jump_, state_}),
      update_check_(app, host, state_.update, settings_.update),
      dialogs_(settings_.dialog_defaults),
      builder_({app, settings_, state_, views_, pointer_, histograms_, find_jump_, update_check_}) {
  state_.flags = settings_.flags;
  state_.help_pages = AssembleHelpPages(Manual());
  views_.Sync(state_.flags);
  if (settings_.watch_files) host_.StartTimer(TimerId::FileWatch, TimerPeriod(TimerId::FileWatch));
}

bool CViewerController::Busy() const { return app_.OperationRunning(); }

// --- the refresh at the end of each event ----------------------------------------------

CViewerController::EventScope::~EventScope() {
  if (--c_.event_depth_ == 0) c_.Refresh();
}

void CViewerController::SyncWithApp() {
  // The registry's generation tells whether its images changed; the drawn
  // set is checked always, as focus and comparison live in the app.
  if (views_.Sync(state_.flags)) state_.base_dirty = true;
  histograms_.Prune();
}

void CViewerController::Refresh() {
  SyncWithApp();
  if (views_.EnsureLayout()) state_.base_dirty = true;
  UpdateScrollBars();
  status_.Present(CurrentStatus());
  if (refresh_.menus) UpdateMenus();
  if (refresh_.repaint) {
    host_.Invalidate(state_.base_dirty, {});
  } else if (!refresh_.damage.empty()) {
    // Parts report what they touched; a rectangle goes to the window once.
    std::vector<ScreenRect> damage;
    for (const ScreenRect& rect : refresh_.damage) {
      if (std::ranges::find(damage, rect) == damage.end()) damage.push_back(rect);
    }
    host_.Invalidate(false, damage);
  }
  refresh_ = {};
}

void CViewerController::MarkDirty() {
  state_.base_dirty = true;
  views_.MarkLayoutDirty();
}

void CViewerController::UpdateScrollBars() {
  const ScrollBarState h = views_.Bar(Axis::Horizontal);
  const ScrollBarState v = views_.Bar(Axis::Vertical);
  if (h == h_bar_ && v == v_bar_) return;
  h_bar_ = h;
  v_bar_ = v;
  host_.SetScrollBars(h_bar_, v_bar_);
}

StatusFields CViewerController::CurrentStatus() const {
  StatusInputs in;
  const ImageView* anchor = views_.Anchor();
  in.has_view = anchor != nullptr;
  if (!in.has_view) return ComposeStatus(in);
  in.modes = {state_.flags, anchor->ruler_type == RulerType::Matrix, app_.CompareMode()};
  in.zoom_text = views_.ZoomText();
  if (status_.Showing()) {
    in.readout = status_.Message();
  } else if (const std::optional<std::string> prompt = phases_.Prompt()) {
    in.readout = *prompt;
  } else {
    in.readout = pointer_.StatusReadout();
  }
  return ComposeStatus(in);
}

void CViewerController::UpdateMenus() {
  for (const CommandRow& row : CommandRows()) {
    if (row.checked == nullptr && row.enabled == nullptr) continue;
    host_.SetMenuState(row.command, row.checked != nullptr && row.checked(*this),
                       row.enabled == nullptr || row.enabled(*this));
  }
}

// --- window events ---------------------------------------------------------------------

void CViewerController::OnResize(ScreenSize client) {
  EventScope scope(*this);
  state_.client = client;
  state_.area = {0, 0, client.width - 1, client.height - 1};
  views_.SetArea(state_.area);
  MarkDirty();
  ShowStartTexts();
  refresh_.menus = true;
  Repaint();
}

void CViewerController::OnFirstShow() {
  EventScope scope(*this);
  ShowStartTexts();
  refresh_.menus = true;
}

void CViewerController::ShowStartTexts() {
  if (start_texts_shown_) return;
  start_texts_shown_ = true;
  ShowDiffType(app_);
}

void CViewerController::OnKey(const KeyInput& key) {
  EventScope scope(*this);
  if (!state_.help_visible && phases_.Key(key)) {
    Repaint();
    return;
  }
  if (key.key == Key::Control) pointer_.CtrlChanged(true, hits_);  // no move comes with the key
  const Command command = CommandForKey(key, views_.HasImages(), state_.help_visible);
  if (command != Command::None) Execute(command);
}

void CViewerController::OnKeyUp(const KeyInput& key) {
  EventScope scope(*this);
  if (key.key == Key::Control) pointer_.CtrlChanged(false, hits_);
}

void CViewerController::OnChar(char32_t ch, Modifiers mods) {
  EventScope scope(*this);
  if (state_.help_visible && ch >= U'0' && ch <= U'9') {
    state_.help_page = static_cast<uint32_t>(ch - U'0');
    state_.base_dirty = true;
    Repaint();
    return;
  }
  if (!views_.HasImages()) return;
  if (ch == U'*' && !mods.shift) return;  // the keypad star, handled as a key
  if (phases_.Char(ch)) {
    Repaint();
    return;
  }
  if (const std::optional<uint32_t> slot = SlotForChar(ch)) {
    SelectSlot(*slot);
    Repaint();
    return;
  }
  const Command command = CommandForChar(ch);
  if (command != Command::None) Execute(command);
}

void CViewerController::SelectSlot(uint32_t slot) {
  const size_t index = slot - 1;
  if (phases_.Active() == InputPhaseKind::Collect && app_.Collecting()) {
    app_.CollectForCompare(index);
    phases_.DropEnded();
    return;
  }
  if (index >= app_.Images().Count()) return;
  if (views_.Mode() == LayoutMode::Layer) {
    const std::vector<size_t> party = views_.PartyIndices();
    const auto it = std::ranges::find(party, index);
    if (it != party.end()) app_.SetVisibleLayer(static_cast<size_t>(it - party.begin()));
    return;
  }
  app_.SetFocus(index);
}

void CViewerController::Execute(Command command) {
  EventScope scope(*this);
  if (command == Command::Exit) {
    host_.DestroyWindow();
    return;
  }
  Run(command);
  refresh_.menus = true;
  Repaint();
}

void CViewerController::Run(Command command) {
  const CommandRow* row = FindCommandRow(command);
  if (row == nullptr || row->run == nullptr) return;
  if (row->needs_image && !views_.HasImages()) return;
  row->run(*this, command);
}

void CViewerController::OnMouseMove(ScreenPoint p, Modifiers m) {
  EventScope scope(*this);
  // A change waits for its frame: the hit map is that frame's.
  if (!views_.HasImages() || state_.help_visible || state_.base_dirty || p == pointer_.Cursor()) return;
  pointer_.Move(p, m, hits_, metrics_);
}

void CViewerController::OnLeftDown(ScreenPoint p, Modifiers m) {
  EventScope scope(*this);
  if (!views_.HasImages() || state_.base_dirty) return;
  phases_.Cancel();
  const size_t party = app_.CompareMode() ? views_.PartyIndices().size() : 0;
  const TabHit hit = HitTab(hits_, p, m.ctrl, party);
  if (ApplyTabHit(app_, hit)) {
    // A click on the tab itself (not its close box) also toggles the
    // image's histogram.
    if (hit.action == TabAction::Focus) histograms_.Toggle(hit.image);
    state_.base_dirty = true;
    refresh_.menus = true;
    Repaint();
    return;
  }
  pointer_.Press(p);
  Repaint();
}

void CViewerController::OnLeftUp(ScreenPoint) {
  EventScope scope(*this);
  if (state_.help_visible) {  // a left release hides the help overlay
    state_.help_visible = false;
    state_.base_dirty = true;
    Repaint();
    return;
  }
  pointer_.Release();
}

void CViewerController::OnRightUp(ScreenPoint) {
  EventScope scope(*this);
  if (state_.help_visible) {
    state_.help_visible = false;
    state_.base_dirty = true;
  } else if (views_.HasImages()) {
    phases_.Cancel();
    pointer_.ClearRoiAndMarks();
  }
  Repaint();
}

void CViewerController::OnWheel(int32_t steps, Modifiers m) {
  EventScope scope(*this);
  if (!views_.HasImages() || steps == 0) return;
  const bool forward = steps > 0;
  for (int32_t i = 0; i < std::abs(steps); ++i) {
    if (m.ctrl) {
      Execute(forward ? Command::ZoomIn : Command::ZoomOut);
    } else {
      ScrollTo(m.shift ? Axis::Horizontal : Axis::Vertical,
               forward ? ScrollAction::PageUp : ScrollAction::PageDown, 0);
    }
  }
}

void CViewerController::OnScroll(Axis axis, ScrollAction action, int32_t thumb) {
  EventScope scope(*this);
  ScrollTo(axis, action, thumb);
}

void CViewerController::ScrollTo(Axis axis, ScrollAction action, int32_t thumb) {
  if (views_.EnsureLayout()) state_.base_dirty = true;
  const ScrollBarState bar = views_.Bar(axis);
  const int32_t position = ScrollPosition(bar, action, thumb);
  if (position == bar.position) return;
  views_.SetScrollPosition(axis, position);
  state_.base_dirty = true;
  Repaint();
}

void CViewerController::OnTimer(TimerId id) {
  EventScope scope(*this);
  switch (id) {
    case TimerId::FileWatch:
      // A running operation is writing images: the round waits for the next tick.
      if (!Busy() && RunFileWatchRound(app_, host_, settings_.reload_keeps_format)) OnImagesChanged();
      break;
    case TimerId::Jump:
    case TimerId::Find: find_jump_.TickMarkers(id); break;
    case TimerId::Status: status_.Tick(); break;
  }
}

void CViewerController::OnDrop(const std::vector<std::string>& paths) {
  EventScope scope(*this);
  OpenDroppedFiles(app_, paths);
  OnImagesChanged();
}

void CViewerController::OnWindowMenu(size_t index) {
  EventScope scope(*this);
  if (index >= app_.Images().Count()) return;
  app_.SetLayerMode(false);
  app_.SetFocus(index);
  refresh_.menus = true;
  Repaint();
}

bool CViewerController::RequestClose() { return app_.ConfirmExit(); }

void CViewerController::OnUpdateReply(std::optional<std::string_view> body) {
  EventScope scope(*this);
  update_check_.OnReply(body);
  state_.base_dirty = true;  // the no-image texts may have changed
  Repaint();
}

void CViewerController::OnImagesChanged() {
  EventScope scope(*this);
  refresh_.menus = true;
  Repaint();
}

void CViewerController::ShowStatusMessage(std::string_view text) {
  EventScope scope(*this);
  status_.Show(text);
}

// --- phases and dialogs ------------------------------------------------------------------

bool CViewerController::StartPhase(std::unique_ptr<IInputPhase> phase, std::string_view refusal) {
  EventScope scope(*this);
  return phases_.Start(std::move(phase), refusal);
}

bool CViewerController::CancelPhase() {
  EventScope scope(*this);
  return phases_.Cancel();
}

void CViewerController::OnDialogApplied() {
  EventScope scope(*this);
  views_.ForceSync();  // a dialog may have changed an image in place
  state_.base_dirty = true;
  refresh_.menus = true;
  Repaint();
}

void CViewerController::RefreshHistograms() {
  EventScope scope(*this);
  histograms_.RecountAll();
  state_.base_dirty = true;
  Repaint();
}

DialogResult CViewerController::ApplyRulerSettings() {
  EventScope scope(*this);
  DialogMessage refusal;
  const std::optional<RulerSettings> settings = dialogs_.ruler.Settings(refusal);
  if (!settings) return refusal;
  views_.ApplyRuler(app_.CompareMode() ? views_.PartyIndices() : std::vector<size_t>{app_.FocusIndex()},
                    *settings);
  dialogs_.ruler.RecordEditHistory(app_.EditHistory());
  app_.StoreEditHistory();
  MarkDirty();
  Repaint();
  return std::nullopt;
}

// --- the frame ---------------------------------------------------------------------------

const FramePlan& CViewerController::PrepareFrame() {
  SyncWithApp();
  if (views_.EnsureLayout()) state_.base_dirty = true;
  UpdateScrollBars();
  status_.Present(CurrentStatus());
  // Before building: a shown image then takes the block a hidden one frees.
  app_.ReleaseHiddenRenditions();
  builder_.Build(metrics_, plan_, hits_);
  state_.base_dirty = false;
  return plan_;
}

}  // namespace korvanel
