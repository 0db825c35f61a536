#include "ui/model/frame_kernels.h"

#include <gtest/gtest.h>

#include <vector>

namespace korvanel {
namespace {

constexpr uint32_t kUntouched = 0x00ABCDEF;

// A small frame buffer filled with a marker no kernel writes.
struct Frame {
  Frame(int32_t w, int32_t h, int32_t stride = 0)
      : pixels(static_cast<size_t>((stride ? stride : w) * h), kUntouched),
        buffer{pixels.data(), w, h, stride ? stride : w} {}
  uint32_t At(int32_t x, int32_t y) const { return pixels[static_cast<size_t>(y * buffer.stride + x)]; }
  std::vector<uint32_t> pixels;
  PixelBuffer buffer;
};

// A rendition whose pixel (x, y) has red 10 x + 1, green 10 y + 1, blue 200.
DisplayRendition Gradient(uint32_t w, uint32_t h) {
  DisplayRendition r{w, h, {}};
  r.pixels.resize(size_t{w} * h);
  for (uint32_t y = 0; y < h; ++y) {
    for (uint32_t x = 0; x < w; ++x) {
      r.pixels[y * w + x] = PackDisplayPixel(static_cast<uint8_t>(10 * x + 1),
                                             static_cast<uint8_t>(10 * y + 1), 200);
    }
  }
  return r;
}

uint32_t Shown(uint32_t x, uint32_t y) {
  return ScreenColor(static_cast<uint8_t>(10 * x + 1), static_cast<uint8_t>(10 * y + 1), 200);
}

TEST(FrameKernels, SwizzleMakesOpaqueRgb32AndContrastFlipsEachChannelAroundHalf) {
  EXPECT_EQ(SwizzleDisplayPixel(PackDisplayPixel(0x12, 0x34, 0x56)), 0xFF123456u);
  EXPECT_EQ(ContrastColor(ScreenColor(0, 127, 128)), ScreenColor(255, 255, 0));
  EXPECT_EQ(ContrastColor(ScreenColor(255, 255, 255)), ScreenColor(0, 0, 0));
}

TEST(FrameKernels, ReplicationWritesKByKBlocksInsideTheDestination) {
  const DisplayRendition source = Gradient(3, 2);
  Frame frame(8, 6);
  BlitReplicated(source, {1, 1, 6, 4}, {1, 1}, 2, {}, frame.buffer);
  for (int32_t y = 0; y < 6; ++y) {
    for (int32_t x = 0; x < 8; ++x) {
      const bool inside = x >= 1 && x <= 6 && y >= 1 && y <= 4;
      const uint32_t expected =
          inside ? Shown(static_cast<uint32_t>(x - 1) / 2, static_cast<uint32_t>(y - 1) / 2)
                 : kUntouched;
      EXPECT_EQ(frame.At(x, y), expected) << x << "," << y;
    }
  }
}

TEST(FrameKernels, ReplicationStartsWithPartialBlocksWhenScrolled) {
  const DisplayRendition source = Gradient(4, 4);
  Frame frame(5, 5);
  // Image pixel (0, 0) starts one column and two rows above the buffer.
  BlitReplicated(source, {0, 0, 4, 4}, {-1, -2}, 3, {}, frame.buffer);
  EXPECT_EQ(frame.At(0, 0), Shown(0, 0));
  EXPECT_EQ(frame.At(1, 0), Shown(0, 0));
  EXPECT_EQ(frame.At(2, 0), Shown(1, 0));
  EXPECT_EQ(frame.At(4, 0), Shown(1, 0));
  EXPECT_EQ(frame.At(0, 1), Shown(0, 1));
  EXPECT_EQ(frame.At(4, 3), Shown(1, 1));
  EXPECT_EQ(frame.At(4, 4), Shown(1, 2));
}

TEST(FrameKernels, ReplicationClipsToTheBufferAndTheImage) {
  const DisplayRendition source = Gradient(2, 2);
  Frame frame(4, 4, 6);
  BlitReplicated(source, {-5, -5, 50, 50}, {1, 1}, 1, {}, frame.buffer);
  EXPECT_EQ(frame.At(0, 0), kUntouched);
  EXPECT_EQ(frame.At(1, 1), Shown(0, 0));
  EXPECT_EQ(frame.At(2, 2), Shown(1, 1));
  EXPECT_EQ(frame.At(3, 3), kUntouched);
  EXPECT_EQ(frame.At(4, 1), kUntouched);  // stride padding stays as it was
}

TEST(FrameKernels, GridDotsAlternateContrastAndPixelColourFromTheBlockCorner) {
  DisplayRendition source{1, 1, {}};
  source.pixels.assign(1, PackDisplayPixel(10, 200, 90));
  const uint32_t pixel = ScreenColor(10, 200, 90);
  const uint32_t dot = ScreenColor(255, 0, 255);
  Frame frame(5, 5);
  BlitReplicated(source, {0, 0, 4, 4}, {0, 0}, 5, {.on = true, .roi = {}}, frame.buffer);
  const uint32_t expected[5][5] = {
      {dot, pixel, dot, pixel, dot},     {pixel, pixel, pixel, pixel, pixel},
      {dot, pixel, pixel, pixel, pixel}, {pixel, pixel, pixel, pixel, pixel},
      {dot, pixel, pixel, pixel, pixel},
  };
  for (int32_t y = 0; y < 5; ++y) {
    for (int32_t x = 0; x < 5; ++x) EXPECT_EQ(frame.At(x, y), expected[y][x]) << x << "," << y;
  }
}

TEST(FrameKernels, GridInsideTheRoiIsRedAndWhite) {
  const DisplayRendition source = Gradient(2, 1);
  Frame frame(12, 6);
  const GridStyle grid{.on = true, .roi = {1, 0, 1, 0}};
  BlitReplicated(source, {0, 0, 11, 5}, {0, 0}, 6, grid, frame.buffer);
  const uint32_t red = ScreenColor(255, 0, 0);
  const uint32_t white = ScreenColor(255, 255, 255);
  // Outside the ROI: contrast of (1, 1, 200) is (255, 255, 0) and the pixel itself.
  EXPECT_EQ(frame.At(0, 0), ScreenColor(255, 255, 0));
  EXPECT_EQ(frame.At(1, 0), Shown(0, 0));
  EXPECT_EQ(frame.At(0, 1), Shown(0, 0));
  // Inside: red at even, white at odd places along both edges.
  EXPECT_EQ(frame.At(6, 0), red);
  EXPECT_EQ(frame.At(7, 0), white);
  EXPECT_EQ(frame.At(11, 0), white);
  EXPECT_EQ(frame.At(6, 1), white);
  EXPECT_EQ(frame.At(6, 2), red);
  EXPECT_EQ(frame.At(7, 1), Shown(1, 0));
}

TEST(FrameKernels, GridFollowsTheBlockNotTheScreenWhenScrolled) {
  DisplayRendition source{2, 1, {}};
  source.pixels.assign(2, PackDisplayPixel(0, 0, 0));
  Frame frame(6, 1);
  BlitReplicated(source, {0, 0, 5, 0}, {-3, 0}, 5, {.on = true, .roi = {}}, frame.buffer);
  const uint32_t white = ScreenColor(255, 255, 255);
  const uint32_t black = ScreenColor(0, 0, 0);
  // Screen x 0 is column 3 of block 0; the next block starts at screen x 2.
  EXPECT_EQ(frame.At(0, 0), black);
  EXPECT_EQ(frame.At(1, 0), white);
  EXPECT_EQ(frame.At(2, 0), white);
  EXPECT_EQ(frame.At(3, 0), black);
  EXPECT_EQ(frame.At(4, 0), white);
}

TEST(FrameKernels, StretchDropsAndRepeatsLinesWithoutSmoothing) {
  const DisplayRendition source = Gradient(4, 4);
  Frame down(2, 2);
  BlitStretched(source, {0, 0, 1, 1}, {0, 0, 1, 1}, down.buffer);
  EXPECT_EQ(down.At(0, 0), Shown(0, 0));
  EXPECT_EQ(down.At(1, 0), Shown(2, 0));
  EXPECT_EQ(down.At(0, 1), Shown(0, 2));
  EXPECT_EQ(down.At(1, 1), Shown(2, 2));

  const DisplayRendition small = Gradient(2, 2);
  Frame up(7, 4);
  BlitStretched(small, {1, 0, 4, 3}, {0, 0, 6, 3}, up.buffer);
  const uint32_t row0[7] = {kUntouched, Shown(0, 0), Shown(0, 0), Shown(1, 0), Shown(1, 0),
                            kUntouched, kUntouched};
  for (int32_t x = 0; x < 7; ++x) {
    EXPECT_EQ(up.At(x, 0), row0[x]) << x;
    EXPECT_EQ(up.At(x, 1), row0[x]) << x;
  }
  EXPECT_EQ(up.At(1, 2), Shown(0, 1));
  EXPECT_EQ(up.At(4, 3), Shown(1, 1));
}

TEST(FrameKernels, RingColoursFadeRedAndMoveBlue) {
  const Rgb expected[] = {{255, 0, 128}, {204, 0, 153}, {163, 0, 133}, {130, 0, 149}};
  for (uint32_t i = 0; i < 4; ++i) EXPECT_EQ(RingColor(i), expected[i]) << i;
}

TEST(FrameKernels, RingsAreDrawnOutwardAroundThePicture) {
  Frame frame(8, 8);
  DrawRings(frame.buffer, {3, 3, 4, 4}, 2);
  EXPECT_EQ(frame.At(2, 2), ScreenColor(RingColor(0)));
  EXPECT_EQ(frame.At(5, 3), ScreenColor(RingColor(0)));
  EXPECT_EQ(frame.At(1, 6), ScreenColor(RingColor(1)));
  EXPECT_EQ(frame.At(6, 1), ScreenColor(RingColor(1)));
  EXPECT_EQ(frame.At(3, 3), kUntouched);
  EXPECT_EQ(frame.At(0, 0), kUntouched);
  Frame clipped(2, 2);
  DrawRings(clipped.buffer, {0, 0, 1, 1}, 3);  // every ring outside: nothing written
  EXPECT_EQ(clipped.pixels, std::vector<uint32_t>(4, kUntouched));
}

TEST(FrameKernels, ZoomedOutPanelIsFilledAroundTheStretchedPicture) {
  const DisplayRendition source = Gradient(2, 2);
  PanelPlan panel;
  panel.rendition = &source;
  panel.panel = {0, 0, 5, 3};
  panel.picture = {2, 1, 3, 2};
  panel.stretch = true;
  Frame frame(6, 4);
  DrawPanelPicture(panel, frame.buffer);
  EXPECT_EQ(frame.At(0, 0), kZoomOutBackground);
  EXPECT_EQ(frame.At(5, 3), kZoomOutBackground);
  EXPECT_EQ(frame.At(2, 1), Shown(0, 0));
  EXPECT_EQ(frame.At(3, 2), Shown(1, 1));
}

}  // namespace
}  // namespace korvanel
