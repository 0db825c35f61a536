#include "ui/model/view_set.h"

#include <algorithm>

#include "app/app_state.h"

namespace korvanel {

namespace {

ImageSize SizeOf(const IImageContainer& image) {
  ImageSize size;
  image.GetSize(size.width, size.height);
  return size;
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

CViewSet::CViewSet(AppState& app, double zf, const RulerSettings& ruler, bool ruler_matrix)
    : app_(app), ruler_(ruler), ruler_matrix_(ruler_matrix), zf_(zf) {}

bool CViewSet::HasImages() const { return !app_.Images().Empty(); }

bool CViewSet::SyncViews(const ViewFlags& flags) {
  bool resized = false;
  const ImageRegistry& images = app_.Images();
  std::erase_if(views_, [&](const ImageView& view) { return !images.IndexOfSerial(view.serial); });
  for (size_t i = 0; i < images.Count(); ++i) {
    const ImageRecord& record = images.At(i);
    auto found = std::ranges::find(views_, record.serial, &ImageView::serial);
    if (found == views_.end()) {
      ImageView fresh;
      fresh.serial = record.serial;
      fresh.ruler = ruler_;
      fresh.ruler_type = ruler_matrix_ ? RulerType::Matrix : RulerType::Indent;
      fresh.grid_requested = flags.grid;
      fresh.values = flags.values;
      fresh.hex = flags.hex;
      fresh.SetZoom(zf_);
      views_.push_back(fresh);
      found = views_.end() - 1;
    }
    const ImageSize size = SizeOf(*record.image);
    if (size != found->size) {
      found->size = size;
      resized = true;
    }
  }
  return resized;
}

bool CViewSet::Sync(const ViewFlags& flags) {
  bool changed = false;
  if (!synced_ || generation_ != app_.Images().Generation()) {
    generation_ = app_.Images().Generation();
    synced_ = true;
    changed = SyncViews(flags);
  }
  DrawnSet drawn{Mode(), {}};
  for (size_t index : DrawnIndices()) drawn.serials.push_back(app_.Images().At(index).serial);
  if (drawn != drawn_) {
    drawn_ = std::move(drawn);
    layout_dirty_ = true;
    changed = true;
  }
  // Another image leads: the zoom is its own.
  if (const ImageView* anchor = Anchor(); anchor != nullptr && anchor->zf != zf_) zf_ = anchor->zf;
  if (changed) layout_dirty_ = true;
  return changed;
}

std::vector<size_t> CViewSet::PartyIndices() const {
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

LayoutMode CViewSet::Mode() const {
  if (!app_.CompareMode()) return LayoutMode::Single;
  return app_.LayerMode() ? LayoutMode::Layer : LayoutMode::SideBySide;
}

std::vector<size_t> CViewSet::DrawnIndices() const {
  std::vector<size_t> party = PartyIndices();
  if (Mode() != LayoutMode::Layer || party.empty()) return party;
  return {party[std::min(app_.VisibleLayer(), party.size() - 1)]};
}

ImageView* CViewSet::ViewAt(size_t index) {
  if (index >= app_.Images().Count()) return nullptr;
  const auto found = std::ranges::find(views_, app_.Images().At(index).serial, &ImageView::serial);
  return found == views_.end() ? nullptr : &*found;
}

const ImageView* CViewSet::ViewAt(size_t index) const {
  return const_cast<CViewSet*>(this)->ViewAt(index);
}

size_t CViewSet::AnchorIndex() const {
  const std::vector<size_t> party = PartyIndices();
  if (party.empty()) return kNoView;
  const bool in_party = std::ranges::find(party, app_.FocusIndex()) != party.end();
  return in_party ? app_.FocusIndex() : party.front();
}

size_t CViewSet::PhaseTargetIndex() const {
  if (app_.CompareMode()) {
    const std::vector<size_t> party = PartyIndices();
    return party.empty() ? kNoView : party.front();
  }
  return app_.FocusIndex() < app_.Images().Count() ? app_.FocusIndex() : kNoView;
}

size_t CViewSet::ImageAt(ScreenPoint p) const {
  for (size_t index : DrawnIndices()) {
    const ImageView* view = ViewAt(index);
    if (view != nullptr && view->picture.Contains(p)) return index;
  }
  return kNoView;
}

void CViewSet::ApplyFlags(const ViewFlags& flags) {
  for (ImageView& view : views_) {
    view.grid_requested = flags.grid;
    view.values = flags.values;
    view.hex = flags.hex;
    view.SetZoom(view.zf);
  }
}

void CViewSet::ApplyRuler(const std::vector<size_t>& targets, const RulerSettings& settings) {
  for (size_t index : targets) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    // Screen-pixel spacing leaves the image-pixel offsets as they were.
    const RulerSettings kept = view->ruler;
    view->ruler = settings;
    if (settings.screen_pixels) {
      view->ruler.offset_x = kept.offset_x;
      view->ruler.offset_y = kept.offset_y;
    }
  }
}

// --- layout ----------------------------------------------------------------------

void CViewSet::SetArea(const ScreenRect& area) {
  area_ = area;
  layout_dirty_ = true;
}

bool CViewSet::EnsureLayout() {
  if (!layout_dirty_ && area_ == last_area_) return false;
  Relayout();
  return true;
}

void CViewSet::Relayout() {
  const std::vector<size_t> drawn = DrawnIndices();
  layout_ = ComputeLayout(area_, Mode(), drawn.size(), !drawn.empty());
  for (size_t i = 0; i < drawn.size() && i < layout_.panels.size(); ++i) {
    ImageView* view = ViewAt(drawn[i]);
    if (view == nullptr) continue;
    view->panel = layout_.panels[i].panel;
    view->picture = PictureRect(view->panel, view->size, view->zf);
    ClampOffsets(*view);
  }
  last_area_ = area_;
  layout_dirty_ = false;
}

// --- zoom and scrolling ------------------------------------------------------------

std::string CViewSet::ZoomText() const { return korvanel::ZoomText(zf_); }

void CViewSet::ApplyZoom(double zf) {
  EnsureLayout();
  const ImageView* anchor = Anchor();
  if (anchor == nullptr) return;
  const ScreenPoint centre =
      CentreOf(VisibleRect(anchor->picture, anchor->size, anchor->zf, anchor->offset));
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    view->SetZoom(zf);
    view->picture = PictureRect(view->panel, view->size, zf);
    view->offset = ScrollToCentre(view->panel, view->size, zf, centre);
  }
  zf_ = zf;
  layout_dirty_ = true;
}

void CViewSet::CentreOn(PixelPoint pixel) {
  EnsureLayout();
  const ScreenPoint centre{static_cast<int32_t>(pixel.x), static_cast<int32_t>(pixel.y)};
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    view->offset = ScrollToCentre(view->panel, view->size, view->zf, centre);
  }
  layout_dirty_ = true;
}

ScrollBarState CViewSet::Bar(Axis axis) const {
  const ImageView* view = Anchor();
  if (view == nullptr || view->picture.Empty()) return {};
  const auto line = static_cast<int32_t>(Replicates(view->zf) ? RoundedZoom(view->zf) : 1);
  if (axis == Axis::Horizontal) {
    return MakeScrollBar(ContentExtent(view->size.width, view->picture.Width(), view->zf),
                         view->picture.Width(), line, -view->offset.x);
  }
  return MakeScrollBar(ContentExtent(view->size.height, view->picture.Height(), view->zf),
                       view->picture.Height(), line, -view->offset.y);
}

void CViewSet::SetScrollPosition(Axis axis, int32_t position) {
  for (size_t index : PartyIndices()) {
    ImageView* view = ViewAt(index);
    if (view == nullptr) continue;
    (axis == Axis::Horizontal ? view->offset.x : view->offset.y) = -position;
    ClampOffsets(*view);
  }
}

}  // namespace korvanel
