// The window's shell duties: the exit prompt, dropped files, and staying
// still while a long operation runs.
#include <gtest/gtest.h>

#include <QAction>
#include <QCheckBox>
#include <QMessageBox>
#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QPushButton>
#include <QSysInfo>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <chrono>
#include <string>
#include <thread>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "app/feedback_progress.h"
#include "app/feedback_relay.h"
#include "ops/job_runner.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "ui/model/viewer_controller.h"
#include "ui/qt/canvas.h"
#include "ui/qt/main_window.h"
#include "ui/qt/modal_answer.h"

namespace korvanel {
namespace {

using namespace std::chrono_literals;

// "*.y8" files are 4 x 2 grey images, "*.q8" files 2 x 2.
class ShellOpsTest : public ::testing::Test {
 protected:
  ShellOpsTest() {
    app.ApplyConfiguration(config);
    app.SetOpenRawPrompt(false);
    EXPECT_TRUE(app.LoadFormats(dir.Write("rules.fmt",
                                          "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\nheight = 2\n"
                                          "format = [],P,Y,8\n</format_group>\n<format_group>\nfile_pattern = "
                                          "[.*\\.q8]\nwidth = 2\nheight = 2\nformat = [],P,Y,8\n</format_group>\n")
                                    .string()));
    window = std::make_unique<CMainWindow>(app, config);
    window->resize(640, 480);
    window->show();
    EXPECT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }
  ~ShellOpsTest() override {
    relay.SetTarget(console);
    window.reset();
    app.CloseAllImages();
  }
  std::string File(const std::string& name, size_t bytes) { return dir.Write(name, std::string(bytes, 'x')).string(); }
  void Drop(const QList<QUrl>& urls) {
    QMimeData mime;
    mime.setUrls(urls);
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &enter);
    drag_accepted = enter.isAccepted();
    QDropEvent drop(QPointF(10, 10), Qt::CopyAction, &mime, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(window.get(), &drop);
  }
  static QUrl Local(const std::string& path) { return QUrl::fromLocalFile(QString::fromStdString(path)); }

