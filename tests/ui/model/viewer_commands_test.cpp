// The commands of the image area that change the image set, the comparison
// or the files on disk, driven by keys, characters and menu items.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include "support/temp_dir.h"
#include "ui/model/input_phase.h"
#include "ui/model/viewer_fixture.h"

namespace korvanel {
namespace {

constexpr const char* kDiffTypeAllBin =
    "Diff type: All pixels are included with binary comparison (equal or not)";

enum class Scene {
  Single,      // a, b; b in focus
  Pair,        // a and b compared
  PairAndOne,  // a and b compared, c not
  Trio,        // a, b and c compared
};

struct Input {
  std::optional<KeyInput> key;
  char32_t ch = 0;
};

Input Char(char32_t ch) { return {std::nullopt, ch}; }
Input KeyDown(Key key, Modifiers mods = {}) { return {KeyInput{key, mods}, 0}; }

class ViewerCommandsTest : public test::ViewerFixture {
 protected:
  void Add(const std::string& name, uint32_t side = 8) { AddGray(side, side, name); }
  void Prepare(Scene setup) {
    Add("a.raw");
    Add("b.raw");
    if (setup == Scene::PairAndOne || setup == Scene::Trio) Add("c.raw");
    if (setup == Scene::Pair || setup == Scene::PairAndOne) app.CompareImages({0, 1});
    if (setup == Scene::Trio) app.CompareImages({0, 1, 2});
    Start();
  }
  void Send(const Input& input) {
    if (input.key) {
      controller.OnKey(*input.key);
    } else {
      controller.OnChar(input.ch, {});
    }
  }
  std::string CoreStatus() const { return feedback.statuses.empty() ? "" : feedback.statuses.back(); }
  std::string LastMessage() const { return feedback.messages.empty() ? "" : feedback.messages.back(); }
  void MoveOver(size_t panel) { MoveTo(At(1, 1, panel)); }
};

// One row per binding: the state, the key or character, and what the image
// set, the status line and the message boxes show afterwards.
TEST_F(ViewerCommandsTest, EachBindingChangesTheImagesOrSaysWhy) {
  struct Row {
    const char* name;
    Scene setup;
    Input input;
    std::vector<std::string> images;
    std::string status;   // a prefix of the last status text; "" for none new
    std::string message;  // the last message box, "" for none
    bool compare;
  };
  const std::string kMustCompare =
      "[Diff images error]: Diff error: Must be in compare mode with 2 open images of the same "
      "size and type";
  const Row rows[] = {
      {"x closes the focus image", Scene::Single, Char(U'x'), {"a.raw"}, "8x8 : Y8", "", false},
      {"x in compare mode over no image", Scene::Pair, Char(U'x'), {"a.raw", "b.raw"},
       "Can't close window: not in mouse sensitivity range", "", true},
      {"X closes every image", Scene::Single, Char(U'X'), {}, "", "", false},
      {"X in compare mode closes the party", Scene::PairAndOne, Char(U'X'), {"c.raw"}, "8x8 : Y8",
       "", false},
      {"n duplicates the focus image", Scene::Single, Char(U'n'), {"a.raw", "b.raw", "New_Copy_b.raw"},
       "New image: Successfully created New_Copy_b.raw (HK id 3)", "", false},
      {"n in compare mode over no image", Scene::Pair, Char(U'n'), {"a.raw", "b.raw"},
       "New image error: Please make sure you're in some valid image area", "", true},
      {"l outside compare mode", Scene::Single, Char(U'l'), {"a.raw", "b.raw"},
       "Layer mode can only be activated when in Compare mode", "", false},
      {"L in compare mode", Scene::Pair, Char(U'L'), {"a.raw", "b.raw"}, "", "", true},
      {"D outside compare mode", Scene::Single, KeyDown(Key::D), {"a.raw", "b.raw"}, "",
       kMustCompare, false},
      {"D with three compared", Scene::Trio, KeyDown(Key::D), {"a.raw", "b.raw", "c.raw"}, "",
       kMustCompare, true},
      {"D diffs the pair", Scene::Pair, KeyDown(Key::D), {"a.raw", "b.raw", "Diff_a.raw <--> b.raw"},
       "Diff: Created difference image Diff_a.raw <--> b.raw (", "", true},
      {"Ctrl+D cycles the diff type", Scene::Single, KeyDown(Key::D, kCtrl), {"a.raw", "b.raw"},
       "Diff type: Only masked-in pixels are included with binary comparison (equal or not)", "",
       false},
      {"F removes the filter", Scene::Single, Char(U'F'), {"a.raw", "b.raw"},
       "Filter colors: clearing filter from...", "", false},
      {"Ctrl+F with no filter applied yet", Scene::Single, KeyDown(Key::F, kCtrl), {"a.raw", "b.raw"},
       "", "", false},
      {"Ctrl+C puts nothing in the status", Scene::Single, KeyDown(Key::C, kCtrl), {"a.raw", "b.raw"},
       "", "", false},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    app.CloseAllImages();
    feedback.messages.clear();
    Prepare(row.setup);
    const size_t statuses = feedback.statuses.size();
    Send(row.input);
    EXPECT_EQ(Names(), row.images);
    if (row.status.empty()) {
      EXPECT_EQ(feedback.statuses.size(), statuses) << CoreStatus();
    } else {
      EXPECT_EQ(CoreStatus().substr(0, row.status.size()), row.status);
    }
    EXPECT_EQ(LastMessage(), row.message);
    EXPECT_EQ(app.CompareMode(), row.compare);
  }
}

TEST_F(ViewerCommandsTest, KeysNeedAnOpenImage) {
  controller.OnResize(test::kImageArea);
  for (const Input& input : {Char(U'x'), Char(U'X'), Char(U'n'), Char(U'l'), Char(U'F'), Char(U'S'),
                             KeyDown(Key::D), KeyDown(Key::D, kCtrl), KeyDown(Key::C, kCtrl),
                             KeyDown(Key::S, kCtrl)}) {
    Send(input);
  }
  EXPECT_EQ(feedback.statuses, (std::vector<std::string>{kDiffTypeAllBin}));
  EXPECT_TRUE(feedback.messages.empty());
  EXPECT_TRUE(app.AutoFileNaming());
  EXPECT_EQ(app.GetDiffType(), DiffType::kAllBin);
  EXPECT_FALSE(host.clipboard_image.has_value());
}

TEST_F(ViewerCommandsTest, CloseInCompareModeTakesTheImageUnderTheMouse) {
  Prepare(Scene::Trio);
  MoveOver(1);
  controller.OnChar(U'x', {});
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.raw", "c.raw"}));
  EXPECT_TRUE(app.CompareMode());
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 1}));
}

