// The controller's histogram overlay and help page commands: I with its
// context rule, the tab click, B / Shift+B / Ctrl+B, A, hover and Ctrl
// lighting, and what the frame plan carries of both overlays.

#include <algorithm>

#include "app/app_state.h"
#include "image/histogram_result.h"
#include "image/image_container.h"
#include "ui/model/pixel_mapping.h"
#include "ui/model/viewer_controller.h"

namespace korvanel {

void CViewerController::ToggleHistogramFor(size_t index) {
  SyncViews();
  const ImageView* view = ViewAt(index);
  if (view == nullptr) return;
  SetHistogramVisible(index, !view->histogram_visible);
  UpdateMenuChecks();
  Repaint();
}

// In compare mode with the cursor over no image the whole party follows the
// left-most image's negated state; over an image only that image toggles; in
// single view the FI.
void CViewerController::ToggleHistogramInContext() {
  if (!HasImages()) return;
  const size_t under = ImageUnderCursor();
  if (!app_.CompareMode() || under != kNoIndex) {
    const size_t index = app_.CompareMode() ? under : app_.FocusIndex();
    if (const ImageView* view = ViewAt(index)) SetHistogramVisible(index, !view->histogram_visible);
    return;
  }
  const std::vector<size_t> party = PartyIndices();
  if (party.empty()) return;
  const ImageView* anchor = ViewAt(party.front());
  const bool show = anchor != nullptr && !anchor->histogram_visible;
  for (size_t index : party) SetHistogramVisible(index, show);
}

void CViewerController::SetHistogramVisible(size_t index, bool visible) {
  ImageView* view = ViewAt(index);
  if (view == nullptr) return;
  view->histogram_visible = visible;
  if (visible) {
    RebuildHistogram(index, true);
  } else {
    state_.histograms.erase(view->serial);
  }
  state_.view_dirty = true;
}

// Recount (selector 1) when the overlay is turned on or the pixels changed;
// otherwise the image's counts for an unchanged region are reused.
void CViewerController::RebuildHistogram(size_t index, bool recount) {
  const ImageView* view = ViewAt(index);
  if (view == nullptr) return;
  IImageContainer& image = *app_.Images().At(index).image;
  HistogramResult result;
  if (!image.Histogram(recount ? 1 : 0, result)) result = {};
  HistogramData fresh =
      BuildHistogramData(result, image.GetBitsPerComponent(), ColorKindOf(image), state_.value_comma);
  HistogramOverlayState& overlay = state_.histograms[view->serial];
  if (SameContent(overlay.data, fresh) && !overlay.data.channels.empty()) return;
  fresh.version = overlay.data.version + 1;
  overlay.data = std::move(fresh);
  overlay.hover.reset();
  overlay.lit.clear();
}

void CViewerController::RefreshHistograms() {
  SyncViews();
  for (size_t i = 0; i < app_.Images().Count(); ++i) {
    const ImageView* view = ViewAt(i);
    if (view != nullptr && view->histogram_visible) RebuildHistogram(i, true);
  }
  state_.view_dirty = true;
  Repaint();
}

bool CViewerController::AnyHistogramShown() const {
  for (size_t index : DrawnIndices()) {
    const ImageView* view = ViewAt(index);
    if (view != nullptr && view->histogram_visible) return true;
  }
  return false;
}

// B, Shift+B and Ctrl+B change the look only while an overlay shows.
void CViewerController::ChangeHistogramStyle(Command command) {
  if (!AnyHistogramShown()) return;
  HistogramStyle& style = state_.histogram;
  switch (command) {
    case Command::ToggleHistogramTransparent: style.transparent = !style.transparent; break;
    case Command::ToggleHistogramShadow: style.shadow = !style.shadow; break;
    case Command::NextHistogramColor: style.NextForeground(); break;
    default: return;
  }
  state_.view_dirty = true;
}

void CViewerController::ToggleBeautify() {
  state_.value_comma = !state_.value_comma;
  for (size_t i = 0; i < app_.Images().Count(); ++i) {
    const ImageView* view = ViewAt(i);
    if (view != nullptr && view->histogram_visible) RebuildHistogram(i, false);
  }
  state_.view_dirty = true;
}

// The sample values of the image pixel under the cursor: by replication at
// ZF 1 and above, by proportion below.
std::optional<std::array<uint32_t, 3>> CViewerController::CursorSamples(size_t index) const {
  const ImageView* view = ViewAt(index);
  if (view == nullptr) return std::nullopt;
  const std::optional<PixelPoint> pixel = ScreenToPixel(*view, state_.cursor);
  std::array<uint32_t, 3> samples{};
  if (!pixel || !app_.Images().At(index).image->GetSampleValues(pixel->x, pixel->y, samples)) {
    return std::nullopt;
  }
  return samples;
}

// The hovered bin of every drawn overlay, and with Ctrl the bins of the
// pixel under the cursor in its image's overlay. Changed boxes (and their
// tabs, which show the hovered count) are repainted.
void CViewerController::UpdateHistogramHover(Modifiers m) {
  std::vector<ScreenRect> damage;
  const size_t under = ImageUnderCursor();
  for (const PanelPlan& panel : plan_.panels) {
    const ImageView* view = ViewAt(panel.image_index);
    if (view == nullptr || !panel.histogram.show) continue;
    const auto found = state_.histograms.find(view->serial);
    if (found == state_.histograms.end()) continue;
    HistogramOverlayState& overlay = found->second;
    const std::optional<HistogramHover> hover =
        HoveredBin(panel.histogram.layout, overlay.data, state_.cursor);
    std::vector<std::optional<uint32_t>> lit;
    if (m.ctrl && under == panel.image_index) {
      if (const auto samples = CursorSamples(under)) lit = LitBins(overlay.data, *samples);
    }
    if (hover == overlay.hover && lit == overlay.lit) continue;
    overlay.hover = hover;
    overlay.lit = std::move(lit);
    damage.push_back(panel.histogram.layout.box);
    damage.push_back(panel.tab.rect);
  }
  if (!damage.empty()) host_.Invalidate(false, damage);
}

void CViewerController::BuildHistogramPlan(size_t index, PanelPlan& plan) {
  const ImageView* view = ViewAt(index);
  if (view == nullptr || !view->histogram_visible || plan.picture.Empty()) return;
  const auto found = state_.histograms.find(view->serial);
  if (found == state_.histograms.end()) return;
  const HistogramOverlayState& overlay = found->second;
  HistogramPlan& h = plan.histogram;
  h.show = true;
  h.data = &overlay.data;
  h.layout = LayoutHistogramBox(overlay.data, state_.histogram, plan.picture, plan.panel, metrics_);
  h.transparent = state_.histogram.transparent;
  h.shadow = state_.histogram.shadow;
  h.foreground = state_.histogram.Foreground();
  h.shadow_color = ShadowColorFor(h.foreground);
  h.hover = h.layout.AllBinsFit() ? overlay.hover : std::nullopt;
  h.lit = overlay.lit;
  if (h.hover && !plan.tab.text.empty()) {
    plan.tab.text += "  " + HoverText(overlay.data, *h.hover, state_.value_comma);
  }
}

void CViewerController::BuildHelpPlan() {
  plan_.help_text = nullptr;
  plan_.help = {};
  if (!state_.help_visible || state_.help_page >= state_.help_pages.size()) return;
  plan_.help_text = &state_.help_pages[state_.help_page];
  if (metrics_ != nullptr) {
    plan_.help = LayoutHelpOverlay(state_.area, *plan_.help_text, state_.help_page, *metrics_);
  } else {
    plan_.help.footer = HelpFooter(state_.help_page);
  }
}

}  // namespace korvanel
