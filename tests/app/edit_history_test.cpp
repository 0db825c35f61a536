#include "app/edit_history.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::ReadWholeFile;
using test::RecordingFeedback;
using test::TempDir;
using Texts = std::vector<std::string>;

TEST(EditHistory, AddKeepsMostRecentFirstWithoutDuplicatesOrBlanks) {
  struct Case {
    const char* name;
    Texts added;
    Texts expected;
  };
  const Case cases[] = {
      {"newest first", {"a", "b", "c"}, {"c", "b", "a"}},
      {"repeat moves to front", {"a", "b", "a"}, {"a", "b"}},
      {"blank ignored", {"a", "", "  \t", "b"}, {"b", "a"}},
      {"case matters", {"abc", "ABC"}, {"ABC", "abc"}},
  };
  for (const Case& c : cases) {
    CEditHistory history;
    for (const std::string& text : c.added) history.Add("[FC_FILTER_EXPR]", text);
    EXPECT_EQ(history.Entries("[FC_FILTER_EXPR]"), c.expected) << c.name;
    EXPECT_TRUE(history.Entries("[FC_NEG_COLOR]").empty()) << c.name;
  }
}

TEST(EditHistory, KeepsTheFortyMostRecent) {
  CEditHistory history;
  for (int i = 0; i < 45; ++i) history.Add("[CR_RESIZE_SIZE]", std::to_string(i));
  const Texts& entries = history.Entries("[CR_RESIZE_SIZE]");
  ASSERT_EQ(entries.size(), 40u);
  EXPECT_EQ(entries.front(), "44");
  EXPECT_EQ(entries.back(), "5");
  // Re-adding one that is kept does not drop another.
  history.Add("[CR_RESIZE_SIZE]", "20");
  EXPECT_EQ(history.Entries("[CR_RESIZE_SIZE]").size(), 40u);
  EXPECT_EQ(history.Entries("[CR_RESIZE_SIZE]").front(), "20");
}

TEST(EditHistory, RoundTripKeepsOrderUnknownTagsAndAwkwardTexts) {
  TempDir dir;
  CEditHistory history;
  history.Add("[FC_FILTER_EXPR]", "0-100,^99");
  history.Add("[FC_FILTER_EXPR]", "*;200-*;*-80");
  history.Add("[SOMEONE_ELSES_TAG]", "kept as it is");
  history.Add("[IE_EXPR]", "a\\b\nsecond line\r=[NOT_A_TAG]");
  history.Add("[IE_EXPR]", "[LOOKS_LIKE_A_TAG]");
  ASSERT_TRUE(history.Store(dir / "Korvanel.dat"));

  CEditHistory loaded;
  ASSERT_TRUE(loaded.Load(dir / "Korvanel.dat"));
  EXPECT_EQ(loaded.Tags(), (Texts{"[FC_FILTER_EXPR]", "[IE_EXPR]", "[SOMEONE_ELSES_TAG]"}));
  EXPECT_EQ(loaded.Entries("[FC_FILTER_EXPR]"), (Texts{"*;200-*;*-80", "0-100,^99"}));
  EXPECT_EQ(loaded.Entries("[IE_EXPR]"), (Texts{"[LOOKS_LIKE_A_TAG]", "a\\b\nsecond line\r=[NOT_A_TAG]"}));
  EXPECT_EQ(loaded.Entries("[SOMEONE_ELSES_TAG]"), (Texts{"kept as it is"}));
  // Written again, the file is byte for byte the same.
  ASSERT_TRUE(loaded.Store(dir / "again.dat"));
  EXPECT_EQ(ReadWholeFile(dir / "again.dat"), ReadWholeFile(dir / "Korvanel.dat"));
}