TEST_F(ViewerCommandsTest, DiffTypeCyclesThroughAllFourAndChecksItsRadioItem) {
  Prepare(Scene::Single);
  const struct {
    DiffType type;
    Command checked;
    const char* text;
  } steps[] = {
      {DiffType::kMaskBin, Command::DiffTypeMaskBin,
       "Diff type: Only masked-in pixels are included with binary comparison (equal or not)"},
      {DiffType::kAllAbsDelta, Command::DiffTypeAllAbsDelta,
       "Diff type: All pixels are included with abs difference (up to 255 difference levels)"},
      {DiffType::kMaskAbsDelta, Command::DiffTypeMaskAbsDelta,
       "Diff type: Only masked-in pixels are included with abs difference (up to 255 difference "
       "levels)"},
      {DiffType::kAllBin, Command::DiffTypeAllBin, kDiffTypeAllBin},
  };
  for (const auto& step : steps) {
    controller.OnKey({Key::D, kCtrl});
    EXPECT_EQ(app.GetDiffType(), step.type);
    EXPECT_EQ(CoreStatus(), step.text);
    for (Command radio : {Command::DiffTypeAllBin, Command::DiffTypeMaskBin,
                          Command::DiffTypeAllAbsDelta, Command::DiffTypeMaskAbsDelta}) {
      EXPECT_EQ(host.menu[radio].checked, radio == step.checked);
    }
  }
  controller.Execute(Command::DiffTypeMaskAbsDelta);
  EXPECT_EQ(app.GetDiffType(), DiffType::kMaskAbsDelta);
  EXPECT_TRUE(host.menu[Command::DiffTypeMaskAbsDelta].checked);
  EXPECT_FALSE(host.menu[Command::DiffTypeAllBin].checked);
}

