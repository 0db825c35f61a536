#include "ui/qt/help_painter.h"

#include <QPen>
#include <QString>

#include "ui/qt/qt_conversions.h"

namespace korvanel {
namespace {

constexpr qreal kCornerRadius = 10;  // 20 x 20 corners
constexpr qreal kHelpFrameWidth = 2;

}  // namespace

void PaintHelpOverlay(const FramePlan& plan, const CQtTextMetrics& metrics, QPainter& painter) {
  const HelpOverlayLayout& help = plan.help;
  if (!plan.help_visible || plan.help_text == nullptr || help.box.Empty()) return;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing, true);
  painter.setPen(QPen(ToQColor(kHelpShadowOutline), 1));
  painter.setBrush(ToQColor(kHelpShadowColor));
  painter.drawRoundedRect(ToQRect(help.shadow), kCornerRadius, kCornerRadius);
  painter.setPen(QPen(ToQColor(kHelpFrameColor), kHelpFrameWidth));
  painter.setBrush(ToQColor(kHelpBoxColor));
  painter.drawRoundedRect(ToQRect(help.box), kCornerRadius, kCornerRadius);
  painter.setRenderHint(QPainter::Antialiasing, false);

  painter.setPen(ToQColor(kHelpTextColor));
  painter.setBrush(Qt::NoBrush);
  painter.setFont(metrics.Font(help.font));
  // One call per frame: the wrapping layout is worth its cost here.
  painter.drawText(ToQRect(help.text), Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap,
                   QString::fromStdString(*plan.help_text));

  const QFontMetrics& fm = metrics.Metrics(FontRole::Text);
  const QString footer = QString::fromStdString(help.footer);
  const int32_t x = help.box.left + (help.box.Width() - fm.horizontalAdvance(footer)) / 2;
  painter.setFont(metrics.Font(FontRole::Text));
  painter.drawText(QPoint(x, help.footer_top + fm.ascent()), footer);
  painter.restore();
}

}  // namespace korvanel
