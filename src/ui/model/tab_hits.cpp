#include "ui/model/tab_hits.h"

#include "app/app_state.h"
#include "ui/model/text_metrics.h"

namespace korvanel {

TabHit HitTab(std::span<const PanelHit> panels, ScreenPoint p, bool ctrl, size_t party_size) {
  for (const PanelHit& panel : panels) {
    if (!panel.tab.rect.Contains(p)) continue;
    if (!panel.tab.close_box.Contains(p)) return {TabAction::Focus, panel.image_index};
    const bool remove = ctrl && party_size > 2;
    return {remove ? TabAction::RemoveFromParty : TabAction::Close, panel.image_index};
  }
  return {};
}

bool ApplyTabHit(AppState& app, const TabHit& hit) {
  switch (hit.action) {
    case TabAction::None: return false;
    case TabAction::Close: app.CloseImage(hit.image); return true;
    case TabAction::RemoveFromParty: app.RemoveFromComparison(hit.image); return true;
    case TabAction::Focus:
      if (hit.image != app.FocusIndex()) app.SetFocus(hit.image);
      return true;
  }
  return false;
}

std::optional<size_t> LayerNumberAt(const TabArea& tab, ScreenPoint p,
                                    const std::vector<uint32_t>& hk_ids,
                                    const ITextMetrics& metrics) {
  if (!tab.rect.Contains(p) || tab.close_box.Contains(p)) return std::nullopt;
  const int32_t left =
      (tab.close_box.Empty() ? tab.rect.left : tab.close_box.right + 1) + kTabCaptionIndent;
  // A caption too wide for the tab is drawn in the small tab font.
  const FontRole role =
      metrics.Width(FontRole::Tab, tab.text) > tab.rect.right - left ? FontRole::TabSmall
                                                                       : FontRole::Tab;
  std::string before;
  for (size_t i = 0; i < hk_ids.size(); ++i) {
    const std::string number = std::to_string(hk_ids[i]);
    const int32_t start = left + metrics.Width(role, before);
    const int32_t end = left + metrics.Width(role, before + number);
    if (p.x >= start && p.x < end) return i;
    before += number + ' ';
  }
  return std::nullopt;
}

}  // namespace korvanel