// Auto naming follows Ctrl+S and its menu item; the layer item is refused
// silently outside compare mode.
TEST_F(ViewerCommandsTest, MenuTogglesFollowKeysAndRefuseSilently) {
  Prepare(Scene::Single);
  EXPECT_TRUE(host.menu[Command::ToggleAutoNaming].checked);
  Press(Key::S, kCtrl);
  EXPECT_FALSE(app.AutoFileNaming());
  EXPECT_FALSE(host.menu[Command::ToggleAutoNaming].checked);
  controller.Execute(Command::ToggleAutoNaming);
  EXPECT_TRUE(app.AutoFileNaming());
  EXPECT_TRUE(host.menu[Command::ToggleAutoNaming].checked);
  const size_t statuses = feedback.statuses.size();
  controller.Execute(Command::ToggleLayerMode);
  EXPECT_FALSE(app.LayerMode());
  EXPECT_FALSE(host.menu[Command::ToggleLayerMode].checked);
  EXPECT_EQ(feedback.statuses.size(), statuses);
}

// Ctrl+C copies the path over a tab and otherwise the image as shown,
// limited to its region of interest.
TEST_F(ViewerCommandsTest, CopyGivesThePathOverATabElseTheImage) {
  AddGray(16, 12, "/pics/a.raw");
  controller.OnResize(test::kImageArea);
  const PanelPlan panel = controller.PrepareFrame().panels.at(0);
  controller.OnKey({Key::C, kCtrl});
  ASSERT_TRUE(host.clipboard_image.has_value());
  EXPECT_EQ(host.clipboard_image->width, 16u);
  EXPECT_EQ(host.clipboard_image->height, 12u);

  ASSERT_TRUE(app.Images().At(0).image->SetRegionOfInterest({2, 3, 6, 4}));
  controller.OnKey({Key::C, kCtrl});
  ASSERT_EQ(host.clipboard_image->width, 5u);
  ASSERT_EQ(host.clipboard_image->height, 2u);
  const DisplayRendition* shown = app.Images().At(0).image->BuildDisplay();
  const uint32_t corner = shown->pixels[3 * 16 + 2];
  EXPECT_EQ(host.clipboard_image->bytes[0], DisplayRed(corner));
  EXPECT_EQ(host.clipboard_image->bytes[1], DisplayGreen(corner));
  EXPECT_EQ(host.clipboard_image->bytes[2], DisplayBlue(corner));
  EXPECT_EQ(host.clipboard_image->bytes.size(), 5u * 2 * 3);

  controller.OnMouseMove({panel.tab.rect.right - 2, panel.tab.rect.top + 2}, {});
  controller.OnKey({Key::C, kCtrl});
  EXPECT_EQ(host.clipboard, "/pics/a.raw");
}

TEST_F(ViewerCommandsTest, CopyInCompareModeNeedsTheMouseOverAnImage) {
  Prepare(Scene::Pair);
  controller.OnKey({Key::C, kCtrl});
  EXPECT_FALSE(host.clipboard_image.has_value());
  controller.Execute(Command::CopyImagePath);  // the menu falls back to the focus image
  EXPECT_EQ(host.clipboard, app.Images().At(app.FocusIndex()).display_name);
  MoveOver(0);
  controller.OnKey({Key::C, kCtrl});
  ASSERT_TRUE(host.clipboard_image.has_value());
  EXPECT_EQ(host.clipboard_image->width, 8u);
  controller.Execute(Command::CopyImagePath);
  EXPECT_EQ(host.clipboard, "a.raw");
}

