#pragma once

// Executes the viewer model's FramePlan. The base layer (pictures, grid dots,
// pixel values, highlight rings, rulers) is rebuilt into a device-pixel
// QImage only when the view is dirty; the overlay (tabs, the no-image texts)
// is cheap and drawn over the blitted base on every paint.

#include <QFont>
#include <QImage>
#include <QPainter>

#include "app/config_values.h"

namespace korvanel {

struct FramePlan;

class CFrameRenderer {
 public:
  explicit CFrameRenderer(const ConfigValues& config);  // fonts, colours
  // Fonts configured as pixel heights are scaled by the ratio so that text
  // keeps its size on a HiDPI screen while pictures stay 1:1 in device pixels.
  void SetDevicePixelRatio(qreal dpr);
  // Rebuilds the base layer into `base` (device pixels, QImage::Format_RGB32)
  // from the plan; `base` is reallocated when its size differs from the plan's.
  void ComposeBase(const FramePlan& plan, QImage& base);
  // Draws the cheap overlay (tabs, no-image texts; later: markers, ROI frames ...).
  void DrawOverlay(const FramePlan& plan, QPainter& painter);

 private:
  ConfigValues config_;
  qreal dpr_ = 1.0;
};

}  // namespace korvanel
