#include "app/app_state.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <optional>
#include <utility>

#include "app/console_feedback.h"
#include "image/image_gray.h"
#include "image/image_yuv.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"

namespace korvanel {
namespace {

using test::MakeImage;
using test::RecordingFeedback;

class AppStateTest : public ::testing::Test {
 protected:
  size_t AddGray(const std::string& name, uint32_t w = 8, uint32_t h = 4, bool from_file = false) {
    return app.RegisterImage(MakeImage<CImageGray>(8, w, h), name, "P,Y,8", from_file);
  }
  std::vector<uint32_t> HkIds() const {
    std::vector<uint32_t> ids;
    for (size_t i = 0; i < app.Images().Count(); ++i) ids.push_back(app.Images().At(i).hk_id);
    return ids;
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (size_t i = 0; i < app.Images().Count(); ++i) names.push_back(app.Images().At(i).display_name);
    return names;
  }

  RecordingFeedback feedback;
  AppState app{feedback};
};

TEST_F(AppStateTest, RegisteringNumbersFocusesAndListsInTheMenu) {
  EXPECT_EQ(AddGray("/a/one.raw"), 0u);
  EXPECT_TRUE(feedback.has_images);
  EXPECT_EQ(AddGray("/a/two.raw", 400, 300), 1u);
  EXPECT_EQ(HkIds(), (std::vector<uint32_t>{1, 2}));
  EXPECT_EQ(app.FocusIndex(), 1u);
  EXPECT_EQ(feedback.statuses.back(), "400x300 : Y8");
  EXPECT_EQ(app.Images().At(1).summary, "117.19 KB | /a/two.raw");
  EXPECT_EQ(feedback.menu, (std::vector<MenuEntry>{{"[1] /a/one.raw", 33222}, {"[2] /a/two.raw", 33223}}));
  EXPECT_EQ(feedback.checked, 1u);
}

TEST_F(AppStateTest, TheTwentyFirstImageIsRefused) {
  for (int i = 0; i < 20; ++i) AddGray("img" + std::to_string(i));
  EXPECT_FALSE(app.CheckRoomForImage());
  EXPECT_EQ(feedback.messages.back(), "[Open image error]: Too many open images, reached a max of 20");
  EXPECT_EQ(AddGray("one too many"), kNoIndex);
  EXPECT_EQ(app.Images().Count(), 20u);
  // "New image" hits the same limit.
  feedback.messages.clear();
  EXPECT_FALSE(app.NewImageFromView());
  EXPECT_EQ(feedback.messages, (std::vector<std::string>{
                                   "[Open image error]: Too many open images, reached a max of 20"}));
  EXPECT_EQ(app.Images().Count(), 20u);
}

TEST_F(AppStateTest, ClosingRenumbersAndRebuildsTheMenu) {
  for (const char* n : {"a", "b", "c", "d"}) AddGray(n);
  app.CloseImage(1);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a", "c", "d"}));
  EXPECT_EQ(HkIds(), (std::vector<uint32_t>{1, 2, 3}));
  EXPECT_EQ(feedback.menu,
            (std::vector<MenuEntry>{{"[1] a", 33222}, {"[2] c", 33223}, {"[3] d", 33224}}));
  app.CloseAllImages();
  EXPECT_FALSE(feedback.has_images);
  EXPECT_EQ(app.FocusIndex(), kNoIndex);
}

TEST_F(AppStateTest, ClosingTheFocusReturnsToTheMostRecentOther) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  app.SetFocus(0);
  app.SetFocus(2);
  app.CloseImage(2);
  EXPECT_EQ(app.FocusIndex(), 0u);  // "a" was focused before "c"
  app.CloseImage(0);
  EXPECT_EQ(app.FocusIndex(), 0u);  // "b", now first
  EXPECT_EQ(Names(), (std::vector<std::string>{"b"}));
  EXPECT_EQ(app.FocusHistory(), (std::vector<size_t>{0}));
}

TEST_F(AppStateTest, OpenedPathsCompareIgnoringAsciiCase) {
  AddGray("/img/a.raw", 8, 4, true);
  AddGray("New_Copy_a.raw", 8, 4, false);
  EXPECT_EQ(app.Images().FindPath("/IMG/A.RAW"), 0u);
  EXPECT_FALSE(app.Images().FindPath("/img/b.raw").has_value());
  // Created images have no path to collide with.
  EXPECT_FALSE(app.Images().FindPath("New_Copy_a.raw").has_value());
}

TEST_F(AppStateTest, HkReferencesCountFromBothEnds) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  const ImageRegistry& r = app.Images();
  const std::pair<int32_t, std::optional<size_t>> refs[] = {
      {1, 0}, {3, 2}, {-1, 2}, {-3, 0}, {0, std::nullopt}, {4, std::nullopt}, {-4, std::nullopt}};
  for (const auto& [ref, index] : refs) EXPECT_EQ(r.ResolveHkReference(ref), index) << ref;
}

