#pragma once

#include <string>
#include <vector>

#include "files/save_host.h"

namespace korvanel::test {

// Records what saving reports and answers its questions from fields.
class RecordingSaveHost : public ISaveHost {
 public:
  void ShowError(std::string_view text, std::string_view title) override {
    errors.push_back("[" + std::string(title) + "]: " + std::string(text));
  }
  void ShowStatus(std::string_view text) override { statuses.emplace_back(text); }
  bool AskYesNo(std::string_view text, std::string_view title) override {
    questions.push_back("[" + std::string(title) + "]: " + std::string(text));
    return answer;
  }
  bool AskFileName(std::string_view suggested, std::string& path) override {
    dialogs.emplace_back(suggested);
    if (dialog_answer.empty()) return false;
    path = dialog_answer;
    return true;
  }
  void Saved(const IImageContainer* image) override { saved.push_back(image); }

  std::vector<std::string> errors;
  std::vector<std::string> statuses;
  std::vector<std::string> questions;
  std::vector<std::string> dialogs;
  std::vector<const IImageContainer*> saved;
  bool answer = true;
  std::string dialog_answer;  // empty: the dialog is cancelled
};

}  // namespace korvanel::test
