#include "ui/model/find_jump_controller.h"

#include <algorithm>

#include "app/app_state.h"
#include "image/image_container.h"
#include "image/text_util.h"
#include "ui/model/inspection_plan.h"
#include "ui/model/pointer_controller.h"
#include "ui/model/readout.h"
#include "ui/model/status_presenter.h"
#include "ui/model/view_set.h"
#include "ui/model/viewer_host.h"
#include "ui/model/viewer_state.h"

namespace korvanel {

JumpContext CFindJump::JumpTarget() const {
  const size_t index = p_.views.PhaseTargetIndex();
  const ImageView* view = p_.views.ViewAt(index);
  if (view == nullptr) return {};
  const Rect roi = p_.app.Images().At(index).image->GetRegionOfInterest();
  return {view->size, roi.IsNone() ? std::nullopt : std::optional<Rect>(roi)};
}

FindContext CFindJump::FindTarget() const {
  const size_t index = p_.views.PhaseTargetIndex();
  if (index == kNoView) return {};
  const IImageContainer& image = *p_.app.Images().At(index).image;
  return {image.ComponentCount(), image.GetBitsPerComponent()};
}

void CFindJump::JumpTo(PixelPoint pixel) {
  p_.views.CentreOn(pixel);
  p_.state.base_dirty = true;
  jump_history_.Add(pixel);
  jump_markers_.Add(pixel, kJumpMarkerLife);
  p_.host.StartTimer(TimerId::Jump, TimerPeriod(TimerId::Jump));
}

void CFindJump::MarkFindHit(size_t index, PixelPoint hit) {
  p_.views.CentreOn(hit);
  p_.state.base_dirty = true;
  ImageView* view = p_.views.ViewAt(index);
  if (view == nullptr) return;
  const std::optional<PixelSample> sample = SamplePixel(*p_.app.Images().At(index).image, hit);
  const Rgb color = sample ? ContrastRgb(sample->r, sample->g, sample->b) : Rgb{255, 255, 255};
  const bool marked = std::ranges::any_of(view->marks, [&](const MarkedPixel& m) { return m.pixel == hit; });
  if (!marked) view->marks.push_back({hit, color});
  find_markers_.Add(hit, kFindMarkerLife);
  p_.host.StartTimer(TimerId::Find, TimerPeriod(TimerId::Find));
  p_.refresh.menus = true;
}

std::string CFindJump::FindValue(const PixelValue& value) {
  const size_t index = p_.views.PhaseTargetIndex();
  if (index == kNoView) return {};
  const ImageRecord& record = p_.app.Images().At(index);
  const IImageContainer& image = *record.image;
  last_find_ = {value, record.serial, std::nullopt, 0};
  const std::string text = PixelValueText(value, p_.state.flags.hex);
  const std::optional<PixelPoint> hit =
      FindPixelValue(image, image.GetRegionOfInterest(), value, std::nullopt, SearchDirection::Forward);
  if (!hit) return StrFormat("Can't find pixel value <%s>", text.c_str());
  last_find_.hit = hit;
  last_find_.hit_number = 1;
  MarkFindHit(index, *hit);
  return StrFormat("Pixel value <%s> found at <%u,%u>", text.c_str(), static_cast<unsigned>(hit->x),
                   static_cast<unsigned>(hit->y));
}

void CFindJump::FindAgain(SearchDirection direction) {
  LastFind& last = last_find_;
  const size_t index = p_.views.PhaseTargetIndex();
  if (!last.value || index == kNoView) return;
  const ImageRecord& record = p_.app.Images().At(index);
  // Another image now: its scan starts afresh.
  if (record.serial != last.serial) last = {last.value, record.serial, std::nullopt, 0};
  const IImageContainer& image = *record.image;
  const bool forward = direction == SearchDirection::Forward;
  const std::string text = PixelValueText(*last.value, p_.state.flags.hex);
  const std::optional<PixelPoint> hit =
      !forward && !last.hit
          ? std::nullopt
          : FindPixelValue(image, image.GetRegionOfInterest(), *last.value, last.hit, direction);
  if (!hit) {
    p_.status.Say(StrFormat(forward ? "Can't forward find more of pixel value <%s>"
                                    : "Can't backward find more of pixel value <%s>",
                            text.c_str()));
    return;
  }
  last.hit = hit;
  last.hit_number = forward ? last.hit_number + 1 : std::max<uint32_t>(1, last.hit_number - 1);
  MarkFindHit(index, *hit);
  p_.status.Say(StrFormat("Pixel value <%s> found at <%u,%u> (Hit %u)", text.c_str(),
                          static_cast<unsigned>(hit->x), static_cast<unsigned>(hit->y),
                          last.hit_number));
}

void CFindJump::ClearMarks(bool context) {
  std::vector<size_t> targets;
  const size_t under = p_.pointer.ImageUnderCursor();
  if (context && under != kNoView) {
    targets.push_back(under);
  } else if (context) {
    for (size_t i = 0; i < p_.app.Images().Count(); ++i) targets.push_back(i);
  } else {
    targets = p_.views.PartyIndices();
  }
  for (size_t index : targets) {
    if (ImageView* view = p_.views.ViewAt(index)) view->marks.clear();
  }
  p_.refresh.menus = true;
  p_.refresh.repaint = true;
}

bool CFindJump::AnyMarks() const {
  return std::ranges::any_of(p_.views.PartyIndices(), [&](size_t index) {
    const ImageView* view = p_.views.ViewAt(index);
    return view != nullptr && !view->marks.empty();
  });
}

void CFindJump::TickMarkers(TimerId id) {
  CMarkerList& list = id == TimerId::Jump ? jump_markers_ : find_markers_;
  const std::vector<ScreenRect> before = MarkerDamage();
  if (!list.Tick()) p_.host.StopTimer(id);
  p_.refresh.Damage(before);
}

std::vector<ScreenRect> CFindJump::MarkerDamage() const {
  std::vector<ScreenRect> rects;
  for (size_t index : p_.views.DrawnIndices()) {
    const ImageView* view = p_.views.ViewAt(index);
    if (view == nullptr) continue;
    for (const CMarkerList* list : {&jump_markers_, &find_markers_}) {
      for (const TimedMarker& m : list->Markers()) rects.push_back(MarkerRing(PixelBlock(*view, m.pixel)));
    }
  }
  return rects;
}

void CFindJump::BuildMarkerPlan(size_t index, PanelInspectionPlan& out) const {
  const ImageView* view = p_.views.ViewAt(index);
  if (view == nullptr || view->picture.Empty()) return;
  for (const TimedMarker& m : jump_markers_.Markers()) {
    out.markers.push_back({MarkerRing(PixelBlock(*view, m.pixel)), kJumpMarkerColor});
  }
  for (const TimedMarker& m : find_markers_.Markers()) {
    out.markers.push_back({MarkerRing(PixelBlock(*view, m.pixel)), kFindMarkerColor});
  }
}

}  // namespace korvanel
