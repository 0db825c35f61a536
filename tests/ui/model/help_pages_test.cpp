#include "ui/model/help_pages.h"

#include <gtest/gtest.h>

#include <string>

#include "app/manual_pages.h"
#include "ui/model/geometry_printers.h"

namespace korvanel {
namespace {

// Fixed pitch: 9 pixels a character at 16, 8 at 14; rows as high as the font.
class FakeMetrics : public ITextMetrics {
 public:
  int32_t Width(FontRole role, std::string_view text) const override {
    return (role == FontRole::HelpSmall ? 8 : 9) * static_cast<int32_t>(text.size());
  }
  int32_t Height(FontRole role) const override {
    switch (role) {
      case FontRole::HelpLarge: return 16;
      case FontRole::HelpSmall: return 14;
      default: return 18;  // the footer's font
    }
  }
};

std::string Lines(size_t count) {
  std::string text;
  for (size_t i = 0; i < count; ++i) text += "row " + std::to_string(i) + "\n";
  return text;
}

TEST(HelpPagesTest, PagesComeFromTheirTagsAndAMissingTagIsEmpty) {
  // FORMATS_BRIEF_PAGE carries trailing blanks on its tag lines;
  // CONFIG_FILE_COMMAND_LINE_BRIEF_PAGE and MOUSE_PAGE are missing.
  const CManualPages manual(
      "header line\n"
      "<<OSD_MENU_PAGE>>\nindex\n<</OSD_MENU_PAGE>>\n"
      "<<BASIC_USAGE>>\nbasic\n<</BASIC_USAGE>>\n"
      "<<HOT_KEYS_2_PAGE>>\nkeys two\nsecond row\n<</HOT_KEYS_2_PAGE>>\n"
      "<<FORMATS_BRIEF_PAGE>>   \nformats\n<</FORMATS_BRIEF_PAGE>>  \n");
  const std::vector<std::string> pages = AssembleHelpPages(manual);
  ASSERT_EQ(pages.size(), 11u);
  EXPECT_EQ(pages[0], "index\n");
  EXPECT_EQ(pages[1], "basic\n");
  EXPECT_EQ(pages[2], "");
  EXPECT_EQ(pages[3], "keys two\nsecond row\n");
  EXPECT_EQ(pages[7], "");
  EXPECT_EQ(pages[9], "formats\nRefer to Help sub-menu for detailed info...\n");
  EXPECT_EQ(pages[10], "");
}

TEST(HelpPagesTest, TheProgramsPagesAreAllThere) {
  const std::vector<std::string> pages = AssembleHelpPages(Manual());
  for (size_t page = 0; page < pages.size(); ++page) {
    EXPECT_FALSE(pages[page].empty()) << page;
    EXPECT_LE(LineCount(pages[page]), 40u) << page;
  }
  EXPECT_NE(pages[0].find("Manual index"), std::string::npos);
  EXPECT_NE(pages[10].find("Refer to Help sub-menu for detailed info..."), std::string::npos);
}

TEST(HelpPagesTest, PagingStopsAtTheFirstAndLastPage) {
  const struct {
    uint32_t page;
    int64_t delta;
    uint32_t expected;
  } cases[] = {{0, -1, 0}, {0, 1, 1}, {9, 1, 10}, {10, 1, 10}, {5, -10, 0}, {5, 10, 10}, {3, -1, 2},
               {0, INT64_MIN / 2, 0}, {10, INT64_MAX / 2, 10}};
  for (const auto& c : cases) EXPECT_EQ(StepHelpPage(c.page, c.delta), c.expected) << c.page << " " << c.delta;
  EXPECT_EQ(HelpFooter(3), "Displaying page 3/10 (0 for pages index)");
  EXPECT_EQ(HelpFooter(0), "Displaying page 0/10 (0 for pages index)");
}

TEST(HelpPagesTest, LinesAreCountedWithOrWithoutAClosingBreak) {
  const std::pair<const char*, size_t> cases[] = {{"", 0}, {"a", 1}, {"a\n", 1}, {"a\nb", 2}, {"\n\n", 2}};
  for (const auto& [text, lines] : cases) EXPECT_EQ(LineCount(text), lines) << text;
}

TEST(HelpPagesTest, BoxGeometryAndFontFallback) {
  const FakeMetrics metrics;
  // Area 1200 x 700 at (0, 20): box from y 50 to 700 + 20 - 1 - 28 - 18 - 6.
  const ScreenRect area{0, 20, 1199, 719};
  const int32_t bottom = 719 - 28 - 18 - 6;
  const int32_t box_height = bottom - 50 + 1;  // 618: 38 rows of 16 fit, 39 do not
  ASSERT_EQ(box_height, 618);
  const struct {
    size_t lines;
    FontRole font;
  } cases[] = {{10, FontRole::HelpLarge}, {38, FontRole::HelpLarge}, {39, FontRole::HelpSmall},
               {40, FontRole::HelpSmall}};
  for (const auto& c : cases) {
    const HelpOverlayLayout layout = LayoutHelpOverlay(area, Lines(c.lines), 3, metrics);
    EXPECT_EQ(layout.font, c.font) << c.lines;
    const int32_t width = (c.font == FontRole::HelpSmall ? 8 : 9) * 91 + 24;
    const int32_t left = (1200 - width) / 2;
    EXPECT_EQ(layout.box, (ScreenRect{left, 50, left + width - 1, bottom})) << c.lines;
    EXPECT_EQ(layout.shadow, (ScreenRect{left + 6, 56, left + width + 5, bottom + 6})) << c.lines;
    EXPECT_EQ(layout.text.top, 60);
    EXPECT_EQ(layout.text.left, left + 12);
    EXPECT_EQ(layout.footer_top, bottom + 28);
    EXPECT_EQ(layout.footer, "Displaying page 3/10 (0 for pages index)");
  }
}

TEST(HelpPagesTest, NarrowAndTinyAreasKeepTheBoxInside) {
  const FakeMetrics metrics;
  const HelpOverlayLayout narrow = LayoutHelpOverlay({0, 0, 399, 599}, Lines(5), 0, metrics);
  EXPECT_EQ(narrow.box, (ScreenRect{7, 30, 7 + 386 - 1, 599 - 28 - 18 - 6}));
  EXPECT_LE(narrow.shadow.right, 399);
  const HelpOverlayLayout tiny = LayoutHelpOverlay({0, 0, 9, 9}, Lines(5), 0, metrics);
  EXPECT_FALSE(tiny.box.Empty());
  EXPECT_EQ(tiny.font, FontRole::HelpSmall);
}

}  // namespace
}  // namespace korvanel
