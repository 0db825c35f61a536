// The controller's pixel inspection: the readout on cursor moves, ROI by
// mouse, copy pixel, jumping, finding, find marks and the marker timers.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>

#include "app/app_state.h"
#include "image/image_concrete_base.h"
#include "image/text_util.h"
#include "ui/model/readout.h"
#include "ui/model/text_metrics.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {

namespace {

std::string Tag(const ImageRecord& record) { return std::to_string(record.hk_id); }

ReadoutFormat FormatOf(const IImageContainer& image, bool hex) {
  return {image.ComponentCount() == 1, hex};
}

std::optional<Rect> ActiveRoi(const IImageContainer& image) {
  const Rect roi = image.GetRegionOfInterest();
  if (roi.IsNone()) return std::nullopt;
  return roi;
}

// The status bar shows the readout without the tab's highlight marks.
std::string WithoutMarks(std::string text) {
  std::erase(text, '~');
  return text;
}

ScreenRect RoiFrame(const ImageView& view, const Rect& roi) {
  return PixelSpan(view, {roi.min_x, roi.min_y, roi.max_x, roi.max_y});
}

// What a line from `a` to `b` may paint over.
ScreenRect LineBounds(ScreenPoint a, ScreenPoint b) {
  return {std::min(a.x, b.x) - 1, std::min(a.y, b.y) - 1, std::max(a.x, b.x) + 1,
          std::max(a.y, b.y) + 1};
}

// Roughly how wide an average status-bar character is when no text
// metrics are at hand.
constexpr int32_t kStatusCharWidth = 7;

}  // namespace

// --- the readout -----------------------------------------------------------------

std::optional<PixelPoint> CViewerController::CursorPixelIn(size_t index) const {
  const PixelInspection& in = state_.inspect;
  if (!in.pixel || index >= app_.Images().Count()) return std::nullopt;
  const ImageView* view = ViewAt(index);
  if (view == nullptr || in.pixel->x >= view->size.width || in.pixel->y >= view->size.height) {
    return std::nullopt;
  }
  return in.pixel;
}

// The tab line of a drawn image: its readout while the cursor is over an
// image, "Out-of-Range" when the cursor's pixel lies outside this image.
std::string CViewerController::ReadoutText(size_t index) const {
  const ImageRecord& record = app_.Images().At(index);
  const std::optional<PixelPoint> pixel = CursorPixelIn(index);
  if (!pixel) return OutOfRangeLine(Tag(record));
  const std::optional<PixelSample> sample = SamplePixel(*record.image, *pixel);
  if (!sample) return OutOfRangeLine(Tag(record));
  std::string line = ReadoutLine(Tag(record), ComponentNames(*record.image), *pixel, *sample,
                                 FormatOf(*record.image, state_.flags.hex));
  const std::optional<PixelPoint>& anchor = state_.inspect.roi.Anchor();
  if (anchor && index == state_.inspect.image) line += " " + DirectiveText(*anchor, *pixel);
  return line;
}

std::string CViewerController::StatusReadout() const {
  const PixelInspection& in = state_.inspect;
  if (!in.pixel || in.image >= app_.Images().Count()) {
    const int32_t room = StatusPartWidths(state_.client.width)[kStatusReadoutPart];
    const int32_t needed = metrics_ != nullptr
                               ? metrics_->Width(FontRole::Text, kOutOfRangeText)
                               : kStatusCharWidth * static_cast<int32_t>(std::strlen(kOutOfRangeText));
    return needed <= room ? kOutOfRangeText : kOutOfRangeShortText;
  }
  const IImageContainer& image = *app_.Images().At(in.image).image;
  std::string text;
  if (const std::optional<PixelPoint>& anchor = in.roi.Anchor()) {
    text = PendingRoiPrefix(*anchor, *in.pixel);
  } else if (const std::optional<Rect> roi = ActiveRoi(image)) {
    text = RoiPrefix(*roi);
  }
  text += CursorPrefix(*in.pixel);
  const std::optional<PixelSample> sample = SamplePixel(image, *in.pixel);
  if (sample) {
    const ImageRecord& record = app_.Images().At(in.image);
    text += WithoutMarks(ReadoutLine(Tag(record), ComponentNames(image), *in.pixel, *sample,
                                     FormatOf(image, state_.flags.hex)));
    // With the overlay shown, the counts of the bins the pixel falls in.
    const auto overlay = state_.histograms.find(record.serial);
    if (overlay != state_.histograms.end()) {
      text += HistSuffix(overlay->second.data, sample->values, state_.value_comma);
    }
  }
  return text;
}

