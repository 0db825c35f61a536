#pragma once

// The views of the open images and where they are drawn: the only record of
// the zoom, the scroll offsets, the layout and which images the comparison
// party draws. Follows the image registry through its generation counter.

#include <cstdint>
#include <string>
#include <vector>

#include "ui/model/geometry.h"
#include "ui/model/image_view.h"
#include "ui/model/layout.h"
#include "ui/model/view_flags.h"

namespace korvanel {

class AppState;
inline constexpr size_t kNoView = static_cast<size_t>(-1);

class CViewSet {
 public:
  CViewSet(AppState& app, double zf, const RulerSettings& ruler, bool ruler_matrix);

  // Follows the registry and the comparison: views for new images, none
  // for closed ones, a new layout when the drawn set or a size changed.
  // True when something changed.
  bool Sync(const ViewFlags& flags);
  // Lays out again when needed; true when it did.
  bool EnsureLayout();
  void SetArea(const ScreenRect& area);
  const ScreenRect& Area() const { return area_; }
  void MarkLayoutDirty() { layout_dirty_ = true; }
  // An image may have changed in place (a dialog applied): the next Sync
  // walks the registry even when its generation stayed.
  void ForceSync() { synced_ = false; }

  // The zoom the party shows and new images take, and its status text.
  double Zoom() const { return zf_; }
  std::string ZoomText() const;
  void ApplyZoom(double zf);
  // Scrolls the party so that `pixel` is centred.
  void CentreOn(PixelPoint pixel);
  // The scroll bars of the anchor image's picture.
  ScrollBarState Bar(Axis axis) const;
  void SetScrollPosition(Axis axis, int32_t position);

  bool HasImages() const;
  LayoutMode Mode() const;
  std::vector<size_t> PartyIndices() const;
  std::vector<size_t> DrawnIndices() const;
  // The image zoom and the scroll bars follow: the FI, or the first party
  // image when the FI is not in the party.
  size_t AnchorIndex() const;
  // Jump and find work on the FI, or in compare mode on the left-most party image.
  size_t PhaseTargetIndex() const;
  ImageView* ViewAt(size_t index);
  const ImageView* ViewAt(size_t index) const;
  const ImageView* Anchor() const { return ViewAt(AnchorIndex()); }
  // The drawn image whose picture holds `p`, or kNoView.
  size_t ImageAt(ScreenPoint p) const;
  const Layout& CurrentLayout() const { return layout_; }
  size_t ViewCount() const { return views_.size(); }
  std::vector<ImageView>& Views() { return views_; }

  // The ruler settings dialog's values for the views of `targets`.
  void ApplyRuler(const std::vector<size_t>& targets, const RulerSettings& settings);
  // The grid, values and hex flags every view follows.
  void ApplyFlags(const ViewFlags& flags);

 private:
  // The images drawn this frame and how: the signature that forces a new
  // layout when it changes.
  struct DrawnSet {
    LayoutMode mode = LayoutMode::Single;
    std::vector<uint64_t> serials;
    friend bool operator==(const DrawnSet&, const DrawnSet&) = default;
  };

  void Relayout();
  bool SyncViews(const ViewFlags& flags);  // true when a size changed

  AppState& app_;
  RulerSettings ruler_;
  bool ruler_matrix_;
  double zf_;
  std::vector<ImageView> views_;
  Layout layout_;
  ScreenRect area_;
  ScreenRect last_area_;
  bool layout_dirty_ = true;
  DrawnSet drawn_;
  uint64_t generation_ = 0;
  bool synced_ = false;
};

}  // namespace korvanel
