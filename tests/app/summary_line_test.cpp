#include "app/summary_line.h"

#include <gtest/gtest.h>

namespace korvanel {
namespace {

TEST(SummaryLine, SwitchesUnitsAtTheBoundaries) {
  EXPECT_EQ(MakeSummaryLine(0, 0, 0, "a"), "0 B | a");
  EXPECT_EQ(MakeSummaryLine(49999, 100, 100, "cam.raw"), "49999 B | cam.raw");
  EXPECT_EQ(MakeSummaryLine(50000, 100, 100, "cam.raw"), " 48.83 KB | cam.raw");
  EXPECT_EQ(MakeSummaryLine(1048575, 1, 1, "x"), "1024.00 KB | x");
  EXPECT_EQ(MakeSummaryLine(1048576, 1024, 1024, "g.y"), "  1.00 MB (~1 MP) | g.y");
  // 8K 4:2:0, 8 bits: the MP figure is width x height in whole millions.
  EXPECT_EQ(MakeSummaryLine(7680ull * 4320 * 3 / 2, 7680, 4320, "8k.yuv"),
            " 47.46 MB (~33 MP) | 8k.yuv");
  // Beyond 4 GiB the byte count must not wrap.
  EXPECT_EQ(MakeSummaryLine(5ull << 30, 40000, 40000, "big"), "5120.00 MB (~1600 MP) | big");
}

}  // namespace
}  // namespace korvanel