// After the cursor moved: the pixel under it, a running ROI drag, the resize
// cursor over an ROI frame, and the overlay parts that follow the cursor.
void CViewerController::UpdateReadout() {
  PixelInspection& in = state_.inspect;
  in.image = ImageUnderCursor();
  in.pixel.reset();
  if (const ImageView* view = ViewAt(in.image)) in.pixel = ScreenToPixel(*view, state_.cursor);
  if (!in.pixel) in.image = kNoIndex;
  if (in.roi.Dragging()) {
    DragRoi();
  } else {
    UpdateRoiCursor();
  }
  std::vector<ScreenRect> damage = std::move(in.cursor_damage);
  in.cursor_damage = CursorDamage();
  damage.insert(damage.end(), in.cursor_damage.begin(), in.cursor_damage.end());
  for (const PanelPlan& panel : plan_.panels) damage.push_back(panel.tab.rect);
  host_.Invalidate(false, damage);
  UpdateStatus();
}

// --- ROI by mouse ----------------------------------------------------------------

void CViewerController::SetPartyRoi(const Rect& roi) {
  for (size_t index : PartyIndices()) app_.Images().At(index).image->SetRegionOfInterest(roi);
  state_.view_dirty = true;  // the grid colours the ROI
  RefreshHistograms();       // an open overlay counts the ROI
}

void CViewerController::RoiMouseDown(ScreenPoint p) {
  state_.cursor = p;
  const size_t index = ImageUnderCursor();
  const ImageView* view = ViewAt(index);
  if (view == nullptr) return;
  PixelInspection& in = state_.inspect;
  const std::optional<Rect> roi = ActiveRoi(*app_.Images().At(index).image);
  if (roi && !in.roi.Anchor()) {
    const RoiEdges edges = RoiEdgesAt(RoiFrame(*view, *roi), p);
    if (edges.Any()) {
      in.roi.BeginDrag(edges);
      return;
    }
  }
  const std::optional<PixelPoint> pixel = ScreenToPixel(*view, p);
  if (!pixel) return;
  const std::optional<Rect> chosen = in.roi.Click(*pixel);
  // The first click starts a new ROI: the old one goes.
  SetPartyRoi(chosen ? *chosen : Rect::None());
  in.image = index;
  in.pixel = pixel;
  UpdateStatus();
  Repaint();
}

void CViewerController::RoiMouseUp() {
  if (!state_.inspect.roi.Dragging()) return;
  state_.inspect.roi.EndDrag();
  UpdateRoiCursor();
}

void CViewerController::DragRoi() {
  const PixelInspection& in = state_.inspect;
  const ImageView* view = ViewAt(in.image);
  if (view == nullptr || !in.pixel) return;
  const std::optional<Rect> roi = ActiveRoi(*app_.Images().At(in.image).image);
  if (!roi) return;
  const Rect moved = state_.inspect.roi.Drag(*roi, *in.pixel);
  if (moved == *roi) return;
  SetPartyRoi(moved);
  Repaint();
}

void CViewerController::UpdateRoiCursor() {
  CursorShape shape = CursorShape::Arrow;
  const size_t index = ImageUnderCursor();
  const ImageView* view = ViewAt(index);
  const std::optional<Rect> roi =
      view != nullptr ? ActiveRoi(*app_.Images().At(index).image) : std::nullopt;
  if (roi && !state_.inspect.roi.Anchor()) {
    const RoiEdges e = RoiEdgesAt(RoiFrame(*view, *roi), state_.cursor);
    if ((e.left && e.top) || (e.right && e.bottom)) {
      shape = CursorShape::SizeDiagonal;
    } else if ((e.right && e.top) || (e.left && e.bottom)) {
      shape = CursorShape::SizeAntiDiagonal;
    } else if (e.left || e.right) {
      shape = CursorShape::SizeHorizontal;
    } else if (e.top || e.bottom) {
      shape = CursorShape::SizeVertical;
    }
  }
  if (shape == state_.inspect.shape) return;
  state_.inspect.shape = shape;
  host_.SetCursorShape(shape);
}

