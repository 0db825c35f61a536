#pragma once

// The viewer's top-level window: menus built from the menu table, the
// five-part status bar, the scroll area whose viewport is the canvas, the
// four timers, and the core's feedback while the window exists. Every
// decision is the controller's; this class only carries it out.

#include <QMainWindow>
#include <array>
#include <map>
#include <memory>
#include <vector>

#include "app/config_values.h"
#include "ui/model/viewer_host.h"
#include "ui/qt/qt_feedback.h"

class QAbstractScrollArea;
class QAction;
class QLabel;
class QMenu;
class QDialog;
class QTimer;

namespace korvanel {

class AppState;
class CCanvas;
class CFrameRenderer;
class CUpdateChecker;
class CViewerController;

class CMainWindow final : public QMainWindow, public IViewerHost, private IFeedbackWindow {
  Q_OBJECT

 public:
  CMainWindow(AppState& app, const ConfigValues& config);
  ~CMainWindow() override;

  IUserFeedback& Feedback() { return feedback_; }
  CViewerController& Controller() { return *controller_; }
  CCanvas& Canvas() { return *canvas_; }
  // The status bar's texts, left to right.
  std::array<QString, kStatusPartCount> StatusTexts() const;
  // The action of a menu-table command (the first when several share it).
  QAction* ActionFor(Command command) const;
  QMenu* WindowMenu() const { return window_menu_; }

  // IViewerHost
  void Invalidate(bool base_dirty, std::span<const ScreenRect> damage) override;
  void SetScrollBars(const ScrollBarState& h, const ScrollBarState& v) override;
  void ShowStatus(const StatusFields& fields) override;
  int32_t StatusBarWidth() const override;
  int32_t StatusTextWidth(std::string_view text) const override;
  void StartTimer(TimerId id, uint32_t period_ms) override;
  void StopTimer(TimerId id) override;
  void SetCursorShape(CursorShape shape) override;
  void SetClipboardText(std::string_view text) override;
  std::string ClipboardText() override;
  void SetClipboardImage(const Rgb888Image& image) override;
  std::optional<std::string> AskOpenPath() override;
  ModifiedAnswer AskFileModified(std::string_view path, bool& keep_settings) override;
  void OpenDialog(DialogId id) override;
  void SetMenuState(Command command, bool checked, bool enabled) override;
  void DestroyWindow() override;
  void StartUpdateCheck(const std::string& url) override;

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  // IFeedbackWindow
  QWidget* DialogParent() override { return this; }
  void ShowStatusMessage(std::string_view text) override;
  void ShowImagesMenu(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) override;
  void ShowHasImages(bool has_images) override;
  void Repaint() override;

  void BuildMenus();
  void BuildStatusBar();
  void BuildScrollArea();
  void BuildTimers();
  void PlaceStatusParts();
  void ShowAbout();
  void BuildUpdateChecker(const ConfigValues& config);
  void ShowUpdateDialog();
  // A modal dialog over the focus image; redraws when it applied.
  template <typename Dialog, typename Manager>
  void RunImageDialog(Manager& manager);
  void ShowRulerSettings();
  void ShowHelpWindow();

  AppState& app_;
  CQtFeedback feedback_;
  std::unique_ptr<CFrameRenderer> renderer_;
  std::unique_ptr<CViewerController> controller_;
  QAbstractScrollArea* scroll_ = nullptr;
  CCanvas* canvas_ = nullptr;
  QWidget* status_strip_ = nullptr;
  std::array<QLabel*, kStatusPartCount> status_parts_{};
  std::map<TimerId, QTimer*> timers_;
  std::map<Command, QAction*> actions_;
  QMenu* window_menu_ = nullptr;
  std::vector<QAction*> image_actions_;
  bool destroying_ = false;
  CUpdateChecker* update_checker_ = nullptr;
  QString update_download_url_;
  QDialog* ruler_dialog_ = nullptr;
};

}  // namespace korvanel
