#include "ui/qt/histogram_painter.h"

#include <QPainter>
#include <QPen>
#include <QString>
#include <algorithm>
#include <cmath>

#include "ui/qt/qt_conversions.h"

namespace korvanel {
namespace {

constexpr int kFrameWidth = 2;

QRect Local(const ScreenRect& r, const ScreenRect& box) {
  return QRect(r.left - box.left, r.top - box.top, r.Width(), r.Height());
}

// The bin a bar column shows: its own with room for every bin, else the
// bins are narrowed by dropping some (nearest).
size_t BinOfColumn(int32_t column, int32_t width, int32_t bin_width, size_t bins) {
  if (bin_width > 0) return static_cast<size_t>(column / bin_width);
  return static_cast<size_t>(int64_t{column} * static_cast<int64_t>(bins) / std::max(1, width));
}

int32_t BarHeight(uint64_t count, uint64_t peak, int32_t height) {
  if (count == 0 || peak == 0) return 0;
  const auto bar = static_cast<int32_t>(std::lround(static_cast<double>(count) / static_cast<double>(peak) * height));
  return std::clamp(bar, 1, height);  // a counted bin always shows
}

void PaintBars(const HistogramPlan& plan, const HistogramRow& row, const QRect& rect, QPainter& painter) {
  const HistogramChannelView& channel = plan.data->channels[row.channel];
  const SqueezedBins& bins = channel.bins;
  if (bins.counts.empty()) return;
  // -1: no bin of this channel is lit.
  int64_t lit = -1;
  if (row.channel < plan.lit.size() && plan.lit[row.channel]) lit = *plan.lit[row.channel];
  const bool hovered_channel = plan.hover && plan.hover->channel == row.channel;
  const QColor bar_color = ToQColor(channel.color);
  const QColor hover_color = ToQColor(kHistogramHoverColor);
  const QColor lit_color = ToQColor(kHistogramLitColor);
  const int32_t width = rect.width();
  const int32_t height = rect.height();
  for (int32_t column = 0; column < width; ++column) {
    const size_t bin = BinOfColumn(column, width, plan.layout.bin_width, bins.counts.size());
    if (bin >= bins.counts.size()) break;
    const int32_t x = rect.left() + column;
    if (lit == static_cast<int64_t>(bin)) painter.fillRect(x, rect.top(), 1, height, lit_color);
    const int32_t bar = BarHeight(bins.counts[bin], bins.peak, height);
    if (bar == 0) continue;
    const bool hovered = hovered_channel && plan.hover->bin == bin;
    painter.fillRect(x, rect.top() + height - bar, 1, bar, hovered ? hover_color : bar_color);
  }
  // Mark a hovered empty bin too, so the pointer always shows where it is.
  if (hovered_channel && bins.counts[plan.hover->bin] == 0 && plan.layout.bin_width > 0) {
    painter.fillRect(rect.left() + static_cast<int32_t>(plan.hover->bin) * plan.layout.bin_width,
                     rect.bottom(), plan.layout.bin_width, 1, hover_color);
  }
}

void PaintText(const HistogramPlan& plan, const HistogramRow& row, const QRect& rect,
               const CQtTextMetrics& metrics, QPainter& painter) {
  const QFontMetrics& fm = metrics.Metrics(row.font);
  const QString text = fm.elidedText(QString::fromStdString(row.text), Qt::ElideRight, rect.width());
  const QPoint at(rect.left(), rect.top() + fm.ascent());
  painter.setFont(metrics.Font(row.font));
  if (plan.transparent) {
    if (plan.shadow) {
      painter.setPen(ToQColor(plan.shadow_color));
      painter.drawText(at + QPoint(1, 1), text);
    }
    painter.setPen(ToQColor(plan.foreground));
  } else {
    const bool label = row.kind == HistogramRowKind::Label;
    painter.setPen(ToQColor(label ? plan.data->channels[row.channel].color : kHistogramTextColor));
  }
  painter.drawText(at, text);
}

}  // namespace

void PaintHistogramBox(const HistogramPlan& plan, const CQtTextMetrics& metrics, QImage& image) {
  const ScreenRect& box = plan.layout.box;
  if (box.Empty() || plan.data == nullptr) {
    image = QImage();
    return;
  }
  const QSize size(box.Width(), box.Height());
  if (image.size() != size || image.format() != QImage::Format_ARGB32_Premultiplied) {
    image = QImage(size, QImage::Format_ARGB32_Premultiplied);
  }
  image.setDevicePixelRatio(1.0);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  if (!plan.transparent) {
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(kHistogramBoxColor));
    // The 2-pixel frame lies inside the box.
    painter.fillRect(0, 0, size.width(), kFrameWidth, ToQColor(kHistogramFrameColor));
    painter.fillRect(0, size.height() - kFrameWidth, size.width(), kFrameWidth, ToQColor(kHistogramFrameColor));
    painter.fillRect(0, 0, kFrameWidth, size.height(), ToQColor(kHistogramFrameColor));
    painter.fillRect(size.width() - kFrameWidth, 0, kFrameWidth, size.height(), ToQColor(kHistogramFrameColor));
  }
  for (const HistogramRow& row : plan.layout.rows) {
    if (row.channel >= plan.data->channels.size()) continue;
    const QRect rect = Local(row.rect, box);
    if (row.kind == HistogramRowKind::Bars) {
      PaintBars(plan, row, rect, painter);
    } else {
      PaintText(plan, row, rect, metrics, painter);
    }
  }
}

}  // namespace korvanel