void CViewerController::ClearRoiAndMarks() {
  state_.inspect.roi.Reset();
  SetPartyRoi(Rect::None());
  for (size_t index : PartyIndices()) {
    if (ImageView* view = ViewAt(index)) view->marks.clear();
  }
  UpdateMenuChecks();
  UpdateStatus();
  Repaint();
}

// --- copy pixel ------------------------------------------------------------------

void CViewerController::CopyPixel() {
  const PixelInspection& in = state_.inspect;
  if (in.pixel && in.image < app_.Images().Count()) {
    const ImageRecord& record = app_.Images().At(in.image);
    if (const std::optional<PixelSample> sample = SamplePixel(*record.image, *in.pixel)) {
      const ImageView* view = ViewAt(in.image);
      std::optional<uint64_t> offset;
      if (state_.flags.offset && view != nullptr) {
        offset = static_cast<uint64_t>(in.pixel->y) * view->size.width + static_cast<uint64_t>(in.pixel->x);
      }
      host_.SetClipboardText(
          CopyPixelText(*in.pixel, *sample, FormatOf(*record.image, state_.flags.hex), offset));
      return;
    }
  }
  if (const ImageView* focus = ViewAt(app_.FocusIndex())) {
    host_.SetClipboardText(CopySizeText(focus->size.width, focus->size.height));
  }
}

// --- jump and find ---------------------------------------------------------------

// Jump and find work on the FI, or in compare mode on the left-most party image.
size_t CViewerController::PhaseTargetIndex() const {
  if (app_.CompareMode()) {
    const std::vector<size_t> party = PartyIndices();
    return party.empty() ? kNoIndex : party.front();
  }
  return app_.FocusIndex() < app_.Images().Count() ? app_.FocusIndex() : kNoIndex;
}

void CViewerController::CentreOn(PixelPoint pixel) {
  EnsureLayout();
  const ScreenPoint centre{static_cast<int32_t>(pixel.x), static_cast<int32_t>(pixel.y)};
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    view->offset = ScrollToCentre(view->panel, view->size, view->zf, centre);
  }
  MarkDirty();
  UpdateScrollBars();
}

void CViewerController::JumpTo(PixelPoint pixel) {
  CentreOn(pixel);
  PixelInspection& in = state_.inspect;
  in.jump_history.Add(pixel);
  in.jump_markers.Add(pixel, kJumpMarkerLife);
  host_.StartTimer(TimerId::Jump, TimerPeriod(TimerId::Jump));
}

void CViewerController::MarkFindHit(size_t index, PixelPoint hit) {
  CentreOn(hit);
  ImageView* view = ViewAt(index);
  if (view == nullptr) return;
  const std::optional<PixelSample> sample = SamplePixel(*app_.Images().At(index).image, hit);
  const Rgb color = sample ? ContrastRgb(sample->r, sample->g, sample->b) : Rgb{255, 255, 255};
  const bool marked =
      std::ranges::any_of(view->marks, [&](const MarkedPixel& m) { return m.pixel == hit; });
  if (!marked) view->marks.push_back({hit, color});
  state_.inspect.find_markers.Add(hit, kFindMarkerLife);
  host_.StartTimer(TimerId::Find, TimerPeriod(TimerId::Find));
  UpdateMenuChecks();
}

std::string CViewerController::FindValue(const PixelValue& value) {
  const size_t index = PhaseTargetIndex();
  if (index == kNoIndex) return {};
  ImageRecord& record = app_.Images().At(index);
  const auto* image = dynamic_cast<const CImageConcreteBase*>(record.image.get());
  LastFind& last = state_.inspect.last_find;
  last = {value, record.serial, std::nullopt, 0};
  const std::string text = PixelValueText(value, state_.flags.hex);
  const std::optional<PixelPoint> hit =
      image == nullptr ? std::nullopt
                       : FindPixelValue(*image, image->GetRegionOfInterest(), value, std::nullopt,
                                        SearchDirection::Forward);
  if (!hit) return StrFormat("Can't find pixel value <%s>", text.c_str());
  last.hit = hit;
  last.hit_number = 1;
  MarkFindHit(index, *hit);
  return StrFormat("Pixel value <%s> found at <%u,%u>", text.c_str(),
                   static_cast<unsigned>(hit->x), static_cast<unsigned>(hit->y));
}