TEST_F(ViewerCommandsTest, CloseBoxClosesAndUnderCtrlTakesOutOfTheParty) {
  Prepare(Scene::Trio);
  const auto box = [&](size_t panel) { return controller.PrepareFrame().panels.at(panel).tab.close_box; };
  ScreenRect b = box(1);
  controller.OnMouseMove({b.left + 1, b.top + 1}, kCtrl);
  EXPECT_EQ(controller.PrepareFrame().panels.at(1).tab.close_text, 'O');
  controller.OnLeftDown({b.left + 1, b.top + 1}, kCtrl);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.raw", "b.raw", "c.raw"}));
  EXPECT_EQ(app.ComparisonGroup(), (std::vector<size_t>{0, 2}));

  // Two left: Ctrl shows no "O" and the box closes.
  b = box(1);
  controller.OnMouseMove({b.left + 2, b.top + 1}, kCtrl);
  EXPECT_EQ(controller.PrepareFrame().panels.at(1).tab.close_text, 'X');
  controller.OnLeftDown({b.left + 2, b.top + 1}, kCtrl);
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.raw", "b.raw"}));
  EXPECT_FALSE(app.CompareMode());
}

// Ctrl pressed and released without moving the mouse: the boxes follow the
// key both ways, and a click after the release closes instead of removing.
TEST_F(ViewerCommandsTest, ReleasingCtrlTurnsTheCloseBoxesBack) {
  Prepare(Scene::Trio);
  const auto close_text = [&](size_t panel) { return controller.PrepareFrame().panels.at(panel).tab.close_text; };
  controller.OnKey({Key::Control, kCtrl});
  EXPECT_EQ(close_text(1), 'O');
  const int repaints = host.invalidations;
  controller.OnKeyUp({Key::Control, {}});
  EXPECT_EQ(close_text(1), 'X');
  EXPECT_GT(host.invalidations, repaints) << "the boxes are repainted";
  const ScreenRect b = controller.PrepareFrame().panels.at(1).tab.close_box;
  controller.OnLeftDown({b.left + 1, b.top + 1}, {});
  EXPECT_EQ(Names(), (std::vector<std::string>{"a.raw", "c.raw"}));
}

TEST_F(ViewerCommandsTest, ClickingATabFocusesItsImage) {
  Prepare(Scene::Pair);
  ASSERT_EQ(app.FocusIndex(), 1u);
  const ScreenRect tab = controller.PrepareFrame().panels.at(0).tab.rect;
  controller.OnLeftDown({tab.right - 3, tab.top + 3}, {});
  EXPECT_EQ(app.FocusIndex(), 0u);
  EXPECT_EQ(Names().size(), 2u);
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).rings, 3u);
}

TEST_F(ViewerCommandsTest, HoveringAnHkNumberInTheLayerTabShowsThatLayer) {
  test::FixedMetrics metrics;
  controller.SetTextMetrics(&metrics);
  Prepare(Scene::Trio);
  controller.OnChar(U'L', {});
  const TabPlan tab = controller.PrepareFrame().panels.at(0).tab;
  ASSERT_EQ(tab.text, "1 2 3 | [3] c.raw");
  ASSERT_EQ(tab.close_box.right, 29);
  // The caption starts at 34: "1" covers 34..37, "2" 42..45, "3" 50..53.
  const struct {
    int32_t x;
    size_t shown;
  } moves[] = {{42, 1}, {40, 1}, {35, 0}, {53, 2}, {60, 2}};
  for (const auto& move : moves) {
    controller.OnMouseMove({move.x, tab.rect.top + 5}, {});
    EXPECT_EQ(controller.PrepareFrame().panels.at(0).image_index, move.shown) << move.x;
  }
  EXPECT_EQ(app.FocusIndex(), 2u);
  controller.OnChar(U'`', {});  // back to the layer shown before
  EXPECT_EQ(controller.PrepareFrame().panels.at(0).image_index, 0u);
}

