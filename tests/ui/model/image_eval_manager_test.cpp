#include "ui/model/image_eval_manager.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/app_state.h"
#include "image/image_gray.h"
#include "support/image_builders.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using Names = std::vector<std::string>;

class ImageEvalManagerTest : public ::testing::Test {
 protected:
  ImageEvalManagerTest() { UseListAt(dir / "list.txt"); }
  void UseListAt(const std::filesystem::path& path) {
    ConfigValues values;
    values.system.ieval_file_path = path.string();
    app.ApplyConfiguration(values);
  }
  void AddGray() { app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), "a.raw", "P,Y,8", false); }
  DialogResult Save(const std::string& name, const std::string& expression) {
    manager.save_name = name;
    manager.expression = expression;
    return manager.SaveExpression(app, [this](std::string_view question) {
      questions.emplace_back(question);
      return overwrite_answer;
    });
  }

  test::TempDir dir;
  test::RecordingFeedback feedback;
  AppState app{feedback};
  CImageEvalManager manager{ConfigDialogIeval{}};
  std::vector<std::string> questions;
  bool overwrite_answer = false;
};

// The rule itself is the list's; the dialog adds the title and the history.
TEST_F(ImageEvalManagerTest, NamesFollowTheNameRule) {
  const std::string kRule =
      "Illegal I-Eval name. Make sure it starts with [a-z,A-Z,_] and followed by alpha-numeric or any of ' "
      ":;,-+*/=~_&|#!?(){}[]' chars. The name can't exceed length of 180";
  const std::pair<std::string, bool> cases[] = {
      {std::string(180, 'a'), true}, {"1abc", false},
  };
  for (const auto& [name, accepted] : cases) {
    const DialogResult result = Save(name, "i*2");
    if (accepted) {
      EXPECT_FALSE(result.has_value()) << name;
      EXPECT_NE(app.SavedIEvals().Find(name), nullptr) << name;
    } else {
      EXPECT_EQ(result, (DialogMessage{kRule, "Save name error"})) << name;
      EXPECT_EQ(app.SavedIEvals().Find(name), nullptr) << name;
    }
  }
  EXPECT_EQ(app.EditHistory().Entries(kIEvalNameTag).front(), std::string(180, 'a'));
}

TEST_F(ImageEvalManagerTest, AnExistingNameIsOverwrittenOnlyWhenTheUserAgrees) {
  ASSERT_FALSE(Save("Erode", "{i}").has_value());
  EXPECT_EQ(Save("Erode", "{c;c;c}"), DialogMessage{});
  EXPECT_EQ(*app.SavedIEvals().Find("Erode"), "{i}");
  // Without the prompt the item is replaced at once.
  manager.overwrite_saved = true;
  EXPECT_FALSE(Save("Erode", "{i/2}").has_value());
  EXPECT_EQ(questions.size(), 1u);
  EXPECT_EQ(test::ReadWholeFile(dir / "list.txt"), "<Erode>\n{i/2}\n</Erode>\n");
}

TEST_F(ImageEvalManagerTest, CustomOrderIsEditedAndStoredWhateverTheView) {
  for (const char* name : {"b", "c", "a"}) ASSERT_FALSE(Save(name, name).has_value());
  EXPECT_FALSE(manager.MoveSaved(app, "a", true).has_value());
  EXPECT_EQ(app.SavedIEvals().Names(), (Names{"b", "a", "c"}));
  EXPECT_EQ(manager.MoveSaved(app, "b", true), DialogMessage{});  // already first
  app.SavedIEvals().ToggleView();
  EXPECT_EQ(app.SavedIEvals().Names(), (Names{"a", "b", "c"}));
  EXPECT_EQ(manager.MoveSaved(app, "c", true), DialogMessage{});  // not in the sorted view
  EXPECT_FALSE(manager.DeleteSaved(app, "b").has_value());
  EXPECT_EQ(test::ReadWholeFile(dir / "list.txt"), "<a>\na\n</a>\n<c>\nc\n</c>\n");
}

TEST_F(ImageEvalManagerTest, UnwritableListFileIsReportedAndTheItemKept) {
  UseListAt(dir.path());
  app.ReloadSavedIEvals();
  EXPECT_EQ(Save("kept", "{i}"), (DialogMessage{"Failed: Can't write to '" + dir.path().string() + "'",
                                                 "Store I-Eval list"}));
  EXPECT_NE(app.SavedIEvals().Find("kept"), nullptr);
}