TEST_F(AppStateTest, NewImageCropsWhenThePointerIsInsideTheRegion) {
  app.RegisterImage(MakeImage<CImageYuv444>(8, 64, 64), "/x/cam.yuv", "I,YUV,8", false);
  ASSERT_TRUE(app.Images().At(0).image->SetRegionOfInterest({10, 20, 19, 29}));

  app.SetHover(0, 19, 29);
  ASSERT_TRUE(app.NewImageFromView());
  EXPECT_EQ(app.Images().At(1).display_name, "New_Copy_cam.xy10_20_wh10x10.yuv");
  EXPECT_EQ(app.Images().At(1).format_text, "I,YUV,8");
  EXPECT_EQ(feedback.statuses.back(),
            "New image: Successfully created New_Copy_cam.xy10_20_wh10x10.yuv (HK id 2)");
  uint32_t w = 0, h = 0;
  app.Images().At(1).image->GetSize(w, h);
  EXPECT_EQ(w, 10u);
  EXPECT_EQ(h, 10u);
  EXPECT_EQ(app.FocusIndex(), 1u);

  app.SetHover(0, 20, 29);
  ASSERT_TRUE(app.NewImageFromView());
  EXPECT_EQ(app.Images().At(2).display_name, "New_Copy_cam.yuv");
  app.Images().At(2).image->GetSize(w, h);
  EXPECT_EQ(w, 64u);

  // Names without extension or folder.
  app.RegisterImage(MakeImage<CImageGray>(8, 4, 4), "dump", "P,Y,8", false);
  app.SetHover(kNoIndex, -1, -1);
  ASSERT_TRUE(app.NewImageFromView());
  EXPECT_EQ(app.Images().At(4).display_name, "New_Copy_dump");
}

TEST_F(AppStateTest, NewImageNeedsAnImageUnderThePointerInCompareMode) {
  EXPECT_FALSE(app.NewImageFromView());
  EXPECT_TRUE(feedback.statuses.empty());  // nothing open: silent
  AddGray("a");
  AddGray("b");
  app.BeginCollecting();
  app.CollectForCompare(kNoIndex);
  ASSERT_TRUE(app.CompareMode());
  app.SetHover(kNoIndex, 0, 0);
  EXPECT_FALSE(app.NewImageFromView());
  EXPECT_EQ(feedback.statuses.back(),
            "New image error: Please make sure you're in some valid image area");
}