void CViewerController::FindAgain(SearchDirection direction) {
  LastFind& last = state_.inspect.last_find;
  const size_t index = PhaseTargetIndex();
  if (!last.value || index == kNoIndex) return;
  ImageRecord& record = app_.Images().At(index);
  if (record.serial != last.serial) {
    // Another image now: its scan starts afresh.
    last = {last.value, record.serial, std::nullopt, 0};
  }
  const auto* image = dynamic_cast<const CImageConcreteBase*>(record.image.get());
  const bool forward = direction == SearchDirection::Forward;
  const std::string text = PixelValueText(*last.value, state_.flags.hex);
  const std::optional<PixelPoint> hit =
      image == nullptr || (!forward && !last.hit)
          ? std::nullopt
          : FindPixelValue(*image, image->GetRegionOfInterest(), *last.value, last.hit, direction);
  if (!hit) {
    SayStatus(StrFormat(forward ? "Can't forward find more of pixel value <%s>"
                                        : "Can't backward find more of pixel value <%s>",
                                text.c_str()));
    return;
  }
  last.hit = hit;
  last.hit_number = forward ? last.hit_number + 1 : std::max<uint32_t>(1, last.hit_number - 1);
  MarkFindHit(index, *hit);
  SayStatus(StrFormat("Pixel value <%s> found at <%u,%u> (Hit %u)", text.c_str(),
                              static_cast<unsigned>(hit->x), static_cast<unsigned>(hit->y),
                              last.hit_number));
}

// --- the phases ------------------------------------------------------------------

JumpContext CViewerController::JumpTarget() const {
  const size_t index = PhaseTargetIndex();
  const ImageView* view = ViewAt(index);
  if (view == nullptr) return {};
  return {view->size, ActiveRoi(*app_.Images().At(index).image)};
}

FindContext CViewerController::FindTarget() const {
  const size_t index = PhaseTargetIndex();
  if (index == kNoIndex) return {};
  const IImageContainer& image = *app_.Images().At(index).image;
  return {image.ComponentCount(), SignificantBitsOf(image)};
}

void CViewerController::ClearFindMarks() {
  ClearMarks(true);
  UpdateMenuChecks();
  Repaint();
}

// The menu's jump and find items start their phase when it is not running.
bool CViewerController::EnsureInspectionPhase(InputPhaseKind kind) {
  if (ActivePhase() == kind) return true;
  if (kind == InputPhaseKind::Jump) {
    IJumpHost& host = *this;
    return StartPhase(std::make_unique<CJumpPhase>(host), "Can't jump to coordinate while in other action");
  }
  IFindHost& host = *this;
  return StartPhase(std::make_unique<CFindPhase>(host), "Can't find pixel while in other action");
}

// J: starts the jump phase, or ends a running one as Esc would.
void CViewerController::ToggleJumpPhase() {
  if (ActivePhase() == InputPhaseKind::Jump) {
    CancelPhase();
    return;
  }
  EnsureInspectionPhase(InputPhaseKind::Jump);
}

void CViewerController::FeedJumpPhase(char32_t ch) {
  if (EnsureInspectionPhase(InputPhaseKind::Jump)) ApplyPhaseStep(phase_->OnChar(ch));
}

void CViewerController::PasteIntoInspectionPhase(InputPhaseKind kind) {
  if (EnsureInspectionPhase(kind)) PasteIntoPhase();
}

void CViewerController::StartFindPhase() { EnsureInspectionPhase(InputPhaseKind::Find); }

// --- marks and markers -----------------------------------------------------------

