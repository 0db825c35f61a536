#include "ui/qt/frame_renderer.h"

#include <QPoint>
#include <QRect>
#include <QString>
#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <cstdio>
#include <optional>
#include <vector>

#include "image/image_container.h"
#include "ui/model/ruler_marks.h"
#include "ui/qt/inspection_overlay.h"
#include "ui/qt/help_painter.h"
#include "ui/qt/histogram_painter.h"
#include "ui/qt/qt_conversions.h"

namespace korvanel {
namespace {

constexpr uint32_t kBlack = ScreenColor(0, 0, 0);
constexpr QRgb kInvitationColor = qRgb(255, 255, 255);
constexpr QRgb kNewerVersionColor = qRgb(255, 0, 255);
constexpr int32_t kNewerVersionGap = 5;  // pixels below the invitation line
// Indent rulers: bars this long and thick (before the pixel ratio), labels
// this far from their bar.
constexpr int32_t kRulerBarLength = 10;
constexpr int32_t kRulerBarThickness = 2;
constexpr int32_t kRulerLabelGap = 2;
constexpr int32_t kTabTextIndent = 4;
// The readout's highlighted spans in a tab.
constexpr QRgb kTabSpanColor = qRgb(255, 255, 0);

Rgb TabColor(const ConfigGui& gui, size_t index, Rgb fallback) {
  return index < gui.tab_color_fg_bg_hl.size() ? gui.tab_color_fg_bg_hl[index] : fallback;
}

ScreenRect Intersect(const ScreenRect& a, const ScreenRect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

PixelBuffer BufferOf(QImage& image) {
  return {reinterpret_cast<uint32_t*>(image.bits()), image.width(), image.height(),
          static_cast<int32_t>(image.bytesPerLine() / 4)};
}

ScreenRect Moved(const ScreenRect& r, int32_t dx, int32_t dy) {
  return {r.left + dx, r.top + dy, r.right + dx, r.bottom + dy};
}

// The plan with the area's top-left at (0, 0): the base layer covers the
// area only and is blitted at the area's position.
FramePlan AreaRelative(const FramePlan& plan) {
  const int32_t dx = -plan.area.left;
  const int32_t dy = -plan.area.top;
  FramePlan moved = plan;
  moved.area = Moved(plan.area, dx, dy);
  for (PanelPlan& p : moved.panels) {
    p.panel = Moved(p.panel, dx, dy);
    p.picture = Moved(p.picture, dx, dy);
    p.origin = {p.origin.x + dx, p.origin.y + dy};
  }
  return moved;
}

// --- rulers ------------------------------------------------------------------

bool HasRuler(const PanelPlan& p) {
  return p.ruler.show && p.rendition != nullptr && !p.picture.Empty();
}

// Every other pixel of a line, starting on the line's first pixel.
void DottedRow(PixelBuffer& buffer, int32_t y, int32_t left, int32_t right, uint32_t color) {
  uint32_t* row = buffer.Row(y);
  for (int32_t x = left; x <= right; x += 2) row[x] = color;
}

void DottedColumn(PixelBuffer& buffer, int32_t x, int32_t top, int32_t bottom, uint32_t color) {
  for (int32_t y = top; y <= bottom; y += 2) buffer.Row(y)[x] = color;
}

// --- pixel values ------------------------------------------------------------

int FormatValue(const ValuePlan& v, const std::array<uint32_t, 3>& s, char (&text)[48]) {
  // The format is one of the model's four fixed texts.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  const int n = v.one_component ? std::snprintf(text, sizeof text, v.format, s[0])
                                : std::snprintf(text, sizeof text, v.format, s[0], s[1], s[2]);
#pragma GCC diagnostic pop
  return std::clamp(n, 0, static_cast<int>(sizeof text) - 1);
}

}  // namespace

CFrameRenderer::CFrameRenderer(const ConfigValues& config)
    : metrics_(config.gui),
      tab_text_(ToQColor(TabColor(config.gui, 0, {255, 255, 255}))),
      tab_background_(ToQColor(TabColor(config.gui, 1, {150, 30, 20}))),
      tab_highlight_(ToQColor(TabColor(config.gui, 2, {200, 70, 0}))) {}

void CFrameRenderer::SetDevicePixelRatio(qreal dpr) { metrics_.SetDevicePixelRatio(dpr); }

int32_t CFrameRenderer::Scaled(int32_t pixels) const {
  return std::max<int32_t>(1, static_cast<int32_t>(std::lround(pixels * metrics_.DevicePixelRatio())));
}

void CFrameRenderer::ComposeBase(const FramePlan& frame, QImage& base) {
  const int32_t width = std::max(0, frame.area.Width());
  const int32_t height = std::max(0, frame.area.Height());
  if (base.width() != width || base.height() != height || base.format() != QImage::Format_RGB32) {
    base = QImage(width, height, QImage::Format_RGB32);
  }
  base.setDevicePixelRatio(1.0);
  if (base.isNull()) return;  // a window shrunk to nothing
  std::optional<FramePlan> moved;
  if (frame.area.left != 0 || frame.area.top != 0) moved = AreaRelative(frame);
  const FramePlan& plan = moved ? *moved : frame;

  PixelBuffer buffer = BufferOf(base);
  const bool empty = plan.panels.empty() && plan.no_image.show;
  FillRect(buffer, buffer.Bounds(), empty ? kZoomOutBackground : kBlack);
  for (const PanelPlan& panel : plan.panels) {
    DrawPicture(panel, buffer);
    if (HasRuler(panel)) DrawRulerMarks(panel, buffer);
  }

  QPainter painter(&base);
  for (const PanelPlan& panel : plan.panels) {
    if (panel.rendition == nullptr) continue;
    if (panel.values.show && !panel.stretch) DrawValues(panel, painter);
    if (HasRuler(panel)) DrawRulerLabels(panel, painter);
  }
}

void CFrameRenderer::DrawPicture(const PanelPlan& p, PixelBuffer& buffer) const {
  if (p.rendition == nullptr || p.picture.Empty()) return;
  if (p.stretch) {
    FillRect(buffer, p.panel, kZoomOutBackground);
    BlitStretched(*p.rendition, p.picture, Intersect(p.picture, p.panel), buffer);
  } else {
    // The kernel reads only inside the rendition's zoomed extent; keep a
    // plan that overreaches from reading past it.
    const uint32_t k = std::max<uint32_t>(p.k, 1);
    const ScreenRect extent{
        p.origin.x, p.origin.y,
        static_cast<int32_t>(std::min<int64_t>(INT32_MAX, p.origin.x + int64_t{p.rendition->width} * k - 1)),
        static_cast<int32_t>(std::min<int64_t>(INT32_MAX, p.origin.y + int64_t{p.rendition->height} * k - 1))};
    const ScreenRect dest = Intersect(p.picture, extent);
    if (!dest.Empty()) BlitReplicated(*p.rendition, dest, p.origin, k, GridStyle{p.grid, p.roi}, buffer);
  }
  DrawRings(buffer, p.picture, p.rings);
}

void CFrameRenderer::DrawRulerMarks(const PanelPlan& p, PixelBuffer& buffer) const {
  const PanelRulerMarks marks = RulerMarksOf(p, Scaled(1));
  const ScreenRect clip = Intersect(p.picture, buffer.Bounds());
  if (clip.Empty()) return;
  const uint32_t color = ScreenColor(p.ruler.color);
  if (p.ruler.type == RulerType::Matrix) {
    for (const RulerMark& m : marks.x) {
      if (m.screen >= clip.left && m.screen <= clip.right) DottedColumn(buffer, m.screen, clip.top, clip.bottom, color);
    }
    for (const RulerMark& m : marks.y) {
      if (m.screen >= clip.top && m.screen <= clip.bottom) DottedRow(buffer, m.screen, clip.left, clip.right, color);
    }
    return;
  }
  const int32_t length = Scaled(kRulerBarLength);
  const int32_t thickness = Scaled(kRulerBarThickness);
  const ScreenRect& pic = p.picture;
  for (const RulerMark& m : marks.x) {
    FillRect(buffer, Intersect({m.screen, pic.top, m.screen + thickness - 1, pic.top + length - 1}, clip), color);
  }
  for (const RulerMark& m : marks.y) {
    FillRect(buffer, Intersect({pic.left, m.screen, pic.left + length - 1, m.screen + thickness - 1}, clip), color);
  }
}

// Labels of indent rulers: right of each top bar and right of each left
// bar's end. A label that would run into the previous one is left out, so
// tight spacings stay readable.
void CFrameRenderer::DrawRulerLabels(const PanelPlan& p, QPainter& painter) const {
  if (p.ruler.type != RulerType::Indent) return;
  const PanelRulerMarks marks = RulerMarksOf(p, Scaled(1));
  const QFontMetrics& fm = metrics_.Metrics(FontRole::Ruler);
  const int32_t thickness = Scaled(kRulerBarThickness);
  const int32_t gap = Scaled(kRulerLabelGap);
  const ScreenRect& pic = p.picture;
  painter.save();
  painter.setClipRect(ToQRect(pic));
  painter.setFont(metrics_.Font(FontRole::Ruler));
  painter.setPen(ToQColor(p.ruler.color));
  int32_t free_from = pic.left;
  for (const RulerMark& m : marks.x) {
    const QString text = QString::number(m.coordinate);
    const int32_t x = m.screen + thickness + gap;
    if (x < free_from) continue;
    painter.drawText(QPoint(x, pic.top + fm.ascent()), text);
    free_from = x + fm.horizontalAdvance(text) + gap;
  }
  const int32_t label_x = pic.left + Scaled(kRulerBarLength) + gap;
  free_from = pic.top + fm.height();  // below the top row of labels
  for (const RulerMark& m : marks.y) {
    const int32_t top = m.screen + thickness / 2 - fm.height() / 2;
    if (top < free_from) continue;
    painter.drawText(QPoint(label_x, top + fm.ascent()), QString::number(m.coordinate));
    free_from = top + fm.height();
  }
  painter.restore();
}

// Each visible block gets its pixel's raw value, centred from the text's
// character count (the font is fixed-pitch), in the pixel's contrast colour.
void CFrameRenderer::DrawValues(const PanelPlan& p, QPainter& painter) const {
  if (p.image == nullptr || p.source.Empty() || p.picture.Empty()) return;
  const DisplayRendition& r = *p.rendition;
  const int64_t k = std::max<uint32_t>(p.k, 1);
  const QFontMetrics& fm = metrics_.Metrics(FontRole::Values);
  const int32_t baseline = static_cast<int32_t>((k - fm.height()) / 2) + fm.ascent();
  painter.save();
  painter.setClipRect(ToQRect(p.picture));
  painter.setFont(metrics_.Font(FontRole::Values));
  uint32_t pen = 0;
  bool pen_set = false;
  std::array<uint32_t, 3> samples{};
  char text[48];
  for (int64_t y = p.source.top; y <= p.source.bottom && y < r.height; ++y) {
    const int32_t top = static_cast<int32_t>(p.origin.y + y * k);
    const uint32_t* row = r.pixels.data() + static_cast<size_t>(y) * r.width;
    for (int64_t x = p.source.left; x <= p.source.right && x < r.width; ++x) {
      if (!p.image->GetSampleValues(x, y, samples)) continue;
      const uint32_t contrast = ContrastColor(SwizzleDisplayPixel(row[x]));
      if (!pen_set || contrast != pen) {
        painter.setPen(QColor::fromRgb(contrast));
        pen = contrast;
        pen_set = true;
      }
      const int n = FormatValue(p.values, samples, text);
      const int32_t left = static_cast<int32_t>(p.origin.x + x * k);
      const int32_t indent = static_cast<int32_t>((k - metrics_.ValueWidth(static_cast<size_t>(n))) / 2);
      painter.drawText(QPoint(left + indent, top + baseline), QString::fromLatin1(text, n));
    }
  }
  painter.restore();
}

void CFrameRenderer::DrawOverlay(const FramePlan& plan, QPainter& painter) {
  for (const PanelPlan& panel : plan.panels) DrawPanelInspection(panel, painter);
  DrawDirective(plan.directive, painter);
  for (const PanelPlan& panel : plan.panels) DrawTab(panel.tab, painter);
  histogram_cache_.resize(plan.panels.size());
  for (size_t i = 0; i < plan.panels.size(); ++i) DrawHistogram(i, plan.panels[i], painter);
  if (plan.no_image.show) DrawNoImage(plan, painter);
  DrawHelp(plan, painter);
}

void CFrameRenderer::DrawHistogram(size_t slot, const PanelPlan& panel, QPainter& painter) {
  const HistogramPlan& h = panel.histogram;
  if (!h.show || h.data == nullptr || h.layout.box.Empty()) return;
  HistogramBoxCache& cache = histogram_cache_[slot];
  const HistogramBoxKey key{h.data,        h.data->version, h.hover, h.lit, h.transparent, h.shadow,
                            h.foreground,  h.layout.box,    h.layout.bin_width, metrics_.DevicePixelRatio()};
  if (cache.image.isNull() || !(cache.key == key)) {
    PaintHistogramBox(h, metrics_, cache.image);
    cache.key = key;
  }
  painter.save();
  painter.setClipRect(ToQRect(panel.panel));
  painter.drawImage(QPoint(h.layout.box.left, h.layout.box.top), cache.image);
  painter.restore();
}

void CFrameRenderer::DrawHelp(const FramePlan& plan, QPainter& painter) const {
  PaintHelpOverlay(plan, metrics_, painter);
}

// The close box sits at the tab's top-left; the caption follows it. A
// caption too wide for the tab is written in the smaller tab font.
void CFrameRenderer::DrawTab(const TabPlan& tab, QPainter& painter) const {
  if (tab.rect.Empty()) return;
  painter.save();
  painter.setClipRect(ToQRect(tab.rect));
  painter.fillRect(ToQRect(tab.rect), tab.hovered ? tab_highlight_ : tab_background_);

  const QFontMetrics& fm = metrics_.Metrics(FontRole::Tab);
  painter.setFont(metrics_.Font(FontRole::Tab));
  int32_t text_left = tab.rect.left + Scaled(kTabTextIndent);
  if (!tab.close_box.Empty()) {
    const QRect box = ToQRect(tab.close_box);
    if (tab.close_hovered) painter.fillRect(box, tab_highlight_);
    painter.setPen(tab_text_);
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    const QString mark(QLatin1Char(tab.close_text));
    const int32_t x = tab.close_box.left + (tab.close_box.Width() - fm.horizontalAdvance(mark)) / 2;
    const int32_t y = tab.close_box.top + (tab.close_box.Height() - fm.height()) / 2 + fm.ascent();
    painter.drawText(QPoint(x, y), mark);
    text_left = tab.close_box.right + 1 + Scaled(kTabTextIndent);
  }

  const std::vector<TextSpan> spans = HighlightSpans(QString::fromStdString(tab.text));
  QString caption;
  for (const TextSpan& span : spans) caption += span.text;
  const bool small = fm.horizontalAdvance(caption) > tab.rect.right - text_left;
  const FontRole role = small ? FontRole::TabSmall : FontRole::Tab;
  const QFontMetrics& cm = metrics_.Metrics(role);
  painter.setFont(metrics_.Font(role));
  const int32_t baseline = tab.rect.top + (tab.rect.Height() - cm.height()) / 2 + cm.ascent();
  int32_t x = text_left;
  for (const TextSpan& span : spans) {
    painter.setPen(span.highlighted ? QColor::fromRgb(kTabSpanColor) : tab_text_);
    painter.drawText(QPoint(x, baseline), span.text);
    x += cm.horizontalAdvance(span.text);
  }
  painter.restore();
}

// White invitation centred in the area; the newer-version line in magenta
// 5 pixels below it, only when the update check found one.
void CFrameRenderer::DrawNoImage(const FramePlan& plan, QPainter& painter) const {
  const ScreenRect& area = plan.area;
  if (area.Empty()) return;
  const QFontMetrics& fm = metrics_.Metrics(FontRole::Text);
  painter.save();
  painter.setFont(metrics_.Font(FontRole::Text));
  const QString first = QString::fromStdString(plan.no_image.invitation);
  const int32_t top = area.top + (area.Height() - fm.height()) / 2;
  painter.setPen(QColor::fromRgb(kInvitationColor));
  painter.drawText(QPoint(area.left + (area.Width() - fm.horizontalAdvance(first)) / 2, top + fm.ascent()),
                   first);
  if (!plan.no_image.newer_version.empty()) {
    const QString second = QString::fromStdString(plan.no_image.newer_version);
    const int32_t second_top = top + fm.height() + Scaled(kNewerVersionGap);
    painter.setPen(QColor::fromRgb(kNewerVersionColor));
    painter.drawText(
        QPoint(area.left + (area.Width() - fm.horizontalAdvance(second)) / 2, second_top + fm.ascent()),
        second);
  }
  painter.restore();
}

}  // namespace korvanel
