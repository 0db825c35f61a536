#include "files/save_path.h"

#include <gtest/gtest.h>

#include "support/recording_save_host.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

TEST(SaveFolder, BesideTheSourceOrInTheWorkPath) {
  SaveSettings settings;
  settings.work_path = "/work/";
  EXPECT_EQ(SaveFolder("/data/cam.raw", true, settings), "/data");
  EXPECT_EQ(SaveFolder("cam.raw", true, settings), ".");
  EXPECT_EQ(SaveFolder("New_Copy_cam.raw", false, settings), "/work");
  settings.work_path.clear();
  EXPECT_EQ(SaveFolder("New_Copy_cam.raw", false, settings), ".");
}

TEST(ResolveSavePath, NamesFromTheOptionTheFolderOrTheDialog) {
  test::TempDir dir;
  const std::string folder = dir.path().string();
  SaveSettings settings;
  test::RecordingSaveHost host;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "T", host), folder + "/a.raw");
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {"forced.bin", false}, settings, "T", host), "forced.bin");

  settings.auto_naming = false;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "T", host), std::nullopt);
  host.dialog_answer = folder + "/chosen.raw";
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "T", host), folder + "/chosen.raw");
  EXPECT_EQ(host.dialogs, (std::vector<std::string>{folder + "/a.raw", folder + "/a.raw"}));
  settings.console_batch = true;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "T", host), std::nullopt);
  EXPECT_EQ(host.dialogs.size(), 2u) << "no dialog without a window";
  EXPECT_TRUE(host.errors.empty());
}

TEST(ResolveSavePath, AnExistingFileIsOverwrittenOnlyWhenAllowed) {
  test::TempDir dir;
  const std::string path = dir.Write("a.raw", "x").string();
  const std::string folder = dir.path().string();
  SaveSettings settings;
  test::RecordingSaveHost host;

  EXPECT_EQ(ResolveSavePath("a.raw", folder, {"", true}, settings, "Save image warning", host), path);
  EXPECT_TRUE(host.questions.empty());

  host.answer = false;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "Save image warning", host), std::nullopt);
  host.answer = true;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "Save image warning", host), path);
  EXPECT_EQ(host.questions,
            std::vector<std::string>(2, "[Save image warning]: The file " + path +
                                            " already exists. Overwrite?"));

  settings.console_batch = true;
  EXPECT_EQ(ResolveSavePath("a.raw", folder, {}, settings, "Save image warning", host), std::nullopt);
  EXPECT_EQ(host.errors,
            std::vector<std::string>{"[Save file error]: The file " + path + " already exists."});
  EXPECT_EQ(host.questions.size(), 2u);
}

}  // namespace
}  // namespace korvanel
