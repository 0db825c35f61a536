#include "app/save_commands.h"

#include <gtest/gtest.h>

#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

class SaveCommandsTest : public ::testing::Test {
 protected:
  test::TempDir dir;
  test::RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(SaveCommandsTest, SavingACreatedImageClearsItsUnsavedMark) {
  ConfigValues values;
  values.system.auto_file_naming = true;
  values.system.work_path = dir.path().string();
  values.developer.save_image_text_hex_c_array = true;
  app.ApplyConfiguration(values);
  const size_t index =
      app.RegisterImage(test::MakeImage<CImageGray>(8, 2, 1), "New_Copy_a.raw", "P,Y,8", false);
  const IImageContainer* image = app.Images().At(index).image.get();
  app.MarkCreatedUnsaved(image);
  ASSERT_TRUE(app.IsCreatedUnsaved(image));

  ASSERT_TRUE(SaveFocusImages(app, {SaveFormat::HexText, SavePacking::Original, false}));
  EXPECT_FALSE(app.IsCreatedUnsaved(image));
  // Created images go to the work path; the configuration asked for C arrays.
  EXPECT_EQ(test::ReadWholeFile(dir / "New_Copy_a.2x1.hex.txt"),
            "const unsigned char rawY[2] = {\n\t0x00, 0x01\n};\t// 2 bytes\n");
  ASSERT_GE(feedback.statuses.size(), 2u);
  EXPECT_EQ(feedback.statuses[feedback.statuses.size() - 2], "Saving image(s)...");
  EXPECT_EQ(feedback.statuses.back().rfind("Saved '" + dir.File("New_Copy_a.2x1.hex.txt") + "' (", 0), 0u);
}

TEST_F(SaveCommandsTest, InteractiveSavesAskBeforeOverwriting) {
  ConfigValues values;
  values.system.auto_file_naming = true;
  values.system.work_path = dir.path().string();
  app.ApplyConfiguration(values);
  dir.Write("New_Copy_b.2x1.raw", "old");
  const size_t index =
      app.RegisterImage(test::MakeImage<CImageGray>(8, 2, 1), "New_Copy_b.raw", "P,Y,8", false);
  feedback.answer = false;
  EXPECT_FALSE(SaveImagesAt(app, {index}, {}, {}));
  EXPECT_EQ(feedback.questions, std::vector<std::string>{"[Save image warning]: The file " +
                                                         dir.File("New_Copy_b.2x1.raw") +
                                                         " already exists. Overwrite?"});
  EXPECT_EQ(test::ReadWholeFile(dir / "New_Copy_b.2x1.raw"), "old");
  // Without automatic naming the window asks for a name; the console cannot.
  app.SetAutoFileNaming(false);
  EXPECT_FALSE(SaveImagesAt(app, {index}, {}, {}));
  EXPECT_FALSE(SaveStatisticsAt(app, 5, {}));
  EXPECT_FALSE(ExportPngAt(app, 5, {}));
}

}  // namespace
}  // namespace korvanel
