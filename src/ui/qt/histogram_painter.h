#pragma once

// Paints a histogram box: the white framed box or, in transparent mode, only
// its texts (with an optional shadow), the channel labels, the statistics
// lines and the bars, with the hovered and the lit bins marked.

#include <QImage>

#include "ui/model/frame_plan.h"
#include "ui/qt/qt_text_metrics.h"

namespace korvanel {

// Paints `plan` into `image`, whose pixel (0, 0) is the box's top-left; the
// image is reallocated to the box's size (ARGB, transparent outside the box).
void PaintHistogramBox(const HistogramPlan& plan, const CQtTextMetrics& metrics, QImage& image);

}  // namespace korvanel
