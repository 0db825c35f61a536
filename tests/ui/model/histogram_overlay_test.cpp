#include "ui/model/histogram_overlay.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include "ui/model/geometry_printers.h"
#include "ui/model/number_grouping.h"

namespace korvanel {
namespace {

// Six pixels a character; statistics lines 12 high, channel labels 14.
class FakeMetrics : public ITextMetrics {
 public:
  int32_t Width(FontRole, std::string_view text) const override { return 6 * static_cast<int32_t>(text.size()); }
  int32_t Height(FontRole role) const override { return role == FontRole::HistogramLabel ? 14 : 12; }
};

HistogramChannel Channel(uint64_t total, double std_dev, double variance, double mean, uint64_t mode_count,
                         uint32_t mode, uint32_t median) {
  HistogramChannel c;
  c.total = total;
  c.std_dev = std_dev;
  c.variance = variance;
  c.mean = mean;
  c.mode_count = mode_count;
  c.mode = mode;
  c.median = median;
  return c;
}

TEST(NumberGroupingTest, GroupsTheIntegerPartOnly) {
  const std::pair<const char*, const char*> cases[] = {
      {"0", "0"},           {"999", "999"},           {"1000", "1,000"},
      {"123456", "123,456"}, {"1234567", "1,234,567"}, {"1234567.1234", "1,234,567.1234"},
      {"12.5000", "12.5000"}, {"", ""},
  };
  for (const auto& [in, out] : cases) EXPECT_EQ(GroupThousands(in), out) << in;
  EXPECT_EQ(GroupedCount(4294967296ULL), "4,294,967,296");
  EXPECT_EQ(GroupedReal(1234.56789), "1,234.5679");
}

TEST(StatisticsLinesTest, PlainAndBeautifiedFormsKeepTheirOwnSpacing) {
  const double nan = std::numeric_limits<double>::quiet_NaN();
  struct Case {
    HistogramChannel channel;
    bool beautify;
    const char* first;
    const char* second;
  };
  const Case cases[] = {
      {Channel(1234567, 12.25, 150.5, 3.5, 1000, 7, 4), false,
       "Total pixels: 1234567   Std: 12.250   Var: 150.500", "Mean:  3.500   Mode (1000): 7   Median : 4"},
      {Channel(1234567, 12.25, 150.5, 3.5, 1000, 7, 4), true,
       "Total pixels: 1,234,567  Std: 12.2500  Var: 150.5000", "Mean: 3.5000  Mode (1,000): 7  Median: 4"},
      {Channel(4000000, 1234.5, 1524000.25, 65535, 2000000, 65535, 65535), true,
       "Total pixels: 4,000,000  Std: 1,234.5000  Var: 1,524,000.2500",
       "Mean: 65,535.0000  Mode (2,000,000): 65,535  Median: 65,535"},
      // Every pixel masked out: nothing counted and no "nan" anywhere.
      {Channel(0, nan, nan, nan, 0, 0, 0), false, "Total pixels: 0   Std:  0.000   Var:  0.000",
       "Mean:  0.000   Mode (0): 0   Median : 0"},
      {Channel(0, nan, nan, nan, 0, 0, 0), true, "Total pixels: 0  Std: 0.0000  Var: 0.0000",
       "Mean: 0.0000  Mode (0): 0  Median: 0"},
  };
  for (const Case& c : cases) {
    const auto lines = StatisticsLines(c.channel, c.beautify);
    EXPECT_EQ(lines[0], c.first);
    EXPECT_EQ(lines[1], c.second);
  }
}

std::vector<uint64_t> Counts(size_t size, std::initializer_list<std::pair<size_t, uint64_t>> set) {
  std::vector<uint64_t> counts(size, 0);
  for (const auto& [index, count] : set) counts[index] = count;
  return counts;
}

TEST(SqueezeBinsTest, DeepSamplesAreSqueezedOverTheirOccupiedSpan) {
  std::vector<uint64_t> span512(65536, 0);
  for (size_t v = 1000; v < 1512; ++v) span512[v] = 1;
  std::vector<uint64_t> full(65536, 1);
  struct Case {
    const char* name;
    std::vector<uint64_t> counts;
    uint32_t bits;
    size_t bins;
    uint32_t first;
    uint32_t per_bin;
    bool squeezed;
    uint64_t peak;
  };
  const Case cases[] = {
      {"8-bit stays", Counts(256, {{5, 3}, {200, 9}}), 8, 256, 0, 1, false, 9},
      {"16-bit over 512 values", span512, 16, 256, 1000, 2, true, 2},
      {"16-bit narrow span", Counts(65536, {{100, 4}, {109, 1}}), 16, 10, 100, 1, false, 4},
      {"16-bit full range", full, 16, 256, 0, 256, true, 256},
      {"32-bit by the top 16 bits", Counts(65536, {{0x1234, 5}}), 32, 1, 0x1234, 1, true, 5},
      {"all masked out", std::vector<uint64_t>(65536, 0), 16, 256, 0, 1, false, 0},
  };
  for (const Case& c : cases) {
    const SqueezedBins bins = SqueezeBins(c.counts, c.bits);
    EXPECT_EQ(bins.counts.size(), c.bins) << c.name;
    EXPECT_EQ(bins.first, c.first) << c.name;
    EXPECT_EQ(bins.per_bin, c.per_bin) << c.name;
    EXPECT_EQ(bins.squeezed, c.squeezed) << c.name;
    EXPECT_EQ(bins.peak, c.peak) << c.name;
    uint64_t sum = 0;
    for (uint64_t n : bins.counts) sum += n;
    uint64_t expected = 0;
    for (uint64_t n : c.counts) expected += n;
    EXPECT_EQ(sum, expected) << c.name << ": squeezing loses no count";
  }
}

TEST(SqueezeBinsTest, SampleValuesFindTheirBin) {
  std::vector<uint64_t> span512(65536, 0);
  for (size_t v = 1000; v < 1512; ++v) span512[v] = 1;
  const SqueezedBins deep = SqueezeBins(span512, 16);
  const SqueezedBins top16 = SqueezeBins(Counts(65536, {{0x1234, 5}}), 32);
  const SqueezedBins byte = SqueezeBins(Counts(256, {{7, 1}}), 8);
  const struct {
    const SqueezedBins* bins;
    uint32_t sample;
    std::optional<uint32_t> bin;
  } cases[] = {
      {&deep, 1000, 0u},        {&deep, 1001, 0u},         {&deep, 1002, 1u},
      {&deep, 1511, 255u},      {&deep, 999, std::nullopt}, {&deep, 1512, std::nullopt},
      {&top16, 0x12345678, 0u}, {&top16, 0x1234FFFF, 0u},  {&top16, 0x12350000, std::nullopt},
      {&byte, 0, 0u},           {&byte, 255, 255u},
  };
  for (const auto& c : cases) EXPECT_EQ(BinOfValue(*c.bins, c.sample), c.bin) << c.sample;
}

HistogramResult GreyResult(uint32_t bins, std::initializer_list<std::pair<size_t, uint64_t>> set) {
  HistogramResult result;
  result.bins = bins;
  HistogramChannel channel = Channel(0, 1, 1, 1, 0, 0, 0);
  channel.counts = Counts(bins, set);
  for (uint64_t n : channel.counts) channel.total += n;
  result.channels.push_back(channel);
  return result;
}

TEST(HistogramDataTest, ChannelsAreNamedAndColouredByFamily) {
  HistogramResult three = GreyResult(256, {});
  three.channels.resize(3, three.channels[0]);
  const struct {
    ColorKind kind;
    std::vector<std::string> names;
    std::string letters;
    std::vector<Rgb> colors;
  } cases[] = {
      {ColorKind::Rgb, {"Red", "Green", "Blue"}, "RGB", {{255, 0, 0}, {0, 128, 0}, {0, 0, 255}}},
      {ColorKind::Yuv, {"Luma", "U (Cb)", "V (Cr)"}, "YUV", {{128, 128, 128}, {0, 0, 255}, {255, 0, 0}}},
  };
  for (const auto& c : cases) {
    const HistogramData data = BuildHistogramData(three, 8, c.kind, false);
    ASSERT_EQ(data.channels.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(data.channels[i].name, c.names[i]);
      EXPECT_EQ(data.channels[i].letter, c.letters[i]);
      EXPECT_EQ(data.channels[i].color, c.colors[i]);
    }
  }
  const HistogramData grey = BuildHistogramData(GreyResult(256, {}), 8, ColorKind::Gray, false);
  EXPECT_EQ(grey.channels[0].name, "Luma");
  EXPECT_TRUE(SameContent(grey, BuildHistogramData(GreyResult(256, {}), 8, ColorKind::Gray, false)));
  EXPECT_FALSE(SameContent(grey, BuildHistogramData(GreyResult(256, {{3, 1}}), 8, ColorKind::Gray, false)));
  EXPECT_FALSE(SameContent(grey, BuildHistogramData(GreyResult(256, {}), 8, ColorKind::Gray, true)));
}

TEST(HistogramBoxTest, RowsStackInTheBoxAtThePicturesCorner) {
  const FakeMetrics metrics;
  const HistogramData data = BuildHistogramData(GreyResult(256, {{10, 4}}), 8, ColorKind::Gray, false);
  HistogramStyle style;
  style.max_height = 80;
  const ScreenRect panel{0, 0, 999, 699};
  const ScreenRect picture{100, 50, 899, 649};
  const HistogramBoxLayout layout = LayoutHistogramBox(data, style, picture, panel, &metrics);
  ASSERT_EQ(layout.rows.size(), 4u);
  EXPECT_EQ(layout.bin_width, 2);
  const int32_t text = 6 * static_cast<int32_t>(data.channels[0].lines[1].size());
  const int32_t inner = std::max(512, 6 * static_cast<int32_t>(data.channels[0].lines[0].size()));
  ASSERT_GT(inner, text);
  // margin 6 + label 14 + 2 + bars 80 + 2 + line 12 + 2 + line 12 + margin 6
  EXPECT_EQ(layout.box, (ScreenRect{108, 58, 108 + inner + 12 - 1, 58 + 136 - 1}));
  EXPECT_EQ(layout.rows[0].kind, HistogramRowKind::Label);
  EXPECT_EQ(layout.rows[0].text, "Luma");
  EXPECT_EQ(layout.rows[1].kind, HistogramRowKind::Bars);
  EXPECT_EQ(layout.rows[1].rect, (ScreenRect{114, 80, 114 + 511, 159}));
  EXPECT_EQ(layout.rows[2].rect.top, 162);
  EXPECT_EQ(layout.rows[3].text, data.channels[0].lines[1]);

  // Near the panel's bottom the box moves up to end inside it, rows and all.
  const HistogramBoxLayout low = LayoutHistogramBox(data, style, {100, 600, 899, 699}, panel, &metrics);
  EXPECT_EQ(low.box, (ScreenRect{108, 699 - 135, 108 + inner + 12 - 1, 699}));
  EXPECT_EQ(low.rows[1].rect.top, 699 - 135 + 22);
  // A panel lower than the box keeps the box's top in the panel.
  const HistogramBoxLayout flat = LayoutHistogramBox(data, style, {0, 10, 999, 59}, {0, 10, 999, 59}, &metrics);
  EXPECT_EQ(flat.box.top, 10);
}

TEST(HistogramBoxTest, BinWidthFollowsTheRoomAndHoverNeedsEveryBin) {
  const FakeMetrics metrics;
  const HistogramData data = BuildHistogramData(GreyResult(256, {{10, 4}}), 8, ColorKind::Gray, false);
  const HistogramStyle style;
  const struct {
    int32_t panel_width;
    int32_t bin_width;
    bool hover;
  } cases[] = {{1000, 2, true}, {300, 1, true}, {200, 0, false}};
  for (const auto& c : cases) {
    const ScreenRect panel{0, 0, c.panel_width - 1, 599};
    const HistogramBoxLayout layout = LayoutHistogramBox(data, style, panel, panel, &metrics);
    EXPECT_EQ(layout.bin_width, c.bin_width) << c.panel_width;
    EXPECT_LE(layout.box.right, panel.right) << c.panel_width;
    const ScreenRect& bars = layout.rows[1].rect;
    const ScreenPoint over_bin_10{bars.left + 10 * std::max(1, c.bin_width), bars.bottom};
    const auto hover = HoveredBin(layout, data, over_bin_10);
    EXPECT_EQ(hover.has_value(), c.hover) << c.panel_width;
    if (hover) {
      EXPECT_EQ(*hover, (HistogramHover{0, 10}));
    }
    EXPECT_FALSE(HoveredBin(layout, data, {bars.left, bars.top - 1}).has_value());
  }
}

TEST(HistogramTextsTest, HoverAndCursorCountsInTheirForms) {
  const HistogramData grey = BuildHistogramData(GreyResult(256, {{10, 4}, {20, 1234}}), 8, ColorKind::Gray, false);
  EXPECT_EQ(HoverText(grey, {0, 10}, false), "Y[10] = 4");
  EXPECT_EQ(HoverText(grey, {0, 20}, true), "Y[20] = 1,234");
  EXPECT_EQ(HoverText(grey, {0, 256}, false), "");
  EXPECT_EQ(HistSuffix(grey, {20, 20, 20}, false), " / Hist: 1234");
  EXPECT_EQ(HistSuffix(grey, {20, 20, 20}, true), " / Hist: 1,234");
  EXPECT_EQ(HistSuffix(grey, {30, 30, 30}, false), " / Hist: 0");

  std::vector<uint64_t> span512(65536, 0);
  for (size_t v = 1000; v < 1512; ++v) span512[v] = 1;
  HistogramResult deep = GreyResult(65536, {});
  deep.channels[0].counts = span512;
  const HistogramData squeezed = BuildHistogramData(deep, 16, ColorKind::Gray, false);
  EXPECT_EQ(HoverText(squeezed, {0, 1}, false), "Y~[1002] = 2");
  const HistogramData top16 = BuildHistogramData(GreyResult(65536, {{0x1234, 5}}), 32, ColorKind::Gray, false);
  EXPECT_EQ(HoverText(top16, {0, 0}, false), "Y~[305397760] = 5");

  HistogramResult rgb = GreyResult(256, {{1, 7}});
  rgb.channels.push_back(rgb.channels[0]);
  rgb.channels.push_back(rgb.channels[0]);
  rgb.channels[1].counts[2] = 3000;
  const HistogramData three = BuildHistogramData(rgb, 8, ColorKind::Rgb, false);
  EXPECT_EQ(HistSuffix(three, {1, 2, 9}, false), " / Hist: R = 7, G = 3000, B = 0");
  EXPECT_EQ(HistSuffix(three, {1, 2, 9}, true), " / Hist: R = 7, G = 3,000, B = 0");
  EXPECT_EQ(LitBins(three, {1, 2, 9}), (std::vector<std::optional<uint32_t>>{1u, 2u, 9u}));
  EXPECT_EQ(HoverText(three, {1, 2}, false), "G[2] = 3000");
}

TEST(HistogramStyleTest, ForegroundCyclesAndShadowFollowsLuminance) {
  ConfigGui gui;
  gui.histogram_max_height = 200;
  gui.histogram_transparent_fg_color = {{255, 255, 0}};
  HistogramStyle single = HistogramStyle::FromConfig(gui);
  EXPECT_EQ(single.max_height, 120);
  single.NextForeground();
  EXPECT_EQ(single.Foreground(), (Rgb{255, 255, 0})) << "one colour: Ctrl+B changes nothing";

  HistogramStyle style = HistogramStyle::FromConfig(ConfigGui{});
  EXPECT_EQ(style.max_height, 80);
  EXPECT_EQ(style.Foreground(), (Rgb{255, 255, 255}));
  style.NextForeground();
  EXPECT_EQ(style.Foreground(), (Rgb{0, 0, 0}));
  style.NextForeground();
  EXPECT_EQ(style.Foreground(), (Rgb{255, 255, 255}));

  const std::pair<Rgb, Rgb> shadows[] = {
      {{255, 255, 255}, {0, 0, 0}},     {{0, 0, 0}, {255, 255, 255}},   {{128, 128, 128}, {0, 0, 0}},
      {{127, 127, 127}, {255, 255, 255}}, {{0, 0, 255}, {255, 255, 255}}, {{0, 255, 0}, {0, 0, 0}},
  };
  for (const auto& [color, shadow] : shadows) EXPECT_EQ(ShadowColorFor(color), shadow);
}

}  // namespace
}  // namespace korvanel