// Images a (8x4), b (9x4), c (8x4), d (8x4) with a the focus; kNoIndex is
// "collect all". Other sizes and unknown keys are skipped silently; the
// last key again, or reaching the limit, starts comparing.
TEST_F(AppStateTest, CollectingForCompare) {
  struct Case {
    const char* name;
    int max_party;
    std::vector<size_t> keys;
    bool compare;
    std::vector<size_t> group_or_collected;
    const char* last_status;
    const char* message;
  };
  const Case cases[] = {
      {"all of the focus size", 6, {kNoIndex}, true, {0, 2, 3}, nullptr, nullptr},
      {"all over the limit", 2, {kNoIndex}, false, {}, nullptr,
       "[Compare images error]: Too many images to compare, reached a max of 2"},
      {"by key, ended by repeating the last", 6, {0, 1, 7, 2, 2}, true, {0, 2},
       "Collecting images to compare: [1] [3] ", nullptr},
      {"the only key repeated keeps collecting", 6, {2, 2}, false, {2}, "Collecting images to compare: [3] ",
       nullptr},
      {"the limit starts comparing", 2, {3, 0}, true, {3, 0}, "Collecting images to compare: [4] [1] ", nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    app.CloseAllImages();
    feedback.messages.clear();
    AddGray("a", 8, 4);
    AddGray("b", 9, 4);
    AddGray("c", 8, 4);
    AddGray("d", 8, 4);
    app.SetFocus(0);
    app.SetMaxComparisonParty(c.max_party);
    app.BeginCollecting();
    for (const size_t key : c.keys) app.CollectForCompare(key);
    EXPECT_EQ(app.CompareMode(), c.compare);
    EXPECT_EQ(c.compare ? app.ComparisonGroup() : app.Collected(), c.group_or_collected);
    if (c.last_status != nullptr) {
      EXPECT_EQ(feedback.statuses.back(), c.last_status);
    }
    if (c.message != nullptr) {
      EXPECT_EQ(feedback.messages.back(), c.message);
    }
  }
  // Collecting all with no other image of the focus size ends collecting.
  app.CloseAllImages();
  AddGray("a", 8, 4);
  AddGray("b", 9, 4);
  app.BeginCollecting();
  app.CollectForCompare(kNoIndex);
  EXPECT_FALSE(app.CompareMode());
  EXPECT_FALSE(app.Collecting());
}

TEST_F(AppStateTest, ClosingAMemberOfAPairEndsCompareAndFocusesTheSurvivor) {
  for (const char* n : {"a", "b", "c", "d"}) AddGray(n);
  app.BeginCollecting();
  app.CollectForCompare(1);
  app.CollectForCompare(3);
  app.CollectForCompare(3);
  ASSERT_TRUE(app.CompareMode());
  app.CloseImage(1);
  EXPECT_FALSE(app.CompareMode());
  EXPECT_EQ(app.FocusIndex(), 2u);  // "d", moved down from 3
  EXPECT_EQ(app.Images().At(app.FocusIndex()).display_name, "d");
}

TEST_F(AppStateTest, ClosingAMemberOfALargerGroupShiftsTheGroup) {
  for (const char* n : {"a", "b", "c", "d"}) AddGray(n);
  app.BeginCollecting();
  app.CollectForCompare(kNoIndex);
  ASSERT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1, 2, 3}));
  app.CloseImage(1);
  EXPECT_TRUE(app.CompareMode());
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1, 2}));
}

TEST_F(AppStateTest, NewDuplicateNeverCrops) {
  AddGray("/x/cam.raw", 64, 64);
  ASSERT_TRUE(app.Images().At(0).image->SetRegionOfInterest({10, 20, 19, 29}));
  app.SetHover(0, 12, 22);
  ASSERT_TRUE(app.NewDuplicateFromView());
  EXPECT_EQ(app.Images().At(1).display_name, "New_Copy_cam.raw");
}

