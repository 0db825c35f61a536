// The core's messages and questions as the window shows them: a box with
// the core's caption and text, and the answer the user gives.
#include <gtest/gtest.h>

#include <QMessageBox>
#include <memory>

#include "app/app_state.h"
#include "app/configuration.h"
#include "support/recording_feedback.h"
#include "ui/qt/main_window.h"
#include "ui/qt/modal_answer.h"

namespace korvanel {
namespace {

class QtFeedbackTest : public ::testing::Test {
 protected:
  QtFeedbackTest() { window->show(); }

  test::RecordingFeedback console;
  AppState app{console};
  ConfigValues config = CConfiguration(std::filesystem::temp_directory_path()).Values();
  std::unique_ptr<CMainWindow> window = std::make_unique<CMainWindow>(app, config);
};

TEST_F(QtFeedbackTest, AMessageShowsInABoxWithItsCaption) {
  QString text;
  QString title;
  test::AnswerNextMessageBox(QMessageBox::Ok, &text, &title);
  window->Feedback().ShowMessage("Can't locate missing.raw", "File doesn't exist", MessageStyle::Error);
  EXPECT_EQ(text, "Can't locate missing.raw");
  EXPECT_EQ(title, "File doesn't exist");
}

TEST_F(QtFeedbackTest, AQuestionReturnsTheButtonPressed) {
  test::AnswerNextMessageBox(QMessageBox::Yes);
  EXPECT_TRUE(window->Feedback().AskYesNo("Overwrite?", "Save"));
  test::AnswerNextMessageBox(QMessageBox::No);
  EXPECT_FALSE(window->Feedback().AskYesNo("Overwrite?", "Save"));
}

}  // namespace
}  // namespace korvanel
