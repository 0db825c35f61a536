#pragma once

// Draws pixel inspection over a panel: inverted ROI frames and directive
// line, tracking lines, the tracked-pixel outline, find marks and the jump
// and find markers. Also splits tab texts at their "~" highlight marks.

#include <QPainter>
#include <QString>
#include <vector>

#include "ui/model/frame_plan.h"

namespace korvanel {

void DrawPanelInspection(const PanelPlan& panel, QPainter& painter);
void DrawDirective(const DirectivePlan& directive, QPainter& painter);

// A tab text in spans: the text between "~" pairs is highlighted.
struct TextSpan {
  QString text;
  bool highlighted = false;
};
std::vector<TextSpan> HighlightSpans(const QString& text);

}  // namespace korvanel
