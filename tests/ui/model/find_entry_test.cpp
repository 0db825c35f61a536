#include "ui/model/find_entry.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "image/image_gray.h"
#include "image/image_rgb.h"
#include "support/image_builders.h"
#include "ui/model/pixel_search.h"

namespace korvanel {
namespace {

using Kind = FindOutcome::Kind;

TEST(PixelValueTest, ParsesOrNamesTheFault) {
  const struct {
    const char* text;
    uint32_t components;
    uint32_t bits;
    std::array<uint32_t, 3> value;
    const char* error;
  } cases[] = {
      {"255", 1, 8, {255, 0, 0}, ""},
      {"0x5F", 1, 8, {0x5F, 0, 0}, ""},
      {"0XaB", 1, 8, {0xAB, 0, 0}, ""},
      {"0xAB,0x80,0xFF", 3, 8, {0xAB, 0x80, 0xFF}, ""},
      {"1,0x2,65535", 3, 16, {1, 2, 65535}, ""},
      {"4294967295", 1, 32, {4294967295u, 0, 0}, ""},
      {"256", 1, 8, {}, "Component 1 '256' is out of BPP range, aborting..."},
      {"1,2,0x10000", 3, 16, {}, "Component 3 '0x10000' is out of BPP range, aborting..."},
      {"4294967296", 1, 32, {}, "Component 1 '4294967296' is out of BPP range, aborting..."},
      {"99999999999999999999999", 1, 32, {},
       "Component 1 '99999999999999999999999' is out of BPP range, aborting..."},
      {"0x", 1, 8, {}, "Error parsing component 1 '0x' of pixel value, aborting..."},
      {"0xZZ", 1, 8, {}, "Error parsing component 1 '0xZZ' of pixel value, aborting..."},
      {"1-2", 1, 8, {}, "Error parsing component 1 '1-2' of pixel value, aborting..."},
      {"1,,3", 3, 8, {}, "Error parsing component 2 '' of pixel value, aborting..."},
      {"1F", 1, 8, {}, "Error parsing component 1 '1F' of pixel value, aborting..."},
      {"1,2,3", 1, 8, {}, "'1,2,3' is not a valid pixel value for this image, aborting..."},
      {"1,2", 3, 8, {}, "'1,2' is not a valid pixel value for this image, aborting..."},
      {"7", 3, 8, {}, "'7' is not a valid pixel value for this image, aborting..."},
  };
  for (const auto& c : cases) {
    const ParsedPixelValue parsed = ParsePixelValue(c.text, c.components, c.bits);
    EXPECT_EQ(parsed.error, c.error) << c.text;
    if (*c.error == '\0') {
      ASSERT_TRUE(parsed.value.has_value()) << c.text;
      EXPECT_EQ(parsed.value->components, c.value);
      EXPECT_EQ(parsed.value->count, c.components);
    } else {
      EXPECT_FALSE(parsed.value.has_value());
    }
  }
}

TEST(PixelValueTest, ShownBackInTheDisplayBase) {
  EXPECT_EQ(PixelValueText({{95, 0, 0}, 1}, false), "95");
  EXPECT_EQ(PixelValueText({{95, 0, 0}, 1}, true), "0x5F");
  EXPECT_EQ(PixelValueText({{171, 128, 255}, 3}, false), "171,128,255");
  EXPECT_EQ(PixelValueText({{171, 128, 255}, 3}, true), "0xAB,0x80,0xFF");
}

// A 5 x 4 grey image holding 7 at (1,0), (4,1), (0,2) and (3,3).
std::unique_ptr<CImageGray> SevensImage(uint32_t bits) {
  return test::MakeGrayImage(bits, 5, 4, [](uint32_t x, uint32_t y) {
    const bool seven = (x == 1 && y == 0) || (x == 4 && y == 1) || (x == 0 && y == 2) ||
                       (x == 3 && y == 3);
    return seven ? 7u : 1u;
  });
}

std::vector<PixelPoint> Walk(const IImageContainer& image, const Rect& area,
                             SearchDirection direction, std::optional<PixelPoint> from) {
  std::vector<PixelPoint> hits;
  const PixelValue seven{{7, 0, 0}, 1};
  while (std::optional<PixelPoint> hit = FindPixelValue(image, area, seven, from, direction)) {
    hits.push_back(*hit);
    from = hit;
  }
  return hits;
}

TEST(PixelSearchTest, RasterOrderForwardAndBackwardStopsAtBothEnds) {
  for (uint32_t bits : {8u, 16u, 32u}) {
    auto image = SevensImage(bits);
    const std::vector<PixelPoint> forward{{1, 0}, {4, 1}, {0, 2}, {3, 3}};
    EXPECT_EQ(Walk(*image, Rect::None(), SearchDirection::Forward, std::nullopt), forward);
    const std::vector<PixelPoint> backward{{0, 2}, {4, 1}, {1, 0}};
    EXPECT_EQ(Walk(*image, Rect::None(), SearchDirection::Backward, PixelPoint{3, 3}), backward);
  }
}

TEST(PixelSearchTest, TheRoiLimitsTheScan) {
  auto image = SevensImage(8);
  const Rect roi{1, 1, 4, 3};
  const std::vector<PixelPoint> inside{{4, 1}, {3, 3}};
  EXPECT_EQ(Walk(*image, roi, SearchDirection::Forward, std::nullopt), inside);
  // A last hit outside the ROI restarts at its first pixel.
  EXPECT_EQ(Walk(*image, roi, SearchDirection::Forward, PixelPoint{1, 0}), inside);
  EXPECT_EQ(Walk(*image, Rect{0, 0, 0, 0}, SearchDirection::Forward, std::nullopt),
            std::vector<PixelPoint>{});
}

TEST(PixelSearchTest, ThreeComponentsMustAllMatch) {
  auto rgb = test::MakeImage<CImageRgb>(16, 8, 4);  // c*1000 + y*100 + x
  const PixelValue value{{203, 1203, 2203}, 3};
  EXPECT_EQ(FindPixelValue(*rgb, Rect::None(), value, std::nullopt, SearchDirection::Forward),
            (PixelPoint{3, 2}));
  const PixelValue mixed{{203, 1203, 2204}, 3};
  EXPECT_FALSE(FindPixelValue(*rgb, Rect::None(), mixed, std::nullopt, SearchDirection::Forward));
}

struct Typed {
  FindOutcome last;
  std::string input;
};

Typed TypeInto(std::u32string_view keys, const FindContext& context, const CFindHistory& history) {
  CFindEntry entry;
  Typed typed;
  for (char32_t ch : keys) typed.last = entry.OnChar(ch, context, history);
  typed.input = entry.Input();
  return typed;
}

TEST(FindEntryTest, SpaceSearchesOrFails) {
  const CFindHistory none;
  const FindContext grey8{1, 8};
  Typed typed = TypeInto(U"0x5f ", grey8, none);
  EXPECT_EQ(typed.last.kind, Kind::Search);
  EXPECT_EQ(typed.last.value, (PixelValue{{0x5F, 0, 0}, 1}));

  typed = TypeInto(U"1,2,3 ", grey8, none);
  EXPECT_EQ(typed.last.kind, Kind::Fail);
  EXPECT_EQ(typed.last.message, "'1,2,3' is not a valid pixel value for this image, aborting...");

  // Spaces before any value are ignored.
  typed = TypeInto(U"   ", grey8, none);
  EXPECT_EQ(typed.last.kind, Kind::Continue);
  EXPECT_EQ(typed.input, "");

  typed = TypeInto(U"12\b3", grey8, none);
  EXPECT_EQ(typed.input, "13");

  typed = TypeInto(U"4-", grey8, none);
  EXPECT_EQ(typed.last.kind, Kind::ClearMarks);
  EXPECT_EQ(typed.input, "4");
}

TEST(FindEntryTest, TabCyclesThroughEarlierSearchesWithTheTypedStart) {
  CFindHistory history;
  history.Add("0x10");
  history.Add("200");
  history.Add("0x20");
  history.Add("0x10");  // again: moves to the front, kept once
  EXPECT_EQ(history.Entries(), (std::vector<std::string>{"0x10", "0x20", "200"}));

  CFindEntry entry;
  const FindContext grey8{1, 8};
  for (char32_t ch : std::u32string_view(U"0x")) entry.OnChar(ch, grey8, history);
  const char* expected[] = {"0x10", "0x20", "0x10"};
  for (const char* text : expected) {
    entry.OnChar(U'\t', grey8, history);
    EXPECT_EQ(entry.Input(), text);
  }
  CFindEntry empty_start;
  for (int i = 0; i < 3; ++i) empty_start.OnChar(U'\t', grey8, history);
  EXPECT_EQ(empty_start.Input(), "200");
  CFindEntry nothing_matches;
  nothing_matches.OnChar(U'9', grey8, history);
  nothing_matches.OnChar(U'\t', grey8, history);
  EXPECT_EQ(nothing_matches.Input(), "9");
}

TEST(FindEntryTest, PasteTakesTheValueOfAPCopy) {
  CFindEntry entry;
  EXPECT_EQ(entry.Paste("[0x50A] <10,20> =<0xAB,0x80,0xFF>").kind, Kind::Continue);
  EXPECT_EQ(entry.Input(), "0xAB,0x80,0xFF");
  const FindOutcome refused = entry.Paste("0xAB,0x80,0xFF");
  EXPECT_EQ(refused.kind, Kind::Notice);
  EXPECT_EQ(refused.message, "The clipboard holds no pixel copied with P");
  EXPECT_EQ(entry.Input(), "0xAB,0x80,0xFF");
}

}  // namespace
}  // namespace korvanel
