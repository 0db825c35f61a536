#include "ui/model/pointer_controller.h"

#include <algorithm>

#include "app/app_state.h"
#include "image/image_container.h"
#include "ui/model/histogram_controller.h"
#include "ui/model/pixel_mapping.h"
#include "ui/model/readout.h"
#include "ui/model/status_bar.h"
#include "ui/model/tab_hits.h"
#include "ui/model/text_metrics.h"
#include "ui/model/view_set.h"
#include "ui/model/viewer_state.h"

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

struct EdgeCursor {
  bool (*matches)(const RoiEdges&);
  CursorShape shape;
};

constexpr EdgeCursor kEdgeCursors[] = {
    {[](const RoiEdges& e) { return (e.left && e.top) || (e.right && e.bottom); }, CursorShape::SizeDiagonal},
    {[](const RoiEdges& e) { return (e.right && e.top) || (e.left && e.bottom); }, CursorShape::SizeAntiDiagonal},
    {[](const RoiEdges& e) { return e.left || e.right; }, CursorShape::SizeHorizontal},
    {[](const RoiEdges& e) { return e.top || e.bottom; }, CursorShape::SizeVertical},
};

}  // namespace

size_t CPointer::ImageUnderCursor() const { return views_.ImageAt(cursor_); }

size_t CPointer::TabUnderCursor(const HitMap& hits) const {
  for (const PanelHit& panel : hits) {
    if (panel.tab.rect.Contains(cursor_)) return panel.image_index;
  }
  return kNoView;
}

// --- moves ---------------------------------------------------------------------------

void CPointer::Move(ScreenPoint p, Modifiers m, const HitMap& hits, const ITextMetrics* metrics) {
  cursor_ = p;
  // The app keeps the hovered pixel: "n" crops when it lies in the ROI.
  const size_t hovered = ImageUnderCursor();
  const ImageView* view = views_.ViewAt(hovered);
  const std::optional<PixelPoint> pixel = view ? ScreenToPixel(*view, p) : std::nullopt;
  app_.SetHover(hovered, pixel ? static_cast<int32_t>(pixel->x) : -1,
                pixel ? static_cast<int32_t>(pixel->y) : -1);
  MarkCloseBoxes(m.ctrl, hits);
  UpdateTabHover(hits);
  ShowLayerUnderCursor(hits, metrics);
  UpdateReadout(hits);
  refresh_.Damage(histograms_.UpdateHover(hits, cursor_, ImageUnderCursor(), m.ctrl));
}

void CPointer::CtrlChanged(bool ctrl, const HitMap& hits) { MarkCloseBoxes(ctrl, hits); }

// Ctrl held over a comparison of more than two turns the close boxes into
// "O": a click then takes the image out of the party instead of closing it.
void CPointer::MarkCloseBoxes(bool ctrl, const HitMap& hits) {
  const bool remove = ctrl && app_.CompareMode() && views_.PartyIndices().size() > 2;
  if (remove == ctrl_remove_) return;
  ctrl_remove_ = remove;
  for (const PanelHit& panel : hits) refresh_.damage.push_back(panel.tab.close_box);
}

void CPointer::UpdateTabHover(const HitMap& hits) {
  size_t hovered = kNoView;
  bool close = false;
  for (const PanelHit& panel : hits) {
    if (!panel.tab.rect.Contains(cursor_)) continue;
    hovered = panel.image_index;
    close = panel.tab.close_box.Contains(cursor_);
  }
  if (hovered == hovered_tab_ && close == close_hovered_) return;
  for (const PanelHit& panel : hits) {
    if (panel.image_index == hovered || panel.image_index == hovered_tab_) {
      refresh_.damage.push_back(panel.tab.rect);
    }
  }
  hovered_tab_ = hovered;
  close_hovered_ = close;
}

void CPointer::DecorateTab(size_t index, TabPlan& tab) const {
  tab.hovered = index == hovered_tab_;
  tab.close_hovered = tab.hovered && close_hovered_;
  tab.close_text = ctrl_remove_ && views_.PartyIndices().size() > 2 ? 'O' : 'X';
}

// In layer mode the tab lists the party's HK numbers; hovering another
// image's number shows that layer.
void CPointer::ShowLayerUnderCursor(const HitMap& hits, const ITextMetrics* metrics) {
  if (!app_.LayerMode() || metrics == nullptr || hits.empty()) return;
  std::vector<uint32_t> hk_ids;
  for (size_t member : views_.PartyIndices()) hk_ids.push_back(app_.Images().At(member).hk_id);
  const std::optional<size_t> layer = LayerNumberAt(hits.front().tab, cursor_, hk_ids, *metrics);
  if (!layer || !app_.SetVisibleLayer(*layer)) return;
  state_.base_dirty = true;
  refresh_.repaint = true;
}

