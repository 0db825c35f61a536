#include "image/ascii_matrix.h"

#include <gtest/gtest.h>

#include "support/collecting_sink.h"
#include "support/temp_dir.h"

namespace korvanel {
namespace {

class AsciiMatrix : public ::testing::Test {
 protected:
  std::optional<std::vector<uint8_t>> Read(const std::string& text, uint32_t bits, uint32_t& w,
                                           uint32_t& h, uint64_t skip = 0) {
    return ReadAsciiSamples(dir.Write("m.txt", text), skip, bits, w, h, log);
  }
  test::TempDir dir;
  test::CollectingSink log;
};

TEST_F(AsciiMatrix, FindsItsOwnSizeFromMixedSeparators) {
  uint32_t w = 0, h = 0;
  auto bytes = Read("1 2 3\n\n4;5,6\r\n", 8, w, h);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(w, 3u);
  EXPECT_EQ(h, 2u);
  EXPECT_EQ(*bytes, (std::vector<uint8_t>{1, 2, 3, 4, 5, 6}));
  EXPECT_TRUE(log.lines.empty());
}

TEST_F(AsciiMatrix, ReadsEveryBaseAndPacksNativeOrder) {
  uint32_t w = 3, h = 1;
  auto bytes = Read("0x10\t010 300", 16, w, h);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(*bytes, (std::vector<uint8_t>{16, 0, 8, 0, 0x2C, 0x01}));
  w = 1;
  bytes = Read("4294967295", 32, w, h);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(*bytes, (std::vector<uint8_t>{0xFF, 0xFF, 0xFF, 0xFF}));
}

TEST_F(AsciiMatrix, RefusesValuesWithExactMessages) {
  struct Row {
    const char* text;
    uint32_t bits;
    const char* message;
  };
  const Row rows[] = {
      {"1 2\n3 256", 8, "ASCII: Value '256' at row 1, col 1 is out of BPP range"},
      {"-1", 32, "ASCII: Value '-1' at row 0, col 0 is out of BPP range"},
      {"65536", 16, "ASCII: Value '65536' at row 0, col 0 is out of BPP range"},
      {"99999999999999999999999", 32, "ASCII: Value '99999999999999999999999' at row 0, col 0 is out of BPP range"},
      {"\n\n7 12a", 8, "ASCII: Can't convert '12a' to integer at row 2, col 1"},
      {"0x", 8, "ASCII: Can't convert '0x' to integer at row 0, col 0"},
      {"09", 8, "ASCII: Can't convert '09' to integer at row 0, col 0"},
  };
  for (const Row& row : rows) {
    log.lines.clear();
    uint32_t w = 7, h = 1;
    EXPECT_FALSE(Read(row.text, row.bits, w, h)) << row.text;
    EXPECT_EQ(log.lines, std::vector<std::string>{row.message});
  }
}

TEST_F(AsciiMatrix, RaggedRowsNeedAnExplicitSize) {
  uint32_t w = 0, h = 0;
  EXPECT_FALSE(Read("1 2 3\n4 5 6 7\n", 8, w, h));
  EXPECT_EQ(log.lines,
            std::vector<std::string>{"SCII: Can't auto-detect input dimension, not a matrix form"});
  w = 7;
  h = 1;
  auto bytes = Read("1 2 3\n4 5 6 7\n", 8, w, h);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(bytes->size(), 7u);
}

TEST_F(AsciiMatrix, SkipsLeadingValuesAcrossLines) {
  uint32_t w = 3, h = 1;
  auto bytes = Read("9 9\n9 1 2 3\n", 8, w, h, 3);
  ASSERT_TRUE(bytes);
  EXPECT_EQ(*bytes, (std::vector<uint8_t>{1, 2, 3}));
}

TEST_F(AsciiMatrix, MissingFileFailsSilently) {
  uint32_t w = 0, h = 0;
  EXPECT_FALSE(ReadAsciiSamples(dir.File("absent.txt"), 0, 8, w, h, log));
  EXPECT_TRUE(log.lines.empty());
}

}  // namespace
}  // namespace korvanel