TEST(EditHistory, DamagedFileLoadsWhatItCan) {
  TempDir dir;
  const std::string huge(70 * 1024, 'x');
  std::string binary("\x00\x01\xff\xfe[\x00]=\x7f\x80", 11);
  const std::string content = "=orphan before any tag\n[FC_FILTER_EXPR]\n=" + huge + "\n=good\n" + binary +
                              "\n=also good\n=good\nno equals sign\n[\n[]\n[FC_NEG_COLOR]\n=\n=16,128,128";
  CEditHistory history;
  ASSERT_TRUE(history.Load(dir.Write("Korvanel.dat", content)));
  EXPECT_EQ(history.Tags(), (Texts{"[FC_FILTER_EXPR]", "[FC_NEG_COLOR]"}));
  EXPECT_EQ(history.Entries("[FC_FILTER_EXPR]"), (Texts{"good", "also good"}));
  EXPECT_EQ(history.Entries("[FC_NEG_COLOR]"), (Texts{"16,128,128"}));
}

TEST(EditHistory, LoadingMoreThanFortyKeepsTheFirstForty) {
  TempDir dir;
  std::string content = "[CR_DIRECT_EXPR]\n";
  for (int i = 0; i < 50; ++i) content += "=P,Y," + std::to_string(i) + "\n";
  CEditHistory history;
  ASSERT_TRUE(history.Load(dir.Write("Korvanel.dat", content)));
  ASSERT_EQ(history.Entries("[CR_DIRECT_EXPR]").size(), 40u);
  EXPECT_EQ(history.Entries("[CR_DIRECT_EXPR]").back(), "P,Y,39");
}

TEST(EditHistory, MissingFileOrFolderFailsWithoutTouchingAnything) {
  TempDir dir;
  CEditHistory history;
  history.Add("[FC_NEG_COLOR]", "0");
  EXPECT_FALSE(history.Load(dir / "absent.dat"));
  EXPECT_TRUE(history.Tags().empty());
  history.Add("[FC_NEG_COLOR]", "0");
  EXPECT_FALSE(history.Store(dir / "no_such_folder" / "Korvanel.dat"));
  EXPECT_FALSE(std::filesystem::exists(dir / "no_such_folder"));
}

TEST(EditHistory, FailedStoreKeepsTheOldFile) {
  TempDir dir;
  const std::filesystem::path file = dir.Write("Korvanel.dat", "[A]\n=old\n");
  // A folder in the way of the temporary file makes the write fail.
  std::filesystem::create_directory(dir / "Korvanel.dat.new");
  CEditHistory history;
  history.Add("[A]", "new");
  EXPECT_FALSE(history.Store(file));
  EXPECT_EQ(ReadWholeFile(file), "[A]\n=old\n");
}

TEST(EditHistory, AppStateReloadsOnlyWhenConfiguredAndStoresInTheWorkPath) {
  TempDir dir;
  RecordingFeedback feedback;
  dir.Write("Korvanel.dat", "[FC_FILTER_EXPR]\n=30,45-100\n");
  for (const bool reload : {false, true}) {
    CConfiguration config(dir.path());
    ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", std::string("[system]\nreload_dialogs_edit_history=") +
                                                          (reload ? "1" : "0") + "\n")));
    AppState app(feedback, config);
    EXPECT_EQ(app.EditHistoryPath(), dir / "Korvanel.dat");
    EXPECT_EQ(app.EditHistory().Entries("[FC_FILTER_EXPR]").size(), reload ? 1u : 0u) << reload;
  }
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(dir.Write("Korvanel.ini", "[system]\nreload_dialogs_edit_history=1\n")));
  AppState app(feedback, config);
  app.EditHistory().Add("[FC_FILTER_EXPR]", "*");
  ASSERT_TRUE(app.StoreEditHistory());
  CEditHistory stored;
  ASSERT_TRUE(stored.Load(dir / "Korvanel.dat"));
  EXPECT_EQ(stored.Entries("[FC_FILTER_EXPR]"), (Texts{"*", "30,45-100"}));
  EXPECT_TRUE(feedback.messages.empty());
}

TEST(EditHistory, AppStateWithoutConfigurationStoresNothing) {
  RecordingFeedback feedback;
  AppState app(feedback);
  app.EditHistory().Add("[FC_FILTER_EXPR]", "*");
  EXPECT_TRUE(app.EditHistoryPath().empty());
  EXPECT_FALSE(app.StoreEditHistory());
}

}  // namespace
}  // namespace korvanel
