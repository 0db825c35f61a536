#pragma once

// The histogram overlays: which images show one (the map is the only record
// of that), their counts, hover and Ctrl lighting, and the look that B,
// Shift+B, Ctrl+B and A change.

#include <array>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "ui/model/commands.h"
#include "ui/model/frame_plan.h"
#include "ui/model/hit_map.h"
#include "ui/model/histogram_overlay.h"

namespace korvanel {

class AppState;
class CViewSet;
class ITextMetrics;

class CHistograms {
 public:
  CHistograms(AppState& app, CViewSet& views, const HistogramStyle& style, bool beautify)
      : app_(app), views_(views), style_(style), beautify_(beautify) {}

  bool ShownAt(size_t index) const;
  // Shows or hides the overlay of image `index`; showing recounts.
  void Toggle(size_t index);
  // I: in compare mode with the cursor over no image (`under` none) the
  // whole party follows the left-most image's negated state; over an image
  // only that image toggles; in single view the FI.
  void ToggleInContext(size_t under);
  // Recounts every shown overlay (the ROI or the filter changed).
  void RecountAll();
  // A changed view may come with a changed ROI or filter: the image's
  // counts are taken again, recounted only when its region changed.
  void Refresh(size_t index) { Rebuild(index, false); }
  // B, Shift+B and Ctrl+B change the look only while an overlay shows;
  // true when they did.
  bool ChangeStyle(Command command);
  void ToggleBeautify();
  bool Beautify() const { return beautify_; }
  const HistogramStyle& Style() const { return style_; }
  // Forgets the overlays of closed images.
  void Prune();

  // The hovered bin of every drawn overlay and, with Ctrl, the bins of the
  // pixel under the cursor in its image's overlay. Returns the boxes (and
  // tabs, which show the hovered count) to repaint.
  std::vector<ScreenRect> UpdateHover(std::span<const PanelHit> hits, ScreenPoint cursor,
                                      size_t under, bool ctrl);
  // The overlay of a panel, and the hovered count after its tab text.
  void BuildPlan(size_t index, PanelPlan& plan, const ITextMetrics* metrics) const;
  // " / Hist: ..." after the status readout while the image's overlay shows.
  std::string StatusSuffix(size_t index, const std::array<uint32_t, 3>& samples) const;

 private:
  void SetShown(size_t index, bool shown);
  void Rebuild(size_t index, bool recount);
  const HistogramOverlayState* Overlay(size_t index) const;
  bool AnyShown() const;

  AppState& app_;
  CViewSet& views_;
  HistogramStyle style_;
  bool beautify_;
  std::map<uint64_t, HistogramOverlayState> overlays_;  // by image serial, while shown
};

}  // namespace korvanel
