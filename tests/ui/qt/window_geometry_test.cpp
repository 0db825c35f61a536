// The window's first size and its status bar, in the logical pixels Qt lays
// them out in. The hidpi run repeats these under QT_SCALE_FACTOR=2, where
// device and logical pixels differ.
#include <gtest/gtest.h>

#include <QApplication>
#include <QScreen>
#include <QStatusBar>
#include <QTest>
#include <memory>

#include "app/app_state.h"
#include "app/configuration.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "ui/model/readout.h"
#include "ui/model/status_bar.h"
#include "ui/qt/main_window.h"

namespace korvanel {
namespace {

class WindowGeometryTest : public ::testing::Test {
 protected:
  WindowGeometryTest() { app.ApplyConfiguration(config); }
  ~WindowGeometryTest() override {
    window.reset();
    app.CloseAllImages();
  }
  void Open() {
    window = std::make_unique<CMainWindow>(app, config);
    window->show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
  }

  ConfigValues config = CConfiguration(std::filesystem::temp_directory_path()).Values();
  test::RecordingFeedback console;
  AppState app{console};
  std::unique_ptr<CMainWindow> window;
};

TEST_F(WindowGeometryTest, TheFirstWindowFitsTheScreensFreeArea) {
  Open();
  const QSize free = window->screen()->availableGeometry().size();
  EXPECT_LE(window->width(), free.width());
  EXPECT_LE(window->height(), free.height());
  EXPECT_TRUE(window->statusBar()->isVisible());
}

// With the cursor away from the images, part 0 shows the long out-of-range
// text only where its part of the status bar has room for it.
TEST_F(WindowGeometryTest, TheOutOfRangeTextFitsItsStatusPart) {
  app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false);
  Open();
  const int needed = window->statusBar()->fontMetrics().horizontalAdvance(kOutOfRangeText);
  bool saw_long = false;
  bool saw_short = false;
  for (int width = 520; width <= 1600; width += 40) {
    window->resize(width, 300);
    QTest::qWait(10);
    const bool fits = needed <= StatusPartWidths(window->width())[kStatusReadoutPart];
    EXPECT_EQ(window->StatusTexts()[kStatusReadoutPart].toStdString(),
              fits ? kOutOfRangeText : kOutOfRangeShortText)
        << "window " << window->width() << " wide, text " << needed;
    (fits ? saw_long : saw_short) = true;
  }
  EXPECT_TRUE(saw_long && saw_short);
}

}  // namespace
}  // namespace korvanel
