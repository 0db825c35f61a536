#pragma once

// The mouse over the image area: the pixel under the cursor and its
// readout, the ROI chosen or resized by mouse, the hovered tab, the close
// boxes that Ctrl turns into "O", and the cursor's shape.

#include <optional>
#include <string>
#include <vector>

#include "ui/model/frame_plan.h"
#include "ui/model/hit_map.h"
#include "ui/model/keys.h"
#include "ui/model/pixel_point.h"
#include "ui/model/roi_editor.h"
#include "ui/model/viewer_host.h"

namespace korvanel {

class AppState;
class CHistograms;
class CViewSet;
class ITextMetrics;
struct RefreshNeeds;
struct ViewerState;

class CPointer {
 public:
  CPointer(AppState& app, IViewerHost& host, CViewSet& views, CHistograms& histograms,
           ViewerState& state, RefreshNeeds& refresh)
      : app_(app), host_(host), views_(views), histograms_(histograms), state_(state),
        refresh_(refresh) {}

  ScreenPoint Cursor() const { return cursor_; }
  // The drawn image under the cursor, or kNoView.
  size_t ImageUnderCursor() const;
  // The image of the drawn tab that holds the cursor, or kNoView.
  size_t TabUnderCursor(const HitMap& hits) const;

  // A move: the app's hovered pixel, close boxes, tab hover, the layer
  // under the cursor, the readout, a running ROI drag, the cursor shape.
  void Move(ScreenPoint p, Modifiers m, const HitMap& hits, const ITextMetrics* metrics);
  // Ctrl pressed or released: the close boxes follow at once.
  void CtrlChanged(bool ctrl, const HitMap& hits);
  // A press on the pictures: a new ROI corner, or a drag of an ROI edge.
  void Press(ScreenPoint p);
  void Release();
  // The right button: the ROI and the find marks of the party go.
  void ClearRoiAndMarks();
  // P: the pixel's text, or the FI's size away from the images.
  void CopyPixel();

  // The tab line of a drawn image: its readout while the cursor is over an
  // image, "Out-of-Range" when the cursor's pixel lies outside this image.
  std::optional<std::string> TabReadout(size_t index) const;
  // Part 0 of the status bar while no message or prompt shows.
  std::string StatusReadout() const;
  // What the tab of `index` shows of hovering and Ctrl.
  void DecorateTab(size_t index, TabPlan& tab) const;
  void BuildInspectionPlan(size_t index, PanelInspectionPlan& out) const;
  DirectivePlan BuildDirectivePlan() const;

 private:
  std::optional<PixelPoint> CursorPixelIn(size_t index) const;
  void SetPartyRoi(const Rect& roi);
  void DragRoi();
  void UpdateRoiCursor();
  void MarkCloseBoxes(bool ctrl, const HitMap& hits);
  void UpdateTabHover(const HitMap& hits);
  void ShowLayerUnderCursor(const HitMap& hits, const ITextMetrics* metrics);
  void UpdateReadout(const HitMap& hits);
  std::vector<ScreenRect> CursorDamage() const;

  AppState& app_;
  IViewerHost& host_;
  CViewSet& views_;
  CHistograms& histograms_;
  ViewerState& state_;
  RefreshNeeds& refresh_;

  ScreenPoint cursor_{-1, -1};
  // The image under the cursor (registry index) and the pixel there; the
  // other drawn images read the same coordinate.
  size_t image_ = static_cast<size_t>(-1);
  std::optional<PixelPoint> pixel_;
  CRoiEditor roi_;
  CursorShape shape_ = CursorShape::Arrow;  // as last set on the window
  // The overlay rectangles that depend on the cursor, as last drawn.
  std::vector<ScreenRect> cursor_damage_;
  size_t hovered_tab_ = static_cast<size_t>(-1);
  bool close_hovered_ = false;
  bool ctrl_remove_ = false;  // the close boxes show "O": remove from the party
};

}  // namespace korvanel
