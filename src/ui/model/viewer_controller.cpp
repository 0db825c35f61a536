#include "ui/model/viewer_controller.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "app/app_state.h"
#include "app/filter_command.h"
#include "app/manual_pages.h"
#include "ops/job_runner.h"
#include "ui/model/dropped_files.h"
#include "ui/model/file_watch.h"
#include "ui/model/collect_phase.h"
#include "ui/model/diff_commands.h"
#include "ui/model/image_commands.h"
#include "ui/model/key_tables.h"
#include "ui/model/menu_table.h"
#include "ui/model/pixel_mapping.h"
#include "ui/model/readout.h"
#include "ui/model/save_phase.h"
#include "ui/model/tab_hits.h"
#include "ui/model/text_metrics.h"

namespace korvanel {

namespace {

// Rings around the focus image's picture when several panels are shown, so
// the image that zoom and scrolling follow stands out.
inline constexpr uint32_t kFocusRings = 3;
inline constexpr int32_t kCloseBoxSize = 20;
// Without text metrics values show from this ZF (the manual's figure).
inline constexpr uint32_t kValuesFromZoom = 15;
inline constexpr Rgb kDefaultRulerColor{255, 0, 0};
inline constexpr std::string_view kPhaseBusyText =
    "Another input is in progress: finish it, or press Esc to cancel it";

struct ValueFormat {
  bool one_component;
  bool hex;
  const char* format;
};

constexpr ValueFormat kValueFormats[] = {
    {true, false, "%u"},
    {true, true, "%X"},
    {false, false, "%u,%u,%u"},
    {false, true, "%X,%X,%X"},
};

const char* ValueFormatFor(bool one_component, bool hex) {
  for (const ValueFormat& row : kValueFormats) {
    if (row.one_component == one_component && row.hex == hex) return row.format;
  }
  return "%u";
}

// The width templates that decide whether values fit a block.
const char* ValueTemplate(bool one_component) { return one_component ? "255" : "255,10,10"; }

ImageSize SizeOf(const IImageContainer& image) {
  ImageSize size;
  image.GetSize(size.width, size.height);
  return size;
}

PixelRect RoiRect(const IImageContainer& image, ImageSize size) {
  const Rect roi = image.GetRegionOfInterest();
  if (roi.IsNone() || size.width == 0 || size.height == 0) return {};
  return {roi.min_x, roi.min_y, std::min<int64_t>(roi.max_x, size.width - 1),
          std::min<int64_t>(roi.max_y, size.height - 1)};
}

ScreenPoint CentreOf(const PixelRect& rect) {
  return {static_cast<int32_t>((rect.left + rect.right) / 2),
          static_cast<int32_t>((rect.top + rect.bottom) / 2)};
}

// The scroll offset along one axis kept within what the picture can scroll.
int32_t ClampOffset(int32_t offset, int64_t content, int32_t visible) {
  const int64_t max_scroll = std::max<int64_t>(0, content - std::max(0, visible));
  return static_cast<int32_t>(-std::clamp<int64_t>(-int64_t{offset}, 0, max_scroll));
}

void ClampOffsets(ImageView& view) {
  if (!Replicates(view.zf) || view.picture.Empty()) {
    view.offset = {};
    return;
  }
  view.offset.x = ClampOffset(view.offset.x, ContentExtent(view.size.width, 0, view.zf),
                              view.picture.Width());
  view.offset.y = ClampOffset(view.offset.y, ContentExtent(view.size.height, 0, view.zf),
                              view.picture.Height());
}

}  // namespace

CViewerController::CViewerController(AppState& app, IViewerHost& host,
                                     const ViewerSettings& settings)
    : app_(app), host_(host), settings_(settings),
      update_check_(app, host, state_.update, settings.update),
      dialogs_(settings.dialog_defaults) {
  if (settings_.ruler_colors.empty()) settings_.ruler_colors.push_back(kDefaultRulerColor);
  state_.zf = app_.DefaultZoom();
  state_.zoom_text = ZoomText(state_.zf);
  state_.flags = settings.flags;
  state_.value_comma = settings.value_comma;
  state_.histogram = settings.histogram;
  state_.help_pages = AssembleHelpPages(Manual());
  SyncViews();
  if (settings_.watch_files) host_.StartTimer(TimerId::FileWatch, TimerPeriod(TimerId::FileWatch));
}

bool CViewerController::Busy() const { return app_.OperationRunning(); }

// --- views and the drawn set --------------------------------------------------

bool CViewerController::HasImages() const { return !app_.Images().Empty(); }

void CViewerController::SyncViews() {
  const ImageRegistry& images = app_.Images();
  std::erase_if(state_.views, [&](const ImageView& view) {
    return !images.IndexOfSerial(view.serial).has_value();
  });
  std::erase_if(state_.histograms, [&](const auto& entry) { return !images.IndexOfSerial(entry.first); });
  for (size_t i = 0; i < images.Count(); ++i) {
    const ImageRecord& record = images.At(i);
    ImageView* view = state_.FindView(record.serial);
    if (view == nullptr) {
      ImageView fresh;
      fresh.serial = record.serial;
      fresh.ruler = settings_.ruler_settings;
      fresh.ruler_type = settings_.ruler_matrix ? RulerType::Matrix : RulerType::Indent;
      ApplyFlagsToView(fresh);
      fresh.SetZoom(state_.zf);
      state_.views.push_back(fresh);
      view = &state_.views.back();
    }
    const ImageSize size = SizeOf(*record.image);
    if (size != view->size) {
      view->size = size;
      state_.layout_dirty = state_.view_dirty = true;
    }
  }
  DrawnSet drawn{CurrentLayoutMode(), {}};
  for (size_t index : DrawnIndices()) drawn.serials.push_back(images.At(index).serial);
  if (drawn != drawn_) {
    drawn_ = std::move(drawn);
    state_.layout_dirty = state_.view_dirty = true;
  }
  if (const ImageView* focus = FocusView(); focus != nullptr && focus->zf != state_.zf) {
    state_.zf = focus->zf;
    state_.zoom_text = ZoomText(state_.zf);
  }
}

std::vector<size_t> CViewerController::PartyIndices() const {
  const size_t count = app_.Images().Count();
  if (app_.CompareMode()) {
    std::vector<size_t> party;
    for (size_t index : app_.ComparisonGroup()) {
      if (index < count) party.push_back(index);
    }
    return party;
  }
  if (app_.FocusIndex() < count) return {app_.FocusIndex()};
  return {};
}

LayoutMode CViewerController::CurrentLayoutMode() const {
  if (!app_.CompareMode()) return LayoutMode::Single;
  return app_.LayerMode() ? LayoutMode::Layer : LayoutMode::SideBySide;
}

std::vector<size_t> CViewerController::DrawnIndices() const {
  std::vector<size_t> party = PartyIndices();
  if (CurrentLayoutMode() != LayoutMode::Layer || party.empty()) return party;
  return {party[std::min(app_.VisibleLayer(), party.size() - 1)]};
}

ImageView* CViewerController::ViewAt(size_t index) {
  if (index >= app_.Images().Count()) return nullptr;
  return state_.FindView(app_.Images().At(index).serial);
}

const ImageView* CViewerController::ViewAt(size_t index) const {
  if (index >= app_.Images().Count()) return nullptr;
  return state_.FindView(app_.Images().At(index).serial);
}

// The image zoom and the scroll bars follow: the FI, or the first party
// image when the FI is not in the party.
size_t CViewerController::AnchorIndex() const {
  const std::vector<size_t> party = PartyIndices();
  if (party.empty()) return kNoIndex;
  const bool in_party = std::ranges::find(party, app_.FocusIndex()) != party.end();
  return in_party ? app_.FocusIndex() : party.front();
}

ImageView* CViewerController::FocusView() { return ViewAt(AnchorIndex()); }

// --- layout --------------------------------------------------------------------

void CViewerController::OnResize(ScreenSize client, int32_t status_height) {
  state_.client = client;
  state_.status_height = status_height;
  state_.area = {0, 0, client.width - 1, client.height - status_height - 1};
  MarkDirty();
  SyncViews();
  Relayout();
  if (!menus_set_) UpdateMenuChecks();  // the first resize comes with the first show
  ShowStartTexts();
  UpdateStatus();
  Repaint();
}

void CViewerController::OnFirstShow() {
  SyncViews();
  UpdateMenuChecks();
  ShowStartTexts();
  UpdateStatus();
}

void CViewerController::ShowStartTexts() {
  if (start_texts_shown_) return;
  start_texts_shown_ = true;
  ShowDiffType(app_);
}

void CViewerController::EnsureLayout() {
  if (state_.layout_dirty || state_.area != state_.last_area) Relayout();
}

void CViewerController::Relayout() {
  const std::vector<size_t> drawn = DrawnIndices();
  layout_ = ComputeLayout(state_.area, CurrentLayoutMode(), drawn.size(), !drawn.empty());
  for (size_t i = 0; i < drawn.size() && i < layout_.panels.size(); ++i) {
    ImageView* view = ViewAt(drawn[i]);
    if (view == nullptr) continue;
    view->panel = layout_.panels[i].panel;
    view->picture = PictureRect(view->panel, view->size, view->zf);
    ClampOffsets(*view);
  }
  state_.last_area = state_.area;
  state_.layout_dirty = false;
  UpdateScrollBars();
}

void CViewerController::MarkDirty() { state_.view_dirty = state_.layout_dirty = true; }

void CViewerController::Repaint() { host_.Invalidate(state_.view_dirty, {}); }

// --- zoom and scrolling --------------------------------------------------------

void CViewerController::ApplyZoom(double zf) {
  EnsureLayout();
  ImageView* focus = FocusView();
  if (focus == nullptr) return;
  const ScreenPoint centre =
      CentreOf(VisibleRect(focus->picture, focus->size, focus->zf, focus->offset));
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    view->SetZoom(zf);
    view->picture = PictureRect(view->panel, view->size, zf);
    view->offset = ScrollToCentre(view->panel, view->size, zf, centre);
  }
  state_.zf = zf;
  state_.zoom_text = ZoomText(zf);
  MarkDirty();
  UpdateScrollBars();
  UpdateStatus();
}