  test::TempDir dir;
  ConfigValues config = CConfiguration(std::filesystem::temp_directory_path()).Values();
  // Questions and messages land here unless a test hands them to the window.
  test::RecordingFeedback console;
  CFeedbackRelay relay{console};
  AppState app{relay};
  std::unique_ptr<CMainWindow> window;
  bool drag_accepted = false;
};

// Which setting asks what is the model's; here the answer must keep the window.
TEST_F(ShellOpsTest, TheExitQuestionIsAYesNoBoxTitledAppExit) {
  relay.SetTarget(window->Feedback());
  app.SetCloseOption(CloseOption::Always);
  QString text;
  QString title;
  test::AnswerNextMessageBox(QMessageBox::No, &text, &title);
  window->close();
  EXPECT_EQ(text, "Are you sure to want to exit?");
  EXPECT_EQ(title, "App exit");
  EXPECT_TRUE(window->isVisible());
  test::AnswerNextMessageBox(QMessageBox::Yes);
  window->close();
  EXPECT_FALSE(window->isVisible());
}

TEST_F(ShellOpsTest, TheModificationQuestionOffersFourAnswersAndTheCheckBox) {
  struct Case {
    const char* button;
    bool untick;
    ModifiedAnswer answer;
  };
  const Case cases[] = {
      {"Yes", false, ModifiedAnswer::Yes},
      {"Ignore", false, ModifiedAnswer::Ignore},
      {"Yes to all", true, ModifiedAnswer::YesToAll},
      {"Ignore all", true, ModifiedAnswer::IgnoreAll},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.button);
    QString text;
    QString title;
    QString box_text;
    test::AnswerNextModal([&](QWidget* modal) {
      auto* box = qobject_cast<QMessageBox*>(modal);
      ASSERT_NE(box, nullptr);
      text = box->text();
      title = box->windowTitle();
      box_text = box->checkBox()->text();
      if (c.untick) box->checkBox()->setChecked(false);
      for (QAbstractButton* button : box->buttons()) {
        if (button->text() == c.button) button->click();
      }
    });
    bool keep = true;
    EXPECT_EQ(window->AskFileModified("/data/a.raw", keep), c.answer);
    EXPECT_EQ(keep, !c.untick);
    EXPECT_EQ(text, "File /data/a.raw was modified outside.\nReload?");
    EXPECT_EQ(title, "File Modification Notification");
    EXPECT_EQ(box_text, "Try reloading with current image settings");
  }
}

TEST_F(ShellOpsTest, AltSlashAndAltQuestionOpenAbout) {
  const QString expected = QString("Korvanel, Version 1.4 (Stable)\n%1 (x64)\nDev Ver: 1.4.01054").arg(QSysInfo::prettyProductName());
  for (Qt::Key key : {Qt::Key_Slash, Qt::Key_Question}) {
    // Window shortcuts need the window active again after the last box.
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QString text;
    test::AnswerNextMessageBox(QMessageBox::Ok, &text);
    QTest::keyClick(QApplication::focusWidget(), key, Qt::AltModifier);
    QTest::qWait(50);
    EXPECT_EQ(text, expected) << key;
  }
}

TEST_F(ShellOpsTest, FileExitNeverAsks) {
  ASSERT_TRUE(app.OpenImage(File("a.y8", 8)));
  ASSERT_TRUE(app.NewImageFromView());
  app.SetCloseOption(CloseOption::Always);
  console.answer = false;
  window->ActionFor(Command::Exit)->trigger();
  EXPECT_TRUE(console.questions.empty());
  EXPECT_FALSE(window->isVisible());
}

// What a drop opens is the model's; here a drag of local files is taken and a
// remote address is not.
TEST_F(ShellOpsTest, DroppedLocalFilesReachTheViewerAndRemoteOnesAreRefused) {
  Drop({QUrl("http://example.invalid/a.y8")});
  EXPECT_FALSE(drag_accepted);
  EXPECT_TRUE(app.Images().Empty());
  Drop({Local(File("a.y8", 8)), Local(File("b.y8", 8))});
  EXPECT_TRUE(drag_accepted);
  ASSERT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(app.CompareMode());
  EXPECT_EQ(app.Images().At(2).display_name, "Diff_a.y8 <--> b.y8");
}

// Runs until cancelled, or gives up after a while so a broken cancel fails
// the test instead of hanging it.
class WaitForCancelJob : public IImageProcessorThread {
 public:
  bool Run() override {
    const auto give_up = std::chrono::steady_clock::now() + 5s;
    while (!CancelRequested(flag_) && std::chrono::steady_clock::now() < give_up) std::this_thread::sleep_for(2ms);
    cancelled = CancelRequested(flag_);
    return true;
  }
  void SetCancelFlag(const CancelFlag* flag) override { flag_ = flag; }
  std::atomic<bool> cancelled{false};

 private:
  const CancelFlag* flag_ = nullptr;
};

TEST_F(ShellOpsTest, WhileAnOperationRunsInputAndClosingAreIgnoredAndCancelStopsIt) {
  relay.SetTarget(window->Feedback());
  ASSERT_TRUE(app.OpenImage(File("a.y8", 8)));
  JobRunner& jobs = app.Jobs();
  if (jobs.Pool() == nullptr) GTEST_SKIP() << "no worker pool on this machine";
  const QString zoom_before = window->StatusTexts()[kStatusZoomPart];

  WaitForCancelJob job;
  CFeedbackProgress progress(app.Feedback());
  progress.Start("Save image", 100);
  jobs.SetJobs({&job});
  jobs.SetProgressSink(&progress);

  bool busy_seen = false;
  QString title;
  QTimer poll;
  QObject::connect(&poll, &QTimer::timeout, [&] {
    QWidget* modal = QApplication::activeModalWidget();
    if (modal == nullptr || !title.isEmpty()) return;
    title = modal->windowTitle();
    busy_seen = window->Controller().Busy();
    QTest::keyClick(&window->Canvas(), Qt::Key_Plus, Qt::KeypadModifier);
    window->close();
    QTest::mouseClick(modal->findChild<QPushButton*>(), Qt::LeftButton);
  });
  poll.start(20);
  const bool completed = jobs.RunJobs();
  poll.stop();
  jobs.SetProgressSink(nullptr);

  EXPECT_EQ(title, "Save image");
  EXPECT_TRUE(busy_seen);
  EXPECT_FALSE(completed);
  EXPECT_TRUE(job.cancelled.load());
  EXPECT_FALSE(window->Controller().Busy());
  EXPECT_EQ(window->StatusTexts()[kStatusZoomPart], zoom_before) << "the zoom key was ignored";
  EXPECT_TRUE(window->isVisible()) << "the close request was ignored";
}

}  // namespace
}  // namespace korvanel