// `context`: the "-" key, clearing the image under the mouse, or every image
// when the mouse is over none; otherwise the party (or the FI).
void CViewerController::ClearMarks(bool context) {
  std::vector<size_t> targets;
  const size_t under = ImageUnderCursor();
  if (context && under != kNoIndex) {
    targets.push_back(under);
  } else if (context) {
    for (size_t i = 0; i < app_.Images().Count(); ++i) targets.push_back(i);
  } else {
    targets = PartyIndices();
  }
  for (size_t index : targets) {
    if (ImageView* view = ViewAt(index)) view->marks.clear();
  }
}

bool CViewerController::AnyMarks() const {
  return std::ranges::any_of(PartyIndices(), [&](size_t index) {
    const ImageView* view = ViewAt(index);
    return view != nullptr && !view->marks.empty();
  });
}

void CViewerController::TickMarkers(TimerId id) {
  PixelInspection& in = state_.inspect;
  CMarkerList& list = id == TimerId::Jump ? in.jump_markers : in.find_markers;
  const std::vector<ScreenRect> before = MarkerDamage();
  if (!list.Tick()) host_.StopTimer(id);
  host_.Invalidate(false, before);
}

std::vector<ScreenRect> CViewerController::MarkerDamage() const {
  std::vector<ScreenRect> rects;
  const PixelInspection& in = state_.inspect;
  for (size_t index : DrawnIndices()) {
    const ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    for (const CMarkerList* list : {&in.jump_markers, &in.find_markers}) {
      for (const TimedMarker& m : list->Markers()) rects.push_back(MarkerRing(PixelBlock(*view, m.pixel)));
    }
  }
  return rects;
}

// --- the overlay -----------------------------------------------------------------

void CViewerController::BuildInspectionPlan(size_t index, PanelPlan& plan) const {
  const ImageView* view = ViewAt(index);
  if (view == nullptr || plan.picture.Empty()) return;
  PanelInspectionPlan& out = plan.inspect;
  if (const std::optional<Rect> roi = ActiveRoi(*plan.image)) {
    out.roi_frame = RoiFrame(*view, *roi);
  }
  if (const std::optional<PixelPoint> pixel = CursorPixelIn(index)) {
    out.tracked = PixelBlock(*view, *pixel);
    out.tracking_lines = state_.flags.tracking;
    out.outline = view->grid_visible && Replicates(view->zf);
  }
  for (const MarkedPixel& mark : view->marks) out.marks.push_back({PixelBlock(*view, mark.pixel), mark.color});
  const PixelInspection& in = state_.inspect;
  for (const TimedMarker& m : in.jump_markers.Markers()) {
    out.markers.push_back({MarkerRing(PixelBlock(*view, m.pixel)), kJumpMarkerColor});
  }
  for (const TimedMarker& m : in.find_markers.Markers()) {
    out.markers.push_back({MarkerRing(PixelBlock(*view, m.pixel)), kFindMarkerColor});
  }
}

DirectivePlan CViewerController::BuildDirectivePlan() const {
  const PixelInspection& in = state_.inspect;
  const ImageView* view = ViewAt(in.image);
  if (view == nullptr || !in.roi.Anchor() || !in.pixel) return {};
  return {true, BlockCentre(PixelBlock(*view, *in.roi.Anchor())), state_.cursor};
}

// The rectangles a cursor move may change: tracking lines, the tracked-pixel
// outline and the directive line.
std::vector<ScreenRect> CViewerController::CursorDamage() const {
  std::vector<ScreenRect> rects;
  for (const PanelPlan& panel : plan_.panels) {
    const std::optional<PixelPoint> pixel = CursorPixelIn(panel.image_index);
    const ImageView* view = ViewAt(panel.image_index);
    if (!pixel || view == nullptr) continue;
    const ScreenRect block = PixelBlock(*view, *pixel);
    const ScreenPoint c = BlockCentre(block);
    if (state_.flags.tracking) {
      rects.push_back({panel.picture.left, c.y, panel.picture.right, c.y});
      rects.push_back({c.x, panel.picture.top, c.x, panel.picture.bottom});
    }
    rects.push_back({block.left - 1, block.top - 1, block.right + 1, block.bottom + 1});
  }
  const DirectivePlan directive = BuildDirectivePlan();
  if (directive.show) rects.push_back(LineBounds(directive.from, directive.to));
  return rects;
}

}  // namespace korvanel
