#include "files/name_regex.h"

#include <gtest/gtest.h>

#include "support/collecting_sink.h"

namespace korvanel {
namespace {

TEST(NameRegex, WholeNameIgnoringCase) {
  test::CollectingSink log;
  EXPECT_TRUE(MatchWholeName(".*_(\\d+)x(\\d+)\\.nv12", "cam_640x480.NV12", nullptr, log));
  EXPECT_FALSE(MatchWholeName("cam", "x_cam", nullptr, log));
  std::smatch groups;
  const std::string name = "frame_1920x1080_yuyv.yuv";
  ASSERT_TRUE(MatchWholeName("frame_(\\d+)x(\\d+)_.*", name, &groups, log));
  EXPECT_EQ(groups[2].str(), "1080");
  EXPECT_TRUE(log.lines.empty());
}

TEST(NameRegex, NestedRepetitionOnALongNameDoesNotHang) {
  // Exponential for a backtracking engine: 2^60 ways to split the a's.
  test::CollectingSink log;
  std::string many_a(60, 'a');
  many_a += '!';
  EXPECT_FALSE(MatchWholeName("(a*)*b", many_a, nullptr, log));
  EXPECT_TRUE(MatchWholeName("(a|aa)*", std::string(250, 'a'), nullptr, log));
  EXPECT_TRUE(log.lines.empty());
}

TEST(NameRegex, RefusedPatternsSaySo) {
  test::CollectingSink log;
  EXPECT_FALSE(MatchWholeName("(a)\\1", "aa", nullptr, log));
  EXPECT_EQ(log.lines.back(), "Invalid regex [(a)\\1]");
  std::string deep(100, '(');
  deep += 'a';
  deep.append(100, ')');
  EXPECT_FALSE(MatchWholeName(deep, "a", nullptr, log));
  EXPECT_EQ(log.lines.back().rfind("Regex too complex (over 2048 characters, 64 nested groups or 1000 repeats) [(((", 0), 0u);
  EXPECT_FALSE(MatchWholeName(std::string(3000, 'a'), std::string(3000, 'a'), nullptr, log));
  EXPECT_EQ(log.lines.size(), 3u);
  // A repeat count past the range of long once overflowed inside the library.
  EXPECT_FALSE(MatchWholeName("a{7777777777777777777777}", "a", nullptr, log));
  EXPECT_FALSE(MatchWholeName("a{2,1001}", "aa", nullptr, log));
  EXPECT_FALSE(MatchWholeName("(a)\\22222222222222222222222", "a", nullptr, log));
  EXPECT_EQ(log.lines.size(), 6u);
  EXPECT_TRUE(MatchWholeName("a{2,1000}", "aaa", nullptr, log));
  // Escaped brackets do not count as nesting.
  std::string escaped;
  for (int i = 0; i < 70; ++i) escaped += "\\(";
  EXPECT_TRUE(MatchWholeName(escaped, std::string(70, '('), nullptr, log));
}

}  // namespace
}  // namespace korvanel