TEST_F(ImageEvalManagerTest, MissingListFolderIsToldWhenTheListIsRead) {
  UseListAt(dir / "missing" / "list.txt");
  app.ReloadSavedIEvals();
  EXPECT_EQ(feedback.messages,
            (Names{"[Load I-Eval list]: Failed: Path not found '" + (dir / "missing" / "list.txt").string() + "'"}));
}

TEST_F(ImageEvalManagerTest, ExpandedViewShowsMarkersReplacedOrTheirError) {
  ASSERT_FALSE(Save("Half", "i/2").has_value());
  const std::pair<const char*, DialogResult> cases[] = {
      {"{$Half$}+1", std::nullopt},
      {"$Nope$", DialogMessage{"I-Eval error: Unknown name marker 'Nope' in pos 0", "I-Eval error"}},
  };
  for (const auto& [text, expected] : cases) {
    manager.expression = text;
    std::string expanded;
    EXPECT_EQ(manager.ExpandedText(app, expanded), expected) << text;
    if (!expected) {
      EXPECT_EQ(expanded, "{i/2}+1");
    }
  }
}

TEST_F(ImageEvalManagerTest, FailedRunKeepsTheDialogOpenAndCreatesNothing) {
  AddGray();
  manager.roi_only = true;
  manager.expression = "{i}";
  EXPECT_EQ(manager.Apply(app), DialogMessage{});
  ASSERT_EQ(feedback.messages.size(), 1u);
  EXPECT_NE(feedback.messages[0].find("ROI isn't active"), std::string::npos) << feedback.messages[0];
  manager.roi_only = false;
  manager.channels = IEvalChannelMode::Single;
  manager.expression = "{i;i;i}";
  EXPECT_EQ(manager.Apply(app), DialogMessage{});
  EXPECT_NE(feedback.messages.back().find("Can't force single output on 3 components expression"), std::string::npos)
      << feedback.messages.back();
  EXPECT_EQ(app.Images().Count(), 1u);
  EXPECT_FALSE(manager.HasLastRequest());
  EXPECT_TRUE(app.EditHistory().Entries(kIEvalExpressionTag).empty());
}

TEST_F(ImageEvalManagerTest, AcceptedRunAddsTheImageAndIsRepeatedLater) {
  AddGray();
  manager.expression = "{c;c;c}";
  manager.out_of_range = "7";
  EXPECT_FALSE(manager.Apply(app).has_value());
  ASSERT_EQ(app.Images().Count(), 2u);
  EXPECT_EQ(app.Images().At(1).display_name, "ieval_out_image");
  EXPECT_EQ(app.Images().At(1).image->ComponentCount(), 3u);
  EXPECT_EQ(app.EditHistory().Entries(kIEvalExpressionTag), (Names{"{c;c;c}"}));
  EXPECT_EQ(app.EditHistory().Entries(kIEvalOutOfRangeTag), (Names{"7"}));
  manager.expression = "{i;i}";  // edits after the run do not change the repeat
  EXPECT_FALSE(manager.Reapply(app).has_value());
  EXPECT_EQ(app.Images().Count(), 3u);
  EXPECT_TRUE(feedback.messages.empty()) << feedback.messages.front();
}

TEST(ImageEvalManager, StartsFromTheConfiguredValues) {
  ConfigDialogIeval defaults;
  defaults.def_ieval_expr = "{i*2}";
  defaults.def_out_of_range_val = "1;2;3";
  defaults.def_output_overwrite = "2,1";
  defaults.out_replace_image = true;
  defaults.output_channels = OutputChannels::kContextAsYuv;
  defaults.bpp = IevalBppChoice::k16;
  const CImageEvalManager manager(defaults);
  EXPECT_EQ(manager.expression, "{i*2}");
  EXPECT_EQ(manager.output_override, "2,1");
  EXPECT_TRUE(manager.replace_image);
  EXPECT_EQ(manager.channels, IEvalChannelMode::Context);
  EXPECT_TRUE(manager.yuv);
  EXPECT_EQ(manager.out_bits, 16u);
}

}  // namespace
}  // namespace korvanel
