#include "image/layout_stage.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "image/display_conversion.h"
#include "image/format_parser.h"
#include "support/collecting_sink.h"
#include "support/image_builders.h"

namespace korvanel {
namespace {

using test::CollectingSink;

FormatExpression Parsed(const char* text) {
  CollectingSink log;
  return ParseFormatExpression(text, 0, log).value();
}

std::vector<uint8_t> Words16(const std::vector<uint16_t>& words, bool big_endian) {
  std::vector<uint8_t> bytes;
  for (uint16_t w : words) {
    const uint8_t lo = static_cast<uint8_t>(w), hi = static_cast<uint8_t>(w >> 8);
    bytes.push_back(big_endian ? hi : lo);
    bytes.push_back(big_endian ? lo : hi);
  }
  return bytes;
}

struct CensusRow {
  const char* format;
  std::vector<uint16_t> words;
  uint64_t stray;
  const char* warning;
};

TEST(LayoutStage, CensusCountsWordsOutsideTheSignificantBits) {
  const CensusRow rows[] = {
      {"LSB=10,P,Y,16", {0, 1023, 512, 7}, 0, ""},
      {"LSB=10,P,Y,16", {1024, 1023, 0xFFC0, 3},  2,
       "Bits: 2 of 4 samples exceed 10 bits (MSB-aligned data? try MSB=10)"},
      {"LSB=10,P,Y,-16", {1024, 1023, 0xFFC0, 3}, 2,
       "Bits: 2 of 4 samples exceed 10 bits (MSB-aligned data? try MSB=10)"},
      {"MSB=10,P,Y,16", {0xFFC0, 0x0040, 0, 0x8000}, 0, ""},
      {"MSB=10,P,Y,16", {0xFFC0, 0x0001, 1023, 0x0020}, 3,
       "Bits: 3 of 4 samples set bits below the top 10 of 16 (LSB-aligned data? try LSB=10)"},
      {"MSB=12,P,Y,-16", {0x0010, 0x000F, 0xFFF0, 0x0008}, 2,
       "Bits: 2 of 4 samples set bits below the top 12 of 16 (LSB-aligned data? try LSB=12)"},
  };
  for (const CensusRow& row : rows) {
    const FormatExpression f = Parsed(row.format);
    const std::vector<uint8_t> bytes = Words16(row.words, f.BigEndian());
    const BitCensus census = CountStraySamples(bytes.data(), bytes.size(), f.bpp, f.raw);
    EXPECT_EQ(census.stray, row.stray) << row.format;
    EXPECT_EQ(census.samples, row.words.size()) << row.format;
    EXPECT_EQ(CensusWarning(census, f.raw, 16), row.warning) << row.format;
  }
}

struct LoadRow {
  const char* format;
  std::vector<uint16_t> words;  // one row of four grey samples, as the file holds them
  std::vector<uint32_t> values; // as the image holds them
  const char* label;
  std::vector<std::string> log;
};

TEST(LayoutStage, LoadsCodeValuesAndKeepsTheLayoutOnTheImage) {
  const LoadRow rows[] = {
      {"LSB=10,P,Y,16", {0, 1023, 512, 5}, {0, 1023, 512, 5}, "Y16 (LSB=10)", {}},
      {"MSB=10,P,Y,16", {0xFFC0, 0x8000, 0x0040, 0}, {1023, 512, 1, 0}, "Y16 (MSB=10)", {}},
      {"MSB=10,P,Y,-16", {0xFFC0, 0x8000, 0x0040, 0}, {1023, 512, 1, 0}, "Y16 (MSB=10)", {}},
      {"MSB=10,P,Y,16", {0xFFFF, 0, 0, 0}, {1023, 0, 0, 0}, "Y16 (MSB=10)",
       {"Bits: 1 of 4 samples set bits below the top 10 of 16 (LSB-aligned data? try LSB=10)"}},
      {"P,Y,16", {0xFFC0, 0x8000, 0x0040, 0}, {0xFFC0, 0x8000, 0x0040, 0}, "Y16", {}},
  };
  for (const LoadRow& row : rows) {
    const FormatExpression f = Parsed(row.format);
    std::vector<uint8_t> bytes = Words16(row.words, f.BigEndian());
    CollectingSink log;
    std::string warning;
    const std::unique_ptr<CImageConcreteBase> image =
        LoadWithLayout(f, bytes.data(), bytes.size(), 4, 1, log, nullptr, &warning);
    ASSERT_TRUE(image) << row.format;
    for (uint32_t x = 0; x < 4; ++x) EXPECT_EQ(image->GetPlane(0).SampleAt(x, 0), row.values[x]) << row.format;
    EXPECT_EQ(image->RawLayout(), f.raw) << row.format;
    EXPECT_EQ(image->SignificantBits(), f.SignificantBits()) << row.format;
    EXPECT_EQ(image->FormatLabel(), row.label);
    EXPECT_EQ(log.lines, row.log) << row.format;
    EXPECT_EQ(warning, row.log.empty() ? "" : row.log[0]);
  }
}

// A 10-bit white shows white; the stored top byte stays the rule without bits.
TEST(LayoutStage, RenditionStretchesTheSignificantBits) {
  struct Row {
    uint32_t bits;
    uint32_t container;
    std::vector<uint32_t> values;
    std::vector<uint8_t> shown;
  };
  const Row rows[] = {
      {10, 16, {1023, 512, 0, 4, 3, 2000}, {255, 128, 0, 1, 0, 255}},
      {12, 16, {4095, 2048, 16, 15}, {255, 128, 1, 0}},
      {0, 16, {0x1234, 0xFFFF, 0x00FF}, {0x12, 0xFF, 0x00}},
      {16, 16, {0x1234}, {0x12}},
      {4, 8, {15, 8, 1, 16}, {240, 128, 16, 255}},
      {20, 32, {0xFFFFF, 0x80000}, {255, 128}},
  };
  for (const Row& row : rows) {
    const Plane plane = test::MakePlane(row.container, static_cast<uint32_t>(row.values.size()), 1,
                                        [&](uint32_t x, uint32_t) { return row.values[x]; });
    DisplayRendition out;
    ASSERT_TRUE(BuildGrayRendition(plane, out, nullptr, row.bits));
    for (size_t x = 0; x < row.shown.size(); ++x) {
      EXPECT_EQ(out.pixels[x], PackDisplayPixel(row.shown[x], row.shown[x], row.shown[x]))
          << row.bits << " bits, value " << row.values[x];
    }
  }
}

}  // namespace
}  // namespace korvanel