// "c" gathers a party from the HK characters until the last one repeats or
// "c" comes again; "C" takes every image of the focus image's size.
TEST_F(ViewerCommandsTest, CollectingBuildsThePartyFromTheTypedSlots) {
  struct Row {
    std::u32string keys;
    bool compare;
    std::vector<size_t> party;
  };
  const Row rows[] = {
      {U"c124", false, {}},          // still collecting
      {U"c1244", true, {0, 1, 3}},  // the last slot again
      {U"c1322", true, {0, 1}},     // slot 3 has another size
      {U"c12c", true, {0, 1}},
      {U"cc", true, {0, 1, 3}},     // the focus image's size
      {U"C", true, {0, 1, 3}},
      {U"c1c", false, {}},          // one image: collecting just stops
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.keys.begin(), row.keys.end()));
    app.CloseAllImages();
    Add("a.raw");
    Add("b.raw");
    Add("c.raw", 16);
    Add("d.raw");
    controller.OnResize(test::kImageArea);
    Type(row.keys);
    EXPECT_EQ(app.CompareMode(), row.compare);
    EXPECT_EQ(app.ComparisonGroup(), row.party);
    const bool collecting = row.keys == U"c124";
    EXPECT_EQ(app.Collecting(), collecting);
    EXPECT_EQ(controller.ActivePhase(), collecting ? InputPhaseKind::Collect : InputPhaseKind::None);
  }
  // The digits collected and moved no focus.
  EXPECT_EQ(app.FocusIndex(), 3u);
}

TEST_F(ViewerCommandsTest, CollectingPromptsWithTheCollectedIdsAndEscStopsIt) {
  Prepare(Scene::Single);
  controller.Execute(Command::CompareStart);
  EXPECT_EQ(Part0(), "Collecting images to compare: ");
  Type(U"2");
  EXPECT_EQ(Part0(), "Collecting images to compare: [2] ");
  EXPECT_EQ(app.FocusIndex(), 1u);
  controller.OnChar(U's', {});  // no second phase
  EXPECT_EQ(Part0(), "Another input is in progress: finish it, or press Esc to cancel it");
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::Collect);
  controller.OnKey({Key::Escape, {}});
  EXPECT_EQ(Part0(), "Operation canceled due to user abort");
  EXPECT_FALSE(app.Collecting());
  EXPECT_TRUE(app.Collected().empty());
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
}

TEST_F(ViewerCommandsTest, EscLeavesLayerModeOnlyWithoutAPhase) {
  Prepare(Scene::Trio);
  controller.OnChar(U'l', {});
  ASSERT_TRUE(app.LayerMode());
  controller.OnChar(U's', {});
  controller.OnKey({Key::Escape, {}});
  EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
  EXPECT_TRUE(app.LayerMode());
  controller.OnKey({Key::Escape, {}});
  EXPECT_FALSE(app.LayerMode());
  EXPECT_EQ(controller.PrepareFrame().panels.size(), 3u);
}

