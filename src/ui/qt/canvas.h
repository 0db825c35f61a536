#pragma once

// The image area: the viewport of the window's scroll area. It turns Qt's
// input into controller calls in device pixels and paints the controller's
// frame: the base layer composed only when the plan says it changed, then
// the overlay.

#include <QImage>
#include <QWidget>

#include "ui/model/geometry.h"
#include "ui/model/keys.h"

namespace korvanel {

class CFrameRenderer;
class CViewerController;

class CCanvas final : public QWidget {
  Q_OBJECT

 public:
  CCanvas(CFrameRenderer& renderer, QWidget* parent = nullptr);
  void SetController(CViewerController* controller) { controller_ = controller; }
  // The area's size in device pixels.
  ScreenSize DeviceSize() const;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void keyReleaseEvent(QKeyEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  // Tab and Backtab switch images here; Qt would move the focus instead.
  bool focusNextPrevChild(bool next) override;

 private:
  ScreenPoint DevicePoint(const QPointF& position) const;
  void PaintLastFrame(qreal dpr);

  CFrameRenderer& renderer_;
  CViewerController* controller_ = nullptr;
  QImage base_;
  ScreenPoint base_origin_{0, 0};
  int wheel_remainder_ = 0;
};

// The modifiers the viewer reads from a Qt event.
Modifiers ViewerModifiers(Qt::KeyboardModifiers modifiers);

}  // namespace korvanel
