#pragma once

// Builds what a frame shows from the parts of the viewer: the frame plan
// the renderer executes, and the hit map the mouse is tested against.

#include <cstddef>
#include <string>

#include "ui/model/frame_plan.h"
#include "ui/model/hit_map.h"

namespace korvanel {

class AppState;
class CFindJump;
class CHistograms;
class CPointer;
class CUpdateCheck;
class CViewSet;
class ITextMetrics;
struct ViewerSettings;
struct ViewerState;

struct FrameSources {
  AppState& app;
  const ViewerSettings& settings;
  const ViewerState& state;
  CViewSet& views;
  const CPointer& pointer;
  CHistograms& histograms;
  const CFindJump& find_jump;
  const CUpdateCheck& update_check;
};

class CFrameBuilder {
 public:
  explicit CFrameBuilder(const FrameSources& sources) : s_(sources) {}

  // The plan of the views as laid out now. Renditions are built here.
  void Build(const ITextMetrics* metrics, FramePlan& plan, HitMap& hits) const;

 private:
  void BuildPanel(size_t index, size_t panel, const ITextMetrics* metrics, PanelPlan& plan) const;
  void BuildHelp(const ITextMetrics* metrics, FramePlan& plan) const;
  std::string TabText(size_t index) const;

  FrameSources s_;
};

}  // namespace korvanel
