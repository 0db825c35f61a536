#pragma once

// Paints the help overlay: the shadow and the rounded box, the page text in
// white, word-wrapped, and the footer centred under the box.

#include <QPainter>

#include "ui/model/frame_plan.h"
#include "ui/qt/qt_text_metrics.h"

namespace korvanel {

inline constexpr Rgb kHelpBoxColor{20, 0, 90};
inline constexpr Rgb kHelpFrameColor{255, 0, 128};
inline constexpr Rgb kHelpShadowColor{128, 128, 128};
inline constexpr Rgb kHelpShadowOutline{192, 192, 192};
inline constexpr Rgb kHelpTextColor{255, 255, 255};

void PaintHelpOverlay(const FramePlan& plan, const CQtTextMetrics& metrics, QPainter& painter);

}  // namespace korvanel
