#pragma once

#include "app/user_feedback.h"

namespace korvanel {

// AppState binds its feedback when it is made, before the command line says
// whether a window will exist. It binds this relay, which forwards to the
// console first and to the window's feedback once the window is up.
class CFeedbackRelay final : public IUserFeedback {
 public:
  explicit CFeedbackRelay(IUserFeedback& target) : target_(&target) {}

  void SetTarget(IUserFeedback& target) { target_ = &target; }
  IUserFeedback& Target() const { return *target_; }

  void ShowMessage(std::string_view text, std::string_view title, MessageStyle style) override;
  void StatusMessage(std::string_view text) override;
  void BatchError(std::string_view text) override;
  bool AskYesNo(std::string_view text, std::string_view title) override;
  bool AskOpenRawFormat(std::string_view path, OpenRawAnswer& answer) override;
  bool AskSaveFileName(std::string_view suggested, std::string& path) override;
  void ImagesMenuChanged(const std::vector<MenuEntry>& entries, std::optional<size_t> checked) override;
  void HasImagesChanged(bool has_images) override;
  void Progress(std::string_view title, uint32_t percent) override;
  void RequestRepaint() override;
  void RunLongOperation(std::string_view title, const std::function<void()>& run,
                        const std::function<void()>& cancel) override;

 private:
  IUserFeedback* target_;
};

}  // namespace korvanel
