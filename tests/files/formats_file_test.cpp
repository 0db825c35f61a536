#include "files/formats_file.h"

#include <gtest/gtest.h>

#include "image/text_util.h"
#include "support/collecting_sink.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

using test::CollectingSink;

std::vector<std::string> Lines(const std::string& text) { return SplitKeepingEmpty(text, "\n"); }

TEST(FormatsFile, ParsesGroupsWithCapturesAndFixedSizes) {
  const std::string text =
      "; camera rules\n"
      "<format_group>\n"
      "file_pattern = [.*_(\\d+)x(\\d+)\\.nv12]\n"
      "  ; a comment inside\n"
      "width = [.*_(\\d+)x(\\d+)\\.nv12],$1\n"
      "height = [.*_(\\d+)x(\\d+)\\.nv12],$2\n"
      "format = [.*],PI,YYYYUV,8\n"
      "format = [], I,YUYV,8\n"
      "</format_group>\n"
      "stray text outside groups\n"
      "<format_group>\n"
      "file_pattern = []\n"
      "width = 640\n"
      "height = [wh_(\\d+)_(\\d+)$]\n"
      "format = [.*],P,Y,8\n"
      "</format_group>\n";
  std::vector<FormatGroup> groups;
  CollectingSink log;
  ASSERT_TRUE(ParseFormatsLines(Lines(text), groups, log)) << log.lines.front();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].file_pattern, ".*_(\\d+)x(\\d+)\\.nv12");
  EXPECT_EQ(groups[0].file_pattern_line, 2u);
  EXPECT_EQ(groups[0].width_group, 1);
  EXPECT_EQ(groups[0].height_group, 2);
  EXPECT_EQ(groups[0].height_line, 5u);
  ASSERT_EQ(groups[0].formats.size(), 2u);
  EXPECT_EQ(groups[0].formats[1].line, 7u);
  EXPECT_EQ(groups[1].file_pattern, ".*");
  EXPECT_EQ(groups[1].width_value, 640u);
  EXPECT_TRUE(groups[1].width_regex.empty());
  // "$]" carries no digit: capture group 1.
  EXPECT_EQ(groups[1].height_group, 1);
}

TEST(FormatsFile, OnlyOneCharacterBehindTheLastDollarCounts) {
  const std::string text =
      "<format_group>\nfile_pattern = []\nwidth = [(\\d)(\\d)(\\d)],$12\nheight = [x],$0\n"
      "format = [],P,Y,8\n</format_group>";
  std::vector<FormatGroup> groups;
  CollectingSink log;
  ASSERT_TRUE(ParseFormatsLines(Lines(text), groups, log));
  EXPECT_EQ(groups[0].width_group, 1);
  EXPECT_EQ(groups[0].height_group, 1);  // values below 1 give 1
}

struct BadFile {
  const char* body;  // the lines after "<format_group>" (line 0)
  const char* message;
};

void PrintTo(const BadFile& c, std::ostream* os) { *os << c.message; }

class FormatsFileErrors : public ::testing::TestWithParam<BadFile> {};

TEST_P(FormatsFileErrors, StopAtTheFirstBadGroup) {
  std::vector<FormatGroup> groups{FormatGroup{}};
  CollectingSink log;
  EXPECT_FALSE(ParseFormatsLines(Lines(std::string("<format_group>\n") + GetParam().body), groups, log));
  EXPECT_EQ(log.lines, std::vector<std::string>{GetParam().message});
  EXPECT_EQ(groups.size(), 1u) << "a failed parse leaves the caller's groups alone";
}

INSTANTIATE_TEST_SUITE_P(
    EveryMessage, FormatsFileErrors,
    ::testing::Values(
        BadFile{"file_pattern = [a]\nfile_pattern = [b]\n", "Parse error [#2]: Already parsed file_pattern"},
        BadFile{"file_pattern = abc\n", "Parse error [#1]: Can't parse regex in file_pattern = abc"},
        BadFile{"width = 0\n", "Parse error [#1]: 'width' must be in range(1..15000)"},
        BadFile{"width = 15001\n", "Parse error [#1]: 'width' must be in range(1..15000)"},
        BadFile{"height = -3\n", "Parse error [#1]: 'height' must be in range(1..15000)"},
        BadFile{"height = 480\nheight = 480\n", "Parse error [#2]: Already parsed height"},
        BadFile{"file_pattern = []\nwidth = 4\nheight = 4\n</format_group>\n",
                "Parse error [#4]: Must encounter all fields before ending a format group </format_group>"},
        BadFile{"file_pattern = []\nwidth = 4\nformat = [],P,Y,8\n</format_group>\n",
                "Parse error [#4]: Must encounter all fields before ending a format group </format_group>"},
        BadFile{"format = [],Q,Y,8\n", "Parse error [#1]: Illegal packing 'Q'"},
        BadFile{"file_pattern = []\nwidth = 4\nheight = 4\nformat = [],P,Y,8\n",
                "Parse error [#0]: Format group isn't closed before the end of the file"}));

TEST(FormatsFile, LoadsTheFirstCandidateThatOpens) {
  test::TempDir dir;
  const std::string path = dir.Write(
      "Korvanel.fmt",
      "<format_group>\nfile_pattern = []\nwidth = 2\nheight = 2\nformat = [],P,Y,8\n</format_group>\n");
  FormatRules rules;
  CollectingSink log;
  ASSERT_TRUE(LoadFormatsFile({dir.File("missing.fmt"), path}, rules, log));
  EXPECT_EQ(log.lines, (std::vector<std::string>{"## LoadFormatsFile", "Trying to load formats from " + path,
                                                 "1 format groups were loaded from " + path + " (6 lines)"}));
  EXPECT_EQ(rules.groups.size(), 1u);
  EXPECT_EQ(rules.source_path, path);

  log.lines.clear();
  EXPECT_FALSE(LoadFormatsFile({dir.File("a.fmt"), dir.File("b.fmt")}, rules, log));
  EXPECT_EQ(log.lines.back(), "Can't open formats file: " + dir.File("b.fmt"));
  EXPECT_TRUE(rules.groups.empty()) << "a failed load leaves no rules in force";
}

}  // namespace
}  // namespace korvanel
