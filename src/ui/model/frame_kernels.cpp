#include "ui/model/frame_kernels.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace korvanel {

namespace {

ScreenRect Intersect(const ScreenRect& a, const ScreenRect& b) {
  return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
          std::min(a.bottom, b.bottom)};
}

void CopyRow(const PixelBuffer& buffer, int32_t from_y, int32_t to_y, int32_t left, int32_t count) {
  std::memcpy(buffer.Row(to_y) + left, buffer.Row(from_y) + left,
              static_cast<size_t>(count) * sizeof(uint32_t));
}

// The rows of one replicated block differ only with the grid on: the top
// row is dotted all along, the left column is dotted on even rows.
enum class BlockRow { Plain, Top, EvenBody };

BlockRow RowKind(bool grid, int64_t r) {
  if (!grid || r % 2 == 1) return BlockRow::Plain;
  return r == 0 ? BlockRow::Top : BlockRow::EvenBody;
}

struct DotColors {
  uint32_t dot;    // at even positions along the dotted edges
  uint32_t other;  // at odd positions
};

DotColors GridDots(uint32_t pixel, const GridStyle& grid, int64_t ix, int64_t iy) {
  const PixelRect& roi = grid.roi;
  if (!roi.Empty() && ix >= roi.left && ix <= roi.right && iy >= roi.top && iy <= roi.bottom) {
    return {kRoiGridColorA, kRoiGridColorB};
  }
  return {ContrastColor(pixel), pixel};
}

// Writes one screen row of image row `iy`: the blocks of columns
// [left, right], `kind` saying which grid edge the row carries.
void ComposeRow(const uint32_t* source_row, int64_t iy, int32_t left, int32_t right,
                int64_t origin_x, int64_t k, BlockRow kind, const GridStyle& grid,
                uint32_t* out) {
  if (k == 1) {
    const uint32_t* src = source_row + (left - origin_x);
    for (int32_t x = left; x <= right; ++x) out[x] = SwizzleDisplayPixel(*src++);
    return;
  }
  for (int64_t x = left; x <= right;) {
    const int64_t ix = (x - origin_x) / k;
    const int64_t block_left = origin_x + ix * k;
    const int64_t end = std::min<int64_t>(right, block_left + k - 1);
    const uint32_t pixel = SwizzleDisplayPixel(source_row[ix]);
    std::fill(out + x, out + end + 1, pixel);
    if (kind == BlockRow::Top) {
      const DotColors dots = GridDots(pixel, grid, ix, iy);
      for (int64_t j = x; j <= end; ++j) out[j] = (j - block_left) % 2 == 0 ? dots.dot : dots.other;
    } else if (grid.on && x == block_left) {
      const DotColors dots = GridDots(pixel, grid, ix, iy);
      out[x] = kind == BlockRow::EvenBody ? dots.dot : dots.other;
    }
    x = end + 1;
  }
}

}  // namespace

void FillRect(PixelBuffer& buffer, const ScreenRect& rect, uint32_t color) {
  const ScreenRect r = Intersect(rect, buffer.Bounds());
  if (r.Empty()) return;
  for (int32_t y = r.top; y <= r.bottom; ++y) {
    std::fill_n(buffer.Row(y) + r.left, r.Width(), color);
  }
}

