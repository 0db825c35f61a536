#include "app/manual_pages.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

TEST(ManualPages, TagLinesMayCarryTrailingBlanks) {
  const CManualPages pages("header\n<<A_PAGE>>   \none\ntwo\n<</A_PAGE>>  \n<<B>>\nthree\n<</B>>\n");
  EXPECT_EQ(pages.Page("A_PAGE"), "one\ntwo\n");
  EXPECT_EQ(pages.Page("B"), "three\n");
  EXPECT_EQ(pages.Page("C"), "");
  EXPECT_FALSE(pages.Has("header"));
}

TEST(ManualPages, TheProgramsManualKeepsItsAuthoringRules) {
  const std::string_view text = ManualText();
  ASSERT_FALSE(text.empty()) << "the manual resource is missing";
  EXPECT_EQ(text.find('\t'), std::string_view::npos);
  size_t line_start = 0, row = 1;
  while (line_start < text.size()) {
    const size_t end = std::min(text.find('\n', line_start), text.size());
    EXPECT_LE(end - line_start, 91u) << "row " << row;
    line_start = end + 1;
    ++row;
  }
  const CManualPages& manual = Manual();
  for (const std::string& tag : CManualPages::OverlayTags()) {
    ASSERT_TRUE(manual.Has(tag)) << tag;
    const std::string page = manual.Page(tag);
    EXPECT_LE(std::count(page.begin(), page.end(), '\n'), 40) << tag;
  }
  for (const char* tag : {"MANUAL_MENU", "FILTER_COLORS", "CONVERT_IMAGE", "IMAGE_EVALUATOR", "FORMATS_FILE",
                          "CONFIG_FILE", "COMMAND_LINE", "DEVELOPER_NOTES", "CMD_LINE_PAGE"}) {
    EXPECT_TRUE(manual.Has(tag)) << tag;
  }
  const std::string full = manual.Manual();
  EXPECT_EQ(full.rfind("KORVANEL MANUAL", 0), 0u);
  EXPECT_LT(full.find("BASIC USAGE"), full.find("HOT KEYS 1"));
  EXPECT_LT(full.find("COMMAND LINE AND BATCH FILES"), full.find("DEVELOPER NOTES"));
  EXPECT_EQ(full.find("Manual index"), std::string::npos) << "the overlay index is not part of the manual";
}

}  // namespace
}  // namespace korvanel
