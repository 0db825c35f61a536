#include "ui/qt/inspection_overlay.h"

#include <QColor>
#include <QPen>
#include <QRect>

#include "ui/qt/qt_conversions.h"

namespace korvanel {

namespace {

// A one-pixel ring on the pixels of `r` itself.
void Ring(QPainter& painter, const ScreenRect& r) {
  painter.drawRect(QRect(r.left, r.top, r.Width() - 1, r.Height() - 1));
}

// Inverting: white XOR the picture, so the line shows on any colour.
void UseInvertingPen(QPainter& painter) {
  painter.setCompositionMode(QPainter::RasterOp_SourceXorDestination);
  painter.setPen(QPen(QColor(255, 255, 255), 1));
  painter.setBrush(Qt::NoBrush);
}

void DrawTracking(const PanelPlan& p, QPainter& painter) {
  const PanelInspectionPlan& in = p.inspect;
  if (!in.tracked) return;
  const ScreenPoint c = BlockCentre(*in.tracked);
  if (in.tracking_lines) {
    painter.save();
    UseInvertingPen(painter);
    painter.drawLine(p.picture.left, c.y, p.picture.right, c.y);
    painter.drawLine(c.x, p.picture.top, c.x, p.picture.bottom);
    painter.restore();
  }
  if (in.outline) {
    painter.save();
    UseInvertingPen(painter);
    Ring(painter, *in.tracked);
    painter.restore();
  }
}

// A mark fills its block while the block is small and rings it when large.
constexpr int32_t kRingFromBlock = 3;

void DrawMarks(const std::vector<MarkPlan>& marks, QPainter& painter) {
  for (const MarkPlan& m : marks) {
    const QColor color(m.color.r, m.color.g, m.color.b);
    if (m.rect.Width() < kRingFromBlock) {
      painter.fillRect(ToQRect(m.rect), color);
    } else {
      painter.setPen(QPen(color, 1));
      painter.setBrush(Qt::NoBrush);
      Ring(painter, m.rect);
    }
  }
}

void DrawMarkers(const std::vector<MarkPlan>& markers, QPainter& painter) {
  painter.setBrush(Qt::NoBrush);
  for (const MarkPlan& m : markers) {
    painter.setPen(QPen(QColor(m.color.r, m.color.g, m.color.b), 1));
    Ring(painter, m.rect);
    Ring(painter, {m.rect.left + 1, m.rect.top + 1, m.rect.right - 1, m.rect.bottom - 1});
  }
}

}  // namespace

void DrawPanelInspection(const PanelPlan& p, QPainter& painter) {
  if (p.picture.Empty()) return;
  painter.save();
  painter.setClipRect(ToQRect(p.picture));
  DrawMarks(p.inspect.marks, painter);
  if (!p.inspect.roi_frame.Empty()) {
    painter.save();
    UseInvertingPen(painter);
    Ring(painter, p.inspect.roi_frame);
    painter.restore();
  }
  DrawTracking(p, painter);
  DrawMarkers(p.inspect.markers, painter);
  painter.restore();
}

void DrawDirective(const DirectivePlan& d, QPainter& painter) {
  if (!d.show) return;
  painter.save();
  UseInvertingPen(painter);
  painter.drawLine(d.from.x, d.from.y, d.to.x, d.to.y);
  painter.restore();
}

std::vector<TextSpan> HighlightSpans(const QString& text) {
  std::vector<TextSpan> spans;
  bool highlighted = false;
  for (const QString& piece : text.split(QLatin1Char('~'))) {
    if (!piece.isEmpty()) spans.push_back({piece, highlighted});
    highlighted = !highlighted;
  }
  return spans;
}

}  // namespace korvanel