void BlitReplicated(const DisplayRendition& source, const ScreenRect& dest, ScreenPoint origin,
                    uint32_t k, const GridStyle& grid, PixelBuffer& buffer) {
  if (k == 0 || source.width == 0 || source.height == 0) return;
  const int64_t kk = k;
  const ScreenRect zoomed{
      origin.x, origin.y,
      static_cast<int32_t>(std::min<int64_t>(INT32_MAX, origin.x + kk * source.width - 1)),
      static_cast<int32_t>(std::min<int64_t>(INT32_MAX, origin.y + kk * source.height - 1))};
  const ScreenRect r = Intersect(Intersect(dest, buffer.Bounds()), zoomed);
  if (r.Empty()) return;
  const bool dotted = grid.on && k > 1;
  int64_t current_iy = -1;
  int32_t written[3] = {-1, -1, -1};  // the screen row holding each BlockRow kind
  for (int32_t y = r.top; y <= r.bottom; ++y) {
    const int64_t iy = (y - int64_t{origin.y}) / kk;
    if (iy != current_iy) {
      current_iy = iy;
      std::fill(std::begin(written), std::end(written), -1);
    }
    const BlockRow kind = RowKind(dotted, y - origin.y - iy * kk);
    int32_t& done = written[static_cast<int>(kind)];
    if (done >= 0) {
      CopyRow(buffer, done, y, r.left, r.Width());
      continue;
    }
    const uint32_t* source_row = source.pixels.data() + iy * source.width;
    ComposeRow(source_row, iy, r.left, r.right, origin.x, kk, kind,
               dotted ? grid : GridStyle{}, buffer.Row(y));
    done = y;
  }
}

void BlitStretched(const DisplayRendition& source, const ScreenRect& picture,
                   const ScreenRect& clip, PixelBuffer& buffer) {
  if (source.width == 0 || source.height == 0 || picture.Empty()) return;
  const ScreenRect r = Intersect(Intersect(picture, clip), buffer.Bounds());
  if (r.Empty()) return;
  const int64_t pw = picture.Width();
  const int64_t ph = picture.Height();
  std::vector<uint32_t> x_map(static_cast<size_t>(r.Width()));
  for (int32_t x = r.left; x <= r.right; ++x) {
    x_map[static_cast<size_t>(x - r.left)] =
        static_cast<uint32_t>((x - int64_t{picture.left}) * source.width / pw);
  }
  int64_t previous_iy = -1;
  for (int32_t y = r.top; y <= r.bottom; ++y) {
    const int64_t iy = (y - int64_t{picture.top}) * source.height / ph;
    if (iy == previous_iy) {
      CopyRow(buffer, y - 1, y, r.left, r.Width());
      continue;
    }
    previous_iy = iy;
    const uint32_t* source_row = source.pixels.data() + iy * source.width;
    uint32_t* out = buffer.Row(y) + r.left;
    for (const uint32_t ix : x_map) *out++ = SwizzleDisplayPixel(source_row[ix]);
  }
}

Rgb RingColor(uint32_t index) {
  int64_t red = 255;
  int64_t blue = 128;
  for (uint32_t i = 0; i < index; ++i) {
    red = std::lround(static_cast<double>(red) * 0.8);
    blue = 255 - std::lround(static_cast<double>(blue) * 0.8);
  }
  return {static_cast<uint8_t>(red), 0, static_cast<uint8_t>(blue)};
}

void DrawRings(PixelBuffer& buffer, const ScreenRect& picture, uint32_t count) {
  if (picture.Empty()) return;
  for (uint32_t i = 0; i < count; ++i) {
    const auto d = static_cast<int32_t>(i + 1);
    const ScreenRect ring{picture.left - d, picture.top - d, picture.right + d, picture.bottom + d};
    const uint32_t color = ScreenColor(RingColor(i));
    FillRect(buffer, {ring.left, ring.top, ring.right, ring.top}, color);
    FillRect(buffer, {ring.left, ring.bottom, ring.right, ring.bottom}, color);
    FillRect(buffer, {ring.left, ring.top, ring.left, ring.bottom}, color);
    FillRect(buffer, {ring.right, ring.top, ring.right, ring.bottom}, color);
  }
}

void DrawPanelPicture(const PanelPlan& panel, PixelBuffer& buffer) {
  if (panel.rendition == nullptr) return;
  if (panel.stretch) {
    FillRect(buffer, panel.panel, kZoomOutBackground);
    BlitStretched(*panel.rendition, panel.picture, panel.panel, buffer);
  } else {
    BlitReplicated(*panel.rendition, panel.picture, panel.origin, panel.k,
                   GridStyle{panel.grid, panel.roi}, buffer);
  }
  DrawRings(buffer, panel.picture, panel.rings);
}

}  // namespace korvanel
