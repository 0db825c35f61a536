#include "ui/model/histogram_controller.h"

#include <algorithm>

#include "app/app_state.h"
#include "image/histogram_result.h"
#include "image/image_container.h"
#include "ui/model/pixel_mapping.h"
#include "ui/model/view_set.h"

namespace korvanel {

namespace {

uint64_t SerialAt(const AppState& app, size_t index) {
  return index < app.Images().Count() ? app.Images().At(index).serial : 0;
}

}  // namespace

const HistogramOverlayState* CHistograms::Overlay(size_t index) const {
  if (index >= app_.Images().Count()) return nullptr;
  const auto found = overlays_.find(SerialAt(app_, index));
  return found == overlays_.end() ? nullptr : &found->second;
}

bool CHistograms::ShownAt(size_t index) const { return Overlay(index) != nullptr; }

void CHistograms::Toggle(size_t index) {
  if (views_.ViewAt(index) != nullptr) SetShown(index, !ShownAt(index));
}

void CHistograms::ToggleInContext(size_t under) {
  if (!views_.HasImages()) return;
  if (!app_.CompareMode() || under != kNoView) {
    Toggle(app_.CompareMode() ? under : app_.FocusIndex());
    return;
  }
  const std::vector<size_t> party = views_.PartyIndices();
  if (party.empty()) return;
  const bool show = !ShownAt(party.front());
  for (size_t index : party) SetShown(index, show);
}

void CHistograms::SetShown(size_t index, bool shown) {
  if (views_.ViewAt(index) == nullptr) return;
  if (shown) {
    Rebuild(index, true);
  } else {
    overlays_.erase(SerialAt(app_, index));
  }
}

// Recount (selector 1) when the overlay is turned on or the pixels changed;
// otherwise the image's counts for an unchanged region are reused.
void CHistograms::Rebuild(size_t index, bool recount) {
  if (views_.ViewAt(index) == nullptr) return;
  IImageContainer& image = *app_.Images().At(index).image;
  HistogramResult result;
  if (!image.Histogram(recount ? 1 : 0, result)) result = {};
  HistogramData fresh =
      BuildHistogramData(result, image.GetBitsPerComponent(), ColorKindOf(image), beautify_);
  HistogramOverlayState& overlay = overlays_[SerialAt(app_, index)];
  if (SameContent(overlay.data, fresh) && !overlay.data.channels.empty()) return;
  fresh.version = overlay.data.version + 1;
  overlay.data = std::move(fresh);
  overlay.hover.reset();
  overlay.lit.clear();
}

void CHistograms::RecountAll() {
  for (size_t i = 0; i < app_.Images().Count(); ++i) {
    if (ShownAt(i)) Rebuild(i, true);
  }
}

void CHistograms::Prune() {
  std::erase_if(overlays_, [&](const auto& entry) { return !app_.Images().IndexOfSerial(entry.first); });
}

bool CHistograms::AnyShown() const {
  return std::ranges::any_of(views_.DrawnIndices(), [&](size_t index) { return ShownAt(index); });
}

bool CHistograms::ChangeStyle(Command command) {
  if (!AnyShown()) return false;
  switch (command) {
    case Command::ToggleHistogramTransparent: style_.transparent = !style_.transparent; break;
    case Command::ToggleHistogramShadow: style_.shadow = !style_.shadow; break;
    case Command::NextHistogramColor: style_.NextForeground(); break;
    default: return false;
  }
  return true;
}

void CHistograms::ToggleBeautify() {
  beautify_ = !beautify_;
  for (size_t i = 0; i < app_.Images().Count(); ++i) {
    if (ShownAt(i)) Rebuild(i, false);
  }
}

std::vector<ScreenRect> CHistograms::UpdateHover(std::span<const PanelHit> hits, ScreenPoint cursor,
                                                 size_t under, bool ctrl) {
  std::vector<ScreenRect> damage;
  for (const PanelHit& panel : hits) {
    if (!panel.histogram_shown) continue;
    const auto found = overlays_.find(SerialAt(app_, panel.image_index));
    if (found == overlays_.end()) continue;
    HistogramOverlayState& overlay = found->second;
    const std::optional<HistogramHover> hover = HoveredBin(panel.histogram, overlay.data, cursor);
    std::vector<std::optional<uint32_t>> lit;
    if (ctrl && under == panel.image_index) {
      // The sample values under the cursor: by replication at ZF 1 and
      // above, by proportion below.
      const ImageView* view = views_.ViewAt(under);
      const std::optional<PixelPoint> pixel = view ? ScreenToPixel(*view, cursor) : std::nullopt;
      std::array<uint32_t, 3> samples{};
      if (pixel && app_.Images().At(under).image->GetSampleValues(pixel->x, pixel->y, samples)) {
        lit = LitBins(overlay.data, samples);
      }
    }
    if (hover == overlay.hover && lit == overlay.lit) continue;
    overlay.hover = hover;
    overlay.lit = std::move(lit);
    damage.push_back(panel.histogram.box);
    damage.push_back(panel.tab.rect);
  }
  return damage;
}

void CHistograms::BuildPlan(size_t index, PanelPlan& plan, const ITextMetrics* metrics) const {
  const HistogramOverlayState* overlay = Overlay(index);
  if (overlay == nullptr || plan.picture.Empty()) return;
  HistogramPlan& h = plan.histogram;
  h.show = true;
  h.data = &overlay->data;
  h.layout = LayoutHistogramBox(overlay->data, style_, plan.picture, plan.panel, metrics);
  h.transparent = style_.transparent;
  h.shadow = style_.shadow;
  h.foreground = style_.Foreground();
  h.shadow_color = ShadowColorFor(h.foreground);
  h.hover = h.layout.AllBinsFit() ? overlay->hover : std::nullopt;
  h.lit = overlay->lit;
  if (h.hover && !plan.tab.text.empty()) {
    plan.tab.text += "  " + HoverText(overlay->data, *h.hover, beautify_);
  }
}

std::string CHistograms::StatusSuffix(size_t index, const std::array<uint32_t, 3>& samples) const {
  const HistogramOverlayState* overlay = Overlay(index);
  return overlay == nullptr ? std::string() : HistSuffix(overlay->data, samples, beautify_);
}

}  // namespace korvanel
