#include "ui/qt/canvas.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>
#include <cmath>

#include "ui/model/viewer_controller.h"
#include "ui/qt/frame_renderer.h"
#include "ui/qt/key_map.h"

namespace korvanel {
namespace {

constexpr int kWheelNotch = 120;  // angle delta of one wheel notch

}  // namespace

Modifiers ViewerModifiers(Qt::KeyboardModifiers modifiers) {
  return {.shift = modifiers.testFlag(Qt::ShiftModifier),
          .ctrl = modifiers.testFlag(Qt::ControlModifier),
          .alt = modifiers.testFlag(Qt::AltModifier)};
}

CCanvas::CCanvas(CFrameRenderer& renderer, QWidget* parent) : QWidget(parent), renderer_(renderer) {
  setAttribute(Qt::WA_OpaquePaintEvent);
  setAttribute(Qt::WA_NoSystemBackground);
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
}

ScreenSize CCanvas::DeviceSize() const {
  const qreal dpr = devicePixelRatioF();
  return {static_cast<int32_t>(std::lround(width() * dpr)), static_cast<int32_t>(std::lround(height() * dpr))};
}

ScreenPoint CCanvas::DevicePoint(const QPointF& position) const {
  const qreal dpr = devicePixelRatioF();
  return {static_cast<int32_t>(std::floor(position.x() * dpr)), static_cast<int32_t>(std::floor(position.y() * dpr))};
}

void CCanvas::paintEvent(QPaintEvent*) {
  if (controller_ == nullptr) return;
  const qreal dpr = devicePixelRatioF();
  if (controller_->Busy()) {
    PaintLastFrame(dpr);
    return;
  }
  renderer_.SetDevicePixelRatio(dpr);
  const FramePlan& plan = controller_->PrepareFrame();
  const QSize area(std::max(0, plan.area.Width()), std::max(0, plan.area.Height()));
  if (plan.base_dirty || base_.size() != area) renderer_.ComposeBase(plan, base_);
  QPainter painter(this);
  // The plan is in device pixels; drawing at 1/dpr keeps the blit 1:1.
  painter.scale(1.0 / dpr, 1.0 / dpr);
  base_origin_ = {plan.area.left, plan.area.top};
  if (!base_.isNull()) painter.drawImage(QPoint(plan.area.left, plan.area.top), base_);
  renderer_.DrawOverlay(plan, painter);
}

// Images are being written: no rendition may be built, the last base serves.
void CCanvas::PaintLastFrame(qreal dpr) {
  QPainter painter(this);
  painter.fillRect(rect(), Qt::black);
  painter.scale(1.0 / dpr, 1.0 / dpr);
  if (!base_.isNull()) painter.drawImage(QPoint(base_origin_.x, base_origin_.y), base_);
}

void CCanvas::resizeEvent(QResizeEvent* event) {
  QWidget::resizeEvent(event);
  if (controller_ != nullptr) controller_->OnResize(DeviceSize());
}

void CCanvas::keyPressEvent(QKeyEvent* event) {
  if (controller_ == nullptr) return;
  const MappedKey mapped = MapKeyEvent(*event);
  if (mapped.input.key != Key::Unknown) controller_->OnKey(mapped.input);
  if (mapped.typed) controller_->OnChar(*mapped.typed, mapped.input.mods);
}

// Releases matter for Ctrl alone: the close boxes it turned into "O" turn back.
void CCanvas::keyReleaseEvent(QKeyEvent* event) {
  if (controller_ == nullptr || event->isAutoRepeat()) return;
  const MappedKey mapped = MapKeyEvent(*event);
  if (mapped.input.key != Key::Unknown) controller_->OnKeyUp(mapped.input);
}

void CCanvas::mouseMoveEvent(QMouseEvent* event) {
  if (controller_ != nullptr) controller_->OnMouseMove(DevicePoint(event->position()), ViewerModifiers(event->modifiers()));
}

void CCanvas::mousePressEvent(QMouseEvent* event) {
  if (controller_ != nullptr && event->button() == Qt::LeftButton) {
    controller_->OnLeftDown(DevicePoint(event->position()), ViewerModifiers(event->modifiers()));
  }
}

void CCanvas::mouseReleaseEvent(QMouseEvent* event) {
  if (controller_ == nullptr) return;
  if (event->button() == Qt::LeftButton) controller_->OnLeftUp(DevicePoint(event->position()));
  if (event->button() == Qt::RightButton) controller_->OnRightUp(DevicePoint(event->position()));
}

void CCanvas::wheelEvent(QWheelEvent* event) {
  if (controller_ == nullptr) return;
  // Some systems turn Shift+wheel into a horizontal delta.
  const QPoint delta = event->angleDelta();
  wheel_remainder_ += delta.y() != 0 ? delta.y() : delta.x();
  const int steps = wheel_remainder_ / kWheelNotch;
  wheel_remainder_ -= steps * kWheelNotch;
  if (steps != 0) controller_->OnWheel(steps, ViewerModifiers(event->modifiers()));
  event->accept();
}

bool CCanvas::focusNextPrevChild(bool) { return false; }

}  // namespace korvanel