void CViewerController::UpdateScrollBars() {
  ScrollBarState h;
  ScrollBarState v;
  if (const ImageView* view = FocusView(); view != nullptr && !view->picture.Empty()) {
    const auto line = static_cast<int32_t>(Replicates(view->zf) ? RoundedZoom(view->zf) : 1);
    h = MakeScrollBar(ContentExtent(view->size.width, view->picture.Width(), view->zf),
                      view->picture.Width(), line, -view->offset.x);
    v = MakeScrollBar(ContentExtent(view->size.height, view->picture.Height(), view->zf),
                      view->picture.Height(), line, -view->offset.y);
  }
  if (h == h_bar_ && v == v_bar_) return;
  h_bar_ = h;
  v_bar_ = v;
  host_.SetScrollBars(h_bar_, v_bar_);
}

void CViewerController::SetScrollPosition(Axis axis, int32_t position) {
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    (axis == Axis::Horizontal ? view->offset.x : view->offset.y) = -position;
    ClampOffsets(*view);
  }
  state_.view_dirty = true;
  UpdateScrollBars();
}

void CViewerController::OnScroll(Axis axis, ScrollAction action, int32_t thumb) {
  SyncViews();
  EnsureLayout();
  const ScrollBarState& bar = axis == Axis::Horizontal ? h_bar_ : v_bar_;
  const int32_t position = ScrollPosition(bar, action, thumb);
  if (position == bar.position) return;
  SetScrollPosition(axis, position);
  Repaint();
}