// After the cursor moved: the pixel under it, a running ROI drag, the resize
// cursor over an ROI frame, and the overlay parts that follow the cursor.
void CPointer::UpdateReadout(const HitMap& hits) {
  image_ = ImageUnderCursor();
  pixel_.reset();
  if (const ImageView* view = views_.ViewAt(image_)) pixel_ = ScreenToPixel(*view, cursor_);
  if (!pixel_) image_ = kNoView;
  if (roi_.Dragging()) {
    DragRoi();
  } else {
    UpdateRoiCursor();
  }
  refresh_.Damage(cursor_damage_);
  cursor_damage_ = CursorDamage();
  refresh_.Damage(cursor_damage_);
  for (const PanelHit& panel : hits) refresh_.damage.push_back(panel.tab.rect);
}

// --- the readout ---------------------------------------------------------------------

std::optional<PixelPoint> CPointer::CursorPixelIn(size_t index) const {
  if (!pixel_ || index >= app_.Images().Count()) return std::nullopt;
  const ImageView* view = views_.ViewAt(index);
  if (view == nullptr || pixel_->x >= view->size.width || pixel_->y >= view->size.height) {
    return std::nullopt;
  }
  return pixel_;
}

std::optional<std::string> CPointer::TabReadout(size_t index) const {
  if (!pixel_) return std::nullopt;
  const ImageRecord& record = app_.Images().At(index);
  const std::optional<PixelPoint> pixel = CursorPixelIn(index);
  if (!pixel) return OutOfRangeLine(Tag(record));
  const std::optional<PixelSample> sample = SamplePixel(*record.image, *pixel);
  if (!sample) return OutOfRangeLine(Tag(record));
  std::string line = ReadoutLine(Tag(record), ComponentNames(*record.image), *pixel, *sample,
                                 FormatOf(*record.image, state_.flags.hex));
  const std::optional<PixelPoint>& anchor = roi_.Anchor();
  if (anchor && index == image_) line += " " + DirectiveText(*anchor, *pixel);
  return line;
}

std::string CPointer::StatusReadout() const {
  if (!pixel_ || image_ >= app_.Images().Count()) {
    const int32_t room = StatusPartWidths(host_.StatusBarWidth())[kStatusReadoutPart];
    return host_.StatusTextWidth(kOutOfRangeText) <= room ? kOutOfRangeText : kOutOfRangeShortText;
  }
  const IImageContainer& image = *app_.Images().At(image_).image;
  std::string text;
  if (const std::optional<PixelPoint>& anchor = roi_.Anchor()) {
    text = PendingRoiPrefix(*anchor, *pixel_);
  } else if (const std::optional<Rect> roi = ActiveRoi(image)) {
    text = RoiPrefix(*roi);
  }
  text += CursorPrefix(*pixel_);
  if (const std::optional<PixelSample> sample = SamplePixel(image, *pixel_)) {
    const ImageRecord& record = app_.Images().At(image_);
    text += WithoutMarks(ReadoutLine(Tag(record), ComponentNames(image), *pixel_, *sample,
                                     FormatOf(image, state_.flags.hex)));
    // With the overlay shown, the counts of the bins the pixel falls in.
    text += histograms_.StatusSuffix(image_, sample->values);
  }
  return text;
}

// --- ROI by mouse --------------------------------------------------------------------

void CPointer::SetPartyRoi(const Rect& roi) {
  for (size_t index : views_.PartyIndices()) app_.Images().At(index).image->SetRegionOfInterest(roi);
  state_.base_dirty = true;  // the grid colours the ROI
  histograms_.RecountAll();  // an open overlay counts the ROI
  refresh_.repaint = true;
}

void CPointer::Press(ScreenPoint p) {
  cursor_ = p;
  const size_t index = ImageUnderCursor();
  const ImageView* view = views_.ViewAt(index);
  if (view == nullptr) return;
  const std::optional<Rect> roi = ActiveRoi(*app_.Images().At(index).image);
  if (roi && !roi_.Anchor()) {
    const RoiEdges edges = RoiEdgesAt(RoiFrame(*view, *roi), p);
    if (edges.Any()) {
      roi_.BeginDrag(edges);
      return;
    }
  }
  const std::optional<PixelPoint> pixel = ScreenToPixel(*view, p);
  if (!pixel) return;
  const std::optional<Rect> chosen = roi_.Click(*pixel);
  // The first click starts a new ROI: the old one goes.
  SetPartyRoi(chosen ? *chosen : Rect::None());
  image_ = index;
  pixel_ = pixel;
}

