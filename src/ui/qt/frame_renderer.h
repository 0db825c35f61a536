#pragma once

// Executes the viewer model's FramePlan. The base layer (pictures, grid dots,
// pixel values, highlight rings, rulers) is rebuilt into a device-pixel
// QImage only when the view is dirty; the overlay (tabs, the no-image texts)
// is cheap and drawn over the blitted base on every paint.

#include <QColor>
#include <QImage>
#include <QPainter>

#include "app/config_values.h"
#include "ui/model/frame_kernels.h"
#include "ui/model/frame_plan.h"
#include "ui/qt/qt_text_metrics.h"

namespace korvanel {

class CFrameRenderer {
 public:
  explicit CFrameRenderer(const ConfigValues& config);  // fonts, colours
  // Fonts configured as pixel heights are scaled by the ratio so that text
  // keeps its size on a HiDPI screen while pictures stay 1:1 in device pixels.
  void SetDevicePixelRatio(qreal dpr);
  // The fonts the renderer draws with, measured for the model (whether
  // values fit a block, tab widths).
  const CQtTextMetrics& TextMetrics() const { return metrics_; }

  // Rebuilds the base layer into `base` (device pixels, QImage::Format_RGB32)
  // from the plan. `base` covers the plan's area (its pixel (0, 0) is the
  // area's top-left) and is reallocated when its size differs; its device
  // pixel ratio is reset to 1: set it only to blit.
  void ComposeBase(const FramePlan& plan, QImage& base);
  // Draws the cheap overlay (tabs, no-image texts; later: markers, ROI frames
  // ...) in the plan's coordinates, over the base blitted at the area's place.
  void DrawOverlay(const FramePlan& plan, QPainter& painter);

 private:
  void DrawPicture(const PanelPlan& panel, PixelBuffer& buffer) const;
  void DrawRulerMarks(const PanelPlan& panel, PixelBuffer& buffer) const;
  void DrawRulerLabels(const PanelPlan& panel, QPainter& painter) const;
  void DrawValues(const PanelPlan& panel, QPainter& painter) const;
  void DrawTab(const TabPlan& tab, QPainter& painter) const;
  void DrawNoImage(const FramePlan& plan, QPainter& painter) const;
  int32_t Scaled(int32_t pixels) const;

  CQtTextMetrics metrics_;
  QColor tab_text_;
  QColor tab_background_;
  QColor tab_highlight_;
};

}  // namespace korvanel