void CViewerController::ScrollByPage(Axis axis, bool forward) {
  OnScroll(axis, forward ? ScrollAction::PageUp : ScrollAction::PageDown, 0);
}

void CViewerController::OnWheel(int32_t steps, Modifiers m) {
  SyncViews();
  if (!HasImages() || steps == 0) return;
  const bool forward = steps > 0;
  for (int32_t i = 0; i < std::abs(steps); ++i) {
    if (m.ctrl) {
      Execute(forward ? Command::ZoomIn : Command::ZoomOut);
    } else {
      ScrollByPage(m.shift ? Axis::Horizontal : Axis::Vertical, forward);
    }
  }
}

// --- images --------------------------------------------------------------------

void CViewerController::CycleImage(bool forward) {
  const LayoutMode mode = CurrentLayoutMode();
  if (mode == LayoutMode::SideBySide) return;
  if (mode == LayoutMode::Layer) {
    const size_t n = PartyIndices().size();
    if (n == 0) return;
    app_.SetVisibleLayer((app_.VisibleLayer() + (forward ? 1 : n - 1)) % n);
    return;
  }
  const size_t n = app_.Images().Count();
  if (n == 0) return;
  const size_t focus = app_.FocusIndex() < n ? app_.FocusIndex() : 0;
  app_.SetFocus((focus + (forward ? 1 : n - 1)) % n);
}

void CViewerController::SelectSlot(uint32_t slot) {
  const size_t index = slot - 1;
  if (ActivePhase() == InputPhaseKind::Collect && app_.Collecting()) {
    app_.CollectForCompare(index);
    DropEndedPhase();
    return;
  }
  if (index >= app_.Images().Count()) return;
  if (CurrentLayoutMode() == LayoutMode::Layer) {
    const std::vector<size_t> party = PartyIndices();
    const auto it = std::ranges::find(party, index);
    if (it != party.end()) app_.SetVisibleLayer(static_cast<size_t>(it - party.begin()));
    return;
  }
  app_.SetFocus(index);
}

void CViewerController::BackKey() {
  if (CurrentLayoutMode() == LayoutMode::Layer) {
    app_.SetVisibleLayer(app_.PreviousLayer());
    return;
  }
  for (size_t index : app_.FocusHistory()) {
    if (index != app_.FocusIndex()) {
      app_.SetFocus(index);
      return;
    }
  }
}

// The menu item asks the state, which refuses outside compare mode.
void CViewerController::ToggleLayerMode() {
  if (app_.SetLayerMode(!app_.LayerMode())) MarkDirty();
}

// The L key says why nothing happens outside compare mode.
void CViewerController::LayerModeKey() {
  if (!app_.CompareMode()) {
    app_.StatusMessage("Layer mode can only be activated when in Compare mode");
    return;
  }
  ToggleLayerMode();
}

void CViewerController::OnWindowMenu(size_t index) {
  if (index >= app_.Images().Count()) return;
  app_.SetLayerMode(false);
  app_.SetFocus(index);
  SyncViews();
  UpdateStatus();
  UpdateMenuChecks();
  Repaint();
}

// --- toggles -------------------------------------------------------------------

void CViewerController::ApplyFlagsToView(ImageView& view) const {
  view.grid_requested = state_.flags.grid;
  view.values = state_.flags.values;
  view.hex = state_.flags.hex;
  view.SetZoom(view.zf);
}

void CViewerController::ToggleFlag(bool ViewFlags::*flag) {
  state_.flags.*flag = !(state_.flags.*flag);
  for (ImageView& view : state_.views) ApplyFlagsToView(view);
  state_.view_dirty = true;
}

// Ctrl+R and M act on the image under the mouse; in compare mode with the
// mouse over none, on the whole party, led by the left-most image.
std::vector<ImageView*> CViewerController::RulerTargets() {
  std::vector<ImageView*> targets;
  const size_t under = ImageUnderCursor();
  if (!app_.CompareMode() || under != kNoIndex) {
    ImageView* view = ViewAt(app_.CompareMode() ? under : app_.FocusIndex());
    if (view != nullptr) targets.push_back(view);
    return targets;
  }
  for (size_t index : PartyIndices()) {
    if (ImageView* view = ViewAt(index)) targets.push_back(view);
  }
  return targets;
}

void CViewerController::NextRulerColor() {
  const std::vector<ImageView*> targets = RulerTargets();
  if (targets.empty()) return;
  const auto next = static_cast<uint32_t>((targets.front()->ruler_color_index + 1) %
                                          settings_.ruler_colors.size());
  for (ImageView* view : targets) view->ruler_color_index = next;
  state_.view_dirty = true;
}

void CViewerController::ToggleRulerType() {
  const std::vector<ImageView*> targets = RulerTargets();
  if (targets.empty()) return;
  const RulerType next =
      targets.front()->ruler_type == RulerType::Indent ? RulerType::Matrix : RulerType::Indent;
  for (ImageView* view : targets) view->ruler_type = next;
  state_.view_dirty = true;
}

// --- help, escape --------------------------------------------------------------

void CViewerController::ChangeHelpPage(int32_t delta) {
  state_.help_page = StepHelpPage(state_.help_page, delta);
  state_.view_dirty = true;
}

