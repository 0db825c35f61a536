#pragma once

// Jumping to a coordinate and finding a pixel value: what the two phases
// ask of the view, find next and previous, the find marks of the images,
// and the jump and find markers that fade with timers 3 and 4.

#include <optional>
#include <string>
#include <vector>

#include "ui/model/find_phase.h"
#include "ui/model/frame_plan.h"
#include "ui/model/jump_phase.h"
#include "ui/model/pixel_markers.h"
#include "ui/model/pixel_search.h"
#include "ui/model/timers.h"

namespace korvanel {

class AppState;
class CPointer;
class CStatusPresenter;
class CViewSet;
class IViewerHost;
struct RefreshNeeds;
struct ViewerState;

// The value searched last and where it was last found, for find next and
// find previous.
struct LastFind {
  std::optional<PixelValue> value;
  uint64_t serial = 0;  // the image searched
  std::optional<PixelPoint> hit;
  uint32_t hit_number = 0;
};

struct FindJumpParts {
  AppState& app;
  IViewerHost& host;
  CViewSet& views;
  const CPointer& pointer;
  CStatusPresenter& status;
  ViewerState& state;
  RefreshNeeds& refresh;
};

class CFindJump final : public IJumpHost, public IFindHost {
 public:
  explicit CFindJump(const FindJumpParts& parts) : p_(parts) {}

  JumpContext JumpTarget() const override;
  CCoordinateHistory& JumpHistory() override { return jump_history_; }
  const CCoordinateHistory& JumpHistory() const { return jump_history_; }
  void JumpTo(PixelPoint pixel) override;
  FindContext FindTarget() const override;
  CFindHistory& FindHistory() override { return find_history_; }
  std::string FindValue(const PixelValue& value) override;
  void ClearFindMarks() override { ClearMarks(true); }

  // Ctrl+= and Shift+=: the last value again, after or before the last hit.
  void FindAgain(SearchDirection direction);
  // `context`: the "-" key, clearing the image under the mouse, or every
  // image when the mouse is over none; otherwise the party (or the FI).
  void ClearMarks(bool context);
  bool AnyMarks() const;
  // Timers 3 and 4: the markers fade.
  void TickMarkers(TimerId id);
  void BuildMarkerPlan(size_t index, PanelInspectionPlan& out) const;

 private:
  void MarkFindHit(size_t index, PixelPoint hit);
  std::vector<ScreenRect> MarkerDamage() const;

  FindJumpParts p_;
  CCoordinateHistory jump_history_;
  CFindHistory find_history_;
  LastFind last_find_;
  CMarkerList jump_markers_;
  CMarkerList find_markers_;
};

}  // namespace korvanel
