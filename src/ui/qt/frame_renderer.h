#pragma once

// Executes the viewer model's FramePlan. The base layer (pictures, grid dots,
// pixel values, highlight rings, rulers) is rebuilt into a device-pixel
// QImage only when the view is dirty; the overlay (tabs, ROI frames, tracking
// lines, markers, histograms, help, the no-image texts) is cheap and drawn
// over the blitted base on every paint.

#include <QColor>
#include <QImage>
#include <QPainter>
#include <optional>
#include <vector>

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
  // Draws the cheap overlay in the plan's coordinates, over the base blitted
  // at the area's place.
  void DrawOverlay(const FramePlan& plan, QPainter& painter);

 private:
  void DrawPicture(const PanelPlan& panel, PixelBuffer& buffer) const;
  void DrawRulerMarks(const PanelPlan& panel, PixelBuffer& buffer) const;
  void DrawRulerLabels(const PanelPlan& panel, QPainter& painter) const;
  void DrawValues(const PanelPlan& panel, QPainter& painter) const;
  void DrawTab(const TabPlan& tab, QPainter& painter) const;
  void DrawNoImage(const FramePlan& plan, QPainter& painter) const;
  void DrawHistogram(size_t slot, const PanelPlan& panel, QPainter& painter);
  void DrawHelp(const FramePlan& plan, QPainter& painter) const;
  int32_t Scaled(int32_t pixels) const;

  // A histogram box is painted once into an image and reused while what it
  // shows stays the same (cursor moves elsewhere do not redraw it).
  struct HistogramBoxKey {
    const HistogramData* data = nullptr;
    uint64_t version = 0;
    std::optional<HistogramHover> hover;
    std::vector<std::optional<uint32_t>> lit;
    bool transparent = false;
    bool shadow = false;
    Rgb foreground;
    ScreenRect box;
    int32_t bin_width = 0;
    qreal dpr = 1;
    friend bool operator==(const HistogramBoxKey&, const HistogramBoxKey&) = default;
  };
  struct HistogramBoxCache {
    HistogramBoxKey key;
    QImage image;
  };

  CQtTextMetrics metrics_;
  std::vector<HistogramBoxCache> histogram_cache_;  // by panel
  QColor tab_text_;
  QColor tab_background_;
  QColor tab_highlight_;
};

}  // namespace korvanel