class ViewerSaveCommandsTest : public ViewerCommandsTest {
 protected:
  std::string Path(const std::string& name) const { return (dir.path() / name).string(); }
  // A 4 x 2 grey image read from `name` in the folder.
  void Open(const std::string& name) {
    app.RegisterImage(test::MakeImage<CImageGray>(8, 4, 2), Path(name), "P,Y,8", true);
    Start();
  }
  std::string Read(const std::string& name) const {
    std::ifstream in(Path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
  }

  test::TempDir dir;
};

TEST_F(ViewerSaveCommandsTest, SaveMenuItemsWriteBesideTheSource) {
  Open("a.raw");
  controller.Execute(Command::SaveOriginalRaw);
  // Component 0 at (x, y) holds y*100 + x.
  EXPECT_EQ(Read("a.4x2.raw"), std::string("\x00\x01\x02\x03\x64\x65\x66\x67", 8));
  EXPECT_EQ(CoreStatus().rfind("Saved '" + Path("a.4x2.raw") + "' (", 0), 0u) << CoreStatus();
  controller.Execute(Command::SaveTextOriginal);
  EXPECT_EQ(Read("a.4x2.txt").substr(0, 41), "Image Y8: <0,0> .. <3,1> : 4x2 (8 pixels)");
  controller.Execute(Command::SaveStatistics);
  EXPECT_EQ(Read("a.stat.txt").substr(0, 9), "<Luma-8>\n");
  controller.OnChar(U'S', {});
  EXPECT_TRUE(std::filesystem::exists(Path("a.png")));
  EXPECT_EQ(CoreStatus(), "Exported to PNG: '" + Path("a.png") + "'");
  EXPECT_TRUE(feedback.messages.empty());
}

// The save phase: a group key, then the entry's place in that group.
TEST_F(ViewerSaveCommandsTest, SavePhaseWritesTheChosenForm) {
  struct Row {
    std::u32string keys;
    std::string file;
    std::string starts;
  };
  const Row rows[] = {
      {U"sb1", "a.4x2.raw", std::string("\x00\x01\x02\x03\x64\x65\x66\x67", 8)},
      // 8-bit big-endian turns each group of four bytes of a row round.
      {U"sb4", "a.4x2.raw", std::string("\x03\x02\x01\x00\x67\x66\x65\x64", 8)},
      {U"st2", "a.4x2.txt", "Image Y8: <0,0> .. <3,1> : 4x2 (8 pixels)\n\nofs: 00000000 <0,0> = 0\n"},
      {U"sh1", "a.4x2.hex.txt", " ofs hex  00 01 02 "},
      {U"sx1b9b2", "a.4x2.raw", std::string("\x00\x01\x02\x03\x64\x65\x66\x67", 8)},
  };
  Open("a.raw");
  for (const Row& row : rows) {
    SCOPED_TRACE(std::string(row.keys.begin(), row.keys.end()));
    std::filesystem::remove(Path(row.file));
    Type(row.keys);
    EXPECT_EQ(controller.ActivePhase(), InputPhaseKind::None);
    EXPECT_EQ(Read(row.file).substr(0, row.starts.size()), row.starts);
    EXPECT_EQ(CoreStatus().rfind("Saved '" + Path(row.file) + "' (", 0), 0u) << CoreStatus();
  }
  EXPECT_EQ(app.FocusIndex(), 0u);  // the digits picked entries, not images
}

TEST_F(ViewerSaveCommandsTest, SavePhasePromptsForEachKeyAndACancelWritesNothing) {
  Open("a.raw");
  controller.Execute(Command::SaveViaCommand);
  const std::string groups = "Save image as: b - Binary, t - Text, h - Hexa-Text (Esc cancels)";
  EXPECT_EQ(Part0(), groups);
  Type(U"q");
  EXPECT_EQ(Part0(), groups);
  Type(U"b");
  EXPECT_EQ(Part0(),
            "Save image as Binary: 1 - Original (RAW), 2 - Planner, 3 - Interleave, "
            "4 - Planner (BE), 5 - Interleave (BE) (Esc cancels)");
  controller.PrepareFrame();
  controller.OnLeftDown({400, 300}, {});
  EXPECT_EQ(Part0(), "Operation canceled due to user abort");
  Type(U"1");  // a plain slot key again
  EXPECT_FALSE(std::filesystem::exists(Path("a.4x2.raw")));
  controller.OnChar(U's', {});
  controller.OnKey({Key::Escape, {}});
  Type(U"t1");
  EXPECT_FALSE(std::filesystem::exists(Path("a.4x2.txt")));
}

TEST_F(ViewerSaveCommandsTest, OverwriteAnsweredNoKeepsTheFile) {
  Open("a.raw");
  std::ofstream(Path("a.4x2.raw")) << "keep";
  feedback.answer = false;
  controller.Execute(Command::SaveOriginalRaw);
  EXPECT_EQ(feedback.questions.back(),
            "[Save image warning]: The file " + Path("a.4x2.raw") + " already exists. Overwrite?");
  EXPECT_EQ(Read("a.4x2.raw"), "keep");
  EXPECT_TRUE(feedback.messages.empty());
}

TEST_F(ViewerSaveCommandsTest, AnUnwritableFolderIsReported) {
  Open("gone/a.raw");
  controller.Execute(Command::SaveBinaryPlanner);
  const std::string target = Path("gone/a.4x2.raw");
  EXPECT_EQ(LastMessage(), "[Save image error]: Error Can't open " + target +
                               " for writing while saving " + target);
}

}  // namespace
}  // namespace korvanel