void CViewerController::Escape() {
  if (state_.help_visible) {
    state_.help_visible = false;
    state_.view_dirty = true;
  } else if (!CancelPhase() && app_.LayerMode()) {
    app_.SetLayerMode(false);
    MarkDirty();
  }
}

// --- input phases --------------------------------------------------------------

InputPhaseKind CViewerController::ActivePhase() const {
  return phase_ ? phase_->Kind() : InputPhaseKind::None;
}

bool CViewerController::StartPhase(std::unique_ptr<IInputPhase> phase, std::string_view refusal) {
  if (phase_ || !phase) {
    SayStatus(refusal);
    return false;
  }
  phase_ = std::move(phase);
  state_.message.showing = false;  // the prompt replaces an older message
  UpdateStatus();
  return true;
}

bool CViewerController::CancelPhase() {
  if (!phase_) return false;
  std::unique_ptr<IInputPhase> phase = std::move(phase_);
  phase->Cancel();
  SayStatus(kPhaseCanceledText);
  MarkDirty();  // back to the FI as it was before the phase
  return true;
}

void CViewerController::ApplyPhaseStep(PhaseStep step) {
  if (step.done) phase_.reset();
  if (!step.message.empty()) {
    SayStatus(step.message);
    return;
  }
  // Typing shows the prompt again; a finished phase leaves what its work
  // reported on show.
  if (phase_) state_.message.showing = false;
  UpdateStatus();
}

// Collecting runs in the registry: its phase is over when that stops.
void CViewerController::DropEndedPhase() {
  if (ActivePhase() == InputPhaseKind::Collect && !app_.Collecting()) phase_.reset();
}

void CViewerController::CompareStart() {
  if (ActivePhase() == InputPhaseKind::Collect) {
    static_cast<CCollectPhase&>(*phase_).EndByKey();
    DropEndedPhase();
    return;
  }
  auto phase = std::make_unique<CCollectPhase>(app_);
  CCollectPhase& collect = *phase;
  if (StartPhase(std::move(phase), kPhaseBusyText)) collect.Begin();
}

void CViewerController::CompareAll() {
  CollectAllLike(app_);
  DropEndedPhase();
}

void CViewerController::StartSavePhase() {
  StartPhase(std::make_unique<CSavePhase>(app_), kPhaseBusyText);
}

void CViewerController::PasteIntoPhase() {
  if (phase_) ApplyPhaseStep(phase_->OnPaste(host_.ClipboardText()));
}

// --- dispatch ------------------------------------------------------------------

void CViewerController::OnKey(const KeyInput& key) {
  SyncViews();
  if (phase_ && !state_.help_visible) {
    if (std::optional<PhaseStep> step = phase_->OnKey(key)) {
      ApplyPhaseStep(std::move(*step));
      Repaint();
      return;
    }
  }
  if (key.key == Key::Control) MarkCloseBoxes(true);  // no move comes with the key
  const Command command = CommandForKey(key, HasImages(), state_.help_visible);
  if (command != Command::None) Execute(command);
}

void CViewerController::OnChar(char32_t ch, Modifiers mods) {
  SyncViews();
  if (state_.help_visible && ch >= U'0' && ch <= U'9') {
    state_.help_page = static_cast<uint32_t>(ch - U'0');
    state_.view_dirty = true;
    Repaint();
    return;
  }
  if (!HasImages()) return;
  if (ch == U'*' && !mods.shift) return;  // the keypad star, handled as a key
  if (phase_ && phase_->TakesCharacters()) {
    ApplyPhaseStep(phase_->OnChar(ch));
    Repaint();
    return;
  }
  if (const std::optional<uint32_t> slot = SlotForChar(ch)) {
    SelectSlot(*slot);
    SyncViews();
    UpdateStatus();
    Repaint();
    return;
  }
  const Command command = CommandForChar(ch);
  if (command != Command::None) Execute(command);
}

