#pragma once

#include "app/user_feedback.h"
#include "ui/qt/progress_runner.h"

class QWidget;

namespace korvanel {

class AppState;
class COpenRawImageManager;

// What the window does with the core's view notifications.
class IFeedbackWindow {
 public:
  virtual ~IFeedbackWindow() = default;
  virtual QWidget* DialogParent() = 0;
  virtual void ShowStatusMessage(std::string_view text) = 0;
  virtual void ShowImagesMenu(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) = 0;
  virtual void ShowHasImages(bool has_images) = 0;
  virtual void Repaint() = 0;
};

// The core's feedback while the window exists: modal boxes with their
// captions, Yes/No questions, the save-file dialog, long operations with
// their progress window, and the view notifications handed to the window. Batch errors still go to standard output, as without a window.
class CQtFeedback final : public IUserFeedback {
 public:
  explicit CQtFeedback(IFeedbackWindow& window) : window_(window) {}

  void ShowMessage(std::string_view text, std::string_view title, MessageStyle style) override;
  void StatusMessage(std::string_view text) override;
  void BatchError(std::string_view text) override;
  bool AskYesNo(std::string_view text, std::string_view title) override;
  void ImagesMenuChanged(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) override;
  void HasImagesChanged(bool has_images) override;
  void RequestRepaint() override;
  bool AskSaveFileName(std::string_view suggested, std::string& path) override;
  // Called on the progress thread.
  void Progress(std::string_view title, uint32_t percent) override;
  void RunLongOperation(std::string_view title, const std::function<void()>& run,
                        const std::function<void()>& cancel) override;

  CProgressRunner& Runner() { return runner_; }
  // The open-raw dialog over `manager`, its refusals told through `app`;
  // refused (as without a window) until BindOpenRaw was called.
  bool AskOpenRawFormat(std::string_view path, OpenRawAnswer& answer) override;
  void BindOpenRaw(AppState& app, COpenRawImageManager& manager) {
    open_raw_app_ = &app;
    open_raw_ = &manager;
  }

 private:
  IFeedbackWindow& window_;
  CProgressRunner runner_;
  AppState* open_raw_app_ = nullptr;
  COpenRawImageManager* open_raw_ = nullptr;
};

}  // namespace korvanel
