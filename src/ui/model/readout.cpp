#include "ui/model/readout.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <numbers>

#include "image/image_concrete_base.h"
#include "image/image_container.h"
#include "image/text_util.h"

namespace korvanel {

namespace {

struct LineFormat {
  bool one_component;
  bool hex;
  const char* format;
};

constexpr LineFormat kLineFormats[] = {
    {true, false, "[%s] <~%lld,%lld~> %s: <~%u~> (RGB-8: <%u,%u,%u>)"},
    {false, false, "[%s] <~%lld,%lld~> %s: <~%u,%u,%u~> (RGB-8: <%u,%u,%u>)"},
    {true, true, "[%s] <~%lld,%lld~> %s: <0x~%X~> (RGB-8: <0x%X,0x%X,0x%X>)"},
    {false, true, "[%s] <~%lld,%lld~> %s: <0x~%X~,0x~%X~,0x~%X~> (RGB-8: <0x%X,0x%X,0x%X>)"},
};

const char* LineFormatFor(ReadoutFormat f) {
  for (const LineFormat& row : kLineFormats) {
    if (row.one_component == f.one_component && row.hex == f.hex) return row.format;
  }
  return kLineFormats[0].format;
}

std::string ValueText(const PixelSample& s, ReadoutFormat f) {
  if (f.one_component) return StrFormat(f.hex ? "<0x%X>" : "<%u>", s.values[0]);
  return StrFormat(f.hex ? "<0x%X,0x%X,0x%X>" : "<%u,%u,%u>", s.values[0], s.values[1],
                   s.values[2]);
}

bool ParseInt(std::string_view text, int64_t& value) {
  if (text.empty()) return false;
  const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
  return ec == std::errc() && end == text.data() + text.size();
}

}  // namespace

std::optional<PixelSample> SamplePixel(const IImageContainer& image, PixelPoint pixel) {
  PixelSample sample;
  if (!image.GetSampleValues(pixel.x, pixel.y, sample.values)) return std::nullopt;
  uint32_t color = 0;
  if (image.GetDisplayedValue(pixel.x, pixel.y, color)) {
    // The rendition's bytes are R, G, B, 0.
    sample.r = static_cast<uint8_t>(color & 0xFF);
    sample.g = static_cast<uint8_t>((color >> 8) & 0xFF);
    sample.b = static_cast<uint8_t>((color >> 16) & 0xFF);
  }
  return sample;
}

std::string SignificantBitsTag(const IImageContainer& image) {
  const uint32_t bits = SignificantBitsOf(image);
  return bits == image.GetBitsPerComponent() ? std::string{} : StrFormat(" (%u-bit)", bits);
}

std::string ComponentNames(const IImageContainer& image) {
  if (image.ComponentCount() == 1) return "Y";
  return ColorKindOf(image) == ColorKind::Yuv ? "YUV" : "RGB";
}

std::string ReadoutLine(std::string_view tag, std::string_view names, PixelPoint pixel,
                        const PixelSample& s, ReadoutFormat format) {
  const std::string t(tag);
  const std::string n(names);
  const auto x = static_cast<long long>(pixel.x);
  const auto y = static_cast<long long>(pixel.y);
  const char* f = LineFormatFor(format);
  if (format.one_component) return StrFormat(f, t.c_str(), x, y, n.c_str(), s.values[0], s.r, s.g, s.b);
  return StrFormat(f, t.c_str(), x, y, n.c_str(), s.values[0], s.values[1], s.values[2], s.r, s.g,
                   s.b);
}

std::string OutOfRangeLine(std::string_view tag) {
  return StrFormat("[%s] Out-of-Range", std::string(tag).c_str());
}

std::string RoiPrefix(const Rect& roi) {
  return StrFormat("ROI: %d,%d..%d,%d (%ux%u) | ", static_cast<int>(roi.min_x),
                   static_cast<int>(roi.min_y), static_cast<int>(roi.max_x),
                   static_cast<int>(roi.max_y), static_cast<unsigned>(roi.Width()),
                   static_cast<unsigned>(roi.Height()));
}

std::string PendingRoiPrefix(PixelPoint anchor, PixelPoint cursor) {
  return StrFormat("ROI: %d,%d..?,? (%ux%u) | ", static_cast<int>(anchor.x),
                   static_cast<int>(anchor.y),
                   static_cast<unsigned>(std::llabs(cursor.x - anchor.x) + 1),
                   static_cast<unsigned>(std::llabs(cursor.y - anchor.y) + 1));
}

std::string CursorPrefix(PixelPoint pixel) {
  return StrFormat("XY <%d,%d>: ", static_cast<int>(pixel.x), static_cast<int>(pixel.y));
}

std::string DirectiveText(PixelPoint anchor, PixelPoint cursor) {
  const double dx = static_cast<double>(cursor.x - anchor.x);
  const double dy = static_cast<double>(anchor.y - cursor.y);  // up is positive
  const double length = std::hypot(dx, dy);
  const double degrees = length == 0 ? 0 : std::atan2(dy, dx) * 180 / std::numbers::pi;
  return StrFormat("~|L|=%.2lf ; Deg=%.2lf~", length, degrees);
}

std::string CopyPixelText(PixelPoint pixel, const PixelSample& sample, ReadoutFormat format,
                          std::optional<uint64_t> offset) {
  std::string prefix;
  if (offset) {
    prefix = format.hex ? StrFormat("[0x%llX] ", static_cast<unsigned long long>(*offset))
                        : StrFormat("[%llu]", static_cast<unsigned long long>(*offset));
  }
  return StrFormat("%s<%u,%u> =", prefix.c_str(), static_cast<unsigned>(pixel.x),
                   static_cast<unsigned>(pixel.y)) +
         ValueText(sample, format);
}

std::string CopySizeText(uint32_t width, uint32_t height) {
  return StrFormat("%ux%u", width, height);
}

// Accepts what CopyPixelText writes, with or without the offset piece and
// with blanks around it (a copy pasted from another program may carry a
// line end).
std::optional<CopiedPixel> ParseCopiedPixel(std::string_view text) {
  const size_t open = text.find('<');
  const size_t comma = text.find(',', open);
  const size_t close = text.find('>', open);
  if (open == std::string_view::npos || comma == std::string_view::npos ||
      close == std::string_view::npos || comma > close) {
    return std::nullopt;
  }
  const size_t equal = text.find_first_not_of(' ', close + 1);
  if (equal == std::string_view::npos || text[equal] != '=' || equal + 1 >= text.size() ||
      text[equal + 1] != '<') {
    return std::nullopt;
  }
  const size_t value_end = text.find('>', equal + 2);
  if (value_end == std::string_view::npos ||
      text.find_first_not_of(" \t\r\n", value_end + 1) != std::string_view::npos) {
    return std::nullopt;
  }
  CopiedPixel copied;
  if (!ParseInt(text.substr(open + 1, comma - open - 1), copied.pixel.x) ||
      !ParseInt(text.substr(comma + 1, close - comma - 1), copied.pixel.y) || copied.pixel.x < 0 ||
      copied.pixel.y < 0) {
    return std::nullopt;
  }
  copied.value = std::string(text.substr(equal + 2, value_end - equal - 2));
  if (copied.value.empty()) return std::nullopt;
  return copied;
}

}  // namespace korvanel
