#pragma once

// The histogram overlay of one image: its statistics lines, its per-channel
// bars squeezed into at most 256 bins, the box those rows make over the
// picture, the bin under the cursor and the bins lit by a pixel's value.
// Pixel sizes are device pixels; text is measured through ITextMetrics.

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "app/config_values.h"
#include "image/color_kind.h"
#include "image/histogram_result.h"
#include "ui/model/geometry.h"
#include "ui/model/text_metrics.h"

namespace korvanel {

inline constexpr uint32_t kHistogramBins = 256;
inline constexpr int32_t kHistogramMinHeight = 30;
inline constexpr int32_t kHistogramMaxHeight = 120;
inline constexpr int32_t kHistogramDefaultHeight = 80;

inline constexpr Rgb kHistogramFrameColor{140, 0, 180};
inline constexpr Rgb kHistogramBoxColor{255, 255, 255};
inline constexpr Rgb kHistogramTextColor{0, 0, 0};
inline constexpr Rgb kHistogramHoverColor{0, 250, 250};  // the hovered bin
inline constexpr Rgb kHistogramLitColor{170, 170, 170};  // bins of the Ctrl pixel

// The application-wide look of every overlay (B, Shift+B, Ctrl+B).
struct HistogramStyle {
  bool transparent = false;
  bool shadow = false;
  size_t color_index = 0;
  int32_t max_height = kHistogramDefaultHeight;  // the bar area
  std::vector<Rgb> foreground{{255, 255, 255}, {0, 0, 0}};

  static HistogramStyle FromConfig(const ConfigGui& gui);
  Rgb Foreground() const;
  void NextForeground();
};

// White for dark colours (luminance below 128), else black.
Rgb ShadowColorFor(Rgb color);

// A channel's counts in at most 256 bins. Deeper samples (65,536 counts, the
// 32-bit ones already by their top 16 bits) are squeezed: the occupied span
// of values is cut into 256 equal runs, so the shape shows however narrow
// the span is.
struct SqueezedBins {
  std::vector<uint64_t> counts;
  uint64_t peak = 0;
  uint32_t first = 0;     // the counted value of bin 0
  uint32_t per_bin = 1;   // counted values per bin
  uint32_t shift = 0;     // sample value >> shift = counted value (16 for 32-bit)
  bool squeezed = false;  // bins hold more than one value
};

SqueezedBins SqueezeBins(const std::vector<uint64_t>& counts, uint32_t bits);
// The bin of a sample value; none when the value lies outside the counted span.
std::optional<uint32_t> BinOfValue(const SqueezedBins& bins, uint32_t sample);

// The two statistics lines, plain or with value beautifying.
std::array<std::string, 2> StatisticsLines(const HistogramChannel& channel, bool beautify);

// The channel names and letters of a colour family, in plane order.
const char* ChannelName(ColorKind kind, size_t channel);
char ChannelLetter(ColorKind kind, size_t channel);
Rgb ChannelColor(ColorKind kind, size_t channel);

struct HistogramChannelView {
  char letter = 'Y';
  std::string name;
  Rgb color;
  SqueezedBins bins;
  std::array<std::string, 2> lines;
};

// What the overlay shows of one image, rebuilt when its statistics change.
struct HistogramData {
  ColorKind kind = ColorKind::Gray;
  std::vector<HistogramChannelView> channels;
  uint64_t version = 0;  // bumped whenever the shown numbers change
};

HistogramData BuildHistogramData(const HistogramResult& result, uint32_t bits, ColorKind kind,
                                 bool beautify);
// Same counts and texts: the version need not change.
bool SameContent(const HistogramData& a, const HistogramData& b);

enum class HistogramRowKind : uint8_t { Label, Bars, Text };

struct HistogramRow {
  HistogramRowKind kind = HistogramRowKind::Text;
  ScreenRect rect;
  size_t channel = 0;
  std::string text;   // label and text rows
  FontRole font = FontRole::Histogram;
};

struct HistogramBoxLayout {
  ScreenRect box;
  std::vector<HistogramRow> rows;
  int32_t bin_width = 0;  // 0: the bins are narrowed to fit, no hover
  bool AllBinsFit() const { return bin_width > 0; }
};

// The box at the picture's top-left, moved left and up where it would leave
// the panel (a box taller than the panel is cut at its bottom). `metrics` may
// be null (fixed text sizes are assumed).
HistogramBoxLayout LayoutHistogramBox(const HistogramData& data, const HistogramStyle& style,
                                      const ScreenRect& picture, const ScreenRect& panel,
                                      const ITextMetrics* metrics);

struct HistogramHover {
  size_t channel = 0;
  uint32_t bin = 0;
  friend bool operator==(const HistogramHover&, const HistogramHover&) = default;
};

// The bin under `p`, only when every bin has its own column.
std::optional<HistogramHover> HoveredBin(const HistogramBoxLayout& layout, const HistogramData& data,
                                         ScreenPoint p);

// The overlay's state for one image: what it shows, the hovered bin and the
// bins lit by the Ctrl pixel.
struct HistogramOverlayState {
  HistogramData data;
  std::optional<HistogramHover> hover;
  std::vector<std::optional<uint32_t>> lit;
};

// "%c%s[%u] = %u" (beautified "%c%s[%u] = %s"): the channel letter, "~" for
// a squeezed bin, the bin's first sample value and its count.
std::string HoverText(const HistogramData& data, const HistogramHover& hover, bool beautify);

// " / Hist: %u" for one channel, " / Hist: %c = %u, %c = %u, %c = %u" for
// three: the counts of the bins that hold the pixel's values.
std::string HistSuffix(const HistogramData& data, const std::array<uint32_t, 3>& samples,
                       bool beautify);

// The bins each channel's sample falls in (none for a channel whose value is
// outside its counted span).
std::vector<std::optional<uint32_t>> LitBins(const HistogramData& data,
                                             const std::array<uint32_t, 3>& samples);

}  // namespace korvanel