void CViewerController::Execute(Command command) {
  SyncViews();
  const bool images = HasImages();
  switch (command) {
    case Command::ZoomIn:
      if (images) ApplyZoom(ZoomIn(state_.zf));
      break;
    case Command::ZoomOut:
      if (images) ApplyZoom(ZoomOut(state_.zf));
      break;
    case Command::FitToWindow:
      if (images) ApplyZoom(kFitZoom);
      break;
    case Command::ToggleGrid: ToggleFlag(&ViewFlags::grid); break;
    case Command::TogglePixelValues: ToggleFlag(&ViewFlags::values); break;
    case Command::ToggleHex: ToggleFlag(&ViewFlags::hex); break;
    case Command::ToggleTracking: ToggleFlag(&ViewFlags::tracking); break;
    case Command::ToggleOffset: ToggleFlag(&ViewFlags::offset); break;
    case Command::ToggleRuler: ToggleFlag(&ViewFlags::ruler); break;
    case Command::ToggleRulerMatrix: ToggleRulerType(); break;
    case Command::NextRulerColor: NextRulerColor(); break;
    case Command::ToggleLayerMode: ToggleLayerMode(); break;
    case Command::LayerModeKey: LayerModeKey(); break;
    case Command::NextImage: CycleImage(true); break;
    case Command::PreviousImage: CycleImage(false); break;
    case Command::BackKey: BackKey(); break;
    case Command::ScrollPageLeft: ScrollByPage(Axis::Horizontal, true); break;
    case Command::ScrollPageRight: ScrollByPage(Axis::Horizontal, false); break;
    case Command::ScrollPageUp: ScrollByPage(Axis::Vertical, true); break;
    case Command::ScrollPageDown: ScrollByPage(Axis::Vertical, false); break;
    case Command::ToggleHelpOverlay:
      state_.help_visible = !state_.help_visible;
      state_.view_dirty = true;
      break;
    case Command::HelpFirstPage: ChangeHelpPage(-static_cast<int32_t>(kLastHelpPage)); break;
    case Command::HelpLastPage: ChangeHelpPage(static_cast<int32_t>(kLastHelpPage)); break;
    case Command::HelpPreviousPage: ChangeHelpPage(-1); break;
    case Command::HelpNextPage: ChangeHelpPage(1); break;
    case Command::Escape: Escape(); break;
    case Command::PasteIntoPhase: PasteIntoPhase(); break;
    case Command::ToggleHistogram: ToggleHistogramInContext(); break;
    case Command::ToggleHistogramTransparent:
    case Command::ToggleHistogramShadow:
    case Command::NextHistogramColor: ChangeHistogramStyle(command); break;
    case Command::ToggleBeautify: ToggleBeautify(); break;
    case Command::OpenFile:
      if (const std::optional<std::string> path = host_.AskOpenPath()) app_.OpenImage(*path);
      break;
    case Command::HelpWindow: host_.OpenDialog(DialogId::HelpWindow); break;
    case Command::About: host_.OpenDialog(DialogId::About); break;
    case Command::ToggleHexTextCLayout: app_.SetSaveTextHexCArray(!app_.SaveTextHexCArray()); break;
    case Command::ToggleFavorLowMemory: app_.SetFavorLowMemory(!app_.FavorLowMemory()); break;
    case Command::ToggleAppLog: app_.SetAppLogEnabled(!app_.AppLogEnabled()); break;
    case Command::ToggleFormatLog: app_.SetFormatLogEnabled(!app_.FormatLogEnabled()); break;
    case Command::CheckUpdates: update_check_.OnMenu(); break;
    case Command::FilterDialog: OpenImageDialog(DialogId::Filter); break;
    case Command::ReapplyFilter: ReapplyLastFilter(); break;
    case Command::Convert: OpenImageDialog(DialogId::Convert); break;
    case Command::RulerSettings: OpenImageDialog(DialogId::RulerSettings); break;
    case Command::ImageEvaluator: OpenImageEvalDialog(); break;
    case Command::ReapplyIEval: ReapplyLastIEval(); break;
    case Command::Exit:
      host_.DestroyWindow();
      return;
    case Command::CompareStart:
      if (images) CompareStart();
      break;
    case Command::CompareAll:
      if (images) CompareAll();
      break;
    case Command::SaveViaCommand:
      if (images) StartSavePhase();
      break;
    case Command::NewDuplicate: app_.NewDuplicateFromView(); break;
    case Command::DuplicateOrCrop: app_.NewImageFromView(); break;
    case Command::SaveOriginalRaw:
    case Command::SaveBinaryPlanner:
    case Command::SaveBinaryInterleave:
    case Command::SaveBinaryPlannerBe:
    case Command::SaveBinaryInterleaveBe:
    case Command::SaveTextOriginal:
    case Command::SaveTextPlanner:
    case Command::SaveTextInterleave:
    case Command::SaveHexOriginal:
    case Command::SaveHexPlanner:
    case Command::SaveHexInterleave:
    case Command::SaveHexPlannerBe:
    case Command::SaveHexInterleaveBe: SaveForCommand(app_, command); break;
    case Command::SaveStatistics: SaveStatisticsContext(app_, ImageUnderCursor()); break;
    case Command::ExportPng: ExportPngContext(app_, ImageUnderCursor()); break;
    case Command::ToggleAutoNaming: app_.SetAutoFileNaming(!app_.AutoFileNaming()); break;
    case Command::CloseImage: CloseContextImage(app_, ImageUnderCursor()); break;
    case Command::CloseAll: CloseAllContext(app_); break;
    case Command::Diff:
      if (images) DiffParty(app_);
      break;
    case Command::CycleDiffType: CycleDiffType(app_); break;
    case Command::DiffTypeAllBin:
    case Command::DiffTypeMaskBin:
    case Command::DiffTypeAllAbsDelta:
    case Command::DiffTypeMaskAbsDelta: SelectDiffType(app_, command); break;
    case Command::CopyImage:
      CopyImageToClipboard(app_, host_, ImageOrFocus(app_, ImageUnderCursor()));
      break;
    case Command::CopyImagePath:
      CopyPathToClipboard(app_, host_, ImageOrFocus(app_, ImageUnderCursor()));
      break;
    case Command::CopyContext: CopyContext(); break;
    case Command::ClearFilter: ClearFilterCommand(app_, app_.FocusIndex()); break;
    case Command::CopyPixelText: CopyPixel(); break;
    case Command::JumpToCoordinate: ToggleJumpPhase(); break;
    case Command::JumpIteratePrevious: FeedJumpPhase(U'~'); break;
    case Command::JumpIterateRoiCorners: FeedJumpPhase(U'r'); break;
    case Command::JumpPasteCoordinate: PasteIntoInspectionPhase(InputPhaseKind::Jump); break;
    case Command::FindPixel: StartFindPhase(); break;
    case Command::FindPasteValue: PasteIntoInspectionPhase(InputPhaseKind::Find); break;
    case Command::FindNext: FindAgain(SearchDirection::Forward); break;
    case Command::FindPrevious: FindAgain(SearchDirection::Backward); break;
    case Command::ClearMarkedPixels: ClearMarks(false); break;
    case Command::ClearMarksContext: ClearMarks(true); break;
    default:
      // Saving, comparing, operations, phases, histograms and the other
      // commands of the vocabulary are bound by the features that own them.
      break;
  }
  SyncViews();
  UpdateStatus();
  UpdateMenuChecks();
  Repaint();
}

