#include <gtest/gtest.h>
#include <sys/stat.h>

#include <array>
#include <chrono>
#include <filesystem>

#include "app/app_state.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

uint32_t Sample(const IImageContainer& image, uint32_t x) {
  std::array<uint32_t, 3> values{};
  EXPECT_TRUE(image.GetSampleValues(x, 0, values));
  return values[0];
}

// "*.y8" files are 4 x 2 grey images by rule; "*.any" files match nothing.
class ReloadWatchTest : public ::testing::Test {
 protected:
  ReloadWatchTest() {
    const std::string rules = dir.Write(
        "rules.fmt", "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\nheight = 2\nformat = [],P,Y,8\n</format_group>\n");
    EXPECT_TRUE(app.LoadFormats(rules));
  }
  // Rewrites the file and moves its time on, as another program would.
  void Rewrite(const std::filesystem::path& file, std::string_view content) {
    const auto before = std::filesystem::last_write_time(file);
    dir.Write(file.filename().string(), content);
    std::filesystem::last_write_time(file, before + std::chrono::seconds(5));
  }
  std::vector<uint8_t> FirstRow(size_t index) {
    const IImageContainer& image = *app.Images().At(index).image;
    std::vector<uint8_t> row(4);
    for (uint32_t x = 0; x < 4; ++x) row[x] = static_cast<uint8_t>(Sample(image, x));
    return row;
  }

  test::TempDir dir;
  test::RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(ReloadWatchTest, OnlyWatchedFilesWithANewTimeCountAsChanged) {
  const auto a = dir.Write("a.y8", "ABCDEFGH");
  const auto b = dir.Write("b.y8", "abcdefgh");
  const auto c = dir.Write("c.y8", "12345678");
  ASSERT_TRUE(app.OpenImage(a.string()) && app.OpenImage(b.string()) && app.OpenImage(c.string()));
  EXPECT_TRUE(app.Images().At(0).watched);
  EXPECT_TRUE(app.ChangedFiles().empty());

  Rewrite(a, "HGFEDCBA");
  Rewrite(b, "hgfedcba");
  app.Images().At(1).watched = false;  // "Ignore" was answered for it
  std::filesystem::remove(c);          // a file that cannot be read is no change
  EXPECT_EQ(app.ChangedFiles(), std::vector<size_t>{0});
}

TEST_F(ReloadWatchTest, CreatedImagesAreNeverWatched) {
  const auto a = dir.Write("a.y8", "ABCDEFGH");
  ASSERT_TRUE(app.OpenImage(a.string()));
  ASSERT_TRUE(app.NewImageFromView());
  EXPECT_FALSE(app.Images().At(1).watched);
  Rewrite(a, "HGFEDCBA");
  EXPECT_EQ(app.ChangedFiles(), std::vector<size_t>{0});
}

TEST_F(ReloadWatchTest, ReloadKeepsHkIdNameAndUnsavedState) {
  const auto a = dir.Write("a.y8", "ABCDEFGH");
  const auto b = dir.Write("b.y8", "abcdefgh");
  ASSERT_TRUE(app.OpenImage(a.string()) && app.OpenImage(b.string()));
  Rewrite(b, "zyxwvuts");
  const uint64_t serial = app.Images().At(1).serial;

  ASSERT_TRUE(app.ReloadImage(1, true));
  const ImageRecord& record = app.Images().At(1);
  EXPECT_EQ(record.hk_id, 2u);
  EXPECT_EQ(record.serial, serial);
  EXPECT_EQ(record.display_name, b.string());
  EXPECT_EQ(FirstRow(1), (std::vector<uint8_t>{'z', 'y', 'x', 'w'}));
  EXPECT_FALSE(app.IsCreatedUnsaved(record.image.get()));
  EXPECT_TRUE(app.ChangedFiles().empty());
  EXPECT_TRUE(feedback.messages.empty());
}

TEST_F(ReloadWatchTest, ReloadWithTheCurrentSettingsReadsAFileNoRuleMatches) {
  // Opened through the prompt: only the kept expression and size read it.
  const auto raw = dir.Write("dump.any", "ABCDEF");
  class Answering : public test::RecordingFeedback {
   public:
    bool AskOpenRawFormat(std::string_view, OpenRawAnswer& answer) override {
      if (asked++ > 0) return false;
      answer = {"P,Y,8", 3, 2};
      return true;
    }
    int asked = 0;
  } prompt;
  AppState prompted(prompt);
  ASSERT_TRUE(prompted.OpenImage(raw.string()));
  Rewrite(raw, "UVWXYZ");
  EXPECT_TRUE(prompted.ReloadImage(0, true));
  EXPECT_EQ(Sample(*prompted.Images().At(0).image, 0), 'U');
  EXPECT_EQ(prompt.asked, 1);
}

TEST_F(ReloadWatchTest, AReloadThatNoLongerFitsKeepsTheOldImage) {
  const auto a = dir.Write("a.y8", "ABCDEFGH");
  ASSERT_TRUE(app.OpenImage(a.string()));
  Rewrite(a, "ABC");  // too short for 4 x 2 by any rule
  EXPECT_FALSE(app.ReloadImage(0, true));
  EXPECT_EQ(feedback.messages.back(), "[Open image error]: Can't open " + a.string() + " (unsupported format)");
  EXPECT_EQ(FirstRow(0), (std::vector<uint8_t>{'A', 'B', 'C', 'D'}));
  // Asked once per change, not at every poll.
  EXPECT_TRUE(app.ChangedFiles().empty());
}

TEST_F(ReloadWatchTest, FoldersAndPipesAreNotOpened) {
  std::filesystem::create_directory(dir / "folder.y8");
  const std::string fifo = (dir / "pipe.y8").string();
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  for (const std::string& path : {(dir / "folder.y8").string(), fifo}) {
    SCOPED_TRACE(path);
    EXPECT_FALSE(app.OpenImage(path));
    EXPECT_EQ(feedback.messages.back(), "[File doesn't exist]: Can't locate " + path);
  }
  EXPECT_TRUE(app.Images().Empty());
}

}  // namespace
}  // namespace korvanel