TEST_F(AppStateTest, LayerModeIsRefusedOutsideCompareMode) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  EXPECT_FALSE(app.SetLayerMode(true));
  EXPECT_FALSE(app.LayerMode());
  EXPECT_TRUE(app.SetLayerMode(false));

  app.SetFocus(1);
  app.CompareImages({0, 1, 2});
  ASSERT_TRUE(app.SetLayerMode(true));
  EXPECT_TRUE(app.LayerMode());
  EXPECT_EQ(app.VisibleLayer(), 1u);  // the focus image's layer
  EXPECT_EQ(app.PreviousLayer(), 1u);
  EXPECT_FALSE(app.SetVisibleLayer(1));  // already shown
  EXPECT_FALSE(app.SetVisibleLayer(3));  // no such layer
  ASSERT_TRUE(app.SetVisibleLayer(2));
  EXPECT_EQ(app.VisibleLayer(), 2u);
  EXPECT_EQ(app.PreviousLayer(), 1u);
  EXPECT_EQ(app.FocusIndex(), 2u);

  app.LeaveCompareMode();
  EXPECT_FALSE(app.LayerMode());
  EXPECT_EQ(app.VisibleLayer(), 0u);
  EXPECT_FALSE(app.SetVisibleLayer(1));
}

TEST_F(AppStateTest, ANewComparisonStartsSideBySide) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  app.CompareImages({0, 1, 2});
  ASSERT_TRUE(app.SetLayerMode(true));
  app.CompareImages({1, 2});
  EXPECT_FALSE(app.LayerMode());
  EXPECT_EQ(app.VisibleLayer(), 0u);
}

// Layers are positions in the group: closing or removing a member keeps the
// image on show where it can, and leaving compare mode ends layer mode.
TEST_F(AppStateTest, LayersFollowTheGroupWhenMembersGo) {
  struct Case {
    const char* name;
    size_t visible;         // layer shown before
    size_t previous;        // the layer before that
    bool close;             // CloseImage, else RemoveFromComparison
    size_t index;           // the image that goes
    size_t want_visible;
    size_t want_previous;
    std::string want_focus;  // display name of the focus image
  };
  const Case cases[] = {
      {"close below the shown layer", 3, 1, true, 0, 2, 0, "d"},
      {"close the shown layer", 1, 3, true, 1, 1, 2, "c"},
      {"close the last, shown layer", 3, 0, true, 3, 2, 0, "c"},
      {"remove below the shown layer", 2, 0, false, 1, 1, 0, "c"},
      {"remove the shown layer", 2, 3, false, 2, 2, 2, "d"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    app.CloseAllImages();
    for (const char* n : {"a", "b", "c", "d"}) AddGray(n);
    app.CompareImages({0, 1, 2, 3});
    ASSERT_TRUE(app.SetLayerMode(true));
    app.SetVisibleLayer(c.previous);
    app.SetVisibleLayer(c.visible);
    if (c.close) {
      app.CloseImage(c.index);
    } else {
      app.RemoveFromComparison(c.index);
    }
    EXPECT_TRUE(app.LayerMode());
    EXPECT_EQ(app.ComparisonGroup().size(), 3u);
    EXPECT_EQ(app.VisibleLayer(), c.want_visible);
    EXPECT_EQ(app.PreviousLayer(), c.want_previous);
    EXPECT_EQ(app.Images().At(app.FocusIndex()).display_name, c.want_focus);
  }
}

TEST_F(AppStateTest, RemovingFromThePartyKeepsTheImageOpen) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  app.CompareImages({0, 1, 2});
  app.SetFocus(1);
  app.RemoveFromComparison(1);
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 2}));
  EXPECT_EQ(app.FocusIndex(), 0u);
  app.RemoveFromComparison(1);  // not a member
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 2}));
  app.RemoveFromComparison(2);  // one left: no comparison
  EXPECT_FALSE(app.CompareMode());
  EXPECT_TRUE(app.ComparisonGroup().empty());
}

TEST_F(AppStateTest, EndingCollectionLeavesARunningComparisonAlone) {
  for (const char* n : {"a", "b", "c"}) AddGray(n);
  app.CompareImages({0, 1});
  app.BeginCollecting();
  app.CollectForCompare(2);
  app.EndCollecting();
  EXPECT_FALSE(app.Collecting());
  EXPECT_TRUE(app.Collected().empty());
  EXPECT_TRUE(app.CompareMode());
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1}));
}