// --- mouse, drop, close ----------------------------------------------------------

// Ctrl+C: over a tab the image's path, else the image in context.
void CViewerController::CopyContext() {
  if (const size_t tab = TabUnderCursor(); tab != kNoIndex) {
    CopyPathToClipboard(app_, host_, tab);
    return;
  }
  CopyImageToClipboard(app_, host_, ContextImage(app_, ImageUnderCursor()));
}

// The image of the first drawn tab that holds the mouse, or kNoIndex.
size_t CViewerController::TabUnderCursor() const {
  for (const PanelPlan& panel : plan_.panels) {
    if (panel.tab.rect.Contains(state_.cursor)) return panel.image_index;
  }
  return kNoIndex;
}

size_t CViewerController::ImageUnderCursor() const {
  const std::vector<size_t> drawn = DrawnIndices();
  for (size_t index : drawn) {
    const ImageView* view = ViewAt(index);
    if (view != nullptr && view->picture.Contains(state_.cursor)) return index;
  }
  return kNoIndex;
}

void CViewerController::UpdateTabHover() {
  std::vector<ScreenRect> damage;
  for (PanelPlan& panel : plan_.panels) {
    const bool hovered = panel.tab.rect.Contains(state_.cursor);
    const bool close_hovered = panel.tab.close_box.Contains(state_.cursor);
    if (hovered == panel.tab.hovered && close_hovered == panel.tab.close_hovered) continue;
    panel.tab.hovered = hovered;
    panel.tab.close_hovered = close_hovered;
    if (ImageView* view = ViewAt(panel.image_index)) {
      view->tab.hovered = hovered;
      view->tab.close_hovered = close_hovered;
    }
    damage.push_back(panel.tab.rect);
  }
  if (!damage.empty()) host_.Invalidate(false, damage);
}

void CViewerController::OnMouseMove(ScreenPoint p, Modifiers m) {
  SyncViews();  // an image set changed behind our back makes the view dirty
  if (!HasImages() || state_.help_visible || state_.view_dirty || p == state_.cursor) return;
  state_.cursor = p;
  // The app keeps the hovered pixel: "n" crops when it lies in the ROI.
  const size_t hovered = ImageUnderCursor();
  const ImageView* view = ViewAt(hovered);
  const std::optional<PixelPoint> pixel = view ? ScreenToPixel(*view, p) : std::nullopt;
  app_.SetHover(hovered, pixel ? static_cast<int32_t>(pixel->x) : -1,
                pixel ? static_cast<int32_t>(pixel->y) : -1);
  MarkCloseBoxes(m.ctrl);
  UpdateTabHover();
  ShowLayerUnderCursor();
  UpdateReadout();
  UpdateHistogramHover(m);
}

// Ctrl held over a comparison of more than two turns the close boxes into
// "O": a click then takes the image out of the party instead of closing it.
void CViewerController::MarkCloseBoxes(bool ctrl) {
  const std::vector<size_t> party = PartyIndices();
  const bool remove = ctrl && app_.CompareMode() && party.size() > 2;
  std::vector<ScreenRect> damage;
  for (PanelPlan& panel : plan_.panels) {
    ImageView* view = ViewAt(panel.image_index);
    if (view == nullptr || view->tab.ctrl_remove == remove) continue;
    view->tab.ctrl_remove = remove;
    panel.tab.close_text = remove ? 'O' : 'X';
    damage.push_back(panel.tab.close_box);
  }
  if (!damage.empty()) host_.Invalidate(false, damage);
}

// In layer mode the tab lists the party's HK numbers; hovering another
// image's number shows that layer.
void CViewerController::ShowLayerUnderCursor() {
  if (!app_.LayerMode() || metrics_ == nullptr || plan_.panels.empty()) return;
  std::vector<uint32_t> hk_ids;
  for (size_t member : PartyIndices()) hk_ids.push_back(app_.Images().At(member).hk_id);
  const std::optional<size_t> layer =
      LayerNumberAt(plan_.panels.front().tab, state_.cursor, hk_ids, *metrics_);
  if (!layer || !app_.SetVisibleLayer(*layer)) return;
  MarkDirty();
  UpdateStatus();
  Repaint();
}

void CViewerController::OnLeftDown(ScreenPoint p, Modifiers m) {
  SyncViews();
  if (!HasImages() || state_.view_dirty) return;
  CancelPhase();
  const size_t party = app_.CompareMode() ? PartyIndices().size() : 0;
  const TabHit hit = HitTab(plan_.panels, p, m.ctrl, party);
  if (ApplyTabHit(app_, hit)) {
    // A click on the tab itself (not its close box) also toggles the
    // image's histogram.
    if (hit.action == TabAction::Focus) ToggleHistogramFor(hit.image);
    OnImagesChanged();
    return;
  }
  RoiMouseDown(p);
  Repaint();
}

void CViewerController::OnLeftUp(ScreenPoint) {
  if (state_.help_visible) {  // a left release hides the help overlay
    state_.help_visible = false;
    state_.view_dirty = true;
    Repaint();
    return;
  }
  RoiMouseUp();
}

void CViewerController::OnRightUp(ScreenPoint) {
  SyncViews();
  if (state_.help_visible) {
    state_.help_visible = false;
    state_.view_dirty = true;
  } else if (HasImages()) {
    CancelPhase();
    ClearRoiAndMarks();
  }
  Repaint();
}

void CViewerController::OnDrop(const std::vector<std::string>& paths) {
  OpenDroppedFiles(app_, paths);
  OnImagesChanged();
}

bool CViewerController::RequestClose() { return app_.ConfirmExit(); }

