#include "app/logger.h"

#include <gtest/gtest.h>

#include <regex>

#include "support/log_texts.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::FixedStamp;
using test::kEntryRule;
using test::kSessionRule;
using test::ReadWholeFile;
using test::TempDir;

CLogger MakeLogger(const TempDir& dir, StampMode mode) {
  CLogger log;
  log.SetEnabled(true);
  log.SetStampMode(mode);
  log.SetStampSource(FixedStamp);
  log.SetPath(dir / "log.txt");
  return log;
}

struct StampCase {
  const char* name;
  StampMode mode;
  const char* session_line;
  const char* entry_line;
};

void PrintTo(const StampCase& c, std::ostream* os) {
  *os << c.name;
}

class LoggerStamps : public ::testing::TestWithParam<StampCase> {};

TEST_P(LoggerStamps, WritesHeaderOnceAndNumbersEntries) {
  TempDir dir;
  CLogger log = MakeLogger(dir, GetParam().mode);
  log.BeginEntry("Open image error");
  log.AddLine("Can't locate /x/a.raw");
  log.Flush();
  log.BeginEntry("App exit");
  log.AddLineF("%u of %s", 3u, "50%");
  log.Flush();
  const std::string second_entry =
      std::regex_replace(GetParam().entry_line, std::regex("Entry 1"), "Entry 2");
  EXPECT_EQ(ReadWholeFile(dir / "log.txt"),
            kSessionRule + "\n" + GetParam().session_line + "\n" + kEntryRule + "\n" +
                GetParam().entry_line + "Open image error\nCan't locate /x/a.raw\n\n" + kEntryRule +
                "\n" + second_entry + "App exit\n3 of 50%\n\n");
}

INSTANTIATE_TEST_SUITE_P(
    Modes, LoggerStamps,
    ::testing::Values(StampCase{"none", StampMode::kNone, "Session start", "Entry 1: "},
                      StampCase{"session", StampMode::kSession,
                                "Session start [Monday, March 3, 2025 :: 14:05:09]", "Entry 1: "},
                      StampCase{"every_entry", StampMode::kEveryEntry,
                                "Session start [Monday, March 3, 2025 :: 14:05:09]",
                                "Entry 1 [Monday, March 3, 2025 :: 14:05:09]: "}));

class Logger : public ::testing::Test {
 protected:
  TempDir dir;
  CLogger log = MakeLogger(dir, StampMode::kNone);
};

TEST_F(Logger, EmptyTitleOpensOnlyTheSession) {
  log.BeginEntry("");
  log.AddLine("plain");
  log.BeginEntry("");
  log.Flush();
  EXPECT_EQ(ReadWholeFile(dir / "log.txt"), kSessionRule + "\nSession start\nplain\n\n");
}

TEST(LoggerSessions, TwoSessionsAppendToTheSameFile) {
  TempDir dir;
  dir.Write("log.txt", "older content\n");
  for (int session = 0; session < 2; ++session) {
    CLogger log = MakeLogger(dir, StampMode::kNone);
    log.BeginEntry("Session end mark");
    log.Flush();
  }
  const std::string one_session =
      kSessionRule + "\nSession start\n" + kEntryRule + "\nEntry 1: Session end mark\n\n";
  EXPECT_EQ(ReadWholeFile(dir / "log.txt"), "older content\n" + one_session + one_session);
}

TEST_F(Logger, ReplacesTheFileWhenAppendIsOff) {
  dir.Write("log.txt", "older content\n");
  log.SetAppend(false);
  log.AddLine("a");
  log.Flush();
  EXPECT_EQ(ReadWholeFile(dir / "log.txt"), "a\n\n");
}

TEST_F(Logger, DisabledLoggerKeepsNothingAndCreatesNoFile) {
  log.SetEnabled(false);
  log.BeginEntry("title");
  log.AddLine("line");
  log.AddLineF("%d", 1);
  log.Flush();
  EXPECT_TRUE(log.PendingLines().empty());
  EXPECT_FALSE(std::filesystem::exists(dir / "log.txt"));
}

TEST_F(Logger, FlushWithoutLinesOrWithFlushingOffWritesNothing) {
  log.Flush();
  EXPECT_FALSE(std::filesystem::exists(dir / "log.txt"));
  log.SetFlushEnabled(false);
  log.AddLine("held");
  log.Flush();
  EXPECT_FALSE(std::filesystem::exists(dir / "log.txt"));
  log.SetFlushEnabled(true);
  log.Flush();
  EXPECT_EQ(ReadWholeFile(dir / "log.txt"), "held\n\n");
}

TEST_F(Logger, UnwritablePathIsSkippedSilently) {
  log.SetPath(dir / "no_such_folder" / "log.txt");
  log.BeginEntry("x");
  log.Flush();
  EXPECT_TRUE(log.PendingLines().empty());
  EXPECT_FALSE(std::filesystem::exists(dir / "no_such_folder"));
}

TEST_F(Logger, ServesAsALineSink) {
  ILineSink& sink = log;
  sink.BeginEntry("Loading /x/a.yuv");
  sink.AddLine("Parse error [#3]: Illegal BPP 12");
  EXPECT_EQ(log.PendingLines(), (std::vector<std::string>{kSessionRule, "Session start", kEntryRule,
                                                          "Entry 1: Loading /x/a.yuv",
                                                          "Parse error [#3]: Illegal BPP 12"}));
}

TEST(LocalTimeStamp, HasLongDateAndTwentyFourHourTime) {
  EXPECT_TRUE(std::regex_match(
      LocalTimeStamp(),
      std::regex(
          "[A-Z][a-z]+day, [A-Z][a-z]+ [1-9][0-9]?, [0-9]{4} :: [0-2][0-9]:[0-5][0-9]:[0-6][0-9]")))
      << LocalTimeStamp();
}

}  // namespace
}  // namespace korvanel
