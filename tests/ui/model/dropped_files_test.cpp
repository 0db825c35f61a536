#include "ui/model/dropped_files.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "support/temp_dir.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

// "*.y8" files are 4 x 2 grey, "*.q8" files 2 x 2; "*.any" matches nothing.
class DroppedFilesTest : public test::ViewerFixture {
 protected:
  DroppedFilesTest() {
    EXPECT_TRUE(app.LoadFormats(dir.Write(
        "rules.fmt",
        "<format_group>\nfile_pattern = [.*\\.y8]\nwidth = 4\nheight = 2\nformat = [],P,Y,8\n</format_group>\n"
        "<format_group>\nfile_pattern = [.*\\.q8]\nwidth = 2\nheight = 2\nformat = [],P,Y,8\n</format_group>\n")));
    app.SetOpenRawPrompt(false);
  }
  std::string File(const char* name, size_t bytes) { return dir.Write(name, std::string(bytes, 'x')).string(); }

  test::TempDir dir;
};

TEST_F(DroppedFilesTest, TwoEqualFilesMakeAPartyAndADiff) {
  const std::string a = File("a.y8", 8), b = File("b.y8", 8);
  controller.OnDrop({a, b});
  ASSERT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(app.CompareMode());
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1}));
  EXPECT_EQ(app.Images().At(2).display_name, "Diff_a.y8 <--> b.y8");
  EXPECT_TRUE(feedback.messages.empty());
}

TEST_F(DroppedFilesTest, OtherDropsOnlyOpen) {
  struct Case {
    const char* name;
    std::vector<const char*> dropped;
    size_t opened;
  };
  const Case cases[] = {
      {"different sizes", {"a.y8", "c.q8"}, 2},
      {"three files", {"a.y8", "b.y8", "d.y8"}, 3},
      {"one fails to open", {"a.y8", "bad.any"}, 1},
      {"the same file twice", {"a.y8", "a.y8"}, 1},
      {"one file", {"a.y8"}, 1},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    app.CloseAllImages();
    std::vector<std::string> paths;
    for (const char* name : c.dropped) paths.push_back(File(name, std::string(name).ends_with(".q8") ? 4 : 8));
    controller.OnDrop(paths);
    EXPECT_EQ(app.Images().Count(), c.opened);
    EXPECT_FALSE(app.CompareMode());
  }
}

TEST_F(DroppedFilesTest, APartyLimitOfTwoOrAComparisonRunningStartsNoDiff) {
  app.SetMaxComparisonParty(2);
  controller.OnDrop({File("a.y8", 8), File("b.y8", 8)});
  EXPECT_EQ(app.Images().Count(), 2u);
  EXPECT_FALSE(app.CompareMode());

  app.SetMaxComparisonParty(6);
  app.ForceComparison({0, 1});
  controller.OnDrop({File("c.y8", 8), File("d.y8", 8)});
  EXPECT_EQ(app.Images().Count(), 4u);
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1}));
}

TEST_F(DroppedFilesTest, BadPathsSayWhyAndTheRegistryLimitHolds) {
  std::filesystem::create_directory(dir / "folder");
  const std::string fifo = (dir / "pipe.y8").string();
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  controller.OnDrop({(dir / "folder").string(), fifo});
  EXPECT_TRUE(app.Images().Empty());
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{
                                   "[File doesn't exist]: Can't locate " + (dir / "folder").string(),
                                   "[File doesn't exist]: Can't locate " + fifo}));

  for (int i = 0; i < 19; ++i) AddGray(4, 2, "n" + std::to_string(i));
  feedback.messages.clear();
  // The 20th opens; the 21st is refused, and no diff follows.
  controller.OnDrop({File("a.y8", 8), File("b.y8", 8)});
  EXPECT_EQ(app.Images().Count(), 20u);
  EXPECT_FALSE(app.CompareMode());
  EXPECT_EQ(feedback.messages, std::vector<std::string>{"[Open image error]: Too many open images, reached a max of 20"});
}

}  // namespace
}  // namespace korvanel
