#include "app/edit_history.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <functional>

#include <string>
#include <vector>

#include "app/app_state.h"
#include "app/configuration.h"
#include "support/recording_feedback.h"
#include "support/temp_dir.h"
#include "support/time_limit.h"

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
  ASSERT_EQ(loaded.Load(dir / "Korvanel.dat"), LineReadStatus::kOk);
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
  ASSERT_EQ(history.Load(dir.Write("Korvanel.dat", content)), LineReadStatus::kOk);
  EXPECT_EQ(history.Tags(), (Texts{"[FC_FILTER_EXPR]", "[FC_NEG_COLOR]"}));
  EXPECT_EQ(history.Entries("[FC_FILTER_EXPR]"), (Texts{"good", "also good"}));
  EXPECT_EQ(history.Entries("[FC_NEG_COLOR]"), (Texts{"16,128,128"}));
}

TEST(EditHistory, LoadingMoreThanFortyKeepsTheFirstForty) {
  TempDir dir;
  std::string content = "[CR_DIRECT_EXPR]\n";
  for (int i = 0; i < 50; ++i) content += "=P,Y," + std::to_string(i) + "\n";
  CEditHistory history;
  ASSERT_EQ(history.Load(dir.Write("Korvanel.dat", content)), LineReadStatus::kOk);
  ASSERT_EQ(history.Entries("[CR_DIRECT_EXPR]").size(), 40u);
  EXPECT_EQ(history.Entries("[CR_DIRECT_EXPR]").back(), "P,Y,39");
}

// An entry whose stored line would be cut on the next load is not kept at
// all: a lone backslash at the end loads as itself but is stored doubled.
TEST(EditHistory, KeepsOnlyEntriesWhoseStoredLineLoadsAgain) {
  TempDir dir;
  const std::string fits(kMaxEditHistoryLine - 1, 'x');
  const std::string grows = std::string(kMaxEditHistoryLine - 2, 'x') + "\\";
  CEditHistory history;
  ASSERT_EQ(history.Load(dir.Write("Korvanel.dat", "[A]\n=" + fits + "\n=" + grows + "\n")), LineReadStatus::kOk);
  EXPECT_EQ(history.Entries("[A]"), Texts{fits});
  history.Add("[B]", fits + "\n");
  history.Add("[B]", "a\nb");
  EXPECT_EQ(history.Entries("[B]"), Texts{"a\nb"});
  ASSERT_TRUE(history.Store(dir / "Korvanel.dat"));
  CEditHistory reloaded;
  ASSERT_EQ(reloaded.Load(dir / "Korvanel.dat"), LineReadStatus::kOk);
  EXPECT_EQ(reloaded.Entries("[A]"), Texts{fits});
  EXPECT_EQ(reloaded.Entries("[B]"), Texts{"a\nb"});
}

TEST(EditHistory, MissingFileOrFolderFailsWithoutTouchingAnything) {
  TempDir dir;
  CEditHistory history;
  history.Add("[FC_NEG_COLOR]", "0");
  EXPECT_EQ(history.Load(dir / "absent.dat"), LineReadStatus::kMissing);
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
  ASSERT_EQ(stored.Load(dir / "Korvanel.dat"), LineReadStatus::kOk);
  EXPECT_EQ(stored.Entries("[FC_FILTER_EXPR]"), (Texts{"*", "30,45-100"}));
  EXPECT_TRUE(feedback.messages.empty());
}

// Korvanel.ini with the given reload switch.
std::filesystem::path WriteIni(const TempDir& dir, bool reload) {
  return dir.Write("Korvanel.ini", std::string("[system]\nreload_dialogs_edit_history=") + (reload ? "1" : "0") + "\n");
}

// What stands where the history is read but cannot be: the session neither
// restores nor replaces it, and the app log says so once.
TEST(EditHistory, AppStateLeavesAFileItCannotReadAsItIs) {
  const std::string kept = "[A]\n=old\n";
  struct Case {
    const char* name;
    std::function<void(const std::filesystem::path&)> make;
    std::function<bool(const std::filesystem::path&)> unchanged;
    const char* problem;
  };
  const Case cases[] = {
      {"folder", [](const auto& p) { std::filesystem::create_directory(p); },
       [](const auto& p) { return std::filesystem::is_directory(p); }, "is not a regular file"},
      {"fifo", [](const auto& p) { mkfifo(p.c_str(), 0600); },
       [](const auto& p) { return std::filesystem::is_fifo(p); }, "is not a regular file"},
      {"link to /dev/zero", [](const auto& p) { std::filesystem::create_symlink("/dev/zero", p); },
       [](const auto& p) { return std::filesystem::is_symlink(p); }, "is not a regular file"},
      {"too large",
       [&](const auto& p) {
         std::ofstream(p, std::ios::binary) << kept;
         std::filesystem::resize_file(p, kMaxLineReadFileSize + 1);
       },
       [&](const auto& p) {
         return std::filesystem::file_size(p) == kMaxLineReadFileSize + 1 &&
                ReadWholeFile(p).compare(0, kept.size(), kept) == 0;
       },
       "is larger than 16 MiB"},
  };
  for (const Case& c : cases) {
    TempDir dir;
    const std::filesystem::path file = dir / "Korvanel.dat";
    c.make(file);
    const int code = test::ExitCodeWithin(std::chrono::seconds(10), [&] {
      RecordingFeedback feedback;
      CConfiguration config(dir.path());
      if (!config.Load(WriteIni(dir, true))) return 1;
      AppState app(feedback, config);
      if (!app.EditHistory().Tags().empty()) return 2;
      app.EditHistory().Add("[A]", "new");
      return app.StoreEditHistory() || app.StoreEditHistory() ? 3 : 0;
    });
    EXPECT_EQ(code, 0) << c.name;
    EXPECT_TRUE(c.unchanged(file)) << c.name;
    const std::string log = ReadWholeFile(dir / "qel.log_app.txt");
    const std::string line = file.string() + " " + c.problem +
                             "; the dialog histories are not restored and the file is left as it is\n";
    const size_t first = log.find(line);
    EXPECT_NE(first, std::string::npos) << c.name << "\n" << log;
    EXPECT_EQ(log.find(line, first + 1), std::string::npos) << c.name << "\n" << log;
  }
}

// Off, the switch only keeps the dialogs from showing the old entries: the
// file keeps them, under what this session adds.
TEST(EditHistory, AppStateWithReloadOffKeepsTheFilesEntries) {
  TempDir dir;
  RecordingFeedback feedback;
  dir.Write("Korvanel.dat", "[A]\n=old\n=older\n[B]\n=b\n");
  CConfiguration config(dir.path());
  ASSERT_TRUE(config.Load(WriteIni(dir, false)));
  AppState app(feedback, config);
  EXPECT_TRUE(app.EditHistory().Tags().empty());
  app.EditHistory().Add("[A]", "older");
  app.EditHistory().Add("[A]", "new");
  ASSERT_TRUE(app.StoreEditHistory());
  CEditHistory stored;
  ASSERT_EQ(stored.Load(dir / "Korvanel.dat"), LineReadStatus::kOk);
  EXPECT_EQ(stored.Entries("[A]"), (Texts{"new", "older", "old"}));
  EXPECT_EQ(stored.Entries("[B]"), (Texts{"b"}));
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
