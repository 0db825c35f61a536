#include "ui/qt/frame_renderer.h"

namespace korvanel {

CFrameRenderer::CFrameRenderer(const ConfigValues& config) : config_(config) {}

void CFrameRenderer::SetDevicePixelRatio(qreal dpr) { dpr_ = dpr > 0 ? dpr : 1.0; }

void CFrameRenderer::ComposeBase(const FramePlan& /*plan*/, QImage& /*base*/) {}

void CFrameRenderer::DrawOverlay(const FramePlan& /*plan*/, QPainter& /*painter*/) {}

}  // namespace korvanel
