#include "ui/model/viewer_controller.h"

#include "app/app_state.h"

namespace korvanel {

CViewerController::CViewerController(AppState& app, IViewerHost& host,
                                     const ViewerSettings& settings)
    : app_(app), host_(host), settings_(settings) {}

void CViewerController::OnResize(ScreenSize, int32_t) {}
void CViewerController::OnKey(const KeyInput&) {}
void CViewerController::OnChar(char32_t, Modifiers) {}
void CViewerController::OnMouseMove(ScreenPoint, Modifiers) {}
void CViewerController::OnLeftDown(ScreenPoint, Modifiers) {}
void CViewerController::OnLeftUp(ScreenPoint) {}
void CViewerController::OnRightUp(ScreenPoint) {}
void CViewerController::OnWheel(int32_t, Modifiers) {}
void CViewerController::OnScroll(Axis, ScrollAction, int32_t) {}
void CViewerController::OnTimer(TimerId) {}
void CViewerController::OnDrop(const std::vector<std::string>&) {}
void CViewerController::OnWindowMenu(size_t) {}
void CViewerController::Execute(Command) {}
bool CViewerController::RequestClose() { return app_.ConfirmExit(); }
void CViewerController::ShowStatusMessage(std::string_view) {}
void CViewerController::OnImagesChanged() {}
const FramePlan& CViewerController::PrepareFrame() { return plan_; }

}  // namespace korvanel
