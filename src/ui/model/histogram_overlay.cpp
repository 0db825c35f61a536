#include "ui/model/histogram_overlay.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "ui/model/number_grouping.h"

namespace korvanel {

namespace {

constexpr int32_t kBoxInset = 8;   // from the picture's top-left corner
constexpr int32_t kMargin = 6;     // inside the box, around the rows
constexpr int32_t kRowGap = 2;
constexpr int32_t kWideBin = 2;    // bin width when the panel has room
// Sizes assumed without text metrics.
constexpr int32_t kFallbackTextHeight = 14;
constexpr int32_t kFallbackCharWidth = 7;

struct ChannelRow {
  ColorKind kind;
  size_t channel;
  const char* name;
  char letter;
  Rgb color;
};

constexpr Rgb kLumaColor{128, 128, 128};
constexpr Rgb kRedColor{255, 0, 0};
constexpr Rgb kGreenColor{0, 128, 0};
constexpr Rgb kBlueColor{0, 0, 255};

// Chroma planes are drawn in the colours they lean towards.
constexpr ChannelRow kChannels[] = {
    {ColorKind::Gray, 0, "Luma", 'Y', kLumaColor},   {ColorKind::Rgb, 0, "Red", 'R', kRedColor},
    {ColorKind::Rgb, 1, "Green", 'G', kGreenColor},  {ColorKind::Rgb, 2, "Blue", 'B', kBlueColor},
    {ColorKind::Yuv, 0, "Luma", 'Y', kLumaColor},    {ColorKind::Yuv, 1, "U (Cb)", 'U', kBlueColor},
    {ColorKind::Yuv, 2, "V (Cr)", 'V', kRedColor},
};

const ChannelRow& RowOf(ColorKind kind, size_t channel) {
  for (const ChannelRow& row : kChannels) {
    if (row.kind == kind && row.channel == channel) return row;
  }
  return kChannels[0];
}

// A number that cannot be shown (a division by an empty count) prints as 0.
double Finite(double value) { return std::isfinite(value) ? value : 0.0; }

unsigned long long Count(uint64_t value) { return static_cast<unsigned long long>(value); }

int32_t TextWidth(const ITextMetrics* metrics, FontRole role, const std::string& text) {
  if (metrics == nullptr) return static_cast<int32_t>(text.size()) * kFallbackCharWidth;
  return metrics->Width(role, text);
}

int32_t TextHeight(const ITextMetrics* metrics, FontRole role) {
  return metrics == nullptr ? kFallbackTextHeight : metrics->Height(role);
}

}  // namespace

// --- style -----------------------------------------------------------------------

HistogramStyle HistogramStyle::FromConfig(const ConfigGui& gui) {
  HistogramStyle style;
  style.transparent = gui.histogram_transparent;
  style.shadow = gui.histogram_transparent_shadow;
  style.max_height = gui.histogram_max_height == 0
                         ? kHistogramDefaultHeight
                         : std::clamp(gui.histogram_max_height, kHistogramMinHeight, kHistogramMaxHeight);
  if (!gui.histogram_transparent_fg_color.empty()) style.foreground = gui.histogram_transparent_fg_color;
  return style;
}

Rgb HistogramStyle::Foreground() const {
  return foreground.empty() ? Rgb{255, 255, 255} : foreground[color_index % foreground.size()];
}

void HistogramStyle::NextForeground() {
  if (!foreground.empty()) color_index = (color_index + 1) % foreground.size();
}

Rgb ShadowColorFor(Rgb color) {
  const auto luminance = static_cast<int32_t>(0.299 * color.r + 0.587 * color.g + 0.114 * color.b + 0.5);
  return luminance < 128 ? Rgb{255, 255, 255} : Rgb{0, 0, 0};
}

// --- bins ------------------------------------------------------------------------

SqueezedBins SqueezeBins(const std::vector<uint64_t>& counts, uint32_t bits) {
  SqueezedBins bins;
  bins.shift = bits > 16 ? 16 : 0;
  if (counts.size() <= kHistogramBins) {
    bins.counts = counts;
  } else {
    const auto occupied = [](uint64_t c) { return c != 0; };
    const auto first = std::ranges::find_if(counts, occupied);
    if (first == counts.end()) {
      bins.counts.assign(kHistogramBins, 0);
    } else {
      const auto last = std::find_if(counts.rbegin(), counts.rend(), occupied).base();
      bins.first = static_cast<uint32_t>(first - counts.begin());
      const auto span = static_cast<uint32_t>(last - first);
      bins.per_bin = (span + kHistogramBins - 1) / kHistogramBins;
      const uint32_t used = (span + bins.per_bin - 1) / bins.per_bin;
      bins.counts.assign(used, 0);
      for (uint32_t v = 0; v < span; ++v) bins.counts[v / bins.per_bin] += first[v];
    }
  }
  bins.squeezed = bins.per_bin > 1 || bins.shift != 0;
  bins.peak = bins.counts.empty() ? 0 : *std::ranges::max_element(bins.counts);
  return bins;
}

std::optional<uint32_t> BinOfValue(const SqueezedBins& bins, uint32_t sample) {
  const uint32_t value = sample >> bins.shift;
  if (value < bins.first) return std::nullopt;
  const uint32_t bin = (value - bins.first) / bins.per_bin;
  if (bin >= bins.counts.size()) return std::nullopt;
  return bin;
}

// --- texts -----------------------------------------------------------------------

std::array<std::string, 2> StatisticsLines(const HistogramChannel& channel, bool beautify) {
  const double std_dev = Finite(channel.std_dev);
  const double variance = Finite(channel.variance);
  const double mean = Finite(channel.mean);
  char first[160];
  char second[160];
  if (beautify) {
    std::snprintf(first, sizeof first, "Total pixels: %s  Std: %s  Var: %s",
                  GroupedCount(channel.total).c_str(), GroupedReal(std_dev).c_str(),
                  GroupedReal(variance).c_str());
    std::snprintf(second, sizeof second, "Mean: %s  Mode (%s): %s  Median: %s",
                  GroupedReal(mean).c_str(), GroupedCount(channel.mode_count).c_str(),
                  GroupedCount(channel.mode).c_str(), GroupedCount(channel.median).c_str());
  } else {
    std::snprintf(first, sizeof first, "Total pixels: %llu   Std: %6.3lf   Var: %6.3lf",
                  Count(channel.total), std_dev, variance);
    std::snprintf(second, sizeof second, "Mean: %6.3lf   Mode (%llu): %u   Median : %u", mean,
                  Count(channel.mode_count), channel.mode, channel.median);
  }
  return {first, second};
}

const char* ChannelName(ColorKind kind, size_t channel) { return RowOf(kind, channel).name; }
char ChannelLetter(ColorKind kind, size_t channel) { return RowOf(kind, channel).letter; }
Rgb ChannelColor(ColorKind kind, size_t channel) { return RowOf(kind, channel).color; }

HistogramData BuildHistogramData(const HistogramResult& result, uint32_t bits, ColorKind kind,
                                 bool beautify) {
  HistogramData data;
  data.kind = kind;
  for (size_t c = 0; c < result.channels.size(); ++c) {
    const HistogramChannel& source = result.channels[c];
    HistogramChannelView view;
    view.letter = ChannelLetter(kind, c);
    view.name = ChannelName(kind, c);
    view.color = ChannelColor(kind, c);
    view.bins = SqueezeBins(source.counts, bits);
    view.lines = StatisticsLines(source, beautify);
    data.channels.push_back(std::move(view));
  }
  return data;
}

bool SameContent(const HistogramData& a, const HistogramData& b) {
  if (a.kind != b.kind || a.channels.size() != b.channels.size()) return false;
  for (size_t c = 0; c < a.channels.size(); ++c) {
    const HistogramChannelView& x = a.channels[c];
    const HistogramChannelView& y = b.channels[c];
    if (x.lines != y.lines || x.bins.counts != y.bins.counts || x.bins.first != y.bins.first ||
        x.bins.per_bin != y.bins.per_bin) {
      return false;
    }
  }
  return true;
}

// --- the box ---------------------------------------------------------------------

HistogramBoxLayout LayoutHistogramBox(const HistogramData& data, const HistogramStyle& style,
                                      const ScreenRect& picture, const ScreenRect& panel,
                                      const ITextMetrics* metrics) {
  HistogramBoxLayout layout;
  if (panel.Empty() || data.channels.empty()) return layout;
  const int32_t room = std::max(1, panel.Width() - 2 * kBoxInset - 2 * kMargin);
  size_t bins = 0;
  for (const HistogramChannelView& channel : data.channels) bins = std::max(bins, channel.bins.counts.size());
  const auto n = static_cast<int32_t>(std::max<size_t>(bins, 1));
  layout.bin_width = n * kWideBin <= room ? kWideBin : (n <= room ? 1 : 0);
  const int32_t bars_width = layout.bin_width > 0 ? n * layout.bin_width : room;

  int32_t inner = bars_width;
  for (const HistogramChannelView& channel : data.channels) {
    inner = std::max(inner, TextWidth(metrics, FontRole::HistogramLabel, channel.name));
    for (const std::string& line : channel.lines) inner = std::max(inner, TextWidth(metrics, FontRole::Histogram, line));
  }
  inner = std::min(inner, room);

  const int32_t label_height = TextHeight(metrics, FontRole::HistogramLabel);
  const int32_t text_height = TextHeight(metrics, FontRole::Histogram);
  const int32_t bar_height = std::clamp(style.max_height, kHistogramMinHeight, kHistogramMaxHeight);
  const int32_t width = inner + 2 * kMargin;
  const int32_t left = std::max(panel.left, std::min(picture.left + kBoxInset, panel.right - width + 1));
  const int32_t top = std::max(panel.top, picture.top + kBoxInset);
  int32_t y = top + kMargin;
  const auto add = [&](HistogramRowKind kind, size_t channel, int32_t row_width, int32_t height,
                       std::string text, FontRole font) {
    layout.rows.push_back({kind, {left + kMargin, y, left + kMargin + row_width - 1, y + height - 1}, channel,
                           std::move(text), font});
    y += height + kRowGap;
  };
  for (size_t c = 0; c < data.channels.size(); ++c) {
    const HistogramChannelView& channel = data.channels[c];
    add(HistogramRowKind::Label, c, inner, label_height, channel.name, FontRole::HistogramLabel);
    add(HistogramRowKind::Bars, c, bars_width, bar_height, {}, FontRole::Histogram);
    for (const std::string& line : channel.lines) add(HistogramRowKind::Text, c, inner, text_height, line, FontRole::Histogram);
  }
  layout.box = {left, top, left + width - 1, y - kRowGap + kMargin - 1};
  // Moved up as far as needed (and possible) to end inside the panel.
  const int32_t up = std::min(layout.box.bottom - panel.bottom, top - panel.top);
  if (up > 0) {
    layout.box.top -= up;
    layout.box.bottom -= up;
    for (HistogramRow& row : layout.rows) {
      row.rect.top -= up;
      row.rect.bottom -= up;
    }
  }
  return layout;
}

std::optional<HistogramHover> HoveredBin(const HistogramBoxLayout& layout, const HistogramData& data,
                                         ScreenPoint p) {
  if (!layout.AllBinsFit() || !layout.box.Contains(p)) return std::nullopt;
  for (const HistogramRow& row : layout.rows) {
    if (row.kind != HistogramRowKind::Bars || !row.rect.Contains(p) || row.channel >= data.channels.size()) {
      continue;
    }
    const auto bin = static_cast<uint32_t>((p.x - row.rect.left) / layout.bin_width);
    if (bin >= data.channels[row.channel].bins.counts.size()) return std::nullopt;
    return HistogramHover{row.channel, bin};
  }
  return std::nullopt;
}

std::string HoverText(const HistogramData& data, const HistogramHover& hover, bool beautify) {
  if (hover.channel >= data.channels.size()) return {};
  const HistogramChannelView& channel = data.channels[hover.channel];
  if (hover.bin >= channel.bins.counts.size()) return {};
  const SqueezedBins& bins = channel.bins;
  const uint64_t first = (uint64_t{bins.first} + uint64_t{hover.bin} * bins.per_bin) << bins.shift;
  const uint64_t count = bins.counts[hover.bin];
  const char* squeezed = bins.squeezed ? "~" : "";
  char text[96];
  if (beautify) {
    std::snprintf(text, sizeof text, "%c%s[%llu] = %s", channel.letter, squeezed, Count(first),
                  GroupedCount(count).c_str());
  } else {
    std::snprintf(text, sizeof text, "%c%s[%llu] = %llu", channel.letter, squeezed, Count(first), Count(count));
  }
  return text;
}

std::vector<std::optional<uint32_t>> LitBins(const HistogramData& data,
                                             const std::array<uint32_t, 3>& samples) {
  std::vector<std::optional<uint32_t>> lit;
  for (size_t c = 0; c < data.channels.size(); ++c) {
    lit.push_back(BinOfValue(data.channels[c].bins, samples[std::min<size_t>(c, samples.size() - 1)]));
  }
  return lit;
}

std::string HistSuffix(const HistogramData& data, const std::array<uint32_t, 3>& samples,
                       bool beautify) {
  const std::vector<std::optional<uint32_t>> lit = LitBins(data, samples);
  const auto count_text = [&](size_t c) {
    const uint64_t count = lit[c] ? data.channels[c].bins.counts[*lit[c]] : 0;
    return beautify ? GroupedCount(count) : std::to_string(count);
  };
  std::string suffix = " / Hist: ";
  if (data.channels.size() == 1) return suffix + count_text(0);
  for (size_t c = 0; c < data.channels.size(); ++c) {
    if (c != 0) suffix += ", ";
    suffix += data.channels[c].letter;
    suffix += " = ";
    suffix += count_text(c);
  }
  return suffix;
}

}  // namespace korvanel