void CPointer::Release() {
  if (!roi_.Dragging()) return;
  roi_.EndDrag();
  UpdateRoiCursor();
}

void CPointer::DragRoi() {
  const ImageView* view = views_.ViewAt(image_);
  if (view == nullptr || !pixel_) return;
  const std::optional<Rect> roi = ActiveRoi(*app_.Images().At(image_).image);
  if (!roi) return;
  const Rect moved = roi_.Drag(*roi, *pixel_);
  if (moved != *roi) SetPartyRoi(moved);
}

void CPointer::UpdateRoiCursor() {
  CursorShape shape = CursorShape::Arrow;
  const size_t index = ImageUnderCursor();
  const ImageView* view = views_.ViewAt(index);
  const std::optional<Rect> roi = view != nullptr ? ActiveRoi(*app_.Images().At(index).image) : std::nullopt;
  if (roi && !roi_.Anchor()) {
    const RoiEdges edges = RoiEdgesAt(RoiFrame(*view, *roi), cursor_);
    const auto row = std::ranges::find_if(kEdgeCursors, [&](const EdgeCursor& c) { return c.matches(edges); });
    if (row != std::end(kEdgeCursors)) shape = row->shape;
  }
  if (shape == shape_) return;
  shape_ = shape;
  host_.SetCursorShape(shape);
}

void CPointer::ClearRoiAndMarks() {
  roi_.Reset();
  SetPartyRoi(Rect::None());
  for (size_t index : views_.PartyIndices()) {
    if (ImageView* view = views_.ViewAt(index)) view->marks.clear();
  }
  refresh_.menus = true;
}

// --- copy pixel ----------------------------------------------------------------------

void CPointer::CopyPixel() {
  if (pixel_ && image_ < app_.Images().Count()) {
    const ImageRecord& record = app_.Images().At(image_);
    if (const std::optional<PixelSample> sample = SamplePixel(*record.image, *pixel_)) {
      const ImageView* view = views_.ViewAt(image_);
      std::optional<uint64_t> offset;
      if (state_.flags.offset && view != nullptr) {
        offset = static_cast<uint64_t>(pixel_->y) * view->size.width + static_cast<uint64_t>(pixel_->x);
      }
      host_.SetClipboardText(
          CopyPixelText(*pixel_, *sample, FormatOf(*record.image, state_.flags.hex), offset));
      return;
    }
  }
  if (const ImageView* focus = views_.ViewAt(app_.FocusIndex())) {
    host_.SetClipboardText(CopySizeText(focus->size.width, focus->size.height));
  }
}

// --- the overlay ---------------------------------------------------------------------

void CPointer::BuildInspectionPlan(size_t index, PanelInspectionPlan& out) const {
  const ImageView* view = views_.ViewAt(index);
  if (view == nullptr || view->picture.Empty()) return;
  if (const std::optional<Rect> roi = ActiveRoi(*app_.Images().At(index).image)) {
    out.roi_frame = RoiFrame(*view, *roi);
  }
  if (const std::optional<PixelPoint> pixel = CursorPixelIn(index)) {
    out.tracked = PixelBlock(*view, *pixel);
    out.tracking_lines = state_.flags.tracking;
    out.outline = view->grid_visible && Replicates(view->zf);
  }
  for (const MarkedPixel& mark : view->marks) out.marks.push_back({PixelBlock(*view, mark.pixel), mark.color});
}

DirectivePlan CPointer::BuildDirectivePlan() const {
  const ImageView* view = views_.ViewAt(image_);
  if (view == nullptr || !roi_.Anchor() || !pixel_) return {};
  return {true, BlockCentre(PixelBlock(*view, *roi_.Anchor())), cursor_};
}

// The rectangles a cursor move may change: tracking lines, the tracked-pixel
// outline and the directive line.
std::vector<ScreenRect> CPointer::CursorDamage() const {
  std::vector<ScreenRect> rects;
  for (size_t index : views_.DrawnIndices()) {
    const std::optional<PixelPoint> pixel = CursorPixelIn(index);
    const ImageView* view = views_.ViewAt(index);
    if (!pixel || view == nullptr) continue;
    const ScreenRect block = PixelBlock(*view, *pixel);
    const ScreenPoint c = BlockCentre(block);
    if (state_.flags.tracking) {
      rects.push_back({view->picture.left, c.y, view->picture.right, c.y});
      rects.push_back({c.x, view->picture.top, c.x, view->picture.bottom});
    }
    rects.push_back({block.left - 1, block.top - 1, block.right + 1, block.bottom + 1});
  }
  const DirectivePlan directive = BuildDirectivePlan();
  if (directive.show) rects.push_back(LineBounds(directive.from, directive.to));
  return rects;
}

}  // namespace korvanel