void CViewerController::OnUpdateReply(std::optional<std::string_view> body) {
  update_check_.OnReply(body);
  state_.view_dirty = true;  // the no-image texts may have changed
  Repaint();
}

void CViewerController::OnImagesChanged() {
  SyncViews();
  UpdateStatus();
  UpdateMenuChecks();
  Repaint();
}

// --- dialogs -------------------------------------------------------------------

// The operation dialogs work on the focus image, so they need one.
void CViewerController::OpenImageDialog(DialogId id) {
  if (HasImages()) host_.OpenDialog(id);
}

void CViewerController::OnDialogApplied() {
  state_.view_dirty = true;
  OnImagesChanged();
}

void CViewerController::ReapplyLastFilter() {
  if (!HasImages()) return;
  if (!dialogs_.filter.HasLastRequest()) {
    host_.OpenDialog(DialogId::Filter);
    return;
  }
  if (const DialogResult failure = dialogs_.filter.Reapply(app_); failure && !failure->title.empty()) {
    app_.ShowMessage(failure->text, failure->title);
  }
  OnDialogApplied();
}

void CViewerController::OpenImageEvalDialog() {
  if (!HasImages()) return;
  if (!settings_.dialog_defaults.system.ieval_load_saved_startup_only) app_.ReloadSavedIEvals();
  host_.OpenDialog(DialogId::ImageEval);
}

void CViewerController::ReapplyLastIEval() {
  if (!HasImages()) return;
  if (!dialogs_.ieval.HasLastRequest()) {
    OpenImageEvalDialog();
    return;
  }
  // The evaluator shows its own errors.
  dialogs_.ieval.Reapply(app_);
  OnDialogApplied();
}

DialogResult CViewerController::ApplyRulerSettings() {
  DialogMessage refusal;
  const std::optional<RulerSettings> settings = dialogs_.ruler.Settings(refusal);
  if (!settings) return refusal;
  const std::vector<size_t> targets =
      app_.CompareMode() ? PartyIndices() : std::vector<size_t>{app_.FocusIndex()};
  for (size_t index : targets) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    // Screen-pixel spacing leaves the image-pixel offsets as they were.
    const RulerSettings kept = view->ruler;
    view->ruler = *settings;
    if (settings->screen_pixels) {
      view->ruler.offset_x = kept.offset_x;
      view->ruler.offset_y = kept.offset_y;
    }
  }
  dialogs_.ruler.RecordEditHistory(app_.EditHistory());
  app_.StoreEditHistory();
  MarkDirty();
  Repaint();
  return std::nullopt;
}

// --- timers and status ---------------------------------------------------------

void CViewerController::SayStatus(std::string_view text) {
  app_.LogStatusMessage(text);
  ShowStatusMessage(text);
}

void CViewerController::ShowStatusMessage(std::string_view text) {
  state_.message.Show(text);
  host_.StartTimer(TimerId::Status, TimerPeriod(TimerId::Status));
  UpdateStatus();
}

void CViewerController::OnTimer(TimerId id) {
  if (id == TimerId::FileWatch) {
    // A running operation is writing images: the round waits for the next tick.
    if (!Busy() && RunFileWatchRound(app_, host_, settings_.reload_keeps_format)) OnImagesChanged();
    return;
  }
  if (id == TimerId::Jump || id == TimerId::Find) {
    TickMarkers(id);
    return;
  }
  if (id != TimerId::Status) return;
  if (state_.message.showing && !state_.message.Tick()) return;
  host_.StopTimer(TimerId::Status);
  UpdateStatus();
}

void CViewerController::UpdateStatus() {
  StatusFields fields;
  if (const ImageView* focus = FocusView(); focus != nullptr) {
    const ModeFlags modes{state_.flags, focus->ruler_type == RulerType::Matrix,
                          app_.CompareMode()};
    if (state_.message.showing) {
      fields.parts[kStatusReadoutPart] = state_.message.text;
    } else if (phase_) {
      fields.parts[kStatusReadoutPart] = phase_->Prompt();
    } else {
      fields.parts[kStatusReadoutPart] = StatusReadout();
    }
    fields.parts[kStatusFeaturePart] = FeatureLetters(modes);
    fields.parts[kStatusZoomPart] = state_.zoom_text;
    fields.parts[kStatusModePart] = ModeLetters(modes);
  }
  state_.status = fields;
  if (status_shown_ && fields == shown_status_) return;
  shown_status_ = fields;
  status_shown_ = true;
  host_.ShowStatus(fields);
}

void CViewerController::UpdateMenuChecks() {
  const ImageView* focus = FocusView();
  const bool images = HasImages();
  const struct {
    Command command;
    bool checked;
  } rows[] = {
      {Command::ToggleGrid, state_.flags.grid},
      {Command::TogglePixelValues, state_.flags.values},
      {Command::ToggleHex, state_.flags.hex},
      {Command::ToggleTracking, state_.flags.tracking},
      {Command::ToggleOffset, state_.flags.offset},
      {Command::ToggleRuler, state_.flags.ruler},
      {Command::ToggleRulerMatrix, focus != nullptr && focus->ruler_type == RulerType::Matrix},
      {Command::CompareLabel, app_.CompareMode()},
      {Command::ToggleLayerMode, app_.LayerMode()},
      {Command::ToggleAutoNaming, app_.AutoFileNaming()},
      {Command::ToggleHexTextCLayout, app_.SaveTextHexCArray()},
      {Command::ToggleFavorLowMemory, app_.FavorLowMemory()},
      {Command::ToggleAppLog, app_.AppLogEnabled()},
      {Command::ToggleFormatLog, app_.FormatLogEnabled()},
      {Command::DiffTypeAllBin, app_.GetDiffType() == DiffType::kAllBin},
      {Command::DiffTypeMaskBin, app_.GetDiffType() == DiffType::kMaskBin},
      {Command::DiffTypeAllAbsDelta, app_.GetDiffType() == DiffType::kAllAbsDelta},
      {Command::DiffTypeMaskAbsDelta, app_.GetDiffType() == DiffType::kMaskAbsDelta},
      {Command::ToggleHistogram, focus != nullptr && focus->histogram_visible},
      {Command::ToggleHistogramTransparent, state_.histogram.transparent},
      {Command::ToggleHistogramShadow, state_.histogram.shadow},
      {Command::ToggleBeautify, state_.value_comma},
  };
  menus_set_ = true;
  for (const auto& row : rows) host_.SetMenuState(row.command, row.checked, true);
  host_.SetMenuState(Command::ZoomIn, false, images);
  host_.SetMenuState(Command::ZoomOut, false, images);
  host_.SetMenuState(Command::FitToWindow, false, images);
  host_.SetMenuState(Command::ClearMarkedPixels, false, AnyMarks());
}