TEST_F(AppStateTest, OnlyThePartyKeepsItsRenditions) {
  struct Case {
    std::vector<size_t> compared;  // empty: the focus image alone
    std::vector<bool> kept;
  };
  const Case cases[] = {
      {{}, {false, false, false, true}},
      {{0, 2}, {true, false, true, false}},
  };
  for (const Case& c : cases) {
    app.CloseAllImages();
    for (int i = 0; i < 4; ++i) AddGray("img" + std::to_string(i));
    if (!c.compared.empty()) app.CompareImages(c.compared);
    std::vector<bool> kept;
    for (size_t i = 0; i < 4; ++i) {
      auto& image = dynamic_cast<CImageConcreteBase&>(*app.Images().At(i).image);
      ASSERT_NE(image.BuildDisplay(), nullptr);
    }
    app.ReleaseHiddenRenditions();
    for (size_t i = 0; i < 4; ++i) {
      kept.push_back(dynamic_cast<const CImageConcreteBase&>(*app.Images().At(i).image).HasDisplay());
    }
    EXPECT_EQ(kept, c.kept) << c.compared.size();
  }
}

TEST_F(AppStateTest, ExitPromptFollowsTheCloseOption) {
  AddGray("a");
  app.SetCloseOption(CloseOption::Never);
  EXPECT_TRUE(app.ConfirmExit());
  app.SetCloseOption(CloseOption::Always);
  feedback.answer = false;
  EXPECT_FALSE(app.ConfirmExit());
  EXPECT_EQ(feedback.questions.back(), "[App exit]: Are you sure to want to exit?");

  app.SetCloseOption(CloseOption::NewCreatedImage);
  feedback.questions.clear();
  EXPECT_TRUE(app.ConfirmExit());
  EXPECT_TRUE(feedback.questions.empty());
  ASSERT_TRUE(app.NewImageFromView());
  const IImageContainer* created = app.Images().At(1).image.get();
  EXPECT_TRUE(app.IsCreatedUnsaved(created));
  EXPECT_FALSE(app.ConfirmExit());
  EXPECT_EQ(feedback.questions.back(),
            "[App exit]: Some images were created but weren't saved! Confirm exit?");
  app.MarkSaved(created);
  EXPECT_TRUE(app.ConfirmExit());

  // Closing an unsaved result also drops it from the set.
  ASSERT_TRUE(app.NewImageFromView());
  app.CloseImage(2);
  EXPECT_TRUE(app.ConfirmExit());
}

TEST_F(AppStateTest, MessagesAreTruncatedToTheSharedBuffer) {
  const std::string long_text(3000, 'x');
  const char* text = app.FormatMessage("Can't locate %s", long_text.c_str());
  EXPECT_EQ(std::string(text).size(), 1023u);
  EXPECT_EQ(std::string(text).substr(0, 16), "Can't locate xxx");
}

TEST_F(AppStateTest, BatchConsoleModeKeepsNoMenu) {
  app.SetCommandsPresent(true);
  app.SetConsoleMode(true);
  AddGray("a");
  EXPECT_TRUE(app.ImagesMenu().empty());
  EXPECT_TRUE(feedback.statuses.empty());
}

TEST(ConsoleFeedback, PrintsTitleAndTextLines) {
  std::FILE* out = std::tmpfile();
  ASSERT_NE(out, nullptr);
  CConsoleFeedback console(out);
  console.ShowMessage("Can't locate /x", "File doesn't exist", MessageStyle::Error);
  console.StatusMessage("Loading image /x...");
  EXPECT_FALSE(console.AskYesNo("Overwrite?", "Save"));
  std::rewind(out);
  char buffer[256] = {};
  const size_t n = std::fread(buffer, 1, sizeof(buffer) - 1, out);
  std::fclose(out);
  EXPECT_EQ(std::string(buffer, n), "[File doesn't exist]: Can't locate /x\nLoading image /x...\n");
}

}  // namespace
}  // namespace korvanel