// --- the frame -----------------------------------------------------------------

bool CViewerController::ValuesFit(uint32_t k, bool one_component) const {
  if (metrics_ == nullptr) return k >= kValuesFromZoom;
  const auto block = static_cast<int32_t>(k);
  return metrics_->Width(FontRole::Values, ValueTemplate(one_component)) <= block &&
         metrics_->Height(FontRole::Values) <= block;
}

std::string CViewerController::TabText(size_t index) const {
  const ImageRecord& record = app_.Images().At(index);
  std::string text;
  if (CurrentLayoutMode() == LayoutMode::Layer) {
    // The party's HK numbers, left to right, so the number keys pick layers.
    for (size_t member : PartyIndices()) {
      text += std::to_string(app_.Images().At(member).hk_id);
      text += ' ';
    }
    text += "| ";
  }
  if (state_.inspect.pixel) return text + ReadoutText(index);
  char head[16];
  std::snprintf(head, sizeof head, "[%u] ", record.hk_id);
  return text + head + record.display_name + SignificantBitsTag(*record.image);
}

void CViewerController::BuildPanelPlan(size_t index, size_t panel, PanelPlan& plan) {
  ImageRecord& record = app_.Images().At(index);
  const ImageView& view = *ViewAt(index);
  IImageContainer& image = *record.image;
  plan.image_index = index;
  plan.hk_id = record.hk_id;
  plan.image = &image;
  plan.panel = view.panel;
  plan.picture = view.picture;
  plan.source = VisibleRect(view.picture, view.size, view.zf, view.offset);
  plan.rendition = plan.picture.Empty() ? nullptr : image.BuildDisplay(&app_.Jobs());
  plan.stretch = !Replicates(view.zf);
  plan.k = RoundedZoom(view.zf);
  plan.origin = {view.picture.left + view.offset.x, view.picture.top + view.offset.y};
  plan.grid = view.grid_visible && !plan.stretch;
  plan.roi = RoiRect(image, view.size);
  const bool one_component = image.ComponentCount() == 1;
  plan.values = {view.values && !plan.stretch && ValuesFit(plan.k, one_component), view.hex,
                 one_component, ValueFormatFor(one_component, view.hex)};
  plan.rings = CurrentLayoutMode() == LayoutMode::SideBySide && index == AnchorIndex() &&
                       layout_.panels.size() > 1
                   ? kFocusRings
                   : 0;
  plan.ruler = {state_.flags.ruler, view.ruler_type, view.ruler,
                settings_.ruler_colors[view.ruler_color_index % settings_.ruler_colors.size()]};
  const ScreenRect& tab = layout_.panels[panel].tab;
  plan.tab.rect = tab;
  const int32_t box = std::min({kCloseBoxSize, tab.Width(), tab.Height()});
  plan.tab.close_box = {tab.left, tab.top, tab.left + box - 1, tab.top + box - 1};
  plan.tab.text = tab.Empty() ? std::string() : TabText(index);
  plan.tab.close_text = view.tab.ctrl_remove && PartyIndices().size() > 2 ? 'O' : 'X';
  plan.tab.hovered = view.tab.hovered;
  plan.tab.close_hovered = view.tab.close_hovered;
  BuildInspectionPlan(index, plan);
}

const FramePlan& CViewerController::PrepareFrame() {
  SyncViews();
  EnsureLayout();
  UpdateStatus();
  plan_.area = state_.area;
  plan_.base_dirty = state_.view_dirty;
  plan_.help_visible = state_.help_visible;
  plan_.help_page = state_.help_page;
  const std::vector<size_t> drawn = DrawnIndices();
  plan_.panels.resize(std::min(drawn.size(), layout_.panels.size()));
  for (size_t i = 0; i < plan_.panels.size(); ++i) {
    plan_.panels[i] = PanelPlan{};
    BuildPanelPlan(drawn[i], i, plan_.panels[i]);
    // A changed view may come with a changed ROI or filter: the image
    // recounts only when its region changed.
    if (state_.view_dirty && state_.histograms.contains(ViewAt(drawn[i])->serial)) RebuildHistogram(drawn[i], false);
    BuildHistogramPlan(drawn[i], plan_.panels[i]);
  }
  BuildHelpPlan();
  plan_.no_image.show = !HasImages();
  plan_.no_image.invitation = plan_.no_image.show ? kNoImageInvitation : "";
  plan_.no_image.newer_version.clear();
  plan_.directive = BuildDirectivePlan();
  plan_.no_image.newer_version = update_check_.NewerVersionLine();
  state_.view_dirty = false;
  return plan_;
}

}  // namespace korvanel
